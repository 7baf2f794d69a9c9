#include "display/QSignalMonitorDisplay.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorTags.h"
#include "display/MonitorInset.h"
#include "display/SpinnerPainter.h"
#include "display/TDevicePainter.h"

#include <QPainter>
#include <QtMath>

namespace {

constexpr int timerInterval = 200; // ms
/// Saturated stretches shine through, whatever colour is chosen for them.
constexpr int saturationAlpha = 128;

} // namespace

QSignalMonitorDisplay::QSignalMonitorDisplay(QWidget* parent) : QWidget(parent)
{
    m_view.colors = monitorColors();
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_timer, &QTimer::timeout, this, &QSignalMonitorDisplay::turnSpinner);
    m_timer.start(timerInterval);
}

void QSignalMonitorDisplay::setSignal(TSignal* signal)
{
    m_view.signal = signal;
    m_sweep.forgetBaseline();
    refresh();
}

void QSignalMonitorDisplay::setSpeed(double mmPerSec)
{
    m_view.speed = mmPerSec;
    refresh();
}

void QSignalMonitorDisplay::setAmplitude(double mmPerMv)
{
    m_view.amplitude = mmPerMv;
    refresh();
}

void QSignalMonitorDisplay::setAverageBeat(TAverageBeat* beat)
{
    m_view.averageBeat = beat;
    refresh();
}

void QSignalMonitorDisplay::setShowAverageBeat(bool show)
{
    m_view.showAverageBeat = show;
    refresh();
}

void QSignalMonitorDisplay::setFiducialSource(TFiducialSource* source)
{
    m_view.fiducialSource = source;
    refresh();
}

void QSignalMonitorDisplay::setSaturationSource(TSaturationSource* source)
{
    m_view.saturationSource = source;
    refresh();
}

void QSignalMonitorDisplay::setAutoCenter(bool on)
{
    m_view.autoCenter = on;
    m_sweep.forgetBaseline();
    refresh();
}

void QSignalMonitorDisplay::setChannelVisible(int channel, bool visible)
{
    if (m_view.rows.setVisible(channel, visible))
        refresh();
}

void QSignalMonitorDisplay::setChannelInverted(int channel, bool inverted)
{
    if (m_view.rows.setInverted(channel, inverted))
        refresh();
}

void QSignalMonitorDisplay::setChannelOrder(int row, int channel)
{
    if (m_view.rows.setOrder(row, channel))
        refresh();
}

void QSignalMonitorDisplay::setColor(int tag, QColor color)
{
    if (tag == SaturationColor)
        color.setAlpha(saturationAlpha);
    m_view.colors.insert(tag, color);
    if (tag == BackgroundColor || tag == GridColor)
        m_gridPixmap = QPixmap();
}

void QSignalMonitorDisplay::refresh()
{
    m_stale = true;
    if (!isVisible())
        return;
    redraw();
    repaint();
}

void QSignalMonitorDisplay::turnSpinner()
{
    if (m_view.signal && m_view.signal->sampleCount() == 0)
        m_view.spinnerIndex = (m_view.spinnerIndex + spinnerSectors - 1) % spinnerSectors;
    update();
}

void QSignalMonitorDisplay::paintEvent(QPaintEvent*)
{
    // The window may have come to a screen of another density.
    if (m_stale || m_framePixmap.devicePixelRatio() != devicePixelRatioF())
        redraw();
    if (!m_framePixmap.isNull())
        QPainter(this).drawPixmap(0, 0, m_framePixmap);
}

void QSignalMonitorDisplay::resizeEvent(QResizeEvent*)
{
    refresh();
}

/// The widget's size, on the screen where it is now.
void QSignalMonitorDisplay::makeFrame()
{
    const qreal ratio = devicePixelRatioF();
    const QSize wanted(qCeil(width() * ratio), qCeil(height() * ratio));
    if (m_framePixmap.size() != wanted)
        m_framePixmap = QPixmap(wanted);
    if (m_framePixmap.devicePixelRatio() != ratio)
        m_gridPixmap = QPixmap();
    m_framePixmap.setDevicePixelRatio(ratio);
}

void QSignalMonitorDisplay::redraw()
{
    m_stale = false;
    makeFrame();
    if (m_framePixmap.isNull())
        return;
    const PageScale scale = PageScale::of(m_framePixmap, m_framePixmap.devicePixelRatio());
    const double beatSeconds = m_view.showAverageBeat ? beatSecondsOf(m_view.averageBeat) : 0.0;
    const PageLayout layout = layOutPage(scale, m_view.speed, beatSeconds);
    if (isUsablePage(scale.pageSeconds(m_view.speed)))
        updateGrid(scale);
    TDevicePainter painter(m_framePixmap);
    paintFrame(*painter, scale, layout);
}

void QSignalMonitorDisplay::updateGrid(const PageScale& scale)
{
    if (m_gridPixmap.size() == m_framePixmap.size())
        return;
    m_gridPixmap = QPixmap(m_framePixmap.size());
    paintGrid(m_gridPixmap, scale, m_view.gridStyle, {color(BackgroundColor), color(GridColor)});
}

void QSignalMonitorDisplay::paintFrame(QPainter& painter, const PageScale& scale, const PageLayout& layout)
{
    const bool usable = isUsablePage(scale.pageSeconds(m_view.speed));
    if (usable)
        painter.drawPixmap(0, 0, m_gridPixmap);
    else
        painter.fillRect(0, 0, scale.width, scale.height, color(BackgroundColor));
    if (m_view.visibleCount() > 0) {
        m_labels.paint(painter, scale, *m_view.signal, m_view.rows, color(LabelColor));
        const bool measurable = qIsFinite(m_view.pixelsPerCount(scale, false));
        if (measurable && layout.hasTrace())
            m_sweep.paint(painter, scale, layout, m_view);
        if (measurable && usable && m_view.hasInset())
            paintMonitorInset(painter, scale, layout, m_view);
    }
    if (m_view.signal && m_view.signal->sampleCount() == 0)
        paintSpinner(painter, scale, m_view.spinnerIndex);
}
