#include "display/BrowsePage.h"

#include <QtTest>

namespace {

/// 200 mm wide at 4 pixels per mm.
PageScale scale()
{
    return PageScale::of(QSize(800, 400), 200.0, 1.0);
}

} // namespace

class BrowsePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pageLastsItsWidthAtTheSpeed();
    void insetAndFiveMillimetresAreTakenFromThePage();
    void insetThatLeavesNoTimeGivesNone();
    void timesRunAcrossTheTrace();
    void placesComeBackFromTimes();
    void timesInTheInset();
    void withoutInsetThereIsNoTimeInTheBeat();
    void scrollBarCountsHundredths();
    void shortRecordingDisablesTheScrollBar_data();
    void shortRecordingDisablesTheScrollBar();
    void startIsKeptWithinTheRecording();
    void rulerTakesTheFirstStepThatHoldsALabel_data();
    void rulerTakesTheFirstStepThatHoldsALabel();
    void rulerTellsMinutesModuloAnHour();
};

void BrowsePageTest::pageLastsItsWidthAtTheSpeed()
{
    QCOMPARE(browsePage(scale(), 25.0, 0.0, 0.0).layout.pageSeconds, 8.0);
    QCOMPARE(browsePage(scale(), 50.0, 0.0, 0.0).layout.pageSeconds, 4.0);
    QCOMPARE(browsePage(scale(), 0.0, 0.0, 0.0).layout.pageSeconds, 0.0);
}

void BrowsePageTest::insetAndFiveMillimetresAreTakenFromThePage()
{
    const BrowsePage page = browsePage(scale(), 25.0, 1.0, 0.0);
    QCOMPARE(page.layout.pageSeconds, 8.0 - 1.0 - 0.2);
    QCOMPARE(page.layout.insetWidth, 100);
    QCOMPARE(page.layout.traceLeft, 120);
}

void BrowsePageTest::insetThatLeavesNoTimeGivesNone()
{
    const PageScale narrow = PageScale::of(QSize(80, 400), 20.0, 1.0);
    QCOMPARE(browsePage(narrow, 25.0, 1.0, 0.0).layout.pageSeconds, 0.0);
}

void BrowsePageTest::timesRunAcrossTheTrace()
{
    const BrowsePage page = browsePage(scale(), 25.0, 1.0, 30.0);
    QCOMPARE(page.timeAt(120), 30.0);
    QCOMPARE(page.timeAt(460), 33.4);
    QCOMPARE(page.timeAt(800), 36.8);
    QVERIFY(page.isInInset(119));
    QVERIFY(!page.isInInset(120));
}

void BrowsePageTest::placesComeBackFromTimes()
{
    const BrowsePage page = browsePage(scale(), 25.0, 0.0, 30.0);
    QCOMPARE(page.pixelsPerSecond(), 100.0);
    QCOMPARE(page.xOf(page.timeAt(333)), 333.0);
}

void BrowsePageTest::timesInTheInset()
{
    const BrowsePage page = browsePage(scale(), 25.0, 1.0, 30.0);
    QCOMPARE(page.timeInBeat(10), 0.0);
    QCOMPARE(page.timeInBeat(60), 0.5);
    QCOMPARE(page.timeInBeat(110), 1.0);
    QCOMPARE(page.timeInBeat(121), 0.0);
}

void BrowsePageTest::withoutInsetThereIsNoTimeInTheBeat()
{
    QCOMPARE(browsePage(scale(), 25.0, 0.0, 30.0).timeInBeat(-5), 0.0);
}

void BrowsePageTest::scrollBarCountsHundredths()
{
    const ScrollRange range = scrollRange(60.0, 8.456, 12.349);
    QCOMPARE(range.maximum, 5154);
    QCOMPARE(range.singleStep, 84);
    QCOMPARE(range.pageStep, 845);
    QCOMPARE(range.value, 1234);
    QVERIFY(range.enabled());
}

void BrowsePageTest::shortRecordingDisablesTheScrollBar_data()
{
    QTest::addColumn<double>("duration");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("shorter than a page") << 5.0 << false;
    QTest::newRow("as long as a page") << 8.0 << false;
    QTest::newRow("less than a step longer") << 8.009 << false;
    QTest::newRow("a step longer") << 8.011 << true;
}

void BrowsePageTest::shortRecordingDisablesTheScrollBar()
{
    QFETCH(double, duration);
    QTEST(scrollRange(duration, 8.0, 0.0).enabled(), "enabled");
}

void BrowsePageTest::startIsKeptWithinTheRecording()
{
    QCOMPARE(clampedStart(-1.0, 60.0, 8.0), 0.0);
    QCOMPARE(clampedStart(51.9, 60.0, 8.0), 51.9);
    QCOMPARE(clampedStart(59.0, 60.0, 8.0), 52.0);
    QCOMPARE(clampedStart(2.0, 5.0, 8.0), 0.0);
    QCOMPARE(clampedStart(qQNaN(), 60.0, 8.0), 0.0);
}

void BrowsePageTest::rulerTakesTheFirstStepThatHoldsALabel_data()
{
    QTest::addColumn<double>("labelSeconds");
    QTest::addColumn<int>("step");
    QTest::newRow("less than a second") << 0.4 << 1;
    QTest::newRow("a second") << 1.0 << 1;
    QTest::newRow("more") << 1.01 << 5;
    QTest::newRow("seven") << 7.0 << 10;
    QTest::newRow("eleven") << 11.0 << 30;
    QTest::newRow("half a minute") << 30.0 << 30;
    QTest::newRow("beyond") << 31.0 << 60;
    QTest::newRow("a page of no time") << qInf() << 60;
}

void BrowsePageTest::rulerTakesTheFirstStepThatHoldsALabel()
{
    QFETCH(double, labelSeconds);
    QTEST(rulerStep(labelSeconds), "step");
}

void BrowsePageTest::rulerTellsMinutesModuloAnHour()
{
    QCOMPARE(rulerText(0), QStringLiteral("00:00"));
    QCOMPARE(rulerText(75), QStringLiteral("01:15"));
    QCOMPARE(rulerText(3605), QStringLiteral("00:05"));
}

QTEST_MAIN(BrowsePageTest)

#include "BrowsePageTest.moc"
