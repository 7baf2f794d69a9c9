#pragma once

#include "dialogs/TStudyForm.h"
#include "study/StudyInfo.h"

#include <QDateTime>
#include <QDialog>

#include <memory>

class TRiskFactorRows;

namespace Ui {
class StudyDialog;
}

/// The long form of a patient and a study. It asks the process's store for protocols and risk factors;
/// without a store there are no protocols. There are no messages: a field in error is marked, and as long as
/// there is one the form can't be accepted.
class StudyDialog : public QDialog
{
    Q_OBJECT

public:
    /// For a new study `info` has what is known so far, its kind at least; an existing one keeps its
    /// protocol.
    StudyDialog(QWidget* parent, const StudyInfo& info, bool isNew);
    ~StudyDialog() override;

    /// The study as the form had it when it was last accepted, until then as it was given. Fields that the
    /// form doesn't show stay as they were, or are those of the patient who was entered again.
    StudyInfo info() const { return m_info; }

private Q_SLOTS:
    void on_listCategory_currentRowChanged(int row);
    void on_txtWeight_textEdited();
    void on_txtHeight_textEdited();
    void on_txtBirthDate_textEdited(const QString& typed);
    void on_txtAge_textEdited();
    void on_StudyDialog_accepted();
    void on_numSubmaxPercent_valueChanged(int percent);
    void on_cboSex_currentIndexChanged(int index);
    void on_btnRepeat_clicked();

private:
    bool isEcg() const;
    void setTitle();
    void setUpCategories();
    void turnPage(int step);
    void setUpLists();
    void setUpProtocols();
    void setUpRiskFactors();
    void setUpValidation();

    void fill(const StudyInfo& source);
    void takeHidden(const StudyInfo& source);
    void fillDateTime();
    void selectProtocol(const QByteArray& name);
    void collectDateTime();
    void saveLists() const;

    void updateBodyMassIndex();
    void updateHeartRateTargets();
    void validate();

    std::unique_ptr<Ui::StudyDialog> m_ui;
    std::unique_ptr<TRiskFactorRows> m_riskFactors;
    TStudyForm m_form;
    StudyInfo m_info;
    /// The study behind what the fields show, accepted or not.
    StudyInfo m_edited;
    /// What the field showed of the study; as long as it shows it, the study's own text stands.
    QDateTime m_shownDateTime;
    bool m_isNew;
};
