#include "analysis/detection/Detection.h"
#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

std::vector<std::vector<short>> counts(const ecg::TRows& rows)
{
    std::vector<std::vector<short>> result;
    for (const ecg::TRow& row : rows)
        result.emplace_back(row.begin(), row.end());
    return result;
}

/// A recording of two channels on disk.
std::unique_ptr<TStoredSignal> stored(double seconds, int rate, const std::vector<double>& times)
{
    return std::make_unique<TStoredSignal>(
        4096,
        counts(
            {ecg::row(seconds, rate, times), ecg::row(seconds, rate, times, ecg::scaled(ecg::normal, 0.6))}),
        rate);
}

} // namespace

class StoredAnalysisTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBeatToTheVeryEndIsFound_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("step");
        for (const int rate : {250, 500, 1000})
            for (const int step : {51, 4096, TStoredAnalysis::maxStep})
                QTest::addRow("%d a second, %d a step", rate, step) << rate << step;
    }

    void everyBeatToTheVeryEndIsFound()
    {
        QFETCH(int, rate);
        QFETCH(int, step);
        const auto times = ecg::regular(0.5, 0.8, 37);
        const auto signal = stored(times.back() + 0.3, rate, times);
        TBeatLog log;
        TStoredAnalysis analysis(*signal, {}, &log);
        analysis.run(step);
        VERIFY_TIMES(log.times(), times);
        for (std::size_t i = 0; i < times.size(); ++i) {
            QCOMPARE(log.beats[i].number(), int(i));
            QVERIFY(std::abs(log.beats[i].fiducial(0, TBeat::rPosition) - times[i]) <= 0.0061);
        }
    }

    void aLongRecordingMayBeTakenInTheLargestSteps()
    {
        // More of it in a step than the detector keeps of its transform.
        const auto times = ecg::regular(0.6, 1.0, 398);
        const auto signal = stored(400.0, 250, times);
        TBeatLog log;
        TStoredAnalysis analysis(*signal, {}, &log);
        analysis.run(TStoredAnalysis::maxStep);
        VERIFY_TIMES(log.times(), times);
    }

    void stepsOutOfRangeAreKeptWithin()
    {
        const auto times = ecg::regular(0.6, 0.8, 6);
        const auto signal = stored(5.0, 250, times);
        for (const int step : {-7, 0, std::numeric_limits<int>::max()}) {
            TBeatLog log;
            TStoredAnalysis analysis(*signal, {}, &log);
            analysis.run(step);
            VERIFY_TIMES(log.times(), times);
        }
    }

    void theRecordingIsOnlyRead()
    {
        const auto signal = stored(10.0, 500, ecg::regular(0.6, 0.8, 12));
        TStoredAnalysis analysis(*signal, {});
        analysis.run();
        QCOMPARE(signal->sampleCount(), 5000);
        QCOMPARE(signal->blocksLoaded, signal->blocksFreed);
    }

    void theWavesOfTheAverageAreMeasured()
    {
        constexpr int rate = 500;
        const auto signal = stored(30.0, rate, ecg::regular(0.6, 0.8, 36));
        TStoredAnalysis analysis(*signal, {});
        analysis.run();
        QVERIFY(analysis.averageBeat().count() > 20);
        for (int channel = 0; channel < 2; ++channel) {
            const TAverageBeatDelineator waves = analysis.delineate(channel);
            const int r = analysis.averageBeat().rOffset();
            QVERIFY(std::abs(waves.rPosition() - r) <= 6);
            QVERIFY(std::abs(waves.pPeak() - (r - 80)) <= 8);
            QVERIFY(std::abs(waves.tPeak() - (r + 130)) <= 10);
            QVERIFY(waves.qrsOnset() > waves.pOffset() && waves.qrsOnset() < r);
            QVERIFY(waves.qrsOffset() > r && waves.qrsOffset() < waves.tOnset());
        }
    }

    void anOffsetDoesNotChangeTheAverageOfTheVeryEnd()
    {
        constexpr int rate = 500;
        const auto times = ecg::regular(0.3, 0.8, 18);
        ecg::TRows plain{ecg::row(times.back() + 0.3, rate, times)}, shifted = plain;
        for (std::size_t i = 0; i < plain.front().size(); ++i) {
            plain[0][i] = std::round(plain[0][i]);
            shifted[0][i] = plain[0][i] + 8000.0;
        }
        TStoredSignal signals[]{{4096, counts(plain), rate}, {4096, counts(shifted), rate}};
        TStoredAnalysis without(signals[0], {}), with(signals[1], {});
        without.run();
        with.run();
        QVERIFY(with.averageBeat().count() >= 10);
        QVERIFY(with.averageBeat().averagedTimes().back() < times.back() - 0.4);
        QCOMPARE(with.averageBeat().averagedTimes(), without.averageBeat().averagedTimes());
        // Smoothed samples are truncated towards zero, so that they differ by up to a count.
        for (int i = 0; i < rate; ++i)
            QVERIFY(std::abs(with.averageBeat().complex(0)[i] - without.averageBeat().complex(0)[i]) < 1.5);
    }

    void theObserverSeesEveryChannel()
    {
        const auto signal = stored(10.0, 500, ecg::regular(0.6, 0.8, 12));
        TStoredAnalysis analysis(*signal, {});
        int seen[2] = {};
        analysis.setCandidateObserver([&seen](int channel, const TChannelBeat&) { ++seen[channel]; });
        analysis.run();
        QCOMPARE(seen[0], 12);
        QCOMPARE(seen[1], 12);
    }

    void recordingsWithoutABeatHaveNothingToMeasure_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("samples");
        for (const int channels : {0, 1, 16})
            for (const int samples : {0, 1, 100, 5000})
                QTest::addRow("%d channels of %d samples", channels, samples) << channels << samples;
    }

    void recordingsWithoutABeatHaveNothingToMeasure()
    {
        QFETCH(int, channels);
        QFETCH(int, samples);
        TStoredSignal signal(4096,
                             std::vector<std::vector<short>>(channels, std::vector<short>(samples, 250)));
        TBeatLog log;
        TStoredAnalysis analysis(signal, {}, &log);
        analysis.run();
        QVERIFY(log.beats.empty());
        QCOMPARE(analysis.averageBeat().count(), 0);
        for (int channel = 0; channel < channels; ++channel) {
            const TAverageBeatDelineator waves = analysis.delineate(channel);
            QCOMPARE(waves.qrsOnset(), TAverageBeatDelineator::notFound);
            QCOMPARE(waves.tPeak(), TAverageBeatDelineator::notFound);
        }
    }
};

QTEST_GUILESS_MAIN(StoredAnalysisTest)
#include "StoredAnalysisTest.moc"
