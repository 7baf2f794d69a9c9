#include "study/TEcgFile.h"

#include "base/Error.h"
#include "study/FileSamples.h"

#include <QTemporaryDir>
#include <QtTest>

#include <limits>
#include <random>

using samples::contentOf;
using samples::sampleAt;

namespace {

class TCounter : public TSignalListener
{
public:
    explicit TCounter(TSignal& signal) : m_signal(signal) { m_signal.addListener(this); }
    ~TCounter() override { m_signal.removeListener(this); }
    void signalChanged() override
    {
        ++calls;
        sampleCount = m_signal.sampleCount();
    }

    int calls = 0;
    int sampleCount = -1;

private:
    TSignal& m_signal;
};

void append(TEcgFile& file, int count)
{
    const auto data = samples::frames(file.channelCount(), file.sampleCount(), count);
    file.addInterleaved(reinterpret_cast<const char*>(data.data()), int(data.size() * sizeof(short)));
}

/// Whether each sample reads as `sampleAt`, one by one and as doubles, with zeros around.
bool readsRight(TEcgFile& file)
{
    const int count = file.sampleCount();
    std::vector<double> doubles(count + 20, 5.0);
    bool right = true;
    for (int channel = 0; channel < file.channelCount(); ++channel) {
        file.readDoubles(channel, -10, count + 20, doubles.data());
        for (int i = -10; i < count + 10; ++i) {
            const int expected = i < 0 || i >= count ? 0 : sampleAt(channel, i);
            right = right && file.sample(channel, i) == expected && doubles[i + 10] == expected;
        }
    }
    return right;
}

/// Whether the block reads as `sampleAt`, with zeros behind the last sample.
bool blockIsRight(TEcgFile& file, int channel, int block)
{
    const short* data = file.lockBlock(channel, block);
    if (!data)
        return false;
    bool right = true;
    for (int i = 0; i < 4096; ++i) {
        const int index = block * 4096 + i;
        right = right && data[i] == (index < file.sampleCount() ? sampleAt(channel, index) : 0);
    }
    file.unlockBlock(channel, block);
    return right;
}

} // namespace

class EcgFileTest : public QObject
{
    Q_OBJECT

private:
    QString path() const { return m_folder.filePath(QString::fromUtf8(QTest::currentTestFunction())); }

    static QString errorOf(const QString& path, int channels, int rate, int headerSize, bool create)
    {
        try {
            const TEcgFile file(path, channels, rate, headerSize, create);
        } catch (const TError& error) {
            return error.text();
        }
        return QString();
    }

private Q_SLOTS:
    void theFileIsHeaderThenFrames()
    {
        TEcgFile file(path(), 2, 500, 4096, true);
        file.writeHeader("VTECG1{}");
        const short first[] = {1, -2};
        const short second[] = {258, 32767};
        const short* const data[] = {first, second};
        file.addPerChannel(data, 2);
        const QByteArray frames = QByteArray::fromHex("0100"
                                                      "0201"
                                                      "FEFF"
                                                      "FF7F");
        QCOMPARE(contentOf(path()), QByteArray("VTECG1{}") + QByteArray(4088, '\0') + frames);
    }

    void theThreeAppendsWriteTheSameForm()
    {
        TEcgFile file(path(), 2, 500, 16, true);
        const short interleaved[] = {1, 2, 3, 4};
        file.addInterleaved(reinterpret_cast<const char*>(interleaved), 8);
        const short a[] = {5};
        const short b[] = {6};
        const short* const shorts[] = {a, b};
        file.addPerChannel(shorts, 1);
        const double c[] = {7.9};
        const double d[] = {-8.9};
        const double* const doubles[] = {c, d};
        file.addPerChannelDouble(doubles, 1);
        QCOMPARE(contentOf(path()).mid(16), QByteArray::fromHex("0100020003000400050006000700F8FF"));
        QCOMPARE(file.sampleCount(), 4);
    }

