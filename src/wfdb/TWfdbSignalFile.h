#pragma once

#include <QByteArray>
#include <QFile>

#include <limits>

/// A signal file of a WFDB record: frames of one sample per signal, read piece by piece.
class TWfdbSignalFile
{
public:
    /// Stands for a sample that was not taken, in both formats.
    static constexpr short missing = std::numeric_limits<short>::min();

    /// `format` is 16 or 212, `byteOffset` the place of the first sample, `signalCount` the samples of a
    /// frame. Throws TError "Cannot read WFDB signal file" if there is no such file or it ends before the
    /// offset.
    TWfdbSignalFile(const QString& path, int format, qint64 byteOffset, int signalCount);

    /// Whole frames in the file.
    qint64 frameCount() const { return m_frameCount; }
    int signalCount() const { return m_signalCount; }
    /// Samples in ADC units of `count` frames from `first` on, frame after frame; `missing` out of range.
    /// Throws TError "Cannot read WFDB signal file" if the file no longer gives what it had when it was
    /// opened.
    void read(qint64 first, int count, short* out);

private:
    QByteArray readBytes(qint64 from, qint64 to);
    void read16(qint64 from, qint64 to, short* out);
    void read212(qint64 from, qint64 to, short* out);

    QFile m_file;
    int m_format;
    qint64 m_offset;
    int m_signalCount;
    qint64 m_frameCount = 0;
};
