#include "recorder/TStudyRecorder.h"

#include "acq/TAcqDevice.h"
#include "analysis/signals/TChannel.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "study/TRampProtocol.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int rawBlockSize = 4096;
constexpr int rawCapacity = 81920;

std::unique_ptr<TInt16Signal> makeRawSignal(const TAcqDevice& device)
{
    auto signal = std::make_unique<TInt16Signal>(rawBlockSize, rawCapacity, device.channelCount(),
                                                 device.samplingRate());
    for (int channel = 0; channel < signal->channelCount(); ++channel)
        signal->channel(channel)->setName(device.channelName(channel));
    signal->setResolutionBits(device.resolutionBits());
    signal->setRange(device.rangeMin(), device.rangeMax());
    return signal;
}

template <typename Protocol> const Protocol* protocolOf(const TProtocol* protocol)
{
    return dynamic_cast<const Protocol*>(protocol);
}

bool hasLoad(const TProtocolStage& stage)
{
    const auto keys = {TProtocolStage::speedKey, TProtocolStage::inclineKey, TProtocolStage::workloadKey};
    return std::any_of(keys.begin(), keys.end(), [&](const char* key) { return stage.value(key) != 0.0; });
}

} // namespace

TStudyRecorder::TStudyRecorder(TAcqDevice* device, Study* study, const TProtocol* protocol,
                               TEquipment* equipment)
    : m_study(study), m_staged(protocolOf<TStressProtocol>(protocol)),
      m_ramp(protocolOf<TRampProtocol>(protocol)), m_rawSignal(makeRawSignal(*device)),
      m_monitor(*m_rawSignal), m_chain(*m_rawSignal, {}, this), m_executed(*study, m_trends),
      m_writer(*study, *m_rawSignal),
      m_equipment(equipment, [this] { tellFailure(TEquipmentLink::failureText); }),
      m_driver(device, m_rawSignal.get()), m_device(m_driver, *m_rawSignal)
{
    m_driver.addListener(this);
}

TStudyRecorder::~TStudyRecorder()
{
    m_driver.stop();
    // Someone may be on the device.
    m_equipment.stop();
}

