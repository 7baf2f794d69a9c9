#pragma once

#include "analysis/signals/TFirStreamBase.h"

/// A FIR filter whose sink gets the sums as doubles.
class TFirStreamDouble : public TFirStreamBase
{
public:
    TFirStreamDouble(const std::vector<double>& coefficients, int delay) : TFirStreamBase(coefficients, delay)
    {
    }

protected:
    void give(TFrameBuffer& frames) override;
};
