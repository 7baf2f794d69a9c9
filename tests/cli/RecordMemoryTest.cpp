#include "cli/Recording.h"
#include "study/StoreFolder.h"

#include <QtTest>

namespace {

constexpr qint64 mostGrowthKb = 64 * 1024;

/// Minutes of signal: VELANTOR_SOAK_MINUTES, or as many as are soon over.
int minutes()
{
    const int asked = qEnvironmentVariableIntValue("VELANTOR_SOAK_MINUTES");
    return asked > 5 ? asked : 20;
}

/// "VmRSS" is what the process has in memory, "VmHWM" the most that it ever had.
qint64 memoryKb(qint64 process, const QByteArray& key)
{
    const QByteArray status = contentOf(QStringLiteral("/proc/%1/status").arg(process));
    const int place = status.indexOf(key);
    return place < 0 ? 0 : status.mid(place + key.size() + 1).trimmed().split(' ').first().toLongLong();
}

} // namespace

/// A long recording does not fill the memory.
class RecordMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("a sanitizer keeps memory that was given back");
#endif
        if (memoryKb(QCoreApplication::applicationPid(), "VmHWM") == 0)
            QSKIP("the system tells no sizes of processes");
    }

    void memoryGrowsLittleAfterTheFirstFiveMinutes()
    {
        const StoreFolder folder;
        TRecording recording(folder.path(), wordsOf("DEMO --unpaced --protocol Bruce")

                                                << QStringLiteral("--stop-after")
                                                << QString::number(60 * minutes()));
        // The test may watch another build of the tool than its own.
        if (qEnvironmentVariableIsSet("VELANTOR_SOAK_CLI"))
            recording.process.setProgram(qEnvironmentVariable("VELANTOR_SOAK_CLI"));
        recording.start();
        QVERIFY(recording.waitFor("stage", 1, 120000)); // the rest has lasted five minutes
        const qint64 afterFive = memoryKb(recording.process.processId(), "VmRSS");
        qint64 most = afterFive;
        while (recording.process.state() != QProcess::NotRunning) {
            most = qMax(most, memoryKb(recording.process.processId(), "VmHWM"));
            recording.process.waitForFinished(100);
        }
        QCOMPARE(recording.wait(), 0);
        QVERIFY(recording.lines("finished").first().value(QLatin1String("samples")).toInt() >=
                30000 * minutes());
        qInfo("%lld KB after five minutes of signal, at most %lld KB more in %d minutes", afterFive,
              most - afterFive, minutes());
        QVERIFY(afterFive > 0);
        QVERIFY(most - afterFive < mostGrowthKb);
    }
};

QTEST_GUILESS_MAIN(RecordMemoryTest)
#include "RecordMemoryTest.moc"
