#pragma once

#include "analysis/beats/TAverageBeat.h"
#include "analysis/beats/TBeat.h"
#include "analysis/signals/TInt16Signal.h"

#include <cmath>
#include <memory>
#include <vector>

/// Signals and beats that tests of the displays paint.
namespace display_signal {

constexpr int rate = 500;
/// 0.01 mV per count.
constexpr int countsPerMv = 100;

/// Counts of a beat whose R lies at `t` = 0 s: P, QRS and T of a normal lead of about 1 mV.
inline double beatCounts(double t)
{
    const auto wave = [t](double at, double width, double height) {
        return height * std::exp(-(t - at) * (t - at) / (2 * width * width));
    };
    return wave(-0.16, 0.02, 15) + wave(-0.025, 0.008, -10) + wave(0, 0.01, 100) + wave(0.03, 0.008, -25) +
           wave(0.25, 0.04, 30);
}

/// `seconds` of `channels` leads named "L0", "L1" and so on, each a steady 60 beats per minute with R at
/// 0.5 s, 1.5 s and so on, lying 100 counts times its number off the zero line. `gains` of the first leads;
/// the others are 1.
inline std::unique_ptr<TInt16Signal> steadySignal(int seconds, int channels = 3,
                                                  const std::vector<double>& gains = {})
{
    const int samples = seconds * rate;
    auto signal = std::make_unique<TInt16Signal>(4096, std::max(samples, 1), channels, rate);
    signal->setRange(-327.68, 327.68);
    const auto gainOf = [&gains](int channel) {
        return channel < int(gains.size()) ? gains[std::size_t(channel)] : 1.0;
    };
    std::vector<short> frames;
    for (int i = 0; i < samples; ++i) {
        const double t = std::fmod(double(i) / rate, 1.0) - 0.5;
        for (int channel = 0; channel < channels; ++channel)
            frames.push_back(short(std::lround(gainOf(channel) * beatCounts(t)) + 100 * channel));
    }
    for (int channel = 0; channel < channels; ++channel)
        signal->channel(channel)->setName("L" + QByteArray::number(channel));
    signal->addInterleaved(reinterpret_cast<const char*>(frames.data()), int(frames.size() * sizeof(short)));
    return signal;
}

/// A beat of such a signal at `t` seconds.
inline TBeat beatAt(double t, double rr, const TSignal* signal)
{
    TBeat beat(signal);
    beat.setWindow(t - 0.45, 1.0);
    beat.setValue(TBeat::beatTime, t);
    beat.setValue(TBeat::rr, rr);
    beat.setValue(TBeat::meanRR, rr);
    for (int channel = 0; channel < beat.channelCount(); ++channel) {
        beat.setFiducial(channel, TBeat::takesPart, 1.0);
        beat.setFiducial(channel, TBeat::rPosition, t);
        beat.setFiducial(channel, TBeat::qrsType, 1.0);
    }
    return beat;
}

/// The average of the beats from 1.5 s on.
inline std::unique_ptr<TAverageBeat> averageOf(TSignal* signal)
{
    auto average = std::make_unique<TAverageBeat>(signal, 20.0);
    for (double t = 1.5; t + 1.0 < signal->duration(); t += 1.0)
        average->addBeat(beatAt(t, 1.0, signal));
    return average;
}

} // namespace display_signal
