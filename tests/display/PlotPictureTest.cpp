#include "display/PlotPicture.h"
#include "display/PaintCounter.h"
#include "display/PlotSeries.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class PlotPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPlotWithoutSourceHasAxes();
    void emptyRangesDrawTheFrameAlone_data();
    void emptyRangesDrawTheFrameAlone();
    void pointsAreSquaresOfFive();
    void linesAreTwoPixelsWide();
    void markersOfLinesAreSquaresOfFour();
    void rangeMarksHaveSquaresOfSix();
    void theSeriesStaysInThePlot();
    void theGridStaysInThePlot();
    void anUnknownModeDrawsNoSeries();
    void theHighlightFillsItsSpan_data();
    void theHighlightFillsItsSpan();
    void aHighlightNeedsASource();
    void aHighlightWithoutColorIsALightShade();
    void theFreeCursorIsALine();
    void theFreeCursorIsDrawnAtBothEnds();
    void theSelectedPointHasNoLine();
    void theCaptionHasTheColorOfTheTrace();
    void labelsStandInTheirAreas();
    void labelsAreNotCutAtTheEdges();
    void storingSettersWaitForTheReplot();
    void settersThatRedrawShowAtOnce();
    void formatsTakeEffect();
    void aHiddenPlotShowsTheLatestWhenItAppears();
    void thePictureIsAsSharpAsTheScreen();
    void tinySizesAndEndlessRangesArePainted();
};

void PlotPictureTest::aPlotWithoutSourceHasAxes()
{
    TPicture picture;
    QCOMPARE(picture.areaOf(Qt::red), 0.0);
    QVERIFY(picture.areaOf(Qt::lightGray) > 500);
    QVERIFY(picture.areaOf(Qt::darkGray) > 1000);
    QCOMPARE(picture.at(0, 100), QColor(Qt::darkGray));
    QCOMPARE(picture.at(399, 100), QColor(Qt::darkGray));
    QCOMPARE(picture.at(200, 0), QColor(Qt::darkGray));
    QCOMPARE(picture.at(200, 199), QColor(Qt::darkGray));
}

void PlotPictureTest::emptyRangesDrawTheFrameAlone_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("empty") << 5.0 << 5.0;
    QTest::newRow("inverted") << 400.0 << 0.0;
    QTest::newRow("no numbers") << notANumber << notANumber;
}

void PlotPictureTest::emptyRangesDrawTheFrameAlone()
{
    QFETCH(double, min);
    QFETCH(double, max);
    const TPlotSeries series({{5, 5}, {100, 100}});
    for (const bool xEmpty : {true, false}) {
        TPicture picture;
        picture.plot.setDataSource(&series);
        picture.plot.setHighlight(0, 0, 400, Qt::blue);
        picture.plot.setCursorMode(1);
        xEmpty ? picture.plot.setXRange(min, max) : picture.plot.setYRange(min, max);
        picture.plot.replot();
        QCOMPARE(picture.areaOf(Qt::red) + picture.areaOf(Qt::blue) + picture.areaOf(Qt::gray), 0.0);
        QCOMPARE(picture.areaOf(Qt::lightGray), 0.0);
        QCOMPARE(picture.at(0, 100), QColor(Qt::darkGray));
    }
}

void PlotPictureTest::pointsAreSquaresOfFive()
{
    TPicture picture;
    const TPlotSeries series({{101, 51}});
    picture.plot.setDataSource(&series);
    picture.plot.setDrawMode(DrawPoints);
    // From (98, 144), for the point is at (101, 200 - 3 - 50).
    for (const int x : {98, 102}) {
        QCOMPARE(picture.at(x, 144), QColor(Qt::red));
        QCOMPARE(picture.at(x, 148), QColor(Qt::red));
        QVERIFY(picture.at(x, 142) != QColor(Qt::red));
        QVERIFY(picture.at(x, 150) != QColor(Qt::red));
    }
    QVERIFY(picture.at(96, 146) != QColor(Qt::red));
    QVERIFY(picture.at(104, 146) != QColor(Qt::red));
}

