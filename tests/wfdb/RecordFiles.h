#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QtEndian>

#include <vector>

/// One signal of a record made for a test.
struct TMadeSignal
{
    QByteArray description;
    std::vector<qint16> samples; ///< in ADC units
    QByteArray gain = "1000";    ///< with baseline and units, if wanted
};

/// Frames of format 16; all signals are of one length.
inline QByteArray framesOf(const std::vector<TMadeSignal>& signalList)
{
    QByteArray bytes;
    for (std::size_t i = 0; i < signalList.front().samples.size(); ++i) {
        for (const TMadeSignal& signal : signalList) {
            const qint16 sample = qToLittleEndian(signal.samples[i]);
            bytes.append(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
    }
    return bytes;
}

/// Writes NAME.hea and NAME.dat; returns the path of the record. `frequencyAndMore` goes on as the header's
/// first line does: count, time, date.
inline QString writeRecord(const QString& folder, const QByteArray& name, const QByteArray& frequencyAndMore,
                           const std::vector<TMadeSignal>& signalList)
{
    QByteArray header =
        name + ' ' + QByteArray::number(int(signalList.size())) + ' ' + frequencyAndMore + '\n';
    for (const TMadeSignal& signal : signalList)
        header += name + ".dat 16 " + signal.gain + " 16 0 0 0 0 " + signal.description + '\n';
    const QString path = folder + QLatin1Char('/') + QString::fromLatin1(name);
    QFile headerFile(path + QStringLiteral(".hea"));
    QFile samplesFile(path + QStringLiteral(".dat"));
    const QByteArray frames = framesOf(signalList);
    if (!headerFile.open(QIODevice::WriteOnly) || headerFile.write(header) != header.size() ||
        !samplesFile.open(QIODevice::WriteOnly) || samplesFile.write(frames) != frames.size())
        qFatal("The scratch folder takes no record.");
    return path;
}
