#include "analysis/signals/TChannel.h"

#include "analysis/signals/TSampleReader.h"
#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>
#include <array>

namespace {

/// At most about this many samples of a column are looked at.
constexpr int columnSamples = 16;

/// Hands the samples of [start, end) to `take(index, sample)` until that says false.
template <typename Take> void forEachSample(TSignal* signal, int channel, int start, int end, Take take)
{
    std::array<double, 512> samples;
    for (qint64 at = start; at < end; at += samples.size()) {
        const int count = static_cast<int>(std::min<qint64>(samples.size(), end - at));
        signal->readDoubles(channel, static_cast<int>(at), count, samples.data());
        for (int i = 0; i < count; ++i) {
            if (!take(static_cast<int>(at + i), velantor::truncated<int>(samples[i])))
                return;
        }
    }
}

int endOf(int start, int count)
{
    return velantor::truncated<int>(static_cast<double>(start) + count);
}

} // namespace

void TChannel::peaks(int start, int count, int* low, int* high, int offset, int width, bool wrap)
{
    if (count <= 0 || width <= 0 || count < width)
        return;
    const int step = count / width;
    const int rest = count % width;
    const int stride = (step - 1) / columnSamples + 1;
    TSampleReader reader(m_signal, m_index, stride);
    qint64 begin = start;
    qint64 end = start;
    qint64 accumulator = 0;
    for (int i = 0; i < width; ++i) {
        end += step;
        accumulator += rest;
        if (accumulator >= width) {
            accumulator -= width;
            ++end;
        }
        const qint64 back = wrap && end > m_signal->sampleCount() ? count : 0;
        reader.extremes(begin - back, end - 1 - back, &low[offset + i], &high[offset + i]);
        begin = end - 1;
    }
}

int TChannel::mean(int start, int n)
{
    if (n <= 0)
        return 0;
    qint64 sum = 0;
    forEachSample(m_signal, m_index, start, endOf(start, n), [&sum](int, int sample) {
        sum += sample;
        return true;
    });
    return static_cast<int>(sum / n);
}

bool TChannel::findOutside(int start, int end, int low, int high, int* first, int* last)
{
    bool found = false;
    bool closed = false;
    forEachSample(m_signal, m_index, start, end, [&](int index, int sample) {
        const bool outside = sample < low || sample > high;
        if (outside && !found)
            *first = index;
        closed = found && !outside;
        if (closed)
            *last = index;
        found = found || outside;
        return !closed;
    });
    if (found && !closed)
        *last = end;
    return found;
}
