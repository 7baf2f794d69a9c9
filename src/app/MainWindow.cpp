#include "app/MainWindow.h"

#include "app/MessageBox.h"
#include "app/RecentStudies.h"
#include "app/StartUp.h"
#include "app/StressStart.h"
#include "app/StudyExport.h"
#include "base/Settings.h"
#include "base/Text.h"
#include "dialogs/StudyDialog.h"
#include "study/StudyDatabase.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QHeaderView>

namespace {

/// The window is on the screen before the store is opened, which may take its time.
constexpr int startUpDelayMs = 10;
constexpr int logoSize = 48;

enum TColumn
{
    idColumn,
    patientColumn,
    dateColumn
};

std::unique_ptr<Ui::MainWindow> makeForm(QMainWindow* window)
{
    auto form = std::make_unique<Ui::MainWindow>();
    form->setupUi(window);
    return form;
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), m_ui(makeForm(this)), m_stressSection(m_ui->frameStress, m_ui->btnStartStress),
      m_ecgSection(m_ui->frameEcg, m_ui->btnStartEcg), m_openSection(m_ui->frameOpen, m_ui->btnOpenOK)
{
    setEnabled(false);
    setLabels();
    connectFields();
    connectExamination();
    m_startUpDelay.setSingleShot(true);
    connect(&m_startUpDelay, &QTimer::timeout, this, &MainWindow::startUp);
    m_startUpDelay.start(startUpDelayMs);
}

MainWindow::~MainWindow() = default;

void MainWindow::setLabels()
{
    QString application = QCoreApplication::applicationName();
    application.replace(QLatin1String("Corvane"), QLatin1String("Stress ECG"));
    setWindowTitle(QStringLiteral("%1 %2").arg(QCoreApplication::organizationName(), application));
    m_ui->lblVersion->setText(QStringLiteral("v %1").arg(QCoreApplication::applicationVersion()));
    m_ui->lblVeterinary->hide();
    m_ui->btnWorklistStress->hide();
    m_ui->btnWorklistEcg->hide();
    m_ui->treeStudies->hideColumn(idColumn);
    m_ui->treeStudies->header()->setSectionResizeMode(patientColumn, QHeaderView::Stretch);
    m_ui->treeStudies->header()->setSectionResizeMode(dateColumn, QHeaderView::ResizeToContents);
    m_ui->lblLogo->setPixmap(
        QIcon(QStringLiteral(":/res/logo")).pixmap(windowHandle(), QSize(logoSize, logoSize)));
}

void MainWindow::connectFields()
{
    connect(m_ui->fieldsEcg, &QuickFields::changed, this, &MainWindow::enableStarts);
    // A button that is not enabled passes over both.
    connect(m_ui->fieldsEcg, &QuickFields::submitted, m_ui->btnStartEcg, &QAbstractButton::click);
    connect(m_ui->fieldsStress, &QuickFields::submitted, m_ui->btnStartStress, &QAbstractButton::click);
}

void MainWindow::connectExamination()
{
    connect(&m_ecg, &EcgExamination::begun, this, [this] { setEnabled(false); });
    connect(&m_ecg, &EcgExamination::ended, this, &MainWindow::examinationEnded);
    connect(&m_ecg, &EcgExamination::kept, this, &MainWindow::ecgKept);
    connect(&m_ecg, &EcgExamination::failed, this, &MainWindow::showError);
    connect(&m_ecg, &EcgExamination::notRepeated, this, &MainWindow::ecgNotRepeated);
}

void MainWindow::startUp()
{
    openStudyDatabase(this);
    fillProtocols();
    setEnabled(true);
}

void MainWindow::fillProtocols()
{
    m_ui->cboProtocol->clear();
    for (const QByteArray& name : studyDatabase()->protocolNames())
        m_ui->cboProtocol->addItem(velantor::fromText(name));
    m_ui->cboProtocol->addItem(QLatin1String(tiltTestName));
    const QString last = settings::lastProtocol.value();
    if (!last.isEmpty())
        m_ui->cboProtocol->setCurrentText(last);
}

void MainWindow::fillRecentStudies()
{
    m_ui->treeStudies->clear();
    for (const TRecentStudy& study : RecentStudies::shown()) {
        const QString date = QLocale().toString(study.time, QLocale::ShortFormat);
        m_ui->treeStudies->addTopLevelItem(new QTreeWidgetItem({study.id, study.patient, date}));
    }
    m_ui->treeStudies->setCurrentItem(m_ui->treeStudies->topLevelItem(0));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(!m_ecg.isRunning());
    if (!event->isAccepted())
        return;
    m_startUpDelay.stop();
    Q_EMIT closed();
}

/// False if the section was open already and did what it is for.
bool MainWindow::unfold(StudySection& section)
{
    if (section.isOpen()) {
        section.triggerDefaultAction();
        return false;
    }
    for (StudySection* each : {&m_stressSection, &m_ecgSection, &m_openSection})
        each->close();
    section.open();
    return true;
}

void MainWindow::on_btnNewStudyStress_clicked()
{
    if (unfold(m_stressSection))
        m_ui->fieldsStress->focusLastName();
}

void MainWindow::on_btnNewStudyEcg_clicked()
{
    if (unfold(m_ecgSection))
        m_ui->fieldsEcg->focusLastName();
}

void MainWindow::on_btnOpenStudy_clicked()
{
    if (!unfold(m_openSection))
        return;
    fillRecentStudies();
    m_ui->treeStudies->setFocus();
}

void MainWindow::on_btnMoreEcg_clicked()
{
    startFromForm(quickEcgInfo(m_ui->fieldsEcg->patient(), QDateTime::currentDateTime()));
}

/// What was typed comes up again until it starts or the user gives up.
void MainWindow::startFromForm(StudyInfo info)
{
    m_isFromForm = true;
    while (askForStudy(info)) {
        m_ui->fieldsEcg->clear();
        if (m_ecg.start(info))
            return;
        m_ui->fieldsEcg->setPatient(quickPatient(info));
    }
}

/// False if the user does not want one.
bool MainWindow::askForStudy(StudyInfo& info)
{
    StudyDialog dialog(this, info, true);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    info = dialog.info();
    return true;
}

void MainWindow::on_btnStartEcg_clicked()
{
    m_isFromForm = false;
    m_ecg.start(quickEcgInfo(m_ui->fieldsEcg->patient(), QDateTime::currentDateTime()));
}

void MainWindow::on_btnClose_clicked()
{
    close();
}

void MainWindow::enableStarts()
{
    m_ui->btnStartEcg->setEnabled(canStartEcg(m_ui->fieldsEcg->patient()));
}

void MainWindow::examinationEnded()
{
    setEnabled(true);
    m_ui->fieldsEcg->clear();
}

void MainWindow::ecgKept(qint32 id)
{
    exportNewStudy(this, id, settings::exportEcgStudyFolder);
}

/// What was typed for the first recording is not lost with it.
void MainWindow::ecgNotRepeated(const StudyInfo& info)
{
    m_ui->fieldsEcg->setPatient(quickPatient(info));
    if (m_isFromForm)
        startFromForm(info);
}

void MainWindow::showError(const QString& text)
{
    showBox(this, QMessageBox::Critical, tr("Error"), text);
}
