#pragma once

class QWidget;

/// Makes the one store of the process in the user's data folder, unless there is one, while `window` shows a
/// dialog to wait. The store is never destroyed: the process ends with it. Throws the text of what failed.
void openStudyDatabase(QWidget* window);
