#pragma once

#include <QByteArray>
#include <QString>

#include <initializer_list>

enum class TStagedWrite
{
    Done,
    CannotOpen,
    Failed
};

/// Writes a file beside its place, brings it to the disk and only then puts it there: whatever fails, a full
/// disk for one, the old file stays as it was.
TStagedWrite writeStaged(const QString& path, std::initializer_list<QByteArray> pieces);
