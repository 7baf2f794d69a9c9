#include "analysis/filters/SmoothingTables.h"
#include "analysis/signals/TFirDecimator.h"
#include "analysis/signals/TInt16Signal.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

#include <cmath>
#include <complex>
#include <numbers>

namespace {

constexpr int count = 4000;
constexpr double amplitude = 20000.0;

std::vector<short> wave(double frequency, int rate)
{
    std::vector<short> samples(count);
    for (int i = 0; i < count; ++i) {
        const double angle = 2.0 * std::numbers::pi * frequency * i / rate;
        samples[i] = static_cast<short>(std::lround(amplitude * std::sin(angle)));
    }
    return samples;
}

/// What the live display is given of a recording.
std::vector<int> decimated(const std::vector<short>& samples, int rate)
{
    TInt16Signal source(256, count, 1, rate);
    TInt16Signal sink(256, count, 1, 500);
    TFirDecimator decimator(velantor::monitorDecimation(), rate == 1000 ? 2 : 1);
    decimator.attach(&source, 0);
    decimator.setSink(&sink);
    cutAtRandom(count, 51, 3, [&](int from, int n) {
        append(source, {samples}, from, n);
        decimator.run();
    });
    std::vector<int> values;
    for (int i = 0; i < sink.sampleCount(); ++i)
        values.push_back(sink.sample(0, i));
    return values;
}

} // namespace

class MonitorDecimationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHeartPassesInStep_data()
    {
        QTest::addColumn<double>("frequency");
        for (const double frequency : {0.5, 5.0, 25.0, 50.0, 100.0})
            QTest::addRow("%g Hz", frequency) << frequency;
    }

    void theHeartPassesInStep()
    {
        QFETCH(double, frequency);
        const auto samples = wave(frequency, 1000);
        const auto values = decimated(samples, 1000);
        QCOMPARE(static_cast<int>(values.size()), (count - 14 - 1) / 2);
        for (int i = 20; i < static_cast<int>(values.size()); ++i)
            QVERIFY(std::abs(values[i] - samples[2 * i]) <= 0.0015 * amplitude);
    }

    void whatWouldComeBackAsTheHeartIsStopped_data()
    {
        QTest::addColumn<double>("frequency");
        QTest::addColumn<double>("gain");
        QTest::newRow("comes back as 200 Hz") << 300.0 << 0.001;
        QTest::newRow("comes back as 100 Hz") << 400.0 << 0.001;
        QTest::newRow("comes back as 50 Hz") << 450.0 << 0.001;
        QTest::newRow("comes back as 10 Hz") << 490.0 << 0.001;
        QTest::newRow("comes back as 1 Hz") << 499.0 << 0.001;
    }

    void whatWouldComeBackAsTheHeartIsStopped()
    {
        QFETCH(double, frequency);
        QFETCH(double, gain);
        const auto values = decimated(wave(frequency, 1000), 1000);
        for (std::size_t i = 20; i < values.size(); ++i)
            QVERIFY(std::abs(values[i]) <= gain * amplitude);
    }

    void aConstantKeepsItsHeight()
    {
        const auto values = decimated(std::vector<short>(count, 12345), 1000);
        for (std::size_t i = 20; i < values.size(); ++i)
            QVERIFY(std::abs(values[i] - 12345) <= 1);
    }

    void otherRatesPassAsTheyAre()
    {
        const auto samples = randomSamples(1, count, 4)[0];
        for (const int rate : {250, 500, 2000}) {
            const auto values = decimated(samples, rate);
            QCOMPARE(static_cast<int>(values.size()), count - 14 - 1);
            QVERIFY(std::equal(values.begin(), values.end(), samples.begin()));
        }
    }
};

QTEST_GUILESS_MAIN(MonitorDecimationTest)
#include "MonitorDecimationTest.moc"
