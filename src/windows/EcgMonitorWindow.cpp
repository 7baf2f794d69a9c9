#include "windows/EcgMonitorWindow.h"

#include "base/Text.h"
#include "dialogs/FailureText.h"
#include "display/ColorSchemes.h"
#include "display/QSignalBrowseDisplay.h"
#include "recorder/TStudyRecorder.h"
#include "study/Study.h"
#include "study/StudyDatabase.h"
#include "study/TEcgFile.h"
#include "ui_EcgMonitorWindow.h"
#include "windows/AlarmLabel.h"
#include "windows/HeldKeyFilter.h"
#include "windows/LeadMenu.h"
#include "windows/MonitorDisplays.h"
#include "windows/MonitorReadings.h"
#include "windows/MonitorStatus.h"
#include "windows/RecordingReview.h"
#include "windows/TLiveFiducials.h"
#include "windows/TLiveSaturation.h"
#include "windows/WarningBoxes.h"

#include <QCloseEvent>
#include <QDateTime>
#include <QScopeGuard>
#include <QShortcut>

namespace {

constexpr int statusInterval = 1000; // ms
constexpr QPoint simulatedLabelPlace(40, 10);
constexpr char repeatProperty[] = "repeatRequested";
constexpr char untoldProperty[] = "untoldFailure";

/// What makes a resting ECG run like any other examination: it rests until it is stopped.
TStressProtocol restingProtocol()
{
    TStressProtocol protocol("ECG", TProtocolType::Ecg);
    protocol.addStage(TStagePhase::Rest, 0.0);
    return protocol;
}

} // namespace

void EcgMonitorWindow::Observer::signalUpdated()
{
    m_window.m_displays->refresh();
}

void EcgMonitorWindow::Observer::studyStarted()
{
    m_window.m_ui->btnStop->setEnabled(true);
    m_window.m_ui->btnStop->setFocus();
}

void EcgMonitorWindow::Observer::failed(const char* text)
{
    m_window.m_warnings->show(failureText(text));
}

EcgMonitorWindow::EcgMonitorWindow(QWidget* parent, TAcqDevice* device, Study* study)
    : QMainWindow(parent), m_acqDriver(device), m_study(study), m_protocol(restingProtocol()),
      m_ui(std::make_unique<Ui::EcgMonitorWindow>())
{
    m_ui->setupUi(this);
    m_displays = std::make_unique<MonitorDisplays>(*m_ui->ecgDisplay1, *m_ui->ecgDisplay2,
                                                   settings::ecgMonitorDisplay);
    m_status = new MonitorStatus(m_ui->frameECG);
    m_warnings = new WarningBoxes(this);
    new HeldKeyFilter(this);
    setProperty(repeatProperty, false);
    startMonitoring();
    decorate();
    m_timer.setObjectName(QStringLiteral("statusTimer"));
    connect(&m_timer, &QTimer::timeout, this, &EcgMonitorWindow::updateStatus);
    m_timer.start(statusInterval);
    readSettings();
}

EcgMonitorWindow::~EcgMonitorWindow()
{
    m_timer.stop();
    releaseRecorder();
    m_displays->writeSettings();
    m_review.reset();
    // What the last samples met with comes when the window is closed already.
    setProperty(untoldProperty, m_warnings->untold().join(QLatin1Char('\n')));
}

bool EcgMonitorWindow::repeatRequested(const QObject* window)
{
    return window->property(repeatProperty).toBool();
}

QString EcgMonitorWindow::untoldFailure(const QObject* window)
{
    return window->property(untoldProperty).toString();
}

void EcgMonitorWindow::startMonitoring()
{
    m_recorder = std::make_unique<TStudyRecorder>(m_acqDriver, m_study, &m_protocol, nullptr);
    m_recorder->setStore(studyDatabase());
    m_recorder->addObserver(&m_recorderObserver);
    m_recorder->startAcquisition();
    m_displays->setSignal(m_recorder->monitorSignal());
    m_displays->layOutLeads();
    m_saturation = std::make_unique<TLiveSaturation>(*m_recorder);
    m_displays->each(
        [this](QSignalMonitorDisplay& display) { display.setSaturationSource(m_saturation.get()); });
    for (QAbstractButton* filter : {m_ui->btnFilterNotch, m_ui->btnFilterLowpass, m_ui->btnFilterBaseline})
        filter->setChecked(true);
    applyFilters();
    m_ui->btnStart->setEnabled(true);
    for (QWidget* button : {m_ui->btnStop, m_ui->btnRepeat, m_ui->btnSave})
        button->setEnabled(false);
    m_ui->btnStart->setFocus();
}

void EcgMonitorWindow::decorate()
{
    m_ui->lblPatientName->setFullText(
        QStringLiteral("%1, %2").arg(velantor::fromText(m_study->value("patient/lastName")),
                                     velantor::fromText(m_study->value("patient/firstName"))));
    m_ui->lblPatientIcon->setIcon(QIcon(QStringLiteral(":/res/patient")));
    m_ui->lblTimeIcon->setIcon(QIcon(QStringLiteral(":/res/time")));
    m_ui->lblHRIcon->setIcon(QIcon(QStringLiteral(":/res/heart")));
    if (settings::acqMode.value() == QLatin1String("demo")) {
        auto* label = new AlarmLabel(tr("Simulated ECG"), m_ui->frameECG);
        label->setObjectName(QStringLiteral("simulatedLabel"));
        label->move(simulatedLabelPlace);
        label->show();
    }
    // There is no frame around the window to close it by. The same keys on every system.
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+W")), this), &QShortcut::activated, this,
            &QWidget::close);
}