void PlotPictureTest::linesAreTwoPixelsWide()
{
    TPicture picture;
    const TPlotSeries series({{51, 101}, {353, 101}});
    picture.plot.setDataSource(&series);
    QCOMPARE(picture.at(200, 100), QColor(Qt::red));
    QCOMPARE(picture.at(200, 99), QColor(Qt::red));
    QVERIFY(picture.at(200, 97) != QColor(Qt::red));
    QVERIFY(picture.at(200, 102) != QColor(Qt::red));
    QVERIFY(picture.at(48, 99) != QColor(Qt::red));
    QVERIFY(picture.at(356, 99) != QColor(Qt::red));
}

void PlotPictureTest::markersOfLinesAreSquaresOfFour()
{
    TPicture picture;
    const TPlotSeries series({{51, 101}, {353, 101}});
    picture.plot.setDataSource(&series);
    const double plain = picture.areaOf(Qt::red);
    picture.plot.setDrawMode(DrawLinesWithMarkers);
    QCOMPARE(picture.at(49, 98), QColor(Qt::red));
    QCOMPARE(picture.at(52, 101), QColor(Qt::red));
    QVERIFY(picture.at(47, 96) != QColor(Qt::red));
    QVERIFY(picture.areaOf(Qt::red) > plain + 12);
}

void PlotPictureTest::rangeMarksHaveSquaresOfSix()
{
    TPicture picture;
    TPlotSeries series;
    series.add(101, 151, 51);
    picture.plot.setDataSource(&series);
    picture.plot.setDrawMode(DrawRangeMarks);
    for (const int y : {50, 150}) {
        QCOMPARE(picture.at(98, y - 3), QColor(Qt::red));
        QCOMPARE(picture.at(103, y + 2), QColor(Qt::red));
        QVERIFY(picture.at(96, y) != QColor(Qt::red));
        QVERIFY(picture.at(105, y) != QColor(Qt::red));
    }
    QCOMPARE(picture.at(100, 100), QColor(Qt::red));
    QCOMPARE(picture.at(101, 100), QColor(Qt::red));
    QVERIFY(picture.at(103, 100) != QColor(Qt::red));
}

void PlotPictureTest::theSeriesStaysInThePlot()
{
    TPicture picture;
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    const TPlotSeries series({{0, 0}, {0.5, -500}, {200, 500}, {400, -500}});
    picture.plot.setDataSource(&series);
    for (const int mode : {DrawPoints, DrawLines, DrawLinesWithMarkers, DrawRangeMarks}) {
        picture.plot.setDrawMode(mode);
        QVERIFY(picture.areaOf(Qt::red) > 0);
        const QImage image = picture.image();
        const double ratio = image.devicePixelRatioF();
        const QRectF plot(picture.plot.areas().plot);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (!plot.adjusted(-1, -1, 1, 1).contains(x / ratio, y / ratio))
                    QVERIFY(image.pixel(x, y) != QColor(Qt::red).rgb());
            }
        }
    }
}

void PlotPictureTest::anUnknownModeDrawsNoSeries()
{
    TPicture picture;
    const TPlotSeries series({{51, 101}, {353, 101}});
    picture.plot.setDataSource(&series);
    picture.plot.setDrawMode(3);
    QCOMPARE(picture.areaOf(Qt::red), 0.0);
}

void PlotPictureTest::theHighlightFillsItsSpan_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::newRow("within") << 101.0 << 151.0 << 101 << 151;
    QTest::newRow("from right to left") << 151.0 << 101.0 << 101 << 151;
    QTest::newRow("clipped at the left") << -100.0 << 51.0 << 0 << 51;
    QTest::newRow("clipped at the right") << 351.0 << 1000.0 << 351 << 400;
    QTest::newRow("left of all") << -100.0 << -50.0 << 0 << 0;
    QTest::newRow("right of all") << 450.0 << 500.0 << 0 << 0;
    QTest::newRow("one end is no number") << notANumber << 151.0 << 0 << 0;
    QTest::newRow("the other end is no number") << 101.0 << notANumber << 0 << 0;
    QTest::newRow("endless") << 351.0 << std::numeric_limits<double>::infinity() << 351 << 400;
}

