#pragma once

#include "display/BeatCursors.h"

#include <QPixmap>
#include <QWidget>

class TAverageBeat;

/// One lead of the average beat at a large scale with the cursors of its wave boundaries, which the user
/// drags, and the measurements that follow from them. Times are seconds from the start of the beat; what they
/// mean for a study is the owner's business.
class QBeatDisplay : public QWidget
{
    Q_OBJECT

public:
    explicit QBeatDisplay(QWidget* parent = nullptr);
    ~QBeatDisplay() override;

    /// Borrowed, may be null; outlives the widget or is taken away. Without a beat no cursor is caught.
    void setAverageBeat(TAverageBeat* beat);
    TAverageBeat* averageBeat() const { return m_averageBeat; }
    /// The lead; one that the beat has not shows a flat line.
    void setChannel(int channel);
    int channel() const { return m_channel; }

    // An index out of range is ignored and reads 0.0.
    /// Shows with the next `refresh`.
    void setCursorPosition(int index, double seconds);
    double cursorPosition(int index) const;
    const TBeatCursors& cursors() const { return m_cursors; }
    /// The cursor that a drag would move, -1 for none.
    int activeCursor() const { return m_activeCursor; }

    /// Shows the present state at once, or, while the widget is hidden, with its next showing.
    void refresh();

    QSize sizeHint() const override { return {640, 400}; }

Q_SIGNALS:
    /// On each step of a drag.
    void cursorChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    TBeatScale scale() const;
    void makeFramePixmap();
    void redraw();
    void hover(int x);
    void activate(int cursor);
    void drag(int x);

    TAverageBeat* m_averageBeat = nullptr;
    int m_channel = 0;
    QPixmap m_framePixmap;
    /// The frame does not show the present state.
    bool m_dirty = true;
    TBeatCursors m_cursors;
    /// As they were at the last `refresh`.
    TBeatCursors m_shownCursors;
    int m_activeCursor = -1;
};
