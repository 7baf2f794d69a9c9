#include "study/StudyFolders.h"

#include "base/Constants.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/StudyFiles.h"
#include "study/StudyIndex.h"
#include "support/SampleStudy.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <filesystem>
#include <random>

namespace {

constexpr const char* extensions[] = {velantor::studyExtension, velantor::ecgExtension,
                                      velantor::beatsExtension};

/// What the study file holds, as a document that can be varied.
QJsonObject documentOf(const QString& path)
{
    QByteArray text;
    readStudyDocument(path, text);
    return QJsonDocument::fromJson(text).object();
}

void replaceMember(QJsonObject& document, const char* part, const char* key, const QJsonValue& value)
{
    QJsonObject object = document.value(QLatin1String(part)).toObject();
    object.insert(QLatin1String(key), value);
    document.insert(QLatin1String(part), object);
}

/// As the program writes it, but without a wait for the disk for each of thousands.
void writeDocument(const QString& path, const QJsonObject& document)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no room for the benchmark's studies");
    file.write(velantor::studyMagic);
    file.write(qCompress(QJsonDocument(document).toJson(QJsonDocument::Compact)));
}

/// A second name for a file: as good as a copy where files are only listed and read.
void link(const QString& from, const QString& to)
{
    std::filesystem::create_hard_link(from.toStdString(), to.toStdString());
}

/// Some counts of muscle noise in each sample: a smooth recording would be compressed as no real one is.
void addNoise(const QString& ecgPath)
{
    QFile file(ecgPath);
    file.open(QIODevice::ReadWrite);
    const qint64 size = file.size() - ecgHeaderSize;
    auto* const samples = reinterpret_cast<qint16*>(file.map(ecgHeaderSize, size));
    if (samples == nullptr)
        qFatal("cannot map the benchmark's samples");
    std::minstd_rand random(1);
    for (qint64 i = 0; i < size / qint64(sizeof(qint16)); ++i)
        samples[i] = qint16(samples[i] + int(random() >> 8 & 7) - 4);
}

StudyInfo makeStudy(const QString& path, double seconds, double beatsPerMinute)
{
    LocalStudyDatabase database(path);
    StudyInfo info = makeSampleInfo();
    Study* study = database.createStudy(info);
    appendSampleRecording(*study, seconds);
    if (beatsPerMinute > 0.0)
        fillSampleResults(*study, seconds, beatsPerMinute, 1);
    database.saveStudy(study);
    database.closeStudy(study);
    return info;
}

void makeVariant(const QString& path, QJsonObject& document, const StudyInfo& original, int number)
{
    const StudyInfo patient = patientOf(number);
    replaceMember(document, "study", "id", patient.id);
    replaceMember(document, "study", "baseFilename", QString::fromUtf8(patient.baseFilename));
    replaceMember(document, "patient", "lastName", QString::fromUtf8(patient.lastName));
    writeDocument(studyFilePath(path, patient.baseFilename, velantor::studyExtension), document);
    for (const char* extension : {velantor::ecgExtension, velantor::beatsExtension})
        link(studyFilePath(path, original.baseFilename, extension),
             studyFilePath(path, patient.baseFilename, extension));
}

} // namespace

StudyInfo patientOf(int number)
{
    StudyInfo info = makeSampleInfo();
    info.id = number + 1;
    info.lastName += QByteArray::number(number);
    info.firstName = "María José";
    info.medicalHistoryNumber = QByteArray::number(700000 + number);
    info.baseFilename = makeBaseFilename(info);
    return info;
}

StudyFolders& StudyFolders::instance()
{
    static StudyFolders folders;
    return folders;
}

QString StudyFolders::folder(const char* name, void (StudyFolders::*fill)(const QString&))
{
    const QString path = m_root.filePath(QLatin1String(name));
    if (!QDir(path).exists()) {
        QDir().mkpath(path + QLatin1String("/data"));
        (this->*fill)(path);
    }
    return path;
}

QString StudyFolders::listedFolder()
{
    return folder("listed", &StudyFolders::fillListed);
}

QString StudyFolders::restingFolder()
{
    return folder("resting", &StudyFolders::fillResting);
}

QString StudyFolders::hourFolder()
{
    return folder("hour", &StudyFolders::fillHour);
}

QString StudyFolders::longFolder()
{
    return folder("long", &StudyFolders::fillLong);
}

StudyInfo StudyFolders::hourStudy()
{
    hourFolder();
    return m_hourStudy;
}

QString StudyFolders::hourStudyPath()
{
    return studyFilePath(hourFolder(), m_hourStudy.baseFilename, velantor::studyExtension);
}

void StudyFolders::fillListed(const QString& path)
{
    StudyIndex index(path + QLatin1String("/data/studies.sqlite"));
    index.beginTransaction();
    for (int number = 0; number < listedRows; ++number)
        index.insert(patientOf(number));
    index.commit();
    index.keep();
}

void StudyFolders::fillResting(const QString& path)
{
    const StudyInfo original = makeStudy(path, 1.0, 0.0);
    QJsonObject document = documentOf(studyFilePath(path, original.baseFilename, velantor::studyExtension));
    for (int number = 0; number < restingStudies; ++number)
        makeVariant(path, document, original, number);
    for (const char* extension : extensions)
        QFile::remove(studyFilePath(path, original.baseFilename, extension));
}

void StudyFolders::fillHour(const QString& path)
{
    m_hourStudy = makeStudy(path, hour, 150.0);
    addNoise(studyFilePath(path, m_hourStudy.baseFilename, velantor::ecgExtension));
}

void StudyFolders::fillLong(const QString& path)
{
    const QString original = hourStudyPath();
    for (int number = 0; number < longStudies; ++number)
        link(original, studyFilePath(path, patientOf(number).baseFilename, velantor::studyExtension));
}
