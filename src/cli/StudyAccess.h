#pragma once

#include "cli/Command.h"
#include "study/StudyInfo.h"

#include <QJsonObject>

class Study;

// What commands on studies share.

/// The first argument of the command. Throws TUsageError if it is no id.
qint32 studyId(const TCommandContext& context);

/// The study whose id is the first argument, owned by the database. Throws TError "Study file not found".
Study& openStudy(TCommandContext& context);

/// Throws TError "Study file not found" unless the index has that id.
void requireListed(TCommandContext& context, qint32 id);
bool isListed(TCommandContext& context, qint32 id);

/// A row of the index as `list` prints it.
QJsonObject listRow(const StudyInfo& info);
/// The same without what only the index knows.
QJsonObject archiveRow(const StudyInfo& info);
