#include "equipment/TKipnetThread.h"

#include "equipment/EquipmentLog.h"
#include "equipment/KipnetMessages.h"

namespace {

constexpr int attempts = 3;

constexpr char goFailure[] = "Kipnet device did not respond (command GO)";
constexpr char stopFailure[] = "Kipnet device did not respond (command ST)";
constexpr char speedFailure[] = "Kipnet device did not respond (command V)";
constexpr char inclineFailure[] = "Kipnet device did not respond (command E)";
constexpr char loadFailure[] = "Kipnet device did not respond (command N)";

TCommSettings portSettings(const TKipnetTimes& times)
{
    TCommSettings settings;
    settings.baud = kipnet::baud;
    settings.dataBits = 8;
    settings.stopBits = 1;
    settings.flowControl = TCommSettings::TFlowControl::Keep;
    settings.inputQueueBytes = 256;
    settings.outputQueueBytes = 256;
    settings.readTimeoutMs = times.timeoutMs;
    settings.writeTimeoutMs = times.timeoutMs;
    return settings;
}

} // namespace

TKipnetThread::TKipnetThread(const std::string& port, const TKipnetTimes& times, const QString& logPath)
    : TEquipmentThread(port, portSettings(times), times.turnMs, times.lastWordsMs), m_times(times),
      m_logPath(logPath)
{
}

void TKipnetThread::begin()
{
    m_log.open(m_logPath);
    m_log.writeLine("Thread start, device port = " + QByteArray::fromStdString(portName()));
}

void TKipnetThread::end()
{
    m_log.writeLine("Thread stop");
    m_log.writeLine("--------------------");
    m_log.close();
}

void TKipnetThread::report(const char* text)
{
    qCDebug(equipmentLog, "%s", text);
    m_log.writeLine(text);
}

bool TKipnetThread::serveStop()
{
    if (send(kipnet::stopMessage())) {
        m_running = false;
        return true;
    }
    if (isEnding())
        return false;
    throw TError(stopFailure);
}

void TKipnetThread::serveCommit(const TEquipmentValues& values)
{
    if ((values.speed > 0 || values.workload > 0) && !m_running) {
        command(kipnet::goMessage(), goFailure);
        m_running = true;
    }
    if (values.speed >= 0)
        command(kipnet::speedMessage(values.speed), speedFailure);
    if (values.incline >= 0)
        command(kipnet::inclineMessage(values.incline), inclineFailure);
    if (values.workload >= 0)
        command(kipnet::loadMessage(values.workload), loadFailure);
}

void TKipnetThread::sayLastWords(bool stopOwed)
{
    if (!stopOwed)
        return;
    beginMessage(kipnet::stopMessage());
    for (int i = 0; i < attempts; ++i) {
        if (attempt(kipnet::stopMessage()))
            return;
    }
    throw TError(stopFailure);
}

void TKipnetThread::command(const std::string& message, const char* failure)
{
    if (!isCutShort() && !send(message) && !isCutShort())
        throw TError(failure);
}

bool TKipnetThread::send(const std::string& message)
{
    beginMessage(message);
    for (int i = 0; i < attempts; ++i) {
        if (attempt(message))
            return true;
        if (!pause(m_times.retryPauseMs))
            return false;
    }
    return false;
}

void TKipnetThread::beginMessage(const std::string& message)
{
    m_log.writeLine(">> " + QByteArray::fromStdString(message));
    port().purgeInput();
    port().purgeOutput();
}

bool TKipnetThread::attempt(const std::string& message)
{
    const int size = static_cast<int>(message.size());
    // No message is longer.
    char answer[16];
    return port().write(message.data(), size) && port().read(answer, size) == size;
}
