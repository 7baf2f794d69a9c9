#pragma once

#include "platform/CommPort.h"

#include <QByteArray>

#include <string>

using TReason = TCommError::TReason;

inline TCommSettings shortTimes(int readMs = 50, int writeMs = 100)
{
    TCommSettings settings;
    settings.readTimeoutMs = readMs;
    settings.writeTimeoutMs = writeMs;
    return settings;
}

/// How an opening ended.
struct TFailure
{
    QByteArray text;
    TReason reason = TReason::SetupFailed;
};

inline TFailure failureOf(const std::string& name)
{
    try {
        CommPort port;
        port.open(name, TCommSettings());
        return {"opened"};
    } catch (const TCommError& error) {
        return {error.what(), error.reason()};
    }
}
