#include "FailureText.h"
#include "FullDisk.h"
#include "StoreFolder.h"
#include "study/QZipFileCreator.h"
#include "study/StudyDocument.h"
#include "study/StudyImport.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QFileInfo>
#include <QLockFile>
#include <QtTest>

#include <sys/time.h>

namespace {

const QString invalidArchive = QStringLiteral("File is not a valid Velantor study Zip archive");

/// An archive in the making, each member to be exchanged for something worse.
struct TArchive
{
    QByteArray study;
    QByteArray ecg;
    QByteArray beats;
    QByteArray info;
    QStringList left; ///< members to be left out

    void write(const QString& path) const
    {
        QZipFileCreator creator(path);
        creator.setComment(QStringLiteral("VTZIP1"));
        const std::pair<const char*, const QByteArray&> members[] = {
            {"vtstudy", study}, {"vtecg", ecg}, {"vtbeats", beats}, {"info", info}};
        for (const auto& [name, bytes] : members) {
            if (!left.contains(QLatin1String(name)))
                creator.addData(bytes, QLatin1String(name));
        }
        creator.close();
    }
};

QByteArray infoMember(const QByteArray& escapedBaseFilename)
{
    return "{\"baseFilename\":\"" + escapedBaseFilename +
           "\",\"patient\":{\"lastName\":\"Perez\",\"firstName\":\"Ana\"},"
           "\"studyDateTime\":\"20240105093012\",\"studyType\":\"Stress test\"}";
}

} // namespace

