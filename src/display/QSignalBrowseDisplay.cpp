#include "display/QSignalBrowseDisplay.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorTags.h"
#include "display/TDevicePainter.h"

#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QtMath>

namespace {

constexpr int saturationAlpha = 128;

} // namespace

QSignalBrowseDisplay::QSignalBrowseDisplay(QWidget* parent)
    : QWidget(parent), m_scrollBar(new QScrollBar(Qt::Horizontal, this))
{
    m_view.colors = browseColors();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    m_scrollBar->setFocusPolicy(Qt::ClickFocus);
    m_scrollBar->setAccessibleName(tr("Time in the recording"));
    connect(m_scrollBar, &QScrollBar::valueChanged, this, &QSignalBrowseDisplay::scrolled);
    makeFrame();
    updateScrollBar();
}

void QSignalBrowseDisplay::setSignal(TSignal* signal)
{
    m_view.signal = signal;
    updateScrollBar();
    touch();
}

void QSignalBrowseDisplay::setSpeed(double mmPerSec)
{
    m_view.speed = mmPerSec;
    updateScrollBar();
    touch();
}

void QSignalBrowseDisplay::setAmplitude(double mmPerMv)
{
    m_view.amplitude = mmPerMv;
    touch();
}

void QSignalBrowseDisplay::setBeatSource(TBeatSource* source)
{
    m_view.beatSource = source;
    touch();
}

void QSignalBrowseDisplay::setAverageBeat(TAverageBeat* beat)
{
    m_view.averageBeat = beat;
    // The inset takes its time from the page.
    updateScrollBar();
    touch();
}

void QSignalBrowseDisplay::setSaturationSource(TSaturationSource* source)
{
    m_view.saturationSource = source;
    touch();
}

void QSignalBrowseDisplay::setShowAverageBeat(bool show)
{
    m_view.showAverageBeat = show;
    updateScrollBar();
    touch();
}

void QSignalBrowseDisplay::setChannelVisible(int channel, bool visible)
{
    if (m_view.rows.setVisible(channel, visible))
        touch();
}

void QSignalBrowseDisplay::setChannelInverted(int channel, bool inverted)
{
    if (m_view.rows.setInverted(channel, inverted))
        touch();
}

void QSignalBrowseDisplay::setChannelOrder(int row, int channel)
{
    if (m_view.rows.setOrder(row, channel))
        touch();
}

void QSignalBrowseDisplay::setMouseMode(int mode)
{
    m_view.mouseMode = mode;
    // The caliper follows the pointer before any button is pressed.
    if (mode == CaliperMode)
        setMouseTracking(true);
    touch();
}

void QSignalBrowseDisplay::setSelectedBeat(int id)
{
    m_view.selectedBeatId = id;
    touch();
}

void QSignalBrowseDisplay::setColor(int tag, QColor color)
{
    if (tag == SaturationColor)
        color.setAlpha(saturationAlpha);
    m_view.colors.insert(tag, color);
    if (tag == BackgroundColor || tag == GridColor)
        m_gridPixmap = QPixmap();
    touch();
}

void QSignalBrowseDisplay::refresh()
{
    touch();
}

void QSignalBrowseDisplay::setStartTime(double seconds)
{
    moveTo(seconds);
}

double QSignalBrowseDisplay::timeAt(int x) const
{
    return page().timeAt(devicePixels(x));
}

int QSignalBrowseDisplay::channelAt(int y) const
{
    return m_view.channelAt(m_scale, devicePixels(y));
}

void QSignalBrowseDisplay::touch()
{
    m_dirty = true;
    update();
}

/// As large as the widget without its scroll bar, on the screen where it is now.
void QSignalBrowseDisplay::makeFrame()
{
    const int barHeight = m_scrollBar->sizeHint().height();
    m_scrollBar->setGeometry(0, height() - barHeight, width(), barHeight);
    const qreal ratio = devicePixelRatioF();
    if (m_framePixmap.devicePixelRatio() != ratio)
        m_gridPixmap = QPixmap();
    m_framePixmap = QPixmap(qCeil(width() * ratio), qMax(0, qCeil((height() - barHeight) * ratio)));
    m_framePixmap.setDevicePixelRatio(ratio);
    m_framePixmap.fill(color(BackgroundColor));
    m_scale = PageScale::of(m_framePixmap, ratio);
}

void QSignalBrowseDisplay::updateGrid()
{
    if (m_gridPixmap.size() == m_framePixmap.size())
        return;
    m_gridPixmap = QPixmap(m_framePixmap.size());
    paintGrid(m_gridPixmap, m_scale, m_view.gridStyle, {color(BackgroundColor), color(GridColor)});
}

void QSignalBrowseDisplay::redraw()
{
    const BrowsePage shown = page();
    if (m_framePixmap.isNull() || shown.layout.pageSeconds <= 0.0)
        return;
    m_dirty = false;
    m_view.channelOffset = pageBaselines(m_view, shown);
    updateGrid();
    TDevicePainter painter(m_framePixmap);
    painter->drawPixmap(0, 0, m_gridPixmap);
    m_painter.paint(*painter, shown, m_view);
}

void QSignalBrowseDisplay::paintEvent(QPaintEvent*)
{
    // The window may have come to a screen of another density.
    if (!m_framePixmap.isNull() && m_framePixmap.devicePixelRatio() != devicePixelRatioF()) {
        makeFrame();
        updateScrollBar();
        m_dirty = true;
    }
    if (m_dirty)
        redraw();
    if (!m_framePixmap.isNull())
        QPainter(this).drawPixmap(0, 0, m_framePixmap);
}

void QSignalBrowseDisplay::resizeEvent(QResizeEvent*)
{
    makeFrame();
    updateScrollBar();
    touch();
}

void QSignalBrowseDisplay::updateScrollBar()
{
    const double seconds = pageSeconds();
    const ScrollRange range = scrollRange(m_view.duration(), seconds, m_view.startTime);
    {
        const QSignalBlocker quiet(m_scrollBar);
        m_scrollBar->setRange(0, range.maximum);
        m_scrollBar->setSingleStep(range.singleStep);
        m_scrollBar->setPageStep(range.pageStep);
        m_scrollBar->setValue(range.value);
    }
    m_scrollBar->setEnabled(range.enabled());
    if (m_view.signal)
        moveTo(m_view.startTime);
}

void QSignalBrowseDisplay::scrolled(int hundredths)
{
    m_view.startTime = hundredths * 0.01;
    touch();
    Q_EMIT startTimeChanged();
}

/// The scroll bar only follows: taken from its hundredths, the view would creep away from where it is moved.
void QSignalBrowseDisplay::moveTo(double seconds)
{
    // Without a signal nothing else keeps the start to what can be shown.
    if (!m_view.signal && !(qIsFinite(seconds) && seconds >= 0.0))
        return;
    const double start = m_view.signal ? clampedStart(seconds, m_view.duration(), pageSeconds()) : seconds;
    const bool moved = start != m_view.startTime;
    m_view.startTime = start;
    {
        const QSignalBlocker quiet(m_scrollBar);
        m_scrollBar->setValue(scrollRange(m_view.duration(), pageSeconds(), start).value);
    }
    touch();
    if (moved)
        Q_EMIT startTimeChanged();
}
