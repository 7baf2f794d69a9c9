#include "analysis/signals/TAverageDecimator.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <limits>

class AverageDecimatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachOutputIsATruncatedMean()
    {
        TInt16Signal source(4, 100, 2, 1000);
        TInt16Signal sink(4, 100, 2, 500);
        append(source, {{1, 2, -1, -2, 7, 7, 9}, {0, 1, 2, 3, -32768, -32768, 9}}, 0, 7);
        TAverageDecimator decimator(2);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 3);
        QCOMPARE(sink.sample(0, 0), 1);
        QCOMPARE(sink.sample(0, 1), -1);
        QCOMPARE(sink.sample(0, 2), 7);
        QCOMPARE(sink.sample(1, 1), 2);
        QCOMPARE(sink.sample(1, 2), -32768);
        QCOMPARE(decimator.position(), 6);
    }

    void itStartsAtItsPosition()
    {
        TInt16Signal source(4, 100, 1, 1000);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{1, 2, 3, 5, 8}}, 0, 5);
        TAverageDecimator decimator(2);
        decimator.attach(&source, 3);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 1);
        QCOMPARE(sink.sample(0, 0), 6);
        decimator.attach(&source, 50);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 1);
    }

    void aPositionBelowTheStartCountsAsTheStart()
    {
        TInt16Signal source(4, 100, 1, 500);
        TInt16Signal sink(4, 100, 1, 500);
        append(source, {{2, 4, 6, 8}}, 0, 4);
        TAverageDecimator decimator(2);
        for (const int position : {-1, -50, std::numeric_limits<int>::min()}) {
            decimator.attach(&source, position);
            QCOMPARE(decimator.position(), 0);
        }
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 2);
        QCOMPARE(sink.sample(0, 0), 3);
        QCOMPARE(sink.sample(0, 1), 7);
    }

    void aSinkWithFewerChannelsGetsTheFirstOnes()
    {
        TInt16Signal source(4, 100, 3, 500);
        TInt16Signal sink(4, 100, 2, 500);
        append(source, {{2, 4}, {10, 20}, {100, 200}}, 0, 2);
        TAverageDecimator decimator(2);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 1);
        QCOMPARE(sink.sample(0, 0), 3);
        QCOMPARE(sink.sample(1, 0), 15);
        QCOMPARE(sink.sample(2, 0), 0);
    }

    void withoutSourceOrSinkNothingHappens()
    {
        TInt16Signal source(4, 100, 1, 1000);
        append(source, {{1, 2, 3}}, 0, 3);
        TAverageDecimator decimator(1);
        decimator.run();
        decimator.setSink(&source);
        decimator.run();
        QCOMPARE(source.sampleCount(), 3);
        decimator.setSink(nullptr);
        decimator.attach(&source, 0);
        decimator.run();
        QCOMPARE(decimator.position(), 0);
    }

    void aFactorBelowOneCopies()
    {
        TInt16Signal source(4, 100, 1, 1000);
        TInt16Signal sink(4, 100, 1, 1000);
        append(source, {{1, 2, 3}}, 0, 3);
        TAverageDecimator decimator(0);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        decimator.run();
        QCOMPARE(sink.sampleCount(), 3);
        QCOMPARE(sink.sample(0, 2), 3);
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows_data()
    {
        QTest::addColumn<int>("factor");
        for (const int factor : {1, 2, 3, 4, 49, 2000})
            QTest::addRow("%d", factor) << factor;
    }

    void itGivesWhatTheNaiveFormGivesHoweverTheSourceGrows()
    {
        QFETCH(int, factor);
        const int count = 12000;
        const auto samples = randomSamples(3, count, 21);
        TInt16Signal source(256, count, 3, 1000);
        TInt16Signal sink(256, count, 3, 500);
        TAverageDecimator decimator(factor);
        decimator.attach(&source, 0);
        decimator.setSink(&sink);
        cutAtRandom(count, 6000, 22, [&](int from, int n) {
            append(source, samples, from, n);
            decimator.run();
        });
        QCOMPARE(sink.sampleCount(), count / factor);
        for (int channel = 0; channel < 3; ++channel) {
            for (int i = 0; i < count / factor; ++i) {
                int sum = 0;
                for (int k = 0; k < factor; ++k)
                    sum += samples[channel][i * factor + k];
                QCOMPARE(sink.sample(channel, i), static_cast<int>(sum * (1.0 / factor)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(AverageDecimatorTest)
#include "AverageDecimatorTest.moc"
