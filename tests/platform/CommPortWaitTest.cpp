#include "CommPortFailure.h"
#include "platform/CommPort.h"
#include "support/Descriptors.h"
#include "support/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <ctime>
#include <functional>
#include <thread>

namespace {

qint64 msOf(const std::function<void()>& action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    return timer.elapsed();
}

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

QByteArray readFrom(CommPort& port, int size)
{
    QByteArray bytes(size, '\0');
    bytes.resize(qMax(port.read(bytes.data(), size), 0));
    return bytes;
}

void sleepMs(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace

/// How long a port waits, and what ends it: time, an interruption, the end of the line.
class CommPortWaitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReadWaitsForAllItsBytes();
    void aReadEndsWithItsTotalTime();
    void aReadTakesWhatIsThereWithoutTime();
    void singleBytesAndBlocksMix();
    void aHangUpEndsReadsAtOnce();
    void aHangUpInAWaitingReadIsSeenAtOnce();
    void whatCameBeforeAHangUpIsNotLostInTheBuffer();
    void aHangUpFailsAWrite();
    void aWaitingReadIsInterruptedAtOnce_data();
    void aWaitingReadIsInterruptedAtOnce();
    void anInterruptedPortStaysSoUntilItIsOpenedAgain();
    void anInterruptionDuringTheOpeningIsWholeOrNotAtAll();
    void aWaitingWriteIsInterruptedToo();
    void anInterruptedPortStillTakesACommand();
    void aResumedPortWaitsAgainWithinItsNewTimes();
    void aWriteEndsWithItsTime();
    void inputIsPurged();
    void outputIsPurged();
    void whatWasWrittenLastOutlivesTheClose();
    void portsThatAreClosedLeaveNoDescriptor();
};

void CommPortWaitTest::aReadWaitsForAllItsBytes()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(10000));
    std::thread other([&line] {
        for (const char* part : {"ab", "c", "defg"}) {
            sleepMs(10);
            line.writeAll(part);
        }
    });
    const QByteArray bytes = readFrom(port, 7);
    other.join();
    QCOMPARE(bytes, QByteArray("abcdefg"));
}

void CommPortWaitTest::aReadEndsWithItsTotalTime()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(100));
    char byte = 0;
    const qint64 alone = msOf([&] { QCOMPARE(port.read(&byte, 1), 0); });
    QVERIFY2(alone >= 99 && alone < 5000, qPrintable(QString::number(alone)));
    const qint64 next = msOf([&] { QCOMPARE(port.readByte(), -1); });
    QVERIFY(next >= 99 && next < 5000);
    // Bytes that trickle in do not prolong it.
    std::atomic<bool> ends = false;
    std::thread other([&] {
        while (!ends) {
            line.writeAll("x");
            sleepMs(20);
        }
    });
    QByteArray bytes;
    const qint64 trickle = msOf([&] { bytes = readFrom(port, 100000); });
    ends = true;
    other.join();
    QVERIFY(trickle >= 99 && trickle < 5000);
    QVERIFY(!bytes.isEmpty() && bytes.size() < 100000);
    QCOMPARE(bytes.count('x'), bytes.size());
    QVERIFY(port.isOpen());
}

void CommPortWaitTest::aReadTakesWhatIsThereWithoutTime()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(0));
    QCOMPARE(port.readByte(), -1);
    QVERIFY(line.writeAll("ab"));
    int byte = -1;
    for (int i = 0; i < 1000 && byte < 0; ++i) {
        sleepMs(1);
        byte = port.readByte();
    }
    QCOMPARE(byte, int('a'));
    QCOMPARE(readFrom(port, 5), QByteArray("b"));
}

void CommPortWaitTest::singleBytesAndBlocksMix()
{
    TPseudoTerminal line;
    CommPort port;
    TCommSettings settings = shortTimes(5000);
    settings.inputQueueBytes = 3; // a fetch ends in the middle of a block
    port.open(line.path(), settings);
    QVERIFY(line.writeAll("0123456789"));
    QCOMPARE(port.readByte(), int('0'));
    QCOMPARE(readFrom(port, 4), QByteArray("1234"));
    QCOMPARE(port.readByte(), int('5'));
    QCOMPARE(readFrom(port, 4), QByteArray("6789"));
}

