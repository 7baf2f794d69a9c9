#include "display/TLeadLabels.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"
#include "base/Text.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int labelSize = 12;
constexpr double labelLeft = 4.0;

} // namespace

QFont displayFont(const PageScale& scale, int size)
{
    QFont font(QStringLiteral("Helvetica"), size, QFont::Bold);
    font.setPointSizeF(size * scale.ratio);
    return font;
}

QString TLeadLabels::text(const TSignal& signal, int channel, bool inverted)
{
    const TChannel* const lead = signal.channel(channel);
    if (!lead || lead->name().isEmpty())
        return QString();
    const QString name = velantor::fromText(lead->name());
    return inverted ? QLatin1Char('-') + name : name;
}

void TLeadLabels::setFont(const PageScale& scale)
{
    if (m_fontRatio == scale.ratio)
        return;
    m_font = displayFont(scale, labelSize);
    m_fontRatio = scale.ratio;
    m_height = QFontMetrics(m_font).height();
    m_ascent = QFontMetrics(m_font).ascent();
    m_texts.fill(QStaticText());
}

void TLeadLabels::paint(QPainter& painter, const PageScale& scale, const TSignal& signal,
                        const TLeadRows& rows, const QColor& color)
{
    setFont(scale);
    painter.setFont(m_font);
    painter.setPen(color);
    const int channels = signal.channelCount();
    const double rowHeight = double(scale.height) / rows.visibleCount(channels);
    rows.forEach(channels, [&](int row, int channel, bool inverted) {
        QStaticText& label = m_texts[channel];
        const QString wanted = text(signal, channel, inverted);
        if (label.text() != wanted) {
            label = QStaticText(wanted);
            label.setTextFormat(Qt::PlainText);
        }
        // The base line stands a font's height below the top of the row.
        const int top = velantor::truncated<int>(row * rowHeight) + m_height - m_ascent;
        if (!wanted.isEmpty())
            painter.drawStaticText(scale.px(labelLeft), top, label);
    });
}
