#pragma once

#include "display/TraceRow.h"

#include <QLine>

#include <vector>

class QColor;
class QPainter;
class QPen;
class TSignal;

/// One lead sample by sample, for pictures that have more pixels than samples. Keeps its memory from lead to
/// lead and from picture to picture.
class TSampleTrace
{
public:
    /// The samples [from, to) of a channel; the first one lies at `x`, each next one `step` further right.
    struct TRun
    {
        int channel = 0;
        int from = 0;
        int to = 0;
        double x = 0.0;
        double step = 0.0;
    };

    /// With the painter's pen, which is best `tracePen`: a line from each sample to the next.
    void draw(QPainter& painter, TSignal& signal, const TRun& run, const TraceRow& row);

private:
    std::vector<double> m_samples;
    std::vector<QLine> m_lines;
};

/// Flat at its ends; device pixels.
QPen tracePen(const QColor& color, int thickness);
