#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

/// A file of little-endian frames whose samples tell their place.
class DemoFile
{
public:
    static qint16 sampleAt(int channel, int frame)
    {
        return static_cast<qint16>(frame * 17 + channel * 2003);
    }

    /// `lead` bytes, the frames, and a rest that is no whole frame.
    DemoFile(int channels, int frames, const QByteArray& lead = QByteArray(),
             const QByteArray& rest = QByteArray())
    {
        QByteArray bytes(channels * frames * 2, '\0');
        for (int frame = 0; frame < frames; ++frame) {
            for (int channel = 0; channel < channels; ++channel)
                qToLittleEndian(sampleAt(channel, frame), bytes.data() + (frame * channels + channel) * 2);
        }
        write(lead + bytes + rest);
    }

    explicit DemoFile(const QByteArray& bytes) { write(bytes); }

    const char* path() const { return m_path.constData(); }
    bool isValid() const { return m_valid; }

private:
    void write(const QByteArray& bytes)
    {
        QFile file(m_folder.filePath(QStringLiteral("ecg500.dat")));
        m_path = QFile::encodeName(file.fileName());
        m_valid = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    QTemporaryDir m_folder;
    QByteArray m_path;
    bool m_valid = false;
};
