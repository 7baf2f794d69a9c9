#include "display/QBeatDisplay.h"

#include "display/BeatPainter.h"

#include <QMouseEvent>
#include <QPainter>

QBeatDisplay::QBeatDisplay(QWidget* parent)
    : QWidget(parent), m_cursors(beatCursors()), m_shownCursors(m_cursors)
{
    setMouseTracking(true);
}

QBeatDisplay::~QBeatDisplay() = default;

void QBeatDisplay::setAverageBeat(TAverageBeat* beat)
{
    m_averageBeat = beat;
    if (!beat && m_activeCursor >= 0)
        activate(-1);
    refresh();
}

void QBeatDisplay::setChannel(int channel)
{
    m_channel = channel;
    refresh();
}

void QBeatDisplay::setCursorPosition(int index, double seconds)
{
    if (index >= 0 && index < beatCursorCount)
        m_cursors[index].position = seconds;
}

double QBeatDisplay::cursorPosition(int index) const
{
    return index >= 0 && index < beatCursorCount ? m_cursors[index].position : 0.0;
}

void QBeatDisplay::refresh()
{
    m_shownCursors = m_cursors;
    m_dirty = true;
    repaint();
}

TBeatScale QBeatDisplay::scale() const
{
    return beatScale(m_averageBeat, width(), height());
}

void QBeatDisplay::makeFramePixmap()
{
    const qreal ratio = devicePixelRatioF();
    m_framePixmap = QPixmap((QSizeF(size()) * ratio).toSize());
    m_framePixmap.setDevicePixelRatio(ratio);
    m_framePixmap.fill(Qt::white);
}

void QBeatDisplay::redraw()
{
    m_dirty = false;
    if (m_framePixmap.isNull())
        return;
    if (!scale().usable()) {
        m_framePixmap.fill(Qt::white);
        return;
    }
    QPainter painter(&m_framePixmap);
    paintBeat(painter, scale(), {m_averageBeat, m_channel, m_shownCursors, m_activeCursor});
}

void QBeatDisplay::paintEvent(QPaintEvent*)
{
    // The window may have come to a screen of another density.
    if (!m_framePixmap.isNull() && m_framePixmap.devicePixelRatio() != devicePixelRatioF()) {
        makeFramePixmap();
        m_dirty = true;
    }
    if (m_dirty)
        redraw();
    QPainter(this).drawPixmap(0, 0, m_framePixmap);
}

void QBeatDisplay::resizeEvent(QResizeEvent*)
{
    makeFramePixmap();
    refresh();
}

void QBeatDisplay::mouseMoveEvent(QMouseEvent* event)
{
    if (!scale().usable())
        return;
    if (!(event->buttons() & Qt::LeftButton))
        hover(event->x());
    else if (m_activeCursor >= 0)
        drag(event->x());
}

void QBeatDisplay::hover(int x)
{
    const int found = cursorAt(m_cursors, scale(), x);
    if (found == m_activeCursor)
        return;
    activate(found);
    refresh();
}

void QBeatDisplay::activate(int cursor)
{
    m_activeCursor = cursor;
    setCursor(cursor >= 0 ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void QBeatDisplay::drag(int x)
{
    m_cursors[m_activeCursor].position = scale().secondsAt(x);
    refresh();
    Q_EMIT cursorChanged();
}
