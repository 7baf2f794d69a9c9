#include "analysis/filters/FirTables.h"
#include "analysis/filters/TFftBaselineStream.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <numbers>

namespace {

constexpr int blockSize = 64;

struct TSwitches
{
    bool notch;
    bool muscle;
    bool baseline;
};

using TRow = std::vector<short>;

/// One FIR stage by its formula; stops half a table before the end.
TRow filtered(const TRow& x, const std::vector<double>* h)
{
    if (!h)
        return x;
    const int n = static_cast<int>(h->size());
    TRow y;
    for (int p = 0; p + n / 2 < static_cast<int>(x.size()); ++p) {
        double sum = 0.0;
        for (int i = n - 1; i >= 0; --i) {
            const int at = p + n / 2 - i;
            sum += (*h)[i] * (at >= 0 && at < static_cast<int>(x.size()) ? x[at] : 0);
        }
        y.push_back(static_cast<short>(std::clamp(sum, -32768.0, 32767.0)));
    }
    return y;
}

TRow naiveChain(const TRow& x, int rate, TSwitches on)
{
    using namespace velantor;
    TRow y = filtered(x, highPassTable(rate));
    if (on.notch)
        y = filtered(y, notchTable("50hz", rate));
    if (on.muscle)
        y = filtered(y, muscleTable("40hz", rate));
    return on.baseline ? filtered(y, baselineTable(rate)) : y;
}

TRow rowOf(TSignal& signal, int channel)
{
    TRow row;
    for (int i = 0; i < signal.sampleCount(); ++i)
        row.push_back(static_cast<short>(signal.sample(channel, i)));
    return row;
}

void feed(TRealtimeFilterChain& chain, TInt16Signal& input, const std::vector<TRow>& samples, int longest)
{
    cutAtRandom(static_cast<int>(samples[0].size()), longest, 9, [&](int from, int n) {
        append(input, samples, from, n);
        chain.update();
    });
}

std::vector<TRow> constant(int count, short value)
{
    return {TRow(count, value)};
}

} // namespace

class RealtimeFilterChainTest : public QObject
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
            QVERIFY(rowOf(*chain.current(), channel) == naiveChain(samples[channel], rate, on));
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

    void withAllSwitchesOffOnlyTheHighPassAt500IsLeft()
    {
        for (const int rate : {250, 360, 500, 1000}) {
            TInt16Signal input(blockSize, 5000, 1, rate);
            TRealtimeFilterChain chain(&input);
            QCOMPARE(chain.current() == &input, rate != 500);
            feed(chain, input, constant(2000, 5), 51);
            QCOMPARE(chain.current()->sampleCount(), rate == 500 ? 2000 - 750 : 2000);
        }
    }

    void theChainStartsWithItsNamesAndNothingOn()
    {
        TInt16Signal input(blockSize, 100, 1, 500);
        const TRealtimeFilterChain chain(&input);
        QCOMPARE(chain.notchName(), QByteArray("50hz"));
        QCOMPARE(chain.muscleName(), QByteArray("40hz"));
        QCOMPARE(chain.baselineMode(), QByteArray("fir"));
        QVERIFY(!chain.notchOn() && !chain.muscleOn() && !chain.baselineOn());
    }

    void aSwitchStartsAgainWhereTheRingBegins()
    {
        const auto samples = randomSamples(1, 7000, 11);
        const int capacity = 4000;
        TInt16Signal input(blockSize, capacity, 1, 500);
        TRealtimeFilterChain chain(&input);
        feed(chain, input, samples, 51);
        QCOMPARE(chain.startPosition(), 0);
        QCOMPARE(chain.current()->sampleCount(), 7000 - 750);
        chain.apply(true, false, false);
        QVERIFY(chain.notchOn() && !chain.muscleOn() && !chain.baselineOn());
        QCOMPARE(chain.current()->sampleCount(), 0);
        QCOMPARE(chain.startPosition(), 7000 - capacity);
        chain.update();
        const TRow held(samples[0].end() - capacity, samples[0].end());
        QVERIFY(rowOf(*chain.current(), 0) == naiveChain(held, 500, {true, false, false}));
        chain.apply(true, false, false);
        QCOMPARE(chain.current()->sampleCount(), 0);
    }

    void theOutputLooksLikeTheInput()
    {
        TInt16Signal input(blockSize, 100, 16, 500);
        input.setResolutionBits(14);
        input.setRange(-450.0, 300.0);
        input.channel(15)->setName("CR5");
        TRealtimeFilterChain chain(&input);
        chain.apply(true, true, true);
        const TSignal& output = *chain.current();
        QCOMPARE(output.channelCount(), 16);
        QCOMPARE(output.channel(15)->name(), QByteArray("CR5"));
        QCOMPARE(output.channel(15)->signal(), &output);
        QCOMPARE(output.resolutionBits(), 14);
        QCOMPARE(output.rangeMin(), -450.0);
        QCOMPARE(output.rangeMax(), 300.0);
        QCOMPARE(output.samplingRate(), 500);
        QCOMPARE(output.blockSize(), blockSize);
        QCOMPARE(output.storageBits(), 16);
    }

    void theOutputKeepsAHundredBlocks()
    {
        TInt16Signal input(8, 1000, 1, 1000);
        TRealtimeFilterChain chain(&input);
        chain.apply(false, true, false);
        feed(chain, input, constant(3000, 100), 51);
        TSignal& output = *chain.current();
        QCOMPARE(output.oldestSample(), output.sampleCount() - 800);
        QVERIFY(output.sample(0, output.sampleCount() - 800) != 0);
        QCOMPARE(output.sample(0, output.sampleCount() - 801), 0);
    }

    void aNameThatIsNotKnownLeavesTheNotchOut()
    {
        TInt16Signal input(blockSize, 100, 1, 1000);
        TRealtimeFilterChain chain(&input);
        chain.setNotchName("55hz");
        chain.apply(true, false, false);
        QCOMPARE(chain.current(), &input);
        chain.setNotchName("60hz");
        chain.apply(true, false, false);
        QVERIFY(chain.current() != &input);
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

    void anotherNameOfTheMuscleFilterIsEmpty()
    {
        TInt16Signal input(blockSize, 1000, 1, 1000);
        TRealtimeFilterChain chain(&input);
        chain.setMuscleName("30hz");
        chain.apply(false, true, false);
        feed(chain, input, constant(500, 1000), 51);
        QCOMPARE(chain.current()->sampleCount(), 500);
        QCOMPARE(chain.current()->sample(0, 400), 0);
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

    void aSignalShorterThanTheDelaysGivesNothing()
    {
        TInt16Signal input(blockSize, 5000, 1, 500);
        TRealtimeFilterChain chain(&input);
        chain.apply(true, true, true);
        chain.update();
        QCOMPARE(chain.current()->sampleCount(), 0);
        feed(chain, input, constant(750 + 97 + 6 + 250, 1000), 51);
        QCOMPARE(chain.current()->sampleCount(), 0);
        append(input, constant(1, 1000), 0, 1);
        chain.update();
        QCOMPARE(chain.current()->sampleCount(), 1);
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
};

QTEST_GUILESS_MAIN(RealtimeFilterChainTest)
#include "RealtimeFilterChainTest.moc"
