#pragma once

#include <string>

/// The messages of the Kipnet treadmill: text between ";" and ":" with the device's address, a command and
/// two digits of check sum. The device answers each with as many bytes.
namespace kipnet {

inline constexpr int baud = 4800;

// Values are finite; below 0 counts as 0.
std::string goMessage();
std::string stopMessage();
/// Tenths of km/h, truncated; 40 km/h at most.
std::string speedMessage(double kmPerHour);
/// Tenths of a percent, truncated; 20 % at most.
std::string inclineMessage(double percent);
/// Whole watts, truncated; 800 W at most.
std::string loadMessage(double watts);

} // namespace kipnet