/// Archives come from shared folders: the good ones arrive whole, the others do no harm.
class ArchiveImportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        LocalStudyDatabase source(m_source.path());
        m_info = addStudy(source, "Perez");
        source.exportStudy(m_info.id, m_source.outside());
        m_soundArchive = m_source.outside() + QStringLiteral("/12-Perez-Ana-20240105093012.vtz");
        m_sound.study = contentOf(m_source.studyFile(base));
        m_sound.ecg = contentOf(m_source.ecgFile(base));
        m_sound.beats = contentOf(m_source.beatsFile(base));
        m_sound.info = infoMember(base);
        QVERIFY(QFile::exists(m_soundArchive) && m_info.baseFilename == base);
    }

    void init()
    {
        m_database.reset();
        m_folder = std::make_unique<StoreFolder>();
        m_database = std::make_unique<LocalStudyDatabase>(m_folder->path());
        m_archive = m_folder->beside("poison.vtz");
    }

    void cleanup()
    {
        m_database.reset();
        const QStringList left = QDir(m_folder->path() + QStringLiteral("/data"))
                                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        QCOMPARE(left, QStringList({QStringLiteral("protocols.json"), QStringLiteral("studies.sqlite")}));
    }

    void aStudyArrivesWholeInAnotherStore()
    {
        StudyInfo imported;
        m_database->importStudy(m_soundArchive, &imported);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
        QCOMPARE(listedIds(*m_database), QList<qint32>{m_info.id});
        QCOMPARE(imported.id, m_info.id);
        QCOMPARE(imported.lastName, QByteArray("Perez"));
        StudyInfo listed;
        QVERIFY(m_database->findStudy(m_info.id, listed));
        QCOMPARE(listed.baseFilename, base);
        QCOMPARE(listed.firstName, QByteArray("Ana"));
        QCOMPARE(listed.studyType, QByteArray("Stress test"));

        Study* study = m_database->openStudy(m_info.id);
        QVERIFY(study != nullptr);
        const std::unique_ptr<Study> original = m_database->loadStudy(m_source.studyFile(base));
        QCOMPARE(makeStudyDocument(*study), makeStudyDocument(*original));
        QCOMPARE(study->ecg()->sampleCount(), 250);
        QCOMPARE(study->beats()->count(), original->beats()->count());
    }

    void importingTwiceLeavesOneStudy()
    {
        m_database->importStudy(m_soundArchive);
        const QStringList before = listing(m_folder->outside());
        m_database->importStudy(m_soundArchive);
        QCOMPARE(listing(m_folder->outside()), before);
        QCOMPARE(listedIds(*m_database), QList<qint32>{m_info.id});
    }

    void anImportBringsAnOlderStudyUpToDate()
    {
        m_database->importStudy(m_soundArchive);
        Study* study = m_database->openStudy(m_info.id);
        study->setValue("status", "report");
        study->setValue("patient/lastName", "Changed");
        m_database->saveStudy(study);
        m_database->closeStudy(study);
        m_database->importStudy(m_soundArchive);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
        StudyInfo listed;
        QVERIFY(m_database->findStudy(m_info.id, listed));
        QCOMPARE(listed.status, QByteArray());
        QCOMPARE(listed.lastName, QByteArray("Perez"));
    }

    void theNameComesFromTheInfo()
    {
        TArchive archive = m_sound;
        archive.info = infoMember("other name");
        archive.write(m_archive);
        m_database->importStudy(m_archive);
        QVERIFY(m_folder->hasAnyFile("other name") && !m_folder->hasAnyFile(base));
        QVERIFY(m_database->openStudy(m_info.id) != nullptr);
    }

    void aNameThatBeginsWithAPointIsTaken()
    {
        TArchive archive = m_sound;
        archive.info = infoMember(".12-%1-\303\261");
        archive.write(m_archive);
        m_database->importStudy(m_archive);
        QVERIFY(m_database->openStudy(m_info.id) != nullptr);
    }

    void aMissingMemberIsRefused_data()
    {
        QTest::addColumn<QString>("member");
        for (const char* name : {"vtstudy", "vtecg", "vtbeats", "info"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aMissingMemberIsRefused()
    {
        QFETCH(QString, member);
        TArchive archive = m_sound;
        archive.left << member;
        archive.write(m_archive);
        expectRefusedBesideAGoodStudy(invalidArchive);
    }

    void aNameThatLeadsOutOfTheFolderIsRefused_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("above") << QByteArray("../x");
        QTest::newRow("far above") << QByteArray("../../../../../../tmp/x");
        QTest::newRow("absolute") << QByteArray(m_source.outside().toUtf8() + "/x");
        QTest::newRow("below") << QByteArray("data/x");
        QTest::newRow("backslash") << QByteArray("..\\\\x");
        QTest::newRow("drive") << QByteArray("C:x");
        QTest::newRow("new line") << QByteArray("a\\nb");
        QTest::newRow("zero byte") << QByteArray("a\\u0000b");
        QTest::newRow("delete") << QByteArray("a\\u007fb");
        QTest::newRow("this folder") << QByteArray(".");
        QTest::newRow("folder above") << QByteArray("..");
    }

    void aNameThatLeadsOutOfTheFolderIsRefused()
    {
        QFETCH(QByteArray, name);
        TArchive archive = m_sound;
        archive.info = infoMember(name);
        archive.write(m_archive);
        const QStringList outside = listing(m_source.outside());
        expectRefusedAndNothingLeft(invalidArchive);
        QCOMPARE(listing(m_source.outside()), outside);
    }

    void aNameTooLongForTheFileSystemIsTold()
    {
        TArchive archive = m_sound;
        archive.info = infoMember(QByteArray(300, 'x'));
        archive.write(m_archive);
        expectRefusedAndNothingLeft(QStringLiteral("Write error"));
    }

    void aDamagedMemberIsRefused_data()
    {
        QTest::addColumn<QByteArray>("member");
        QTest::addColumn<int>("extracted");
        QTest::newRow("vtstudy") << QByteArray("vtstudy") << 0;
        QTest::newRow("vtecg") << QByteArray("vtecg") << 1;
        QTest::newRow("vtbeats") << QByteArray("vtbeats") << 2;
    }

    void aDamagedMemberIsRefused()
    {
        QFETCH(QByteArray, member);
        QFETCH(int, extracted);
        m_sound.write(m_archive);
        QVERIFY(writeFile(m_archive, withWrongChecksum(contentOf(m_archive), member)));
        const QString text = QStringLiteral("Corrupt file read from zip archive");
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }), text);
        // Members that were sound stay where nothing was.
        QCOMPARE(QFile::exists(m_folder->studyFile(base)), extracted > 0);
        QCOMPARE(QFile::exists(m_folder->ecgFile(base)), extracted > 1);
        QVERIFY(!QFile::exists(m_folder->beatsFile(base)));
        QVERIFY(m_database->listStudies().empty());

        m_database->importStudy(m_soundArchive);
        expectRefusedBesideAGoodStudy(text);
    }

    void aFileThatIsNoneOfOursIsRefused_data()
    {
        QTest::addColumn<QByteArray>("member");
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray noise(10000, '\xA5');
        QTest::newRow("empty study") << QByteArray("vtstudy") << QByteArray();
        QTest::newRow("short study") << QByteArray("vtstudy") << QByteArray("VTS");
        QTest::newRow("noise for a study") << QByteArray("vtstudy") << noise;
        QTest::newRow("noise in a study") << QByteArray("vtstudy") << QByteArray("VTSTUDY2" + noise);
        QTest::newRow("study of nothing") << QByteArray("vtstudy") << QByteArray("VTSTUDY1{}");
        QTest::newRow("empty study object")
            << QByteArray("vtstudy") << QByteArray("VTSTUDY1{\"study\":{},\"patient\":{\"sex\":\"F\"}}");
        QTest::newRow("id 0") << QByteArray("vtstudy") << oldStudyFile(0, base);
        QTest::newRow("negative id") << QByteArray("vtstudy") << oldStudyFile(-1, base);
        QTest::newRow("id out of range") << QByteArray("vtstudy") << oldStudyFile(1000000000, base);
        QTest::newRow("empty ecg") << QByteArray("vtecg") << QByteArray();
        QTest::newRow("short ecg") << QByteArray("vtecg") << QByteArray("VTECG1");
        QTest::newRow("noise for ecg") << QByteArray("vtecg") << noise;
        QTest::newRow("noise in ecg") << QByteArray("vtecg") << QByteArray("VTECG1" + noise);
        QTest::newRow("empty beats") << QByteArray("vtbeats") << QByteArray();
        QTest::newRow("noise for beats") << QByteArray("vtbeats") << noise;
    }

    void aFileThatIsNoneOfOursIsRefused()
    {
        QFETCH(QByteArray, member);
        QFETCH(QByteArray, bytes);
        TArchive archive = m_sound;
        (member == "vtstudy" ? archive.study : member == "vtecg" ? archive.ecg : archive.beats) = bytes;
        archive.write(m_archive);
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }), invalidArchive);
        QVERIFY(m_database->listStudies().empty());
        m_database->importStudy(m_soundArchive);
        expectRefusedBesideAGoodStudy(invalidArchive);
    }

    void aStudyOfAnotherIdIsNeverReplaced()
    {
        m_database->importStudy(m_soundArchive);
        TArchive archive = m_sound;
        archive.study = oldStudyFile(m_info.id == 1 ? 2 : 1, base);
        archive.write(m_archive);
        expectRefusedBesideAGoodStudy(invalidArchive);
        QCOMPARE(listedIds(*m_database), QList<qint32>{m_info.id});
    }

    void anOpenStudyIsNotReplaced()
    {
        m_database->importStudy(m_soundArchive);
        Study* study = m_database->openStudy(m_info.id);
        study->setValue("status", "report");
        m_database->saveStudy(study);
        expectRefused(m_soundArchive, QStringLiteral("Study is open"));
        QVERIFY(m_database->isStudyOpen(m_info.id));
        QCOMPARE(study->ecg()->sampleCount(), 250);
        QCOMPARE(m_database->listStudies().front().status, QByteArray("report"));
    }

    void theFilesOfAnOpenStudyAreNotReplacedUnderAnotherId()
    {
        m_database->importStudy(m_soundArchive);
        QVERIFY(m_database->openStudy(m_info.id) != nullptr);
        QVERIFY(QFile::remove(m_folder->studyFile(base)));
        TArchive archive = m_sound;
        archive.study = oldStudyFile(m_info.id == 1 ? 2 : 1, base);
        archive.write(m_archive);
        // The recording tells whose the files are.
        expectRefused(m_archive, invalidArchive);
        QVERIFY(writeFile(m_folder->ecgFile(base), "damage"));
        expectRefused(m_archive, QStringLiteral("Study is open"));
    }

    void aRecordingWithoutItsStudyFileIsNotReplacedByAnotherStudy()
    {
        m_database->importStudy(m_soundArchive);
        QVERIFY(writeFile(m_folder->studyFile(base), "damage"));
        TArchive archive = m_sound;
        archive.study = oldStudyFile(m_info.id == 1 ? 2 : 1, base);
        archive.write(m_archive);
        expectRefused(m_archive, invalidArchive);
        m_database->importStudy(m_soundArchive);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
    }

    void aPlaceThatCannotBeTakenLeavesTheOldSetWhole()
    {
        m_database->importStudy(m_soundArchive);
        const QByteArray study = contentOf(m_folder->studyFile(base));
        const QByteArray beats = contentOf(m_folder->beatsFile(base));
        // A folder cannot be replaced by a file.
        QVERIFY(QFile::remove(m_folder->ecgFile(base)) && QDir().mkdir(m_folder->ecgFile(base)));
        TArchive archive = m_sound;
        archive.study = oldStudyFile(m_info.id, base);
        archive.beats += QByteArray(8, 'x');
        archive.write(m_archive);
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }), QStringLiteral("Write error"));
        QCOMPARE(contentOf(m_folder->studyFile(base)), study);
        QCOMPARE(contentOf(m_folder->beatsFile(base)), beats);
    }

    void aStudyOpenInAnotherProcessIsNeitherReplacedNorDeleted()
    {
        m_database->importStudy(m_soundArchive);
        QLockFile other(m_folder->path() + QStringLiteral("/data/study-%1.lock").arg(m_info.id));
        QVERIFY(other.tryLock(0));
        expectRefused(m_soundArchive, QStringLiteral("Study is open"));
        m_database->deleteStudy(m_info.id);
        QVERIFY(m_folder->hasAnyFile(base));
        QCOMPARE(int(m_database->listStudies().size()), 1);
        other.unlock();
        m_database->deleteStudy(m_info.id);
        QVERIFY(!m_folder->hasAnyFile(base));
    }

    void whatAKilledImportLeftIsRemovedADayLater()
    {
        m_database.reset();
        const QString left = m_folder->path() + QStringLiteral("/data/import-abcdef");
        QVERIFY(QDir().mkdir(left) && writeFile(left + QStringLiteral("/set.vtecg"), "part"));
        removeStaleImports(m_folder->path());
        QVERIFY(QDir(left).exists());
        const timeval old[] = {{1000000000, 0}, {1000000000, 0}};
        QCOMPARE(utimes(QFile::encodeName(left).constData(), old), 0);
        removeStaleImports(m_folder->path());
        QVERIFY(!QDir(left).exists());
    }

    void damagedFilesInTheStoreAreMendedByAnImport()
    {
        QVERIFY(writeFile(m_folder->studyFile(base), "damage"));
        QVERIFY(writeFile(m_folder->ecgFile(base), "damage"));
        m_database->importStudy(m_soundArchive);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
    }

    void whatABadArchiveLeftBehindDoesNotBarAGoodOne()
    {
        TArchive archive = m_sound;
        archive.study = "VTSTUDY1 noise";
        archive.write(m_archive);
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }), invalidArchive);
        QVERIFY(m_folder->hasAnyFile(base));
        m_database->importStudy(m_soundArchive);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
    }

    void aHeavyMemberThatIsNoneOfOursIsTurnedAwayByItsFirstBytes_data()
    {
        QTest::addColumn<QByteArray>("member");
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<int>("megabytes");
        QTest::newRow("study") << QByteArray("vtstudy") << QByteArray("VTSTUDY3") << 32;
        QTest::newRow("study that is never read") << QByteArray("vtstudy") << QByteArray("VTSTUDY2") << 241;
        QTest::newRow("ecg mark") << QByteArray("vtecg") << QByteArray("VTECG2") << 32;
        QTest::newRow("ecg document") << QByteArray("vtecg") << QByteArray("VTECG1{\"ecg\":{}}") << 32;
        QTest::newRow("beats") << QByteArray("vtbeats") << QByteArray("VTBEATS2") << 32;
    }

    void aHeavyMemberThatIsNoneOfOursIsTurnedAwayByItsFirstBytes()
    {
        QFETCH(QByteArray, member);
        QFETCH(QByteArray, head);
        QFETCH(int, megabytes);
        writeHeavyArchive(member, head, megabytes * 1024 * 1024);
        // Had it been unpacked, even for a moment, it would have hit this.
        const FullDisk disk{8 * 1024 * 1024};
        QCOMPARE(failureText([&] { m_database->importStudy(m_archive); }), invalidArchive);
        QVERIFY(m_database->listStudies().empty());
    }

    void aLongRecordingIsNotMistakenForAHeavyMember()
    {
        TArchive archive = m_sound;
        archive.ecg.append(28 * 1000000, '\0');
        archive.write(m_archive);
        m_database->importStudy(m_archive);
        Study* study = m_database->openStudy(m_info.id);
        QVERIFY(study != nullptr);
        QCOMPARE(study->ecg()->sampleCount(), 250 + 1000000);
    }

