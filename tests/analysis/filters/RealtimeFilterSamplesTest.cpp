#include "analysis/filters/NaiveRealtimeChain.h"
#include "analysis/filters/TFftBaselineStream.h"

#include <QtTest>

#include <numbers>

namespace {

constexpr int blockSize = 64;

} // namespace

class RealtimeFilterSamplesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheConvolutionOfItsStages_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("longest");
        QTest::addColumn<int>("switches");
        for (const int rate : {250, 500, 1000}) {
            for (int switches = 0; switches < 8; ++switches)
                QTest::addRow("%d, switches %d", rate, switches) << rate << 1 << 51 << switches;
            QTest::addRow("%d, 16 channels", rate) << rate << 16 << 51 << 7;
            QTest::addRow("%d, frame by frame", rate) << rate << 1 << 1 << 7;
            QTest::addRow("%d, long blocks", rate) << rate << 2 << 4000 << 7;
        }
        QTest::newRow("360, switches 7") << 360 << 1 << 51 << 7;
    }

    void itIsTheConvolutionOfItsStages()
    {
        QFETCH(int, rate);
        QFETCH(int, channels);
        QFETCH(int, longest);
        QFETCH(int, switches);
        const TSwitches on{(switches & 1) != 0, (switches & 2) != 0, (switches & 4) != 0};
        const auto samples = randomSamples(channels, 2500, 10);
        TInt16Signal input(blockSize, 5000, channels, rate);
        TRealtimeFilterChain chain(&input);
        chain.apply(on.notch, on.muscle, on.baseline);
        feed(chain, input, samples, longest);
        for (int channel = 0; channel < channels; channel += 5)
            QVERIFY(rowOf(*chain.current(), channel) == naiveRealtimeChain(samples[channel], rate, on));
    }

    void aConstantIsGoneAfterTheDelayOfTheHighPass()
    {
        TInt16Signal input(blockSize, 5000, 1, 500);
        TRealtimeFilterChain chain(&input);
        feed(chain, input, constant(5000, 12000), 51);
        TSignal& output = *chain.current();
        QCOMPARE(output.sampleCount(), 5000 - 750);
        QVERIFY(output.sample(0, 0) != 0);
        for (int i = 750; i < output.sampleCount(); ++i)
            QCOMPARE(output.sample(0, i), 0);
    }

    void theNotchOfEachNameStopsItsMains()
    {
        for (const double mains : {50.0, 60.0}) {
            TRow wave(3000);
            for (int i = 0; i < 3000; ++i)
                wave[i] =
                    static_cast<short>(std::lround(8000 * std::sin(2 * std::numbers::pi * mains * i / 1000)));
            TInt16Signal input(blockSize, 5000, 1, 1000);
            TRealtimeFilterChain chain(&input);
            chain.setNotchName(mains == 50.0 ? "50hz" : "60hz");
            chain.apply(true, false, false);
            feed(chain, input, {wave}, 51);
            for (int i = 400; i < chain.current()->sampleCount(); ++i)
                QVERIFY(std::abs(chain.current()->sample(0, i)) <= 1);
        }
    }

    void theBaselineHasTwoModes()
    {
        const auto samples = randomSamples(2, 3000, 12);
        TInt16Signal input(blockSize, 5000, 2, 1000);
        TRealtimeFilterChain chain(&input);
        chain.setBaselineMode("fft");
        chain.apply(false, false, true);
        feed(chain, input, samples, 51);
        TInt16Signal sink(blockSize, 5000, 2, 1000);
        TFftBaselineStream stream;
        stream.attach(&input, 0);
        stream.setSink(&sink);
        stream.run();
        QVERIFY(sink.sampleCount() > 2000);
        QVERIFY(rowOf(*chain.current(), 1) == rowOf(sink, 1));
        chain.setBaselineMode("none");
        chain.apply(false, false, true);
        QCOMPARE(chain.current(), &input);
    }

    void theModeFftTakesWhatTheHighPassLeaves()
    {
        constexpr int capacity = 4000;
        const auto samples = randomSamples(2, 7000, 13);
        TInt16Signal input(blockSize, capacity, 2, 500);
        TRealtimeFilterChain chain(&input);
        chain.setBaselineMode("fft");
        chain.apply(false, false, true);
        feed(chain, input, samples, 51);
        compareWithFft(chain, samples, 0);
        chain.apply(false, false, true); // the ring has turned: the chain begins with its oldest sample
        chain.update();
        compareWithFft(chain, samples, 7000 - capacity);
    }

    void anyAmountMayComeBetweenTwoUpdates_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("size");
        QTest::newRow("250") << 250 << 8;
        QTest::newRow("500") << 500 << 8;
        QTest::newRow("1000, the smallest blocks") << 1000 << 14;
        QTest::newRow("1000") << 1000 << 16;
    }

    void anyAmountMayComeBetweenTwoUpdates()
    {
        QFETCH(int, rate);
        QFETCH(int, size);
        const auto samples = randomSamples(2, 3000, 14);
        TInt16Signal input(size, 5000, 2, rate);
        TRealtimeFilterChain chain(&input);
        chain.apply(true, true, true);
        append(input, samples, 0, 3000);
        chain.update();
        TSignal& output = *chain.current();
        const TRow expected = naiveRealtimeChain(samples[1], rate, {true, true, true});
        QCOMPARE(output.sampleCount(), static_cast<int>(expected.size()));
        QCOMPARE(output.oldestSample(), std::max(output.sampleCount() - 100 * size, 0));
        for (int i = output.oldestSample(); i < output.sampleCount(); ++i)
            QCOMPARE(output.sample(1, i), int(expected[i]));
    }

    void anyAmountMayComeBeforeTheModeFft()
    {
        const auto samples = randomSamples(2, 3000, 15);
        TInt16Signal input(16, 5000, 2, 500);
        TRealtimeFilterChain chain(&input);
        chain.setBaselineMode("fft");
        chain.apply(false, false, true);
        append(input, samples, 0, 3000);
        chain.update();
        compareWithFft(chain, samples, 0);
    }

    void theStagesClamp()
    {
        TRow square(4000);
        for (int i = 0; i < 4000; ++i)
            square[i] = i / 300 % 2 == 0 ? short(32767) : short(-32768);
        TInt16Signal input(blockSize, 5000, 1, 500);
        TRealtimeFilterChain chain(&input);
        feed(chain, input, {square}, 51);
        const TRow row = rowOf(*chain.current(), 0);
        QCOMPARE(*std::max_element(row.begin(), row.end()), short(32767));
        QCOMPARE(*std::min_element(row.begin(), row.end()), short(-32768));
    }

private:
    /// The end of the chain against the stream alone behind the high-pass, the input taken from `first` on.
    static void compareWithFft(TRealtimeFilterChain& chain, const std::vector<TRow>& samples, int first)
    {
        std::vector<TRow> rows;
        for (const TRow& row : samples)
            rows.push_back(naiveRealtimeChain(TRow(row.begin() + first, row.end()), 500, {}));
        const int count = static_cast<int>(rows[0].size());
        TInt16Signal highPassed(blockSize, count, 2, 500);
        TInt16Signal sink(blockSize, count, 2, 500);
        append(highPassed, rows, 0, count);
        TFftBaselineStream stream;
        stream.attach(&highPassed, 0);
        stream.setSink(&sink);
        stream.run();
        TSignal& output = *chain.current();
        QCOMPARE(output.sampleCount(), sink.sampleCount());
        QVERIFY(sink.sampleCount() > 1000);
        for (int i = output.oldestSample(); i < sink.sampleCount(); ++i)
            QCOMPARE(output.sample(i % 2, i), sink.sample(i % 2, i));
    }
};

QTEST_GUILESS_MAIN(RealtimeFilterSamplesTest)
#include "RealtimeFilterSamplesTest.moc"
