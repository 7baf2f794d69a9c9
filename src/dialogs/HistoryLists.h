#pragma once

#include "base/Settings.h"

class QComboBox;

// The entries that an editable combo box remembers from one study to the next.

/// Offers what the store has, without empty entries and repetitions. None is chosen.
void loadHistory(QComboBox* combo, const TSetting<QStringList>& list);
/// Stores the entries of the box. The text in its field becomes the last entry if it is a new one.
void saveHistory(QComboBox* combo, const TSetting<QStringList>& list);
