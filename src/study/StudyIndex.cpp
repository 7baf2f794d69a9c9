#include "study/StudyIndex.h"

#include "base/Error.h"
#include "study/IndexRow.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

void require(bool done, const QSqlError& error)
{
    if (!done)
        throw TError(error.text());
}

void bindAndRun(QSqlQuery& query)
{
    require(query.exec(), query.lastError());
}

QSqlQuery prepared(const char* statement)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    require(query.prepare(QLatin1String(statement)), query.lastError());
    return query;
}

} // namespace

StudyIndex::StudyIndex(const QString& path)
    : m_path(path), m_isNew(!QFile::exists(path)), m_unfinished(m_isNew)
{
    const QString driver = QStringLiteral("QSQLITE");
    if (!QSqlDatabase::drivers().contains(driver))
        throw TError("SQLite driver not available");
    m_database = QSqlDatabase::addDatabase(driver);
    m_database.setDatabaseName(path);
    require(m_database.open(), m_database.lastError());
    configure();
    if (m_isNew)
        createTable();
}

StudyIndex::~StudyIndex()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    if (m_unfinished)
        QFile::remove(m_path);
}

void StudyIndex::configure()
{
    // The rollback journal, so that users may delete the index file alone; whole transactions survive a power
    // cut.
    QSqlQuery query;
    require(query.exec(QStringLiteral("pragma journal_mode = delete")), query.lastError());
    require(query.exec(QStringLiteral("pragma synchronous = full")), query.lastError());
}

void StudyIndex::createTable()
{
    QSqlQuery query;
    require(query.exec(QStringLiteral("create table Study(id integer primary key, data text)")),
            query.lastError());
}

void StudyIndex::beginTransaction()
{
    require(m_database.transaction(), m_database.lastError());
}

void StudyIndex::commit()
{
    require(m_database.commit(), m_database.lastError());
}

std::vector<StudyInfo> StudyIndex::list()
{
    QSqlQuery query = prepared("select id, data from Study");
    bindAndRun(query);
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
    bindAndRun(query);
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
    bindAndRun(query);
}

void StudyIndex::update(const StudyInfo& info)
{
    QSqlQuery query = prepared("update Study set data = :data where id = :id");
    query.bindValue(QStringLiteral(":data"), indexRowFromInfo(info));
    query.bindValue(QStringLiteral(":id"), info.id);
    bindAndRun(query);
}

void StudyIndex::remove(qint32 id)
{
    QSqlQuery query = prepared("delete from Study where id = ?");
    query.addBindValue(id);
    bindAndRun(query);
}
