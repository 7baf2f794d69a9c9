#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/delineation/TAverageBeatDelineator.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr int rate = 250;
constexpr int r = 112;

/// A line that rises by `height` over three samples from `at` on.
void addRamp(TDoubleVector& complex, int at, double height)
{
    for (int i = 0; i < complex.size(); ++i)
        complex[i] += height * std::clamp(i - at, 0, 3) / 3.0;
}

/// A smooth hill of `halfWidth` samples to either side.
void addHill(TDoubleVector& complex, int center, int halfWidth, double height)
{
    for (int i = center - halfWidth; i <= center + halfWidth; ++i)
        if (i >= 0 && i < complex.size())
            complex[i] += height * 0.5 * (1.0 + std::cos(M_PI * (i - center) / halfWidth));
}

/// A scale of the transform, moved to the samples it belongs to.
TDoubleVector scaleOf(const TDoubleVector& complex, int scale)
{
    const TDoubleVector filter = velantor::waveletFilter(scale);
    const TDoubleVector moved = complex.convolved(filter).shifted(-filter.size() / 2);
    return TDoubleVector(moved.data(), complex.size());
}

double rms(const TDoubleVector& values)
{
    double sum = 0.0;
    for (const double value : values.values())
        sum += value * value;
    return std::sqrt(sum / values.size());
}

double greatest(const TDoubleVector& values)
{
    return *std::max_element(values.values().begin(), values.values().end());
}

int placeOfGreatest(const TDoubleVector& values)
{
    return int(std::max_element(values.values().begin(), values.values().end()) - values.values().begin());
}

TAverageBeatDelineator analysed(const TDoubleVector& complex, int rrSamples = rate, int rSample = r)
{
    TAverageBeatDelineator delineator;
    delineator.analyse(complex, rate, rSample, rrSamples);
    return delineator;
}

/// The height of a small hill at which its extremes on scale 4 are `share` of that scale's root mean square,
/// beside a tall hill far from it.
double heightAt(int center, int tallCenter, double share)
{
    TDoubleVector small(rate), tall(rate);
    addHill(small, center, 12, 1.0);
    addHill(tall, tallCenter, 15, 1000.0);
    const TDoubleVector small4 = scaleOf(small, 4), tall4 = scaleOf(tall, 4);
    const double extreme = greatest(small4);
    return share * rms(tall4) / std::sqrt(extreme * extreme - share * share * rms(small4) * rms(small4));
}

TDoubleVector twoHills(int center, double height, int tallCenter)
{
    TDoubleVector complex(rate);
    addHill(complex, center, 12, height);
    addHill(complex, tallCenter, 15, 1000.0);
    return complex;
}

/// From the center of a hill of 12 samples to its extremes on scale 4.
int flankOfHill()
{
    TDoubleVector hill(rate);
    addHill(hill, 125, 12, 1.0);
    return std::abs(placeOfGreatest(scaleOf(hill, 4)) - 125);
}

/// A main deflection of 900 with steep sides, at samples 108 to 115.
TDoubleVector deflection()
{
    TDoubleVector complex(rate);
    addRamp(complex, 108, 900.0);
    addRamp(complex, 112, -900.0);
    return complex;
}

/// Ends a complex that is not at zero far behind the QRS.
TDoubleVector ended(TDoubleVector complex)
{
    addRamp(complex, 170, -complex[complex.size() - 1]);
    return complex;
}

/// Samples by which the borders of a QRS without outer waves lie outside of its steepest places, 0.02 s; and
/// by which those of one with outer waves lie outside of these, 0.01 s.
constexpr double mainMargin = 5.0;
constexpr double outerMargin = 2.5;

/// Steepest places of the plain deflection.
struct TSides
{
    int first;
    int second;
};

TSides sidesOfDeflection()
{
    const auto plain = analysed(deflection());
    return {plain.qrsOnset() + int(mainMargin), plain.qrsOffset() - int(mainMargin)};
}

} // namespace

