#include "acq/TQtAcqDriver.h"

#include "acq/TAcqDevice.h"
#include "acq/TQtAcqDriverThread.h"
#include "analysis/signals/TSignal.h"
#include "base/Text.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>

namespace {

constexpr int releasePeriodMs = 5;

} // namespace

TQtAcqDriver::TQtAcqDriver(TAcqDevice* device, TSignal* signal)
    : TAcqDriver(device, signal), m_thread(std::make_unique<TQtAcqDriverThread>(device, channelMuted())),
      m_blockingReceiver(this)
{
    qRegisterMetaType<QVector<char>>();
}

TQtAcqDriver::~TQtAcqDriver()
{
    Q_ASSERT_X(m_blockingCallDepth == 0, "TQtAcqDriver", "destroyed by a listener that the pump waits for");
    TQtAcqDriver::stop();
}

void TQtAcqDriver::start()
{
    if (m_started)
        return;
    m_started = true;
    connectThread();
    m_thread->start(QThread::InheritPriority);
    if (!m_thread->isRunning() && !m_thread->isFinished())
        reportMissingThread();
}

/// The system gave no thread. By the event loop, like every error: who starts may not be ready for it yet.
void TQtAcqDriver::reportMissingThread()
{
    const auto report = [this] {
        const QScopedValueRollback depth(m_blockingCallDepth, m_blockingCallDepth + 1);
        notifyError("Unspecified application error");
    };
    QMetaObject::invokeMethod(&m_blockingReceiver, report, Qt::QueuedConnection);
}

void TQtAcqDriver::connectThread()
{
    m_connections[0] = connect(m_thread.get(), &TQtAcqDriverThread::data, this, &TQtAcqDriver::appendBlock,
                               Qt::QueuedConnection);
    m_connections[1] = connect(
        m_thread.get(), &TQtAcqDriverThread::pacemaker, &m_blockingReceiver,
        [this](int sampleOffset) { reportPulse(sampleOffset); }, Qt::BlockingQueuedConnection);
    m_connections[2] = connect(
        m_thread.get(), &TQtAcqDriverThread::error, &m_blockingReceiver, [this] { reportError(); },
        Qt::BlockingQueuedConnection);
}

void TQtAcqDriver::stop()
{
    disconnectThread();
    m_thread->requestInterruption();
    if (m_blockingCallDepth > 0)
        return;
    do {
        QCoreApplication::removePostedEvents(&m_blockingReceiver, QEvent::MetaCall);
    } while (!m_thread->waitForEnd(releasePeriodMs));
}

void TQtAcqDriver::disconnectThread()
{
    for (const QMetaObject::Connection& connection : m_connections)
        disconnect(connection);
}

void TQtAcqDriver::resetDevice()
{
    m_thread->requestReset();
}

bool TQtAcqDriver::isChannelSaturated(int channel)
{
    return device()->isChannelSaturated(channel);
}

bool TQtAcqDriver::isElectrodeOff(const char* name)
{
    return device()->isElectrodeOff(name);
}

double TQtAcqDriver::batteryVoltage()
{
    return device()->batteryVoltage();
}

bool TQtAcqDriver::isConnected()
{
    return device()->isOk() && !(m_sinceBlock.isValid() && m_sinceBlock.hasExpired(m_longestSilence));
}

void TQtAcqDriver::setPendingBlockLimit(int blocks)
{
    m_thread->setPendingBlockLimit(blocks);
}

void TQtAcqDriver::setLargestBlock(int frames)
{
    m_thread->setLargestBlock(frames);
}

void TQtAcqDriver::appendBlock(const QVector<char>& block)
{
    m_thread->blockArrived();
    m_sinceBlock.start();
    signal()->addInterleaved(block.constData(), block.size());
    notifyData();
}

void TQtAcqDriver::reportPulse(int sampleOffset)
{
    const QScopedValueRollback depth(m_blockingCallDepth, m_blockingCallDepth + 1);
    notifyPacemaker(sampleOffset);
}

void TQtAcqDriver::reportError()
{
    const QScopedValueRollback depth(m_blockingCallDepth, m_blockingCallDepth + 1);
    const QByteArray text = velantor::toText(m_thread->errorText());
    notifyError(text.constData());
}
