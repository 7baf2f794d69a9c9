#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>

#include <optional>

// The rules behind the fields of a patient, without any widget: the study dialog and the quick fields of the
// launcher follow the same ones.

/// A birth date as a user types it, "d/M/yyyy" or "d/M/yy", where two digits are a year of the 1900s. Blanks
/// around it are passed over. Invalid if it is neither.
QDate parseBirthDate(const QString& typed);
/// The form that is kept, "yyyyMMdd"; empty for an invalid date.
QByteArray storedBirthDate(const QDate& birth);
/// What a field shows of the form that is kept, "d/M/yyyy"; empty if there is no date in it.
QString shownBirthDate(const QByteArray& stored);

/// Full years of life on `day`; nothing if a date is invalid or the first birthday has not come.
std::optional<int> ageAt(const QDate& birth, const QDate& day);

/// Beats per minute.
struct THeartRateTargets
{
    int maximum;
    int submaximum; ///< the percentage of the maximum, truncated
};
/// The targets at an age of full years. Without a known sex those of a female stand. Beyond the range of the
/// result the nearest number of it stands.
THeartRateTargets heartRateTargets(int age, bool male, int percent);
/// Percentage of the submaximal target until a user chooses another one.
inline constexpr int defaultSubmaximalPercent = 85;

/// Kilograms by square metres with one decimal, from a weight in kilograms and a height in centimetres; empty
/// unless the height is greater than 0.
QString bodyMassIndex(const QByteArray& weight, const QByteArray& height);

/// Which of the fields that a study can't do without are good.
struct TMandatoryFields
{
    bool lastName;
    bool firstName;
    bool age;
    bool sex;

    bool areGood() const { return lastName && firstName && age && sex; }
};
/// A resting ECG asks for the names alone; an exercise test sets its targets by age and sex.
TMandatoryFields checkMandatoryFields(const QString& lastName, const QString& firstName, const QString& age,
                                      bool isSexChosen, bool isRestingEcg);
