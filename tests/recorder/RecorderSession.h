#pragma once

#include "acq/FakeAcqDevice.h"
#include "analysis/beats/TBeat.h"
#include "recorder/FakeEquipment.h"
#include "recorder/TStudyRecorder.h"
#include "simulators/heart/DemoRecording.h"
#include "study/StoreFolder.h"

#include <QVector>

/// A device of 14 channels at 500 Hz that tells what the test wants told.
class SessionDevice : public FakeAcqDevice
{
public:
    bool isElectrodeOff(const char* name) const override
    {
        asked += QLatin1String(name);
        return offElectrodes.contains(QLatin1String(name));
    }
    bool isChannelSaturated(int channel) const override { return channel == saturatedChannel; }
    double batteryVoltage() const override { return battery; }
    double rangeMin() const override { return -300.0; }
    double rangeMax() const override { return 300.0; }

    mutable QStringList asked;
    QStringList offElectrodes;
    int saturatedChannel = -1;
    double battery = 0.0;
};

/// Writes down what it is told, and does what the test wants done at that moment.
class ObserverLog : public TRecorderObserver
{
public:
    explicit ObserverLog(QStringList& log, const QString& name = QString()) : m_log(log), m_name(name) {}

    void signalUpdated() override
    {
        ++updates;
        call(onSignal);
    }
    void beatFound(const TBeat& beat) override
    {
        beats.push_back(beat);
        call(onBeat);
    }
    void studyStarted() override
    {
        m_log += m_name + QStringLiteral("started");
        call(onStarted);
    }
    void stageChanged() override
    {
        m_log += m_name + QStringLiteral("stage");
        call(onStage);
    }
    void studyFinished() override
    {
        m_log += m_name + QStringLiteral("finished");
        call(onFinished);
    }
    void failed(const char* text) override
    {
        m_log += m_name + QStringLiteral("failed: ") + QString::fromUtf8(text);
        call(onFailed);
    }

    int updates = 0;
    std::vector<TBeat> beats;
    std::function<void()> onSignal;
    std::function<void()> onBeat;
    std::function<void()> onStarted;
    std::function<void()> onStage;
    std::function<void()> onFinished;
    std::function<void()> onFailed;

private:
    static void call(const std::function<void()>& function)
    {
        if (function)
            function();
    }

    QStringList& m_log;
    const QString m_name;
};

/// A store that counts how often the study's document is written.
class CountingStore : public LocalStudyDatabase
{
public:
    using LocalStudyDatabase::LocalStudyDatabase;
    void saveStudy(Study* study) override
    {
        ++saves;
        LocalStudyDatabase::saveStudy(study);
    }
    int saves = 0;
};

/// An examination in a store of its own. The demonstration recording is handed to the driver block by block,
/// as its pump does it, but without the pump: so that the test knows where each block ends.
class RecorderSession
{
public:
    static constexpr int channels = 14;
    static constexpr int rate = 500;
    static constexpr int blockFrames = 50;

    explicit RecorderSession(const TProtocol* protocol = nullptr, TEquipment* equipment = nullptr)
    {
        info = makeSampleInfo();
        study = store.createStudy(info);
        recorder = std::make_unique<TStudyRecorder>(&device, study, protocol, equipment);
        recorder->setStore(&store);
        recorder->addObserver(&observer);
    }
    RecorderSession(const RecorderSession&) = delete;
    RecorderSession& operator=(const RecorderSession&) = delete;
    ~RecorderSession()
    {
        recorder.reset();
        store.closeStudy(study);
    }

    /// Counts of the recording, which goes round.
    static short sampleAt(int channel, int frame)
    {
        static const std::vector<heart::TFrame> frames = heart::demoRecording();
        return frames[static_cast<std::size_t>(frame) % frames.size()][static_cast<std::size_t>(channel)];
    }

    void block(int frames)
    {
        QVector<char> bytes;
        bytes.reserve(frames * channels * 2);
        for (int i = 0; i < frames; ++i, ++frame) {
            for (int channel = 0; channel < channels; ++channel) {
                const short sample = sampleAt(channel, frame);
                bytes.append(reinterpret_cast<const char*>(&sample)[0]);
                bytes.append(reinterpret_cast<const char*>(&sample)[1]);
            }
        }
        QMetaObject::invokeMethod(&recorder->driver(), "appendBlock", Qt::DirectConnection,
                                  Q_ARG(QVector<char>, bytes));
    }

    /// Seconds of signal, in blocks of a tenth of a second.
    void run(double seconds)
    {
        for (int left = qRound(seconds * rate); left > 0; left -= blockFrames)
            block(std::min(left, blockFrames));
    }

    void start() { recorder->startStudy("20240105093101"); }

    std::vector<double> list(const char* name) { return study->results().list(name)->values(); }
    TResultTrend& trend(const QByteArray& name) { return *study->results().trend(name); }
    double value(const char* name) { return study->results().value(name)->value(); }
    /// Durations of the stages that were carried out.
    QList<double> stages()
    {
        QList<double> durations;
        for (int i = 0; i < study->protocol()->stageCount(); ++i)
            durations += study->protocol()->stage(i).duration();
        return durations;
    }

    SessionDevice device;
    StoreFolder folder;
    CountingStore store{folder.path()};
    StudyInfo info;
    Study* study = nullptr;
    QStringList log;
    ObserverLog observer{log};
    std::unique_ptr<TStudyRecorder> recorder;
    int frame = 0;
};

/// Treadmill stages: rest, two of exercise, two of recovery.
inline TStressProtocol treadmillTest(double duration = 10.0)
{
    TStressProtocol protocol("Short", TProtocolType::Treadmill);
    protocol.addStage(TStagePhase::Rest, duration, 0.0, 0.0);
    protocol.addStage(TStagePhase::Exercise, duration, 2.7, 10.0);
    protocol.addStage(TStagePhase::Exercise, duration, 5.0, 12.0);
    protocol.addStage(TStagePhase::Recovery, duration, 2.0, 0.0);
    protocol.addStage(TStagePhase::Recovery, duration, 0.0, 0.0);
    return protocol;
}
