#pragma once

#include <QString>

/// Paints every page of the gallery at the sizes of common screens into PNG files of a folder, which is made
/// where it is missing. False, with a line for what failed, if a picture is empty, has another size or cannot
/// be written.
bool writeScreenshots(const QString& folder);
