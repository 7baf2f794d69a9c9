#include "analysis/signals/TDoubleVector.h"

#include <QtTest>

using TValues = std::vector<double>;

class DoubleVectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aVectorStartsWithZerosOrTheGivenValues()
    {
        QCOMPARE(TDoubleVector().size(), 0);
        QCOMPARE(TDoubleVector(-3).size(), 0);
        QCOMPARE(TDoubleVector(2).values(), (TValues{0, 0}));
        const double values[] = {1, 2, 3};
        QCOMPARE(TDoubleVector(values, 2).values(), (TValues{1, 2}));
    }

    void copiesAreDeep()
    {
        TDoubleVector first{1, 2};
        TDoubleVector second(first);
        second[0] = 9;
        QCOMPARE(first[0], 1.0);
        first = second;
        first.data()[1] = 8;
        QCOMPARE(second.values(), (TValues{9, 2}));
    }

    void scaledAndSum()
    {
        QCOMPARE((TDoubleVector{1, -2}.scaled(0.5).values()), (TValues{0.5, -1}));
        QCOMPARE((TDoubleVector{1, 2}.sum(TDoubleVector{10, 20}).values()), (TValues{11, 22}));
        QCOMPARE((TDoubleVector{1, 2, 3}.sum(TDoubleVector{10}).values()), (TValues{11, 2, 3}));
        QCOMPARE((TDoubleVector{1}.sum(TDoubleVector{10, 20}).values()), (TValues{11, 20}));
    }

    void aConvolutionIsFull()
    {
        QCOMPARE((TDoubleVector{1, 2, 3}.convolved(TDoubleVector{10, 100}).values()),
                 (TValues{10, 120, 230, 300}));
        QCOMPARE((TDoubleVector{0.125, 0.375, 0.375, 0.125}.convolved(TDoubleVector{-2, 2}).values()),
                 (TValues{-0.25, -0.5, 0, 0.5, 0.25}));
        QCOMPARE((TDoubleVector{1}.convolved(TDoubleVector()).size()), 0);
    }

    void shiftedKeepsTheLength_data()
    {
        QTest::addColumn<int>("k");
        QTest::addColumn<TValues>("values");
        QTest::newRow("stays") << 0 << TValues{1, 2, 3};
        QTest::newRow("up") << 1 << TValues{0, 1, 2};
        QTest::newRow("down") << -2 << TValues{3, 0, 0};
        QTest::newRow("out at the top") << 3 << TValues{0, 0, 0};
        QTest::newRow("far out") << std::numeric_limits<int>::min() << TValues{0, 0, 0};
        QTest::newRow("far up") << std::numeric_limits<int>::max() << TValues{0, 0, 0};
    }

    void shiftedKeepsTheLength()
    {
        QFETCH(int, k);
        QTEST((TDoubleVector{1, 2, 3}.shifted(k).values()), "values");
    }

    void stretchedPutsZerosBetween()
    {
        QCOMPARE((TDoubleVector{1, 2, 3}.stretched().values()), (TValues{1, 0, 2, 0, 3}));
        QCOMPARE((TDoubleVector{1}.stretched().values()), (TValues{1}));
        QCOMPARE(TDoubleVector().stretched().size(), 0);
    }

    void means()
    {
        QCOMPARE((TDoubleVector{1, 2, 6}.mean()), 3.0);
        QCOMPARE(TDoubleVector().mean(), 0.0);
        QCOMPARE((TDoubleVector{1, 3, 5, 9, 100}.decimatedMean(2).values()), (TValues{2, 7}));
        QCOMPARE((TDoubleVector{1, 3}.decimatedMean(3).size()), 0);
        QCOMPARE((TDoubleVector{1, 3}.decimatedMean(0).values()), (TValues{1, 3}));
    }
};

Q_DECLARE_METATYPE(TValues)

QTEST_GUILESS_MAIN(DoubleVectorTest)
#include "DoubleVectorTest.moc"
