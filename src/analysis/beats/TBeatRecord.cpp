#include "analysis/beats/TBeatRecord.h"

#include "analysis/signals/Truncation.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace {

// Offsets in the head.
constexpr int windowStartOffset = 0;
constexpr int windowLengthOffset = 8;
constexpr int valuesOffset = 16;
constexpr int numberOffset = 48;

struct TSlotPlace
{
    int slot;
    int offset;
};

// Places in a channel block; the QRS type stands behind the P type.
constexpr int takesPartOffset = 0;
constexpr TSlotPlace doublePlaces[] = {
    {TBeat::pPeak, 8},  {TBeat::qrsOnset, 16},    {TBeat::rPosition, 24},  {TBeat::qrsOffset, 32},
    {TBeat::tPeak, 40}, {TBeat::qrsDuration, 56}, {TBeat::pqInterval, 64}, {TBeat::qtInterval, 72}};
constexpr TSlotPlace typePlaces[] = {{TBeat::pType, 48}, {TBeat::qrsType, 50}, {TBeat::tType, 52}};

void putDouble(double x, char* out)
{
    qToLittleEndian(std::bit_cast<quint64>(x), out);
}

/// `absent` stands for what is not finite.
double doubleAt(const char* data, double absent = 0.0)
{
    const auto x = std::bit_cast<double>(qFromLittleEndian<quint64>(data));
    return std::isfinite(x) ? x : absent;
}

double finiteOr(double x, double absent)
{
    return std::isfinite(x) ? x : absent;
}

/// A slot without a value is written as 0, whatever its form.
double slotOrZero(const TBeat& beat, int channel, int slot)
{
    return beat.isFiducialSet(channel, slot) ? beat.fiducial(channel, slot) : 0.0;
}

void packHead(const TBeat& beat, char* out)
{
    putDouble(finiteOr(beat.windowStart(), 0.0), out + windowStartOffset);
    putDouble(finiteOr(beat.windowLength(), 0.0), out + windowLengthOffset);
    for (int i = 0; i < TBeat::valueCount; ++i)
        putDouble(finiteOr(beat.value(i), TBeat::unset), out + valuesOffset + 8 * i);
    const bool rejected = !beat.valid() && beat.number() >= 0;
    qToLittleEndian<qint32>(rejected ? -1 : beat.number(), out + numberOffset);
}

void packChannel(const TBeat& beat, int channel, char* out)
{
    qToLittleEndian(velantor::truncated<qint32>(slotOrZero(beat, channel, TBeat::takesPart)),
                    out + takesPartOffset);
    for (const auto& place : doublePlaces)
        putDouble(finiteOr(slotOrZero(beat, channel, place.slot), 0.0), out + place.offset);
    for (const auto& place : typePlaces)
        qToLittleEndian(velantor::truncated<qint16>(slotOrZero(beat, channel, place.slot)),
                        out + place.offset);
}

void unpackHead(const char* data, TBeat& beat)
{
    beat.setWindow(doubleAt(data + windowStartOffset), doubleAt(data + windowLengthOffset));
    for (int i = 0; i < TBeat::valueCount; ++i) {
        const double x = doubleAt(data + valuesOffset + 8 * i, TBeat::unset);
        if (x != TBeat::unset)
            beat.setValue(i, x);
    }
    beat.setNumber(qFromLittleEndian<qint32>(data + numberOffset));
    beat.setValid(beat.number() >= 0);
}

void unpackChannel(const char* data, int channel, TBeat& beat)
{
    beat.setFiducial(channel, TBeat::takesPart, qFromLittleEndian<qint32>(data + takesPartOffset));
    for (const auto& place : doublePlaces) {
        const double x = doubleAt(data + place.offset);
        if (x > 0.0)
            beat.setFiducial(channel, place.slot, x);
    }
    for (const auto& place : typePlaces)
        beat.setFiducial(channel, place.slot, qFromLittleEndian<qint16>(data + place.offset));
}

} // namespace

TBeatRecord::TBeatRecord(int channelCount)
    : m_channelCount(std::clamp(channelCount, 0, velantor::maxChannels))
{
}

void TBeatRecord::pack(const TBeat& beat, char* out) const
{
    std::memset(out, 0, size());
    packHead(beat, out);
    for (int channel = 0; channel < m_channelCount; ++channel)
        packChannel(beat, channel, out + headSize + channel * channelSize);
}

TBeat TBeatRecord::unpack(const char* data, int index) const
{
    TBeat beat(m_channelCount);
    beat.setIndex(index);
    unpackHead(data, beat);
    for (int channel = 0; channel < m_channelCount; ++channel)
        unpackChannel(data + headSize + channel * channelSize, channel, beat);
    return beat;
}
