#pragma once

class TSignalWindow;

/// Computes one block of a filtered signal from the source's blocks around it. It keeps nothing from one
/// block to the next, so that blocks may be asked for in any order.
class TBlockProcessor
{
public:
    virtual ~TBlockProcessor() = default;
    /// Writes `window.blockSize()` samples to `out`.
    virtual void process(TSignalWindow& window, short* out) = 0;
};
