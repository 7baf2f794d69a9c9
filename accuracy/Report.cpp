#include "accuracy/Report.h"

#include "accuracy/MarkdownTable.h"

#include <cmath>

namespace accuracy {

namespace {

QList<QByteArray> beatCells(const QByteArray& name, const TBeatCounts& counts)
{
    return {name,
            QByteArray::number(counts.beats()),
            QByteArray::number(counts.truePositives),
            QByteArray::number(counts.falseNegatives),
            QByteArray::number(counts.falsePositives),
            percentCell(counts.sensitivity()),
            percentCell(counts.positivePredictivity())};
}

/// Mean, deviation and, if there are any, the share that was missed.
QByteArray markCell(const TMarkStatistics& statistics)
{
    if (statistics.reference() == 0)
        return "-";
    QByteArray cell =
        numberCell(statistics.mean(), 1) + " \xc2\xb1 " + numberCell(statistics.standardDeviation(), 1);
    if (statistics.found() < statistics.reference())
        cell += " (" + percentCell(statistics.detectionRate()) + " %)";
    return cell;
}

QList<QByteArray> markCells(const QByteArray& name, const TMarkScores& scores)
{
    QList<QByteArray> cells{name};
    for (const TMarkStatistics& statistics : scores)
        cells.append(markCell(statistics));
    return cells;
}

QByteArray grossName(const QByteArray& set)
{
    return "**" + set + "**";
}

} // namespace

void TReport::addBeats(const QByteArray& set, const QByteArray& record, const TBeatCounts& counts)
{
    m_beats[set].push_back({record, counts});
}

void TReport::addMarks(const QByteArray& set, const QByteArray& record, const TMarkScores& scores)
{
    m_marks[set].push_back({record, scores});
}

QByteArray TReport::toMarkdown() const
{
    QByteArray text;
    if (!m_beats.empty())
        text += "## Beats\n\nFound within 150 ms.\n\n" + beatTable();
    for (const auto& [set, lines] : m_marks)
        text += (text.isEmpty() ? "" : "\n") + markTable(set, lines);
    return text;
}

QByteArray TReport::beatTable() const
{
    TMarkdownTable table({"record", "beats", "TP", "FN", "FP", "Se %", "+P %"});
    for (const auto& [set, lines] : m_beats) {
        TBeatCounts gross;
        for (const auto& line : lines) {
            table.addRow(beatCells(set + '/' + line.record, line.score));
            gross += line.score;
        }
        table.addRow(beatCells(grossName(set), gross));
    }
    return table.text();
}

/// Mean over the records of the deviation within each, as published comparisons give it.
double TReport::meanDeviation(const std::vector<TLine<TMarkScores>>& lines, std::size_t mark)
{
    double sum = 0.0;
    int count = 0;
    for (const auto& line : lines) {
        const double deviation = line.score[mark].standardDeviation();
        if (std::isfinite(deviation)) {
            sum += deviation;
            ++count;
        }
    }
    return sum / count;
}

QByteArray TReport::markTable(const QByteArray& set, const std::vector<TLine<TMarkScores>>& lines) const
{
    QList<QByteArray> header{"record"};
    for (int mark = 0; mark < markCount; ++mark)
        header.append(markName(mark));
    TMarkdownTable records(header);
    TMarkScores gross;
    for (const auto& line : lines) {
        records.addRow(markCells(set + '/' + line.record, line.score));
        gross += line.score;
    }

    TMarkdownTable totals(
        {set, "reference", "found", "found %", "extra", "mean ms", "SD ms", "SD in a record ms"});
    for (std::size_t mark = 0; mark < markCount; ++mark) {
        const TMarkStatistics& all = gross[mark];
        totals.addRow({markName(static_cast<int>(mark)), QByteArray::number(all.reference()),
                       QByteArray::number(all.found()), percentCell(all.detectionRate()),
                       QByteArray::number(all.extra()), numberCell(all.mean(), 1),
                       numberCell(all.standardDeviation(), 1), numberCell(meanDeviation(lines, mark), 1)});
    }
    return "## Waves of " + set + "\n\nMean and standard deviation of the error in ms.\n\n" + records.text() +
           '\n' + totals.text();
}

} // namespace accuracy
