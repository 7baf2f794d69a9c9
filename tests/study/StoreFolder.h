#pragma once

#include "base/Constants.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/StudyFiles.h"
#include "support/SampleStudy.h"

#include <QDirIterator>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Every file and folder below, hidden ones too, sorted.
inline QStringList listing(const QString& folder)
{
    QStringList names;
    QDirIterator entries(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        names << entries.next();
    names.sort();
    return names;
}

/// A data folder, not made yet, within a scratch folder whose listing shows what was written beside it.
class StoreFolder
{
public:
    QString outside() const { return m_scratch.path(); }
    QString path() const { return m_scratch.filePath(QStringLiteral("store")); }
    QString index() const { return path() + QStringLiteral("/data/studies.sqlite"); }
    QString protocols() const { return path() + QStringLiteral("/data/protocols.json"); }
    QString beside(const char* name) const { return m_scratch.filePath(QLatin1String(name)); }
    QString file(const QByteArray& baseFilename, const char* extension) const
    {
        return studyFilePath(path(), baseFilename, extension);
    }
    QString studyFile(const QByteArray& base) const { return file(base, velantor::studyExtension); }
    QString ecgFile(const QByteArray& base) const { return file(base, velantor::ecgExtension); }
    QString beatsFile(const QByteArray& base) const { return file(base, velantor::beatsExtension); }
    /// The three files of a set, one after the other.
    QByteArray setContent(const QByteArray& base) const
    {
        return contentOf(studyFile(base)) + '|' + contentOf(ecgFile(base)) + '|' + contentOf(beatsFile(base));
    }
    bool hasAnyFile(const QByteArray& base) const
    {
        return QFile::exists(studyFile(base)) || QFile::exists(ecgFile(base)) ||
               QFile::exists(beatsFile(base));
    }

    /// Result of a statement on the index through a connection of its own; the error text if it fails.
    QVariant sql(const char* statement) const
    {
        QVariant result;
        {
            QSqlDatabase database =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("watcher"));
            database.setDatabaseName(index());
            if (database.open()) {
                QSqlQuery query(database);
                const bool done = query.exec(QLatin1String(statement));
                result = !done ? query.lastError().text() : query.next() ? query.value(0) : QVariant();
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("watcher"));
        return result;
    }

private:
    QTemporaryDir m_scratch;
};

inline StudyInfo sampleInfoOf(const QByteArray& lastName)
{
    StudyInfo info = makeSampleInfo();
    info.lastName = lastName;
    return info;
}

/// A closed study of half a second under this name.
inline StudyInfo addStudy(LocalStudyDatabase& database, const QByteArray& lastName)
{
    StudyInfo info = sampleInfoOf(lastName);
    Study* study = database.createStudy(info);
    appendSampleRecording(*study, 0.5);
    fillSampleResults(*study, 0.5, 72.0, 1);
    database.saveStudy(study);
    database.closeStudy(study);
    return info;
}

/// A study file in its old form, made by hand.
inline QByteArray oldStudyFile(int id, const QByteArray& baseFilename, const QByteArray& lastName = "Perez")
{
    return "VTSTUDY1{\"study\":{\"id\":" + QByteArray::number(id) + ",\"baseFilename\":\"" + baseFilename +
           "\"},\"patient\":{\"lastName\":\"" + lastName + "\"}}";
}

inline QList<qint32> listedIds(LocalStudyDatabase& database)
{
    QList<qint32> ids;
    for (const StudyInfo& info : database.listStudies())
        ids << info.id;
    return ids;
}
