#include "acq/DeviceSamples.h"
#include "acq/SimulatedDevice.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace acq;

class PortAcqDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeviceTellsItsForm();
    void aMaskTakesTheNamesOfItsChannels();
    void theGainReplacesTheRange();
    void aNewDeviceKnowsNothingYet_data() { families(); }
    void aNewDeviceKnowsNothingYet();
    void framesArriveSampleForSample_data();
    void framesArriveSampleForSample();
    void highRateFramesArriveAsMeansOfTwo();
    void anOddHighRateFrameIsKeptBack();
    void electrodesAndBatteryAreThoseOfTheLastFrame_data() { families(); }
    void electrodesAndBatteryAreThoseOfTheLastFrame();
    void standardLeadsWithoutAnElectrodeAreZero();
    void highRateLeadsStayWithoutTheirElectrode();
    void aChannelOutOfRangeIsSaturated();
    void saturationLooksAtWhatTheAmplifierGave();
    void aNewStartForgetsSaturation();
    void electrodesAndBatteryOutliveARestart_data() { families(); }
    void electrodesAndBatteryOutliveARestart();
    void theHighRateDeviceIsNeverSaturated();
    void queriesMayComeFromOtherThreads();

private:
    static void families()
    {
        QTest::addColumn<bool>("highRate");
        QTest::newRow("standard") << false;
        QTest::newRow("high rate") << true;
    }
};

void PortAcqDeviceTest::aDeviceTellsItsForm()
{
    for (const bool highRate : {false, true}) {
        const auto device = makeDevice(highRate, "ttyThatIsNone");
        QCOMPARE(device->channelCount(), 14);
        const char* const names[] = {"I",  "II", "III", "aVR", "aVL", "aVF", "V1",
                                     "V2", "V3", "V4",  "V5",  "V6",  "CM5", "CR5"};
        for (int i = 0; i < 14; ++i)
            QCOMPARE(device->channelName(i), names[i]);
        QCOMPARE(device->channelName(-1), "");
        QCOMPARE(device->channelName(14), "");
        QCOMPARE(device->samplingRate(), 500);
        QCOMPARE(device->bytesPerSample(), 2);
        QCOMPARE(device->resolutionBits(), 16);
        QCOMPARE(device->rangeMax(), highRate ? 300.0 : 450.0);
        QCOMPARE(device->rangeMin(), highRate ? -300.0 : -450.0);
        QCOMPARE(device->nextPacemakerPulse(), 0);
        QVERIFY(!device->isWaiting());
        device->resetDevice();
    }
}

void PortAcqDeviceTest::aMaskTakesTheNamesOfItsChannels()
{
    const TStdAcqDevice reduced("ttyThatIsNone", standardBaud, 1154);
    QCOMPARE(reduced.channelCount(), 3);
    QCOMPARE(reduced.channelName(0), "II");
    QCOMPARE(reduced.channelName(1), "V2");
    QCOMPARE(reduced.channelName(2), "V5");
    QCOMPARE(reduced.channelName(3), "");
    const TStdAcqDevice beyond("ttyThatIsNone", standardBaud, 3 << 13);
    QCOMPARE(beyond.channelCount(), 1);
    QCOMPARE(beyond.channelName(0), "CR5");
}

void PortAcqDeviceTest::theGainReplacesTheRange()
{
    for (const bool highRate : {false, true}) {
        const auto device = makeDevice(highRate, "ttyThatIsNone");
        device->setRange(123.5);
        QCOMPARE(device->rangeMin(), -123.5);
        QCOMPARE(device->rangeMax(), 123.5);
    }
}

void PortAcqDeviceTest::aNewDeviceKnowsNothingYet()
{
    QFETCH(bool, highRate);
    const auto device = makeDevice(highRate, "ttyThatIsNone");
    QVERIFY(device->isOk());
    QCOMPARE(device->lastError(), "");
    QCOMPARE(device->bytesAvailable(), 0);
    QCOMPARE(device->batteryVoltage(), 0.0);
    for (const char* name : electrodeList)
        QVERIFY(!device->isElectrodeOff(name));
    for (int channel = -1; channel < 20; ++channel)
        QVERIFY(!device->isChannelSaturated(channel));
    device->stop();
    QVERIFY(device->isOk());
}

void PortAcqDeviceTest::framesArriveSampleForSample_data()
{
    QTest::addColumn<int>("mask");
    QTest::newRow("all") << -1;
    QTest::newRow("reduced") << 1154;
    QTest::newRow("limb leads") << 0x3F;
    QTest::newRow("one") << (1 << CR5);
}

void PortAcqDeviceTest::framesArriveSampleForSample()
{
    QFETCH(int, mask);
    constexpr int count = 2000;
    TSimulatedDevice simulated;
    simulated.feed(frames(TFrameBytes::standard(), 0, count));
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, mask);
    device.start();
    QByteArray expected;
    for (int i = 0; i < count; ++i) {
        for (const int channel : selectedChannels(mask, 14))
            append(expected, augmented(channel, numbered(i)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), expected.size(), 20000);
    QVERIFY(taken(device) == expected);
    QCOMPARE(device.bytesAvailable(), 0);
}

