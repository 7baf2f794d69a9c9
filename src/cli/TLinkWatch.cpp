#include "cli/TLinkWatch.h"

#include <utility>

void TLinkWatch::start(int failures, int samples, qint64 now)
{
    m_lost = false;
    m_failures = failures;
    m_samples = samples;
    m_lastSamples = now;
}

bool TLinkWatch::isNewlyLost(int failures, int samples, qint64 now)
{
    if (m_lost && samples - m_samplesAtLoss >= m_samplingRate)
        m_lost = false;
    const bool lost = isLost(failures, samples, now);
    if (!lost || std::exchange(m_lost, true))
        return false;
    m_samplesAtLoss = samples;
    return true;
}

bool TLinkWatch::isLost(int failures, int samples, qint64 now)
{
    const bool failed = std::exchange(m_failures, failures) != failures;
    if (std::exchange(m_samples, samples) != samples)
        m_lastSamples = now;
    return failed || now - m_lastSamples >= silenceMs;
}
