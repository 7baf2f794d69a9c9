#pragma once

#include "equipment/TEquipment.h"
#include "equipment/TEquipmentThread.h"

#include <QStringList>

/// Writes down what it is asked for and fails at what the test wants: "start", "stop", "commit" or the name
/// of a value.
class FakeEquipment : public TEquipment
{
public:
    explicit FakeEquipment(TKind kind = Treadmill) : TEquipment(kind, nullptr) {}

    bool isOk() override { return true; }
    bool start() override { return did(QStringLiteral("start"), "start"); }
    bool stop() override { return did(QStringLiteral("stop"), "stop"); }
    bool commit() override { return did(QStringLiteral("commit"), "commit"); }
    bool setValue(const char* name, double value) override
    {
        return did(QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(value), name);
    }

    /// What was asked for since the last time.
    QString takeCalls()
    {
        const QString text = calls.join(QStringLiteral(", "));
        calls.clear();
        return text;
    }

    QStringList calls;
    QByteArray failsAt;

private:
    bool did(const QString& call, const char* name)
    {
        calls += call;
        return failsAt != name;
    }
};
