#pragma once

class TBeat;

/// Is told what happens in an examination, on the thread that owns the recorder. An observer may leave while
/// it is told, but not destroy the recorder.
class TRecorderObserver
{
public:
    virtual ~TRecorderObserver() = default;

    /// Samples have arrived and been analysed.
    virtual void signalUpdated() = 0;
    /// A valid beat; its times count from the start of the study while one runs, else from the start of the
    /// acquisition.
    virtual void beatFound(const TBeat& beat) = 0;
    virtual void studyStarted() = 0;
    /// A stage has ended, by time, by command or with the study; what belongs to it is in the study.
    virtual void stageChanged() = 0;
    virtual void studyFinished() = 0;
    /// Something failed; the recording goes on. UTF-8, valid during the call. The recorder's own texts are
    /// translated in the context "Failure".
    virtual void failed(const char* text) = 0;
};
