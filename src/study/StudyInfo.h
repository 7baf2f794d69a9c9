#pragma once

#include <QByteArray>

#include <span>
#include <vector>

/// Ids are drawn from 1 to this.
inline constexpr qint32 maxStudyId = 999999999;

struct TRiskFactor
{
    QByteArray name;
    bool status = false;
    QByteArray comment;

    bool operator==(const TRiskFactor&) const = default;
};

/// The flat record of a study: what dialogs edit, lists show and the launcher passes around. Cheap to copy.
/// Numbers that a user typed stay text until they are used.
struct StudyInfo
{
    qint32 id = 0;            ///< 1 to 999999999; 0 before creation
    QByteArray baseFilename;  ///< of the study's files, without folder and extension
    QByteArray status;        ///< empty, or "report" once a report has been made
    QByteArray studyType;     ///< "ECG", "Stress test" or "Tilt test"
    QByteArray studyDateTime; ///< "yyyyMMddHHmmss", when the study was opened
    QByteArray recordingDateTime =
        QByteArrayLiteral("00000000000000"); ///< the same, when the recording began
    QByteArray institutionName;
    QByteArray technicianName;
    QByteArray doctorName;
    QByteArray referringDoctorName;
    QByteArray treatment;
    QByteArray indication;
    QByteArray comments;
    QByteArray conclusion;
    QByteArray protocolName;

    // How the samples are taken.
    QByteArray sampleFormat = QByteArrayLiteral("short");
    qint32 samplingRate = 0; ///< samples per second per channel
    qint32 channelCount = 0;
    QByteArray channelNames; ///< joined with ","
    qint32 resolution = 0;   ///< bits per sample
    double gain = 0.0;       ///< the signal ranges from -gain to gain, in millivolts

    QByteArray firstName;
    QByteArray lastName;
    QByteArray sex;       ///< "M" or "F" in any language
    QByteArray birthDate; ///< "yyyyMMdd"
    QByteArray personIdType;
    QByteArray personIdNumber;
    QByteArray animalSpecies;
    QByteArray animalBreed;
    QByteArray medicalGroupName;
    QByteArray medicalGroupNumber;
    QByteArray medicalHistoryNumber;
    QByteArray address;
    QByteArray city;
    QByteArray state;
    QByteArray country;
    QByteArray phoneNumber;
    QByteArray age;
    QByteArray weight; ///< kilograms
    QByteArray height;
    QByteArray trainingZoneMax;    ///< maximum heart rate target
    QByteArray trainingZoneSubMax; ///< submaximal heart rate target

    std::vector<TRiskFactor> riskFactors;

    bool operator==(const StudyInfo&) const = default;
};

/// One text of a study: the key under which files and the open study hold it, and its place in StudyInfo. A
/// new text of a study is one more row of the tables behind these functions.
struct TStudyField
{
    const char* key;
    QByteArray StudyInfo::*member;

    /// Of the pair that is written only for animals.
    bool isAnimal() const { return member == &StudyInfo::animalSpecies || member == &StudyInfo::animalBreed; }
    /// The key of a patient's text in the open study.
    QByteArray patientKey() const { return QByteArray("patient/") + key; }
};

/// Texts of the `study` object, whose key in the open study is the key itself. The two times are not among
/// them.
std::span<const TStudyField> studyFields();
/// Texts of the `patient` object, whose key in the open study is "patient/" and the key.
std::span<const TStudyField> patientFields();
/// The member of a field by its key, study fields first; null if there is none.
QByteArray StudyInfo::*studyInfoMember(const QByteArray& key);

inline bool isStudyId(qint32 id)
{
    return id >= 1 && id <= maxStudyId;
}

/// The file name of a new study, without folder and extension: the parts that tell the patient, each followed
/// by
/// "-", then the study's time. Used as it stands, nothing is escaped.
QByteArray makeBaseFilename(const StudyInfo& info);

/// Whether files of this name stay in the data folder, on any system that an archive may travel to. False for
/// an empty name, ".", "..", and names with a path separator, a colon or a control character.
bool isSafeBaseFilename(const QByteArray& baseFilename);
