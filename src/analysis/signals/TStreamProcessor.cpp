#include "analysis/signals/TStreamProcessor.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <limits>

void TStreamProcessor::attach(TSignal* source, int position)
{
    m_source = source;
    m_position = std::max(position, 0);
}

int TStreamProcessor::available() const
{
    const qint64 beyond = static_cast<qint64>(m_source->sampleCount()) - m_position;
    return static_cast<int>(std::clamp<qint64>(beyond, 0, std::numeric_limits<int>::max()));
}
