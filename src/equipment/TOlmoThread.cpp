#include "equipment/TOlmoThread.h"

#include "equipment/EquipmentLog.h"

#include <algorithm>
#include <chrono>

namespace {

TCommSettings portSettings(const TOlmoTimes& times)
{
    TCommSettings settings;
    settings.baud = olmo::baud;
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

TOlmoThread::TOlmoThread(const std::string& port, const TOlmoTimes& times)
    : TEquipmentThread(port, portSettings(times), times.turnMs, times.lastWordsMs), m_times(times)
{
}

void TOlmoThread::prepare()
{
    if (!m_firstTurn)
        return;
    wakeDevice();
    m_firstTurn = false;
}

void TOlmoThread::wakeDevice()
{
    take(olmo::reset());
    for (int i = 0; i < m_times.startUpPauses; ++i) {
        // The device has just been reset: a stop changes nothing, and the device needs its time.
        if (!pauseUntilEnd(m_times.startUpPauseMs))
            return;
    }
    take(olmo::askForData());
}

void TOlmoThread::serveStart()
{
    take(olmo::activate());
}

bool TOlmoThread::serveStop()
{
    if (!send(olmo::reset()))
        return false;
    m_current = 0;
    return true;
}

void TOlmoThread::serveCommit(const TEquipmentValues& values)
{
    m_target = olmo::wholeWatts(values.workload);
    const std::vector<olmo::TStep> steps = olmo::loadSteps(m_current, m_target);
    // Answers that a stop did not wait for must not pass for those of this load.
    port().purgeInput();
    for (const olmo::TStep& step : steps) {
        if (isCutShort())
            return;
        take(step);
    }
    if (!steps.empty())
        m_current = m_target;
}

void TOlmoThread::sayLastWords(bool)
{
    send(olmo::reset());
}

void TOlmoThread::report(const char* text)
{
    qCDebug(equipmentLog, "%s", text);
}

bool TOlmoThread::send(const olmo::TStep& step)
{
    return port().write(step.text.data(), static_cast<int>(step.text.size()));
}

void TOlmoThread::take(const olmo::TStep& step)
{
    if (isEnding())
        return;
    // A write that fails shows in the answer that is missing; what the device says is not looked at.
    send(step);
    for (int i = 0; i < step.answerLines; ++i)
        skipLine();
    if (step.isFollowedByPause)
        pause(m_times.stepPauseMs);
}

void TOlmoThread::skipLine()
{
    using TClock = std::chrono::steady_clock;
    const auto deadline = TClock::now() + std::chrono::milliseconds(2 * m_times.timeoutMs);
    for (int i = 0; i < olmo::maxLineBytes; ++i) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - TClock::now());
        const int byte = port().readByteWithin(std::min(m_times.timeoutMs, static_cast<int>(left.count())));
        if (byte < 0 || byte == '\n')
            return;
    }
}
