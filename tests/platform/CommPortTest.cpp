#include "platform/CommPort.h"
#include "CommPortFailure.h"
#include "support/PseudoTerminal.h"

#include <QTemporaryDir>
#include <QtTest>

#include <thread>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

termios2 stateOf(const TPseudoTerminal& line)
{
    termios2 tty{};
    if (::ioctl(line.descriptor(), TCGETS2, &tty) != 0)
        throw std::runtime_error("the line has no state");
    return tty;
}

QByteArray allBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(static_cast<char>(i));
    return bytes + bytes;
}

QByteArray readFrom(CommPort& port, int size)
{
    QByteArray bytes(size, '\0');
    bytes.resize(qMax(port.read(bytes.data(), size), 0));
    return bytes;
}

} // namespace

/// What a port is opened as, and that bytes come and go as they are.
class CommPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClosedPortDoesNothing();
    void anyBaudRateIsSet_data();
    void anyBaudRateIsSet();
    void dataAndStopBitsAreSet_data();
    void dataAndStopBitsAreSet();
    void theLineIsRaw();
    void parityStaysAsThePortHasIt();
    void flowControlIsSwitchedOffOrKept();
    void allBytesComeAsTheyAre();
    void allBytesGoAsTheyAre();
    void aLargeTransferLosesNothing();
    void anAbsentPortIsNotFound();
    void whatIsNoPortIsInvalid();
    void aBareNameLiesUnderDev();
    void aSecondOpenFindsThePortInUse();
    void anotherProgramsLockIsRespected();
    void anOpenPortIsClosedByTheNextOpen();
    void whatWaitedBeforeTheOpenIsDropped();
};

void CommPortTest::aClosedPortDoesNothing()
{
    CommPort port;
    char byte = 0;
    QVERIFY(!port.isOpen());
    port.close();
    port.close();
    QCOMPARE(port.read(&byte, 1), -1);
    QCOMPARE(port.readByte(), -1);
    QVERIFY(!port.write("a", 1));
    QVERIFY(!port.purgeInput());
    QVERIFY(!port.purgeOutput());
    port.interrupt();
    QVERIFY(port.isInterrupted());
}

void CommPortTest::anyBaudRateIsSet_data()
{
    QTest::addColumn<int>("baud");
    for (const int baud : {4800, 9600, 230400, 570000, 123457})
        QTest::addRow("%d", baud) << baud;
}

void CommPortTest::anyBaudRateIsSet()
{
    QFETCH(int, baud);
    const TPseudoTerminal line;
    CommPort port;
    TCommSettings settings;
    settings.baud = baud;
    port.open(line.path(), settings);
    QVERIFY(port.isOpen());
    QCOMPARE(int(stateOf(line).c_ospeed), baud);
    QCOMPARE(int(stateOf(line).c_ispeed), baud);
}

void CommPortTest::dataAndStopBitsAreSet_data()
{
    QTest::addColumn<int>("dataBits");
    QTest::addColumn<int>("stopBits");
    QTest::newRow("8 and 1") << 8 << 1;
    QTest::newRow("7 and 2") << 7 << 2;
    QTest::newRow("6 and 1") << 6 << 1;
    QTest::newRow("5 and 2") << 5 << 2;
}

// Pseudo-terminals hold 8 bits and no parity whatever they are told, so only what they take can be looked at.
void CommPortTest::dataAndStopBitsAreSet()
{
    QFETCH(int, dataBits);
    QFETCH(int, stopBits);
    const TPseudoTerminal line;
    CommPort port;
    TCommSettings settings;
    settings.dataBits = dataBits;
    settings.stopBits = stopBits;
    port.open(line.path(), settings);
    const tcflag_t control = stateOf(line).c_cflag;
    QCOMPARE((control & CSTOPB) != 0, stopBits == 2);
    QCOMPARE(control & CSIZE, tcflag_t(CS8));
    QVERIFY((control & CREAD) != 0);
    QVERIFY((control & CLOCAL) != 0);
}

void CommPortTest::theLineIsRaw()
{
    const TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), TCommSettings());
    const termios2 tty = stateOf(line);
    QCOMPARE(tty.c_iflag & (IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IUCLC | IXON | IXOFF),
             tcflag_t(0));
    QCOMPARE(tty.c_oflag & OPOST, tcflag_t(0));
    QCOMPARE(tty.c_lflag & (ECHO | ECHONL | ICANON | ISIG | IEXTEN), tcflag_t(0));
}

void CommPortTest::parityStaysAsThePortHasIt()
{
    const TPseudoTerminal line;
    for (const bool odd : {true, false}) {
        termios2 tty = stateOf(line);
        tty.c_cflag = odd ? tty.c_cflag | PARODD : tty.c_cflag & ~static_cast<tcflag_t>(PARODD);
        QCOMPARE(::ioctl(line.descriptor(), TCSETS2, &tty), 0);
        CommPort port;
        port.open(line.path(), TCommSettings());
        QCOMPARE((stateOf(line).c_cflag & PARODD) != 0, odd);
    }
}

