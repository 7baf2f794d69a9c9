#pragma once

#include "study/StudyInfo.h"

#include <QSqlDatabase>
#include <QString>

#include <optional>
#include <vector>

/// The SQLite index of the studies in a data folder: a cache of what lists show, made from the study files
/// and thrown away without loss. All SQL of the program stands here. Failures throw TError with the driver's
/// text. One at a time: it is the process's default connection.
class StudyIndex
{
public:
    /// Opens the index or makes an empty one. Throws "SQLite driver not available" or the text of the
    /// failure.
    explicit StudyIndex(const QString& path);
    /// Closes the connection; an index that was made new and never `keep`t is removed again.
    ~StudyIndex();
    StudyIndex(const StudyIndex&) = delete;
    StudyIndex& operator=(const StudyIndex&) = delete;

    /// Whether the file did not exist, so that the rows have to be made from the studies.
    bool isNew() const { return m_isNew; }
    /// Declares a new index complete and puts its file in place. Until then it lies beside under another
    /// name, so that a process that dies while making it leaves none, not an empty one.
    void keep();

    void beginTransaction();
    void commit();

    /// The listed fields of every study, in the order of the ids.
    std::vector<StudyInfo> list();
    /// The listed fields of one study.
    std::optional<StudyInfo> find(qint32 id);
    /// `info.id` is the row's id.
    void insert(const StudyInfo& info);
    void update(const StudyInfo& info);
    void remove(qint32 id);

private:
    QString filePath() const;
    void open();
    void prepare();
    void disconnect();
    void close();
    void removeUnfinished();

    QString m_path;
    bool m_isNew;
    bool m_unfinished;
    QSqlDatabase m_database;
};
