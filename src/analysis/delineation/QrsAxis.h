#pragma once

class TDoubleVector;

namespace velantor {

/// What the axis is where it cannot be told.
constexpr double noQrsAxis = -999.0;

/// Electrical axis of the QRS in the frontal plane, in degrees from -180 to 180, from the complexes of the
/// leads I and III between two samples, both included. `noQrsAxis` if a complex is empty, meaning that the
/// lead does not exist, or unless 1 <= `onset` < `offset`. What lies behind the end of a complex is left out.
double qrsAxis(const TDoubleVector& complexI, const TDoubleVector& complexIII, int onset, int offset);

} // namespace velantor
