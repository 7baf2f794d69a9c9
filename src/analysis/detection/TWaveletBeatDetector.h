#pragma once

#include "analysis/detection/TBeatDetector.h"
#include "analysis/detection/TChannelDetector.h"
#include "analysis/detection/TWaveletTransform.h"

#include <functional>
#include <memory>
#include <vector>

/// The detector in use: modulus maxima of the quadratic-spline wavelet transform, made for a signal of 250
/// samples per second.
class TWaveletBeatDetector : public TBeatDetector
{
public:
    /// Without `delineateWaves` only the complexes are delineated.
    explicit TWaveletBeatDetector(bool delineateWaves = true);

    int detectChannel(int channel, int from, int to, std::vector<TChannelBeat>& out) override;
    void reset(TSignal* signal, double startTime, double endTime) override;
    void clear() override;

    /// Is told of every candidate of every channel, before the channels are merged.
    using TCandidateObserver = std::function<void(int channel, const TChannelBeat& candidate)>;
    void setCandidateObserver(TCandidateObserver observer) { m_observer = std::move(observer); }

protected:
    void prepare(int end) override;
    int lastPosition() const override;
    int finishChannel(int channel, int from, int to, std::vector<TChannelBeat>& out) override;

private:
    void tellObserver(int channel, const std::vector<TChannelBeat>& candidates, std::size_t first) const;

    bool m_delineateWaves;
    std::unique_ptr<TWaveletTransform> m_transform;
    std::vector<TChannelDetector> m_channels;
    TCandidateObserver m_observer;
};
