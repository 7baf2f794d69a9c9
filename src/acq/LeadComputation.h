#pragma once

#include "acq/TEcgSample.h"

namespace acq {

/// Fills aVR, aVL and aVF by Goldberger's relations from I, II and III, within 16 bits. Halves are cut toward
/// zero.
void computeAugmentedLeads(TEcgSample& sample);

/// Zeroes the leads that mean nothing without an electrode that is off.
void zeroDetachedLeads(TEcgSample& sample);

} // namespace acq
