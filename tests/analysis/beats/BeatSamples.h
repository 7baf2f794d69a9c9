#pragma once

#include "analysis/beats/TBeat.h"

#include <QByteArray>

#include <random>

/// Beats that several tests store, and the bytes of one of them.
namespace samples {

/// A beat of two channels with every value and every slot of the first set; the second does not take part.
inline TBeat writtenBeat()
{
    TBeat beat(2);
    beat.setWindow(1.0, 0.75);
    beat.setValue(0, 1.25);
    beat.setValue(1, 0.5);
    beat.setValue(2, 0.25);
    beat.setNumber(258);
    const double slots[] = {1.0, 1.125, 1.1875, 1.25, 1.3125, 1.5, 1.0, -1.0, 0.0, 0.125, 0.0625, 0.375};
    for (int slot = 0; slot < 12; ++slot)
        beat.setFiducial(0, slot, slots[slot]);
    return beat;
}

/// The record of `writtenBeat`, written down by hand.
inline QByteArray writtenBytes()
{
    const QByteArray head = "000000000000F03F" // window start 1.0
                            "000000000000E83F" // window length 0.75
                            "000000000000F43F" // beat time 1.25
                            "000000000000E03F" // rr 0.5
                            "000000000000D03F" // mean rr 0.25
                            "000000000000F0BF" // fourth value not set, -1.0
                            "02010000"         // number 258
                            "00000000";
    const QByteArray channel = "01000000" // takes part
                               "00000000"
                               "000000000000F23F" // P peak 1.125
                               "000000000000F33F" // QRS onset 1.1875
                               "000000000000F43F" // R 1.25
                               "000000000000F53F" // QRS offset 1.3125
                               "000000000000F83F" // T peak 1.5
                               "FFFF"             // P type -1
                               "0100"             // QRS type 1
                               "0000"             // T type 0
                               "0000"
                               "000000000000C03F"  // QRS duration 0.125
                               "000000000000B03F"  // P to QRS 0.0625
                               "000000000000D83F"; // QT 0.375
    return QByteArray::fromHex(head + channel) + QByteArray(80, '\0');
}

/// A beat that a record keeps without loss: every value set, times and durations positive or not set.
inline TBeat randomBeat(std::mt19937& random, int channelCount)
{
    std::uniform_real_distribution<double> positive(1e-3, 20000.0);
    std::uniform_int_distribution<int> type(-1, 1);
    std::bernoulli_distribution coin;
    TBeat beat(channelCount);
    beat.setWindow(positive(random), positive(random));
    for (int value = 0; value < 4; ++value)
        beat.setValue(value, positive(random));
    beat.setNumber(int(random()));
    beat.setValid(beat.number() >= 0);
    for (int channel = 0; channel < channelCount; ++channel) {
        beat.setFiducial(channel, TBeat::takesPart, coin(random));
        for (const int slot : {TBeat::qrsType, TBeat::pType, TBeat::tType})
            beat.setFiducial(channel, slot, type(random));
        for (const int slot : {1, 2, 3, 4, 5, 9, 10, 11})
            if (coin(random))
                beat.setFiducial(channel, slot, positive(random));
    }
    return beat;
}

/// Whether all but the index is the same, flags included.
inline bool sameBeat(const TBeat& a, const TBeat& b)
{
    bool same = a.channelCount() == b.channelCount() && a.windowStart() == b.windowStart() &&
                a.windowLength() == b.windowLength() && a.number() == b.number() && a.valid() == b.valid();
    for (int value = 0; value < 4; ++value)
        same = same && a.value(value) == b.value(value) && a.isValueSet(value) == b.isValueSet(value);
    for (int channel = 0; channel < a.channelCount(); ++channel)
        for (int slot = 0; slot < 12; ++slot)
            same = same && a.fiducial(channel, slot) == b.fiducial(channel, slot) &&
                   a.isFiducialSet(channel, slot) == b.isFiducialSet(channel, slot);
    return same;
}

} // namespace samples