void PlotPictureTest::theHighlightFillsItsSpan()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(int, left);
    QFETCH(int, right);
    TPicture picture;
    const TPlotSeries series;
    picture.plot.setDataSource(&series);
    picture.plot.setHighlight(0, from, to, QColor(0, 200, 255));
    const QImage image = picture.image();
    const double ratio = image.devicePixelRatioF();
    int full = 0;
    for (int x = 1; x < 399; ++x) {
        int filled = 0;
        for (int y = 2; y < 198; ++y) {
            const QRgb pixel =
                image.pixel(static_cast<int>((x + 0.5) * ratio), static_cast<int>((y + 0.5) * ratio));
            filled += pixel == QColor(0, 200, 255).rgb() ? 1 : 0;
        }
        if (x < left || x >= right)
            QCOMPARE(filled, 0);
        full += filled > 90 ? 1 : 0;
    }
    // Lines of the grid are drawn over some columns.
    QVERIFY2(full >= (right - left) * 9 / 10 - 2, qPrintable(QString::number(full)));
}

void PlotPictureTest::aHighlightNeedsASource()
{
    TPicture picture;
    picture.plot.setHighlight(0, 100, 150, Qt::blue);
    QCOMPARE(picture.areaOf(Qt::blue), 0.0);
}

void PlotPictureTest::aHighlightWithoutColorIsALightShade()
{
    TPicture picture;
    const TPlotSeries series;
    picture.plot.setDataSource(&series);
    picture.plot.setHighlight(0, 101, 151, QColor());
    QVERIFY(picture.areaOf(QColor(235, 235, 235)) > 50 * 150);
}

void PlotPictureTest::theFreeCursorIsALine()
{
    TPicture picture;
    picture.plot.setCursorMode(1);
    picture.plot.setSelectedX(123);
    const QColor gray(Qt::gray);
    for (const int y : {3, 77, 197})
        QVERIFY(picture.at(123, y) == gray || picture.at(122, y) == gray);
    QVERIFY(picture.areaOf(Qt::gray) >= 190);
    picture.plot.setSelectedX(500);
    QCOMPARE(picture.areaOf(Qt::gray), 0.0);
    picture.plot.setSelectedX(notANumber);
    QCOMPARE(picture.areaOf(Qt::gray), 0.0);
}

void PlotPictureTest::theSelectedPointHasNoLine()
{
    TPicture picture;
    const TPlotSeries series({{51, 101}, {353, 101}});
    picture.plot.setDataSource(&series);
    const QImage before = picture.image();
    picture.plot.setSelectedX(51);
    QCOMPARE(picture.plot.selectedIndex(), 0);
    QCOMPARE(picture.image(), before);
}

void PlotPictureTest::theCaptionHasTheColorOfTheTrace()
{
    TPicture picture;
    QCOMPARE(picture.areaOf(Qt::red), 0.0);
    picture.plot.setCaption(QStringLiteral("METS"));
    QVERIFY(picture.areaOf(Qt::red) > 30);
    picture.plot.setCaption(QString());
    QCOMPARE(picture.areaOf(Qt::red), 0.0);
}

void PlotPictureTest::labelsStandInTheirAreas()
{
    TPicture picture;
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    const QImage image = picture.image();
    const double ratio = image.devicePixelRatioF();
    const auto inked = [&](const QRect& area) {
        int count = 0;
        for (int y = area.top() + 1; y < area.bottom() - 1; ++y) {
            for (int x = area.left() + 1; x < area.right() - 1; ++x)
                count += qGray(image.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio))) < 220;
        }
        return count;
    };
    QVERIFY(inked(picture.plot.areas().xLabels) > 100);
    QVERIFY(inked(picture.plot.areas().yLabels) > 100);
    // The margin between the labels and the plot stays free.
    QCOMPARE(inked(QRect(36, 1, 4, 178)), 0);
}

