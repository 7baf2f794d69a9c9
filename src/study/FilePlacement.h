#pragma once

#include <QString>

/// Puts a file in the place of another one at once, on one volume. QFile::rename would refuse an existing
/// target.
bool moveFile(const QString& from, const QString& to);

/// Gives a file a second name, so that it outlives the loss of its first one. False where that cannot be
/// done.
bool linkFile(const QString& file, const QString& secondName);

/// Brings what was written to a closed file to the disk.
bool syncFile(const QString& path);
