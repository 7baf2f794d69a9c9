#pragma once

#include "acq/TPortAcqThread.h"

/// Reader of the high-rate device, 1000 frames per second. Pushes all channels of the mean of each two
/// frames, as they are also where an electrode is missing.
class THRAcqThread : public TPortAcqThread
{
public:
    /// `buffer` outlives the thread.
    THRAcqThread(TAcqBuffer& buffer, std::string port, int baud);
    ~THRAcqThread() override;

private:
    void stream() override;
};
