#pragma once

class TStudyForm;

namespace Ui {
class StudyDialog;
}

// Which field of the study dialog stands for what.

/// The fields that show a text of the study as it is.
void addStudyFields(TStudyForm& form, const Ui::StudyDialog& ui);

/// The boxes that remember what was entered in them.
void loadHistories(const Ui::StudyDialog& ui);
void saveHistories(const Ui::StudyDialog& ui);
