#include "StudyDialogFixture.h"
#include "support/SampleStudy.h"

#include "base/Error.h"
#include "study/StudyFiles.h"

#include <QCheckBox>
#include <QDateTimeEdit>

/// The button that enters the patient of the last study again.
class StudyDialogRepeatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void withoutAStudyNothingHappens();
    void theLatestPatientIsEnteredAgain();
    void theNewStudyStaysANewOne();
    void theStudyFieldsComeAlong();
    void whatTheFormDoesNotShowComesAlong();
    void aCancelledFormDoesNotKnowThePatient();
    void withoutTargetsThoseOfTheAgeStand();
    void ofTwoAtTheSameTimeTheLaterInTheListIsTaken();
    void aStudyWhoseFileIsGoneLeavesTheForm();
    void theFormCanBeAcceptedAfterwards();
    void aFactorOfTheFormerPatientIsTakenBack();
    void aProtocolThatIsGoneIsNotChosen();
    void aStudyThatIsOpenIsLeftAlone();
    void aBrokenStoreLeavesTheForm();

private:
    qint32 add(const char* lastName, const char* dateTime, const char* type = "Stress test");

    std::unique_ptr<TDialogStore> m_store;
};

qint32 StudyDialogRepeatTest::add(const char* lastName, const char* dateTime, const char* type)
{
    StudyInfo info = makeSampleInfo();
    info.studyType = type;
    info.lastName = lastName;
    info.firstName = "Ana";
    info.studyDateTime = dateTime;
    info.age = "50";
    info.sex = "F";
    info.birthDate = "19560201";
    info.weight = "70";
    info.height = "175";
    info.trainingZoneMax = "160";
    info.trainingZoneSubMax = "120";
    info.doctorName = "Dr. Who";
    info.conclusion = "fine";
    info.status = "report";
    info.protocolName = "Tilt test";
    info.riskFactors = {{"Gota", true, "since 2012"}};
    return m_store->addStudy(info);
}

void StudyDialogRepeatTest::withoutAStudyNothingHappens()
{
    StudyInfo info = infoOfType("Stress test");
    info.lastName = "Typed";
    const StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QStringLiteral("Typed"));
    QVERIFY(dialog.info() == info);
}

void StudyDialogRepeatTest::theLatestPatientIsEnteredAgain()
{
    add("Older", "20200101000000");
    const qint32 latest = add("Latest", "20230101000000");
    add("Oldest", "20190101000000");
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    const QDateTime shown = widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")->dateTime();
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QStringLiteral("Latest"));
    QCOMPARE(lineOf(dialog, "txtFirstName")->text(), QStringLiteral("Ana"));
    QCOMPARE(lineOf(dialog, "txtAge")->text(), QStringLiteral("50"));
    QCOMPARE(lineOf(dialog, "txtBirthDate")->text(), QStringLiteral("1/2/1956"));
    QCOMPARE(comboOf(dialog, "cboSex")->currentIndex(), 2);
    QCOMPARE(lineOf(dialog, "txtBMI")->text(), QStringLiteral("22.9"));
    QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QStringLiteral("120"));
    QCOMPARE(comboOf(dialog, "cboDoctorName")->currentText(), QStringLiteral("Dr. Who"));
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentText(), QStringLiteral("Tilt test"));
    QVERIFY(widgetOf<QCheckBox>(dialog, "chk_Gota")->isChecked());
    // The study is of now all the same.
    QCOMPARE(widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")->dateTime(), shown);
    QVERIFY(!m_store->database().isStudyOpen(latest));
}

void StudyDialogRepeatTest::theNewStudyStaysANewOne()
{
    add("Latest", "20230101000000", "ECG");
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    dialog.accept();
    const StudyInfo info = dialog.info();
    QCOMPARE(info.id, 0);
    QCOMPARE(info.baseFilename, QByteArray());
    QCOMPARE(info.studyType, QByteArray("Stress test"));
    QCOMPARE(info.status, QByteArray());
    QCOMPARE(info.conclusion, QByteArray());
    QVERIFY(info.studyDateTime > "20230101000000");
    QCOMPARE(info.lastName, QByteArray("Latest"));
    QCOMPARE(info.birthDate, QByteArray("19560201"));
    QCOMPARE(info.trainingZoneMax, QByteArray("160"));
}

void StudyDialogRepeatTest::theStudyFieldsComeAlong()
{
    StudyInfo former = makeSampleInfo();
    former.technicianName = "Luz Vega";
    former.doctorName = "Dr. Who";
    former.referringDoctorName = "Dr. No";
    former.treatment = "Aspirin\ndaily";
    former.indication = "Pain";
    former.comments = "Slept badly";
    former.protocolName = "Tilt test";
    m_store->addStudy(former);
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(comboOf(dialog, "cboReferringDoctorName")->currentText(), QStringLiteral("Dr. No"));
    QCOMPARE(widgetOf<QPlainTextEdit>(dialog, "txtTreatment")->toPlainText(),
             QStringLiteral("Aspirin\ndaily"));
    dialog.accept();
    const StudyInfo info = dialog.info();
    for (const auto member :
         {&StudyInfo::technicianName, &StudyInfo::doctorName, &StudyInfo::referringDoctorName,
          &StudyInfo::treatment, &StudyInfo::indication, &StudyInfo::comments, &StudyInfo::protocolName})
        QCOMPARE(info.*member, former.*member);
}

