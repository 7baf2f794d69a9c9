#include "dialogs/ShownBPDialog.h"

/// How the pressures are typed.
class BPDialogEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFocusPassesOnWhenTheNumberIsComplete_data();
    void theFocusPassesOnWhenTheNumberIsComplete();
    void bothPressuresAreTypedWithoutAKeyBetweenThem();
    void returnPassesTheFocusOn_data();
    void returnPassesTheFocusOn();
    void aClickAnywhereInAFieldLetsItBeTyped();
    void aClickIntoAFilledFieldSelectsItsNumber();
    void returnInTheLastFieldAccepts();
    void onlyDigitsAreTaken();
};

void BPDialogEntryTest::theFocusPassesOnWhenTheNumberIsComplete_data()
{
    QTest::addColumn<bool>("passes");
    for (const char* stays : {"1", "9", "10", "12", "35"})
        QTest::newRow(stays) << false;
    for (const char* passes : {"36", "80", "99", "100", "120", "250"})
        QTest::newRow(passes) << true;
}

void BPDialogEntryTest::theFocusPassesOnWhenTheNumberIsComplete()
{
    QFETCH(bool, passes);
    TShownDialog shown;
    shown.type(QTest::currentDataTag());
    QCOMPARE(shown.systolic->text(), QLatin1String(QTest::currentDataTag()));
    QCOMPARE(QApplication::focusWidget(), passes ? shown.diastolic : shown.systolic);
}

void BPDialogEntryTest::bothPressuresAreTypedWithoutAKeyBetweenThem()
{
    TShownDialog shown;
    for (const char* key : {"1", "2", "5", "8", "5"})
        shown.type(key);
    QCOMPARE(shown.systolic->text(), QStringLiteral("125"));
    QCOMPARE(shown.diastolic->text(), QStringLiteral("85"));
    QVERIFY(shown.okEnabled());
}

void BPDialogEntryTest::returnPassesTheFocusOn_data()
{
    QTest::addColumn<QString>("systolic");
    QTest::addColumn<QString>("diastolic");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("two digits") << QStringLiteral("35") << QString();
    QTest::newRow("three digits") << QStringLiteral("120") << QString();
    QTest::newRow("both pressures") << QStringLiteral("120") << QStringLiteral("80");
    QTest::newRow("both of two digits") << QStringLiteral("35") << QStringLiteral("20");
}

void BPDialogEntryTest::returnPassesTheFocusOn()
{
    QFETCH(QString, systolic);
    QFETCH(QString, diastolic);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        TShownDialog shown;
        shown.systolic->setText(systolic);
        shown.diastolic->setText(diastolic);
        shown.systolic->setFocus();
        QTest::keyClick(shown.systolic, key);
        QCOMPARE(QApplication::focusWidget(), shown.diastolic);
        QVERIFY(shown.dialog.isVisible());
    }
}

void BPDialogEntryTest::aClickAnywhereInAFieldLetsItBeTyped()
{
    TShownDialog shown;
    // Once when it gets the focus, once when it has it.
    for (const char* digits : {"80", "75"}) {
        shown.diastolic->clear();
        const QPoint rightEnd(shown.diastolic->width() - 6, shown.diastolic->height() / 2);
        QTest::mouseClick(shown.diastolic, Qt::LeftButton, Qt::NoModifier, rightEnd);
        QCoreApplication::processEvents();
        shown.type(digits);
        QCOMPARE(shown.diastolic->text(), QLatin1String(digits));
    }
}

void BPDialogEntryTest::aClickIntoAFilledFieldSelectsItsNumber()
{
    TShownDialog shown;
    shown.diastolic->setText(QStringLiteral("80"));
    QTest::mouseClick(shown.diastolic, Qt::LeftButton);
    QCoreApplication::processEvents();
    shown.type("75");
    QCOMPARE(shown.diastolic->text(), QStringLiteral("75"));
}

void BPDialogEntryTest::returnInTheLastFieldAccepts()
{
    TShownDialog shown;
    for (const char* key : {"1", "2", "0", "8", "0"})
        shown.type(key);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(shown.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(shown.dialog.systolic(), 120);
    QCOMPARE(shown.dialog.diastolic(), 80);
}

void BPDialogEntryTest::onlyDigitsAreTaken()
{
    TShownDialog shown;
    shown.type("-1x.2");
    QCOMPARE(shown.systolic->text(), QStringLiteral("12"));
}

QTEST_MAIN(BPDialogEntryTest)
#include "BPDialogEntryTest.moc"
