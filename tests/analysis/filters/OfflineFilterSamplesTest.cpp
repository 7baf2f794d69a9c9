#include "analysis/filters/NaiveOfflineChain.h"
#include "analysis/filters/TOfflineFilterChain.h"

#include <QtTest>

namespace {

/// Samples of one channel of the chain, the baseline filter on.
TRow withoutBaseline(const TRow& samples, int rate, int blockSize)
{
    TStoredSignal source(blockSize, {samples}, rate);
    TOfflineFilterChain chain(&source);
    chain.apply(false, false, true);
    TRow row;
    for (int i = 0; i < static_cast<int>(samples.size()); ++i)
        row.push_back(static_cast<short>(chain.current()->sample(0, i)));
    return row;
}

/// Least and greatest sample of each column of `step` samples, each beginning with the last of the one
/// before.
void columnsOf(TSignal& signal, int start, int step, std::vector<int>& low, std::vector<int>& high)
{
    for (std::size_t column = 0; column < low.size(); ++column) {
        const int end = start + step * (static_cast<int>(column) + 1);
        const int from = column == 0 ? start : end - step - 1;
        low[column] = high[column] = signal.sample(0, from);
        for (int i = from + 1; i < end; ++i) {
            low[column] = std::min(low[column], signal.sample(0, i));
            high[column] = std::max(high[column], signal.sample(0, i));
        }
    }
}

} // namespace

class OfflineFilterSamplesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheNaiveFormOfItsStages_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("blockSize");
        QTest::addColumn<int>("switches");
        QTest::addColumn<int>("channels");
        for (const int rate : {250, 500, 1000}) {
            for (int switches = 0; switches < 8; ++switches)
                QTest::addRow("%d, switches %d", rate, switches)
                    << rate << 7 * rate + 13 << 1024 << switches << 1;
            QTest::addRow("%d, the windows overlap", rate) << rate << 5 * rate << 1024 << 7 << 1;
            QTest::addRow("%d, exactly one window", rate) << rate << 3 * rate << 1024 << 7 << 1;
            QTest::addRow("%d, one sample more than a window", rate)
                << rate << 3 * rate + 1 << 1024 << 7 << 1;
            QTest::addRow("%d, shorter than a second", rate) << rate << rate / 3 << 1024 << 7 << 1;
            QTest::addRow("%d, one sample", rate) << rate << 1 << 1024 << 7 << 1;
            QTest::addRow("%d, blocks smaller than the margins", rate) << rate << 7 * rate << 100 << 7 << 1;
            QTest::addRow("%d, one block beyond all margins", rate) << rate << 7 * rate << 8192 << 7 << 1;
            QTest::addRow("%d, 16 channels in turn", rate) << rate << 3 * rate << 1024 << 7 << 16;
        }
    }

    void itIsTheNaiveFormOfItsStages()
    {
        QFETCH(int, rate);
        QFETCH(int, count);
        QFETCH(int, blockSize);
        QFETCH(int, switches);
        QFETCH(int, channels);
        const auto samples = driftingSamples(channels, count);
        TStoredSignal source(blockSize, samples, rate);
        TOfflineFilterChain chain(&source);
        chain.apply((switches & 1) != 0, (switches & 2) != 0, (switches & 4) != 0);
        std::vector<TRow> expected;
        for (const TRow& row : samples)
            expected.push_back(naiveOfflineChain(row, rate, blockSize, switches));
        int greatest = 0;
        int different = 0;
        for (int i = 0; i < count * channels; ++i) {
            const int channel = i % channels;
            const int at = i / channels;
            const int difference = std::abs(chain.current()->sample(channel, at) - expected[channel][at]);
            greatest = std::max(greatest, difference);
            different += difference != 0 ? 1 : 0;
        }
        // A sum that rounds to the other side of a whole number moves a sample by one count.
        QVERIFY2(greatest <= 1, qPrintable(QString::number(greatest)));
        QVERIFY2(different <= count * channels / 200, qPrintable(QString::number(different)));
    }

    void outsideTheRecordingTheOutputIsZero()
    {
        TStoredSignal source(512, driftingSamples(1, 3000));
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sampleCount(), 3000);
        QVERIFY(chain.current()->sample(0, 2999) != 0);
        QCOMPARE(chain.current()->sample(0, 3000), 0);
        QCOMPARE(chain.current()->sample(0, -1), 0);
        QCOMPARE(chain.current()->sample(1, 5), 0);
    }

    void theRingingBehindTheEndIsNotDrawn()
    {
        constexpr int end = 3000; // 440 samples into the last block
        TStoredSignal source(512, driftingSamples(1, end));
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        TSignal& output = *chain.current();
        const short* const block = output.lockBlock(0, end / 512);
        QVERIFY(block[end % 512 + 5] != 0);
        output.unlockBlock(0, end / 512);
        std::vector<int> low(50), high(50), expectedLow(50), expectedHigh(50);
        for (const int step : {1, 4, 13}) {
            const int start = end - 20 * step - 2;
            output.channel(0)->peaks(start, 50 * step, low.data(), high.data(), 0, 50, false);
            columnsOf(output, start, step, expectedLow, expectedHigh);
            QCOMPARE(low, expectedLow);
            QCOMPARE(high, expectedHigh);
            QCOMPARE(high.back(), 0);
        }
    }

    void aShortRecordingLosesExactlyItsMean()
    {
        for (const int count : {1, 2, 601, 749, 750}) {
            TRow slope(count);
            for (int i = 0; i < count; ++i)
                slope[i] = static_cast<short>(-1234 + 8 * i); // the mean is a whole number
            const int mean = -1234 + 4 * (count - 1);
            TStoredSignal source(256, {slope}, 250);
            TOfflineFilterChain chain(&source);
            for (int i = 0; i < count; ++i)
                QCOMPARE(chain.current()->sample(0, i), slope[i] - mean);
        }
    }

    void blocksMeetAt1000_data()
    {
        QTest::addColumn<int>("blockSize");
        QTest::newRow("far smaller than the margin") << 1024;
        QTest::newRow("larger than the margin") << 4096;
    }

    void blocksMeetAt1000()
    {
        QFETCH(int, blockSize);
        constexpr int count = 60000;
        TRow samples = randomSamples(1, count, 21)[0];
        for (short& sample : samples)
            sample = static_cast<short>(sample / 1024); // noise of 32 counts up and down
        const TRow whole = withoutBaseline(samples, 1000, 1 << 16);
        const TRow inBlocks = withoutBaseline(samples, 1000, blockSize);
        for (int at = blockSize; at < count; at += blockSize) {
            const int step = (inBlocks[at] - inBlocks[at - 1]) - (whole[at] - whole[at - 1]);
            QVERIFY2(std::abs(step) <= 3, qPrintable(QStringLiteral("%1: %2").arg(at).arg(step)));
        }
    }

    void anEmptyRecordingGivesNothing()
    {
        TStoredSignal source(512, {TRow()});
        TOfflineFilterChain chain(&source);
        chain.apply(true, true, true);
        QCOMPARE(chain.current()->sampleCount(), 0);
        QCOMPARE(chain.current()->sample(0, 0), 0);
    }

    void eachChannelHasItsOwnParabola()
    {
        std::vector<TRow> samples(16, TRow(4000));
        for (int channel = 0; channel < 16; ++channel) {
            for (int i = 0; i < 4000; ++i)
                samples[channel][i] = static_cast<short>((channel - 8) * 100 + channel * i / 8);
        }
        TStoredSignal source(1024, samples, 250);
        TOfflineFilterChain chain(&source);
        for (int channel = 0; channel < 16; ++channel) {
            for (int i = 0; i < 4000; i += 9)
                QVERIFY(std::abs(chain.current()->sample(channel, i)) <= 1);
        }
    }

    void blocksMayBeAskedForInAnyOrder()
    {
        TStoredSignal source(512, driftingSamples(1, 4000));
        TOfflineFilterChain forward(&source);
        TOfflineFilterChain backward(&source);
        forward.apply(true, true, true);
        backward.apply(true, true, true);
        TRow rows[2] = {TRow(4000), TRow(4000)};
        for (int i = 0; i < 4000; ++i) {
            rows[0][i] = static_cast<short>(forward.current()->sample(0, i));
            rows[1][3999 - i] = static_cast<short>(backward.current()->sample(0, 3999 - i));
        }
        QVERIFY(rows[0] == rows[1]);
    }
};

QTEST_GUILESS_MAIN(OfflineFilterSamplesTest)
#include "OfflineFilterSamplesTest.moc"
