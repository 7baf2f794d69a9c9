#pragma once

#include "equipment/TKipnetTreadmill.h"
#include "simulators/TTreadmillSimulator.h"
#include "support/ServedDevice.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

/// A treadmill and its driver, with short waits and a log of its own.
class TKipnetSession
{
public:
    explicit TKipnetSession(const TEquipmentSimulatorOptions& device = {},
                            const TKipnetTimes& times = shortTimes())
        : treadmill(device)
    {
        connectTo(treadmill.path(), times);
    }

    static TKipnetTimes shortTimes()
    {
        TKipnetTimes times;
        times.turnMs = 5;
        times.retryPauseMs = 10;
        return times;
    }

    void connectTo(const std::string& port, const TKipnetTimes& times = shortTimes())
    {
        driver.reset();
        TKipnetTreadmill::TOptions options;
        options.times = times;
        options.logPath = logPath;
        driver = std::make_unique<TKipnetTreadmill>(port, options);
    }

    void set(double speed, double incline)
    {
        driver->setValue("speed", speed);
        driver->setValue("incline", incline);
        driver->commit();
    }

    QByteArray log() const
    {
        QFile file(logPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Waits for the end of the driver's thread.
    bool hasEnded() const
    {
        return comesTrue([this] { return log().endsWith("Thread stop\n--------------------\n"); });
    }

    QTemporaryDir folder;
    /// In a folder that is not there yet.
    QString logPath = folder.filePath(QStringLiteral("data/velantor-kipnet.log"));
    TServedDevice<TTreadmillSimulator> treadmill;
    std::unique_ptr<TKipnetTreadmill> driver;
};
