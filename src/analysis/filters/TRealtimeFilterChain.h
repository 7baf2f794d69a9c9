#pragma once

#include <QByteArray>

#include <memory>
#include <vector>

class TSignal;
class TStreamProcessor;

/// The filters that a user switches while recording: a live signal goes through streams one behind the other,
/// each into a ring of its own of 100 blocks. The output is in step with the input and ends before its newest
/// sample: by half the length of each table that is in the chain, and in the mode "fft" by 480 to 543 samples
/// more, for that stage gives 64 at a time. At 500 samples per second a high-pass is always part of it. A
/// stage reads the ring before it as far back as its table is long, at most 1355 samples: blocks of 14
/// samples or more keep them. Main thread only.
class TRealtimeFilterChain
{
public:
    /// Names "50hz", "40hz" and "fir", all switches off. `input` is borrowed and outlives the chain.
    explicit TRealtimeFilterChain(TSignal* input);
    ~TRealtimeFilterChain();
    TRealtimeFilterChain(const TRealtimeFilterChain&) = delete;
    TRealtimeFilterChain& operator=(const TRealtimeFilterChain&) = delete;

    // Names take effect with the next `apply`.
    /// "50hz" or "60hz"; any other leaves the stage out.
    void setNotchName(const QByteArray& name) { m_notchName = name; }
    /// "25hz" or "40hz" at 500 and 1000 samples per second, where any other name gives a filter without
    /// coefficients, whose output is 0. At 250 one filter serves for all names; at other rates there is none.
    void setMuscleName(const QByteArray& name) { m_muscleName = name; }
    /// "fir" or "fft"; any other leaves the stage out.
    void setBaselineMode(const QByteArray& mode) { m_baselineMode = mode; }

    /// Builds the chain anew; signals that `current` gave before are gone. It starts with the oldest sample
    /// that the input holds, and the output counts its samples from 0 again.
    void apply(bool notch, bool muscle, bool baseline);

    /// Takes what the input has got since, any amount of it that the input still holds.
    void update();

    /// The end of the chain; the input itself if nothing is to be done.
    TSignal* current() const { return m_current; }
    /// Index of the input's sample to which sample 0 of `current` belongs.
    int startPosition() const { return m_startPosition; }

    const QByteArray& notchName() const { return m_notchName; }
    const QByteArray& muscleName() const { return m_muscleName; }
    const QByteArray& baselineMode() const { return m_baselineMode; }
    bool notchOn() const { return m_notchOn; }
    bool muscleOn() const { return m_muscleOn; }
    bool baselineOn() const { return m_baselineOn; }

private:
    struct TStage
    {
        std::unique_ptr<TStreamProcessor> stream;
        std::unique_ptr<TSignal> output;
    };

    void clear();
    void addFir(TStage& stage, const std::vector<double>* table);
    void addBaseline();
    void add(TStage& stage, std::unique_ptr<TStreamProcessor> stream);
    std::unique_ptr<TSignal> makeRing() const;

    TSignal* m_input;
    TSignal* m_current;
    int m_startPosition = 0;
    int m_taken = 0; ///< samples of the input up to here have been given to the chain
    QByteArray m_notchName;
    QByteArray m_muscleName;
    QByteArray m_baselineMode;
    bool m_notchOn = false;
    bool m_muscleOn = false;
    bool m_baselineOn = false;
    TStage m_highPass;
    TStage m_notch;
    TStage m_muscle;
    TStage m_baseline;
};
