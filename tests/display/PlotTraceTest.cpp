#include "display/PlotTrace.h"
#include "display/PlotSeries.h"

#include <QtTest>

#include <limits>

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();

/// One pixel for each unit; y 0 is at row 100. A pixel up, truncated, falls on that row too: y 1 is at row
/// 100.
TPlotScale unitScale(int drawMode)
{
    return {QRect(0, 0, 200, 100), {0, 200}, {0, 100}, plotLift(drawMode)};
}

TPlotTrace traced(const TPlotSeries& series, int drawMode)
{
    TPlotTrace trace;
    tracePlot(series, unitScale(drawMode), drawMode, trace);
    return trace;
}

} // namespace

class PlotTraceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointsAreMarkedThreePixelsHigher();
    void linesJoinThePoints();
    void markersOfLinesStandAtTheirPoints();
    void pointsWithinAPixelAreOneSegment();
    void aLongTrendCostsNoMoreThanThePlotIsWide();
    void linesBeginAtTheRangeAndEndWithIt();
    void aSinglePointIsSeen();
    void whatIsNoNumberIsLeftOut();
    void rangeMarksJoinTheTwoValues();
    void aRangeMarkWithoutItsSecondValueIsAMark();
    void markersJustOutsideShowTheirPart();
    void otherModesDrawNothing_data();
    void otherModesDrawNothing();
    void noPointsDrawNothing();
    void theFirstPointFromAnX_data();
    void theFirstPointFromAnX();
    void theExtentHasRoom();
    void theExtentOfRangeMarksCoversBothValues();
    void aSeriesWithoutNumbersHasNoExtent();
};

void PlotTraceTest::pointsAreMarkedThreePixelsHigher()
{
    const TPlotTrace trace = traced(TPlotSeries({{10, 0}, {20, 50}}), DrawPoints);
    QCOMPARE(trace.marks, (std::vector<QPoint>{{10, 97}, {20, 48}}));
    QVERIFY(trace.lines.empty());
}

void PlotTraceTest::linesJoinThePoints()
{
    const TPlotTrace trace = traced(TPlotSeries({{10, 0}, {20, 50}, {40, 30}}), DrawLines);
    QCOMPARE(trace.lines, (std::vector<QLine>{{10, 100, 20, 51}, {20, 51, 40, 71}}));
    QVERIFY(trace.marks.empty());
}

void PlotTraceTest::markersOfLinesStandAtTheirPoints()
{
    const TPlotTrace trace = traced(TPlotSeries({{10, 0}, {20, 50}}), DrawLinesWithMarkers);
    QCOMPARE(trace.lines, (std::vector<QLine>{{10, 100, 20, 51}}));
    QCOMPARE(trace.marks, (std::vector<QPoint>{{10, 100}, {20, 51}}));
}

void PlotTraceTest::pointsWithinAPixelAreOneSegment()
{
    const TPlotSeries series({{10, 20}, {10.3, 60}, {10.6, 10}, {10.9, 30}, {11, 40}});
    const TPlotTrace trace = traced(series, DrawLinesWithMarkers);
    // The segment of the run, then the way from its last value to the next point.
    QCOMPARE(trace.lines, (std::vector<QLine>{{10, 91, 10, 41}, {10, 71, 11, 61}}));
    QCOMPARE(trace.marks, (std::vector<QPoint>{{10, 91}, {10, 41}, {11, 61}}));
}

void PlotTraceTest::aLongTrendCostsNoMoreThanThePlotIsWide()
{
    TPlotSeries series;
    for (int i = 0; i < 20000; ++i)
        series.add(i * 0.01, i % 97, 0);
    QVERIFY(traced(series, DrawLines).lines.size() <= 400);
    QVERIFY(traced(series, DrawLines).lines.size() >= 200);
    QVERIFY(traced(series, DrawLinesWithMarkers).marks.size() <= 402);
}

void PlotTraceTest::linesBeginAtTheRangeAndEndWithIt()
{
    const TPlotSeries series({{-5, 1}, {0, 20}, {100, 30}, {200, 40}, {201, 50}});
    QCOMPARE(traced(series, DrawLines).lines, (std::vector<QLine>{{0, 81, 100, 71}, {100, 71, 200, 61}}));
}

