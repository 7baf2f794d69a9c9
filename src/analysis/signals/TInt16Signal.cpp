#include "analysis/signals/TInt16Signal.h"

#include "analysis/signals/Truncation.h"

#include <cstring>

TInt16Signal::TInt16Signal(int blockSize, int capacity, int channelCount, int samplingRate)
    : TSignal(blockSize, channelCount, samplingRate), m_rings(this->channelCount(), capacity)
{
}

TInt16Signal::~TInt16Signal()
{
    freeAllBlocks();
}

int TInt16Signal::sample(int channel, int index)
{
    if (channel < 0 || channel >= channelCount() || !m_rings.holds(index, sampleCount()))
        return 0;
    return m_rings.at(channel, index);
}

void TInt16Signal::readDoubles(int channel, int start, int count, double* out)
{
    if (count <= 0)
        return;
    if (channel < 0 || channel >= channelCount())
        std::fill(out, out + count, 0.0);
    else
        m_rings.read(channel, start, count, sampleCount(), out, [](short sample) { return double(sample); });
}

short* TInt16Signal::loadBlock(int channel, int block)
{
    if (channel < 0 || channel >= channelCount() || block < 0 || block >= blockCount())
        return nullptr;
    auto buffer = std::make_unique<short[]>(blockSize());
    if (m_rings.placeOfBlock(block, blockCount(), blockSize()) >= 0)
        m_rings.read(channel, block * blockSize(), blockSize(), sampleCount(), buffer.get(),
                     [](short sample) { return sample; });
    return buffer.release();
}

void TInt16Signal::freeBlock(void* buffer)
{
    delete[] static_cast<short*>(buffer);
}

template <typename SampleOf> void TInt16Signal::append(int frames, SampleOf sampleOf)
{
    frames = roomFor(frames);
    if (frames == 0)
        return;
    m_rings.write(sampleCount(), frames, sampleOf);
    setSampleCount(sampleCount() + frames);
    notifyListeners();
}

void TInt16Signal::addInterleaved(const char* data, int size)
{
    const int channels = channelCount();
    if (channels == 0 || size < 0)
        return;
    append(size / (static_cast<int>(sizeof(short)) * channels), [data, channels](int channel, int frame) {
        short sample = 0; // the bytes may lie at an odd address
        std::memcpy(&sample, data + (static_cast<std::size_t>(frame) * channels + channel) * sizeof(short),
                    sizeof(short));
        return sample;
    });
}

void TInt16Signal::addPerChannel(const short* const* data, int n)
{
    append(n, [data](int channel, int frame) { return data[channel][frame]; });
}

void TInt16Signal::addPerChannelDouble(const double* const* data, int n)
{
    append(n, [data](int channel, int frame) { return velantor::truncated<short>(data[channel][frame]); });
}
