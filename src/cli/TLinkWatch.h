#pragma once

#include <QtGlobal>

/// Tells each loss of the link to a device once, whatever the reader goes through until it is back.
class TLinkWatch
{
public:
    /// Milliseconds without a sample that are a loss as well.
    static constexpr qint64 silenceMs = 3000;

    /// `samplingRate`: a second of samples ends a loss.
    explicit TLinkWatch(int samplingRate) : m_samplingRate(samplingRate) {}

    /// To be called when the acquisition begins: what the device went through before is no loss.
    void start(int failures, int samples, qint64 now);
    /// To be called about once a second with the failures of the reader and the samples so far, and the time
    /// in milliseconds from any start. True once for each loss.
    bool isNewlyLost(int failures, int samples, qint64 now);

private:
    bool isLost(int failures, int samples, qint64 now);

    const int m_samplingRate;
    bool m_lost = false;
    int m_failures = 0;
    int m_samples = 0;
    int m_samplesAtLoss = 0;
    qint64 m_lastSamples = 0;
};
