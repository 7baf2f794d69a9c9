#include "study/TBeatFile.h"

#include "analysis/beats/BeatSamples.h"
#include "analysis/signals/TInt16Signal.h"
#include "base/Error.h"
#include "study/FileSamples.h"

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using samples::contentOf;

namespace {

/// Stands for the recording, of which the beats file wants the channel count alone.
class TRecording : public TInt16Signal
{
public:
    explicit TRecording(int channelCount) : TInt16Signal(16, 16, channelCount, 500) {}
};

TBeat beatAt(double start, int number = 0)
{
    TBeat beat(1);
    beat.setWindow(start, 0.5);
    beat.setNumber(number);
    return beat;
}

} // namespace

class BeatFileTest : public QObject
{
    Q_OBJECT

private:
    QString path() const { return m_folder.filePath(QString::fromUtf8(QTest::currentTestFunction())); }

    static QString errorOf(const QString& path, int channels, int headerSize, bool create)
    {
        try {
            const TBeatFile file(TRecording(channels), path, headerSize, create);
        } catch (const TError& error) {
            return error.text();
        }
        return QString();
    }

private Q_SLOTS:
    void theFileIsHeaderThenRecords()
    {
        TBeatFile file(TRecording(2), path(), 256, true);
        file.writeHeader("VTBEATS1");
        QCOMPARE(file.append(samples::writtenBeat()), 0);
        QCOMPARE(file.append(samples::writtenBeat()), 1);
        const QByteArray record = samples::writtenBytes();
        QCOMPARE(record.size(), 56 + 80 * 2);
        QCOMPARE(contentOf(path()), QByteArray("VTBEATS1") + QByteArray(248, '\0') + record + record);
    }

    void beatsReadAfterReopening()
    {
        std::mt19937 random(49);
        std::vector<TBeat> beats;
        const TRecording ecg(14);
        {
            TBeatFile file(ecg, path(), 256, true);
            for (int i = 0; i < 300; ++i) {
                beats.push_back(samples::randomBeat(random, 14));
                QCOMPARE(file.append(beats.back()), i);
            }
        }
        const TBeatFile file(ecg, path());
        QCOMPARE(file.count(), 300);
        TBeat beat;
        for (int i = 299; i >= 0; --i) {
            QVERIFY(file.read(i, beat));
            QCOMPARE(beat.index(), i);
            QVERIFY(samples::sameBeat(beat, beats[i]));
        }
    }

