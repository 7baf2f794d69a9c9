#include "acq/DeviceDiscovery.h"
#include "acq/SimulatedDevice.h"
#include "acq/THRAcqDevice.h"
#include "acq/TStdAcqDevice.h"
#include "base/Error.h"

#include <QElapsedTimer>
#include <QThreadPool>
#include <QtTest>

#include <functional>

namespace {

using TPorts = std::vector<TPortDescription>;

TPortDescription port(const char* description, const char* name, int vendor = 0, int product = 0)
{
    return {QString::fromUtf8(description), QString::fromUtf8(name), vendor, product};
}

TPortDescription bluetooth(const std::string& name)
{
    return port("Standard serial over Bluetooth link", name.c_str());
}

QByteArray textOf(const std::function<void()>& action)
{
    try {
        action();
        return "done";
    } catch (const TError& error) {
        return error.what();
    }
}

} // namespace

Q_DECLARE_METATYPE(TPorts)

class DeviceDiscoveryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        acq::setPortLister({});
        acq::setProbeTimeout(0);
    }

    void theDeviceAtUsbIsFound_data();
    void theDeviceAtUsbIsFound();
    void withoutADeviceThereIsNoPort_data();
    void withoutADeviceThereIsNoPort();
    void devicesFindTheirPortByThemselves();
    void devicesWithoutAPortAreNotMade();
    void aProbeKnowsADeviceByItsAnswer_data();
    void aProbeKnowsADeviceByItsAnswer();
    void aProbeTellsThatAPortCannotBeOpened();
    void aProbeClosesItsPort();
    void bluetoothPortsThatAnswerAreFoundByName();
    void portsOfOtherKindsAreLeftAlone();
    void bluetoothPortsThatCannotBeOpenedAreNone();
    void bluetoothPortsAreTriedSideBySide();
    void aPortThatIsListedTwiceIsTriedOnce();
    void thePortsOfThisMachineCanBeListed();

private:
    static void list(const TPorts& ports)
    {
        acq::setPortLister([ports] { return ports; });
    }
};

void DeviceDiscoveryTest::theDeviceAtUsbIsFound_data()
{
    QTest::addColumn<TPorts>("ports");
    QTest::addColumn<QByteArray>("name");
    const TPortDescription other = port("USB Serial", "other", 0x0403, 0x6001);
    const TPortDescription identified = port("CDC device", "identified", 1240, 223);
    QTest::newRow("described") << TPorts{other, port("VELANTOR ECG", "a")} << QByteArray("a");
    QTest::newRow("ergo") << TPorts{other, port("VELANTOR ERGO", "a")} << QByteArray("a");
    QTest::newRow("folded") << TPorts{port("velantor_ecg 2", "a")} << QByteArray("a");
    QTest::newRow("mixed case") << TPorts{port("Velantor_Ergo_12 (x)", "a")} << QByteArray("a");
    QTest::newRow("identified") << TPorts{other, identified} << QByteArray("identified");
    QTest::newRow("described before identified")
        << TPorts{identified, port("Velantor ECG", "a")} << QByteArray("a");
    QTest::newRow("first of two described")
        << TPorts{port("Velantor ergo", "b"), port("Velantor ECG", "a")} << QByteArray("b");
    QTest::newRow("first of two identified")
        << TPorts{port("", "b", 0x04D8, 0x00DF), identified} << QByteArray("b");
    QTest::newRow("both at once") << TPorts{port("Velantor ECG", "a", 1240, 223), identified}
                                  << QByteArray("a");
}

void DeviceDiscoveryTest::theDeviceAtUsbIsFound()
{
    QFETCH(TPorts, ports);
    list(ports);
    QTEST(QByteArray::fromStdString(findUsbPort()), "name");
}

void DeviceDiscoveryTest::withoutADeviceThereIsNoPort_data()
{
    QTest::addColumn<TPorts>("ports");
    QTest::newRow("no port") << TPorts{};
    QTest::newRow("no start of the text") << TPorts{port("A Velantor ECG", "a"), port(" VELANTOR ECG", "b")};
    QTest::newRow("another text") << TPorts{port("VELANTORECG", "a"), port("VELANTOR-ECG", "b"),
                                            port("VELANTOR", "c"), port("VELANTOR__ECG", "d")};
    QTest::newRow("vendor alone") << TPorts{port("", "a", 1240, 222)};
    QTest::newRow("product alone") << TPorts{port("", "a", 1241, 223)};
}

void DeviceDiscoveryTest::withoutADeviceThereIsNoPort()
{
    QFETCH(TPorts, ports);
    list(ports);
    QCOMPARE(textOf([] { findUsbPort(); }), QByteArray("Device not found"));
}

void DeviceDiscoveryTest::devicesFindTheirPortByThemselves()
{
    const TSimulatedDevice simulated;
    list({port("Velantor ECG", simulated.path().c_str())});
    TStdAcqDevice standard(-1);
    standard.start();
    QVERIFY(simulated.waitForCommands("\1\1\t"));
    standard.stop();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2"));
    THRAcqDevice highRate;
    highRate.start();
    QVERIFY(simulated.waitForCommands("\1\1\t\2\2\1\1\t"));
    QVERIFY(highRate.isOk());
}

