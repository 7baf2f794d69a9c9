#include "dialogs/PatientRules.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int leastAgeOfExercise = 2;
constexpr int firstFullYear = 1000;
constexpr double metresPerCentimetre = 0.01;

QString storedFormat()
{
    return QStringLiteral("yyyyMMdd");
}

int clampToInt(qint64 value)
{
    using TLimits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<qint64>(value, TLimits::min(), TLimits::max()));
}

bool isFilled(const QString& name)
{
    return !name.trimmed().isEmpty();
}

} // namespace

QDate parseBirthDate(const QString& typed)
{
    const QString text = typed.trimmed();
    const QDate date = QDate::fromString(text, QStringLiteral("d/M/yyyy"));
    if (date.isValid() && date.year() >= firstFullYear)
        return date;
    return QDate::fromString(text, QStringLiteral("d/M/yy"));
}

QByteArray storedBirthDate(const QDate& birth)
{
    return velantor::toText(birth.toString(storedFormat()));
}

QString shownBirthDate(const QByteArray& stored)
{
    return QDate::fromString(velantor::fromText(stored), storedFormat()).toString(QStringLiteral("d/M/yyyy"));
}

std::optional<int> ageAt(const QDate& birth, const QDate& day)
{
    if (!birth.isValid() || !day.isValid())
        return std::nullopt;
    const bool hadBirthday =
        birth.month() < day.month() || (birth.month() == day.month() && birth.day() <= day.day());
    const int years = day.year() - birth.year() - (hadBirthday ? 0 : 1);
    return years > 0 ? std::optional(years) : std::nullopt;
}

THeartRateTargets heartRateTargets(int age, bool male, int percent)
{
    // Wide, for the age is whatever number someone typed.
    const qint64 maximum = (male ? 220 : 210) - qint64{age};
    return {clampToInt(maximum), clampToInt(maximum * percent / 100)};
}

QString bodyMassIndex(const QByteArray& weight, const QByteArray& height)
{
    const double metres = velantor::numberFromText(height) * metresPerCentimetre;
    const double squared = metres * metres;
    if (metres <= 0.0 || squared == 0.0)
        return {};
    const double index = velantor::numberFromText(weight) / squared;
    return std::isfinite(index) ? QString::number(index, 'f', 1) : QString();
}

TMandatoryFields checkMandatoryFields(const QString& lastName, const QString& firstName, const QString& age,
                                      bool isSexChosen, bool isRestingEcg)
{
    return {isFilled(lastName), isFilled(firstName), isRestingEcg || age.toInt() >= leastAgeOfExercise,
            isRestingEcg || isSexChosen};
}