    void anIndexOutOfRangeReadsNothing()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        file.append(beatAt(1.0, 5));
        TBeat beat = beatAt(9.0, 77);
        for (const int index : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
            QVERIFY(!file.read(index, beat));
            QVERIFY(!file.beat(index, beat));
        }
        QCOMPARE(beat.number(), 77);
        QVERIFY(file.read(0, beat));
        QCOMPARE(beat.number(), 5);
    }

    void updateRewritesOneRecordInPlace()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        for (int i = 0; i < 3; ++i)
            file.append(beatAt(i + 1.0, i));
        const QByteArray before = contentOf(path());
        TBeat beat;
        QVERIFY(file.read(1, beat));
        beat.setFiducial(0, TBeat::tPeak, 2.25);
        QVERIFY(file.update(beat));
        const QByteArray after = contentOf(path());
        QCOMPARE(after.size(), before.size());
        QCOMPARE(after.left(256 + 136), before.left(256 + 136));
        QCOMPARE(after.mid(256 + 2 * 136), before.mid(256 + 2 * 136));
        TBeat read;
        QVERIFY(file.read(1, read));
        QCOMPARE(read.fiducial(0, TBeat::tPeak), 2.25);
        QCOMPARE(read.number(), 1);
    }

    void updateIgnoresAnIndexOutsideTheFile()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        file.append(beatAt(1.0));
        const QByteArray before = contentOf(path());
        TBeat beat = beatAt(5.0);
        for (const int index : {-1, 1, std::numeric_limits<int>::max()}) {
            beat.setIndex(index);
            QVERIFY(!file.update(beat));
        }
        QCOMPARE(contentOf(path()), before);
        QVERIFY(!file.writeFailed());
    }

    void zeroInADoubleSlotReadsAsAbsent()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        TBeat beat = beatAt(1.0);
        beat.setFiducial(0, TBeat::pPeak, 0.0);
        file.append(beat);
        QVERIFY(file.read(0, beat));
        QVERIFY(!beat.isFiducialSet(0, TBeat::pPeak));
    }

    void sizesReadAsWholeRecords_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("count");
        QTest::newRow("empty") << 0 << 0;
        QTest::newRow("within the header") << 255 << 0;
        QTest::newRow("header alone") << 256 << 0;
        QTest::newRow("cut record") << 256 + 135 << 0;
        QTest::newRow("one record") << 256 + 136 << 1;
        QTest::newRow("two and a cut one") << 256 + 3 * 136 - 1 << 2;
    }

    void sizesReadAsWholeRecords()
    {
        QFETCH(int, size);
        QFETCH(int, count);
        QVERIFY(samples::makeFile(path(), QByteArray(size, '\0')));
        TBeatFile file(TRecording(1), path());
        QCOMPARE(file.count(), count);
        QCOMPARE(file.append(beatAt(1.0, 12)), count);
        QCOMPARE(QFileInfo(path()).size(), qint64(256 + (count + 1) * 136));
        TBeat beat;
        QVERIFY(file.read(count, beat));
        QCOMPARE(beat.number(), 12);
    }

    void isAStore()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        TBeatStore& store = file;
        QCOMPARE(store.maxCount(), std::numeric_limits<int>::max());
        TBeat beat;
        QVERIFY(!store.beatAt(1.0, beat));
        for (int i = 0; i < 100; ++i)
            QCOMPARE(store.add(beatAt(i + 1.0, i % 3 ? i : -1)), i);
        QCOMPARE(store.count(), 100);
        QVERIFY(store.beatAt(42.25, beat));
        QCOMPARE(beat.index(), 41);
        QVERIFY(!store.beatAt(42.5, beat));
        QVERIFY(store.firstBeatAfter(42.0, beat));
        QCOMPARE(beat.index(), 42);
        QVERIFY(store.nextValidBeat(beat, beat));
        QCOMPARE(beat.index(), 43);
        QVERIFY(store.previousValidBeat(beat, beat));
        QCOMPARE(beat.index(), 41);
        QVERIFY(store.lastBeatBefore(1.5, beat));
        QCOMPARE(beat.index(), 0);
        QVERIFY(!beat.valid());
    }

    void headersArePaddedAndCut()
    {
        TBeatFile file(TRecording(1), path(), 8, true);
        file.append(beatAt(1.0, 3));
        file.writeHeader("0123456789");
        QCOMPARE(file.header(), QByteArray("01234567"));
        file.writeHeader("ab");
        QCOMPARE(contentOf(path()).left(8), QByteArray("ab\0\0\0\0\0\0", 8));
        TBeat beat;
        QVERIFY(file.read(0, beat));
        QCOMPARE(beat.number(), 3);
    }

    void openingFailsWithItsText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("headerSize");
        QTest::newRow("no channel") << QStringLiteral("good") << 0 << 256;
        QTest::newRow("negative header") << QStringLiteral("good") << 1 << -1;
        QTest::newRow("no such folder") << QStringLiteral("none/file") << 1 << 256;
        QTest::newRow("a folder") << QStringLiteral(".") << 1 << 256;
    }

    void openingFailsWithItsText()
    {
        QFETCH(QString, name);
        QFETCH(int, channels);
        QFETCH(int, headerSize);
        const QString good = m_folder.filePath(QStringLiteral("good"));
        QVERIFY(samples::makeFile(good, QByteArray(500, 'x')));
        const QString target = m_folder.filePath(name);
        QCOMPARE(errorOf(target, channels, headerSize, false), QStringLiteral("Cannot open file"));
        QCOMPARE(errorOf(target, channels, headerSize, true), QStringLiteral("Cannot create file"));
        QCOMPARE(QFileInfo(good).size(), qint64(500));
    }

    void aMissingFileIsNotMadeByOpening()
    {
        QCOMPARE(errorOf(path(), 1, 256, false), QStringLiteral("Cannot open file"));
        QVERIFY(!QFile::exists(path()));
    }

    void beatsAreBroughtToTheDisk()
    {
        TBeatFile file(TRecording(1), path(), 256, true);
        file.append(beatAt(1.0));
        QVERIFY(file.sync());
        QVERIFY(!file.writeFailed());
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(BeatFileTest)
#include "BeatFileTest.moc"
