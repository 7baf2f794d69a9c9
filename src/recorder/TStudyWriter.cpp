#include "recorder/TStudyWriter.h"

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
    m_owesSamples = false;
    // What could not be written is tried again with the next block, or all that follows would be too early.
    while (m_lastSaved < m_raw.sampleCount() && !m_owesSamples) {
        const int frames = std::min(m_raw.sampleCount() - m_lastSaved, framesAtOnce);
        m_owesSamples = !append(*ecg, frames);
        if (!m_owesSamples)
            m_lastSaved += frames;
    }
    noteSignal();
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
    return ecg.sampleCount() == before + frames;
}

int TStudyWriter::appendBeat(const TBeat& beat)
{
    TBeatFile* const beats = m_study.beats();
    if (!beats)
        return -1;
    appendOwedBeats();
    // One that passed those before it would stand in the wrong place for good.
    const int index = m_owedBeats.empty() ? beats->append(beat) : -1;
    if (index < 0)
        m_owedBeats.push_back(beat);
    noteSignal();
    return index;
}

void TStudyWriter::appendOwedBeats()
{
    auto owed = m_owedBeats.begin();
    while (owed != m_owedBeats.end() && m_study.beats()->append(*owed) >= 0)
        ++owed;
    m_owedBeats.erase(m_owedBeats.begin(), owed);
}

void TStudyWriter::save()
{
    if (m_study.beats()) {
        appendOwedBeats();
        m_study.beats()->sync();
    }
    if (m_study.ecg())
        m_study.ecg()->sync();
    noteSignal();
    saveDocument();
}

void TStudyWriter::saveDocument()
{
    try {
        if (m_store)
            m_store->saveStudy(&m_study);
        m_documentFailure.note(false);
    } catch (const std::exception&) {
        m_documentFailure.note(true);
    }
}

bool TStudyWriter::takeFailure()
{
    const bool isSignal = m_signalFailure.take();
    const bool isDocument = m_documentFailure.take();
    return isSignal || isDocument;
}

void TStudyWriter::noteSignal()
{
    const bool isLost =
        (m_study.ecg() && m_study.ecg()->isLost()) || (m_study.beats() && m_study.beats()->isLost());
    m_signalFailure.note(m_owesSamples || !m_owedBeats.empty() || isLost);
}

void TStudyWriter::TFailure::note(bool present)
{
    isPresent = present;
    isTold = isTold && present;
}

bool TStudyWriter::TFailure::take()
{
    const bool isNew = isPresent && !isTold;
    isTold = isPresent;
    return isNew;
}
