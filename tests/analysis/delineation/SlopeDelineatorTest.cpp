#include "analysis/delineation/DrawnComplex.h"
#include "analysis/delineation/TSlopeDelineator.h"
#include "analysis/signals/Truncation.h"

#include <QtTest>

#include <limits>

using velantor::truncated;
using TWaves = std::vector<drawn::TWave>;
Q_DECLARE_METATYPE(TWaves)

namespace {

const TWaves normal{drawn::p, drawn::q, drawn::r, drawn::s, drawn::t};

TSlopeDelineator analysed(const TDoubleVector& complex, int rate, int rSample, int rrSamples)
{
    TSlopeDelineator delineator;
    delineator.analyse(complex, rate, rSample, rrSamples);
    return delineator;
}

TSlopeDelineator analysed(const TWaves& waves, int rate)
{
    return analysed(drawn::complex(waves, rate), rate, drawn::rSample(rate), rate);
}

std::vector<int> placesOf(const TSlopeDelineator& d)
{
    return {d.pOnset(), d.pOffset(), d.qrsOnset(), d.qrsOffset(), d.tOffset()};
}

const std::vector<int> nothing(5, TSlopeDelineator::notFound);

} // namespace

#define VERIFY_NEAR(place, time, rate, tolerance)                                                            \
    QVERIFY2(place > 0 && std::abs(drawn::error(place, time, rate)) <= tolerance,                            \
             qPrintable(QString::number(drawn::error(place, time, rate))))

class SlopeDelineatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDrawnComplexIsMeasuredAtEveryRate_data()
    {
        QTest::addColumn<int>("rate");
        for (const int rate : {128, 250, 360, 500, 1000})
            QTest::addRow("%d", rate) << rate;
    }

    void aDrawnComplexIsMeasuredAtEveryRate()
    {
        QFETCH(int, rate);
        const auto found = analysed(normal, rate);
        VERIFY_NEAR(found.pOnset(), drawn::p.onset, rate, 12);
        VERIFY_NEAR(found.pOffset(), drawn::p.offset, rate, 12);
        VERIFY_NEAR(found.qrsOnset(), drawn::q.onset, rate, 10);
        VERIFY_NEAR(found.qrsOffset(), drawn::s.offset, rate, 8);
        VERIFY_NEAR(found.tOffset(), drawn::t.offset, rate, 12);
    }

    void shapesAreMeasured_data()
    {
        QTest::addColumn<TWaves>("waves");
        QTest::addColumn<double>("qrsOnset");
        QTest::addColumn<double>("qrsOffset");
        using namespace drawn;
        QTest::newRow("inverted T") << TWaves{p, q, r, s, {0.12, 0.25, 0.34, -150}} << q.onset << s.offset;
        QTest::newRow("T taller than R")
            << TWaves{p, q, r, s, {0.12, 0.25, 0.34, 800}} << q.onset << s.offset;
        QTest::newRow("biphasic T") << TWaves{p, q, r, s, {0.12, 0.18, 0.25, -100}, {0.22, 0.28, 0.34, 120}}
                                    << q.onset << s.offset;
        QTest::newRow("QS") << TWaves{p, {-0.045, 0.0, 0.045, -600}, t} << -0.045 << 0.045;
        QTest::newRow("rSr'")
            << TWaves{p, {-0.045, -0.03, -0.015, 200}, {-0.02, 0.0, 0.02, -600}, {0.01, 0.03, 0.05, 350}, t}
            << -0.045 << 0.05;
    }

    void shapesAreMeasured()
    {
        QFETCH(TWaves, waves);
        QFETCH(double, qrsOnset);
        QFETCH(double, qrsOffset);
        const auto found = analysed(waves, 500);
        VERIFY_NEAR(found.pOnset(), drawn::p.onset, 500, 12);
        VERIFY_NEAR(found.qrsOnset(), qrsOnset, 500, 10);
        VERIFY_NEAR(found.qrsOffset(), qrsOffset, 500, 10);
        VERIFY_NEAR(found.tOffset(), drawn::t.offset, 500, 16);
    }

    void noiseMovesTheBordersOfTheQrsLittle()
    {
        // The strictest share of flatness is beyond reach then; a looser one takes its place.
        const auto found = analysed(drawn::withNoise(drawn::complex(normal, 500), 10.0), 500, 225, 500);
        VERIFY_NEAR(found.qrsOnset(), drawn::q.onset, 500, 12);
        VERIFY_NEAR(found.qrsOffset(), drawn::s.offset, 500, 12);
        VERIFY_NEAR(found.tOffset(), drawn::t.offset, 500, 16);
    }

    void aSpanBelow10CountsGivesNothing()
    {
        const TDoubleVector complex = drawn::complex({drawn::p, {-0.03, 0.0, 0.03, 1.0}}, 500);
        const double span = drawn::p.height;
        QCOMPARE(placesOf(analysed(complex.scaled(9.99 / span), 500, 225, 500)), nothing);
        QVERIFY(analysed(drawn::complex({drawn::r}, 500).scaled(10.01 / 600), 500, 225, 500).qrsOnset() > 0);
        QCOMPARE(placesOf(analysed(drawn::complex({drawn::r}, 500).scaled(9.99 / 600), 500, 225, 500)),
                 nothing);
    }

    void withoutPThereAreNoBordersOfP()
    {
        const auto found = analysed({drawn::q, drawn::r, drawn::s, drawn::t}, 500);
        QCOMPARE(found.pOnset(), 0);
        QCOMPARE(found.pOffset(), 0);
        QVERIFY(found.qrsOnset() > 0);
    }

    void withoutTThereIsStillAnEndOfTToDrag()
    {
        const auto found = analysed({drawn::p, drawn::q, drawn::r, drawn::s}, 500);
        QVERIFY(found.tOffset() >= found.qrsOffset() + 2 * 20);
        QVERIFY(found.tOffset() <= 225 + truncated<int>(0.6 * 500));
        // On a line the first place of all.
        TDoubleVector flat(250);
        for (int i = 0; i < 112; ++i)
            flat[i] = i < 100 ? 0.0 : 100.0 * std::min(i - 100, 6);
        for (int i = 112; i < flat.size(); ++i)
            flat[i] = flat[111];
        const auto onFlat = analysed(flat, 250, 106, 250);
        QVERIFY(onFlat.qrsOffset() > 0);
        QVERIFY(onFlat.tOffset() >= onFlat.qrsOffset() + 20);
    }

    void withoutAnRrTheEndOfTIsSoughtNearTheQrs()
    {
        const drawn::TWave early{0.06, 0.11, 0.16, 150.0};
        const auto found =
            analysed(drawn::complex({drawn::p, drawn::q, drawn::r, drawn::s, early}, 250), 250, 112, 0);
        VERIFY_NEAR(found.tOffset(), early.offset, 250, 20);
        const int late = analysed(drawn::complex(normal, 250), 250, 112, 0).tOffset();
        QVERIFY(late > 112 && late <= 112 + 50);
    }

    void theQrsEndsWhereFourSamplesAreFlatBesideItsSpan_data()
    {
        QTest::addColumn<double>("incline");
        QTest::addColumn<bool>("found");
        QTest::newRow("flat") << 0.0 << true;
        QTest::newRow("below 1 %") << 3.0 << true;
        QTest::newRow("below 2 %") << 6.0 << true;
        QTest::newRow("below 5 %") << 16.0 << true;
        QTest::newRow("above 5 %") << 25.0 << false;
    }

    void theQrsEndsWhereFourSamplesAreFlatBesideItsSpan()
    {
        QFETCH(double, incline);
        QFETCH(bool, found);
        // A peak of ten steep samples on each side, then an incline of so many counts per sample downward.
        TDoubleVector complex(250);
        for (int i = 0; i < complex.size(); ++i) {
            const int distance = std::abs(i - 112);
            complex[i] = 1000.0 - 100.0 * std::min(distance, 10) - incline * std::max(distance - 10, 0);
        }
        const auto places = analysed(complex, 250, 112, 250);
        QCOMPARE(places.qrsOnset(), found ? 112 - 10 : 0);
        QCOMPARE(places.qrsOffset(), found ? 112 + 10 : 0);
    }

    void aStricterBorderFarOutsideIsLeftForTheNext()
    {
        // An ST segment on an incline of 1.5 %, flat only 140 ms later, where it would be taken for the QRS.
        TDoubleVector complex(250);
        for (int i = 0; i < complex.size(); ++i) {
            const int distance = std::abs(i - 112);
            complex[i] = 1000.0 - 100.0 * std::min(distance, 10) + 5.0 * std::clamp(i - 122, 0, 35);
        }
        QCOMPARE(analysed(complex, 250, 112, 250).qrsOffset(), 122);
        // As near as this it still counts.
        for (int i = 0; i < complex.size(); ++i) {
            const int distance = std::abs(i - 112);
            complex[i] = 1000.0 - 100.0 * std::min(distance, 10) + 5.0 * std::clamp(i - 122, 0, 6);
        }
        QVERIFY(analysed(complex, 250, 112, 250).qrsOffset() > 122);
    }

    void aStretchThatOnly5PercentWouldCallFlatIsPassedOver()
    {
        // An incline of 4 % for 140 ms, then flat: what is flat by a stricter share counts, however far.
        TDoubleVector complex(250);
        for (int i = 0; i < complex.size(); ++i) {
            const int distance = std::abs(i - 112);
            complex[i] = 1000.0 - 100.0 * std::min(distance, 10) + 13.0 * std::clamp(i - 122, 0, 35);
        }
        QCOMPARE(analysed(complex, 250, 112, 250).qrsOffset(), 122 + 35);
    }

    void aBorderIsNotSoughtFartherThan240Ms()
    {
        // A saw whose teeth are never flat.
        TDoubleVector saw(250);
        for (int i = 0; i < saw.size(); ++i)
            saw[i] = i % 2 == 0 ? 100.0 : -100.0;
        QCOMPARE(placesOf(analysed(saw, 250, 112, 250)), nothing);
        for (int i = 0; i <= 112 - 60; ++i)
            saw[i] = 0.0;
        QCOMPARE(analysed(saw, 250, 112, 250).qrsOnset(), 112 - 60);
        saw[112 - 60] = 100.0;
        QCOMPARE(analysed(saw, 250, 112, 250).qrsOnset(), 0);
    }

    void strangeComplexesStayWithinThemselves()
    {
        std::mt19937 random(1);
        for (const int size : {1, 3, 7, 30, 250, 3000})
            for (const int rate : {50, 128, 250, 1000, 1000000})
                for (const int r : {-100, 0, 1, size / 2, size - 1, size, std::numeric_limits<int>::max()})
                    for (const int rr : {std::numeric_limits<int>::min(), 0, rate, 5 * rate}) {
                        TDoubleVector complex(size);
                        for (int i = 0; i < size; ++i)
                            complex[i] = std::clamp(int(random() % 9) - 4, -2, 2) * 100.0;
                        for (const int place : placesOf(analysed(complex, rate, r, rr)))
                            QVERIFY(place >= 0 && place < size);
                    }
    }

    void nothingComesOfNothing()
    {
        QCOMPARE(placesOf(analysed(TDoubleVector(), 500, 225, 500)), nothing);
        QCOMPARE(placesOf(analysed(TDoubleVector(500), 500, 225, 500)), nothing);
        QCOMPARE(placesOf(analysed(drawn::complex(normal, 500), 0, 225, 500)), nothing);
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(placesOf(analysed(TDoubleVector(std::vector<double>(500, nan).data(), 500), 500, 225, 500)),
                 nothing);
    }
};

QTEST_GUILESS_MAIN(SlopeDelineatorTest)
#include "SlopeDelineatorTest.moc"
