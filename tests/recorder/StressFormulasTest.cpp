#include "recorder/StressFormulas.h"

#include <QtTest>

class StressFormulasTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void treadmillBelow5KmhIsWalkedAndFromThereOnRun_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("incline");
        QTest::addColumn<double>("mets");
        QTest::newRow("standing") << 0.0 << 0.0 << 1.0;
        QTest::newRow("standing on a slope") << 0.0 << 12.0 << 1.0;
        // 45 m/min: (8.1 + 4.5 + 3.5) / 3.5
        QTest::newRow("2.7 km/h, 10 %") << 2.7 << 10.0 << 4.6;
        // 66.66 m/min: (14.4 + 6.67 + 3.5) / 3.5
        QTest::newRow("4 km/h, 12 %") << 4.0 << 12.0 << 7.01904762;
        // 83.1667 m/min: (8.31667 + 3.5) / 3.5
        QTest::newRow("4.99 km/h, level") << 4.99 << 0.0 << 3.37619048;
        // 83.3333 m/min: (16.66667 + 3.5) / 3.5
        QTest::newRow("5 km/h, level") << 5.0 << 0.0 << 5.76190476;
        // 83.1667 m/min: (14.97 + 8.31667 + 3.5) / 3.5
        QTest::newRow("4.99 km/h, 10 %") << 4.99 << 10.0 << 7.65333333;
        // 83.3333 m/min: (7.5 + 16.66667 + 3.5) / 3.5
        QTest::newRow("5 km/h, 10 %") << 5.0 << 10.0 << 7.90476190;
        // 160 m/min: (25.92 + 32 + 3.5) / 3.5
        QTest::newRow("9.6 km/h, 18 %") << 9.6 << 18.0 << 17.54857143;
    }

    void treadmillBelow5KmhIsWalkedAndFromThereOnRun()
    {
        QFETCH(double, speed);
        QFETCH(double, incline);
        QFETCH(double, mets);
        TProtocolStage stage;
        stage.setValue(TProtocolStage::speedKey, speed);
        stage.setValue(TProtocolStage::inclineKey, incline);
        QVERIFY(std::abs(stress::metsOfStage(TProtocolType::Treadmill, stage, 70.0) - mets) < 1e-7);
        QCOMPARE(stress::metsOfStage(TProtocolType::Treadmill, stage, 0.0),
                 stress::metsOfStage(TProtocolType::Treadmill, stage, 70.0));
    }

    void ergometerNeedsTheWeight_data()
    {
        QTest::addColumn<double>("workload");
        QTest::addColumn<double>("weight");
        QTest::addColumn<double>("mets");
        QTest::newRow("no load") << 0.0 << 80.0 << 2.0;
        // (13.5 + 7) / 3.5
        QTest::newRow("100 W, 80 kg") << 100.0 << 80.0 << 5.85714286;
        // (54 + 7) / 3.5
        QTest::newRow("300 W, 60 kg") << 300.0 << 60.0 << 17.42857143;
        QTest::newRow("no weight") << 100.0 << 0.0 << 0.0;
        QTest::newRow("negative weight") << 100.0 << -80.0 << 0.0;
    }

    void ergometerNeedsTheWeight()
    {
        QFETCH(double, workload);
        QFETCH(double, weight);
        QFETCH(double, mets);
        TProtocolStage stage;
        stage.setValue(TProtocolStage::workloadKey, workload);
        QVERIFY(std::abs(stress::metsOfStage(TProtocolType::Ergometer, stage, weight) - mets) < 1e-7);
    }

    void otherTestsHaveNoMets()
    {
        TProtocolStage stage;
        stage.setValue(TProtocolStage::speedKey, 9.0);
        stage.setValue(TProtocolStage::inclineKey, 9.0);
        stage.setValue(TProtocolStage::workloadKey, 90.0);
        stage.setValue(TProtocolStage::doseKey, 9.0);
        for (const auto type : {TProtocolType::Ecg, TProtocolType::TiltTest, TProtocolType::Pharmacologic})
            QCOMPARE(stress::metsOfStage(type, stage, 70.0), 0.0);
    }

    void oxygenUptakeIsThreeAndAHalfPerMet()
    {
        QCOMPARE(stress::vo2OfMets(10.0), 35.0);
        QCOMPARE(stress::vo2OfMets(0.0), 0.0);
    }

    void doubleProductIsOfWholeNumbers()
    {
        QCOMPARE(stress::doubleProduct(120.0, 70.0), 8400.0);
        QCOMPARE(stress::doubleProduct(120.9, 70.99), 8400.0);
        QCOMPARE(stress::doubleProduct(0.0, 70.0), 0.0);
    }
};

QTEST_GUILESS_MAIN(StressFormulasTest)

#include "StressFormulasTest.moc"
