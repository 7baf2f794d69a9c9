#include "StudyDialogFixture.h"

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
    void aNewStudyIsTakenFromTheForm();
    void anEcgGetsNoProtocol();
    void theSexIsKeptAsALetter_data();
    void theSexIsKeptAsALetter();
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
