#include "analysis/filters/NaiveOfflineChain.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "base/Error.h"

#include <QtTest>

class OfflineFilterChainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOutputLooksLikeTheSource()
    {
        TStoredSignal source(512, driftingSamples(3, 2000));
        source.setResolutionBits(14);
        source.setRange(-450.0, 300.0);
        source.channel(2)->setName("V2");
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        const TSignal& output = *chain.current();
        QCOMPARE(output.channelCount(), 3);
        QCOMPARE(output.channel(2)->name(), QByteArray("V2"));
        QCOMPARE(output.resolutionBits(), 14);
        QCOMPARE(output.rangeMin(), -450.0);
        QCOMPARE(output.rangeMax(), 300.0);
        QCOMPARE(output.samplingRate(), 500);
        QCOMPARE(output.sampleCount(), 2000);
        QCOMPARE(output.blockCount(), 4);
    }

    void theChainStartsWithItsNamesAndNothingOn()
    {
        TStoredSignal source(512, driftingSamples(1, 2000));
        const TOfflineFilterChain chain(&source);
        QCOMPARE(chain.notchName(), QByteArray("50hz"));
        QCOMPARE(chain.muscleName(), QByteArray("40hz"));
        QVERIFY(!chain.notchOn() && !chain.muscleOn() && !chain.baselineOn());
        QVERIFY(chain.current() != &source);
    }

    void anotherNameOfTheNotchIsAnError_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<bool>("isError");
        QTest::newRow("250") << 250 << false;
        QTest::newRow("360") << 360 << false;
        QTest::newRow("500") << 500 << true;
        QTest::newRow("1000") << 1000 << true;
    }

    void anotherNameOfTheNotchIsAnError()
    {
        QFETCH(int, rate);
        QFETCH(bool, isError);
        TStoredSignal source(512, driftingSamples(1, 2000), rate);
        TOfflineFilterChain chain(&source);
        chain.apply(false, true, false);
        const TSignal* const before = chain.current();
        chain.setNotchName("60hz");
        QByteArray text;
        try {
            chain.apply(true, false, true);
        } catch (const std::exception& error) {
            text = error.what();
            QCOMPARE(chain.current(), before);
            QVERIFY(!chain.notchOn() && chain.muscleOn() && !chain.baselineOn());
        }
        QCOMPARE(text, isError ? QByteArray("pendiente - filtro no definido") : QByteArray());
        chain.apply(false, false, true); // the name does not matter while the notch is off
        QVERIFY(chain.baselineOn());
    }

    void theMuscleFilterGoesByItsName()
    {
        const auto samples = driftingSamples(1, 2000);
        TStoredSignal source(512, samples, 1000);
        TOfflineFilterChain chain(&source);
        chain.setMuscleName("25hz");
        chain.apply(false, true, false);
        const TRow plain = detrended(samples[0], 1000);
        const TRow expected = convolved(plain, *velantor::muscleTable("25hz", 1000));
        for (int i = 0; i < 2000; i += 3)
            QVERIFY(std::abs(chain.current()->sample(0, i) - expected[i]) <= 1);
        chain.setMuscleName("30hz");
        chain.apply(false, true, false);
        QCOMPARE(chain.current()->sample(0, 700), 0);
    }

    void aTableForAnyNameServesAt250()
    {
        TStoredSignal source(512, driftingSamples(1, 2000), 250);
        TOfflineFilterChain chain(&source);
        chain.apply(false, true, false);
        const int sample = chain.current()->sample(0, 700);
        chain.setMuscleName("30hz");
        chain.apply(false, true, false);
        QVERIFY(sample != 0);
        QCOMPARE(chain.current()->sample(0, 700), sample);
    }

    void switchesCanBeTurnedAgainAndAgain()
    {
        TStoredSignal source(512, driftingSamples(2, 3000));
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        const int all = chain.current()->sample(1, 1500);
        chain.apply(false, false, false);
        const int none = chain.current()->sample(1, 1500);
        QVERIFY(all != none);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sample(1, 1500), all);
    }
};

QTEST_GUILESS_MAIN(OfflineFilterChainTest)
#include "OfflineFilterChainTest.moc"
