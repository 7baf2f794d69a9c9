#include "display/PlotSeries.h"
#include "display/QPlotGraphic.h"

#include <QApplication>
#include <QMouseEvent>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

/// A plot of 400 by 200 pixels: its area is 360 by 180 from (40, 0); the range of x is 0 to 360, that of y 0
/// to 180.
struct TShownPlot
{
    TShownPlot()
    {
        plot.resize(400, 200);
        plot.setXRange(0, 360);
        plot.setYRange(0, 180);
        plot.setDataSource(&series);
        // Takes the size and paints, as a window does.
        plot.grab();
    }

    void press(int x, int y, Qt::KeyboardModifiers keys = {}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&plot, button, keys, {x, y});
    }
    void move(int x, int y, Qt::KeyboardModifiers keys = {})
    {
        QMouseEvent event(QEvent::MouseMove, QPointF(x, y), Qt::NoButton, Qt::LeftButton, keys);
        QApplication::sendEvent(&plot, &event);
    }
    void release(int x, int y, Qt::KeyboardModifiers keys = {})
    {
        QTest::mouseRelease(&plot, Qt::LeftButton, keys, {x, y});
    }

    TPlotSeries series{{{10, 50}, {100, 80}, {200, 120}, {300, 90}}};
    QPlotGraphic plot;
    QSignalSpy selections{&plot, &QPlotGraphic::selectedValueChanged};
    QSignalSpy scales{&plot, &QPlotGraphic::scaleChanged};
    QSignalSpy highlights{&plot, &QPlotGraphic::highlightChanged};
};

} // namespace

class PlotGraphicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewPlotHasItsDefaults();
    void theSignalsComeInTheirOrder();
    void theAreasFollowTheSizeAndTheLabels();
    void draggingTheLabelsMovesTheView();
    void aFixedAxisStays_data();
    void aFixedAxisStays();
    void draggingWithControlZooms();
    void zoomGoesOnFromTheLastPoint();
    void draggingForgetsTheSelectedPoint();
    void draggingEndsWithTheRelease();
    void aPressInThePlotAloneDoesNothing();
    void otherButtonsDoNothing();
    void aPressSelectsTheNextPoint();
    void aPressBeyondTheLastPointSelectsIt();
    void theSelectionFollowsTheDrag();
    void theFreeCursorStaysInTheRange();
    void aSelectionWithoutSourceIsNone();
    void aSelectionInAnEmptyRangeIsNone();
    void anEmptyYRangeIsNoHindranceToSelections();
    void aNewSourceForgetsTheSelection();
    void settingASelectionTakesTheNearestPoint();
    void settingASelectionOfTheFreeCursorTakesTheValue();
    void settingASelectionInAnEmptyRangeDoesNothing();
    void settingASelectionThatIsNoNumberDoesNothing();
    void shiftMarksASpan();
    void aSpanIsNotStretchedWithoutShift();
    void aSpanOfNothingIsCleared();
    void shiftSelectsWhereSpansAreOff();
    void onlySpanZeroIsKnown();
    void autoScaleFitsTheAxesAskedFor();
    void autoScaleOfAConstantLeavesRoom();
    void autoScaleWithoutPointsDoesNothing();
    void autoScaleOfRangeMarksCoversBothValues();
};

void PlotGraphicTest::aNewPlotHasItsDefaults()
{
    const QPlotGraphic plot;
    QCOMPARE(plot.xRange(), (TPlotRange{0, 10}));
    QCOMPARE(plot.yRange(), (TPlotRange{0, 10}));
    QCOMPARE(plot.selectedIndex(), -1);
    QVERIFY(!plot.highlight().isSet());
    QVERIFY(!plot.highlight().color.isValid());
}

void PlotGraphicTest::theSignalsComeInTheirOrder()
{
    const QMetaObject& meta = QPlotGraphic::staticMetaObject;
    const int first = meta.methodOffset();
    QCOMPARE(meta.methodCount() - first, 3);
    QCOMPARE(meta.method(first).methodSignature(), QByteArray("selectedValueChanged()"));
    QCOMPARE(meta.method(first + 1).methodSignature(), QByteArray("scaleChanged()"));
    QCOMPARE(meta.method(first + 2).methodSignature(), QByteArray("highlightChanged()"));
}

void PlotGraphicTest::theAreasFollowTheSizeAndTheLabels()
{
    TShownPlot shown;
    shown.plot.grab();
    QCOMPARE(shown.plot.areas().plot, QRect(40, 0, 360, 180));
    shown.plot.setXLabelsVisible(false);
    QCOMPARE(shown.plot.areas().plot, QRect(40, 0, 360, 200));
    shown.plot.setYLabelsVisible(false);
    QCOMPARE(shown.plot.areas().plot, QRect(0, 0, 400, 200));
    shown.plot.resize(300, 100);
    shown.plot.grab();
    QCOMPARE(shown.plot.areas().plot, QRect(0, 0, 300, 100));
}

