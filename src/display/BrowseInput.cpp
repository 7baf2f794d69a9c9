#include "display/BeatNavigation.h"
#include "display/QSignalBrowseDisplay.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <cmath>

// What mouse and keys do in the browse display.

namespace {

/// Seconds from a beat within which a click means it.
constexpr double selectDistance = 0.2;

} // namespace

void QSignalBrowseDisplay::mousePressEvent(QMouseEvent* event)
{
    setFocus();
    setMouseTracking(true);
    const double x = devicePixels(event->x());
    if (page().isInInset(x))
        return;
    if (event->button() == Qt::MiddleButton)
        m_panAnchor = page().timeAt(x);
    if (event->button() == Qt::LeftButton && m_view.mouseMode == SelectBeatsMode) {
        m_selecting = true;
        selectAt(event->x());
    }
}

void QSignalBrowseDisplay::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::MiddleButton && m_panAnchor > 0.0)
        pan(event->x());
    const bool selects = event->buttons() & Qt::LeftButton && m_selecting;
    if (selects && m_view.mouseMode == SelectBeatsMode && !page().isInInset(devicePixels(event->x())))
        selectAt(event->x());
    if (m_view.mouseMode == CaliperMode)
        moveCaliper(*event);
}

void QSignalBrowseDisplay::mouseReleaseEvent(QMouseEvent*)
{
    m_selecting = false;
    m_panAnchor = 0.0;
}

void QSignalBrowseDisplay::pan(int x)
{
    moveTo(m_view.startTime - (timeAt(x) - m_panAnchor));
    m_panAnchor = timeAt(x);
}

void QSignalBrowseDisplay::selectAt(int x)
{
    const double time = timeAt(x);
    int id = -1;
    if (m_view.beatSource && time > 0.0) {
        const auto beat = m_view.beatSource->nearestBeat(time);
        if (beat && std::fabs(beat->time - time) < selectDistance)
            id = beat->id;
    }
    changeSelection(id);
}

void QSignalBrowseDisplay::changeSelection(int id)
{
    if (id == m_view.selectedBeatId)
        return;
    m_view.selectedBeatId = id;
    touch();
    Q_EMIT selectedBeatChanged(id);
}

void QSignalBrowseDisplay::moveCaliper(const QMouseEvent& event)
{
    const CaliperPointer pointer{devicePixels(event.x()), devicePixels(event.y()),
                                 event.buttons() != Qt::NoButton, bool(event.buttons() & Qt::LeftButton)};
    const bool wasShown = m_view.caliper.shown;
    m_view.caliper = movedCaliper(m_view, page(), pointer);
    if (wasShown || m_view.caliper.shown)
        touch();
}

void QSignalBrowseDisplay::keyPressEvent(QKeyEvent* event)
{
    const auto move = beatMove(event->key());
    if (!move)
        QWidget::keyPressEvent(event);
    else if (m_view.beatSource && m_view.beatSource->count() > 0 && m_view.selectedBeatId >= 0)
        select(*move);
    else
        scroll(*move);
}

void QSignalBrowseDisplay::select(BeatMove move)
{
    const auto beat = moveSelection(*m_view.beatSource, m_view.selectedBeatId, move, pageSeconds());
    if (!beat)
        return;
    changeSelection(beat->id);
    moveTo(startTimeShowing(*beat, move, m_view.startTime, pageSeconds()));
}

void QSignalBrowseDisplay::scroll(BeatMove move)
{
    switch (move) {
    case BeatMove::next:
        return m_scrollBar->triggerAction(QScrollBar::SliderSingleStepAdd);
    case BeatMove::previous:
        return m_scrollBar->triggerAction(QScrollBar::SliderSingleStepSub);
    case BeatMove::nextPage:
        return m_scrollBar->triggerAction(QScrollBar::SliderPageStepAdd);
    case BeatMove::previousPage:
        return m_scrollBar->triggerAction(QScrollBar::SliderPageStepSub);
    case BeatMove::first:
        return moveTo(0.0);
    case BeatMove::last:
        // The hundredths of the scroll bar may stop short of the end.
        return moveTo(m_view.signal ? m_view.duration() : m_view.startTime);
    }
}