void PlotPictureTest::labelsAreNotCutAtTheEdges()
{
    TPicture picture;
    picture.plot.setXLabelsVisible(true);
    picture.plot.setXDateFormat(QStringLiteral("hh:mm:ss"));
    picture.plot.setXRange(0, 60);
    picture.plot.replot();
    const QImage image = picture.image();
    for (int y = image.height() - 18; y < image.height(); ++y) {
        QCOMPARE(image.pixel(image.width() - 1, y), QColor(Qt::white).rgb());
        QCOMPARE(image.pixel(0, y), QColor(Qt::white).rgb());
    }
}

void PlotPictureTest::storingSettersWaitForTheReplot()
{
    TPicture picture;
    const TPlotSeries series({{51, 101}, {353, 121}});
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    picture.plot.setDataSource(&series);
    const QImage before = picture.image();
    picture.plot.setXRange(0, 100);
    picture.plot.setYRange(0, 1000);
    picture.plot.setXFormat(QStringLiteral("%.1f"));
    picture.plot.setYFormat(QStringLiteral("%.1f"));
    picture.plot.setXDateFormat(QStringLiteral("mm:ss"));
    picture.plot.setSelectEnabled(true);
    picture.plot.setHighlightEnabled(true);
    QCOMPARE(picture.image(), before);
    picture.plot.replot();
    QVERIFY(picture.image() != before);
}

void PlotPictureTest::settersThatRedrawShowAtOnce()
{
    TPicture picture;
    TPlotSeries series({{51, 101}, {353, 121}});
    picture.plot.setDataSource(&series);
    QImage before = picture.image();
    TPaintCounter counter(picture.plot);
    const auto changed = [&](int paints) {
        // Counted before the picture is taken, which paints too.
        const bool counted = counter.paints == paints;
        const QImage after = picture.image();
        const bool differs = after != before;
        before = after;
        counter.paints = 0;
        return counted && differs;
    };
    picture.plot.setTraceColor(Qt::darkGreen);
    QVERIFY(changed(1));
    picture.plot.setDrawMode(DrawPoints);
    QVERIFY(changed(1));
    picture.plot.setSelectedX(200);
    QCOMPARE(counter.paints, 1);
    counter.paints = 0;
    picture.plot.setCursorMode(1);
    QVERIFY(changed(1));
    picture.plot.setSelectedX(200);
    QVERIFY(changed(1));
    picture.plot.setXLabelsVisible(true);
    QVERIFY(changed(1));
    picture.plot.setYLabelsVisible(true);
    QVERIFY(changed(1));
    picture.plot.setHighlight(0, 10, 60, Qt::yellow);
    QVERIFY(changed(1));
    series.add(390, 20, 20);
    picture.plot.replot();
    QVERIFY(changed(1));
    // The caption waits for the next paint event.
    picture.plot.setCaption(QStringLiteral("METS"));
    QVERIFY(changed(0));
    picture.plot.setDataSource(nullptr);
    QVERIFY(changed(1));
}

void PlotPictureTest::formatsTakeEffect()
{
    TPicture picture;
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    QImage before = picture.image();
    const auto changed = [&] {
        picture.plot.replot();
        const QImage after = picture.image();
        const bool differs = after != before;
        before = after;
        return differs;
    };
    picture.plot.setXFormat(QStringLiteral("%.1f"));
    QVERIFY(changed());
    picture.plot.setYFormat(QStringLiteral("%.1f"));
    QVERIFY(changed());
    picture.plot.setYWidestLabel(QStringLiteral("a label that is very wide"));
    QVERIFY(changed());
    picture.plot.setXDateFormat(QStringLiteral("mm:ss"));
    QVERIFY(changed());
    QVERIFY(!changed());
}

