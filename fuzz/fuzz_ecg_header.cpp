#include "base/Constants.h"
#include "fuzz/EcgInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ScratchFolder.h"
#include "study/StudyFiles.h"
#include "study/TEcgFile.h"

#include <array>
#include <cmath>
#include <limits>

// A samples file of any bytes: what opens must be sane and readable at and beyond its ends.

namespace {

constexpr int intMax = std::numeric_limits<int>::max();
constexpr int intMin = std::numeric_limits<int>::min();

void checkGeometry(const TEcgFile& ecg)
{
    require(ecg.channelCount() >= 1 && ecg.channelCount() <= velantor::maxChannels, "1 to 16 channels");
    require(ecg.samplingRate() > 0, "a positive rate");
    require(ecg.resolutionBits() >= 1 && ecg.resolutionBits() <= 32, "a resolution of 1 to 32 bits");
    require(std::isfinite(ecg.countValue()), "a count has a finite value");
    require(ecg.sampleCount() >= 0 && std::isfinite(ecg.duration()), "a length");
    require(ecg.channel(-1) == nullptr && ecg.channel(ecg.channelCount()) == nullptr, "no further channels");
}

std::array<int, 12> placesAroundEnds(const TEcgFile& ecg)
{
    const int end = ecg.sampleCount();
    const int block = TEcgFile::samplesPerBlock;
    return {intMin, -block, -1, 0, 1, block - 1, block, end / 2, end - 1, end, end + block, intMax};
}

void checkSamples(TEcgFile& ecg, int channel)
{
    std::array<double, 40> read{};
    constexpr int count = static_cast<int>(read.size());
    for (const int place : placesAroundEnds(ecg)) {
        const int start = place > intMax - count ? place : place - (place > intMin + count ? count / 2 : 0);
        ecg.readDoubles(channel, start, count, read.data());
        for (int i = 0; i < count && start <= intMax - i; ++i)
            require(read[static_cast<std::size_t>(i)] == ecg.sample(channel, start + i),
                    "all ways to a sample give the same");
    }
}

void checkPeaks(TEcgFile& ecg, int channel)
{
    std::array<int, 8> low{};
    std::array<int, 8> high{};
    for (const int place : placesAroundEnds(ecg)) {
        for (const int count : {0, 7, 64, TEcgFile::samplesPerBlock + 3, intMax}) {
            ecg.channel(channel)->peaks(place, count, low.data(), high.data(), 1, 7, count % 2 == 0);
            for (std::size_t i = 0; i < low.size(); ++i)
                require(low[i] <= high[i], "the least sample is not above the greatest");
        }
    }
}

void checkBlocks(TEcgFile& ecg, int channel)
{
    for (const int block : {-1, 0, ecg.blockCount() - 1, ecg.blockCount(), intMax}) {
        const short* samples = ecg.lockBlock(channel, block);
        require((samples != nullptr) == (block >= 0 && block < ecg.blockCount()),
                "the blocks are those counted");
        if (samples == nullptr)
            continue;
        for (int i = 0; i < ecg.blockSize(); ++i)
            require(samples[i] == ecg.sample(channel, block * ecg.blockSize() + i),
                    "a block has the samples");
        ecg.unlockBlock(channel, block);
    }
}

void checkChannel(TEcgFile& ecg, int channel)
{
    checkSamples(ecg, channel);
    checkBlocks(ecg, channel);
    if (ecg.channel(channel) != nullptr)
        checkPeaks(ecg, channel);
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static const TScratchFolder folder;
    const QString path = folder.path("fuzzed.vtecg");
    require(writeFile(path, ecgFileFromInput(input)), "the scratch folder takes the file");

    const std::unique_ptr<TEcgFile> ecg = openEcgFile(path);
    if (!ecg)
        return;
    checkGeometry(*ecg);
    for (const bool roundUp : {false, true}) {
        ecg->trimBlocks(roundUp);
        checkChannel(*ecg, 0);
        checkChannel(*ecg, ecg->channelCount() - 1);
    }
    checkSamples(*ecg, ecg->channelCount());
}
