#include "analysis/signals/FirSum.h"
#include "analysis/signals/FirSumWide.h"

#include <QtTest>

#include <functional>
#include <random>

namespace {

using TSum = void (*)(const fir::TTap*, const fir::TTap*, const double*, int, double*);

struct TCase
{
    explicit TCase(int tapCount)
    {
        std::mt19937 generator(51);
        std::uniform_real_distribution<> numbers(-1.0, 1.0);
        for (int i = 0; i < tapCount; ++i)
            taps.push_back({numbers(generator), static_cast<int>(generator() % 100)});
        for (double& value : x)
            value = 1e4 * numbers(generator);
    }

    double naive(int i) const
    {
        double sum = 0.0;
        for (const fir::TTap& tap : taps)
            sum += tap.coefficient * x[tap.offset + i];
        return sum;
    }

    std::vector<fir::TTap> taps;
    std::vector<double> x = std::vector<double>(100 + 300 + fir::padding);
};

void compareWithNaive(const std::function<void(const TCase&, int, double*)>& sum)
{
    for (const int tapCount : {0, 1, 2, 61}) {
        const TCase sums(tapCount);
        for (int count = 0; count <= 300; ++count) {
            std::vector<double> out(count + 1, 77.0);
            sum(sums, count, out.data());
            for (int i = 0; i < count; ++i)
                QVERIFY2(out[i] == sums.naive(i), "not bit for bit the same");
            QCOMPARE(out[count], 77.0);
        }
    }
}

} // namespace

class FirSumTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCountGivesTheSameBitsAsTheNaiveForm()
    {
        compareWithNaive([](const TCase& sums, int count, double* out) {
            fir::sum(sums.taps, sums.x.data(), count, out);
        });
    }

#ifdef __x86_64__
    void everyWidthOfVectorGivesTheSameBits_data()
    {
        QTest::addColumn<bool>("wide");
        QTest::newRow("four") << false;
        QTest::newRow("eight") << true;
    }

    void everyWidthOfVectorGivesTheSameBits()
    {
        QFETCH(bool, wide);
        if (wide ? !__builtin_cpu_supports("avx512f") : !__builtin_cpu_supports("avx"))
            QSKIP("this processor has no vectors of that width");
        const TSum form = wide ? fir::sumAvx512 : fir::sumAvx;
        compareWithNaive([form](const TCase& sums, int count, double* out) {
            form(sums.taps.data(), sums.taps.data() + sums.taps.size(), sums.x.data(), count, out);
        });
    }
#endif
};

QTEST_GUILESS_MAIN(FirSumTest)
#include "FirSumTest.moc"
