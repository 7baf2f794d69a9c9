#pragma once

#include "acq/TAcqDriver.h"
#include "acq/TAcqListener.h"
#include "analysis/signals/TSignal.h"

#include <QStringList>

#include <functional>

/// Writes down what a listener is told, and does what the test wants done at that moment.
class ListenerLog : public TAcqListener
{
public:
    explicit ListenerLog(QStringList& log, const QString& name = QString()) : m_log(log), m_name(name) {}

    void dataCallback(TAcqDriver* driver) override
    {
        m_log += m_name + QStringLiteral("data %1").arg(driver->signal()->sampleCount());
        call(onData);
    }
    void pacemakerCallback(TAcqDriver*, int sampleOffset) override
    {
        m_log += m_name + QStringLiteral("pulse %1").arg(sampleOffset);
        call(onPulse);
    }
    void errorCallback(TAcqDriver*, const char* message) override
    {
        m_log += m_name + QStringLiteral("error ") + QString::fromUtf8(message);
        call(onError);
    }
    void communicationFailedCallback(TAcqDriver*) override { m_log += m_name + QStringLiteral("failed"); }

    std::function<void()> onData;
    std::function<void()> onPulse;
    std::function<void()> onError;

private:
    static void call(const std::function<void()>& function)
    {
        if (function)
            function();
    }

    QStringList& m_log;
    const QString m_name;
};
