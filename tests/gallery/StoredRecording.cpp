#include "gallery/StoredRecording.h"

#include "gallery/LiveRecording.h"
#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "support/SampleStudy.h"

#include <algorithm>

namespace {

class BeatAppender : public TBeatListener
{
public:
    explicit BeatAppender(TBeatFile& beats) : m_beats(beats) {}
    void beatFound(const TBeat& beat) override { m_beats.append(beat); }

private:
    TBeatFile& m_beats;
};

} // namespace

StoredRecording::StoredRecording(const std::vector<short>& samples, double seconds)
    : m_database(m_folder.path())
{
    m_study = m_database.openStudy(record(samples, seconds));
    m_filters = std::make_unique<TOfflineFilterChain>(m_study->ecg());
    m_filters->setNotchName("50hz");
    m_filters->setMuscleName("40hz");
    m_filters->apply(true, true, true);
    m_appender = std::make_unique<BeatAppender>(*m_study->beats());
    m_analysis = std::make_unique<TStoredAnalysis>(*m_study->ecg(), TBeatChainSettings(), m_appender.get());
    m_analysis->run();
    m_beatSource = std::make_unique<TStoredBeats>(m_study->beats());
    m_saturation = std::make_unique<TSignalSaturation>(m_study->ecg());
}

qint32 StoredRecording::record(const std::vector<short>& samples, double seconds)
{
    StudyInfo info = makeSampleInfo();
    Study* study = m_database.createStudy(info);
    const int frames =
        std::min(study->ecg()->indexOf(seconds), static_cast<int>(samples.size()) / demoChannels);
    study->ecg()->addInterleaved(reinterpret_cast<const char*>(samples.data()),
                                 frames * demoChannels * static_cast<int>(sizeof(short)));
    m_database.saveStudy(study);
    m_database.closeStudy(study);
    return info.id;
}
