#include "accuracy/Analysis.h"

#include "analysis/delineation/TSlopeDelineator.h"
#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/signals/TChannel.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>

namespace accuracy {

namespace {

std::vector<QByteArray> namesOf(const TSignal& signal)
{
    std::vector<QByteArray> names;
    for (int channel = 0; channel < signal.channelCount(); ++channel)
        names.push_back(signal.channel(channel)->name());
    return names;
}

TMarkedBeat markedBeat(const TChannelBeat& candidate, const TSignal& signal)
{
    const auto time = [&signal](int position) {
        return TChannelBeat::known(position) ? std::optional<double>(signal.timeOf(position)) : std::nullopt;
    };
    TMarkedBeat beat;
    beat.r = signal.timeOf(candidate.rPosition);
    beat.marks[POnset] = time(candidate.pStart);
    beat.marks[PPeak] = time(candidate.pPeak);
    beat.marks[POffset] = time(candidate.pEnd);
    beat.marks[QrsOnset] = time(candidate.qrsStart);
    beat.marks[QrsOffset] = time(candidate.qrsEnd);
    beat.marks[TOnset] = time(candidate.tStart);
    beat.marks[TPeak] = time(candidate.tPeak);
    beat.marks[TOffset] = time(candidate.tEnd);
    return beat;
}

bool isEarlier(const TMarkedBeat& a, const TMarkedBeat& b)
{
    return a.r < b.r;
}

/// Seconds from R of a place in the average complex; empty for one that was not found.
std::optional<double> timeFromR(int place, int rOffset, const TSignal& signal)
{
    constexpr int notFound = 0;
    static_assert(notFound == TAverageBeatDelineator::notFound && notFound == TSlopeDelineator::notFound);
    return place != notFound ? std::optional<double>(signal.timeOf(place - rOffset)) : std::nullopt;
}

TMarkedBeat markedComplex(const TAverageBeatDelineator& waves, int rOffset, const TSignal& signal)
{
    const auto time = [&](int place) { return timeFromR(place, rOffset, signal); };
    TMarkedBeat beat;
    beat.marks[POnset] = time(waves.pOnset());
    beat.marks[PPeak] = time(waves.pPeak());
    beat.marks[POffset] = time(waves.pOffset());
    beat.marks[QrsOnset] = time(waves.qrsOnset());
    beat.marks[QrsOffset] = time(waves.qrsOffset());
    beat.marks[TOnset] = time(waves.tOnset());
    beat.marks[TPeak] = time(waves.tPeak());
    beat.marks[TOffset] = time(waves.tOffset());
    return beat;
}

TMarkedBeat reviewMarks(TAverageBeat& average, int channel, const TSignal& signal)
{
    TSlopeDelineator markers;
    const int rate = signal.samplingRate();
    markers.analyse(average.complex(channel), rate, average.rOffset(),
                    velantor::truncated<int>(average.meanRR() * rate));
    const auto time = [&](int place) { return timeFromR(place, average.rOffset(), signal); };
    TMarkedBeat beat;
    beat.marks[POnset] = time(markers.pOnset());
    beat.marks[POffset] = time(markers.pOffset());
    beat.marks[QrsOnset] = time(markers.qrsOnset());
    beat.marks[QrsOffset] = time(markers.qrsOffset());
    beat.marks[TOffset] = time(markers.tOffset());
    return beat;
}

/// Takes the times of the beats that are valid.
class TTimeLog : public TBeatListener
{
public:
    explicit TTimeLog(std::vector<double>& times) : m_times(times) {}
    void beatFound(const TBeat& beat) override
    {
        if (beat.valid())
            m_times.push_back(beat.value(TBeat::beatTime));
    }

private:
    std::vector<double>& m_times;
};

} // namespace

TRecordFindings analyseRecord(TSignal& signal, int blockFrames)
{
    TRecordFindings findings;
    findings.leadNames = namesOf(signal);
    findings.leads.resize(signal.channelCount());
    TBeatChainSettings settings;
    settings.refine = false;
    TTimeLog log(findings.beats);
    TStoredAnalysis analysis(signal, settings, &log);
    analysis.setCandidateObserver([&](int channel, const TChannelBeat& candidate) {
        findings.leads[channel].push_back(markedBeat(candidate, analysis.analysisSignal()));
    });
    analysis.run(blockFrames);
    // A premature beat may have waited for the one behind it.
    std::sort(findings.beats.begin(), findings.beats.end());
    for (std::vector<TMarkedBeat>& lead : findings.leads)
        std::stable_sort(lead.begin(), lead.end(), isEarlier);
    return findings;
}

TAverageFindings analyseAverage(TSignal& signal, double end)
{
    TAverageFindings findings;
    TBeatChainSettings settings;
    settings.endTime = end;
    TStoredAnalysis analysis(signal, settings);
    analysis.run();
    TAverageBeat& average = analysis.averageBeat();
    findings.beats = average.averagedTimes();
    findings.leadNames = namesOf(signal);
    if (findings.beats.empty())
        return findings;
    for (int channel = 0; channel < signal.channelCount(); ++channel) {
        findings.leads.push_back(markedComplex(analysis.delineate(channel), average.rOffset(), signal));
        findings.reviewLeads.push_back(reviewMarks(average, channel, signal));
    }
    return findings;
}

} // namespace accuracy
