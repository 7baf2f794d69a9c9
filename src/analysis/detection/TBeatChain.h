#pragma once

#include "analysis/beats/TAverageBeat.h"
#include "analysis/beats/TBeatRing.h"
#include "analysis/detection/TBeatListener.h"
#include "analysis/detection/TWaveletBeatDetector.h"
#include "analysis/signals/TAverageDecimator.h"
#include "analysis/signals/TFirStream.h"
#include "analysis/signals/TInt16Signal.h"

/// How a signal is searched for beats.
struct TBeatChainSettings
{
    /// P and T waves, too.
    bool delineateWaves = true;
    /// Move the fiducial points to the turns of the raw signal.
    bool refine = true;
    /// Seconds of the signal; an end of 0 means none.
    double startTime = 0.0;
    double endTime = 0.0;
    /// Seconds of beats that make the average.
    double holdTime = 20.0;
};

/// The way from a raw signal to measured beats, live or stored: the signal reduced to 250 samples per second
/// or, if its rate is no multiple of that, to the next higher rate that divides it, the detector on that,
/// each beat refined on the raw signal, and the average beat over the low-passed raw signal. Independent of
/// what filters the display shows. Main thread only.
class TBeatChain : private TBeatListener
{
public:
    /// `raw` is borrowed; the chain starts at its beginning. `listener`, borrowed, is told of every beat
    /// after it was refined and averaged, rejected ones too; null for none.
    TBeatChain(TSignal& raw, const TBeatChainSettings& settings, TBeatListener* listener);
    ~TBeatChain() override;

    /// Takes what the raw signal has gained.
    void run();
    /// For a recording that has ended: takes it to its last beat.
    void finish();

    TInt16Signal& analysisSignal() { return m_analysisSignal; }
    TSignal& averageSignal() { return m_averageSignal; }
    TWaveletBeatDetector& detector() { return m_detector; }
    /// The last beats as they were detected.
    TBeatRing& beats() { return m_beatRing; }
    TAverageBeat& averageBeat() { return m_averageBeat; }

    /// Samples per second that the detector is made for.
    static constexpr int analysisRate = 250;

private:
    void beatFound(const TBeat& beat) override;

    TSignal& m_raw;
    bool m_refine;
    TBeatListener* m_listener;
    TInt16Signal m_analysisSignal;
    TAverageDecimator m_analysisReducer;
    TWaveletBeatDetector m_detector;
    TBeatRing m_beatRing;
    TInt16Signal m_averageSignal;
    TFirStream m_averageFilter;
    TAverageBeat m_averageBeat;
};
