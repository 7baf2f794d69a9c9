#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

class SignalWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewWindowStandsNowhere()
    {
        TStoredSignal signal(2, {{1, 2, 3, 4}});
        const TSignalWindow window(&signal);
        QCOMPARE(window.channel(), -1);
        QCOMPARE(window.blockSize(), 2);
        QCOMPARE(window.source(), &signal);
        QCOMPARE(window.current(), nullptr);
        for (int offset = -3; offset < 5; ++offset)
            QCOMPARE(window.sample(offset), short(0));
    }

    void aWindowReadsThreeBlocksAndZeroBeyond()
    {
        TStoredSignal signal(2, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}});
        TSignalWindow window(&signal);
        window.move(2, 0);
        QCOMPARE(window.block(), 2);
        QCOMPARE(window.channel(), 0);
        const short expected[] = {0, 3, 4, 5, 6, 7, 8, 0};
        for (int offset = -3; offset < 5; ++offset)
            QCOMPARE(window.sample(offset), expected[offset + 3]);
        QCOMPARE(window.sample(std::numeric_limits<int>::max()), short(0));
        QCOMPARE(window.sample(std::numeric_limits<int>::min()), short(0));
    }

    void thereIsNothingBeforeTheFirstAndAfterTheLastBlock()
    {
        TStoredSignal signal(2, {{1, 2, 3, 4}});
        TSignalWindow window(&signal);
        window.move(0, 0);
        QCOMPARE(window.previous(), nullptr);
        QCOMPARE(window.sample(-1), short(0));
        QCOMPARE(window.sample(2), short(3));
        window.move(1, 0);
        QCOMPARE(window.next(), nullptr);
        QCOMPARE(window.sample(2), short(0));
        QCOMPARE(window.sample(-1), short(2));
    }

    void blocksAreReleasedWhenTheWindowMovesAndGoes()
    {
        TStoredSignal signal(2, {std::vector<short>(20), std::vector<short>(20)});
        {
            TSignalWindow window(&signal);
            window.move(1, 0);
            window.move(2, 0);
            QCOMPARE(signal.blocksLoaded, 4);
            signal.trimBlocks(false);
            QCOMPARE(signal.blocksFreed, 1);
            window.move(8, 1);
            signal.trimBlocks(false);
            QCOMPARE(signal.blocksFreed, 4);
        }
        signal.trimBlocks(false);
        QCOMPARE(signal.blocksFreed, 7);
    }
};

QTEST_GUILESS_MAIN(SignalWindowTest)
#include "SignalWindowTest.moc"
