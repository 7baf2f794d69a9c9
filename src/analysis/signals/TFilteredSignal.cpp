#include "analysis/signals/TFilteredSignal.h"

#include "analysis/signals/TBlockProcessor.h"
#include "analysis/signals/TSignalWindow.h"

#include <algorithm>

TFilteredSignal::TFilteredSignal(TSignal* source)
    : TSignal(source->blockSize(), source->channelCount(), source->samplingRate()), m_source(source)
{
    takeFormOf(*source);
    setStorageBits(source->storageBits());
    followSource();
    source->addListener(this);
}

TFilteredSignal::TFilteredSignal(TSignal* source, TBlockProcessor* processor) : TFilteredSignal(source)
{
    m_processors.fill(processor);
}

TFilteredSignal::TFilteredSignal(TSignal* source, TBlockProcessor* const* perChannel)
    : TFilteredSignal(source)
{
    std::copy(perChannel, perChannel + channelCount(), m_processors.begin());
}

TFilteredSignal::~TFilteredSignal()
{
    m_source->removeListener(this);
    freeAllBlocks();
}

void TFilteredSignal::signalChanged()
{
    followSource();
}

void TFilteredSignal::followSource()
{
    setSampleCount(m_source->sampleCount());
    setBlockCount(m_source->blockCount());
}

int TFilteredSignal::sample(int channel, int index)
{
    double value = 0.0;
    readDoubles(channel, index, 1, &value);
    return static_cast<int>(value);
}

void TFilteredSignal::readDoubles(int channel, int start, int count, double* out)
{
    const qint64 wanted = static_cast<qint64>(start) + std::max(count, 0);
    // A filter rings on behind the end of the signal, within its last block.
    const qint64 end = std::clamp<qint64>(sampleCount(), start, wanted);
    std::fill(out + (end - start), out + (wanted - start), 0.0);
    for (qint64 index = start; index < end;) {
        // Before the start the quotient says block 0 as well, so what is negative is passed over in one
        // piece.
        const int block = index < 0 ? -1 : static_cast<int>(index / blockSize());
        const qint64 blockEnd = (static_cast<qint64>(block) + 1) * blockSize();
        const int run = static_cast<int>(std::min(end, blockEnd) - index);
        if (const short* const samples = lockBlock(channel, block)) {
            const short* const from = samples + index % blockSize();
            std::copy(from, from + run, out);
            unlockBlock(channel, block);
        } else {
            std::fill(out, out + run, 0.0);
        }
        out += run;
        index += run;
    }
}

short* TFilteredSignal::loadBlock(int channel, int block)
{
    if (channel < 0 || channel >= channelCount() || block < 0 || block >= blockCount())
        return nullptr;
    auto buffer = std::make_unique<short[]>(blockSize());
    if (TBlockProcessor* const processor = m_processors[channel]) {
        TSignalWindow window(m_source);
        window.move(block, channel);
        processor->process(window, buffer.get());
    } else {
        copyBlock(channel, block, buffer.get());
    }
    return buffer.release();
}

void TFilteredSignal::copyBlock(int channel, int block, short* out)
{
    const short* const samples = m_source->lockBlock(channel, block);
    if (!samples)
        return;
    std::copy(samples, samples + blockSize(), out);
    m_source->unlockBlock(channel, block);
}

void TFilteredSignal::freeBlock(void* buffer)
{
    delete[] static_cast<short*>(buffer);
}
