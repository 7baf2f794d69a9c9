#include "windows/TLiveSaturation.h"

#include "recorder/TStudyRecorder.h"

#include <algorithm>

TLiveSaturation::TLiveSaturation(TStudyRecorder& recorder)
    : m_recorder(recorder), m_raw(&recorder.rawSignal())
{
}

bool TLiveSaturation::findStretch(int channel, int from, int to, int* first, int* last)
{
    const int start = m_recorder.rawIndexOf(0);
    const int step = m_recorder.rawIndexOf(1) - start;
    int rawFirst = 0;
    int rawLast = 0;
    if (!m_raw.findStretch(channel, start + from * step, start + to * step, &rawFirst, &rawLast))
        return false;
    *first = (rawFirst - start) / step;
    // Rounded up, so that a stretch is never empty.
    *last = std::min((rawLast - start + step - 1) / step, to);
    return true;
}
