#include "analysis/LiveSignal.h"
#include "recorder/TStudyRecorder.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "support/SampleStudy.h"

#include "acq/AcqChannels.h"
#include "acq/TAcqDevice.h"

#include <QTemporaryDir>

/// A whole examination: what the program does with a block of samples from the moment it arrives, painting
/// excepted. All filters are on, a study runs, its files grow and its trends fill.
namespace {

/// Tells its form; the samples come from the benchmark.
class TSilentDevice : public TAcqDevice
{
public:
    void start() override {}
    bool isOk() const override { return true; }
    bool isWaiting() const override { return false; }
    int bytesAvailable() const override { return 0; }
    int read(char*, int) override { return 0; }
    int nextPacemakerPulse() override { return 0; }
    void resetDevice() override {}
    bool isChannelSaturated(int) const override { return false; }
    bool isElectrodeOff(const char*) const override { return false; }
    void stop() override {}
    const char* lastError() const override { return ""; }
    double batteryVoltage() const override { return 0.0; }
    int channelCount() const override { return live::channels; }
    const char* channelName(int index) const override { return acq::channelNames[index]; }
    int samplingRate() const override { return live::rate; }
    int bytesPerSample() const override { return 2; }
    int resolutionBits() const override { return 16; }
    double rangeMin() const override { return -300.0; }
    double rangeMax() const override { return 300.0; }
};

TStressProtocol exercise()
{
    TStressProtocol protocol("Long", TProtocolType::Treadmill);
    for (int stage = 0; stage < 100; ++stage)
        protocol.addStage(TStagePhase::Exercise, 180.0, 2.0 + 0.1 * stage, 10.0);
    return protocol;
}

class TExamination
{
public:
    TExamination() : m_store(m_folder.path()), m_info(makeSampleInfo()), m_study(m_store.createStudy(m_info))
    {
        m_recorder.setStore(&m_store);
        m_recorder.setFilters(true, true, true);
        m_recorder.startStudy("20240105093101");
    }

    void block()
    {
        QMetaObject::invokeMethod(&m_recorder.driver(), "appendBlock", Qt::DirectConnection,
                                  Q_ARG(QVector<char>, m_loop.next()));
    }

    TResultTrend& rates() { return *m_study->results().trend("BPMTrend"); }

private:
    QTemporaryDir m_folder;
    LocalStudyDatabase m_store;
    StudyInfo m_info;
    Study* m_study;
    TSilentDevice m_device;
    const TStressProtocol m_protocol = exercise();
    TStudyRecorder m_recorder{&m_device, m_study, &m_protocol, nullptr};
    live::TLoop m_loop;
};

void examination(benchmark::State& state)
{
    TExamination examination;
    for (auto _ : state)
        examination.block();
    live::countSeconds(state, live::blockSeconds);
}
BENCHMARK(examination)->MinTime(2.0);

/// The filters tap by tap and the samples written one by one.
void examinationNaive(benchmark::State& state)
{
    QTemporaryDir folder;
    TEcgFile file(folder.filePath(QStringLiteral("samples")), live::channels, live::rate,
                  TEcgFile::defaultHeaderSize, true);
    live::TLoop loop;
    constexpr int frameBytes = live::channels * static_cast<int>(sizeof(short));
    for (auto _ : state) {
        live::filterBlockNaively();
        const QVector<char> block = loop.next();
        for (int frame = 0; frame < live::blockFrames; ++frame)
            file.addInterleaved(block.constData() + frame * frameBytes, frameBytes);
    }
    live::countSeconds(state, live::blockSeconds);
}
BENCHMARK(examinationNaive);

} // namespace
