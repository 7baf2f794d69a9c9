#include "study/StudyIndex.h"
#include "FailureText.h"
#include "StoreFolder.h"

#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

namespace {

StudyInfo row(qint32 id, const QByteArray& lastName)
{
    StudyInfo info;
    info.id = id;
    info.baseFilename = lastName + "-20240105093012";
    info.studyType = "ECG";
    info.lastName = lastName;
    return info;
}

/// What the program's own connection answers.
QVariant answer(const char* statement)
{
    QSqlQuery query;
    return query.exec(QLatin1String(statement)) && query.next() ? query.value(0) : QVariant();
}

} // namespace

class StudyIndexTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        QVERIFY(QDir().mkpath(m_folder->path() + QStringLiteral("/data")));
        m_path = m_folder->index();
    }

    void cleanup() { QVERIFY(!QSqlDatabase::contains()); }

    void aNewIndexIsEmptyAndHasTheOneTable()
    {
        StudyIndex index(m_path);
        QVERIFY(index.isNew());
        index.keep();
        QVERIFY(index.list().empty());
        QCOMPARE(m_folder->sql("select group_concat(sql, ';') from sqlite_master").toString(),
                 QStringLiteral("CREATE TABLE Study(id integer primary key, data text)"));
        QCOMPARE(QSqlDatabase::database().driverName(), QStringLiteral("QSQLITE"));
    }

    void anIndexIsKeptUnderItsNameAndOpenedAgain()
    {
        {
            StudyIndex index(m_path);
            index.insert(row(7, "Perez"));
            index.keep();
            index.insert(row(8, "Lopez"));
        }
        QCOMPARE(listing(m_folder->path() + QStringLiteral("/data")), QStringList(m_path));
        StudyIndex index(m_path);
        QVERIFY(!index.isNew());
        QCOMPARE(index.list(), (std::vector<StudyInfo>{row(7, "Perez"), row(8, "Lopez")}));
    }

    void anIndexThatIsNotDeclaredCompleteIsGone()
    {
        {
            StudyIndex index(m_path);
            index.beginTransaction();
            index.insert(row(7, "Perez"));
            QVERIFY(!QFile::exists(m_path));
        }
        QCOMPARE(listing(m_folder->path() + QStringLiteral("/data")), QStringList());
        QVERIFY(StudyIndex(m_path).isNew());
    }

    void whatADeadProcessLeftUnfinishedIsNotUsed()
    {
        QVERIFY(writeFile(m_path + QStringLiteral(".new"), "half an index"));
        QVERIFY(writeFile(m_path + QStringLiteral(".new-journal"), "half a journal"));
        StudyIndex index(m_path);
        index.insert(row(7, "Perez"));
        index.keep();
        QCOMPARE(index.list().size(), size_t(1));
        QCOMPARE(listing(m_folder->path() + QStringLiteral("/data")), QStringList(m_path));
    }

    void otherProgramsReadTheIndex()
    {
        const QString sqlite3 = QStandardPaths::findExecutable(QStringLiteral("sqlite3"));
        if (sqlite3.isEmpty())
            QSKIP("sqlite3 is not installed");
        {
            StudyIndex index(m_path);
            index.keep();
            index.insert(row(7, "Perez"));
        }
        QProcess process;
        process.start(sqlite3, {m_path, QStringLiteral(".schema"), QStringLiteral("pragma integrity_check"),
                                QStringLiteral("pragma journal_mode"),
                                QStringLiteral("select id, typeof(data), data from Study")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(
            QString::fromUtf8(process.readAllStandardOutput()),
            QStringLiteral("CREATE TABLE Study(id integer primary key, data text);\nok\ndelete\n7|text|%1\n")
                .arg(QStringLiteral("{\"baseFilename\":\"Perez-20240105093012\",\"patientFirstName\":\"\","
                                    "\"patientLastName\":\"Perez\",\"status\":\"\","
                                    "\"studyDateTime\":\"\",\"studyType\":\"ECG\"}")));
    }

    void rowsSurviveAPowerCutInOneFile()
    {
        for (int round = 0; round < 2; ++round) {
            StudyIndex index(m_path);
            index.keep();
            QCOMPARE(answer("pragma journal_mode").toString(), QStringLiteral("delete"));
            QCOMPARE(answer("pragma synchronous").toInt(), 2);
        }
    }

    void rowsAreFoundChangedAndRemoved()
    {
        StudyIndex index(m_path);
        index.keep();
        index.insert(row(9, "Perez"));
        index.insert(row(3, "Lopez"));
        QCOMPARE(index.find(9), std::optional(row(9, "Perez")));
        QCOMPARE(index.find(4), std::nullopt);
        index.update(row(9, "Gomez"));
        QCOMPARE(index.list(), (std::vector<StudyInfo>{row(3, "Lopez"), row(9, "Gomez")}));
        index.update(row(4, "Nobody"));
        QCOMPARE(index.list().size(), size_t(2));
        index.remove(3);
        index.remove(3);
        QCOMPARE(index.list(), (std::vector<StudyInfo>{row(9, "Gomez")}));
    }

    void textsAreNotReadAsStatements()
    {
        StudyIndex index(m_path);
        index.keep();
        index.insert(row(1, "x'); drop table Study; --"));
        QCOMPARE(index.find(1), std::optional(row(1, "x'); drop table Study; --")));
    }

    void anIdIsThereOnce()
    {
        StudyIndex index(m_path);
        index.keep();
        index.insert(row(9, "Perez"));
        QVERIFY(failureText([&] {
                    index.insert(row(9, "Lopez"));
                }).contains(QStringLiteral("UNIQUE constraint failed: Study.id")));
        QCOMPARE(index.list(), (std::vector<StudyInfo>{row(9, "Perez")}));
    }

    void aTransactionIsSeenWhenItIsCommitted()
    {
        StudyIndex index(m_path);
        index.keep();
        index.beginTransaction();
        index.insert(row(9, "Perez"));
        QCOMPARE(m_folder->sql("select count(*) from Study").toInt(), 0);
        index.commit();
        QCOMPARE(m_folder->sql("select count(*) from Study").toInt(), 1);
    }

    void aFileThatIsNoDatabaseIsToldAndLeftAlone()
    {
        const QByteArray text(4096, 'x');
        QVERIFY(writeFile(m_path, text));
        QVERIFY(failureText([&] {
                    StudyIndex index(m_path);
                }).contains(QStringLiteral("file is not a database")));
        QVERIFY(contentOf(m_path) == text);
    }

    void aFileThatCannotBeMadeIsToldInTheDriversWords()
    {
        const QString path = m_folder->beside("absent/studies.sqlite");
        QVERIFY(failureText([&] {
                    StudyIndex index(path);
                }).contains(QStringLiteral("unable to open database file")));
    }

    void aTableThatIsMissingIsToldInTheDriversWords()
    {
        QVERIFY(writeFile(m_path, QByteArray()));
        StudyIndex index(m_path);
        QVERIFY(!index.isNew());
        QVERIFY(failureText([&] { index.list(); }).contains(QStringLiteral("no such table: Study")));
    }

private:
    std::unique_ptr<StoreFolder> m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(StudyIndexTest)
#include "StudyIndexTest.moc"