    void doublesAreTruncatedAndClamped()
    {
        TEcgFile file(path(), 1, 500, 16, true);
        const double infinity = std::numeric_limits<double>::infinity();
        const double in[] = {0.99,   -0.99,    32767.5,   40000.0,     -32768.9,
                             -1e300, infinity, -infinity, std::nan("")};
        const int out[] = {0, 0, 32767, 32767, -32768, -32768, 32767, -32768, 0};
        const double* const data[] = {in};
        file.addPerChannelDouble(data, 9);
        for (int i = 0; i < 9; ++i)
            QCOMPARE(file.sample(0, i), out[i]);
    }

    void aRestBehindTheLastFrameIsIgnored()
    {
        TEcgFile file(path(), 2, 500, 16, true);
        file.addInterleaved("\1\0\2\0\3\0", 6);
        file.addInterleaved("\5\0\6", 3);
        file.addInterleaved(nullptr, 0);
        file.addInterleaved("", -4);
        QCOMPARE(file.sampleCount(), 1);
        QCOMPARE(QFileInfo(path()).size(), qint64(20));
    }

    void headersArePaddedAndCut()
    {
        TEcgFile file(path(), 1, 500, 8, true);
        append(file, 3);
        file.writeHeader("0123456789");
        QCOMPARE(contentOf(path()).left(8), QByteArray("01234567"));
        file.writeHeader("ab");
        QCOMPARE(contentOf(path()).left(8), QByteArray("ab\0\0\0\0\0\0", 8));
        QCOMPARE(file.header(), QByteArray("ab\0\0\0\0\0\0", 8));
        QVERIFY(readsRight(file));
    }

    void aNewFileIsAnEmptyHeader()
    {
        const TEcgFile file(path(), 3, 250, 4096, true);
        QCOMPARE(contentOf(path()), QByteArray(4096, '\0'));
        QCOMPARE(file.sampleCount(), 0);
        QCOMPARE(file.samplingRate(), 250);
        QCOMPARE(file.blockSize(), 4096);
        QVERIFY(!file.writeFailed());
    }

    void aRecordingReadsAfterReopening()
    {
        {
            TEcgFile file(path(), 12, 500, 4096, true);
            for (int i = 0; i < 200; ++i)
                append(file, 51);
        }
        TEcgFile file(path(), 12, 500);
        QCOMPARE(file.sampleCount(), 10200);
        QCOMPARE(file.blockCount(), 2);
        QVERIFY(readsRight(file));
    }

