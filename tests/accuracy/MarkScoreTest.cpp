#include "accuracy/MarkScore.h"

#include <QtTest>

#include <cmath>

using namespace accuracy;

namespace {

/// A beat with one mark, if any.
TMarkedBeat beat(double r, TMark mark = markCount, double t = 0.0)
{
    TMarkedBeat marked;
    marked.r = r;
    if (mark != markCount)
        marked.marks[mark] = t;
    return marked;
}

bool isNear(double a, double b)
{
    return std::abs(a - b) < 1e-9;
}

} // namespace

class MarkScoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errorsAreFoundMinusReference()
    {
        const TMarkScores scores = scoreMarks({beat(1.0, TPeak, 1.3), beat(2.0, TPeak, 2.3)},
                                              {{beat(1.01, TPeak, 1.31), beat(2.0, TPeak, 2.33)}});
        QCOMPARE(scores[TPeak].reference(), 2);
        QCOMPARE(scores[TPeak].found(), 2);
        QCOMPARE(scores[TPeak].detectionRate(), 1.0);
        QVERIFY(isNear(scores[TPeak].mean(), 20.0));
        QVERIFY(isNear(scores[TPeak].standardDeviation(), std::sqrt(200.0)));
        QCOMPARE(scores[POnset].reference() + scores[POnset].extra(), 0);
    }

    void aMarkIsMissedWithItsBeatOrAlone()
    {
        const TMarkScores scores =
            scoreMarks({beat(1.0, QrsOnset, 0.95), beat(2.0, QrsOnset, 1.95), beat(3.0, QrsOnset, 2.95)},
                       {{beat(1.0, QrsOnset, 0.96), beat(2.0), beat(3.2, QrsOnset, 3.15)}});
        QCOMPARE(scores[QrsOnset].found(), 1);
        QCOMPARE(scores[QrsOnset].reference(), 3);
        QVERIFY(isNear(scores[QrsOnset].detectionRate(), 1.0 / 3.0));
        QVERIFY(isNear(scores[QrsOnset].mean(), 10.0));
        QVERIFY(std::isnan(scores[QrsOnset].standardDeviation()));
    }

    void beatsOutsideTheReferenceDoNotCount()
    {
        const TMarkScores scores = scoreMarks(
            {beat(5.0, PPeak, 4.8)}, {{beat(1.0, PPeak, 0.8), beat(5.0, PPeak, 4.8), beat(9.0, PPeak, 8.8)}});
        QCOMPARE(scores[PPeak].found(), 1);
        QCOMPARE(scores[PPeak].extra(), 0);
    }

    void ofSeveralLeadsTheLeastErrorCounts()
    {
        const std::vector<TMarkedBeat> reference{beat(1.0, TOffset, 1.4), beat(2.0, TOffset, 2.4)};
        const TMarkScores scores =
            scoreMarks(reference, {{beat(1.0, TOffset, 1.45), beat(2.0, TOffset, 2.41)},
                                   {beat(1.02, TOffset, 1.38), beat(2.0, TOffset, 2.3)}});
        QCOMPARE(scores[TOffset].found(), 2);
        QVERIFY(isNear(scores[TOffset].mean(), (-20.0 + 10.0) / 2.0));
        // One lead that has it is enough.
        const TMarkScores other = scoreMarks(reference, {{beat(1.0)}, {beat(1.0, TOffset, 1.43)}});
        QCOMPARE(other[TOffset].found(), 1);
        QVERIFY(isNear(other[TOffset].mean(), 30.0));
    }

    void aMarkIsExtraWhereTheReferenceHasNone()
    {
        const std::vector<TMarkedBeat> reference{beat(1.0)};
        QCOMPARE(scoreMarks(reference, {{beat(1.0, PPeak, 0.8)}})[PPeak].extra(), 1);
        QCOMPARE(scoreMarks(reference, {{beat(1.0, PPeak, 0.8)}, {beat(1.0)}})[PPeak].extra(), 0);
        QCOMPARE(scoreMarks(reference, {{beat(1.0, PPeak, 0.8)}, {}})[PPeak].extra(), 1);
        QCOMPARE(scoreMarks(reference, {{}})[PPeak].extra(), 0);
        QCOMPARE(scoreMarks(reference, {})[PPeak].extra(), 0);
    }

    void emptyListsGiveNoNumbers()
    {
        const TMarkScores scores = scoreMarks({}, {{beat(1.0, PPeak, 0.8)}});
        for (const TMarkStatistics& each : scores) {
            QCOMPARE(each.reference(), 0);
            QCOMPARE(each.extra(), 0);
            QVERIFY(std::isnan(each.detectionRate()) && std::isnan(each.mean()));
        }
    }

    void sumsAreAsIfAllWereAddedToOne()
    {
        TMarkStatistics first;
        TMarkStatistics second;
        TMarkStatistics all;
        for (int i = 0; i < 10; ++i) {
            const double error = (i * i - 30) * 1e-3;
            (i < 4 ? first : second).addError(error);
            all.addError(error);
        }
        first.addMissed();
        second.addExtra();
        TMarkStatistics sum;
        sum += first;
        sum += second;
        sum += TMarkStatistics();
        QVERIFY(isNear(sum.mean(), all.mean()));
        QVERIFY(isNear(sum.standardDeviation(), all.standardDeviation()));
        QCOMPARE(sum.found(), 10);
        QCOMPARE(sum.reference(), 11);
        QCOMPARE(sum.extra(), 1);
    }

    void marksHaveNames()
    {
        QCOMPARE(QByteArray(markName(POnset)), QByteArray("P onset"));
        QCOMPARE(QByteArray(markName(TOffset)), QByteArray("T offset"));
        QCOMPARE(QByteArray(markName(markCount)), QByteArray());
        QCOMPARE(QByteArray(markName(-1)), QByteArray());
    }
};

QTEST_GUILESS_MAIN(MarkScoreTest)
#include "MarkScoreTest.moc"
