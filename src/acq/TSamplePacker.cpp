#include "acq/TSamplePacker.h"

TSamplePacker::TSamplePacker(int mask) : m_channels(acq::selectedChannels(mask, acq::deviceChannelCount)) {}

const char* TSamplePacker::pack(const TEcgSample& sample)
{
    std::size_t next = 0;
    for (const int channel : m_channels) {
        const auto value = static_cast<std::uint16_t>(sample.channels[static_cast<std::size_t>(channel)]);
        m_bytes[next++] = static_cast<char>(value & 0xFFU);
        m_bytes[next++] = static_cast<char>(value >> 8U);
    }
    return m_bytes.data();
}
