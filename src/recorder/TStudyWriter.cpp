#include "recorder/TStudyWriter.h"

#include "analysis/beats/TBeat.h"
#include "study/Study.h"
#include "study/StudyDatabase.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

TStudyWriter::TStudyWriter(Study& study, TSignal& raw) : m_study(study), m_raw(raw) {}

void TStudyWriter::start(int position)
{
    m_lastSaved = position;
}

void TStudyWriter::appendSamples()
{
    TEcgFile* const ecg = m_study.ecg();
    const int count = m_raw.sampleCount() - m_lastSaved;
    if (!ecg || count <= 0)
        return;
    std::vector<std::vector<double>> rows(ecg->channelCount(), std::vector<double>(count));
    std::vector<const double*> pointers;
    for (int channel = 0; channel < ecg->channelCount(); ++channel) {
        m_raw.readDoubles(channel, m_lastSaved, count, rows[channel].data());
        pointers.push_back(rows[channel].data());
    }
    ecg->addPerChannelDouble(pointers.data(), count);
    m_lastSaved = m_raw.sampleCount();
    noteFailure(ecg->writeFailed());
}

void TStudyWriter::appendBeat(const TBeat& beat)
{
    if (TBeatFile* const beats = m_study.beats()) {
        beats->append(beat);
        noteFailure(beats->writeFailed());
    }
}

void TStudyWriter::save()
{
    try {
        if (m_study.ecg() && m_study.beats())
            noteFailure(!m_study.ecg()->sync() || !m_study.beats()->sync());
        if (m_store)
            m_store->saveStudy(&m_study);
    } catch (const std::exception&) {
        noteFailure(true);
    }
}

bool TStudyWriter::takeFailure()
{
    const bool isNew = m_failed && !m_told;
    m_told = m_told || m_failed;
    return isNew;
}

void TStudyWriter::noteFailure(bool failed)
{
    m_failed = m_failed || failed;
}
