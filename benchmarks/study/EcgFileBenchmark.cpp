#include "study/TEcgFile.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr int channels = 14;
constexpr int rate = 500;
constexpr int framesPerAppend = 51;
constexpr int recordedBlocks = 440; // one hour

std::vector<short> frames(int count)
{
    std::vector<short> data(size_t(count) * channels);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = short(i * 31);
    return data;
}

void append(TEcgFile& file, const std::vector<short>& data)
{
    file.addInterleaved(reinterpret_cast<const char*>(data.data()), int(data.size() * sizeof(short)));
}

/// An hour of recording in a folder of its own.
class THour
{
public:
    THour()
    {
        TEcgFile file(path(), channels, rate, TEcgFile::defaultHeaderSize, true);
        const auto block = frames(file.blockSize());
        for (int i = 0; i < recordedBlocks; ++i)
            append(file, block);
    }

    QString path() const { return m_folder.filePath(QStringLiteral("hour")); }

private:
    QTemporaryDir m_folder;
};

void ecgFileAppend(benchmark::State& state)
{
    const QTemporaryDir folder;
    TEcgFile file(folder.filePath(QStringLiteral("file")), channels, rate, TEcgFile::defaultHeaderSize, true);
    const auto data = frames(framesPerAppend);
    for (auto _ : state)
        append(file, data);
    state.counters["times_real_time"] =
        benchmark::Counter(double(state.iterations()) * framesPerAppend / rate, benchmark::Counter::kIsRate);
}
// A fixed count keeps the file small: a quarter of an hour of recording.
BENCHMARK(ecgFileAppend)->Iterations(9000);

void ecgFileAppendPerChannel(benchmark::State& state)
{
    const QTemporaryDir folder;
    TEcgFile file(folder.filePath(QStringLiteral("file")), channels, rate, TEcgFile::defaultHeaderSize, true);
    const auto data = frames(framesPerAppend);
    std::vector<const short*> arrays;
    for (int channel = 0; channel < channels; ++channel)
        arrays.push_back(data.data() + channel * framesPerAppend);
    for (auto _ : state)
        file.addPerChannel(arrays.data(), framesPerAppend);
}
BENCHMARK(ecgFileAppendPerChannel)->Iterations(9000);

/// Every block of twelve leads, lead by lead within pages of ten blocks as a display goes.
void ecgFileLockBlockByPage(benchmark::State& state)
{
    const THour hour;
    for (auto _ : state) {
        TEcgFile file(hour.path(), channels, rate);
        for (int page = 0; page < recordedBlocks; page += 10)
            for (int channel = 0; channel < 12; ++channel)
                for (int block = page; block < page + 10; ++block) {
                    benchmark::DoNotOptimize(file.lockBlock(channel, block));
                    file.unlockBlock(channel, block);
                }
    }
    state.SetItemsProcessed(state.iterations() * recordedBlocks * 12);
}
BENCHMARK(ecgFileLockBlockByPage)->Unit(benchmark::kMillisecond);

/// The naive form: one read of the file for every channel of a block.
void ecgFileReadPerChannelNaive(benchmark::State& state)
{
    const THour hour;
    std::vector<short> all(size_t(TEcgFile::samplesPerBlock) * channels);
    for (auto _ : state) {
        QFile file(hour.path());
        if (!file.open(QIODevice::ReadOnly))
            state.SkipWithError("no file");
        for (int block = 0; block < recordedBlocks; ++block)
            for (int channel = 0; channel < 12; ++channel) {
                const std::unique_ptr<short[]> out(new short[TEcgFile::samplesPerBlock]);
                file.seek(4096 + qint64(block) * qint64(all.size() * sizeof(short)));
                file.read(reinterpret_cast<char*>(all.data()), qint64(all.size() * sizeof(short)));
                for (int i = 0; i < TEcgFile::samplesPerBlock; ++i)
                    out[i] = all[size_t(i) * channels + channel];
                benchmark::DoNotOptimize(out.get());
            }
    }
    state.SetItemsProcessed(state.iterations() * recordedBlocks * 12);
}
BENCHMARK(ecgFileReadPerChannelNaive)->Unit(benchmark::kMillisecond);

void ecgFileReadDoubles(benchmark::State& state)
{
    const THour hour;
    TEcgFile file(hour.path(), channels, rate);
    std::vector<double> out(10 * rate);
    int start = 0;
    for (auto _ : state) {
        for (int channel = 0; channel < channels; ++channel)
            file.readDoubles(channel, start, int(out.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        start = (start + int(out.size())) % file.sampleCount();
    }
}
BENCHMARK(ecgFileReadDoubles);

} // namespace