void StudyDialogRepeatTest::whatTheFormDoesNotShowComesAlong()
{
    StudyInfo former = makeSampleInfo();
    former.country = "Uruguay";
    former.animalSpecies = "Dog";
    former.animalBreed = "Boxer";
    former.riskFactors = {{"Asma", true, "since 1999"}, {"Gota", true, ""}};
    m_store->addStudy(former);
    StudyInfo info = infoOfType("Stress test");
    info.country = "Peru";
    info.riskFactors = {{"Of somebody else", true, ""}};
    StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    dialog.accept();
    QCOMPARE(dialog.info().country, QByteArray("Uruguay"));
    QCOMPARE(dialog.info().animalSpecies, QByteArray("Dog"));
    QCOMPARE(dialog.info().animalBreed, QByteArray("Boxer"));
    QCOMPARE(dialog.info().riskFactors.size(), m_store->database().riskFactorNames().size() + 1);
    QVERIFY(dialog.info().riskFactors.back() == TRiskFactor({"Asma", true, "since 1999"}));
}

void StudyDialogRepeatTest::aCancelledFormDoesNotKnowThePatient()
{
    add("Latest", "20230101000000");
    StudyInfo info = infoOfType("Stress test");
    info.lastName = "Typed";
    info.birthDate = "19800101";
    StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QVERIFY(dialog.info() == info);
    dialog.reject();
    QVERIFY(dialog.info() == info);
}

void StudyDialogRepeatTest::withoutTargetsThoseOfTheAgeStand()
{
    StudyInfo former = makeSampleInfo();
    former.age = "47";
    former.sex = "M";
    former.trainingZoneMax.clear();
    former.trainingZoneSubMax.clear();
    m_store->addStudy(former);
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    type(lineOf(dialog, "txtAge"), "20");
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QStringLiteral("173"));
    QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QStringLiteral("147"));
}

void StudyDialogRepeatTest::ofTwoAtTheSameTimeTheLaterInTheListIsTaken()
{
    add("One", "20230101000000");
    add("Other", "20230101000000");
    add("Older", "20220101000000");
    QByteArray expected;
    for (const StudyInfo& each : m_store->database().listStudies()) {
        if (each.studyDateTime == "20230101000000")
            expected = each.lastName;
    }
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QString::fromUtf8(expected));
}

void StudyDialogRepeatTest::aStudyWhoseFileIsGoneLeavesTheForm()
{
    add("Older", "20220101000000");
    const qint32 latest = add("Latest", "20230101000000");
    StudyInfo listed;
    QVERIFY(m_store->database().findStudy(latest, listed));
    QVERIFY(QFile::remove(studyFilePath(m_store->folder(), listed.baseFilename, velantor::studyExtension)));
    StudyInfo info = infoOfType("Stress test");
    info.lastName = "Typed";
    const StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QStringLiteral("Typed"));
    QVERIFY(dialog.info() == info);
}

void StudyDialogRepeatTest::theFormCanBeAcceptedAfterwards()
{
    add("Latest", "20230101000000");
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    QVERIFY(!okButton(dialog)->isEnabled());
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QVERIFY(okButton(dialog)->isEnabled());
}

void StudyDialogRepeatTest::aFactorOfTheFormerPatientIsTakenBack()
{
    add("Latest", "20230101000000");
    StudyInfo info = infoOfType("Stress test");
    info.riskFactors = {{"Stress", true, "at work"}};
    const StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QVERIFY(!widgetOf<QCheckBox>(dialog, "chk_Stress")->isChecked());
    QCOMPARE(lineOf(dialog, "txt_Stress")->text(), QString());
    QCOMPARE(lineOf(dialog, "txt_Gota")->text(), QStringLiteral("since 2012"));
}

void StudyDialogRepeatTest::aProtocolThatIsGoneIsNotChosen()
{
    StudyInfo former = makeSampleInfo();
    former.lastName = "Latest";
    former.studyDateTime = "20230101000000";
    former.protocolName = "Deleted since";
    m_store->addStudy(former);
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    comboOf(dialog, "cboProtocol")->setCurrentIndex(1);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QStringLiteral("Latest"));
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentIndex(), 1);
}

void StudyDialogRepeatTest::aStudyThatIsOpenIsLeftAlone()
{
    LocalStudyDatabase& database = m_store->database();
    Study* open = database.openStudy(add("Latest", "20230101000000"));
    QVERIFY(open);
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QString());
    QVERIFY(database.isStudyOpen(open->id()));
    database.closeStudy(open);
}

namespace {

/// Its disk is gone.
class TBrokenStore : public LocalStudyDatabase
{
public:
    using LocalStudyDatabase::LocalStudyDatabase;
    std::vector<StudyInfo> listStudies() override { throw TError("no disk"); }
};

} // namespace

void StudyDialogRepeatTest::aBrokenStoreLeavesTheForm()
{
    m_store.reset();
    const QTemporaryDir folder;
    TBrokenStore broken(folder.path());
    const TCurrentStore current(&broken);
    StudyInfo info = infoOfType("Stress test");
    info.lastName = "Typed";
    const StudyDialog dialog(nullptr, info, true);
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    QCOMPARE(lineOf(dialog, "txtLastName")->text(), QStringLiteral("Typed"));
}

QTEST_MAIN(StudyDialogRepeatTest)
#include "StudyDialogRepeatTest.moc"
