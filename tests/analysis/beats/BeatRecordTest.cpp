#include "analysis/beats/TBeatRecord.h"

#include "analysis/beats/BeatSamples.h"

#include <QtEndian>
#include <QtTest>

#include <limits>

using Limits = std::numeric_limits<double>;

class BeatRecordTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray packed(const TBeat& beat, int channelCount)
    {
        const TBeatRecord record(channelCount);
        QByteArray bytes(record.size(), '\x55');
        record.pack(beat, bytes.data());
        return bytes;
    }

    static TBeat repacked(const TBeat& beat)
    {
        return TBeatRecord(beat.channelCount()).unpack(packed(beat, beat.channelCount()).constData(), 0);
    }

    static void putDouble(QByteArray& bytes, int offset, double x)
    {
        quint64 bits = 0;
        memcpy(&bits, &x, sizeof bits);
        qToLittleEndian(bits, bytes.data() + offset);
    }

private Q_SLOTS:
    void theSizeFollowsTheChannels()
    {
        QCOMPARE(TBeatRecord(0).size(), 56);
        QCOMPARE(TBeatRecord(1).size(), 136);
        QCOMPARE(TBeatRecord(16).size(), 1336);
        QCOMPARE(TBeatRecord(99).size(), 1336);
    }

    void packingGivesTheBytesWrittenByHand()
    {
        QCOMPARE(packed(samples::writtenBeat(), 2).toHex(), samples::writtenBytes().toHex());
    }

    void unpackingTheBytesWrittenByHandGivesTheBeat()
    {
        const TBeat beat = TBeatRecord(2).unpack(samples::writtenBytes().constData(), 17);
        TBeat expected = samples::writtenBeat();
        for (const int slot : {TBeat::takesPart, TBeat::qrsType, TBeat::pType, TBeat::tType})
            expected.setFiducial(1, slot, 0.0);
        QVERIFY(samples::sameBeat(beat, expected));
        QCOMPARE(beat.index(), 17);
        QVERIFY(!beat.isValueSet(3));
    }

    void everySlotStandsInItsOwnPlace()
    {
        const int offsets[] = {56, 64, 72, 80, 88, 96, 106, 104, 108, 112, 120, 128};
        const QByteArray nothing = packed(TBeat(1), 1);
        for (int slot = 0; slot < 12; ++slot) {
            TBeat beat(1);
            beat.setFiducial(0, slot, 1.0);
            const QByteArray bytes = packed(beat, 1);
            const int size = slot == 0 ? 4 : slot >= 6 && slot <= 8 ? 2 : 8;
            QVERIFY(bytes.mid(offsets[slot], size) != QByteArray(size, '\0'));
            QByteArray rest = bytes;
            rest.replace(offsets[slot], size, QByteArray(size, '\0'));
            QCOMPARE(rest.toHex(), nothing.toHex());
        }
    }

    void anAbsentRecordIsWrittenAsZero() { QCOMPARE(packed(TBeat(1), 1).mid(56), QByteArray(80, '\0')); }

    void zeroTimesReadAsAbsentAndFlagsAndTypesAsSet()
    {
        TBeat beat(1);
        for (int slot = 0; slot < 12; ++slot)
            beat.setFiducial(0, slot, 0.0);
        const TBeat read = repacked(beat);
        for (int slot = 0; slot < 12; ++slot) {
            const bool always = slot == 0 || (slot >= 6 && slot <= 8);
            QCOMPARE(read.isFiducialSet(0, slot), always);
            QCOMPARE(read.fiducial(0, slot), always ? 0.0 : -1.0);
        }
    }

    void negativeTimesReadAsAbsent()
    {
        TBeat beat(1);
        beat.setFiducial(0, TBeat::rPosition, -0.5);
        QVERIFY(!repacked(beat).isFiducialSet(0, TBeat::rPosition));
    }

    void valuesAreStoredRawAndUnsetOnlyAtMinusOne()
    {
        TBeat beat(1);
        beat.setValue(0, 0.0);
        beat.setValue(1, -1.0);
        beat.setValue(2, -0.5);
        const TBeat read = repacked(beat);
        QVERIFY(read.isValueSet(0));
        QCOMPARE(read.value(0), 0.0);
        QVERIFY(!read.isValueSet(1));
        QCOMPARE(read.value(2), -0.5);
        QVERIFY(read.isValueSet(2));
        QVERIFY(!read.isValueSet(3));
    }

    void wholeNumbersAreTruncatedAndClamped_data()
    {
        QTest::addColumn<double>("written");
        QTest::addColumn<double>("flag");
        QTest::addColumn<double>("type");
        QTest::newRow("truncated") << 1.9 << 1.0 << 1.0;
        QTest::newRow("truncated below zero") << -1.9 << -1.0 << -1.0;
        QTest::newRow("16 bits end") << 40000.0 << 40000.0 << 32767.0;
        QTest::newRow("16 bits begin") << -40000.0 << -40000.0 << -32768.0;
        QTest::newRow("32 bits end") << 1e300 << 2147483647.0 << 32767.0;
        QTest::newRow("infinite") << -Limits::infinity() << -2147483648.0 << -32768.0;
        QTest::newRow("not a number") << Limits::quiet_NaN() << 0.0 << 0.0;
    }

    void wholeNumbersAreTruncatedAndClamped()
    {
        QFETCH(double, written);
        QFETCH(double, flag);
        QFETCH(double, type);
        TBeat beat(1);
        for (const int slot : {TBeat::takesPart, TBeat::qrsType, TBeat::pType, TBeat::tType})
            beat.setFiducial(0, slot, written);
        const TBeat read = repacked(beat);
        QCOMPARE(read.fiducial(0, TBeat::takesPart), flag);
        for (const int slot : {TBeat::qrsType, TBeat::pType, TBeat::tType})
            QCOMPARE(read.fiducial(0, slot), type);
    }

    void whatIsNotFiniteIsNeverWritten()
    {
        TBeat beat(1);
        beat.setWindow(Limits::infinity(), Limits::quiet_NaN());
        beat.setValue(1, Limits::quiet_NaN());
        beat.setFiducial(0, TBeat::rPosition, Limits::infinity());
        QCOMPARE(packed(beat, 1), packed(TBeat(1), 1));
    }

    void whatIsNotFiniteInAFileReadsAsAbsent()
    {
        for (const double x : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
            QByteArray bytes = samples::writtenBytes();
            for (const int offset : {0, 8, 16, 24, 32, 40, 64, 72, 80, 88, 96, 112, 120, 128})
                putDouble(bytes, offset, x);
            const TBeat beat = TBeatRecord(2).unpack(bytes.constData(), 0);
            QCOMPARE(beat.windowStart(), 0.0);
            QCOMPARE(beat.windowLength(), 0.0);
            for (int value = 0; value < 4; ++value)
                QVERIFY(!beat.isValueSet(value));
            for (const int slot : {1, 2, 3, 4, 5, 9, 10, 11})
                QVERIFY(!beat.isFiducialSet(0, slot));
            QCOMPARE(beat.fiducial(0, TBeat::pType), -1.0);
        }
    }

    void aRejectedBeatIsToldByItsNumber()
    {
        TBeat beat(1);
        beat.setNumber(4);
        beat.setValid(false);
        QCOMPARE(repacked(beat).number(), -1);
        QVERIFY(!repacked(beat).valid());
        beat.setNumber(-7);
        QCOMPARE(repacked(beat).number(), -7);
        beat.setNumber(0);
        beat.setValid(true);
        QCOMPARE(repacked(beat).number(), 0);
        QVERIFY(repacked(beat).valid());
    }

    void channelsThatTheBeatLacksDoNotTakePart()
    {
        TBeat beat(1);
        beat.setFiducial(0, TBeat::takesPart, 1.0);
        const TBeat read = TBeatRecord(3).unpack(packed(beat, 3).constData(), 0);
        QCOMPARE(read.channelCount(), 3);
        QCOMPARE(read.fiducial(0, TBeat::takesPart), 1.0);
        QCOMPARE(read.fiducial(2, TBeat::takesPart), 0.0);
        QCOMPARE(packed(samples::writtenBeat(), 1), samples::writtenBytes().left(136));
    }

    void randomBeatsComeBackWhole()
    {
        std::mt19937 random(44);
        for (int round = 0; round < 500; ++round) {
            const TBeat beat = samples::randomBeat(random, round % 17);
            QVERIFY(samples::sameBeat(repacked(beat), beat));
        }
    }

    void anyBytesCanBeReadAndPackedAgain()
    {
        std::mt19937 random(45);
        const TBeatRecord record(3);
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes(record.size(), '\0');
            for (char& byte : bytes)
                byte = char(random());
            const TBeat once = record.unpack(bytes.constData(), 0);
            QVERIFY(samples::sameBeat(repacked(once), once));
        }
    }
};

QTEST_GUILESS_MAIN(BeatRecordTest)
#include "BeatRecordTest.moc"
