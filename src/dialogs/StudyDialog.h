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

    /// After acceptance the study as the form has it, before and else as it was given. Fields that the form
    /// doesn't show stay as they were.
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
    void fillBirthDate(const StudyInfo& source);
    void fillDateTime();
    void selectProtocol(const QByteArray& name);
    void collectBirthDate(StudyInfo& info) const;
    void collectDateTime(StudyInfo& info) const;
    void saveLists() const;

    void updateBodyMassIndex();
    void updateHeartRateTargets();
    void validate();

    std::unique_ptr<Ui::StudyDialog> m_ui;
    std::unique_ptr<TRiskFactorRows> m_riskFactors;
    TStudyForm m_form;
    StudyInfo m_info;
    /// What the fields showed of the study; as long as they show it, the study's own text stands.
    QDateTime m_shownDateTime;
    QString m_shownBirthDate;
    bool m_isNew;
};
