#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include "base/Error.h"
#include "study/ChildProcess.h"
#include "study/FileSamples.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

constexpr int channels = 7;
constexpr int frameSize = channels * 2;
constexpr int recordSize = 56 + 80 * channels;

class TCounter : public TSignalListener
{
public:
    void signalChanged() override { ++calls; }
    int calls = 0;
};

void append(TEcgFile& file, int count)
{
    const auto data = samples::frames(channels, file.sampleCount(), count);
    file.addInterleaved(reinterpret_cast<const char*>(data.data()), int(data.size() * sizeof(short)));
}

bool samplesAreRight(TEcgFile& file)
{
    bool right = true;
    for (int channel = 0; channel < channels; ++channel)
        for (int i = 0; i < file.sampleCount(); ++i)
            right = right && file.sample(channel, i) == samples::sampleAt(channel, i);
    return right;
}

TBeat beatOf(int n)
{
    TBeat beat(channels);
    beat.setWindow(n + 1.0, 0.5);
    beat.setNumber(n);
    for (int channel = 0; channel < channels; ++channel)
        beat.setFiducial(channel, TBeat::qtInterval, n + channel + 1.0);
    return beat;
}

bool beatsAreRight(const TBeatFile& file)
{
    bool right = true;
    TBeat beat;
    for (int n = 0; n < file.count(); ++n)
        right = right && file.read(n, beat) && beat.number() == n && beat.windowStart() == n + 1.0 &&
                beat.fiducial(channels - 1, TBeat::qtInterval) == double(n + channels);
    return right;
}

/// Writes beyond that size fail in this process, as they do on a full disk.
void limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// The rights of a user without any, also where the tests run as root.
void dropRights()
{
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
        _exit(TChildProcess::threw);
}

/// The number of the first check that fails, 0 if none does.
int firstFailure(std::initializer_list<bool> checks)
{
    int number = 0;
    for (const bool check : checks) {
        ++number;
        if (!check)
            return number;
    }
    return 0;
}

} // namespace

class FileFaultsTest : public QObject
{
    Q_OBJECT

private:
    QString ecgPath() const { return m_folder.filePath(QStringLiteral("samples")); }
    QString beatPath() const { return m_folder.filePath(QStringLiteral("beats")); }

    /// What a child that is killed had finished, as far as it came to say so.
    struct TFinished
    {
        int samples = 0;
        int beats = 0;
    };

    /// Kills a child that records on and on once both files have grown to `enough` bytes.
    bool recordUntilKilled(qint64 enough, TFinished& finished) const
    {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            return false;
        TChildProcess child([this, &ends] {
            TEcgFile ecg(ecgPath(), channels, 500, 4096, true);
            TBeatFile beats(ecg, beatPath(), 256, true);
            // Should the test die first, the child neither lives on nor fills the disk.
            alarm(60);
            for (int n = 0; n < 50000; ++n) {
                append(ecg, 51);
                beats.append(beatOf(n));
                const TFinished now{ecg.sampleCount(), beats.count()};
                if (write(ends[1], &now, sizeof now) != sizeof now)
                    return 1;
            }
            return pause();
        });
        close(ends[1]);
        while (child.running() &&
               (QFileInfo(ecgPath()).size() < enough || QFileInfo(beatPath()).size() < enough))
            QTest::qSleep(1);
        child.kill();
        const bool killed = child.wait() == -1;
        while (read(ends[0], &finished, sizeof finished) == sizeof finished) {
        }
        close(ends[0]);
        return killed;
    }

private Q_SLOTS:
    void cleanup()
    {
        QFile::remove(ecgPath());
        QFile::remove(beatPath());
    }

    void whatWasAppendedSurvivesAKill_data()
    {
        QTest::addColumn<int>("enough");
        for (const int enough : {5000, 20000, 60000, 150000, 400000})
            QTest::newRow(qPrintable(QString::number(enough))) << enough;
    }

