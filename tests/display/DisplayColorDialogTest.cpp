#include "display/DisplayColorDialog.h"
#include "display/ColorSchemes.h"
#include "display/ColorTags.h"
#include "display/PictureBounds.h"
#include "display/QSignalMonitorDisplay.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

namespace {

/// A display as the dialog sees it.
class TShownColors : public QObject
{
public:
    void setColor(int tag, const QColor& color) { colors[tag] = color; }
    void refresh() { shown = colors; }

    QMap<int, QColor> colors;
    QMap<int, QColor> shown;
};

QListWidget* listOf(DisplayColorDialog& dialog)
{
    return dialog.findChild<QListWidget*>(QStringLiteral("listElements"));
}

QColorDialog* colorDialogOf(DisplayColorDialog& dialog)
{
    return dialog.findChild<QColorDialog*>();
}

} // namespace

class DisplayColorDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theListHasAllElementsWithTheirColors();
    void anElementShowsItsColorAndChangesNone();
    void aPickedColorIsToldWithItsTag();
    void theColorThatIsThereIsNoChange();
    void theAlphaOfAnElementStays();
    void aConnectedDisplayShowsTheColorAtOnce();
    void aRealDisplayIsPaintedInTheNewColor();
    void aDisplayThatIsGoneIsNotTold();
    void anEmptyListHasNothingToChange();
    void escapeAmongTheColorsClosesTheWholeDialog();
    void theCloseButtonCloses();
    void theNamesOfTheElementsAreNotCut();
};

void DisplayColorDialogTest::theListHasAllElementsWithTheirColors()
{
    DisplayColorDialog dialog;
    QMap<int, QColor> colors = schemeColors(QStringLiteral("Blue"));
    colors[10] = QColor(128, 128, 128, 128);
    dialog.setColors(colors);

    const QListWidget* list = listOf(dialog);
    QCOMPARE(list->count(), 11);
    QSet<QString> names;
    for (int tag = 0; tag < 11; ++tag) {
        QCOMPARE(list->item(tag)->data(Qt::UserRole).toUInt(), colors[tag].rgb());
        names.insert(list->item(tag)->text());
    }
    QCOMPARE(names.size(), 11);
    QCOMPARE(list->item(0)->text(), QStringLiteral("Trace"));
    for (int tag = 0; tag < 11; ++tag)
        QCOMPARE(dialog.colors().value(tag).rgba(), colors[tag].rgba());
}

void DisplayColorDialogTest::anElementShowsItsColorAndChangesNone()
{
    DisplayColorDialog dialog;
    dialog.setColors(schemeColors(QStringLiteral("Black")));
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    for (int row = 0; row < 10; ++row) {
        listOf(dialog)->setCurrentRow(row);
        QCOMPARE(colorDialogOf(dialog)->currentColor().rgb(),
                 listOf(dialog)->item(row)->data(Qt::UserRole).toUInt());
    }
    QCOMPARE(changes.count(), 0);
}

void DisplayColorDialogTest::aPickedColorIsToldWithItsTag()
{
    DisplayColorDialog dialog;
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    listOf(dialog)->setCurrentRow(7);
    colorDialogOf(dialog)->setCurrentColor(QColor(1, 2, 3));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes[0][0].toInt(), 7);
    QCOMPARE(changes[0][1].value<QColor>().rgba(), QColor(1, 2, 3).rgba());
    QCOMPARE(listOf(dialog)->item(7)->data(Qt::UserRole).toUInt(), QColor(1, 2, 3).rgb());
    QCOMPARE(dialog.colors().value(7).rgb(), QColor(1, 2, 3).rgb());
}

void DisplayColorDialogTest::theColorThatIsThereIsNoChange()
{
    DisplayColorDialog dialog;
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    colorDialogOf(dialog)->setCurrentColor(QColor(9, 9, 9));
    colorDialogOf(dialog)->setCurrentColor(QColor(9, 9, 9));
    QCOMPARE(changes.count(), 1);
}

void DisplayColorDialogTest::theAlphaOfAnElementStays()
{
    DisplayColorDialog dialog;
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    listOf(dialog)->setCurrentRow(6);
    colorDialogOf(dialog)->setCurrentColor(QColor(10, 20, 30));
    QCOMPARE(changes[0][1].value<QColor>().rgba(), QColor(10, 20, 30, 128).rgba());
}

void DisplayColorDialogTest::aConnectedDisplayShowsTheColorAtOnce()
{
    DisplayColorDialog dialog;
    TShownColors first;
    TShownColors second;
    dialog.connectTo(&first);
    dialog.connectTo(&second);
    listOf(dialog)->setCurrentRow(2);
    colorDialogOf(dialog)->setCurrentColor(QColor(5, 6, 7));
    QCOMPARE(first.shown.keys(), QList<int>{2});
    QCOMPARE(first.shown[2].rgb(), QColor(5, 6, 7).rgb());
    QCOMPARE(second.shown[2].rgb(), QColor(5, 6, 7).rgb());
}

void DisplayColorDialogTest::aRealDisplayIsPaintedInTheNewColor()
{
    const QColor paper(5, 60, 7);
    QSignalMonitorDisplay display;
    display.resize(300, 200);
    display.grab();
    DisplayColorDialog dialog;
    dialog.setColors(schemeColors(QStringLiteral("Black")));
    dialog.connectTo(&display);
    listOf(dialog)->setCurrentRow(1);
    colorDialogOf(dialog)->setCurrentColor(paper);
    QCOMPARE(display.color(BackgroundColor).rgb(), paper.rgb());
    // Between the lines of the grid, away from the labels.
    const QImage picture = display.grab().toImage();
    QVERIFY(boundsOf(picture, paper, QRectF(100, 50, 150, 100)).width() > 140);
}

void DisplayColorDialogTest::aDisplayThatIsGoneIsNotTold()
{
    DisplayColorDialog dialog;
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    {
        TShownColors display;
        dialog.connectTo(&display);
    }
    colorDialogOf(dialog)->setCurrentColor(QColor(5, 6, 7));
    QCOMPARE(changes.count(), 1);
}

void DisplayColorDialogTest::anEmptyListHasNothingToChange()
{
    DisplayColorDialog dialog;
    dialog.setColors({});
    QSignalSpy changes(&dialog, &DisplayColorDialog::colorChanged);
    colorDialogOf(dialog)->setCurrentColor(QColor(5, 6, 7));
    QCOMPARE(changes.count(), 0);
    QVERIFY(dialog.colors().isEmpty());
}

void DisplayColorDialogTest::escapeAmongTheColorsClosesTheWholeDialog()
{
    DisplayColorDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(colorDialogOf(dialog), Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    dialog.show();
    QVERIFY(colorDialogOf(dialog)->isVisible());
}

void DisplayColorDialogTest::theCloseButtonCloses()
{
    DisplayColorDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))
        ->button(QDialogButtonBox::Close)
        ->click();
    QVERIFY(!dialog.isVisible());
}

void DisplayColorDialogTest::theNamesOfTheElementsAreNotCut()
{
    DisplayColorDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(listOf(dialog)->viewport()->width() >= listOf(dialog)->sizeHintForColumn(0));
}

QTEST_MAIN(DisplayColorDialogTest)
#include "DisplayColorDialogTest.moc"
