#include "display/BrowseFixture.h"
#include "display/ColorTags.h"

#include <QtTest>

#include <cmath>
#include <limits>

class BrowseDisplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Drawing
    void severalSettersCostOnePicture();
    void unchangedLeadsCostNone();
    void hiddenDisplayDrawsNothing();
    void pointersMayBeNull();
    void extremeSpeedsEnd();
    void amplitudesThatAreNoNumbersDrawNoTrace();
    void tinyWidgetsEnd();

    // Scroll bar
    void scrollBarFollowsSignalSpeedAndSize();
    void shortRecordingDisablesTheScrollBar();
    void scrollBarMovesTheView();
    void viewMovesTheScrollBar();
    void startStaysWithinTheRecording();
    void withoutSignalImpossibleStartsAreRefused();
    void shorterSignalBringsTheViewBack();
    void insetTakesItsTimeFromThePage();

    // Questions
    void timeAndLeadOfAPlace();
};

void BrowseDisplayTest::severalSettersCostOnePicture()
{
    BrowseFixture browse;
    PictureCounter counter;
    browse.display.setChannelVisible(1, false);
    browse.display.setChannelVisible(2, false);
    browse.display.setSaturationSource(&counter);
    browse.display.show();
    QVERIFY(QTest::qWaitForWindowExposed(&browse.display));
    QTRY_VERIFY(counter.pictures > 0);
    QCoreApplication::processEvents();
    counter.pictures = 0;
    browse.display.setSpeed(50.0);
    browse.display.setAmplitude(20.0);
    browse.display.setSignal(browse.signal.get());
    browse.display.setChannelInverted(0, true);
    browse.display.setChannelOrder(0, 1);
    browse.display.setChannelOrder(1, 0);
    browse.display.setShowAverageBeat(true);
    browse.display.setMouseMode(CaliperMode);
    browse.display.setSelectedBeat(3);
    browse.display.setColor(0, Qt::red);
    browse.display.setStartTime(12.0);
    browse.display.refresh();
    QCOMPARE(counter.pictures, 0);
    browse.picture();
    QCOMPARE(counter.pictures, 1);
    browse.picture();
    QCOMPARE(counter.pictures, 1);
}

void BrowseDisplayTest::unchangedLeadsCostNone()
{
    BrowseFixture browse;
    PictureCounter counter;
    browse.display.setChannelVisible(1, false);
    browse.display.setChannelVisible(2, false);
    browse.display.show();
    QVERIFY(QTest::qWaitForWindowExposed(&browse.display));
    browse.display.setSaturationSource(&counter);
    browse.picture();
    QCOMPARE(counter.pictures, 1);
    browse.display.setChannelVisible(1, false);
    browse.display.setChannelInverted(1, false);
    browse.display.setChannelOrder(4, 4);
    browse.picture();
    QCOMPARE(counter.pictures, 1);
}

void BrowseDisplayTest::hiddenDisplayDrawsNothing()
{
    BrowseFixture browse;
    PictureCounter counter;
    browse.display.setSaturationSource(&counter);
    browse.display.refresh();
    QCoreApplication::processEvents();
    QCOMPARE(counter.pictures, 0);
}

void BrowseDisplayTest::pointersMayBeNull()
{
    QSignalBrowseDisplay display;
    display.resize(500, 300);
    display.setShowAverageBeat(true);
    display.setMouseMode(CaliperMode);
    display.setSelectedBeat(4);
    QTest::mouseMove(&display, QPoint(200, 100));
    QTest::mousePress(&display, Qt::LeftButton, {}, QPoint(200, 100));
    QTest::keyClick(&display, Qt::Key_Right);
    QVERIFY(!display.grab().isNull());
    QVERIFY(!display.caliper().shown);
    QCOMPARE(display.channelAt(50), 0);
}

