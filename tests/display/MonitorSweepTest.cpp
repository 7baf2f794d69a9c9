#include "display/MonitorPicture.h"
#include "display/TSaturationSource.h"
#include "display/TSignalSaturation.h"

#include <QtTest>

/// Traces, cursor and baseline of the live display, seen in its picture.
class MonitorSweepTest : public QObject
{
    Q_OBJECT

    /// Stretches that are there whatever the samples are; notes what was asked.
    struct TFakeSaturation : TSaturationSource
    {
        bool findStretch(int, int from, int to, int* first, int* last) override
        {
            asked.emplace_back(from, to);
            for (const auto& [begin, end] : stretches) {
                if (end > from && begin < to) {
                    *first = std::max(begin, from);
                    *last = std::min(end, to);
                    return true;
                }
            }
            return false;
        }
        std::vector<std::pair<int, int>> stretches;
        std::vector<std::pair<int, int>> asked;
    };

    static int pageSamples(MonitorPicture& monitor)
    {
        monitor.take();
        return monitor.signal.indexOf(monitor.layout.pageSeconds);
    }

    static bool isTrace(const MonitorPicture& monitor, const QImage& image, int column, int counts)
    {
        return isColor(image, column, monitor.y(counts), Qt::black);
    }

    static int traceIn(const MonitorPicture& monitor, const QImage& image, int from, int to)
    {
        return countColor(image, QRect(from, 0, to - from, monitor.scale.height), Qt::black);
    }

private Q_SLOTS:
    void firstPageDrawsNothingRightOfTheCursor()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.add(1000, 1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int cursor = sweepPosition(monitor.signal, monitor.layout).cursorColumn;
        QVERIFY(cursor > 100);
        for (int column = 0; column < cursor - monitor.thickness; ++column)
            QVERIFY2(isTrace(monitor, image, column, 1000), qPrintable(QString::number(column)));
        QCOMPARE(traceIn(monitor, image, cursor, image.width()), 0);
        QCOMPARE(countColor(image, QRect(cursor, 0, 1, image.height()), Qt::blue), image.height());
    }

    void previousPageStandsBehindAGapOfFiveColumns()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.add(pageSamples(monitor), 1000);
        monitor.add(900, -1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int cursor = sweepPosition(monitor.signal, monitor.layout).cursorColumn;
        const int behindGap = cursor + monitor.scale.px(5.0);
        QVERIFY(isTrace(monitor, image, 2, -1000));
        QVERIFY(isTrace(monitor, image, cursor - 1 - monitor.thickness, -1000));
        QCOMPARE(traceIn(monitor, image, cursor, behindGap - monitor.thickness / 2), 0);
        for (int column = behindGap; column < image.width(); ++column)
            QVERIFY2(isTrace(monitor, image, column, 1000), qPrintable(QString::number(column)));
        QCOMPARE(countColor(image, QRect(behindGap, monitor.scale.height / 2, image.width(), image.height()),
                            Qt::black),
                 0);
    }

    void columnsJoinTheirNeighbours()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.add(500, 1000);
        monitor.add(500, -1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int height = monitor.y(-1000) - monitor.y(1000) + monitor.thickness;
        int highest = 0;
        for (int column = 0; column < image.width(); ++column)
            highest = std::max(highest, traceIn(monitor, image, column, column + 1));
        QCOMPARE(highest, height);
    }

    void invertedLeadIsUpsideDown()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.display.setChannelInverted(0, true);
        monitor.add(1000, 1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        QVERIFY(isTrace(monitor, image, 20, -1000));
        QVERIFY(!isTrace(monitor, image, 20, 1000));
    }

