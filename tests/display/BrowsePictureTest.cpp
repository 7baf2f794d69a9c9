#include "display/BeatTicks.h"
#include "display/BrowseFixture.h"
#include "display/PictureBounds.h"

#include <QtTest>

#include <cmath>

namespace {

/// The first lead is saturated from 22 s to 23 s.
struct TStretch : TSaturationSource
{
    bool findStretch(int channel, int from, int to, int* first, int* last) override
    {
        *first = 22 * display_signal::rate;
        *last = 23 * display_signal::rate;
        return channel == 0 && from <= *first && *last <= to;
    }
};

const QColor red(255, 0, 0);
const QColor green(0, 255, 0);

} // namespace

class BrowsePictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictureLeavesTheScrollBarOut();
    void traceIsCentredInItsRow();
    void traceEndsWithTheRecording();
    void fewSamplesAreDrawnOneByOne();
    void fewSamplesReachTheEndOfThePage();
    void invertedLeadIsDrawnUpsideDown();
    void saturatedStretchesAreColoured();
    void beatTicksStandAtTheTop();
    void intervalsAreGoneAtHalfSpeed();
    void firstBeatOfThePageHasNoInterval();
    void unknownIntervalsAreLeftOut();
    void rejectedBeatsHaveNoTick();
    void selectedBeatHasItsBand();
    void bandOfARejectedBeatIsNotDrawn();
    void bandIsClippedToTheTrace();
    void insetShowsTheAverageAndTheReference();
    void insetWithoutBeatsShowsALine();
    void timeRulerStandsAtTheBottom();
    void timeRulerEndsWithTheRecording();
    void labelsThatTheEdgeWouldCutAreLeftOut();
    void caliperDrawsItsTriangleWhileItIsDragged();
    void caliperInTheInsetIsDrawnThere();
    void nullSignalLeavesTheGrid();
    void colorsOfTheSchemeAreTaken();
    void saturationShinesThrough();

private:
    void save(BrowseFixture& browse)
    {
        const auto folder = qEnvironmentVariable("VELANTOR_PICTURES");
        if (!folder.isEmpty())
            browse.picture().save(QStringLiteral("%1/browse-%2.png")
                                      .arg(folder, QString::fromLatin1(QTest::currentTestFunction())));
    }
};

void BrowsePictureTest::pictureLeavesTheScrollBarOut()
{
    BrowseFixture browse;
    browse.display.setColor(1, red);
    const QRectF paper = boundsOf(browse.picture(), red);
    QVERIFY(isNear(paper.left(), 0));
    QVERIFY(isNear(paper.bottom(), 400 - browse.bar().height()));
    QCOMPARE(browse.display.grab().devicePixelRatio(), browse.display.devicePixelRatioF());
    save(browse);
}

void BrowsePictureTest::traceIsCentredInItsRow()
{
    BrowseFixture browse;
    browse.display.setColor(0, red);
    browse.display.setStartTime(20.0);
    const double height = (400.0 - browse.bar().height()) / 3;
    const QImage image = browse.picture();
    const double pixelsPerMv = 10 * 96 / 25.4;
    for (int row = 0; row < 3; ++row) {
        // Though the leads lie far off zero, the level between the beats is near the middle of the row.
        const QRectF beat = boundsOf(image, red, QRectF(0, row * height, 900, height));
        const double r = (row + 0.5) * height - pixelsPerMv;
        QVERIFY2(std::fabs(beat.top() - r) < 6, qPrintable(QString::number(beat.top() - r)));
        QVERIFY(beat.bottom() < (row + 0.5) * height + 0.5 * pixelsPerMv);
    }
    save(browse);
}

void BrowsePictureTest::traceEndsWithTheRecording()
{
    BrowseFixture browse(4);
    browse.display.setColor(0, red);
    const QRectF trace = boundsOf(browse.picture(), red);
    QVERIFY(isNear(trace.left(), 0));
    QVERIFY(isNear(trace.right(), browse.xOf(4.0)));
    save(browse);
}

