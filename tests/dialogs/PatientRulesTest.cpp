#include "dialogs/PatientRules.h"

#include <QtTest>

#include <limits>

class PatientRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTypedBirthDateIsRead_data();
    void aTypedBirthDateIsRead();
    void whatIsNoDateIsNoBirthDate_data();
    void whatIsNoDateIsNoBirthDate();
    void aBirthDateIsKeptInItsOwnForm();
    void whatIsKeptIsShownForReading_data();
    void whatIsKeptIsShownForReading();
    void theAgeCountsBirthdays_data();
    void theAgeCountsBirthdays();
    void thereIsNoAgeWithoutBothDates();
    void heartRateTargetsFollowAgeAndSex_data();
    void heartRateTargetsFollowAgeAndSex();
    void anAbsurdAgeDoesNoHarm();
    void theBodyMassIndexIsWeightBySquaredHeight_data();
    void theBodyMassIndexIsWeightBySquaredHeight();
    void mandatoryFieldsAreThoseOfTheKindOfStudy_data();
    void mandatoryFieldsAreThoseOfTheKindOfStudy();
};

void PatientRulesTest::aTypedBirthDateIsRead_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QDate>("expected");
    QTest::newRow("four digits") << "1/2/1956" << QDate(1956, 2, 1);
    QTest::newRow("two digits are of the 1900s") << "1/2/56" << QDate(1956, 2, 1);
    QTest::newRow("low two digits too") << "1/2/05" << QDate(1905, 2, 1);
    QTest::newRow("zeros in front") << "01/02/1956" << QDate(1956, 2, 1);
    QTest::newRow("day before month") << "2/11/2001" << QDate(2001, 11, 2);
    QTest::newRow("leap day") << "29/2/2024" << QDate(2024, 2, 29);
    QTest::newRow("leap day, two digits") << "29/2/04" << QDate(1904, 2, 29);
    QTest::newRow("last day of a century") << "31/12/1899" << QDate(1899, 12, 31);
    QTest::newRow("blanks around it") << " 1/2/1956 " << QDate(1956, 2, 1);
}

void PatientRulesTest::aTypedBirthDateIsRead()
{
    QFETCH(QString, typed);
    QTEST(parseBirthDate(typed), "expected");
}

void PatientRulesTest::whatIsNoDateIsNoBirthDate_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("nothing") << "";
    QTest::newRow("no leap year") << "29/2/2023";
    QTest::newRow("no leap year, two digits") << "29/2/23";
    QTest::newRow("32nd") << "32/1/2000";
    QTest::newRow("13th month") << "1/13/2000";
    QTest::newRow("half typed") << "1/2/";
    QTest::newRow("one digit") << "1/2/5";
    QTest::newRow("three digits") << "1/2/195";
    QTest::newRow("five digits") << "1/2/19567";
    QTest::newRow("a year before 1000") << "1/2/0956";
    QTest::newRow("dashes") << "1-2-1956";
    QTest::newRow("as it is kept") << "19560201";
    QTest::newRow("words") << "yesterday";
}

void PatientRulesTest::whatIsNoDateIsNoBirthDate()
{
    QFETCH(QString, typed);
    QVERIFY(!parseBirthDate(typed).isValid());
}

void PatientRulesTest::aBirthDateIsKeptInItsOwnForm()
{
    QCOMPARE(storedBirthDate(QDate(1956, 2, 1)), QByteArray("19560201"));
    QCOMPARE(storedBirthDate(QDate()), QByteArray());
    QCOMPARE(storedBirthDate(parseBirthDate(QStringLiteral("29/2/2023"))), QByteArray());
}

void PatientRulesTest::whatIsKeptIsShownForReading_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("a date") << QByteArray("19560201") << "1/2/1956";
    QTest::newRow("two digits each") << QByteArray("20011130") << "30/11/2001";
    QTest::newRow("nothing") << QByteArray() << "";
    QTest::newRow("no such day") << QByteArray("20230229") << "";
    QTest::newRow("another form") << QByteArray("1/2/1956") << "";
}

void PatientRulesTest::whatIsKeptIsShownForReading()
{
    QFETCH(QByteArray, stored);
    QTEST(shownBirthDate(stored), "expected");
}

