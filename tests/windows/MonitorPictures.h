#pragma once

#include <QWidget>

/// How many pixels of a colour a widget shows.
inline int pixelsOf(QWidget& widget, const QColor& color)
{
    const QImage picture = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}
