#include "FailureText.h"
#include "FullDisk.h"
#include "StoreFolder.h"

#include <QtTest>

class StudyRebuildTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        QVERIFY(QDir().mkpath(m_folder->path()));
    }

    void cleanup() { QVERIFY(!QSqlDatabase::contains()); }

    void withoutTheIndexAllStudiesComeBackWithTheirIds()
    {
        std::vector<StudyInfo> before;
        {
            LocalStudyDatabase database(m_folder->path());
            for (const char* name : {"Perez", "Lopez", "Nu\303\261ez", ""})
                addStudy(database, name);
            StudyInfo info = sampleInfoOf("Rex");
            info.animalSpecies = "dog";
            database.closeStudy(database.createStudy(info));
            before = database.listStudies();
        }
        QVERIFY(QFile::remove(m_folder->index()));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(before.size(), size_t(5));
        QCOMPARE(database.listStudies(), before);
        for (const StudyInfo& info : before)
            QVERIFY(database.openStudy(info.id) != nullptr);
    }

    void rowsAreMadeFromTheStudyFileAlone()
    {
        QVERIFY(writeFile(m_folder->studyFile("set"),
                          "VTSTUDY1{\"study\":{\"id\":77,\"baseFilename\":\"set\",\"status\":\"report\","
                          "\"studyType\":\"ECG\",\"studyDateTime\":\"20240105093012\",\"comments\":\"c\"},"
                          "\"patient\":{\"firstName\":\"Rex\",\"lastName\":5,\"animalBreed\":\"boxer\"}}"));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>{77});
        QCOMPARE(m_folder->sql("select data from Study").toByteArray(),
                 QByteArray("{\"baseFilename\":\"set\",\"patientAnimalBreed\":\"boxer\","
                            "\"patientAnimalSpecies\":\"\",\"patientFirstName\":\"Rex\","
                            "\"patientLastName\":\"5\",\"status\":\"report\","
                            "\"studyDateTime\":\"20240105093012\",\"studyType\":\"ECG\"}"));
    }

    void whatIsNoStudyIsPassedOver_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray sound = oldStudyFile(5, "set").mid(8);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("mark alone") << QByteArray("VTSTUDY2");
        QTest::newRow("foreign mark") << QByteArray("VTSTUDY3" + qCompress(sound));
        QTest::newRow("noise") << QByteArray("VTSTUDY2" + QByteArray(1000, '\xA5'));
        QTest::newRow("cut") << QByteArray("VTSTUDY2" + qCompress(sound)).chopped(9);
        QTest::newRow("length that lies") << QByteArray("VTSTUDY2\x7F\xFF\xFF\xFF") + qCompress(sound).mid(4);
        QTest::newRow("broken JSON") << QByteArray("VTSTUDY1" + sound.chopped(1));
        QTest::newRow("no object") << QByteArray("VTSTUDY1[1,2]");
        QTest::newRow("empty object") << QByteArray("VTSTUDY1{}");
        QTest::newRow("no patient") << QByteArray("VTSTUDY1{\"study\":{\"id\":5}}");
        QTest::newRow("empty patient") << QByteArray("VTSTUDY1{\"study\":{\"id\":5},\"patient\":{}}");
        QTest::newRow("empty study") << QByteArray("VTSTUDY1{\"study\":{},\"patient\":{\"sex\":\"F\"}}");
        QTest::newRow("no id") << oldStudyFile(0, "set");
        QTest::newRow("negative id") << oldStudyFile(-3, "set");
        QTest::newRow("id out of range") << oldStudyFile(1000000000, "set");
    }

    void whatIsNoStudyIsPassedOver()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeFile(m_folder->studyFile("set"), bytes));
        QVERIFY(writeFile(m_folder->studyFile("sound"), oldStudyFile(6, "sound")));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>{6});
        QVERIFY(contentOf(m_folder->studyFile("set")) == bytes);
    }

    void theFirstSetOfAnIdWins()
    {
        QVERIFY(writeFile(m_folder->studyFile("b"), oldStudyFile(6, "b", "second")));
        QVERIFY(writeFile(m_folder->studyFile("a"), oldStudyFile(6, "a", "first")));
        QVERIFY(writeFile(m_folder->studyFile("c"), oldStudyFile(7, "c", "other")));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), (QList<qint32>{6, 7}));
        QCOMPARE(database.listStudies().front().lastName, QByteArray("first"));
        QCOMPARE(database.listStudies().front().baseFilename, QByteArray("a"));
    }

    void aBaseNameThatLeadsElsewhereIsReplacedByTheNameOfTheFile_data()
    {
        QTest::addColumn<QByteArray>("inner");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("moved") << QByteArray("where it was");
        QTest::newRow("above") << QByteArray("../set");
        QTest::newRow("absolute") << QByteArray("/etc/passwd");
        QTest::newRow("below") << QByteArray("data/set");
        QTest::newRow("this folder") << QByteArray(".");
        QTest::newRow("folder above") << QByteArray("..");
        QTest::newRow("drive") << QByteArray("C:set");
        QTest::newRow("other study") << QByteArray("other");
    }

    void aBaseNameThatLeadsElsewhereIsReplacedByTheNameOfTheFile()
    {
        QFETCH(QByteArray, inner);
        QVERIFY(writeFile(m_folder->beside("set.vtstudy"), oldStudyFile(8, "set")));
        QVERIFY(writeFile(m_folder->studyFile("other"), oldStudyFile(9, "other")));
        QVERIFY(writeFile(m_folder->studyFile("set"), oldStudyFile(8, inner)));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), (QList<qint32>{8, 9}));
        QCOMPARE(database.listStudies().front().baseFilename, QByteArray("set"));
    }

    void aSetMovedToAnotherNameOpens()
    {
        const StudyInfo info = [&] {
            LocalStudyDatabase database(m_folder->path());
            return addStudy(database, "Perez");
        }();
        for (const char* extension :
             {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
            QVERIFY(QFile::rename(m_folder->file(info.baseFilename, extension),
                                  m_folder->file("moved", extension)));
        QVERIFY(QFile::remove(m_folder->index()));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.listStudies().front().baseFilename, QByteArray("moved"));
        QVERIFY(database.openStudy(info.id) != nullptr);
    }

    void aCopyOfAStudyDoesNotHideIt()
    {
        QVERIFY(writeFile(m_folder->studyFile("a copy"), oldStudyFile(6, "set")));
        QVERIFY(writeFile(m_folder->studyFile("set"), oldStudyFile(6, "set")));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>{6});
        QCOMPARE(database.listStudies().front().baseFilename, QByteArray("set"));
    }

    void ofTwoSetsWithOneIdTheCompleteOneIsListed()
    {
        qint32 id = 0;
        {
            LocalStudyDatabase database(m_folder->path());
            id = addStudy(database, "Perez").id;
        }
        // Comes first by name, but has neither samples nor beats.
        QVERIFY(writeFile(m_folder->studyFile("0"), oldStudyFile(id, "0")));
        QVERIFY(QFile::remove(m_folder->index()));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>{id});
        QVERIFY(database.openStudy(id) != nullptr);
    }

    void aBaseNameThatBeginsWithAPointIsFound()
    {
        StudyInfo info = sampleInfoOf("Perez");
        info.medicalHistoryNumber = ".12";
        {
            LocalStudyDatabase database(m_folder->path());
            database.closeStudy(database.createStudy(info));
        }
        QVERIFY(QFile::remove(m_folder->index()));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>{info.id});
        QCOMPARE(database.listStudies().front().baseFilename, QByteArray(".12-Perez-Ana-20240105093012"));
        QVERIFY(database.openStudy(info.id) != nullptr);
    }

    void foldersAndOtherFilesAreNoStudies()
    {
        QVERIFY(QDir().mkpath(m_folder->studyFile("folder")));
        QVERIFY(writeFile(m_folder->path() + QStringLiteral("/set.VTSTUDY"), oldStudyFile(5, "set")));
        QVERIFY(writeFile(m_folder->path() + QStringLiteral("/set.vtstudy~"), oldStudyFile(6, "set")));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>());
    }

    void aRebuildThatFailsLeavesNoIndexAndTheNextStartTriesAgain()
    {
        writeManyStudies();
        QString text;
        {
            const FullDisk disk{16384};
            text = failureText([&] { LocalStudyDatabase database(m_folder->path()); });
        }
        QVERIFY2(!text.isEmpty(), "the rebuild did not fail");
        QCOMPARE(listing(m_folder->path() + QStringLiteral("/data")), QStringList());
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.listStudies().size(), size_t(studyCount));
    }

    void aRebuildOnDemandThatFailsIsTriedAgainByTheNextStart()
    {
        {
            LocalStudyDatabase database(m_folder->path());
            writeManyStudies();
            const FullDisk disk{16384};
            QVERIFY(!failureText([&] { database.rebuildIndex(); }).isEmpty());
        }
        QVERIFY(!QFile::exists(m_folder->index()));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.listStudies().size(), size_t(studyCount));
    }

    void anIndexThatIsThereIsBelieved()
    {
        LocalStudyDatabase(m_folder->path());
        QVERIFY(writeFile(m_folder->studyFile("set"), oldStudyFile(6, "set")));
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(listedIds(database), QList<qint32>());
    }

    void aRebuildKeepsOpenStudiesOpen()
    {
        LocalStudyDatabase database(m_folder->path());
        StudyInfo info = sampleInfoOf("Perez");
        Study* study = database.createStudy(info);
        database.rebuildIndex();
        QVERIFY(database.isStudyOpen(info.id));
        study->setValue("status", "report");
        database.saveStudy(study);
        QCOMPARE(database.listStudies().front().status, QByteArray("report"));
    }

private:
    static constexpr int studyCount = 200;

    void writeManyStudies()
    {
        for (int id = 1; id <= studyCount; ++id) {
            const QByteArray base = "study " + QByteArray::number(id);
            QVERIFY(writeFile(m_folder->studyFile(base), oldStudyFile(id, base)));
        }
    }

    std::unique_ptr<StoreFolder> m_folder;
};

QTEST_GUILESS_MAIN(StudyRebuildTest)
#include "StudyRebuildTest.moc"
