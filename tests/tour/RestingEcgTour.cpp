#include "tour/RestingEcgTour.h"

#include "analysis/signals/TSignal.h"
#include "base/Settings.h"
#include "dialogs/StudyDialog.h"
#include "display/QSignalMonitorDisplay.h"

#include <QAbstractButton>
#include <QDir>
#include <QProcess>
#include <QTreeWidget>

namespace {

constexpr char launcher[] = "MainWindow";
constexpr char monitor[] = "EcgMonitorWindow";
constexpr char dialog[] = "StudyDialog";

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

int rowsOf(const char* name)
{
    const auto* tree = qobject_cast<QTreeWidget*>(TourDriver::find(name));
    return tree ? tree->topLevelItemCount() : 0;
}

/// Samples that the first live display has to show.
bool hasTrace()
{
    const auto* display = qobject_cast<QSignalMonitorDisplay*>(TourDriver::find("ecgDisplay1"));
    return display && display->signal() && display->signal()->sampleCount() > 0;
}

} // namespace

RestingEcgTour::RestingEcgTour(const TTourPlaces& places) : m_places(places), m_driver(places.pictures)
{
    m_clock.start();
}

RestingEcgTour::~RestingEcgTour() = default;

void RestingEcgTour::run()
{
    lookAtLauncher();
    refuseToStartWithoutDevice();
    fillStudyDialog();
    lookAtStressDialog();
    takeDemonstrationEcg();
    takeItAgain();
    lookAtRecentStudies();
    looseElectrodes();
    takeDeviceEcg();
    takeEcgByKeyboard();
    leave();
    const QStringList cut = m_driver.cutTexts();
    if (!cut.isEmpty())
        throw TTourError("Texts are cut: " + cut.join(QStringLiteral(", ")).toStdString());
}

void RestingEcgTour::lookAtLauncher()
{
    m_driver.waitForWindow(launcher);
    m_waits.append(QStringLiteral("launcher ready %1").arg(m_clock.elapsed()));
    m_driver.picture(QStringLiteral("launcher"));
    const QString expected =
        m_places.language == QLatin1String("spanish") ? QStringLiteral("Cerrar") : QStringLiteral("Close");
    const QString close = TourDriver::onScreen(
        [] { return qobject_cast<QAbstractButton*>(TourDriver::find("btnClose"))->text(); });
    if (QString(close).remove(QLatin1Char('&')) != expected)
        throw TTourError("The program speaks another language: " + close.toStdString());
    m_driver.click("btnNewStudyStress");
    m_driver.picture(QStringLiteral("launcher-stress-test"));
    m_driver.click("btnOpenStudy");
    m_driver.picture(QStringLiteral("launcher-open-study"));
    openEcgSection();
    m_driver.picture(QStringLiteral("launcher-ecg"));
}

void RestingEcgTour::refuseToStartWithoutDevice()
{
    TourDriver::onScreen([] { settings::acqMode.setValue(QStringLiteral("usb")); });
    m_driver.type("txtLastName", text("García Hernández"));
    m_driver.type("txtFirstName", text("María Fernanda"));
    m_driver.click("btnStartEcg");
    m_driver.waitFor(QStringLiteral("the error"),
                     [] { return QApplication::activeModalWidget() != nullptr; });
    m_driver.picture(QStringLiteral("device-not-found"));
    m_driver.closeBox();
    m_driver.waitForWindow(launcher);
    TourDriver::onScreen([] { settings::acqMode.setValue(QStringLiteral("demo")); });
}

void RestingEcgTour::fillStudyDialog()
{
    m_driver.type("txtAge", QStringLiteral("47"));
    m_driver.click("btnFemale");
    m_driver.click("btnMoreEcg");
    m_driver.waitForWindow(dialog);
    m_driver.type("txtBirthDate", QStringLiteral("14/3/79"));
    m_driver.type("txtWeight", QStringLiteral("68"));
    m_driver.type("txtHeight", QStringLiteral("166"));
    m_driver.picture(QStringLiteral("study-dialog-patient"));
    m_driver.type("txtLastName", QString());
    m_driver.picture(QStringLiteral("study-dialog-field-in-error"));
    m_driver.type("txtLastName", text("García Hernández"));
    m_driver.chooseRow("listCategory", 1);
    m_driver.picture(QStringLiteral("study-dialog-risk-factors"));
    m_driver.chooseRow("listCategory", 2);
    m_driver.picture(QStringLiteral("study-dialog-study-info"));
    m_driver.key(Qt::Key_Escape);
    m_driver.waitUntilGone(dialog);
}

