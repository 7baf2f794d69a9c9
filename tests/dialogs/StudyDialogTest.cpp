#include "StudyDialogFixture.h"
#include "support/SampleStudy.h"

#include "base/Settings.h"

#include <QDateTimeEdit>
#include <QStackedWidget>

class StudyDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theTitleTellsWhatIsEdited_data();
    void theTitleTellsWhatIsEdited();
    void categoriesChooseThePages();
    void aRestingEcgHasNoProtocolPage();
    void theSexesStandBehindAnEmptyEntry();
    void protocolsAreThoseOfTheStoreAndTheTiltTest();
    void theLastProtocolIsChosen();
    void aProtocolThatIsKnownIsChosen();
    void anUnknownProtocolIsNotOfferedForANewStudy();
    void aNewStudyIsOfNowAndStartsWithTheLastName();
    void anExistingStudyHasItsTimeAndItsProtocol();
    void theFieldsShowTheStudy_data();
    void theFieldsShowTheStudy();
    void aChangedFieldIsKept_data();
    void aChangedFieldIsKept();
    void anUntouchedStudyStaysAsItIs();
    void whatAFieldCannotShowStaysUntouched();
    void aNewStudyIsTakenFromTheForm();
    void anEcgGetsNoProtocol();
    void theSexIsKeptAsALetter_data();
    void theSexIsKeptAsALetter();
    void aChangedTimeIsKept();
    void onlyAcceptanceChangesTheStudy();
    void withoutAStoreThereIsTheTiltTestAlone();

private:
    std::unique_ptr<TDialogStore> m_store;
};

void StudyDialogTest::theTitleTellsWhatIsEdited_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<QString>("expected");
    QTest::newRow("new ECG") << QByteArray("ECG") << true << "New ECG study";
    QTest::newRow("new stress test") << QByteArray("Stress test") << true << "New Stress Test study";
    QTest::newRow("new tilt test") << QByteArray("Tilt test") << true << "New Stress Test study";
    QTest::newRow("ECG") << QByteArray("ECG") << false << "Study data";
    QTest::newRow("stress test") << QByteArray("Stress test") << false << "Study data";
}

void StudyDialogTest::theTitleTellsWhatIsEdited()
{
    QFETCH(QByteArray, type);
    QFETCH(bool, isNew);
    const StudyDialog dialog(nullptr, infoOfType(type), isNew);
    QTEST(dialog.windowTitle(), "expected");
}

void StudyDialogTest::categoriesChooseThePages()
{
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    auto* list = widgetOf<QListWidget>(dialog, "listCategory");
    const auto* pages = dialog.findChild<QStackedWidget*>();
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(pages->currentIndex(), 0);
    const QStringList names = {QStringLiteral("Patient"), QStringLiteral("Risk factors"),
                               QStringLiteral("Study info"), QStringLiteral("Protocol")};
    QCOMPARE(list->count(), names.size());
    const char* const shown[] = {"txtLastName", "txt_Gota", "dtStudyDateTime", "cboProtocol"};
    for (int row = 0; row < list->count(); ++row) {
        QCOMPARE(list->item(row)->text(), names[row]);
        list->setCurrentRow(row);
        QVERIFY(pages->currentWidget()->isAncestorOf(widgetOf<QWidget>(dialog, shown[row])));
    }
}

void StudyDialogTest::aRestingEcgHasNoProtocolPage()
{
    for (const bool isNew : {true, false}) {
        const StudyDialog dialog(nullptr, infoOfType("ECG"), isNew);
        const auto* list = widgetOf<QListWidget>(dialog, "listCategory");
        QCOMPARE(list->count(), 3);
        QCOMPARE(list->item(2)->text(), QStringLiteral("Study info"));
    }
}

void StudyDialogTest::theSexesStandBehindAnEmptyEntry()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    QCOMPARE(itemsOf(comboOf(dialog, "cboSex")),
             QStringList({QString(), QStringLiteral("Male"), QStringLiteral("Female")}));
    QCOMPARE(comboOf(dialog, "cboSex")->currentIndex(), 0);
}

