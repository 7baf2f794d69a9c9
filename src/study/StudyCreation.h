#pragma once

#include "study/StudyInfo.h"

#include <QString>

#include <memory>

class Study;

/// Makes the three files of a new study, whose id and base name stand in `info`. Throws "Cannot create file",
/// also if a file of the set exists, if the name would leave the folder or if the acquisition could not be
/// read back; a failure leaves none of the files.
std::unique_ptr<Study> createStudyFiles(const QString& folder, const StudyInfo& info);

/// Moves the study's time on, second by second, until no file of a set in `folder` has the name that it gives
/// the study: two studies of one patient within a second must not bar each other's way. A time that is none
/// stays as it is.
void findFreeName(StudyInfo& info, const QString& folder);
