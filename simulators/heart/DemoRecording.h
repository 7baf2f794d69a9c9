#pragma once

#include "simulators/heart/LeadField.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// The recording that the demonstration device replays in a loop.
namespace heart {

/// 16 bits cover -300 to 300 mV.
inline constexpr double millivoltsPerCount = 600.0 / 65536;

/// One sampling instant, counts.
using TFrame = std::array<std::int16_t, leadCount>;

/// The heart alone, or with what disturbs it on the way to the device; one entry per frame, mV.
std::vector<TLeadVoltages> demoLeads(bool disturbed);

/// As a device would send it: I, II and the chest leads are measured, III and the augmented leads computed
/// from the counts.
TFrame digitized(const TLeadVoltages& leads);

std::vector<TFrame> demoRecording();

/// The bytes of the file: frames one after the other, 16 bits little-endian.
std::string fileBytes(const std::vector<TFrame>& frames);

} // namespace heart
