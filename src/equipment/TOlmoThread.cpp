#include "equipment/TOlmoThread.h"

#include <QtDebug>

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
        if (!pause(m_times.startUpPauseMs))
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
    // One that does not go out now would not do so at the end either, but is tried there.
    send(olmo::reset());
    return true;
}

void TOlmoThread::serveCommit(const TEquipmentValues& values)
{
    m_target = olmo::wholeWatts(values.workload);
    const std::vector<olmo::TStep> steps = olmo::loadSteps(m_current, m_target);
    for (const olmo::TStep& step : steps)
        take(step);
    if (!steps.empty())
        m_current = m_target;
}

void TOlmoThread::sayLastWords(bool)
{
    send(olmo::reset());
}

void TOlmoThread::report(const char* text)
{
    qDebug("%s", text);
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
    for (int i = 0; i < olmo::maxLineBytes; ++i) {
        const int byte = port().readByte();
        if (byte < 0 || byte == '\n')
            return;
    }
}
