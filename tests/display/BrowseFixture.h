#pragma once

#include "analysis/beats/TBeatRing.h"
#include "display/DisplaySignal.h"
#include "display/QSignalBrowseDisplay.h"
#include "display/TSaturationSource.h"
#include "display/TStoredBeats.h"

#include <QImage>
#include <QScrollBar>

#include <algorithm>

/// Finds nothing and counts the pictures: each asks once for a single lead.
class PictureCounter : public TSaturationSource
{
public:
    bool findStretch(int, int, int, int*, int*) override
    {
        ++pictures;
        return false;
    }

    int pictures = 0;
};

/// A minute with a beat each second from 0.5 s on, its average, and a display of 900 x 400 that shows it.
struct BrowseFixture
{
    explicit BrowseFixture(int seconds = 60, std::initializer_list<int> rejected = {})
        : signal(display_signal::steadySignal(seconds)), average(display_signal::averageOf(signal.get())),
          ring(3), beats(&ring)
    {
        for (int i = 0; i < seconds; ++i) {
            TBeat beat = display_signal::beatAt(0.5 + i, i > 0 ? 1.0 : 0.0, signal.get());
            if (std::find(rejected.begin(), rejected.end(), i) != rejected.end())
                beat.setNumber(-1);
            ring.add(beat);
        }
        display.resize(900, 400);
        display.setSignal(signal.get());
        display.setBeatSource(&beats);
        display.setAverageBeat(average.get());
        // A hidden widget learns its size when it is first painted.
        display.grab();
    }

    QScrollBar& bar() { return *display.findChild<QScrollBar*>(); }
    /// The column of the widget at a time.
    int xOf(double time)
    {
        int x = 0;
        while (display.timeAt(x) < time)
            ++x;
        return x;
    }
    QImage picture() { return display.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    std::unique_ptr<TInt16Signal> signal;
    std::unique_ptr<TAverageBeat> average;
    TBeatRing ring;
    TStoredBeats beats;
    QSignalBrowseDisplay display;
};
