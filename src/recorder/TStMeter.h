#pragma once

#include "analysis/delineation/TAverageBeatDelineator.h"
#include "base/Constants.h"

#include <array>
#include <optional>

class TAverageBeat;
class TSignal;

/// ST level and slope of a channel at one beat.
struct TStValue
{
    double level = 0.0; ///< mV
    double slope = 0.0; ///< mV/s
};

/// The three points between which they are measured, in samples of the complex; 0 if there are none.
struct TStPoints
{
    int base = 0;
    int j = 0;
    int st = 0;
};

/// Measures the ST segment of the average complexes.
class TStMeter
{
public:
    /// Where the points come from.
    enum TMethod
    {
        FixedPoints, ///< fixed distances from R
        Delineated   ///< the borders of the waves, measured anew at each beat
    };

    /// Forgets earlier beats.
    void start();
    void setMethod(TMethod method) { m_method = method; }
    TMethod method() const { return m_method; }

    /// The channel's values at a beat with that interval in seconds; nothing if the complex has no borders.
    /// `signal` is the one that the average is made of. Once a beat and channel: by delineation the values
    /// are means of the last 3.
    std::optional<TStValue> measure(TAverageBeat& average, const TSignal& signal, int channel, double rr);

    /// The points of the channel's last beat.
    const TStPoints& points(int channel) const { return m_points.at(channel); }

private:
    /// The last values of a channel, for a mean that starts with the first.
    class TMeans
    {
    public:
        double add(double value);
        void clear() { m_count = 0; }

    private:
        static constexpr int length = 3;
        std::array<double, length> m_values{};
        int m_count = 0;
    };

    TStValue measureFixed(TAverageBeat& average, const TSignal& signal, int channel);
    std::optional<TStValue> measureDelineated(TAverageBeat& average, const TSignal& signal, int channel,
                                              double rr);

    TMethod m_method = Delineated;
    TAverageBeatDelineator m_delineator;
    std::array<TStPoints, velantor::maxChannels> m_points{};
    std::array<TMeans, velantor::maxChannels> m_levelMeans;
    std::array<TMeans, velantor::maxChannels> m_slopeMeans;
};
