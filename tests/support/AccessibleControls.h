#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QStringList>
#include <QWidget>

#include <algorithm>

// What a screen reader could not tell of a window.

/// Parts that Qt makes within a control of its own; the control speaks for them.
inline bool isInnerPart(const QWidget& widget)
{
    return widget.objectName().startsWith(QLatin1String("qt_")) || widget.inherits("QScrollBar") ||
           widget.inherits("QComboBoxPrivateContainer") || widget.inherits("QComboBoxListView") ||
           (widget.inherits("QLineEdit") && qobject_cast<QComboBox*>(widget.parentWidget()));
}

/// Whether a user can get at it, with keys or with the pointer.
inline bool isControl(const QWidget& widget)
{
    return !isInnerPart(widget) &&
           (widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton*>(&widget));
}

inline bool hasOwnName(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const auto* group = qobject_cast<const QGroupBox*>(&widget);
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const QString text = button ? button->text() : group ? group->title() : label ? label->text() : QString();
    return !widget.accessibleName().trimmed().isEmpty() || !text.trimmed().isEmpty();
}

inline bool hasLabel(const QWidget& window, const QWidget& widget)
{
    const QList<QLabel*> labels = window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
        return label->buddy() == &widget && !label->text().trimmed().isEmpty();
    });
}

/// "class name" of each control of a window, shown now or not, that has neither an accessible name nor a text
/// nor a label.
inline QStringList controlsWithoutName(const QWidget& window)
{
    QStringList nameless;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (isControl(*widget) && !hasOwnName(*widget) && !hasLabel(window, *widget))
            nameless +=
                QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') + widget->objectName();
    }
    return nameless;
}
