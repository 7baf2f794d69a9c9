#include "analysis/filters/NaiveRealtimeChain.h"

#include <QtTest>

namespace {

constexpr int blockSize = 64;

} // namespace

class RealtimeFilterChainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        QVERIFY(rowOf(*chain.current(), 0) == naiveRealtimeChain(held, 500, {true, false, false}));
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
};

QTEST_GUILESS_MAIN(RealtimeFilterChainTest)
#include "RealtimeFilterChainTest.moc"
