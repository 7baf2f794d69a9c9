#pragma once

#include "simulators/heart/TVector.h"

#include <array>

/// From the dipole of the heart to the potentials under the electrodes and from those to the leads.
namespace heart {

enum TElectrode
{
    RA,
    LA,
    LL,
    C1, ///< C1 to C6: the chest electrodes of V1 to V6
    C6 = C1 + 5,
    Manubrium, ///< of CM5
    electrodeCount
};

/// In the order of the file.
enum TLead
{
    I,
    II,
    III,
    aVR,
    aVL,
    aVF,
    V1,
    V2,
    V3,
    V4,
    V5,
    V6,
    CM5,
    CR5,
    leadCount
};

inline constexpr const char* leadNames[leadCount] = {"I",  "II", "III", "aVR", "aVL", "aVF", "V1",
                                                     "V2", "V3", "V4",  "V5",  "V6",  "CM5", "CR5"};

/// mV.
using TPotentials = std::array<double, electrodeCount>;
using TLeadVoltages = std::array<double, leadCount>;

/// Potentials against Wilson's central terminal.
TPotentials potentialsOf(const TVector& dipole);

TLeadVoltages leadsOf(const TPotentials& potentials);

} // namespace heart
