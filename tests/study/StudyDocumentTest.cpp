#include "study/StudyDocument.h"
#include "study/JsonText.h"
#include "study/RandomStudy.h"
#include "study/ResultsJson.h"
#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject parsed(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

/// A study filled from a document whose `study` and `patient` need no more than to be there.
std::unique_ptr<Study> filled(const QByteArray& moreKeys, const QByteArray& patient = R"({"sex":"F"})")
{
    auto study = std::make_unique<Study>(0);
    fillStudy(*study, parsed(R"({"study":{"id":5},"patient":)" + patient + moreKeys + '}'));
    return study;
}

void fillSmallStudy(Study& study)
{
    study.setId(123456789);
    study.setValue("baseFilename", "12-Perez-Ana-20240105093012");
    study.setValue("status", "report");
    study.setValue("studyType", "Stress test");
    study.setValue("comments", "dice \"no\"\\sí\n\xf0\x9f\x98\x80");
    study.setStudyDateTime("20240105093012");
    study.setRecordingDateTime("20240105093101");
    study.setValue("patient/firstName", "Ana");
    study.setValue("patient/lastName", "Perez");
    study.setValue("patient/medicalHistoryNumber", "12");
    study.setValue("patient/sex", "F");
    study.setValue("patient/weight", "71.5");
    study.setRiskFactor("Hipertensión", false, "");
    study.setRiskFactor("Diabetes", true, "desde 2010");
    TStudyEvent& event = study.events().add();
    event.setDescription("Dolor");
    event.position = 61.5;
    event.duration = 10.0;
    event.print = false;
    study.events().add();
}

const QByteArray smallStudy =
    R"({"baseFilename":"12-Perez-Ana-20240105093012",)"
    "\"comments\":\"dice \\\"no\\\"\\\\sí\\n\xf0\x9f\x98\x80\","
    R"("conclusion":"","doctorName":"","id":123456789,"indication":"","institutionName":"",)"
    R"("protocolName":"","recordingDateTime":"20240105093101","referringDoctorName":"",)"
    R"("status":"report","studyDateTime":"20240105093012","studyType":"Stress test",)"
    R"("technicianName":"","treatment":""})";

const QByteArray smallPatient =
    R"({"address":"","age":"","birthDate":"","city":"","country":"","firstName":"Ana","height":"",)"
    R"("lastName":"Perez","medicalGroupName":"","medicalGroupNumber":"","medicalHistoryNumber":"12",)"
    R"("personIdNumber":"","personIdType":"","phoneNumber":"","riskFactors":[)"
    R"({"comment":"desde 2010","name":"Diabetes","status":true},)"
    R"({"comment":"","name":"Hipertensión","status":false}],)"
    R"("sex":"F","state":"","trainingZoneMax":"","trainingZoneSubMax":"","weight":"71.5"})";

const QByteArray smallEvents = R"([{"description":"Dolor","duration":10,"position":61.5,"print":false},)"
                               R"({"description":"","duration":0,"position":0,"print":true}])";

const QByteArray segmentsJson =
    R"(["BasalAnteroSeptum","MidAnteroSeptum","BasalSeptum","MidSeptum","ApicalSeptum","BasalInferior",)"
    R"("MidInferior","ApicalInferior","BasalPosterior","MidPosterior","BasalLateral","MidLateral",)"
    R"("ApicalLateral","BasalAnterior","MidAnterior","ApicalAnterior"])";

} // namespace

class StudyDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDocumentOfASmallStudyIsThisText()
    {
        Study study(0);
        fillSmallStudy(study);
        const QByteArray results = compact(makeResultsObject(study.results()));
        QCOMPARE(compact(makeStudyDocument(study)), R"({"events":)" + smallEvents + R"(,"patient":)" +
                                                        smallPatient + R"(,"results":)" + results +
                                                        R"(,"study":)" + smallStudy + '}');
    }

    void protocolAndEchoScoringAreWrittenWhenThere()
    {
        Study study(1);
        QCOMPARE(makeStudyDocument(study).keys(),
                 (QStringList{QStringLiteral("events"), QStringLiteral("patient"), QStringLiteral("results"),
                              QStringLiteral("study")}));
        auto protocol = std::make_unique<TStressProtocol>("Step", TProtocolType::Ergometer);
        protocol->addStage(TStagePhase::Exercise, 60.0, 25.0);
        study.setProtocol(std::move(protocol));
        auto scoring = std::make_unique<TEchoScoring>();
        scoring->setScore("BasalAnteroSeptum", TEchoTime::Rest, 1);
        scoring->setScore("MidAnteroSeptum", TEchoTime::Peak, 2);
        scoring->setScore("ApicalAnterior", TEchoTime::Post, -3);
        study.setEchoScoring(std::move(scoring));
        const QJsonObject document = makeStudyDocument(study);
        QCOMPARE(compact(document.value(QLatin1String("protocol")).toObject()),
                 QByteArray(R"({"name":"Step","stages":[{"duration":60,"phase":"exercise","workload":25}],)"
                            R"("type":"ergometer"})"));
        QCOMPARE(compact(document.value(QLatin1String("echoScoring")).toObject()),
                 R"({"scorePeak":[0,2,0,0,0,0,0,0,0,0,0,0,0,0,0,0],)"
                 R"("scorePost":[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,-3],)"
                 R"("scoreRest":[1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0],"segments":)" +
                     segmentsJson + '}');
    }

    void speciesAndBreedAreWrittenTogetherOrNotAtAll()
    {
        const QString species = QStringLiteral("animalSpecies");
        const QString breed = QStringLiteral("animalBreed");
        Study study(1);
        QVERIFY(!makePatientObject(study).contains(species));
        QVERIFY(!makePatientObject(study).contains(breed));
        study.setValue("patient/animalBreed", "Galgo");
        QCOMPARE(makePatientObject(study).value(species), QJsonValue(QString()));
        QCOMPARE(makePatientObject(study).value(breed), QJsonValue(QStringLiteral("Galgo")));
        study.setValue("patient/animalBreed", "");
        study.setValue("patient/animalSpecies", "Perro");
        QCOMPARE(makePatientObject(study).value(species), QJsonValue(QStringLiteral("Perro")));
        QCOMPARE(makePatientObject(study).value(breed), QJsonValue(QString()));
    }

    void theTextOfAStudyIsThatOfItsDocument()
    {
        for (unsigned seed = 0; seed < 50; ++seed) {
            Study study(1);
            TRandomStudy(seed).fill(study);
            QCOMPARE(makeStudyText(study), compactJson(QJsonDocument(makeStudyDocument(study))));
        }
        Study empty(1);
        QCOMPARE(makeStudyText(empty), compactJson(QJsonDocument(makeStudyDocument(empty))));
    }

    void theTextFillsAStudy()
    {
        Study study(0);
        fillStudy(study, parsed(R"({"study":)" + smallStudy + R"(,"patient":)" + smallPatient +
                                R"(,"events":)" + smallEvents + '}'));
        Study expected(0);
        fillSmallStudy(expected);
        expected.setProtocol(std::make_unique<TStressProtocol>());
        QCOMPARE(compact(makeStudyDocument(study)), compact(makeStudyDocument(expected)));
        QCOMPARE(study.id(), 123456789);
        QCOMPARE(study.value("comments"), QByteArray("dice \"no\"\\sí\n\xf0\x9f\x98\x80"));
        QByteArray comment;
        QVERIFY(study.riskFactor("Diabetes", &comment));
        QCOMPARE(comment, QByteArray("desde 2010"));
        QCOMPARE(study.events().at(0).position, 61.5);
        QVERIFY(!study.events().at(0).print);
        QCOMPARE(study.events().at(1).index, 1);
    }

    void numbersAmongThePatientTextsBecomeTexts_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("whole") << QByteArray("71") << QByteArray("71");
        QTest::newRow("fraction") << QByteArray("71.5") << QByteArray("71.5");
        QTest::newRow("six digits") << QByteArray("123456") << QByteArray("123456");
        QTest::newRow("seven digits") << QByteArray("1234567") << QByteArray("1.23457e+06");
        QTest::newRow("rounded") << QByteArray("70.12345678") << QByteArray("70.1235");
        QTest::newRow("zero") << QByteArray("0") << QByteArray("0");
        QTest::newRow("negative") << QByteArray("-2.50") << QByteArray("-2.5");
        QTest::newRow("small") << QByteArray("0.00001") << QByteArray("1e-05");
        QTest::newRow("text") << QByteArray("\"71,5 kg\"") << QByteArray("71,5 kg");
        QTest::newRow("yes") << QByteArray("true") << QByteArray();
        QTest::newRow("nothing") << QByteArray("null") << QByteArray();
        QTest::newRow("list") << QByteArray("[1]") << QByteArray();
        QTest::newRow("object") << QByteArray("{\"a\":1}") << QByteArray();
    }

    void numbersAmongThePatientTextsBecomeTexts()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, text);
        for (const TStudyField& field : patientFields()) {
            const QByteArray patient = QByteArray("{\"") + field.key + "\":" + json + '}';
            QCOMPARE(filled("", patient)->value(QByteArray("patient/") + field.key), text);
            StudyInfo info;
            readStudyInfo(info, parsed(R"({"study":{"id":5},"patient":)" + patient + '}'));
            QCOMPARE(info.*field.member, text);
        }
    }

    void studyTextsAreTextsOnly()
    {
        Study study(0);
        fillStudy(study, parsed(R"({"study":{"id":"7","comments":5,"status":null,"studyDateTime":2024},)"
                                R"("patient":{"sex":"F"}})"));
        QCOMPARE(study.id(), 0);
        QCOMPARE(study.value("comments"), QByteArray());
        QCOMPARE(study.value("status"), QByteArray());
        QCOMPARE(study.studyDateTime(), QByteArray());
    }

    void eventsWithoutPrintArePrinted()
    {
        const auto study = filled(R"(,"events":[{"description":"a","position":1.5,"duration":2},)"
                                  R"({"print":false},{"print":"no"},7])");
        QCOMPARE(study->events().count(), 4);
        QVERIFY(study->events().at(0).print);
        QCOMPARE(study->events().at(0).description, QByteArray("a"));
        QCOMPARE(study->events().at(0).position, 1.5);
        QCOMPARE(study->events().at(0).duration, 2.0);
        QVERIFY(!study->events().at(1).print);
        QVERIFY(study->events().at(2).print);
        QCOMPARE(study->events().at(3).position, 0.0);
    }

    void listsThatAShortTextBlowsUpAreCut()
    {
        const QByteArray zeros = QByteArray("0,").repeated(150000) + '0';
        const auto study = filled(",\"events\":[" + zeros + "],\"protocol\":{\"stages\":[" + zeros + "]}");
        QCOMPARE(study->events().count(), 100000);
        QCOMPARE(study->protocol()->stageCount(), 10000);
    }

    void aStudyWithoutProtocolComesBackWithAnEmptyOne()
    {
        const auto study = filled("");
        QVERIFY(study->protocol() != nullptr);
        QVERIFY(*study->protocol() == TStressProtocol());
        QCOMPARE(compact(makeStudyDocument(*study).value(QLatin1String("protocol")).toObject()),
                 QByteArray(R"({"name":"","stages":[],"type":"treadmill"})"));
    }

    void theProtocolIsTheStudysOwn()
    {
        const auto study = filled(
            R"(,"protocol":{"name":"Own","type":"ergometer","stages":[{"duration":30,"workload":50}]})");
        QCOMPARE(study->protocol()->name(), QByteArray("Own"));
        QCOMPARE(study->protocol()->type(), TProtocolType::Ergometer);
        QCOMPARE(study->protocol()->stage(0).value("workload"), 50.0);
    }

    void resultsAreFilledByTheirNames()
    {
        const auto study =
            filled(R"(,"results":{"maxBPM":{"type":"value","value":150},"other":{"value":1}})");
        QCOMPARE(study->results().value("maxBPM")->value(), 150.0);
        QVERIFY(study->results().get("other") == nullptr);
    }

    void withoutEchoScoringThereIsNone()
    {
        QVERIFY(filled("")->echoScoring() == nullptr);
        QVERIFY(filled(R"(,"echoScoring":{})")->echoScoring() == nullptr);
        QVERIFY(filled(R"(,"echoScoring":[1])")->echoScoring() == nullptr);
    }

    void unknownSegmentsAndMissingScoresSetNothing()
    {
        const auto study = filled(R"(,"echoScoring":{"segments":["MidSeptum","Septum","ApicalAnterior",5],)"
                                  R"("scoreRest":[1,2,3,4,5,6],"scorePeak":[7],"scorePost":"none"})");
        TEchoScoring expected;
        expected.setScore("MidSeptum", TEchoTime::Rest, 1);
        expected.setScore("MidSeptum", TEchoTime::Peak, 7);
        expected.setScore("ApicalAnterior", TEchoTime::Rest, 3);
        QVERIFY(study->echoScoring() != nullptr);
        QVERIFY(*study->echoScoring() == expected);
    }

    void segmentsAreFoundByNameInAnyOrder()
    {
        const auto study = filled(R"(,"echoScoring":{"segments":["ApicalAnterior","BasalAnteroSeptum"],)"
                                  R"("scoreRest":[16,1],"scorePeak":[],"scorePost":[17,2]})");
        QCOMPARE(study->echoScoring()->score(16, TEchoTime::Rest), 16);
        QCOMPARE(study->echoScoring()->score(1, TEchoTime::Rest), 1);
        QCOMPARE(study->echoScoring()->score(16, TEchoTime::Post), 17);
        QCOMPARE(study->echoScoring()->score(1, TEchoTime::Peak), 0);
    }

    void theRecordOfADocumentHasItsTexts()
    {
        StudyInfo info;
        info.gain = 300.0;
        readStudyInfo(info, parsed(R"({"study":)" + smallStudy + R"(,"patient":)" + smallPatient + '}'));
        QCOMPARE(info.id, 123456789);
        QCOMPARE(info.baseFilename, QByteArray("12-Perez-Ana-20240105093012"));
        QCOMPARE(info.studyDateTime, QByteArray("20240105093012"));
        QCOMPARE(info.recordingDateTime, QByteArray("20240105093101"));
        QCOMPARE(info.status, QByteArray("report"));
        QCOMPARE(info.lastName, QByteArray("Perez"));
        QCOMPARE(info.weight, QByteArray("71.5"));
        QCOMPARE(info.gain, 300.0);
    }
};

QTEST_GUILESS_MAIN(StudyDocumentTest)
#include "StudyDocumentTest.moc"
