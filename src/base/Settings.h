#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>

#include <optional>
#include <type_traits>

/// The table of the user's preferences. The store is the application's default QSettings (organisation and
/// application name of Constants.h); it is opened at each use and dropped. Main thread only.

namespace settings {

/// The value that a stored text says, or nothing: for `double` finite numbers, for `bool` true, false, 1 and
/// 0 in any case of letters.
template <typename T> std::optional<T> parsed(const QString& text);
template <> std::optional<double> parsed(const QString& text);
template <> std::optional<bool> parsed(const QString& text);

} // namespace settings

/// One key of the store with the value that an absent key stands for. Where two readers of a key differ in
/// their default, the table has the common one and the other reader names its own with `valueOr`.
template <typename T> struct TSetting
{
    const char* key;
    T fallback{};

    T value() const { return valueOr(fallback); }

    /// `absent` also where the store holds something that is no such value.
    T valueOr(const T& absent) const
    {
        const QVariant stored = QSettings().value(QLatin1String(key));
        if constexpr (std::is_same_v<T, double> || std::is_same_v<T, bool>) {
            // As text, in which the store keeps numbers: a variant would round and wrap what does not fit.
            return settings::parsed<T>(stored.toString().trimmed()).value_or(absent);
        } else {
            return stored.isValid() ? stored.template value<T>() : absent;
        }
    }

    void setValue(const T& value) const
    {
        QSettings().setValue(QLatin1String(key), QVariant::fromValue(value));
    }
};

/// The display options that each of the four monitor and review windows keeps in a group of its own.
struct TDisplaySettings
{
    TSetting<QString> displayColorScheme;
    TSetting<bool> hexaxialOrder;
    TSetting<bool> showAverageBeat;
};

namespace settings {

// Acquisition
extern const TSetting<QString> acqMode; ///< "demo", "bluetooth-com"; anything else is USB
extern const TSetting<QString> acqBluetoothPort;
extern const TSetting<double> signalGain;      ///< device range in mV, used when above 0
extern const TSetting<bool> hrProtocol;        ///< the high-rate device family
extern const TSetting<double> lowBatteryLevel; ///< volts

// Exercise equipment
extern const TSetting<QString> ergometerWorkloadUnits; ///< "watts"; anything else is "kgm/min"
extern const TSetting<QString> ergometerEquipment;     ///< empty for manual, "olmo", "kipmachines"
extern const TSetting<QString> ergometerPort;
extern const TSetting<QString> treadmillEquipment; ///< empty for manual, "kipmachines"
extern const TSetting<QString> treadmillPort;

// Export
extern const TSetting<bool> autoExportReports;
extern const TSetting<QString> exportEcgReportFolder;
extern const TSetting<QString> exportStressReportFolder;
extern const TSetting<bool> autoExportStudies;
extern const TSetting<QString> exportEcgStudyFolder;
extern const TSetting<QString> exportStressStudyFolder;

// Reports
extern const TSetting<QString> headerLogoFilename;
extern const TSetting<QString> headerTitle;
extern const TSetting<QString> headerInfo;
extern const TSetting<QString> signatureFilename;
extern const TSetting<QString> signatureName;
extern const TSetting<QString> signatureLicense;
extern const TSetting<QString> ecgGraphicLayout; ///< "6by2", "4by3"; empty is 12 by 1
extern const TSetting<QString> ecgGraphicRhythmLead;
extern const TSetting<bool> ecgShowAverage;
extern const TSetting<bool> printStressGraphics;
extern const TSetting<bool> showExpectedStageDuration;
extern const TSetting<QString> ecgReportModel;   ///< "TracesOnly"; anything else is the full report
extern const TSetting<QString> printDestination; ///< "printer", "stripPrinter"; anything else is PDF
extern const TSetting<QString> printerName;      ///< printer, or port of the strip printer

// Windows
extern const TDisplaySettings stressMonitorDisplay;
extern const TDisplaySettings ecgMonitorDisplay;
extern const TDisplaySettings stressReviewDisplay;
extern const TDisplaySettings ecgReviewDisplay;
extern const TSetting<QString> stLeadName;
extern const TSetting<QString> measurementLead; ///< absent: the study's own measurement channel
extern const TSetting<QStringList> stressConclusions;
extern const TSetting<bool> stressConclusionsSorted;
extern const TSetting<QStringList> ecgConclusions;
extern const TSetting<bool> ecgConclusionsSorted;
extern const TSetting<bool> bpPrint;
extern const TSetting<QStringList> recentStudyList; ///< each "id||…||…||…"
extern const TSetting<QString> sharedFolderList;
extern const TSetting<QString> defaultSharedFolder;

// Remembered entries of the study dialog
extern const TSetting<QString> lastProtocol;
extern const TSetting<QStringList> doctorNameList;
extern const TSetting<QStringList> referringDoctorNameList;
extern const TSetting<QStringList> technicianNameList;
extern const TSetting<QStringList> medicalGroupList;
extern const TSetting<QStringList> idTypeList;
extern const TSetting<QStringList> cityList;
extern const TSetting<QStringList> stateList;

// Defaults of the configuration dialog, which differ from what the other readers take for an absent key.
inline constexpr double configSignalGain = 450.0;
inline constexpr double configLowBatteryLevel = 2.6;

} // namespace settings
