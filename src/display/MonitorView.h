#pragma once

#include "display/GridPainter.h"
#include "display/TLeadRows.h"

#include <QColor>
#include <QMap>

class TAverageBeat;
class TFiducialSource;
class TSaturationSource;
class TSignal;

/// What the live display shows and how. Everything pointed to is borrowed and may be null.
struct MonitorView
{
    TSignal* signal = nullptr;
    TAverageBeat* averageBeat = nullptr;
    TFiducialSource* fiducialSource = nullptr;
    TSaturationSource* saturationSource = nullptr;
    bool showAverageBeat = false;
    /// mm/s
    double speed = 25.0;
    /// mm/mV
    double amplitude = 10.0;
    TLeadRows rows;
    /// By tag, see ColorTags.h.
    QMap<int, QColor> colors;
    int spinnerIndex = 0;
    GridStyle gridStyle = GridStyle::dotted;
    bool autoCenter = true;

    int visibleCount() const;
    /// Whether there is something to show in an inset; the room for it is the layout's matter.
    bool hasInset() const { return showAverageBeat && averageBeat && signal; }
    /// Of one count, negative for an inverted lead.
    double pixelsPerCount(const PageScale& scale, bool inverted) const;
};

/// The colours that a display has until a scheme replaces them.
QMap<int, QColor> monitorColors();
