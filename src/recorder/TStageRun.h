#pragma once

#include "study/TStressProtocol.h"

#include <optional>

/// Where an examination stands in its protocol. Times are seconds from the start of the study.
class TStageRun
{
public:
    /// Begins with the first stage at time 0. A protocol without stages has none.
    void start(const TStressProtocol& protocol);

    const TStressProtocol& protocol() const { return m_protocol; }
    int stageCount() const { return m_protocol.stageCount(); }
    int stageIndex() const { return m_stageIndex; }
    /// Only with stages.
    const TProtocolStage& stage() const { return m_protocol.stage(m_stageIndex); }
    bool hasStages() const { return stageCount() > 0; }
    bool isLast() const { return m_stageIndex + 1 >= stageCount(); }

    /// When the stage began, in whole seconds: its time counts from there, whatever was planned.
    int stageStart() const { return m_stageStart; }
    double elapsed(double time) const { return time - m_stageStart; }
    /// Whether the stage has lasted as long as planned and another one follows.
    bool isOver(double time) const;

    /// The first recovery stage after the present one; none if the present one is a recovery stage.
    std::optional<int> recoveryStage() const;

    /// Goes to another stage at `time`.
    void moveTo(int index, double time);

    // Stages of one phase in a row are numbered from 1.
    TStagePhase phase() const { return stage().phase(); }
    int phaseStart() const { return m_phaseStart; }
    int phaseOrdinal() const { return m_phaseOrdinal; }

private:
    TStressProtocol m_protocol;
    int m_stageIndex = 0;
    int m_stageStart = 0;
    int m_phaseStart = 0;
    int m_phaseOrdinal = 1;
};
