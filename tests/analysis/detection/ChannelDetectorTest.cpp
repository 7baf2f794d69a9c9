#include "analysis/detection/Detection.h"
#include "analysis/detection/TChannelDetector.h"

#include <QtTest>

Q_DECLARE_METATYPE(ecg::TWave)

namespace {

constexpr int rate = 250;

/// One channel, detected step by step up to a place.
class TChannelRun
{
public:
    explicit TChannelRun(const ecg::TRow& row, bool waves = true, int samplingRate = rate)
        : m_signal(4096, 81920, 1, samplingRate), m_transform(&m_signal, 0),
          detector(m_transform, 0, samplingRate, waves)
    {
        ecg::append(m_signal, {row}, 0, int(row.size()));
        m_transform.run();
    }

    void to(double seconds, int step = 50)
    {
        const int end = m_signal.indexOf(seconds);
        while (m_position < end) {
            const int next = std::min(m_position + step, end);
            detector.detect(m_position, next, beats);
            m_position = next;
        }
    }
    /// All of it.
    void finish()
    {
        const int end = m_transform.end();
        to(m_signal.timeOf(end) - 1.0);
        detector.finish(m_position, end, beats);
    }
    std::vector<double> times() const
    {
        std::vector<double> times;
        for (const TChannelBeat& beat : beats)
            times.push_back(m_signal.timeOf(beat.rPosition));
        return times;
    }
    bool has(double t) const
    {
        const auto all = times();
        return std::any_of(all.begin(), all.end(), [t](double x) { return std::abs(x - t) < 0.015; });
    }

private:
    TInt16Signal m_signal;
    TWaveletTransform m_transform;
    int m_position = 0;

public:
    TChannelDetector detector;
    std::vector<TChannelBeat> beats;
};

/// Sharp enough for every scale, and nothing else.
const ecg::TShape spike{{0.0, 0.010, 1000.0}};

/// A block between two times, its flanks smoothed a little.
void addBlock(ecg::TRow& row, double from, double to, double height)
{
    for (std::size_t i = 0; i < row.size(); ++i) {
        const double t = double(i) / rate;
        row[i] += height * 0.5 * (std::erf((t - from) / 0.012) - std::erf((t - to) / 0.012));
    }
}

} // namespace

class ChannelDetectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBeatIsHandedOutWhenTheNextIsKnown()
    {
        const auto times = ecg::regular(0.6, 0.8, 6);
        TChannelRun run(ecg::row(6.0, rate, times));
        run.to(2.2);
        // The third lies at 2.2 s; marks of the last quarter of a second wait.
        VERIFY_TIMES(run.times(), (std::vector<double>{0.6}));
        run.to(2.6);
        VERIFY_TIMES(run.times(), (std::vector<double>{0.6, 1.4}));
    }

    void atTheEndTheLastBeatIsHandedOut()
    {
        const auto times = ecg::regular(0.6, 0.8, 6);
        TChannelRun run(ecg::row(5.0, rate, times));
        run.finish();
        VERIFY_TIMES(run.times(), times);
        QCOMPARE(run.beats.back().tType, short(1));
    }

    void everyComplexIsFoundWhateverItsShape_data()
    {
        QTest::addColumn<ecg::TShape>("shape");
        QTest::newRow("normal") << ecg::normal;
        QTest::newRow("inverted") << ecg::scaled(ecg::normal, -1.0);
        QTest::newRow("spike") << spike;
        QTest::newRow("QS") << ecg::TShape{{0.0, 0.015, -900.0}, {0.25, 0.04, 200.0}};
        QTest::newRow("two phases") << ecg::TShape{{-0.015, 0.010, 800.0}, {0.015, 0.010, -800.0}};
        QTest::newRow("wide") << ecg::TShape{{0.0, 0.030, 1200.0}, {0.3, 0.05, -300.0}};
        QTest::newRow("small") << ecg::scaled(ecg::normal, 0.03);
        QTest::newRow("huge") << ecg::scaled(ecg::normal, 25.0);
    }

    void everyComplexIsFoundWhateverItsShape()
    {
        QFETCH(ecg::TShape, shape);
        const auto times = ecg::regular(0.6, 0.8, 18);
        TChannelRun run(ecg::row(15.0, rate, times, shape));
        run.finish();
        const QByteArray text = difference(run.times(), times, 0.025);
        QVERIFY2(text.isEmpty(), text.constData());
    }

    void flanksFartherApartThan150MillisecondsAreNoComplex_data()
    {
        QTest::addColumn<double>("length");
        QTest::addColumn<bool>("isComplex");
        QTest::newRow("0.06 s") << 0.06 << true;
        QTest::newRow("0.12 s") << 0.12 << true;
        QTest::newRow("0.17 s") << 0.17 << false;
        QTest::newRow("0.3 s") << 0.3 << false;
    }

    void flanksFartherApartThan150MillisecondsAreNoComplex()
    {
        QFETCH(double, length);
        QFETCH(bool, isComplex);
        ecg::TRow row(10 * rate);
        for (int i = 0; i < 9; ++i)
            addBlock(row, 0.6 + i, 0.6 + i + length, 500.0);
        TChannelRun run(row);
        run.finish();
        QCOMPARE(run.beats.size(), isComplex ? 9U : 0U);
    }

    void theFirstOfTwoFlanksThatAreNoPairIsDiscarded()
    {
        // A rise half a second before a complex, and nothing that falls.
        auto times = ecg::regular(0.6, 1.0, 8);
        ecg::TRow row = ecg::row(9.0, rate, times, spike);
        addBlock(row, 4.1, 4.45, 500.0);
        TChannelRun run(row);
        run.finish();
        VERIFY_TIMES(run.times(), times);
    }

    void aSecondComplexWithinTheRefractoryTimeIsDiscarded_data()
    {
        QTest::addColumn<double>("distance");
        QTest::addColumn<bool>("isBeat");
        for (const double distance : {0.08, 0.1, 0.12, 0.14})
            QTest::addRow("%g", distance) << distance << false;
        QTest::addRow("0.25") << 0.25 << true;
    }

    void aSecondComplexWithinTheRefractoryTimeIsDiscarded()
    {
        QFETCH(double, distance);
        QFETCH(bool, isBeat);
        auto times = ecg::regular(0.6, 0.8, 8);
        ecg::TRow row = ecg::row(7.0, rate, times, spike);
        ecg::add(row, rate, {{0.0, 0.010, 900.0}}, times[4] + distance);
        TChannelRun run(row);
        run.finish();
        QCOMPARE(run.beats.size(), isBeat ? 9U : 8U);
        for (const double t : times)
            QVERIFY(run.has(t));
    }

    void aGapIsSearchedAgainAtLowerThresholds_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<bool>("asExtra");
        QTest::addColumn<bool>("inTheGap");
        // Thresholds lie at about a fifth of these spikes.
        QTest::newRow("high") << 0.6 << true << true;
        QTest::newRow("low") << 0.17 << false << true;
        QTest::newRow("too low") << 0.08 << false << false;
    }

    void aGapIsSearchedAgainAtLowerThresholds()
    {
        QFETCH(double, height);
        QFETCH(bool, asExtra);
        QFETCH(bool, inTheGap);
        const auto times = ecg::regular(0.6, 1.0, 16);
        // Halfway between two beats there is no gap to search.
        ecg::TRow extra = ecg::row(17.0, rate, times, spike);
        ecg::add(extra, rate, ecg::scaled(spike, height), times[8] + 0.5);
        TChannelRun withExtra(extra);
        withExtra.finish();
        QCOMPARE(withExtra.has(times[8] + 0.5), asExtra);
        auto others = times;
        others.erase(others.begin() + 8);
        ecg::TRow gap = ecg::row(17.0, rate, others, spike);
        ecg::add(gap, rate, ecg::scaled(spike, height), times[8]);
        TChannelRun withGap(gap);
        withGap.finish();
        QCOMPARE(withGap.has(times[8]), inTheGap);
        for (const double t : others)
            QVERIFY(withGap.has(t) && withExtra.has(t));
    }

    void anIntervalOfLessThan140PercentIsNoGap_data()
    {
        QTest::addColumn<double>("interval");
        QTest::addColumn<bool>("isSearched");
        QTest::newRow("below") << 1.36 << false;
        QTest::newRow("above") << 1.46 << true;
    }

    void anIntervalOfLessThan140PercentIsNoGap()
    {
        QFETCH(double, interval);
        QFETCH(bool, isSearched);
        // So many intervals of a second that the channel's mean is one, too.
        auto times = ecg::regular(0.6, 1.0, 31);
        const auto after = ecg::regular(times.back() + interval, 1.0, 5);
        times.insert(times.end(), after.begin(), after.end());
        ecg::TRow row = ecg::row(38.0, rate, times, spike);
        const double between = times[30] + 0.6;
        ecg::add(row, rate, ecg::scaled(spike, 0.17), between);
        TChannelRun run(row);
        run.finish();
        QCOMPARE(run.has(between), isSearched);
    }

    void severalMissedBeatsOfOneGapAreFound()
    {
        const auto times = ecg::regular(0.6, 0.7, 24);
        ecg::TRow row(18 * rate);
        for (std::size_t i = 0; i < times.size(); ++i)
            ecg::add(row, rate, ecg::scaled(spike, i == 12 || i == 13 ? 0.2 : 1.0), times[i]);
        TChannelRun run(row);
        run.finish();
        VERIFY_TIMES(run.times(), times);
    }

    void theMeanIntervalFollowsSlowly()
    {
        TChannelRun run(ecg::row(10.0, rate, {0.6, 1.6, 2.6}, spike));
        QCOMPARE(run.detector.meanRR(), 0.75);
        run.to(2.2);
        QVERIFY(std::abs(run.detector.meanRR() - (0.8 * 0.75 + 0.2)) < 0.005);
        run.to(3.2);
        QVERIFY(std::abs(run.detector.meanRR() - (0.8 * 0.8 + 0.2)) < 0.005);
    }

    void intervalsOfTwoSecondsAreNoneToLearnFrom()
    {
        TChannelRun run(ecg::row(14.0, rate, ecg::regular(0.6, 2.1, 6), spike));
        run.finish();
        QCOMPARE(run.beats.size(), 6U);
        QCOMPARE(run.detector.meanRR(), 0.75);
    }

    void afterAPauseTheChannelStartsAfresh()
    {
        auto times = ecg::regular(0.6, 0.8, 6);
        const double last = times.back();
        const auto after = ecg::regular(last + 5.0, 0.8, 4);
        times.insert(times.end(), after.begin(), after.end());
        TChannelRun run(ecg::row(14.0, rate, times));
        run.to(last + 2.9);
        QVERIFY(!run.has(last));
        const double meanRR = run.detector.meanRR();
        // Three seconds behind the last complex its beat is told, without one that follows.
        run.to(last + 3.6);
        QVERIFY(run.has(last));
        QCOMPARE(run.beats.size(), 6U);
        run.to(last + 5.5);
        QCOMPARE(run.beats.size(), 6U);
        QCOMPARE(run.detector.meanRR(), meanRR);
        run.finish();
        VERIFY_TIMES(run.times(), times);
    }

    void restartForgetsThePreviousBeatButNotTheRhythm()
    {
        const auto times = ecg::regular(0.6, 1.0, 12);
        TChannelRun run(ecg::row(13.0, rate, times));
        run.to(6.1);
        const std::size_t before = run.beats.size();
        const double meanRR = run.detector.meanRR();
        run.detector.restart(int(6.1 * rate));
        QCOMPARE(run.detector.meanRR(), meanRR);
        run.to(7.1);
        QCOMPARE(run.beats.size(), before);
        run.to(8.1);
        QVERIFY(!run.has(5.6));
        QVERIFY(run.has(6.6));
    }

    void theWavesMayBeLeftOut()
    {
        const auto times = ecg::regular(0.6, 0.8, 6);
        TChannelRun run(ecg::row(6.0, rate, times), false);
        run.finish();
        VERIFY_TIMES(run.times(), times);
        for (const TChannelBeat& beat : run.beats) {
            QCOMPARE(beat.qrsType, short(1));
            QCOMPARE(beat.pType, short(0));
            QCOMPARE(beat.tType, short(0));
            QVERIFY(!TChannelBeat::known(beat.isoelectricPoint) && !TChannelBeat::known(beat.stPoint));
        }
    }

    void thresholdsFollowTheSignal()
    {
        // A tenth of the height from one second to the next: found again as soon as four seconds have passed.
        const auto loud = ecg::regular(0.6, 0.8, 10);
        const auto soft = ecg::regular(8.6, 0.8, 20);
        ecg::TRow row = ecg::row(26.0, rate, loud);
        for (const double t : soft)
            ecg::add(row, rate, ecg::scaled(ecg::normal, 0.1), t);
        TChannelRun run(row);
        run.finish();
        for (const double t : loud)
            QVERIFY(run.has(t));
        for (const double t : soft)
            QVERIFY(run.has(t) || t < 12.6);
    }

    void aChannelWithoutASignalHasNoBeats()
    {
        for (const int samples : {0, 1, 29, 30, 5000}) {
            TChannelRun run(ecg::TRow(samples, 777.0));
            run.to(double(samples) / rate);
            run.finish();
            QVERIFY(run.beats.empty());
        }
    }
};

QTEST_GUILESS_MAIN(ChannelDetectorTest)
#include "ChannelDetectorTest.moc"