    void sizesReadAsWholeFrames_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("count");
        QTest::newRow("empty") << 0 << 0;
        QTest::newRow("within the header") << 4095 << 0;
        QTest::newRow("header alone") << 4096 << 0;
        QTest::newRow("cut frame") << 4096 + 5 << 0;
        QTest::newRow("one frame") << 4096 + 6 << 1;
        QTest::newRow("two and a cut one") << 4096 + 17 << 2;
    }

    void sizesReadAsWholeFrames()
    {
        QFETCH(int, size);
        QFETCH(int, count);
        QVERIFY(samples::makeFile(path(), QByteArray(size, '\1')));
        TEcgFile file(path(), 3, 500);
        QCOMPARE(file.sampleCount(), count);
        QCOMPARE(file.sample(2, count - 1), count > 0 ? 0x0101 : 0);
        QCOMPARE(file.sample(0, count), 0);
        QCOMPARE(QFileInfo(path()).size(), qint64(size));
    }

    void anOpenedRecordingTakesNoSamples()
    {
        QVERIFY(samples::makeFile(path(), QByteArray(4096 + 4, '\1')));
        TEcgFile file(path(), 1, 500);
        const TCounter counter(file);
        append(file, 4);
        const short shorts[] = {1};
        const short* const shortData[] = {shorts};
        file.addPerChannel(shortData, 1);
        const double doubles[] = {1.0};
        const double* const doubleData[] = {doubles};
        file.addPerChannelDouble(doubleData, 1);
        QCOMPARE(file.sampleCount(), 2);
        QCOMPARE(counter.calls, 0);
        QCOMPARE(QFileInfo(path()).size(), qint64(4100));
        QVERIFY(!file.writeFailed());
    }

    void listenersHearOfEachAppendAndSeeItsSamples()
    {
        TEcgFile file(path(), 2, 500, 4096, true);
        const TCounter counter(file);
        append(file, 51);
        append(file, 51);
        QCOMPARE(counter.calls, 2);
        QCOMPARE(counter.sampleCount, 102);
        append(file, 0);
        QCOMPARE(counter.calls, 2);
    }

    void aGrowingRecordingReadsAtEveryStep()
    {
        TEcgFile file(path(), 2, 500, 4096, true);
        for (const int count : {1, 51, 4043, 1, 1, 8191, 51}) {
            append(file, count);
            QCOMPARE(file.blockCount(), file.sampleCount() / 4096);
            QVERIFY(readsRight(file));
            for (int block = 0; block < file.blockCount(); ++block)
                QVERIFY(blockIsRight(file, 1, block));
            QVERIFY(!file.lockBlock(1, file.blockCount()));
        }
    }

    void aBlockReadBeforeItWasCompleteIsReadAgain()
    {
        TEcgFile file(path(), 2, 500, 4096, true);
        append(file, 5000);
        QVERIFY(!file.lockBlock(0, 1));
        file.trimBlocks(true);
        QCOMPARE(file.blockCount(), 2);
        QVERIFY(blockIsRight(file, 0, 1));
        append(file, 1000);
        file.trimBlocks(true);
        QVERIFY(blockIsRight(file, 0, 1));
        append(file, 4000);
        QVERIFY(blockIsRight(file, 0, 1));
        QVERIFY(blockIsRight(file, 1, 1));
    }

    void theRestOfARecordingIsABlockWhenRoundedUp()
    {
        {
            TEcgFile file(path(), 1, 500, 4096, true);
            append(file, 4100);
        }
        TEcgFile file(path(), 1, 500);
        QCOMPARE(file.blockCount(), 1);
        file.trimBlocks(true);
        QVERIFY(blockIsRight(file, 0, 1));
        QVERIFY(!file.lockBlock(0, 2));
    }

    void blocksThatAreNoneAreNull()
    {
        TEcgFile file(path(), 2, 500, 4096, true);
        append(file, 4096);
        for (const auto& [channel, block] : {std::pair(0, -1), {0, 1}, {-1, 0}, {2, 0}, {0, 1 << 30}}) {
            QVERIFY(!file.lockBlock(channel, block));
            QVERIFY(!file.loadBlock(channel, block));
        }
        QCOMPARE(file.sample(-1, 0), 0);
        QCOMPARE(file.sample(2, 0), 0);
        double out[] = {5.0, 5.0};
        file.readDoubles(2, 0, 2, out);
        QCOMPARE(out[1], 0.0);
    }

    void moreBlocksThanAreKeptReadInAnyOrder()
    {
        TEcgFile file(path(), 3, 500, 4096, true);
        append(file, 40 * 4096 + 77);
        std::mt19937 random(48);
        for (int i = 0; i < 300; ++i)
            QVERIFY(blockIsRight(file, int(random() % 3), int(random() % 40)));
        std::vector<double> out(9000);
        for (int i = 0; i < 100; ++i) {
            const int start = int(random() % (41 * 4096)) - 500;
            file.readDoubles(1, start, 9000, out.data());
            for (int k = 0; k < 9000; ++k) {
                const bool inside = start + k >= 0 && start + k < file.sampleCount();
                QCOMPARE(out[k], inside ? double(sampleAt(1, start + k)) : 0.0);
            }
        }
    }

    void readsAtTheEndsOfTheNumbersGiveZero()
    {
        TEcgFile file(path(), 1, 500, 4096, true);
        append(file, 10);
        const int most = std::numeric_limits<int>::max();
        double out[] = {5.0, 5.0, 5.0};
        file.readDoubles(0, most - 1, 3, out);
        QCOMPARE(out[2], 0.0);
        file.readDoubles(0, std::numeric_limits<int>::min(), 3, out);
        QCOMPARE(out[0], 0.0);
        QCOMPARE(file.sample(0, most), 0);
        QCOMPARE(file.sample(0, std::numeric_limits<int>::min()), 0);
    }

    void aHugeFileCountsToTheEndOfInt()
    {
        {
            QFile file(path());
            QVERIFY(file.open(QIODevice::WriteOnly));
            if (!file.resize(qint64(5) << 30))
                QSKIP("The file system has no sparse files of this size");
        }
        TEcgFile file(path(), 1, 500);
        QCOMPARE(file.sampleCount(), std::numeric_limits<int>::max());
        QCOMPARE(file.sample(0, file.sampleCount() - 1), 0);
        file.trimBlocks(true);
        QVERIFY(file.lockBlock(0, file.blockCount() - 1));
        file.unlockBlock(0, file.blockCount() - 1);
        QVERIFY(QFile::remove(path()));
    }

    void samplesThatVanishUnderUsReadAsZero()
    {
        {
            TEcgFile file(path(), 1, 500, 4096, true);
            append(file, 9000);
        }
        TEcgFile file(path(), 1, 500);
        QVERIFY(QFile::resize(path(), 4096 + 2 * 5000));
        QCOMPARE(file.sample(0, 4999), int(sampleAt(0, 4999)));
        QCOMPARE(file.sample(0, 5000), 0);
        double out[] = {5.0, 5.0};
        file.readDoubles(0, 8998, 2, out);
        QCOMPARE(out[1], 0.0);
        const short* block = file.lockBlock(0, 1);
        QVERIFY(block);
        QCOMPARE(block[4095], short(0));
        QCOMPARE(block[0], sampleAt(0, 4096));
        file.unlockBlock(0, 1);
    }

    void openingFailsWithItsText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("headerSize");
        const QString good = QStringLiteral("good");
        QTest::newRow("no channel") << good << 0 << 500 << 4096;
        QTest::newRow("too many channels") << good << 17 << 500 << 4096;
        QTest::newRow("negative channels") << good << -1 << 500 << 4096;
        QTest::newRow("no rate") << good << 1 << 0 << 4096;
        QTest::newRow("too high a rate") << good << 1 << 1000001 << 4096;
        QTest::newRow("negative header") << good << 1 << 500 << -1;
        QTest::newRow("no such folder") << QStringLiteral("none/file") << 1 << 500 << 4096;
        QTest::newRow("a folder") << QStringLiteral(".") << 1 << 500 << 4096;
    }

    void openingFailsWithItsText()
    {
        QFETCH(QString, name);
        QFETCH(int, channels);
        QFETCH(int, rate);
        QFETCH(int, headerSize);
        const QString good = m_folder.filePath(QStringLiteral("good"));
        QVERIFY(samples::makeFile(good, QByteArray(5000, 'x')));
        const QString target = m_folder.filePath(name);
        QCOMPARE(errorOf(target, channels, rate, headerSize, false), QStringLiteral("Cannot open file"));
        QCOMPARE(errorOf(target, channels, rate, headerSize, true), QStringLiteral("Cannot create file"));
        QCOMPARE(QFileInfo(good).size(), qint64(5000));
    }

    void aMissingFileIsNotMadeByOpening()
    {
        QCOMPARE(errorOf(path(), 1, 500, 4096, false), QStringLiteral("Cannot open file"));
        QVERIFY(!QFile::exists(path()));
    }

    void aRecordingIsBroughtToTheDisk()
    {
        TEcgFile file(path(), 1, 500, 4096, true);
        append(file, 10);
        QVERIFY(file.sync());
        QVERIFY(!file.writeFailed());
    }

    void everySampleIsInTheFileAfterEachAppend()
    {
        TEcgFile file(path(), 14, 500, 4096, true);
        for (int i = 1; i <= 20; ++i) {
            append(file, 51);
            QCOMPARE(QFileInfo(path()).size(), qint64(4096 + i * 51 * 28));
        }
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(EcgFileTest)
#include "EcgFileTest.moc"
