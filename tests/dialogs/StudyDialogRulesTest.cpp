#include "StudyDialogFixture.h"

#include <QDateTimeEdit>
#include <QSpinBox>

/// What the form works out while a user types.
class StudyDialogRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theAgeFollowsTheBirthDate_data();
    void theAgeFollowsTheBirthDate();
    void theAgeIsThatAtTheTimeOfTheStudy();
    void aTypedAgeEmptiesTheBirthDate();
    void aDateThatCannotBeReadIsNotKept();
    void aTypedBirthDateIsKept_data();
    void aTypedBirthDateIsKept();
    void heartRateTargetsFollowTheFields_data();
    void heartRateTargetsFollowTheFields();
    void heartRateTargetsFollowTheBirthDate();
    void heartRateTargetsNeedAnAge();
    void targetsOfAStudyAreNotWorkedOutAnewWhenItIsOpened();
    void aNewStudyWithoutTargetsGetsThoseOfItsAge();
    void theBodyMassIndexFollowsWeightAndHeight();
    void theBodyMassIndexOfAStudyIsShown();
    void whatIsWorkedOutCannotBeTyped();

private:
    std::unique_ptr<TDialogStore> m_store;
};

namespace {

StudyInfo existing(const char* type)
{
    StudyInfo info = infoOfType(type);
    info.studyDateTime = "20200615120000";
    return info;
}

} // namespace

void StudyDialogRulesTest::theAgeFollowsTheBirthDate_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("birthday") << QByteArray("15/6/1956") << "64";
    QTest::newRow("day before the birthday") << QByteArray("16/6/1956") << "63";
    QTest::newRow("month before the birthday") << QByteArray("1/7/1956") << "63";
    QTest::newRow("two digits") << QByteArray("1/2/56") << "64";
    QTest::newRow("no such day") << QByteArray("29/2/2019") << "";
    QTest::newRow("first year") << QByteArray("16/6/2019") << "";
    QTest::newRow("not born") << QByteArray("1/1/2021") << "";
    QTest::newRow("half typed") << QByteArray("15/6/") << "";
}

void StudyDialogRulesTest::theAgeFollowsTheBirthDate()
{
    QFETCH(QByteArray, typed);
    StudyInfo info = existing("ECG");
    info.age = "30";
    const StudyDialog dialog(nullptr, info, false);
    type(lineOf(dialog, "txtBirthDate"), typed.constData());
    QTEST(lineOf(dialog, "txtAge")->text(), "expected");
    QCOMPARE(lineOf(dialog, "txtBirthDate")->text(), QString::fromLatin1(typed));
}

void StudyDialogRulesTest::theAgeIsThatAtTheTimeOfTheStudy()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    auto* time = widgetOf<QDateTimeEdit>(dialog, "dtStudyDateTime");
    time->setDate(QDate(2000, 1, 1));
    type(lineOf(dialog, "txtBirthDate"), "2/1/1950");
    QCOMPARE(lineOf(dialog, "txtAge")->text(), QStringLiteral("49"));
    time->setDate(QDate(2000, 1, 2));
    type(lineOf(dialog, "txtBirthDate"), "2/1/1950");
    QCOMPARE(lineOf(dialog, "txtAge")->text(), QStringLiteral("50"));
}

void StudyDialogRulesTest::aTypedAgeEmptiesTheBirthDate()
{
    StudyInfo info = existing("ECG");
    info.birthDate = "19560201";
    info.age = "64";
    StudyDialog dialog(nullptr, info, false);
    QCOMPARE(lineOf(dialog, "txtBirthDate")->text(), QStringLiteral("1/2/1956"));
    type(lineOf(dialog, "txtAge"), "50");
    QCOMPARE(lineOf(dialog, "txtBirthDate")->text(), QString());
    dialog.accept();
    QCOMPARE(dialog.info().birthDate, QByteArray());
    QCOMPARE(dialog.info().age, QByteArray("50"));
}

void StudyDialogRulesTest::aDateThatCannotBeReadIsNotKept()
{
    // What is kept is what the user saw.
    for (const bool isAgeTyped : {false, true}) {
        StudyInfo info = existing("ECG");
        info.birthDate = "1956";
        StudyDialog dialog(nullptr, info, false);
        QCOMPARE(lineOf(dialog, "txtBirthDate")->text(), QString());
        if (isAgeTyped)
            type(lineOf(dialog, "txtAge"), "50");
        QCOMPARE(dialog.info().birthDate, QByteArray("1956"));
        dialog.accept();
        QCOMPARE(dialog.info().birthDate, QByteArray());
    }
}

void StudyDialogRulesTest::aTypedBirthDateIsKept_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("four digits") << QByteArray("5/11/1960") << QByteArray("19601105");
    QTest::newRow("two digits") << QByteArray("1/2/56") << QByteArray("19560201");
    QTest::newRow("no such day") << QByteArray("29/2/2023") << QByteArray();
    QTest::newRow("emptied") << QByteArray() << QByteArray();
}

void StudyDialogRulesTest::aTypedBirthDateIsKept()
{
    QFETCH(QByteArray, typed);
    StudyInfo info = existing("ECG");
    info.birthDate = "19450607";
    StudyDialog dialog(nullptr, info, false);
    type(lineOf(dialog, "txtBirthDate"), typed.constData());
    dialog.accept();
    QTEST(dialog.info().birthDate, "expected");
}

