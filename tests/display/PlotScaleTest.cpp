#include "display/PlotScale.h"

#include <QtTest>

#include <limits>

class PlotScaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLabelsTakeTheirRoomFromThePlot_data();
    void theLabelsTakeTheirRoomFromThePlot();
    void aWidgetSmallerThanItsLabelsHasAnEmptyPlot();
    void valuesGoToPixels_data();
    void valuesGoToPixels();
    void theLiftRaisesTheLeastValue();
    void aPixelGoesBackToItsValue();
    void emptyRangesHaveNoScale_data();
    void emptyRangesHaveNoScale();
    void whatLiesFarOutsideStaysPaintable();
    void panMovesBothEnds();
    void zoomKeepsTheCentre();
    void zoomNeverTurnsTheRange();
    void zoomEndsWhereNumbersCannotBeTold();
    void roomAroundTheData_data();
    void roomAroundTheData();
};

void PlotScaleTest::theLabelsTakeTheirRoomFromThePlot_data()
{
    QTest::addColumn<bool>("x");
    QTest::addColumn<bool>("y");
    QTest::addColumn<QRect>("plot");
    QTest::addColumn<QRect>("xLabels");
    QTest::addColumn<QRect>("yLabels");
    QTest::newRow("both") << true << true << QRect(40, 0, 360, 180) << QRect(40, 180, 360, 20)
                          << QRect(0, 0, 40, 180);
    QTest::newRow("without x") << false << true << QRect(40, 0, 360, 200) << QRect(40, 180, 360, 20)
                               << QRect(0, 0, 40, 200);
    QTest::newRow("without y") << true << false << QRect(0, 0, 400, 180) << QRect(0, 180, 400, 20)
                               << QRect(0, 0, 40, 180);
    QTest::newRow("none") << false << false << QRect(0, 0, 400, 200) << QRect(0, 180, 400, 20)
                          << QRect(0, 0, 40, 200);
}

void PlotScaleTest::theLabelsTakeTheirRoomFromThePlot()
{
    QFETCH(bool, x);
    QFETCH(bool, y);
    const TPlotAreas areas = plotAreas({400, 200}, x, y);
    QTEST(areas.plot, "plot");
    QTEST(areas.xLabels, "xLabels");
    QTEST(areas.yLabels, "yLabels");
}

void PlotScaleTest::aWidgetSmallerThanItsLabelsHasAnEmptyPlot()
{
    QVERIFY(plotAreas({39, 100}, true, true).plot.isEmpty());
    QVERIFY(plotAreas({100, 19}, true, true).plot.isEmpty());
    QVERIFY(!TPlotScale(plotAreas({39, 19}, true, true).plot, {0, 1}, {0, 1}, 0).isUsable());
}

void PlotScaleTest::valuesGoToPixels_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("row");
    // 36 pixels for each unit of x, 1.8 for each of y.
    QTest::newRow("least") << 0.0 << 0.0 << 40 << 180;
    QTest::newRow("largest") << 10.0 << 100.0 << 400 << 1;
    QTest::newRow("half a pixel goes up") << 0.5 / 36 << 50.0 << 41 << 91;
    QTest::newRow("less than half a pixel stays") << 0.49 / 36 << 1.0 << 40 << 179;
    QTest::newRow("left of the plot, towards zero") << -1.2 / 36 << -10.0 << 40 << 198;
}

void PlotScaleTest::valuesGoToPixels()
{
    QFETCH(double, x);
    QFETCH(double, y);
    const TPlotScale scale(QRect(40, 0, 360, 180), {0, 10}, {0, 100}, 0);
    QVERIFY(scale.isUsable());
    QTEST(scale.xPixel(x), "column");
    QTEST(scale.yPixel(y), "row");
}

void PlotScaleTest::theLiftRaisesTheLeastValue()
{
    const TPlotScale scale(QRect(40, 0, 360, 180), {0, 10}, {0, 100}, 3);
    QCOMPARE(scale.yPixel(0.0), 177);
}

