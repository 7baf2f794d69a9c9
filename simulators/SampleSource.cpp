#include "simulators/SampleSource.h"

#include "base/Error.h"
#include "wfdb/TWfdbRecord.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace {

using namespace sim;

constexpr int fileChannels = 14;
/// Places of I, II, III, V1 to V6, CM5, CR5 in a frame of a 14-channel file.
constexpr int fileChannelOf[] = {0, 1, 2, 6, 7, 8, 9, 10, 11, 12, 13};
constexpr const char* leadNames[] = {"I", "II", "III", "V1", "V2", "V3", "V4", "V5", "V6", "CM5", "CR5"};
constexpr int fileRate = 500;

class TPatternSource : public TSampleSource
{
public:
    TSamples frame(std::int64_t index) const override
    {
        TSamples samples;
        for (std::size_t channel = 0; channel < samples.size(); ++channel)
            samples[channel] = patternSample(static_cast<int>(channel), index);
        return samples;
    }
};

class TFileSource : public TSampleSource
{
public:
    TFileSource(const QString& path, int framesPerSecond) : m_repeat(framesPerSecond / fileRate)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw TError("Cannot open file");
        m_bytes = file.readAll();
        m_frames = m_bytes.size() / (fileChannels * 2);
        if (m_frames == 0)
            throw TError("Cannot read file");
    }

    TSamples frame(std::int64_t index) const override
    {
        const char* at = m_bytes.constData() + index / m_repeat % m_frames * fileChannels * 2;
        TSamples samples;
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = qFromLittleEndian<qint16>(at + fileChannelOf[i] * 2);
        return samples;
    }

private:
    QByteArray m_bytes;
    std::int64_t m_frames = 0;
    int m_repeat;
};

class TRecordSource : public TSampleSource
{
public:
    TRecordSource(const QString& path, int framesPerSecond, double rangeMillivolts)
        : m_record(path), m_samplesPerFrame(m_record.header().frequency / framesPerSecond),
          m_millivoltsPerCount(rangeMillivolts / 32768.0)
    {
        if (m_record.sampleCount() == 0)
            throw TError("Cannot read WFDB signal file");
        for (std::size_t i = 0; i < m_signals.size(); ++i)
            m_signals[i] = signalOf(leadNames[i]);
    }

    TSamples frame(std::int64_t index) const override
    {
        const double position = std::fmod(static_cast<double>(index) * m_samplesPerFrame,
                                          static_cast<double>(m_record.sampleCount()));
        TSamples samples;
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = sampleAt(m_signals[i], position);
        return samples;
    }

private:
    /// -1 for a lead that the record does not have.
    int signalOf(const QByteArray& lead) const
    {
        for (int i = 0; i < m_record.signalCount(); ++i) {
            const QByteArray& name = m_record.header().channels[static_cast<std::size_t>(i)].description;
            if (name.compare(lead, Qt::CaseInsensitive) == 0)
                return i;
        }
        return -1;
    }

    /// Between two samples of the record along the straight line.
    std::int16_t sampleAt(int signal, double position) const
    {
        const auto before = static_cast<qint64>(position);
        const double share = position - static_cast<double>(before);
        const double millivolts = m_record.millivolts(signal, before) * (1.0 - share) +
                                  m_record.millivolts(signal, before + 1) * share;
        return static_cast<std::int16_t>(
            std::lround(std::clamp(millivolts / m_millivoltsPerCount, -32768.0, 32767.0)));
    }

    TWfdbRecord m_record;
    std::array<int, 11> m_signals{};
    double m_samplesPerFrame;
    double m_millivoltsPerCount;
};

} // namespace

std::int16_t sim::patternSample(int channel, std::int64_t index)
{
    // A ramp with a step that is prime to its span, so that the pattern repeats only after all of it.
    constexpr std::int64_t span = 60001;
    return static_cast<std::int16_t>((index * 7919 + channel * 4801) % span - span / 2);
}

std::unique_ptr<TSampleSource> sim::makeSampleSource(const QString& source, int framesPerSecond,
                                                     double rangeMillivolts)
{
    if (source == QLatin1String("pattern"))
        return std::make_unique<TPatternSource>();
    const QFileInfo file(source);
    const QString header = file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1String(".hea");
    if (file.suffix() == QLatin1String("dat") && !QFile::exists(header))
        return std::make_unique<TFileSource>(source, framesPerSecond);
    const bool hasEnding = file.suffix() == QLatin1String("dat") || file.suffix() == QLatin1String("hea");
    return std::make_unique<TRecordSource>(hasEnding ? header : source, framesPerSecond, rangeMillivolts);
}
