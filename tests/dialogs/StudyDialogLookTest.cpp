#include "StudyDialogFixture.h"
#include "support/FormTexts.h"

#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QScopeGuard>
#include <QScrollBar>

/// The form under the style sheet of the program.
class StudyDialogLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void theFormFitsASmallScreen_data() { tableOfForms(); }
    void theFormFitsASmallScreen();
    void noTextIsCut_data() { tableOfForms(); }
    void noTextIsCut();
    void theListOfThePagesIsAsWideAsItsTexts();
    void aHintDoesNotLookLikeAnEntry();
    void whatStandsOnAMarkIsDark();
    void theOpenedListOfAMarkedBoxCanBeRead();
    void theRowsOfTheFactorsNeedNoScrolling();

private:
    static void tableOfForms();

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

void StudyDialogLookTest::tableOfForms()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<bool>("isSpanish");
    for (const char* kind : {"ECG", "Stress test"}) {
        for (const bool isNew : {true, false}) {
            for (const bool isSpanish : {true, false})
                QTest::addRow("%s %s, %s", isNew ? "new" : "existing", kind,
                              isSpanish ? "Spanish" : "English")
                    << QByteArray(kind) << isNew << isSpanish;
        }
    }
}

void StudyDialogLookTest::theFormFitsASmallScreen()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, isNew);
    QFETCH(bool, isSpanish);
    const TLanguage language(VELANTOR_LANGUAGES, isSpanish);
    StudyDialog dialog(nullptr, infoOfType(kind.constData()), isNew);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    // 1280 by 800 with room for a title and a task bar.
    QVERIFY(dialog.width() <= 1280);
    QVERIFY(dialog.height() <= 720);
    QVERIFY(dialog.minimumSizeHint().width() <= 1280);
    QVERIFY(dialog.minimumSizeHint().height() <= 720);
}

void StudyDialogLookTest::noTextIsCut()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, isNew);
    QFETCH(bool, isSpanish);
    const TLanguage language(VELANTOR_LANGUAGES, isSpanish);
    StudyDialog dialog(nullptr, infoOfType(kind.constData()), isNew);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* list = widgetOf<QListWidget>(dialog, "listCategory");
    QCOMPARE(list->item(1)->text(),
             isSpanish ? QStringLiteral("Factores de riesgo") : QStringLiteral("Risk factors"));
    QVERIFY(list->viewport()->width() >= list->sizeHintForColumn(0));
    for (int page = 0; page < list->count(); ++page) {
        list->setCurrentRow(page);
        QCoreApplication::processEvents();
        QCOMPARE(cutTexts(dialog), QStringList());
    }
}

void StudyDialogLookTest::theListOfThePagesIsAsWideAsItsTexts()
{
    const QString sheet = qApp->styleSheet();
    qApp->setStyleSheet(sheet + QStringLiteral("\nQListWidget { font-size: 32px; }"));
    const auto backToTheSheet = qScopeGuard([&sheet] { qApp->setStyleSheet(sheet); });
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const auto* list = widgetOf<QListWidget>(dialog, "listCategory");
    QVERIFY(list->sizeHintForColumn(0) > 160);
    QVERIFY(list->viewport()->width() >= list->sizeHintForColumn(0));
    QVERIFY(!list->horizontalScrollBar()->isVisible());
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
    const char* const fields[] = {"txtLastName", "txtFirstName", "txtAge", "cboSex"};
    for (const char* name : fields)
        QVERIFY2(lightness(widgetOf<QWidget>(dialog, name)) < 60, name);
    type(lineOf(dialog, "txtLastName"), "Perez");
    type(lineOf(dialog, "txtFirstName"), "Ana");
    type(lineOf(dialog, "txtAge"), "50");
    comboOf(dialog, "cboSex")->setCurrentIndex(1);
    for (const char* name : fields)
        QVERIFY2(lightness(widgetOf<QWidget>(dialog, name)) > 180, name);
}

void StudyDialogLookTest::theOpenedListOfAMarkedBoxCanBeRead()
{
    StudyDialog dialog(nullptr, infoOfType("Stress test"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QComboBox* sex = comboOf(dialog, "cboSex");
    QVERIFY(!sex->styleSheet().isEmpty());
    sex->showPopup();
    QVERIFY(QTest::qWaitForWindowExposed(sex->view()->window()));
    const QPixmap shot = sex->view()->viewport()->grab();
    const QImage picture = shot.toImage();
    for (int row : {1, 2}) {
        const QRect place = sex->view()->visualRect(sex->model()->index(row, 0));
        const qreal ratio = shot.devicePixelRatio();
        int darkest = 255;
        int lightest = 0;
        for (int x = qRound(4 * ratio); x < qRound((place.width() - 4) * ratio); ++x) {
            for (int y = qRound((place.top() + 4) * ratio); y < qRound((place.bottom() - 4) * ratio); ++y) {
                const int lightness = picture.pixelColor(x, y).lightness();
                darkest = qMin(darkest, lightness);
                lightest = qMax(lightest, lightness);
            }
        }
        QVERIFY2(lightest - darkest > 120, qPrintable(sex->itemText(row)));
    }
    sex->hidePopup();
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