void PortAcqDeviceTest::highRateFramesArriveAsMeansOfTwo()
{
    constexpr int count = 2000;
    TSimulatedDevice simulated;
    simulated.feed(frames(TFrameBytes::highRate(), 0, count));
    THRAcqDevice device(simulated.path().c_str(), highRateBaud);
    device.start();
    QByteArray expected;
    for (int i = 0; i < count; i += 2) {
        for (int channel = 0; channel < 14; ++channel) {
            const int sum = augmented(channel, numbered(i)) + augmented(channel, numbered(i + 1));
            append(expected, sum >> 1);
        }
    }
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), expected.size(), 20000);
    QVERIFY(taken(device) == expected);
}

void PortAcqDeviceTest::anOddHighRateFrameIsKeptBack()
{
    const TFrameBytes family = TFrameBytes::highRate();
    TSimulatedDevice simulated;
    QByteArray third = family.with(numbered(2));
    third[family.battery] = '\x64';
    simulated.feed(frames(family, 0, 2) + third);
    THRAcqDevice device(simulated.path().c_str(), highRateBaud);
    device.start();
    QTRY_COMPARE_WITH_TIMEOUT(device.batteryVoltage(), 1.3, 20000);
    QTRY_COMPARE(device.bytesAvailable(), 28);
    QTest::qWait(20);
    QCOMPARE(device.bytesAvailable(), 28);
    simulated.feed(family.with(numbered(3)));
    QTRY_COMPARE(device.bytesAvailable(), 56);
}

void PortAcqDeviceTest::electrodesAndBatteryAreThoseOfTheLastFrame()
{
    QFETCH(bool, highRate);
    const TFrameBytes family = familyOf(highRate);
    struct TCase
    {
        int place;
        int value;
        const char* name;
    };
    const TCase cases[] = {
        {family.statusA, 0x20, "LA"}, {family.statusA, 0x40, "LL"}, {family.statusA, 0x80, "LL"},
        {family.statusB, 0x20, "RA"}, {family.statusB, 0x40, "RA"}, {family.statusC, 0x10, "V1"},
        {family.statusC, 0x20, "V2"}, {family.statusC, 0x40, "V3"}, {family.statusC, 0x80, "V4"},
        {family.statusA, 0x10, "V5"}, {family.statusD, 0x10, "V6"}};
    TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    device->start();
    int level = 100;
    for (const TCase& off : cases) {
        QByteArray frame = family.empty;
        frame[off.place] = static_cast<char>(off.value);
        // The battery tells which frame is the last one; a second frame, as electrodes are told after it.
        frame[family.battery] = static_cast<char>(++level);
        simulated.feed(frame + frame);
        QTRY_COMPARE_WITH_TIMEOUT(device->batteryVoltage(), level * 0.013, 20000);
        for (const char* name : electrodeList)
            QTRY_COMPARE(device->isElectrodeOff(name), qstrcmp(name, off.name) == 0);
    }
    for (const char* name : {"", "la", "V7", "LA ", "N", "I"})
        QVERIFY(!device->isElectrodeOff(name));
    QVERIFY(!device->isElectrodeOff(nullptr));
    simulated.feed(family.empty);
    QTRY_VERIFY(!device->isElectrodeOff("V6"));
}

void PortAcqDeviceTest::standardLeadsWithoutAnElectrodeAreZero()
{
    const TFrameBytes family = TFrameBytes::standard();
    QByteArray frame = family.with(numbered(5));
    frame[family.statusA] = '\x30'; // LA, V5
    frame[family.statusC] = '\x10'; // V1
    TSimulatedDevice simulated;
    simulated.feed(frame);
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, -1);
    device.start();
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), 28, 20000);
    QByteArray expected;
    for (int channel = 0; channel < 14; ++channel) {
        const bool isZero = (channel <= aVF && channel != II) || channel == V1 || channel == V5;
        append(expected, isZero ? 0 : numbered(5)[static_cast<std::size_t>(channel)]);
    }
    QCOMPARE(taken(device).toHex(), expected.toHex());
}

void PortAcqDeviceTest::highRateLeadsStayWithoutTheirElectrode()
{
    const TFrameBytes family = TFrameBytes::highRate();
    QByteArray frame = family.with(numbered(5));
    frame[family.statusA] = frame[family.statusB] = frame[family.statusC] = frame[family.statusD] = '\xFF';
    TSimulatedDevice simulated;
    simulated.feed(frame + frame);
    THRAcqDevice device(simulated.path().c_str(), highRateBaud);
    device.start();
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), 28, 20000);
    QByteArray expected;
    for (int channel = 0; channel < 14; ++channel)
        append(expected, augmented(channel, numbered(5)));
    QCOMPARE(taken(device).toHex(), expected.toHex());
    for (const char* name : electrodeList)
        QVERIFY(device.isElectrodeOff(name));
}

