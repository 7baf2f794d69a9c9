#include "acq/TAcqBuffer.h"

#include <QtTest>

#include <thread>

class AcqBufferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesComeOutInTheOrderOfTheirComing()
    {
        TAcqBuffer buffer;
        buffer.push("abc", 3);
        buffer.push("def", 3);
        QCOMPARE(buffer.size(), qint64(6));
        QCOMPARE(taken(buffer, 4), QByteArray("abcd"));
        QCOMPARE(buffer.size(), qint64(2));
        buffer.push("gh", 2);
        QCOMPARE(taken(buffer, 4), QByteArray("efgh"));
        QCOMPARE(buffer.size(), qint64(0));
    }

    void noMoreIsTakenThanThereIs()
    {
        TAcqBuffer buffer;
        QCOMPARE(taken(buffer, 5), QByteArray());
        buffer.push("abc", 3);
        QCOMPARE(taken(buffer, 5), QByteArray("abc"));
    }

    void nothingOrLessIsNoRequest()
    {
        TAcqBuffer buffer;
        buffer.push("abc", 3);
        QCOMPARE(taken(buffer, 0), QByteArray());
        char unused = 0;
        QCOMPARE(buffer.pop(&unused, -1), 0);
        QCOMPARE(buffer.size(), qint64(3));
    }

    void itGrowsWhileNobodyTakes()
    {
        TAcqBuffer buffer;
        const QByteArray frame(28, 'x');
        for (int i = 0; i < 100000; ++i)
            buffer.push(frame.constData(), frame.size());
        QCOMPARE(buffer.size(), qint64(2800000));
        QCOMPARE(taken(buffer, 2800000), QByteArray(2800000, 'x'));
    }

    void itGivesTheMemoryOfAStallBack()
    {
        TAcqBuffer buffer;
        const QByteArray block(70000, 'x');
        buffer.push(block.constData(), block.size());
        QCOMPARE(taken(buffer, block.size()), block);
        const qint64 usual = buffer.reservedBytes();
        QVERIFY(usual >= block.size()); // A usual block does not ask for memory again and again.
        for (int i = 0; i < 100; ++i)
            buffer.push(block.constData(), block.size());
        QVERIFY(buffer.reservedBytes() >= 7000000);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(taken(buffer, block.size()), block);
        QVERIFY(buffer.reservedBytes() <= 262144);
        buffer.push("ab", 2);
        QCOMPARE(taken(buffer, 3), QByteArray("ab"));
    }

    void twoThreadsPassEveryByteOn()
    {
        TAcqBuffer buffer;
        constexpr int count = 20000;
        std::thread writer([&buffer] {
            for (int i = 0; i < count; ++i)
                buffer.push(reinterpret_cast<const char*>(&i), sizeof i);
        });
        int differing = 0;
        for (int expected = 0; expected < count;) {
            if (buffer.size() < qint64(sizeof expected)) {
                std::this_thread::yield();
                continue;
            }
            int value = -1;
            if (buffer.pop(reinterpret_cast<char*>(&value), sizeof value) != sizeof value ||
                value != expected)
                ++differing;
            ++expected;
        }
        writer.join();
        QCOMPARE(differing, 0);
        QCOMPARE(buffer.size(), qint64(0));
    }

private:
    static QByteArray taken(TAcqBuffer& buffer, int size)
    {
        QByteArray bytes(size, '?');
        bytes.truncate(buffer.pop(bytes.data(), size));
        return bytes;
    }
};

QTEST_GUILESS_MAIN(AcqBufferTest)
#include "AcqBufferTest.moc"