void BrowsePictureTest::fewSamplesAreDrawnOneByOne()
{
    BrowseFixture browse;
    browse.display.setColor(0, red);
    // Fewer samples than pixels.
    browse.display.setSpeed(1000.0);
    QVERIFY(browse.display.pageSeconds() * display_signal::rate < 900);
    browse.display.setStartTime(20.4);
    const double height = (400.0 - browse.bar().height()) / 3;
    const QRectF trace = boundsOf(browse.picture(), red, QRectF(0, 0, 900, height));
    QVERIFY(isNear(trace.left(), 0));
    QVERIFY(trace.right() > 890);
    const double middle = height / 2;
    QVERIFY(trace.top() > 0 && trace.top() < middle && trace.bottom() > middle && trace.bottom() < height);
    save(browse);
}

void BrowsePictureTest::invertedLeadIsDrawnUpsideDown()
{
    BrowseFixture browse;
    browse.display.setColor(0, red);
    browse.display.setStartTime(20.0);
    const double height = (400.0 - browse.bar().height()) / 3;
    const QRectF row(0, 0, 900, height);
    const QRectF upright = boundsOf(browse.picture(), red, row);
    browse.display.setChannelInverted(0, true);
    const QRectF inverted = boundsOf(browse.picture(), red, row);
    QVERIFY(isNear(upright.top(), height - inverted.bottom()));
    QVERIFY(isNear(upright.bottom(), height - inverted.top()));
}

void BrowsePictureTest::saturatedStretchesAreColoured()
{
    TStretch stretch;
    BrowseFixture browse;
    browse.display.setStartTime(20.0);
    browse.display.setColor(0, green);
    const QRectF row(0, 0, 900, 100);
    const QRectF level(browse.xOf(22.02), 0, browse.xOf(22.98) - browse.xOf(22.02), 100);
    QVERIFY(!boundsOf(browse.picture(), green, level).isNull());
    browse.display.setSaturationSource(&stretch);
    const QImage image = browse.picture();
    QVERIFY(boundsOf(image, green, level).isNull());
    QVERIFY(!boundsOf(image, green, QRectF(browse.xOf(23.05), 0, 50, 100)).isNull());
    save(browse);
    browse.display.setSaturationSource(nullptr);
}

void BrowsePictureTest::beatTicksStandAtTheTop()
{
    BrowseFixture browse;
    browse.display.setColor(7, red);
    browse.display.setStartTime(20.0);
    browse.display.setSpeed(12.5);
    const QImage image = browse.picture();
    for (const double time : {20.5, 25.5, 30.5}) {
        const int x = browse.xOf(time);
        const QRectF tick = boundsOf(image, red, QRectF(x - 3, 0, 7, 30));
        QVERIFY(isNear(tick.center().x(), x));
        QCOMPARE(tick.top(), 0.0);
        QVERIFY(isNear(tick.bottom(), 10));
    }
    QVERIFY(
        boundsOf(image, red, QRectF(browse.xOf(20.6), 0, browse.xOf(21.4) - browse.xOf(20.6), 30)).isNull());
}

void BrowsePictureTest::intervalsAreGoneAtHalfSpeed()
{
    BrowseFixture browse;
    browse.display.setColor(7, red);
    browse.display.setStartTime(20.0);
    const auto between = [&] {
        const int from = browse.xOf(22.7);
        return boundsOf(browse.picture(), red, QRectF(from, 0, browse.xOf(23.3) - from, 30));
    };
    const QRectF interval = between();
    QVERIFY(!interval.isNull());
    QVERIFY(isNear(interval.center().x(), browse.xOf(23.0)));
    save(browse);
    browse.display.setSpeed(12.5);
    QVERIFY(between().isNull());
    browse.display.setSpeed(50.0);
    QVERIFY(!between().isNull());
}

void BrowsePictureTest::firstBeatOfThePageHasNoInterval()
{
    BrowseFixture browse;
    browse.display.setColor(7, red);
    browse.display.setStartTime(20.1);
    const QImage image = browse.picture();
    QVERIFY(boundsOf(image, red, QRectF(0, 0, browse.xOf(20.45), 30)).isNull());
    QVERIFY(!boundsOf(image, red, QRectF(browse.xOf(20.6), 0, 60, 30)).isNull());
}

