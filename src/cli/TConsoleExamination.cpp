#include "cli/TConsoleExamination.h"

#include "base/Error.h"
#include "base/Text.h"
#include "equipment/EquipmentFactory.h"
#include "recorder/AcquisitionInfo.h"
#include "recorder/StageEvents.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyDatabase.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QDateTime>
#include <QTimer>

#include <algorithm>

using velantor::fromText;
using velantor::toText;

namespace {

constexpr int devicePollMs = 10;
/// A device that is there says something in less than the time-out of a read.
constexpr int deviceWaitMs = 12000;
/// Of status, link and progress.
constexpr int lookPeriodMs = 1000;
/// Samples under way without pacing: about ten seconds, in steps of a live device.
constexpr int pendingBlocks = 100;
constexpr double eventSeconds = 7.0;

const char* studyTypeOf(TRecordOptions::TTest test)
{
    switch (test) {
    case TRecordOptions::RestingEcg:
        return "ECG";
    case TRecordOptions::StressTest:
        return "Stress test";
    case TRecordOptions::TiltTest:
        break;
    }
    return "Tilt test";
}

TEquipment::TKind equipmentKind(const TStressProtocol& protocol)
{
    return protocol.type() == TProtocolType::Ergometer ? TEquipment::Ergometer : TEquipment::Treadmill;
}

QByteArray now()
{
    return toText(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss")));
}

} // namespace

TConsoleExamination::TConsoleExamination(const TRecordOptions& options, const TStressProtocol& protocol,
                                         std::unique_ptr<TAcqDevice> device, StudyDatabase& database,
                                         TJsonOutput& output)
    : m_options(options), m_protocol(protocol), m_database(database), m_output(output),
      m_interruptSignal([this] { interrupt(); }), m_device(std::move(device)), m_link(m_device.samplingRate())
{
    m_clock.start();
}

TConsoleExamination::~TConsoleExamination()
{
    // Only if something was thrown on the way: what was recorded stays as it is on the disk.
    m_recorder.reset();
    if (m_study)
        m_database.closeStudy(m_study);
}

void TConsoleExamination::run()
{
    waitForDevice();
    createStudy();
    startRecorder();
    record();
    close();
}

/// Before anything is recorded: a study of a device that is not there would be an empty one.
void TConsoleExamination::waitForDevice()
{
    const int frameBytes = m_device.bytesPerSample() * m_device.channelCount();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &m_loop, [&] {
        const bool isThere = m_device.bytesAvailable() >= frameBytes;
        if (isThere || !m_device.isOk() || m_clock.elapsed() > deviceWaitMs)
            m_loop.quit();
    });
    poll.start(devicePollMs);
    m_loop.exec();
    if (InterruptSignal::isRaised())
        throw TError("Interrupted before the study began");
    if (m_device.bytesAvailable() < frameBytes)
        throw TError(m_device.isOk() ? "Device read error" : m_device.lastError());
}

void TConsoleExamination::createStudy()
{
    m_info = m_options.patient;
    m_info.studyType = studyTypeOf(m_options.test);
    m_info.protocolName = m_options.protocolName;
    m_info.studyDateTime = now();
    fillAcquisition(m_info, m_device);
    findFreeName(m_info, m_database.folder());
    m_study = m_database.createStudy(m_info);
}

void TConsoleExamination::startRecorder()
{
    m_equipment =
        createEquipment(equipmentKind(m_protocol), m_options.equipmentName, m_options.equipmentPort);
    m_recorder = std::make_unique<TStudyRecorder>(&m_device, m_study, &m_protocol, m_equipment.get());
    m_recorder->setStore(&m_database);
    m_recorder->addObserver(this);
    m_recorder->driver().addListener(this);
    if (m_options.unpaced) {
        m_recorder->driver().setPendingBlockLimit(pendingBlocks);
        m_recorder->driver().setLargestBlock(1);
    }
}

void TConsoleExamination::record()
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &m_loop, [this] { lookAround(); });
    // The first sample of the device is the first one of the study.
    m_recorder->startStudy(now().constData());
    m_recorder->startAcquisition();
    m_link.start(m_device.failures(), m_recorder->rawSignal().sampleCount(), m_clock.elapsed());
    timer.start(lookPeriodMs);
    if (!m_ended)
        m_loop.exec();
    m_recorder->stopAcquisition();
}

void TConsoleExamination::interrupt()
{
    if (m_recorder)
        end();
    else
        m_loop.quit();
}

void TConsoleExamination::end()
{
    if (std::exchange(m_ended, true))
        return;
    m_recorder->finishStudy();
    m_loop.quit();
}