void PlotScaleTest::aPixelGoesBackToItsValue()
{
    const TPlotScale scale(QRect(40, 0, 360, 180), {-5, 5}, {0, 100}, 0);
    for (int pixel = 40; pixel < 400; ++pixel)
        QCOMPARE(scale.xPixel(scale.xValue(pixel) + 1e-9), pixel);
}

void PlotScaleTest::emptyRangesHaveNoScale_data()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double big = std::numeric_limits<double>::max();
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("empty") << 5.0 << 5.0;
    QTest::newRow("inverted") << 10.0 << 0.0;
    QTest::newRow("no number") << nan << 1.0;
    QTest::newRow("endless") << 0.0 << std::numeric_limits<double>::infinity();
    QTest::newRow("wider than numbers") << -big << big;
    QTest::newRow("narrower than a scale can tell") << 0.0 << 5e-324;
}

void PlotScaleTest::emptyRangesHaveNoScale()
{
    QFETCH(double, min);
    QFETCH(double, max);
    const QRect area(40, 0, 360, 180);
    QVERIFY(!TPlotScale(area, {min, max}, {0, 1}, 0).isUsable());
    QVERIFY(!TPlotScale(area, {0, 1}, {min, max}, 0).isUsable());
}

void PlotScaleTest::whatLiesFarOutsideStaysPaintable()
{
    const TPlotScale scale(QRect(40, 0, 360, 180), {0, 10}, {0, 100}, 0);
    QVERIFY(scale.xPixel(1e300) > 100000 && scale.xPixel(1e300) < 2000000);
    QVERIFY(scale.yPixel(-std::numeric_limits<double>::infinity()) > 100000);
}

void PlotScaleTest::panMovesBothEnds()
{
    QCOMPARE(panned({0, 10}, 36, 360), (TPlotRange{-1, 9}));
    QCOMPARE(panned({0, 10}, -36, 360), (TPlotRange{1, 11}));
    QCOMPARE(panned({0, 10}, 36, 0), (TPlotRange{0, 10}));
    QCOMPARE(panned({10, 0}, 36, 360), (TPlotRange{10, 0}));
}

void PlotScaleTest::zoomKeepsTheCentre()
{
    QCOMPARE(zoomed({0, 10}, 72, 360), (TPlotRange{1, 9}));
    QCOMPARE(zoomed({0, 10}, -72, 360), (TPlotRange{-1, 11}));
    QCOMPARE(zoomed({-3, 1}, 0, 360), (TPlotRange{-3, 1}));
}

void PlotScaleTest::zoomNeverTurnsTheRange()
{
    const TPlotRange range = zoomed({0, 10}, 5000, 360);
    QVERIFY(!range.isEmpty());
    QCOMPARE(range.extent(), 1.0);
}

void PlotScaleTest::zoomEndsWhereNumbersCannotBeTold()
{
    TPlotRange inward{1e6, 1e6 + 60};
    for (int i = 0; i < 1000; ++i)
        inward = zoomed(inward, 300, 360);
    QVERIFY(TPlotScale(QRect(0, 0, 360, 180), inward, {0, 1}, 0).isUsable());
    QVERIFY(inward.extent() > 0.0);

    TPlotRange outward{0, 10};
    for (int i = 0; i < 5000; ++i)
        outward = zoomed(outward, -3600, 360);
    QVERIFY(!outward.isEmpty());
}

void PlotScaleTest::roomAroundTheData_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("greatest");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("5 percent at each end") << 50.0 << 150.0 << 45.0 << 155.0;
    QTest::newRow("a constant: 1 percent of it") << 200.0 << 200.0 << 198.0 << 202.0;
    QTest::newRow("a constant below 0") << -50.0 << -50.0 << -50.5 << -49.5;
    QTest::newRow("0, which has no percentage") << 0.0 << 0.0 << -1.0 << 1.0;
}

void PlotScaleTest::roomAroundTheData()
{
    QFETCH(double, least);
    QFETCH(double, greatest);
    const TPlotRange range = rangeAround(least, greatest);
    QTEST(range.min, "min");
    QTEST(range.max, "max");
}

QTEST_MAIN(PlotScaleTest)
#include "PlotScaleTest.moc"
