#pragma once

#include "cli/Options.h"
#include "study/StudyInfo.h"

// What commands that make a study take for its texts.

inline constexpr TOption patientOption{"--patient", "KEY=VALUE", true};
inline constexpr TOption studyTypeOption{"--study-type", "TYPE"};

/// The texts that the options give; the others are empty. A key is that of a text in the study file, under
/// `study` or `patient`. Throws TUsageError for another key, or one that the store sets itself.
StudyInfo studyInfoFrom(const TOptions& options);
