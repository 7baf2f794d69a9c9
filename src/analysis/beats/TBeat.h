#pragma once

#include "base/Constants.h"

#include <array>

class TSignal;

/// One detected beat: where it lies, its rhythm values and, per channel, its fiducial points. A plain value
/// that is copied freely. Times are seconds from the start of the recording.
class TBeat
{
public:
    /// Indices of the values.
    enum TValue
    {
        beatTime,    ///< s
        rr,          ///< s since the beat before, 0 if unknown
        meanRR,      ///< s, mean of the last beats, 0 if unknown
        fourthValue, ///< free
        valueCount
    };

    /// Slots of a channel.
    enum TFiducial
    {
        takesPart,   ///< 1 if the channel takes part in the beat, 0 if not
        pPeak,       ///< s
        qrsOnset,    ///< s
        rPosition,   ///< s
        qrsOffset,   ///< s
        tPeak,       ///< s
        qrsType,     ///< +1, -1 or 0; 1 is the normal type
        pType,       ///< +1, -1 or 0
        tType,       ///< +1, -1 or 0
        qrsDuration, ///< s
        pqInterval,  ///< s
        qtInterval,  ///< s
        fiducialCount
    };

    /// What a value or a slot holds until it is set.
    static constexpr double unset = -1.0;

    TBeat() : TBeat(0) {}
    /// `channelCount` is kept within 0 and 16.
    explicit TBeat(int channelCount);
    /// A beat of the signal's channels; null gives a beat without any. The signal is not kept.
    explicit TBeat(const TSignal* signal);

    int channelCount() const { return m_channelCount; }

    /// Place within the store the beat was read from, -1 for a beat of none. Adding a beat to a store leaves
    /// the beat as it is; the stored copy gets its place.
    int index() const { return m_index; }
    void setIndex(int index) { m_index = index; }

    double windowStart() const { return m_windowStart; }
    double windowLength() const { return m_windowLength; }
    void setWindow(double start, double length);
    /// Whether `t` lies in the window: start <= t < start + length.
    bool covers(double t) const { return m_windowStart <= t && t < m_windowStart + m_windowLength; }

    /// 0.0 if `value` is out of range, -1.0 if it was never set.
    double value(int value) const;
    bool isValueSet(int value) const;
    /// Nothing happens if `value` is out of range.
    void setValue(int value, double x);

    /// 0.0 if channel or slot are out of range, -1.0 if the slot was never set.
    double fiducial(int channel, int slot) const;
    bool isFiducialSet(int channel, int slot) const;
    /// Nothing happens if channel or slot are out of range.
    void setFiducial(int channel, int slot, double x);

    /// Beat number; negative if the beat was rejected after being held.
    int number() const { return m_number; }
    void setNumber(int number) { m_number = number; }
    /// A rejected beat keeps its place in the store but is not valid.
    bool valid() const { return m_valid; }
    void setValid(bool valid) { m_valid = valid; }

    /// Shifts the beat by `seconds`: the window, the beat time (which then counts as set) and the times among
    /// the fiducials that are set.
    void addTime(double seconds);

    /// Whether a slot holds a point in time, as against a type or a duration.
    static bool isTime(int slot) { return slot >= pPeak && slot <= tPeak; }

private:
    bool isValue(int value) const { return value >= 0 && value < valueCount; }
    bool isSlot(int channel, int slot) const;

    int m_index = -1;
    int m_channelCount;
    double m_windowStart = 0.0;
    double m_windowLength = 0.0;
    std::array<double, valueCount> m_values;
    std::array<bool, valueCount> m_valueSet{};
    std::array<std::array<double, fiducialCount>, velantor::maxChannels> m_fiducials;
    std::array<std::array<bool, fiducialCount>, velantor::maxChannels> m_fiducialSet{};
    int m_number = 0;
    bool m_valid = true;
};
