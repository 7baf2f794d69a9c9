#include "accuracy/MarkdownTable.h"

#include <cmath>

namespace accuracy {

TMarkdownTable::TMarkdownTable(const QList<QByteArray>& header)
{
    addRow(header);
    QList<QByteArray> alignment{"---"};
    for (int i = 1; i < header.size(); ++i)
        alignment.append("--:");
    addRow(alignment);
}

void TMarkdownTable::addRow(const QList<QByteArray>& cells)
{
    m_text += "| " + cells.join(" | ") + " |\n";
}

QByteArray numberCell(double value, int digits)
{
    return std::isfinite(value) ? QByteArray::number(value, 'f', digits) : QByteArray("-");
}

QByteArray percentCell(double ratio)
{
    constexpr double percent = 100.0;
    return numberCell(ratio * percent, 2);
}

} // namespace accuracy
