#include "app/QuickStudy.h"

#include <QtTest>

namespace {

TQuickPatient goodPatient()
{
    return {QStringLiteral("Diaz"), QStringLiteral("Ana"),  QStringLiteral("50"), "19740102", "F",
            QStringLiteral("H-7"),  QStringLiteral("30111")};
}

QDateTime someTime()
{
    return {QDate(2024, 3, 5), QTime(7, 8, 9)};
}

} // namespace

class QuickStudyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsNeedTheirFields_data()
    {
        QTest::addColumn<QString>("lastName");
        QTest::addColumn<QString>("firstName");
        QTest::addColumn<QString>("age");
        QTest::addColumn<QByteArray>("sex");
        QTest::addColumn<bool>("ecg");
        QTest::addColumn<bool>("stress");
        const QString diaz = QStringLiteral("Diaz");
        const QString ana = QStringLiteral("Ana");
        const auto row = [](const char* tag, const QString& last, const QString& first, const char* age,
                            const char* sex, bool ecg, bool stress) {
            QTest::newRow(tag) << last << first << QString::fromLatin1(age) << QByteArray(sex) << ecg
                               << stress;
        };
        row("nothing", {}, {}, "", "", false, false);
        row("all", diaz, ana, "50", "F", true, true);
        row("no last name", {}, ana, "50", "F", false, false);
        row("no first name", diaz, {}, "50", "F", false, false);
        row("blank last name", QStringLiteral(" \t"), ana, "50", "F", false, false);
        row("blank first name", diaz, QStringLiteral("  "), "50", "F", false, false);
        row("names alone", diaz, ana, "", "", true, false);
        row("no sex", diaz, ana, "50", "", true, false);
        row("age 2", diaz, ana, "2", "M", true, true);
        row("age 1", diaz, ana, "1", "M", true, false);
        row("age 0", diaz, ana, "0", "M", true, false);
        row("negative age", diaz, ana, "-5", "M", true, false);
        row("age in words", diaz, ana, "old", "M", true, false);
        row("age with a fraction", diaz, ana, "2.5", "M", true, false);
    }

    void startsNeedTheirFields()
    {
        QFETCH(QString, lastName);
        QFETCH(QString, firstName);
        QFETCH(QString, age);
        QFETCH(QByteArray, sex);
        TQuickPatient patient;
        patient.lastName = lastName;
        patient.firstName = firstName;
        patient.age = age;
        patient.sex = sex;
        QTEST(canStartEcg(patient), "ecg");
        QTEST(canStartStress(patient), "stress");
    }

    void anEcgTakesThePersonAndTheTime()
    {
        StudyInfo expected;
        expected.studyType = "ECG";
        expected.studyDateTime = "20240305070809";
        expected.lastName = "Diaz";
        expected.firstName = "Ana";
        expected.age = "50";
        expected.birthDate = "19740102";
        expected.sex = "F";
        expected.medicalHistoryNumber = "H-7";
        expected.personIdNumber = "30111";
        QVERIFY(quickEcgInfo(goodPatient(), someTime()) == expected);
    }

    void aStressTestHasAProtocolAndTargetsAsWell()
    {
        StudyInfo expected = quickEcgInfo(goodPatient(), someTime());
        expected.studyType = "Stress test";
        expected.protocolName = "Bruce";
        expected.trainingZoneMax = "160";
        expected.trainingZoneSubMax = "136";
        QVERIFY(quickStressInfo(goodPatient(), "Bruce", someTime()) == expected);
    }

    void targetsFollowAgeAndSex_data()
    {
        QTest::addColumn<QString>("age");
        QTest::addColumn<QByteArray>("sex");
        QTest::addColumn<QByteArray>("maximum");
        QTest::addColumn<QByteArray>("submaximum");
        const auto row = [](const char* age, const char* sex, const char* maximum, const char* submaximum) {
            QTest::addRow("%s %s", age, sex) << QString::fromLatin1(age) << QByteArray(sex)
                                             << QByteArray(maximum) << QByteArray(submaximum);
        };
        row("50", "M", "170", "144"); // of 144.5
        row("50", "F", "160", "136");
        row("51", "F", "159", "135"); // of 135.15
        row("2", "M", "218", "185");
        row("99", "F", "111", "94");
        row("", "M", "", "");
        row("old", "M", "", "");
    }

    void targetsFollowAgeAndSex()
    {
        QFETCH(QString, age);
        QFETCH(QByteArray, sex);
        TQuickPatient patient = goodPatient();
        patient.age = age;
        patient.sex = sex;
        const StudyInfo info = quickStressInfo(patient, "Bruce", someTime());
        QTEST(info.trainingZoneMax, "maximum");
        QTEST(info.trainingZoneSubMax, "submaximum");
    }

    void blanksAroundAreNoPartOfTheTexts()
    {
        TQuickPatient patient = goodPatient();
        patient.lastName = QStringLiteral("  Díaz Peña ");
        patient.firstName = QStringLiteral("Ana\t");
        patient.age = QStringLiteral(" 50 ");
        const StudyInfo info = quickStressInfo(patient, "Bruce", someTime());
        QCOMPARE(info.lastName, QByteArray("D\xc3\xad"
                                           "az Pe\xc3\xb1"
                                           "a"));
        QCOMPARE(info.firstName, QByteArray("Ana"));
        QCOMPARE(info.age, QByteArray("50"));
        QCOMPARE(info.trainingZoneMax, QByteArray("160"));
    }
};

QTEST_GUILESS_MAIN(QuickStudyTest)
#include "QuickStudyTest.moc"
