#include "study/StudyDocument.h"

#include "base/Text.h"
#include "study/JsonObjects.h"
#include "study/JsonText.h"
#include "study/ResultsJson.h"
#include "study/Study.h"

#include <QJsonArray>

using velantor::fromText;
using velantor::toText;

namespace {

// More than any recording has; files with more are cut there.
constexpr int maxEvents = 100'000;
constexpr int maxRiskFactors = 1000;

/// Old files stored some of the patient's texts as numbers.
QByteArray patientText(const QJsonValue& value)
{
    if (value.isDouble())
        return toText(QString::number(value.toDouble(), 'g', 6));
    return toText(value.toString());
}

QJsonArray makeRiskFactors(const Study& study)
{
    QJsonArray factors;
    for (const QByteArray& name : study.riskFactorNames()) {
        QByteArray comment;
        const bool status = study.riskFactor(name, &comment);
        factors.append(QJsonObject{{QLatin1String("name"), fromText(name)},
                                   {QLatin1String("status"), status},
                                   {QLatin1String("comment"), fromText(comment)}});
    }
    return factors;
}

QJsonArray makeEvents(const TStudyEvents& events)
{
    QJsonArray array;
    for (int i = 0; i < events.count(); ++i) {
        const TStudyEvent& event = events.at(i);
        array.append(QJsonObject{{QLatin1String("description"), fromText(event.description)},
                                 {QLatin1String("position"), event.position},
                                 {QLatin1String("duration"), event.duration},
                                 {QLatin1String("print"), event.print}});
    }
    return array;
}

void readEvents(TStudyEvents& events, const QJsonValue& list)
{
    forEachObject(list, maxEvents, [&events](const QJsonObject& object) {
        TStudyEvent& event = events.add();
        event.description = toText(object.value(QLatin1String("description")).toString());
        event.position = finiteNumber(object.value(QLatin1String("position")));
        event.duration = finiteNumber(object.value(QLatin1String("duration")));
        event.print = object.value(QLatin1String("print")).toBool(event.print);
    });
}

// The arrays of the echo scoring, one per time, in the order of TEchoTime.
constexpr const char* scoreKeys[] = {"scoreRest", "scorePeak", "scorePost"};

QJsonObject makeEchoScoring(const TEchoScoring& scoring)
{
    QJsonArray segments;
    for (int segment = 1; segment <= TEchoScoring::segmentCount; ++segment)
        segments.append(fromText(TEchoScoring::storedName(segment)));
    QJsonObject object{{QLatin1String("segments"), segments}};
    for (int time = 0; time < 3; ++time) {
        QJsonArray scores;
        for (int segment = 1; segment <= TEchoScoring::segmentCount; ++segment)
            scores.append(scoring.score(segment, static_cast<TEchoTime>(time)));
        object.insert(QLatin1String(scoreKeys[time]), scores);
    }
    return object;
}

std::unique_ptr<TEchoScoring> readEchoScoring(const QJsonObject& object)
{
    auto scoring = std::make_unique<TEchoScoring>();
    const QJsonArray segments = object.value(QLatin1String("segments")).toArray();
    for (int time = 0; time < 3; ++time) {
        const QJsonArray scores = object.value(QLatin1String(scoreKeys[time])).toArray();
        for (int i = 0; i < std::min(segments.size(), scores.size()); ++i)
            scoring->setScore(toText(segments.at(i).toString()), static_cast<TEchoTime>(time),
                              scores.at(i).toInt());
    }
    return scoring;
}

/// All but the results and the study's own texts.
QJsonObject makeSmallMembers(Study& study)
{
    QJsonObject document{{QLatin1String("patient"), makePatientObject(study)},
                         {QLatin1String("events"), makeEvents(study.events())}};
    if (study.protocol() != nullptr)
        document.insert(QLatin1String("protocol"), study.protocol()->toJson());
    if (study.echoScoring() != nullptr)
        document.insert(QLatin1String("echoScoring"), makeEchoScoring(*study.echoScoring()));
    return document;
}

} // namespace

