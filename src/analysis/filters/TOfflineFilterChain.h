#pragma once

#include "base/Constants.h"

#include <QByteArray>

#include <array>
#include <memory>

class TBlockProcessor;
class TFilteredSignal;
class TParabolaDetrend;
class TSignal;

/// The filters that a user switches for a stored recording: views one behind the other, without phase, each
/// computing a block when it is first asked for. A parabola is always taken out of each channel; at 500
/// samples per second a high-pass follows. Main thread only.
class TOfflineFilterChain
{
public:
    /// Names "50hz" and "40hz", all switches off. `source` is a finished recording, borrowed, and outlives
    /// the chain; its last, partial block is made readable.
    explicit TOfflineFilterChain(TSignal* source);
    ~TOfflineFilterChain();
    TOfflineFilterChain(const TOfflineFilterChain&) = delete;
    TOfflineFilterChain& operator=(const TOfflineFilterChain&) = delete;

    // Names take effect with the next `apply`.
    /// Only "50hz" is known.
    void setNotchName(const QByteArray& name) { m_notchName = name; }
    /// "25hz" or "40hz" at 500 and 1000 samples per second, where any other name gives a filter without
    /// coefficients, whose output is 0. At 250 one filter serves for all names; at other rates there is none.
    void setMuscleName(const QByteArray& name) { m_muscleName = name; }

    /// Builds the chain anew; signals that `current` gave before are gone. Throws TError "pendiente - filtro
    /// no definido" for the notch at 500 or 1000 samples per second under a name that is not known; the chain
    /// then stays as it was.
    void apply(bool notch, bool muscle, bool baseline);

    /// The end of the chain.
    TSignal* current() const { return m_current; }

    const QByteArray& notchName() const { return m_notchName; }
    const QByteArray& muscleName() const { return m_muscleName; }
    bool notchOn() const { return m_notchOn; }
    bool muscleOn() const { return m_muscleOn; }
    bool baselineOn() const { return m_baselineOn; }

private:
    struct TStage
    {
        std::unique_ptr<TBlockProcessor> processor;
        std::unique_ptr<TFilteredSignal> output;
    };

    void clear();
    void addDetrend();
    void add(TStage& stage, std::unique_ptr<TBlockProcessor> processor);

    TSignal* m_source;
    TSignal* m_current;
    QByteArray m_notchName;
    QByteArray m_muscleName;
    bool m_notchOn = false;
    bool m_muscleOn = false;
    bool m_baselineOn = false;
    std::array<std::unique_ptr<TParabolaDetrend>, velantor::maxChannels> m_parabolas;
    std::unique_ptr<TFilteredSignal> m_detrended;
    TStage m_highPass;
    TStage m_notch;
    TStage m_muscle;
    TStage m_baseline;
};