void BrowsePictureTest::rejectedBeatsHaveNoTick()
{
    BrowseFixture browse(60, {22});
    browse.display.setColor(7, red);
    browse.display.setSpeed(12.5);
    browse.display.setStartTime(20.0);
    const QImage image = browse.picture();
    QVERIFY(boundsOf(image, red, QRectF(browse.xOf(22.5) - 4, 0, 9, 20)).isNull());
    QVERIFY(!boundsOf(image, red, QRectF(browse.xOf(23.5) - 4, 0, 9, 20)).isNull());
}

void BrowsePictureTest::selectedBeatHasItsBand()
{
    BrowseFixture browse;
    browse.display.setStartTime(20.0);
    browse.display.setColor(10, green);
    browse.display.setSelectedBeat(24);
    const QRectF band = boundsOf(browse.picture(), green);
    QVERIFY(isNear(band.left(), browse.xOf(24.3)));
    QVERIFY(isNear(band.right(), browse.xOf(24.7)));
    QCOMPARE(band.top(), 0.0);
    QVERIFY(isNear(band.bottom(), 400 - browse.bar().height()));
    browse.display.setColor(10, QColor(128, 128, 128, 128));
    save(browse);
    browse.display.setColor(10, green);
    browse.display.setSelectedBeat(-1);
    QVERIFY(boundsOf(browse.picture(), green).isNull());
}

void BrowsePictureTest::bandOfARejectedBeatIsNotDrawn()
{
    BrowseFixture browse(60, {24});
    browse.display.setStartTime(20.0);
    browse.display.setColor(10, green);
    browse.display.setSelectedBeat(24);
    QVERIFY(boundsOf(browse.picture(), green).isNull());
}

void BrowsePictureTest::bandIsClippedToTheTrace()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setStartTime(24.4);
    browse.display.setColor(10, green);
    browse.display.setSelectedBeat(24);
    const QRectF band = boundsOf(browse.picture(), green);
    QVERIFY(isNear(band.left(), browse.xOf(24.4)));
    QVERIFY(isNear(band.right(), browse.xOf(24.7)));
}

void BrowsePictureTest::insetShowsTheAverageAndTheReference()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setStartTime(20.0);
    browse.display.setColor(4, red);
    browse.display.setColor(5, green);
    const int right = browse.xOf(20.0);
    const QRectF inset(0, 0, right, 400);
    const QRectF beat = boundsOf(browse.picture(), red);
    QVERIFY(inset.contains(beat));
    QVERIFY(beat.width() > 0.5 * right);
    QVERIFY(boundsOf(browse.picture(), green).isNull());
    browse.average->keepReference();
    // The reference lies under the average, which is the same as yet.
    browse.display.setColor(4, QColor(0, 0, 0, 0));
    QVERIFY(inset.contains(boundsOf(browse.picture(), green)));
    QVERIFY(!boundsOf(browse.picture(), green).isNull());
    browse.display.setColor(4, Qt::darkBlue);
    save(browse);
}

void BrowsePictureTest::insetWithoutBeatsShowsALine()
{
    BrowseFixture browse;
    TAverageBeat none(browse.signal.get(), 20.0);
    browse.display.setAverageBeat(&none);
    browse.display.setShowAverageBeat(true);
    browse.display.setColor(4, red);
    const double height = (400.0 - browse.bar().height()) / 3;
    const QRectF line = boundsOf(browse.picture(), red, QRectF(0, 0, 300, height));
    QVERIFY(!line.isNull());
    QVERIFY(line.height() <= 2);
    QVERIFY(isNear(line.center().y(), height / 2));
    browse.display.setAverageBeat(nullptr);
}

void BrowsePictureTest::timeRulerStandsAtTheBottom()
{
    BrowseFixture browse;
    browse.display.setColor(3, red);
    browse.display.setStartTime(20.0);
    const double bottom = 400.0 - browse.bar().height();
    const QRectF row(0, bottom - 25, 900, 21);
    const int from = browse.xOf(24.6);
    const QRectF label =
        boundsOf(browse.picture(), red, QRectF(from, row.top(), browse.xOf(25.4) - from, row.height()));
    QVERIFY(isNear(label.center().x(), browse.xOf(25.0)));
    QVERIFY(isNear(label.bottom(), bottom - 4));
    save(browse);
}

