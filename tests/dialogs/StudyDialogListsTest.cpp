#include "StudyDialogFixture.h"

#include "base/Settings.h"

#include <QCheckBox>
#include <QCompleter>
#include <QScrollArea>

Q_DECLARE_METATYPE(const TSetting<QStringList>*)

/// The remembered entries and the rows of the risk factors.
class StudyDialogListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void rememberedEntriesAreOffered_data() { tableOfHistories(); }
    void rememberedEntriesAreOffered();
    void aTypedTextIsRemembered_data() { tableOfHistories(); }
    void aTypedTextIsRemembered();
    void nothingIsRememberedTwice();
    void blanksAreNotRemembered();
    void aStoredListIsCleaned();
    void aShorterNameIsNotCompleted();
    void acceptedTwiceIsRememberedOnce();
    void eachRiskFactorHasARow();
    void theRowsStandOneBelowTheOther();
    void everyRowCanBeReached();
    void riskFactorsAreShownAndKept();
    void aFactorWithoutARowIsKept();

private:
    static void tableOfHistories();

    std::unique_ptr<TDialogStore> m_store;
};

void StudyDialogListsTest::tableOfHistories()
{
    QTest::addColumn<const TSetting<QStringList>*>("list");
    QTest::addColumn<QString>("key");
    QTest::newRow("cboIdType") << &settings::idTypeList << "StudyDialog/IdTypeList";
    QTest::newRow("cboMedicalGroup") << &settings::medicalGroupList << "StudyDialog/MedicalGroupList";
    QTest::newRow("cboCity") << &settings::cityList << "StudyDialog/CityList";
    QTest::newRow("cboState") << &settings::stateList << "StudyDialog/StateList";
    QTest::newRow("cboTechnicianName") << &settings::technicianNameList << "StudyDialog/TechnicianNameList";
    QTest::newRow("cboDoctorName") << &settings::doctorNameList << "StudyDialog/DoctorNameList";
    QTest::newRow("cboReferringDoctorName")
        << &settings::referringDoctorNameList << "StudyDialog/ReferringDoctorNameList";
}

void StudyDialogListsTest::rememberedEntriesAreOffered()
{
    QFETCH(const TSetting<QStringList>*, list);
    const QStringList entries = {QStringLiteral("Zoë"), QStringLiteral("Adam, B."), QStringLiteral("C")};
    list->setValue(entries);
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    const QComboBox* combo = comboOf(dialog, QTest::currentDataTag());
    QCOMPARE(itemsOf(combo), entries);
    QVERIFY(combo->isEditable());
    // They are offered, none is taken for granted.
    QCOMPARE(combo->currentText(), QString());
}

void StudyDialogListsTest::aTypedTextIsRemembered()
{
    QFETCH(const TSetting<QStringList>*, list);
    QFETCH(QString, key);
    list->setValue({QStringLiteral("Former")});
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    type(comboOf(dialog, QTest::currentDataTag())->lineEdit(), "Typed just now");
    dialog.accept();
    const QStringList expected = {QStringLiteral("Former"), QStringLiteral("Typed just now")};
    QCOMPARE(list->value(), expected);
    QCOMPARE(QSettings().value(key).toStringList(), expected);
    const StudyDialog next(nullptr, infoOfType("ECG"), true);
    QCOMPARE(itemsOf(comboOf(next, QTest::currentDataTag())), expected);
}

void StudyDialogListsTest::nothingIsRememberedTwice()
{
    settings::cityList.setValue({QStringLiteral("Lima"), QStringLiteral("Quito")});
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    type(comboOf(dialog, "cboCity")->lineEdit(), " Lima ");
    dialog.accept();
    QCOMPARE(settings::cityList.value(), QStringList({QStringLiteral("Lima"), QStringLiteral("Quito")}));
    QCOMPARE(dialog.info().city, QByteArray(" Lima "));
}

void StudyDialogListsTest::blanksAreNotRemembered()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    type(comboOf(dialog, "cboCity")->lineEdit(), "   ");
    dialog.accept();
    QVERIFY(settings::cityList.value().isEmpty());
    QVERIFY(settings::stateList.value().isEmpty());
}

void StudyDialogListsTest::aStoredListIsCleaned()
{
    settings::cityList.setValue({QString(), QStringLiteral("Lima"), QStringLiteral(" "),
                                 QStringLiteral("Lima"), QStringLiteral("lima")});
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    QCOMPARE(itemsOf(comboOf(dialog, "cboCity")),
             QStringList({QStringLiteral("Lima"), QStringLiteral("lima")}));
}

void StudyDialogListsTest::aShorterNameIsNotCompleted()
{
    settings::doctorNameList.setValue({QStringLiteral("Anderson")});
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    type(comboOf(dialog, "cboDoctorName")->lineEdit(), "ander");
    QCOMPARE(comboOf(dialog, "cboDoctorName")->currentText(), QStringLiteral("ander"));
    QCOMPARE(comboOf(dialog, "cboDoctorName")->completer()->completionMode(), QCompleter::PopupCompletion);
    dialog.accept();
    QCOMPARE(dialog.info().doctorName, QByteArray("ander"));
}

