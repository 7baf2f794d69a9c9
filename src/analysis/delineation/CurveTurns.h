#pragma once

class TDoubleVector;

// Extremes and zero crossings of a curve, by its samples.
namespace curve {

/// 0 for an empty curve.
double rootMeanSquare(const TDoubleVector& values);

/// Whether sample `i` is greater, or smaller, than both samples `lag` away from it.
bool isExtreme(const TDoubleVector& values, int i, int lag);

/// The nearer to zero of `i` and the sample after it.
int nearerToZero(const TDoubleVector& values, int i);

/// The first change of sign on the way from `from` to `to`, either of which may be the later one; their
/// values differ in sign.
int crossingOnTheWay(const TDoubleVector& values, int from, int to);

} // namespace curve
