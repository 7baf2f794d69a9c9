#include "accuracy/BeatScore.h"

#include <QtTest>

#include <cmath>

using namespace accuracy;

using TTimes = std::vector<double>;
Q_DECLARE_METATYPE(TTimes)
Q_DECLARE_METATYPE(std::vector<int>)

class BeatScoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beatsArePairedOneToOne_data()
    {
        QTest::addColumn<TTimes>("reference");
        QTest::addColumn<TTimes>("detected");
        QTest::addColumn<std::vector<int>>("partners");
        const auto row = [](const char* name, const TTimes& reference, const TTimes& detected,
                            const std::vector<int>& partners) {
            QTest::newRow(name) << reference << detected << partners;
        };
        row("both empty", {}, {}, {});
        row("nothing detected", {1.0, 2.0}, {}, {-1, -1});
        row("no beats", {}, {1.0}, {});
        row("all exact", {1.0, 2.0}, {1.0, 2.0}, {0, 1});
        row("early and late", {1.0, 2.0}, {0.9, 2.1}, {0, 1});
        row("exactly the window", {1.0, 2.0}, {0.85, 2.15}, {0, 1});
        row("exactly the window in samples", {77 / 360.0}, {(77 + 54) / 360.0}, {0});
        row("beyond the window", {1.0, 2.0}, {0.849, 2.151}, {-1, -1});
        row("found twice, the second nearer", {1.0}, {0.9, 1.05}, {1});
        row("found twice, the first nearer", {1.0}, {0.95, 1.1}, {0});
        row("a tie goes to the earlier detection", {1.0}, {0.9, 1.1}, {0});
        row("a tie goes to the earlier beat", {1.0, 1.2}, {1.1}, {0, -1});
        row("one detection between two beats", {1.0, 1.2}, {1.12}, {-1, 0});
        row("the nearer pair leaves the other its own", {1.0, 1.2}, {0.86, 1.12}, {0, 1});
        row("a beat is missed", {1.0, 2.0, 3.0}, {1.01, 3.01}, {0, -1, 1});
        row("a beat too many", {1.0, 2.0}, {1.0, 1.5, 2.0}, {0, 2});
    }

    void beatsArePairedOneToOne()
    {
        QFETCH(TTimes, reference);
        QFETCH(TTimes, detected);
        QTEST(matchBeats(reference, detected), "partners");
    }

    void countsAddUp()
    {
        const TBeatReference reference{{1.0, 2.0, 3.0, 4.0}, {}, wholeRecord};
        TBeatCounts counts = scoreBeats(reference, {1.01, 2.2, 2.98, 3.02, 4.1, 9.0});
        QCOMPARE(counts, (TBeatCounts{3, 1, 3}));
        QCOMPARE(counts.beats(), 4);
        QCOMPARE(counts.sensitivity(), 0.75);
        QCOMPARE(counts.positivePredictivity(), 0.5);
        counts += TBeatCounts{1, 3, 0};
        QCOMPARE(counts, (TBeatCounts{4, 4, 3}));
    }

    void withoutBeatsOrDetectionsThereIsNoRatio()
    {
        QVERIFY(std::isnan(TBeatCounts{}.sensitivity()));
        QVERIFY(std::isnan(TBeatCounts{}.positivePredictivity()));
        QCOMPARE((TBeatCounts{0, 2, 0}.sensitivity()), 0.0);
        QVERIFY(std::isnan(TBeatCounts{0, 2, 0}.positivePredictivity()));
        QCOMPARE((TBeatCounts{0, 0, 2}.positivePredictivity()), 0.0);
    }

    void detectionsNeedNotBeInOrder()
    {
        const TBeatReference reference{{1.0, 2.0}, {}, wholeRecord};
        QCOMPARE(scoreBeats(reference, {2.0, 1.0}), (TBeatCounts{2, 0, 0}));
    }

    void flutterIsNotScored()
    {
        const TBeatReference reference{{1.0, 5.0, 9.0}, {{4.0, 6.0}}, wholeRecord};
        QCOMPARE(scoreBeats(reference, {1.0, 4.2, 4.6, 5.0, 5.8, 9.0}), (TBeatCounts{2, 0, 0}));
        // A missed beat in there counts as little as a false one at its very end.
        QCOMPARE(scoreBeats(reference, {1.0, 6.1, 9.0}), (TBeatCounts{2, 0, 0}));
        QCOMPARE(scoreBeats(reference, {1.0, 6.2, 9.0}), (TBeatCounts{2, 0, 1}));
    }

    void aBeatAtTheEdgeOfFlutterIsScored()
    {
        const TBeatReference reference{{3.95, 7.0}, {{4.0, 6.0}}, wholeRecord};
        QCOMPARE(scoreBeats(reference, {4.05, 7.0}), (TBeatCounts{2, 0, 0}));
        QCOMPARE(scoreBeats(reference, {7.0}), (TBeatCounts{1, 1, 0}));
    }

    void falseDetectionsCountOnlyWhereBeatsAreMarked()
    {
        const TBeatReference reference{{2.0, 3.0}, {}, {1.85, 3.15}};
        QCOMPARE(scoreBeats(reference, {1.0, 2.0, 2.5, 3.0, 4.0}), (TBeatCounts{2, 0, 1}));
    }
};

QTEST_GUILESS_MAIN(BeatScoreTest)
#include "BeatScoreTest.moc"
