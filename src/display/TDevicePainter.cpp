#include "display/TDevicePainter.h"

TDevicePainter::TDevicePainter(QPixmap& pixmap) : m_pixmap(pixmap), m_ratio(pixmap.devicePixelRatio())
{
    m_pixmap.setDevicePixelRatio(1.0);
    m_painter.begin(&m_pixmap);
}

TDevicePainter::~TDevicePainter()
{
    m_painter.end();
    m_pixmap.setDevicePixelRatio(m_ratio);
}
