#include "windows/HeldKeyFilter.h"

#include <QAbstractButton>
#include <QKeyEvent>

namespace {

bool isRepeatedPress(const QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* press = static_cast<const QKeyEvent*>(event);
    const int key = press->key();
    return press->isAutoRepeat() && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space);
}

} // namespace

HeldKeyFilter::HeldKeyFilter(QWidget* window) : QObject(window)
{
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
        button->installEventFilter(this);
}

bool HeldKeyFilter::eventFilter(QObject* watched, QEvent* event)
{
    return isRepeatedPress(event) || QObject::eventFilter(watched, event);
}
