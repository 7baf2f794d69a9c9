#include "analysis/detection/ChannelQuality.h"
#include "analysis/DrawnEcg.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

namespace {

constexpr int rate = 250;

/// A second of 16 bits that rises from -20000 to 20000, without a run at either end.
ecg::TRow ramp(int samples = rate)
{
    ecg::TRow row(samples);
    for (int i = 0; i < samples; ++i)
        row[i] = -20000.0 + 40000.0 * i / (samples - 1);
    return row;
}

/// Runs of samples at `level`, each `length` long, from the sample 10 on, with 0 to either side.
ecg::TRow withRuns(double level, int count, int length, int samples = rate)
{
    ecg::TRow row = ramp(samples);
    int at = 10;
    for (int run = 0; run < count; ++run, at += length + 1) {
        row[at - 1] = 0.0;
        std::fill_n(row.begin() + at, length, level);
        row[at + length] = 0.0;
    }
    return row;
}

bool isClipped(const ecg::TRow& row, int samplingRate = rate, int bits = 16)
{
    return quality::isClipped(row.data(), int(row.size()), samplingRate, bits);
}

/// A signal of one channel.
struct TOneChannel
{
    explicit TOneChannel(const ecg::TRow& row, int bits = 16) : signal(4096, 81920, 1, rate)
    {
        signal.setResolutionBits(bits);
        if (!row.empty())
            ecg::append(signal, {row}, 0, int(row.size()));
    }
    TInt16Signal signal;
};

/// A slow wave that spans `span` counts around `offset`.
ecg::TRow wave(double seconds, double span, double offset = 0.0)
{
    ecg::TRow row(std::size_t(seconds * rate));
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = offset + 0.5 * span * std::sin(2.0 * M_PI * double(i) / rate);
    return row;
}

} // namespace

class ChannelQualityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fourRunsAtOneEndAreClipping_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<int>("runs");
        QTest::addColumn<int>("length");
        QTest::addColumn<bool>("clipped");
        QTest::newRow("four at the top") << 24000.0 << 4 << 2 << true;
        QTest::newRow("three at the top") << 24000.0 << 3 << 2 << false;
        QTest::newRow("four at the bottom") << -24000.0 << 4 << 2 << true;
        QTest::newRow("three at the bottom") << -24000.0 << 3 << 2 << false;
        QTest::newRow("single samples are no runs") << 24000.0 << 30 << 1 << false;
        QTest::newRow("0.35 s in all") << 24000.0 << 1 << 87 << false;
        QTest::newRow("more than 0.35 s") << 24000.0 << 1 << 88 << true;
        QTest::newRow("more than 0.35 s at the bottom") << -24000.0 << 1 << 88 << true;
        QTest::newRow("more than 0.35 s in two runs") << 24000.0 << 2 << 44 << true;
        QTest::newRow("0.35 s in three runs") << 24000.0 << 3 << 29 << false;
    }

    void fourRunsAtOneEndAreClipping()
    {
        QFETCH(double, level);
        QFETCH(int, runs);
        QFETCH(int, length);
        QFETCH(bool, clipped);
        QCOMPARE(isClipped(withRuns(level, runs, length)), clipped);
    }

    void theTwoEndsAreCountedApart()
    {
        ecg::TRow row = withRuns(24000.0, 3, 2);
        for (int at = 100; at < 130; at += 10) {
            row[at] = row[at + 1] = -24000.0;
            row[at + 2] = 0.0;
        }
        QVERIFY(!isClipped(row));
    }

    void aRunMayTouchTheEndsOfTheSamples()
    {
        ecg::TRow row(250, 0.0);
        for (const int at : {0, 100, 150, 248})
            row[at] = row[at + 1] = 30000.0;
        QVERIFY(isClipped(row));
    }

    void samplesTwoCountsFromTheExtremeBelongToARun()
    {
        ecg::TRow row = ramp();
        for (const int at : {10, 20, 30, 40}) {
            row[at] = 24000.0;
            row[at + 1] = 23998.0;
        }
        QVERIFY(isClipped(row));
        row[11] = 23997.0;
        QVERIFY(!isClipped(row));
    }

    void aQuarterOfTheScaleIsNeededAtOneEnd_data()
    {
        QTest::addColumn<int>("bits");
        QTest::addColumn<double>("half");
        QTest::newRow("16 bits") << 16 << 16384.0;
        QTest::newRow("13 bits") << 13 << 2048.0;
        QTest::newRow("12 bits") << 12 << 1024.0;
    }

    void aQuarterOfTheScaleIsNeededAtOneEnd()
    {
        QFETCH(int, bits);
        QFETCH(double, half);
        // Two counts within the extreme is what has to reach it.
        for (const double sign : {1.0, -1.0}) {
            QVERIFY(isClipped(ecg::TRow(250, sign * (half + 2.0)), rate, bits));
            QVERIFY(!isClipped(ecg::TRow(250, sign * (half + 1.0)), rate, bits));
        }
    }

    void theLongestRunsAllowedFollowTheRate_data()
    {
        QTest::addColumn<int>("samplingRate");
        QTest::newRow("125") << 125;
        QTest::newRow("250") << 250;
        QTest::newRow("360") << 360;
        QTest::newRow("500") << 500;
    }

    void theLongestRunsAllowedFollowTheRate()
    {
        QFETCH(int, samplingRate);
        const int longest = 35 * samplingRate / 100;
        QVERIFY(!isClipped(withRuns(24000.0, 1, longest, samplingRate), samplingRate));
        QVERIFY(isClipped(withRuns(24000.0, 1, longest + 1, samplingRate), samplingRate));
    }

    void noSamplesAreNotClipped() { QVERIFY(!quality::isClipped(nullptr, 0, rate, 16)); }

    void theFlatLimitFollowsTheResolution()
    {
        QCOMPARE(quality::flatLimit(12), 128.0);
        QCOMPARE(quality::flatLimit(13), 4.0);
        QCOMPARE(quality::flatLimit(16), 32.0);
        QCOMPARE(quality::flatLimit(1), 0.0625);
        QCOMPARE(quality::flatLimit(32), 2097152.0);
    }

    void aChannelHasToSpanTheFlatLimit_data()
    {
        QTest::addColumn<int>("bits");
        QTest::addColumn<double>("span");
        QTest::addColumn<bool>("usable");
        // The smoothing takes a fiftieth of a wave of 1 Hz, truncation up to a count.
        QTest::newRow("16 bits") << 16 << 36.0 << true;
        QTest::newRow("16 bits, flat") << 16 << 30.0 << false;
        QTest::newRow("13 bits") << 13 << 8.0 << true;
        QTest::newRow("13 bits, flat") << 13 << 3.0 << false;
        QTest::newRow("12 bits") << 12 << 136.0 << true;
        QTest::newRow("12 bits, flat") << 12 << 124.0 << false;
    }

    void aChannelHasToSpanTheFlatLimit()
    {
        QFETCH(int, bits);
        QFETCH(double, span);
        QFETCH(bool, usable);
        TOneChannel one(wave(6.0, span), bits);
        QCOMPARE(quality::isUsable(one.signal, 0, 3.0), usable);
    }

    void onlyTheThreeSecondsAroundTheBeatCount()
    {
        ecg::TRow row(6 * rate, 0.0);
        row[int(0.9 * rate)] = 20000.0;
        row[int(4.2 * rate)] = 20000.0;
        TOneChannel one(row);
        QCOMPARE(quality::smoothedSpan(one.signal, 0, 3.0), 0.0);
        QVERIFY(quality::smoothedSpan(one.signal, 0, 2.5) > 1000.0);
        QVERIFY(quality::smoothedSpan(one.signal, 0, 3.5) > 1000.0);
    }

    void whatIsFastIsSmoothedAway()
    {
        ecg::TRow row(6 * rate);
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = i % 2 == 0 ? 300.0 : -300.0;
        TOneChannel one(row);
        QVERIFY(!quality::isUsable(one.signal, 0, 3.0));
    }

    void anOffsetIsNoSignalWhereverTheSignalBeginsOrEnds_data()
    {
        QTest::addColumn<double>("t");
        for (const double t : {-1.0, 0.0, 0.2, 3.0, 5.5, 5.99, 6.0, 7.0, 100.0})
            QTest::newRow(qPrintable(QString::number(t))) << t;
    }

    void anOffsetIsNoSignalWhereverTheSignalBeginsOrEnds()
    {
        QFETCH(double, t);
        for (const double offset : {10000.0, -10000.0, 40.0}) {
            TOneChannel one(ecg::TRow(6 * rate, offset));
            QVERIFY(quality::smoothedSpan(one.signal, 0, t) < 1e-6);
            QVERIFY(!quality::isUsable(one.signal, 0, t));
        }
    }

    void aGoodChannelIsUsableFromItsStartToItsEnd()
    {
        TOneChannel one(ecg::row(6.0, rate, ecg::regular(0.3, 0.8, 7)));
        for (const double t : {0.3, 1.1, 3.5, 5.1})
            QVERIFY(quality::isUsable(one.signal, 0, t));
    }

    void aClippedChannelIsNotUsable()
    {
        ecg::TRow row(6 * rate);
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = std::clamp(40000.0 * std::sin(12.0 * M_PI * double(i) / rate), -32768.0, 32767.0);
        TOneChannel one(row);
        QVERIFY(!quality::isUsable(one.signal, 0, 3.0));
    }

    void aSignalShorterThanTheSmoothingIsFlat()
    {
        for (const int samples : {0, 1, 24}) {
            TOneChannel cut(ecg::TRow(samples, 5.0));
            QCOMPARE(quality::smoothedSpan(cut.signal, 0, 0.05), 0.0);
            QVERIFY(!quality::isUsable(cut.signal, 0, 0.05));
        }
    }
};

QTEST_GUILESS_MAIN(ChannelQualityTest)
#include "ChannelQualityTest.moc"
