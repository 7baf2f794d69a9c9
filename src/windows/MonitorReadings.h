#pragma once

#include <QString>

/// Minutes and seconds, without fractions: " 1:05".
QString elapsedText(double seconds);

/// Beats per minute from the seconds between two beats, without a fraction. Empty for what is no rate: no
/// time between them, or more than a minute.
QString heartRateText(double rr);
