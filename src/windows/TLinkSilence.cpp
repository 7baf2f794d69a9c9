#include "windows/TLinkSilence.h"

#include <utility>

bool TLinkSilence::isSilent(int samples)
{
    const bool hasNews = std::exchange(m_samples, samples) != samples;
    m_calls = hasNews || samples == 0 ? 0 : m_calls + 1;
    return m_calls >= silentCalls;
}
