#pragma once

#include <vector>

class Study;
class TProtocolStage;
class TStressProtocol;
class TStressTrends;

/// What is carried out of a protocol: it grows stage by stage in the study's own copy, with the values of
/// each stage in its results. Times are seconds from the start of the study.
class TExecutedStages
{
public:
    /// Both are borrowed.
    TExecutedStages(Study& study, TStressTrends& trends) : m_study(study), m_trends(trends) {}

    /// Gives the study a copy of the protocol without stages.
    void start(const TStressProtocol& planned);
    /// A stage has ended at `now` after `elapsed` seconds. One that was too short belongs to the one before.
    void close(const TProtocolStage& stage, double elapsed, double now);
    /// The ended stage that holds a time; -1 if it lies in the one that runs.
    int stageAt(double time) const;

private:
    Study& m_study;
    TStressTrends& m_trends;
    /// When the stages that the study holds ended.
    std::vector<double> m_ends;
};
