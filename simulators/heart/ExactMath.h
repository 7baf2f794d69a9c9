#pragma once

/// Functions of the heart model that give the same bits on every machine: they use nothing but the four basic
/// operations and floor, which IEEE 754 fixes to the last bit, where exp and sin of a C library may differ.
namespace heart {

/// exp(-x * x / 2); 0 beyond nine standard deviations.
double gaussian(double x);

/// The sine of an angle in whole turns: 0.25 gives 1.
double sineOfTurns(double turns);

/// Rises smoothly from 0 (x <= 0) to 1 (x >= 1).
double smoothStep(double x);

/// The nearest integer; halves go up.
int nearestInteger(double x);

} // namespace heart
