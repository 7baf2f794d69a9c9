#include "acq/TFrameParser.h"

#include <iterator>

using acq::TElectrode;

bool TFrameParser::add(unsigned char byte, TEcgSample& out)
{
    if (isWrongSync(byte)) {
        reset();
        return false;
    }
    m_bytes[static_cast<std::size_t>(m_size++)] = byte;
    if (m_size < m_layout->size)
        return false;
    unpack(out);
    reset();
    return true;
}

void TFrameParser::reset()
{
    m_size = 0;
    m_sync = 0;
}

bool TFrameParser::isWrongSync(unsigned char byte)
{
    if (m_sync == m_layout->syncCount)
        return false;
    const acq::TSyncByte& next = m_layout->sync[static_cast<std::size_t>(m_sync)];
    if (m_size != next.offset)
        return false;
    ++m_sync;
    return byte != next.value;
}

void TFrameParser::unpack(TEcgSample& out) const
{
    using namespace acq;
    static constexpr TChannelIndex limb[] = {V5, I, II, III};
    static constexpr TChannelIndex chest[] = {V1, V2, V3, V4};
    static constexpr TChannelIndex last[] = {V6, CM5, CR5};
    out = TEcgSample();
    unpackChannels(m_layout->limbSamples, limb, std::size(limb), out);
    unpackChannels(m_layout->chestSamples, chest, std::size(chest), out);
    unpackChannels(m_layout->lastSamples, last, std::size(last), out);
    out.electrodesOff = electrodesOff();
    out.batteryVolts = byteAt(m_layout->battery) * batteryStepVolts;
}

void TFrameParser::unpackChannels(int offset, const acq::TChannelIndex* channels, int count,
                                  TEcgSample& out) const
{
    for (int i = 0; i < count; ++i) {
        const unsigned value = byteAt(offset + 2 * i) << 8U | byteAt(offset + 2 * i + 1);
        out.channels[channels[i]] = static_cast<std::int16_t>(value);
    }
}

unsigned TFrameParser::electrodesOff() const
{
    const unsigned a = byteAt(m_layout->statusA);
    const unsigned b = byteAt(m_layout->statusB);
    const unsigned c = byteAt(m_layout->statusC);
    const unsigned d = byteAt(m_layout->statusD);
    unsigned off = 0;
    const auto set = [&off](TElectrode electrode, unsigned bits) {
        off |= (bits != 0 ? 1U : 0U) << static_cast<unsigned>(electrode);
    };
    set(TElectrode::LA, a & acq::statusALA);
    set(TElectrode::LL, a & acq::statusALL);
    set(TElectrode::RA, b & acq::statusBRA);
    set(TElectrode::V1, c & acq::statusCV1);
    set(TElectrode::V2, c & acq::statusCV2);
    set(TElectrode::V3, c & acq::statusCV3);
    set(TElectrode::V4, c & acq::statusCV4);
    set(TElectrode::V5, a & acq::statusAV5);
    set(TElectrode::V6, d & acq::statusDV6);
    return off;
}
