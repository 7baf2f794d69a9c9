#pragma once

class TSignalWindow;

namespace velantor {

/// Samples [from, from + count) as doubles, counted from the start of the window's current block; 0 where
/// the window has none.
void readWindow(const TSignalWindow& window, int from, int count, double* out);

} // namespace velantor
