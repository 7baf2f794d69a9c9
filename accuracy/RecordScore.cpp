#include "accuracy/RecordScore.h"

#include "accuracy/References.h"
#include "wfdb/LeadNames.h"

#include <algorithm>

namespace accuracy {

namespace {

const QString beatEnding = QStringLiteral("atr");
const QString waveEnding = QStringLiteral("q1c");

/// One list for each of the endings that the record has.
struct TLeadReferences
{
    QStringList endings;
    std::vector<std::vector<TMarkedBeat>> leads;
};

TLeadReferences readLeads(const TRecordPlace& record, double frequency)
{
    TLeadReferences references;
    for (const QString& ending : leadEndings()) {
        if (!record.hasAnnotations(ending))
            continue;
        references.endings.append(ending);
        references.leads.push_back(readMarks(record.annotations(ending), frequency));
    }
    return references;
}

/// The place of the channel of that lead.
std::optional<std::size_t> findLead(const std::vector<QByteArray>& names, const QString& ending)
{
    const auto found = std::find(names.begin(), names.end(), canonicalLeadName(ending.toLatin1()));
    return found != names.end() ? std::optional(static_cast<std::size_t>(found - names.begin()))
                                : std::nullopt;
}

void scoreLeads(const TRecordPlace& record, const TLeadReferences& references,
                const TRecordFindings& findings, TReport& report)
{
    TMarkScores scores;
    for (std::size_t i = 0; i < references.leads.size(); ++i) {
        const auto lead = findLead(findings.leadNames, references.endings[static_cast<int>(i)]);
        const std::vector<TMarkedBeat> none;
        scores += scoreMarks(references.leads[i], {lead ? findings.leads[*lead] : none});
    }
    report.addMarks(record.set, record.name, scores);
}

} // namespace

void scoreRecord(const TRecordPlace& record, const TRecordFindings& findings, TReport& report)
{
    const double frequency = record.frequency();
    const TLeadReferences references = readLeads(record, frequency);
    if (record.hasAnnotations(beatEnding)) {
        const TBeatReference beats = readBeats(record.annotations(beatEnding), frequency);
        report.addBeats(record.set, record.name, scoreBeats(beats, findings.beats));
    } else if (!references.leads.empty()) {
        report.addBeats(record.set, record.name, scoreBeats(mergeLeads(references.leads), findings.beats));
    }
    if (record.hasAnnotations(waveEnding)) {
        const auto waves = readMarks(record.annotations(waveEnding), frequency);
        report.addMarks(record.set, record.name, scoreMarks(waves, findings.leads));
    }
    if (!references.leads.empty())
        scoreLeads(record, references, findings, report);
}

namespace {

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The medians of the marks of those beats that were averaged, relative to their R in the average.
TMarkedBeat medianBeat(const std::vector<TMarkedBeat>& reference, const std::vector<double>& averaged)
{
    std::vector<double> r;
    for (const TMarkedBeat& beat : reference)
        r.push_back(beat.r);
    const std::vector<int> places = matchBeats(r, averaged);
    TMarkedBeat result;
    for (int mark = 0; mark < markCount; ++mark) {
        std::vector<double> distances;
        for (std::size_t i = 0; i < reference.size(); ++i) {
            if (places[i] >= 0 && reference[i].marks[mark])
                distances.push_back(*reference[i].marks[mark] - averaged[places[i]]);
        }
        if (!distances.empty())
            result.marks[mark] = medianOf(distances);
    }
    return result;
}

} // namespace

std::optional<double> endOfMarkedWaves(const TRecordPlace& record)
{
    const double frequency = record.frequency();
    std::vector<std::vector<TMarkedBeat>> lists = readLeads(record, frequency).leads;
    if (record.hasAnnotations(waveEnding))
        lists.push_back(readMarks(record.annotations(waveEnding), frequency));
    std::optional<double> end;
    for (const std::vector<TMarkedBeat>& list : lists) {
        if (!list.empty())
            end = std::max(end.value_or(0.0), list.back().r + matchWindow);
    }
    return end;
}

void scoreAverage(const TRecordPlace& record, const TAverageFindings& findings, TReport& report)
{
    const double frequency = record.frequency();
    const QByteArray set = record.set + ", average beat";
    if (record.hasAnnotations(waveEnding)) {
        const auto waves = readMarks(record.annotations(waveEnding), frequency);
        std::vector<std::vector<TMarkedBeat>> leads;
        for (const TMarkedBeat& lead : findings.leads)
            leads.push_back({lead});
        report.addMarks(set, record.name, scoreMarks({medianBeat(waves, findings.beats)}, leads));
    }
    const TLeadReferences references = readLeads(record, frequency);
    if (references.leads.empty())
        return;
    TMarkScores scores;
    for (std::size_t i = 0; i < references.leads.size(); ++i) {
        const auto lead = findLead(findings.leadNames, references.endings[static_cast<int>(i)]);
        if (lead)
            scores +=
                scoreMarks({medianBeat(references.leads[i], findings.beats)}, {{findings.leads[*lead]}});
    }
    report.addMarks(set, record.name, scores);
}

} // namespace accuracy
