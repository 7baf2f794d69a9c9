#pragma once

#include "analysis/detection/Detection.h"

/// Candidates instead of a search: what the detector makes of them shows alone.
namespace scripted {

constexpr int rate = 250;

/// Candidates at given places, each handed out by the call that covers `knownAt`.
class TDetector : public TBeatDetector
{
public:
    struct TCue
    {
        int channel;
        int position;
        int knownAt;
        bool hasQrs = true;
    };

    int detectChannel(int channel, int from, int to, std::vector<TChannelBeat>& out) override
    {
        calls.push_back({channel, from, to});
        const std::size_t before = out.size();
        for (const TCue& cue : cues) {
            if (cue.channel != channel || cue.knownAt < from || cue.knownAt >= to)
                continue;
            TChannelBeat beat;
            beat.rPosition = beat.rPeak = cue.position;
            beat.qrsType = cue.hasQrs ? 1 : 0;
            out.push_back(beat);
        }
        return int(out.size() - before);
    }

    struct TCall
    {
        int channel;
        int from;
        int to;
    };
    std::vector<TCue> cues;
    std::vector<TCall> calls;
};

/// A recording whose every channel is fit to vote, and a detector on it.
struct TScene
{
    explicit TScene(int channels, double startTime = 0.0, double endTime = 0.0)
        : signal(4096, 81920, channels, rate)
    {
        detector.addListener(&log);
        detector.reset(&signal, startTime, endTime);
    }

    /// All the channels see a complex at that place, known at `knownAt` or 1 s later.
    void everyChannel(int position, int knownAt = -1)
    {
        for (int channel = 0; channel < signal.channelCount(); ++channel)
            detector.cues.push_back({channel, position, knownAt < 0 ? position + rate : knownAt});
    }
    void grow(int samples)
    {
        ecg::TRow row(samples);
        for (int i = 0; i < samples; ++i)
            row[i] = 1000.0 * std::sin(2.0 * M_PI * (signal.sampleCount() + i) / rate);
        ecg::append(signal, ecg::TRows(signal.channelCount(), row), 0, samples);
    }
    void run(double seconds, int step = 100)
    {
        for (int end = signal.sampleCount() + int(seconds * rate); signal.sampleCount() < end;) {
            grow(step);
            detector.update();
        }
    }
    QVector<int> positions() const
    {
        QVector<int> result;
        for (const TBeat& beat : log.beats)
            result << signal.indexOf(beat.value(TBeat::beatTime));
        return result;
    }

    TInt16Signal signal;
    TDetector detector;
    TBeatLog log;
};

} // namespace scripted
