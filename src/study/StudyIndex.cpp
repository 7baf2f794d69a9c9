#include "study/StudyIndex.h"

#include "base/Error.h"
#include "study/IndexRow.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

/// The name under which SQLite keeps no file.
constexpr QLatin1String inMemory(":memory:", 8);

/// `source` is a database or a query, asked for its error only after the call that may have failed.
template <typename Source> void require(bool done, const Source& source)
{
    if (!done)
        throw TError(source.lastError().text());
}

void run(QSqlQuery& query)
{
    require(query.exec(), query);
}

void run(const char* statement)
{
    QSqlQuery query;
    require(query.exec(QLatin1String(statement)), query);
}

QSqlQuery prepared(const char* statement)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    require(query.prepare(QLatin1String(statement)), query);
    return query;
}

} // namespace

StudyIndex::StudyIndex(const QString& path)
    : m_path(path), m_isNew(!QFile::exists(path)), m_unfinished(m_isNew)
{
    if (!QSqlDatabase::drivers().contains(QStringLiteral("QSQLITE")))
        throw TError("SQLite driver not available");
    removeUnfinished();
    try {
        open();
        prepare();
    } catch (const TError&) {
        close();
        throw;
    }
}

StudyIndex::~StudyIndex()
{
    close();
}

void StudyIndex::open()
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    m_database.setDatabaseName(filePath());
    require(m_database.open(), m_database);
    // The rollback journal, so that users may delete the index file alone; whole transactions survive a power
    // cut.
    run("pragma journal_mode = delete");
    run("pragma synchronous = full");
}

void StudyIndex::prepare()
{
    if (m_isNew)
        run("create table Study(id integer primary key, data text)");
}

void StudyIndex::keep()
{
    const bool isFileToBeMoved = m_unfinished && m_path != inMemory;
    if (isFileToBeMoved) {
        disconnect();
        if (!QFile::rename(filePath(), m_path))
            throw TError("Cannot create file");
    }
    m_unfinished = false;
    if (isFileToBeMoved)
        open();
}

/// Where the database is at present.
QString StudyIndex::filePath() const
{
    return m_unfinished && m_path != inMemory ? m_path + QLatin1String(".new") : m_path;
}

void StudyIndex::disconnect()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void StudyIndex::close()
{
    disconnect();
    removeUnfinished();
}

void StudyIndex::removeUnfinished()
{
    if (!m_unfinished || m_path == inMemory)
        return;
    QFile::remove(filePath());
    QFile::remove(filePath() + QLatin1String("-journal"));
}

void StudyIndex::beginTransaction()
{
    require(m_database.transaction(), m_database);
}

void StudyIndex::commit()
{
    require(m_database.commit(), m_database);
}

std::vector<StudyInfo> StudyIndex::list()
{
    QSqlQuery query = prepared("select id, data from Study");
    run(query);
    std::vector<StudyInfo> studies;
    while (query.next()) {
        StudyInfo& info = studies.emplace_back();
        info.id = query.value(0).toInt();
        readIndexRow(info, query.value(1).toString());
    }
    return studies;
}

std::optional<StudyInfo> StudyIndex::find(qint32 id)
{
    QSqlQuery query = prepared("select data from Study where id = ?");
    query.addBindValue(id);
    run(query);
    if (!query.next())
        return std::nullopt;
    StudyInfo info;
    info.id = id;
    readIndexRow(info, query.value(0).toString());
    return info;
}

void StudyIndex::insert(const StudyInfo& info)
{
    QSqlQuery query = prepared("insert into Study(id, data) values (:id, :data)");
    query.bindValue(QStringLiteral(":id"), info.id);
    query.bindValue(QStringLiteral(":data"), indexRowFromInfo(info));
    run(query);
}

void StudyIndex::update(const StudyInfo& info)
{
    QSqlQuery query = prepared("update Study set data = :data where id = :id");
    query.bindValue(QStringLiteral(":data"), indexRowFromInfo(info));
    query.bindValue(QStringLiteral(":id"), info.id);
    run(query);
}

void StudyIndex::remove(qint32 id)
{
    QSqlQuery query = prepared("delete from Study where id = ?");
    query.addBindValue(id);
    run(query);
}
