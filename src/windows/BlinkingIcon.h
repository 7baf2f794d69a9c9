#pragma once

#include "windows/IconLabel.h"

/// An icon over the live ECG that blinks as long as there is a reason to. Hidden at first.
class BlinkingIcon : public IconLabel
{
    Q_OBJECT

public:
    /// Width and height in pixels.
    static constexpr int side = 50;

    /// `meaning` in words, for those who do not see it.
    BlinkingIcon(const QIcon& icon, const QString& meaning, QWidget* parent);

    /// Shown and hidden in turns, from call to call.
    void blink();
};
