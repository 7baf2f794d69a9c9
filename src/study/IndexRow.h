#pragma once

#include "study/StudyInfo.h"

#include <QString>

// The `data` column of the index: a compact JSON object with the fields that lists need.

QString indexRowFromInfo(const StudyInfo& info);

/// Fills the listed fields of `info`; what the row does not have stays as it is.
void readIndexRow(StudyInfo& info, const QString& data);