/// The launcher does not start stress tests yet; their dialog is there.
void RestingEcgTour::lookAtStressDialog()
{
    QMetaObject::invokeMethod(
        qApp,
        [] {
            StudyInfo info;
            info.studyType = "Stress test";
            info.lastName = "Acosta";
            info.age = "1";
            StudyDialog(nullptr, info, true).exec();
        },
        Qt::QueuedConnection);
    m_driver.waitForWindow(dialog);
    m_driver.picture(QStringLiteral("stress-dialog-fields-in-error"));
    m_driver.chooseRow("listCategory", 3);
    m_driver.picture(QStringLiteral("stress-dialog-protocol"));
    m_driver.key(Qt::Key_Escape);
    m_driver.waitUntilGone(dialog);
}

void RestingEcgTour::takeDemonstrationEcg()
{
    startMonitor();
    m_driver.pause(6000);
    m_driver.picture(QStringLiteral("monitor"));
    m_driver.openMenu("ecgDisplay1");
    m_driver.picture(QStringLiteral("monitor-menu"));
    m_driver.key(Qt::Key_Escape);
    record(12);
    m_driver.picture(QStringLiteral("monitor-recording"));
    m_driver.click("btnAmp20");
    m_driver.click("btnSpeed50");
    m_driver.pause(4000);
    m_driver.picture(QStringLiteral("monitor-recording-large"));
    m_driver.click("btnAmp10");
    m_driver.click("btnSpeed25");
    stopRecording();
    m_driver.picture(QStringLiteral("monitor-recorded"));
}

void RestingEcgTour::takeItAgain()
{
    m_driver.click("btnRepeat");
    m_driver.waitFor(QStringLiteral("a new monitor"), [] {
        const QWidget* start = TourDriver::find("btnStart");
        return start && start->isEnabled();
    });
    record(11);
    stopRecording();
    saveStudy();
}

void RestingEcgTour::lookAtRecentStudies()
{
    m_driver.click("btnOpenStudy");
    m_driver.waitFor(QStringLiteral("one recent study"), [] { return rowsOf("treeStudies") == 1; });
    m_driver.picture(QStringLiteral("launcher-recent-studies"));
}

void RestingEcgTour::looseElectrodes()
{
    useDevice(false,
              {QStringLiteral("--electrodes-off"), QStringLiteral("LA,V3"), QStringLiteral("--battery"),
               QStringLiteral("2.1"), QStringLiteral("--saturate"), QStringLiteral("V5")});
    openEcgSection();
    m_driver.type("txtLastName", QStringLiteral("Alonso"));
    m_driver.type("txtFirstName", QStringLiteral("Jorge"));
    startMonitor();
    m_driver.pause(3000);
    m_driver.waitFor(QStringLiteral("the panel of electrodes"),
                     [] { return TourDriver::find("ElectrodeStatusWidget") != nullptr; });
    m_driver.waitFor(QStringLiteral("the battery icon"),
                     [] { return TourDriver::find("lowBatteryIcon") != nullptr; });
    m_driver.waitFor(QStringLiteral("the label of a lead out of range"),
                     [] { return TourDriver::find("inoperativeLabel") != nullptr; });
    m_driver.picture(QStringLiteral("monitor-electrodes-off"));
    m_driver.click("btnHide");
    record(3);
    stopRecording();
    saveStudy();
    takeDeviceAway();
}

void RestingEcgTour::takeDeviceEcg()
{
    useDevice(true, {QStringLiteral("--hang-up"), QStringLiteral("12:6")});
    openEcgSection();
    m_driver.type("txtLastName", QStringLiteral("Wolfeschlegelsteinhausenbergerdorff-Montenegro"));
    m_driver.type("txtFirstName", QStringLiteral("Maximiliano Bartolomeo Alejandro"));
    startMonitor();
    record(5);
    m_driver.waitFor(QStringLiteral("the icon of a lost connection"),
                     [] { return TourDriver::find("connectingIcon") != nullptr; });
    m_driver.picture(QStringLiteral("monitor-cable-pulled"));
    m_driver.pause(8000);
    m_driver.picture(QStringLiteral("monitor-cable-back"));
    stopRecording();
    saveStudy();
    takeDeviceAway();
}

