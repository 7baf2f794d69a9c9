#include "display/MonitorInset.h"
#include "analysis/beats/TAverageBeat.h"
#include "display/BeatInset.h"
#include "display/MonitorPicture.h"
#include "display/TFiducialSource.h"

#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <limits>

/// The average beat at the left of the live display.
class MonitorInsetTest : public QObject
{
    Q_OBJECT

    struct TFixedFiducials : TFiducialSource
    {
        bool fiducials(int, TFiducials* found) override
        {
            ++asked;
            *found = points;
            return known;
        }
        TFiducials points{{100, 250, 400}, 0.0};
        bool known = true;
        int asked = 0;
    };

    /// A display with a beat whose complex is flat but for a spike around R.
    struct BeatPicture : MonitorPicture
    {
        explicit BeatPicture(int channels = 1) : MonitorPicture(channels), beat(&signal, 10.0)
        {
            add(500, 0);
            add(10, 2000);
            add(490, 0);
        }

        void showBeat()
        {
            TBeat single(&signal);
            single.setFiducial(0, TBeat::rPosition, 1.01);
            beat.complexFromBeat(single);
        }

        void show()
        {
            MonitorPicture::show();
            display.setAverageBeat(&beat);
            display.setShowAverageBeat(true);
        }

        QImage takeInset()
        {
            const QImage image = take();
            layout = layOutPage(scale, display.speed(), 1.0);
            return image;
        }

        QRect inset() const { return {layout.insetLeft, 0, layout.insetWidth, scale.height}; }
        /// Where the ST figure stands in the first row.
        QRect figure() const
        {
            return {layout.insetWidth - scale.px(20.0), scale.px(5.0), scale.px(25.0), scale.px(17.0)};
        }

        TAverageBeat beat;
    };

private Q_SLOTS:
    void separatorStandsBehindTheInset()
    {
        BeatPicture monitor;
        monitor.show();
        const QImage image = monitor.takeInset();
        QCOMPARE(monitor.layout.insetWidth,
                 static_cast<int>(monitor.scale.width / monitor.scale.pageSeconds(25.0)));
        QCOMPARE(monitor.layout.traceLeft,
                 monitor.layout.insetWidth + static_cast<int>(monitor.scale.pixelsPerCm * 0.5));
        const QRect line(monitor.layout.traceLeft, 0, 1, image.height());
        QCOMPARE(countColor(image, line, Qt::black), image.height());
    }

    void sweepBeginsBehindTheSeparator()
    {
        BeatPicture monitor;
        monitor.show();
        const QImage image = monitor.takeInset();
        QCOMPARE(countColor(image, QRect(0, 0, monitor.layout.traceLeft - monitor.thickness, image.height()),
                            Qt::black),
                 0);
        const int cursor =
            monitor.layout.traceLeft + sweepPosition(monitor.signal, monitor.layout).cursorColumn;
        QCOMPARE(countColor(image, QRect(cursor, 0, 1, image.height()), Qt::blue), image.height());
        QVERIFY(isColor(image, monitor.layout.traceLeft + 5, monitor.y(-monitor.display.channelOffset(0)),
                        Qt::black));
    }

    void withoutAnAverageALineStandsThere()
    {
        BeatPicture monitor(2);
        monitor.show();
        const QImage image = monitor.takeInset();
        for (int row = 0; row < 2; ++row) {
            const QRect line(monitor.layout.insetLeft, monitor.y(0, row, 2), monitor.layout.insetWidth, 1);
            QCOMPARE(countColor(image, line, Qt::green), line.width());
        }
        QCOMPARE(countColor(image, monitor.inset(), Qt::green),
                 2 * monitor.layout.insetWidth * monitor.thickness);
    }

    void averageIsDrawnToScale()
    {
        BeatPicture monitor;
        monitor.show();
        monitor.showBeat();
        monitor.display.refresh();
        const QImage image = monitor.takeInset();
        const TDoubleVector& complex = monitor.beat.complex(0);
        const double high = *std::max_element(complex.data(), complex.data() + complex.size());
        QVERIFY(high > 1900.0);
        const QRect top(monitor.layout.insetLeft, monitor.y(high), monitor.layout.insetWidth, 1);
        QVERIFY(countColor(image, top, Qt::green) > 0);
        const QRect above(monitor.layout.insetLeft, 0, monitor.layout.insetWidth, monitor.y(high));
        QCOMPARE(countColor(image, above, Qt::green), 0);
        for (int x = monitor.inset().left(); x < monitor.inset().right(); ++x)
            QVERIFY(countColor(image, QRect(x, 0, 1, image.height()), Qt::green) > 0);
    }

    void invertedLeadHasAnInvertedBeat()
    {
        BeatPicture monitor;
        monitor.show();
        monitor.showBeat();
        monitor.display.setChannelInverted(0, true);
        const QImage image = monitor.takeInset();
        const QRect upper(monitor.layout.insetLeft, 0, monitor.layout.insetWidth, image.height() / 2 - 4);
        QCOMPARE(countColor(image, upper, Qt::green), 0);
    }

