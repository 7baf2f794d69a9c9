#include "StudyDialogFixture.h"
#include "support/AccessibleControls.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QStackedWidget>

/// The form for those who work with the keyboard alone, or with a screen reader.
class StudyDialogAccessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void everyControlHasAName_data() { tableOfKinds(); }
    void everyControlHasAName();
    void namelessControlsAreFound();
    void aStressTestIsEnteredWithKeysAlone();
    void enterInAFieldAccepts_data();
    void enterInAFieldAccepts();
    void enterDoesNotAcceptWhatIsInError();
    void escapeLeavesTheStudy();
    void labelsAreThoseOfTheForm_data();
    void labelsAreThoseOfTheForm();
    void aLongEntryDoesNotWidenTheForm();

private:
    static void tableOfKinds();

    std::unique_ptr<TDialogStore> m_store;
};

void StudyDialogAccessTest::tableOfKinds()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("isNew");
    for (const char* kind : {"ECG", "Stress test"}) {
        for (const bool isNew : {true, false})
            QTest::addRow("%s %s", isNew ? "new" : "existing", kind) << QByteArray(kind) << isNew;
    }
}

void StudyDialogAccessTest::everyControlHasAName()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, isNew);
    StudyDialog dialog(nullptr, infoOfType(kind.constData()), isNew);
    dialog.show();
    QCOMPARE(controlsWithoutName(dialog), QStringList());
    // The boxes name themselves too: their text is what was entered, not what it is.
    for (const QComboBox* combo : dialog.findChildren<QComboBox*>())
        QVERIFY(!combo->accessibleName().isEmpty());
}

void StudyDialogAccessTest::namelessControlsAreFound()
{
    QWidget window;
    auto* named = new QLineEdit(&window);
    named->setAccessibleName(QStringLiteral("Name"));
    new QCheckBox(QStringLiteral("Text"), &window);
    auto* labelled = new QDateTimeEdit(&window);
    auto* label = new QLabel(QStringLiteral("Time"), &window);
    label->setBuddy(labelled);
    QCOMPARE(controlsWithoutName(window), QStringList());

    auto* combo = new QComboBox(&window);
    combo->setObjectName(QStringLiteral("cboNameless"));
    combo->setEditable(true);
    auto* icon = new QPushButton(&window);
    icon->setObjectName(QStringLiteral("btnNameless"));
    icon->setFocusPolicy(Qt::NoFocus);
    label->clear();
    labelled->setObjectName(QStringLiteral("dtNameless"));
    QCOMPARE(controlsWithoutName(window),
             QStringList({QStringLiteral("QDateTimeEdit dtNameless"), QStringLiteral("QComboBox cboNameless"),
                          QStringLiteral("QPushButton btnNameless")}));
}

namespace {

void keys(const StudyDialog& dialog, const char* text, int tabs)
{
    QTest::keyClicks(dialog.focusWidget(), QString::fromLatin1(text));
    for (int count = 0; count < tabs; ++count)
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
}

} // namespace

void StudyDialogAccessTest::aStressTestIsEnteredWithKeysAlone()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    keys(dialog, "Perez", 1);
    keys(dialog, "Ana", 1);
    keys(dialog, "1/2/56", 2);
    QCOMPARE(dialog.focusWidget(), comboOf(dialog, "cboSex"));
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    keys(dialog, "70", 0);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
    QCOMPARE(dialog.info().lastName, QByteArray("Perez"));
    QCOMPARE(dialog.info().birthDate, QByteArray("19560201"));
    QCOMPARE(dialog.info().sex, QByteArray("F"));
    QCOMPARE(dialog.info().weight, QByteArray("70"));
}

void StudyDialogAccessTest::enterInAFieldAccepts_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("txtLastName") << 0;
    QTest::newRow("txtPhoneNumber") << 0;
    QTest::newRow("cboCity") << 0;
    QTest::newRow("cboSex") << 0;
    QTest::newRow("numSubmaxPercent") << 0;
    QTest::newRow("chk_Gota") << 1;
    QTest::newRow("txt_Gota") << 1;
    QTest::newRow("dtStudyDateTime") << 2;
    QTest::newRow("cboProtocol") << 3;
}

