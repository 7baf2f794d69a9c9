#pragma once

#include "acq/TAcqListener.h"
#include "cli/RecordOptions.h"
#include "cli/TEquipmentTexts.h"
#include "cli/TExaminationOutput.h"
#include "cli/TLinkWatch.h"
#include "cli/TProgressLine.h"
#include "cli/TStartedDevice.h"
#include "equipment/TEquipment.h"
#include "platform/InterruptSignal.h"
#include "recorder/TStudyRecorder.h"
#include "study/TStressProtocol.h"

#include <QElapsedTimer>
#include <QEventLoop>

#include <optional>

class StudyDatabase;

/// A whole examination without a window: waits for the device, makes the study, records it, does at their
/// times what an operator would do, tells all of it, and ends with the signal or an interruption.
class TConsoleExamination : private TRecorderObserver, private TAcqListener
{
public:
    /// `database` and `output` are borrowed. `device` was not started.
    TConsoleExamination(const TRecordOptions& options, const TStressProtocol& protocol,
                        std::unique_ptr<TAcqDevice> device, StudyDatabase& database, TJsonOutput& output);
    ~TConsoleExamination() override;

    /// Returns when the study is finished, saved and closed. Throws TError if the device sends nothing, in
    /// which case there is no study, or if part of the study could not be kept or told.
    void run();

private:
    struct TBegunStage
    {
        int index;
        double time; ///< seconds of the study
    };

    // Of the recorder.
    void signalUpdated() override;
    void beatFound(const TBeat& beat) override;
    void studyStarted() override;
    void stageChanged() override;
    void studyFinished() override {}
    void failed(const char* text) override;

    // Of the driver: whether it has given up.
    void dataCallback(TAcqDriver*) override {}
    void pacemakerCallback(TAcqDriver*, int) override {}
    void errorCallback(TAcqDriver* driver, const char* message) override;
    void communicationFailedCallback(TAcqDriver*) override {}

    void waitForDevice();
    void createStudy();
    void startRecorder();
    void record();
    void interrupt();
    void end();
    void close();
    QByteArray keepStudy(bool isSignalWritten);

    void doDueActions();
    void perform(const TTimedAction& action);
    void tellStage();
    void tellEquipmentTexts();
    bool isOver() const;
    void lookAround();
    QString progress() const;

    const TRecordOptions m_options;
    const TStressProtocol m_protocol;
    StudyDatabase& m_database;
    TExaminationOutput m_output;
    TProgressLine m_progress;
    QEventLoop m_loop;
    // Before the device and the equipment, which may take their time to come and to go.
    InterruptSignal m_interruptSignal;
    TEquipmentTexts m_equipmentTexts;
    TStartedDevice m_device;
    TLinkWatch m_link;
    std::unique_ptr<TEquipment> m_equipment;
    StudyInfo m_info;
    Study* m_study = nullptr;
    std::unique_ptr<TStudyRecorder> m_recorder;

    QElapsedTimer m_clock;
    qint64 m_lastLook = 0;
    std::size_t m_nextAction = 0;
    QByteArray m_driverError;
    std::optional<TBegunStage> m_begunStage;
    bool m_ended = false;
};
