#pragma once

#include <QWidget>

#include <cstdlib>

/// Whether no primary differs by more than a grid that shines through makes it.
inline bool isNear(const QColor& one, const QColor& other)
{
    constexpr int tolerance = 80;
    return std::abs(one.red() - other.red()) <= tolerance &&
           std::abs(one.green() - other.green()) <= tolerance &&
           std::abs(one.blue() - other.blue()) <= tolerance;
}

/// How many pixels of a colour, which nothing else is near to, a widget shows.
inline int pixelsOf(QWidget& widget, const QColor& color)
{
    const QImage picture = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += isNear(picture.pixelColor(x, y), color) ? 1 : 0;
    }
    return count;
}
