#include "wfdb/TWfdbVoltages.h"

#include <algorithm>

TWfdbVoltages::TWfdbVoltages(const TWfdbRecord& record, const std::vector<int>& signalPlaces, qint64 lead,
                             double range)
    : m_record(record), m_range(range), m_position(-lead),
      m_samples(static_cast<std::size_t>(record.signalCount()))
{
    for (const int place : signalPlaces)
        m_signals.push_back({place, 0.0});
    findFirstValues();
}

void TWfdbVoltages::findFirstValues()
{
    constexpr int block = 4096;
    std::vector<TSource*> wanting;
    for (TSource& source : m_signals)
        wanting.push_back(&source);
    for (qint64 first = 0; first < m_record.sampleCount() && !wanting.empty(); first += block) {
        readRecord(first, block);
        std::erase_if(wanting, [this](TSource* source) {
            const std::vector<short>& samples = m_samples[static_cast<std::size_t>(source->place)];
            const auto found = std::find_if(samples.begin(), samples.end(),
                                            [](short each) { return each != TWfdbSignalFile::missing; });
            if (found != samples.end())
                source->last = value(*source, *found);
            return found != samples.end();
        });
    }
}

double TWfdbVoltages::value(const TSource& source, short sample) const
{
    const TWfdbSignal& signal = m_record.header().channels[static_cast<std::size_t>(source.place)];
    return std::clamp(signal.millivolts(sample), -m_range, m_range);
}

void TWfdbVoltages::readRecord(qint64 first, int count)
{
    std::vector<short*> out;
    for (std::vector<short>& samples : m_samples) {
        samples.resize(static_cast<std::size_t>(count));
        out.push_back(samples.data());
    }
    m_record.read(first, count, out.data());
}

void TWfdbVoltages::read(int count, double* const* out)
{
    readRecord(m_position, count);
    for (std::size_t i = 0; i < m_signals.size(); ++i) {
        TSource& source = m_signals[i];
        const std::vector<short>& samples = m_samples[static_cast<std::size_t>(source.place)];
        std::transform(samples.begin(), samples.end(), out[i], [&](short sample) {
            if (sample != TWfdbSignalFile::missing)
                source.last = value(source, sample);
            return source.last;
        });
    }
    m_position += count;
}
