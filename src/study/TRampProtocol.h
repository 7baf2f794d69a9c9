#pragma once

#include "study/TProtocol.h"

#include <QByteArray>

/// A ramp: treadmill speed and incline that change linearly from their initial to their final values.
class TRampProtocol : public TProtocol
{
public:
    bool isRamp() const override { return true; }
    bool isStaged() const override { return false; }

    /// Speed in km/h, `seconds` after the start of the ramp.
    double speedAt(double seconds) const { return interpolate(initialSpeed, finalSpeed, seconds); }
    /// Incline in percent, `seconds` after the start of the ramp.
    double inclineAt(double seconds) const { return interpolate(initialIncline, finalIncline, seconds); }

    QByteArray name;
    int durationMinutes = 0;
    double initialSpeed = 0.0;   ///< km/h
    double finalSpeed = 0.0;     ///< km/h
    double initialIncline = 0.0; ///< percent
    double finalIncline = 0.0;   ///< percent

private:
    /// A ramp without duration stands at its final value.
    double interpolate(double initial, double final, double seconds) const
    {
        return durationMinutes > 0 ? initial + (final - initial) / (durationMinutes * 60.0) * seconds : final;
    }
};