void PlotPictureTest::theGridStaysInThePlot()
{
    TPicture picture;
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    // A tick at the least value stands on the edge, a pixel below the plot.
    picture.plot.setDrawMode(DrawPoints + 100);
    picture.plot.replot();
    const QImage image = picture.image();
    const double ratio = image.devicePixelRatioF();
    const QRect plot = picture.plot.areas().plot;
    const QRgb gray = QColor(Qt::lightGray).rgb();
    int inside = 0;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < int(plot.height() * ratio); ++y)
            inside += image.pixel(x, y) == gray;
        // The texts begin further down.
        for (int y = int(plot.height() * ratio); y < int((plot.height() + 1) * ratio); ++y)
            QVERIFY(image.pixel(x, y) != gray);
    }
    QVERIFY(inside > 0);
}

void PlotPictureTest::theFreeCursorIsDrawnAtBothEnds()
{
    TPicture picture;
    picture.plot.setCursorMode(1);
    for (const double x : {0.0, 400.0, std::nextafter(400.0, 0.0)}) {
        picture.plot.setSelectedX(x);
        // A column of pixels of the screen at least, for the edge cuts off the other half of the line.
        QVERIFY2(picture.areaOf(Qt::gray) * picture.plot.devicePixelRatioF() >= 190,
                 qPrintable(QString::number(x)));
    }
    for (const double x : {-0.001, 400.001}) {
        picture.plot.setSelectedX(x);
        QCOMPARE(picture.areaOf(Qt::gray), 0.0);
    }
}

void PlotPictureTest::aHiddenPlotShowsTheLatestWhenItAppears()
{
    TPicture picture;
    picture.plot.show();
    QVERIFY(QTest::qWaitForWindowExposed(&picture.plot));
    const QImage before = picture.image();
    picture.plot.hide();
    picture.plot.setXRange(0, 4000);
    picture.plot.setCursorMode(1);
    picture.plot.setSelectedX(1000);
    picture.plot.show();
    QVERIFY(QTest::qWaitForWindowExposed(&picture.plot));
    QVERIFY(picture.image() != before);
    QVERIFY(picture.areaOf(Qt::gray) >= 190);
}

void PlotPictureTest::thePictureIsAsSharpAsTheScreen()
{
    TPicture picture;
    const QImage image = picture.image();
    const double ratio = picture.plot.devicePixelRatioF();
    QCOMPARE(image.size(), (QSizeF(400, 200) * ratio).toSize());
    if (ratio < 2.0)
        QSKIP("The screen has no finer pixels to look at");
    const TPlotSeries series({{0, 0}, {400, 200}});
    picture.plot.setDataSource(&series);
    const QImage sloped = picture.image();
    // A picture of single pixels that was blown up would have both of each pair alike.
    int different = 0;
    for (int x = 100; x < sloped.width() - 100; x += 2) {
        for (int y = 100; y < sloped.height() - 100; ++y)
            different += sloped.pixel(x, y) != sloped.pixel(x + 1, y) ? 1 : 0;
    }
    QVERIFY(different > 100);
}

void PlotPictureTest::tinySizesAndEndlessRangesArePainted()
{
    TPicture picture;
    picture.plot.setMinimumSize(0, 0);
    picture.plot.setXLabelsVisible(true);
    picture.plot.setYLabelsVisible(true);
    const TPlotSeries series({{0, 0}, {1e300, 1e300}});
    picture.plot.setDataSource(&series);
    picture.plot.autoScale(true, true);
    for (const QSize& size : {QSize(1, 1), QSize(41, 21), QSize(45, 400), QSize(400, 24)}) {
        picture.plot.resize(size);
        QCOMPARE(picture.image().size(), (QSizeF(size) * picture.plot.devicePixelRatioF()).toSize());
    }
    picture.plot.setXDateFormat(QStringLiteral("mm:ss"));
    picture.plot.resize(400, 200);
    QVERIFY(picture.areaOf(Qt::red) > 0);
}

QTEST_MAIN(PlotPictureTest)
#include "PlotPictureTest.moc"
