#pragma once

#include "study/StudyInfo.h"

#include <QDateTime>
#include <QString>

/// What the quick fields of the launcher hold, as it was typed.
struct TQuickPatient
{
    QString lastName;
    QString firstName;
    QString age;          ///< years
    QByteArray birthDate; ///< "yyyyMMdd"; empty if only the age is known
    QByteArray sex;       ///< "M", "F" or empty
    QString patientId;
    QString personId;
};

/// A resting ECG needs the names.
bool canStartEcg(const TQuickPatient& patient);
/// A stress test needs the names, an age of 2 years or more, and the sex.
bool canStartStress(const TQuickPatient& patient);

/// What the quick fields can show of a study.
TQuickPatient quickPatient(const StudyInfo& info);

/// The record of a new resting ECG.
StudyInfo quickEcgInfo(const TQuickPatient& patient, const QDateTime& now);
/// The record of a new stress test, with the heart rate targets where the age is known.
StudyInfo quickStressInfo(const TQuickPatient& patient, const QByteArray& protocolName, const QDateTime& now);
