#pragma once

#include <benchmark/benchmark.h>

#include <QVector>

#include <vector>

/// The demonstration recording as a device sends it: 14 channels at 500 Hz in blocks of 51 frames.
/// `x_real_time` says how many seconds of signal one second of work gets through.
namespace live {

inline constexpr int channels = 14;
inline constexpr int rate = 500;
inline constexpr int blockFrames = 51;
inline constexpr double blockSeconds = static_cast<double>(blockFrames) / rate;

/// Interleaved counts.
const std::vector<short>& recording();

void countSeconds(benchmark::State& state, double secondsPerTurn);

/// The recording in a loop, a block at a time.
class TLoop
{
public:
    QVector<char> next();

private:
    int m_next = 0;
};

/// The filters of the live chain alone, tap by tap: what its naive form spends on a block at the least.
void filterBlockNaively();

} // namespace live
