#include "study/TBeatFile.h"

#include "analysis/signals/TSignal.h"

#include <algorithm>
#include <limits>

namespace {

int checkedChannelCount(const TSignal& ecg, bool create)
{
    if (ecg.channelCount() < 1 || ecg.channelCount() > velantor::maxChannels)
        TRecordFile::fail(TRecordFile::modeFor(create));
    return ecg.channelCount();
}

} // namespace

TBeatFile::TBeatFile(const TSignal& ecg, const QString& path, int headerSize, bool create)
    : m_record(checkedChannelCount(ecg, create)),
      m_file(path, headerSize, m_record.size(), TRecordFile::modeFor(create)),
      m_buffer(size_t(m_record.size()), '\0')
{
}

int TBeatFile::append(const TBeat& beat)
{
    if (count() == maxCount())
        return -1;
    m_record.pack(beat, m_buffer.data());
    return m_file.append(m_buffer.data(), 1) ? count() - 1 : -1;
}

bool TBeatFile::update(const TBeat& beat)
{
    if (beat.index() < 0 || beat.index() >= count())
        return false;
    m_record.pack(beat, m_buffer.data());
    return m_file.update(beat.index(), m_buffer.data());
}

bool TBeatFile::read(int index, TBeat& out) const
{
    if (m_file.read(index, 1, m_buffer.data()) != 1)
        return false;
    out = m_record.unpack(m_buffer.data(), index);
    return true;
}

int TBeatFile::count() const
{
    return int(std::min<qint64>(m_file.count(), std::numeric_limits<int>::max()));
}

int TBeatFile::maxCount() const
{
    return std::numeric_limits<int>::max();
}
