#include "platform/CommPort.h"

#include <QProcess>
#include <QtTest>

#include <initializer_list>

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
        open(port, device,
             {"--log", log.toLatin1().constData(), "--fault", "silent", "--after", "1", "--times", "1"});
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

    void thePortHasAName()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("treadmill"));
        QVERIFY(QFile::link(QStringLiteral("left behind"), link));
        QProcess device;
        QCOMPARE(started(device, QStringLiteral(SIM_TREADMILL), {QStringLiteral("--link"), link}),
                 link.toStdString());
        CommPort port;
        port.open(link.toStdString(), TCommSettings());
        QVERIFY(port.write(";2GO00:", 7));
        QCOMPARE(nextLine(device), QByteArray(";2GO00: ok"));
        QCOMPARE(ended(device), QByteArray("1 messages, 0 wrong\n"));
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void aLateAnswerComesAfterItsTime()
    {
        QProcess device;
        CommPort port;
        QElapsedTimer timer;
        open(port, device, {"--fault", "late", "--late", "300"});
        timer.start();
        QVERIFY(port.write(";2GO00:", 7));
        char answer[7];
        QCOMPARE(port.read(answer, 7), 7);
        QVERIFY(timer.elapsed() >= 300);
        QCOMPARE(ended(device), QByteArray("1 messages, 0 wrong\n"));
    }

    void aShortAnswerLacksItsEnd()
    {
        QProcess device;
        CommPort port;
        open(port, device, {"--fault", "short", "--times", "1"});
        QVERIFY(port.write(";2GO00:;2ST17:", 14));
        char answers[13];
        QCOMPARE(port.read(answers, 13), 13);
        QCOMPARE(QByteArray(answers, 13), QByteArray(";2GO00;2ST17:"));
        QCOMPARE(ended(device), QByteArray("2 messages, 0 wrong\n"));
    }

    void aHangUpEndsTheLine()
    {
        QProcess device;
        CommPort port;
        open(port, device, {"--fault", "hang-up"});
        QVERIFY(port.write(";2GO00:", 7));
        char answer[7];
        QCOMPARE(port.read(answer, 7), -1);
        QCOMPARE(ended(device), QByteArray("1 messages, 0 wrong\n"));
    }

    void whatCannotBeIsTold_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("text");
        const auto row = [](const char* option, const char* value, const char* text) {
            QTest::newRow(option) << QStringList{QLatin1String(option), QLatin1String(value)}
                                  << QByteArray(text);
        };
        row("--fault", "lazy", "Unknown fault lazy");
        row("--after", "x", "--after takes a whole number, not x");
        row("--times", "1.5", "--times takes a whole number, not 1.5");
        row("--late", "", "--late takes a whole number, not ");
        row("--log", "/dev/null/log", "Cannot create file");
        row("--link", "/dev/null/link", "Cannot create pseudo-terminal");
    }

    void whatCannotBeIsTold()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, text);
        for (const QString& program : {QStringLiteral(SIM_TREADMILL), QStringLiteral(SIM_ERGOMETER)}) {
            QProcess device;
            device.start(program, options);
            const bool hasEnded = device.waitForFinished(10000);
            device.kill();
            QVERIFY(hasEnded);
            QCOMPARE(device.exitCode(), 1);
            QCOMPARE(device.readAllStandardError(), text + '\n');
            QCOMPARE(device.readAllStandardOutput(), QByteArray());
        }
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

    /// A treadmill and the port to it.
    static void open(CommPort& port, QProcess& device, std::initializer_list<const char*> options)
    {
        QStringList texts;
        for (const char* const option : options)
            texts += QLatin1String(option);
        port.open(started(device, QStringLiteral(SIM_TREADMILL), texts), TCommSettings());
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
