#pragma once

#include <QString>

#include <optional>

/// Bytes that the user may still write below a folder (any thread). Null if the folder does not exist or its
/// file system does not answer.
std::optional<qint64> freeBytes(const QString& folder);