void CommPortTest::flowControlIsSwitchedOffOrKept()
{
    using TFlowControl = TCommSettings::TFlowControl;
    const TPseudoTerminal line;
    for (const TFlowControl flowControl : {TFlowControl::Keep, TFlowControl::None}) {
        termios2 tty = stateOf(line);
        tty.c_cflag |= CRTSCTS;
        QCOMPARE(::ioctl(line.descriptor(), TCSETS2, &tty), 0);
        CommPort port;
        TCommSettings settings;
        settings.flowControl = flowControl;
        port.open(line.path(), settings);
        QCOMPARE((stateOf(line).c_cflag & CRTSCTS) != 0, flowControl == TFlowControl::Keep);
    }
}

void CommPortTest::allBytesComeAsTheyAre()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(5000));
    QVERIFY(line.writeAll(allBytes()));
    for (int i = 0; i < 256; ++i)
        QCOMPARE(port.readByte(), i);
    QCOMPARE(readFrom(port, 256), allBytes().left(256));
}

void CommPortTest::allBytesGoAsTheyAre()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes());
    const QByteArray bytes = allBytes();
    QVERIFY(port.write(bytes.constData(), bytes.size()));
    QCOMPARE(line.readAll(bytes.size()), bytes);
    QVERIFY(port.write("", 0));
    QCOMPARE(line.readAll(1, 20), QByteArray());
}

void CommPortTest::aLargeTransferLosesNothing()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000, 20000));
    const QByteArray bytes = allBytes().repeated(2000);
    std::thread other([&] { line.writeAll(bytes, 20000); });
    const QByteArray received = readFrom(port, bytes.size());
    other.join();
    QVERIFY(received == bytes);
    QByteArray sent;
    std::thread receiver([&] { sent = line.readAll(bytes.size(), 20000); });
    const bool done = port.write(bytes.constData(), bytes.size());
    receiver.join();
    QVERIFY(done);
    QVERIFY(sent == bytes);
}

void CommPortTest::anAbsentPortIsNotFound()
{
    for (const char* name : {"ttyThatIsNone", "/absent/tty", "/dev/ttyThatIsNone", "absent/tty"}) {
        const TFailure failure = failureOf(name);
        QCOMPARE(failure.text, QByteArray("Port not found"));
        QCOMPARE(failure.reason, TReason::PortNotFound);
    }
}

void CommPortTest::whatIsNoPortIsInvalid()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("content"), qint64(7));
    file.close();
    const std::string path = file.fileName().toStdString();
    for (const std::string& name : {std::string(), path, folder.path().toStdString(), std::string("/"),
                                    path + "/below", std::string("null"), std::string(5000, 'x')}) {
        const TFailure failure = failureOf(name);
        QCOMPARE(failure.text, QByteArray("Invalid port"));
        QCOMPARE(failure.reason, TReason::InvalidPort);
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("content"));
}

void CommPortTest::aBareNameLiesUnderDev()
{
    TPseudoTerminal line;
    QVERIFY(line.path().starts_with("/dev/"));
    CommPort port;
    port.open(line.path().substr(5), shortTimes(5000));
    QVERIFY(line.writeAll("x"));
    QCOMPARE(port.readByte(), int('x'));
}

void CommPortTest::aSecondOpenFindsThePortInUse()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(5000));
    for (int i = 0; i < 3; ++i) {
        const TFailure failure = failureOf(line.path());
        QCOMPARE(failure.text, QByteArray("Port already in use"));
        QCOMPARE(failure.reason, TReason::PortInUse);
    }
    // The first one does not notice.
    QVERIFY(line.writeAll("x"));
    QCOMPARE(port.readByte(), int('x'));
    port.close();
    QCOMPARE(failureOf(line.path()).text, QByteArray("opened"));
}

void CommPortTest::anotherProgramsLockIsRespected()
{
    const TPseudoTerminal line;
    const int other = ::open(line.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(other >= 0);
    // One that has the port open without any lock is not known; CommPort takes the lock all the same.
    QCOMPARE(failureOf(line.path()).text, QByteArray("opened"));
    QCOMPARE(::flock(other, LOCK_EX | LOCK_NB), 0);
    QCOMPARE(failureOf(line.path()).text, QByteArray("Port already in use"));
    ::close(other);
    QCOMPARE(failureOf(line.path()).text, QByteArray("opened"));
}

void CommPortTest::anOpenPortIsClosedByTheNextOpen()
{
    TPseudoTerminal first;
    TPseudoTerminal second;
    CommPort port;
    port.open(first.path(), shortTimes(5000));
    port.open(first.path(), shortTimes(5000));
    QVERIFY(first.writeAll("ab"));
    QCOMPARE(port.readByte(), int('a'));
    port.open(second.path(), shortTimes(5000));
    QCOMPARE(failureOf(first.path()).text, QByteArray("opened"));
    QVERIFY(second.writeAll("x"));
    QCOMPARE(port.readByte(), int('x'));
    QVERIFY_EXCEPTION_THROWN(port.open("ttyThatIsNone", TCommSettings()), TCommError);
    QVERIFY(!port.isOpen());
}

void CommPortTest::whatWaitedBeforeTheOpenIsDropped()
{
    TPseudoTerminal line;
    const int holder = ::open(line.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(holder >= 0);
    QVERIFY(line.writeAll("old\n"));
    CommPort port;
    port.open(line.path(), shortTimes());
    QCOMPARE(port.readByte(), -1);
    QVERIFY(line.writeAll("new"));
    QCOMPARE(port.readByte(), int('n'));
    ::close(holder);
}

QTEST_GUILESS_MAIN(CommPortTest)
#include "CommPortTest.moc"