void CommPortWaitTest::aHangUpEndsReadsAtOnce()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000));
    line.hangUp();
    char bytes[10];
    const qint64 ms = msOf([&] {
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(port.readByte(), -1);
            QCOMPARE(port.read(bytes, 10), -1);
        }
    });
    QVERIFY(ms < 5000);
    QVERIFY(port.isOpen());
    port.close();
    QCOMPARE(failureOf(line.path()).text, QByteArray("Port not found"));
}

void CommPortWaitTest::aHangUpInAWaitingReadIsSeenAtOnce()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000));
    const double before = processorSeconds();
    std::thread other([&line] {
        sleepMs(200);
        line.hangUp();
    });
    char byte = 0;
    const qint64 ms = msOf([&] { QCOMPARE(port.read(&byte, 1), -1); });
    other.join();
    QVERIFY(ms < 5000);
    // It slept while it waited.
    QVERIFY(processorSeconds() - before < 0.1);
}

void CommPortWaitTest::whatCameBeforeAHangUpIsNotLostInTheBuffer()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(5000));
    QVERIFY(line.writeAll("abc"));
    QCOMPARE(port.readByte(), int('a'));
    line.hangUp();
    QCOMPARE(readFrom(port, 10), QByteArray("bc"));
    QCOMPARE(port.readByte(), -1);
}

void CommPortWaitTest::aHangUpFailsAWrite()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000, 20000));
    line.hangUp();
    const qint64 ms = msOf([&] { QVERIFY(!port.write("abc", 3)); });
    QVERIFY(ms < 5000);
}

void CommPortWaitTest::aWaitingReadIsInterruptedAtOnce_data()
{
    QTest::addColumn<bool>("single");
    QTest::newRow("byte") << true;
    QTest::newRow("block") << false;
}

void CommPortWaitTest::aWaitingReadIsInterruptedAtOnce()
{
    QFETCH(bool, single);
    TPseudoTerminal line;
    // The quickest of a few: the machine may be busy with something else.
    qint64 quickest = 10000;
    for (int i = 0; i < 10 && quickest >= 50; ++i) {
        CommPort port;
        port.open(line.path(), shortTimes(20000));
        QElapsedTimer timer;
        std::thread other([&] {
            sleepMs(30);
            timer.start();
            port.interrupt();
        });
        char bytes[10];
        const int result = single ? port.readByte() : port.read(bytes, 10);
        other.join();
        quickest = qMin(quickest, timer.elapsed());
        QCOMPARE(result, single ? -1 : 0);
        QVERIFY(port.isInterrupted());
    }
    QVERIFY(quickest < 50);
}

void CommPortWaitTest::anInterruptedPortStaysSoUntilItIsOpenedAgain()
{
    TPseudoTerminal line;
    CommPort port;
    port.interrupt();
    for (int i = 0; i < 3; ++i) {
        port.open(line.path(), shortTimes(20000));
        QVERIFY(!port.isInterrupted());
        QVERIFY(line.writeAll("x"));
        QCOMPARE(port.readByte(), int('x'));
        port.interrupt();
        port.interrupt();
        const qint64 ms = msOf([&] {
            QCOMPARE(port.readByte(), -1);
            QCOMPARE(readFrom(port, 5), QByteArray());
        });
        QVERIFY(ms < 5000);
        port.close();
    }
}

void CommPortWaitTest::anInterruptionDuringTheOpeningIsWholeOrNotAtAll()
{
    TPseudoTerminal line;
    CommPort port;
    constexpr int rounds = 2000;
    std::atomic<int> begun = 0;
    std::atomic<int> done = 0;
    // One interruption for each opening: a second one would end what the first one left.
    std::thread other([&] {
        for (int i = 1; i <= rounds; ++i) {
            while (begun < i)
                std::this_thread::yield();
            port.interrupt();
            done = i;
        }
    });
    // Between the two halves of an interruption, a read would find neither and never come back.
    int slowest = 0;
    for (int i = 1; i <= rounds; ++i) {
        begun = i;
        port.open(line.path(), shortTimes(0));
        while (done < i)
            std::this_thread::yield();
        slowest = qMax(slowest, static_cast<int>(msOf([&] { port.readByte(); })));
    }
    other.join();
    QVERIFY2(slowest < 2000, qPrintable(QString::number(slowest)));
    port.open(line.path(), shortTimes(10000));
    QVERIFY(!port.isInterrupted());
    QVERIFY(line.writeAll("x"));
    QCOMPARE(port.readByte(), int('x'));
}