void DeviceDiscoveryTest::devicesWithoutAPortAreNotMade()
{
    list({});
    QCOMPARE(textOf([] { TStdAcqDevice device(-1); }), QByteArray("Device not found"));
    QCOMPARE(textOf([] { THRAcqDevice device; }), QByteArray("Device not found"));
}

void DeviceDiscoveryTest::aProbeKnowsADeviceByItsAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isDevice");
    QTest::newRow("ecg") << QByteArray("ecg 1.0") << true;
    QTest::newRow("upper case") << QByteArray("ECG 1.0") << true;
    QTest::newRow("ergo") << QByteArray("My Ergo") << true;
    QTest::newRow("white space around") << QByteArray("\r\n ECG ") << true;
    QTest::newRow("within") << QByteArray("12EcG34") << true;
    QTest::newRow("another") << QByteArray("printer") << false;
    QTest::newRow("white space alone") << QByteArray("       ") << false;
    QTest::newRow("too late in the text") << QByteArray("1234567ecg") << false;
    QTest::newRow("cut") << QByteArray("12345ecg") << false;
}

void DeviceDiscoveryTest::aProbeKnowsADeviceByItsAnswer()
{
    QFETCH(QByteArray, answer);
    TSimulatedDevice simulated;
    simulated.setIdentity(answer);
    QTEST(probePort(simulated.path()), "isDevice");
    QCOMPARE(simulated.commands(), QByteArray("\x0b"));
}

void DeviceDiscoveryTest::aProbeTellsThatAPortCannotBeOpened()
{
    QCOMPARE(textOf([] { probePort("ttyThatIsNone"); }),
             QByteArray("No se pudo abrir el puerto (CreateFile)"));
}

void DeviceDiscoveryTest::aProbeClosesItsPort()
{
    TSimulatedDevice simulated;
    simulated.setIdentity("ECG 1.0");
    for (int i = 0; i < 3; ++i)
        QVERIFY(probePort(simulated.path()));
}

void DeviceDiscoveryTest::bluetoothPortsThatAnswerAreFoundByName()
{
    TSimulatedDevice devices[3];
    devices[0].setIdentity("ECG 001");
    devices[1].setIdentity("printer");
    devices[2].setIdentity("ergo 02");
    QStringList expected = {QString::fromStdString(devices[0].path()),
                            QString::fromStdString(devices[2].path())};
    expected.sort();
    list({bluetooth(devices[2].path()), bluetooth(devices[1].path()), bluetooth(devices[0].path())});
    QCOMPARE(detectBluetoothPorts(), expected);
    list({bluetooth(devices[0].path()), bluetooth(devices[1].path()), bluetooth(devices[2].path())});
    QCOMPARE(detectBluetoothPorts(), expected);
}

void DeviceDiscoveryTest::portsOfOtherKindsAreLeftAlone()
{
    TSimulatedDevice simulated;
    simulated.setIdentity("ECG 1.0");
    const char* name = simulated.path().c_str();
    list({port("bluetooth", name), port("BLUETOOTH", name), port("USB", name), port("", name)});
    QCOMPARE(detectBluetoothPorts(), QStringList());
    QCOMPARE(simulated.commands(), QByteArray());
    list({});
    QCOMPARE(detectBluetoothPorts(), QStringList());
}

void DeviceDiscoveryTest::bluetoothPortsThatCannotBeOpenedAreNone()
{
    TSimulatedDevice simulated;
    simulated.setIdentity("ECG 1.0");
    list({bluetooth("ttyThatIsNone"), bluetooth(simulated.path()), bluetooth("")});
    QCOMPARE(detectBluetoothPorts(), QStringList{QString::fromStdString(simulated.path())});
}

void DeviceDiscoveryTest::bluetoothPortsAreTriedSideBySide()
{
    constexpr int timeoutMs = 2000;
    const TSimulatedDevice silent[2];
    list({bluetooth(silent[0].path()), bluetooth(silent[1].path())});
    acq::setProbeTimeout(timeoutMs);
    // As if there were a processor for each, also where there is but one.
    const int threads = QThreadPool::globalInstance()->maxThreadCount();
    QThreadPool::globalInstance()->setMaxThreadCount(2);
    QElapsedTimer timer;
    timer.start();
    const QStringList found = detectBluetoothPorts();
    const qint64 ms = timer.elapsed();
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
    QCOMPARE(found, QStringList());
    for (const TSimulatedDevice& device : silent)
        QCOMPARE(device.commands(), QByteArray("\x0b"));
    QVERIFY2(ms >= timeoutMs - 1 && ms < 2 * timeoutMs - 1, qPrintable(QString::number(ms)));
}

void DeviceDiscoveryTest::aPortThatIsListedTwiceIsTriedOnce()
{
    TSimulatedDevice simulated;
    simulated.setIdentity("ECG 1.0");
    list({bluetooth(simulated.path()), bluetooth(simulated.path())});
    QCOMPARE(detectBluetoothPorts(), QStringList{QString::fromStdString(simulated.path())});
    QCOMPARE(simulated.commands(), QByteArray("\x0b"));
}

void DeviceDiscoveryTest::thePortsOfThisMachineCanBeListed()
{
    for (const TPortDescription& description : acq::systemPorts())
        QVERIFY(!description.portName.isEmpty());
}

QTEST_GUILESS_MAIN(DeviceDiscoveryTest)
#include "DeviceDiscoveryTest.moc"
