#include "dialogs/StudyFields.h"

#include "dialogs/HistoryLists.h"
#include "dialogs/TStudyForm.h"
#include "ui_StudyDialog.h"

#include <array>

namespace {

using THistory = std::pair<QComboBox*, const TSetting<QStringList>*>;
std::array<THistory, 7> histories(const Ui::StudyDialog& ui)
{
    return {{{ui.cboIdType, &settings::idTypeList},
             {ui.cboMedicalGroup, &settings::medicalGroupList},
             {ui.cboCity, &settings::cityList},
             {ui.cboState, &settings::stateList},
             {ui.cboTechnicianName, &settings::technicianNameList},
             {ui.cboDoctorName, &settings::doctorNameList},
             {ui.cboReferringDoctorName, &settings::referringDoctorNameList}}};
}

} // namespace

void addStudyFields(TStudyForm& form, const Ui::StudyDialog& ui)
{
    form.add(&StudyInfo::medicalHistoryNumber, ui.txtMedicalHistoryNumber);
    form.add(&StudyInfo::personIdType, ui.cboIdType);
    form.add(&StudyInfo::personIdNumber, ui.txtPersonIdNumber);
    form.add(&StudyInfo::lastName, ui.txtLastName);
    form.add(&StudyInfo::firstName, ui.txtFirstName);
    form.add(&StudyInfo::age, ui.txtAge);
    form.add(&StudyInfo::weight, ui.txtWeight);
    form.add(&StudyInfo::height, ui.txtHeight);
    form.add(&StudyInfo::medicalGroupName, ui.cboMedicalGroup);
    form.add(&StudyInfo::medicalGroupNumber, ui.txtMedicalGroupNumber);
    form.add(&StudyInfo::address, ui.txtAddress);
    form.add(&StudyInfo::city, ui.cboCity);
    form.add(&StudyInfo::state, ui.cboState);
    form.add(&StudyInfo::phoneNumber, ui.txtPhoneNumber);
    form.add(&StudyInfo::trainingZoneMax, ui.txtHRMax);
    form.add(&StudyInfo::trainingZoneSubMax, ui.txtHRSubmax);
    form.add(&StudyInfo::technicianName, ui.cboTechnicianName);
    form.add(&StudyInfo::doctorName, ui.cboDoctorName);
    form.add(&StudyInfo::referringDoctorName, ui.cboReferringDoctorName);
    form.add(&StudyInfo::treatment, ui.txtTreatment);
    form.add(&StudyInfo::indication, ui.txtIndication);
    form.add(&StudyInfo::comments, ui.txtComments);
}

void loadHistories(const Ui::StudyDialog& ui)
{
    for (const auto& [combo, list] : histories(ui))
        loadHistory(combo, *list);
}

void saveHistories(const Ui::StudyDialog& ui)
{
    for (const auto& [combo, list] : histories(ui))
        saveHistory(combo, *list);
}
