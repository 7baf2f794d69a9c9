#include "analysis/detection/TRhythmJudge.h"

#include <QtTest>

#include <cmath>

namespace {

double below(double x)
{
    return std::nextafter(x, -1e9);
}

double above(double x)
{
    return std::nextafter(x, 1e9);
}

/// A judge that is fed intervals, and what it lets out.
class TFeed
{
public:
    void take(double rr, double agreement = 1.0)
    {
        m_time += rr;
        TBeat beat(1);
        beat.setValue(TBeat::beatTime, m_time);
        beat.setValue(TBeat::rr, rr);
        judge.take(beat, agreement);
    }
    /// The first beat and `count` intervals behind it.
    void teach(double rr, int count)
    {
        take(0.0);
        for (int i = 0; i < count; ++i)
            take(rr);
    }
    double meanRR(int i) const { return out.at(i).value(TBeat::meanRR); }

    std::vector<TBeat> out;
    TRhythmJudge judge{[this](const TBeat& beat) { out.push_back(beat); }};

private:
    double m_time = 0.0;
};

QVector<int> numbers(const std::vector<TBeat>& beats)
{
    QVector<int> result;
    for (const TBeat& beat : beats)
        result << beat.number();
    return result;
}

/// A mean that sums without rounding.
constexpr double mean = 0.75;

} // namespace

class RhythmJudgeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstBeatIsEmittedAtOnce()
    {
        TFeed feed;
        QVERIFY(!feed.judge.hasPrevious());
        feed.take(0.0, 0.2);
        QCOMPARE(numbers(feed.out), QVector<int>({0}));
        QVERIFY(feed.out[0].valid());
        QVERIFY(feed.out[0].isValueSet(TBeat::meanRR));
        QCOMPARE(feed.meanRR(0), 0.0);
        QVERIFY(feed.judge.hasPrevious());
        QCOMPARE(feed.judge.previous().number(), 0);
    }

    void theMeanNeedsFiveIntervals()
    {
        TFeed feed;
        feed.teach(mean, 6);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(feed.meanRR(i), 0.0);
        QCOMPARE(feed.meanRR(5), mean);
        QCOMPARE(feed.meanRR(6), mean);
        QCOMPARE(numbers(feed.out), QVector<int>({0, 1, 2, 3, 4, 5, 6}));
    }

    void anEarlyBeatOfFewChannelsIsHeldOrDropped_data()
    {
        QTest::addColumn<double>("meanRR");
        QTest::addColumn<double>("agreement");
        QTest::addColumn<double>("rr");
        QTest::addColumn<QString>("verdict");
        const QString accepted = QStringLiteral("accepted");
        const QString held = QStringLiteral("held");
        const QString dropped = QStringLiteral("dropped");
        QTest::newRow("agreed upon") << mean << 0.6 << 0.01 << accepted;
        QTest::newRow("half: below 0.5") << mean << below(0.6) << below(0.5 * mean) << dropped;
        QTest::newRow("half: 0.5") << mean << below(0.6) << 0.5 * mean << held;
        QTest::newRow("half: below 0.75") << mean << 0.4 << below(0.75 * mean) << held;
        QTest::newRow("half: 0.75") << mean << 0.4 << 0.75 * mean << accepted;
        QTest::newRow("few: below 0.6") << mean << below(0.4) << below(0.6 * mean) << dropped;
        QTest::newRow("few: 0.6") << mean << below(0.4) << 0.6 * mean << held;
        QTest::newRow("few: below 0.85") << mean << below(0.4) << below(0.85 * mean) << held;
        QTest::newRow("few: 0.85") << mean << below(0.4) << 0.85 * mean << accepted;
        QTest::newRow("no interval") << mean << 0.3 << 0.0 << accepted;
        QTest::newRow("a negative one") << mean << 0.3 << -0.1 << accepted;
        QTest::newRow("below 1 s") << 1.5 << 0.3 << below(1.0) << held;
        QTest::newRow("1 s") << 1.5 << 0.3 << 1.0 << accepted;
    }

    void anEarlyBeatOfFewChannelsIsHeldOrDropped()
    {
        QFETCH(double, meanRR);
        QFETCH(double, agreement);
        QFETCH(double, rr);
        QFETCH(QString, verdict);
        TFeed feed;
        feed.teach(meanRR, 6);
        feed.take(rr, agreement);
        QCOMPARE(feed.out.size(), verdict == QLatin1String("accepted") ? 8U : 7U);
        QCOMPARE(feed.judge.hasPending(), verdict == QLatin1String("held"));
        QCOMPARE(feed.judge.previous().number(), int(feed.out.size()) - 1);
    }

    void withoutAMeanEveryBeatIsAccepted()
    {
        TFeed feed;
        feed.teach(mean, 4);
        feed.take(0.25, 0.2);
        QCOMPARE(feed.out.size(), 6U);
    }

    void theNextIntervalTellsWhatAHeldBeatWas_data()
    {
        QTest::addColumn<double>("rr");
        QTest::addColumn<bool>("wasReal");
        QTest::newRow("1.7") << 0.85 << false;
        QTest::newRow("above 1.7") << above(0.85) << true;
        QTest::newRow("two intervals in all") << 1.5 << true;
        QTest::newRow("below 4") << below(2.0) << true;
        QTest::newRow("4") << 2.0 << false;
        QTest::newRow("no interval") << 0.0 << false;
        QTest::newRow("a negative one") << -1.0 << false;
    }

    void theNextIntervalTellsWhatAHeldBeatWas()
    {
        QFETCH(double, rr);
        QFETCH(bool, wasReal);
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.5, 0.5);
        QVERIFY(feed.judge.hasPending());
        QCOMPARE(feed.judge.pending().value(TBeat::rr), 0.5);
        const double heldAt = feed.judge.pending().value(TBeat::beatTime);
        feed.out.clear();
        feed.take(rr);
        QCOMPARE(numbers(feed.out), wasReal ? QVector<int>({7, 8}) : QVector<int>({-1, 7}));
        QCOMPARE(feed.out[0].valid(), wasReal);
        QCOMPARE(feed.out[0].value(TBeat::beatTime), heldAt);
        QVERIFY(feed.out[1].valid());
        QCOMPARE(feed.out[1].value(TBeat::rr), wasReal ? rr - 0.5 : rr);
        QVERIFY(!feed.judge.hasPending());
        QCOMPARE(feed.judge.previous().number(), feed.out[1].number());
    }

    void aHeldBeatIsNotThePreviousOne()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.5, 0.5);
        QCOMPARE(feed.judge.previous().number(), 6);
    }

    void aHeldBeatMayGiveWayToAnother()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.4, 0.5);
        feed.take(0.5, 0.5);
        QCOMPARE(feed.out.back().number(), -1);
        QCOMPARE(feed.out.back().value(TBeat::rr), 0.4);
        QVERIFY(feed.judge.hasPending());
        QCOMPARE(feed.judge.pending().value(TBeat::rr), 0.5);
    }

    void aDroppedBeatDecidesNothing()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.5, 0.5);
        feed.take(0.2, 0.5);
        QCOMPARE(feed.out.size(), 7U);
        QVERIFY(feed.judge.hasPending());
        QCOMPARE(feed.judge.pending().value(TBeat::rr), 0.5);
    }

    void aForgottenBeatIsNeverTold()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.5, 0.5);
        feed.judge.forgetPending();
        feed.take(1.5);
        feed.judge.finish();
        QCOMPARE(numbers(feed.out), QVector<int>({0, 1, 2, 3, 4, 5, 6, 7}));
        QCOMPARE(feed.out.back().value(TBeat::rr), 1.5);
    }

    void atTheEndAHeldBeatIsRejected()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.judge.finish();
        QCOMPARE(feed.out.size(), 7U);
        feed.take(0.5, 0.5);
        feed.judge.finish();
        feed.judge.finish();
        QCOMPARE(feed.out.size(), 8U);
        QCOMPARE(feed.out.back().number(), -1);
        QVERIFY(!feed.out.back().valid());
    }

    void theMeanLivesOnAfterTheLearningBeats()
    {
        TFeed feed;
        feed.teach(mean, 40);
        for (int i = 5; i <= 40; ++i)
            QCOMPARE(feed.meanRR(i), mean);
    }

    void theMeanFollowsARateThatDrifts()
    {
        TFeed feed;
        feed.teach(1.0, 10);
        double rr = 1.0;
        for (int i = 0; i < 100; ++i)
            feed.take(rr *= 0.99);
        QVERIFY(std::abs(feed.out.back().value(TBeat::meanRR) - rr) < 0.06 * rr);
    }

    void afterTheLearningBeatsOnlyUsualIntervalsGoIn_data()
    {
        QTest::addColumn<double>("rr");
        QTest::addColumn<double>("agreement");
        QTest::addColumn<bool>("goesIn");
        QTest::newRow("0.7 times the mean") << 0.7 * mean << 1.0 << false;
        QTest::newRow("just above") << above(0.7 * mean) << 1.0 << true;
        QTest::newRow("just below 1.4 times") << below(1.4 * mean) << 1.0 << true;
        QTest::newRow("1.4 times") << 1.4 * mean << 1.0 << false;
        QTest::newRow("held") << 0.74 * mean << 0.5 << false;
    }

    void afterTheLearningBeatsOnlyUsualIntervalsGoIn()
    {
        QFETCH(double, rr);
        QFETCH(double, agreement);
        QFETCH(bool, goesIn);
        TFeed feed;
        feed.teach(mean, 10);
        feed.take(rr, agreement);
        // The mean runs one interval behind.
        feed.take(mean);
        const double sum = 7.0 * mean + rr;
        QCOMPARE(feed.out.back().value(TBeat::meanRR), goesIn ? sum / 8.0 : mean);
    }

    void anIntervalOfTwoSecondsIsNeverLearnt()
    {
        TFeed feed;
        feed.take(0.0);
        for (int i = 0; i < 5; ++i)
            feed.take(2.0);
        QCOMPARE(feed.out.back().value(TBeat::meanRR), 0.0);
        feed.take(below(2.0));
        QCOMPARE(feed.out.back().value(TBeat::meanRR), 0.0);
    }

    void theMeanStartsAfreshWhenItHasMissedThreeBeats()
    {
        TFeed feed;
        feed.teach(mean, 8);
        for (int i = 9; i <= 16; ++i)
            feed.take(1.5);
        for (int i = 9; i <= 11; ++i)
            QCOMPARE(feed.meanRR(i), mean);
        for (int i = 12; i <= 15; ++i)
            QCOMPARE(feed.meanRR(i), 0.0);
        QCOMPARE(feed.meanRR(16), 1.5);
    }

    void clearStartsWithNumberZero()
    {
        TFeed feed;
        feed.teach(mean, 6);
        feed.take(0.5, 0.5);
        feed.judge.clear();
        QVERIFY(!feed.judge.hasPrevious() && !feed.judge.hasPending());
        feed.out.clear();
        feed.teach(1.0, 5);
        QCOMPARE(numbers(feed.out), QVector<int>({0, 1, 2, 3, 4, 5}));
        QCOMPARE(feed.meanRR(4), 0.0);
        QCOMPARE(feed.meanRR(5), 1.0);
    }
};

QTEST_GUILESS_MAIN(RhythmJudgeTest)
#include "RhythmJudgeTest.moc"
