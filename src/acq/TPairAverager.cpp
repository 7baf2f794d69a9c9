#include "acq/TPairAverager.h"

bool TPairAverager::add(TEcgSample& sample)
{
    m_hasStored = !m_hasStored;
    if (m_hasStored) {
        m_stored = sample.channels;
        return false;
    }
    for (std::size_t i = 0; i < m_stored.size(); ++i)
        sample.channels[i] = static_cast<std::int16_t>((m_stored[i] + sample.channels[i]) >> 1);
    return true;
}