private:
    /// Nothing of a failed import is left anywhere, the index included.
    void expectRefusedAndNothingLeft(const QString& text)
    {
        expectRefused(m_archive, text);
        QVERIFY(m_database->listStudies().empty());
    }

    void expectRefusedBesideAGoodStudy(const QString& text)
    {
        if (m_database->listStudies().empty())
            m_database->importStudy(m_soundArchive);
        expectRefused(m_archive, text);
        QVERIFY(m_folder->setContent(base) == m_source.setContent(base));
    }

    void expectRefused(const QString& archive, const QString& text)
    {
        const QStringList files = listing(m_folder->outside());
        const QByteArray set = m_folder->setContent(base);
        const QByteArray index = contentOf(m_folder->index());
        QCOMPARE(failureText([&] { m_database->importStudy(archive); }), text);
        QCOMPARE(listing(m_folder->outside()), files);
        QVERIFY(m_folder->setContent(base) == set);
        QVERIFY(contentOf(m_folder->index()) == index);
    }

    void writeHeavyArchive(const QByteArray& member, const QByteArray& head, int size)
    {
        const QByteArray bytes = head + QByteArray(size, '\0');
        TArchive archive = m_sound;
        (member == "vtstudy" ? archive.study : member == "vtecg" ? archive.ecg : archive.beats) = bytes;
        archive.write(m_archive);
    }

    /// The directory's checksum of a member, which stands 30 bytes before its name, is changed.
    static QByteArray withWrongChecksum(QByteArray bytes, const QByteArray& member)
    {
        const int name = bytes.lastIndexOf(member);
        const int checksum = name - 30;
        bytes[checksum] = char(bytes[checksum] ^ 0x55);
        // The local header repeats it behind 14 bytes.
        const int local = bytes.indexOf(member) - 30 + 14;
        bytes[local] = char(bytes[local] ^ 0x55);
        return bytes;
    }

    inline static const QByteArray base = "12-Perez-Ana-20240105093012";

    StoreFolder m_source;
    QString m_soundArchive;
    TArchive m_sound;
    StudyInfo m_info;
    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
    QString m_archive;
};

QTEST_GUILESS_MAIN(ArchiveImportTest)
#include "ArchiveImportTest.moc"
