#include "wfdb/TWfdbHeader.h"

#include "base/Error.h"

#include <QFile>
#include <QRegularExpression>

#include <cmath>

namespace {

constexpr qint64 maxHeaderBytes = 64 * 1024;
constexpr double maxFrequency = 100000.0;

[[noreturn]] void fail()
{
    throw TError("Cannot read WFDB header");
}

QStringList readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxHeaderBytes)
        fail();
    QStringList lines;
    for (const QString& line : QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'))) {
        const QString text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith(QLatin1Char('#')))
            lines.append(text);
    }
    return lines;
}

/// The number that a field begins with; fields such as "360/250(0)" carry more behind it.
double leadingNumber(const QString& field)
{
    static const QRegularExpression number(QStringLiteral("^[-+]?[0-9]*\\.?[0-9]+(?:[eE][-+]?[0-9]+)?"));
    const double value = number.match(field).captured().toDouble();
    return std::isfinite(value) ? value : 0.0;
}

int readRecordLine(TWfdbHeader& header, const QString& line)
{
    const QStringList fields = line.split(QRegularExpression(QStringLiteral("\\s+")));
    // A name with a slash is a record of several segments.
    if (fields.size() < 2 || fields.at(0).contains(QLatin1Char('/')))
        fail();
    if (fields.size() > 2)
        header.frequency = leadingNumber(fields.at(2));
    if (fields.size() > 3)
        header.sampleCount = fields.at(3).toLongLong();
    const int count = fields.at(1).toInt();
    if (count < 1 || count > TWfdbHeader::maxSignals || header.sampleCount < 0 ||
        !(header.frequency > 0.0 && header.frequency <= maxFrequency))
        fail();
    return count;
}

/// "16", "212", "16+24": other formats, skews and several samples per frame are not ours to read.
void readFormat(TWfdbSignal& signal, const QString& field)
{
    static const QRegularExpression form(QStringLiteral("^(16|212)(?:x1)?(?::0)?(?:\\+([0-9]{1,15}))?$"));
    const QRegularExpressionMatch match = form.match(field);
    if (!match.hasMatch())
        fail();
    signal.format = match.captured(1).toInt();
    signal.byteOffset = match.captured(2).toLongLong();
}

/// "200", "1000(512)", "1000.0(0)/mV"; returns whether the baseline was told.
bool readGain(TWfdbSignal& signal, const QString& field)
{
    static const QRegularExpression form(QStringLiteral("^([^(/]+)(?:\\(([-+]?[0-9]+)\\))?(?:/(\\S+))?$"));
    const QRegularExpressionMatch match = form.match(field);
    const double gain = leadingNumber(match.captured(1));
    if (gain != 0.0)
        signal.gain = gain;
    if (!match.captured(3).isEmpty())
        signal.units = match.captured(3).toLatin1();
    signal.baseline = match.captured(2).toInt();
    return !match.captured(2).isEmpty();
}

TWfdbSignal readSignalLine(const QString& line)
{
    constexpr int adcZeroField = 4;
    constexpr int descriptionField = 8;
    const QStringList fields = line.split(QRegularExpression(QStringLiteral("\\s+")));
    TWfdbSignal signal;
    signal.fileName = fields.at(0).toLatin1();
    if (fields.size() < 2 || signal.fileName.contains('/') || signal.fileName.contains('\\'))
        fail();
    readFormat(signal, fields.at(1));
    const bool hasBaseline = fields.size() > 2 && readGain(signal, fields.at(2));
    if (!hasBaseline && fields.size() > adcZeroField)
        signal.baseline = fields.at(adcZeroField).toInt();
    signal.description = fields.mid(descriptionField).join(QLatin1Char(' ')).toLatin1();
    return signal;
}

} // namespace

double TWfdbSignal::millivoltsPerUnit() const
{
    const QByteArray unit = units.toLower();
    if (unit == "uv")
        return 0.001;
    return unit == "v" ? 1000.0 : 1.0;
}

TWfdbHeader TWfdbHeader::read(const QString& path)
{
    const QStringList lines = readLines(path);
    if (lines.isEmpty())
        fail();
    TWfdbHeader header;
    const int count = readRecordLine(header, lines.at(0));
    if (lines.size() < count + 1)
        fail();
    for (int i = 1; i <= count; ++i)
        header.channels.push_back(readSignalLine(lines.at(i)));
    return header;
}