    void referenceLiesUnderTheAverage()
    {
        BeatPicture monitor;
        monitor.display.setColor(ReferenceBeatColor, Qt::magenta);
        monitor.show();
        monitor.showBeat();
        monitor.display.refresh();
        QImage image = monitor.takeInset();
        QCOMPARE(countColor(image, monitor.inset(), Qt::magenta), 0);

        monitor.beat.keepReference();
        monitor.display.refresh();
        image = monitor.takeInset();
        QCOMPARE(countColor(image, monitor.inset(), Qt::magenta), 0); // the same beat covers it

        TBeat flat(&monitor.signal);
        flat.setFiducial(0, TBeat::rPosition, 5.0);
        monitor.beat.complexFromBeat(flat);
        monitor.display.refresh();
        image = monitor.takeInset();
        QVERIFY(countColor(image, monitor.inset(), Qt::magenta) > 10);
        const QRect line(monitor.layout.insetLeft, monitor.y(0), monitor.layout.insetWidth, 1);
        QCOMPARE(countColor(image, line, Qt::green), line.width());
    }

    void ticksStandOnTheCurve()
    {
        BeatPicture monitor;
        TFixedFiducials fiducials;
        monitor.show();
        monitor.showBeat();
        monitor.display.setFiducialSource(&fiducials);
        const QImage image = monitor.takeInset();
        for (const int index : fiducials.points.indices) {
            const int x = monitor.layout.insetLeft + index * monitor.layout.insetWidth / 500;
            const int y = monitor.y(monitor.beat.complex(0)[index]);
            const int reach = monitor.scale.px(5.0);
            const QRect tick(x, 0, 1, image.height());
            QCOMPARE(countColor(image, tick, Qt::red), 2 * reach + monitor.thickness);
            QVERIFY(isColor(image, x, y - reach, Qt::red) && isColor(image, x, y + reach, Qt::red));
        }
        monitor.display.setFiducialSource(nullptr);
    }

    void ticksBeyondTheBeatAreLeftOut()
    {
        BeatPicture monitor;
        TFixedFiducials fiducials;
        fiducials.points = {{-1, 500, std::numeric_limits<int>::max()}, 0.0};
        monitor.show();
        monitor.showBeat();
        monitor.display.setFiducialSource(&fiducials);
        const QImage image = monitor.takeInset();
        QCOMPARE(countColor(image, image.rect(), Qt::red), 0);
        monitor.display.setFiducialSource(nullptr);
    }

