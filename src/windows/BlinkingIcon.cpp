#include "windows/BlinkingIcon.h"

BlinkingIcon::BlinkingIcon(const QIcon& icon, const QString& meaning, QWidget* parent) : IconLabel(parent)
{
    setIcon(icon);
    setAccessibleName(meaning);
    setToolTip(meaning);
    setStyleSheet(QStringLiteral("background:none"));
    setFixedSize(side, side);
    hide();
}

void BlinkingIcon::blink()
{
    setVisible(isHidden());
    raise();
}
