#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

class LocalStudyDatabase;
class Study;
class TEcgFile;

namespace accuracy {

/// A record among the recordings: a set is a folder of them.
struct TRecordPlace
{
    QByteArray set;
    QByteArray name;
    QString path; ///< without ending

    /// Samples per second, as its header tells. Throws TError.
    double frequency() const;
    /// The path of one of its annotation files.
    QString annotations(const QString& ending) const;
    bool hasAnnotations(const QString& ending) const;
};

/// The sets that have annotations of people.
QStringList annotatedSets();

/// All records of the annotated sets, or those that are chosen by "SET" or "SET/NAME", in the order of the
/// choice; those of a set by name, names that are numbers as numbers. Throws TError "Folder not found: ..."
/// or "Record not found: ...".
std::vector<TRecordPlace> findRecords(const QString& recordings, const QStringList& chosen);

/// Makes studies of records in a data folder of its own, which goes with this object.
class TScratchStore
{
public:
    /// Throws TError if there is no place for it.
    TScratchStore();
    ~TScratchStore();
    TScratchStore(const TScratchStore&) = delete;
    TScratchStore& operator=(const TScratchStore&) = delete;

    /// The signal of the record's study, valid until the next import: by then, the study is deleted. Throws
    /// TError.
    TEcgFile& import(const TRecordPlace& record);

private:
    void forget();

    QTemporaryDir m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
    Study* m_study = nullptr;
};

} // namespace accuracy
