#include "platform/CommPort.h"

#include <QProcess>
#include <QtTest>

/// The program, as someone at a desk would use it; what the device sends is tested with the driver.
class SimEcgDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePrintedPortAnswersAndStreams_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("standard") << QStringList() << QByteArray::fromHex("01c03020");
        QTest::newRow("high rate") << QStringList{QStringLiteral("--high-rate")}
                                   << QByteArray::fromHex("c03020");
    }

    void thePrintedPortAnswersAndStreams()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, head);
        QProcess device;
        const std::string path = started(
            device, options + QStringList{QStringLiteral("--identify"), QStringLiteral("ERGO 1"),
                                          QStringLiteral("--electrodes-off"), QStringLiteral("V5,LA,RA")});
        CommPort port;
        port.open(path, {230400});
        char answer[6];
        QVERIFY(port.write("\x0b", 1));
        QCOMPARE(port.read(answer, 6), 6);
        QCOMPARE(QByteArray(answer, 6), QByteArray("ERGO 1"));

        QVERIFY(port.write("\1", 1));
        QByteArray frame(head.size(), '\0');
        QCOMPARE(port.read(frame.data(), frame.size()), frame.size());
        QCOMPARE(frame.toHex(), head.toHex());
        device.terminate();
        QVERIFY(device.waitForFinished());
        QCOMPARE(device.exitCode(), 0);
        QVERIFY(device.readAllStandardError().contains(" frames sent"));
    }

    void aSourceThatIsNotThereIsTold()
    {
        QProcess device;
        device.start(QStringLiteral(SIM_ECG_DEVICE),
                     {QStringLiteral("--source"), QStringLiteral("absent.dat")});
        QVERIFY(device.waitForFinished());
        QCOMPARE(device.exitCode(), 1);
        QCOMPARE(device.readAllStandardError(), QByteArray("Cannot open file\n"));
        QCOMPARE(device.readAllStandardOutput(), QByteArray());
    }

private:
    /// The port's path; the test fails without one.
    static std::string started(QProcess& device, const QStringList& options)
    {
        device.start(QStringLiteral(SIM_ECG_DEVICE), options);
        if (!device.waitForReadyRead(10000))
            qFatal("The simulator printed nothing.");
        return device.readLine().trimmed().toStdString();
    }
};

QTEST_GUILESS_MAIN(SimEcgDeviceTest)
#include "SimEcgDeviceTest.moc"
