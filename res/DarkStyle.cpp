#include "res/DarkStyle.h"

#include "res/DarkPalette.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QStyledItemDelegate>
#include <QTextCharFormat>
#include <QTextEdit>
#include <QTimer>

namespace {

constexpr double disabledOpacity = 0.35;

/// Weekends are red by default, and red is an alarm.
void calmWeekends(QCalendarWidget& calendar)
{
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        calendar.setWeekdayTextFormat(day, {});
}

/// In a main window the rows are laid out before the sheet has given them their height.
void layOutOnceMore(QAbstractItemView& view)
{
    QTimer::singleShot(0, &view, [&view] { view.doItemsLayout(); });
}

/// The delegate that a combo box makes for its list knows nothing of sheets: the rows would be too low for a
/// finger.
void letSheetStyleRows(QComboBox& combo)
{
    if (!qobject_cast<QStyledItemDelegate*>(combo.itemDelegate()))
        combo.setItemDelegate(new QStyledItemDelegate(&combo));
}

/// The sheet gives hints in empty fields the colour of what is typed there.
void dimHint(QWidget& field)
{
    QTimer::singleShot(0, &field, [&field] {
        QPalette palette = field.palette();
        palette.setColor(QPalette::PlaceholderText, darkPalette().color(QPalette::PlaceholderText));
        field.setPalette(palette);
    });
}

bool hasHint(const QWidget* widget)
{
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QTextEdit*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget);
}

} // namespace

DarkStyle::DarkStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

QPalette DarkStyle::standardPalette() const
{
    return darkPalette();
}

QPixmap DarkStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                       const QStyleOption* option) const
{
    if (mode != QIcon::Disabled)
        return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
    QPixmap dimmed(pixmap.size());
    dimmed.setDevicePixelRatio(pixmap.devicePixelRatio());
    dimmed.fill(Qt::transparent);
    QPainter painter(&dimmed);
    painter.setOpacity(disabledOpacity);
    painter.drawPixmap(0, 0, pixmap);
    return dimmed;
}

void DarkStyle::polish(QPalette& palette)
{
    palette = darkPalette();
}

void DarkStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (auto* calendar = qobject_cast<QCalendarWidget*>(widget))
        calmWeekends(*calendar);
    else if (auto* view = qobject_cast<QAbstractItemView*>(widget))
        layOutOnceMore(*view);
    else if (auto* combo = qobject_cast<QComboBox*>(widget))
        letSheetStyleRows(*combo);
    else if (hasHint(widget))
        dimHint(*widget);
}
