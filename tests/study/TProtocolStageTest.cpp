#include "study/TProtocolStage.h"

#include <QtTest>

#include <limits>

namespace {

constexpr auto speed = TProtocolStage::speedKey;
constexpr auto workload = TProtocolStage::workloadKey;

} // namespace

class TProtocolStageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewStageIsAtRestWithoutDurationOrLoad()
    {
        const TProtocolStage stage;
        QCOMPARE(stage.phase(), TStagePhase::Rest);
        QCOMPARE(stage.duration(), 0.0);
        for (const char* key : {"speed", "incline", "workload", "dose"})
            QCOMPARE(stage.value(key), 0.0);
    }

    void theKeysAreThoseOfTheFiles()
    {
        QCOMPARE(TProtocolStage::speedKey, "speed");
        QCOMPARE(TProtocolStage::inclineKey, "incline");
        QCOMPARE(TProtocolStage::workloadKey, "workload");
        QCOMPARE(TProtocolStage::doseKey, "dose");
    }

    void phaseAndDurationAreKept()
    {
        TProtocolStage stage(TStagePhase::Exercise, 180.0);
        QCOMPARE(stage.phase(), TStagePhase::Exercise);
        QCOMPARE(stage.duration(), 180.0);
        stage.setPhase(TStagePhase::Recovery);
        stage.setDuration(90.5);
        QCOMPARE(stage.phase(), TStagePhase::Recovery);
        QCOMPARE(stage.duration(), 90.5);
    }

    void milesAreSetShorterThanTheyAreRead()
    {
        TProtocolStage stage;
        stage.setValue(speed, 5.0, "mph");
        QCOMPARE(stage.value(speed), 8.0);
        QCOMPARE(stage.value(speed, "mph"), 8.0 / 1.609344);
        QVERIFY(std::abs(stage.value(speed, "mph") - 4.971) < 0.0005);
    }

    void workloadSurvivesTheWayThereAndBack()
    {
        TProtocolStage stage;
        stage.setValue(workload, 600.0, "kgm/min");
        QCOMPARE(stage.value(workload), 100.0);
        QCOMPARE(stage.value(workload, "kgm/min"), 600.0);
    }

    void namesOfUnitsAreReadInAnyCase()
    {
        TProtocolStage stage;
        stage.setValue(speed, 5.0, "MPH");
        QCOMPARE(stage.value(speed), 8.0);
        QCOMPARE(stage.value(speed, "Mph"), 8.0 / 1.609344);
        stage.setValue(workload, 600.0, "KGM/Min");
        QCOMPARE(stage.value(workload), 100.0);
        QCOMPARE(stage.value(workload, "KGM/MIN"), 600.0);
    }

    void otherUnitsPassUnchanged()
    {
        TProtocolStage stage;
        for (const char* unit : {"", "km/h", "watts", "%", "mp", "mph "}) {
            stage.setValue(speed, 5.4, unit);
            QCOMPARE(stage.value(speed), 5.4);
            QCOMPARE(stage.value(speed, unit), 5.4);
        }
    }

    void valuesOfDifferentKeysStandSideBySide()
    {
        TProtocolStage stage;
        stage.setValue("speed", 2.7);
        stage.setValue("incline", 10.0);
        stage.setValue("dose", 0.25);
        QCOMPARE(stage.value("speed"), 2.7);
        QCOMPARE(stage.value("incline"), 10.0);
        QCOMPARE(stage.value("dose"), 0.25);
        QCOMPARE(stage.value("workload"), 0.0);
    }

    void aLoadThatIsNoNumberIsNone()
    {
        TProtocolStage stage;
        for (const double bad :
             {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
            stage.setValue(speed, bad);
            QCOMPARE(stage.value(speed), 0.0);
        }
    }

    void stagesAreEqualWhenAllOfThemIs()
    {
        TProtocolStage one(TStagePhase::Exercise, 60.0);
        one.setValue(speed, 4.0);
        TProtocolStage other = one;
        QVERIFY(one == other);
        other.setValue(speed, 4.1);
        QVERIFY(!(one == other));
    }
};

QTEST_GUILESS_MAIN(TProtocolStageTest)
#include "TProtocolStageTest.moc"
