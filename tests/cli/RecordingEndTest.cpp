#include "cli/Recording.h"
#include "study/FullDisk.h"
#include "study/StoreFolder.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "support/PseudoTerminal.h"

#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

namespace {

/// A stress test of the demonstration in its own time.
const char* const pacedTest = "DEMO --protocol Bruce --stage-scale 60 --beats --patient lastName=Diaz";

} // namespace

/// However a recording ends, the study is there.
class RecordingEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<StoreFolder>(); }

    void anInterruptionEndsTheStudyProperly_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::addColumn<QString>("options");
        const QString paced = QString::fromLatin1(pacedTest);
        const QString unpaced = QStringLiteral("DEMO --unpaced --ecg --beats");
        QTest::newRow("interrupt") << SIGINT << paced;
        QTest::newRow("terminate") << SIGTERM << paced;
        QTest::newRow("interrupt, signals pouring in") << SIGINT << unpaced;
        QTest::newRow("terminate, signals pouring in") << SIGTERM << unpaced;
    }

    void anInterruptionEndsTheStudyProperly()
    {
        QFETCH(int, signalNumber);
        QFETCH(QString, options);
        TRecording recording(m_folder->path(), options.split(QLatin1Char(' ')));
        recording.start();
        QVERIFY(recording.waitFor("beat", 4));
        recording.send(signalNumber);
        QCOMPARE(recording.wait(), 0);
        QCOMPARE(recording.error(), QByteArray());
        const QList<QJsonObject> lines = recording.lines();
        QCOMPARE(lines.last().value(QLatin1String("event")).toString(), QStringLiteral("finished"));
        QCOMPARE(recording.lines("finished").size(), 1);
        QVERIFY(recording.lines("warning").isEmpty());

        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr);
        QCOMPARE(study->ecg()->sampleCount(), lines.last().value(QLatin1String("samples")).toInt());
        QCOMPARE(study->beats()->count(), lines.last().value(QLatin1String("beats")).toInt());
        QVERIFY(study->beats()->count() >= 4);
        // Its stages are all there: together they are as long as the signal.
        double seconds = 0.0;
        for (int i = 0; i < study->protocol()->stageCount(); ++i)
            seconds += study->protocol()->stage(i).duration() + 1.0;
        QVERIFY(study->protocol()->stageCount() > 0 && seconds >= study->ecg()->duration());
    }

    void manyInterruptionsAreLikeOne()
    {
        TRecording recording(m_folder->path(), wordsOf(pacedTest));
        recording.start();
        QVERIFY(recording.waitFor("started"));
        for (int i = 0; i < 20; ++i)
            recording.send(i % 2 == 0 ? SIGINT : SIGTERM);
        QCOMPARE(recording.wait(), 0);
        QCOMPARE(recording.lines("finished").size(), 1);
    }

    void aKilledRecordingLacksAtMostItsLastSecond()
    {
        // Five in their own time, all into one folder, and five as fast as can be, one by one.
        QRandomGenerator random(11);
        const auto nameOf = [](int i) { return QStringLiteral("personIdNumber=%1").arg(i); };
        LocalStudyDatabase(m_folder->path()).listStudies();
        std::vector<std::unique_ptr<TRecording>> recordings;
        for (int i = 0; i < 5; ++i) {
            recordings.push_back(std::make_unique<TRecording>(
                m_folder->path(), wordsOf(pacedTest) << QStringLiteral("--patient") << nameOf(i)));
            recordings.back()->start();
        }
        for (const auto& recording : recordings) {
            QVERIFY(recording->waitFor("beat", 2));
            QTest::qSleep(random.bounded(1500));
            recording->process.kill();
        }
        for (int i = 0; i < 5; ++i) {
            recordings.push_back(std::make_unique<TRecording>(
                m_folder->path(), wordsOf("DEMO --unpaced --protocol Bruce --stage-scale 20 --beats")));
            recordings.back()->start();
            QVERIFY(recordings.back()->waitFor("beat"));
            QTest::qSleep(random.bounded(400));
            recordings.back()->process.kill();
        }
        for (const auto& recording : recordings) {
            QCOMPARE(recording->wait(), -1);
            checkSurvivor(*recording);
            if (QTest::currentTestFailed())
                return;
        }
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.listStudies().size(), size_t(10));
        database.rebuildIndex();
        QCOMPARE(database.listStudies().size(), size_t(10));
    }

    void aFullDiskIsToldOnceAndTheExaminationGoesOn()
    {
        TRecording recording(m_folder->path(), wordsOf("DEMO --unpaced --ecg --stop-after 60 --beats"));
        {
            const FullDisk disk(200000);
            recording.start();
            QVERIFY(recording.process.waitForStarted());
        }
        QCOMPARE(recording.wait(), 1);
        QCOMPARE(recording.error(), QByteArray("The recording cannot be written. Is the disk full?\n"));
        const QList<QJsonObject> warnings = recording.lines("warning");
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings.first().value(QLatin1String("text")).toString(),
                 QStringLiteral("The recording cannot be written. Is the disk full?"));
        const QList<QJsonObject> beats = recording.lines("beat");
        QVERIFY(beats.last().value(QLatin1String("time")).toDouble() > 55.0);

        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr);
        const int kept = recording.lines("finished").first().value(QLatin1String("samples")).toInt();
        QCOMPARE(study->ecg()->sampleCount(), kept);
        QVERIFY(kept > 200000 / 28 - 4096 / 28 - 51 && kept < 200000 / 28);
        checkSamples(*study->ecg());
    }

    void anOutputWithoutRoomIsNoReasonToEndTheStudy()
    {
        TRecording recording(m_folder->path(), wordsOf("DEMO --unpaced --ecg --stop-after 20 --beats"));
        recording.process.setStandardOutputFile(QStringLiteral("/dev/full"));
        QCOMPARE(recording.run(), 1);
        QCOMPARE(recording.error(), QByteArray("Write error\n"));
        LocalStudyDatabase database(m_folder->path());
        const QList<qint32> ids = listedIds(database);
        QCOMPARE(ids.size(), 1);
        Study* study = database.openStudy(ids.first());
        QVERIFY(study != nullptr && study->ecg()->duration() >= 20.0);
    }

    void aFullDiskThatHasRoomAgainIsNoFailureInTheEnd()
    {
        TRecording recording(m_folder->path(), wordsOf("DEMO --ecg --stop-after 10 --beats"));
        {
            const FullDisk disk(100000);
            recording.start();
            QVERIFY(recording.process.waitForStarted());
        }
        QVERIFY(recording.waitFor("warning"));
        QVERIFY(makeRoom(static_cast<pid_t>(recording.process.processId())));
        QCOMPARE(recording.wait(), 0);
        QCOMPARE(recording.error(), QByteArray());
        QCOMPARE(recording.lines("warning").size(), 1);
        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr && study->ecg()->duration() >= 10.0);
        checkSamples(*study->ecg());
    }

    void whatWasTypedInOutlivesAKill()
    {
        TRecording recording(m_folder->path(), wordsOf("DEMO --protocol Bruce --bp 1:133/77 --event 1:dizzy "
                                                       "--beats"));
        recording.start();
        QVERIFY(recording.waitFor("beat", 4));
        recording.process.kill();
        QCOMPARE(recording.wait(), -1);
        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr);
        QCOMPARE(study->results().trend("sysBPTrend")->values(), std::vector<double>{133.0});
        QCOMPARE(study->events().count(), 1);
        QCOMPARE(study->events().at(0).description, QByteArray("dizzy"));
    }

    void aStageThatWasToldOutlivesAKill()
    {
        TRecording recording(m_folder->path(), wordsOf("DEMO --protocol Bruce --next-stage 1"));
        recording.start();
        QVERIFY(recording.waitFor("stage"));
        recording.process.kill();
        QCOMPARE(recording.wait(), -1);
        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr && study->protocol() != nullptr);
        QCOMPARE(study->protocol()->stageCount(), 1);
        QCOMPARE(study->events().count(), 1);
    }

    void aReaderThatGoesAwayEndsTheStudyProperly()
    {
        const TRecording recording(m_folder->path(), wordsOf(pacedTest));
        const QString tool = QStringLiteral("'") + recording.process.program() + QStringLiteral("' '") +
                             recording.process.arguments().join(QStringLiteral("' '")) + QLatin1Char('\'');
        QProcess shell;
        shell.start(
            QStringLiteral("sh"),
            {QStringLiteral("-c"), QStringLiteral("{ %1; echo status $? >&2; } | head -n 2").arg(tool)});
        QVERIFY(shell.waitForFinished(60000));
        QCOMPARE(shell.readAllStandardError(), QByteArray("Write error\nstatus 1\n"));
        const QJsonObject started = QJsonDocument::fromJson(shell.readLine()).object();
        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(started.value(QLatin1String("id")).toInt());
        QVERIFY(study != nullptr && study->protocol()->stageCount() > 0);
        QVERIFY(study->ecg()->duration() > 2.0);
    }

    void onATerminalProgressIsOneLine()
    {
        TPseudoTerminal terminal;
        TRecording recording(m_folder->path(),
                             wordsOf("DEMO --protocol Bruce --stop-after 3.5 --patient lastName=Diaz"));
        recording.process.setStandardErrorFile(QString::fromStdString(terminal.path()));
        recording.start();
        // Its reader holds the line open.
        QByteArray shown;
        while (recording.process.state() != QProcess::NotRunning) {
            recording.process.waitForFinished(50);
            shown += terminal.readSome(4096);
        }
        QCOMPARE(recording.wait(), 0);
        QVERIFY2(shown.contains("\r0:02  Rest 1"), shown.constData());
        QVERIFY(shown.trimmed().count('\n') == 0 && shown.endsWith('\n'));
        QCOMPARE(recording.lines().size(), 2); // nothing of it among the lines
    }

