#include "windows/IconLabel.h"

#include <QPainter>

void IconLabel::setIcon(const QIcon& icon)
{
    m_icon = icon;
    update();
}

void IconLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    QPainter painter(this);
    m_icon.paint(&painter, contentsRect());
}
