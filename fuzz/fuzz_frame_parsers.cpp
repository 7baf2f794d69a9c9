#include "acq/LeadComputation.h"
#include "acq/TFrameParser.h"
#include "acq/TPairAverager.h"
#include "acq/TSamplePacker.h"
#include "acq/TSaturationCounters.h"
#include "fuzz/FuzzTarget.h"

#include <algorithm>

// Any bytes as they may come from a device: frames end where all their sync bytes stand, and never too often;
// what is made of them stays within its limits.

namespace {

/// What each frame goes through behind its parser.
class TChain
{
public:
    void take(TEcgSample sample)
    {
        checkSample(sample);
        acq::computeAugmentedLeads(sample);
        checkLeads(sample);
        m_saturation.add(sample);
        acq::zeroDetachedLeads(sample);
        checkZeros(sample);
        m_first = m_averager.add(sample) ? sample : m_first;
        require(m_packer.size() == 28 && m_packer.pack(sample) != nullptr, "all channels are packed");
    }

private:
    static void checkSample(const TEcgSample& sample)
    {
        require(sample.electrodesOff < 1U << electrodes, "electrodes are those that there are");
        require(sample.batteryVolts >= 0.0 && sample.batteryVolts <= 255 * 0.013,
                "a battery has 3.3 V at most");
        require(sample.channels[acq::aVR] == 0 && sample.channels[acq::aVL] == 0 &&
                    sample.channels[acq::aVF] == 0,
                "leads that are not sent are 0");
    }

    static void checkLeads(const TEcgSample& sample)
    {
        const auto& leads = sample.channels;
        const int right = -(leads[acq::I] + leads[acq::II]) / 2;
        require(leads[acq::aVR] == std::min(right, 32767), "aVR is the mean turned round, or held");
        require(leads[acq::aVL] == (leads[acq::I] - leads[acq::III]) / 2, "aVL is half a difference");
        require(leads[acq::aVF] == (leads[acq::II] + leads[acq::III]) / 2, "aVF is a mean");
    }

    static void checkZeros(const TEcgSample& sample)
    {
        for (int i = 0; i < 6; ++i) {
            const int electrode = static_cast<int>(acq::TElectrode::V1) + i;
            require(!sample.isOff(static_cast<acq::TElectrode>(electrode)) ||
                        sample.channels[static_cast<std::size_t>(acq::V1 + i)] == 0,
                    "a lead without its electrode is 0");
        }
    }

    static constexpr int electrodes = static_cast<int>(acq::TElectrode::count);
    TSaturationCounters m_saturation;
    TPairAverager m_averager;
    TSamplePacker m_packer{acq::allChannels};
    TEcgSample m_first;
};

bool standsAt(const QByteArray& input, int start, const acq::TFrameLayout& layout)
{
    const auto begin = layout.sync.begin();
    return start >= 0 && std::all_of(begin, begin + layout.syncCount, [&](const acq::TSyncByte& sync) {
               return static_cast<unsigned char>(input[start + sync.offset]) == sync.value;
           });
}

void checkStream(const QByteArray& input, const acq::TFrameLayout& layout)
{
    TFrameParser parser(layout);
    TChain chain;
    TEcgSample sample;
    int frames = 0;
    for (int i = 0; i < input.size(); ++i) {
        if (!parser.add(static_cast<unsigned char>(input[i]), sample))
            continue;
        ++frames;
        require(frames * layout.size <= i + 1, "no byte is in two frames");
        require(standsAt(input, i + 1 - layout.size, layout), "a frame has all its sync bytes");
        chain.take(sample);
    }
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    checkStream(input, acq::standardFrame);
    checkStream(input, acq::highRateFrame);
}
