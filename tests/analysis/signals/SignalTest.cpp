#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <functional>
#include <limits>
#include <stdexcept>

namespace {

constexpr int maxInt = std::numeric_limits<int>::max();

class TCallback : public TSignalListener
{
public:
    explicit TCallback(std::function<void()> call = {}) : m_call(std::move(call)) {}

    void signalChanged() override
    {
        ++calls;
        if (m_call)
            m_call();
    }

    int calls = 0;

private:
    std::function<void()> m_call;
};

TStoredSignal signalOf(int blockSize, int channels, int samples)
{
    return TStoredSignal(blockSize, std::vector<std::vector<short>>(channels, std::vector<short>(samples)));
}

} // namespace

class SignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsOutOfRangeAreClamped()
    {
        const TStoredSignal none(-5, {}, -250);
        QCOMPARE(none.channelCount(), 0);
        QCOMPARE(none.blockSize(), 1);
        QCOMPARE(none.samplingRate(), 1);
        QCOMPARE(signalOf(0, 17, 3).channelCount(), 16);
        QVERIFY(TStoredSignal(maxInt, {}, maxInt).blockSize() < maxInt);
        QVERIFY(TStoredSignal(maxInt, {}, maxInt).samplingRate() < maxInt);
    }

    void channelsAreFoundByIndexAndByTheFirstOfTheirName()
    {
        TStoredSignal signal = signalOf(4, 3, 0);
        signal.channel(1)->setName("V1");
        signal.channel(2)->setName("V1");
        QCOMPARE(signal.channel(2)->index(), 2);
        QCOMPARE(signal.channel(2)->signal(), &signal);
        QCOMPARE(signal.channelByName("V1"), signal.channel(1));
        QCOMPARE(signal.channelByName("V2"), nullptr);
        QCOMPARE(signal.channel(-1), nullptr);
        QCOMPARE(signal.channel(3), nullptr);
    }

    void theValueOfACountFollowsRangeAndResolution()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        QCOMPARE(signal.countValue(), 2.0 / 65536);
        signal.setRange(-450.0, 450.0);
        QCOMPARE(signal.countValue(), 900.0 / 65536);
        QVERIFY(qAbs(signal.countValue() - 0.0137329) < 5e-8);
        signal.setResolutionBits(24);
        QCOMPARE(signal.countValue(), 900.0 / 16777216);
    }

    void aResolutionOutOfRangeIsClamped()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        signal.setResolutionBits(0);
        QCOMPARE(signal.resolutionBits(), 1);
        QCOMPARE(signal.countValue(), 1.0);
        signal.setResolutionBits(65);
        QCOMPARE(signal.resolutionBits(), 64);
        QCOMPARE(signal.countValue(), 2.0 / 18446744073709551616.0);
    }

    void timesAndIndicesConvert_data()
    {
        QTest::addColumn<double>("time");
        QTest::addColumn<int>("index");
        QTest::newRow("start") << 0.0 << 0;
        QTest::newRow("half a sample goes up") << 0.001 << 1;
        QTest::newRow("less than half goes down") << 0.00099 << 0;
        QTest::newRow("a second") << 1.0 << 500;
        QTest::newRow("before the start towards zero") << -0.002 << 0;
        QTest::newRow("far before the start") << -1.0 << -499;
        QTest::newRow("too late") << 1e300 << maxInt;
        QTest::newRow("infinite") << qInf() << maxInt;
        QTest::newRow("too early") << -1e300 << std::numeric_limits<int>::min();
        QTest::newRow("not a number") << qQNaN() << 0;
    }

    void timesAndIndicesConvert()
    {
        QFETCH(double, time);
        QTEST(signalOf(4, 1, 0).indexOf(time), "index");
    }

    void durationIsTheTimeOfTheEnd()
    {
        const TStoredSignal signal = signalOf(4, 1, 251);
        QCOMPARE(signal.timeOf(125), 0.25);
        QCOMPARE(signal.timeOf(-1), -0.002);
        QCOMPARE(signal.duration(), 0.502);
    }

    void theAppendsOfTheBaseOnlyTellTheListeners()
    {
        TStoredSignal signal = signalOf(4, 1, 8);
        TCallback listener;
        signal.addListener(&listener);
        signal.addInterleaved(nullptr, 0);
        signal.addPerChannel(nullptr, 0);
        signal.addPerChannelDouble(nullptr, 0);
        QCOMPARE(listener.calls, 3);
        QCOMPARE(signal.sampleCount(), 8);
        signal.removeListener(&listener);
        signal.addInterleaved(nullptr, 0);
        QCOMPARE(listener.calls, 3);
    }

    void listenersAreToldInOrder()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        QByteArray order;
        TCallback first([&] { order += 'a'; });
        TCallback second([&] { order += 'b'; });
        signal.addListener(&first);
        signal.addListener(&second);
        signal.addListener(&first);
        signal.addListener(nullptr);
        signal.addInterleaved(nullptr, 0);
        QCOMPARE(order, QByteArray("ab"));
    }

    void listenersMayComeAndGoWhileTheyAreTold()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        std::vector<std::unique_ptr<TCallback>> newcomers;
        TCallback last;
        TCallback removed;
        TCallback busy([&] {
            for (int i = 0; i < 100; ++i) {
                newcomers.push_back(std::make_unique<TCallback>());
                signal.addListener(newcomers.back().get());
            }
            signal.removeListener(&removed);
            signal.removeListener(&busy);
        });
        signal.addListener(&busy);
        signal.addListener(&removed);
        signal.addListener(&last);
        signal.addInterleaved(nullptr, 0);
        QCOMPARE(busy.calls, 1);
        QCOMPARE(removed.calls, 0);
        QCOMPARE(last.calls, 1);
        QCOMPARE(newcomers.front()->calls, 0);

        signal.addInterleaved(nullptr, 0);
        QCOMPARE(busy.calls, 1);
        QCOMPARE(removed.calls, 0);
        QCOMPARE(last.calls, 2);
        QCOMPARE(newcomers.back()->calls, 1);
    }

    void aListenerMayAppendWhileItIsTold()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        TCallback gone;
        TCallback nested([&] {
            if (nested.calls == 1)
                signal.addInterleaved(nullptr, 0);
            signal.removeListener(&gone);
        });
        TCallback last;
        signal.addListener(&gone);
        signal.addListener(&nested);
        signal.addListener(&last);
        signal.addInterleaved(nullptr, 0);
        QCOMPARE(gone.calls, 2);
        QCOMPARE(nested.calls, 2);
        QCOMPARE(last.calls, 2);
    }

    void aListenerThatThrowsDoesNotSpoilTheList()
    {
        TStoredSignal signal = signalOf(4, 1, 0);
        TCallback gone;
        TCallback bad([&] {
            signal.removeListener(&gone);
            signal.removeListener(&bad);
            throw std::runtime_error("disk full");
        });
        TCallback good;
        signal.addListener(&gone);
        signal.addListener(&bad);
        signal.addListener(&good);
        QVERIFY_EXCEPTION_THROWN(signal.addInterleaved(nullptr, 0), std::runtime_error);
        signal.addInterleaved(nullptr, 0);
        QCOMPARE(gone.calls, 1);
        QCOMPARE(bad.calls, 1);
        QCOMPARE(good.calls, 1);
    }

    void blocksOutOfRangeAreNull()
    {
        TStoredSignal signal = signalOf(4, 2, 9);
        QCOMPARE(signal.blockCount(), 2);
        QVERIFY(signal.lockBlock(1, 1) != nullptr);
        QCOMPARE(signal.lockBlock(0, -1), nullptr);
        QCOMPARE(signal.lockBlock(0, 2), nullptr);
        QCOMPARE(signal.lockBlock(-1, 0), nullptr);
        QCOMPARE(signal.lockBlock(2, 0), nullptr);
        signal.unlockBlock(0, -1);
        signal.unlockBlock(-1, 0);
        signal.unlockBlock(2, 0);
        signal.unlockBlock(0, maxInt);
        QCOMPARE(signal.blocksFreed, 0);
    }

    void aBlockIsLoadedOnceAndKept()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4, 5, 6, 7, 8}});
        const short* const block = signal.lockBlock(0, 1);
        QCOMPARE(block[0], short(5));
        QCOMPARE(block[3], short(8));
        signal.unlockBlock(0, 1);
        QCOMPARE(signal.lockBlock(0, 1), block);
        signal.unlockBlock(0, 1);
        QCOMPARE(signal.blocksLoaded, 1);
    }

    void trimmingFreesWhatIsNotLocked()
    {
        TStoredSignal signal = signalOf(4, 1, 12);
        signal.lockBlock(0, 0);
        signal.lockBlock(0, 1);
        signal.lockBlock(0, 1);
        signal.unlockBlock(0, 1);
        signal.lockBlock(0, 2);
        signal.unlockBlock(0, 2);
        signal.unlockBlock(0, 2);
        signal.trimBlocks(false);
        QCOMPARE(signal.blocksFreed, 1);
        signal.unlockBlock(0, 0);
        signal.unlockBlock(0, 1);
        signal.trimBlocks(false);
        QCOMPARE(signal.blocksFreed, 3);
    }

    void trimmingCountsTheLastBlockAsAsked()
    {
        TStoredSignal signal = signalOf(4, 1, 9);
        signal.trimBlocks(true);
        QCOMPARE(signal.blockCount(), 3);
        signal.trimBlocks(false);
        QCOMPARE(signal.blockCount(), 2);
        TStoredSignal even = signalOf(4, 1, 8);
        even.trimBlocks(true);
        QCOMPARE(even.blockCount(), 2);
    }

    void aBlockReadBeforeItWasFullIsReadAgain()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4, 5}});
        signal.trimBlocks(true);
        QCOMPARE(signal.lockBlock(0, 1)[1], short(0));
        signal.unlockBlock(0, 1);
        signal.grow({{6, 7, 8}});
        QCOMPARE(signal.lockBlock(0, 1)[1], short(6));
        signal.unlockBlock(0, 1);
    }

    void aBlockLockedBeforeItWasFullIsReadAgainAfterItsLastLock()
    {
        TStoredSignal signal(4, {{1, 2, 3, 4, 5}});
        signal.trimBlocks(true);
        const short* const early = signal.lockBlock(0, 1);
        signal.grow({{6, 7, 8}});
        QCOMPARE(early[0], short(5));
        signal.unlockBlock(0, 1);
        QCOMPARE(signal.lockBlock(0, 1)[3], short(8));
        signal.unlockBlock(0, 1);
        QCOMPARE(signal.blocksLoaded, 2);
    }

    void moreThan1024BlocksEvictTheOldestThatIsNotLocked()
    {
        TStoredSignal signal = signalOf(1, 1, 1100);
        signal.lockBlock(0, 0);
        for (int block = 1; block < 1025; ++block) {
            signal.lockBlock(0, block);
            signal.unlockBlock(0, block);
        }
        QCOMPARE(signal.blocksFreed, 0);
        signal.lockBlock(0, 1025);
        QCOMPARE(signal.blocksFreed, 1);
        signal.lockBlock(0, 0);
        QCOMPARE(signal.blocksLoaded, 1026);
        signal.lockBlock(0, 1);
        QCOMPARE(signal.blocksLoaded, 1027);
        QCOMPARE(signal.blocksFreed, 2);
    }

    void nothingIsEvictedWhileEveryBlockIsLocked()
    {
        TStoredSignal signal = signalOf(1, 1, 1100);
        for (int block = 0; block < 1100; ++block)
            QVERIFY(signal.lockBlock(0, block) != nullptr);
        QCOMPARE(signal.blocksFreed, 0);
    }

    void aRecordingOfMoreThan4096BlocksIsReadToItsEnd()
    {
        auto samples = randomSamples(2, 20000, 1);
        TStoredSignal signal(2, samples);
        QCOMPARE(signal.blockCount(), 10000);
        for (const int block : {9999, 4095, 4096, 4097}) {
            QCOMPARE(signal.lockBlock(1, block)[1], samples[1][2 * block + 1]);
            signal.unlockBlock(1, block);
        }
    }
};

QTEST_GUILESS_MAIN(SignalTest)
#include "SignalTest.moc"
