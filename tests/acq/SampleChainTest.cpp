#include "acq/TPairAverager.h"
#include "acq/TSamplePacker.h"
#include "acq/TSaturationCounters.h"

#include <QtTest>

#include <thread>

using namespace acq;

namespace {

TEcgSample sampleOf(int value)
{
    TEcgSample sample;
    sample.channels.fill(static_cast<std::int16_t>(value));
    return sample;
}

/// 100 * channel + 3.
TEcgSample staircase()
{
    TEcgSample sample;
    for (std::size_t i = 0; i < sample.channels.size(); ++i)
        sample.channels[i] = static_cast<std::int16_t>(100 * i + 3);
    return sample;
}

QByteArray packed(int mask, const TEcgSample& sample)
{
    TSamplePacker packer(mask);
    return {packer.pack(sample), packer.size()};
}

int meanOf(int first, int second)
{
    TPairAverager averager;
    TEcgSample sample = sampleOf(first);
    averager.add(sample);
    sample = sampleOf(second);
    averager.add(sample);
    return sample.channels[V3];
}

} // namespace

/// What becomes of a sample between the parser and the queue, besides its leads.
class SampleChainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChannelIsSaturatedAfter250FramesOutOfRange_data();
    void aChannelIsSaturatedAfter250FramesOutOfRange();
    void oneSampleInRangeClearsIt();
    void channelsAreCountedOneByOne();
    void channelsThatAreNotThereAreNotSaturated();
    void saturationMayBeAskedForFromOtherThreads();
    void eachTwoSamplesMakeOne();
    void meansAreRoundedDown();
    void meansOfEachChannelAreItsOwn();
    void aMeanTakesTheStatusOfTheSecond();
    void allChannelsArePackedLowByteFirst();
    void aMaskPacksItsChannelsInOrder_data();
    void aMaskPacksItsChannelsInOrder();
};

void SampleChainTest::aChannelIsSaturatedAfter250FramesOutOfRange_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("outside");
    QTest::newRow("top of the range") << 32000 << false;
    QTest::newRow("above") << 32001 << true;
    QTest::newRow("highest") << 32767 << true;
    QTest::newRow("bottom of the range") << -32000 << false;
    QTest::newRow("below") << -32001 << true;
    QTest::newRow("lowest") << -32768 << true;
}

void SampleChainTest::aChannelIsSaturatedAfter250FramesOutOfRange()
{
    QFETCH(int, value);
    QFETCH(bool, outside);
    TSaturationCounters counters;
    for (int i = 0; i < 249; ++i)
        counters.add(sampleOf(value));
    for (int channel = 0; channel < deviceChannelCount; ++channel)
        QVERIFY(!counters.isSaturated(channel));
    counters.add(sampleOf(value));
    for (int channel = 0; channel < deviceChannelCount; ++channel)
        QCOMPARE(counters.isSaturated(channel), outside);
    counters.add(sampleOf(value));
    QCOMPARE(counters.isSaturated(V1), outside);
}

void SampleChainTest::oneSampleInRangeClearsIt()
{
    TSaturationCounters counters;
    for (int i = 0; i < 1000; ++i)
        counters.add(sampleOf(i % 2 == 0 ? 32767 : -32768));
    QVERIFY(counters.isSaturated(CR5));
    counters.add(sampleOf(32000));
    QVERIFY(!counters.isSaturated(CR5));
    for (int i = 0; i < 249; ++i)
        counters.add(sampleOf(32001));
    QVERIFY(!counters.isSaturated(CR5));
    counters.add(sampleOf(32001));
    QVERIFY(counters.isSaturated(CR5));
    counters.clear();
    QVERIFY(!counters.isSaturated(CR5));
}

void SampleChainTest::channelsAreCountedOneByOne()
{
    for (int channel = 0; channel < deviceChannelCount; ++channel) {
        TSaturationCounters counters;
        TEcgSample sample;
        sample.channels[static_cast<std::size_t>(channel)] = 32001;
        for (int i = 0; i < 250; ++i)
            counters.add(sample);
        for (int other = 0; other < deviceChannelCount; ++other)
            QCOMPARE(counters.isSaturated(other), other == channel);
    }
}

