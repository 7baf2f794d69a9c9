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

/// R of the beats whose marks make the reference: those that were averaged, or if there are none all.
std::vector<double> referenceTimes(const std::vector<double>& marked, const std::vector<double>& averaged)
{
    return averaged.empty() ? marked : averaged;
}

/// The medians of the marks of those beats that were averaged, relative to their R in the average.
TMarkedBeat medianBeat(const std::vector<TMarkedBeat>& reference, const std::vector<double>& averaged)
{
    std::vector<double> r;
    for (const TMarkedBeat& beat : reference)
        r.push_back(beat.r);
    const std::vector<double> times = referenceTimes(r, averaged);
    const std::vector<int> places = matchBeats(r, times);
    TMarkedBeat result;
    for (int mark = 0; mark < markCount; ++mark) {
        std::vector<double> distances;
        for (std::size_t i = 0; i < reference.size(); ++i) {
            if (places[i] >= 0 && reference[i].marks[mark])
                distances.push_back(*reference[i].marks[mark] - times[places[i]]);
        }
        if (!distances.empty())
            result.marks[mark] = medianOf(distances);
    }
    return result;
}

/// One way to measure the average, and the marks that it gives.
struct TMeasurement
{
    const char* name;
    std::vector<TMarkedBeat> TAverageFindings::*leads;
    std::vector<TMark> marks;
};

const TMeasurement measurements[]{
    {"average beat",
     &TAverageFindings::leads,
     {POnset, PPeak, POffset, QrsOnset, QrsOffset, TOnset, TPeak, TOffset}},
    {"review markers", &TAverageFindings::reviewLeads, {POnset, POffset, QrsOnset, QrsOffset, TOffset}},
};

TMarkedBeat withMarks(const TMarkedBeat& beat, const std::vector<TMark>& marks)
{
    TMarkedBeat result;
    result.r = beat.r;
    for (const TMark mark : marks)
        result.marks[mark] = beat.marks[mark];
    return result;
}

/// The reference of one or all leads and what was found there.
TMarkScores scoreMedians(const std::vector<TMarkedBeat>& reference, const std::vector<TMarkedBeat>& found,
                         const TAverageFindings& findings, const TMeasurement& measurement)
{
    std::vector<std::vector<TMarkedBeat>> leads;
    for (const TMarkedBeat& lead : found)
        leads.push_back({lead});
    return scoreMarks({withMarks(medianBeat(reference, findings.beats), measurement.marks)}, leads);
}

TMarkScores scoreLeadMedians(const TLeadReferences& references, const TAverageFindings& findings,
                             const TMeasurement& measurement)
{
    const std::vector<TMarkedBeat>& beats = findings.*measurement.leads;
    TMarkScores scores;
    for (std::size_t i = 0; i < references.leads.size(); ++i) {
        const auto lead = findLead(findings.leadNames, references.endings[static_cast<int>(i)]);
        std::vector<TMarkedBeat> found;
        if (lead && *lead < beats.size())
            found.push_back(beats[*lead]);
        scores += scoreMedians(references.leads[i], found, findings, measurement);
    }
    return scores;
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
    const TLeadReferences references = readLeads(record, frequency);
    for (const TMeasurement& measurement : measurements) {
        const QByteArray set = record.set + ", " + measurement.name;
        if (record.hasAnnotations(waveEnding)) {
            const auto waves = readMarks(record.annotations(waveEnding), frequency);
            report.addMarks(set, record.name,
                            scoreMedians(waves, findings.*measurement.leads, findings, measurement));
        }
        if (!references.leads.empty())
            report.addMarks(set, record.name, scoreLeadMedians(references, findings, measurement));
    }
}

} // namespace accuracy
