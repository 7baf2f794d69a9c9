#include "study/StudyInfo.h"
#include "study/RiskFactors.h"

#include <QtTest>

class StudyInfoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewRecordHasNoIdAndNoRecordingTime()
    {
        const StudyInfo info;
        QCOMPARE(info.id, 0);
        QCOMPARE(info.baseFilename, QByteArray());
        QCOMPARE(info.status, QByteArray());
        QCOMPARE(info.recordingDateTime, QByteArray("00000000000000"));
        QCOMPARE(info.sampleFormat, QByteArray("short"));
        QVERIFY(info.riskFactors.empty());
    }

    void theFileNameTellsThePatientAndTheTime_data()
    {
        QTest::addColumn<QByteArray>("history");
        QTest::addColumn<QByteArray>("person");
        QTest::addColumn<QByteArray>("last");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("name");
        const auto row = [](const char* title, const char* history, const char* person, const char* last,
                            const char* first, const char* name) {
            QTest::newRow(title) << QByteArray(history) << QByteArray(person) << QByteArray(last)
                                 << QByteArray(first) << QByteArray(name);
        };
        row("without person id", "12", "", "Perez", "Ana", "12-Perez-Ana-20240105093012");
        row("all parts", "12", "30111222", "Perez", "Ana", "12-30111222-Perez-Ana-20240105093012");
        row("nobody", "", "", "", "", "20240105093012");
        row("first name only", "", "", "", "Ana", "Ana-20240105093012");
        row("nothing is escaped", "", "", "Pérez/Gómez", "%1 a.b", "Pérez/Gómez-%1 a.b-20240105093012");
        row("a blank is a part", " ", "", "", "", " -20240105093012");
    }

    void theFileNameTellsThePatientAndTheTime()
    {
        QFETCH(QByteArray, history);
        QFETCH(QByteArray, person);
        QFETCH(QByteArray, last);
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, name);
        StudyInfo info;
        info.studyDateTime = "20240105093012";
        info.medicalHistoryNumber = history;
        info.personIdNumber = person;
        info.lastName = last;
        info.firstName = first;
        QCOMPARE(makeBaseFilename(info), name);
    }

    void aLongNameIsNotCut()
    {
        StudyInfo info;
        info.lastName = QByteArray(1000, 'x');
        info.studyDateTime = "20240105093012";
        QCOMPARE(makeBaseFilename(info).size(), 1015);
    }

    void namesThatLeaveTheFolderAreUnsafe_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("safe");
        QTest::newRow("usual") << QByteArray("12-Perez-Ana-20240105093012") << true;
        QTest::newRow("accents and blanks") << QByteArray("Pérez Gómez-20240105093012") << true;
        QTest::newRow("dots within") << QByteArray("a..b") << true;
        QTest::newRow("three dots") << QByteArray("...") << true;
        QTest::newRow("per cent") << QByteArray("%1") << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("this folder") << QByteArray(".") << false;
        QTest::newRow("folder above") << QByteArray("..") << false;
        QTest::newRow("climbing") << QByteArray("../x") << false;
        QTest::newRow("absolute") << QByteArray("/x") << false;
        QTest::newRow("separator behind") << QByteArray("x/") << false;
        QTest::newRow("backslash") << QByteArray("a\\b") << false;
        QTest::newRow("drive or stream") << QByteArray("C:x") << false;
        QTest::newRow("line end") << QByteArray("a\nb") << false;
        QTest::newRow("zero byte") << QByteArray("a\0b", 3) << false;
        QTest::newRow("last control character") << QByteArray("a\x1f") << false;
        QTest::newRow("delete") << QByteArray("a\x7f") << false;
    }

    void namesThatLeaveTheFolderAreUnsafe()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, safe);
        QCOMPARE(isSafeBaseFilename(name), safe);
    }

    void idsHaveUpToNineDigits()
    {
        QVERIFY(!isStudyId(-1));
        QVERIFY(!isStudyId(0));
        QVERIFY(isStudyId(1));
        QVERIFY(isStudyId(999999999));
        QVERIFY(!isStudyId(1000000000));
    }

    void theStudyTextsAreTheseTwelve()
    {
        const std::vector<TStudyField> fields{
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
        compareFields(studyFields(), fields);
    }

    void thePatientTextsAreTheseTwentyOne()
    {
        const std::vector<TStudyField> fields{
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
        compareFields(patientFields(), fields);
    }

    void membersAreFoundByTheirKey()
    {
        QCOMPARE(studyInfoMember("comments"), &StudyInfo::comments);
        QCOMPARE(studyInfoMember("height"), &StudyInfo::height);
        QVERIFY(studyInfoMember("studyDateTime") == nullptr);
        QVERIFY(studyInfoMember("patient/height") == nullptr);
        QVERIFY(studyInfoMember("") == nullptr);
    }

    void theRiskFactorsAreTheseElevenInTheirOrder()
    {
        const std::vector<QByteArray> names{"Hipertensi\xc3\xb3n",
                                            "Tabaquismo actual",
                                            "Ex-tabaquismo",
                                            "Sedentarismo",
                                            "Obesidad",
                                            "Diabetes",
                                            "Dislipemia",
                                            "Stress",
                                            "Angor",
                                            "Infarto agudo de miocardio",
                                            "Gota"};
        QCOMPARE(standardRiskFactors(), names);
    }

private:
    static void compareFields(std::span<const TStudyField> fields, const std::vector<TStudyField>& expected)
    {
        QCOMPARE(fields.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            QCOMPARE(fields[i].key, expected[i].key);
            QCOMPARE(fields[i].member, expected[i].member);
        }
    }
};

QTEST_GUILESS_MAIN(StudyInfoTest)
#include "StudyInfoTest.moc"
