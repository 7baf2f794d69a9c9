#pragma once

#include "accuracy/BeatScore.h"
#include "accuracy/MarkScore.h"

#include <QByteArray>

#include <map>
#include <vector>

namespace accuracy {

/// The scores of many records as tables in Markdown: a line for each record, in the order of their coming,
/// and gross lines for each set of records.
class TReport
{
public:
    void addBeats(const QByteArray& set, const QByteArray& record, const TBeatCounts& counts);
    void addMarks(const QByteArray& set, const QByteArray& record, const TMarkScores& scores);

    bool isEmpty() const { return m_beats.empty() && m_marks.empty(); }
    /// UTF-8; percentages, milliseconds, "-" for what there is nothing of.
    QByteArray toMarkdown() const;

private:
    template <typename TScore> struct TLine
    {
        QByteArray record;
        TScore score;
    };
    template <typename TScore> using TSets = std::map<QByteArray, std::vector<TLine<TScore>>>;

    QByteArray beatTable() const;
    QByteArray markTable(const QByteArray& set, const std::vector<TLine<TMarkScores>>& lines) const;
    static double meanDeviation(const std::vector<TLine<TMarkScores>>& lines, std::size_t mark);

    TSets<TBeatCounts> m_beats;
    TSets<TMarkScores> m_marks;
};

} // namespace accuracy