void TStudyRecorder::addObserver(TRecorderObserver* observer)
{
    if (std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void TStudyRecorder::removeObserver(TRecorderObserver* observer)
{
    std::erase(m_observers, observer);
}

TSignal* TStudyRecorder::setFilters(bool notch, bool muscle, bool baseline)
{
    m_monitor.setFilters(notch, muscle, baseline);
    return m_monitor.signal();
}

double TStudyRecorder::duration() const
{
    return m_state == Idle ? 0.0 : m_rawSignal->timeOf(m_rawSignal->sampleCount() - m_startOffset);
}

void TStudyRecorder::startStudy(const char* studyId)
{
    if (m_state != Idle)
        return;
    m_study->setRecordingDateTime(studyId);
    startProtocol();
    m_startOffset = m_rawSignal->sampleCount();
    m_writer.start(m_startOffset);
    m_stMeter.start();
    m_trends.start(m_study->results(), protocolType(), patientWeight());
    m_state = Running;
    tell([](TRecorderObserver& observer) { observer.studyStarted(); });
    if (m_state != Running)
        return;
    m_equipment.start();
    sendFirstLoad();
    m_writer.save();
    tellWriteFailure();
}

void TStudyRecorder::startProtocol()
{
    if (!isStaged())
        return;
    m_stages.start(*m_staged);
    m_executed.start(*m_staged);
}

/// Equipment at rest needs no word.
void TStudyRecorder::sendFirstLoad()
{
    if (m_stages.hasStages() && hasLoad(m_stages.stage()))
        m_equipment.send(m_staged->type(), m_stages.stage());
}

void TStudyRecorder::finishStudy()
{
    if (m_state != Running)
        return;
    m_writer.appendSamples();
    m_state = Finished;
    if (m_stages.hasStages())
        changeStage(m_stages.stageCount());
    m_trends.finish();
    m_equipment.stop();
    m_writer.save();
    tellWriteFailure();
    tell([](TRecorderObserver& observer) { observer.studyFinished(); });
}

void TStudyRecorder::nextStage()
{
    if (m_state == Running && m_stages.hasStages() && !m_stages.isLast())
        changeStage(m_stages.stageIndex() + 1);
}

void TStudyRecorder::goToRecovery()
{
    if (m_state != Running)
        return;
    if (const std::optional<int> recovery = m_stages.recoveryStage())
        changeStage(*recovery);
}

/// Ends the present stage and goes to the one of that index; past the last one there is none to go to.
void TStudyRecorder::changeStage(int index)
{
    if (m_stages.stageIndex() == 0)
        averageBeat().keepReference();
    const double now = duration();
    m_executed.close(m_stages.stage(), m_stages.elapsed(now), now);
    m_stages.moveTo(index, now);
    tell([](TRecorderObserver& observer) { observer.stageChanged(); });
    if (m_state != Running)
        return;
    m_equipment.send(m_staged->type(), m_stages.stage());
    m_writer.save();
    tellWriteFailure();
}

void TStudyRecorder::addBloodPressure(double time, double systolic, double diastolic)
{
    const bool areNumbers = std::isfinite(time) && std::isfinite(systolic) && std::isfinite(diastolic);
    if (m_state != Running || !areNumbers)
        return;
    m_trends.addBloodPressure(time, systolic, diastolic, m_executed.stageAt(time));
    saveDocument();
}

void TStudyRecorder::addEvent(double time, double duration, const QByteArray& text)
{
    if (m_state != Running || !std::isfinite(time) || !std::isfinite(duration))
        return;
    TStudyEvent& event = m_study->events().add();
    event.position = time;
    event.duration = duration;
    event.setDescription(text);
    saveDocument();
}

void TStudyRecorder::dataCallback(TAcqDriver*)
{
    m_monitor.reduce();
    m_chain.run();
    m_monitor.filter();
    if (m_state == Running) {
        m_writer.appendSamples();
        tellWriteFailure();
    }
    // Whoever heard of a failure may have ended the study.
    if (m_state == Running)
        followProtocol();
    tell([](TRecorderObserver& observer) { observer.signalUpdated(); });
}

void TStudyRecorder::followProtocol()
{
    if (m_ramp)
        m_equipment.send(*m_ramp, duration());
    else if (m_stages.isOver(duration()))
        changeStage(m_stages.stageIndex() + 1);
}

void TStudyRecorder::pacemakerCallback(TAcqDriver*, int sampleOffset)
{
    m_pacemakerPulses.push_back(sampleOffset);
    if (m_state == Running && sampleOffset >= m_startOffset)
        m_study->results().list("pacemakerPulses")->append(m_rawSignal->timeOf(sampleOffset - m_startOffset));
}

void TStudyRecorder::errorCallback(TAcqDriver*, const char* message)
{
    tellFailure(message);
}

void TStudyRecorder::communicationFailedCallback(TAcqDriver*)
{
    tellFailure(linkFailureText);
}

void TStudyRecorder::beatFound(const TBeat& beat)
{
    if (m_state == Running)
        recordBeat(beat);
    else if (beat.valid())
        tellBeat(beat);
}

/// A beat that began before the study is shown but not stored.
void TStudyRecorder::recordBeat(const TBeat& beat)
{
    const double start = m_rawSignal->timeOf(m_startOffset);
    TBeat recorded = beat;
    recorded.addTime(-start);
    recorded.setIndex(-1);
    if (beat.windowStart() >= start) {
        recorded.setIndex(m_writer.appendBeat(recorded));
        if (beat.valid())
            updateTrends(recorded);
    }
    if (beat.valid())
        tellBeat(recorded);
}

void TStudyRecorder::tellBeat(const TBeat& beat)
{
    m_lastBeat = beat;
    tell([&beat](TRecorderObserver& observer) { observer.beatFound(beat); });
}

void TStudyRecorder::updateTrends(const TBeat& beat)
{
    measureSt(beat);
    m_trends.addBeat(beat.value(TBeat::beatTime), beat.value(TBeat::meanRR), presentLoad());
}

void TStudyRecorder::measureSt(const TBeat& beat)
{
    for (int channel = 0; channel < m_rawSignal->channelCount(); ++channel) {
        const auto value =
            m_stMeter.measure(averageBeat(), m_chain.averageSignal(), channel, beat.value(TBeat::rr));
        if (value)
            m_trends.addSt(beat.value(TBeat::beatTime), channel, *value);
    }
}

/// The load that the patient bears now.
TProtocolStage TStudyRecorder::presentLoad() const
{
    if (m_stages.hasStages())
        return m_stages.stage();
    TProtocolStage load;
    if (m_ramp) {
        const double t = std::min(duration(), m_ramp->durationMinutes * 60.0);
        load.setValue(TProtocolStage::speedKey, m_ramp->speedAt(t));
        load.setValue(TProtocolStage::inclineKey, m_ramp->inclineAt(t));
    }
    return load;
}

/// A ramp is one of the treadmill.
TProtocolType TStudyRecorder::protocolType() const
{
    if (isStaged())
        return m_staged->type();
    return m_ramp ? TProtocolType::Treadmill : TProtocolType::Ecg;
}

double TStudyRecorder::patientWeight() const
{
    bool isNumber = false;
    const double weight = m_study->value("patient/weight").toDouble(&isNumber);
    return isNumber && std::isfinite(weight) ? weight : 0.0;
}

void TStudyRecorder::saveDocument()
{
    m_writer.saveDocument();
    tellWriteFailure();
}

void TStudyRecorder::tellWriteFailure()
{
    if (m_writer.takeFailure())
        tellFailure(TStudyWriter::failureText);
}

void TStudyRecorder::tell(const std::function<void(TRecorderObserver&)>& call)
{
    // One that leaves while it is told hears nothing more.
    const std::vector<TRecorderObserver*> observers = m_observers;
    for (TRecorderObserver* observer : observers) {
        if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
            call(*observer);
    }
}

void TStudyRecorder::tellFailure(const char* text)
{
    tell([text](TRecorderObserver& observer) { observer.failed(text); });
}
