#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

class FirDecimatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outputsAreInStepWithTheSource()
    {
        // Three taps: the output for p is h0 * x[p + 1] + h1 * x[p] + h2 * x[p - 1].
        TInt16Signal source(4, 100, 1, 1000);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{10, 20, 30, 40, 50, 60, 70, 80}}, 0, 8);
        TFirDecimator decimator({1.0, 2.0, 4.0}, 2);
        QCOMPARE(decimator.delay(), 1);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 3); // positions 0, 2 and 4, which lie before 8 - 1 - 2
        QCOMPARE(sink.sample(0, 0), 20 + 2 * 10);
        QCOMPARE(sink.sample(0, 1), 40 + 2 * 30 + 4 * 20);
        QCOMPARE(sink.sample(0, 2), 60 + 2 * 50 + 4 * 40);
        QCOMPARE(decimator.position(), 6);
    }

    void outputsAreTruncatedAndClamped()
    {
        TInt16Signal source(4, 100, 1, 1000);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{3, 0, -3, 0, 32767, 0, 0, 0}}, 0, 8);
        TFirDecimator decimator({0.0, 1.25, 0.0}, 2);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sample(0, 0), 3);
        QCOMPARE(sink.sample(0, 1), -3);
        QCOMPARE(sink.sample(0, 2), 32767);
    }

    void aDecimationOfOnePassesTheSamplesStraight()
    {
        TInt16Signal source(4, 100, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{1, 2, 3, 4, 5, 6}}, 0, 6);
        TFirDecimator decimator({9.0, 9.0, 9.0}, 1);
        decimator.attach(&source, 1);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 3); // positions 1 to 3, which lie before 6 - 1 - 1
        QCOMPARE(sink.sample(0, 0), 2);
        QCOMPARE(sink.sample(0, 2), 4);
    }

    void withoutSourceOrSinkNothingHappens()
    {
        TInt16Signal source(4, 100, 1, 500);
        append(source, {{1, 2, 3, 4, 5, 6}}, 0, 6);
        TFirDecimator decimator({1.0}, 2);
        decimator.setSink(&source);
        decimator.run();
        QCOMPARE(source.sampleCount(), 6);
        decimator.setSink(nullptr);
        decimator.attach(&source, 0);
        decimator.run();
        QCOMPARE(decimator.position(), 0);
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows_data()
    {
        QTest::addColumn<int>("taps");
        QTest::addColumn<int>("decimation");
        for (const int taps : {0, 1, 2, 29, 30}) {
            for (const int decimation : {1, 2, 3, 5, 64})
                QTest::addRow("%d taps, every %d", taps, decimation) << taps << decimation;
        }
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows()
    {
        QFETCH(int, taps);
        QFETCH(int, decimation);
        std::mt19937 generator(31);
        std::vector<double> h(taps);
        for (double& value : h)
            value = std::uniform_real_distribution<>(-0.3, 0.3)(generator);
        const int count = 9000;
        const auto samples = randomSamples(2, count, 32);
        TInt16Signal source(256, count, 2, 1000);
        TInt16Signal sink(256, count, 2, 500);
        TFirDecimator decimator(h, decimation);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        cutAtRandom(count, 5000, 33, [&](int from, int n) {
            append(source, samples, from, n);
            decimator.run();
        });
        int outputs = 0;
        for (int position = 0; position < count - taps / 2 - decimation; position += decimation, ++outputs) {
            for (int channel = 0; channel < 2; ++channel) {
                double sum = decimation == 1 ? source.sample(channel, position) : 0.0;
                for (int i = 0; i < taps && decimation > 1; ++i)
                    sum += h[i] * source.sample(channel, taps / 2 - i + position);
                QCOMPARE(sink.sample(channel, outputs), int(std::clamp(sum, -32768.0, 32767.0)));
            }
        }
        QCOMPARE(sink.sampleCount(), outputs);
    }
};

QTEST_GUILESS_MAIN(FirDecimatorTest)
#include "FirDecimatorTest.moc"