void StudyDialogRulesTest::heartRateTargetsFollowTheFields_data()
{
    QTest::addColumn<int>("sex");
    QTest::addColumn<int>("percent");
    QTest::addColumn<QString>("maximum");
    QTest::addColumn<QString>("submaximum");
    QTest::newRow("male") << 1 << 85 << "173"
                          << "147";
    QTest::newRow("female") << 2 << 85 << "163"
                            << "138";
    QTest::newRow("no sex yet") << 0 << 85 << "163"
                                << "138";
    QTest::newRow("another percentage") << 1 << 70 << "173"
                                        << "121";
}

void StudyDialogRulesTest::heartRateTargetsFollowTheFields()
{
    QFETCH(int, sex);
    QFETCH(int, percent);
    // In any order of the three changes.
    for (int first = 0; first < 3; ++first) {
        StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
        QCOMPARE(widgetOf<QSpinBox>(dialog, "numSubmaxPercent")->value(), 85);
        for (int step = first; step < first + 3; ++step) {
            if (step % 3 == 0)
                type(lineOf(dialog, "txtAge"), "47");
            else if (step % 3 == 1)
                comboOf(dialog, "cboSex")->setCurrentIndex(sex);
            else
                widgetOf<QSpinBox>(dialog, "numSubmaxPercent")->setValue(percent);
        }
        QTEST(lineOf(dialog, "txtHRMax")->text(), "maximum");
        QTEST(lineOf(dialog, "txtHRSubmax")->text(), "submaximum");
        dialog.accept();
        QCOMPARE(dialog.info().trainingZoneMax, lineOf(dialog, "txtHRMax")->text().toUtf8());
        QCOMPARE(dialog.info().trainingZoneSubMax, lineOf(dialog, "txtHRSubmax")->text().toUtf8());
    }
}

void StudyDialogRulesTest::heartRateTargetsFollowTheBirthDate()
{
    StudyInfo info = existing("Stress test");
    info.sex = "M";
    info.trainingZoneMax = "1";
    const StudyDialog dialog(nullptr, info, false);
    type(lineOf(dialog, "txtBirthDate"), "15/6/1956");
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QStringLiteral("156"));
    QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QStringLiteral("132"));
}

void StudyDialogRulesTest::heartRateTargetsNeedAnAge()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QString());
    type(lineOf(dialog, "txtAge"), "47");
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QStringLiteral("163"));
    type(lineOf(dialog, "txtBirthDate"), "29/2/2023");
    QCOMPARE(lineOf(dialog, "txtAge")->text(), QString());
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QString());
    QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QString());
}

void StudyDialogRulesTest::targetsOfAStudyAreNotWorkedOutAnewWhenItIsOpened()
{
    StudyInfo info = existing("Stress test");
    info.age = "47";
    info.sex = "M";
    info.trainingZoneMax = "150";
    info.trainingZoneSubMax = "120";
    for (const bool isNew : {true, false}) {
        const StudyDialog dialog(nullptr, info, isNew);
        QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QStringLiteral("150"));
        QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QStringLiteral("120"));
    }
    info.trainingZoneMax.clear();
    info.trainingZoneSubMax.clear();
    StudyDialog dialog(nullptr, info, false);
    dialog.accept();
    QCOMPARE(dialog.info().trainingZoneMax, QByteArray());
}

void StudyDialogRulesTest::aNewStudyWithoutTargetsGetsThoseOfItsAge()
{
    StudyInfo info = infoOfType("ECG");
    info.age = "47";
    info.sex = "M";
    const StudyDialog dialog(nullptr, info, true);
    QCOMPARE(lineOf(dialog, "txtHRMax")->text(), QStringLiteral("173"));
    QCOMPARE(lineOf(dialog, "txtHRSubmax")->text(), QStringLiteral("147"));
}

void StudyDialogRulesTest::theBodyMassIndexFollowsWeightAndHeight()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    const QLineEdit* index = lineOf(dialog, "txtBMI");
    type(lineOf(dialog, "txtWeight"), "70.5");
    QCOMPARE(index->text(), QString());
    type(lineOf(dialog, "txtHeight"), "175");
    QCOMPARE(index->text(), QStringLiteral("23.0"));
    type(lineOf(dialog, "txtWeight"), "70,9");
    QCOMPARE(index->text(), QStringLiteral("22.9"));
    type(lineOf(dialog, "txtHeight"), "0");
    QCOMPARE(index->text(), QString());
}

void StudyDialogRulesTest::theBodyMassIndexOfAStudyIsShown()
{
    StudyInfo info = existing("ECG");
    info.weight = "100";
    info.height = "200";
    const StudyDialog dialog(nullptr, info, false);
    QCOMPARE(lineOf(dialog, "txtBMI")->text(), QStringLiteral("25.0"));
}

void StudyDialogRulesTest::whatIsWorkedOutCannotBeTyped()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    for (const char* name : {"txtBMI", "txtHRMax", "txtHRSubmax"})
        QVERIFY2(lineOf(dialog, name)->isReadOnly(), name);
}

QTEST_MAIN(StudyDialogRulesTest)
#include "StudyDialogRulesTest.moc"
