#include "simulators/heart/LeadField.h"

namespace heart {
namespace {

/// Lead vectors of the eight independent leads: G. E. Dower, H. B. Machado, J. A. Osborne, "On deriving the
/// electrocardiogram from vectorcardiographic leads", Clinical Cardiology 3 (1980) 87-95.
constexpr TVector leadI{0.632, -0.235, 0.059};
constexpr TVector leadII{0.235, 1.066, -0.132};
constexpr TVector chestLeads[] = {{-0.515, 0.157, -0.917}, {0.044, 0.164, -1.387}, {0.882, 0.098, -1.277},
                                  {1.213, 0.127, -0.601},  {1.125, 0.127, -0.086}, {0.831, 0.076, 0.230}};

double dot(const TVector& a, const TVector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

} // namespace

TPotentials potentialsOf(const TVector& dipole)
{
    const double i = dot(leadI, dipole);
    const double ii = dot(leadII, dipole);
    TPotentials potentials;
    potentials[RA] = -(i + ii) / 3;
    potentials[LA] = (2 * i - ii) / 3;
    potentials[LL] = (2 * ii - i) / 3;
    for (int chest = 0; chest < 6; ++chest)
        potentials[C1 + chest] = dot(chestLeads[chest], dipole);
    // The upper breastbone lies amid these four; no lead vector of it is as well known as the others.
    potentials[Manubrium] = (potentials[RA] + potentials[LA] + potentials[C1] + potentials[C1 + 1]) / 4;
    return potentials;
}

TLeadVoltages leadsOf(const TPotentials& potentials)
{
    const double wilson = (potentials[RA] + potentials[LA] + potentials[LL]) / 3;
    TLeadVoltages leads;
    leads[I] = potentials[LA] - potentials[RA];
    leads[II] = potentials[LL] - potentials[RA];
    leads[III] = potentials[LL] - potentials[LA];
    leads[aVR] = 1.5 * (potentials[RA] - wilson);
    leads[aVL] = 1.5 * (potentials[LA] - wilson);
    leads[aVF] = 1.5 * (potentials[LL] - wilson);
    for (int chest = 0; chest < 6; ++chest)
        leads[V1 + chest] = potentials[C1 + chest] - wilson;
    leads[CM5] = potentials[C1 + 4] - potentials[Manubrium];
    leads[CR5] = potentials[C1 + 4] - potentials[RA];
    return leads;
}

} // namespace heart