void CommPortWaitTest::aWaitingWriteIsInterruptedToo()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000, 20000));
    const QByteArray bytes(1000000, 'x');
    std::thread other([&port] {
        sleepMs(50);
        port.interrupt();
    });
    const qint64 ms = msOf([&] { QVERIFY(!port.write(bytes.constData(), bytes.size())); });
    other.join();
    QVERIFY(ms < 10000);
}

void CommPortWaitTest::anInterruptedPortStillTakesACommand()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes());
    port.interrupt();
    QVERIFY(port.write("\2", 1));
    QCOMPARE(line.readAll(1), QByteArray("\2"));
}

void CommPortWaitTest::aResumedPortWaitsAgainWithinItsNewTimes()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(20000, 20000));
    port.interrupt();
    port.resume(100, 100);
    QVERIFY(!port.isInterrupted());
    const qint64 readMs = msOf([&] { QCOMPARE(port.readByte(), -1); });
    QVERIFY2(readMs >= 99 && readMs < 5000, qPrintable(QString::number(readMs)));
    const QByteArray bytes(1000000, 'x');
    const qint64 writeMs = msOf([&] { QVERIFY(!port.write(bytes.constData(), bytes.size())); });
    QVERIFY2(writeMs >= 99 && writeMs < 5000, qPrintable(QString::number(writeMs)));
    QVERIFY(line.writeAll("x"));
    QCOMPARE(port.readByte(), int('x'));
    // It can be interrupted again.
    port.interrupt();
    QVERIFY(port.isInterrupted());
}

void CommPortWaitTest::aWriteEndsWithItsTime()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes(50, 100));
    const QByteArray bytes(1000000, 'x');
    const qint64 ms = msOf([&] { QVERIFY(!port.write(bytes.constData(), bytes.size())); });
    QVERIFY(ms >= 99 && ms < 5000);
    // It goes on once there is room.
    QVERIFY(!line.readAll(bytes.size(), 200).isEmpty());
    QVERIFY(port.write("y", 1));
    QCOMPARE(line.readAll(1), QByteArray("y"));
}

void CommPortWaitTest::inputIsPurged()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes());
    QVERIFY(line.writeAll("fetched and waiting"));
    QCOMPARE(port.readByte(), int('f'));
    QVERIFY(line.writeAll("more"));
    QVERIFY(port.purgeInput());
    QCOMPARE(port.readByte(), -1);
    QVERIFY(line.writeAll("new"));
    QCOMPARE(readFrom(port, 3), QByteArray("new"));
}

void CommPortWaitTest::outputIsPurged()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes());
    const QByteArray old(1000000, 'x');
    QVERIFY(!port.write(old.constData(), old.size()));
    QVERIFY(port.purgeOutput());
    QVERIFY(port.write("new", 3));
    // What the other end of a pseudo-terminal has taken up already, a page at most, is out of reach.
    const QByteArray received = line.readAll(old.size(), 200);
    QVERIFY(received.endsWith("new"));
    QVERIFY(received.size() < 4200);
}

void CommPortWaitTest::whatWasWrittenLastOutlivesTheClose()
{
    TPseudoTerminal line;
    CommPort port;
    port.open(line.path(), shortTimes());
    QVERIFY(port.write("\2", 1));
    port.close();
    QCOMPARE(line.readAll(1), QByteArray("\2"));
}

void CommPortWaitTest::portsThatAreClosedLeaveNoDescriptor()
{
    const TPseudoTerminal line;
    const int before = openDescriptors();
    for (int i = 0; i < 200; ++i) {
        CommPort port;
        port.open(line.path(), shortTimes());
        if (i % 2 == 0)
            port.close();
        QCOMPARE(failureOf("ttyThatIsNone").text, QByteArray("Port not found"));
        QCOMPARE(failureOf("null").text, QByteArray("Invalid port"));
        if (port.isOpen())
            QCOMPARE(failureOf(line.path()).text, QByteArray("Port already in use"));
    }
    CommPort port;
    port.open(line.path(), shortTimes());
    for (int i = 0; i < 200; ++i)
        port.open(line.path(), shortTimes());
    port.close();
    // The event that wakes a read stays with its port.
    QCOMPARE(openDescriptors(), before + 1);
}

QTEST_GUILESS_MAIN(CommPortWaitTest)
#include "CommPortWaitTest.moc"
