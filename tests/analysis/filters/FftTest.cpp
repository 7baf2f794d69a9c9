#include "analysis/filters/TFft.h"

#include <QtTest>

#include <complex>
#include <numbers>
#include <random>

namespace {

using TNumbers = std::vector<std::complex<double>>;

TNumbers randomNumbers(int count)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<> distribution(-1.0, 1.0);
    TNumbers numbers(count);
    for (auto& number : numbers)
        number = {distribution(generator), distribution(generator)};
    return numbers;
}

TNumbers transformed(const TFft& fft, const TNumbers& numbers, bool inverse)
{
    std::vector<double> real;
    std::vector<double> imaginary;
    for (const auto& number : numbers) {
        real.push_back(number.real());
        imaginary.push_back(number.imag());
    }
    if (inverse)
        fft.inverse(real.data(), imaginary.data());
    else
        fft.forward(real.data(), imaginary.data());
    TNumbers result;
    for (std::size_t i = 0; i < real.size(); ++i)
        result.emplace_back(real[i], imaginary[i]);
    return result;
}

/// The sum of the definition.
TNumbers naive(const TNumbers& x, double sign)
{
    const auto n = x.size();
    TNumbers result(n);
    for (std::size_t k = 0; k < n; ++k) {
        for (std::size_t i = 0; i < n; ++i)
            result[k] +=
                x[i] * std::polar(1.0, sign * 2.0 * std::numbers::pi * double(k * i % n) / double(n));
    }
    return result;
}

double distance(const TNumbers& a, const TNumbers& b)
{
    double greatest = a.size() == b.size() ? 0.0 : 1e9;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        greatest = std::max(greatest, std::abs(a[i] - b[i]));
    return greatest;
}

} // namespace

class FftTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheSumOfTheDefinition_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {1, 2, 4, 8, 64, 1024})
            QTest::addRow("%d", size) << size;
    }

    void itIsTheSumOfTheDefinition()
    {
        QFETCH(int, size);
        const TFft fft(size);
        const TNumbers numbers = randomNumbers(size);
        QVERIFY(distance(transformed(fft, numbers, false), naive(numbers, -1.0)) < 1e-11);
        QVERIFY(distance(transformed(fft, numbers, true), naive(numbers, 1.0)) < 1e-11);
    }

    void thereAndBackMultipliesByTheSize()
    {
        const TFft fft(1024);
        const TNumbers numbers = randomNumbers(1024);
        TNumbers back = transformed(fft, transformed(fft, numbers, false), true);
        for (auto& number : back)
            number /= 1024.0;
        QVERIFY(distance(back, numbers) < 1e-14);
    }

    void aWaveLandsInItsBin()
    {
        const TFft fft(16);
        TNumbers wave(16);
        for (int i = 0; i < 16; ++i)
            wave[i] = std::polar(1.0, 2.0 * std::numbers::pi * 3 * i / 16);
        TNumbers expected(16);
        expected[3] = 16.0;
        QVERIFY(distance(transformed(fft, wave, false), expected) < 1e-13);
    }

    void theSizeIsAPowerOfTwo()
    {
        QCOMPARE(TFft(1000).size(), 1024);
        QCOMPARE(TFft(1024).size(), 1024);
        QCOMPARE(TFft(0).size(), 1);
    }
};

QTEST_GUILESS_MAIN(FftTest)
#include "FftTest.moc"
