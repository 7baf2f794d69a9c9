#include "analysis/delineation/DrawnComplex.h"
#include "analysis/delineation/TAverageBeatDelineator.h"

#include <QtTest>

#include <limits>

using TWaves = std::vector<drawn::TWave>;
Q_DECLARE_METATYPE(TWaves)
Q_DECLARE_METATYPE(TDoubleVector)

namespace {

const TWaves normal{drawn::p, drawn::q, drawn::r, drawn::s, drawn::t};

TAverageBeatDelineator analysed(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    TAverageBeatDelineator delineator;
    delineator.analyse(complex, rate, rSample, rrSamples);
    return delineator;
}

TAverageBeatDelineator analysed(const TWaves& waves, int rate)
{
    return analysed(drawn::complex(waves, rate), rate, drawn::rSample(rate), rate);
}

std::vector<int> placesOf(const TAverageBeatDelineator& d)
{
    return {d.pOnset(), d.pPeak(), d.pOffset(),   d.qrsOnset(), d.qPeak(), d.rPosition(),
            d.rPeak(),  d.sPeak(), d.qrsOffset(), d.tOnset(),   d.tPeak(), d.tOffset()};
}

const std::vector<int> nothing(12, TAverageBeatDelineator::notFound);

/// A wave upside down or of another size.
drawn::TWave times(drawn::TWave wave, double factor)
{
    wave.height *= factor;
    return wave;
}

} // namespace

#define VERIFY_NEAR(place, time, rate, tolerance)                                                            \
    QVERIFY2(place > 0 && std::abs(drawn::error(place, time, rate)) <= tolerance,                            \
             qPrintable(QString::number(drawn::error(place, time, rate))))

class AverageBeatDelineatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDrawnComplexIsMeasuredAtEveryRate_data()
    {
        QTest::addColumn<int>("rate");
        for (const int rate : {250, 360, 500, 1000})
            QTest::addRow("%d", rate) << rate;
    }

    void aDrawnComplexIsMeasuredAtEveryRate()
    {
        QFETCH(int, rate);
        const auto found = analysed(normal, rate);
        VERIFY_NEAR(found.pOnset(), drawn::p.onset, rate, 8);
        VERIFY_NEAR(found.pPeak(), drawn::p.peak, rate, 8);
        VERIFY_NEAR(found.pOffset(), drawn::p.offset, rate, 8);
        VERIFY_NEAR(found.qrsOnset(), drawn::q.onset, rate, 10);
        VERIFY_NEAR(found.qPeak(), drawn::q.peak, rate, 8);
        VERIFY_NEAR(found.rPosition(), 0.0, rate, 5);
        QCOMPARE(found.rPeak(), found.rPosition());
        VERIFY_NEAR(found.sPeak(), drawn::s.peak, rate, 8);
        VERIFY_NEAR(found.qrsOffset(), drawn::s.offset, rate, 8);
        VERIFY_NEAR(found.tOnset(), drawn::t.onset, rate, 26);
        VERIFY_NEAR(found.tPeak(), drawn::t.peak, rate, 10);
        VERIFY_NEAR(found.tOffset(), drawn::t.offset, rate, 12);
    }

    void aLowRateIsGoodForTheGrossPlaces()
    {
        const auto found = analysed(normal, 128);
        VERIFY_NEAR(found.pPeak(), drawn::p.peak, 128, 20);
        VERIFY_NEAR(found.qrsOnset(), drawn::q.onset, 128, 20);
        VERIFY_NEAR(found.qrsOffset(), drawn::s.offset, 128, 20);
        VERIFY_NEAR(found.tPeak(), drawn::t.peak, 128, 20);
    }

    void shapesAreMeasured_data()
    {
        QTest::addColumn<TWaves>("waves");
        QTest::addColumn<double>("qrsOnset");
        QTest::addColumn<double>("r");
        QTest::addColumn<double>("qrsOffset");
        QTest::addColumn<double>("tOffset");
        using namespace drawn;
        QTest::newRow("upside down") << TWaves{times(p, -1), times(q, -1), times(r, -1), times(s, -1),
                                               times(t, -1)}
                                     << q.onset << 0.0 << s.offset << t.offset;
        QTest::newRow("inverted T") << TWaves{p, q, r, s, times(t, -1)} << q.onset << 0.0 << s.offset
                                    << t.offset;
        QTest::newRow("T taller than R")
            << TWaves{p, q, r, s, times(t, 5)} << q.onset << 0.0 << s.offset << t.offset;
        QTest::newRow("biphasic T") << TWaves{p, q, r, s, {0.12, 0.18, 0.25, -100}, {0.22, 0.28, 0.34, 120}}
                                    << q.onset << 0.0 << s.offset << 0.34;
        QTest::newRow("QS") << TWaves{p, {-0.045, 0.0, 0.045, -600}, t} << -0.045 << 0.0 << 0.045 << t.offset;
        QTest::newRow("R alone") << TWaves{p, {-0.045, 0.0, 0.045, 600}, t} << -0.045 << 0.0 << 0.045
                                 << t.offset;
        QTest::newRow("rSr'") << TWaves{{-0.045, -0.03, -0.015, 200},
                                        {-0.02, 0.0, 0.02, -600},
                                        {0.01, 0.03, 0.05, 350},
                                        t}
                              << -0.045 << 0.0 << 0.05 << t.offset;
    }

    void shapesAreMeasured()
    {
        QFETCH(TWaves, waves);
        QFETCH(double, qrsOnset);
        QFETCH(double, r);
        QFETCH(double, qrsOffset);
        QFETCH(double, tOffset);
        const auto found = analysed(waves, 500);
        VERIFY_NEAR(found.qrsOnset(), qrsOnset, 500, 12);
        VERIFY_NEAR(found.rPosition(), r, 500, 6);
        VERIFY_NEAR(found.qrsOffset(), qrsOffset, 500, 12);
        VERIFY_NEAR(found.tOffset(), tOffset, 500, 12);
    }

    void signAndSizeDoNotMatter()
    {
        const TDoubleVector complex = drawn::complex(normal, 500);
        const auto places = placesOf(analysed(complex, 500, 225, 500));
        for (const double factor : {-1.0, 1e-6, 1e9})
            QCOMPARE(placesOf(analysed(complex.scaled(factor), 500, 225, 500)), places);
    }

    void aQsComplexHasNoWavesBesideTheMainOne()
    {
        const auto found = analysed({{-0.045, 0.0, 0.045, -600}}, 500);
        QCOMPARE(found.qPeak(), 0);
        QCOMPARE(found.sPeak(), 0);
    }

    void withoutOuterWavesTheBordersLie20MsFromTheSteepestPlaces()
    {
        // The sides are steepest half way up.
        const auto found = analysed({{-0.08, 0.0, 0.08, 600}}, 250);
        VERIFY_NEAR(found.qrsOnset(), -0.04 - 0.02, 250, 6);
        VERIFY_NEAR(found.qrsOffset(), 0.04 + 0.02, 250, 6);
    }

    void aComplexWithoutPWaveHasZerosInThePFields()
    {
        const auto found = analysed({drawn::q, drawn::r, drawn::s, drawn::t}, 500);
        QCOMPARE(found.pOnset(), 0);
        QCOMPARE(found.pPeak(), 0);
        QCOMPARE(found.pOffset(), 0);
        QVERIFY(found.qrsOnset() > 0);
        QVERIFY(found.tPeak() > 0);
    }

    void pEndsBeforeTheQrsBegins()
    {
        const auto found = analysed({{-0.14, -0.09, -0.045, 100}, drawn::q, drawn::r, drawn::s}, 250);
        QVERIFY(found.pPeak() > 0);
        QVERIFY(found.pOffset() < found.qrsOnset());
    }

    void aFastRhythmNarrowsTheSearches()
    {
        const TDoubleVector complex = drawn::complex(normal, 250);
        // Half of an RR of 0.4 s ends before the fall of T; 0.4 of 0.3 s begins after P.
        QVERIFY(analysed(complex, 250, 112, 175).tPeak() > 0);
        QCOMPARE(analysed(complex, 250, 112, 100).tPeak(), 0);
        QVERIFY(analysed(complex, 250, 112, 125).pPeak() > 0);
        QCOMPARE(analysed(complex, 250, 112, 75).pPeak(), 0);
    }

    void withoutAnRrThereIsOnlyTheQrs()
    {
        for (const int rr : {0, -1, std::numeric_limits<int>::min()}) {
            const auto found = analysed(drawn::complex(normal, 500), 500, 225, rr);
            QVERIFY(found.qrsOnset() > 0);
            QVERIFY(found.qrsOffset() > found.qrsOnset());
            QCOMPARE(found.pPeak(), 0);
            QCOMPARE(found.tPeak(), 0);
        }
    }

    void placesAreScaledBackToTheComplexesOwnRate()
    {
        // Each sample four times is the complex at 250 again, once reduced.
        const TDoubleVector complex = drawn::complex(normal, 250);
        const auto places = placesOf(analysed(complex, 250, 112, 250));
        for (const int factor : {2, 4}) {
            TDoubleVector longer(complex.size() * factor);
            for (int i = 0; i < longer.size(); ++i)
                longer[i] = complex[i / factor];
            auto expected = places;
            for (int& place : expected)
                place *= factor;
            QCOMPARE(placesOf(analysed(longer, 250 * factor, 112 * factor, 250 * factor)), expected);
        }
    }

    void noiseMovesThePlacesLittle()
    {
        const TDoubleVector noisy = drawn::withNoise(drawn::complex(normal, 500), 10.0);
        const auto found = analysed(noisy, 500, 225, 500);
        VERIFY_NEAR(found.pOnset(), drawn::p.onset, 500, 20);
        VERIFY_NEAR(found.qrsOnset(), drawn::q.onset, 500, 12);
        VERIFY_NEAR(found.qrsOffset(), drawn::s.offset, 500, 12);
        VERIFY_NEAR(found.tOffset(), drawn::t.offset, 500, 20);
    }

    void anRNearTheStartStillWorks_data()
    {
        QTest::addColumn<int>("r");
        for (const int r : {0, 1, 3, 10, 12, 24, 237, 246, 249})
            QTest::addRow("%d", r) << r;
    }

    void anRNearTheStartStillWorks()
    {
        QFETCH(int, r);
        const auto found = analysed(drawn::complex(normal, 250, r), 250, r, 250);
        for (const int place : placesOf(found))
            QVERIFY(place >= 0 && place < 250);
        if (r >= 10 && r <= 237)
            QVERIFY(std::abs(found.rPosition() - r) <= 1);
    }

    void nothingComesOfNothing_data()
    {
        QTest::addColumn<TDoubleVector>("complex");
        QTest::newRow("empty") << TDoubleVector();
        QTest::newRow("one sample") << TDoubleVector{5};
        QTest::newRow("two samples") << TDoubleVector{5, -5};
        QTest::newRow("zeros") << TDoubleVector(500);
        QTest::newRow("not numbers") << TDoubleVector(
            std::vector<double>(500, std::numeric_limits<double>::quiet_NaN()).data(), 500);
    }

    void nothingComesOfNothing()
    {
        QFETCH(TDoubleVector, complex);
        for (const int rate : {128, 250, 500})
            QCOMPARE(placesOf(analysed(complex, rate, drawn::rSample(rate), rate)), nothing);
    }

    void aFlatComplexHasNoWavesAwayFromItsEnds()
    {
        QCOMPARE(
            placesOf(analysed(TDoubleVector(std::vector<double>(500, 300.0).data(), 500), 500, 225, 500)),
            nothing);
    }

    void strangeComplexesStayWithinThemselves()
    {
        std::mt19937 random(1);
        for (const int size : {3, 7, 30, 250, 5000})
            for (const int rate : {1, 128, 250, 1000, 1000000})
                for (const int r : {-100, 0, size / 2, size, std::numeric_limits<int>::max()}) {
                    TDoubleVector complex(size);
                    // Clipped noise: full of equal neighbours.
                    for (int i = 0; i < size; ++i)
                        complex[i] = std::clamp(int(random() % 9) - 4, -2, 2) * 1e300;
                    for (const int place : placesOf(analysed(complex, rate, r, 2 * rate)))
                        QVERIFY(place >= 0 && place < size);
                }
    }

    void aRateOfZeroGivesNothing()
    {
        for (const int rate : {0, -250})
            QCOMPARE(placesOf(analysed(drawn::complex(normal, 250), rate, 112, 250)), nothing);
    }

    void oneComplexLeavesNothingToTheNext()
    {
        TAverageBeatDelineator delineator;
        delineator.analyse(drawn::complex(normal, 500), 500, 225, 500);
        QVERIFY(delineator.pPeak() > 0);
        delineator.analyse(TDoubleVector(500), 500, 225, 500);
        QCOMPARE(placesOf(delineator), nothing);
    }
};

QTEST_GUILESS_MAIN(AverageBeatDelineatorTest)
#include "AverageBeatDelineatorTest.moc"