void PatientRulesTest::theAgeCountsBirthdays_data()
{
    QTest::addColumn<QDate>("birth");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<int>("expected");
    const QDate birth(1956, 6, 15);
    QTest::newRow("month before") << birth << QDate(2020, 5, 30) << 63;
    QTest::newRow("day before") << birth << QDate(2020, 6, 14) << 63;
    QTest::newRow("birthday") << birth << QDate(2020, 6, 15) << 64;
    QTest::newRow("day after") << birth << QDate(2020, 6, 16) << 64;
    QTest::newRow("month after, earlier day") << birth << QDate(2020, 7, 1) << 64;
    QTest::newRow("last day of a year") << birth << QDate(2020, 12, 31) << 64;
    QTest::newRow("leap day, not yet") << QDate(2000, 2, 29) << QDate(2023, 2, 28) << 22;
    QTest::newRow("leap day, passed") << QDate(2000, 2, 29) << QDate(2023, 3, 1) << 23;
    QTest::newRow("first birthday") << QDate(2022, 3, 4) << QDate(2023, 3, 4) << 1;
    // Written as -1, for "nothing".
    QTest::newRow("before the first birthday") << QDate(2022, 3, 4) << QDate(2023, 3, 3) << -1;
    QTest::newRow("born today") << QDate(2023, 3, 4) << QDate(2023, 3, 4) << -1;
    QTest::newRow("not born yet") << QDate(2030, 3, 4) << QDate(2023, 3, 4) << -1;
}

void PatientRulesTest::theAgeCountsBirthdays()
{
    QFETCH(QDate, birth);
    QFETCH(QDate, day);
    QTEST(ageAt(birth, day).value_or(-1), "expected");
}

void PatientRulesTest::thereIsNoAgeWithoutBothDates()
{
    QVERIFY(!ageAt(QDate(), QDate(2023, 1, 1)));
    QVERIFY(!ageAt(QDate(1956, 1, 1), QDate()));
    QVERIFY(!ageAt(parseBirthDate(QStringLiteral("29/2/2023")), QDate(2040, 1, 1)));
}

void PatientRulesTest::heartRateTargetsFollowAgeAndSex_data()
{
    QTest::addColumn<int>("age");
    QTest::addColumn<bool>("male");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("submaximum");
    QTest::newRow("male") << 50 << true << 85 << 170 << 144;
    QTest::newRow("female") << 50 << false << 85 << 160 << 136;
    QTest::newRow("truncated, not rounded") << 47 << true << 85 << 173 << 147;
    QTest::newRow("all") << 47 << true << 100 << 173 << 173;
    QTest::newRow("none") << 47 << true << 0 << 173 << 0;
    QTest::newRow("another percentage") << 30 << false << 70 << 180 << 126;
}

void PatientRulesTest::heartRateTargetsFollowAgeAndSex()
{
    QFETCH(int, age);
    QFETCH(bool, male);
    QFETCH(int, percent);
    const THeartRateTargets targets = heartRateTargets(age, male, percent);
    QTEST(targets.maximum, "maximum");
    QTEST(targets.submaximum, "submaximum");
}

void PatientRulesTest::anAbsurdAgeDoesNoHarm()
{
    QCOMPARE(heartRateTargets(500, true, defaultSubmaximalPercent).maximum, -280);
    QVERIFY(heartRateTargets(std::numeric_limits<int>::max(), true, 85).maximum < 0);
    using TLimits = std::numeric_limits<int>;
    const THeartRateTargets high = heartRateTargets(TLimits::min(), true, 50);
    QCOMPARE(high.maximum, TLimits::max());
    QCOMPARE(high.submaximum, static_cast<int>((qint64{220} - TLimits::min()) / 2));
    QCOMPARE(heartRateTargets(TLimits::min(), true, 100).submaximum, TLimits::max());
    QCOMPARE(heartRateTargets(TLimits::max(), false, 1000).submaximum, TLimits::min());
}

