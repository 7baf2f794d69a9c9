#include "analysis/delineation/QrsAxis.h"

#include "analysis/signals/TDoubleVector.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.141592653589793;

/// Height of the greatest value above the first less depth of the smallest below it.
double netDeflection(const TDoubleVector& complex, int onset, int offset)
{
    const double* const first = complex.data() + onset;
    const double* const end = complex.data() + std::min(offset, complex.size() - 1) + 1;
    const auto [least, greatest] = std::minmax_element(first, end);
    return (*greatest - *first) - (*first - *least);
}

} // namespace

double velantor::qrsAxis(const TDoubleVector& complexI, const TDoubleVector& complexIII, int onset,
                         int offset)
{
    const bool known = onset >= 1 && offset > onset && onset < complexI.size() && onset < complexIII.size();
    if (!known)
        return noQrsAxis;
    const double a = netDeflection(complexI, onset, offset);
    const double b = netDeflection(complexIII, onset, offset);
    return std::atan2(2.0 * b + a, std::sqrt(3.0) * a) * 180.0 / pi;
}
