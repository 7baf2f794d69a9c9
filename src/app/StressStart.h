#pragma once

#include "equipment/TEquipment.h"
#include "study/TStressProtocol.h"

#include <QString>

#include <memory>

class StudyDatabase;
struct StudyInfo;

// What the start of a stress test decides before there is a window.

/// The fixed entry after the protocols of the table.
inline constexpr char tiltTestName[] = "Tilt test";

/// What the user is told when the store has no room for another stress test; empty if it has.
QString spaceWarning(const StudyDatabase& database);

bool isTiltTest(const StudyInfo& info);
/// The type of the study follows from its protocol.
void setStressType(StudyInfo& info);
/// A copy of the protocol that the study names. Throws TError for one that is not in the table.
TStressProtocol stressProtocol(const StudyInfo& info, const StudyDatabase& database);
/// The driver that the settings name for protocols of this type. Null if the test is driven by hand, which
/// holds for all but treadmills and ergometers.
std::unique_ptr<TEquipment> createStressEquipment(const TStressProtocol& protocol);
