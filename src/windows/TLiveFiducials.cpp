#include "windows/TLiveFiducials.h"

#include "recorder/TStudyRecorder.h"
#include "study/Study.h"

bool TLiveFiducials::fiducials(int channel, TFiducials* found)
{
    if (channel < 0 || channel >= velantor::maxChannels)
        return false;
    const TStPoints& points = m_recorder.stPoints(channel);
    const TResultTrend& levels =
        *m_study.results().trend(TStudyResults::channelName("STLevelTrend(%i)", channel));
    if (levels.count() == 0 || points.st == 0)
        return false;
    found->indices = {points.base, points.j, points.st};
    found->stLevel = levels.valueAtIndex(levels.count() - 1);
    return true;
}
