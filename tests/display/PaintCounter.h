#pragma once

#include <QEvent>
#include <QWidget>

/// How often a widget paints.
class TPaintCounter : public QObject
{
public:
    explicit TPaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};
