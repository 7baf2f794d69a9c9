#pragma once

#include "study/TStressProtocol.h"

#include <QtGlobal>

#include <functional>

class TEquipment;
class TRampProtocol;

/// The way from a test to the treadmill or the ergometer. A device that fails is dropped: the test goes on,
/// driven by hand.
class TEquipmentLink
{
public:
    static constexpr char failureText[] =
        QT_TRANSLATE_NOOP("Failure", "Communication with ergometer/treadmill device failed.");

    /// `equipment` is borrowed and may be null. `onFailure` is called once, when it is dropped.
    TEquipmentLink(TEquipment* equipment, std::function<void()> onFailure);

    void start();
    /// Nothing happens unless it was started.
    void stop();
    /// Sends the load of a stage, if the test has one.
    void send(TProtocolType type, const TProtocolStage& stage);
    /// Sends the load of a ramp so many seconds after its start; past its end that of the end.
    void send(const TRampProtocol& ramp, double seconds);

    bool isThere() const { return m_equipment != nullptr; }

private:
    void sendTreadmill(double speed, double incline);
    void sendErgometer(double workload);
    void check(bool done);

    TEquipment* m_equipment;
    std::function<void()> m_onFailure;
    bool m_started = false;
};
