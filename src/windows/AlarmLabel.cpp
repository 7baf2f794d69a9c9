#include "windows/AlarmLabel.h"

namespace {

constexpr QSize labelSize(160, 30);

} // namespace

AlarmLabel::AlarmLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    setAlignment(Qt::AlignCenter);
    setStyleSheet(QStringLiteral("background: white; color: red; font-weight: bold; font-size: 15px"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(labelSize);
}
