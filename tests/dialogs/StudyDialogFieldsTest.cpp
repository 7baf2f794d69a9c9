#include "StudyDialogFixture.h"
#include "support/SampleStudy.h"

#include "base/Settings.h"

#include <QDateTimeEdit>
#include <QLabel>

/// Which field stands for what, and what acceptance changes.
class StudyDialogFieldsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theLabelsLeadToTheFields_data();
    void theLabelsLeadToTheFields();
    void whatIsNotKeptHasItsLabelToo();
    void theFieldsShowTheStudy_data();
    void theFieldsShowTheStudy();
    void aChangedFieldIsKept_data();
    void aChangedFieldIsKept();
    void anUntouchedStudyStaysAsItIs();
    void whatAFieldCannotShowStaysUntouched();
    void whatIsChangedBackIsKeptToo();
    void theProtocolOfAStudyIsItsOwn();
    void onlyAcceptanceChangesTheStudy();

private:
    std::unique_ptr<TDialogStore> m_store;
};

namespace {

/// A label of the form, the field that it leads to, and what of a study stands there. Where the field shows
/// another text than is kept: what it shows of the study below, what is entered, and what is kept of that.
struct TShownField
{
    const char* label;
    const char* name;
    QByteArray StudyInfo::*member;
    const char* shown = nullptr;
    const char* entered = "Núñez";
    const char* kept = entered;
};

const TShownField shownFields[] = {
    {"Patient ID / Medical record", "txtMedicalHistoryNumber", &StudyInfo::medicalHistoryNumber},
    {"ID type", "cboIdType", &StudyInfo::personIdType},
    {"ID number", "txtPersonIdNumber", &StudyInfo::personIdNumber},
    {"Last name(s)", "txtLastName", &StudyInfo::lastName},
    {"First name(s)", "txtFirstName", &StudyInfo::firstName},
    {"Birth date", "txtBirthDate", &StudyInfo::birthDate, "1/2/1956", "24/12/69", "19691224"},
    {"Age", "txtAge", &StudyInfo::age},
    {"Sex", "cboSex", &StudyInfo::sex, "Female", "Male", "M"},
    {"Weight (Kg)", "txtWeight", &StudyInfo::weight},
    {"Height (cm)", "txtHeight", &StudyInfo::height},
    {"Medical insurance", "cboMedicalGroup", &StudyInfo::medicalGroupName},
    {"Medical insurance number", "txtMedicalGroupNumber", &StudyInfo::medicalGroupNumber},
    {"Address", "txtAddress", &StudyInfo::address},
    {"City", "cboCity", &StudyInfo::city},
    {"State", "cboState", &StudyInfo::state},
    {"Phone number", "txtPhoneNumber", &StudyInfo::phoneNumber},
    {"HR max.", "txtHRMax", &StudyInfo::trainingZoneMax},
    {"HR submax.", "txtHRSubmax", &StudyInfo::trainingZoneSubMax},
    {"Date/time", "dtStudyDateTime", &StudyInfo::studyDateTime, "2020-03-04T05:06:07.000",
     "2021-12-31T23:59:58", "20211231235958"},
    {"Technician name", "cboTechnicianName", &StudyInfo::technicianName},
    {"Doctor name", "cboDoctorName", &StudyInfo::doctorName},
    {"Referred by", "cboReferringDoctorName", &StudyInfo::referringDoctorName},
    {"Medication", "txtTreatment", &StudyInfo::treatment},
    {"Indication", "txtIndication", &StudyInfo::indication},
    {"Comments", "txtComments", &StudyInfo::comments},
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

QString labelOf(const StudyDialog& dialog, const char* name)
{
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->buddy() && label->buddy() == widgetOf<QWidget>(dialog, name))
            return label->text();
    }
    return QStringLiteral("no label");
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

void StudyDialogFieldsTest::theLabelsLeadToTheFields_data()
{
    tableOfFields();
}

void StudyDialogFieldsTest::theLabelsLeadToTheFields()
{
    QFETCH(int, index);
    const TShownField& field = shownFields[index];
    const StudyDialog dialog(nullptr, distinctInfo(), false);
    QCOMPARE(labelOf(dialog, field.name), QString::fromUtf8(field.label));
    // A screen reader says the same.
    QCOMPARE(widgetOf<QWidget>(dialog, field.name)->accessibleName(), QString::fromUtf8(field.label));
}

void StudyDialogFieldsTest::whatIsNotKeptHasItsLabelToo()
{
    const StudyDialog dialog(nullptr, distinctInfo(), false);
    QCOMPARE(labelOf(dialog, "txtBMI"), QStringLiteral("BMI"));
    QCOMPARE(labelOf(dialog, "numSubmaxPercent"), QStringLiteral("Submax %"));
    QCOMPARE(labelOf(dialog, "cboProtocol"), QStringLiteral("Protocol"));
}

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
    QCOMPARE(textOf(dialog, field.name),
             QString::fromUtf8(field.shown ? QByteArray(field.shown) : info.*field.member));
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
    setText(dialog, field.name, field.entered);
    dialog.accept();
    if (field.member == &StudyInfo::sex) {
        // They depend on it, and there is no number for the age.
        expected.trainingZoneMax.clear();
        expected.trainingZoneSubMax.clear();
    }
    expected.*field.member = field.kept;
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
    info.studyDateTime = "00000000000000";
    info.protocolName = "none";
    info.age = "3 months";
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    StudyInfo result = dialog.info();
    result.riskFactors.clear();
    QVERIFY(result == info);
}

void StudyDialogFieldsTest::whatIsChangedBackIsKeptToo()
{
    const StudyInfo info = distinctInfo();
    StudyDialog dialog(nullptr, info, false);
    auto* time = widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime");
    setText(dialog, "cboCity", "Elsewhere");
    time->setDateTime(time->dateTime().addDays(1));
    dialog.accept();
    QCOMPARE(dialog.info().city, QByteArray("Elsewhere"));
    QCOMPARE(dialog.info().studyDateTime, QByteArray("20200305050607"));

    setText(dialog, "cboCity", info.city.constData());
    time->setDateTime(time->dateTime().addDays(-1));
    dialog.accept();
    QCOMPARE(dialog.info().city, info.city);
    QCOMPARE(dialog.info().studyDateTime, info.studyDateTime);
}

void StudyDialogFieldsTest::theProtocolOfAStudyIsItsOwn()
{
    settings::lastProtocol.setValue(QStringLiteral("Chosen for the next"));
    StudyInfo info = distinctInfo();
    // Not text in the program's encoding, so no box can give it back.
    info.protocolName = "Propio \xff";
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    QCOMPARE(dialog.info().protocolName, info.protocolName);
    QCOMPARE(settings::lastProtocol.value(), QStringLiteral("Chosen for the next"));
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
