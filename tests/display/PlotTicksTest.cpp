#include "display/PlotTicks.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();

std::vector<double> valuesOf(const TTicks& ticks)
{
    std::vector<double> values;
    for (int i = 0; i < ticks.count; ++i)
        values.push_back(ticks.value(i));
    return values;
}

} // namespace

class PlotTicksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStepIsTheNextOfTwoFiveTen_data();
    void theStepIsTheNextOfTwoFiveTen();
    void noScaleHasNoStep();
    void datesStepAsAClockDoes_data();
    void datesStepAsAClockDoes();
    void ticksAreMultiplesOfTheStepWithinTheRange();
    void theFirstTickCanBeTheMinimum();
    void ticksAtTheEndsAreKept_data();
    void ticksAtTheEndsAreKept();
    void thinnedTicksKeepTheirStep();
    void zeroHasNoSign();
    void ticksAreNeverMoreThanAsked();
    void noStepHasNoTicks();
    void labelsFollowTheirFormat_data();
    void labelsFollowTheirFormat();
    void dateLabelsCountFromTheEpochInEveryTimeZone_data();
    void dateLabelsCountFromTheEpochInEveryTimeZone();
    void labelsAtTheEndsAreMovedInside();
    void anEndThatMovedOntoItsNeighbourIsDropped();
    void aLabelWiderThanItsAxisIsDropped();
    void wideLabelsStandAtEveryNthTick_data();
    void wideLabelsStandAtEveryNthTick();
};

void PlotTicksTest::theStepIsTheNextOfTwoFiveTen_data()
{
    QTest::addColumn<double>("pixels");
    QTest::addColumn<double>("perUnit");
    QTest::addColumn<double>("step");
    QTest::newRow("1") << 10.0 << 10.0 << 2.0;
    QTest::newRow("2") << 20.0 << 10.0 << 2.0;
    QTest::newRow("just above 2") << 20.1 << 10.0 << 5.0;
    QTest::newRow("5") << 50.0 << 10.0 << 5.0;
    QTest::newRow("just above 5") << 50.1 << 10.0 << 10.0;
    QTest::newRow("9.99") << 99.9 << 10.0 << 10.0;
    QTest::newRow("10 begins the next power") << 100.0 << 10.0 << 20.0;
    QTest::newRow("1000, where logarithms may err") << 1000.0 << 1.0 << 2000.0;
    QTest::newRow("a hair below 1000") << std::nextafter(1000.0, 0.0) << 1.0 << 1000.0;
    QTest::newRow("0.03") << 3.0 << 100.0 << 0.05;
    QTest::newRow("0.001") << 1.0 << 1000.0 << 0.002;
    QTest::newRow("0 has the exponent 0") << 0.0 << 10.0 << 2.0;
    QTest::newRow("a negative keeps its sign in the mantissa") << -70.0 << 10.0 << 2.0;
    QTest::newRow("a large negative") << -700.0 << 10.0 << 20.0;
}

void PlotTicksTest::theStepIsTheNextOfTwoFiveTen()
{
    QFETCH(double, pixels);
    QFETCH(double, perUnit);
    QTEST(tickStep(pixels, perUnit), "step");
}

void PlotTicksTest::noScaleHasNoStep()
{
    QCOMPARE(tickStep(20.0, 0.0), 0.0);
    QCOMPARE(tickStep(20.0, notANumber), 0.0);
}

void PlotTicksTest::datesStepAsAClockDoes_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("step");
    QTest::newRow("a moment") << 0.01 << 1.0;
    QTest::newRow("1 s") << 1.0 << 1.0;
    QTest::newRow("above 1 s") << 1.1 << 5.0;
    QTest::newRow("6 s") << 6.0 << 10.0;
    QTest::newRow("11 s") << 11.0 << 30.0;
    QTest::newRow("31 s") << 31.0 << 60.0;
    QTest::newRow("61 s") << 61.0 << 300.0;
    QTest::newRow("301 s") << 301.0 << 600.0;
    QTest::newRow("601 s") << 601.0 << 1800.0;
    QTest::newRow("1801 s") << 1801.0 << 3600.0;
    QTest::newRow("never above an hour") << 90000.0 << 3600.0;
}

