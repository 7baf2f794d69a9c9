#include "display/TLeadRows.h"

#include <algorithm>
#include <numeric>

namespace {

template <typename Value> bool change(Value& stored, Value value)
{
    const bool changed = stored != value;
    stored = value;
    return changed;
}

} // namespace

TLeadRows::TLeadRows()
{
    m_visible.fill(true);
    std::iota(m_order.begin(), m_order.end(), 0);
}

bool TLeadRows::setVisible(int channel, bool visible)
{
    return isChannel(channel) && change(m_visible[channel], visible);
}

bool TLeadRows::setInverted(int channel, bool inverted)
{
    return isChannel(channel) && change(m_inverted[channel], inverted);
}

bool TLeadRows::setOrder(int row, int channel)
{
    return isChannel(row) && isChannel(channel) && change(m_order[row], channel);
}

int TLeadRows::visibleCount(int channelCount) const
{
    const int count = std::clamp<int>(channelCount, 0, velantor::maxChannels);
    return static_cast<int>(std::count(m_visible.begin(), m_visible.begin() + count, true));
}
