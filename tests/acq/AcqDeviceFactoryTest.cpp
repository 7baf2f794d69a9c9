#include "acq/AcqDeviceFactory.h"
#include "acq/DemoFile.h"
#include "acq/DeviceDiscovery.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/THRAcqDevice.h"
#include "acq/TStdAcqDevice.h"
#include "base/Constants.h"
#include "base/Error.h"
#include "base/Settings.h"
#include "support/PseudoTerminal.h"

#include <QtTest>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

class AcqDeviceFactoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
        m_workingFolder = QDir::currentPath();
    }

    void init()
    {
        QSettings().clear();
        acq::setPortLister([] {
            return std::vector<TPortDescription>{
                {QStringLiteral("Velantor ECG"), QStringLiteral("ttyTest0"), 0, 0}};
        });
    }

    void cleanup()
    {
        acq::setPortLister({});
        QDir::setCurrent(m_workingFolder);
    }

    void theSettingsChooseTheDevice_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<bool>("highRate");
        QTest::addColumn<bool>("reduced");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("channels");
        const QString standard = QStringLiteral("standard");
        const QString fast = QStringLiteral("high-rate");
        const QString bluetooth = QStringLiteral("bluetooth-com");
        QTest::newRow("nothing set") << QString() << false << false << standard << 14;
        QTest::newRow("USB") << QStringLiteral("usb") << false << false << standard << 14;
        QTest::newRow("USB, reduced") << QStringLiteral("usb") << false << true << standard << 3;
        QTest::newRow("USB, high rate") << QStringLiteral("usb") << true << false << fast << 14;
        QTest::newRow("USB, high rate, reduced") << QStringLiteral("usb") << true << true << fast << 14;
        QTest::newRow("Bluetooth") << bluetooth << false << false << standard << 14;
        QTest::newRow("Bluetooth, reduced") << bluetooth << false << true << standard << 3;
        QTest::newRow("Bluetooth, high rate") << bluetooth << true << false << fast << 14;
        QTest::newRow("Bluetooth, high rate, reduced") << bluetooth << true << true << fast << 14;
        QTest::newRow("case counts") << QStringLiteral("Demo") << false << false << standard << 14;
    }

    void theSettingsChooseTheDevice()
    {
        QFETCH(QString, mode);
        QFETCH(bool, highRate);
        QFETCH(bool, reduced);
        settings::acqMode.setValue(mode);
        settings::hrProtocol.setValue(highRate);
        settings::acqBluetoothPort.setValue(QStringLiteral("ttyTest1"));
        const auto device = createAcqDevice(reduced);
        QTEST(kindOf(*device), "kind");
        QTEST(device->channelCount(), "channels");
        QCOMPARE(device->samplingRate(), 500);
        QCOMPARE(device->rangeMax(), highRate ? 300.0 : 450.0);
        QCOMPARE(device->rangeMin(), -device->rangeMax());
        if (device->channelCount() == 3)
            QCOMPARE(device->channelName(1), "V2");
    }

    void aDeviceOpensItsPortAtTheRateOfItsFamily_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<bool>("highRate");
        QTest::addColumn<int>("baud");
        QTest::newRow("USB") << QStringLiteral("usb") << false << 230400;
        QTest::newRow("USB, high rate") << QStringLiteral("usb") << true << 570000;
        QTest::newRow("Bluetooth") << QStringLiteral("bluetooth-com") << false << 230400;
        QTest::newRow("Bluetooth, high rate") << QStringLiteral("bluetooth-com") << true << 570000;
    }

    void aDeviceOpensItsPortAtTheRateOfItsFamily()
    {
        QFETCH(QString, mode);
        QFETCH(bool, highRate);
        TPseudoTerminal usb;
        TPseudoTerminal bluetooth;
        const QString usbPath = QString::fromStdString(usb.path());
        acq::setPortLister([usbPath] {
            return std::vector<TPortDescription>{{QStringLiteral("Velantor ECG"), usbPath, 0, 0}};
        });
        settings::acqMode.setValue(mode);
        settings::hrProtocol.setValue(highRate);
        settings::acqBluetoothPort.setValue(QString::fromStdString(bluetooth.path()));
        const auto device = createAcqDevice(false);
        device->start();
        TPseudoTerminal& line = mode == QLatin1String("usb") ? usb : bluetooth;
        TPseudoTerminal& other = mode == QLatin1String("usb") ? bluetooth : usb;
        QCOMPARE(line.readAll(1), QByteArray("\1")); // of the two: the second start may purge the first
        termios2 tty{};
        QCOMPARE(::ioctl(line.descriptor(), TCGETS2, &tty), 0);
        QTEST(int(tty.c_ospeed), "baud");
        QTEST(int(tty.c_ispeed), "baud");
        device->stop();
        QCOMPARE(other.readSome(1), QByteArray());
    }

    void demoReplaysTheFileInTheWorkingFolder()
    {
        const DemoFile file(14, 3);
        QVERIFY(QDir::setCurrent(QFileInfo(QFile::decodeName(file.path())).path()));
        settings::acqMode.setValue(QStringLiteral("demo"));
        settings::hrProtocol.setValue(true);
        settings::signalGain.setValue(200);
        const auto all = createAcqDevice(false);
        QCOMPARE(kindOf(*all), QStringLiteral("demo"));
        QCOMPARE(all->channelCount(), 14);
        QCOMPARE(all->samplingRate(), 500);
        QCOMPARE(all->bytesPerSample(), 2);
        QCOMPARE(all->resolutionBits(), 16);
        QCOMPARE(all->rangeMin(), -300.0);
        QCOMPARE(all->rangeMax(), 300.0);
        const auto reduced = createAcqDevice(true);
        QCOMPARE(reduced->channelCount(), 3);
        QCOMPARE(reduced->channelName(0), "II");
        QCOMPARE(reduced->channelName(2), "V5");
    }

    void demoWithoutItsFileIsAnError()
    {
        QVERIFY(QDir::setCurrent(m_folder.path()));
        settings::acqMode.setValue(QStringLiteral("demo"));
        QCOMPARE(failure(), QStringLiteral("Cannot open file"));
    }

    void noDeviceAtUsbIsAnError()
    {
        acq::setPortLister([] { return std::vector<TPortDescription>(); });
        QCOMPARE(failure(), QStringLiteral("Device not found"));
        settings::hrProtocol.setValue(true);
        QCOMPARE(failure(), QStringLiteral("Device not found"));
    }

    void aGainIsTheRangeOfARealDevice_data()
    {
        QTest::addColumn<QVariant>("gain");
        QTest::addColumn<double>("range");
        QTest::newRow("whole") << QVariant(200) << 200.0;
        QTest::newRow("fraction") << QVariant(312.5) << 312.5;
        QTest::newRow("text") << QVariant(QStringLiteral("312.5")) << 312.5;
        QTest::newRow("zero") << QVariant(0) << 450.0;
        QTest::newRow("negative") << QVariant(-300) << 450.0;
        QTest::newRow("endless") << QVariant(QStringLiteral("inf")) << 450.0;
        QTest::newRow("no number") << QVariant(QStringLiteral("nan")) << 450.0;
    }

    void aGainIsTheRangeOfARealDevice()
    {
        QFETCH(QVariant, gain);
        QFETCH(double, range);
        QSettings().setValue(QStringLiteral("Config/SignalGain"), gain);
        for (const bool highRate : {false, true}) {
            settings::hrProtocol.setValue(highRate);
            const double expected = highRate && range == 450.0 ? 300.0 : range;
            for (const auto& mode : {QStringLiteral("usb"), QStringLiteral("bluetooth-com")}) {
                settings::acqMode.setValue(mode);
                const auto device = createAcqDevice(false);
                QCOMPARE(device->rangeMax(), expected);
                QCOMPARE(device->rangeMin(), -expected);
            }
        }
    }

private:
    static QString kindOf(const TAcqDevice& device)
    {
        if (dynamic_cast<const TStdAcqDevice*>(&device))
            return QStringLiteral("standard");
        if (dynamic_cast<const THRAcqDevice*>(&device))
            return QStringLiteral("high-rate");
        return dynamic_cast<const TDemoAcqDevice*>(&device) ? QStringLiteral("demo")
                                                            : QStringLiteral("unknown");
    }

    static QString failure()
    {
        try {
            createAcqDevice(false);
        } catch (const TError& error) {
            return error.text();
        }
        return QString();
    }

    QTemporaryDir m_folder;
    QString m_workingFolder;
};

QTEST_GUILESS_MAIN(AcqDeviceFactoryTest)
#include "AcqDeviceFactoryTest.moc"
