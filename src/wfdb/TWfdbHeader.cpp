#include "wfdb/TWfdbHeader.h"

#include "base/Error.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr qint64 maxHeaderBytes = 64 * 1024;
constexpr double maxFrequency = 100000.0;

[[noreturn]] void fail()
{
    throw TError("Cannot read WFDB header");
}

QStringList readLines(const QString& path)
{
    // A pipe would keep us waiting.
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > maxHeaderBytes)
        fail();
    QStringList lines;
    for (const QString& line : QString::fromLatin1(file.read(maxHeaderBytes)).split(QLatin1Char('\n'))) {
        const QString text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith(QLatin1Char('#')))
            lines.append(text);
    }
    return lines;
}

QStringList fieldsOf(const QString& line)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return line.split(blanks);
}

/// A decimal number as a part of a form.
const QString numberForm = QStringLiteral("([-+]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][-+]?[0-9]+)?)");

double realIn(const QString& text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value))
        fail();
    return value;
}

/// "360", "360/250(0)", "360(0)": a frequency of counters and their start may follow the first number.
double frequencyIn(const QString& field)
{
    static const QRegularExpression form(QLatin1Char('^') + numberForm +
                                         QStringLiteral("(?:/.*|\\(.*\\))?$"));
    const QRegularExpressionMatch match = form.match(field);
    if (!match.hasMatch())
        fail();
    return realIn(match.captured(1));
}

qint64 sampleCountIn(const QString& field)
{
    constexpr qint64 most = 1000000000000;
    bool isNumber = false;
    const qint64 count = field.toLongLong(&isNumber);
    if (!isNumber || count < 0 || count > most)
        fail();
    return count;
}

int numberIn(const QString& field)
{
    bool isNumber = false;
    const int number = field.toInt(&isNumber);
    if (!isNumber)
        fail();
    return number;
}

std::optional<int> optionalNumber(const QStringList& fields, int place)
{
    bool isNumber = false;
    const int number = place < fields.size() ? fields.at(place).toInt(&isNumber) : 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

QDate dateIn(const QString& field)
{
    const QDate date = QDate::fromString(field, QStringLiteral("d/M/yyyy"));
    return date.isValid() ? date : QLocale::c().toDate(field, QStringLiteral("d-MMM-yyyy"));
}

QTime timeIn(const QString& field)
{
    return QTime::fromString(field.section(QLatin1Char('.'), 0, 0), QStringLiteral("H:m:s"));
}

/// "15:22:05 31/12/1999"; some sources write the date first, or the month as a word.
QDateTime baseTimeIn(const QStringList& fields)
{
    QDate date;
    QTime time;
    for (const QString& field : fields) {
        date = date.isValid() ? date : dateIn(field);
        time = time.isValid() ? time : timeIn(field);
    }
    return date.isValid() && time.isValid() ? QDateTime(date, time) : QDateTime();
}

int readRecordLine(TWfdbHeader& header, const QString& line)
{
    const QStringList fields = fieldsOf(line);
    // A name with a slash is a record of several segments.
    if (fields.size() < 2 || fields.at(0).contains(QLatin1Char('/')))
        fail();
    if (fields.size() > 2)
        header.frequency = frequencyIn(fields.at(2));
    if (fields.size() > 3)
        header.sampleCount = sampleCountIn(fields.at(3));
    header.baseTime = baseTimeIn(fields.mid(4, 2));
    const int count = numberIn(fields.at(1));
    if (count < 1 || count > TWfdbHeader::maxSignals ||
        !(header.frequency > 0.0 && header.frequency <= maxFrequency))
        fail();
    return count;
}

/// Whether the file can only lie in the folder of the header, on any system.
bool isPlainFileName(const QByteArray& name)
{
    return name != "." && name != ".." && std::none_of(name.begin(), name.end(), [](char c) {
               const auto byte = static_cast<unsigned char>(c);
               return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\' || c == ':';
           });
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

/// "200", "1000(512)", "1000.0(0)/mV"; returns whether the baseline was told. A gain of 0 stands for one that
/// nobody measured.
bool readGain(TWfdbSignal& signal, const QString& field)
{
    static const QRegularExpression form(QLatin1Char('^') + numberForm +
                                         QStringLiteral("(?:\\(([-+]?[0-9]+)\\))?(?:/(\\S+))?$"));
    const QRegularExpressionMatch match = form.match(field);
    if (!match.hasMatch())
        fail();
    const double gain = realIn(match.captured(1));
    if (gain != 0.0)
        signal.gain = gain;
    if (!match.captured(3).isEmpty())
        signal.units = match.captured(3).toLatin1();
    const bool hasBaseline = !match.captured(2).isEmpty();
    if (hasBaseline)
        signal.baseline = numberIn(match.captured(2));
    return hasBaseline;
}

TWfdbSignal readSignalLine(const QString& line)
{
    enum
    {
        File,
        Format,
        Gain,
        AdcZero = 4,
        InitialValue,
        Checksum,
        Description = 8
    };
    const QStringList fields = fieldsOf(line);
    TWfdbSignal signal;
    signal.fileName = fields.at(File).toLatin1();
    if (fields.size() <= Format || !isPlainFileName(signal.fileName))
        fail();
    readFormat(signal, fields.at(Format));
    const bool hasBaseline = fields.size() > Gain && readGain(signal, fields.at(Gain));
    if (!hasBaseline && fields.size() > AdcZero)
        signal.baseline = numberIn(fields.at(AdcZero));
    signal.initialValue = optionalNumber(fields, InitialValue);
    signal.checksum = optionalNumber(fields, Checksum);
    signal.description = fields.mid(Description).join(QLatin1Char(' ')).toLatin1();
    return signal;
}

/// 0 for a unit that is no voltage.
double millivoltsPerUnit(const QByteArray& units)
{
    // The sign of micro as ASCII, UTF-8 and Latin-1 have it.
    static const std::pair<const char*, double> voltages[] = {
        {"mV", 1.0}, {"uV", 1e-3}, {"\xc2\xb5V", 1e-3}, {"\xb5V", 1e-3}, {"nV", 1e-6}, {"V", 1e3}};
    for (const auto& [name, factor] : voltages) {
        if (units.compare(name, Qt::CaseInsensitive) == 0)
            return factor;
    }
    return 0.0;
}

} // namespace

bool TWfdbSignal::isVoltage() const
{
    return millivoltsPerUnit(units) > 0.0;
}

double TWfdbSignal::millivolts(int value) const
{
    const double factor = isVoltage() ? millivoltsPerUnit(units) : 1.0;
    return (static_cast<double>(value) - baseline) / gain * factor;
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
