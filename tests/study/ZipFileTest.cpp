#include "FailureText.h"
#include "FullDisk.h"
#include "study/QZipFileCreator.h"
#include "study/QZipFileExtractor.h"

#include <QBuffer>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

/// Bytes that deflate cannot shorten.
QByteArray noise(int size)
{
    QRandomGenerator generator(20240229);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes)
        byte = char(generator.generate());
    return bytes;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ZipFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_zip = m_folder->filePath(QStringLiteral("study.vtz"));
    }

    void membersComeBackByteForByte_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("empty") << 0;
        QTest::newRow("one byte") << 1;
        QTest::newRow("one chunk") << 32768;
        QTest::newRow("more than a chunk") << 40000;
        QTest::newRow("large") << 5 * 1024 * 1024;
    }

    void membersComeBackByteForByte()
    {
        QFETCH(int, size);
        const QByteArray bytes = noise(size);
        const QString source = write("source", bytes);
        QZipFileCreator creator(m_zip);
        creator.addFile(source, QStringLiteral("vtecg"));
        creator.addData(bytes, QStringLiteral("info"));
        creator.close();

        QZipFileExtractor extractor(m_zip);
        const QString target = m_folder->filePath(QStringLiteral("target"));
        QVERIFY(extractor.extractToFile(QStringLiteral("vtecg"), target));
        QVERIFY(contentOf(target) == bytes);
        QBuffer buffer;
        QVERIFY(extractor.extract(QStringLiteral("info"), buffer));
        QVERIFY(!buffer.isOpen());
        QVERIFY(buffer.data() == bytes);
        QCOMPARE(extractor.uncompressedSize(QStringLiteral("info")), qint64(size));
    }

    void aTinyArchiveHasTheLayoutOfTheFormat()
    {
        QZipFileCreator creator(m_zip);
        creator.setComment(QStringLiteral("VTZIP1"));
        creator.addData("a", QStringLiteral("info"));
        creator.close();
        // Version 2.0, no flags, method 8, no date; checksum, sizes 3 and 1, name of 4, no extra field.
        const QByteArray shared = "1400000008000000000043beb7e803000000010000000400" + QByteArray("0000");
        const QByteArray name = QByteArray("info").toHex();
        const QByteArray local = "504b0304" + shared + name + "4b0400";
        // Made by 0; no comment, disk 0, "looks like text", no rights, at offset 0.
        const QByteArray directory = "504b01020000" + shared + "0000000001000000000000000000" + name;
        // One entry on disk 0; a directory of 50 bytes at 37, a comment of 6.
        const QByteArray end = "504b0506000000000100010032000000250000000600" + QByteArray("VTZIP1").toHex();
        QCOMPARE(contentOf(m_zip).toHex(), local + directory + end);
    }

    void otherProgramsReadTheArchive()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("zipinfo")).isEmpty())
            QSKIP("unzip and zipinfo are not installed");
        writeSample();
        QCOMPARE(run("unzip", {QStringLiteral("-t"), m_zip}).first, 0);
        QVERIFY(run("zipinfo", {QStringLiteral("-z"), m_zip}).second.contains("VTZIP1"));
        const QByteArray details = run("zipinfo", {QStringLiteral("-v"), m_zip}).second;
        QCOMPARE(details.count("compression method:                             deflated"), 4);
        QCOMPARE(details.count("length of extra field:                          0 bytes"), 4);
        QCOMPARE(details.count("minimum software version required to extract:   2.0"), 4);
        const QByteArray names = run("zipinfo", {QStringLiteral("-1"), m_zip}).second;
        QCOMPARE(names, QByteArray("vtstudy\nvtecg\nvtbeats\ninfo\n"));
    }

    void archivesOfOtherProgramsAreRead()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("zip")).isEmpty())
            QSKIP("zip is not installed");
        const QString source = write("vtecg", QByteArray(100000, 'x'));
        QCOMPARE(run("zip", {QStringLiteral("-j"), m_zip, source}).first, 0);
        QBuffer buffer;
        QZipFileExtractor extractor(m_zip);
        QVERIFY(extractor.extract(QStringLiteral("vtecg"), buffer));
        QCOMPARE(buffer.data(), QByteArray(100000, 'x'));
        QCOMPARE(extractor.comment(), QString());
    }

    void theCommentIsUtf8()
    {
        const QString comment = QString::fromUtf8("Señal – 心電図");
        QZipFileCreator creator(m_zip);
        creator.setComment(comment);
        creator.addData("a", QStringLiteral("info"));
        creator.close();
        QVERIFY(contentOf(m_zip).endsWith(comment.toUtf8()));
        QCOMPARE(QZipFileExtractor(m_zip).comment(), comment);
    }

    void memberNamesAreUtf8AndMarkedSo()
    {
        const QString name = QString::fromUtf8("señal");
        QZipFileCreator creator(m_zip);
        creator.addData("abc", name);
        creator.close();
        const QByteArray bytes = contentOf(m_zip);
        QVERIFY(bytes.contains(name.toUtf8()));
        QCOMPARE(bytes.mid(6, 2), QByteArray("\0\x08", 2));
        QCOMPARE(QZipFileExtractor(m_zip).uncompressedSize(name), qint64(3));
    }

    void anOldArchiveIsReplaced()
    {
        write("study.vtz", noise(100000));
        QZipFileCreator creator(m_zip);
        creator.addData("new", QStringLiteral("info"));
        creator.close();
        QVERIFY(QFileInfo(m_zip).size() < 200);
        QBuffer buffer;
        QVERIFY(QZipFileExtractor(m_zip).extract(QStringLiteral("info"), buffer));
        QCOMPARE(buffer.data(), QByteArray("new"));
    }

    void anArchiveLeftOpenIsClosedByTheDestructor()
    {
        {
            QZipFileCreator creator(m_zip);
            creator.setComment(QStringLiteral("VTZIP1"));
            creator.addData("a", QStringLiteral("info"));
        }
        QZipFileExtractor extractor(m_zip);
        QCOMPARE(extractor.comment(), QStringLiteral("VTZIP1"));
        QCOMPARE(extractor.uncompressedSize(QStringLiteral("info")), qint64(1));
    }

    void aPathThatCannotBeWrittenIsTold()
    {
        const QString path = m_folder->filePath(QStringLiteral("absent/study.vtz"));
        QCOMPARE(failureText([&] { QZipFileCreator creator(path); }),
                 QStringLiteral("Cannot create zip archive"));
        QCOMPARE(failureText([&] { QZipFileCreator creator(m_folder->path()); }),
                 QStringLiteral("Cannot create zip archive"));
    }

    void anUnreadableSourceBeginsNoMember()
    {
        QZipFileCreator creator(m_zip);
        const QString absent = m_folder->filePath(QStringLiteral("absent"));
        QCOMPARE(failureText([&] { creator.addFile(absent, QStringLiteral("vtecg")); }),
                 QStringLiteral("Cannot open new file in zip"));
        QCOMPARE(failureText([&] { creator.addFile(m_folder->path(), QStringLiteral("vtecg")); }),
                 QStringLiteral("Cannot open new file in zip"));
        creator.addData("a", QStringLiteral("info"));
        creator.close();
        QCOMPARE(QZipFileExtractor(m_zip).uncompressedSize(QStringLiteral("vtecg")), qint64(-1));
        QCOMPARE(QZipFileExtractor(m_zip).uncompressedSize(QStringLiteral("info")), qint64(1));
    }

    void aReadErrorOfTheSourceIsToldAndLeavesNoArchive()
    {
        // The first page of a process is never mapped: the file opens, reading it fails.
        const QString unreadable = QStringLiteral("/proc/self/mem");
        {
            QZipFileCreator creator(m_zip);
            creator.addData("a", QStringLiteral("info"));
            QCOMPARE(failureText([&] { creator.addFile(unreadable, QStringLiteral("vtecg")); }),
                     QStringLiteral("Cannot write data in zip file"));
        }
        QCOMPARE(failureText([&] { QZipFileExtractor extractor(m_zip); }),
                 QStringLiteral("Cannot open zip archive"));
    }

    void aFullDiskIsTold_data()
    {
        QTest::addColumn<int>("space");
        QTest::addColumn<int>("memberSize");
        QTest::addColumn<QString>("text");
        // A local header with this name takes 34 bytes, a directory entry 50, the end record 22.
        QTest::newRow("no space") << 0 << 1000 << "Cannot open new file in zip";
        QTest::newRow("within the header") << 20 << 1000 << "Cannot open new file in zip";
        QTest::newRow("within the data") << 70000 << 300000 << "Cannot write data in zip file";
        QTest::newRow("last of the data") << 500 << 1000 << "Cannot close file in zip";
        QTest::newRow("within the directory") << 1060 << 1000 << "Cannot close zip archive";
        QTest::newRow("within the comment") << 1112 << 1000 << "Cannot close zip archive";
        QTest::newRow("enough") << 1117 << 1000 << "";
    }

    void aFullDiskIsTold()
    {
        QFETCH(int, space);
        QFETCH(int, memberSize);
        QFETCH(QString, text);
        const QByteArray bytes = noise(memberSize);
        const FullDisk disk{rlim_t(space)};
        QCOMPARE(failureText([&] {
                     QZipFileCreator creator(m_zip);
                     creator.setComment(QStringLiteral("VTZIP1"));
                     creator.addData(bytes, QStringLiteral("info"));
                     creator.close();
                 }),
                 text);
        QCOMPARE(failureText([&] { QZipFileExtractor extractor(m_zip); }).isEmpty(), text.isEmpty());
    }

    void aClosedArchiveTakesNoMembers()
    {
        QZipFileCreator creator(m_zip);
        creator.close();
        creator.close();
        QCOMPARE(failureText([&] { creator.addData("a", QStringLiteral("info")); }),
                 QStringLiteral("Cannot open new file in zip"));
    }

    void aCommentThatTheFormatCannotHoldIsTold()
    {
        QZipFileCreator creator(m_zip);
        creator.addData("a", QStringLiteral("info"));
        creator.setComment(QString(65536, QLatin1Char('x')));
        QCOMPARE(failureText([&] { creator.close(); }), QStringLiteral("Cannot close zip archive"));
        QCOMPARE(QZipFileExtractor(m_zip).comment(), QString());
    }

    void aMissingMemberIsNoError()
    {
        writeSample();
        QZipFileExtractor extractor(m_zip);
        const QString target = m_folder->filePath(QStringLiteral("target"));
        QVERIFY(!extractor.extractToFile(QStringLiteral("absent"), target));
        QVERIFY(!extractor.extractToFile(QStringLiteral("INFO"), target));
        QVERIFY(!extractor.extractToFile(QStringLiteral("inf"), target));
        QVERIFY(!extractor.extractToFile(QStringLiteral("info2"), target));
        QVERIFY(!QFile::exists(target));
        QCOMPARE(extractor.uncompressedSize(QStringLiteral("absent")), qint64(-1));
    }

    void aTargetThatCannotBeWrittenIsTold()
    {
        writeSample();
        QZipFileExtractor extractor(m_zip);
        const QString absent = m_folder->filePath(QStringLiteral("absent/target"));
        QCOMPARE(failureText([&] { extractor.extractToFile(QStringLiteral("vtecg"), absent); }),
                 QStringLiteral("Cannot read file in zip archive"));
        const QString target = m_folder->filePath(QStringLiteral("target"));
        {
            // Small enough to wait in the file's buffer until it is closed.
            const FullDisk disk{1};
            QCOMPARE(failureText([&] { extractor.extractToFile(QStringLiteral("vtstudy"), target); }),
                     QStringLiteral("Cannot read file in zip archive"));
            QCOMPARE(failureText([&] { extractor.extractToFile(QStringLiteral("vtecg"), target); }),
                     QStringLiteral("Cannot read file in zip archive"));
        }
        QVERIFY(extractor.extractToFile(QStringLiteral("vtecg"), target));
        QVERIFY(contentOf(target) == noise(100000));
    }

private:
    QString write(const char* name, const QByteArray& bytes)
    {
        QFile file(m_folder->filePath(QLatin1String(name)));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }

    /// An archive with the members of a study.
    void writeSample()
    {
        QZipFileCreator creator(m_zip);
        creator.setComment(QStringLiteral("VTZIP1"));
        creator.addData("study", QStringLiteral("vtstudy"));
        creator.addData(noise(100000), QStringLiteral("vtecg"));
        creator.addData(QByteArray(), QStringLiteral("vtbeats"));
        creator.addData("{}", QStringLiteral("info"));
        creator.close();
    }

    static std::pair<int, QByteArray> run(const char* program, const QStringList& arguments)
    {
        QProcess process;
        process.start(QLatin1String(program), arguments);
        process.waitForFinished();
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput()};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_zip;
};

QTEST_GUILESS_MAIN(ZipFileTest)
#include "ZipFileTest.moc"
