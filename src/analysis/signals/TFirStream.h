#pragma once

#include "analysis/signals/TFirStreamBase.h"

/// A FIR filter whose sink gets samples truncated and clamped to 16 bits.
class TFirStream : public TFirStreamBase
{
public:
    TFirStream(const std::vector<double>& coefficients, int delay) : TFirStreamBase(coefficients, delay) {}

protected:
    void give(TFrameBuffer& frames) override;
};
