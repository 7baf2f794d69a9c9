#include "study/TEcgFile.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace {

TRecordFile::TMode modeFor(bool create)
{
    return create ? TRecordFile::TMode::Create : TRecordFile::TMode::Open;
}

int checkedChannelCount(int channelCount, int samplingRate, bool create)
{
    if (channelCount < 1 || channelCount > velantor::maxChannels || samplingRate <= 0)
        TRecordFile::fail(modeFor(create));
    return channelCount;
}

qint16 truncatedTo16Bits(double x)
{
    using Limits = std::numeric_limits<qint16>;
    return std::isnan(x) ? qint16(0) : qint16(std::clamp<double>(x, Limits::min(), Limits::max()));
}

} // namespace

TEcgFile::TEcgFile(const QString& path, int channelCount, int samplingRate, int headerSize, bool create)
    : TSignal(samplesPerBlock, checkedChannelCount(channelCount, samplingRate, create), samplingRate),
      m_create(create), m_file(path, headerSize, channelCount * int(sizeof(qint16)), modeFor(create))
{
    updateCounts();
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
    if (framesIn(block) < samplesPerBlock)
        m_openBlocks.push_back({channel, block, buffer.get()});
    return buffer.release();
}

void TEcgFile::freeBlock(void* buffer)
{
    const std::unique_ptr<short[]> owned(static_cast<short*>(buffer));
    std::erase_if(m_openBlocks, [&owned](const TOpenBlock& open) { return open.buffer == owned.get(); });
}

void TEcgFile::addInterleaved(const char* data, int size)
{
    const int frames = size / (channelCount() * int(sizeof(qint16)));
    if (!takesSamples(frames))
        return;
    qToLittleEndian<qint16>(data, qsizetype(frames) * channelCount(), frameBuffer(frames));
    appendFrames(frames);
}

void TEcgFile::addPerChannel(const short* const* data, int n)
{
    if (!takesSamples(n))
        return;
    qint16* out = frameBuffer(n);
    for (int i = 0; i < n; ++i)
        for (int channel = 0; channel < channelCount(); ++channel)
            *out++ = qToLittleEndian<qint16>(data[channel][i]);
    appendFrames(n);
}

void TEcgFile::addPerChannelDouble(const double* const* data, int n)
{
    if (!takesSamples(n))
        return;
    qint16* out = frameBuffer(n);
    for (int i = 0; i < n; ++i)
        for (int channel = 0; channel < channelCount(); ++channel)
            *out++ = qToLittleEndian(truncatedTo16Bits(data[channel][i]));
    appendFrames(n);
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
    if (!m_file.append(reinterpret_cast<const char*>(m_interleaved.data()), n))
        return;
    updateCounts();
    refillOpenBlocks();
    notifyListeners();
}

void TEcgFile::updateCounts()
{
    setSampleCount(int(std::min<qint64>(m_file.count(), std::numeric_limits<int>::max())));
    setBlockCount(sampleCount() / samplesPerBlock);
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

/// Blocks that were handed out before they were complete take in what has been appended.
void TEcgFile::refillOpenBlocks()
{
    for (const TOpenBlock& open : m_openBlocks)
        fillBlock(open.channel, open.block, open.buffer);
    std::erase_if(m_openBlocks,
                  [this](const TOpenBlock& open) { return framesIn(open.block) == samplesPerBlock; });
}
