#pragma once

/// Finds where a channel stands at the end of the converter's range. Whoever installs it owns it.
class TSaturationSource
{
public:
    virtual ~TSaturationSource() = default;

    /// The next stretch of saturated samples within [from, to): `first` is its first sample, `last` the first
    /// sample in range again, or `to`. False if there is none.
    virtual bool findStretch(int channel, int from, int to, int* first, int* last) = 0;
};