    void figureIsShownFromOneMillimetreOn_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<bool>("known");
        QTest::addColumn<bool>("shown");
        QTest::newRow("0.09 mV") << 0.09 << true << false;
        QTest::newRow("0.10 mV") << 0.10 << true << true;
        QTest::newRow("-0.10 mV") << -0.10 << true << true;
        QTest::newRow("nothing known") << 0.5 << false << false;
    }

    void figureIsShownFromOneMillimetreOn()
    {
        QFETCH(double, level);
        QFETCH(bool, known);
        BeatPicture monitor;
        TFixedFiducials fiducials;
        fiducials.points.stLevel = level;
        fiducials.known = known;
        monitor.show();
        monitor.showBeat();
        monitor.display.setFiducialSource(&fiducials);
        const QImage image = monitor.takeInset();
        QTEST(countOther(image, monitor.figure(), Qt::white) > 0, "shown");
        monitor.display.setFiducialSource(nullptr);
    }

    void figureIsTheLevelInMillimetres_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<QString>("figure");
        QTest::newRow("none") << 0.0 << QString();
        QTest::newRow("below") << 0.09 << QString();
        QTest::newRow("just below") << 0.0999 << QString();
        QTest::newRow("at") << 0.10 << QStringLiteral("+1.0");
        QTest::newRow("negative, below") << -0.09 << QString();
        QTest::newRow("negative") << -0.25 << QStringLiteral("-2.5");
        QTest::newRow("wide") << 1.234 << QStringLiteral("+12.3");
        QTest::newRow("not a number") << qQNaN() << QString();
        QTest::newRow("endless") << qInf() << QString();
    }

    void figureIsTheLevelInMillimetres()
    {
        QFETCH(double, level);
        QTEST(stFigure(level), "figure");
    }

    /// 41 pixels of a second are at the edge of what has room for ticks: 10 mm/s are narrower at any density
    /// that test screens have, 25 mm/s wider.
    void narrowInsetHasNoTicks()
    {
        BeatPicture monitor;
        TFixedFiducials fiducials;
        monitor.show();
        monitor.showBeat();
        monitor.display.setFiducialSource(&fiducials);
        QVERIFY(fiducials.asked > 0);
        fiducials.asked = 0;
        monitor.display.setSpeed(10.0);
        const QImage image = monitor.takeInset();
        QVERIFY(monitor.layout.insetWidth < monitor.scale.px(41.0));
        QCOMPARE(fiducials.asked, 0);
        QCOMPARE(countColor(image, image.rect(), Qt::red), 0);
        monitor.display.setFiducialSource(nullptr);
    }

    void ticksNeedFortyOnePixels_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("asked");
        QTest::newRow("40") << 40 << 0;
        QTest::newRow("41") << 41 << 1;
    }

    void ticksNeedFortyOnePixels()
    {
        QFETCH(int, width);
        BeatPicture monitor;
        monitor.showBeat();
        TFixedFiducials fiducials;
        MonitorView view;
        view.signal = &monitor.signal;
        view.averageBeat = &monitor.beat;
        view.fiducialSource = &fiducials;
        view.showAverageBeat = true;
        PageLayout layout;
        layout.insetWidth = width;
        QPixmap pixmap(200, 100);
        QPainter painter(&pixmap);
        paintMonitorInset(painter, PageScale::of(QSize(200, 100), 50.0, 1.0), layout, view);
        QTEST(fiducials.asked, "asked");
    }

    void noInsetWithoutBeatSignalOrWish()
    {
        BeatPicture monitor;
        monitor.show();
        monitor.showBeat();
        monitor.display.setShowAverageBeat(false);
        QCOMPARE(countColor(monitor.takeInset(), QRect(0, 0, 1200, 600), Qt::green), 0);
        monitor.display.setShowAverageBeat(true);
        monitor.display.setAverageBeat(nullptr);
        QCOMPARE(countColor(monitor.takeInset(), QRect(0, 0, 1200, 600), Qt::green), 0);
        monitor.display.setAverageBeat(&monitor.beat);
        QVERIFY(countColor(monitor.takeInset(), QRect(0, 0, 1200, 600), Qt::green) > 0);
        monitor.display.setSignal(nullptr);
        QCOMPARE(countColor(monitor.takeInset(), QRect(0, 0, 1200, 600), Qt::green), 0);
    }

    /// At this speed the beat takes all of the page: no room is left for a trace, and nothing breaks.
    void insetWiderThanThePageLeavesNoTrace()
    {
        BeatPicture monitor;
        monitor.show();
        monitor.showBeat();
        for (const double speed : {200.0, 1000.0, 1e6, 1e300}) {
            monitor.display.setSpeed(speed);
            const QImage image = monitor.takeInset();
            QCOMPARE(countColor(image, image.rect(), Qt::black), 0);
            QCOMPARE(countColor(image, image.rect(), Qt::blue), 0);
        }
    }

    void fewPointsAreJoined()
    {
        QImage image(100, 50, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        const InsetRow row{10, 80, 25.0, 1.0, 1};
        drawBeatByColumns(painter, row, TDoubleVector({0.0, 10.0, 0.0, -10.0}), Qt::green);
        painter.end();
        QVERIFY(isColor(image, 10, 25, Qt::green));
        QVERIFY(isColor(image, 30, 15, Qt::green));
        QVERIFY(isColor(image, 50, 25, Qt::green));
        QVERIFY(isColor(image, 70, 35, Qt::green));
        QVERIFY(isColor(image, 20, 20, Qt::green));
    }

    void manyPointsShowEveryExtreme()
    {
        QImage image(100, 50, QImage::Format_RGB32);
        image.fill(Qt::white);
        TDoubleVector beat(1000);
        beat[503] = 20.0;
        beat[508] = -20.0;
        QPainter painter(&image);
        drawBeatByColumns(painter, {0, 100, 25.0, 1.0, 1}, beat, Qt::green);
        painter.end();
        QCOMPARE(countColor(image, QRect(50, 5, 1, 41), Qt::green), 41);
        QCOMPARE(countColor(image, QRect(49, 0, 1, 50), Qt::green), 1);
        QCOMPARE(countColor(image, image.rect(), Qt::green), 99 + 41);
    }

    void heightsStayWithinReachOfThePainter()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        const InsetRow row{0, 10, 25.0, 1.0, 1};
        QCOMPARE(insetY(row, 5.0), 20);
        for (const double value : {1e9, 1e300, infinity})
            QCOMPARE(insetY(row, value), -30000);
        for (const double value : {-1e9, -1e300, -infinity})
            QCOMPARE(insetY(row, value), 30000);
    }

    void emptyBeatIsNothing()
    {
        QImage image(10, 10, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        drawBeatByColumns(painter, {0, 10, 5.0, 1.0, 1}, TDoubleVector(), Qt::green);
        drawBeatByColumns(painter, {0, 0, 5.0, 1.0, 1}, TDoubleVector(4), Qt::green);
        drawBeatThroughPoints(painter, {0, 10, 5.0, 1.0, 1}, TDoubleVector());
        painter.end();
        QCOMPARE(countOther(image, image.rect(), Qt::white), 0);
    }
};

QTEST_MAIN(MonitorInsetTest)
#include "MonitorInsetTest.moc"
