#pragma once

#include "acq/TAcqListener.h"
#include "acq/TQtAcqDriver.h"
#include "analysis/beats/TBeat.h"
#include "analysis/detection/TBeatChain.h"
#include "recorder/TDeviceWatch.h"
#include "recorder/TEquipmentLink.h"
#include "recorder/TExecutedStages.h"
#include "recorder/TMonitorChain.h"
#include "recorder/TRecorderObserver.h"
#include "recorder/TStMeter.h"
#include "recorder/TStageRun.h"
#include "recorder/TStressTrends.h"
#include "recorder/TStudyWriter.h"

#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class TAcqDevice;
class TProtocol;

/// An examination: acquires, analyses and shows from `startAcquisition` on, and between `startStudy` and
/// `finishStudy` records the study, leads through the stages of its protocol, drives the equipment and fills
/// the results. Everything happens on the thread that owns it, in the driver's data call. Nothing of it needs
/// a window.
class TStudyRecorder : private TAcqListener, private TBeatListener
{
public:
    /// What observers hear when the link to the device is lost.
    static constexpr char linkFailureText[] =
        QT_TRANSLATE_NOOP("Failure", "Communication with ECG acquiring device failed.");

    /// All are borrowed. `protocol`, with stages or a ramp, and `equipment` may be null. The study has its
    /// files open for recording, with the channels and the rate of the device.
    TStudyRecorder(TAcqDevice* device, Study* study, const TProtocol* protocol, TEquipment* equipment);
    /// Ends the acquisition and stops the equipment; a study that runs is left as it is. Not from inside a
    /// call to an observer.
    ~TStudyRecorder() override;

    /// Where the study's document is written: at the start, at each change of stage, with each pressure and
    /// event, and at the end. Borrowed; null for nowhere.
    void setStore(StudyDatabase* store) { m_writer.setStore(store); }
    /// Observers are borrowed and told in the order of their coming.
    void addObserver(TRecorderObserver* observer);
    void removeObserver(TRecorderObserver* observer);

    void startAcquisition() { m_driver.start(); }
    void stopAcquisition() { m_driver.stop(); }
    TQtAcqDriver& driver() { return m_driver; }

    /// Begins the study; `studyId` is its time "yyyyMMddHHmmss". Once.
    void startStudy(const char* studyId);
    /// Ends it; the acquisition goes on. Nothing happens unless it runs.
    void finishStudy();
    bool isRecording() const { return m_state == Running; }

    /// Ends the present stage early. Nothing happens on the last one.
    void nextStage();
    /// Goes to the first recovery stage that is to come; nothing happens without one.
    void goToRecovery();
    /// Pressures in mmHg, `time` in seconds of the study. Nothing happens unless it runs and all are finite.
    /// The study's document is written at once: nobody types it in again after a power cut.
    void addBloodPressure(double time, double systolic, double diastolic);
    /// Something to note, at a time and for a duration in seconds of the study, both finite; `text` is UTF-8.
    /// Nothing happens unless the study runs. Written at once as well.
    void addEvent(double time, double duration, const QByteArray& text);
    /// Whether all samples and beats of the study so far are in its files.
    bool isSignalWritten() const { return m_writer.isSignalWritten(); }

    /// Builds the display filters anew and returns the signal to show.
    TSignal* setFilters(bool notch, bool muscle, bool baseline);
    TSignal* monitorSignal() const { return m_monitor.signal(); }
    /// Sample of the raw signal at the instant of a sample of `monitorSignal`.
    int rawIndexOf(int monitorSample) const { return m_monitor.rawIndexOf(monitorSample); }
    TInt16Signal& rawSignal() { return *m_rawSignal; }

    // What the device says; see TDeviceWatch.
    bool isAnyElectrodeOff() { return m_device.isAnyElectrodeOff(); }
    bool isChannelSaturated(int channel) { return m_device.isChannelSaturated(channel); }
    bool isAnyChannelSaturated() { return m_device.isAnyChannelSaturated(); }
    bool batteryIsLow() { return m_device.batteryIsLow(); }
    void setLowBatteryLevel(double volts) { m_device.setLowBatteryLevel(volts); }

    /// Seconds since the start of the study.
    double duration() const;
    /// Where the study stands in its protocol, and what of it was carried out so far stands in the study.
    const TStageRun& stageRun() const { return m_stages; }
    /// Beats per minute, smoothed; 0 if unknown.
    double smoothedBpm() const { return m_trends.smoothedBpm(); }
    TAverageBeat& averageBeat() { return m_chain.averageBeat(); }
    const TStPoints& stPoints(int channel) const { return m_stMeter.points(channel); }
    void setStMethod(TStMeter::TMethod method) { m_stMeter.setMethod(method); }
    /// The last valid beat that observers were told, in the time it was told in; none before the first.
    const std::optional<TBeat>& lastBeat() const { return m_lastBeat; }
    /// Sample indices, in the raw signal, of the pacemaker's pulses since the start of the acquisition.
    const std::vector<int>& pacemakerPulses() const { return m_pacemakerPulses; }

private:
    enum TState
    {
        Idle,
        Running,
        Finished
    };

    void dataCallback(TAcqDriver* driver) override;
    void pacemakerCallback(TAcqDriver* driver, int sampleOffset) override;
    void errorCallback(TAcqDriver* driver, const char* message) override;
    void communicationFailedCallback(TAcqDriver* driver) override;
    void beatFound(const TBeat& beat) override;

    void recordBeat(const TBeat& beat);
    void updateTrends(const TBeat& beat);
    void measureSt(const TBeat& beat);
    void followProtocol();
    void startProtocol();
    void sendFirstLoad();
    void changeStage(int index);
    bool isStaged() const { return m_staged != nullptr; }
    TProtocolType protocolType() const;
    TProtocolStage presentLoad() const;
    double patientWeight() const;
    void tellBeat(const TBeat& beat);
    void saveDocument();
    void tellWriteFailure();
    void tell(const std::function<void(TRecorderObserver&)>& call);
    void tellFailure(const char* text);

    Study* m_study;
    const TStressProtocol* m_staged;
    const TRampProtocol* m_ramp;
    std::vector<TRecorderObserver*> m_observers;

    std::unique_ptr<TInt16Signal> m_rawSignal;
    TMonitorChain m_monitor;
    TBeatChain m_chain;
    TStMeter m_stMeter;

    TState m_state = Idle;
    /// First sample of the study in the raw signal.
    int m_startOffset = 0;
    TStageRun m_stages;
    TStressTrends m_trends;
    TExecutedStages m_executed;
    TStudyWriter m_writer;
    TEquipmentLink m_equipment;
    std::vector<int> m_pacemakerPulses;
    std::optional<TBeat> m_lastBeat;

    /// Behind the rest, so that nothing arrives while the rest goes.
    TQtAcqDriver m_driver;
    TDeviceWatch m_device;
};
