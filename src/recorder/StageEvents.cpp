#include "recorder/StageEvents.h"

#include "analysis/signals/Truncation.h"
#include "base/Text.h"
#include "recorder/TStageRun.h"
#include "study/Study.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr double eventSeconds = 11.0;

QString tiltLabel(TStagePhase phase)
{
    switch (phase) {
    case TStagePhase::Rest:
        return QCoreApplication::translate("StressMonitorWindow", "Basal");
    case TStagePhase::Recovery:
        return QCoreApplication::translate("StressMonitorWindow", "Control");
    case TStagePhase::Exercise:
        break;
    }
    return {};
}

/// How many stages of its phase stand in a row up to the last one.
int ordinalOfLast(const TStressProtocol& executed)
{
    const int last = executed.stageCount() - 1;
    int ordinal = 1;
    while (ordinal <= last && executed.stage(last - ordinal).phase() == executed.stage(last).phase())
        ++ordinal;
    return ordinal;
}

QString tiltText(TStagePhase phase, double minutes)
{
    if (phase == TStagePhase::Rest)
        return stageLabel(TProtocolType::TiltTest, phase);
    return QStringLiteral("%1 %2 min.")
        .arg(stageLabel(TProtocolType::TiltTest, TStagePhase::Recovery))
        .arg(velantor::truncated<int>(minutes));
}

QString eventText(const TStressProtocol& executed, const TStageRun& run, double now)
{
    const TStagePhase phase = executed.stage(executed.stageCount() - 1).phase();
    if (executed.type() == TProtocolType::TiltTest)
        return tiltText(phase, (now - run.phaseStart()) / 60.0);
    return QStringLiteral("%1 %2").arg(stageLabel(executed.type(), phase)).arg(ordinalOfLast(executed));
}

} // namespace

QString stageLabel(TProtocolType type, TStagePhase phase)
{
    if (type == TProtocolType::TiltTest)
        return tiltLabel(phase);
    switch (phase) {
    case TStagePhase::Rest:
        return QCoreApplication::translate("StressMonitorWindow", "Rest");
    case TStagePhase::Exercise:
        return QCoreApplication::translate("StressMonitorWindow", "Exercise");
    case TStagePhase::Recovery:
        return QCoreApplication::translate("StressMonitorWindow", "Recovery");
    }
    return {};
}

void addStageEvent(Study& study, const TStageRun& run, double now)
{
    const TStressProtocol* const executed = study.protocol();
    if (!executed || executed->stageCount() == 0 || executed->type() == TProtocolType::Ecg)
        return;
    TStudyEvent& event = study.events().add();
    event.position = std::max(now - eventSeconds, 0.0);
    event.duration = eventSeconds;
    event.print = executed->type() != TProtocolType::TiltTest;
    event.setDescription(velantor::toText(eventText(*executed, run, now)));
}
