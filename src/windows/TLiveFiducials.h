#pragma once

#include "display/TFiducialSource.h"

class Study;
class TStudyRecorder;

/// Where the recorder measures the ST segment, for the inset of the live displays.
class TLiveFiducials : public TFiducialSource
{
public:
    /// Both are borrowed and outlive this.
    TLiveFiducials(const TStudyRecorder& recorder, Study& study) : m_recorder(recorder), m_study(study) {}

    bool fiducials(int channel, TFiducials* found) override;

private:
    const TStudyRecorder& m_recorder;
    Study& m_study;
};
