#include "cli/ConsoleTool.h"
#include "study/StoreFolder.h"
#include "study/StudyDocument.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

namespace {

QJsonObject object(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

const QStringList commandNames{
    QStringLiteral("list"),   QStringLiteral("show"),     QStringLiteral("samples"),
    QStringLiteral("export"), QStringLiteral("import"),   QStringLiteral("protocols"),
    QStringLiteral("delete"), QStringLiteral("archives"), QStringLiteral("rebuild"),
    QStringLiteral("filter"), QStringLiteral("analyse"),  QStringLiteral("import-wfdb"),
    QStringLiteral("record")};

} // namespace

class ConsoleToolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        LocalStudyDatabase database(m_folder->path());
        m_info = addStudy(database, "Nu\303\261ez");
        m_id = QString::number(m_info.id);
    }

    void listTellsTheRowsOfTheIndex()
    {
        const TResult result = run({QStringLiteral("list")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.error, QByteArray());
        QCOMPARE(result.output.count('\n'), 1);
        QCOMPARE(result.lines(), QList<QJsonObject>{listRow()});
    }

    void listOfAnEmptyStoreIsEmptyAndMakesTheFolder()
    {
        const StoreFolder empty;
        const TResult result = runTool({QStringLiteral("--data"), empty.path(), QStringLiteral("list")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output + result.error, QByteArray());
        QVERIFY(QFile::exists(empty.index()) && QFile::exists(empty.protocols()));
    }

    void withoutAFolderTheToolWorksOnThatOfTheDesktopProgram()
    {
        const QString home = m_folder->beside("home");
        QCOMPARE(runTool({QStringLiteral("list")}, home).status, 0);
        QVERIFY(QFile::exists(home + QStringLiteral("/VelantorStress/data/studies.sqlite")));
    }

    void showTellsTheStudyAsLoaded()
    {
        const TResult result = run({QStringLiteral("show"), m_id});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output.count('\n'), 1);
        LocalStudyDatabase database(m_folder->path());
        const std::unique_ptr<Study> study = database.loadStudy(m_folder->studyFile(m_info.baseFilename));
        QJsonObject expected = makeStudyDocument(*study);
        expected.insert(QLatin1String("beats"), study->beats()->count());
        expected.insert(
            QLatin1String("ecg"),
            object(
                "{\"samples\":250,\"channels\":[\"I\",\"II\",\"III\",\"aVR\",\"aVL\",\"aVF\",\"V1\",\"V2\","
                "\"V3\",\"V4\",\"V5\",\"V6\",\"CM5\",\"CR5\"],\"samplingRate\":500,\"rangeMin\":-300,"
                "\"rangeMax\":300,\"resolution\":16}"));
        QCOMPARE(result.lines().first(), expected);
        QCOMPARE(result.lines().first().keys(),
                 QStringList({QStringLiteral("beats"), QStringLiteral("ecg"), QStringLiteral("echoScoring"),
                              QStringLiteral("events"), QStringLiteral("patient"), QStringLiteral("protocol"),
                              QStringLiteral("results"), QStringLiteral("study")}));
    }

    void showTellsWhatIsNotSetAsNull()
    {
        StudyInfo info = sampleInfoOf("plain");
        {
            LocalStudyDatabase database(m_folder->path());
            database.closeStudy(database.createStudy(info));
        }
        const TResult result = run({QStringLiteral("show"), QString::number(info.id)});
        QCOMPARE(result.status, 0);
        QVERIFY(result.lines().first().value(QLatin1String("echoScoring")).isNull());
        QVERIFY(result.lines().first().contains(QLatin1String("protocol")));
    }

    void samplesAreCounts()
    {
        QList<int> expected;
        {
            LocalStudyDatabase database(m_folder->path());
            Study* study = database.openStudy(m_info.id);
            for (int i = 100; i < 200; ++i)
                expected << study->ecg()->sample(1, i);
        }
        QVERIFY(*std::max_element(expected.begin(), expected.end()) > 50);
        QCOMPARE(samples("1", "100", "100"), expected);
    }

    void samplesOutsideTheRecordingAreZero()
    {
        const int first = samples("1", "0", "1").value(0, -1);
        const int last = samples("1", "249", "1").value(0, -1);
        QCOMPARE(samples("1", "-2", "3"), (QList<int>{0, 0, first}));
        QCOMPARE(samples("1", "249", "3"), (QList<int>{last, 0, 0}));
        QCOMPARE(samples("1", "2147483647", "2"), (QList<int>{0, 0}));
        QCOMPARE(samples("1", "-2147483648", "2"), (QList<int>{0, 0}));
        QCOMPARE(samples("14", "150", "2"), (QList<int>{0, 0}));
        QCOMPARE(samples("-1", "150", "1"), QList<int>{0});
        QCOMPARE(samples("2147483647", "150", "1"), QList<int>{0});
        QCOMPARE(run({QStringLiteral("samples"), m_id, QStringLiteral("0"), QStringLiteral("0"),
                      QStringLiteral("0")})
                     .output,
                 QByteArray("{\"values\":[]}\n"));
    }

    void aBrokenIndexIsMadeAgain()
    {
        QFile index(m_folder->index());
        QVERIFY(index.open(QIODevice::WriteOnly) && index.write("no index of ours, but long enough") > 0);
        index.close();
        QCOMPARE(run({QStringLiteral("list")}).status, 1);
        QCOMPARE(run({QStringLiteral("rebuild")}).status, 0);
        QVERIFY(run({QStringLiteral("list")}).output.contains(m_info.baseFilename));
    }

    void protocolsAreTheTableAsInItsFile()
    {
        const TResult result = run({QStringLiteral("protocols")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, contentOf(m_folder->protocols()) + '\n');
        QVERIFY(!QJsonDocument::fromJson(result.output).array().isEmpty());
    }

    void aStudyTravelsFromStoreToStore()
    {
        const QString shared = m_folder->outside();
        QCOMPARE(run({QStringLiteral("export"), m_id, shared}).status, 0);
        const TResult archives = run({QStringLiteral("archives"), shared});
        QCOMPARE(archives.status, 0);
        QJsonObject row = listRow();
        row.remove(QStringLiteral("id"));
        row.remove(QStringLiteral("status"));
        QCOMPARE(archives.lines(), QList<QJsonObject>{row});

        const StoreFolder other;
        const QString archive =
            shared + QLatin1Char('/') + QString::fromUtf8(m_info.baseFilename) + QStringLiteral(".vtz");
        const TResult import =
            runTool({QStringLiteral("--data"), other.path(), QStringLiteral("import"), archive});
        QCOMPARE(import.status, 0);
        QCOMPARE(import.lines(), QList<QJsonObject>{listRow()});
        QCOMPARE(runTool({QStringLiteral("--data"), other.path(), QStringLiteral("show"), m_id}).output,
                 run({QStringLiteral("show"), m_id}).output);
    }

    void deleteRemovesAStudy()
    {
        const TResult result = run({QStringLiteral("delete"), m_id});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output + result.error, QByteArray());
        QVERIFY(!m_folder->hasAnyFile(m_info.baseFilename));
        QCOMPARE(run({QStringLiteral("list")}).output, QByteArray());
    }

    void rebuildTakesWhatTheFolderHolds()
    {
        QVERIFY(writeFile(m_folder->studyFile("by hand"), oldStudyFile(1, "by hand")));
        QCOMPARE(run({QStringLiteral("list")}).output.count('\n'), 1);
        const TResult result = run({QStringLiteral("rebuild")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output + result.error, QByteArray());
        QCOMPARE(run({QStringLiteral("list")}).output.count('\n'), 2);
    }

    void aCommandThatFailsTellsWhyInOneLine_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("text");
        const QByteArray unknown = "Study file not found\n";
        QTest::newRow("show") << QStringLiteral("show 1") << unknown;
        QTest::newRow("samples") << QStringLiteral("samples 1 0 0 1") << unknown;
        QTest::newRow("filter") << QStringLiteral("filter 1 0 0 1") << unknown;
        QTest::newRow("export") << QStringLiteral("export 1 .") << unknown;
        QTest::newRow("delete") << QStringLiteral("delete 1") << unknown;
        QTest::newRow("import") << QStringLiteral("import /dev/null")
                                << QByteArray("Cannot open zip archive\n");
        QTest::newRow("archives") << QStringLiteral("archives /dev/null")
                                  << QByteArray("Folder not found: /dev/null\n");
        QTest::newRow("export into no folder")
            << QStringLiteral("export ID /dev/null") << QByteArray("Cannot create zip archive\n");
    }

    void aCommandThatFailsTellsWhyInOneLine()
    {
        QFETCH(QString, command);
        QFETCH(QByteArray, text);
        const QString id = m_info.id == 1 ? QStringLiteral("2") : QStringLiteral("1");
        command.replace(QStringLiteral(" 1"), QLatin1Char(' ') + id);
        command.replace(QStringLiteral("ID"), m_id);
        const TResult result = run(command.split(QLatin1Char(' ')));
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.error, text);
    }

    void aStudyWithoutItsFilesIsNotFound()
    {
        QVERIFY(QFile::remove(m_folder->studyFile(m_info.baseFilename)));
        const TResult result = run({QStringLiteral("show"), m_id});
        QCOMPARE(result.status, 1);
        QCOMPARE(result.error, QByteArray("Study file not found\n"));
        QCOMPARE(run({QStringLiteral("list")}).lines().size(), 1);
    }

    void aFolderThatCannotBeWrittenIsToldInTheWordsOfSqlite()
    {
        const TResult result =
            runTool({QStringLiteral("--data"), QStringLiteral("/dev/null/x"), QStringLiteral("list")});
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QVERIFY(isErrorLine(result.error));
        QVERIFY2(result.error.contains("unable to open database file"), result.error.constData());
    }

    void aWrongCommandLineIsToldInOneLine_data()
    {
        QTest::addColumn<QString>("words");
        for (const char* words : {"",
                                  "bogus",
                                  "List",
                                  "list extra",
                                  "show",
                                  "show 1 2",
                                  "show abc",
                                  "show 1x",
                                  "show 0",
                                  "show -1",
                                  "show 99999999999",
                                  "show 1.5",
                                  "samples 1 0 0",
                                  "samples 1 x 0 1",
                                  "samples 1 0 x 1",
                                  "samples 1 0 0 -1",
                                  "samples 1 0 0 1 1",
                                  "filter 1 0 0",
                                  "filter 1 x 0 1",
                                  "filter 1 0 x 1",
                                  "filter 1 0 0 -1",
                                  "filter 1 0 0 1 --loud",
                                  "filter 1 0 0 1 --notch --notch",
                                  "samples 1 0 0 1 --notch",
                                  "protocols x",
                                  "import",
                                  "import a b",
                                  "export 1",
                                  "export x .",
                                  "archives",
                                  "archives a b",
                                  "delete",
                                  "delete x",
                                  "rebuild x",
                                  "--bogus list",
                                  "list --bogus",
                                  "show --bogus 1",
                                  "-x list",
                                  "--data"})
            QTest::newRow(words) << QString::fromLatin1(words);
    }

    void aWrongCommandLineIsToldInOneLine()
    {
        QFETCH(QString, words);
        const TResult result = run(words.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(isErrorLine(result.error), result.error.constData());
        QVERIFY(m_folder->hasAnyFile(m_info.baseFilename));
    }

    void anEmptyFolderNameIsAWrongCommandLine()
    {
        QCOMPARE(runTool({QStringLiteral("--data"), QString(), QStringLiteral("list")}).status, 2);
    }

    void helpNamesEveryCommand()
    {
        const TResult result = runTool({QStringLiteral("--help")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.error, QByteArray());
        for (const QString& name : commandNames)
            QVERIFY2(result.output.contains("\n  " + name.toUtf8()), qPrintable(name));
        QVERIFY(result.output.contains("--data DIR"));
        QCOMPARE(runTool({QStringLiteral("show"), QStringLiteral("--help")}).output, result.output);
        QCOMPARE(runTool({QStringLiteral("-h")}).output, result.output);
    }

    void theVersionIsThatOfTheProgram()
    {
        const TResult result = runTool({QStringLiteral("--version")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray("velantor-cli 1.27c\n"));
    }

    void outputThatIsNotTakenIsAFailure_data()
    {
        QTest::addColumn<QString>("words");
        QTest::newRow("list") << QStringLiteral("list");
        QTest::newRow("show") << QStringLiteral("show ID");
        QTest::newRow("many samples") << QStringLiteral("samples ID 1 0 1000000");
        QTest::newRow("filter") << QStringLiteral("filter ID 1 0 1000000");
        QTest::newRow("protocols") << QStringLiteral("protocols");
        QTest::newRow("help") << QStringLiteral("--help");
        QTest::newRow("version") << QStringLiteral("--version");
    }

    void outputThatIsNotTakenIsAFailure()
    {
        QFETCH(QString, words);
        const QString tool = QStringLiteral("'%1' --data '%2' %3")
                                 .arg(QStringLiteral(VELANTOR_CLI), m_folder->path(),
                                      QString(words).replace(QStringLiteral("ID"), m_id));
        QCOMPARE(shell(tool + QStringLiteral(" >/dev/full")), QByteArray("Write error\nstatus 1\n"));
        // The reader is gone before the tool says a word.
        const QString piped = QStringLiteral("{ sleep 0.3; %1; echo status $? >&2; } | true").arg(tool);
        QCOMPARE(shell(piped + QStringLiteral("; true"), false), QByteArray("Write error\nstatus 1\n"));
    }

    void theManualNamesEveryCommandAndIsSound()
    {
        const QString page = QStringLiteral(VELANTOR_SOURCES "/docs/man/velantor-cli.1");
        const QByteArray text = contentOf(page);
        for (const QString& name : commandNames)
            QVERIFY2(text.contains("\n.B " + name.toUtf8() + '\n') ||
                         text.contains("\n.BI \"" + name.toUtf8() + ' '),
                     qPrintable(name));
        if (QStandardPaths::findExecutable(QStringLiteral("groff")).isEmpty())
            QSKIP("groff is not installed");
        QProcess groff;
        groff.start(QStringLiteral("groff"),
                    {QStringLiteral("-man"), QStringLiteral("-ww"), QStringLiteral("-Tutf8"), page});
        QVERIFY(groff.waitForFinished());
        QCOMPARE(groff.readAllStandardError(), QByteArray());
        QCOMPARE(groff.exitCode(), 0);
        QVERIFY(groff.readAllStandardOutput().size() > 2000);
    }

private:
    TResult run(const QStringList& words) const
    {
        return runTool(QStringList{QStringLiteral("--data"), m_folder->path()} + words);
    }

    /// Standard error of a line of shell and, if asked for, its status.
    static QByteArray shell(QString line, bool withStatus = true)
    {
        if (withStatus)
            line += QStringLiteral("; echo status $? >&2");
        QProcess process;
        process.start(QStringLiteral("sh"), {QStringLiteral("-c"), line});
        process.waitForFinished(60000);
        return process.readAllStandardError();
    }

    QList<int> samples(const char* channel, const char* from, const char* count) const
    {
        const TResult result = run({QStringLiteral("samples"), m_id, QLatin1String(channel),
                                    QLatin1String(from), QLatin1String(count)});
        QList<int> values;
        for (const QJsonValue value : object(result.output).value(QLatin1String("values")).toArray())
            values << value.toInt(-99999);
        return result.status == 0 && result.error.isEmpty() ? values : QList<int>();
    }

    QJsonObject listRow() const
    {
        QJsonObject row = object("{\"status\":\"\",\"studyType\":\"Stress test\",\"firstName\":\"Ana\","
                                 "\"studyDateTime\":\"20240105093012\",\"lastName\":\"Nu\303\261ez\","
                                 "\"baseFilename\":\"12-Nu\303\261ez-Ana-20240105093012\"}");
        row.insert(QLatin1String("id"), m_info.id);
        return row;
    }

    std::unique_ptr<StoreFolder> m_folder;
    StudyInfo m_info;
    QString m_id;
};

QTEST_GUILESS_MAIN(ConsoleToolTest)
#include "ConsoleToolTest.moc"