void RestingEcgTour::takeEcgByKeyboard()
{
    TourDriver::onScreen([] { settings::acqMode.setValue(QStringLiteral("demo")); });
    m_driver.tabTo("btnNewStudyEcg");
    m_driver.key(Qt::Key_Space);
    m_driver.tabTo("txtLastName");
    m_driver.typeAtFocus(QStringLiteral("Quiroga"));
    m_driver.tabTo("txtFirstName");
    m_driver.typeAtFocus(QStringLiteral("Elena"));
    m_driver.tabTo("btnStartEcg");
    m_driver.key(Qt::Key_Space);
    m_driver.waitForWindow(monitor);
    m_driver.waitFor(QStringLiteral("a trace"), hasTrace);
    m_driver.key(Qt::Key_Space);
    m_driver.waitFor(QStringLiteral("the recording"), [] {
        const QWidget* stop = TourDriver::find("btnStop");
        return stop && stop->hasFocus();
    });
    m_driver.pause(4000);
    m_driver.key(Qt::Key_Space);
    m_driver.waitFor(QStringLiteral("the end of the recording"), [] {
        const QWidget* save = TourDriver::find("btnSave");
        return save && save->hasFocus();
    });
    m_driver.key(Qt::Key_Space);
    m_driver.waitForWindow(launcher);
}

void RestingEcgTour::leave()
{
    m_driver.click("btnOpenStudy");
    m_driver.waitFor(QStringLiteral("four recent studies"), [] { return rowsOf("treeStudies") == 4; });
    m_driver.picture(QStringLiteral("launcher-recent-studies-four"));
    m_driver.click("btnClose");
}

void RestingEcgTour::openEcgSection()
{
    m_driver.click("btnNewStudyEcg");
    m_driver.waitFor(QStringLiteral("the fields of an ECG"),
                     [] { return TourDriver::find("btnStartEcg") != nullptr; });
    m_driver.pause(500);
}

void RestingEcgTour::startMonitor()
{
    m_clock.restart();
    m_driver.click("btnStartEcg");
    m_driver.waitForWindow(monitor);
    m_waits.append(QStringLiteral("start button to monitor %1").arg(m_clock.elapsed()));
    m_driver.waitFor(QStringLiteral("a trace"), hasTrace);
    m_waits.append(
        QStringLiteral("start button to trace, with the delay of the filters %1").arg(m_clock.elapsed()));
}

void RestingEcgTour::record(int seconds)
{
    m_driver.click("btnStart");
    m_driver.waitFor(QStringLiteral("the recording"), [] {
        const QWidget* stop = TourDriver::find("btnStop");
        return stop && stop->isEnabled();
    });
    m_driver.pause(seconds * 1000);
}

void RestingEcgTour::stopRecording()
{
    m_clock.restart();
    m_driver.click("btnStop");
    m_driver.waitFor(QStringLiteral("what was recorded"), [] {
        const QWidget* save = TourDriver::find("btnSave");
        return save && save->isEnabled();
    });
    m_waits.append(QStringLiteral("stop button to recording %1").arg(m_clock.elapsed()));
}

void RestingEcgTour::saveStudy()
{
    m_clock.restart();
    m_driver.click("btnSave");
    m_driver.waitForWindow(launcher);
    m_waits.append(QStringLiteral("save button to launcher %1").arg(m_clock.elapsed()));
}

void RestingEcgTour::useDevice(bool highRate, const QStringList& options)
{
    // A name of its own: the number of a port that is gone may become that of another one.
    const QString port = QDir::temp().filePath(QStringLiteral("ecg-device"));
    QStringList arguments{QStringLiteral("--source"), m_places.deviceSource, QStringLiteral("--link"), port};
    if (highRate)
        arguments << QStringLiteral("--high-rate") << QStringLiteral("--range") << QStringLiteral("300");
    m_device = std::make_unique<QProcess>();
    m_device->start(m_places.simulator, arguments + options);
    if (!m_device->waitForReadyRead(10000))
        throw TTourError("The simulated device does not start");
    TourDriver::onScreen([&port, highRate] {
        settings::acqMode.setValue(QStringLiteral("bluetooth-com"));
        settings::acqBluetoothPort.setValue(port);
        settings::hrProtocol.setValue(highRate);
    });
}

void RestingEcgTour::takeDeviceAway()
{
    m_device->kill();
    m_device->waitForFinished();
}
