#pragma once

/// Notices that a device that used to send samples is silent, as a wireless one is that has gone out of
/// reach: its reader does not fail for a while.
class TLinkSilence
{
public:
    /// Calls without a new sample that are a silence.
    static constexpr int silentCalls = 3;

    /// To be called once a second with the number of samples so far. False before the first sample.
    bool isSilent(int samples);

private:
    int m_samples = 0;
    int m_calls = 0;
};