QJsonObject makeStudyObject(Study& study)
{
    QJsonObject object{{QLatin1String("id"), study.id()},
                       {QLatin1String("studyDateTime"), fromText(study.studyDateTime())},
                       {QLatin1String("recordingDateTime"), fromText(study.recordingDateTime())}};
    for (const TStudyField& field : studyFields())
        object.insert(QLatin1String(field.key), fromText(study.value(field.key)));
    return object;
}

QJsonObject makePatientObject(Study& study)
{
    const bool isAnimal =
        !study.value("patient/animalSpecies").isEmpty() || !study.value("patient/animalBreed").isEmpty();
    QJsonObject object{{QLatin1String("riskFactors"), makeRiskFactors(study)}};
    for (const TStudyField& field : patientFields()) {
        if (isAnimal || !field.isAnimal())
            object.insert(QLatin1String(field.key), fromText(study.value(field.patientKey())));
    }
    return object;
}

QJsonObject makeStudyDocument(Study& study)
{
    QJsonObject document = makeSmallMembers(study);
    document.insert(QLatin1String("results"), makeResultsObject(study.results()));
    document.insert(QLatin1String("study"), makeStudyObject(study));
    return document;
}

QByteArray makeStudyText(Study& study)
{
    // Members stand in the order of their names, and these two are the last.
    QByteArray text = compactJson(QJsonDocument(makeSmallMembers(study)));
    text.chop(1);
    text += ",\"results\":";
    appendResults(text, study.results());
    text += ",\"study\":" + compactJson(QJsonDocument(makeStudyObject(study))) + '}';
    return text;
}

void fillStudy(Study& study, const QJsonObject& document)
{
    const QJsonObject studyObject = document.value(QLatin1String("study")).toObject();
    const QJsonObject patient = document.value(QLatin1String("patient")).toObject();

    study.setId(studyObject.value(QLatin1String("id")).toInt());
    study.setStudyDateTime(toText(studyObject.value(QLatin1String("studyDateTime")).toString()));
    study.setRecordingDateTime(toText(studyObject.value(QLatin1String("recordingDateTime")).toString()));
    for (const TStudyField& field : studyFields())
        study.setValue(field.key, toText(studyObject.value(QLatin1String(field.key)).toString()));
    for (const TStudyField& field : patientFields())
        study.setValue(field.patientKey(), patientText(patient.value(QLatin1String(field.key))));
    const auto readRiskFactor = [&study](const QJsonObject& factor) {
        study.setRiskFactor(toText(factor.value(QLatin1String("name")).toString()),
                            factor.value(QLatin1String("status")).toBool(),
                            toText(factor.value(QLatin1String("comment")).toString()));
    };
    forEachObject(patient.value(QLatin1String("riskFactors")), maxRiskFactors, readRiskFactor);

    // A file without a protocol gives an empty one, which the next save writes.
    study.setProtocol(std::make_unique<TStressProtocol>(
        TStressProtocol::fromJson(document.value(QLatin1String("protocol")).toObject())));
    readEvents(study.events(), document.value(QLatin1String("events")));
    readResultsObject(study.results(), document.value(QLatin1String("results")).toObject());
    const QJsonObject echoScoring = document.value(QLatin1String("echoScoring")).toObject();
    if (!echoScoring.isEmpty())
        study.setEchoScoring(readEchoScoring(echoScoring));
}

void readStudyInfo(StudyInfo& info, const QJsonObject& document)
{
    const QJsonObject study = document.value(QLatin1String("study")).toObject();
    const QJsonObject patient = document.value(QLatin1String("patient")).toObject();
    info.id = study.value(QLatin1String("id")).toInt();
    info.studyDateTime = toText(study.value(QLatin1String("studyDateTime")).toString());
    info.recordingDateTime = toText(study.value(QLatin1String("recordingDateTime")).toString());
    for (const TStudyField& field : studyFields())
        info.*field.member = toText(study.value(QLatin1String(field.key)).toString());
    for (const TStudyField& field : patientFields())
        info.*field.member = patientText(patient.value(QLatin1String(field.key)));
}