/// The limits of the searches, to the sample and to a thousandth of a threshold.
class AverageBeatLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPWaveMustReach15PercentOfTheWaveThreshold()
    {
        constexpr int center = 74, tall = 228;
        const double height = heightAt(center, tall, 0.15 * 0.5);
        QCOMPARE(analysed(twoHills(center, 0.999 * height, tall)).pPeak(), 0);
        const auto above = analysed(twoHills(center, 1.001 * height, tall));
        QVERIFY(std::abs(above.pPeak() - center) <= 1);
        QVERIFY(std::abs(above.pOnset() - (center - flankOfHill() - 5)) <= 1);
        QVERIFY(std::abs(above.pOffset() - (center + flankOfHill() + 5)) <= 1);
    }

    void aTWaveMustReach20PercentOfTheWaveThreshold()
    {
        constexpr int center = 175, tall = 18;
        const double height = heightAt(center, tall, 0.2 * 0.5);
        QCOMPARE(analysed(twoHills(center, 0.999 * height, tall)).tPeak(), 0);
        const auto above = analysed(twoHills(center, 1.001 * height, tall));
        QVERIFY(std::abs(above.tPeak() - center) <= 1);
        QVERIFY(std::abs(above.tOnset() - (center - flankOfHill() - 10)) <= 1);
        QVERIFY(std::abs(above.tOffset() - (center + flankOfHill() + 10)) <= 1);
    }

    void aComplexWithoutTWaveHasZerosInTheTFields()
    {
        TDoubleVector complex = deflection();
        addHill(complex, r - 40, 12, 60.0);
        const auto found = analysed(complex);
        QVERIFY(found.qrsOnset() > 0 && found.pPeak() > 0);
        QCOMPARE(found.tOnset(), 0);
        QCOMPARE(found.tPeak(), 0);
        QCOMPARE(found.tOffset(), 0);
    }

    void theTSearchEndsByTheRhythm_data()
    {
        QTest::addColumn<int>("rrSamples");
        QTest::addColumn<int>("lastFlank");
        QTest::newRow("0.4 s from an RR of 0.7 s on") << 175 << r + 100;
        QTest::newRow("0.4 s in a slow rhythm") << 250 << r + 100;
        QTest::newRow("half the RR below") << 174 << r + 87;
        QTest::newRow("half the RR of 0.5 s") << 125 << r + 62;
    }

    void theTSearchEndsByTheRhythm()
    {
        QFETCH(int, rrSamples);
        QFETCH(int, lastFlank);
        const int center = lastFlank - flankOfHill();
        QVERIFY(std::abs(analysed(twoHills(center, 300.0, 18), rrSamples).tPeak() - center) <= 1);
        QCOMPARE(analysed(twoHills(center + 1, 300.0, 18), rrSamples).tPeak(), 0);
    }

    void theTSearchEndsThreeSamplesBeforeTheEnd()
    {
        const int center = rate - 3 - flankOfHill();
        QVERIFY(std::abs(analysed(twoHills(center, 300.0, 18), rate, 160).tPeak() - center) <= 1);
        QCOMPARE(analysed(twoHills(center + 1, 300.0, 18), rate, 160).tPeak(), 0);
    }

    void aPWaveAtTheStartBeginsAt0()
    {
        TDoubleVector complex(rate);
        const int center = flankOfHill() + 4;
        addHill(complex, center, 12, 60.0);
        addRamp(complex, 44, 900.0);
        addRamp(complex, 48, -900.0);
        const auto found = analysed(complex, rate, 48);
        QVERIFY(std::abs(found.pPeak() - center) <= 1);
        QCOMPARE(found.pOnset(), 0);
        QVERIFY(found.pOffset() > center && found.pOffset() < found.qrsOnset());
    }

    void anOuterWaveMustReach10PercentOfTheQrsThreshold_data()
    {
        QTest::addColumn<bool>("before");
        QTest::newRow("Q") << true;
        QTest::newRow("S") << false;
    }

    void anOuterWaveMustReach10PercentOfTheQrsThreshold()
    {
        QFETCH(bool, before);
        const auto complexWith = [before](double height) {
            TDoubleVector complex = deflection();
            addRamp(complex, before ? 99 : 121, before ? -height : height);
            return ended(complex);
        };
        TDoubleVector step(rate);
        addRamp(step, 100, 1.0);
        addRamp(step, 150, -1.0);
        const double unit = greatest(scaleOf(step, 2));
        double height = 0.0;
        for (int turn = 0; turn < 20; ++turn)
            height = 0.1 * 1.25 * rms(scaleOf(complexWith(height), 2)) / unit;
        const auto peak = [&](double h) {
            const auto found = analysed(complexWith(h));
            return before ? found.qPeak() : found.sPeak();
        };
        QCOMPARE(peak(0.999 * height), 0);
        QVERIFY(peak(1.001 * height) > 0);
    }

    void anOuterWaveLiesWithin50Ms()
    {
        // 12.5 samples at this rate.
        const TSides sides = sidesOfDeflection();
        for (const int distance : {12, 13}) {
            const bool inReach = distance == 12;
            TDoubleVector q = deflection();
            addRamp(q, 108 - distance, -90.0);
            const auto before = analysed(ended(q));
            QCOMPARE(before.qPeak() > 0, inReach);
            QCOMPARE(before.qrsOnset(),
                     int(inReach ? sides.first - distance - outerMargin : sides.first - mainMargin));
            TDoubleVector s = deflection();
            addRamp(s, 112 + distance, 90.0);
            const auto after = analysed(ended(s));
            QCOMPARE(after.sPeak() > 0, inReach);
            QCOMPARE(after.qrsOffset(),
                     int(inReach ? sides.second + distance + outerMargin : sides.second + mainMargin));
        }
    }

    void aFurtherWaveMustReachHalfOfTheOuterOne()
    {
        const TSides sides = sidesOfDeflection();
        for (const double share : {0.499, 0.501}) {
            TDoubleVector complex = deflection();
            addRamp(complex, 117, 200.0);
            addRamp(complex, 124, -200.0 * share);
            const auto found = analysed(ended(complex));
            QVERIFY(found.sPeak() > 0);
            QCOMPARE(found.qrsOffset(), int(sides.second + (share > 0.5 ? 12 : 5) + outerMargin));
        }
    }

    void aSecondRMovesTheOffsetIfItIsNear_data()
    {
        QTest::addColumn<int>("fall");
        QTest::addColumn<bool>("isNear");
        QTest::newRow("48 ms behind the main pair") << 12 << true;
        QTest::newRow("52 ms") << 13 << false;
        QTest::newRow("60 ms") << 15 << false;
        QTest::newRow("90 ms") << 22 << false;
    }

    void aSecondRMovesTheOffsetIfItIsNear()
    {
        QFETCH(int, fall);
        QFETCH(bool, isNear);
        // An S of 300, then an R' that rises by 510 and falls back.
        const TSides sides = sidesOfDeflection();
        TDoubleVector complex = deflection();
        addRamp(complex, 112, -300.0);
        addRamp(complex, 117, 510.0);
        addRamp(complex, 112 + fall, -300.0);
        const auto found = analysed(ended(complex));
        QCOMPARE(found.qrsOffset(), int(sides.second + (isNear ? fall : 5) + outerMargin));
        QVERIFY(found.sPeak() > 0 && found.sPeak() < sides.second + 5);
    }
};

QTEST_GUILESS_MAIN(AverageBeatLimitsTest)
#include "AverageBeatLimitsTest.moc"