void PatientRulesTest::theBodyMassIndexIsWeightBySquaredHeight_data()
{
    QTest::addColumn<QByteArray>("weight");
    QTest::addColumn<QByteArray>("height");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("70") << QByteArray("175") << "22.9";
    QTest::newRow("decimals") << QByteArray("70.5") << QByteArray("175.5") << "22.9";
    QTest::newRow("one decimal always") << QByteArray("100") << QByteArray("200") << "25.0";
    QTest::newRow("a comma ends the number") << QByteArray("70,9") << QByteArray("200") << "17.5";
    QTest::newRow("text behind the number") << QByteArray("70 kg") << QByteArray("200cm") << "17.5";
    QTest::newRow("no weight yet") << QByteArray() << QByteArray("175") << "0.0";
    QTest::newRow("no height") << QByteArray("70") << QByteArray() << "";
    QTest::newRow("height 0") << QByteArray("70") << QByteArray("0") << "";
    QTest::newRow("height below 0") << QByteArray("70") << QByteArray("-175") << "";
    QTest::newRow("height is no number") << QByteArray("70") << QByteArray("tall") << "";
    QTest::newRow("height too small to divide by") << QByteArray("70") << QByteArray("1e-300") << "";
}

void PatientRulesTest::theBodyMassIndexIsWeightBySquaredHeight()
{
    QFETCH(QByteArray, weight);
    QFETCH(QByteArray, height);
    QTEST(bodyMassIndex(weight, height), "expected");
}

void PatientRulesTest::mandatoryFieldsAreThoseOfTheKindOfStudy_data()
{
    QTest::addColumn<QString>("lastName");
    QTest::addColumn<QString>("firstName");
    QTest::addColumn<QString>("age");
    QTest::addColumn<bool>("isSexChosen");
    QTest::addColumn<bool>("isRestingEcg");
    // Last name, first name, age, sex: a letter for each good one.
    QTest::addColumn<QString>("good");
    QTest::newRow("exercise, all") << "Perez"
                                   << "Ana"
                                   << "50" << true << false << "LFAS";
    QTest::newRow("exercise, nothing") << ""
                                       << ""
                                       << "" << false << false << "";
    QTest::newRow("blanks are no name") << " "
                                        << "\t "
                                        << "50" << true << false << "AS";
    QTest::newRow("exercise at 2") << "Perez"
                                   << "Ana"
                                   << "2" << true << false << "LFAS";
    QTest::newRow("exercise at 1") << "Perez"
                                   << "Ana"
                                   << "1" << true << false << "LFS";
    QTest::newRow("exercise below 0") << "Perez"
                                      << "Ana"
                                      << "-50" << true << false << "LFS";
    QTest::newRow("exercise, age in words") << "Perez"
                                            << "Ana"
                                            << "fifty" << true << false << "LFS";
    QTest::newRow("exercise, no integer") << "Perez"
                                          << "Ana"
                                          << "50.5" << true << false << "LFS";
    QTest::newRow("exercise, no sex") << "Perez"
                                      << "Ana"
                                      << "50" << false << false << "LFA";
    QTest::newRow("ECG, names alone") << "Perez"
                                      << "Ana"
                                      << "" << false << true << "LFAS";
    QTest::newRow("ECG at 1") << "Perez"
                              << "Ana"
                              << "1" << false << true << "LFAS";
    QTest::newRow("ECG, no first name") << "Perez"
                                        << ""
                                        << "1" << false << true << "LAS";
    QTest::newRow("ECG, no last name") << " "
                                       << "Ana"
                                       << "50" << true << true << "FAS";
}

void PatientRulesTest::mandatoryFieldsAreThoseOfTheKindOfStudy()
{
    QFETCH(QString, lastName);
    QFETCH(QString, firstName);
    QFETCH(QString, age);
    QFETCH(bool, isSexChosen);
    QFETCH(bool, isRestingEcg);
    const TMandatoryFields fields = checkMandatoryFields(lastName, firstName, age, isSexChosen, isRestingEcg);
    QString good;
    good += fields.lastName ? QStringLiteral("L") : QString();
    good += fields.firstName ? QStringLiteral("F") : QString();
    good += fields.age ? QStringLiteral("A") : QString();
    good += fields.sex ? QStringLiteral("S") : QString();
    QTEST(good, "good");
    QCOMPARE(fields.areGood(), good == QStringLiteral("LFAS"));
}

QTEST_GUILESS_MAIN(PatientRulesTest)
#include "PatientRulesTest.moc"
