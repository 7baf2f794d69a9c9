#include "recorder/TStageRun.h"

#include <QtTest>

namespace {

TStressProtocol protocolOf(const QByteArray& phases, double duration = 60.0)
{
    TStressProtocol protocol("Test", TProtocolType::Treadmill);
    for (const char phase : phases)
        protocol.addStage(phase == 'r'   ? TStagePhase::Rest
                          : phase == 'e' ? TStagePhase::Exercise
                                         : TStagePhase::Recovery,
                          duration);
    return protocol;
}

TStageRun runOf(const QByteArray& phases)
{
    TStageRun run;
    run.start(protocolOf(phases));
    return run;
}

} // namespace

class TStageRunTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsWithTheFirstStage()
    {
        const TStageRun run = runOf("ree");
        QVERIFY(run.hasStages());
        QCOMPARE(run.stageCount(), 3);
        QCOMPARE(run.stageIndex(), 0);
        QCOMPARE(run.stageStart(), 0);
        QCOMPARE(run.phaseOrdinal(), 1);
        QCOMPARE(run.phaseStart(), 0);
        QVERIFY(!run.isLast());
    }

    void aSecondStartBeginsAnew()
    {
        TStageRun run = runOf("ree");
        run.moveTo(2, 100.0);
        run.start(protocolOf("re"));
        QCOMPARE(run.stageIndex(), 0);
        QCOMPARE(run.stageStart(), 0);
        QCOMPARE(run.phaseOrdinal(), 1);
    }

    void withoutStagesNothingIsEverOver()
    {
        const TStageRun run = runOf("");
        QVERIFY(!run.hasStages());
        QVERIFY(!run.isOver(1e6));
        QVERIFY(!run.recoveryStage());
    }

    void aStageIsOverWhenItsTimeIsReached()
    {
        const TStageRun run = runOf("re");
        QVERIFY(!run.isOver(59.99));
        QVERIFY(run.isOver(60.0));
    }

    void theLastStageIsNeverOver()
    {
        TStageRun run = runOf("re");
        run.moveTo(1, 60.0);
        QVERIFY(run.isLast());
        QVERIFY(!run.isOver(1e6));
    }

    void aStageCountsFromTheWholeSecondOfItsStart()
    {
        TStageRun run = runOf("ree");
        run.moveTo(1, 20.9);
        QCOMPARE(run.stageStart(), 20);
        QCOMPARE(run.elapsed(25.5), 5.5);
        QVERIFY(!run.isOver(79.99));
        QVERIFY(run.isOver(80.0));
    }

    void stagesOfAPhaseInARowAreNumbered()
    {
        TStageRun run = runOf("reeevv");
        const int ordinals[] = {1, 1, 2, 3, 1, 2};
        const int starts[] = {0, 10, 10, 10, 42, 42};
        for (int i = 1; i < 6; ++i) {
            run.moveTo(i, i * 10.7);
            QCOMPARE(run.phaseOrdinal(), ordinals[i]);
            QCOMPARE(run.phaseStart(), starts[i]);
        }
    }

    void aJumpCountsAsOneStage()
    {
        TStageRun run = runOf("reeev");
        run.moveTo(1, 10.0);
        run.moveTo(4, 20.0);
        QCOMPARE(run.phase(), TStagePhase::Recovery);
        QCOMPARE(run.phaseOrdinal(), 1);
        QCOMPARE(run.phaseStart(), 20);
    }

    void thereIsNoStagePastTheEnd()
    {
        TStageRun run = runOf("ee");
        run.moveTo(1, 10.0);
        run.moveTo(2, 20.0);
        QCOMPARE(run.stageIndex(), 1);
        QCOMPARE(run.stageStart(), 10);
        QCOMPARE(run.phaseOrdinal(), 2);
        run.moveTo(-1, 20.0);
        QCOMPARE(run.stageIndex(), 1);
    }

    void recoveryIsTheFirstOneToCome_data()
    {
        QTest::addColumn<QByteArray>("phases");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("from rest") << QByteArray("reevv") << 0 << 3;
        QTest::newRow("from exercise") << QByteArray("reevv") << 1 << 3;
        QTest::newRow("from the stage before") << QByteArray("reevv") << 2 << 3;
        QTest::newRow("from recovery") << QByteArray("reevv") << 3 << -1;
        QTest::newRow("an earlier one is past") << QByteArray("verev") << 2 << 4;
        QTest::newRow("only an earlier one") << QByteArray("vre") << 1 << -1;
        QTest::newRow("none") << QByteArray("ree") << 1 << -1;
    }

    void recoveryIsTheFirstOneToCome()
    {
        QFETCH(QByteArray, phases);
        QFETCH(int, from);
        QFETCH(int, to);
        TStageRun run = runOf(phases);
        run.moveTo(from, 10.0);
        QCOMPARE(run.recoveryStage().value_or(-1), to);
    }
};

QTEST_GUILESS_MAIN(TStageRunTest)

#include "TStageRunTest.moc"
