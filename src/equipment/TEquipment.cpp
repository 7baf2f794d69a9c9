#include "equipment/TEquipment.h"

#include "equipment/TEquipmentThread.h"

#include <utility>

TEquipment::TEquipment(TKind kind, std::unique_ptr<TEquipmentThread> thread)
    : m_kind(kind), m_thread(std::move(thread))
{
}

TEquipment::~TEquipment()
{
    if (m_thread)
        m_thread->endAndWait();
}
