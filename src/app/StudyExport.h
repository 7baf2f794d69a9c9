#pragma once

#include "base/Settings.h"

class QString;
class QWidget;

/// Writes the archive of a study into a folder and tells the user how that went. `parent` is the window that
/// waits for it.
void exportStudy(QWidget* parent, qint32 id, const QString& folder);

/// The same for a study that has just been made, if the settings ask for it and name a folder. False if not.
bool exportNewStudy(QWidget* parent, qint32 id, const TSetting<QString>& folder);
