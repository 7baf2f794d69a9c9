#pragma once

namespace heart {

/// The dipole of the heart in Frank's axes: x to the patient's left, y to the feet, z to the back; mV.
struct TVector
{
    double x = 0;
    double y = 0;
    double z = 0;
};

inline TVector operator+(const TVector& a, const TVector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline TVector operator*(double factor, const TVector& a)
{
    return {factor * a.x, factor * a.y, factor * a.z};
}

} // namespace heart
