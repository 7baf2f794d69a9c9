#include "recorder/TEquipmentLink.h"

#include "equipment/TEquipment.h"
#include "study/TRampProtocol.h"

#include <algorithm>

TEquipmentLink::TEquipmentLink(TEquipment* equipment, std::function<void()> onFailure)
    : m_equipment(equipment), m_onFailure(std::move(onFailure))
{
}

void TEquipmentLink::start()
{
    if (!m_equipment)
        return;
    m_started = true;
    check(m_equipment->start());
}

void TEquipmentLink::stop()
{
    if (m_equipment && m_started)
        check(m_equipment->stop());
    m_started = false;
}

void TEquipmentLink::send(TProtocolType type, const TProtocolStage& stage)
{
    if (!m_equipment)
        return;
    if (type == TProtocolType::Treadmill)
        sendTreadmill(stage.value(TProtocolStage::speedKey), stage.value(TProtocolStage::inclineKey));
    else if (type == TProtocolType::Ergometer)
        sendErgometer(stage.value(TProtocolStage::workloadKey));
}

void TEquipmentLink::send(const TRampProtocol& ramp, double seconds)
{
    if (!m_equipment)
        return;
    const double t = std::min(seconds, ramp.durationMinutes * 60.0);
    sendTreadmill(ramp.speedAt(t), ramp.inclineAt(t));
}

void TEquipmentLink::sendTreadmill(double speed, double incline)
{
    check(m_equipment->setValue("speed", speed) && m_equipment->setValue("incline", incline) &&
          m_equipment->commit());
}

void TEquipmentLink::sendErgometer(double workload)
{
    check(m_equipment->setValue("workload", workload) && m_equipment->commit());
}

void TEquipmentLink::check(bool done)
{
    if (done)
        return;
    m_equipment = nullptr;
    m_onFailure();
}
