#pragma once

#include "study/StudyInfo.h"

#include <optional>

class StudyDatabase;

/// The study of a store with the last time of opening, with all of its texts. Nothing if there is none or if
/// it can't be opened now. The store is borrowed and may be null.
std::optional<StudyInfo> latestStudy(StudyDatabase* database);