void PlotGraphicTest::draggingTheLabelsMovesTheView()
{
    TShownPlot shown;
    shown.press(200, 190);
    shown.move(210, 185);
    // To the right and up: the picture goes with the mouse.
    QCOMPARE(shown.plot.xRange(), (TPlotRange{-10, 350}));
    QCOMPARE(shown.plot.yRange(), (TPlotRange{-5, 175}));
    shown.move(180, 195);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{20, 380}));
    QCOMPARE(shown.plot.yRange(), (TPlotRange{5, 185}));
    QCOMPARE(shown.scales.count(), 2);
}

void PlotGraphicTest::aFixedAxisStays_data()
{
    QTest::addColumn<bool>("x");
    QTest::addColumn<bool>("y");
    QTest::addColumn<bool>("control");
    for (const bool control : {false, true}) {
        const QByteArray how = control ? "zoom, " : "pan, ";
        QTest::newRow(how + "x fixed") << true << false << control;
        QTest::newRow(how + "y fixed") << false << true << control;
        QTest::newRow(how + "both fixed") << true << true << control;
    }
}

void PlotGraphicTest::aFixedAxisStays()
{
    QFETCH(bool, x);
    QFETCH(bool, y);
    QFETCH(bool, control);
    TShownPlot shown;
    shown.plot.setXFixed(x);
    shown.plot.setYFixed(y);
    shown.press(200, 190);
    shown.move(210, 180, control ? Qt::ControlModifier : Qt::NoModifier);
    QCOMPARE(shown.plot.xRange() == (TPlotRange{0, 360}), x);
    QCOMPARE(shown.plot.yRange() == (TPlotRange{0, 180}), y);
    QCOMPARE(shown.scales.count(), 1);
}

void PlotGraphicTest::draggingWithControlZooms()
{
    TShownPlot shown;
    shown.press(200, 190);
    shown.move(236, 172, Qt::ControlModifier);
    // A tenth of the width and of the height.
    QCOMPARE(shown.plot.xRange(), (TPlotRange{18, 342}));
    QCOMPARE(shown.plot.yRange(), (TPlotRange{9, 171}));
    QCOMPARE(shown.scales.count(), 1);
}

void PlotGraphicTest::zoomGoesOnFromTheLastPoint()
{
    TShownPlot shown;
    shown.press(200, 190);
    shown.move(236, 190, Qt::ControlModifier);
    shown.move(236, 190, Qt::ControlModifier);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{18, 342}));
    shown.move(226, 190);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{27, 351}));
}

void PlotGraphicTest::draggingForgetsTheSelectedPoint()
{
    TShownPlot shown;
    shown.plot.setSelectedX(100);
    QCOMPARE(shown.plot.selectedIndex(), 1);
    shown.press(10, 100);
    QCOMPARE(shown.plot.selectedIndex(), -1);
}

void PlotGraphicTest::draggingEndsWithTheRelease()
{
    TShownPlot shown;
    shown.press(200, 190);
    shown.release(200, 190);
    shown.move(300, 100);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{0, 360}));
    QCOMPARE(shown.scales.count(), 0);
}

void PlotGraphicTest::aPressInThePlotAloneDoesNothing()
{
    TShownPlot shown;
    shown.press(200, 100);
    shown.press(200, 100, Qt::ShiftModifier);
    shown.move(250, 120);
    shown.release(250, 120);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{0, 360}));
    QCOMPARE(shown.plot.selectedIndex(), -1);
    QCOMPARE(shown.selections.count() + shown.scales.count() + shown.highlights.count(), 0);
}

void PlotGraphicTest::otherButtonsDoNothing()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.press(200, 100, {}, Qt::RightButton);
    shown.press(200, 190, {}, Qt::MiddleButton);
    shown.move(250, 120);
    QCOMPARE(shown.selections.count() + shown.scales.count(), 0);
}

void PlotGraphicTest::aPressSelectsTheNextPoint()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.press(141, 100);
    QCOMPARE(shown.plot.selectedIndex(), 2);
    QCOMPARE(shown.plot.selectedX(), 200.0);
    QCOMPARE(shown.plot.selectedY(), 120.0);
    QCOMPARE(shown.selections.count(), 1);
    shown.press(140, 100);
    QCOMPARE(shown.plot.selectedIndex(), 1);
}

void PlotGraphicTest::aPressBeyondTheLastPointSelectsIt()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.press(399, 100);
    QCOMPARE(shown.plot.selectedIndex(), 3);
}