void StudyDialogAccessTest::enterInAFieldAccepts()
{
    QFETCH(int, page);
    StudyInfo info = infoOfType("Stress test");
    info.lastName = "Perez";
    info.firstName = "Ana";
    info.age = "50";
    info.sex = "F";
    StudyDialog dialog(nullptr, info, true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    widgetOf<QListWidget>(dialog, "listCategory")->setCurrentRow(page);
    auto* field = widgetOf<QWidget>(dialog, QTest::currentDataTag());
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
    QVERIFY(!dialog.isVisible());
}

void StudyDialogAccessTest::enterDoesNotAcceptWhatIsInError()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    keys(dialog, "Perez", 0);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QCOMPARE(accepted.count(), 0);
}

void StudyDialogAccessTest::escapeLeavesTheStudy()
{
    const StudyInfo info = infoOfType("ECG");
    StudyDialog dialog(nullptr, info, true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    keys(dialog, "Perez", 0);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int{QDialog::Rejected});
    QVERIFY(dialog.info() == info);
}

void StudyDialogAccessTest::labelsAreThoseOfTheForm_data()
{
    QTest::addColumn<QStringList>("labels");
    const auto list = [](std::initializer_list<const char*> texts) {
        QStringList labels;
        for (const char* text : texts)
            labels += QString::fromLatin1(text);
        return labels;
    };
    QTest::newRow("0") << list({"Patient ID / Medical record",
                                "ID type",
                                "ID number",
                                "Last name(s)",
                                "First name(s)",
                                "Birth date",
                                "day/month/year",
                                "Age",
                                "Sex",
                                "Weight (Kg)",
                                "Height (cm)",
                                "BMI",
                                "Medical insurance",
                                "Medical insurance number",
                                "Address",
                                "City",
                                "State",
                                "Phone number",
                                "Training zone ",
                                "HR max.",
                                "HR submax.",
                                "Submax %"});
    QTest::newRow("1") << list({"Factor", "Comments"});
    QTest::newRow("2") << list({"Date/time", "Technician name", "Doctor name", "Referred by", "Medication",
                                "Indication", "Comments"});
    QTest::newRow("3") << list({"Protocol"});
}

void StudyDialogAccessTest::labelsAreThoseOfTheForm()
{
    QFETCH(QStringList, labels);
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    const QWidget* page =
        dialog.findChild<QStackedWidget*>()->widget(QByteArray(QTest::currentDataTag()).toInt());
    QStringList shown;
    for (const QLabel* label : page->findChildren<QLabel*>())
        shown += label->text();
    labels.sort();
    shown.sort();
    QCOMPARE(shown, labels);
    QCOMPARE(widgetOf<QPushButton>(dialog, "btnRepeat")->text(), QStringLiteral("Repeat patient"));
    QCOMPARE(widgetOf<QPushButton>(dialog, "btnProtocols")->text(), QStringLiteral("Protocols..."));
}

void StudyDialogAccessTest::aLongEntryDoesNotWidenTheForm()
{
    const int width = StudyDialog(nullptr, infoOfType("ECG"), true).minimumSizeHint().width();
    StudyInfo info = infoOfType("ECG");
    info.lastName = QByteArray(300, 'W');
    info.city = info.lastName;
    info.riskFactors = {{"Gota", true, info.lastName}};
    StudyDialog dialog(nullptr, info, true);
    QCOMPARE(dialog.minimumSizeHint().width(), width);
    // And is read from its beginning.
    for (const QLineEdit* field : {lineOf(dialog, "txtLastName"), comboOf(dialog, "cboCity")->lineEdit(),
                                   lineOf(dialog, "txt_Gota")}) {
        QCOMPARE(field->cursorPosition(), 0);
        QVERIFY(!field->text().isEmpty());
    }
    dialog.accept();
    QCOMPARE(StudyDialog(nullptr, info, true).minimumSizeHint().width(), width);
}

QTEST_MAIN(StudyDialogAccessTest)
#include "StudyDialogAccessTest.moc"
