#pragma once

#include "equipment/TEquipment.h"

#include <QString>

#include <memory>

/// The driver that the user's settings name: "kipmachines" for both kinds, "olmo" for an ergometer. Null for
/// any other name: the test is then driven by hand. The driver begins to talk to the device at once.
std::unique_ptr<TEquipment> createEquipment(TEquipment::TKind kind, const QString& name, const QString& port);
