#include "analysis/filters/TFftBaselineStream.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <complex>
#include <numbers>

namespace {

/// Output sample `index` from the definition: the block in whose middle it lies, less its bins 0, 1, 1022 and
/// 1023. `first` is where the stream began; before it the first block has zeros.
double naive(TSignal& source, int channel, int first, int index)
{
    const int step = index / 64;
    const int start = first + step * 64 - 480;
    std::complex<double> sums[4];
    const int bins[] = {0, 1, 1022, 1023};
    double own = 0.0;
    for (int i = 0; i < 1024; ++i) {
        const double x = step == 0 && i < 480 ? 0.0 : source.sample(channel, start + i);
        for (int bin = 0; bin < 4; ++bin)
            sums[bin] += x * std::polar(1.0, -2.0 * std::numbers::pi * bins[bin] * i / 1024);
        if (i == 480 + index % 64)
            own = x;
    }
    for (int bin = 0; bin < 4; ++bin) {
        const double angle = 2.0 * std::numbers::pi * bins[bin] * (480 + index % 64) / 1024;
        own -= (sums[bin] * std::polar(1.0, angle)).real() / 1024;
    }
    return own;
}

bool isTruncationOf(int sample, double value)
{
    return sample == static_cast<int>(value - 1e-7) || sample == static_cast<int>(value + 1e-7);
}

std::vector<std::vector<short>> halved(std::vector<std::vector<short>> samples)
{
    for (auto& row : samples) {
        for (short& sample : row)
            sample = static_cast<short>(sample / 2);
    }
    return samples;
}

void runOver(TFftBaselineStream& stream, TInt16Signal& source, const std::vector<std::vector<short>>& samples,
             int longest)
{
    cutAtRandom(static_cast<int>(samples[0].size()), longest, 5, [&](int from, int n) {
        append(source, samples, from, n);
        stream.run();
    });
}

} // namespace

class FftBaselineStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheSignalWithoutItsLowestBins()
    {
        const auto samples = halved(randomSamples(2, 2000, 3));
        TInt16Signal source(64, 4000, 2, 500);
        TInt16Signal sink(64, 4000, 2, 500);
        TFftBaselineStream stream;
        stream.attach(&source, 0);
        stream.setSink(&sink);
        runOver(stream, source, samples, 300);
        QCOMPARE(sink.sampleCount(), (2000 - 544) / 64 * 64 + 64);
        for (int channel = 0; channel < 2; ++channel) {
            for (int i = 0; i < sink.sampleCount(); i += 5)
                QVERIFY(isTruncationOf(sink.sample(channel, i), naive(source, channel, 0, i)));
        }
    }

    void theSizeOfTheBlocksDoesNotMatter()
    {
        const auto samples = randomSamples(16, 3000, 4);
        TInt16Signal whole(64, 4000, 16, 500);
        for (const int longest : {1, 51, 3000}) {
            TInt16Signal source(64, 4000, 16, 500);
            TInt16Signal sink(64, 4000, 16, 500);
            TFftBaselineStream stream;
            stream.attach(&source, 0);
            stream.setSink(longest == 1 ? &whole : &sink);
            runOver(stream, source, samples, longest);
            for (int i = 0; longest != 1 && i < whole.sampleCount(); ++i)
                QCOMPARE(sink.sample(i % 16, i), whole.sample(i % 16, i));
            QCOMPARE(longest == 1 ? 0 : sink.sampleCount(), longest == 1 ? 0 : whole.sampleCount());
        }
        QVERIFY(whole.sampleCount() > 2000);
    }

    void nothingComesBeforeThe544thSample()
    {
        TInt16Signal source(64, 4000, 1, 500);
        TInt16Signal sink(64, 4000, 1, 500);
        TFftBaselineStream stream;
        stream.run();
        stream.attach(&source, 0);
        stream.run();
        stream.setSink(&sink);
        append(source, {std::vector<short>(543, 1)}, 0, 543);
        stream.run();
        QCOMPARE(sink.sampleCount(), 0);
        append(source, {{1}}, 0, 1);
        stream.run();
        QCOMPARE(sink.sampleCount(), 64);
        QCOMPARE(stream.position(), 544 - 960);
    }

    void aConstantVanishesAndTheHeartStays()
    {
        std::vector<short> samples(4000);
        for (int i = 0; i < 4000; ++i)
            samples[i] = static_cast<short>(5000 + 1000 * std::sin(2.0 * std::numbers::pi * i * 8 / 1024.0));
        TInt16Signal source(64, 4000, 1, 500);
        TInt16Signal sink(64, 4000, 1, 500);
        TFftBaselineStream stream;
        stream.attach(&source, 0);
        stream.setSink(&sink);
        runOver(stream, source, {samples}, 51);
        for (int i = 512; i < sink.sampleCount(); ++i)
            QVERIFY(std::abs(sink.sample(0, i) - (samples[i] - 5000)) <= 2);
    }

    void attachingStartsAfresh()
    {
        const auto samples = halved(randomSamples(1, 3000, 6));
        TInt16Signal source(64, 4000, 1, 500);
        TInt16Signal first(64, 4000, 1, 500);
        TInt16Signal second(64, 4000, 1, 500);
        TFftBaselineStream stream;
        stream.attach(&source, 0);
        stream.setSink(&first);
        runOver(stream, source, samples, 3000);
        stream.attach(&source, 1000);
        stream.setSink(&second);
        stream.run();
        QCOMPARE(second.sampleCount(), (2000 - 544) / 64 * 64 + 64);
        for (int i = 0; i < second.sampleCount(); i += 7)
            QVERIFY(isTruncationOf(second.sample(0, i), naive(source, 0, 1000, i)));
    }

    void theOutputIsClamped()
    {
        std::vector<short> samples(1100, 32767);
        std::fill(samples.begin() + 500, samples.begin() + 510, short(-32768));
        TInt16Signal source(64, 4000, 1, 500);
        TInt16Signal sink(64, 4000, 1, 500);
        TFftBaselineStream stream;
        stream.attach(&source, 0);
        stream.setSink(&sink);
        runOver(stream, source, {samples}, 1100);
        QVERIFY(naive(source, 0, 0, 505) < -33000);
        QCOMPARE(sink.sample(0, 505), -32768);
    }
};

QTEST_GUILESS_MAIN(FftBaselineStreamTest)
#include "FftBaselineStreamTest.moc"