void EcgMonitorWindow::readSettings()
{
    m_displays->readSettings();
    const double volts = settings::lowBatteryLevel.value();
    if (volts > 0.0)
        m_recorder->setLowBatteryLevel(volts);
}

void EcgMonitorWindow::on_btnFilterNotch_clicked()
{
    applyFilters();
}

void EcgMonitorWindow::on_btnFilterLowpass_clicked()
{
    applyFilters();
}

void EcgMonitorWindow::on_btnFilterBaseline_clicked()
{
    applyFilters();
}

void EcgMonitorWindow::applyFilters()
{
    if (!m_recorder)
        return;
    // Whatever is painted meanwhile must not read the signal that the filters are about to replace.
    m_ui->frameECG->setUpdatesEnabled(false);
    m_displays->setSignal(nullptr);
    // Also where the filters fail: the displays go on with what there is.
    const auto show = qScopeGuard([this] {
        m_displays->setSignal(m_recorder->monitorSignal());
        m_ui->frameECG->setUpdatesEnabled(true);
    });
    const bool baseline = m_ui->btnFilterBaseline->isChecked();
    m_recorder->setFilters(m_ui->btnFilterNotch->isChecked(), m_ui->btnFilterLowpass->isChecked(), baseline);
    m_displays->each([baseline](QSignalMonitorDisplay& display) { display.setAutoCenter(!baseline); });
}

void EcgMonitorWindow::on_btnStart_clicked()
{
    if (!m_recorder)
        return;
    m_fiducials = std::make_unique<TLiveFiducials>(*m_recorder, *m_study);
    m_displays->each([this](QSignalMonitorDisplay& display) {
        display.setAverageBeat(&m_recorder->averageBeat());
        display.setFiducialSource(m_fiducials.get());
    });
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"));
    m_recorder->startStudy(time.toLatin1().constData());
    m_ui->btnStart->setEnabled(false);
}

void EcgMonitorWindow::on_btnStop_clicked()
{
    if (!m_recorder)
        return;
    m_recorder->finishStudy();
    m_recorder->stopAcquisition();
    releaseRecorder();
    for (QWidget* button : {m_ui->btnStart, m_ui->btnStop})
        button->setEnabled(false);
    for (QWidget* button : {m_ui->btnRepeat, m_ui->btnSave})
        button->setEnabled(true);
    m_ui->btnSave->setFocus();
    m_status->hide();
    m_displays->each([](QSignalMonitorDisplay& display) { display.hide(); });
    showRecording();
}

/// The displays read what belongs to the recorder: they let it go first.
void EcgMonitorWindow::releaseRecorder()
{
    if (!m_recorder)
        return;
    m_recorder->removeObserver(&m_recorderObserver);
    m_displays->detach();
    m_recorder.reset();
    m_saturation.reset();
    m_fiducials.reset();
}

void EcgMonitorWindow::showRecording()
{
    m_study->ecg()->sync();
    m_review = std::make_unique<RecordingReview>(
        m_study->ecg(),
        TReviewControls{
            m_ui->btnFilterNotch,
            m_ui->btnFilterLowpass,
            m_ui->btnFilterBaseline,
            {{m_ui->btnSpeed12, 12.5}, {m_ui->btnSpeed25, 25.0}, {m_ui->btnSpeed50, 50.0}},
            {{m_ui->btnAmp5, 5.0}, {m_ui->btnAmp10, 10.0}, {m_ui->btnAmp20, 20.0}},
        },
        m_ui->frameECG);
    QSignalBrowseDisplay& display = m_review->display();
    applyScheme(m_displays->colorScheme(), &display);
    m_ui->displayLayout->addWidget(&display);
    // Like the displays in whose place it stands, below what floats over them.
    display.stackUnder(m_ui->ecgDisplay1);
    setTabOrder(m_ui->btnFilterNotch, &display);
    display.show();
}

void EcgMonitorWindow::on_ecgDisplay1_customContextMenuRequested(const QPoint& place)
{
    popUpMenu(*m_ui->ecgDisplay1, place);
}

void EcgMonitorWindow::on_ecgDisplay2_customContextMenuRequested(const QPoint& place)
{
    popUpMenu(*m_ui->ecgDisplay2, place);
}

void EcgMonitorWindow::popUpMenu(QSignalMonitorDisplay& clicked, const QPoint& place)
{
    if (!m_contextMenu)
        m_contextMenu = std::make_unique<LeadMenu>(*m_displays, this);
    m_contextMenu->popupFor(clicked, clicked.mapToGlobal(place));
}

void EcgMonitorWindow::on_btnRepeat_clicked()
{
    setProperty(repeatProperty, true);
    close();
}

void EcgMonitorWindow::on_btnSave_clicked()
{
    close();
}

void EcgMonitorWindow::closeEvent(QCloseEvent* event)
{
    if (m_recorder && m_recorder->isRecording())
        m_recorder->finishStudy();
    event->accept();
}

void EcgMonitorWindow::updateStatus()
{
    if (!m_recorder)
        return;
    m_status->update(*m_recorder);
    if (!m_recorder->isRecording())
        return;
    m_ui->lblTotalElapsedTime->setText(elapsedText(m_recorder->duration()));
    updateHeartRate();
}

void EcgMonitorWindow::updateHeartRate()
{
    const std::optional<TBeat>& beat = m_recorder->lastBeat();
    const QString rate = heartRateText(beat ? beat->value(TBeat::rr) : 0.0);
    // The last one stays while there is none.
    if (!rate.isEmpty())
        m_ui->lblHR->setText(rate);
}
