#pragma once

#include "display/TSignalSaturation.h"

class TStudyRecorder;

/// Saturation of the live signal. It is looked for in the samples as the device sent them: behind the filters
/// a saturated stretch is no longer at the end of the range.
class TLiveSaturation : public TSaturationSource
{
public:
    /// Borrowed; outlives this.
    explicit TLiveSaturation(TStudyRecorder& recorder);

    /// In samples of the signal that the recorder gives to the displays.
    bool findStretch(int channel, int from, int to, int* first, int* last) override;
    /// In counts.
    int limit() const { return m_raw.limit(); }

private:
    TStudyRecorder& m_recorder;
    TSignalSaturation m_raw;
};