    void whatWasAppendedSurvivesAKill()
    {
        QFETCH(int, enough);
        TFinished finished;
        QVERIFY(recordUntilKilled(enough, finished));
        TEcgFile ecg(ecgPath(), channels, 500);
        QCOMPARE(qint64(ecg.sampleCount()), (QFileInfo(ecgPath()).size() - 4096) / frameSize);
        QVERIFY(ecg.sampleCount() >= (enough - 4096) / frameSize);
        // All that was finished is there, and at most the one append more that was under way.
        QVERIFY(finished.samples > 0);
        QVERIFY(ecg.sampleCount() >= finished.samples);
        QVERIFY(ecg.sampleCount() <= finished.samples + 51);
        QVERIFY(samplesAreRight(ecg));
        TBeatFile beats(ecg, beatPath());
        QCOMPARE(qint64(beats.count()), (QFileInfo(beatPath()).size() - 256) / recordSize);
        QVERIFY(beats.count() >= finished.beats);
        QVERIFY(beats.count() <= finished.beats + 1);
        QVERIFY(beatsAreRight(beats));
    }

    void aFileCutAnywhereReadsUpToTheLastWholeFrame()
    {
        TFinished finished;
        QVERIFY(recordUntilKilled(6000, finished));
        const QByteArray ecgBytes = samples::contentOf(ecgPath());
        const QByteArray beatBytes = samples::contentOf(beatPath());
        for (int cut = 0; cut < 3 * recordSize; cut += 5) {
            QVERIFY(samples::makeFile(ecgPath(), ecgBytes.chopped(cut)));
            QVERIFY(samples::makeFile(beatPath(), beatBytes.chopped(cut)));
            TEcgFile ecg(ecgPath(), channels, 500);
            QCOMPARE(ecg.sampleCount(), std::max(0, int(ecgBytes.size() - cut - 4096)) / frameSize);
            QVERIFY(samplesAreRight(ecg));
            const TBeatFile beats(ecg, beatPath());
            QCOMPARE(beats.count(), std::max(0, int(beatBytes.size() - cut - 256)) / recordSize);
            QVERIFY(beatsAreRight(beats));
        }
    }

    void aFullDiskDropsWholeAppendsAndNeverShiftsFrames()
    {
        // Room for one append and a part of the next, which ends within a frame.
        const rlim_t room = 4096 + 51 * frameSize + 20 * frameSize + 3;
        TChildProcess child([this, room] {
            TEcgFile file(ecgPath(), channels, 500, 4096, true);
            TCounter counter;
            file.addListener(&counter);
            append(file, 51);
            limitFileSize(room);
            const bool before = file.writeFailed();
            append(file, 51);
            append(file, 51);
            const bool dropped = file.sampleCount() == 51 && counter.calls == 1 && file.writeFailed();
            const qint64 sizeWhenFull = QFileInfo(ecgPath()).size();
            append(file, 10); // fits
            const bool fits = file.sampleCount() == 61 && counter.calls == 2;
            limitFileSize(RLIM_INFINITY);
            append(file, 51);
            return firstFailure({!before, dropped, sizeWhenFull == 4096 + 51 * frameSize, fits,
                                 file.sampleCount() == 112, file.writeFailed(), samplesAreRight(file)});
        });
        QCOMPARE(child.wait(), 0);
        TEcgFile file(ecgPath(), channels, 500);
        QCOMPARE(file.sampleCount(), 112);
        QVERIFY(samplesAreRight(file));
    }

    void aFullDiskDropsWholeBeats()
    {
        QVERIFY(samples::makeFile(ecgPath(), QByteArray()));
        TChildProcess child([this] {
            const TEcgFile ecg(ecgPath(), channels, 500);
            TBeatFile file(ecg, beatPath(), 256, true);
            const int first = file.append(beatOf(0));
            limitFileSize(256 + recordSize + 100);
            const int second = file.append(beatOf(1));
            const bool cut = QFileInfo(beatPath()).size() == 256 + recordSize;
            TBeat beat = beatOf(0);
            beat.setIndex(0);
            const bool updated = file.update(beat);
            const bool failed = file.writeFailed();
            limitFileSize(RLIM_INFINITY);
            const int third = file.append(beatOf(1));
            return firstFailure({first == 0, second == -1, cut, updated, failed, third == 1,
                                 file.writeFailed(), beatsAreRight(file)});
        });
        QCOMPARE(child.wait(), 0);
        const TEcgFile ecg(ecgPath(), channels, 500);
        const TBeatFile file(ecg, beatPath());
        QCOMPARE(file.count(), 2);
        QVERIFY(beatsAreRight(file));
    }