void StudyDialogTest::protocolsAreThoseOfTheStoreAndTheTiltTest()
{
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    QStringList expected;
    for (const QByteArray& name : m_store->database().protocolNames())
        expected += QString::fromUtf8(name);
    QVERIFY(!expected.isEmpty());
    expected += QStringLiteral("Tilt test");
    QCOMPARE(itemsOf(comboOf(dialog, "cboProtocol")), expected);
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentIndex(), 0);
    QVERIFY(comboOf(dialog, "cboProtocol")->isEnabled());
    QVERIFY(!comboOf(dialog, "cboProtocol")->isEditable());
}

void StudyDialogTest::theLastProtocolIsChosen()
{
    settings::lastProtocol.setValue(QStringLiteral("Tilt test"));
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentText(), QStringLiteral("Tilt test"));
}

void StudyDialogTest::aProtocolThatIsKnownIsChosen()
{
    settings::lastProtocol.setValue(QStringLiteral("Tilt test"));
    StudyInfo info = infoOfType("Stress test");
    info.protocolName = m_store->database().protocolNames().at(1);
    const StudyDialog dialog(nullptr, info, true);
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentIndex(), 1);
}

void StudyDialogTest::anUnknownProtocolIsNotOfferedForANewStudy()
{
    settings::lastProtocol.setValue(QStringLiteral("Deleted"));
    StudyInfo info = infoOfType("Stress test");
    info.protocolName = "Deleted too";
    const StudyDialog dialog(nullptr, info, true);
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentIndex(), 0);
    QVERIFY(comboOf(dialog, "cboProtocol")->findText(QStringLiteral("Deleted too")) < 0);
}

void StudyDialogTest::aNewStudyIsOfNowAndStartsWithTheLastName()
{
    StudyInfo info = infoOfType("Stress test");
    info.studyDateTime = "20200304050607";
    const QDateTime before = QDateTime::currentDateTime();
    StudyDialog dialog(nullptr, info, true);
    const QDateTime shown = widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")->dateTime();
    QVERIFY(shown >= before && shown <= QDateTime::currentDateTime());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(dialog.focusWidget(), lineOf(dialog, "txtLastName"));
    QVERIFY(widgetOf<QWidget>(dialog, "btnRepeat")->isVisible());
    // There is no list of protocols to open yet.
    QVERIFY(!widgetOf<QWidget>(dialog, "btnProtocols")->isEnabled());
    QVERIFY(!widgetOf<QWidget>(dialog, "btnProtocols")->isHidden());
}

void StudyDialogTest::anExistingStudyHasItsTimeAndItsProtocol()
{
    StudyInfo info = infoOfType("Stress test");
    info.studyDateTime = "20200304050607";
    info.protocolName = "Deleted since";
    const StudyDialog dialog(nullptr, info, false);
    QCOMPARE(widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")->dateTime(),
             QDateTime(QDate(2020, 3, 4), QTime(5, 6, 7)));
    QVERIFY(!comboOf(dialog, "cboProtocol")->isEnabled());
    QCOMPARE(comboOf(dialog, "cboProtocol")->currentText(), QStringLiteral("Deleted since"));
    QVERIFY(widgetOf<QWidget>(dialog, "btnProtocols")->isHidden());
    QVERIFY(widgetOf<QWidget>(dialog, "btnRepeat")->isHidden());
}

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

void StudyDialogTest::theFieldsShowTheStudy_data()
{
    tableOfFields();
}

void StudyDialogTest::theFieldsShowTheStudy()
{
    QFETCH(int, index);
    const TShownField& field = shownFields[index];
    const StudyInfo info = distinctInfo();
    const StudyDialog dialog(nullptr, info, false);
    QCOMPARE(textOf(dialog, field.name), QString::fromUtf8(info.*field.member));
}

void StudyDialogTest::aChangedFieldIsKept_data()
{
    tableOfFields();
}

void StudyDialogTest::aChangedFieldIsKept()
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

void StudyDialogTest::anUntouchedStudyStaysAsItIs()
{
    StudyInfo info = distinctInfo();
    info.riskFactors.clear();
    for (const QByteArray& name : m_store->database().riskFactorNames())
        info.riskFactors.push_back({name, name.size() % 2 == 0, "about " + name});
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    QVERIFY(dialog.info() == info);
}

