#include "cli/TLinkWatch.h"

#include <QtTest>

class TLinkWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesThatComeAreNoLoss()
    {
        TLinkWatch link(500);
        for (int second = 0; second < 100; ++second)
            QVERIFY(!link.isNewlyLost(0, 500 * second, 1000 * second));
    }

    void aFailureIsALossEvenIfItIsShort()
    {
        TLinkWatch link(500);
        QVERIFY(!link.isNewlyLost(0, 500, 1000));
        QVERIFY(link.isNewlyLost(1, 900, 2000));
    }

    void attemptsToReconnectAreTheSameLoss()
    {
        TLinkWatch link(500);
        QVERIFY(link.isNewlyLost(1, 500, 1000));
        for (int second = 2; second < 60; ++second)
            QVERIFY(!link.isNewlyLost(100 * second, 510, 1000 * second));
    }

    void aLossAfterASecondOfSamplesIsANewOne()
    {
        TLinkWatch link(500);
        QVERIFY(link.isNewlyLost(1, 500, 1000));
        QVERIFY(!link.isNewlyLost(30, 999, 2000)); // not yet
        QVERIFY(!link.isNewlyLost(31, 999, 3000));
        QVERIFY(!link.isNewlyLost(31, 1400, 4000));
        QVERIFY(link.isNewlyLost(32, 1500, 5000));
    }

    void whatWasBeforeTheStartIsNoLoss()
    {
        TLinkWatch link(500);
        // A slow device: twelve seconds and three attempts until it was there.
        link.start(3, 0, 12000);
        QVERIFY(!link.isNewlyLost(3, 0, 12500));
        QVERIFY(!link.isNewlyLost(3, 0, 12000 + TLinkWatch::silenceMs - 1));
        QVERIFY(link.isNewlyLost(3, 0, 12000 + TLinkWatch::silenceMs));
    }

    void aFailureRightAfterTheStartIsALoss()
    {
        TLinkWatch link(500);
        link.start(3, 0, 12000);
        QVERIFY(link.isNewlyLost(4, 100, 12500));
    }

    void silenceIsALossToldOnce()
    {
        TLinkWatch link(500);
        QVERIFY(!link.isNewlyLost(0, 500, 1000));
        QVERIFY(!link.isNewlyLost(0, 500, 1000 + TLinkWatch::silenceMs - 1));
        QVERIFY(link.isNewlyLost(0, 500, 1000 + TLinkWatch::silenceMs));
        QVERIFY(!link.isNewlyLost(0, 500, 60000));
        QVERIFY(!link.isNewlyLost(0, 1000, 61000));
        QVERIFY(link.isNewlyLost(0, 1000, 61000 + TLinkWatch::silenceMs));
    }
};

QTEST_GUILESS_MAIN(TLinkWatchTest)
#include "TLinkWatchTest.moc"