void BrowseDisplayTest::scrollBarFollowsSignalSpeedAndSize()
{
    BrowseFixture browse;
    const auto expected = [&] { return int((60.0 - browse.display.pageSeconds()) * 100.0); };
    browse.display.grab();
    QCOMPARE(browse.bar().maximum(), expected());
    QCOMPARE(browse.bar().pageStep(), int(browse.display.pageSeconds() * 100.0));
    QCOMPARE(browse.bar().singleStep(), int(browse.display.pageSeconds() * 10.0));
    const int before = browse.bar().maximum();
    browse.display.setSpeed(50.0);
    QCOMPARE(browse.bar().maximum(), expected());
    QVERIFY(browse.bar().maximum() > before);
    browse.display.resize(500, 400);
    browse.display.grab();
    QCOMPARE(browse.bar().maximum(), expected());
    QCOMPARE(browse.bar().geometry().bottomRight(), browse.display.rect().bottomRight());
    QCOMPARE(browse.bar().width(), 500);
}

void BrowseDisplayTest::shortRecordingDisablesTheScrollBar()
{
    BrowseFixture browse(4);
    browse.display.grab();
    QVERIFY(!browse.bar().isEnabled());
    QCOMPARE(browse.bar().maximum(), 0);
    BrowseFixture longer(60);
    longer.display.grab();
    QVERIFY(longer.bar().isEnabled());
    longer.display.setSignal(nullptr);
    QVERIFY(!longer.bar().isEnabled());
}

void BrowseDisplayTest::scrollBarMovesTheView()
{
    BrowseFixture browse;
    QSignalSpy moved(&browse.display, &QSignalBrowseDisplay::startTimeChanged);
    browse.bar().setValue(1234);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(browse.display.startTime(), 12.34);
}

void BrowseDisplayTest::viewMovesTheScrollBar()
{
    BrowseFixture browse;
    QSignalSpy moved(&browse.display, &QSignalBrowseDisplay::startTimeChanged);
    browse.display.setStartTime(12.3456);
    QCOMPARE(browse.bar().value(), 1234);
    QCOMPARE(browse.display.startTime(), 12.3456);
    QCOMPARE(moved.count(), 1);
    browse.display.setStartTime(12.3456);
    QCOMPARE(moved.count(), 1);
}

void BrowseDisplayTest::startStaysWithinTheRecording()
{
    BrowseFixture browse;
    browse.display.grab();
    browse.display.setStartTime(1000.0);
    QCOMPARE(browse.display.startTime(), 60.0 - browse.display.pageSeconds());
    QCOMPARE(browse.bar().value(), browse.bar().maximum());
    browse.display.setStartTime(-3.0);
    QCOMPARE(browse.display.startTime(), 0.0);
}

void BrowseDisplayTest::shorterSignalBringsTheViewBack()
{
    BrowseFixture browse;
    browse.display.setStartTime(40.0);
    // A view that is filtered anew keeps its place.
    browse.display.setSignal(nullptr);
    browse.display.setSignal(browse.signal.get());
    QCOMPARE(browse.display.startTime(), 40.0);
    const auto shorter = display_signal::steadySignal(20);
    QSignalSpy moved(&browse.display, &QSignalBrowseDisplay::startTimeChanged);
    browse.display.setSignal(shorter.get());
    QCOMPARE(browse.display.startTime(), 20.0 - browse.display.pageSeconds());
    QCOMPARE(moved.count(), 1);
    browse.display.setSignal(nullptr);
}

void BrowseDisplayTest::insetTakesItsTimeFromThePage()
{
    BrowseFixture browse;
    const double without = browse.display.pageSeconds();
    browse.display.setShowAverageBeat(true);
    QCOMPARE(browse.display.pageSeconds(), without - 1.2);
    QCOMPARE(browse.bar().maximum(), int((60.0 - browse.display.pageSeconds()) * 100.0));
}

void BrowseDisplayTest::timeAndLeadOfAPlace()
{
    BrowseFixture browse;
    browse.display.setStartTime(10.0);
    QCOMPARE(browse.display.timeAt(0), 10.0);
    QVERIFY(std::fabs(browse.display.timeAt(900) - 10.0 - browse.display.pageSeconds()) < 1e-9);
    browse.display.setChannelVisible(1, false);
    const int height = 400 - browse.bar().height();
    QCOMPARE(browse.display.channelAt(height / 2 - 2), 0);
    QCOMPARE(browse.display.channelAt(height / 2 + 2), 2);
    QCOMPARE(browse.display.channelAt(-1), 0);
    QCOMPARE(browse.display.channelAt(height + 2), 0);
}

