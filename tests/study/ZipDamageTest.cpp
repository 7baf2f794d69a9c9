#include "FailureText.h"
#include "RawZip.h"
#include "study/QZipFileCreator.h"
#include "study/QZipFileExtractor.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace {

const QString info = QStringLiteral("info");
const QString cannotRead = QStringLiteral("Cannot read file in zip archive");

} // namespace

/// Archives that are damaged, or made to do damage.
class ZipDamageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        m_path = m_folder.filePath(QStringLiteral("study.vtz"));
    }

    void theArchiveOfTheseTestsIsSoundBeforeItIsDamaged()
    {
        write(TRawZip(m_content).bytes());
        QBuffer buffer;
        QZipFileExtractor extractor(m_path);
        QCOMPARE(extractor.comment(), QStringLiteral("VTZIP1"));
        QVERIFY(extractor.extract(info, buffer));
        QCOMPARE(buffer.data(), m_content);
    }

    void whatIsNoArchiveCannotBeOpened_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("no archive at all");
        QTest::newRow("cut before the end record") << TRawZip(m_content).bytes().chopped(28);
        QTest::newRow("cut in the middle") << TRawZip(m_content).bytes().left(60);
    }

    void whatIsNoArchiveCannotBeOpened()
    {
        QFETCH(QByteArray, bytes);
        write(bytes);
        QCOMPARE(openFailure(m_path), QStringLiteral("Cannot open zip archive"));
    }

    void absentFilesFoldersAndPipesCannotBeOpened()
    {
        const QString text = QStringLiteral("Cannot open zip archive");
        QCOMPARE(openFailure(m_folder.filePath(QStringLiteral("absent"))), text);
        QCOMPARE(openFailure(m_folder.path()), text);
        const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(openFailure(pipe), text);
    }

    void aCountOfMembersThatDoesNotFitTheFileIsRefused()
    {
        TRawZip zip(m_content);
        zip.entries = 65535;
        write(zip.bytes());
        QCOMPARE(openFailure(m_path), QStringLiteral("Cannot read zip archive"));
    }

    void aCommentThatIsCutOffIsTold()
    {
        TRawZip zip(m_content);
        zip.commentSize = 65535;
        write(zip.bytes());
        QCOMPARE(openFailure(m_path), QStringLiteral("Cannot read comment in zip archive"));
    }

    void aCommentIsReadBeyondAZeroCharacter()
    {
        TRawZip zip(m_content);
        zip.comment = QByteArray("VTZIP1\0x", 8);
        zip.commentSize = 8;
        write(zip.bytes());
        QCOMPARE(QZipFileExtractor(m_path).comment().size(), 8);
    }

    void aDirectoryWithFewerMembersThanToldEndsTheSearch()
    {
        TRawZip zip(m_content);
        zip.entries = 2;
        write(zip.bytes());
        QZipFileExtractor extractor(m_path);
        QCOMPARE(failureText([&] { extractor.uncompressedSize(QStringLiteral("absent")); }),
                 QStringLiteral("Cannot get file info from zip archive"));
        QCOMPARE(extractFailure(QStringLiteral("absent")),
                 QStringLiteral("Cannot get file info from zip archive"));
        QCOMPARE(extractFailure(info), QString());
    }

    void aDamagedDirectoryEntryIsTold()
    {
        const QByteArray bytes = TRawZip(m_content).bytes();
        write(flipped(bytes, bytes.indexOf("PK\1\2") + 2));
        QCOMPARE(extractFailure(info), QStringLiteral("Cannot get file info from zip archive"));
    }

    void aDamagedLocalHeaderIsTold()
    {
        write(flipped(TRawZip(m_content).bytes(), 2));
        QCOMPARE(extractFailure(info), QStringLiteral("Cannot open file in zip archive"));
    }

    void encryptedMembersAndOtherMethodsAreRefused()
    {
        TRawZip encrypted(m_content);
        encrypted.flags = 1;
        write(encrypted.bytes());
        QCOMPARE(extractFailure(info), QStringLiteral("Cannot open file in zip archive"));
        TRawZip bzip2(m_content);
        bzip2.method = 12;
        write(bzip2.bytes());
        QCOMPARE(extractFailure(info), QStringLiteral("Cannot open file in zip archive"));
    }

    void storedMembersAreRead()
    {
        TRawZip stored(m_content);
        stored.method = 0;
        stored.packed = m_content;
        write(stored.bytes());
        QBuffer buffer;
        QVERIFY(QZipFileExtractor(m_path).extract(info, buffer));
        QCOMPARE(buffer.data(), m_content);
    }

    void aWrongByteInAMemberIsFoundByTheChecksum()
    {
        TRawZip stored(m_content);
        stored.method = 0;
        stored.packed = flipped(m_content, 500);
        write(stored.bytes());
        QCOMPARE(extractFailure(info), QStringLiteral("Corrupt file read from zip archive"));
        TRawZip deflated(m_content);
        deflated.crc ^= 1;
        write(deflated.bytes());
        QCOMPARE(extractFailure(info), QStringLiteral("Corrupt file read from zip archive"));
        deflated = TRawZip(QByteArray());
        deflated.crc = 1;
        write(deflated.bytes());
        QCOMPARE(extractFailure(info), QStringLiteral("Corrupt file read from zip archive"));
    }

    void everyWrongByteOfAnArchiveIsFoundOrHarmless()
    {
        const QByteArray sound = TRawZip(m_content).bytes();
        for (int i = 0; i < sound.size(); ++i) {
            write(flipped(sound, i));
            QBuffer buffer;
            bool found = false;
            const QString failure =
                failureText([&] { found = QZipFileExtractor(m_path).extract(info, buffer); });
            QVERIFY2(!failure.isEmpty() || !found || buffer.data() == m_content,
                     qPrintable(QString::number(i)));
            QVERIFY(!buffer.isOpen());
        }
    }

    void aStreamThatIsNoDeflateCannotBeRead()
    {
        TRawZip zip(m_content);
        zip.packed.fill('\xFF');
        write(zip.bytes());
        QCOMPARE(extractFailure(info), cannotRead);
    }

    void aStreamThatEndsEarlyCannotBeRead()
    {
        TRawZip cut(m_content);
        cut.packed.chop(20);
        write(cut.bytes());
        QCOMPARE(extractFailure(info), cannotRead);
        TRawZip shorter(m_content);
        shorter.size += 1;
        write(shorter.bytes());
        QCOMPARE(extractFailure(info), cannotRead);
    }

    void aMemberThatUnpacksToMoreThanDeclaredIsCutThereAndFound()
    {
        TRawZip zip(QByteArray(50 * 1024 * 1024, 'x'));
        zip.size = 1000;
        write(zip.bytes());
        QBuffer buffer;
        QZipFileExtractor extractor(m_path);
        QCOMPARE(failureText([&] { extractor.extract(info, buffer); }),
                 QStringLiteral("Corrupt file read from zip archive"));
        QCOMPARE(buffer.data().size(), 1000);
    }

    void aMemberLargerThanAllowedLeavesTheTargetAlone()
    {
        write(TRawZip(m_content).bytes());
        QZipFileExtractor extractor(m_path);
        QBuffer buffer;
        buffer.setData("old");
        QCOMPARE(failureText([&] { extractor.extract(info, buffer, m_content.size() - 1); }), cannotRead);
        QCOMPARE(buffer.data(), QByteArray("old"));
        QVERIFY(extractor.extract(info, buffer, m_content.size()));
        QCOMPARE(buffer.data(), m_content);
    }

    void aMemberOf4GigabytesOrMoreIsRefusedBeforeItIsUnpacked()
    {
        TRawZip zip(m_content);
        zip.size = 0xFFFFFFFF;
        zip.directoryExtra = TRawZip::number(1, 2) + TRawZip::number(8, 2) +
                             TRawZip::number(std::numeric_limits<quint64>::max() - 5, 8);
        write(zip.bytes());
        QZipFileExtractor extractor(m_path);
        QCOMPARE(extractor.uncompressedSize(info), qint64(0xFFFFFFFF));
        QBuffer buffer;
        QCOMPARE(failureText([&] { extractor.extract(info, buffer); }), cannotRead);
        QCOMPARE(buffer.data(), QByteArray());
    }

    void anArchiveIsReadFurtherAfterAFailure()
    {
        {
            QZipFileCreator creator(m_path);
            creator.addData(m_content, QStringLiteral("vtecg"));
            creator.addData("sound", info);
            creator.close();
        }
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.seek(40) && file.write("damage") == 6);
        file.close();
        QZipFileExtractor extractor(m_path);
        QBuffer damaged;
        QVERIFY(!failureText([&] { extractor.extract(QStringLiteral("vtecg"), damaged); }).isEmpty());
        QBuffer sound;
        QVERIFY(extractor.extract(info, sound));
        QCOMPARE(sound.data(), QByteArray("sound"));
    }

private:
    static QByteArray someContent()
    {
        QByteArray bytes;
        for (int i = 0; i < 300; ++i)
            bytes += QByteArray::number(i * i) + ' ';
        return bytes;
    }

    static QByteArray flipped(QByteArray bytes, int index)
    {
        bytes[index] = char(bytes[index] ^ 0x55);
        return bytes;
    }

    void write(const QByteArray& bytes)
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    static QString openFailure(const QString& path)
    {
        return failureText([&] { QZipFileExtractor extractor(path); });
    }

    QString extractFailure(const QString& member)
    {
        QBuffer buffer;
        return failureText([&] { QZipFileExtractor(m_path).extract(member, buffer); });
    }

    const QByteArray m_content = someContent();
    QTemporaryDir m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(ZipDamageTest)
#include "ZipDamageTest.moc"
