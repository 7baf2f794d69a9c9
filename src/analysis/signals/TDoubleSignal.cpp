#include "analysis/signals/TDoubleSignal.h"

#include "analysis/signals/Truncation.h"

#include <cstring>

namespace {

constexpr int bitsOfDouble = 64;

} // namespace

TDoubleSignal::TDoubleSignal(int blockSize, int capacity, int channelCount, int samplingRate)
    : TSignal(blockSize, channelCount, samplingRate), m_rings(this->channelCount(), capacity)
{
    setStorageBits(bitsOfDouble);
    setResolutionBits(bitsOfDouble);
}

TDoubleSignal::~TDoubleSignal()
{
    freeAllBlocks();
}

int TDoubleSignal::sample(int channel, int index)
{
    if (channel < 0 || channel >= channelCount() || !m_rings.holds(index, sampleCount()))
        return 0;
    return velantor::truncated<int>(m_rings.at(channel, index));
}

void TDoubleSignal::readDoubles(int channel, int start, int count, double* out)
{
    if (count <= 0)
        return;
    if (channel < 0 || channel >= channelCount())
        std::fill(out, out + count, 0.0);
    else
        m_rings.read(channel, start, count, sampleCount(), out, [](double sample) { return sample; });
}

short* TDoubleSignal::loadBlock(int channel, int block)
{
    if (channel < 0 || channel >= channelCount() || block < 0 || block >= blockCount())
        return nullptr;
    auto buffer = std::make_unique<short[]>(blockSize());
    if (m_rings.placeOfBlock(block, blockCount(), blockSize()) >= 0)
        m_rings.read(channel, block * blockSize(), blockSize(), sampleCount(), buffer.get(),
                     velantor::truncated<short>);
    return buffer.release();
}

void TDoubleSignal::freeBlock(void* buffer)
{
    delete[] static_cast<short*>(buffer);
}

template <typename SampleOf> void TDoubleSignal::append(int frames, SampleOf sampleOf)
{
    frames = roomFor(frames);
    if (frames == 0)
        return;
    m_rings.write(sampleCount(), frames, sampleOf);
    setSampleCount(sampleCount() + frames);
    notifyListeners();
}

void TDoubleSignal::addInterleaved(const char* data, int size)
{
    const int channels = channelCount();
    if (channels == 0 || size < 0)
        return;
    append(size / (static_cast<int>(sizeof(double)) * channels), [data, channels](int channel, int frame) {
        double sample = 0.0; // the bytes may lie at any address
        std::memcpy(&sample, data + (static_cast<std::size_t>(frame) * channels + channel) * sizeof(double),
                    sizeof(double));
        return sample;
    });
}

void TDoubleSignal::addPerChannel(const short* const* data, int n)
{
    append(n, [data](int channel, int frame) { return double(data[channel][frame]); });
}

void TDoubleSignal::addPerChannelDouble(const double* const* data, int n)
{
    append(n, [data](int channel, int frame) { return data[channel][frame]; });
}
