#pragma once

#include <QProxyStyle>

/// The ground that :/styles/dark.css is laid on, the same on every desktop: it takes care of what no sheet
/// can reach. To be set with QApplication::setStyle, before the sheet. Disabled icons are dimmed; without it
/// they would shine on a dark ground. Brings its palette along.
class DarkStyle : public QProxyStyle
{
    Q_OBJECT

public:
    DarkStyle();

    QPalette standardPalette() const override;
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                const QStyleOption* option) const override;
    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void polish(QWidget* widget) override;
};
