#include "recorder/TExecutedStages.h"

#include "recorder/TStressTrends.h"
#include "study/Study.h"
#include "study/TStressProtocol.h"

#include <algorithm>
#include <memory>

namespace {

/// Seconds; a shorter stage belongs to the one before.
constexpr double shortestStage = 5.0;

} // namespace

void TExecutedStages::start(const TStressProtocol& planned)
{
    m_study.setProtocol(std::make_unique<TStressProtocol>(planned.name(), planned.type()));
    m_ends.clear();
}

void TExecutedStages::close(const TProtocolStage& stage, double elapsed, double now)
{
    TStressProtocol& executed = *m_study.protocol();
    const int last = executed.stageCount() - 1;
    if (elapsed < shortestStage && last >= 0) {
        executed.stage(last).setDuration(executed.stage(last).duration() + elapsed);
        m_trends.mergeStage(last);
        m_ends.back() = now;
        return;
    }
    TProtocolStage& closed = executed.addStage(stage.phase(), elapsed);
    closed = stage;
    closed.setDuration(elapsed);
    m_trends.closeStage(last + 1, closed);
    m_ends.push_back(now);
}

int TExecutedStages::stageAt(double time) const
{
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), time);
    return end == m_ends.end() ? -1 : static_cast<int>(end - m_ends.begin());
}
