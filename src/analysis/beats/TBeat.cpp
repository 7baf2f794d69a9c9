#include "analysis/beats/TBeat.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

TBeat::TBeat(int channelCount) : m_channelCount(std::clamp(channelCount, 0, velantor::maxChannels))
{
    m_values.fill(unset);
    for (auto& slots : m_fiducials)
        slots.fill(unset);
}

TBeat::TBeat(const TSignal* signal) : TBeat(signal ? signal->channelCount() : 0) {}

void TBeat::setWindow(double start, double length)
{
    m_windowStart = start;
    m_windowLength = length;
}

double TBeat::value(int value) const
{
    return isValue(value) ? m_values[value] : 0.0;
}

bool TBeat::isValueSet(int value) const
{
    return isValue(value) && m_valueSet[value];
}

void TBeat::setValue(int value, double x)
{
    if (!isValue(value))
        return;
    m_values[value] = x;
    m_valueSet[value] = true;
}

double TBeat::fiducial(int channel, int slot) const
{
    return isSlot(channel, slot) ? m_fiducials[channel][slot] : 0.0;
}

bool TBeat::isFiducialSet(int channel, int slot) const
{
    return isSlot(channel, slot) && m_fiducialSet[channel][slot];
}

void TBeat::setFiducial(int channel, int slot, double x)
{
    if (!isSlot(channel, slot))
        return;
    m_fiducials[channel][slot] = x;
    m_fiducialSet[channel][slot] = true;
}

void TBeat::addTime(double seconds)
{
    m_windowStart += seconds;
    setValue(beatTime, m_values[beatTime] + seconds);
    for (int channel = 0; channel < m_channelCount; ++channel)
        for (int slot = 0; slot < fiducialCount; ++slot)
            if (isTime(slot) && m_fiducialSet[channel][slot])
                m_fiducials[channel][slot] += seconds;
}

bool TBeat::isSlot(int channel, int slot) const
{
    return channel >= 0 && channel < m_channelCount && slot >= 0 && slot < fiducialCount;
}
