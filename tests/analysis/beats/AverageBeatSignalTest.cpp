#include "analysis/beats/AverageRecording.h"

#include <QtTest>

using namespace averaging;

namespace {

/// A second of signal around `start` seconds, in whole samples.
double rOfSecondFrom(double start)
{
    return start + 0.455;
}

/// Nothing but an offset.
class TOffset : public TDoubleSignal
{
public:
    explicit TOffset(int samples) : TDoubleSignal(64, 30 * rate, 1, rate) { grow(samples); }

    void grow(int samples)
    {
        const std::vector<double> row(samples, 3000.0);
        const double* const data = row.data();
        addPerChannel(&data, samples);
    }
};

} // namespace

/// What an average takes from a signal that does not hold everything, and a single beat in its place.
class AverageBeatSignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSingleBeatCanTakeThePlaceOfTheAverage()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        average.addBeat(beatAt(6.0));
        TBeat single(channels);
        single.setValue(TBeat::rr, 0.7);
        single.setFiducial(1, TBeat::rPosition, 8.02);
        single.setFiducial(2, TBeat::rPosition, 8.05);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 1);
        QCOMPARE(average.meanRR(), 0.7);
        QCOMPARE(average.dominantChannel(), 1);
        for (int channel = 0; channel < channels; ++channel)
            QVERIFY(greatestDifference(average.complex(channel), expectedComplex(signal, channel, {8.02})) <
                    1e-9);
        average.addBeat(beatAt(7.0));
        QCOMPARE(average.count(), 3);
    }

    void aSingleBeatWithoutRLiesAroundItsTime()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat single(channels);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 0);
        QVERIFY(isSilent(average.complex(0)));
        single.setValue(TBeat::beatTime, 8.0);
        average.complexFromBeat(single);
        QCOMPARE(average.count(), 1);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {8.0})) < 1e-9);
    }

    void aSingleBeatShowsWhatTheSignalHasOfIt()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        for (const double t : {0.1, 29.9}) {
            average.complexFromBeat(beatAt(t));
            QCOMPARE(average.count(), 1);
            QVERIFY(greatestDifference(average.complex(1), expectedComplex(signal, 1, {t})) < 1e-9);
            QVERIFY(!isSilent(average.complex(1)));
        }
    }

    void aBeatIsLeftOutUnlessItsWholeSecondIsThere_data()
    {
        QTest::addColumn<double>("start");
        QTest::addColumn<int>("count");
        QTest::newRow("first second") << 0.0 << 1;
        QTest::newRow("a sample before the start") << -0.02 << 0;
        QTest::newRow("long before the start") << -100.0 << 0;
        QTest::newRow("last second") << 29.0 << 1;
        QTest::newRow("a sample behind the end") << 29.01 << 0;
        QTest::newRow("long behind the end") << 1e12 << 0;
    }

    void aBeatIsLeftOutUnlessItsWholeSecondIsThere()
    {
        QFETCH(double, start);
        TRecording signal;
        TAverageBeat average(&signal, 1e13);
        average.addBeat(beatAt(rOfSecondFrom(start)));
        QTEST(average.count(), "count");
        QCOMPARE(isSilent(average.complex(1)), average.count() == 0);
        QCOMPARE(average.meanRR(), average.count() == 0 ? 0.0 : 1.0);
    }

    void anOffsetMakesNoStepAtTheEndsOfARecording()
    {
        TOffset signal(30 * rate);
        TAverageBeat average(&signal, 1000.0);
        for (const double t : {0.3, 5.0, 29.7})
            average.addBeat(beatAt(t));
        QCOMPARE(average.averagedTimes(), std::vector<double>{5.0});
        QVERIFY(isSilent(average.complex(0)));
    }

    void aBeatIsTakenOnceItsSecondHasCome()
    {
        TOffset signal(10 * rate);
        TAverageBeat average(&signal, 1000.0);
        average.addBeat(beatAt(9.0));
        average.addBeat(beatAt(9.8));
        QCOMPARE(average.averagedTimes(), std::vector<double>{9.0});
        signal.grow(rate);
        average.addBeat(beatAt(10.6));
        QCOMPARE(average.averagedTimes(), (std::vector<double>{9.0, 9.8}));
        QVERIFY(isSilent(average.complex(0)));
    }

    void aRingThatHasMovedOnHasLetBeatsGo()
    {
        TRecording ring(10 * rate);
        QCOMPARE(ring.oldestSample(), 20 * rate);
        TAverageBeat average(&ring, 1000.0);
        average.addBeat(beatAt(5.0));
        average.addBeat(beatAt(rOfSecondFrom(19.98)));
        QCOMPARE(average.count(), 0);
        QVERIFY(isSilent(average.complex(0)));
        const std::vector<double> held{rOfSecondFrom(20.0), 25.0};
        for (const double t : held)
            average.addBeat(beatAt(t));
        QCOMPARE(average.averagedTimes(), held);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(ring, 0, held)) < 1e-9);
    }

    void channelsThatDoNotExistAreSilent()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(beatAt(5.0));
        for (const int channel : {-1, channels, 1000}) {
            QVERIFY(isSilent(average.complex(channel)));
            QVERIFY(isSilent(average.reference(channel)));
        }
    }

    void channelsOfABeatThatTheSignalLacksDoNotCount()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        TBeat wide(16);
        wide.setValue(TBeat::rr, 1.0);
        wide.setValue(TBeat::meanRR, 1.0);
        wide.setFiducial(15, TBeat::rPosition, 5.0);
        wide.setFiducial(15, TBeat::qrsType, 1.0);
        average.addBeat(wide);
        QCOMPARE(average.count(), 0);
        average.complexFromBeat(wide);
        QCOMPARE(average.count(), 0);
        QVERIFY(isSilent(average.complex(0)));
        wide.setValue(TBeat::beatTime, 8.0);
        average.complexFromBeat(wide);
        QCOMPARE(average.dominantChannel(), 0);
        QVERIFY(greatestDifference(average.complex(0), expectedComplex(signal, 0, {8.0})) < 1e-9);
    }

    void aBeatWithoutChannelsIsHarmless()
    {
        TRecording signal;
        TAverageBeat average(&signal, 20.0);
        average.addBeat(TBeat(0));
        QCOMPARE(average.count(), 0);
        average.complexFromBeat(TBeat(0));
        QCOMPARE(average.count(), 0);
    }
};

QTEST_GUILESS_MAIN(AverageBeatSignalTest)
#include "AverageBeatSignalTest.moc"
