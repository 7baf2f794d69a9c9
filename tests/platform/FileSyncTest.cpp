#include "platform/FileSync.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class FileSyncTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOpenFileIsSynced()
    {
        QFile file(m_folder.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        QCOMPARE(file.write("abc"), qint64(3));
        QVERIFY(velantor::syncToDisk(file));
    }

    void whatQtStillHoldsIsWrittenFirst()
    {
        QFile file(m_folder.filePath(QStringLiteral("buffered")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("abc"), qint64(3));
        QVERIFY(velantor::syncToDisk(file));
        QCOMPARE(QFileInfo(file.fileName()).size(), qint64(3));
    }

    void aClosedFileIsNot()
    {
        QFile file(m_folder.filePath(QStringLiteral("closed")));
        QVERIFY(!velantor::syncToDisk(file));
    }

    void aDeviceWithoutADiskIsNot()
    {
        QFile file(QStringLiteral("/dev/null"));
        if (!file.exists())
            QSKIP("This system has no /dev/null");
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QVERIFY(!velantor::syncToDisk(file));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(FileSyncTest)
#include "FileSyncTest.moc"
