#include "analysis/signals/TInt16Signal.h"
#include "display/PageLayout.h"
#include "display/TLeadRows.h"

#include <QtTest>

class PageGeometryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scaleFollowsTheReportedSize()
    {
        const auto scale = PageScale::of(QSize(1000, 400), 250.0, 1.0);
        QCOMPARE(scale.pixelsPerCm, 40.0);
        QCOMPARE(scale.pageSeconds(25.0), 10.0);
    }

    void absurdSizesCountAs96DotsPerInch_data()
    {
        QTest::addColumn<double>("reportedMm");
        QTest::newRow("none") << 0.0;
        QTest::newRow("negative") << -250.0;
        QTest::newRow("not a number") << qQNaN();
        QTest::newRow("endless") << qInf();
        QTest::newRow("49 dots per inch") << 1000 * 25.4 / 49.0;
        QTest::newRow("401 dots per inch") << 1000 * 25.4 / 401.0;
    }

    void absurdSizesCountAs96DotsPerInch()
    {
        QFETCH(double, reportedMm);
        const auto scale = PageScale::of(QSize(1000, 400), reportedMm, 1.0);
        QCOMPARE(scale.pixelsPerCm, 96.0 / 2.54);
        QCOMPARE(scale.widthMm, 1000 * 25.4 / 96.0);
    }

    void densitiesFrom50To400AreBelieved_data()
    {
        QTest::addColumn<double>("density");
        QTest::newRow("50.1") << 50.1;
        QTest::newRow("399.9") << 399.9;
    }

    void densitiesFrom50To400AreBelieved()
    {
        QFETCH(double, density);
        QCOMPARE(PageScale::of(QSize(1000, 400), 1000 * 25.4 / density, 1.0).pixelsPerCm, density / 2.54);
    }

    void denseScreensKeepTheMillimetres_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::newRow("1") << 1.0;
        QTest::newRow("1.5") << 1.5;
        QTest::newRow("2") << 2.0;
    }

    /// 800 plain pixels at 100 dots per inch are 203.2 mm, on however many device pixels they are drawn.
    void denseScreensKeepTheMillimetres()
    {
        QFETCH(double, ratio);
        const int pixels = static_cast<int>(800 * ratio);
        const auto scale = PageScale::of(QSize(pixels, 400), pixels * 0.254, ratio);
        QCOMPARE(scale.widthMm, 203.2);
        QCOMPARE(scale.pixelsPerCm * 20.32, double(pixels));
    }

    void emptyPictureHasNoUsablePage()
    {
        const auto scale = PageScale::of(QSize(0, 0), 0.0, 1.0);
        QCOMPARE(scale.pixelsPerCm, 0.0);
        QVERIFY(!isUsablePage(scale.pageSeconds(25.0)));
        QVERIFY(!layOutPage(scale, 25.0, 1.0).hasTrace());
    }

    void insetTakesTheBeatAndFiveMillimetresFromThePage()
    {
        const auto scale = PageScale::of(QSize(1000, 400), 250.0, 1.0);
        const auto layout = layOutPage(scale, 25.0, 1.0);
        QCOMPARE(layout.insetLeft, 10);
        QCOMPARE(layout.insetWidth, 100);
        QCOMPARE(layout.traceLeft, 120);
        QCOMPARE(layout.traceWidth, 880);
        QCOMPARE(layout.pageSeconds, 8.8);
    }

    void pageWithoutInsetIsTheWholeWidth()
    {
        const auto layout = layOutPage(PageScale::of(QSize(1000, 400), 250.0, 1.0), 25.0, 0.0);
        QCOMPARE(layout.traceLeft, 0);
        QCOMPARE(layout.traceWidth, 1000);
        QCOMPARE(layout.pageSeconds, 10.0);
    }

    void unusableSpeedsLeaveNoTrace_data()
    {
        QTest::addColumn<double>("speed");
        QTest::newRow("0") << 0.0;
        QTest::newRow("negative") << -25.0;
        QTest::newRow("not a number") << qQNaN();
        QTest::newRow("endless") << qInf();
        QTest::newRow("no room beside the inset") << 300.0;
    }

    void unusableSpeedsLeaveNoTrace()
    {
        QFETCH(double, speed);
        const auto scale = PageScale::of(QSize(1000, 400), 250.0, 1.0);
        QVERIFY(!layOutPage(scale, speed, 1.0).hasTrace());
    }

    void sweepRestartsAtTheNextPage_data()
    {
        QTest::addColumn<int>("samples");
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("pageStart");
        QTest::addColumn<int>("cursor");
        QTest::newRow("nothing yet") << 0 << 0 << 0 << 0;
        QTest::newRow("first sample") << 1 << 0 << 0 << 0;
        QTest::newRow("half a page") << 2501 << 0 << 0 << 500;
        QTest::newRow("last sample of the page") << 4999 << 0 << 0 << 999;
        QTest::newRow("page just full") << 5000 << 1 << 5000 << 0;
        QTest::newRow("second page") << 5006 << 1 << 5000 << 1;
        QTest::newRow("third page") << 10501 << 2 << 10000 << 100;
    }

    void sweepRestartsAtTheNextPage()
    {
        QFETCH(int, samples);
        TInt16Signal signal(512, 20000, 1, 500);
        const std::vector<short> zeros(samples);
        signal.addInterleaved(reinterpret_cast<const char*>(zeros.data()), samples * 2);
        const auto layout = layOutPage(PageScale::of(QSize(1000, 400), 250.0, 1.0), 25.0, 0.0);
        const auto sweep = sweepPosition(signal, layout);
        QTEST(sweep.page, "page");
        QTEST(sweep.pageStart, "pageStart");
        QTEST(sweep.cursorColumn, "cursor");
        QCOMPARE(sweep.pageSamples, 5000);
        QCOMPARE(sweep.firstPage, sweep.page == 0);
    }

    void rowsFollowTheOrder()
    {
        TLeadRows rows;
        QVERIFY(rows.setOrder(0, 2));
        QVERIFY(rows.setOrder(2, 0));
        QVERIFY(rows.setVisible(1, false));
        QVERIFY(rows.setInverted(0, true));
        QString shown;
        rows.forEach(4, [&](int row, int channel, bool inverted) {
            shown += QStringLiteral("%1:%2%3 ")
                         .arg(row)
                         .arg(inverted ? QStringLiteral("-") : QString())
                         .arg(channel);
        });
        QCOMPARE(shown, QStringLiteral("0:2 1:-0 2:3 "));
        QCOMPARE(rows.visibleCount(4), 3);
    }

    void rowsTellWhetherAnythingChanged()
    {
        TLeadRows rows;
        QVERIFY(!rows.setVisible(3, true));
        QVERIFY(!rows.setInverted(3, false));
        QVERIFY(!rows.setOrder(3, 3));
        QVERIFY(!rows.setVisible(-1, false));
        QVERIFY(!rows.setInverted(16, true));
        QVERIFY(!rows.setOrder(0, 16));
        QVERIFY(!rows.setOrder(-1, 0));
    }
};

QTEST_GUILESS_MAIN(PageGeometryTest)
#include "PageGeometryTest.moc"
