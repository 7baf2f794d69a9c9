#include "windows/ElidedLabel.h"

#include <QPainter>
#include <QStyle>
#include <QTextDocument>

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString& text)
{
    setText(text);
    // Tool tips take what looks like markup for markup.
    setToolTip(Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped())
                                         : text);
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const
{
    return sizeOf(text());
}

QSize ElidedLabel::minimumSizeHint() const
{
    return sizeOf(QString(QChar(0x2026)));
}

QSize ElidedLabel::sizeOf(const QString& text) const
{
    ensurePolished();
    const QSize around = size() - contentsRect().size();
    return QSize(fontMetrics().horizontalAdvance(text) + 1, fontMetrics().height()) + around;
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                          shownText(), foregroundRole());
}
