#include "analysis/delineation/QuadraticSplineWavelet.h"

#include <QtTest>

using TValues = std::vector<double>;
using velantor::waveletFilter;

class QuadraticSplineWaveletTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstScalesHaveTheirKnownTaps()
    {
        QCOMPARE(waveletFilter(1).values(), (TValues{-2, 2}));
        QCOMPARE(waveletFilter(2).values(), (TValues{-0.25, -0.75, -0.5, 0.5, 0.75, 0.25}));
        QCOMPARE(waveletFilter(3).values(),
                 (TValues{-0.03125, -0.09375, -0.1875, -0.3125, -0.34375, -0.28125, -0.125, 0.125, 0.28125,
                          0.34375, 0.3125, 0.1875, 0.09375, 0.03125}));
    }

    void lengthsDoubleFromScaleToScale()
    {
        for (int scale = 1; scale <= 5; ++scale)
            QCOMPARE(waveletFilter(scale).size(), (2 << scale) - 2);
    }

    void everyScaleIsAntisymmetric()
    {
        for (int scale = 1; scale <= 5; ++scale) {
            const TDoubleVector filter = waveletFilter(scale);
            QCOMPARE(filter.mean(), 0.0);
            for (int i = 0; i < filter.size(); ++i)
                QCOMPARE(filter[i], -filter[filter.size() - 1 - i]);
        }
    }

    void aRisingLineGivesANegativeValueThatDoublesWithEachScale()
    {
        TDoubleVector line(200);
        for (int i = 0; i < line.size(); ++i)
            line[i] = i;
        for (int scale = 1; scale <= 5; ++scale)
            QCOMPARE(line.convolved(waveletFilter(scale))[100], -double(1 << scale));
    }

    void thereAreNoOtherScales()
    {
        QCOMPARE(waveletFilter(0).size(), 0);
        QCOMPARE(waveletFilter(6).size(), 0);
        QCOMPARE(waveletFilter(-1).size(), 0);
    }
};

QTEST_GUILESS_MAIN(QuadraticSplineWaveletTest)
#include "QuadraticSplineWaveletTest.moc"
