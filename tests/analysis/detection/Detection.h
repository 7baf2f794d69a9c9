#pragma once

#include "analysis/DrawnEcg.h"
#include "analysis/detection/BeatLog.h"
#include "analysis/detection/TWaveletBeatDetector.h"
#include "analysis/signals/TInt16Signal.h"

#include <cmath>
#include <limits>

/// How a recording is fed to a detector.
struct TFeeding
{
    int rate = 250;
    /// Frames a call; everything at once without.
    int step = 50;
    int blockSize = 4096;
    int bits = 16;
    double startTime = 0.0;
    double endTime = 0.0;
    bool finish = true;
};

/// The beats of a recording of one row of samples per channel.
inline TBeatLog detect(const ecg::TRows& rows, const TFeeding& feeding = {})
{
    const int count = static_cast<int>(rows.front().size());
    TInt16Signal signal(feeding.blockSize, std::max(81920, count), static_cast<int>(rows.size()),
                        feeding.rate);
    signal.setResolutionBits(feeding.bits);
    TWaveletBeatDetector detector;
    TBeatLog log;
    detector.addListener(&log);
    detector.reset(&signal, feeding.startTime, feeding.endTime);
    for (int from = 0; from < count; from += feeding.step) {
        ecg::append(signal, rows, from, std::min(feeding.step, count - from));
        detector.update();
    }
    if (feeding.finish)
        detector.finish();
    return log;
}

/// The first of `found` that lies nowhere within `tolerance` seconds of an expected one, or the other way
/// round, as a text; empty if there is none.
inline QByteArray difference(const std::vector<double>& found, const std::vector<double>& expected,
                             double tolerance = 0.012)
{
    const auto lacks = [tolerance](const std::vector<double>& times, double t) {
        return std::none_of(times.begin(), times.end(),
                            [=](double other) { return std::abs(t - other) <= tolerance; });
    };
    for (const double t : expected) {
        if (lacks(found, t))
            return "missed " + QByteArray::number(t);
    }
    for (const double t : found) {
        if (lacks(expected, t))
            return "found " + QByteArray::number(t);
    }
    return found.size() == expected.size() ? QByteArray() : QByteArray("found twice");
}

#define VERIFY_TIMES(found, expected)                                                                        \
    do {                                                                                                     \
        const QByteArray text = difference(found, expected);                                                 \
        QVERIFY2(text.isEmpty(), text.constData());                                                          \
    } while (false)
