#pragma once

#include "display/MonitorView.h"
#include "display/TLeadLabels.h"
#include "display/TSweepPainter.h"

#include <QPixmap>
#include <QTimer>
#include <QWidget>

/// The live ECG: a sweep over millimetre paper, true to scale, with the running average beat in an inset. It
/// holds no samples; it reads a signal that somebody else lets grow, and `refresh` tells it to. Pointers are
/// borrowed, may be null, and outlive the display or are taken back. While it is hidden nothing is drawn; the
/// picture is made up when it is seen again.
class QSignalMonitorDisplay : public QWidget
{
    Q_OBJECT

public:
    explicit QSignalMonitorDisplay(QWidget* parent = nullptr);

    // Each of these redraws at once.
    void setSignal(TSignal* signal);
    /// mm/s
    void setSpeed(double mmPerSec);
    /// mm/mV
    void setAmplitude(double mmPerMv);
    void setAverageBeat(TAverageBeat* beat);
    void setShowAverageBeat(bool show);
    void setFiducialSource(TFiducialSource* source);
    void setSaturationSource(TSaturationSource* source);
    /// Whether each lead is centred anew with each page.
    void setAutoCenter(bool on);

    // These redraw if they change anything; channels and rows from 0 to 15.
    void setChannelVisible(int channel, bool visible);
    void setChannelInverted(int channel, bool inverted);
    /// Row `row` shows `channel`.
    void setChannelOrder(int row, int channel);

    /// Does not redraw: `refresh` does, after the last of several. Tags are those of ColorTags.h.
    void setColor(int tag, QColor color);
    /// Called when samples have come.
    void refresh();

    TSignal* signal() const { return m_view.signal; }
    double speed() const { return m_view.speed; }
    double amplitude() const { return m_view.amplitude; }
    bool showAverageBeat() const { return m_view.showAverageBeat; }
    bool autoCenter() const { return m_view.autoCenter; }
    bool channelVisible(int channel) const { return m_view.rows.visible(channel); }
    bool channelInverted(int channel) const { return m_view.rows.inverted(channel); }
    int channelOrder(int row) const { return m_view.rows.channelAt(row); }
    /// Invalid for a tag that has none.
    QColor color(int tag) const { return m_view.colors.value(tag); }
    int spinnerIndex() const { return m_view.spinnerIndex; }
    int lastPage() const { return m_sweep.lastPage(); }
    /// Baseline that is taken from a channel, in counts.
    int channelOffset(int channel) const { return m_sweep.channelOffset(channel); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void turnSpinner();
    void makeFrame();
    void redraw();
    void paintFrame(QPainter& painter, const PageScale& scale, const PageLayout& layout);
    void updateGrid(const PageScale& scale);

    MonitorView m_view;
    QPixmap m_framePixmap;
    /// In device pixels, without a device pixel ratio.
    QPixmap m_gridPixmap;
    TLeadLabels m_labels;
    TSweepPainter m_sweep;
    /// The picture is older than what it shows, for nobody could see it.
    bool m_stale = true;
    QTimer m_timer;
};
