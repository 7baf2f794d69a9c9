#include "acq/LeadComputation.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <limits>

namespace {

constexpr int top = std::numeric_limits<std::int16_t>::max();
constexpr int bottom = std::numeric_limits<std::int16_t>::min();

void zero(TEcgSample& sample, std::initializer_list<acq::TChannelIndex> channels)
{
    for (const acq::TChannelIndex channel : channels)
        sample.channels[channel] = 0;
}

} // namespace

void acq::computeAugmentedLeads(TEcgSample& sample)
{
    TEcgSample::TChannels& leads = sample.channels;
    const int first = leads[I];
    const int second = leads[II];
    const int third = leads[III];
    // The first two cannot leave 16 bits at the bottom, whatever the leads are.
    leads[aVR] = static_cast<std::int16_t>(std::min(-(first + second) / 2, top));
    leads[aVL] = static_cast<std::int16_t>(std::min((first - third) / 2, top));
    leads[aVF] = static_cast<std::int16_t>(std::clamp((second + third) / 2, bottom, top));
}

void acq::zeroDetachedLeads(TEcgSample& sample)
{
    static constexpr TElectrode chestElectrodes[] = {TElectrode::V1, TElectrode::V2, TElectrode::V3,
                                                     TElectrode::V4, TElectrode::V5, TElectrode::V6};
    if (sample.isOff(TElectrode::LA))
        zero(sample, {I, III, aVR, aVL, aVF});
    if (sample.isOff(TElectrode::LL))
        zero(sample, {II, III, aVR, aVL, aVF});
    if (sample.isOff(TElectrode::RA))
        zero(sample, {I, II, aVR, aVL, aVF});
    for (std::size_t i = 0; i < std::size(chestElectrodes); ++i) {
        if (sample.isOff(chestElectrodes[i]))
            sample.channels[V1 + i] = 0;
    }
}