void PlotGraphicTest::theSelectionFollowsTheDrag()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.press(45, 100);
    QCOMPARE(shown.plot.selectedIndex(), 0);
    shown.move(200, 300);
    QCOMPARE(shown.plot.selectedIndex(), 2);
    shown.move(-500, 100);
    QCOMPARE(shown.plot.selectedIndex(), 0);
    QCOMPARE(shown.selections.count(), 3);
    shown.release(0, 0);
    shown.move(200, 100);
    QCOMPARE(shown.selections.count(), 3);
}

void PlotGraphicTest::theFreeCursorStaysInTheRange()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.plot.setCursorMode(1);
    shown.press(190, 100);
    QCOMPARE(shown.plot.selectedX(), 150.0);
    QCOMPARE(shown.plot.selectedIndex(), -1);
    shown.move(5000, 100);
    QCOMPARE(shown.plot.selectedX(), 360.0);
    shown.move(-5000, 100);
    QCOMPARE(shown.plot.selectedX(), 0.0);
    QCOMPARE(shown.selections.count(), 3);
}

void PlotGraphicTest::aSelectionWithoutSourceIsNone()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.plot.setDataSource(nullptr);
    shown.press(200, 100);
    QCOMPARE(shown.plot.selectedIndex(), -1);
    QCOMPARE(shown.selections.count(), 1);
    shown.plot.setSelectedX(50);
    QCOMPARE(shown.plot.selectedIndex(), -1);

    const TPlotSeries nothing;
    shown.plot.setDataSource(&nothing);
    shown.move(210, 100);
    QCOMPARE(shown.plot.selectedIndex(), -1);
}

void PlotGraphicTest::aSelectionInAnEmptyRangeIsNone()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.plot.setHighlightEnabled(true);
    shown.plot.setXRange(5, 5);
    shown.press(200, 100);
    QCOMPARE(shown.plot.selectedIndex(), -1);
    shown.press(200, 100, Qt::ShiftModifier);
    QVERIFY(!shown.plot.highlight().isSet());
    shown.press(10, 100);
    shown.move(20, 100);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{5, 5}));
}

void PlotGraphicTest::aNewSourceForgetsTheSelection()
{
    TShownPlot shown;
    shown.plot.setSelectedX(100);
    shown.plot.setDataSource(&shown.series);
    QCOMPARE(shown.plot.selectedIndex(), -1);
}

void PlotGraphicTest::settingASelectionTakesTheNearestPoint()
{
    TShownPlot shown;
    shown.plot.setSelectedX(149);
    QCOMPARE(shown.plot.selectedIndex(), 1);
    shown.plot.setSelectedX(151);
    QCOMPARE(shown.plot.selectedIndex(), 2);
    QCOMPARE(shown.plot.selectedY(), 120.0);
    shown.plot.setSelectedX(1e9);
    QCOMPARE(shown.plot.selectedIndex(), 3);
    QCOMPARE(shown.selections.count(), 0);
}

void PlotGraphicTest::settingASelectionOfTheFreeCursorTakesTheValue()
{
    TShownPlot shown;
    shown.plot.setCursorMode(2);
    shown.plot.setSelectedX(149);
    QCOMPARE(shown.plot.selectedX(), 149.0);
    QCOMPARE(shown.plot.selectedIndex(), -1);
}

void PlotGraphicTest::settingASelectionInAnEmptyRangeDoesNothing()
{
    TShownPlot shown;
    shown.plot.setSelectedX(100);
    for (const double max : {5.0, 4.0}) {
        shown.plot.setXRange(5, max);
        shown.plot.setSelectedX(300);
        QCOMPARE(shown.plot.selectedIndex(), 1);
    }
}

void PlotGraphicTest::shiftMarksASpan()
{
    TShownPlot shown;
    shown.plot.setHighlightEnabled(true);
    shown.plot.setSelectEnabled(true);
    shown.press(140, 100, Qt::ShiftModifier);
    QCOMPARE(shown.plot.highlight().from, 100.0);
    QCOMPARE(shown.plot.highlight().to, 100.0);
    QCOMPARE(shown.highlights.count(), 1);
    shown.move(190, 100, Qt::ShiftModifier);
    QCOMPARE(shown.plot.highlight().from, 100.0);
    QCOMPARE(shown.plot.highlight().to, 150.0);
    shown.release(190, 100, Qt::ShiftModifier);
    QCOMPARE(shown.plot.highlight().to, 150.0);
    QCOMPARE(shown.highlights.count(), 2);
    QCOMPARE(shown.selections.count(), 0);
}

void PlotGraphicTest::aSpanIsNotStretchedWithoutShift()
{
    TShownPlot shown;
    shown.plot.setHighlightEnabled(true);
    shown.press(140, 100, Qt::ShiftModifier);
    shown.move(190, 100);
    QCOMPARE(shown.plot.highlight().to, 100.0);
    // Nor is it cleared then.
    shown.release(190, 100);
    QVERIFY(shown.plot.highlight().isSet());
    QCOMPARE(shown.highlights.count(), 1);
}

