#pragma once

#include <QByteArray>

#include <vector>

/// The FIR tables of both filter chains, by the name that a chain has for its filter and by the rate in
/// samples per second. Null: the chain has no such stage. The tables stand for the life of the program; the
/// delay of each is half its length. `docs/filters.md` tells gains and design.
namespace velantor {

/// Half-power point at about 0.4 Hz, sum 0; only at 500.
const std::vector<double>* highPassTable(int samplingRate);

/// Zero at the mains' frequency: "50hz" or "60hz" at 250, 500 and 1000.
const std::vector<double>* notchTable(const QByteArray& name, int samplingRate);

/// Low-pass against muscle noise: "25hz" or "40hz" at 500 and 1000, where any other name gives an empty
/// table; the same one for all names at 250.
const std::vector<double>* muscleTable(const QByteArray& name, int samplingRate);

/// High-pass against a wandering baseline, at 250, 500 and 1000.
const std::vector<double>* baselineTable(int samplingRate);

} // namespace velantor
