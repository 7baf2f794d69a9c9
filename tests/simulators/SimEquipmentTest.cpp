#include "platform/CommPort.h"

#include <QProcess>
#include <QtTest>

namespace {

/// Without the time at its head.
QByteArray nextLine(QProcess& device)
{
    while (!device.canReadLine()) {
        if (!device.waitForReadyRead(10000))
            return "nothing";
    }
    const QByteArray line = device.readLine().trimmed();
    return line.mid(line.indexOf(' ') + 1);
}

} // namespace

/// The programs, as someone at a desk would use them; what the devices do is tested in their classes.
class SimEquipmentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachMessageIsALine_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<QByteArrayList>("lines");
        QTest::newRow("treadmill") << QStringLiteral(SIM_TREADMILL) << QByteArray(";2GO00:;2V005078: ")
                                   << QByteArrayList{";2GO00: ok", ";2V005078: wrong check sum",
                                                     "\\x20 outside of a message"};
        QTest::newRow("ergometer") << QStringLiteral(SIM_ERGOMETER) << QByteArray("rpd50\nx")
                                   << QByteArrayList{"r ok", "p ok", "d ok", "50 ok", "x unknown command"};
    }

    void eachMessageIsALine()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, sent);
        QFETCH(QByteArrayList, lines);
        QProcess device;
        CommPort port;
        port.open(started(device, program, {}), TCommSettings());
        QVERIFY(port.write(sent.constData(), sent.size()));
        for (const QByteArray& line : lines)
            QCOMPARE(nextLine(device), line);
        const QByteArray end = ended(device);
        QVERIFY2(end.startsWith(QByteArray::number(lines.size()) + " messages, "), end.constData());
    }

    void theLogMayBeAFileAndFaultsAreOptions()
    {
        const QTemporaryDir folder;
        const QString log = folder.filePath(QStringLiteral("log"));
        QProcess device;
        CommPort port;
        TCommSettings settings;
        settings.readTimeoutMs = 5000;
        port.open(started(device, QStringLiteral(SIM_TREADMILL),
                          {QStringLiteral("--log"), log, QStringLiteral("--fault"), QStringLiteral("silent"),
                           QStringLiteral("--after"), QStringLiteral("1"), QStringLiteral("--times"),
                           QStringLiteral("1")}),
                  settings);
        QVERIFY(port.write(";2GO00:;2GO00:;2ST17:", 21));
        char answers[14];
        QCOMPARE(port.read(answers, 14), 14);
        QCOMPARE(QByteArray(answers, 14), QByteArray(";2GO00:;2ST17:"));
        QCOMPARE(ended(device), QByteArray("3 messages, 0 wrong\n"));
        QCOMPARE(device.readAllStandardOutput(), QByteArray());
        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count('\n'), 3);
    }

    void anUnknownFaultIsTold()
    {
        QProcess device;
        device.start(QStringLiteral(SIM_ERGOMETER), {QStringLiteral("--fault"), QStringLiteral("lazy")});
        QVERIFY(device.waitForFinished());
        QCOMPARE(device.exitCode(), 1);
        QCOMPARE(device.readAllStandardError(), QByteArray("Unknown fault lazy\n"));
    }

private:
    /// The port's path; the test fails without one.
    static std::string started(QProcess& device, const QString& program, const QStringList& options)
    {
        device.start(program, options);
        if (!device.waitForReadyRead(10000))
            qFatal("The simulator printed nothing.");
        return device.readLine().trimmed().toStdString();
    }

    /// What it says in the end.
    static QByteArray ended(QProcess& device)
    {
        device.terminate();
        if (!device.waitForFinished() || device.exitCode() != 0)
            return "not ended well";
        return device.readAllStandardError();
    }
};

QTEST_GUILESS_MAIN(SimEquipmentTest)
#include "SimEquipmentTest.moc"
