#pragma once

#include "acq/FrameBytes.h"
#include "acq/THRAcqDevice.h"
#include "acq/TStdAcqDevice.h"

#include <memory>

/// Values that tell frame and channel.
inline TEcgSample::TChannels numbered(int number)
{
    TEcgSample::TChannels values{};
    for (int channel = 0; channel < acq::deviceChannelCount; ++channel)
        values[static_cast<std::size_t>(channel)] = static_cast<std::int16_t>(number * 14 + channel);
    return values;
}

inline int augmented(int channel, const TEcgSample::TChannels& values)
{
    switch (channel) {
    case acq::aVR:
        return -(values[acq::I] + values[acq::II]) / 2;
    case acq::aVL:
        return (values[acq::I] - values[acq::III]) / 2;
    case acq::aVF:
        return (values[acq::II] + values[acq::III]) / 2;
    default:
        return values[static_cast<std::size_t>(channel)];
    }
}

inline void append(QByteArray& bytes, int value)
{
    bytes.append(static_cast<char>(static_cast<unsigned>(value) & 0xFFU));
    bytes.append(static_cast<char>(static_cast<unsigned>(value) >> 8U & 0xFFU));
}

inline QByteArray taken(TAcqDevice& device)
{
    QByteArray bytes(device.bytesAvailable(), '\0');
    bytes.resize(device.read(bytes.data(), bytes.size()));
    return bytes;
}

inline std::unique_ptr<TPortAcqDevice> makeDevice(bool highRate, const std::string& path)
{
    if (highRate)
        return std::make_unique<THRAcqDevice>(path.c_str(), acq::highRateBaud);
    return std::make_unique<TStdAcqDevice>(path.c_str(), acq::standardBaud, acq::allChannels);
}

inline TFrameBytes familyOf(bool highRate)
{
    return highRate ? TFrameBytes::highRate() : TFrameBytes::standard();
}

inline constexpr const char* electrodeList[] = {"LA", "LL", "RA", "V1", "V2", "V3", "V4", "V5", "V6"};

inline QByteArray frames(const TFrameBytes& family, int first, int count)
{
    QByteArray bytes;
    for (int i = first; i < first + count; ++i)
        bytes += family.with(numbered(i));
    return bytes;
}
