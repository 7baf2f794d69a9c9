#include "analysis/filters/TParabolaDetrend.h"
#include "analysis/signals/TFilteredSignal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

class ParabolaDetrendTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itGoesThroughItsPoints()
    {
        const TParabolaDetrend parabola({750, -300}, {900000, 1200}, {1799250, 450});
        QVERIFY(std::abs(parabola.valueAt(750) - -300) < 1e-6);
        QVERIFY(std::abs(parabola.valueAt(900000) - 1200) < 1e-6);
        QVERIFY(std::abs(parabola.valueAt(1799250) - 450) < 1e-6);
    }

    void pointsOfOneIndexGiveAConstant()
    {
        const TParabolaDetrend all({750, 12}, {750, 12}, {750, 12});
        QCOMPARE(all.valueAt(0), 12.0);
        QCOMPARE(all.valueAt(1e6), 12.0);
        const TParabolaDetrend two({10, 3}, {10, 4}, {20, 5});
        QCOMPARE(two.valueAt(1000), 3.0);
    }

    void itIsSubtractedByTheAbsoluteIndexAndTruncated()
    {
        std::vector<short> samples(50);
        for (int i = 0; i < 50; ++i)
            samples[i] = static_cast<short>(i * i / 4 + 2 * i - 30 + (i % 3 == 0 ? 100 : -100));
        TStoredSignal source(8, {samples});
        source.trimBlocks(true);
        TParabolaDetrend parabola({0, -30}, {20, 110}, {40, 450});
        TFilteredSignal view(&source, &parabola);
        for (int i = 0; i < 50; ++i) {
            const double value = samples[i] - (0.25 * i * i + 2.0 * i - 30.0);
            QVERIFY(view.sample(0, i) == int(value - 1e-9) || view.sample(0, i) == int(value + 1e-9));
        }
    }

    void samplesPastTheEndAreZero()
    {
        TStoredSignal source(8, {std::vector<short>(11, 7)});
        source.trimBlocks(true);
        TParabolaDetrend parabola({0, 5}, {1, 5}, {2, 5});
        TFilteredSignal view(&source, &parabola);
        const short* const block = view.lockBlock(0, 1);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(block[i], short(i < 3 ? 2 : 0));
        view.unlockBlock(0, 1);
    }

    void theResultIsClamped()
    {
        TStoredSignal source(2, {{32767, -32768}});
        TParabolaDetrend parabola({0, -5000}, {1, 5000}, {2, 5000});
        TFilteredSignal view(&source, &parabola);
        QCOMPARE(view.sample(0, 0), 32767);
        QCOMPARE(view.sample(0, 1), -32768);
    }
};

QTEST_GUILESS_MAIN(ParabolaDetrendTest)
#include "ParabolaDetrendTest.moc"