void BrowsePictureTest::labelsThatTheEdgeWouldCutAreLeftOut()
{
    BrowseFixture browse;
    browse.display.setColor(3, red);
    browse.display.setShowAverageBeat(false);
    browse.display.setStartTime(20.0);
    const double bottom = 400.0 - browse.bar().height();
    const QImage picture = browse.picture();
    const auto labelIn = [&](double left, double right) {
        return boundsOf(picture, red, QRectF(left, bottom - 14, right - left, 9));
    };
    QVERIFY(labelIn(0, browse.xOf(20.5)).isNull());
    QVERIFY(!labelIn(browse.xOf(20.5), browse.xOf(21.5)).isNull());
    // The page ends between two labels that have room and one that has not.
    const double end = browse.display.timeAt(900);
    const double last = std::floor(end);
    const bool fits = browse.xOf(last) + 20 <= 900;
    QCOMPARE(!labelIn(browse.xOf(last - 0.5), 900).isNull(), fits);
}

void BrowsePictureTest::caliperDrawsItsTriangleWhileItIsDragged()
{
    BrowseFixture browse;
    browse.display.setMouseMode(CaliperMode);
    browse.display.setStartTime(20.0);
    const auto moveTo = [&](double time, Qt::MouseButtons buttons) {
        QMouseEvent event(QEvent::MouseMove, QPointF(browse.xOf(time), 180), Qt::NoButton, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(&browse.display, &event);
    };
    moveTo(23.2, Qt::NoButton);
    QVERIFY(!boundsOf(browse.picture(), red).isNull());
    moveTo(23.2, Qt::LeftButton);
    moveTo(23.5, Qt::LeftButton);
    const QImage dragged = browse.picture();
    save(browse);
    moveTo(23.5, Qt::NoButton);
    // Released, the caliper keeps its texts; what goes is the triangle with the circles at its ends.
    const QImage released = browse.picture();
    QVERIFY(!boundsOf(released, red).isNull());
    const QRectF triangle = differenceOf(dragged, released);
    QVERIFY(std::fabs(triangle.left() - (browse.xOf(23.2) - 4)) <= 2);
    QVERIFY(std::fabs(triangle.right() - (browse.xOf(23.5) + 4)) <= 2);
    QVERIFY(triangle.height() > 40 && triangle.height() < 60);
    const QColor fill(255, 127, 127);
    const auto filled = [&](const QImage& image) {
        const double ratio = image.devicePixelRatio();
        int found = 0;
        for (int y = int(triangle.top() * ratio); y < int(triangle.bottom() * ratio); ++y) {
            for (int x = int(triangle.left() * ratio); x < int(triangle.right() * ratio); ++x)
                found += image.pixelColor(x, y) == fill;
        }
        return found / ratio / ratio;
    };
    // Half of the rectangle, without what lies under grid, trace and texts.
    QVERIFY(filled(dragged) > 150);
    QCOMPARE(filled(released), 0.0);
    browse.display.setMouseMode(NoMouseMode);
    QVERIFY(boundsOf(browse.picture(), red).isNull());
}

void BrowsePictureTest::caliperInTheInsetIsDrawnThere()
{
    BrowseFixture browse;
    browse.display.setMouseMode(CaliperMode);
    browse.display.setShowAverageBeat(true);
    browse.display.setStartTime(20.0);
    for (const int x : {30, 52}) {
        QMouseEvent event(QEvent::MouseMove, QPointF(x, 60), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        browse.display.setMouseTracking(true);
        if (x == 30) {
            QMouseEvent hover(QEvent::MouseMove, QPointF(x, 60), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(&browse.display, &hover);
        }
        QApplication::sendEvent(&browse.display, &event);
        if (x == 30)
            QApplication::sendEvent(&browse.display, &event);
    }
    QVERIFY(browse.display.caliper().inBeat);
    const QRectF triangle = boundsOf(browse.picture(), red);
    QVERIFY(!triangle.isNull());
    QVERIFY(triangle.left() <= 52);
    save(browse);
}

void BrowsePictureTest::nullSignalLeavesTheGrid()
{
    BrowseFixture browse;
    browse.display.setBeatSource(nullptr);
    browse.display.setAverageBeat(nullptr);
    browse.display.setSignal(nullptr);
    browse.display.setColor(2, red);
    const QImage image = browse.picture();
    for (int y = 0; y < int(300 * image.devicePixelRatio()); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QVERIFY(image.pixelColor(x, y) == red || image.pixelColor(x, y) == QColor(Qt::white));
    }
    QVERIFY(!boundsOf(image, red).isNull());
}

void BrowsePictureTest::colorsOfTheSchemeAreTaken()
{
    BrowseFixture browse;
    const QRectF paper(0, 0, 900, 400.0 - browse.bar().height() - 1);
    QVERIFY(!boundsOf(browse.picture(), Qt::white, paper).isNull());
    QVERIFY(boundsOf(browse.picture(), green, paper).isNull());
    browse.display.setColor(0, green);
    browse.display.setColor(1, Qt::black);
    browse.display.setColor(2, Qt::black);
    QCOMPARE(browse.display.color(1), QColor(Qt::black));
    const QImage image = browse.picture();
    QVERIFY(boundsOf(image, Qt::white, paper).isNull());
    QVERIFY(!boundsOf(image, green, paper).isNull());
}

void BrowsePictureTest::saturationShinesThrough()
{
    BrowseFixture browse;
    browse.display.setColor(6, red);
    QCOMPARE(browse.display.color(6).alpha(), 128);
    QCOMPARE(browse.display.color(3), QColor(Qt::gray));
    QCOMPARE(browse.display.color(5), QColor(Qt::darkGreen));
    QCOMPARE(browse.display.color(10), QColor(128, 128, 128, 128));
    TStretch stretch;
    browse.display.setStartTime(20.0);
    browse.display.setSaturationSource(&stretch);
    const QImage image = browse.picture();
    browse.display.setSaturationSource(nullptr);
    int mixed = 0;
    for (int y = 0; y < int(100 * image.devicePixelRatio()); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            QVERIFY(pixel != red);
            mixed += pixel.red() > 200 && pixel.green() < 140 && pixel.green() == pixel.blue();
        }
    }
    QVERIFY2(mixed > 50, qPrintable(QString::number(mixed)));
}

void BrowsePictureTest::fewSamplesReachTheEndOfThePage()
{
    BrowseFixture browse;
    browse.display.setColor(0, red);
    browse.display.setSpeed(10000.0);
    QVERIFY(browse.display.pageSeconds() * display_signal::rate < 20);
    browse.display.setStartTime(20.4);
    const double height = (400.0 - browse.bar().height()) / 3;
    const QRectF trace = boundsOf(browse.picture(), red, QRectF(0, 0, 900, height));
    QVERIFY(isNear(trace.left(), 0));
    QVERIFY(isNear(trace.right(), 900));
}

void BrowsePictureTest::unknownIntervalsAreLeftOut()
{
    BrowseFixture browse;
    TBeatRing ring(3);
    const double intervals[] = {0.0, 1.0, 0.0, -1.0, 1.0};
    for (int i = 0; i < 5; ++i)
        ring.add(display_signal::beatAt(0.5 + i, intervals[i], browse.signal.get()));
    TStoredBeats beats(&ring);
    browse.display.setBeatSource(&beats);
    browse.display.setColor(7, red);
    const QImage image = browse.picture();
    for (int i = 1; i < 5; ++i) {
        const int from = browse.xOf(i - 0.3);
        const QRectF between(from, 0, browse.xOf(i + 0.3) - from, 30);
        QCOMPARE(boundsOf(image, red, between).isNull(), intervals[i] <= 0.0);
        QVERIFY(!boundsOf(image, red, QRectF(browse.xOf(i + 0.5) - 3, 0, 7, 12)).isNull());
    }
    browse.display.setBeatSource(nullptr);
}

void BrowsePictureTest::timeRulerEndsWithTheRecording()
{
    BrowseFixture browse(4);
    browse.display.setColor(3, red);
    const double bottom = 400.0 - browse.bar().height();
    const QImage image = browse.picture();
    const auto labelAt = [&](double time) {
        return boundsOf(image, red, QRectF(browse.xOf(time) - 20, bottom - 25, 40, 25));
    };
    QVERIFY(!labelAt(4.0).isNull());
    QVERIFY(labelAt(5.0).isNull());
    QVERIFY(labelAt(6.0).isNull());
}

QTEST_MAIN(BrowsePictureTest)

#include "BrowsePictureTest.moc"
