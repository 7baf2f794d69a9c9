#include "analysis/signals/TDoubleSignal.h"
#include "analysis/signals/TFirStream.h"
#include "analysis/signals/TFirStreamDouble.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

std::vector<double> randomTaps(int count)
{
    std::mt19937 generator(41);
    std::vector<double> taps(count);
    for (double& tap : taps)
        tap = std::uniform_real_distribution<>(-0.1, 0.1)(generator);
    return taps;
}

/// The sum from single samples, oldest sample first.
double naiveSum(TSignal& source, const std::vector<double>& h, int delay, int channel, int position)
{
    const int n = static_cast<int>(h.size());
    double sum = 0.0;
    for (int i = 0; i < n; ++i)
        sum += h[n - 1 - i] * source.sample(channel, position + 1 + delay - n + i);
    return sum;
}

} // namespace

class FirStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFilterReachesItsDelayIntoTheFuture()
    {
        // Three taps, delay 1: the output for p is h0 * x[p + 1] + h1 * x[p] + h2 * x[p - 1].
        TInt16Signal source(4, 100, 2, 500);
        TInt16Signal sink(4, 100, 2, 500);
        append(source, {{10, 20, 30, 40}, {1, 2, 3, 4}}, 0, 4);
        TFirStream stream({1.0, 2.0, 4.0}, 1);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        QCOMPARE(sink.sampleCount(), 3);
        QCOMPARE(stream.position(), 3);
        QCOMPARE(sink.sample(0, 0), 20 + 2 * 10);
        QCOMPARE(sink.sample(0, 1), 30 + 2 * 20 + 4 * 10);
        QCOMPARE(sink.sample(0, 2), 40 + 2 * 30 + 4 * 20);
        QCOMPARE(sink.sample(1, 1), 3 + 2 * 2 + 4 * 1);
    }

    void aStreamMayStopBeforeTheEndOfItsSource()
    {
        TInt16Signal source(4, 100, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{10, 20, 30, 40, 50, 60}}, 0, 6);
        TFirStream stream({1.0, 0.0, 0.0}, 1);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        for (const int end : {0, 1, 4, 2}) {
            stream.runTo(end);
            QCOMPARE(sink.sampleCount(), end < 2 ? 0 : 3);
        }
        stream.runTo(1000);
        QCOMPARE(sink.sampleCount(), 5);
        QCOMPARE(sink.sample(0, 4), 60);
    }

    void anImpulseComesOutAsTheCoefficients()
    {
        TInt16Signal source(4, 100, 1, 500);
        TDoubleSignal sink(4, 100, 1, 500);
        append(source, {{0, 0, 0, 0, 1, 0, 0, 0, 0, 0}}, 0, 10);
        TFirStreamDouble stream({0.5, -1.5, 2.5, 4.25}, 2);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        double out[8] = {};
        QCOMPARE(sink.sampleCount(), 8);
        sink.readDoubles(0, 0, 8, out);
        const double expected[] = {0, 0, 0.5, -1.5, 2.5, 4.25, 0, 0};
        for (int i = 0; i < 8; ++i)
            QCOMPARE(out[i], expected[i]);
    }

    void sixteenBitOutputIsTruncatedAndClamped()
    {
        TInt16Signal source(4, 100, 1, 500);
        TDoubleSignal sink(4, 100, 1, 500); // would keep a fraction
        append(source, {{3, -3, 32767, -32768}}, 0, 4);
        TFirStream stream({1.25}, 0);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        double out[4] = {};
        sink.readDoubles(0, 0, 4, out);
        QCOMPARE(out[0], 3.0);
        QCOMPARE(out[1], -3.0);
        QCOMPARE(out[2], 32767.0);
        QCOMPARE(out[3], -32768.0);
    }

    void itStartsAtItsPositionAndSeesWhatLiesBefore()
    {
        TInt16Signal source(4, 100, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{10, 20, 30, 40}}, 0, 4);
        TFirStream stream({1.0, 1.0}, 0);
        stream.attach(&source, 2);
        stream.setSink(&sink);
        stream.run();
        QCOMPARE(sink.sampleCount(), 2);
        QCOMPARE(sink.sample(0, 0), 50);
    }

    void whatHasLeftTheRingReadsZero()
    {
        TInt16Signal source(4, 4, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{1, 2, 3, 4, 5, 6}}, 0, 6);
        TFirStream stream({1.0, 10.0}, 0);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        const int expected[] = {0, 0, 3, 34, 45, 56};
        for (int i = 0; i < 6; ++i)
            QCOMPARE(sink.sample(0, i), expected[i]);
    }

    void aSourceShorterThanTheDelayGivesNothing()
    {
        TInt16Signal source(4, 100, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{1, 2, 3}}, 0, 3);
        TFirStream stream(std::vector<double>(7, 1.0), 3);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        QCOMPARE(sink.sampleCount(), 0);
        append(source, {{4}}, 0, 1);
        stream.run();
        QCOMPARE(sink.sampleCount(), 1);
        QCOMPARE(sink.sample(0, 0), 10);
    }

    void withoutSourceOrSinkNothingHappens()
    {
        TInt16Signal source(4, 100, 1, 500);
        append(source, {{1, 2, 3}}, 0, 3);
        TFirStream stream({1.0}, 0);
        stream.run();
        stream.setSink(&source);
        stream.run();
        QCOMPARE(source.sampleCount(), 3);
        stream.setSink(nullptr);
        stream.attach(&source, 0);
        stream.run();
        QCOMPARE(stream.position(), 0);
    }

    void furtherChannelsOfTheSinkGetZeros()
    {
        TInt16Signal source(4, 3000, 1, 500);
        TInt16Signal sink(4, 3000, 16, 500);
        append(source, {std::vector<short>(3000, 5)}, 0, 3000);
        TFirStream stream({1.0}, 0);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        stream.run();
        QCOMPARE(sink.sample(0, 2999), 5);
        QCOMPARE(sink.sample(1, 2999), 0);
        QCOMPARE(sink.sample(15, 1024), 0);
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows_data()
    {
        QTest::addColumn<int>("taps");
        QTest::addColumn<int>("delay");
        QTest::addColumn<int>("longest");
        QTest::newRow("no taps") << 0 << 0 << 100;
        QTest::newRow("one tap") << 1 << 0 << 100;
        QTest::newRow("two taps, all ahead") << 2 << 1 << 3;
        QTest::newRow("even, small blocks") << 12 << 6 << 51;
        QTest::newRow("odd") << 195 << 97 << 60;
        QTest::newRow("odd, long stretches") << 195 << 97 << 5000;
        QTest::newRow("delay beyond the taps") << 5 << 20 << 700;
        QTest::newRow("no delay") << 33 << 0 << 700;
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows()
    {
        QFETCH(int, taps);
        QFETCH(int, delay);
        QFETCH(int, longest);
        const auto h = randomTaps(taps);
        const int count = 6000;
        const auto samples = randomSamples(2, count, 42);
        TInt16Signal source(256, count, 2, 500);
        TInt16Signal sink(256, count, 2, 500);
        TDoubleSignal exactSink(256, count, 2, 500);
        TFirStream stream(h, delay);
        TFirStreamDouble exact(h, delay);
        stream.attach(&source, 0);
        stream.setSink(&sink);
        exact.attach(&source, 0);
        exact.setSink(&exactSink);
        cutAtRandom(count, longest, 43, [&](int from, int n) {
            append(source, samples, from, n);
            stream.run();
            exact.run();
        });
        QCOMPARE(sink.sampleCount(), count - delay);
        QCOMPARE(exactSink.sampleCount(), count - delay);
        for (int channel = 0; channel < 2; ++channel) {
            for (int i = 0; i < count - delay; ++i) {
                const double sum = naiveSum(source, h, delay, channel, i);
                double value = 0.0;
                exactSink.readDoubles(channel, i, 1, &value);
                QVERIFY2(value == sum, "not bit for bit the same");
                QCOMPARE(sink.sample(channel, i), int(std::clamp(sum, -32768.0, 32767.0)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(FirStreamTest)
#include "FirStreamTest.moc"
