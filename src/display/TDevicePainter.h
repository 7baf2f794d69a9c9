#pragma once

#include <QPainter>
#include <QPixmap>

/// Paints into a pixmap in its device pixels, whatever its device pixel ratio, so that lines stand on whole
/// pixels of the screen. The ratio is set again when the painter goes.
class TDevicePainter
{
public:
    /// The pixmap outlives the painter and is not null.
    explicit TDevicePainter(QPixmap& pixmap);
    ~TDevicePainter();
    TDevicePainter(const TDevicePainter&) = delete;
    TDevicePainter& operator=(const TDevicePainter&) = delete;

    QPainter& operator*() { return m_painter; }
    QPainter* operator->() { return &m_painter; }

private:
    QPixmap& m_pixmap;
    qreal m_ratio;
    QPainter m_painter;
};
