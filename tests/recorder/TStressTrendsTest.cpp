#include "recorder/TStressTrends.h"

#include "study/TStudyResults.h"

#include <QtTest>

#include <cmath>
#include <random>

namespace {

TProtocolStage stageOf(double speed, double incline)
{
    TProtocolStage stage(TStagePhase::Exercise, 60.0);
    stage.setValue(TProtocolStage::speedKey, speed);
    stage.setValue(TProtocolStage::inclineKey, incline);
    return stage;
}

} // namespace

class TStressTrendsTest : public QObject
{
    Q_OBJECT

private:
    std::vector<double> list(const char* name) { return m_results->list(name)->values(); }
    double value(const char* name) { return m_results->value(name)->value(); }
    TResultTrend& trend(const char* name) { return *m_results->trend(name); }

    std::unique_ptr<TStudyResults> m_results;
    TStressTrends m_trends;

private Q_SLOTS:
    void init()
    {
        m_results = std::make_unique<TStudyResults>();
        m_trends.start(*m_results, TProtocolType::Treadmill, 70.0);
    }

    void heartRateStartsAtTheFirstBeatAndTakesAFifthOfEachNew()
    {
        QCOMPARE(m_trends.smoothedBpm(), 0.0);
        m_trends.addBeat(1.0, 1.0, {});
        QCOMPARE(m_trends.smoothedBpm(), 60.0);
        m_trends.addBeat(1.75, 0.75, {}); // 80 per minute
        QCOMPARE(m_trends.smoothedBpm(), 64.0);
        m_trends.addBeat(2.25, 0.5, {}); // 120 per minute
        QCOMPARE(m_trends.smoothedBpm(), 75.2);
        QCOMPARE(trend("BPMTrend").times(), (std::vector<double>{1.0, 1.75, 2.25}));
        QCOMPARE(trend("BPMTrend").values(), (std::vector<double>{60.0, 64.0, 75.2}));
    }

    void aBeatWithoutIntervalHasNoHeartRate()
    {
        m_trends.addBeat(1.0, 0.0, stageOf(2.7, 10.0));
        m_trends.addBeat(2.0, -1.0, stageOf(2.7, 10.0));
        QCOMPARE(trend("BPMTrend").count(), 0);
        QCOMPARE(m_trends.smoothedBpm(), 0.0);
        QCOMPARE(trend("METSTrend").times(), (std::vector<double>{1.0, 2.0}));
        QCOMPARE(trend("METSTrend").valueAtIndex(0), 4.6);
    }

    void ergometersGoByTheWeight()
    {
        TProtocolStage stage;
        stage.setValue(TProtocolStage::workloadKey, 100.0);
        m_trends.start(*m_results, TProtocolType::Ergometer, 80.0);
        m_trends.addBeat(1.0, 1.0, stage);
        m_trends.start(*m_results, TProtocolType::Ergometer, 0.0);
        m_trends.addBeat(2.0, 1.0, stage);
        QVERIFY(std::abs(trend("METSTrend").valueAtIndex(0) - 20.5 / 3.5) < 1e-12);
        QCOMPARE(trend("METSTrend").valueAtIndex(1), 0.0);
    }

    void stOfEachChannelHasATrendAndAMeanOverTheStage()
    {
        std::mt19937 random(5);
        std::uniform_real_distribution<double> millivolts(-0.5, 0.5);
        double levels = 0.0;
        double slopes = 0.0;
        for (int i = 0; i < 25; ++i) {
            const TStValue value{millivolts(random), 10.0 * millivolts(random)};
            levels += value.level;
            slopes += value.slope;
            m_trends.addSt(i, 11, value);
            m_trends.addSt(i, 3, {0.25, -1.0});
            m_trends.addBeat(i, 0.8, {});
        }
        QCOMPARE(trend("STLevelTrend(11)").count(), 25);
        QCOMPARE(trend("STSlopeTrend(11)").count(), 25);
        QCOMPARE(trend("STLevelTrend(3)").valueAtIndex(24), 0.25);
        QCOMPARE(trend("STSlopeTrend(3)").valueAtIndex(24), -1.0);
        QCOMPARE(trend("STLevelTrend(4)").count(), 0);
        m_trends.closeStage(0, {});
        QVERIFY(std::abs(list("STLevelPerStage(11)")[0] - levels / 25) < 1e-12);
        QVERIFY(std::abs(list("STSlopePerStage(11)")[0] - slopes / 25) < 1e-12);
        QCOMPARE(list("STLevelPerStage(3)"), std::vector<double>{0.25});
        QCOMPARE(list("STSlopePerStage(3)"), std::vector<double>{-1.0});
        QCOMPARE(list("STLevelPerStage(15)"), std::vector<double>{0.0});
    }

    void aBeatWithoutStOfAChannelLeavesItsMeanAndCounts()
    {
        m_trends.addSt(1.0, 2, {0.3, 3.0});
        m_trends.addBeat(1.0, 0.8, {});
        m_trends.addBeat(2.0, 0.8, {});
        m_trends.addSt(3.0, 2, {0.6, 6.0});
        m_trends.addBeat(3.0, 0.8, {});
        m_trends.closeStage(0, {});
        // (2 * 0.3 + 0.6) / 3
        QVERIFY(std::abs(list("STLevelPerStage(2)")[0] - 0.4) < 1e-12);
        QVERIFY(std::abs(list("STSlopePerStage(2)")[0] - 4.0) < 1e-12);
        QCOMPARE(trend("STLevelTrend(2)").count(), 2);
    }

