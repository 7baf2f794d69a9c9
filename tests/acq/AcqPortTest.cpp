#include "acq/EcgDeviceFrame.h"
#include "acq/TAcqPort.h"
#include "support/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QtTest>

#include <thread>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace {

constexpr int shortMs = 100;

QByteArray openingFails(const std::string& name)
{
    try {
        const TAcqPort port(name, acq::standardBaud);
        return "opened";
    } catch (const TError& error) {
        return error.what();
    }
}

/// What the port takes an answer for.
QByteArray identityOf(const QByteArray& answer)
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud, shortMs);
    QByteArray command;
    std::thread device([&] {
        command = line.readAll(1);
        line.writeAll(answer);
    });
    const QByteArray told = QByteArray::fromStdString(identify(port));
    device.join();
    return command == "\x0b" ? told : QByteArray("wrong command");
}

} // namespace

class AcqPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLineIsSetUpForItsDevice();
    void anyPortThatCannotBeOpenedHasOneText();
    void commandsAreSingleBytes();
    void aStartDropsWhatWaits();
    void aDeviceSaysWhatItIs();
    void aSilentDeviceIsNothing();
    void aPortThatIsGoneIsNothing();
    void aReadEndsWithItsTime();
    void anInterruptionEndsARead();
};

void AcqPortTest::theLineIsSetUpForItsDevice()
{
    for (const int baud : {acq::standardBaud, acq::highRateBaud}) {
        TPseudoTerminal line;
        const TAcqPort port(line.path(), baud);
        termios2 tty{};
        QCOMPARE(::ioctl(line.descriptor(), TCGETS2, &tty), 0);
        QCOMPARE(int(tty.c_ospeed), baud);
        QCOMPARE(int(tty.c_ispeed), baud);
        QCOMPARE(tty.c_cflag & CSIZE, tcflag_t(CS8));
        QCOMPARE(tty.c_cflag & (CSTOPB | CRTSCTS), tcflag_t(0));
    }
    QCOMPARE(acq::standardBaud, 230400);
    QCOMPARE(acq::highRateBaud, 570000);
}

void AcqPortTest::anyPortThatCannotBeOpenedHasOneText()
{
    const QByteArray text = "No se pudo abrir el puerto (CreateFile)";
    QCOMPARE(openingFails("ttyThatIsNone"), text);
    QCOMPARE(openingFails("/absent/tty"), text);
    QCOMPARE(openingFails(""), text);
    QCOMPARE(openingFails("/"), text);
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(openingFails(file.fileName().toStdString()), text);
    const TPseudoTerminal line;
    const TAcqPort port(line.path(), acq::standardBaud);
    QCOMPARE(openingFails(line.path()), text);
}

void AcqPortTest::commandsAreSingleBytes()
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud);
    port.sendStart();
    QCOMPARE(line.readAll(1).toHex(), QByteArray("01"));
    port.sendKeepAlive();
    port.sendStop();
    QVERIFY(port.sendIdentify());
    QCOMPARE(line.readAll(3).toHex(), QByteArray("09020b"));
    QCOMPARE(line.readAll(1, shortMs), QByteArray());
}

void AcqPortTest::aStartDropsWhatWaits()
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud, shortMs);
    QVERIFY(line.writeAll("old"));
    QCOMPARE(port.readByte(), int('o'));
    port.sendStart();
    QCOMPARE(port.readByte(), -1);
    QVERIFY(line.writeAll("new"));
    QCOMPARE(port.readByte(), int('n'));
}

void AcqPortTest::aDeviceSaysWhatItIs()
{
    QCOMPARE(identityOf("ECG V12"), QByteArray("ECG V12"));
    QCOMPARE(identityOf("ERGO"), QByteArray("ERGO"));
    QCOMPARE(identityOf("VELANTOR ECG"), QByteArray("VELANTO"));
    QCOMPARE(identityOf(QByteArray("\0\xff\r\n", 4)), QByteArray("\0\xff\r\n", 4));
}

void AcqPortTest::aSilentDeviceIsNothing()
{
    QCOMPARE(identityOf(""), QByteArray());
}

void AcqPortTest::aPortThatIsGoneIsNothing()
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud);
    line.hangUp();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(identify(port).empty());
    QCOMPARE(port.readByte(), -1);
    QVERIFY(timer.elapsed() < 2000);
}

void AcqPortTest::aReadEndsWithItsTime()
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud, shortMs);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(port.readByte(), -1);
    QVERIFY(timer.elapsed() >= shortMs - 1);
    QVERIFY(timer.elapsed() < 5000);
    QCOMPARE(TAcqPort::defaultReadTimeoutMs, 10000);
}

void AcqPortTest::anInterruptionEndsARead()
{
    TPseudoTerminal line;
    TAcqPort port(line.path(), acq::standardBaud);
    std::thread other([&port] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        port.interrupt();
    });
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(port.readByte(), -1);
    other.join();
    QVERIFY(timer.elapsed() < 5000);
    QCOMPARE(port.readByte(), -1);
}

QTEST_GUILESS_MAIN(AcqPortTest)
#include "AcqPortTest.moc"
