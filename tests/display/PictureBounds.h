#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>

#include <cmath>

/// Whether it is that colour or, at the edge of a smooth line, mostly so.
inline bool isLike(QColor a, QColor b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) <
           200;
}

/// Bounds of the pixels of that colour, in widget coordinates; null if there are none.
inline QRectF boundsOf(const QImage& image, QColor color, QRectF within = QRectF(0, 0, 900, 400))
{
    const double ratio = image.devicePixelRatio();
    QRect found;
    for (int y = int(within.top() * ratio); y < int(within.bottom() * ratio); ++y) {
        for (int x = int(within.left() * ratio); x < int(within.right() * ratio); ++x) {
            if (isLike(image.pixelColor(x, y), color))
                found |= QRect(x, y, 1, 1);
        }
    }
    return QRectF(QPointF(found.topLeft()) / ratio, QSizeF(found.size()) / ratio);
}

inline bool isNear(double a, double b)
{
    return std::fabs(a - b) <= 1.5;
}

/// Bounds of what two pictures have not in common, in widget coordinates.
inline QRectF differenceOf(const QImage& a, const QImage& b)
{
    const double ratio = a.devicePixelRatio();
    QRect found;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                found |= QRect(x, y, 1, 1);
        }
    }
    return QRectF(QPointF(found.topLeft()) / ratio, QSizeF(found.size()) / ratio);
}
