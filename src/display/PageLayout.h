#pragma once

#include "display/PageScale.h"

class TAverageBeat;
class TSignal;

/// Where the inset and the trace lie on a page, in device pixels, and how much time the trace has.
struct PageLayout
{
    /// Duration of the average beat, 0 without an inset.
    double beatSeconds = 0.0;
    int insetLeft = 0;
    int insetWidth = 0;
    int traceLeft = 0;
    int traceWidth = 0;
    /// Time on the trace.
    double pageSeconds = 0.0;

    bool hasTrace() const { return traceWidth >= 1 && isUsablePage(pageSeconds); }
};

/// The page of `speed` mm/s. Everything is 0 where the page lasts no usable time.
PageLayout layOutPage(const PageScale& scale, double speed, double beatSeconds);

/// Duration of an average beat in seconds, 0 for null.
double beatSecondsOf(TAverageBeat* beat);

/// How far the sweep of a growing signal has come. Samples count from the start of the recording.
struct SweepPosition
{
    int page = 0;
    int pageStart = 0;
    int pageSamples = 0;
    int cursorColumn = 0;
    /// Nothing stands to the right of the cursor yet.
    bool firstPage = true;
};

/// Only for a layout with a trace.
SweepPosition sweepPosition(const TSignal& signal, const PageLayout& layout);
