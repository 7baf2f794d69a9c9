#include "analysis/delineation/CurveTurns.h"

#include "analysis/signals/TDoubleVector.h"

#include <algorithm>
#include <cmath>

namespace curve {

namespace {

bool differInSign(double a, double b)
{
    return (a > 0.0) != (b > 0.0);
}

} // namespace

double rootMeanSquare(const TDoubleVector& values)
{
    double sum = 0.0;
    for (const double value : values.values())
        sum += value * value;
    return values.size() > 0 ? std::sqrt(sum / values.size()) : 0.0;
}

bool isExtreme(const TDoubleVector& values, int i, int lag)
{
    if (i < lag || i + lag >= values.size())
        return false;
    const double before = values[i - lag];
    const double after = values[i + lag];
    return (values[i] > before && values[i] > after) || (values[i] < before && values[i] < after);
}

int nearerToZero(const TDoubleVector& values, int i)
{
    return std::abs(values[i + 1]) < std::abs(values[i]) ? i + 1 : i;
}

int crossingOnTheWay(const TDoubleVector& values, int from, int to)
{
    const int step = to > from ? 1 : -1;
    int i = from;
    while (i != to && !differInSign(values[i], values[i + step]))
        i += step;
    return nearerToZero(values, std::min(i, i + step));
}

} // namespace curve
