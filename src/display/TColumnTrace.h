#pragma once

#include "display/TraceRow.h"

#include <QColor>
#include <QRect>

#include <vector>

class QPainter;
class TChannel;
class TSaturationSource;

/// What the traces of a page are painted with, and where. Device pixels.
struct TraceStyle
{
    QColor trace;
    QColor saturation;
    /// x of the first column.
    int left = 0;
    int thickness = 1;
    int saturationThickness = 2;
};

/// One lead by columns: each column of pixels spans the least and the greatest of its samples. Keeps its
/// memory from lead to lead and from picture to picture.
class TColumnTrace
{
public:
    /// Reduces `count` samples from `start` on to `width` columns; see `TChannel::peaks`. Takes saturation
    /// marks away. False if there are fewer samples than columns: nothing can be drawn then.
    bool reduce(TChannel& channel, int start, int count, int width, bool wrap);
    /// Marks the columns within [fromColumn, toColumn) of the stretches that begin within [from, to), where
    /// sample `start` lies at column 0.
    void markSaturation(TSaturationSource& source, int channel, int start, int from, int to, int fromColumn,
                        int toColumn);
    bool isSaturated(int column) const { return m_saturated[column]; }

    /// Draws the columns [from, to). Takes the painter's pen and brush.
    void draw(QPainter& painter, const TraceStyle& style, const TraceRow& row, int from, int to);

private:
    int columnOf(int sample, int start) const;
    void drawRun(QPainter& painter, const TraceStyle& style, const TraceRow& row, int from, int to);

    int m_count = 0;
    int m_width = 0;
    std::vector<int> m_low;
    std::vector<int> m_high;
    std::vector<unsigned char> m_saturated;
    std::vector<QRect> m_spans;
};