void PlotTicksTest::datesStepAsAClockDoes()
{
    QFETCH(double, seconds);
    QTEST(dateTickStep(seconds * 4.0, 4.0), "step");
}

void PlotTicksTest::ticksAreMultiplesOfTheStepWithinTheRange()
{
    QCOMPARE(valuesOf(ticksWithin(47.0, 101.0, 20.0, 100)), (std::vector<double>{60, 80, 100}));
    QCOMPARE(valuesOf(ticksWithin(-0.25, 0.25, 0.2, 100)), (std::vector<double>{-0.2, 0.0, 0.2}));
    QVERIFY(valuesOf(ticksWithin(41.0, 59.0, 20.0, 100)).empty());
}

void PlotTicksTest::theFirstTickCanBeTheMinimum()
{
    QCOMPARE(valuesOf(ticksWithin(40.0, 80.0, 20.0, 100)), (std::vector<double>{40, 60, 80}));
}

void PlotTicksTest::zeroHasNoSign()
{
    const TTicks ticks = ticksWithin(-0.5, 0.5, 1.0, 100);
    QCOMPARE(ticks.count, 1);
    QCOMPARE(tickLabel(QStringLiteral("%g"), ticks.value(0)), QStringLiteral("0"));
}

void PlotTicksTest::ticksAreNeverMoreThanAsked()
{
    const TTicks month = ticksWithin(0.0, 30 * 86400.0, 3600.0, 400);
    QVERIFY(month.count > 200);
    QVERIFY(month.count <= 400);
    QCOMPARE(month.step, 3600.0);
    QCOMPARE(month.value(1) - month.value(0), 7200.0);
    QVERIFY(ticksWithin(-1e300, 1e300, 1e-3, 400).count <= 400);
    QVERIFY(ticksWithin(1e15, 1e15 + 10.0, 1e-9, 400).count <= 400);
}

void PlotTicksTest::noStepHasNoTicks()
{
    QCOMPARE(ticksWithin(0.0, 10.0, 0.0, 100).count, 0);
    QCOMPARE(ticksWithin(notANumber, 10.0, 1.0, 100).count, 0);
    QCOMPARE(ticksWithin(0.0, 10.0, 1.0, 0).count, 0);
}

void PlotTicksTest::labelsFollowTheirFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("label");
    const auto row = [](const char* format, double value, const char* label) {
        QTest::newRow(format) << QString::fromUtf8(format) << value << QString::fromUtf8(label);
    };
    row("%g", 120.0, "120");
    row("%+.1f", 0.3, "+0.3");
    row("%.0f", 119.6, "120");
    row("%5.2f mV", 1.5, " 1.50 mV");
    row("%.0f%%", 85.0, "85%");
    row("%d", 85.9, "85");
    row("%g µV", 3.0, "3 µV");
    // Formats that would read what was not given.
    row("%s", 120.0, "120");
    row("%g %g", 120.0, "120");
    row("%n", 120.0, "120");
    row("%*g", 120.0, "120");
    row("%lld", 120.0, "120");
    row("%999g", 120.0, "120");
    row("no conversion", 120.0, "120");
    row("", 120.0, "120");
    row("100%", 120.0, "120");
}

void PlotTicksTest::labelsFollowTheirFormat()
{
    QFETCH(QString, format);
    QFETCH(double, value);
    QTEST(tickLabel(format, value), "label");
}

void PlotTicksTest::dateLabelsCountFromTheEpochInEveryTimeZone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::newRow("UTC") << QByteArray("UTC");
    QTest::newRow("half an hour off") << QByteArray("Asia/Kolkata");
}

void PlotTicksTest::dateLabelsCountFromTheEpochInEveryTimeZone()
{
    QFETCH(QByteArray, zone);
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", zone);
    const QString start = dateTickLabel(QStringLiteral("mm:ss"), 0.0);
    const QString later = dateTickLabel(QStringLiteral("mm:ss"), 754.0);
    const QString date = dateTickLabel(QStringLiteral("yyyy-MM-dd hh:mm"), 1000000000.0);
    before.isNull() ? qunsetenv("TZ") : qputenv("TZ", before);
    QCOMPARE(start, QStringLiteral("00:00"));
    QCOMPARE(later, QStringLiteral("12:34"));
    QCOMPARE(date, QStringLiteral("2001-09-09 01:46"));
}

