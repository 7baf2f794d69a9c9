#include "study/TEcgFile.h"

#include "analysis/signals/Truncation.h"

#include <QtEndian>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

int checkedChannelCount(int channelCount, int samplingRate, bool create)
{
    if (channelCount < 1 || channelCount > velantor::maxChannels || samplingRate < 1 ||
        samplingRate > TSignal::maxSamplingRate)
        TRecordFile::fail(TRecordFile::modeFor(create));
    return channelCount;
}

} // namespace

TEcgFile::TEcgFile(const QString& path, int channelCount, int samplingRate, int headerSize, bool create)
    : TSignal(samplesPerBlock, checkedChannelCount(channelCount, samplingRate, create), samplingRate),
      m_create(create),
      m_file(path, headerSize, channelCount * int(sizeof(qint16)), TRecordFile::modeFor(create))
{
    updateSampleCount();
}

TEcgFile::~TEcgFile()
{
    freeAllBlocks();
}

int TEcgFile::sample(int channel, int index)
{
    if (channel < 0 || channel >= channelCount() || index < 0 || index >= sampleCount())
        return 0;
    const TFrames& frames = framesOf(index / samplesPerBlock);
    const int frame = index % samplesPerBlock;
    return frame < frames.count ? qFromLittleEndian(frames.samples[frame * channelCount() + channel]) : 0;
}

void TEcgFile::readDoubles(int channel, int start, int count, double* out)
{
    if (count <= 0)
        return;
    std::fill_n(out, count, 0.0);
    if (channel < 0 || channel >= channelCount())
        return;
    const qint64 end = std::min<qint64>(qint64(start) + count, sampleCount());
    qint64 index = std::max(start, 0);
    while (index < end) {
        const qint64 blockStart = index / samplesPerBlock * samplesPerBlock;
        const TFrames& frames = framesOf(int(index / samplesPerBlock));
        const qint64 blockEnd = std::min(end, blockStart + frames.count);
        for (; index < blockEnd; ++index)
            out[index - start] =
                qFromLittleEndian(frames.samples[(index - blockStart) * channelCount() + channel]);
        index = blockStart + samplesPerBlock;
    }
}

short* TEcgFile::loadBlock(int channel, int block)
{
    if (channel < 0 || channel >= channelCount() || framesIn(block) == 0)
        return nullptr;
    auto buffer = std::make_unique_for_overwrite<short[]>(samplesPerBlock);
    fillBlock(channel, block, buffer.get());
    return buffer.release();
}

void TEcgFile::freeBlock(void* buffer)
{
    const std::unique_ptr<short[]> owned(static_cast<short*>(buffer));
}

void TEcgFile::addInterleaved(const char* data, int size)
{
    const int frames = framesToTake(size / (channelCount() * int(sizeof(qint16))));
    if (frames == 0)
        return;
    qToLittleEndian<qint16>(data, qsizetype(frames) * channelCount(), frameBuffer(frames));
    appendFrames(frames);
}

void TEcgFile::addPerChannel(const short* const* data, int n)
{
    interleave(framesToTake(n), [data](int channel, int i) { return data[channel][i]; });
}

void TEcgFile::addPerChannelDouble(const double* const* data, int n)
{
    interleave(framesToTake(n),
               [data](int channel, int i) { return velantor::truncated<qint16>(data[channel][i]); });
}

int TEcgFile::framesToTake(int n) const
{
    return m_create ? roomFor(n) : 0;
}

template <typename SampleOf> void TEcgFile::interleave(int frames, SampleOf sampleOf)
{
    qint16* out = frameBuffer(frames);
    for (int i = 0; i < frames; ++i)
        for (int channel = 0; channel < channelCount(); ++channel)
            *out++ = qToLittleEndian<qint16>(sampleOf(channel, i));
    appendFrames(frames);
}

/// Room for that many frames, kept from append to append.
qint16* TEcgFile::frameBuffer(int frames)
{
    const size_t needed = size_t(frames) * channelCount();
    if (m_interleaved.size() < needed)
        m_interleaved.resize(needed);
    return m_interleaved.data();
}

void TEcgFile::appendFrames(int n)
{
    if (n == 0 || !m_file.append(reinterpret_cast<const char*>(m_interleaved.data()), n))
        return;
    updateSampleCount();
    notifyListeners();
}

void TEcgFile::updateSampleCount()
{
    setSampleCount(int(std::min<qint64>(m_file.count(), std::numeric_limits<int>::max())));
}

/// Frames that the block has by now, 0 if there is no such block.
int TEcgFile::framesIn(int block) const
{
    if (block < 0)
        return 0;
    return int(std::clamp<qint64>(sampleCount() - qint64(block) * samplesPerBlock, 0, samplesPerBlock));
}

const TEcgFile::TFrames& TEcgFile::framesOf(int block)
{
    TFrames& frames = m_frames[block % cachedBlocks];
    if (frames.block != block) {
        frames.block = block;
        frames.count = 0;
        frames.samples.resize(size_t(samplesPerBlock) * channelCount());
    }
    const int missing = framesIn(block) - frames.count;
    if (missing > 0) {
        auto* out = reinterpret_cast<char*>(frames.samples.data() + size_t(frames.count) * channelCount());
        frames.count += m_file.read(qint64(block) * samplesPerBlock + frames.count, missing, out);
    }
    return frames;
}

void TEcgFile::fillBlock(int channel, int block, short* out)
{
    const TFrames& frames = framesOf(block);
    const qint16* in = frames.samples.data() + channel;
    for (int i = 0; i < frames.count; ++i, in += channelCount())
        out[i] = qFromLittleEndian(*in);
    std::fill(out + frames.count, out + samplesPerBlock, short(0));
}
