#include "analysis/DrawnEcg.h"
#include "analysis/delineation/QuadraticSplineWavelet.h"
#include "analysis/detection/TWaveletTransform.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

namespace {

/// A convolution by its definition: the filter of n taps reads the n samples from p + 1 + n / 2 - n on.
double naive(const ecg::TRow& row, int scale, int position)
{
    const TDoubleVector taps = velantor::waveletFilter(scale);
    const int n = taps.size();
    double sum = 0.0;
    for (int i = 0; i < n; ++i)
        sum += taps[n - 1 - i] * row[std::size_t(position + 1 + n / 2 - n + i)];
    return sum;
}

ecg::TRow whole(ecg::TRow row)
{
    for (double& x : row)
        x = std::round(x);
    return row;
}

} // namespace

class WaveletTransformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyScaleIsInStepWithTheSignal()
    {
        const ecg::TRow row = whole(ecg::noise(1000, 3000.0));
        TInt16Signal signal(64, 8192, 1, 250);
        TWaveletTransform transform(&signal, 0);
        for (int from = 0; from < 1000; from += 77) {
            ecg::append(signal, {row}, from, 77);
            transform.run();
        }
        QCOMPARE(transform.begin(), 0);
        QCOMPARE(transform.end(), 985);
        TWaveletSpan span;
        transform.read(0, 20, 980, span);
        for (int scale = 1; scale <= 4; ++scale)
            for (int i = 20; i < 980; ++i)
                QVERIFY(std::abs(span.value(scale, i) - naive(row, scale, i)) < 1e-6);
    }

    void whatReachesBeyondTheBeginningIsZero()
    {
        TInt16Signal signal(64, 8192, 1, 250);
        ecg::append(signal, {ecg::TRow(1000, 20000.0)}, 0, 1000);
        for (const int origin : {0, 300}) {
            TWaveletTransform transform(&signal, origin);
            transform.run();
            QCOMPARE(transform.begin(), origin);
            TWaveletSpan span;
            transform.read(0, -500, 2000, span);
            QCOMPARE(span.begin(), origin);
            QCOMPARE(span.end(), 985);
            for (int scale = 1; scale <= 4; ++scale)
                for (int i = origin - 10; i < 985; ++i)
                    QCOMPARE(span.value(scale, i), 0.0);
        }
    }

    void itMayStopBeforeTheSignalDoes()
    {
        TInt16Signal signal(64, 8192, 2, 250);
        TWaveletTransform transform(&signal, 0);
        for (const int count : {0, 5, 20, 400, 1000}) {
            if (count > signal.sampleCount())
                ecg::append(signal, ecg::TRows(2, ecg::TRow(1000)), 0, count - signal.sampleCount());
            transform.run(count / 2);
            QCOMPARE(transform.end(), transform.endFor(count / 2));
            transform.run();
            QCOMPARE(transform.end(), transform.endFor(count));
            // Nothing goes back.
            transform.run(3);
            QCOMPARE(transform.end(), transform.endFor(count));
        }
        QCOMPARE(transform.endFor(1000), 985);
    }

    void anEmptySpanIsReadWhereNothingIsKnown()
    {
        TInt16Signal signal(64, 8192, 1, 250);
        TWaveletTransform transform(&signal, 0);
        TWaveletSpan span;
        transform.read(0, 100, 200, span);
        QCOMPARE(span.size(), 0);
        QCOMPARE(span.value(2, 150), 0.0);
        QVERIFY(!span.isExtreme(2, 150, 2));
    }

    void anExtremeIsBeyondBothNeighboursAtTheLag()
    {
        TWaveletSpan span(100, 110);
        const double values[] = {0, 1, 2, 3, 3, 2, 1, -4, 0, 0};
        std::copy(std::begin(values), std::end(values), span.data(3));
        QVERIFY(span.isExtreme(3, 103, 2));
        QVERIFY(!span.isExtreme(3, 103, 1));
        QVERIFY(span.isExtreme(3, 107, 2));
        QVERIFY(!span.isExtreme(3, 107, 3));
        QVERIFY(!span.isExtreme(3, 101, 2));
        QVERIFY(!span.isExtreme(2, 103, 2));
        QCOMPARE(span.value(3, 99), 0.0);
        QCOMPARE(span.value(3, 107), -4.0);
        QCOMPARE(span.value(3, 110), 0.0);
    }
};

QTEST_GUILESS_MAIN(WaveletTransformTest)
#include "WaveletTransformTest.moc"
