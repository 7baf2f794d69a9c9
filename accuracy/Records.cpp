#include "accuracy/Records.h"

#include "base/Error.h"
#include "base/Text.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "study/WfdbImport.h"
#include "wfdb/TWfdbHeader.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace accuracy {

namespace {

/// Numbers first, in their order.
bool comesBefore(const QString& a, const QString& b)
{
    bool isNumberA = false;
    bool isNumberB = false;
    const int numberA = a.toInt(&isNumberA);
    const int numberB = b.toInt(&isNumberB);
    return isNumberA && isNumberB ? numberA < numberB : isNumberA != isNumberB ? isNumberA : a < b;
}

QStringList recordNames(const QDir& folder)
{
    const QString ending = QStringLiteral(".hea");
    QStringList names;
    for (const QString& file : folder.entryList({QLatin1Char('*') + ending}, QDir::Files))
        names.append(file.chopped(ending.size()));
    std::sort(names.begin(), names.end(), comesBefore);
    return names;
}

TRecordPlace placeOf(const QString& recordings, const QString& set, const QString& name)
{
    return {velantor::toText(set), velantor::toText(name),
            recordings + QLatin1Char('/') + set + QLatin1Char('/') + name};
}

void addSet(std::vector<TRecordPlace>& records, const QString& recordings, const QString& set)
{
    const QDir folder(recordings + QLatin1Char('/') + set);
    if (!folder.exists())
        throw TError(QStringLiteral("Folder not found: %1").arg(folder.path()));
    for (const QString& name : recordNames(folder))
        records.push_back(placeOf(recordings, set, name));
}

void addRecord(std::vector<TRecordPlace>& records, const QString& recordings, const QString& chosen)
{
    const TRecordPlace place =
        placeOf(recordings, chosen.section(QLatin1Char('/'), 0, 0), chosen.section(QLatin1Char('/'), 1));
    if (!QFile::exists(place.path + QStringLiteral(".hea")))
        throw TError(QStringLiteral("Record not found: %1").arg(chosen));
    records.push_back(place);
}

} // namespace

double TRecordPlace::frequency() const
{
    return TWfdbHeader::read(path + QStringLiteral(".hea")).frequency;
}

QString TRecordPlace::annotations(const QString& ending) const
{
    return path + QLatin1Char('.') + ending;
}

bool TRecordPlace::hasAnnotations(const QString& ending) const
{
    return QFile::exists(annotations(ending));
}

QStringList annotatedSets()
{
    return QStringLiteral("ludb mitdb nstdb qtdb").split(QLatin1Char(' '));
}

std::vector<TRecordPlace> findRecords(const QString& recordings, const QStringList& chosen)
{
    std::vector<TRecordPlace> records;
    for (const QString& choice : chosen.isEmpty() ? annotatedSets() : chosen) {
        if (choice.contains(QLatin1Char('/')))
            addRecord(records, recordings, choice);
        else
            addSet(records, recordings, choice);
    }
    return records;
}

TScratchStore::TScratchStore()
{
    if (!m_folder.isValid())
        throw TError(m_folder.errorString());
    m_database = std::make_unique<LocalStudyDatabase>(m_folder.path());
}

TScratchStore::~TScratchStore()
{
    if (m_study != nullptr)
        m_database->closeStudy(m_study);
}

void TScratchStore::forget()
{
    if (m_study == nullptr)
        return;
    const qint32 id = m_study->id();
    m_database->closeStudy(m_study);
    m_study = nullptr;
    m_database->deleteStudy(id);
}

TEcgFile& TScratchStore::import(const TRecordPlace& record)
{
    forget();
    m_study = m_database->openStudy(importWfdb(*m_database, record.path).id);
    if (m_study == nullptr)
        throw TError("Study file not found");
    return *m_study->ecg();
}

} // namespace accuracy
