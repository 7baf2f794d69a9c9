#include "display/LeadLayout.h"

#include "analysis/signals/TSignal.h"
#include "display/QSignalMonitorDisplay.h"

#include <array>

namespace {

constexpr int chestLeadsEnd = 12;
constexpr int channelOfAvr = 3;
/// aVL, I, aVR, II, aVF, III
constexpr std::array<int, limbLeads> hexaxialChannels{4, 0, 3, 1, 5, 2};

} // namespace

void layOutLeads(QSignalMonitorDisplay& first, QSignalMonitorDisplay& second, const TSignal* signal)
{
    const int channels = signal ? signal->channelCount() : 0;
    for (int channel = 0; channel < velantor::maxChannels; ++channel) {
        const bool loneSeventh = channels == channelsOfOneDisplay && channel == limbLeads;
        first.setChannelVisible(channel, channel < limbLeads || loneSeventh);
        second.setChannelVisible(channel, channel >= limbLeads && channel < chestLeadsEnd);
    }
    second.setHidden(channels <= channelsOfOneDisplay);
}

void setHexaxialOrder(QSignalMonitorDisplay& display, const TSignal* signal, bool on)
{
    if (!signal || signal->channelCount() < limbLeads)
        return;
    for (int row = 0; row < limbLeads; ++row)
        display.setChannelOrder(row, on ? hexaxialChannels[row] : row);
    display.setChannelInverted(channelOfAvr, on);
}
