#pragma once

#include "analysis/signals/TSignal.h"

class TBlockProcessor;

/// A view of another signal whose blocks are computed when they are first asked for and kept from then on.
/// Source and processors are borrowed and outlive it. Appends to it only tell its listeners; those to the
/// source lengthen it without telling them.
class TFilteredSignal : public TSignal, private TSignalListener
{
public:
    /// One processor for all channels; null leaves the samples as they are.
    TFilteredSignal(TSignal* source, TBlockProcessor* processor);
    /// One processor per channel of the source, null for a channel that stays as it is. The array is copied.
    TFilteredSignal(TSignal* source, TBlockProcessor* const* perChannel);
    ~TFilteredSignal() override;

    int sample(int channel, int index) override;
    void readDoubles(int channel, int start, int count, double* out) override;
    short* loadBlock(int channel, int block) override;
    void freeBlock(void* buffer) override;

private:
    explicit TFilteredSignal(TSignal* source);

    void signalChanged() override;
    void followSource();
    void copyBlock(int channel, int block, short* out);

    TSignal* m_source;
    std::array<TBlockProcessor*, velantor::maxChannels> m_processors{};
};
