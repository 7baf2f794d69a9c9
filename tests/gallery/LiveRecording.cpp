#include "gallery/LiveRecording.h"

#include "analysis/delineation/TAverageBeatDelineator.h"
#include "analysis/signals/TChannel.h"
#include "analysis/signals/Truncation.h"
#include "simulators/heart/DemoRecording.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int ringSeconds = 120;
constexpr int framesAtOnce = 51;
constexpr double referenceTime = 30.0;

} // namespace

std::vector<short> demoSamples()
{
    std::vector<short> samples;
    for (const heart::TFrame& frame : heart::demoRecording())
        samples.insert(samples.end(), frame.begin(), frame.end());
    return samples;
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

LiveRecording::LiveRecording(const std::vector<short>& samples, double seconds, double range)
    : m_samples(samples), m_gain(demoRange / range),
      m_signal(4096, ringSeconds * demoRate, demoChannels, demoRate),
      m_chain(m_signal, TBeatChainSettings(), nullptr), m_fiducials(m_chain.averageBeat()),
      m_saturation(&m_signal)
{
    m_signal.setRange(-range, range);
    for (int channel = 0; channel < demoChannels; ++channel)
        m_signal.channel(channel)->setName(heart::leadNames[channel]);
    advance(seconds);
}

void LiveRecording::advance(double seconds)
{
    m_arrived += seconds;
    while (m_signal.sampleCount() + framesAtOnce <= m_arrived * demoRate)
        addFrames(framesAtOnce);
}

void LiveRecording::addFrames(int frames)
{
    const int length = static_cast<int>(m_samples.size()) / demoChannels;
    std::vector<short> arriving;
    for (int i = 0; i < frames; ++i) {
        const auto first = m_samples.begin() + (m_signal.sampleCount() + i) % length * demoChannels;
        std::transform(first, first + demoChannels, std::back_inserter(arriving),
                       [this](short sample) { return velantor::truncated<short>(sample * m_gain); });
    }
    m_signal.addInterleaved(reinterpret_cast<const char*>(arriving.data()),
                            static_cast<int>(arriving.size() * sizeof(short)));
    m_chain.run();
    if (m_signal.duration() > referenceTime && !m_chain.averageBeat().hasReference())
        m_chain.averageBeat().keepReference();
}
