#include "wfdb/TWfdbRecord.h"

#include "base/Error.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <limits>
#include <map>

namespace {

/// A day of 16 signals at 1000 Hz is shorter than this; a larger file is none that we read.
constexpr qint64 maxFileBytes = 4LL * 1024 * 1024 * 1024;
/// What stands for a sample that was not taken.
constexpr short missingSample = std::numeric_limits<short>::min();
constexpr int missingSample212 = -2048;

[[noreturn]] void fail()
{
    throw TError("Cannot read WFDB signal file");
}

QByteArray readSignalFile(const QString& path, qint64 offset)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential() || file.size() > maxFileBytes ||
        !file.seek(offset))
        fail();
    return file.readAll();
}

/// Values in the order of the file.
std::vector<short> decode16(const QByteArray& bytes)
{
    std::vector<short> values(static_cast<std::size_t>(bytes.size()) / sizeof(short));
    qFromLittleEndian<qint16>(bytes.constData(), static_cast<qsizetype>(values.size()), values.data());
    return values;
}

short signed12(int bits)
{
    const int value = bits >= 0x800 ? bits - 0x1000 : bits;
    return value == missingSample212 ? missingSample : static_cast<short>(value);
}

/// Pairs of 12-bit values in three bytes; the middle byte has the upper bits of both.
std::vector<short> decode212(const QByteArray& bytes)
{
    const auto byteAt = [&bytes](int i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes.at(i)) : 0;
    };
    std::vector<short> values;
    values.reserve(static_cast<std::size_t>(bytes.size()) / 3 * 2 + 1);
    for (int i = 0; i + 1 < bytes.size(); i += 3) {
        values.push_back(signed12(byteAt(i) | (byteAt(i + 1) & 0x0f) << 8));
        if (i + 2 < bytes.size())
            values.push_back(signed12(byteAt(i + 2) | (byteAt(i + 1) & 0xf0) << 4));
    }
    return values;
}

QString withoutEnding(const QString& path)
{
    const QString ending = QStringLiteral(".hea");
    return path.endsWith(ending) ? path.chopped(ending.size()) : path;
}

} // namespace

TWfdbRecord::TWfdbRecord(const QString& path)
    : m_header(TWfdbHeader::read(withoutEnding(path) + QLatin1String(".hea")))
{
    // Signals of one file are interleaved in it, in the order of the header.
    std::map<QByteArray, std::vector<int>> groups;
    for (int i = 0; i < static_cast<int>(m_header.channels.size()); ++i)
        groups[m_header.channels[static_cast<std::size_t>(i)].fileName].push_back(i);
    m_samples.resize(m_header.channels.size());
    for (const auto& [name, group] : groups)
        readGroup(QFileInfo(path).path(), group);

    // Files that were cut short end the whole record.
    std::size_t shortest = m_samples.front().size();
    for (const std::vector<short>& samples : m_samples)
        shortest = std::min(shortest, samples.size());
    for (std::vector<short>& samples : m_samples)
        samples.resize(shortest);
}

void TWfdbRecord::readGroup(const QString& folder, const std::vector<int>& group)
{
    const TWfdbSignal& first = m_header.channels[static_cast<std::size_t>(group.front())];
    for (const int index : group) {
        if (m_header.channels[static_cast<std::size_t>(index)].format != first.format)
            fail();
    }
    const QByteArray bytes =
        readSignalFile(folder + QLatin1Char('/') + QString::fromLatin1(first.fileName), first.byteOffset);
    const std::vector<short> values = first.format == 212 ? decode212(bytes) : decode16(bytes);

    std::size_t frames = values.size() / group.size();
    if (m_header.sampleCount > 0)
        frames = std::min(frames, static_cast<std::size_t>(m_header.sampleCount));
    for (std::size_t place = 0; place < group.size(); ++place) {
        std::vector<short>& samples = m_samples[static_cast<std::size_t>(group[place])];
        samples.resize(frames);
        for (std::size_t frame = 0; frame < frames; ++frame)
            samples[frame] = values[frame * group.size() + place];
    }
}

double TWfdbRecord::millivolts(int signal, qint64 index) const
{
    if (signal < 0 || signal >= signalCount() || index < 0 || index >= sampleCount())
        return 0.0;
    const short value = m_samples[static_cast<std::size_t>(signal)][static_cast<std::size_t>(index)];
    return value == missingSample ? 0.0
                                  : m_header.channels[static_cast<std::size_t>(signal)].millivolts(value);
}