    void amplitudeIsTrueToScale()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.display.setAmplitude(20.0);
        monitor.add(1000, 1638); // half a millivolt
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int centimetreUp =
            static_cast<int>(image.height() * 0.5 - 1638 * 20.0 / 65536 * 2.0 * monitor.scale.pixelsPerCm);
        QVERIFY(isColor(image, 20, centimetreUp, Qt::black));
    }

    void baselineFollowsTheFirstSecondAndThenOnlyThePages()
    {
        MonitorPicture monitor;
        monitor.show();
        const int page = pageSamples(monitor);
        monitor.add(400, 500);
        monitor.display.refresh();
        QCOMPARE(monitor.display.channelOffset(0), 500);
        QCOMPARE(monitor.display.lastPage(), 0);
        monitor.add(page - 400 - 1, 1500);
        monitor.display.refresh();
        QCOMPARE(monitor.display.channelOffset(0), 500);
        QVERIFY(isTrace(monitor, monitor.take(), 2, 0));

        monitor.add(400, 1500);
        monitor.display.refresh();
        QCOMPARE(monitor.display.lastPage(), 1);
        // The mean of the last page: a single sample of the first level is left in it.
        QCOMPARE(monitor.display.channelOffset(0), (1500 * (page - 1) + 500) / page);
        QVERIFY(isTrace(monitor, monitor.take(), 2, 1));
    }

    void changeOfPageMovesTheWholeTrace()
    {
        MonitorPicture monitor(2);
        monitor.show();
        const int page = pageSamples(monitor);
        monitor.add(page - 1, 2000);
        monitor.display.refresh();
        const int before = monitor.display.channelOffset(0);
        monitor.add(page, 4000);
        monitor.display.refresh();
        QVERIFY(monitor.display.channelOffset(0) > before);
        QCOMPARE(monitor.display.channelOffset(1), monitor.display.channelOffset(0));
    }

    void hiddenChannelsKeepTheirBaseline()
    {
        MonitorPicture monitor(2);
        monitor.show();
        monitor.display.setChannelVisible(1, false);
        monitor.add(100, 700);
        monitor.display.refresh();
        QCOMPARE(monitor.display.channelOffset(0), 700);
        QCOMPARE(monitor.display.channelOffset(1), 0);
    }

    void withoutCentringTheBaselineStaysZero()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.add(5000, 800);
        monitor.display.refresh();
        QCOMPARE(monitor.display.channelOffset(0), 0);
        QCOMPARE(monitor.display.lastPage(), 1);
    }

    void centringAndSignalForgetTheBaseline()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.add(5000, 800);
        monitor.display.refresh();
        QCOMPARE(monitor.display.channelOffset(0), 800);
        monitor.display.setAutoCenter(false);
        QCOMPARE(monitor.display.channelOffset(0), 0);
        monitor.display.setAutoCenter(true);
        QCOMPARE(monitor.display.channelOffset(0), 800);
        monitor.display.setSignal(nullptr);
        QCOMPARE(monitor.display.channelOffset(0), 0);
        QCOMPARE(monitor.display.lastPage(), -1);
    }

    /// A ring that holds less than a page: what has left it reads 0 and must not count.
    void baselineCountsOnlyWhatTheRingHolds()
    {
        MonitorPicture monitor;
        monitor.show();
        TInt16Signal ring(64, 1000, 1, MonitorPicture::rate);
        const std::vector<short> samples(pageSamples(monitor) + 100, 600);
        ring.addInterleaved(reinterpret_cast<const char*>(samples.data()),
                            static_cast<int>(samples.size() * sizeof(short)));
        monitor.display.setSignal(&ring);
        QCOMPARE(monitor.display.channelOffset(0), 600);
        monitor.display.setSignal(nullptr);
    }

    void saturatedStretchTakesItsColour()
    {
        MonitorPicture monitor;
        TSignalSaturation saturation(&monitor.signal);
        monitor.show();
        monitor.display.setAutoCenter(false);
        monitor.display.setAmplitude(2.0);
        monitor.add(500, 0);
        monitor.add(200, 32767);
        monitor.add(500, 0);
        monitor.display.setSaturationSource(&saturation);
        const QImage image = monitor.take();
        const int middle =
            600 * monitor.layout.traceWidth / monitor.signal.indexOf(monitor.layout.pageSeconds);
        const QColor color = image.pixelColor(middle, monitor.y(32767));
        QVERIFY2(color.red() > 200 && color.green() > 100 && color.blue() < 140, qPrintable(color.name()));
        QCOMPARE(traceIn(monitor, image, middle - 5, middle + 5), 0);
        QVERIFY(isTrace(monitor, image, 20, 0));
        monitor.display.setSaturationSource(nullptr);
        QVERIFY(traceIn(monitor, monitor.take(), middle - 5, middle + 5) > 0);
    }

    void saturationIsMarkedBetweenTheColumnsOfItsEnds()
    {
        MonitorPicture monitor;
        monitor.show();
        TColumnTrace trace;
        monitor.add(1000, 0);
        TFakeSaturation source;
        source.stretches = {{105, 131}, {400, 409}, {700, 2000}};
        QVERIFY(trace.reduce(*monitor.signal.channel(0), 0, 1000, 100, true));
        trace.markSaturation(source, 0, 0, 0, 1000, 0, 90);
        QString marks;
        for (int column = 0; column < 100; ++column) {
            if (trace.isSaturated(column))
                marks += QString::number(column) + QLatin1Char(' ');
        }
        QString expected = QStringLiteral("11 12 ");
        for (int column = 71; column < 90; ++column)
            expected += QString::number(column) + QLatin1Char(' ');
        QCOMPARE(marks, expected);
    }

    void saturationIsAskedForThisPageAndTheOneBefore()
    {
        MonitorPicture monitor;
        TFakeSaturation source;
        monitor.show();
        const int page = pageSamples(monitor);
        monitor.add(900, 0);
        monitor.display.setSaturationSource(&source);
        QCOMPARE(source.asked.size(), std::size_t(1));
        QCOMPARE(source.asked[0], std::make_pair(0, 900));
        monitor.add(page, 0);
        source.asked.clear();
        monitor.display.refresh();
        const auto sweep = sweepPosition(monitor.signal, monitor.layout);
        QCOMPARE(source.asked.size(), std::size_t(2));
        QCOMPARE(source.asked[0], std::make_pair(sweep.pageStart, page + 900));
        QCOMPARE(source.asked[1], std::make_pair(sweep.pageStart - sweep.pageSamples, sweep.pageStart));
        monitor.display.setSaturationSource(nullptr);
    }

    /// The start of the page before is overwritten by now; its saturation must not colour the new trace.
    void saturationOfTheOverwrittenPartIsGone()
    {
        MonitorPicture monitor;
        TFakeSaturation source;
        monitor.show();
        const int page = pageSamples(monitor);
        monitor.add(page + 1500, 0);
        source.stretches = {{200, 600}, {page - 800, page - 400}};
        monitor.display.setSaturationSource(&source);
        const QImage image = monitor.take();
        const auto columnOf = [&](int sample) { return sample * monitor.layout.traceWidth / page; };
        QVERIFY(isTrace(monitor, image, columnOf(400), 0));
        QVERIFY(!isTrace(monitor, image, columnOf(page - 600), 0));
        QVERIFY(isTrace(monitor, image, columnOf(page - 1000), 0));
        monitor.display.setSaturationSource(nullptr);
    }

    /// 20 samples per second are fewer than the pixels: no baseline, no colour of saturation.
    void fewSamplesAreDrawnOneByOne()
    {
        MonitorPicture monitor(1, 20);
        TFakeSaturation source;
        source.stretches = {{0, 1000}};
        monitor.show();
        monitor.display.setSaturationSource(&source);
        monitor.add(60, 1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int cursor = sweepPosition(monitor.signal, monitor.layout).cursorColumn;
        QVERIFY(isTrace(monitor, image, cursor / 2, 1000));
        QCOMPARE(traceIn(monitor, image, cursor + 3, image.width()), 0);
        QCOMPARE(monitor.display.channelOffset(0), 0);
        QCOMPARE(monitor.display.lastPage(), -1);
        QVERIFY(source.asked.empty());
        monitor.display.setSaturationSource(nullptr);
    }

    /// A page that has just begun has no sample yet; a line to it would fall to zero.
    void oneByOneNothingIsDrawnBehindTheLastSample()
    {
        MonitorPicture monitor(1, 20);
        monitor.show();
        const auto begins = [&monitor] {
            const auto sweep = sweepPosition(monitor.signal, monitor.layout);
            return sweep.page > 0 && sweep.pageStart == monitor.signal.sampleCount();
        };
        monitor.add(pageSamples(monitor) - 2, 1000);
        for (int i = 0; i < 400 && !begins(); ++i)
            monitor.add(1, 1000);
        QVERIFY(begins());
        monitor.display.refresh();
        const QImage image = monitor.take();
        const int under = monitor.y(800);
        QVERIFY(countColor(image, QRect(0, 0, image.width(), under), Qt::black) > 0);
        QCOMPARE(countColor(image, QRect(0, under, image.width(), image.height()), Qt::black), 0);
    }

    void oneByOneTheOldPageStandsToTheRightWithoutAGap()
    {
        MonitorPicture monitor(1, 20);
        monitor.show();
        const int page = pageSamples(monitor);
        monitor.add(page, 1000);
        monitor.add(40, -1000);
        monitor.display.refresh();
        const QImage image = monitor.take();
        const auto sweep = sweepPosition(monitor.signal, monitor.layout);
        QVERIFY(isTrace(monitor, image, sweep.cursorColumn / 2, -1000));
        const int last = image.width() - image.width() / page - 2;
        for (int column = sweep.cursorColumn + 3; column < last; ++column)
            QVERIFY2(isTrace(monitor, image, column, 1000), qPrintable(QString::number(column)));
        QCOMPARE(countColor(image, QRect(sweep.cursorColumn, 0, 1, image.height()), Qt::blue),
                 image.height());
    }

    void rowsShareTheHeight()
    {
        MonitorPicture monitor(3);
        monitor.show();
        monitor.add(1000, 0);
        monitor.display.refresh();
        const QImage three = monitor.take();
        for (int row = 0; row < 3; ++row)
            QVERIFY(isColor(three, 20, monitor.y(0, row, 3), Qt::black));
        monitor.display.setChannelVisible(1, false);
        const QImage two = monitor.take();
        for (int row = 0; row < 2; ++row)
            QVERIFY(isColor(two, 20, monitor.y(0, row, 2), Qt::black));
        QVERIFY(!isColor(two, 20, monitor.y(0, 1, 3), Qt::black));
    }

    void rowsShowTheChannelsOfTheOrder()
    {
        MonitorPicture monitor(2);
        monitor.show();
        monitor.display.setAutoCenter(false);
        std::vector<short> frames;
        for (int i = 0; i < 1000; ++i)
            frames.insert(frames.end(), {300, -300});
        monitor.signal.addInterleaved(reinterpret_cast<const char*>(frames.data()), 4000);
        monitor.display.setChannelOrder(0, 1);
        monitor.display.setChannelOrder(1, 0);
        const QImage image = monitor.take();
        QVERIFY(isColor(image, 20, monitor.y(-300, 0, 2), Qt::black));
        QVERIFY(isColor(image, 20, monitor.y(300, 1, 2), Qt::black));
    }
};

QTEST_MAIN(MonitorSweepTest)
#include "MonitorSweepTest.moc"
