#include "simulators/heart/ExactMath.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

// Intermediate results wider than a double would be rounded at the compiler's whim.
static_assert(FLT_EVAL_METHOD == 0);

namespace heart {

double gaussian(double x)
{
    const double exponent = -x * x / 2;
    if (exponent < -40.5)
        return 0;
    // The series of exp converges fast for the 64th part; six squarings make up for that.
    const double small = exponent / 64;
    double sum = 1;
    for (int order = 12; order > 0; --order)
        sum = 1 + sum * small / order;
    for (int i = 0; i < 6; ++i)
        sum *= sum;
    return sum;
}

double sineOfTurns(double turns)
{
    double part = turns - std::floor(turns + 0.5);
    if (part > 0.25)
        part = 0.5 - part;
    else if (part < -0.25)
        part = -0.5 - part;
    const double angle = 6.283185307179586 * part;
    double sum = 1;
    for (int order = 19; order > 1; order -= 2)
        sum = 1 - sum * angle * angle / (order * (order - 1));
    return angle * sum;
}

double smoothStep(double x)
{
    const double inside = std::clamp(x, 0.0, 1.0);
    return inside * inside * (3 - 2 * inside);
}

int nearestInteger(double x)
{
    return static_cast<int>(std::floor(x + 0.5));
}

} // namespace heart
