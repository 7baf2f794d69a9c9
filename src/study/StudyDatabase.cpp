#include "study/StudyDatabase.h"

#include "base/Error.h"

namespace {

[[noreturn]] void unimplemented()
{
    throw TError("unimplemented");
}

} // namespace

std::vector<StudyInfo> StudyDatabase::listPatients()
{
    unimplemented();
}

void StudyDatabase::createPatient(StudyInfo&)
{
    unimplemented();
}

bool StudyDatabase::openPatient(qint32, StudyInfo&)
{
    unimplemented();
}

void StudyDatabase::savePatient(const StudyInfo&)
{
    unimplemented();
}

void StudyDatabase::deletePatient(qint32)
{
    unimplemented();
}

std::vector<QByteArray> StudyDatabase::reportTemplateNames()
{
    unimplemented();
}

QByteArray StudyDatabase::reportTemplate(const QByteArray&)
{
    unimplemented();
}

void StudyDatabase::setReportTemplate(const QByteArray&, const QByteArray&)
{
    unimplemented();
}

void StudyDatabase::deleteReportTemplate(const QByteArray&)
{
    unimplemented();
}

QByteArray StudyDatabase::defaultReportTemplateName()
{
    unimplemented();
}

void StudyDatabase::exportReport(qint32, const QString&)
{
    unimplemented();
}

void StudyDatabase::deleteArchive(const QString&)
{
    unimplemented();
}

namespace {

StudyDatabase* processDatabase = nullptr;

} // namespace

StudyDatabase* studyDatabase()
{
    return processDatabase;
}

void setStudyDatabase(StudyDatabase* database)
{
    processDatabase = database;
}
