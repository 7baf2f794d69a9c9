#pragma once

#include "study/TStressProtocol.h"

/// What the load of a stress test asks of the patient.
namespace stress {

/// Metabolic equivalents of a stage, without a unit: on a treadmill by the walking and running equations of
/// the American College of Sports Medicine, on an ergometer by its leg cycling equation. `weight` in
/// kilograms; an ergometer without it, and any other test, gives 0.
double metsOfStage(TProtocolType type, const TProtocolStage& stage, double weight);

/// Oxygen uptake in ml/kg/min.
double vo2OfMets(double mets);

/// Systolic pressure in mmHg times heart rate per minute, both as whole numbers.
double doubleProduct(double systolic, double bpm);

} // namespace stress