private:
    /// Lifts the limit that a process has of its parent.
    static bool makeRoom(pid_t process)
    {
        rlimit limit{};
        if (prlimit(process, RLIMIT_FSIZE, nullptr, &limit) != 0)
            return false;
        limit.rlim_cur = limit.rlim_max;
        return prlimit(process, RLIMIT_FSIZE, &limit, nullptr) == 0;
    }

    void checkSurvivor(TRecording& recording)
    {
        QCOMPARE(recording.lines("started").size(), 1);
        QVERIFY(recording.lines("finished").isEmpty());
        LocalStudyDatabase database(m_folder->path());
        QVERIFY(listedIds(database).contains(recording.id()));
        Study* study = database.openStudy(recording.id());
        QVERIFY(study != nullptr);
        const QList<QJsonObject> beats = recording.lines("beat");
        const double told = beats.last().value(QLatin1String("time")).toDouble();
        QVERIFY2(study->ecg()->duration() >= told,
                 qPrintable(QStringLiteral("%1 s of %2").arg(study->ecg()->duration()).arg(told)));
        QVERIFY(study->beats()->count() >= beats.size());
        checkSamples(*study->ecg());
    }

    /// They are those of the demonstration, none is lost and none is torn.
    static void checkSamples(TEcgFile& stored)
    {
        const QByteArray demo = contentOf(QStringLiteral(ECG500));
        const int frames = demo.size() / 28;
        int wrong = 0;
        for (int i = 0; i < stored.sampleCount(); ++i) {
            for (int channel = 0; channel < 14; ++channel)
                wrong += stored.sample(channel, i) !=
                         qFromLittleEndian<qint16>(demo.constData() + 28 * (i % frames) + 2 * channel);
        }
        QVERIFY(stored.sampleCount() > 0);
        QCOMPARE(wrong, 0);
    }

    std::unique_ptr<StoreFolder> m_folder;
};

QTEST_GUILESS_MAIN(RecordingEndTest)
#include "RecordingEndTest.moc"
