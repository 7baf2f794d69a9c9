#include "study/IndexRow.h"

#include "base/Text.h"
#include "study/JsonText.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr TStudyField rowFields[] = {
    {"baseFilename", &StudyInfo::baseFilename},
    {"status", &StudyInfo::status},
    {"studyType", &StudyInfo::studyType},
    {"studyDateTime", &StudyInfo::studyDateTime},
    {"patientFirstName", &StudyInfo::firstName},
    {"patientLastName", &StudyInfo::lastName},
    {"patientAnimalSpecies", &StudyInfo::animalSpecies},
    {"patientAnimalBreed", &StudyInfo::animalBreed},
};

bool isAnimalField(const TStudyField& field)
{
    return field.member == &StudyInfo::animalSpecies || field.member == &StudyInfo::animalBreed;
}

} // namespace

QString indexRowFromInfo(const StudyInfo& info)
{
    const bool isAnimal = !info.animalSpecies.isEmpty() || !info.animalBreed.isEmpty();
    QJsonObject row;
    for (const TStudyField& field : rowFields) {
        if (isAnimal || !isAnimalField(field))
            row.insert(QLatin1String(field.key), velantor::fromText(info.*field.member));
    }
    return QString::fromUtf8(compactJson(QJsonDocument(row)));
}

void readIndexRow(StudyInfo& info, const QString& data)
{
    const QJsonObject row = QJsonDocument::fromJson(data.toUtf8()).object();
    for (const TStudyField& field : rowFields) {
        const auto found = row.constFind(QLatin1String(field.key));
        if (found != row.constEnd())
            info.*field.member = velantor::toText(found->toString());
    }
}
