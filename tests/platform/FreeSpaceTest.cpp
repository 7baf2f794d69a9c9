#include "platform/FreeSpace.h"

#include <QTemporaryDir>
#include <QtTest>

#include <filesystem>

class FreeSpaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFolderTellsWhatItsFileSystemTells()
    {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const auto bytes = freeBytes(folder.path());
        QVERIFY(bytes.has_value());
        const auto told = std::filesystem::space(folder.path().toStdString());
        QVERIFY(*bytes >= 0 && *bytes <= qint64(told.capacity));
        // Other processes write meanwhile.
        const qint64 slack = qint64(1) << 30;
        QVERIFY(qAbs(*bytes - qint64(told.available)) < slack);
    }

    void foldersWithOtherLettersAreFound()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QString::fromUtf8("señal 心電図"));
        QVERIFY(QDir().mkpath(path));
        QVERIFY(freeBytes(path).has_value());
    }

    void aFileSystemWithoutSpaceHasNone()
    {
        if (!QFile::exists(QStringLiteral("/proc/self")))
            QSKIP("no file system without blocks at hand");
        QCOMPARE(freeBytes(QStringLiteral("/proc/self")), std::optional<qint64>(0));
    }

    void anAbsentFolderHasNoAnswer()
    {
        QTemporaryDir folder;
        QVERIFY(!freeBytes(folder.filePath(QStringLiteral("absent"))).has_value());
        QVERIFY(!freeBytes(QString()).has_value());
    }
};

QTEST_GUILESS_MAIN(FreeSpaceTest)
#include "FreeSpaceTest.moc"
