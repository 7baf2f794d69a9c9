#include "analysis/detection/BeatAssembly.h"

#include "analysis/beats/BeatDurations.h"
#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <optional>

namespace {

/// From here on a recording counts as a full electrocardiogram.
constexpr int fullChannelCount = 12;

void setTime(TBeat& beat, int channel, int slot, int position, const TSignal& signal)
{
    if (TChannelBeat::known(position))
        beat.setFiducial(channel, slot, signal.timeOf(position));
}

void fillChannel(TBeat& beat, int channel, const TChannelBeat& record, const TSignal& signal)
{
    beat.setFiducial(channel, TBeat::takesPart, TChannelBeat::known(record.rPosition) ? 1.0 : 0.0);
    setTime(beat, channel, TBeat::pPeak, record.pPeak, signal);
    setTime(beat, channel, TBeat::qrsOnset, record.qrsOnset, signal);
    setTime(beat, channel, TBeat::rPosition, record.rPeak, signal);
    setTime(beat, channel, TBeat::qrsOffset, record.qrsOffset, signal);
    setTime(beat, channel, TBeat::tPeak, record.tPeak, signal);
    beat.setFiducial(channel, TBeat::qrsType, record.qrsType);
    beat.setFiducial(channel, TBeat::pType, record.pType);
    beat.setFiducial(channel, TBeat::tType, record.tType);
    velantor::setDurations(beat, channel);
}

std::optional<double> meanOf(const TBeat& beat, int channelCount, int slot)
{
    double sum = 0.0;
    int count = 0;
    for (int channel = 0; channel < channelCount; ++channel) {
        if (beat.isFiducialSet(channel, slot)) {
            sum += beat.fiducial(channel, slot);
            ++count;
        }
    }
    return count > 0 ? std::optional<double>(sum / count) : std::nullopt;
}

/// A time that stands `offset` from the first of the slots that any channel knows.
struct TBound
{
    int slot;
    double offset;
};

double boundOf(const TBeat& beat, int channelCount, std::initializer_list<TBound> bounds, double otherwise)
{
    for (const TBound& bound : bounds) {
        if (const auto mean = meanOf(beat, channelCount, bound.slot))
            return *mean + bound.offset;
    }
    return otherwise;
}

} // namespace

namespace assembly {

int voteOf(int channel, int channelCount)
{
    if (channelCount < fullChannelCount)
        return 1;
    if (channel < 6)
        return 1;
    if (channel < 9)
        return 5;
    return channel < fullChannelCount ? 10 : 0;
}

double agreement(const std::vector<TChannelBeat>& records, const std::vector<bool>& usable)
{
    const int channelCount = static_cast<int>(records.size());
    int found = 0;
    int possible = 0;
    for (int channel = 0; channel < channelCount; ++channel) {
        if (!usable[channel])
            continue;
        const int vote = voteOf(channel, channelCount);
        possible += vote;
        if (records[channel].hasQrs())
            found += vote;
    }
    return possible > 0 ? static_cast<double>(found) / possible : 0.0;
}

double requiredAgreement(int channelCount)
{
    return channelCount < fullChannelCount ? 0.2 : 0.3;
}

TBeat beatFrom(const std::vector<TChannelBeat>& records, int position, const TSignal& signal)
{
    TBeat beat(static_cast<int>(records.size()));
    beat.setValue(TBeat::beatTime, signal.timeOf(position));
    for (int channel = 0; channel < static_cast<int>(records.size()); ++channel)
        fillChannel(beat, channel, records[channel], signal);
    return beat;
}

double medianRr(const TBeat& beat, const TBeat& previous)
{
    std::vector<double> intervals;
    for (int channel = 0; channel < beat.channelCount(); ++channel) {
        if (!beat.isFiducialSet(channel, TBeat::rPosition))
            continue;
        const double before = previous.isFiducialSet(channel, TBeat::rPosition)
                                  ? previous.fiducial(channel, TBeat::rPosition)
                                  : previous.value(TBeat::beatTime);
        intervals.push_back(beat.fiducial(channel, TBeat::rPosition) - before);
    }
    if (intervals.empty())
        return 0.0;
    std::sort(intervals.begin(), intervals.end());
    return intervals[intervals.size() / 2];
}

void setWindow(TBeat& beat, const std::vector<TChannelBeat>& records, const TSignal& signal)
{
    const auto first = std::find_if(records.begin(), records.end(), [](const TChannelBeat& record) {
        return TChannelBeat::known(record.rPosition);
    });
    const double position = beat.value(TBeat::beatTime);
    const double firstPosition = first != records.end() ? signal.timeOf(first->rPosition) : position;
    const int channels = static_cast<int>(records.size());
    const double start =
        boundOf(beat, channels, {{TBeat::pPeak, -0.05}, {TBeat::qrsOnset, -0.1}, {TBeat::rPosition, -0.15}},
                firstPosition - 0.2);
    const double end =
        boundOf(beat, channels, {{TBeat::tPeak, 0.1}, {TBeat::qrsOffset, 0.15}, {TBeat::rPosition, 0.2}},
                position + 0.25);
    beat.setWindow(start, end - start);
}

} // namespace assembly
