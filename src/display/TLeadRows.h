#pragma once

#include "base/Constants.h"

#include <array>

/// Which leads a display shows, in which order, and where their rows lie.
class TLeadRows
{
public:
    TLeadRows();

    bool visible(int channel) const { return isChannel(channel) && m_visible[channel]; }
    bool inverted(int channel) const { return isChannel(channel) && m_inverted[channel]; }
    /// The channel that row `row` shows, -1 out of range.
    int channelAt(int row) const { return isChannel(row) ? m_order[row] : -1; }

    // True if that changed anything; what is out of range changes nothing.
    bool setVisible(int channel, bool visible);
    bool setInverted(int channel, bool inverted);
    bool setOrder(int row, int channel);

    /// Visible ones among the first `channelCount` channels.
    int visibleCount(int channelCount) const;

    /// Calls `take(row, channel, inverted)` for each visible row in order, `row` counting visible rows from
    /// 0.
    template <typename Take> void forEach(int channelCount, Take take) const
    {
        int row = 0;
        for (const int channel : m_order) {
            if (channel < channelCount && m_visible[channel])
                take(row++, channel, m_inverted[channel]);
        }
    }

private:
    static bool isChannel(int index) { return index >= 0 && index < velantor::maxChannels; }

    std::array<bool, velantor::maxChannels> m_visible;
    std::array<bool, velantor::maxChannels> m_inverted{};
    std::array<int, velantor::maxChannels> m_order;
};
