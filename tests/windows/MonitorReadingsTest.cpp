#include "windows/MonitorReadings.h"

#include <QtTest>

class MonitorReadingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHeartRateIsAWholeNumber_data()
    {
        QTest::addColumn<double>("rr");
        QTest::addColumn<QString>("expected");
        QTest::newRow("85.7") << 0.7 << QStringLiteral("85");
        QTest::newRow("60") << 1.0 << QStringLiteral("60");
        QTest::newRow("fast") << 0.3 << QStringLiteral("200");
        QTest::newRow("one a minute") << 60.0 << QStringLiteral("1");
        QTest::newRow("less than one a minute") << 60.1 << QString();
        QTest::newRow("none") << 0.0 << QString();
        QTest::newRow("negative") << -0.8 << QString();
    }

    void theHeartRateIsAWholeNumber()
    {
        QFETCH(double, rr);
        QTEST(heartRateText(rr), "expected");
    }

    void theTimeHasTwoDigitsOfSeconds_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("expected");
        QTest::newRow("start") << 0.0 << QStringLiteral(" 0:00");
        QTest::newRow("fractions are cut") << 5.99 << QStringLiteral(" 0:05");
        QTest::newRow("a minute") << 60.0 << QStringLiteral(" 1:00");
        QTest::newRow("minutes") << 754.2 << QStringLiteral("12:34");
        QTest::newRow("more than an hour") << 6000.0 << QStringLiteral("100:00");
    }

    void theTimeHasTwoDigitsOfSeconds()
    {
        QFETCH(double, seconds);
        QTEST(elapsedText(seconds), "expected");
    }
};

QTEST_GUILESS_MAIN(MonitorReadingsTest)
#include "MonitorReadingsTest.moc"