void StudyDialogTest::whatAFieldCannotShowStaysUntouched()
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

void StudyDialogTest::aNewStudyIsTakenFromTheForm()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    type(lineOf(dialog, "txtLastName"), "Perez");
    type(lineOf(dialog, "txtFirstName"), "Ana");
    type(lineOf(dialog, "txtBirthDate"), "1/2/56");
    comboOf(dialog, "cboSex")->setCurrentIndex(2);
    comboOf(dialog, "cboProtocol")->setCurrentIndex(1);
    const QDateTime shown = widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")->dateTime();
    dialog.accept();
    const StudyInfo info = dialog.info();
    QCOMPARE(info.lastName, QByteArray("Perez"));
    QCOMPARE(info.firstName, QByteArray("Ana"));
    QCOMPARE(info.birthDate, QByteArray("19560201"));
    QCOMPARE(info.sex, QByteArray("F"));
    QCOMPARE(info.protocolName, m_store->database().protocolNames().at(1));
    QCOMPARE(info.studyDateTime, shown.toString(QStringLiteral("yyyyMMddHHmmss")).toUtf8());
    QCOMPARE(info.trainingZoneMax, QByteArray::number(210 - info.age.toInt()));
    QCOMPARE(info.trainingZoneSubMax, QByteArray::number((210 - info.age.toInt()) * 85 / 100));
    QCOMPARE(settings::lastProtocol.value(), comboOf(dialog, "cboProtocol")->currentText());
}

void StudyDialogTest::anEcgGetsNoProtocol()
{
    settings::lastProtocol.setValue(QStringLiteral("Tilt test"));
    StudyInfo info = infoOfType("ECG");
    info.lastName = "Perez";
    info.firstName = "Ana";
    StudyDialog dialog(nullptr, info, true);
    comboOf(dialog, "cboProtocol")->setCurrentIndex(0);
    dialog.accept();
    QCOMPARE(dialog.info().protocolName, QByteArray());
    QCOMPARE(settings::lastProtocol.value(), QStringLiteral("Tilt test"));
}

void StudyDialogTest::theSexIsKeptAsALetter_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("none") << 0 << QByteArray();
    QTest::newRow("male") << 1 << QByteArray("M");
    QTest::newRow("female") << 2 << QByteArray("F");
}

void StudyDialogTest::theSexIsKeptAsALetter()
{
    QFETCH(int, index);
    QFETCH(QByteArray, expected);
    StudyInfo info = infoOfType("ECG");
    info.sex = "M";
    StudyDialog dialog(nullptr, info, true);
    QCOMPARE(comboOf(dialog, "cboSex")->currentIndex(), 1);
    comboOf(dialog, "cboSex")->setCurrentIndex(index);
    dialog.accept();
    QCOMPARE(dialog.info().sex, expected);
    const StudyDialog again(nullptr, dialog.info(), false);
    QCOMPARE(comboOf(again, "cboSex")->currentIndex(), index);
}

void StudyDialogTest::aChangedTimeIsKept()
{
    StudyInfo info = distinctInfo();
    StudyDialog dialog(nullptr, info, false);
    widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime")
        ->setDateTime(QDateTime(QDate(2021, 12, 31), QTime(23, 59, 58)));
    dialog.accept();
    QCOMPARE(dialog.info().studyDateTime, QByteArray("20211231235958"));
}

void StudyDialogTest::onlyAcceptanceChangesTheStudy()
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

void StudyDialogTest::withoutAStoreThereIsTheTiltTestAlone()
{
    setStudyDatabase(nullptr);
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    QCOMPARE(itemsOf(comboOf(dialog, "cboProtocol")), QStringList({QStringLiteral("Tilt test")}));
    widgetOf<QPushButton>(dialog, "btnRepeat")->click();
    dialog.accept();
    QCOMPARE(dialog.info().riskFactors.size(), standardRiskFactors().size());
}

QTEST_MAIN(StudyDialogTest)
#include "StudyDialogTest.moc"
