#pragma once

#include "wfdb/TWfdbRecord.h"

#include <QByteArray>

#include <memory>
#include <vector>

/// The electrocardiogram of a WFDB record in the form that our studies have: 500 samples a second, 16 bits,
/// -300 to 300 mV. Sample i lies at i / 500 s from the first sample of the record. It is made block by block,
/// from front to back; a record of 500 samples a second comes through as it is.
class TResampledRecord
{
public:
    static constexpr int samplingRate = 500;
    static constexpr double range = 300.0; ///< millivolts
    static constexpr int resolutionBits = 16;
    /// Less would not be an electrocardiogram.
    static constexpr double minFrequency = 50.0;

    /// The voltages among the signals become channels. `record` is borrowed. Throws TError if it has none or
    /// more than 16, no samples, or a frequency below `minFrequency`.
    explicit TResampledRecord(const TWfdbRecord& record);
    ~TResampledRecord();
    TResampledRecord(const TResampledRecord&) = delete;
    TResampledRecord& operator=(const TResampledRecord&) = delete;

    int channelCount() const { return static_cast<int>(m_channelNames.size()); }
    /// Leads in our spelling, see LeadNames.h.
    const std::vector<QByteArray>& channelNames() const { return m_channelNames; }
    /// Samples of each channel: the record's, times 500 / its frequency, rounded.
    qint64 sampleCount() const { return m_sampleCount; }
    /// The next samples in counts, `count` or those that are left, into one array per channel. Returns how
    /// many. Throws TError if the conversion fails.
    int read(int count, short* const* out);

private:
    class TConverter;

    std::vector<QByteArray> m_channelNames;
    qint64 m_sampleCount = 0;
    qint64 m_position = 0;
    std::unique_ptr<TConverter> m_converter;
    std::vector<std::vector<double>> m_voltages;
};
