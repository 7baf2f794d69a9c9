#include "base/Error.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/WfdbInput.h"
#include "wfdb/TResampledRecord.h"
#include "wfdb/TWfdbAnnotations.h"

#include <cmath>

// A WFDB record of any bytes: header, two signal files, annotations. What opens must be sane and readable at
// and beyond its ends, and what becomes of it has the length that it tells.

namespace {

void checkSamples(const TWfdbRecord& record)
{
    const qint64 end = record.sampleCount();
    for (int signal = -1; signal <= record.signalCount(); ++signal) {
        for (const qint64 place : {qint64(-1), qint64(0), end / 2, end - 1, end}) {
            const bool isThere = signal >= 0 && signal < record.signalCount() && place >= 0 && place < end;
            const double value = record.millivolts(signal, place);
            require(!std::isnan(value), "a sample is a number");
            require(isThere || value == 0.0, "outside there is nothing");
        }
    }
}

void checkRecord(const TWfdbRecord& record, qint64 bytes)
{
    require(record.signalCount() >= 1 && record.signalCount() <= TWfdbHeader::maxSignals, "1 to 64 signals");
    require(record.header().frequency > 0.0 && std::isfinite(record.header().frequency), "a frequency");
    require(record.sampleCount() >= 0 && record.sampleCount() <= bytes, "no more samples than bytes");
    checkSamples(record);
}

void checkResampled(TResampledRecord& resampled)
{
    constexpr int block = 1000;
    // A frequency of 50 makes ten samples of one: enough is as good as all.
    constexpr qint64 most = 20000;
    std::vector<std::vector<short>> samples(static_cast<std::size_t>(resampled.channelCount()),
                                            std::vector<short>(block));
    std::vector<short*> out;
    for (std::vector<short>& channel : samples)
        out.push_back(channel.data());
    qint64 total = 0;
    for (int count = block; count == block && total < most; total += count)
        count = resampled.read(block, out.data());
    require(total == resampled.sampleCount() || total >= most, "all samples come");
}

void readRecord(const QString& path, qint64 bytes)
{
    try {
        const TWfdbRecord record(path);
        checkRecord(record, bytes);
        TResampledRecord resampled(record);
        checkResampled(resampled);
    } catch (const TError&) {
        return; // none of ours
    }
}

void readAnnotations(const QString& path, int bytes)
{
    try {
        const TWfdbAnnotations annotations = TWfdbAnnotations::read(path);
        require(static_cast<int>(annotations.list().size()) <= bytes / 2, "an annotation has two bytes");
        require(std::isfinite(annotations.frequency()) && annotations.frequency() >= 0.0, "a frequency");
    } catch (const TError&) {
        return; // broken
    }
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static const TScratchFolder folder;
    const TWfdbInput files = TWfdbInput::fromBytes(input);
    require(files.write(folder.path()), "the scratch folder takes the files");
    readRecord(folder.path("r"), input.size());
    readAnnotations(folder.path("r.atr"), files.annotations.size());
}
