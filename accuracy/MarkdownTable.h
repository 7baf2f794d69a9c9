#pragma once

#include <QByteArray>
#include <QList>

namespace accuracy {

/// A table in Markdown whose first column is text and whose others are numbers.
class TMarkdownTable
{
public:
    explicit TMarkdownTable(const QList<QByteArray>& header);

    void addRow(const QList<QByteArray>& cells);
    const QByteArray& text() const { return m_text; }

private:
    QByteArray m_text;
};

/// With so many digits behind the point; "-" for what is not a number.
QByteArray numberCell(double value, int digits);
/// A ratio in percent, without the sign.
QByteArray percentCell(double ratio);

} // namespace accuracy
