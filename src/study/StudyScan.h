#pragma once

#include "study/StudyInfo.h"

#include <QString>

#include <vector>

/// What the index shows of every sound study in a data folder. A file that cannot be read is passed over. Of
/// several sets with one id the first whose files all open counts, or else the first.
std::vector<StudyInfo> scanStudies(const QString& folder);
