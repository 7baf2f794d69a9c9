#include "base/Constants.h"
#include "base/Settings.h"

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

/// What a key of the table reads, with the type that it has.
using TReader = std::function<QVariant()>;

/// The text is the key's place in the stores of the users: it must never change.
template <typename T, typename Default>
void row(const TSetting<T>& setting, const char* key, Default standard)
{
    static_assert(std::is_same_v<T, Default>, "The key has another type");
    QTest::newRow(key) << QString::fromLatin1(setting.key) << QVariant::fromValue(standard)
                       << TReader([&setting] { return QVariant::fromValue(setting.value()); });
}

} // namespace

Q_DECLARE_METATYPE(TReader)

/// The key, the type and the default of every preference.
class SettingsKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
    }

    void anAbsentKeyReadsAsItsDefault_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("standard");
        QTest::addColumn<TReader>("reader");
        addConfiguration();
        addReport();
        addDisplays();
        addWindows();
        addStudyDialog();
    }

    void anAbsentKeyReadsAsItsDefault()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, standard);
        QFETCH(TReader, reader);
        QCOMPARE(key, QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(QSettings().allKeys().isEmpty());
        const QVariant read = reader();
        QCOMPARE(read, standard);
        QCOMPARE(read.userType(), standard.userType());
    }

private:
    static void addConfiguration()
    {
        row(settings::acqMode, "Config/AcqMode", QString());
        row(settings::acqBluetoothPort, "Config/AcqBluetoothPort", QString());
        row(settings::signalGain, "Config/SignalGain", 0.0);
        row(settings::hrProtocol, "Config/HRProtocol", false);
        row(settings::lowBatteryLevel, "Config/LowBatteryLevel", 0.0);
        row(settings::ergometerWorkloadUnits, "Config/ErgometerWorkloadUnits", QString());
        row(settings::ergometerEquipment, "Config/ErgometerEquipment", QString());
        row(settings::ergometerPort, "Config/ErgometerPort", QString());
        row(settings::treadmillEquipment, "Config/TreadmillEquipment", QString());
        row(settings::treadmillPort, "Config/TreadmillPort", QString());
        row(settings::autoExportReports, "Config/AutoExportReports", false);
        row(settings::exportEcgReportFolder, "Config/ExportEcgReportFolder", QString());
        row(settings::exportStressReportFolder, "Config/ExportStressReportFolder", QString());
        row(settings::autoExportStudies, "Config/AutoExportStudies", false);
        row(settings::exportEcgStudyFolder, "Config/ExportEcgStudyFolder", QString());
        row(settings::exportStressStudyFolder, "Config/ExportStressStudyFolder", QString());
    }

    static void addReport()
    {
        row(settings::headerLogoFilename, "ReportDialog/HeaderLogoFilename", QString());
        row(settings::headerTitle, "ReportDialog/HeaderTitle", QString());
        row(settings::headerInfo, "ReportDialog/HeaderInfo", QString());
        row(settings::signatureFilename, "ReportDialog/SignatureFilename", QString());
        row(settings::signatureName, "ReportDialog/SignatureName", QString());
        row(settings::signatureLicense, "ReportDialog/SignatureLicense", QString());
        row(settings::ecgGraphicLayout, "ReportDialog/EcgGraphicLayout", QString());
        row(settings::ecgGraphicRhythmLead, "ReportDialog/EcgGraphicRhythmLead", QStringLiteral("II"));
        row(settings::ecgShowAverage, "ReportDialog/EcgShowAverage", false);
        row(settings::printStressGraphics, "ReportDialog/PrintStressGraphics", true);
        row(settings::showExpectedStageDuration, "ReportDialog/ShowExpectedStageDuration", false);
        row(settings::ecgReportModel, "ReportDialog/EcgReportModel", QString());
        row(settings::printDestination, "ReportDialog/PrintDestination", QString());
        row(settings::printerName, "ReportDialog/PrinterName", QString());
    }

    static void addDisplays()
    {
        row(settings::stressMonitorDisplay.displayColorScheme, "MonitorWindow/DisplayColorScheme", QString());
        row(settings::stressMonitorDisplay.hexaxialOrder, "MonitorWindow/HexaxialOrder", false);
        row(settings::stressMonitorDisplay.showAverageBeat, "MonitorWindow/ShowAverageBeat", true);
        row(settings::ecgMonitorDisplay.displayColorScheme, "EcgMonitorWindow/DisplayColorScheme", QString());
        row(settings::ecgMonitorDisplay.hexaxialOrder, "EcgMonitorWindow/HexaxialOrder", false);
        row(settings::ecgMonitorDisplay.showAverageBeat, "EcgMonitorWindow/ShowAverageBeat", true);
        row(settings::stressReviewDisplay.displayColorScheme, "ReviewWindow/DisplayColorScheme", QString());
        row(settings::stressReviewDisplay.hexaxialOrder, "ReviewWindow/HexaxialOrder", false);
        row(settings::stressReviewDisplay.showAverageBeat, "ReviewWindow/ShowAverageBeat", true);
        row(settings::ecgReviewDisplay.displayColorScheme, "EcgReviewWindow/DisplayColorScheme", QString());
        row(settings::ecgReviewDisplay.hexaxialOrder, "EcgReviewWindow/HexaxialOrder", false);
        row(settings::ecgReviewDisplay.showAverageBeat, "EcgReviewWindow/ShowAverageBeat", true);
    }

    static void addWindows()
    {
        row(settings::stLeadName, "ReviewWindow/STLeadName", QString());
        row(settings::measurementLead, "EcgReviewWindow/MeasurementLead", QString());
        row(settings::stressConclusions, "ReviewWindow/PredefinedConclusionList", QStringList());
        row(settings::stressConclusionsSorted, "ReviewWindow/PredefinedConclusionListAlphaSort", false);
        row(settings::ecgConclusions, "EcgReviewWindow/PredefinedConclusionList", QStringList());
        row(settings::ecgConclusionsSorted, "EcgReviewWindow/PredefinedConclusionListAlphaSort", false);
        row(settings::bpPrint, "BPDialog/Print", false);
        row(settings::recentStudyList, "MainWindow/RecentStudyList", QStringList());
        row(settings::sharedFolderList, "OpenStudyDialog/SharedFolderList", QString());
        row(settings::defaultSharedFolder, "OpenStudyDialog/DefaultSharedFolder", QString());
    }

    static void addStudyDialog()
    {
        row(settings::lastProtocol, "StudyDialog/LastProtocol", QString());
        row(settings::doctorNameList, "StudyDialog/DoctorNameList", QStringList());
        row(settings::referringDoctorNameList, "StudyDialog/ReferringDoctorNameList", QStringList());
        row(settings::technicianNameList, "StudyDialog/TechnicianNameList", QStringList());
        row(settings::medicalGroupList, "StudyDialog/MedicalGroupList", QStringList());
        row(settings::idTypeList, "StudyDialog/IdTypeList", QStringList());
        row(settings::cityList, "StudyDialog/CityList", QStringList());
        row(settings::stateList, "StudyDialog/StateList", QStringList());
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(SettingsKeysTest)
#include "SettingsKeysTest.moc"