void PlotTraceTest::aSinglePointIsSeen()
{
    QCOMPARE(traced(TPlotSeries({{10, 20}}), DrawLines).lines, (std::vector<QLine>{{10, 81, 10, 81}}));
}

void PlotTraceTest::whatIsNoNumberIsLeftOut()
{
    const TPlotSeries series({{10, 20}, {20, notANumber}, {30, 40}});
    QCOMPARE(traced(series, DrawLines).lines, (std::vector<QLine>{{10, 81, 30, 61}}));
    QCOMPARE(traced(series, DrawPoints).marks.size(), std::size_t{2});
}

void PlotTraceTest::rangeMarksJoinTheTwoValues()
{
    TPlotSeries series;
    series.add(10, 90, 60);
    series.add(50, 70, 20);
    const TPlotTrace trace = traced(series, DrawRangeMarks);
    QCOMPARE(trace.lines, (std::vector<QLine>{{10, 11, 10, 41}, {50, 31, 50, 81}}));
    QCOMPARE(trace.marks, (std::vector<QPoint>{{10, 11}, {10, 41}, {50, 31}, {50, 81}}));
}

void PlotTraceTest::aRangeMarkWithoutItsSecondValueIsAMark()
{
    TPlotSeries series;
    series.add(10, 90, notANumber);
    const TPlotTrace trace = traced(series, DrawRangeMarks);
    QVERIFY(trace.lines.empty());
    QCOMPARE(trace.marks, (std::vector<QPoint>{{10, 11}}));
}

void PlotTraceTest::markersJustOutsideShowTheirPart()
{
    const TPlotSeries series({{-4, 10}, {-2, 10}, {202, 10}, {204, 10}});
    QCOMPARE(traced(series, DrawPoints).marks.size(), std::size_t{2});
}

void PlotTraceTest::otherModesDrawNothing_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {-1, 3, 5, 100})
        QTest::newRow(qPrintable(QString::number(mode))) << mode;
}

void PlotTraceTest::otherModesDrawNothing()
{
    QFETCH(int, mode);
    const TPlotTrace trace = traced(TPlotSeries({{10, 0}, {20, 50}}), mode);
    QVERIFY(trace.lines.empty() && trace.marks.empty());
}

void PlotTraceTest::noPointsDrawNothing()
{
    for (const int mode : {0, 1, 2, 4}) {
        const TPlotTrace trace = traced(TPlotSeries(), mode);
        QVERIFY(trace.lines.empty() && trace.marks.empty());
    }
}

void PlotTraceTest::theFirstPointFromAnX_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("nearest");
    QTest::newRow("before all") << -1.0 << 0 << 0;
    QTest::newRow("at one") << 20.0 << 1 << 1;
    QTest::newRow("past one") << 21.0 << 2 << 1;
    QTest::newRow("half way") << 25.0 << 2 << 2;
    QTest::newRow("beyond all") << 99.0 << 3 << 2;
}

void PlotTraceTest::theFirstPointFromAnX()
{
    QFETCH(double, x);
    const TPlotSeries series({{10, 0}, {20, 0}, {30, 0}});
    QTEST(firstPointFrom(series, x), "first");
    QTEST(nearestPoint(series, x), "nearest");
    QCOMPARE(nearestPoint(TPlotSeries(), x), -1);
}

void PlotTraceTest::theExtentHasRoom()
{
    const TPlotExtent extent = plotExtent(TPlotSeries({{0, 70}, {50, 170}, {100, notANumber}}), false);
    QVERIFY(extent.known);
    QCOMPARE(extent.x, (TPlotRange{-2.5, 52.5}));
    QCOMPARE(extent.y, (TPlotRange{65, 175}));
}

void PlotTraceTest::theExtentOfRangeMarksCoversBothValues()
{
    TPlotSeries series;
    series.add(0, 120, 80);
    series.add(10, 180, 100);
    QCOMPARE(plotExtent(series, true).y, (TPlotRange{75, 185}));
    QCOMPARE(plotExtent(series, false).y, (TPlotRange{117, 183}));
}

void PlotTraceTest::aSeriesWithoutNumbersHasNoExtent()
{
    QVERIFY(!plotExtent(TPlotSeries(), false).known);
    QVERIFY(!plotExtent(TPlotSeries({{notANumber, 1}, {1, notANumber}}), false).known);
}

QTEST_MAIN(PlotTraceTest)
#include "PlotTraceTest.moc"
