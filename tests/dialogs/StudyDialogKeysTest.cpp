#include "StudyDialogFixture.h"
#include "support/AccessibleControls.h"

#include "base/Settings.h"

#include <QStackedWidget>

/// The ways of the keyboard from page to page and from field to field.
class StudyDialogKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store = std::make_unique<TDialogStore>(); }
    void cleanup() { m_store.reset(); }

    void keysTurnThePages();
    void keysTurnThePagesFromWithinAField_data();
    void keysTurnThePagesFromWithinAField();
    void theTabKeyFollowsTheReadingOrder_data();
    void theTabKeyFollowsTheReadingOrder();
    void theTabKeyPassesWhatIsWorkedOut();

private:
    std::unique_ptr<TDialogStore> m_store;
};

namespace {

void turn(const StudyDialog& dialog, Qt::Key key)
{
    QTest::keyClick(dialog.focusWidget(), key, Qt::ControlModifier);
}

} // namespace

void StudyDialogKeysTest::keysTurnThePages()
{
    StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto* pages = dialog.findChild<QStackedWidget*>();
    turn(dialog, Qt::Key_PageUp);
    QCOMPARE(pages->currentIndex(), 0);
    for (const int expected : {1, 2, 2}) {
        turn(dialog, Qt::Key_PageDown);
        QCOMPARE(pages->currentIndex(), expected);
    }
    turn(dialog, Qt::Key_PageUp);
    QCOMPARE(pages->currentIndex(), 1);
}

void StudyDialogKeysTest::keysTurnThePagesFromWithinAField_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("listCategory") << 1;
    QTest::newRow("txtLastName") << 0;
    QTest::newRow("cboIdType") << 0;
    QTest::newRow("cboSex") << 0;
    QTest::newRow("numSubmaxPercent") << 0;
    QTest::newRow("chk_Gota") << 1;
    QTest::newRow("txt_Gota") << 1;
    QTest::newRow("dtStudyDateTime") << 2;
    QTest::newRow("cboDoctorName") << 2;
    QTest::newRow("txtComments") << 2;
    QTest::newRow("cboProtocol") << 3;
    QTest::newRow("btnRepeat") << 0;
}

void StudyDialogKeysTest::keysTurnThePagesFromWithinAField()
{
    QFETCH(int, page);
    StudyInfo info = infoOfType("Stress test");
    info.comments = QByteArray("line\n").repeated(200);
    info.personIdType = "DNI";
    settings::idTypeList.setValue({QStringLiteral("DNI"), QStringLiteral("CI"), QStringLiteral("LE")});
    StudyDialog dialog(nullptr, info, true);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto* list = widgetOf<QListWidget>(dialog, "listCategory");
    auto* field = widgetOf<QWidget>(dialog, QTest::currentDataTag());
    for (const auto& [key, next] :
         {std::pair(Qt::Key_PageDown, qMin(page + 1, 3)), std::pair(Qt::Key_PageUp, qMax(page - 1, 0))}) {
        list->setCurrentRow(page);
        field->setFocus();
        QCOMPARE(dialog.focusWidget(), field);
        const QVariant before = field->metaObject()->userProperty().read(field);
        turn(dialog, key);
        QCOMPARE(list->currentRow(), next);
        QCOMPARE(dialog.findChild<QStackedWidget*>()->currentIndex(), next);
        // Turned, and nothing entered.
        if (field != list)
            QCOMPARE(field->metaObject()->userProperty().read(field), before);
        QVERIFY(dialog.focusWidget() && dialog.focusWidget()->isVisible());
    }
}

namespace {

struct TStop
{
    QWidget* field;
    QRect place; ///< within the dialog
};

/// What the Tab key must come by on a page.
std::vector<TStop> stopsOf(const StudyDialog& dialog, const QWidget* page)
{
    std::vector<TStop> stops;
    for (QWidget* field : page->findChildren<QWidget*>()) {
        if ((field->focusPolicy() & Qt::TabFocus) && field->isEnabled() && field->isVisible() &&
            !isInnerPart(*field))
            stops.push_back({field, QRect(field->mapTo(&dialog, QPoint()), field->size())});
    }
    return stops;
}

/// Rows first, and within a row from left to right.
bool isReadBefore(const TStop& one, const TStop& other)
{
    const bool isSameRow = one.place.top() <= other.place.bottom() && other.place.top() <= one.place.bottom();
    return isSameRow ? one.place.left() < other.place.left() : one.place.top() < other.place.top();
}

QStringList namesOf(const std::vector<TStop>& stops)
{
    QStringList names;
    for (const TStop& stop : stops)
        names += stop.field->objectName();
    return names;
}

/// Where the Tab key goes from the list of the pages until it leaves the page.
QStringList visited(const StudyDialog& dialog, const QWidget* page)
{
    QStringList names;
    QTest::keyClick(widgetOf<QListWidget>(dialog, "listCategory"), Qt::Key_Tab);
    for (int step = 0; step < 100 && page->isAncestorOf(dialog.focusWidget()); ++step) {
        // A date has several parts, which the key passes one after the other.
        if (names.isEmpty() || names.last() != dialog.focusWidget()->objectName())
            names += dialog.focusWidget()->objectName();
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
    return names;
}

} // namespace

void StudyDialogKeysTest::theTabKeyFollowsTheReadingOrder_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<int>("stops");
    QTest::newRow("patient") << 0 << true << 18;
    QTest::newRow("patient, existing") << 0 << false << 17;
    QTest::newRow("risk factors") << 1 << true << 22;
    QTest::newRow("study") << 2 << true << 7;
    QTest::newRow("protocol") << 3 << true << 1;
    QTest::newRow("protocol, existing") << 3 << false << 0;
}

void StudyDialogKeysTest::theTabKeyFollowsTheReadingOrder()
{
    QFETCH(int, page);
    QFETCH(bool, isNew);
    StudyDialog dialog(nullptr, infoOfType("Stress test"), isNew);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto* list = widgetOf<QListWidget>(dialog, "listCategory");
    list->setCurrentRow(page);
    QCoreApplication::processEvents();
    list->setFocus();
    const QWidget* shown = dialog.findChild<QStackedWidget*>()->currentWidget();
    std::vector<TStop> stops = stopsOf(dialog, shown);
    std::sort(stops.begin(), stops.end(), isReadBefore);
    QTEST(static_cast<int>(stops.size()), "stops");
    QCOMPARE(visited(dialog, shown), namesOf(stops));
}

void StudyDialogKeysTest::theTabKeyPassesWhatIsWorkedOut()
{
    const StudyDialog dialog(nullptr, infoOfType("ECG"), true);
    for (const char* name : {"txtBMI", "txtHRMax", "txtHRSubmax"})
        QVERIFY2(!(lineOf(dialog, name)->focusPolicy() & Qt::TabFocus), name);
}

QTEST_MAIN(StudyDialogKeysTest)
#include "StudyDialogKeysTest.moc"
