#pragma once

#include "display/PageScale.h"

#include <QColor>

class QPixmap;

enum class GridStyle
{
    dotted, ///< points every millimetre, lines every five
    ruled   ///< lines every millimetre, heavier ones every five
};

struct GridColors
{
    QColor background;
    QColor grid;
};

/// Fills the pixmap with the background and draws millimetre paper over it; `scale` is that of the pixmap.
void paintGrid(QPixmap& pixmap, const PageScale& scale, GridStyle style, const GridColors& colors);
