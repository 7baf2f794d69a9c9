#include "acq/AcqChannels.h"
#include "acq/TAcqListener.h"
#include "acq/THRAcqDevice.h"
#include "acq/TQtAcqDriver.h"
#include "acq/TStdAcqDevice.h"
#include "analysis/signals/TInt16Signal.h"
#include "support/RunningDevice.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

class TErrorCounter : public TAcqListener
{
public:
    void dataCallback(TAcqDriver*) override {}
    void pacemakerCallback(TAcqDriver*, int) override {}
    void errorCallback(TAcqDriver*, const char*) override { ++errors; }
    void communicationFailedCallback(TAcqDriver*) override { ++errors; }

    int errors = 0;
};

/// A recording through the whole road: device, pump, signal on this thread.
class TRecording
{
public:
    explicit TRecording(std::unique_ptr<TAcqDevice> device)
        : m_device(std::move(device)),
          m_signal(4096, 1 << 17, m_device->channelCount(), m_device->samplingRate()),
          m_driver(m_device.get(), &m_signal)
    {
        m_driver.addListener(&m_listener);
        m_driver.start();
    }

    TInt16Signal& signal() { return m_signal; }
    int errors() const { return m_listener.errors; }
    void stop() { m_driver.stop(); }

    /// Waits until the device has sent everything and nothing comes any more.
    bool waitForTheEnd(const TRunningDevice& device)
    {
        if (!QTest::qWaitFor([&device] { return device.isFinished(); }, 120000))
            return false;
        int before = -1;
        while (m_signal.sampleCount() != before) {
            before = m_signal.sampleCount();
            QTest::qWait(1000);
        }
        return true;
    }

    std::vector<int> frame(int index)
    {
        std::vector<int> samples;
        for (int channel = 0; channel < m_signal.channelCount(); ++channel)
            samples.push_back(m_signal.sample(channel, index));
        return samples;
    }

private:
    std::unique_ptr<TAcqDevice> m_device;
    TErrorCounter m_listener;
    TInt16Signal m_signal;
    TQtAcqDriver m_driver;
};

/// The 14 samples that the device's frame of that number has to become, worked out apart from the driver.
std::vector<int> leadsOf(std::int64_t index)
{
    const auto sample = [index](sim::TSampleIndex channel) {
        return int(sim::patternSample(channel, index));
    };
    const int one = sample(sim::I);
    const int two = sample(sim::II);
    const int three = sample(sim::III);
    return {one,
            two,
            three,
            std::min(-(one + two) / 2, 32767),
            std::min((one - three) / 2, 32767),
            std::clamp((two + three) / 2, -32768, 32767),
            sample(sim::V1),
            sample(sim::V2),
            sample(sim::V3),
            sample(sim::V4),
            sample(sim::V5),
            sample(sim::V6),
            sample(sim::CM5),
            sample(sim::CR5)};
}

std::vector<int> standardFrame(std::int64_t index)
{
    return leadsOf(index);
}

std::vector<int> reducedFrame(std::int64_t index)
{
    const std::vector<int> leads = leadsOf(index);
    return {leads[1], leads[7], leads[10]};
}

/// Two frames of the device become one.
std::vector<int> highRateFrame(std::int64_t index)
{
    const std::vector<int> first = leadsOf(index);
    std::vector<int> mean = leadsOf(index + 1);
    for (std::size_t i = 0; i < mean.size(); ++i)
        mean[i] = (first[i] + mean[i]) >> 1;
    return mean;
}

using TExpected = std::vector<int> (*)(std::int64_t);

/// The device's frame that came first; the start command is sent twice and drops what came between.
std::int64_t findFirstFrame(const std::vector<int>& received, TExpected expected)
{
    for (std::int64_t index = 0; index < 20000; ++index) {
        if (received == expected(index))
            return index;
    }
    return -1;
}

constexpr int secondsOfPattern = 60;

} // namespace

class SimulatedRecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMinuteOfThePatternArrivesSampleForSample_data()
    {
        QTest::addColumn<bool>("isHighRate");
        QTest::addColumn<int>("mask");
        QTest::newRow("standard") << false << acq::allChannels;
        QTest::newRow("reduced channels") << false << acq::reducedChannels;
        QTest::newRow("high rate") << true << acq::allChannels;
    }

    void aMinuteOfThePatternArrivesSampleForSample()
    {
        QFETCH(bool, isHighRate);
        QFETCH(int, mask);
        TEcgDeviceOptions options;
        options.isHighRate = isHighRate;
        options.speed = 20.0;
        options.frameLimit = secondsOfPattern * (isHighRate ? 1000 : 500) + 5000;
        const TRunningDevice device(options);
        TRecording recording(makeDevice(device.path(), isHighRate, mask));
        QVERIFY(recording.waitForTheEnd(device));
        recording.stop();

        const TExpected expected = isHighRate                     ? highRateFrame
                                   : mask == acq::reducedChannels ? reducedFrame
                                                                  : standardFrame;
        const int step = isHighRate ? 2 : 1;
        const std::int64_t first = findFirstFrame(recording.frame(0), expected);
        QVERIFY(first >= 0);
        QVERIFY(recording.signal().sampleCount() >= secondsOfPattern * 500);
        // The pump leaves what is no tenth of a second with the device.
        const std::int64_t left = (options.frameLimit - first) / step - recording.signal().sampleCount();
        QVERIFY2(left >= 0 && left <= 50, qPrintable(QString::number(left)));
        for (int i = 0; i < recording.signal().sampleCount(); ++i)
            QVERIFY2(recording.frame(i) == expected(first + std::int64_t(i) * step),
                     qPrintable(QString::number(i)));
        QCOMPARE(recording.errors(), 0);
    }

    void aPulledCableCostsTheSamplesOfTheOutageAlone_data()
    {
        QTest::addColumn<bool>("isPulled");
        QTest::addColumn<double>("seconds");
        QTest::newRow("pulled for 1 s") << true << 1.0;
        QTest::newRow("pulled for 15 s") << true << 15.0;
        QTest::newRow("silent for 1 s") << false << 1.0;
        QTest::newRow("silent for 15 s, past the read time-out") << false << 15.0;
    }

    void aPulledCableCostsTheSamplesOfTheOutageAlone()
    {
        QFETCH(bool, isPulled);
        QFETCH(double, seconds);
        const QTemporaryDir folder;
        TEcgDeviceOptions options;
        options.link = folder.filePath(QStringLiteral("port")).toStdString();
        (isPulled ? options.hangUp : options.stall) = {1.0, seconds};
        options.frameLimit = int((seconds + 3.0) * 500);
        const TRunningDevice device(options);
        TRecording recording(makeDevice(device.path(), false, acq::allChannels));
        QTRY_VERIFY_WITH_TIMEOUT(recording.signal().sampleCount() > 400, 5000);
        const int before = recording.signal().sampleCount();
        // Samples come again after the outage, without a word about it.
        QTRY_VERIFY_WITH_TIMEOUT(recording.signal().sampleCount() > before + 750,
                                 int(seconds * 1000) + 15000);
        recording.stop();
        QCOMPARE(recording.errors(), 0);

        // Every frame is one that was sent, in order, with a single gap.
        int gaps = 0;
        std::int64_t sent = findFirstFrame(recording.frame(0), standardFrame);
        QVERIFY(sent >= 0);
        for (int i = 1; i < recording.signal().sampleCount(); ++i) {
            if (recording.frame(i) == standardFrame(sent + 1)) {
                ++sent;
                continue;
            }
            ++gaps;
            const std::int64_t after = findFirstFrame(recording.frame(i), standardFrame);
            QVERIFY2(after > sent, qPrintable(QString::number(i)));
            sent = after;
        }
        QCOMPARE(gaps, 1);
    }

    void electrodesSaturationAndBatteryAreThoseOfTheDevice()
    {
        TEcgDeviceOptions options;
        options.electrodesOff = {"LA", "V3"};
        options.saturatedSample = sim::V6;
        options.batteryVolts = 2.6;
        const TRunningDevice device(options);
        const std::unique_ptr<TAcqDevice> port = makeDevice(device.path(), false, acq::allChannels);
        port->start();
        QTRY_VERIFY_WITH_TIMEOUT(port->isChannelSaturated(acq::V6), 5000);
        QVERIFY(!port->isChannelSaturated(acq::V5));
        QVERIFY(port->isElectrodeOff("LA") && port->isElectrodeOff("V3"));
        QVERIFY(!port->isElectrodeOff("RA") && !port->isElectrodeOff("V6"));
        QCOMPARE(port->batteryVoltage(), 200 * 0.013);
        port->stop();
    }

private:
    static std::unique_ptr<TAcqDevice> makeDevice(const std::string& path, bool isHighRate, int mask)
    {
        if (isHighRate)
            return std::make_unique<THRAcqDevice>(path.c_str(), 570000);
        return std::make_unique<TStdAcqDevice>(path.c_str(), 230400, mask);
    }
};

QTEST_GUILESS_MAIN(SimulatedRecordingTest)
#include "SimulatedRecordingTest.moc"
