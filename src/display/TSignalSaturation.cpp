#include "display/TSignalSaturation.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <cmath>

int TSignalSaturation::limit() const
{
    return velantor::truncated<int>(std::ldexp(1.0, m_signal->resolutionBits() - 1) - 2.0);
}

bool TSignalSaturation::findStretch(int channel, int from, int to, int* first, int* last)
{
    TChannel* const found = m_signal->channel(channel);
    return found && found->findOutside(from, to, -limit(), limit(), first, last);
}
