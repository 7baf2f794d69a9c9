#include "study/StudyArchive.h"
#include "FailureText.h"
#include "StoreFolder.h"
#include "study/QZipFileCreator.h"
#include "study/QZipFileExtractor.h"

#include <QBuffer>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

namespace {

QByteArray memberOf(const QString& archive, const char* member)
{
    QBuffer buffer;
    const bool found = QZipFileExtractor(archive).extract(QLatin1String(member), buffer);
    return found ? buffer.data() : QByteArray("absent");
}

/// What a program prints, its errors too; its exit code first.
QByteArray outputOf(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QLatin1String(program), arguments);
    process.waitForFinished();
    return QByteArray::number(process.exitCode()) + '\n' + process.readAll();
}

} // namespace

/// What leaves the store, and what archives tell of themselves.
class StudyArchiveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_database.reset();
        m_folder = std::make_unique<StoreFolder>();
        m_database = std::make_unique<LocalStudyDatabase>(m_folder->path());
        m_info = addStudy(*m_database, "Perez");
        m_target = m_folder->beside("shared");
        QVERIFY(QDir().mkpath(m_target));
        m_archive = m_target + QStringLiteral("/12-Perez-Ana-20240105093012.vtz");
    }

    void membersAreTheFilesOfTheSet()
    {
        m_database->exportStudy(m_info.id, m_target);
        QCOMPARE(listing(m_target), QStringList(m_archive));
        QVERIFY(memberOf(m_archive, "vtstudy") == contentOf(m_folder->studyFile(m_info.baseFilename)));
        QVERIFY(memberOf(m_archive, "vtecg") == contentOf(m_folder->ecgFile(m_info.baseFilename)));
        QVERIFY(memberOf(m_archive, "vtbeats") == contentOf(m_folder->beatsFile(m_info.baseFilename)));
        QCOMPARE(memberOf(m_archive, "info"),
                 QByteArray("{\"baseFilename\":\"12-Perez-Ana-20240105093012\","
                            "\"patient\":{\"firstName\":\"Ana\",\"lastName\":\"Perez\"},"
                            "\"studyDateTime\":\"20240105093012\",\"studyType\":\"Stress test\"}"));
        QCOMPARE(QZipFileExtractor(m_archive).comment(), QStringLiteral("VTZIP1"));
    }

    void membersStandInTheirOrder()
    {
        m_database->exportStudy(m_info.id, m_target);
        const QByteArray bytes = contentOf(m_archive);
        int place = -1;
        for (const char* name : {"vtstudy", "vtecg", "vtbeats", "info"}) {
            // Local header: the name behind 30 bytes, deflate as the method.
            const int next = bytes.indexOf(name, place + 1);
            QVERIFY(next > place);
            QCOMPARE(bytes.mid(next - 30, 4), QByteArray("PK\3\4"));
            QCOMPARE(bytes.mid(next - 22, 2), QByteArray("\x08\0", 2));
            place = next;
        }
        QVERIFY(bytes.endsWith(QByteArray("\6\0VTZIP1", 8)));
    }

    void otherProgramsReadTheArchive()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("zipinfo")).isEmpty())
            QSKIP("unzip and zipinfo are not installed");
        m_database->exportStudy(m_info.id, m_target);
        const QByteArray tested = outputOf("unzip", {QStringLiteral("-t"), m_archive});
        QVERIFY2(tested.startsWith("0\n") && tested.contains("No errors detected"), tested.constData());
        const QByteArray told = outputOf("zipinfo", {QStringLiteral("-z"), m_archive});
        QVERIFY(told.startsWith("0\n") && told.contains("\nVTZIP1\n"));
        QCOMPARE(told.count("defN"), 4);
        const QByteArray names = outputOf("zipinfo", {QStringLiteral("-1"), m_archive});
        QCOMPARE(names, QByteArray("0\nvtstudy\nvtecg\nvtbeats\ninfo\n"));
    }

    void exportingTwiceLeavesOneArchiveOfTheLatestState()
    {
        m_database->exportStudy(m_info.id, m_target);
        Study* study = m_database->openStudy(m_info.id);
        study->setValue("conclusion", "normal");
        m_database->saveStudy(study);
        m_database->exportStudy(m_info.id, m_target);
        QCOMPARE(listing(m_target), QStringList(m_archive));
        QVERIFY(memberOf(m_archive, "vtstudy") == contentOf(m_folder->studyFile(m_info.baseFilename)));
        QCOMPARE(m_database->listArchives(m_target).size(), size_t(1));
    }

    void theSourceStaysAndAnOpenStudyGoesOutAsItIsOnDisk()
    {
        Study* study = m_database->openStudy(m_info.id);
        study->setValue("conclusion", "not saved");
        const QByteArray before = m_folder->setContent(m_info.baseFilename);
        m_database->exportStudy(m_info.id, m_target);
        QVERIFY(m_folder->setContent(m_info.baseFilename) == before);
        QVERIFY(memberOf(m_archive, "vtstudy") == contentOf(m_folder->studyFile(m_info.baseFilename)));
        QVERIFY(m_database->isStudyOpen(m_info.id));
    }

    void anUnknownStudyIsNotExported()
    {
        m_database->exportStudy(m_info.id == 1 ? 2 : 1, m_target);
        QCOMPARE(listing(m_target), QStringList());
    }

    void aFolderThatIsAbsentIsTold()
    {
        QCOMPARE(failureText([&] { m_database->exportStudy(m_info.id, m_folder->beside("absent")); }),
                 QStringLiteral("Cannot create zip archive"));
        QVERIFY(!QFile::exists(m_folder->beside("absent")));
    }

    void aFailedExportNeverHarmsTheOlderArchive()
    {
        m_database->exportStudy(m_info.id, m_target);
        const QByteArray before = contentOf(m_archive);
        QVERIFY(QFile::remove(m_folder->beatsFile(m_info.baseFilename)));
        QCOMPARE(failureText([&] { m_database->exportStudy(m_info.id, m_target); }),
                 QStringLiteral("Cannot open new file in zip"));
        QVERIFY(contentOf(m_archive) == before);
        QCOMPARE(m_database->listArchives(m_target).size(), size_t(1));
    }

    void anArchiveTellsWhatItHolds()
    {
        m_database->exportStudy(m_info.id, m_target);
        StudyInfo info;
        QVERIFY(m_database->readArchiveInfo(m_archive, info));
        StudyInfo expected;
        expected.baseFilename = m_info.baseFilename;
        expected.studyDateTime = m_info.studyDateTime;
        expected.studyType = m_info.studyType;
        expected.lastName = m_info.lastName;
        expected.firstName = m_info.firstName;
        QCOMPARE(info, expected);
        QCOMPARE(m_database->listArchives(m_target), std::vector<StudyInfo>{expected});
    }

    void otherZipFilesAreNoArchives_data()
    {
        QTest::addColumn<QString>("comment");
        QTest::addColumn<QByteArray>("info");
        const QString ours = QStringLiteral("VTZIP1");
        const QByteArray sound = "{\"baseFilename\":\"x\",\"patient\":{\"lastName\":\"y\"}}";
        QTest::newRow("no comment") << QString() << sound;
        QTest::newRow("other comment") << QStringLiteral("VTZIP2") << sound;
        QTest::newRow("longer comment") << QStringLiteral("VTZIP1 ") << sound;
        QTest::newRow("other case") << QStringLiteral("vtzip1") << sound;
        QTest::newRow("no info") << ours << QByteArray();
        QTest::newRow("broken info") << ours << sound.chopped(1);
        QTest::newRow("no object") << ours << QByteArray("[\"baseFilename\"]");
        QTest::newRow("empty info") << ours << QByteArray("{}");
        QTest::newRow("no base name") << ours << QByteArray("{\"patient\":{\"lastName\":\"y\"}}");
        QTest::newRow("empty base name")
            << ours << QByteArray("{\"baseFilename\":\"\",\"patient\":{\"lastName\":\"y\"}}");
        QTest::newRow("base name no text")
            << ours << QByteArray("{\"baseFilename\":1,\"patient\":{\"lastName\":\"y\"}}");
        QTest::newRow("no patient") << ours << QByteArray("{\"baseFilename\":\"x\"}");
        QTest::newRow("empty patient") << ours << QByteArray("{\"baseFilename\":\"x\",\"patient\":{}}");
        QTest::newRow("patient no object") << ours << QByteArray("{\"baseFilename\":\"x\",\"patient\":[1]}");
    }

    void otherZipFilesAreNoArchives()
    {
        QFETCH(QString, comment);
        QFETCH(QByteArray, info);
        {
            QZipFileCreator creator(m_archive);
            creator.setComment(comment);
            creator.addData("x", QStringLiteral("vtstudy"));
            if (!info.isEmpty())
                creator.addData(info, QStringLiteral("info"));
            creator.close();
        }
        StudyInfo untouched = sampleInfoOf("untouched");
        QVERIFY(!m_database->readArchiveInfo(m_archive, untouched));
        QCOMPARE(untouched, sampleInfoOf("untouched"));
        QVERIFY(m_database->listArchives(m_target).empty());
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }),
                 QStringLiteral("File is not a valid Velantor study Zip archive"));
    }

    void anInfoWithoutTheOtherTextsIsEnough()
    {
        QZipFileCreator creator(m_archive);
        creator.setComment(QStringLiteral("VTZIP1"));
        creator.addData("{\"baseFilename\":\"x\",\"patient\":{\"other\":1}}", QStringLiteral("info"));
        creator.close();
        StudyInfo expected;
        expected.baseFilename = "x";
        QCOMPARE(m_database->listArchives(m_target), std::vector<StudyInfo>{expected});
    }

    void whatIsNoZipIsLeftOutOfTheListAndToldWhenRead()
    {
        m_database->exportStudy(m_info.id, m_target);
        QVERIFY(writeFile(m_target + QStringLiteral("/a.vtz"), "no zip at all"));
        QVERIFY(writeFile(m_target + QStringLiteral("/z.vtz"), QByteArray()));
        QVERIFY(QDir().mkpath(m_target + QStringLiteral("/folder.vtz")));
        QVERIFY(writeFile(m_target + QStringLiteral("/other.zip"), contentOf(m_archive)));
        QCOMPARE(m_database->listArchives(m_target).size(), size_t(1));
        StudyInfo info;
        const QString text = QStringLiteral("Cannot open zip archive");
        const QString noZip = m_target + QStringLiteral("/a.vtz");
        QCOMPARE(failureText([&] { m_database->readArchiveInfo(noZip, info); }), text);
        QCOMPARE(failureText([&] { m_database->importStudy(noZip); }), text);
        QCOMPARE(failureText([&] { m_database->importStudy(m_folder->beside("absent.vtz")); }), text);
        QVERIFY(m_database->listArchives(m_folder->beside("absent")).empty());
    }

    void aHeavyInfoIsNotUnpacked()
    {
        QZipFileCreator creator(m_archive);
        creator.setComment(QStringLiteral("VTZIP1"));
        creator.addData("{\"baseFilename\":\"x\",\"patient\":{\"a\":\"" + QByteArray(50000000, 'x') + "\"}}",
                        QStringLiteral("info"));
        creator.close();
        StudyInfo info;
        QCOMPARE(failureText([&] { m_database->readArchiveInfo(m_archive, info); }),
                 QStringLiteral("Cannot read file in zip archive"));
        QVERIFY(m_database->listArchives(m_target).empty());
    }

    void theNameOfAnArchiveIsThatOfTheStudy()
    {
        QCOMPARE(archivePath(QStringLiteral("/shared"), "12-%1-Nu\303\261ez"),
                 QStringLiteral("/shared/12-%1-Nu\u00f1ez.vtz"));
    }

private:
    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
    StudyInfo m_info;
    QString m_target;
    QString m_archive;
};

QTEST_GUILESS_MAIN(StudyArchiveTest)
#include "StudyArchiveTest.moc"
