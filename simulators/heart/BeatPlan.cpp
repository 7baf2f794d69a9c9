#include "simulators/heart/BeatPlan.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/ExactMath.h"
#include "simulators/heart/TBreathing.h"

#include <iterator>

namespace heart {
namespace {

struct TEctopic
{
    double notBefore; ///< seconds, of the beat ahead of it
    TBeatKind kind;
};

constexpr TEctopic ectopics[] = {
    {14, TBeatKind::Ventricular},  {27, TBeatKind::Supraventricular}, {68, TBeatKind::Ventricular},
    {112, TBeatKind::Ventricular}, {172, TBeatKind::Ventricular},     {208, TBeatKind::Supraventricular},
    {223, TBeatKind::Ventricular},
};

constexpr double firstBeat = 0.6;
/// Sinus arrhythmia at rest, as shares of the RR interval; both vanish in exercise. The slow one is the wave
/// of the blood pressure at 0.1 Hz.
constexpr double respiratoryArrhythmia = 0.035;
constexpr double slowArrhythmia = 0.02;
constexpr double slowWaves = 24; // in the recording

double sinusInterval(double time, const TBreathing& breathing)
{
    const double calm = 1 - exertion(time);
    // Inspiration quickens the heart.
    const double swing = respiratoryArrhythmia * breathing.fill(time) +
                         slowArrhythmia * sineOfTurns(slowWaves * time / recordingSeconds);
    return 60 / heartRate(time) * (1 - calm * swing);
}

/// Writes the beats one after the other, the premature ones where they are due.
class TPlanner
{
public:
    explicit TPlanner(const TBreathing& breathing) : m_breathing(breathing) {}

    std::vector<TPlannedBeat> plan()
    {
        while (m_time < firstBeat + recordingSeconds)
            addBeat();
        closeLoop();
        return std::move(m_beats);
    }

private:
    void addBeat()
    {
        m_beats.push_back({m_time, TBeatKind::Sinus});
        const double interval = sinusInterval(m_time, m_breathing);
        if (m_next == std::end(ectopics) || m_time < m_next->notBefore)
            m_time += interval;
        else
            addEctopic((m_next++)->kind, interval);
    }

    /// A ventricular beat leaves the sinus node alone, so the beat after the next comes in time: the pause
    /// compensates. One from the atria resets the node.
    void addEctopic(TBeatKind kind, double interval)
    {
        const bool ventricular = kind == TBeatKind::Ventricular;
        // Late enough, at any rate, that the QRS or the P wave does not meet the T wave before.
        const double coupling = (ventricular ? 0.62 : 0.68) + 0.18 * exertion(m_time);
        m_beats.push_back({m_time + coupling * interval, kind});
        m_time += (ventricular ? 2.0 : coupling + 1.1) * interval;
    }

    /// Stretches all intervals by less than half a per cent so that a whole number of them fills the
    /// recording.
    void closeLoop()
    {
        const double scale = recordingSeconds / (m_time - firstBeat);
        for (TPlannedBeat& beat : m_beats)
            beat.time = firstBeat + (beat.time - firstBeat) * scale;
    }

    const TBreathing& m_breathing;
    std::vector<TPlannedBeat> m_beats;
    const TEctopic* m_next = std::begin(ectopics);
    double m_time = firstBeat;
};

} // namespace

std::vector<TPlannedBeat> planBeats(const TBreathing& breathing)
{
    return TPlanner(breathing).plan();
}

} // namespace heart
