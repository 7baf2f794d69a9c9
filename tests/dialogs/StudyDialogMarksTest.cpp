#include "StudyDialogFixture.h"

/// Which fields are marked as being in error, and when the form can be accepted.
class StudyDialogMarksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void fieldsInErrorAreMarked_data();
    void fieldsInErrorAreMarked();
    void marksFollowTheFields();

private:
    std::unique_ptr<TDialogStore> m_store;
};

namespace {

bool isMarked(const QWidget* field)
{
    return field->styleSheet() == QStringLiteral("background-color: lightyellow");
}

} // namespace

void StudyDialogMarksTest::fieldsInErrorAreMarked_data()
{
    QTest::addColumn<QByteArray>("studyType");
    QTest::addColumn<QString>("lastName");
    QTest::addColumn<QString>("firstName");
    QTest::addColumn<QString>("age");
    QTest::addColumn<int>("sex");
    // In the order of the columns, a letter for each mark.
    QTest::addColumn<QString>("marked");
    const QByteArray ecg("ECG");
    const QByteArray stress("Stress test");
    QTest::newRow("stress, all good") << stress << "Perez"
                                      << "Ana"
                                      << "50" << 2 << "";
    QTest::newRow("stress, nothing") << stress << ""
                                     << ""
                                     << "" << 0 << "LFAS";
    QTest::newRow("stress, blanks") << stress << "  "
                                    << " "
                                    << "50" << 1 << "LF";
    QTest::newRow("stress at 1") << stress << "Perez"
                                 << "Ana"
                                 << "1" << 1 << "A";
    QTest::newRow("stress at 2") << stress << "Perez"
                                 << "Ana"
                                 << "2" << 1 << "";
    QTest::newRow("stress, no sex") << stress << "Perez"
                                    << "Ana"
                                    << "50" << 0 << "S";
    QTest::newRow("tilt, nothing") << QByteArray("Tilt test") << ""
                                   << ""
                                   << "" << 0 << "LFAS";
    QTest::newRow("ECG, names alone") << ecg << "Perez"
                                      << "Ana"
                                      << "" << 0 << "";
    QTest::newRow("ECG at 1") << ecg << "Perez"
                              << "Ana"
                              << "1" << 0 << "";
    QTest::newRow("ECG, nothing") << ecg << ""
                                  << ""
                                  << "" << 0 << "LF";
    QTest::newRow("ECG, no first name") << ecg << "Perez"
                                        << " "
                                        << "50" << 1 << "F";
}

void StudyDialogMarksTest::fieldsInErrorAreMarked()
{
    QFETCH(QByteArray, studyType);
    QFETCH(QString, lastName);
    QFETCH(QString, firstName);
    QFETCH(QString, age);
    QFETCH(int, sex);
    QFETCH(QString, marked);
    StudyInfo info = infoOfType(studyType.constData());
    info.lastName = lastName.toUtf8();
    info.firstName = firstName.toUtf8();
    info.age = age.toUtf8();
    info.sex = sex == 1 ? "M" : sex == 2 ? "F" : "";
    for (const bool isNew : {true, false}) {
        const StudyDialog dialog(nullptr, info, isNew);
        QString marks;
        marks += isMarked(lineOf(dialog, "txtLastName")) ? QStringLiteral("L") : QString();
        marks += isMarked(lineOf(dialog, "txtFirstName")) ? QStringLiteral("F") : QString();
        marks += isMarked(lineOf(dialog, "txtAge")) ? QStringLiteral("A") : QString();
        marks += isMarked(comboOf(dialog, "cboSex")) ? QStringLiteral("S") : QString();
        QCOMPARE(marks, marked);
        QCOMPARE(okButton(dialog)->isEnabled(), marked.isEmpty());
    }
}

void StudyDialogMarksTest::marksFollowTheFields()
{
    const StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    type(lineOf(dialog, "txtLastName"), "Perez");
    QCOMPARE(lineOf(dialog, "txtLastName")->styleSheet(), QString());
    QVERIFY(!okButton(dialog)->isEnabled());
    type(lineOf(dialog, "txtFirstName"), "Ana");
    type(lineOf(dialog, "txtBirthDate"), "1/2/56");
    QVERIFY(!isMarked(lineOf(dialog, "txtAge")));
    QVERIFY(!okButton(dialog)->isEnabled());
    comboOf(dialog, "cboSex")->setCurrentIndex(1);
    QVERIFY(okButton(dialog)->isEnabled());
    // The birth date takes the age with it.
    type(lineOf(dialog, "txtBirthDate"), "29/2/2023");
    QVERIFY(isMarked(lineOf(dialog, "txtAge")));
    QVERIFY(!okButton(dialog)->isEnabled());
    type(lineOf(dialog, "txtAge"), "30");
    QVERIFY(okButton(dialog)->isEnabled());
    comboOf(dialog, "cboSex")->setCurrentIndex(0);
    QVERIFY(isMarked(comboOf(dialog, "cboSex")));
    QVERIFY(!okButton(dialog)->isEnabled());
}

QTEST_MAIN(StudyDialogMarksTest)
#include "StudyDialogMarksTest.moc"
