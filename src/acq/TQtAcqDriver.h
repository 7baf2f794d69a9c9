#pragma once

#include "acq/TAcqDriver.h"

#include <QElapsedTimer>
#include <QVector>

#include <memory>

class TQtAcqDriverThread;

/// The driver that pumps on a thread of its own. Data blocks arrive by the event loop of the thread that owns
/// the driver; for pulses and failures the pump waits until the listeners have been told.
class TQtAcqDriver : public TAcqDriver
{
    Q_OBJECT

public:
    TQtAcqDriver(TAcqDevice* device, TSignal* signal);
    /// Stops. Not from inside a callback, whose return the pump waits for.
    ~TQtAcqDriver() override;

    void start() override;
    /// Waits for the pump to end and never needs the event loop for that. From inside a pacemakerCallback or
    /// errorCallback it only asks the pump to end, which waits for that very callback; the destructor or a
    /// later call waits.
    void stop() override;
    void resetDevice() override;
    bool isChannelSaturated(int channel) override;
    bool isElectrodeOff(const char* name) override;
    double batteryVoltage() override;
    /// False while the reader of the device fails, and when no block has followed the last one for the
    /// longest silence. A device that has not sent anything yet is not missed.
    bool isConnected() override;

    /// Milliseconds; at first 3000.
    void setLongestSilence(int ms) { m_longestSilence = ms; }

    /// How many blocks may wait for the event loop before the rest stays with the device; 0, the default, for
    /// any number. For replay at full speed, where nothing else bounds the memory. Before the start.
    void setPendingBlockLimit(int blocks);
    /// The greatest block in frames, in place of five seconds; never less than a tenth of a second. For
    /// replay at full speed that comes in the steps of a live device. Before the start.
    void setLargestBlock(int frames);

private Q_SLOTS:
    void appendBlock(const QVector<char>& block);
    void reportPulse(int sampleOffset);
    void reportError();

private:
    void connectThread();
    void disconnectThread();
    void reportMissingThread();

    std::unique_ptr<TQtAcqDriverThread> m_thread;
    /// Receives what the pump blocks for. Calls that are posted to it can be taken away, which releases the
    /// pump, without touching the data blocks on their way to the driver.
    QObject m_blockingReceiver;
    QMetaObject::Connection m_connections[3];
    int m_blockingCallDepth = 0;
    /// Valid from the first block on.
    QElapsedTimer m_sinceBlock;
    int m_longestSilence = 3000;
    bool m_started = false;
};
