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

/// The beats of the channel of that lead; empty if there is none.
std::vector<TMarkedBeat> findLead(const TRecordFindings& findings, const QString& ending)
{
    const QByteArray name = canonicalLeadName(ending.toLatin1());
    const auto found = std::find(findings.leadNames.begin(), findings.leadNames.end(), name);
    if (found == findings.leadNames.end())
        return {};
    return findings.leads[static_cast<std::size_t>(found - findings.leadNames.begin())];
}

void scoreLeads(const TRecordPlace& record, const TLeadReferences& references,
                const TRecordFindings& findings, TReport& report)
{
    TMarkScores scores;
    for (std::size_t i = 0; i < references.leads.size(); ++i)
        scores +=
            scoreMarks(references.leads[i], {findLead(findings, references.endings[static_cast<int>(i)])});
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

} // namespace accuracy
