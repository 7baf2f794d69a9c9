#include "dialogs/ShownBPDialog.h"

#include "base/Constants.h"
#include "base/Settings.h"

#include <QLabel>
#include <QLayout>
#include <QTemporaryDir>

class BPDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void itLooksAsAgreed();
    void itBeginsEmptyWithOkDisabled();
    void okNeedsTwoPressuresWithTheSystolicAbove_data();
    void okNeedsTwoPressuresWithTheSystolicAbove();
    void acceptedItHoldsTheValues();
    void cancelledItHoldsNothingAndTheSettingStays();
    void theBoxIsRememberedByOk();
    void everythingFitsIntoItsSize();
    void everyControlHasAName();

private:
    QTemporaryDir m_folder;
};

void BPDialogTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
    QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
}

void BPDialogTest::init()
{
    QSettings().clear();
}

void BPDialogTest::itLooksAsAgreed()
{
    TShownDialog shown;
    QCOMPARE(shown.dialog.windowTitle(), QStringLiteral("Enter BP"));
    QCOMPARE(shown.dialog.minimumSize(), QSize(191, 191));
    QCOMPARE(shown.dialog.maximumSize(), QSize(191, 191));
    QVERIFY(!shown.dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    for (const QLineEdit* field : {shown.systolic, shown.diastolic}) {
        QCOMPARE(field->inputMask(), QStringLiteral("099"));
        QCOMPARE(field->font().pointSize(), 16);
        QVERIFY(field->alignment().testFlag(Qt::AlignRight));
    }
    QStringList texts;
    for (const QLabel* label : shown.dialog.findChildren<QLabel*>())
        texts << label->text();
    QVERIFY(texts.contains(QStringLiteral("SBP / DBP")));
    QVERIFY(texts.contains(QStringLiteral("Stage: Exercise 2")));
    QCOMPARE(shown.print->text(), QStringLiteral("Print this stage"));
    QCOMPARE(shown.box->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QVERIFY(shown.box->centerButtons());
}

void BPDialogTest::itBeginsEmptyWithOkDisabled()
{
    TShownDialog shown;
    QVERIFY(!shown.okEnabled());
    QVERIFY(!shown.print->isChecked());
    QCOMPARE(shown.dialog.systolic(), 0);
    QCOMPARE(shown.dialog.diastolic(), 0);
    QVERIFY(!shown.dialog.printStage());
    QCOMPARE(QApplication::focusWidget(), shown.systolic);
}

void BPDialogTest::okNeedsTwoPressuresWithTheSystolicAbove_data()
{
    QTest::addColumn<QString>("systolic");
    QTest::addColumn<QString>("diastolic");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char* systolic, const char* diastolic, bool expected) {
        QTest::addRow("%s over %s", systolic, diastolic)
            << QString::fromLatin1(systolic) << QString::fromLatin1(diastolic) << expected;
    };
    row("120", "120", false);
    row("120", "119", true);
    row("119", "120", false);
    row("120", "80", true);
    row("80", "120", false);
    row("120", "", false);
    row("", "80", false);
    row("", "", false);
    row("120", "0", false);
    row("120", "000", false);
    row("0", "0", false);
    row("1", "0", false);
    row("2", "1", true);
    row("999", "998", true);
}

void BPDialogTest::okNeedsTwoPressuresWithTheSystolicAbove()
{
    QFETCH(QString, systolic);
    QFETCH(QString, diastolic);
    TShownDialog shown;
    shown.systolic->setText(systolic);
    shown.diastolic->setText(diastolic);
    QTEST(shown.okEnabled(), "expected");

    // The same, whichever field is filled last.
    TShownDialog other;
    other.diastolic->setText(diastolic);
    other.systolic->setText(systolic);
    QTEST(other.okEnabled(), "expected");
}

void BPDialogTest::acceptedItHoldsTheValues()
{
    TShownDialog shown;
    shown.systolic->setText(QStringLiteral("131"));
    shown.diastolic->setText(QStringLiteral("79"));
    shown.print->setChecked(true);
    shown.button(QDialogButtonBox::Ok)->click();
    QCOMPARE(shown.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(shown.dialog.systolic(), 131);
    QCOMPARE(shown.dialog.diastolic(), 79);
    QVERIFY(shown.dialog.printStage());
}

void BPDialogTest::cancelledItHoldsNothingAndTheSettingStays()
{
    for (const bool stored : {false, true}) {
        settings::bpPrint.setValue(stored);
        TShownDialog shown;
        shown.systolic->setText(QStringLiteral("131"));
        shown.diastolic->setText(QStringLiteral("79"));
        shown.print->setChecked(!stored);
        shown.button(QDialogButtonBox::Cancel)->click();
        QCOMPARE(shown.dialog.result(), int(QDialog::Rejected));
        QCOMPARE(shown.dialog.systolic(), 0);
        QCOMPARE(shown.dialog.diastolic(), 0);
        QVERIFY(!shown.dialog.printStage());
        QCOMPARE(settings::bpPrint.value(), stored);
    }
}

void BPDialogTest::theBoxIsRememberedByOk()
{
    for (const bool print : {true, false}) {
        settings::bpPrint.setValue(!print);
        TShownDialog shown;
        QCOMPARE(shown.print->isChecked(), !print);
        shown.systolic->setText(QStringLiteral("120"));
        shown.diastolic->setText(QStringLiteral("80"));
        shown.print->setChecked(print);
        shown.button(QDialogButtonBox::Ok)->click();
        QCOMPARE(QSettings().value(QStringLiteral("BPDialog/Print")).toBool(), print);
        QCOMPARE(TShownDialog().print->isChecked(), print);
    }
}

void BPDialogTest::everythingFitsIntoItsSize()
{
    TShownDialog shown;
    const QSize needed = shown.dialog.layout()->minimumSize();
    QVERIFY2(needed.width() <= 191 && needed.height() <= 191,
             qPrintable(QStringLiteral("needs %1 x %2").arg(needed.width()).arg(needed.height())));
    const QRect area = shown.dialog.rect();
    for (const QWidget* part : shown.dialog.findChildren<QWidget*>()) {
        const QRect place(part->mapTo(&shown.dialog, QPoint()), part->size());
        QVERIFY2(area.contains(place), qPrintable(part->objectName()));
    }
}

void BPDialogTest::everyControlHasAName()
{
    TShownDialog shown;
    QVERIFY(!shown.systolic->accessibleName().isEmpty());
    QVERIFY(!shown.diastolic->accessibleName().isEmpty());
    QVERIFY(shown.systolic->accessibleName() != shown.diastolic->accessibleName());
}

QTEST_MAIN(BPDialogTest)
#include "BPDialogTest.moc"
