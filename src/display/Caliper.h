#pragma once

#include <QPointF>
#include <QString>

#include <optional>

struct BrowsePage;
struct BrowseView;

/// The measuring triangle of the browse display, in the trace or in the inset.
struct Caliper
{
    bool inBeat = false;
    bool shown = false;
    /// The second end follows the pointer.
    bool dragging = false;
    int channel = 0;
    /// Ends as samples of the recording or of the average beat.
    int from = 0;
    int to = 0;
};

/// The pointer, in device pixels.
struct CaliperPointer
{
    double x = 0.0;
    double y = 0.0;
    bool anyButton = false;
    bool leftButton = false;
};

/// The caliper after a move of the mouse.
Caliper movedCaliper(const BrowseView& view, const BrowsePage& page, const CaliperPointer& pointer);

/// What a caliper measures and where it lies, device pixels.
struct CaliperFigure
{
    QPointF from;
    QPointF to;
    double seconds = 0.0;
    double millivolts = 0.0;

    QString timeText() const;
    /// The millimetres are those of standard gain, whatever gain is set.
    QString amplitudeText() const;
};

/// Nothing if the caliper is not shown, or its beat or its channel is not.
std::optional<CaliperFigure> caliperFigure(const BrowseView& view, const BrowsePage& page);
