#pragma once

#include <QColor>
#include <QString>

#include <vector>

class TDoubleVector;

/// A fiducial cursor of the beat display.
struct TBeatCursor
{
    bool visible = false;
    /// Seconds from the start of the beat; 0.0 or less until a wave boundary is known.
    double position = 0.0;
    QColor color = Qt::blue;
    QString name;
    /// What stands beside the cursor while it is caught.
    QString mark;
};

/// Places in the list of cursors.
enum TBeatCursorIndex
{
    pOnCursor,
    pOffCursor,
    pPeakCursor,
    qrsOnCursor,
    qrsOffCursor,
    tOnCursor,
    tOffCursor,
    tPeakCursor,
    beatCursorCount
};

using TBeatCursors = std::vector<TBeatCursor>;

/// The eight cursors at 0.0 s; P on, QRS on, QRS off and T off are visible.
TBeatCursors beatCursors();

/// How times, voltages and pixels of the beat display hang together. Pixels are those that the mouse counts.
struct TBeatScale
{
    int width = 0;
    int height = 0;
    /// Length of the beat; with 0.0 there is nothing to draw.
    double beatSeconds = 0.0;

    bool usable() const { return width > 0 && height > 0 && beatSeconds > 0.0; }
    /// 0.4 s and 1 mV.
    double pixelsPerCm() const { return width / beatSeconds / 5.0 * 2.0; }
    int xOf(double seconds) const;
    /// Of the pixel nearest to `x` that lies in the widget.
    double secondsAt(int x) const;
};

/// Whether a cursor has its line: at 0.0 s it waits at the left edge to be placed, before that it is nowhere.
bool isDrawn(const TBeatCursor& cursor);

/// The first cursor that is drawn within 3 pixels of `x`, or -1.
int cursorAt(const TBeatCursors& cursors, const TBeatScale& scale, int x);

/// A line from one cursor to another with the time between them.
struct TBeatDimension
{
    double from;
    double to;
    QString text;
    /// All are below the cursors, 0 the first. Lines of the same row do not lie over each other as
    /// long as the waves stand in their order.
    int row;
};

/// Those whose cursors are both visible, set (above 0.0 s) and in their order: an unset one would make a
/// false interval from the left edge.
std::vector<TBeatDimension> beatDimensions(const TBeatCursors& cursors);

/// "[RR %1]" with whole ms, empty if the RR is not known. `seconds` is the average RR.
QString rrText(double seconds);

/// A height of the curve that is told in millivolts.
struct TBeatLevel
{
    double seconds;
    /// Of the curve there, in counts.
    double counts;
    QString text;
};

/// P peak, QRS and T peak, each against the curve at the cursor P on and only if the cursors it rests on are
/// visible and set. The level of the QRS is its farthest point. `complex` in counts at `rate` samples per
/// second, `countValue` in mV.
std::vector<TBeatLevel> beatLevels(const TBeatCursors& cursors, const TDoubleVector& complex, int rate,
                                   double countValue);