void PlotGraphicTest::aSpanOfNothingIsCleared()
{
    TShownPlot shown;
    shown.plot.setHighlightEnabled(true);
    shown.plot.setHighlight(0, 10, 20, Qt::red);
    shown.press(140, 100, Qt::ShiftModifier);
    shown.move(160, 100, Qt::ShiftModifier);
    shown.move(140, 100, Qt::ShiftModifier);
    shown.release(140, 100, Qt::ShiftModifier);
    QVERIFY(!shown.plot.highlight().isSet());
    QCOMPARE(shown.plot.highlight().color, QColor(Qt::red));
    QCOMPARE(shown.highlights.count(), 4);
}

void PlotGraphicTest::shiftSelectsWhereSpansAreOff()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.press(140, 100, Qt::ShiftModifier);
    QCOMPARE(shown.selections.count(), 1);
    QCOMPARE(shown.highlights.count(), 0);
}

void PlotGraphicTest::onlySpanZeroIsKnown()
{
    TShownPlot shown;
    shown.plot.setHighlight(1, 10, 20, Qt::red);
    QVERIFY(!shown.plot.highlight().isSet());
    shown.plot.setHighlight(0, 10, 20, Qt::red);
    QCOMPARE(shown.plot.highlight().from, 10.0);
    QCOMPARE(shown.highlights.count(), 0);
}

void PlotGraphicTest::autoScaleFitsTheAxesAskedFor()
{
    TShownPlot shown;
    shown.plot.autoScale(false, false);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{0, 360}));
    shown.plot.autoScale(true, false);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{-4.5, 314.5}));
    QCOMPARE(shown.plot.yRange(), (TPlotRange{0, 180}));
    shown.plot.autoScale(false, true);
    QCOMPARE(shown.plot.yRange(), (TPlotRange{46.5, 123.5}));
    QCOMPARE(shown.scales.count(), 0);
}

void PlotGraphicTest::autoScaleOfAConstantLeavesRoom()
{
    TShownPlot shown;
    const TPlotSeries single({{60, 200}});
    shown.plot.setDataSource(&single);
    shown.plot.autoScale(true, true);
    QCOMPARE(shown.plot.yRange(), (TPlotRange{198, 202}));
    QVERIFY(!shown.plot.xRange().isEmpty());
}

void PlotGraphicTest::autoScaleWithoutPointsDoesNothing()
{
    TShownPlot shown;
    const TPlotSeries nothing;
    shown.plot.setDataSource(&nothing);
    shown.plot.autoScale(true, true);
    shown.plot.setDataSource(nullptr);
    shown.plot.autoScale(true, true);
    QCOMPARE(shown.plot.xRange(), (TPlotRange{0, 360}));
    QCOMPARE(shown.plot.yRange(), (TPlotRange{0, 180}));
}

void PlotGraphicTest::autoScaleOfRangeMarksCoversBothValues()
{
    TShownPlot shown;
    TPlotSeries pressures;
    pressures.add(0, 120, 80);
    pressures.add(60, 180, 100);
    shown.plot.setDataSource(&pressures);
    shown.plot.setDrawMode(DrawRangeMarks);
    shown.plot.autoScale(true, true);
    QCOMPARE(shown.plot.yRange(), (TPlotRange{75, 185}));
}

void PlotGraphicTest::anEmptyYRangeIsNoHindranceToSelections()
{
    TShownPlot shown;
    shown.plot.setSelectEnabled(true);
    shown.plot.setHighlightEnabled(true);
    shown.plot.setYRange(5, 5);
    shown.press(141, 100);
    QCOMPARE(shown.plot.selectedIndex(), 2);
    shown.release(141, 100);
    shown.press(140, 100, Qt::ShiftModifier);
    shown.move(190, 100, Qt::ShiftModifier);
    QCOMPARE(shown.plot.highlight().from, 100.0);
    QCOMPARE(shown.plot.highlight().to, 150.0);
}

void PlotGraphicTest::settingASelectionThatIsNoNumberDoesNothing()
{
    TShownPlot shown;
    shown.plot.setSelectedX(100);
    const double infinity = std::numeric_limits<double>::infinity();
    for (const int mode : {0, 1}) {
        shown.plot.setCursorMode(mode);
        for (const double x : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity}) {
            shown.plot.setSelectedX(x);
            QCOMPARE(shown.plot.selectedX(), 100.0);
            QCOMPARE(shown.plot.selectedIndex(), 1);
        }
    }
}

QTEST_MAIN(PlotGraphicTest)
#include "PlotGraphicTest.moc"
