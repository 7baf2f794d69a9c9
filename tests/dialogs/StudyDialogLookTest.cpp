#include "StudyDialogFixture.h"

#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QApplication>
#include <QFile>

/// The form under the style sheet of the program.
class StudyDialogLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theFormFitsASmallScreen();
    void aHintDoesNotLookLikeAnEntry();
    void whatStandsOnAMarkIsDark();
    void theRowsOfTheFactorsNeedNoScrolling();

private:
    std::unique_ptr<TDialogStore> m_store;
};

void StudyDialogLookTest::initTestCase()
{
    initResources();
    QFile sheet(QStringLiteral(":/styles/dark.css"));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    QApplication::setStyle(std::make_unique<DarkStyle>().release());
    qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

void StudyDialogLookTest::theFormFitsASmallScreen()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    // 1280 by 800 with room for a title and a task bar.
    QVERIFY(dialog.width() <= 1280);
    QVERIFY(dialog.height() <= 720);
    QVERIFY(dialog.minimumSizeHint().height() <= 720);
}

void StudyDialogLookTest::aHintDoesNotLookLikeAnEntry()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QLineEdit* comment = lineOf(dialog, "txt_Gota");
    QTRY_VERIFY(comment->palette().placeholderText().color().lightness() <
                comment->palette().text().color().lightness() - 40);
}

void StudyDialogLookTest::whatStandsOnAMarkIsDark()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const auto lightness = [](const QWidget* field) { return field->palette().text().color().lightness(); };
    for (QWidget* field : {widgetOf<QWidget>(dialog, "txtAge"), widgetOf<QWidget>(dialog, "cboSex")})
        QVERIFY2(lightness(field) < 60, qPrintable(field->objectName()));
    type(lineOf(dialog, "txtAge"), "50");
    comboOf(dialog, "cboSex")->setCurrentIndex(1);
    for (QWidget* field : {widgetOf<QWidget>(dialog, "txtAge"), widgetOf<QWidget>(dialog, "cboSex")})
        QVERIFY2(lightness(field) > 180, qPrintable(field->objectName()));
}

void StudyDialogLookTest::theRowsOfTheFactorsNeedNoScrolling()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    widgetOf<QListWidget>(dialog, "listCategory")->setCurrentRow(1);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QWidget* last = lineOf(dialog, "txt_Gota");
    QCOMPARE(last->visibleRegion().boundingRect().size(), last->size());
}

QTEST_MAIN(StudyDialogLookTest)
#include "StudyDialogLookTest.moc"
