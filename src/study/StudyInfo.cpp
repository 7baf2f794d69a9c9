#include "study/StudyInfo.h"

#include <algorithm>

namespace {

constexpr TStudyField studyFieldTable[] = {
    {"baseFilename", &StudyInfo::baseFilename},
    {"status", &StudyInfo::status},
    {"studyType", &StudyInfo::studyType},
    {"institutionName", &StudyInfo::institutionName},
    {"technicianName", &StudyInfo::technicianName},
    {"doctorName", &StudyInfo::doctorName},
    {"referringDoctorName", &StudyInfo::referringDoctorName},
    {"treatment", &StudyInfo::treatment},
    {"indication", &StudyInfo::indication},
    {"comments", &StudyInfo::comments},
    {"conclusion", &StudyInfo::conclusion},
    {"protocolName", &StudyInfo::protocolName},
};

constexpr TStudyField patientFieldTable[] = {
    {"firstName", &StudyInfo::firstName},
    {"lastName", &StudyInfo::lastName},
    {"sex", &StudyInfo::sex},
    {"birthDate", &StudyInfo::birthDate},
    {"personIdType", &StudyInfo::personIdType},
    {"personIdNumber", &StudyInfo::personIdNumber},
    {"animalSpecies", &StudyInfo::animalSpecies},
    {"animalBreed", &StudyInfo::animalBreed},
    {"medicalGroupName", &StudyInfo::medicalGroupName},
    {"medicalGroupNumber", &StudyInfo::medicalGroupNumber},
    {"medicalHistoryNumber", &StudyInfo::medicalHistoryNumber},
    {"address", &StudyInfo::address},
    {"city", &StudyInfo::city},
    {"state", &StudyInfo::state},
    {"country", &StudyInfo::country},
    {"phoneNumber", &StudyInfo::phoneNumber},
    {"age", &StudyInfo::age},
    {"weight", &StudyInfo::weight},
    {"height", &StudyInfo::height},
    {"trainingZoneMax", &StudyInfo::trainingZoneMax},
    {"trainingZoneSubMax", &StudyInfo::trainingZoneSubMax},
};

bool isUnsafeCharacter(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f || c == '/' || c == '\\' || c == ':';
}

} // namespace

std::span<const TStudyField> studyFields()
{
    return studyFieldTable;
}

std::span<const TStudyField> patientFields()
{
    return patientFieldTable;
}

QByteArray StudyInfo::*studyInfoMember(const QByteArray& key)
{
    for (const auto fields : {studyFields(), patientFields()}) {
        const auto found =
            std::find_if(fields.begin(), fields.end(), [&](const TStudyField& f) { return key == f.key; });
        if (found != fields.end())
            return found->member;
    }
    return nullptr;
}

QByteArray makeBaseFilename(const StudyInfo& info)
{
    QByteArray name;
    for (const QByteArray& part :
         {info.medicalHistoryNumber, info.personIdNumber, info.lastName, info.firstName}) {
        if (!part.isEmpty())
            name += part + '-';
    }
    return name + info.studyDateTime;
}

bool isSafeBaseFilename(const QByteArray& baseFilename)
{
    if (baseFilename.isEmpty() || baseFilename == "." || baseFilename == "..")
        return false;
    return std::none_of(baseFilename.begin(), baseFilename.end(), isUnsafeCharacter);
}
