#include "analysis/detection/Detection.h"
#include "analysis/detection/TBeatChain.h"
#include "analysis/filters/SmoothingTables.h"
#include "analysis/signals/TChannel.h"

#include <QtTest>

namespace {

/// A chain on a live signal that is fed frame by frame.
struct TLive
{
    TLive(const ecg::TRows& samples, int rate, const TBeatChainSettings& settings = {})
        : rows(samples), raw(4096, 81920, int(samples.size()), rate)
    {
        raw.setResolutionBits(16);
        raw.setRange(-300.0, 300.0);
        chain = std::make_unique<TBeatChain>(raw, settings, &log);
    }
    void run(int step)
    {
        const int count = int(rows.front().size());
        for (int from = 0; from < count; from += step) {
            ecg::append(raw, rows, from, std::min(step, count - from));
            chain->run();
        }
    }

    ecg::TRows rows;
    TInt16Signal raw;
    TBeatLog log;
    std::unique_ptr<TBeatChain> chain;
};

ecg::TRows drawn(double seconds, int rate, const std::vector<double>& times)
{
    return {ecg::row(seconds, rate, times), ecg::row(seconds, rate, times, ecg::scaled(ecg::normal, 0.6))};
}

} // namespace

class BeatChainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRateOfTheRawSignalDoesNotMatter_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<bool>("refine");
        for (const int rate : {250, 500, 1000})
            for (const bool refine : {false, true})
                QTest::addRow("%d samples a second, %s", rate, refine ? "refined" : "as detected")
                    << rate << refine;
    }

    void theRateOfTheRawSignalDoesNotMatter()
    {
        QFETCH(int, rate);
        QFETCH(bool, refine);
        const auto times = ecg::regular(0.6, 0.8, 18);
        TBeatChainSettings settings;
        settings.refine = refine;
        TLive live(drawn(15.0, rate, times), rate, settings);
        live.run(rate / 10);
        live.chain->finish();
        QCOMPARE(live.log.beats.size(), times.size());
        QCOMPARE(live.chain->analysisSignal().samplingRate(), 250);
        static const std::vector<double> first = live.log.times();
        for (std::size_t i = 0; i < times.size(); ++i) {
            QVERIFY(std::abs(live.log.beats[i].value(TBeat::beatTime) - first[i]) <= 0.004);
            QVERIFY(std::abs(live.log.beats[i].fiducial(0, TBeat::rPosition) - times[i]) <= 0.0081);
        }
    }

    void ratesThatAreNoMultipleOf250KeepTheTrueTime_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("analysisRate");
        QTest::newRow("a factor of 3 would not divide it") << 800 << 400;
        QTest::newRow("a factor of 2 would not divide it") << 625 << 625;
        QTest::newRow("below 500") << 360 << 360;
        QTest::newRow("a factor of 3 divides it") << 900 << 300;
    }

    void ratesThatAreNoMultipleOf250KeepTheTrueTime()
    {
        QFETCH(int, rate);
        const auto times = ecg::regular(0.6, 0.8, 48);
        TLive live(drawn(39.0, rate, times), rate);
        live.run(rate / 10);
        live.chain->finish();
        QTEST(live.chain->analysisSignal().samplingRate(), "analysisRate");
        VERIFY_TIMES(live.log.times(), times);
    }

    void theAverageIsOfASignalLowPassedAtItsRate_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("taps");
        QTest::newRow("250") << 250 << 62;
        QTest::newRow("500") << 500 << 12;
        QTest::newRow("1000") << 1000 << 22;
        QTest::newRow("800") << 800 << 22;
    }

    void theAverageIsOfASignalLowPassedAtItsRate()
    {
        QFETCH(int, rate);
        QFETCH(int, taps);
        constexpr int place = 100;
        constexpr double height = 30000.0;
        TLive live({ecg::TRow(300)}, rate);
        live.rows[0][place] = height;
        live.run(51);
        TSignal& smoothed = live.chain->averageSignal();
        QCOMPARE(smoothed.sampleCount(), 300 - taps / 2);
        const std::vector<double>& table = velantor::averagingLowPass(rate);
        QCOMPARE(table.size(), std::size_t(taps));
        for (int i = 0; i < smoothed.sampleCount(); ++i) {
            const int tap = i - place + taps / 2;
            const double expected = tap >= 0 && tap < taps ? height * table[tap] : 0.0;
            QVERIFY(std::abs(smoothed.sample(0, i) - expected) <= 1.0);
        }
    }

    void theAverageIsFormedFromRefinedBeats()
    {
        const auto times = ecg::regular(0.6037, 0.8013, 18);
        const ecg::TRows rows = drawn(15.5, 500, times);
        TBeatChainSettings plain;
        plain.refine = false;
        TLive refined(rows, 500), asDetected(rows, 500, plain);
        for (TLive* live : {&refined, &asDetected}) {
            live->run(51);
            live->chain->finish();
            TAverageBeat& average = live->chain->averageBeat();
            std::vector<double> told;
            for (const TBeat& beat : live->log.beats)
                told.push_back(beat.fiducial(average.dominantChannel(), TBeat::rPosition));
            QVERIFY(average.count() > 8);
            for (const double t : average.averagedTimes())
                QVERIFY(std::find(told.begin(), told.end(), t) != told.end());
        }
        QVERIFY(refined.chain->averageBeat().averagedTimes() !=
                asDetected.chain->averageBeat().averagedTimes());
    }

    void refinementMovesThePointsToTheTurnsOfTheRawSignal()
    {
        const auto times = ecg::regular(0.6037, 0.8013, 18);
        const ecg::TRows rows = drawn(15.5, 500, times);
        double errors[2] = {};
        for (const bool refine : {false, true}) {
            TBeatChainSettings settings;
            settings.refine = refine;
            TLive live(rows, 500, settings);
            live.run(51);
            live.chain->finish();
            QCOMPARE(live.log.beats.size(), times.size());
            for (std::size_t i = 0; i < times.size(); ++i)
                errors[refine] += std::abs(live.log.beats[i].fiducial(0, TBeat::rPosition) - times[i]) / 18.0;
        }
        QVERIFY(errors[true] < 0.004);
        QVERIFY(errors[true] <= errors[false]);
    }

    void theStoreHasTheBeatsAsTheyWereDetected()
    {
        const auto times = ecg::regular(0.6037, 0.8013, 18);
        const ecg::TRows rows = drawn(15.5, 500, times);
        TBeatChainSettings plain;
        plain.refine = false;
        TLive refined(rows, 500), asDetected(rows, 500, plain);
        for (TLive* live : {&refined, &asDetected}) {
            live->run(51);
            live->chain->finish();
        }
        QCOMPARE(refined.chain->beats().count(), 18);
        for (int i = 0; i < 18; ++i) {
            TBeat beat;
            QVERIFY(refined.chain->beats().beat(i, beat));
            QCOMPARE(beat.fiducial(0, TBeat::rPosition),
                     asDetected.log.beats[i].fiducial(0, TBeat::rPosition));
            QCOMPARE(refined.log.beats[i].index(), i);
        }
    }

    void theAverageLooksLikeItsBeats_data()
    {
        QTest::addColumn<int>("rate");
        for (const int rate : {250, 500, 1000})
            QTest::newRow(qPrintable(QString::number(rate))) << rate;
    }

    void theAverageLooksLikeItsBeats()
    {
        QFETCH(int, rate);
        TLive live(drawn(30.0, rate, ecg::regular(0.6, 0.8, 36)), rate);
        live.run(rate / 10);
        TAverageBeat& average = live.chain->averageBeat();
        // Beats of the last 20 s, less those too fresh.
        QVERIFY(average.count() >= 22 && average.count() <= 26);
        QVERIFY(std::abs(average.meanRR() - 0.8) < 0.002);
        QCOMPARE(average.dominantChannel(), 0);
        const TDoubleVector& complex = average.complex(0);
        QCOMPARE(complex.size(), rate);
        const auto greatest = std::max_element(complex.values().begin(), complex.values().end());
        const int at = int(greatest - complex.values().begin());
        QVERIFY(std::abs(at - average.rOffset()) <= rate / 125);
        QVERIFY(*greatest > 600.0 && *greatest < 1150.0);
    }

    void averageAndAnalysisKeepTheFormOfTheRawSignal()
    {
        TLive live(drawn(1.0, 500, {}), 500);
        for (TSignal* signal :
             {static_cast<TSignal*>(&live.chain->analysisSignal()), &live.chain->averageSignal()}) {
            QCOMPARE(signal->channelCount(), 2);
            QCOMPARE(signal->resolutionBits(), 16);
            QCOMPARE(signal->rangeMin(), -300.0);
            QCOMPARE(signal->channel(0)->name(), live.raw.channel(0)->name());
        }
        QCOMPARE(live.chain->averageSignal().samplingRate(), 500);
    }

    void stepsMayBeOfAnySize_data()
    {
        QTest::addColumn<int>("step");
        for (const int step : {1, 51, 777, 4096, 15000})
            QTest::newRow(qPrintable(QString::number(step))) << step;
    }

    void stepsMayBeOfAnySize()
    {
        QFETCH(int, step);
        const auto times = ecg::regular(0.6, 0.8, 36);
        TLive live(drawn(30.0, 500, times), 500);
        live.run(step);
        live.chain->finish();
        VERIFY_TIMES(live.log.times(), times);
    }

    void beatsAreToldLittleMoreThanASecondBehindTheSecondNextOne()
    {
        const auto times = ecg::regular(0.6, 0.8, 36);
        TLive live(drawn(20.0, 500, times), 500);
        live.run(51);
        // At 20 s beats up to 18.55 s are known for sure: the lag, the marks that wait and the length of a
        // step lie behind them.
        QVERIFY(std::abs(live.log.times().back() - (18.2 - 2 * 0.8)) < 0.012);
    }

    void withoutAListenerTheChainRunsAsWell()
    {
        const ecg::TRows rows = drawn(15.0, 500, ecg::regular(0.6, 0.8, 18));
        TInt16Signal raw(4096, 81920, 2, 500);
        TBeatChain chain(raw, {}, nullptr);
        ecg::append(raw, rows, 0, 7500);
        chain.finish();
        QCOMPARE(chain.beats().count(), 18);
    }

    void onlyTheTimeAskedForIsSearched()
    {
        const auto times = ecg::regular(0.6, 0.8, 18);
        TBeatChainSettings settings;
        settings.startTime = 3.2;
        settings.endTime = 9.0;
        TLive live(drawn(15.0, 500, times), 500, settings);
        live.run(51);
        live.chain->finish();
        VERIFY_TIMES(live.log.times(), ecg::regular(3.8, 0.8, 7));
    }

    void anEmptySignalIsSurvived()
    {
        for (const int rate : {1, 100, 250, 500, 1000}) {
            TInt16Signal raw(4096, 81920, 2, rate);
            TBeatChain chain(raw, {}, nullptr);
            chain.run();
            chain.finish();
            QCOMPARE(chain.beats().count(), 0);
            QCOMPARE(chain.averageBeat().count(), 0);
        }
    }
};

QTEST_GUILESS_MAIN(BeatChainTest)
#include "BeatChainTest.moc"
