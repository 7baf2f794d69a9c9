#include "analysis/signals/TStreamProcessor.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>

void TStreamProcessor::attach(TSignal* source, int position)
{
    m_source = source;
    m_position = std::max(position, 0);
}

void TStreamProcessor::runTo(int end)
{
    m_end = end;
    run();
    m_end = std::numeric_limits<int>::max();
}

int TStreamProcessor::available() const
{
    const qint64 beyond = static_cast<qint64>(std::min(m_source->sampleCount(), m_end)) - m_position;
    return static_cast<int>(std::clamp<qint64>(beyond, 0, std::numeric_limits<int>::max()));
}
