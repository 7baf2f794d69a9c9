#pragma once

#include "app/EcgExamination.h"
#include "app/StudySection.h"

#include <QMainWindow>
#include <QTimer>

#include <array>
#include <memory>

namespace Ui {
class MainWindow;
}

/// The launcher, which is always there: starts examinations and shows the recent studies, in three sections
/// of which one at most is open. It is disabled until the store of studies is there, which it opens shortly
/// after it was built, and while a monitor records.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

Q_SIGNALS:
    void closed();

protected:
    /// A running examination keeps it open.
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void on_btnNewStudyStress_clicked();
    void on_btnNewStudyEcg_clicked();
    void on_btnOpenStudy_clicked();
    void on_btnMoreEcg_clicked();
    void on_btnStartEcg_clicked();
    void on_btnClose_clicked();

private:
    void setLabels();
    void connectFields();
    void connectExamination();
    void startUp();
    void fillProtocols();
    void fillRecentStudies();
    bool unfold(StudySection& section);
    void enableStarts();
    void examinationEnded();
    void ecgKept(qint32 id);
    void ecgNotRepeated(const StudyInfo& info);
    void startFromForm(StudyInfo info);
    bool askForStudy(StudyInfo& info);
    void showError(const QString& text);

    std::unique_ptr<Ui::MainWindow> m_ui;
    StudySection m_stressSection;
    StudySection m_ecgSection;
    StudySection m_openSection;
    QTimer m_startUpDelay;
    EcgExamination m_ecg;
    bool m_isFromForm = false; ///< the ECG that was started last
};
