#pragma once

#include "display/TSaturationSource.h"

class TSignal;

/// Takes what comes within two counts of the converter's range for saturated.
class TSignalSaturation : public TSaturationSource
{
public:
    /// The signal is borrowed and outlives this.
    explicit TSignalSaturation(TSignal* signal) : m_signal(signal) {}

    bool findStretch(int channel, int from, int to, int* first, int* last) override;
    /// In counts: values outside +-limit are saturated.
    int limit() const;

private:
    TSignal* m_signal;
};
