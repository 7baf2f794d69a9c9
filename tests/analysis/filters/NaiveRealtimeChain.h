#pragma once

#include "analysis/filters/FirTables.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

struct TSwitches
{
    bool notch;
    bool muscle;
    bool baseline;
};

using TRow = std::vector<short>;

/// One FIR stage by its formula; stops half a table before the end.
inline TRow filtered(const TRow& x, const std::vector<double>* h)
{
    if (!h)
        return x;
    const int n = static_cast<int>(h->size());
    TRow y;
    for (int p = 0; p + n / 2 < static_cast<int>(x.size()); ++p) {
        double sum = 0.0;
        for (int i = n - 1; i >= 0; --i) {
            const int at = p + n / 2 - i;
            sum += (*h)[i] * (at >= 0 && at < static_cast<int>(x.size()) ? x[at] : 0);
        }
        y.push_back(static_cast<short>(std::clamp(sum, -32768.0, 32767.0)));
    }
    return y;
}

/// The real-time chain by its definition.
inline TRow naiveRealtimeChain(const TRow& x, int rate, TSwitches on)
{
    using namespace velantor;
    TRow y = filtered(x, highPassTable(rate));
    if (on.notch)
        y = filtered(y, notchTable("50hz", rate));
    if (on.muscle)
        y = filtered(y, muscleTable("40hz", rate));
    return on.baseline ? filtered(y, baselineTable(rate)) : y;
}

inline TRow rowOf(TSignal& signal, int channel)
{
    TRow row;
    for (int i = 0; i < signal.sampleCount(); ++i)
        row.push_back(static_cast<short>(signal.sample(channel, i)));
    return row;
}

/// The samples in pieces of up to `longest`, an update after each.
inline void feed(TRealtimeFilterChain& chain, TInt16Signal& input, const std::vector<TRow>& samples,
                 int longest)
{
    cutAtRandom(static_cast<int>(samples[0].size()), longest, 9, [&](int from, int n) {
        append(input, samples, from, n);
        chain.update();
    });
}

inline std::vector<TRow> constant(int count, short value)
{
    return {TRow(count, value)};
}
