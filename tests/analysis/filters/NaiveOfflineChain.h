#pragma once

#include "analysis/filters/FirTables.h"
#include "analysis/filters/IirTables.h"
#include "analysis/filters/NaiveIir.h"
#include "analysis/signals/TStoredSignal.h"

using TRow = std::vector<short>;

inline short clampedShort(double value)
{
    return static_cast<short>(std::clamp(value, -32768.0, 32767.0));
}

inline double mean(const TRow& x, int from, int count)
{
    double sum = 0.0;
    for (int i = from; i < from + count; ++i)
        sum += x[i];
    return sum / count;
}

/// The parabola by Lagrange's formula, subtracted and truncated.
inline TRow detrended(const TRow& x, int rate)
{
    const int n = static_cast<int>(x.size());
    const int window = std::min(3 * rate, n);
    const double px[] = {window / 2.0, n / 2.0, n - window / 2.0};
    const double first = mean(x, 0, window);
    const double last = mean(x, n - window, window);
    const double py[] = {first, (first + last) / 2, last};
    TRow y;
    for (int i = 0; i < n; ++i) {
        double value = 0.0;
        for (int k = 0; k < 3; ++k) {
            const double a = px[(k + 1) % 3];
            const double b = px[(k + 2) % 3];
            value += py[k] * (i - a) * (i - b) / ((px[k] - a) * (px[k] - b));
        }
        y.push_back(clampedShort(x[i] - (n <= 3 * rate ? first : value)));
    }
    return y;
}

/// Blocks of a row, the last one filled up, each filtered by the recursion.
inline TRow recursed(const TRow& x, int blockSize, const velantor::TIirTable* table)
{
    if (!table)
        return x;
    TStoredSignal source(blockSize, {x});
    source.trimBlocks(true);
    TSignalWindow window(&source);
    TRow y;
    for (int block = 0; block < source.blockCount(); ++block) {
        window.move(block, 0);
        for (const double value : TNaiveIir(table->coefficients, table->margin).block(window, true, 1))
            y.push_back(clampedShort(value));
    }
    return y;
}

/// A FIR stage over a whole row.
inline TRow convolved(const TRow& x, const std::vector<double>& h)
{
    TRow y;
    for (int p = 0; p < static_cast<int>(x.size()); ++p) {
        double sum = 0.0;
        for (int i = 0; i < static_cast<int>(h.size()); ++i) {
            const int at = static_cast<int>(h.size()) / 2 - i + p;
            sum += h[i] * (at >= 0 && at < static_cast<int>(x.size()) ? x[at] : 0);
        }
        y.push_back(clampedShort(sum));
    }
    return y;
}

/// The off-line chain by its definition. Switches: 1 notch, 2 muscle, 4 baseline.
inline TRow naiveOfflineChain(const TRow& x, int rate, int blockSize, int switches)
{
    using namespace velantor;
    TRow y = detrended(x, rate);
    y.resize((y.size() + blockSize - 1) / blockSize * blockSize);
    y = recursed(y, blockSize, highPassRecursion(rate));
    if (switches & 1)
        y = recursed(y, blockSize, notchRecursion(rate));
    if (switches & 2)
        y = convolved(y, *muscleTable("40hz", rate));
    if (switches & 4)
        y = recursed(y, blockSize, baselineRecursion(rate));
    y.resize(x.size());
    return y;
}

/// Noise on a slope.
inline std::vector<TRow> driftingSamples(int channels, int count)
{
    auto samples = randomSamples(channels, count, 20);
    for (auto& row : samples) {
        for (int i = 0; i < count; ++i)
            row[i] = static_cast<short>(row[i] / 8 + 9000 - i);
    }
    return samples;
}
