#include "base/Settings.h"

#include <cmath>

namespace settings {

template <> std::optional<double> parsed(const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

template <> std::optional<bool> parsed(const QString& text)
{
    const QString word = text.toLower();
    if (word == QLatin1String("true") || word == QLatin1String("1"))
        return true;
    if (word == QLatin1String("false") || word == QLatin1String("0"))
        return false;
    return std::nullopt;
}

const TSetting<QString> acqMode{"Config/AcqMode"};
const TSetting<QString> acqBluetoothPort{"Config/AcqBluetoothPort"};
const TSetting<double> signalGain{"Config/SignalGain", 0.0};
const TSetting<bool> hrProtocol{"Config/HRProtocol", false};
const TSetting<double> lowBatteryLevel{"Config/LowBatteryLevel", 0.0};

const TSetting<QString> ergometerWorkloadUnits{"Config/ErgometerWorkloadUnits"};
const TSetting<QString> ergometerEquipment{"Config/ErgometerEquipment"};
const TSetting<QString> ergometerPort{"Config/ErgometerPort"};
const TSetting<QString> treadmillEquipment{"Config/TreadmillEquipment"};
const TSetting<QString> treadmillPort{"Config/TreadmillPort"};

const TSetting<bool> autoExportReports{"Config/AutoExportReports", false};
const TSetting<QString> exportEcgReportFolder{"Config/ExportEcgReportFolder"};
const TSetting<QString> exportStressReportFolder{"Config/ExportStressReportFolder"};
const TSetting<bool> autoExportStudies{"Config/AutoExportStudies", false};
const TSetting<QString> exportEcgStudyFolder{"Config/ExportEcgStudyFolder"};
const TSetting<QString> exportStressStudyFolder{"Config/ExportStressStudyFolder"};

const TSetting<QString> headerLogoFilename{"ReportDialog/HeaderLogoFilename"};
const TSetting<QString> headerTitle{"ReportDialog/HeaderTitle"};
const TSetting<QString> headerInfo{"ReportDialog/HeaderInfo"};
const TSetting<QString> signatureFilename{"ReportDialog/SignatureFilename"};
const TSetting<QString> signatureName{"ReportDialog/SignatureName"};
const TSetting<QString> signatureLicense{"ReportDialog/SignatureLicense"};
const TSetting<QString> ecgGraphicLayout{"ReportDialog/EcgGraphicLayout"};
const TSetting<QString> ecgGraphicRhythmLead{"ReportDialog/EcgGraphicRhythmLead", QStringLiteral("II")};
const TSetting<bool> ecgShowAverage{"ReportDialog/EcgShowAverage", false};
const TSetting<bool> printStressGraphics{"ReportDialog/PrintStressGraphics", true};
const TSetting<bool> showExpectedStageDuration{"ReportDialog/ShowExpectedStageDuration", false};
const TSetting<QString> ecgReportModel{"ReportDialog/EcgReportModel"};
const TSetting<QString> printDestination{"ReportDialog/PrintDestination"};
const TSetting<QString> printerName{"ReportDialog/PrinterName"};

const TDisplaySettings stressMonitorDisplay{{"MonitorWindow/DisplayColorScheme"},
                                            {"MonitorWindow/HexaxialOrder", false},
                                            {"MonitorWindow/ShowAverageBeat", true}};
const TDisplaySettings ecgMonitorDisplay{{"EcgMonitorWindow/DisplayColorScheme"},
                                         {"EcgMonitorWindow/HexaxialOrder", false},
                                         {"EcgMonitorWindow/ShowAverageBeat", true}};
const TDisplaySettings stressReviewDisplay{{"ReviewWindow/DisplayColorScheme"},
                                           {"ReviewWindow/HexaxialOrder", false},
                                           {"ReviewWindow/ShowAverageBeat", true}};
const TDisplaySettings ecgReviewDisplay{{"EcgReviewWindow/DisplayColorScheme"},
                                        {"EcgReviewWindow/HexaxialOrder", false},
                                        {"EcgReviewWindow/ShowAverageBeat", true}};
const TSetting<QString> stLeadName{"ReviewWindow/STLeadName"};
const TSetting<QString> measurementLead{"EcgReviewWindow/MeasurementLead"};
const TSetting<QStringList> stressConclusions{"ReviewWindow/PredefinedConclusionList"};
const TSetting<bool> stressConclusionsSorted{"ReviewWindow/PredefinedConclusionListAlphaSort", false};
const TSetting<QStringList> ecgConclusions{"EcgReviewWindow/PredefinedConclusionList"};
const TSetting<bool> ecgConclusionsSorted{"EcgReviewWindow/PredefinedConclusionListAlphaSort", false};
const TSetting<bool> bpPrint{"BPDialog/Print", false};
const TSetting<QStringList> recentStudyList{"MainWindow/RecentStudyList"};
const TSetting<QString> sharedFolderList{"OpenStudyDialog/SharedFolderList"};
const TSetting<QString> defaultSharedFolder{"OpenStudyDialog/DefaultSharedFolder"};

const TSetting<QString> lastProtocol{"StudyDialog/LastProtocol"};
const TSetting<QStringList> doctorNameList{"StudyDialog/DoctorNameList"};
const TSetting<QStringList> referringDoctorNameList{"StudyDialog/ReferringDoctorNameList"};
const TSetting<QStringList> technicianNameList{"StudyDialog/TechnicianNameList"};
const TSetting<QStringList> medicalGroupList{"StudyDialog/MedicalGroupList"};
const TSetting<QStringList> idTypeList{"StudyDialog/IdTypeList"};
const TSetting<QStringList> cityList{"StudyDialog/CityList"};
const TSetting<QStringList> stateList{"StudyDialog/StateList"};

} // namespace settings
