#include "acq/TAcqDriver.h"

#include "acq/TAcqListener.h"
#include "analysis/signals/TSignal.h"

TAcqDriver::TAcqDriver(TAcqDevice* device, TSignal* signal)
    : m_device(device), m_signal(signal), m_channelMuted(static_cast<std::size_t>(signal->channelCount()))
{
}

TAcqDriver::~TAcqDriver() = default;

void TAcqDriver::addListener(TAcqListener* listener)
{
    m_listeners.push_back(listener);
}

void TAcqDriver::setChannelMuted(int channel, bool muted)
{
    if (channel >= 0 && static_cast<std::size_t>(channel) < m_channelMuted.size())
        m_channelMuted[channel].store(muted ? 1 : 0, std::memory_order_relaxed);
}

bool TAcqDriver::isChannelMuted(int channel) const
{
    return channel >= 0 && static_cast<std::size_t>(channel) < m_channelMuted.size() &&
           m_channelMuted[channel].load(std::memory_order_relaxed) != 0;
}

template <typename Tell> void TAcqDriver::notify(Tell tell)
{
    // By index: a listener may add listeners, which moves the array.
    for (std::size_t i = 0, count = m_listeners.size(); i < count; ++i)
        tell(m_listeners[i]);
}

void TAcqDriver::notifyData()
{
    notify([this](TAcqListener* listener) { listener->dataCallback(this); });
}

void TAcqDriver::notifyPacemaker(int sampleOffset)
{
    notify([this, sampleOffset](TAcqListener* listener) { listener->pacemakerCallback(this, sampleOffset); });
}

void TAcqDriver::notifyError(const char* message)
{
    notify([this, message](TAcqListener* listener) { listener->errorCallback(this, message); });
}
