#include "study/JsonBounds.h"

#include <QtTest>

/// What the JSON parser would need is foreseen before it runs.
class JsonCostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsMadeToEatMemoryAreTurnedAway_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("affordable");
        QTest::newRow("few small objects") << QByteArray("{\"\":0},") << 900000 << true;
        QTest::newRow("many small objects") << QByteArray("{\"\":0},") << 1200000 << false;
        QTest::newRow("few small arrays") << QByteArray("[0],") << 1200000 << true;
        QTest::newRow("many small arrays") << QByteArray("[0],") << 1400000 << false;
        QTest::newRow("few numbers") << QByteArray("1,") << 8000000 << true;
        QTest::newRow("numbers that double the array once more") << QByteArray("1,") << 8388608 << false;
        // The trends of nine hours at 120 beats a minute: 37 of them, each with times and values.
        QTest::newRow("nine hours of exercise")
            << QByteArray("-0.12345678901234567,") << 9 * 60 * 120 * 2 * 37 << true;
    }

    void textsMadeToEatMemoryAreTurnedAway()
    {
        QFETCH(QByteArray, unit);
        QFETCH(int, count);
        QFETCH(bool, affordable);
        TJsonCost cost;
        cost.add("[", 1);
        for (int i = 0; i < count; ++i)
            cost.add(unit.constData(), unit.size());
        QCOMPARE(cost.isAffordable(), affordable);
    }

    void bracketsWithinTextsAreNoContainers()
    {
        TJsonCost cost;
        const QByteArray text = "\"" + QByteArray(2000000, '[') + "\"";
        cost.add(text.constData(), text.size());
        QVERIFY(cost.isAffordable());
    }
};

QTEST_GUILESS_MAIN(JsonCostTest)
#include "JsonCostTest.moc"
