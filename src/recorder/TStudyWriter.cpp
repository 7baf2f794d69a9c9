#include "recorder/TStudyWriter.h"

#include "analysis/beats/TBeat.h"
#include "study/Study.h"
#include "study/StudyDatabase.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <algorithm>
#include <array>

namespace {

/// Bounds the memory when there is much to make up for.
constexpr int framesAtOnce = 4096;

} // namespace

TStudyWriter::TStudyWriter(Study& study, TSignal& raw) : m_study(study), m_raw(raw) {}

void TStudyWriter::start(int position)
{
    m_lastSaved = position;
}

void TStudyWriter::appendSamples()
{
    TEcgFile* const ecg = m_study.ecg();
    if (!ecg)
        return;
    // What could not be written is tried again with the next block, or all that follows would be too early.
    while (m_lastSaved < m_raw.sampleCount()) {
        const int frames = std::min(m_raw.sampleCount() - m_lastSaved, framesAtOnce);
        if (!append(*ecg, frames))
            break;
        m_lastSaved += frames;
    }
    noteFailure(ecg->writeFailed());
}

bool TStudyWriter::append(TEcgFile& ecg, int frames)
{
    const int before = ecg.sampleCount();
    m_samples.resize(static_cast<std::size_t>(ecg.channelCount()) * frames);
    std::array<const double*, velantor::maxChannels> rows{};
    for (int channel = 0; channel < ecg.channelCount(); ++channel) {
        double* const row = m_samples.data() + static_cast<std::size_t>(channel) * frames;
        m_raw.readDoubles(channel, m_lastSaved, frames, row);
        rows[channel] = row;
    }
    ecg.addPerChannelDouble(rows.data(), frames);
    const bool done = ecg.sampleCount() == before + frames;
    noteFailure(!done);
    return done;
}

int TStudyWriter::appendBeat(const TBeat& beat)
{
    TBeatFile* const beats = m_study.beats();
    if (!beats)
        return -1;
    const int index = beats->append(beat);
    noteFailure(index < 0 || beats->writeFailed());
    return index;
}

void TStudyWriter::save()
{
    try {
        if (m_study.ecg())
            noteFailure(!m_study.ecg()->sync());
        if (m_study.beats())
            noteFailure(!m_study.beats()->sync());
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
