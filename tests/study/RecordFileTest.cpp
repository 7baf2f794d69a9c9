#include "study/TRecordFile.h"

#include "base/Error.h"
#include "study/FileSamples.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// How many of the next cuts and syncs the disk refuses.
int refusedCuts = 0;
int refusedSyncs = 0;

int refuse(int& count)
{
    --count;
    errno = EIO;
    return -1;
}

int cut(int file, off_t size)
{
    return refusedCuts > 0 ? refuse(refusedCuts) : int(syscall(SYS_ftruncate, file, size));
}

} // namespace

// These take the place of the C library's, for no disk fails at will.
extern "C" {
int ftruncate(int file, off_t size) noexcept;
int ftruncate64(int file, off64_t size) noexcept;

int ftruncate(int file, off_t size) noexcept
{
    return cut(file, size);
}

int ftruncate64(int file, off64_t size) noexcept
{
    return cut(file, size);
}

int fsync(int file)
{
    return refusedSyncs > 0 ? refuse(refusedSyncs) : int(syscall(SYS_fsync, file));
}
}

class RecordFileTest : public QObject
{
    Q_OBJECT

private:
    static constexpr int headerSize = 8;

    QString path() const { return m_folder.filePath(QStringLiteral("records")); }
    QByteArray content() const { return samples::contentOf(path()).mid(headerSize); }

    /// Writes that would make a file longer fail in this process while this lives.
    class TSizeLimit
    {
    public:
        explicit TSizeLimit(rlim_t bytes)
        {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &m_before);
            rlimit limit = m_before;
            limit.rlim_cur = bytes;
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        ~TSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
        TSizeLimit(const TSizeLimit&) = delete;
        TSizeLimit& operator=(const TSizeLimit&) = delete;

    private:
        rlimit m_before{};
    };

    /// Two records of four bytes, of which one and a half reach the file and cannot be cut off again.
    static bool failToAppend(TRecordFile& file, int cuts)
    {
        const TSizeLimit limit(headerSize + 4 + 6);
        refusedCuts = cuts;
        return !file.append("BBBBCCCC", 2);
    }

    static QString errorOf(const QString& path)
    {
        try {
            const TRecordFile file(path, headerSize, 4, TRecordFile::TMode::Create);
        } catch (const TError& error) {
            return error.text();
        }
        return {};
    }

private Q_SLOTS:
    void init()
    {
        refusedCuts = 0;
        refusedSyncs = 0;
    }

    void cleanup() { QFile::remove(path()); }

    void aPipeIsNotTakenForANewFileAndStays()
    {
        QCOMPARE(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
        QCOMPARE(errorOf(path()), QStringLiteral("Cannot create file"));
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(path()).constData(), &status), 0);
        QVERIFY(S_ISFIFO(status.st_mode));
    }

    void aDeviceIsNotTakenForANewFile()
    {
        // By a link of our own: should the device be removed, the system loses nothing.
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), path()));
        QCOMPARE(errorOf(path()), QStringLiteral("Cannot create file"));
        QCOMPARE(QFile::symLinkTarget(path()), QStringLiteral("/dev/null"));
    }

    void anOlderRecordingIsNeverWrittenOver()
    {
        QVERIFY(samples::makeFile(path(), "an older one"));
        QCOMPARE(errorOf(path()), QStringLiteral("Cannot create file"));
        QCOMPARE(samples::contentOf(path()), QByteArray("an older one"));
    }

    void aFolderIsNotTakenForANewFile()
    {
        QCOMPARE(errorOf(m_folder.path()), QStringLiteral("Cannot create file"));
        QVERIFY(QFileInfo(m_folder.path()).isDir());
    }

    void whatCouldNotBeCutOffGoesWithTheNextAppend()
    {
        TRecordFile file(path(), headerSize, 4, TRecordFile::TMode::Create);
        QVERIFY(file.append("AAAA", 1));
        QVERIFY(failToAppend(file, 1));
        QCOMPARE(file.count(), qint64(1));
        QVERIFY(file.writeFailed());
        QCOMPARE(content(), QByteArray("AAAABBBBCC"));
        QVERIFY(file.append("D", 0));
        QCOMPARE(content(), QByteArray("AAAA"));
        QVERIFY(file.append("DDDD", 1));
        QCOMPARE(content(), QByteArray("AAAADDDD"));
    }

    void theCutIsTriedUntilItSucceeds()
    {
        TRecordFile file(path(), headerSize, 4, TRecordFile::TMode::Create);
        QVERIFY(file.append("AAAA", 1));
        QVERIFY(failToAppend(file, 3)); // at once, before the next append and after it
        QVERIFY(file.append("DDDD", 1));
        QCOMPARE(file.count(), qint64(2));
        QCOMPARE(content(), QByteArray("AAAADDDDCC"));
        QVERIFY(file.append("EEEE", 1));
        QCOMPARE(content(), QByteArray("AAAADDDDEEEE"));
    }

    void whatCouldNotBeCutOffGoesWhenTheFileIsClosed()
    {
        {
            TRecordFile file(path(), headerSize, 4, TRecordFile::TMode::Create);
            QVERIFY(file.append("AAAA", 1));
            QVERIFY(failToAppend(file, 1));
        }
        QCOMPARE(content(), QByteArray("AAAA"));
        const TRecordFile file(path(), headerSize, 4, TRecordFile::TMode::Open);
        QCOMPARE(file.count(), qint64(1));
    }

    void aSyncThatFailsIsAFailedWrite()
    {
        TRecordFile file(path(), headerSize, 4, TRecordFile::TMode::Create);
        QVERIFY(file.append("AAAA", 1));
        QVERIFY(file.sync());
        QVERIFY(!file.writeFailed());
        refusedSyncs = 1;
        QVERIFY(!file.sync());
        QVERIFY(file.writeFailed());
        QVERIFY(file.sync());
        QVERIFY(file.writeFailed());
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(RecordFileTest)
#include "RecordFileTest.moc"
