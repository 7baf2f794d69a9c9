#include "study/Study.h"

#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

Study::Study(qint32 id) : m_id(id) {}

Study::~Study()
{
    m_beats.reset();
    m_ecg.reset();
}

std::vector<QByteArray> Study::riskFactorNames() const
{
    std::vector<QByteArray> names;
    for (const auto& [name, state] : m_riskFactors)
        names.push_back(name);
    return names;
}

bool Study::riskFactor(const QByteArray& name, QByteArray* comment) const
{
    const auto found = m_riskFactors.find(name);
    const bool known = found != m_riskFactors.end();
    if (comment != nullptr)
        *comment = known ? found->second.comment : QByteArray();
    return known && found->second.status;
}

void Study::setRiskFactor(const QByteArray& name, bool status, const QByteArray& comment)
{
    m_riskFactors[name] = {status, comment};
}

void Study::setFiles(std::unique_ptr<TEcgFile> ecg, std::unique_ptr<TBeatFile> beats)
{
    m_beats = std::move(beats);
    m_ecg = std::move(ecg);
}

void infoFromStudy(StudyInfo& info, Study& study)
{
    info.id = study.id();
    for (const TStudyField& field : studyFields())
        info.*field.member = study.value(field.key);
    for (const TStudyField& field : patientFields())
        info.*field.member = study.value(field.patientKey());
    info.studyDateTime = study.studyDateTime();
    info.recordingDateTime = study.recordingDateTime();

    info.riskFactors.clear();
    for (const QByteArray& name : study.riskFactorNames()) {
        TRiskFactor factor;
        factor.name = name;
        factor.status = study.riskFactor(name, &factor.comment);
        info.riskFactors.push_back(factor);
    }
}

void studyFromInfo(Study& study, const StudyInfo& info)
{
    if (info.id != 0)
        study.setId(info.id);
    for (const TStudyField& field : studyFields())
        study.setValue(field.key, info.*field.member);
    for (const TStudyField& field : patientFields())
        study.setValue(field.patientKey(), info.*field.member);
    study.setStudyDateTime(info.studyDateTime);
    study.setRecordingDateTime(info.recordingDateTime);
    study.clearRiskFactors();
    for (const TRiskFactor& factor : info.riskFactors)
        study.setRiskFactor(factor.name, factor.status, factor.comment);
}
