#pragma once

#include <QLabel>

/// A short text over the live ECG that nobody may miss. It hides nothing from the mouse.
class AlarmLabel : public QLabel
{
    Q_OBJECT

public:
    AlarmLabel(const QString& text, QWidget* parent);
};
