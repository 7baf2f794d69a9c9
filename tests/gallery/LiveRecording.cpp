#include "gallery/LiveRecording.h"

#include "analysis/delineation/TAverageBeatDelineator.h"
#include "analysis/signals/TChannel.h"
#include "simulators/heart/DemoRecording.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int ringSeconds = 120;
constexpr int framesAtOnce = 51;
constexpr double referenceTime = 30.0;
constexpr double rangeMillivolts = 300.0;

} // namespace

std::vector<short> demoSamples()
{
    std::vector<short> samples;
    for (const heart::TFrame& frame : heart::demoRecording())
        samples.insert(samples.end(), frame.begin(), frame.end());
    return samples;
}

void nameDemoChannels(TSignal& signal)
{
    signal.setRange(-rangeMillivolts, rangeMillivolts);
    for (int channel = 0; channel < demoChannels; ++channel)
        signal.channel(channel)->setName(heart::leadNames[channel]);
}

bool TGalleryFiducials::fiducials(int channel, TFiducials* found)
{
    const TSignal& signal = *m_beat.signal();
    const TDoubleVector& complex = m_beat.complex(channel);
    TAverageBeatDelineator places;
    places.analyse(complex, signal.samplingRate(), m_beat.rOffset(), signal.indexOf(m_beat.meanRR()));
    if (places.rPosition() == TAverageBeatDelineator::notFound)
        return false;
    const int point = std::min(places.qrsOffset() + signal.indexOf(0.06), m_beat.sampleCount() - 1);
    found->indices = {places.qrsOnset(), places.qrsOffset(), point};
    found->stLevel = (complex.values()[point] - complex.values()[places.qrsOnset()]) * signal.countValue();
    return true;
}

LiveRecording::LiveRecording(const std::vector<short>& samples, double seconds)
    : m_samples(samples), m_signal(4096, ringSeconds * demoRate, demoChannels, demoRate),
      m_chain(m_signal, TBeatChainSettings(), nullptr), m_fiducials(m_chain.averageBeat()),
      m_saturation(&m_signal)
{
    nameDemoChannels(m_signal);
    advance(seconds);
}

void LiveRecording::advance(double seconds)
{
    m_arrived += seconds;
    while (m_signal.sampleCount() + framesAtOnce <= m_arrived * demoRate)
        addFrames(framesAtOnce, -1);
}

void LiveRecording::saturate(int channel, double seconds)
{
    const int frames = m_signal.indexOf(seconds);
    m_arrived += seconds;
    addFrames(frames, channel);
}

void LiveRecording::addFrames(int frames, int saturatedChannel)
{
    const int length = static_cast<int>(m_samples.size()) / demoChannels;
    std::vector<short> arriving;
    for (int i = 0; i < frames; ++i) {
        const auto first = m_samples.begin() + (m_signal.sampleCount() + i) % length * demoChannels;
        arriving.insert(arriving.end(), first, first + demoChannels);
        if (saturatedChannel >= 0)
            arriving[static_cast<std::size_t>(i * demoChannels + saturatedChannel)] =
                std::numeric_limits<short>::max();
    }
    m_signal.addInterleaved(reinterpret_cast<const char*>(arriving.data()),
                            static_cast<int>(arriving.size() * sizeof(short)));
    m_chain.run();
    if (m_signal.duration() > referenceTime && !m_chain.averageBeat().hasReference())
        m_chain.averageBeat().keepReference();
}
