#pragma once

#include <QObject>

class QWidget;

/// Lets a key that is held down press one button of a window and not, as the focus goes on, the next ones
/// too.
class HeldKeyFilter : public QObject
{
    Q_OBJECT

public:
    /// For the buttons that `window` has now. Belongs to it.
    explicit HeldKeyFilter(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
