#pragma once

#include "acq/TEcgSample.h"

#include <QByteArray>

#include <vector>

/// The bytes that a device sends, built without the constants of the code under test.
struct TFrameBytes
{
    struct TPlace
    {
        acq::TChannelIndex channel;
        int offset;
    };

    /// With zero samples, all electrodes on, an empty battery.
    QByteArray empty;
    std::vector<int> syncPlaces;
    int statusA;
    int statusB;
    int statusC;
    int statusD;
    int battery;
    std::vector<int> unusedPlaces;
    std::vector<TPlace> channels;

    int size() const { return empty.size(); }

    static TFrameBytes standard()
    {
        using namespace acq;
        QByteArray bytes(40, '\0');
        bytes[0] = '\1';
        bytes[12] = '\2';
        bytes[24] = '\3';
        bytes[1] = bytes[13] = bytes[25] = '\xC0';
        return {bytes,
                {0, 1, 12, 13, 24, 25},
                2,
                3,
                14,
                26,
                36,
                {15, 27, 34, 35, 37, 38, 39},
                {{V5, 4},
                 {I, 6},
                 {II, 8},
                 {III, 10},
                 {V1, 16},
                 {V2, 18},
                 {V3, 20},
                 {V4, 22},
                 {V6, 28},
                 {CM5, 30},
                 {CR5, 32}}};
    }

    static TFrameBytes highRate()
    {
        using namespace acq;
        QByteArray bytes(34, '\0');
        bytes[0] = bytes[11] = bytes[22] = '\xC0';
        return {bytes,
                {0, 11, 22},
                1,
                2,
                12,
                23,
                33,
                {13, 24, 31, 32},
                {{V5, 3},
                 {I, 5},
                 {II, 7},
                 {III, 9},
                 {V1, 14},
                 {V2, 16},
                 {V3, 18},
                 {V4, 20},
                 {V6, 25},
                 {CM5, 27},
                 {CR5, 29}}};
    }

    QByteArray with(const TEcgSample::TChannels& values) const
    {
        QByteArray bytes = empty;
        for (const TPlace& place : channels) {
            const auto value = static_cast<unsigned>(values[place.channel]);
            bytes[place.offset] = static_cast<char>(value >> 8U & 0xFFU);
            bytes[place.offset + 1] = static_cast<char>(value & 0xFFU);
        }
        return bytes;
    }

    /// The augmented leads stay 0.
    TEcgSample::TChannels decoded(const QByteArray& bytes) const
    {
        TEcgSample::TChannels values{};
        for (const TPlace& place : channels) {
            const int high = static_cast<signed char>(bytes[place.offset]);
            const int low = static_cast<unsigned char>(bytes[place.offset + 1]);
            values[place.channel] = static_cast<std::int16_t>(high * 256 + low);
        }
        return values;
    }
};