void PlotTicksTest::labelsAtTheEndsAreMovedInside()
{
    std::vector<TLabelSpan> labels{{-10, 10}, {40, 60}, {90, 110}};
    fitLabels(labels, 0, 100, 4);
    QCOMPARE(labels[0].from, 0);
    QCOMPARE(labels[0].to, 20);
    QCOMPARE(labels[1].from, 40);
    QCOMPARE(labels[2].from, 80);
    QCOMPARE(labels[2].to, 100);
    QVERIFY(labels[0].shown && labels[1].shown && labels[2].shown);
}

void PlotTicksTest::anEndThatMovedOntoItsNeighbourIsDropped()
{
    std::vector<TLabelSpan> labels{{-15, 15}, {20, 50}, {60, 90}, {95, 125}};
    fitLabels(labels, 0, 110, 4);
    QVERIFY(!labels[0].shown);
    QVERIFY(labels[1].shown && labels[2].shown);
    QVERIFY(!labels[3].shown);

    std::vector<TLabelSpan> two{{-15, 15}, {20, 50}};
    fitLabels(two, 0, 40, 4);
    QVERIFY(!two[0].shown || !two[1].shown);
    QVERIFY(two[0].shown || two[1].shown);
}

void PlotTicksTest::aLabelWiderThanItsAxisIsDropped()
{
    std::vector<TLabelSpan> labels{{-15, 25}};
    fitLabels(labels, 0, 30, 4);
    QVERIFY(!labels[0].shown);
    std::vector<TLabelSpan> none;
    fitLabels(none, 0, 30, 4);
    QVERIFY(none.empty());
}

void PlotTicksTest::wideLabelsStandAtEveryNthTick_data()
{
    QTest::addColumn<int>("widest");
    QTest::addColumn<double>("pixelsPerTick");
    QTest::addColumn<int>("stride");
    QTest::newRow("room for all") << 30 << 30.0 << 1;
    QTest::newRow("for every second") << 31 << 30.0 << 2;
    QTest::newRow("for a few") << 30 << 2.0 << 15;
    QTest::newRow("no distance") << 30 << 0.0 << 1;
}

void PlotTicksTest::wideLabelsStandAtEveryNthTick()
{
    QFETCH(int, widest);
    QFETCH(double, pixelsPerTick);
    QTEST(labelStride(widest, pixelsPerTick), "stride");
}

void PlotTicksTest::ticksAtTheEndsAreKept()
{
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(double, step);
    QFETCH(double, first);
    QFETCH(int, count);
    const TTicks ticks = ticksWithin(min, max, step, 100);
    QCOMPARE(ticks.firstIndex, first);
    QCOMPARE(ticks.count, count);
}

void PlotTicksTest::ticksAtTheEndsAreKept_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("first");
    QTest::addColumn<int>("count");
    // Quotients that fall short of, or exceed, the whole number by their last bit.
    QTest::newRow("maximum 0.6") << 0.0 << 0.6 << 0.2 << 0.0 << 4;
    QTest::newRow("minimum 0.14") << 0.14 << 0.2 << 0.02 << 7.0 << 4;
    QTest::newRow("minimum -0.6") << -0.6 << 0.0 << 0.2 << -3.0 << 4;
    QTest::newRow("visibly inside") << 0.1401 << 0.1999 << 0.02 << 8.0 << 2;
}

void PlotTicksTest::thinnedTicksKeepTheirStep()
{
    const TTicks ticks = ticksWithin(5.0, 100.0, 1.0, 10);
    QCOMPARE(ticks.step, 1.0);
    QCOMPARE(ticks.stride, 10.0);
    QCOMPARE(valuesOf(ticks), (std::vector<double>{10, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
    // The same ones while the axis is moved.
    QCOMPARE(valuesOf(ticksWithin(8.0, 103.0, 1.0, 10)), valuesOf(ticks));
}

QTEST_MAIN(PlotTicksTest)
#include "PlotTicksTest.moc"