    void theValuesOfAStageAreEnteredAtItsEnd()
    {
        m_trends.addBeat(1.0, 60.0 / 93.7, {});
        m_trends.addBloodPressure(20.0, 130.0, 80.0, -1);
        m_trends.addBloodPressure(40.0, 141.0, 85.0, -1);
        m_trends.closeStage(0, stageOf(2.7, 10.0));
        QCOMPARE(list("BPMPerStage"), std::vector<double>{93.0});
        QCOMPARE(list("sysBPPerStage"), std::vector<double>{141.0});
        QCOMPARE(list("diaBPPerStage"), std::vector<double>{85.0});
        QCOMPARE(list("DPPerStage"), std::vector<double>{93.0 * 141.0});
        QCOMPARE(list("METSPerStage").size(), std::size_t{1});
        QCOMPARE(list("METSPerStage")[0], 4.6);
        QCOMPARE(trend("sysBPTrend").values(), (std::vector<double>{130.0, 141.0}));
        QCOMPARE(trend("diaBPTrend").values(), (std::vector<double>{80.0, 85.0}));
        QCOMPARE(trend("DPTrend").values(), (std::vector<double>{93.0 * 130.0, 93.0 * 141.0}));
        QCOMPARE(trend("DPTrend").times(), (std::vector<double>{20.0, 40.0}));
    }

    void theNextStageStartsAfresh()
    {
        m_trends.addSt(1.0, 0, {0.5, 1.0});
        m_trends.addBeat(1.0, 0.5, {});
        m_trends.addBloodPressure(2.0, 130.0, 80.0, -1);
        m_trends.closeStage(0, stageOf(2.7, 10.0));
        QCOMPARE(m_trends.smoothedBpm(), 0.0);
        m_trends.addSt(3.0, 0, {-0.1, -2.0});
        m_trends.addBeat(3.0, 1.0, {});
        m_trends.closeStage(1, {});
        m_trends.closeStage(2, {});
        QCOMPARE(list("BPMPerStage"), (std::vector<double>{120.0, 60.0, 0.0}));
        QCOMPARE(list("sysBPPerStage"), (std::vector<double>{130.0, 0.0, 0.0}));
        QCOMPARE(list("DPPerStage"), (std::vector<double>{15600.0, 0.0, 0.0}));
        QCOMPARE(list("METSPerStage")[0], 4.6);
        QCOMPARE(list("METSPerStage")[1], 1.0);
        QCOMPARE(list("STLevelPerStage(0)"), (std::vector<double>{0.5, -0.1, 0.0}));
        QCOMPARE(list("STSlopePerStage(0)"), (std::vector<double>{1.0, -2.0, 0.0}));
    }

    void aPressureOfAnEndedStageIsEnteredThere()
    {
        m_trends.addBeat(1.0, 60.0 / 93.7, {});
        m_trends.closeStage(0, {});
        m_trends.addBeat(61.0, 0.5, {});
        m_trends.addBloodPressure(30.0, 150.0, 90.0, 0);
        QCOMPARE(list("sysBPPerStage"), std::vector<double>{150.0});
        QCOMPARE(list("diaBPPerStage"), std::vector<double>{90.0});
        QCOMPARE(list("DPPerStage"), std::vector<double>{93.0 * 150.0});
        // The nearest heart rate is that of the beat before.
        QCOMPARE(trend("DPTrend").values(), std::vector<double>{93.0 * 150.0});
        m_trends.closeStage(1, {});
        QCOMPARE(list("sysBPPerStage"), (std::vector<double>{150.0, 0.0}));
        QCOMPARE(list("DPPerStage"), (std::vector<double>{93.0 * 150.0, 0.0}));
    }

    void aPressureBeforeTheFirstBeatHasNoDoubleProduct()
    {
        m_trends.addBloodPressure(-1.0, 120.0, 70.0, -1);
        QCOMPARE(trend("DPTrend").values(), std::vector<double>{0.0});
        QCOMPARE(trend("sysBPTrend").times(), std::vector<double>{-1.0});
    }

    void maximaAreThoseOfTheStageEnds()
    {
        const double intervals[] = {0.75, 0.4, 0.6};
        const double pressures[] = {120.0, 150.0, 180.0};
        for (int i = 0; i < 3; ++i) {
            m_trends.addBeat(i * 60.0, intervals[i], {});
            m_trends.addBloodPressure(i * 60.0 + 1.0, pressures[i], 90.0 - i, -1);
            m_trends.closeStage(i, stageOf(2.7 * (i + 1), 10.0));
        }
        m_trends.addBeat(200.0, 0.3, {});
        m_trends.finish();
        QCOMPARE(value("maxBPM"), 150.0);
        QCOMPARE(value("maxSysBP"), 180.0);
        QCOMPARE(value("maxDiaBP"), 90.0);
        QCOMPARE(value("maxDP"), 22500.0);
        // 8.1 km/h: 135 m/min: (12.15 + 27 + 3.5) / 3.5
        QVERIFY(std::abs(value("maxMETS") - 12.1857142857) < 1e-9);
        QVERIFY(std::abs(value("maxVO2") - 42.65) < 1e-9);
    }

    void withoutStagesTheMaximaStayZero()
    {
        m_trends.addBeat(1.0, 0.5, stageOf(9.0, 5.0));
        m_trends.addBloodPressure(1.0, 120.0, 70.0, -1);
        m_trends.finish();
        for (const char* name : {"maxBPM", "maxSysBP", "maxDiaBP", "maxMETS", "maxDP", "maxVO2"})
            QCOMPARE(value(name), 0.0);
        QCOMPARE(trend("BPMTrend").count(), 1);
    }
};

QTEST_GUILESS_MAIN(TStressTrendsTest)

#include "TStressTrendsTest.moc"