    void aFileWithoutRoomForItsHeaderIsNotCreated()
    {
        TChildProcess child([this] {
            limitFileSize(100);
            try {
                const TEcgFile file(ecgPath(), channels, 500, 4096, true);
            } catch (const TError& error) {
                return error.text() == QLatin1String("Cannot create file") ? 0 : 1;
            }
            return 2;
        });
        QCOMPARE(child.wait(), 0);
        QVERIFY(!QFile::exists(ecgPath()));
    }

    void aFileDeletedWhileRecordingIsNoticed()
    {
        TEcgFile ecg(ecgPath(), channels, 500, 4096, true);
        TBeatFile beats(ecg, beatPath(), 256, true);
        append(ecg, 51);
        beats.append(beatOf(0));
        QVERIFY(!ecg.writeFailed());
        QVERIFY(!beats.writeFailed());
        QVERIFY(QFile::remove(ecgPath()));
        QVERIFY(QFile::remove(beatPath()));
        append(ecg, 51);
        beats.append(beatOf(1));
        QVERIFY(ecg.writeFailed());
        QVERIFY(beats.writeFailed());
        QCOMPARE(ecg.sampleCount(), 102);
        QVERIFY(samplesAreRight(ecg));
        QVERIFY(beatsAreRight(beats));
    }

    void filesThatMustNotBeWrittenCanBeRead()
    {
        {
            TEcgFile ecg(ecgPath(), channels, 500, 4096, true);
            append(ecg, 100);
            TBeatFile beats(ecg, beatPath(), 256, true);
            beats.append(beatOf(0));
        }
        const QByteArray ecgBytes = samples::contentOf(ecgPath());
        const QByteArray beatBytes = samples::contentOf(beatPath());
        QCOMPARE(chmod(qPrintable(m_folder.path()), 0755), 0);
        QCOMPARE(chmod(qPrintable(ecgPath()), 0444), 0);
        QCOMPARE(chmod(qPrintable(beatPath()), 0444), 0);
        TChildProcess child([this] {
            dropRights();
            TEcgFile ecg(ecgPath(), channels, 500);
            TBeatFile beats(ecg, beatPath());
            ecg.writeHeader("x");
            beats.writeHeader("x");
            TBeat beat = beatOf(5);
            beat.setIndex(0);
            const bool updated = beats.update(beat);
            const int appended = beats.append(beat);
            return firstFailure({ecg.sampleCount() == 100, samplesAreRight(ecg), beats.count() == 1,
                                 beatsAreRight(beats), !updated, appended == -1, !ecg.writeFailed(),
                                 !beats.writeFailed(), ecg.sync(), beats.sync()});
        });
        QCOMPARE(child.wait(), 0);
        QCOMPARE(samples::contentOf(ecgPath()), ecgBytes);
        QCOMPARE(samples::contentOf(beatPath()), beatBytes);
    }

    void filesThatMustNotBeReadCannotBeOpened()
    {
        QVERIFY(samples::makeFile(ecgPath(), QByteArray(5000, '\0')));
        QCOMPARE(chmod(qPrintable(m_folder.path()), 0755), 0);
        QCOMPARE(chmod(qPrintable(ecgPath()), 0), 0);
        TChildProcess child([this] {
            dropRights();
            try {
                const TEcgFile file(ecgPath(), channels, 500);
            } catch (const TError& error) {
                return error.text() == QLatin1String("Cannot open file") ? 0 : 1;
            }
            return 2;
        });
        QCOMPARE(child.wait(), 0);
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(FileFaultsTest)
#include "FileFaultsTest.moc"
