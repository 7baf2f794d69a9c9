#include "analysis/detection/BeatAssembly.h"
#include "analysis/signals/TInt16Signal.h"

#include <QtTest>

namespace {

constexpr int rate = 250;

TChannelBeat complexAt(int position)
{
    TChannelBeat beat;
    beat.rPosition = position;
    beat.qrsType = 1;
    return beat;
}

/// So many channels, of which these see the beat.
std::vector<TChannelBeat> seenBy(int channels, const std::vector<int>& seeing)
{
    std::vector<TChannelBeat> records(channels);
    for (const int channel : seeing)
        records[channel] = complexAt(1000);
    return records;
}

double agreementOf(int channels, const std::vector<int>& seeing)
{
    return assembly::agreement(seenBy(channels, seeing), std::vector<bool>(channels, true));
}

struct TSignalOf : TInt16Signal
{
    explicit TSignalOf(int channels) : TInt16Signal(4096, 8192, channels, rate) {}
};

} // namespace

class BeatAssemblyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theVotesOfTwelveChannelsAreWeighted()
    {
        int sum = 0;
        for (int channel = 0; channel < 12; ++channel) {
            QCOMPARE(assembly::voteOf(channel, 12), channel < 6 ? 1 : channel < 9 ? 5 : 10);
            sum += assembly::voteOf(channel, 12);
        }
        QCOMPARE(sum, 51);
        for (int channel = 12; channel < 16; ++channel)
            QCOMPARE(assembly::voteOf(channel, 16), 0);
        for (int channel = 0; channel < 11; ++channel)
            QCOMPARE(assembly::voteOf(channel, 11), 1);
    }

    void theRequiredShareDependsOnTheNumberOfChannels()
    {
        QCOMPARE(assembly::requiredAgreement(1), 0.2);
        QCOMPARE(assembly::requiredAgreement(11), 0.2);
        QCOMPARE(assembly::requiredAgreement(12), 0.3);
        QCOMPARE(assembly::requiredAgreement(16), 0.3);
    }

    void agreementIsTheShareOfTheVotes_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<std::vector<int>>("seeing");
        QTest::addColumn<double>("agreement");
        using TSeeing = std::vector<int>;
        QTest::newRow("V4, V5, V6 alone") << 12 << TSeeing{9, 10, 11} << 30.0 / 51.0;
        QTest::newRow("one limb lead") << 12 << TSeeing{0} << 1.0 / 51.0;
        QTest::newRow("all limb leads") << 12 << TSeeing{0, 1, 2, 3, 4, 5} << 6.0 / 51.0;
        QTest::newRow("V1, V2, V3") << 12 << TSeeing{6, 7, 8} << 15.0 / 51.0;
        QTest::newRow("further channels") << 14 << TSeeing{12, 13} << 0.0;
        QTest::newRow("with further channels") << 14 << TSeeing{9, 10, 11, 12, 13} << 30.0 / 51.0;
        QTest::newRow("one of 11") << 11 << TSeeing{3} << 1.0 / 11.0;
        QTest::newRow("two of 10") << 10 << TSeeing{3, 4} << 0.2;
        QTest::newRow("the only one") << 1 << TSeeing{0} << 1.0;
        QTest::newRow("none") << 3 << TSeeing{} << 0.0;
    }

    void agreementIsTheShareOfTheVotes()
    {
        QFETCH(int, channels);
        QFETCH(std::vector<int>, seeing);
        QFETCH(double, agreement);
        QCOMPARE(agreementOf(channels, seeing), agreement);
    }

    void channelsThatAreNotUsableHaveNoVote()
    {
        const auto records = seenBy(12, {0, 9});
        std::vector<bool> usable(12, true);
        usable[10] = usable[11] = usable[1] = false;
        QCOMPARE(assembly::agreement(records, usable), 11.0 / 30.0);
        QCOMPARE(assembly::agreement(records, std::vector<bool>(12, false)), 0.0);
    }

    void onlyFurtherChannelsUsableIsNoAgreement()
    {
        std::vector<bool> usable(14, false);
        usable[12] = usable[13] = true;
        QCOMPARE(assembly::agreement(seenBy(14, {12, 13}), usable), 0.0);
    }

    void aCandidateWithoutAComplexIsNoVote()
    {
        auto records = seenBy(2, {0, 1});
        records[1].qrsType = 0;
        QCOMPARE(assembly::agreement(records, {true, true}), 0.5);
    }

    void fiducialPointsBecomeSeconds()
    {
        TSignalOf signal(2);
        TChannelBeat record = complexAt(1000);
        record.pPeak = 950;
        record.qrsOnset = 990;
        record.rPeak = 1001;
        record.qrsOffset = 1010;
        record.tPeak = 1075;
        record.pType = 1;
        record.qrsType = -1;
        record.tType = -1;
        const TBeat beat = assembly::beatFrom({record, TChannelBeat()}, 1002, signal);
        QCOMPARE(beat.channelCount(), 2);
        QCOMPARE(beat.value(TBeat::beatTime), 1002.0 / rate);
        const double expected[] = {1.0, 3.8, 3.96, 4.004, 4.04, 4.3, -1.0, 1.0, -1.0};
        for (int slot = 0; slot < 9; ++slot) {
            QVERIFY(beat.isFiducialSet(0, slot));
            QCOMPARE(beat.fiducial(0, slot), expected[slot]);
        }
        QVERIFY(std::abs(beat.fiducial(0, TBeat::qrsDuration) - 0.11) < 1e-12);
        QVERIFY(std::abs(beat.fiducial(0, TBeat::pqInterval) - 0.14) < 1e-12);
        QVERIFY(std::abs(beat.fiducial(0, TBeat::qtInterval) - 0.45) < 1e-12);
    }

    void anAbsentRecordHasTypesButNoTimes()
    {
        TSignalOf signal(1);
        const TBeat beat = assembly::beatFrom({TChannelBeat()}, 500, signal);
        for (const int slot : {TBeat::takesPart, TBeat::qrsType, TBeat::pType, TBeat::tType}) {
            QVERIFY(beat.isFiducialSet(0, slot));
            QCOMPARE(beat.fiducial(0, slot), 0.0);
        }
        for (const int slot : {1, 2, 3, 4, 5, 9, 10, 11})
            QVERIFY(!beat.isFiducialSet(0, slot));
    }

    void theIntervalIsTheMiddleOneOfTheChannels_data()
    {
        QTest::addColumn<QVector<double>>("before");
        QTest::addColumn<QVector<double>>("now");
        QTest::addColumn<double>("rr");
        using TTimes = QVector<double>;
        // 0 for a channel without R; the beat before lies at 10 s.
        QTest::newRow("odd") << TTimes{10.0, 10.0, 10.0} << TTimes{10.9, 10.7, 10.8} << 10.8 - 10.0;
        QTest::newRow("even takes the upper") << TTimes{10.0, 10.0} << TTimes{10.7, 10.8} << 10.8 - 10.0;
        QTest::newRow("each from its own")
            << TTimes{9.9, 10.1, 10.0} << TTimes{10.8, 10.9, 11.0} << 10.8 - 9.9;
        QTest::newRow("no R now") << TTimes{10.0, 10.0, 10.0} << TTimes{10.9, 0.0, 0.0} << 10.9 - 10.0;
        QTest::newRow("no R before") << TTimes{0.0, 9.0} << TTimes{10.7, 0.0} << 10.7 - 10.0;
        QTest::newRow("none at all") << TTimes{10.0, 10.0} << TTimes{0.0, 0.0} << 0.0;
    }

    void theIntervalIsTheMiddleOneOfTheChannels()
    {
        QFETCH(QVector<double>, before);
        QFETCH(QVector<double>, now);
        QFETCH(double, rr);
        TBeat previous(before.size()), beat(now.size());
        previous.setValue(TBeat::beatTime, 10.0);
        for (int channel = 0; channel < now.size(); ++channel) {
            if (before[channel] > 0.0)
                previous.setFiducial(channel, TBeat::rPosition, before[channel]);
            if (now[channel] > 0.0)
                beat.setFiducial(channel, TBeat::rPosition, now[channel]);
        }
        QCOMPARE(assembly::medianRr(beat, previous), rr);
    }

    void theWindowReachesAsFarAsTheWavesAreKnown_data()
    {
        QTest::addColumn<QVector<int>>("slots_");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("end");
        using TSlots = QVector<int>;
        // The channels' mean of slot n is 10 + n.
        QTest::newRow("all") << TSlots{1, 2, 3, 4, 5} << 11.0 - 0.05 << 15.0 + 0.1;
        QTest::newRow("no P") << TSlots{2, 3, 4, 5} << 12.0 - 0.1 << 15.0 + 0.1;
        QTest::newRow("no P, no onset") << TSlots{3, 4, 5} << 13.0 - 0.15 << 15.0 + 0.1;
        QTest::newRow("no T") << TSlots{1, 2, 3, 4} << 11.0 - 0.05 << 14.0 + 0.15;
        QTest::newRow("no T, no offset") << TSlots{1, 2, 3} << 11.0 - 0.05 << 13.0 + 0.2;
        QTest::newRow("nothing") << TSlots{} << 4.0 - 0.2 << 4.4 + 0.25;
        QTest::newRow("T only") << TSlots{5} << 4.0 - 0.2 << 15.0 + 0.1;
        QTest::newRow("P only") << TSlots{1} << 11.0 - 0.05 << 4.4 + 0.25;
    }

    void theWindowReachesAsFarAsTheWavesAreKnown()
    {
        QFETCH(QVector<int>, slots_);
        QFETCH(double, start);
        QFETCH(double, end);
        TSignalOf signal(4);
        TBeat beat(4);
        beat.setValue(TBeat::beatTime, 4.4);
        for (const int slot : slots_) {
            beat.setFiducial(1, slot, 10.0 + slot - 0.02);
            beat.setFiducial(3, slot, 10.0 + slot + 0.02);
        }
        // The first record is that of the first channel that takes part.
        assembly::setWindow(beat, {TChannelBeat(), complexAt(1000), complexAt(900), complexAt(1100)}, signal);
        QVERIFY(std::abs(beat.windowStart() - start) < 1e-12);
        QVERIFY(std::abs(beat.windowStart() + beat.windowLength() - end) < 1e-12);
    }

    void withoutAnyRecordTheWindowLiesAroundTheBeat()
    {
        TSignalOf signal(1);
        TBeat beat(1);
        beat.setValue(TBeat::beatTime, 4.4);
        assembly::setWindow(beat, {TChannelBeat()}, signal);
        QVERIFY(std::abs(beat.windowStart() - 4.2) < 1e-12);
        QVERIFY(std::abs(beat.windowLength() - 0.45) < 1e-12);
    }
};

QTEST_GUILESS_MAIN(BeatAssemblyTest)
#include "BeatAssemblyTest.moc"