void PortAcqDeviceTest::aChannelOutOfRangeIsSaturated()
{
    const TFrameBytes family = TFrameBytes::standard();
    TEcgSample::TChannels values{};
    values[V3] = 32001;
    TSimulatedDevice simulated;
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, -1);
    device.start();
    simulated.feed(family.with(values).repeated(249));
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), 249 * 28, 20000);
    QVERIFY(!device.isChannelSaturated(V3));
    simulated.feed(family.with(values));
    QTRY_VERIFY(device.isChannelSaturated(V3));
    for (int channel = -1; channel < 20; ++channel)
        QCOMPARE(device.isChannelSaturated(channel), channel == V3);
    values[V3] = 32000;
    simulated.feed(family.with(values));
    QTRY_VERIFY(!device.isChannelSaturated(V3));
}

void PortAcqDeviceTest::saturationLooksAtWhatTheAmplifierGave()
{
    const TFrameBytes family = TFrameBytes::standard();
    TEcgSample::TChannels values{};
    values[V1] = -32001;
    values[I] = values[II] = 32767;
    QByteArray frame = family.with(values);
    frame[family.statusC] = '\x10'; // V1
    TSimulatedDevice simulated;
    // Not even in the mask.
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, 1 << CR5);
    device.start();
    simulated.feed(frame.repeated(250));
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), 250 * 2, 20000);
    for (int channel = 0; channel < 14; ++channel)
        QCOMPARE(device.isChannelSaturated(channel),
                 channel == V1 || channel == I || channel == II || channel == aVR);
}

void PortAcqDeviceTest::aNewStartForgetsSaturation()
{
    const TFrameBytes family = TFrameBytes::standard();
    TEcgSample::TChannels values{};
    values[V3] = 32001;
    TSimulatedDevice simulated;
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, -1);
    device.start();
    simulated.feed(family.with(values).repeated(250));
    QTRY_VERIFY_WITH_TIMEOUT(device.isChannelSaturated(V3), 20000);
    device.stop();
    QVERIFY(device.isChannelSaturated(V3));
    device.start();
    QTRY_VERIFY(!device.isChannelSaturated(V3));
}

void PortAcqDeviceTest::electrodesAndBatteryOutliveARestart()
{
    QFETCH(bool, highRate);
    const TFrameBytes family = familyOf(highRate);
    QByteArray frame = family.empty;
    frame[family.statusA] = '\x20'; // LA
    frame[family.battery] = '\x64';
    TSimulatedDevice simulated;
    const auto device = makeDevice(highRate, simulated.path());
    simulated.feed(frame);
    device->start();
    QTRY_VERIFY_WITH_TIMEOUT(device->isElectrodeOff("LA"), 20000);
    device->stop();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2"));
    device->start();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2\1\1\t"));
    // Known until the next frame tells otherwise: a short outage must not look like a cable put right.
    QVERIFY(device->isElectrodeOff("LA"));
    QCOMPARE(device->batteryVoltage(), 1.3);
    simulated.feed(family.empty);
    QTRY_VERIFY(!device->isElectrodeOff("LA"));
    QCOMPARE(device->batteryVoltage(), 0.0);
}

void PortAcqDeviceTest::theHighRateDeviceIsNeverSaturated()
{
    TEcgSample::TChannels values{};
    values.fill(32767);
    TSimulatedDevice simulated;
    THRAcqDevice device(simulated.path().c_str(), highRateBaud);
    device.start();
    simulated.feed(TFrameBytes::highRate().with(values).repeated(600));
    QTRY_COMPARE_WITH_TIMEOUT(device.bytesAvailable(), 300 * 28, 20000);
    for (int channel = 0; channel < 14; ++channel)
        QVERIFY(!device.isChannelSaturated(channel));
}

void PortAcqDeviceTest::queriesMayComeFromOtherThreads()
{
    constexpr int count = 20000;
    const TFrameBytes family = TFrameBytes::standard();
    QByteArray frame = family.with(numbered(1));
    frame[family.statusD] = '\x10';
    frame[family.battery] = '\x64';
    TSimulatedDevice simulated;
    simulated.feed(frame.repeated(count));
    TStdAcqDevice device(simulated.path().c_str(), standardBaud, -1);
    device.start();
    std::atomic<bool> ends = false;
    std::atomic<int> wrong = 0;
    std::thread asking([&] {
        while (!ends) {
            const double volts = device.batteryVoltage();
            const bool known = (volts == 0.0 || volts == 100 * 0.013) && device.isOk() &&
                               !device.isElectrodeOff("LA") && !device.isChannelSaturated(V1) &&
                               qstrlen(device.lastError()) == 0;
            wrong += known ? 0 : 1;
        }
    });
    qint64 bytes = 0;
    QElapsedTimer timer;
    timer.start();
    while (bytes < count * 28 && timer.elapsed() < 60000) {
        bytes += taken(device).size();
        QTest::qSleep(1);
    }
    ends = true;
    asking.join();
    QCOMPARE(bytes, qint64(count * 28));
    QCOMPARE(wrong.load(), 0);
    QVERIFY(device.isElectrodeOff("V6"));
}

QTEST_GUILESS_MAIN(PortAcqDeviceTest)
#include "PortAcqDeviceTest.moc"
