#include "analysis/signals/TSignalWindow.h"

#include "analysis/signals/TSignal.h"

namespace {

void unlockNeighbourhood(TSignal* source, const short* const (&blocks)[3], int channel, int block)
{
    for (int i = 0; i < 3; ++i) {
        if (blocks[i])
            source->unlockBlock(channel, block - 1 + i);
    }
}

} // namespace

TSignalWindow::TSignalWindow(TSignal* source) : m_blockSize(source->blockSize()), m_source(source) {}

TSignalWindow::~TSignalWindow()
{
    unlockNeighbourhood(m_source, {m_previous, m_current, m_next}, m_channel, m_block);
}

void TSignalWindow::move(int block, int channel)
{
    // The new blocks are locked first, so that those which stay in the window are not evicted between.
    const short* const held[3] = {m_previous, m_current, m_next};
    m_previous = m_source->lockBlock(channel, block - 1);
    m_current = m_source->lockBlock(channel, block);
    m_next = m_source->lockBlock(channel, block + 1);
    unlockNeighbourhood(m_source, held, m_channel, m_block);
    m_channel = channel;
    m_block = block;
}
