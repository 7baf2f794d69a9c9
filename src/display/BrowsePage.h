#pragma once

#include "display/PageLayout.h"

#include <QString>

/// One page of the browse display. x in device pixels, times in seconds from the start of the recording.
struct BrowsePage
{
    PageScale scale;
    /// Its `pageSeconds` is never below 0.
    PageLayout layout;
    double startTime = 0.0;

    double pixelsPerSecond() const;
    double endTime() const { return startTime + layout.pageSeconds; }
    double timeAt(double x) const;
    double xOf(double time) const;
    /// 0 right of the inset and without one.
    double timeInBeat(double x) const;
    /// Left of the trace.
    bool isInInset(double x) const { return startTime > timeAt(x); }
};

BrowsePage browsePage(const PageScale& scale, double speed, double beatSeconds, double startTime);

/// A scroll bar over a recording; everything in hundredths of a second.
struct ScrollRange
{
    int maximum = 0;
    int singleStep = 0;
    int pageStep = 0;
    int value = 0;

    bool enabled() const { return maximum >= 1; }
};

/// All in seconds.
ScrollRange scrollRange(double duration, double pageSeconds, double startTime);

/// `startTime` kept where a page shows as much of the recording as it can.
double clampedStart(double startTime, double duration, double pageSeconds);

/// Seconds between the labels of the time ruler, of which one is `labelSeconds` wide.
int rulerStep(double labelSeconds);

/// Minutes and seconds of a label.
QString rulerText(int seconds);