void BrowseDisplayTest::extremeSpeedsEnd()
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    BrowseFixture browse;
    browse.display.setSelectedBeat(3);
    for (const double speed : {1e-300, 1e-9, 1e-3, 0.1, 0.0, -25.0, 1e5, 1e300, infinity, notANumber}) {
        for (const bool inset : {false, true}) {
            PictureCounter counter;
            browse.display.setShowAverageBeat(inset);
            browse.display.setSaturationSource(&counter);
            browse.display.setSpeed(speed);
            browse.picture();
            browse.display.setSaturationSource(nullptr);
            QVERIFY(std::isfinite(browse.display.pageSeconds()) && browse.display.pageSeconds() >= 0.0);
            QVERIFY(browse.display.startTime() >= 0.0 && browse.display.startTime() <= 60.0);
        }
    }
    browse.display.setShowAverageBeat(false);
    browse.display.setSpeed(25.0);
    BrowseFixture untouched;
    untouched.display.setSelectedBeat(3);
    QCOMPARE(browse.picture(), untouched.picture());
}

void BrowseDisplayTest::amplitudesThatAreNoNumbersDrawNoTrace()
{
    BrowseFixture browse;
    browse.display.setColor(TraceColor, Qt::red);
    browse.display.setColor(AverageBeatColor, Qt::red);
    browse.display.setShowAverageBeat(true);
    browse.display.setMouseMode(CaliperMode);
    QTest::mouseMove(&browse.display, QPoint(300, 100));
    const auto countRed = [&browse](int fromX) {
        const QImage image = browse.picture();
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = int(fromX * image.devicePixelRatio()); x < image.width(); ++x)
                found += image.pixelColor(x, y) == QColor(Qt::red);
        }
        return found;
    };
    const int behindSeparator = browse.xOf(browse.display.startTime()) + 3;
    const int drawn = countRed(behindSeparator);
    QVERIFY(drawn > 0);
    for (const double amplitude :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        browse.display.setAmplitude(amplitude);
        QCOMPARE(countRed(behindSeparator), 0);
    }
    // Finite ones are drawn, however far they reach.
    for (const double amplitude : {1e9, 1e300, -1e300}) {
        browse.display.setAmplitude(amplitude);
        QVERIFY(countRed(behindSeparator) > 0);
    }
    browse.display.setAmplitude(10.0);
    QCOMPARE(countRed(behindSeparator), drawn);
}

void BrowseDisplayTest::tinyWidgetsEnd()
{
    BrowseFixture browse;
    browse.display.setShowAverageBeat(true);
    browse.display.setSelectedBeat(3);
    const QImage before = browse.picture();
    for (const double speed : {25.0, 1e-9}) {
        browse.display.setSpeed(speed);
        for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(2, 400), QSize(400, 1), QSize(7, 25)}) {
            browse.display.resize(size);
            browse.display.grab();
            QCOMPARE(browse.display.size(), size);
        }
    }
    browse.display.setSpeed(25.0);
    browse.display.resize(900, 400);
    browse.display.grab();
    browse.display.setStartTime(0.0);
    QCOMPARE(browse.picture(), before);
}

void BrowseDisplayTest::withoutSignalImpossibleStartsAreRefused()
{
    QSignalBrowseDisplay display;
    display.setStartTime(12.5);
    QSignalSpy moved(&display, &QSignalBrowseDisplay::startTimeChanged);
    for (const double start :
         {-0.1, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        display.setStartTime(start);
        QCOMPARE(display.startTime(), 12.5);
    }
    QCOMPARE(moved.count(), 0);
}

QTEST_MAIN(BrowseDisplayTest)

#include "BrowseDisplayTest.moc"
