#include "dialogs/BPDialog.h"

#include "support/ProgramStyle.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTranslator>
#include <QtTest>

/// The dialog, whose size is fixed, under the style sheet of the program.
class BPDialogLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void everythingFits_data();
    void everythingFits();

private:
    QTranslator m_spanish;
    QTranslator m_spanishOfQt;
};

void BPDialogLookTest::initTestCase()
{
    wearTheStyle();
    QVERIFY(m_spanish.load(QStringLiteral(VELANTOR_BIN "/VelantorStressECG_es.qm")));
    QVERIFY(m_spanishOfQt.load(QStringLiteral(VELANTOR_BIN "/qt_es.qm")));
}

void BPDialogLookTest::cleanup()
{
    QCoreApplication::removeTranslator(&m_spanish);
    QCoreApplication::removeTranslator(&m_spanishOfQt);
}

void BPDialogLookTest::everythingFits_data()
{
    QTest::addColumn<bool>("isSpanish");
    QTest::addColumn<QString>("stage");
    for (const bool isSpanish : {false, true}) {
        const QByteArray language = isSpanish ? " in Spanish" : "";
        QTest::newRow("one line" + language) << isSpanish << QStringLiteral("Exercise 2");
        QTest::newRow("two lines" + language)
            << isSpanish << QStringLiteral("Recuperación 2\n12,5 km/h 15,0 %");
    }
}

void BPDialogLookTest::everythingFits()
{
    QFETCH(bool, isSpanish);
    QFETCH(QString, stage);
    if (isSpanish) {
        QCoreApplication::installTranslator(&m_spanishOfQt);
        QCoreApplication::installTranslator(&m_spanish);
    }
    BPDialog dialog(stage);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QString folder = qEnvironmentVariable("VELANTOR_PICTURES");
    if (!folder.isEmpty())
        dialog.grab().save(folder + QLatin1Char('/') + QLatin1String(QTest::currentDataTag()) +
                           QStringLiteral(".png"));

    QCOMPARE(dialog.size(), QSize(191, 191));
    for (const auto* label : dialog.findChildren<QLabel*>())
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
    for (const auto* button : dialog.findChildren<QAbstractButton*>())
        QVERIFY2(button->height() >= button->minimumSizeHint().height() &&
                     button->width() >= button->minimumSizeHint().width(),
                 qPrintable(button->text()));
    for (const auto* field : dialog.findChildren<QLineEdit*>()) {
        QVERIFY2(
            field->height() >= field->minimumSizeHint().height(),
            qPrintable(QStringLiteral("%1 %2").arg(field->height()).arg(field->minimumSizeHint().height())));
        QVERIFY(field->width() >= field->fontMetrics().horizontalAdvance(QStringLiteral("888")) + 16);
    }
    const QSize needed = dialog.layout()->minimumSize();
    QVERIFY2(needed.width() <= 191, qPrintable(QString::number(needed.width())));
    QVERIFY2(dialog.layout()->heightForWidth(191) <= 191,
             qPrintable(QString::number(dialog.layout()->heightForWidth(191))));
}

QTEST_MAIN(BPDialogLookTest)
#include "BPDialogLookTest.moc"
