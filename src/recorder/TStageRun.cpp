#include "recorder/TStageRun.h"

#include "analysis/signals/Truncation.h"

void TStageRun::start(const TStressProtocol& protocol)
{
    *this = TStageRun();
    m_protocol = protocol;
}

bool TStageRun::isOver(double time) const
{
    return hasStages() && !isLast() && elapsed(time) >= stage().duration();
}

std::optional<int> TStageRun::recoveryStage() const
{
    if (!hasStages() || phase() == TStagePhase::Recovery)
        return std::nullopt;
    for (int i = m_stageIndex + 1; i < stageCount(); ++i) {
        if (m_protocol.stage(i).phase() == TStagePhase::Recovery)
            return i;
    }
    return std::nullopt;
}

void TStageRun::moveTo(int index, double time)
{
    if (index < 0 || index >= stageCount())
        return;
    const TStagePhase before = phase();
    m_stageIndex = index;
    m_stageStart = velantor::truncated<int>(time);
    if (phase() == before) {
        ++m_phaseOrdinal;
    } else {
        m_phaseStart = m_stageStart;
        m_phaseOrdinal = 1;
    }
}
