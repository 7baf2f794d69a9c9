#pragma once

#include "display/PageScale.h"

#include <QColor>

class QPainter;
class TDoubleVector;

/// One lead's average beat within the inset; device pixels, `pixelsPerCount` negative if inverted.
struct InsetRow
{
    int left = 0;
    int width = 0;
    double centre = 0.0;
    double pixelsPerCount = 0.0;
    int thickness = 1;
};

/// y of a value in counts, no further out of the picture than painters can reckon with.
int insetY(const InsetRow& row, double value);

/// A line across the inset, where there is no beat to show.
void drawFlatBeat(QPainter& painter, const InsetRow& row, const QColor& color);

/// Point by point, or, if the beat has more points than the inset has columns, one
/// vertical line from the least to the greatest value of each column. Columns join their neighbours.
void drawBeatByColumns(QPainter& painter, const InsetRow& row, const TDoubleVector& beat,
                       const QColor& color);

/// With the painter's pen: a line through every point.
void drawBeatThroughPoints(QPainter& painter, const InsetRow& row, const TDoubleVector& beat);