void SampleChainTest::channelsThatAreNotThereAreNotSaturated()
{
    TSaturationCounters counters;
    for (int i = 0; i < 250; ++i)
        counters.add(sampleOf(32767));
    QVERIFY(counters.isSaturated(13));
    for (const int channel : {14, 15, 1000, -1})
        QVERIFY(!counters.isSaturated(channel));
}

void SampleChainTest::saturationMayBeAskedForFromOtherThreads()
{
    TSaturationCounters counters;
    std::thread writer([&counters] {
        for (int i = 0; i < 5000; ++i)
            counters.add(sampleOf(32767));
    });
    bool was = false;
    bool fellBack = false;
    for (int i = 0; i < 5000; ++i) {
        const bool is = counters.isSaturated(V2);
        fellBack = fellBack || (was && !is);
        was = is;
    }
    writer.join();
    QVERIFY(!fellBack);
    QVERIFY(counters.isSaturated(V2));
}

void SampleChainTest::eachTwoSamplesMakeOne()
{
    TPairAverager averager;
    for (int i = 0; i < 10; ++i) {
        TEcgSample sample = sampleOf(10 * i);
        QCOMPARE(averager.add(sample), i % 2 == 1);
        if (i % 2 == 1)
            QCOMPARE(int(sample.channels[I]), 10 * i - 5);
    }
}

void SampleChainTest::meansAreRoundedDown()
{
    QCOMPARE(meanOf(1, 2), 1);
    QCOMPARE(meanOf(-1, 0), -1);
    QCOMPARE(meanOf(-1, -2), -2);
    QCOMPARE(meanOf(0, -3), -2);
    QCOMPARE(meanOf(32767, 32767), 32767);
    QCOMPARE(meanOf(-32768, -32768), -32768);
    QCOMPARE(meanOf(32767, -32768), -1);
}

void SampleChainTest::meansOfEachChannelAreItsOwn()
{
    TPairAverager averager;
    TEcgSample first = staircase();
    TEcgSample second = sampleOf(1);
    averager.add(first);
    QVERIFY(averager.add(second));
    for (std::size_t i = 0; i < second.channels.size(); ++i)
        QCOMPARE(int(second.channels[i]), int(50 * i + 2));
}

void SampleChainTest::aMeanTakesTheStatusOfTheSecond()
{
    TPairAverager averager;
    TEcgSample first;
    TEcgSample second;
    second.electrodesOff = 5;
    second.batteryVolts = 2.5;
    averager.add(first);
    QVERIFY(averager.add(second));
    QCOMPARE(second.electrodesOff, 5U);
    QCOMPARE(second.batteryVolts, 2.5);
}

void SampleChainTest::allChannelsArePackedLowByteFirst()
{
    TEcgSample sample;
    sample.channels[I] = 0x0102;
    sample.channels[II] = -2;
    sample.channels[CR5] = -32768;
    const QByteArray bytes = packed(allChannels, sample);
    QCOMPARE(bytes.size(), 28);
    QCOMPARE(bytes.left(6).toHex(), QByteArray("0201feff0000"));
    QCOMPARE(bytes.right(4).toHex(), QByteArray("00000080"));
}

void SampleChainTest::aMaskPacksItsChannelsInOrder_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QVector<int>>("channels");
    QVector<int> all;
    for (int i = 0; i < 14; ++i)
        all.append(i);
    QTest::newRow("all") << -1 << all;
    QTest::newRow("reduced") << 1154 << QVector<int>{II, V2, V5};
    QTest::newRow("none") << 0 << QVector<int>{};
    QTest::newRow("beyond the device") << (1 << 14 | 1 << 30) << QVector<int>{};
    QTest::newRow("ends") << (1 | 1 << 13) << QVector<int>{I, CR5};
    QTest::newRow("every other") << 0x1555 << QVector<int>{I, III, aVL, V1, V3, V5, CM5};
}

void SampleChainTest::aMaskPacksItsChannelsInOrder()
{
    QFETCH(int, mask);
    QFETCH(QVector<int>, channels);
    const QByteArray bytes = packed(mask, staircase());
    QCOMPARE(bytes.size(), int(2 * channels.size()));
    for (int i = 0; i < channels.size(); ++i) {
        const int value = static_cast<unsigned char>(bytes[2 * i]) + 256 * bytes[2 * i + 1];
        QCOMPARE(value, 100 * channels[i] + 3);
    }
}

QTEST_GUILESS_MAIN(SampleChainTest)
#include "SampleChainTest.moc"
