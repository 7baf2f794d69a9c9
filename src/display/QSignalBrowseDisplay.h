#pragma once

#include "display/BrowseView.h"
#include "display/TBrowsePainter.h"

#include <QPixmap>
#include <QWidget>

class QScrollBar;
enum class BeatMove;

/// A recording to be scrolled through: the page true to scale, the beats as ticks, one of them selected, and
/// a measuring triangle. It draws lazily: setters only mark the picture as outdated, the next paint makes it
/// anew. Pointers are borrowed, may be null, and outlive the display or are taken back; ids are those of the
/// beat source.
class QSignalBrowseDisplay : public QWidget
{
    Q_OBJECT

public:
    explicit QSignalBrowseDisplay(QWidget* parent = nullptr);

    void setSignal(TSignal* signal);
    /// mm/s
    void setSpeed(double mmPerSec);
    /// mm/mV
    void setAmplitude(double mmPerMv);
    void setBeatSource(TBeatSource* source);
    void setAverageBeat(TAverageBeat* beat);
    void setSaturationSource(TSaturationSource* source);
    void setShowAverageBeat(bool show);
    // Channels and rows from 0 to 15.
    void setChannelVisible(int channel, bool visible);
    void setChannelInverted(int channel, bool inverted);
    /// Row `row` shows `channel`.
    void setChannelOrder(int row, int channel);
    /// One of MouseMode.
    void setMouseMode(int mode);
    /// -1 for none. Does not tell of the change.
    void setSelectedBeat(int id);
    /// Tags are those of ColorTags.h.
    void setColor(int tag, QColor color);
    void refresh();

    /// Seconds at the left of the trace, kept within the recording; the scroll bar follows.
    void setStartTime(double seconds);

    TSignal* signal() const { return m_view.signal; }
    double startTime() const { return m_view.startTime; }
    double speed() const { return m_view.speed; }
    double amplitude() const { return m_view.amplitude; }
    bool showAverageBeat() const { return m_view.showAverageBeat; }
    bool channelVisible(int channel) const { return m_view.rows.visible(channel); }
    bool channelInverted(int channel) const { return m_view.rows.inverted(channel); }
    int channelOrder(int row) const { return m_view.rows.channelAt(row); }
    int mouseMode() const { return m_view.mouseMode; }
    int selectedBeat() const { return m_view.selectedBeatId; }
    const Caliper& caliper() const { return m_view.caliper; }
    /// Invalid for a tag that has none.
    QColor color(int tag) const { return m_view.colors.value(tag); }

    /// Seconds across the trace, 0 where there is no room for one.
    double pageSeconds() const { return page().layout.pageSeconds; }
    /// The time at a column of the widget.
    double timeAt(int x) const;
    /// The channel at a row of the widget; 0 where there is none.
    int channelAt(int y) const;

Q_SIGNALS:
    void startTimeChanged();
    /// -1 if there is none any more.
    void selectedBeatChanged(int selectedBeatId);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    BrowsePage page() const { return m_view.page(m_scale); }
    double devicePixels(int length) const { return length * m_scale.ratio; }
    void touch();
    void makeFrame();
    void redraw();
    void updateGrid();
    void updateScrollBar();
    void scrolled(int hundredths);
    void moveTo(double seconds);

    void pan(int x);
    void selectAt(int x);
    void moveCaliper(const QMouseEvent& event);
    void changeSelection(int id);
    void select(BeatMove move);
    void scroll(BeatMove move);

    BrowseView m_view;
    /// The picture is older than what it shows.
    bool m_dirty = true;
    QPixmap m_framePixmap;
    /// In device pixels, without a device pixel ratio.
    QPixmap m_gridPixmap;
    PageScale m_scale;
    QScrollBar* m_scrollBar;
    TBrowsePainter m_painter;
    /// The time that the middle button holds, 0 if it holds none.
    double m_panAnchor = 0.0;
    bool m_selecting = false;
};
