#include "wfdb/TResampledRecord.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "wfdb/LeadNames.h"
#include "wfdb/TWfdbVoltages.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

/// In millivolts.
constexpr double countValue = 2.0 * TResampledRecord::range / (1 << TResampledRecord::resolutionBits);

std::vector<int> voltagesOf(const TWfdbHeader& header)
{
    std::vector<int> places;
    for (std::size_t i = 0; i < header.channels.size(); ++i) {
        if (header.channels[i].isVoltage())
            places.push_back(static_cast<int>(i));
    }
    if (places.empty())
        throw TError("WFDB record has no ECG");
    if (places.size() > velantor::maxChannels)
        throw TError("WFDB record has more than 16 signals");
    return places;
}

void checkRecord(const TWfdbRecord& record)
{
    if (record.sampleCount() == 0)
        throw TError("WFDB record has no samples");
    if (record.header().frequency < TResampledRecord::minFrequency)
        throw TError("WFDB record has less than 50 samples a second");
}

double outputPerInput(const TWfdbRecord& record)
{
    return TResampledRecord::samplingRate / record.header().frequency;
}

/// Samples to put before the record: more than the filter is long, so that it has settled, and a number that
/// lasts as long as some whole number of our samples, so that the record begins on one of them. Frequencies
/// of many digits come as near as a thousandth of a sample.
qint64 leadOf(double ratio)
{
    constexpr double filterLength = 1000.0;
    constexpr int choices = 5000;
    const auto least = static_cast<qint64>(std::ceil(filterLength * std::max(1.0, 1.0 / ratio)));
    qint64 best = least;
    double bestDistance = 1.0;
    for (qint64 lead = least; lead < least + choices; ++lead) {
        const double length = static_cast<double>(lead) * ratio;
        const double distance = std::abs(length - std::round(length));
        if (distance < bestDistance) {
            bestDistance = distance;
            best = lead;
        }
    }
    return best;
}

short countOf(double millivolts)
{
    return static_cast<short>(std::lround(std::clamp(millivolts / countValue, -32768.0, 32767.0)));
}

std::vector<double*> startsAt(std::vector<std::vector<double>>& channels, std::size_t place)
{
    std::vector<double*> starts(channels.size());
    std::transform(channels.begin(), channels.end(), starts.begin(),
                   [place](std::vector<double>& channel) { return channel.data() + place; });
    return starts;
}

} // namespace

/// The stream of voltages at our sampling rate.
class TResampledRecord::TConverter
{
public:
    TConverter(const TWfdbRecord& record, const std::vector<int>& signalPlaces)
        : TConverter(record, signalPlaces, outputPerInput(record))
    {
    }

    /// The next `count` samples, into arrays of that size at least.
    void read(int count, std::vector<std::vector<double>>& out)
    {
        if (!m_soxr)
            m_voltages.read(count, startsAt(out, 0).data());
        else
            convert(count, out);
    }

private:
    struct TSoxrDeleter
    {
        void operator()(soxr* resampler) const { soxr_delete(resampler); }
    };

    static constexpr int blockSize = 4096;

    TConverter(const TWfdbRecord& record, const std::vector<int>& signalPlaces, double ratio)
        : m_voltages(record, signalPlaces, ratio == 1.0 ? 0 : leadOf(ratio), range),
          m_input(signalPlaces.size(), std::vector<double>(blockSize))
    {
        if (ratio == 1.0)
            return;
        open(record.header().frequency);
        std::vector<std::vector<double>> passedOver(signalPlaces.size(), std::vector<double>(blockSize));
        auto left = std::llround(static_cast<double>(leadOf(ratio)) * ratio);
        for (; left > 0; left -= blockSize)
            convert(static_cast<int>(std::min<long long>(left, blockSize)), passedOver);
    }

    void open(double frequency)
    {
        const soxr_io_spec_t format = soxr_io_spec(SOXR_FLOAT64_S, SOXR_FLOAT64_S);
        const soxr_quality_spec_t quality =
            soxr_quality_spec(SOXR_VHQ | SOXR_LINEAR_PHASE, SOXR_HI_PREC_CLOCK);
        const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
        soxr_error_t error = nullptr;
        m_soxr.reset(soxr_create(frequency, samplingRate, static_cast<unsigned>(m_input.size()), &error,
                                 &format, &quality, &oneThread));
        check(!error && m_soxr);
    }

    void convert(int count, std::vector<std::vector<double>>& out)
    {
        const auto wanted = static_cast<std::size_t>(count);
        for (std::size_t done = 0; done < wanted;) {
            if (m_used == blockSize)
                refill();
            const auto in = startsAt(m_input, m_used);
            auto to = startsAt(out, done);
            std::size_t taken = 0;
            std::size_t made = 0;
            check(!soxr_process(m_soxr.get(), in.data(), blockSize - m_used, &taken, to.data(), wanted - done,
                                &made));
            check(taken > 0 || made > 0);
            m_used += taken;
            done += made;
        }
    }

    void refill()
    {
        m_voltages.read(blockSize, startsAt(m_input, 0).data());
        m_used = 0;
    }

    static void check(bool isFine)
    {
        if (!isFine)
            throw TError("Cannot resample WFDB record");
    }

    TWfdbVoltages m_voltages;
    std::vector<std::vector<double>> m_input;
    std::size_t m_used = blockSize;
    /// Null if nothing is to be converted.
    std::unique_ptr<soxr, TSoxrDeleter> m_soxr;
};

TResampledRecord::TResampledRecord(const TWfdbRecord& record)
{
    checkRecord(record);
    const std::vector<int> places = voltagesOf(record.header());
    std::vector<QByteArray> descriptions(places.size());
    std::transform(places.begin(), places.end(), descriptions.begin(), [&record](int place) {
        return record.header().channels[static_cast<std::size_t>(place)].description;
    });
    m_channelNames = ::channelNames(descriptions);
    m_sampleCount = std::llround(static_cast<double>(record.sampleCount()) * outputPerInput(record));
    m_converter = std::make_unique<TConverter>(record, places);
    m_voltages.resize(places.size());
}

TResampledRecord::~TResampledRecord() = default;

int TResampledRecord::read(int count, short* const* out)
{
    count = static_cast<int>(std::min<qint64>(count, m_sampleCount - m_position));
    if (count <= 0)
        return 0;
    for (std::vector<double>& channel : m_voltages)
        channel.resize(static_cast<std::size_t>(count));
    m_converter->read(count, m_voltages);
    for (std::size_t i = 0; i < m_voltages.size(); ++i)
        std::transform(m_voltages[i].begin(), m_voltages[i].end(), out[i], countOf);
    m_position += count;
    return count;
}
