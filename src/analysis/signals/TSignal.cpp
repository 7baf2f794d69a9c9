#include "analysis/signals/TSignal.h"

#include "analysis/signals/Truncation.h"

#include <QScopeGuard>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int maxBlockSize = 1 << 24;
constexpr int maxResolutionBits = 64;
constexpr std::size_t maxLoadedBlocks = 1024;

} // namespace

TSignal::TSignal(int blockSize, int channelCount, int samplingRate)
    : m_channelCount(std::clamp(channelCount, 0, velantor::maxChannels)),
      m_blockSize(std::clamp(blockSize, 1, maxBlockSize)), m_blockTables(m_channelCount),
      m_samplingRate(std::clamp(samplingRate, 1, maxSamplingRate))
{
    for (int i = 0; i < m_channelCount; ++i)
        m_channels[i] = std::make_unique<TChannel>(this, i);
    updateCountValue();
}

TSignal::~TSignal()
{
    Q_ASSERT(m_loadedBlocks.empty());
}

void TSignal::addInterleaved(const char*, int)
{
    notifyListeners();
}

void TSignal::addPerChannel(const short* const*, int)
{
    notifyListeners();
}

void TSignal::addPerChannelDouble(const double* const*, int)
{
    notifyListeners();
}

TChannel* TSignal::channel(int index) const
{
    return index >= 0 && index < m_channelCount ? m_channels[index].get() : nullptr;
}

TChannel* TSignal::channelByName(const char* name) const
{
    for (int i = 0; i < m_channelCount; ++i) {
        if (m_channels[i]->name() == name)
            return m_channels[i].get();
    }
    return nullptr;
}

void TSignal::setResolutionBits(int bits)
{
    m_resolutionBits = std::clamp(bits, 1, maxResolutionBits);
    updateCountValue();
}

void TSignal::setRange(double min, double max)
{
    m_rangeMin = min;
    m_rangeMax = max;
    updateCountValue();
}

void TSignal::updateCountValue()
{
    m_countValue = std::ldexp(m_rangeMax - m_rangeMin, -m_resolutionBits);
}

void TSignal::takeFormOf(const TSignal& other)
{
    for (int i = 0; i < std::min(m_channelCount, other.m_channelCount); ++i)
        m_channels[i]->setName(other.m_channels[i]->name());
    setResolutionBits(other.m_resolutionBits);
    setRange(other.m_rangeMin, other.m_rangeMax);
}

double TSignal::timeOf(int index) const
{
    return static_cast<double>(index) / m_samplingRate;
}

int TSignal::indexOf(double t) const
{
    return velantor::truncated<int>(m_samplingRate * t + 0.5);
}

void TSignal::addListener(TSignalListener* listener)
{
    if (listener && std::find(m_listeners.begin(), m_listeners.end(), listener) == m_listeners.end())
        m_listeners.push_back(listener);
}

void TSignal::removeListener(TSignalListener* listener)
{
    const auto found = std::find(m_listeners.begin(), m_listeners.end(), listener);
    if (!listener || found == m_listeners.end())
        return;
    if (m_notificationDepth > 0)
        *found = nullptr;
    else
        m_listeners.erase(found);
}

void TSignal::notifyListeners()
{
    // By index and up to the present count: a listener may add listeners, which moves the array.
    ++m_notificationDepth;
    const auto done = qScopeGuard([this] {
        if (--m_notificationDepth == 0)
            std::erase(m_listeners, nullptr);
    });
    for (std::size_t i = 0, count = m_listeners.size(); i < count; ++i) {
        if (m_listeners[i])
            m_listeners[i]->signalChanged();
    }
}

int TSignal::roomFor(int frames) const
{
    return std::clamp(frames, 0, std::numeric_limits<int>::max() - m_sampleCount);
}

void TSignal::setSampleCount(int count)
{
    if (!m_loadedBlocks.empty() && m_sampleCount % m_blockSize != 0)
        forgetBlock(m_sampleCount / m_blockSize);
    m_sampleCount = std::max(count, 0);
    m_blockCount = m_sampleCount / m_blockSize;
}

const short* TSignal::lockBlock(int channel, int block)
{
    if (!isBlock(channel, block))
        return nullptr;
    if (!entryOf(channel, block).buffer) {
        if (m_loadedBlocks.size() > maxLoadedBlocks)
            evictOneBlock();
        short* const buffer = loadBlock(channel, block);
        if (!buffer)
            return nullptr;
        entryOf(channel, block) = {buffer, 0, false};
        m_loadedBlocks.emplace_back(channel, block);
    }
    TBlockEntry& entry = entryOf(channel, block);
    ++entry.useCount;
    return entry.buffer;
}

void TSignal::unlockBlock(int channel, int block)
{
    // Not by the count of blocks, which may have shrunk since the block was locked.
    if (channel < 0 || channel >= m_channelCount || block < 0 ||
        static_cast<std::size_t>(block) >= m_blockTables[channel].size())
        return;
    TBlockEntry& entry = m_blockTables[channel][block];
    if (entry.useCount > 0)
        --entry.useCount;
    if (entry.stale && entry.useCount == 0) {
        freeEntry(entry);
        m_loadedBlocks.remove({channel, block});
    }
}

void TSignal::trimBlocks(bool roundUp)
{
    m_blockCount = m_sampleCount / m_blockSize;
    if (roundUp && m_sampleCount % m_blockSize != 0)
        ++m_blockCount;
    m_loadedBlocks.remove_if([this](const auto& loaded) {
        TBlockEntry& entry = m_blockTables[loaded.first][loaded.second];
        if (entry.useCount > 0)
            return false;
        freeEntry(entry);
        return true;
    });
}

void TSignal::freeAllBlocks()
{
    for (const auto& [channel, block] : m_loadedBlocks)
        freeEntry(m_blockTables[channel][block]);
    m_loadedBlocks.clear();
}

bool TSignal::isBlock(int channel, int block) const
{
    return channel >= 0 && channel < m_channelCount && block >= 0 && block < m_blockCount;
}

TSignal::TBlockEntry& TSignal::entryOf(int channel, int block)
{
    auto& table = m_blockTables[channel];
    if (static_cast<std::size_t>(block) >= table.size())
        table.resize(block + 1);
    return table[block];
}

void TSignal::evictOneBlock()
{
    const auto unused =
        std::find_if(m_loadedBlocks.begin(), m_loadedBlocks.end(), [this](const auto& loaded) {
            return m_blockTables[loaded.first][loaded.second].useCount == 0;
        });
    if (unused == m_loadedBlocks.end())
        return;
    freeEntry(m_blockTables[unused->first][unused->second]);
    m_loadedBlocks.erase(unused);
}

void TSignal::freeEntry(TBlockEntry& entry)
{
    freeBlock(entry.buffer);
    entry = {};
}

/// A block that was rounded up to and read before it was full must be read again.
void TSignal::forgetBlock(int block)
{
    for (int channel = 0; channel < m_channelCount; ++channel) {
        auto& table = m_blockTables[channel];
        if (static_cast<std::size_t>(block) >= table.size() || !table[block].buffer)
            continue;
        table[block].stale = true;
        if (table[block].useCount == 0) {
            freeEntry(table[block]);
            m_loadedBlocks.remove({channel, block});
        }
    }
}
