#include "wfdb/TWfdbRecord.h"

#include "base/Error.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

QString withoutEnding(const QString& path)
{
    const QString ending = QStringLiteral(".hea");
    return path.endsWith(ending) ? path.chopped(ending.size()) : path;
}

bool shareFrames(const TWfdbSignal& first, const TWfdbSignal& other)
{
    return other.format == first.format && (other.byteOffset == first.byteOffset || other.byteOffset == 0);
}

} // namespace

TWfdbRecord::TWfdbRecord(const QString& path)
    : m_header(TWfdbHeader::read(withoutEnding(path) + QLatin1String(".hea")))
{
    openGroups(QFileInfo(path).path());
    // A file that was cut short ends the whole record.
    m_sampleCount = m_groups.front().file->frameCount();
    for (const TGroup& group : m_groups)
        m_sampleCount = std::min(m_sampleCount, group.file->frameCount());
    if (m_header.sampleCount > 0)
        m_sampleCount = std::min(m_sampleCount, m_header.sampleCount);
}

void TWfdbRecord::openGroups(const QString& folder)
{
    QSet<QByteArray> names;
    for (int first = 0; first < signalCount(); first = groupEnd(first)) {
        const TWfdbSignal& signal = m_header.channels[static_cast<std::size_t>(first)];
        // A file that comes back later could be meant as one group or as two.
        if (names.contains(signal.fileName))
            throw TError("Cannot read WFDB signal file");
        names.insert(signal.fileName);
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(signal.fileName);
        m_groups.push_back({first, std::make_unique<TWfdbSignalFile>(path, signal.format, signal.byteOffset,
                                                                     groupEnd(first) - first)});
    }
}

/// The first signal behind those that lie in one file with `firstSignal`.
int TWfdbRecord::groupEnd(int firstSignal) const
{
    const TWfdbSignal& first = m_header.channels[static_cast<std::size_t>(firstSignal)];
    int end = firstSignal + 1;
    for (; end < signalCount(); ++end) {
        const TWfdbSignal& signal = m_header.channels[static_cast<std::size_t>(end)];
        if (signal.fileName != first.fileName)
            break;
        if (!shareFrames(first, signal))
            throw TError("Cannot read WFDB signal file");
    }
    return end;
}

void TWfdbRecord::read(qint64 first, int count, short* const* out) const
{
    std::vector<short> frames;
    for (const TGroup& group : m_groups) {
        const int signalsInFile = group.file->signalCount();
        frames.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(signalsInFile));
        group.file->read(first, count, frames.data());
        for (int place = 0; place < signalsInFile; ++place) {
            short* samples = out[group.firstSignal + place];
            for (int i = 0; i < count; ++i)
                samples[i] = first + i < m_sampleCount
                                 ? frames[static_cast<std::size_t>(i) * signalsInFile + place]
                                 : TWfdbSignalFile::missing;
        }
    }
}

double TWfdbRecord::millivolts(int signal, qint64 index) const
{
    if (signal < 0 || signal >= signalCount() || index < 0 || index >= sampleCount())
        return 0.0;
    const auto place = static_cast<std::size_t>(signal * cachedFrameCount + index % cachedFrameCount);
    const short value = cachedFrames(index / cachedFrameCount)[place];
    return value == TWfdbSignalFile::missing
               ? 0.0
               : m_header.channels[static_cast<std::size_t>(signal)].millivolts(value);
}

const std::vector<short>& TWfdbRecord::cachedFrames(qint64 block) const
{
    if (block != m_cachedBlock) {
        m_cache.resize(static_cast<std::size_t>(signalCount()) * cachedFrameCount);
        std::vector<short*> signalStarts(static_cast<std::size_t>(signalCount()));
        for (std::size_t i = 0; i < signalStarts.size(); ++i)
            signalStarts[i] = m_cache.data() + i * cachedFrameCount;
        read(block * cachedFrameCount, cachedFrameCount, signalStarts.data());
        m_cachedBlock = block;
    }
    return m_cache;
}
