#pragma once

#include <QObject>

#include <atomic>
#include <vector>

class TAcqDevice;
class TAcqListener;
class TSignal;

/// Carries the samples of a device into a signal and tells listeners of them. Lives on the main thread, as do
/// its signal and its listeners. Device and signal are borrowed and outlive the driver.
class TAcqDriver : public QObject
{
    Q_OBJECT

public:
    TAcqDriver(TAcqDevice* device, TSignal* signal);
    ~TAcqDriver() override;

    /// Begins the acquisition. Once per driver; later calls do nothing.
    virtual void start() = 0;
    /// Ends it. Afterwards nothing reaches the listeners but a block that was already under way.
    virtual void stop() = 0;
    virtual void resetDevice() = 0;
    /// By the channel's place in the fixed order.
    virtual bool isChannelSaturated(int channel) = 0;
    virtual bool isElectrodeOff(const char* name) = 0;
    /// Volts; 0 if unknown.
    virtual double batteryVoltage() = 0;
    /// Whether the device can be read. A wireless one that has gone out of reach is missed by its samples:
    /// its reader does not fail for a while.
    virtual bool isConnected() = 0;

    TAcqDevice* device() const { return m_device; }
    TSignal* signal() const { return m_signal; }

    /// Borrowed; told in the order of their coming.
    void addListener(TAcqListener* listener);

    /// A muted channel of the signal arrives as zeros. Out of range: nothing happens, not muted.
    void setChannelMuted(int channel, bool muted);
    bool isChannelMuted(int channel) const;

protected:
    /// One entry per channel of the signal, not zero if it is muted; written here, read by the pump.
    using TMuteFlags = std::vector<std::atomic<char>>;

    const TMuteFlags& channelMuted() const { return m_channelMuted; }

    void notifyData();
    void notifyPacemaker(int sampleOffset);
    void notifyError(const char* message);

private:
    /// `tell(listener)` for each, but not for those added meanwhile.
    template <typename Tell> void notify(Tell tell);

    TAcqDevice* const m_device;
    TSignal* const m_signal;
    std::vector<TAcqListener*> m_listeners;
    TMuteFlags m_channelMuted;
};
