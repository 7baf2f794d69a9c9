#include "app/QuickStudy.h"

#include "base/Text.h"
#include "dialogs/PatientRules.h"

using velantor::fromText;
using velantor::toText;

namespace {

StudyInfo patientInfo(const TQuickPatient& patient, const QDateTime& now)
{
    StudyInfo info;
    info.studyDateTime = toText(now.toString(QStringLiteral("yyyyMMddHHmmss")));
    info.lastName = toText(patient.lastName.trimmed());
    info.firstName = toText(patient.firstName.trimmed());
    info.personIdNumber = toText(patient.personId.trimmed());
    info.medicalHistoryNumber = toText(patient.patientId.trimmed());
    info.age = toText(patient.age.trimmed());
    info.birthDate = patient.birthDate;
    info.sex = patient.sex;
    return info;
}

bool canStart(const TQuickPatient& patient, bool isRestingEcg)
{
    return checkMandatoryFields(patient.lastName, patient.firstName, patient.age, !patient.sex.isEmpty(),
                                isRestingEcg)
        .areGood();
}

void setTrainingZone(StudyInfo& info)
{
    bool isNumber = false;
    const int age = info.age.toInt(&isNumber);
    if (!isNumber)
        return;
    const THeartRateTargets targets = heartRateTargets(age, info.sex == "M", defaultSubmaximalPercent);
    info.trainingZoneMax = QByteArray::number(targets.maximum);
    info.trainingZoneSubMax = QByteArray::number(targets.submaximum);
}

} // namespace

bool canStartEcg(const TQuickPatient& patient)
{
    return canStart(patient, true);
}

bool canStartStress(const TQuickPatient& patient)
{
    return canStart(patient, false);
}

TQuickPatient quickPatient(const StudyInfo& info)
{
    return {fromText(info.lastName),
            fromText(info.firstName),
            fromText(info.age),
            info.birthDate,
            info.sex,
            fromText(info.medicalHistoryNumber),
            fromText(info.personIdNumber)};
}

StudyInfo quickEcgInfo(const TQuickPatient& patient, const QDateTime& now)
{
    StudyInfo info = patientInfo(patient, now);
    info.studyType = "ECG";
    return info;
}

StudyInfo quickStressInfo(const TQuickPatient& patient, const QByteArray& protocolName, const QDateTime& now)
{
    StudyInfo info = patientInfo(patient, now);
    info.studyType = "Stress test";
    info.protocolName = protocolName;
    setTrainingZone(info);
    return info;
}
