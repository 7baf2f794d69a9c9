#pragma once

#include "analysis/detection/TBeatChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "display/TFiducialSource.h"
#include "display/TSignalSaturation.h"

#include <vector>

/// Frames of 14 samples of the demonstration recording, at 500 per second, one after the other.
std::vector<short> demoSamples();

/// Full scale of the recording, mV.
constexpr double demoRange = 300.0;
constexpr int demoRate = 500;
constexpr int demoChannels = 14;

/// Where the measuring points of the average beat lie: before QRS, at its end, and 60 ms later.
class TGalleryFiducials : public TFiducialSource
{
public:
    /// Borrowed.
    explicit TGalleryFiducials(TAverageBeat& beat) : m_beat(beat) {}
    bool fiducials(int channel, TFiducials* found) override;

private:
    TAverageBeat& m_beat;
};

/// The demonstration recording as it arrives: a signal that grows, with its beats and their average. From the
/// 30th second on the first average is the reference.
class LiveRecording
{
public:
    /// `samples` are borrowed; they come again when they have ended. The first `seconds` have arrived
    /// already. A device of a smaller `range` in mV cuts off what lies beyond it.
    LiveRecording(const std::vector<short>& samples, double seconds, double range = demoRange);

    /// Lets further seconds arrive.
    void advance(double seconds);

    TInt16Signal& signal() { return m_signal; }
    TAverageBeat& averageBeat() { return m_chain.averageBeat(); }
    TFiducialSource& fiducialSource() { return m_fiducials; }
    TSaturationSource& saturationSource() { return m_saturation; }

private:
    void addFrames(int frames);

    const std::vector<short>& m_samples;
    double m_gain;
    TInt16Signal m_signal;
    TBeatChain m_chain;
    TGalleryFiducials m_fiducials;
    TSignalSaturation m_saturation;
    double m_arrived = 0.0;
};