void StudyDialogListsTest::acceptedTwiceIsRememberedOnce()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    type(comboOf(dialog, "cboCity")->lineEdit(), "Lima");
    dialog.accept();
    dialog.accept();
    QCOMPARE(settings::cityList.value(), QStringList({QStringLiteral("Lima")}));
}

void StudyDialogListsTest::eachRiskFactorHasARow()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    for (const QByteArray& name : m_store->database().riskFactorNames()) {
        const auto* box = widgetOf<QCheckBox>(dialog, "chk_" + name);
        const auto* comment = lineOf(dialog, "txt_" + name);
        QVERIFY2(box && comment, name.constData());
        QCOMPARE(box->text(), QString::fromUtf8(name));
        QCOMPARE(box->property("riskFactorName").toString(), QString::fromUtf8(name));
        QCOMPARE(comment->property("riskFactorName").toString(), QString::fromUtf8(name));
        QCOMPARE(comment->placeholderText(), QStringLiteral("Comments..."));
        QVERIFY(!box->isChecked());
        QVERIFY(comment->accessibleName().contains(box->text()));
    }
    const auto* page = widgetOf<QScrollArea>(dialog, "scrollRiskFactors");
    QCOMPARE(page->findChildren<QCheckBox*>().size(), 11);
    QCOMPARE(page->findChildren<QLineEdit*>().size(), 11);
}

void StudyDialogListsTest::theRowsStandOneBelowTheOther()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    widgetOf<QListWidget>(dialog, "listCategory")->setCurrentRow(1);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    int bottom = 0;
    for (const QByteArray& name : m_store->database().riskFactorNames()) {
        const QRect box = widgetOf<QCheckBox>(dialog, "chk_" + name)->geometry();
        const QRect comment = lineOf(dialog, "txt_" + name)->geometry();
        QVERIFY2(comment.top() >= bottom, name.constData());
        QVERIFY(box.center().y() >= comment.top() && box.center().y() <= comment.bottom());
        QVERIFY(box.right() < comment.left());
        bottom = comment.bottom();
    }
}

void StudyDialogListsTest::everyRowCanBeReached()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    widgetOf<QListWidget>(dialog, "listCategory")->setCurrentRow(1);
    dialog.resize(dialog.minimumSizeHint());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto* area = widgetOf<QScrollArea>(dialog, "scrollRiskFactors");
    QTRY_VERIFY(area->widget()->height() > 0);
    widgetOf<QCheckBox>(dialog, "chk_Hipertensión")->setFocus();
    for (const QByteArray& name : m_store->database().riskFactorNames()) {
        for (QWidget* widget :
             {widgetOf<QWidget>(dialog, "chk_" + name), widgetOf<QWidget>(dialog, "txt_" + name)}) {
            QCOMPARE(dialog.focusWidget(), widget);
            QVERIFY2(widget->visibleRegion().boundingRect().height() == widget->height(), name.constData());
            QTest::keyClick(&dialog, Qt::Key_Tab);
        }
    }
}

void StudyDialogListsTest::riskFactorsAreShownAndKept()
{
    StudyInfo info = infoOfType("ECG");
    info.riskFactors = {{"Hipertensión", true, "años"}, {"Gota", false, "no"}};
    StudyDialog dialog(nullptr, info, false);
    QVERIFY(widgetOf<QCheckBox>(dialog, "chk_Hipertensión")->isChecked());
    QCOMPARE(lineOf(dialog, "txt_Hipertensión")->text(), QStringLiteral("años"));
    QVERIFY(!widgetOf<QCheckBox>(dialog, "chk_Gota")->isChecked());
    QCOMPARE(lineOf(dialog, "txt_Gota")->text(), QStringLiteral("no"));
    widgetOf<QCheckBox>(dialog, "chk_Gota")->click();
    type(lineOf(dialog, "txt_Infarto agudo de miocardio"), "2011");
    dialog.accept();

    const std::vector<QByteArray>& names = m_store->database().riskFactorNames();
    const std::vector<TRiskFactor> factors = dialog.info().riskFactors;
    QCOMPARE(factors.size(), names.size());
    for (std::size_t index = 0; index < names.size(); ++index) {
        QCOMPARE(factors[index].name, names[index]);
        QCOMPARE(factors[index].status, names[index] == "Hipertensión" || names[index] == "Gota");
        const QByteArray comment = names[index] == "Hipertensión"                 ? "años"
                                   : names[index] == "Gota"                       ? "no"
                                   : names[index] == "Infarto agudo de miocardio" ? "2011"
                                                                                  : "";
        QCOMPARE(factors[index].comment, comment);
    }
}

void StudyDialogListsTest::aFactorWithoutARowIsKept()
{
    StudyInfo info = infoOfType("ECG");
    info.riskFactors = {{"Asma", true, "since 1999"}, {"Gota", true, ""}};
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    const std::vector<TRiskFactor> factors = dialog.info().riskFactors;
    QCOMPARE(factors.size(), std::size_t{12});
    QVERIFY(factors.back() == TRiskFactor({"Asma", true, "since 1999"}));
}

QTEST_MAIN(StudyDialogListsTest)
#include "StudyDialogListsTest.moc"