void TConsoleExamination::close()
{
    const bool isSignalWritten = m_recorder->isSignalWritten();
    m_recorder.reset();
    m_equipment.reset();
    tellEquipmentTexts();
    const int samples = m_study->ecg()->sampleCount();
    const int beats = m_study->beats()->count();
    const QByteArray loss = keepStudy(isSignalWritten);
    m_database.closeStudy(std::exchange(m_study, nullptr));
    m_output.finished(m_info.id, samples, beats);
    for (const QByteArray& error : {loss, m_driverError}) {
        if (!error.isEmpty())
            throw TError(fromText(error));
    }
    if (m_output.hasFailed())
        throw TError("Write error");
}

/// What of the study could not be kept; empty if all of it is on the disk.
QByteArray TConsoleExamination::keepStudy(bool isSignalWritten)
{
    try {
        m_database.saveStudy(m_study);
    } catch (const TError& error) {
        return error.what();
    }
    return isSignalWritten ? QByteArray() : QByteArray(TStudyWriter::failureText);
}

void TConsoleExamination::signalUpdated()
{
    tellStage();
    tellEquipmentTexts();
    if (!m_recorder->isRecording())
        return;
    doDueActions();
    // Signals that pour in keep the event loop from telling of an interruption and of the time.
    if (isOver() || InterruptSignal::isRaised())
        end();
    else
        lookAround();
}

bool TConsoleExamination::isOver() const
{
    // An output without room is no reason to lose the rest of the recording.
    return m_output.isReaderGone() || (m_options.stopAfter && m_recorder->duration() >= *m_options.stopAfter);
}

void TConsoleExamination::doDueActions()
{
    const double time =
        std::min(m_recorder->duration(), m_options.stopAfter.value_or(m_recorder->duration()));
    while (m_nextAction < m_options.actions.size() && m_options.actions[m_nextAction].time <= time)
        perform(m_options.actions[m_nextAction++]);
}

/// A stage is told once it is on the disk: whoever hears of it may rely on it.
void TConsoleExamination::tellStage()
{
    if (m_begunStage)
        m_output.stage(m_begunStage->index, m_begunStage->time);
    m_begunStage.reset();
}

void TConsoleExamination::tellEquipmentTexts()
{
    for (const QByteArray& text : m_equipmentTexts.take())
        m_output.warning(text.constData());
}

void TConsoleExamination::perform(const TTimedAction& action)
{
    switch (action.kind) {
    case TTimedAction::BloodPressure:
        m_recorder->addBloodPressure(action.time, action.systolic, action.diastolic);
        break;
    case TTimedAction::Event:
        m_recorder->addEvent(action.time, eventSeconds, action.text);
        break;
    case TTimedAction::NextStage:
        m_recorder->nextStage();
        break;
    case TTimedAction::Recovery:
        m_recorder->goToRecovery();
        break;
    }
    tellStage();
}

void TConsoleExamination::beatFound(const TBeat& beat)
{
    // What is still under way when the study has ended is not of the study.
    if (m_options.tellsBeats && m_recorder->isRecording())
        m_output.beat(beat);
}

void TConsoleExamination::studyStarted()
{
    m_output.started(m_info);
}

void TConsoleExamination::stageChanged()
{
    addStageEvent(*m_study, m_recorder->stageRun(), m_recorder->duration());
    // The end of the study ends a stage and begins none.
    if (m_recorder->isRecording())
        m_begunStage = TBegunStage{m_recorder->stageRun().stageIndex(), m_recorder->duration()};
}

void TConsoleExamination::failed(const char* text)
{
    m_output.warning(text);
}

void TConsoleExamination::errorCallback(TAcqDriver*, const char* message)
{
    m_driverError = message;
    end();
}

/// Once a second, on the event loop or between blocks.
void TConsoleExamination::lookAround()
{
    const qint64 time = m_clock.elapsed();
    if (m_ended || time - m_lastLook < lookPeriodMs / 2)
        return;
    m_lastLook = time;
    tellEquipmentTexts();
    m_output.status(TDeviceStatus::of(*m_recorder));
    if (m_link.isNewlyLost(m_device.failures(), m_recorder->rawSignal().sampleCount(), time))
        failed(TStudyRecorder::linkFailureText);
    m_progress.show(progress());
}

QString TConsoleExamination::progress() const
{
    const int seconds = static_cast<int>(m_recorder->duration());
    QString text = QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    const TStageRun& run = m_recorder->stageRun();
    text += QStringLiteral("  %1 %2").arg(stageLabel(m_protocol.type(), run.phase())).arg(run.phaseOrdinal());
    if (m_recorder->smoothedBpm() > 0.0)
        text += QStringLiteral("  %1 bpm").arg(static_cast<int>(m_recorder->smoothedBpm()));
    return text;
}
