#pragma once

#include "acq/TPortAcqThread.h"

/// Reader of the standard device, 500 frames per second. Pushes the channels of a mask, those that an
/// electrode is missing for as zeros.
class TStdAcqThread : public TPortAcqThread
{
public:
    /// `buffer` outlives the thread.
    TStdAcqThread(TAcqBuffer& buffer, std::string port, int baud, int channelMask);
    ~TStdAcqThread() override;

private:
    void stream() override;

    const int m_channelMask;
};
