#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <vector>

/// Files and frames that the tests of the study files share.
namespace samples {

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool makeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

/// The sample that the tests put at a place, different at neighbouring places.
inline short sampleAt(int channel, qint64 index)
{
    return short((index * 31 + channel * 1009) % 65536 - 32768);
}

/// `count` interleaved frames of `sampleAt` from `first` on.
inline std::vector<short> frames(int channels, qint64 first, int count)
{
    std::vector<short> result;
    for (qint64 index = first; index < first + count; ++index)
        for (int channel = 0; channel < channels; ++channel)
            result.push_back(sampleAt(channel, index));
    return result;
}

} // namespace samples
