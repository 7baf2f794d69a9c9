#include "StudyDialogFixture.h"
#include "support/SampleStudy.h"

#include "base/Settings.h"

#include <QDateTimeEdit>

/// Which field stands for what, and what acceptance changes.
class StudyDialogFieldsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theFieldsShowTheStudy_data();
    void theFieldsShowTheStudy();
    void aChangedFieldIsKept_data();
    void aChangedFieldIsKept();
    void anUntouchedStudyStaysAsItIs();
    void whatAFieldCannotShowStaysUntouched();
    void aChangedTimeIsKept();
    void onlyAcceptanceChangesTheStudy();

private:
    std::unique_ptr<TDialogStore> m_store;
};

namespace {

struct TShownField
{
    const char* name;
    QByteArray StudyInfo::*member;
};

const TShownField shownFields[] = {
    {"txtMedicalHistoryNumber", &StudyInfo::medicalHistoryNumber},
    {"cboIdType", &StudyInfo::personIdType},
    {"txtPersonIdNumber", &StudyInfo::personIdNumber},
    {"txtLastName", &StudyInfo::lastName},
    {"txtFirstName", &StudyInfo::firstName},
    {"txtAge", &StudyInfo::age},
    {"txtWeight", &StudyInfo::weight},
    {"txtHeight", &StudyInfo::height},
    {"cboMedicalGroup", &StudyInfo::medicalGroupName},
    {"txtMedicalGroupNumber", &StudyInfo::medicalGroupNumber},
    {"txtAddress", &StudyInfo::address},
    {"cboCity", &StudyInfo::city},
    {"cboState", &StudyInfo::state},
    {"txtPhoneNumber", &StudyInfo::phoneNumber},
    {"txtHRMax", &StudyInfo::trainingZoneMax},
    {"txtHRSubmax", &StudyInfo::trainingZoneSubMax},
    {"cboTechnicianName", &StudyInfo::technicianName},
    {"cboDoctorName", &StudyInfo::doctorName},
    {"cboReferringDoctorName", &StudyInfo::referringDoctorName},
    {"txtTreatment", &StudyInfo::treatment},
    {"txtIndication", &StudyInfo::indication},
    {"txtComments", &StudyInfo::comments},
};

void tableOfFields()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < static_cast<int>(std::size(shownFields)); ++index)
        QTest::newRow(shownFields[index].name) << index;
}

/// What a user reads in a field; the user property is the text in line edits, boxes and plain text edits.
QString textOf(const StudyDialog& dialog, const char* name)
{
    const auto* field = widgetOf<QWidget>(dialog, name);
    return field ? field->metaObject()->userProperty().read(field).toString() : QStringLiteral("no field");
}

void setText(const StudyDialog& dialog, const char* name, const char* text)
{
    auto* field = widgetOf<QWidget>(dialog, name);
    field->metaObject()->userProperty().write(field, QString::fromUtf8(text));
}

/// An existing study where each text is another one.
StudyInfo distinctInfo()
{
    StudyInfo info = makeSampleInfo();
    int number = 0;
    for (const auto fields : {studyFields(), patientFields()}) {
        for (const TStudyField& field : fields)
            info.*field.member = QByteArray("text ") + QByteArray::number(++number) + " \xc3\xb1";
    }
    info.studyType = "Stress test";
    info.birthDate = "19560201";
    info.sex = "F";
    info.id = 12345;
    info.studyDateTime = "20200304050607";
    info.recordingDateTime = "20200304050700";
    info.riskFactors = {{"Gota", true, "some"}};
    return info;
}

} // namespace

void StudyDialogFieldsTest::theFieldsShowTheStudy_data()
{
    tableOfFields();
}

void StudyDialogFieldsTest::theFieldsShowTheStudy()
{
    QFETCH(int, index);
    const TShownField& field = shownFields[index];
    const StudyInfo info = distinctInfo();
    const StudyDialog dialog(nullptr, info, false);
    QCOMPARE(textOf(dialog, field.name), QString::fromUtf8(info.*field.member));
}

void StudyDialogFieldsTest::aChangedFieldIsKept_data()
{
    tableOfFields();
}

void StudyDialogFieldsTest::aChangedFieldIsKept()
{
    QFETCH(int, index);
    const TShownField& field = shownFields[index];
    StudyInfo expected = distinctInfo();
    StudyDialog dialog(nullptr, expected, false);
    setText(dialog, field.name, "Núñez");
    dialog.accept();
    expected.*field.member = "Núñez";
    StudyInfo result = dialog.info();
    QCOMPARE(result.*field.member, expected.*field.member);
    // And nothing else, apart from the risk factors, which are all listed now.
    result.riskFactors = expected.riskFactors;
    QVERIFY(result == expected);
}

void StudyDialogFieldsTest::anUntouchedStudyStaysAsItIs()
{
    StudyInfo info = distinctInfo();
    info.riskFactors.clear();
    for (const QByteArray& name : m_store->database().riskFactorNames())
        info.riskFactors.push_back({name, name.size() % 2 == 0, "about " + name});
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    QVERIFY(dialog.info() == info);
}

void StudyDialogFieldsTest::whatAFieldCannotShowStaysUntouched()
{
    StudyInfo info = infoOfType("ECG");
    info.comments = "one\r\ntwo";
    info.indication = "one\rtwo";
    info.address = "street\nhouse \xff";
    info.birthDate = "1956";
    info.studyDateTime = "00000000000000";
    info.protocolName = "none";
    info.age = "3 months";
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    StudyInfo result = dialog.info();
    result.riskFactors.clear();
    QVERIFY(result == info);
}

void StudyDialogFieldsTest::aChangedTimeIsKept()
{
    StudyInfo info = distinctInfo();
    StudyDialog dialog(nullptr, info, false);
    widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")
        ->setDateTime(QDateTime(QDate(2021, 12, 31), QTime(23, 59, 58)));
    dialog.accept();
    QCOMPARE(dialog.info().studyDateTime, QByteArray("20211231235958"));
}

void StudyDialogFieldsTest::onlyAcceptanceChangesTheStudy()
{
    const StudyInfo info = distinctInfo();
    StudyDialog dialog(nullptr, info, false);
    setText(dialog, "cboCity", "Elsewhere");
    setText(dialog, "txtLastName", "Other");
    QVERIFY(dialog.info() == info);
    dialog.reject();
    QVERIFY(dialog.info() == info);
    QVERIFY(settings::cityList.value().isEmpty());
}

QTEST_MAIN(StudyDialogFieldsTest)
#include "StudyDialogFieldsTest.moc"
