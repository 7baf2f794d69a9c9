#include "FailureText.h"
#include "StoreFolder.h"
#include "study/RiskFactors.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "study/TProtocolTable.h"

#include <QtTest>

#include <filesystem>

#include <set>

using TAction = void (*)(StudyDatabase&);
Q_DECLARE_METATYPE(TAction)

namespace {

TStressProtocol shortProtocol()
{
    TStressProtocol protocol("Short", TProtocolType::Treadmill);
    protocol.addStage(TStagePhase::Exercise, 60.0, 3.0, 5.0);
    return protocol;
}

} // namespace

class LocalStudyDatabaseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<StoreFolder>(); }
    void cleanup() { QVERIFY(!QSqlDatabase::contains()); }

    void theFirstStartMakesFolderIndexAndProtocolTable()
    {
        const LocalStudyDatabase database(m_folder->path());
        const QString data = m_folder->path() + QStringLiteral("/data");
        QCOMPARE(listing(m_folder->outside()),
                 QStringList({m_folder->path(), data, m_folder->protocols(), m_folder->index()}));
        QCOMPARE(contentOf(m_folder->protocols()), TProtocolTable::builtIn().toJson());
        QCOMPARE(database.protocolNames(), TProtocolTable::builtIn().names());
        QCOMPARE(database.folder(), m_folder->path());
    }

    void aLaterStartChangesNothing()
    {
        LocalStudyDatabase(m_folder->path());
        const QByteArray index = contentOf(m_folder->index());
        QVERIFY(writeFile(m_folder->path() + QStringLiteral("/data/other"), "stays"));
        const QStringList before = listing(m_folder->outside());
        LocalStudyDatabase(m_folder->path());
        QCOMPARE(listing(m_folder->outside()), before);
        QCOMPARE(contentOf(m_folder->index()), index);
    }

    void riskFactorsAreThoseOfTheDialogInItsOrder()
    {
        const LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.riskFactorNames(), standardRiskFactors());
        QVERIFY(!database.riskFactorNames().empty());
    }

    void theConnectionIsGoneAfterTheDatabase()
    {
        {
            const LocalStudyDatabase database(m_folder->path());
            QVERIFY(QSqlDatabase::contains());
        }
        QVERIFY(!QSqlDatabase::contains());
    }

    void aStoreWithoutAFolderCreatesNothing()
    {
        const QStringList here = listing(QDir::currentPath());
        LocalStudyDatabase database{QString()};
        StudyInfo info = makeSampleInfo();
        QCOMPARE(failureText([&] { database.createStudy(info); }), QStringLiteral("Undefined database path"));
        QVERIFY(database.listStudies().empty());
        QCOMPARE(database.openStudy(1), nullptr);
        QCOMPARE(listing(QDir::currentPath()), here);
    }

    void aFolderThatCannotBeMadeIsToldInTheWordsOfSqlite()
    {
        QVERIFY(writeFile(m_folder->path(), "a file in the place of the folder"));
        const QString text = failureText([&] { LocalStudyDatabase database(m_folder->path()); });
        QVERIFY2(text.contains(QStringLiteral("unable to open database file")), qPrintable(text));
        QCOMPARE(contentOf(m_folder->path()), QByteArray("a file in the place of the folder"));
    }

    void whatTheStoreDoesNotOfferIsUnimplemented_data()
    {
        QTest::addColumn<TAction>("action");
        const auto slot = [](const char* name, TAction action) { QTest::newRow(name) << action; };
        slot("listPatients", [](StudyDatabase& d) { d.listPatients(); });
        slot("createPatient", [](StudyDatabase& d) { d.createPatient(scratchInfo()); });
        slot("openPatient", [](StudyDatabase& d) { d.openPatient(1, scratchInfo()); });
        slot("savePatient", [](StudyDatabase& d) { d.savePatient(scratchInfo()); });
        slot("deletePatient", [](StudyDatabase& d) { d.deletePatient(1); });
        slot("reportTemplateNames", [](StudyDatabase& d) { d.reportTemplateNames(); });
        slot("reportTemplate", [](StudyDatabase& d) { d.reportTemplate("x"); });
        slot("setReportTemplate", [](StudyDatabase& d) { d.setReportTemplate("x", "y"); });
        slot("deleteReportTemplate", [](StudyDatabase& d) { d.deleteReportTemplate("x"); });
        slot("defaultReportTemplateName", [](StudyDatabase& d) { d.defaultReportTemplateName(); });
        slot("exportReport", [](StudyDatabase& d) { d.exportReport(1, QString()); });
        slot("deleteArchive", [](StudyDatabase& d) { d.deleteArchive(QString()); });
    }

    void whatTheStoreDoesNotOfferIsUnimplemented()
    {
        QFETCH(TAction, action);
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(failureText([&] { action(database); }), QStringLiteral("unimplemented"));
    }

    void protocolsAreStoredAtOnce()
    {
        {
            LocalStudyDatabase database(m_folder->path());
            database.setProtocol("Short", shortProtocol());
            database.deleteProtocol("Bruce");
            database.deleteProtocol("unknown");
            QCOMPARE(contentOf(m_folder->protocols()), database.protocolTableJson());
        }
        const LocalStudyDatabase database(m_folder->path());
        TStressProtocol protocol;
        QVERIFY(database.protocol("Short", protocol));
        QCOMPARE(protocol, shortProtocol());
        QVERIFY(!database.protocol("Bruce", protocol));
        QCOMPARE(protocol, shortProtocol());
        std::vector<QByteArray> names = database.protocolNames();
        QVERIFY(std::is_sorted(names.begin(), names.end()));
    }

    void aTableWithoutProtocolsIsReplacedByTheBuiltInOne()
    {
        LocalStudyDatabase(m_folder->path());
        QVERIFY(writeFile(m_folder->protocols(), "[]"));
        const LocalStudyDatabase database(m_folder->path());
        QCOMPARE(contentOf(m_folder->protocols()), TProtocolTable::builtIn().toJson());
        QCOMPARE(database.protocolNames().size(), size_t(7));
    }

    void aProtocolTableThatCannotBeReadIsTold()
    {
        LocalStudyDatabase(m_folder->path());
        QVERIFY(writeFile(m_folder->protocols(), QByteArray()));
        QCOMPARE(failureText([&] { LocalStudyDatabase database(m_folder->path()); }),
                 QStringLiteral("Cannot read protocol table"));
    }

    void aStudyIsListedFoundAndComesBackWhole()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        QCOMPARE(info.baseFilename, QByteArray("12-Perez-Ana-20240105093012"));
        QVERIFY(isStudyId(info.id));
        QCOMPARE(database.listStudies().size(), size_t(1));
        StudyInfo listed;
        QVERIFY(database.findStudy(info.id, listed));
        QCOMPARE(listed, listedFields(info));
        QCOMPARE(database.listStudies().front(), listed);

        Study* study = database.openStudy(info.id);
        QVERIFY(study != nullptr && database.isStudyOpen(info.id));
        StudyInfo read = makeSampleInfo();
        database.infoFromStudy(read, *study);
        QCOMPARE(read, info);
        QCOMPARE(study->ecg()->sampleCount(), 250);
        QCOMPARE(study->ecg()->channelCount(), 14);
        QCOMPARE(study->events().count(), 5);
        QVERIFY(study->protocol() != nullptr && study->protocol()->name() == "Bruce");
    }

    void anUnknownIdIsNotFound()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        StudyInfo found = sampleInfoOf("untouched");
        QVERIFY(!database.findStudy(info.id == 1 ? 2 : 1, found));
        QCOMPARE(found, sampleInfoOf("untouched"));
        QCOMPARE(database.openStudy(info.id == 1 ? 2 : 1), nullptr);
    }

    void studiesAreListedInTheOrderOfTheirIds()
    {
        LocalStudyDatabase database(m_folder->path());
        for (const char* name : {"A", "B", "C", "D", "E"})
            addStudy(database, name);
        const QList<qint32> ids = listedIds(database);
        QCOMPARE(ids.size(), 5);
        QVERIFY(std::is_sorted(ids.begin(), ids.end()));
    }

    void everyStudyGetsAnIdOfItsOwn()
    {
        LocalStudyDatabase database(m_folder->path());
        std::set<qint32> ids;
        for (int i = 0; i < 60; ++i) {
            StudyInfo info = sampleInfoOf(QByteArray::number(i));
            info.id = 5;
            database.closeStudy(database.createStudy(info));
            QVERIFY(isStudyId(info.id));
            ids.insert(info.id);
        }
        QCOMPARE(ids.size(), size_t(60));
        // Drawn, not counted: two of them are far apart.
        QVERIFY(*ids.rbegin() - *ids.begin() > 1000000);
    }

    void aStudyIsOpenOnceAtATime()
    {
        LocalStudyDatabase database(m_folder->path());
        StudyInfo info = makeSampleInfo();
        Study* study = database.createStudy(info);
        QVERIFY(database.isStudyOpen(info.id));
        QCOMPARE(database.openStudy(info.id), nullptr);
        database.closeStudy(study);
        QVERIFY(!database.isStudyOpen(info.id));
        study = database.openStudy(info.id);
        QVERIFY(study != nullptr);
        QCOMPARE(database.openStudy(info.id), nullptr);
        QVERIFY(database.isStudyOpen(info.id));
    }

    void closingLosesWhatWasNotSaved()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        Study* study = database.openStudy(info.id);
        study->setValue("status", "report");
        database.closeStudy(study);
        study = database.openStudy(info.id);
        QCOMPARE(study->value("status"), QByteArray());
    }

    void savingWritesTheFileAndTheRow()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        Study* study = database.openStudy(info.id);
        study->setValue("status", "report");
        study->setValue("patient/lastName", "Perez Ruiz");
        database.saveStudy(study);
        StudyInfo listed;
        QVERIFY(database.findStudy(info.id, listed));
        QCOMPARE(listed.status, QByteArray("report"));
        QCOMPARE(listed.lastName, QByteArray("Perez Ruiz"));
        database.closeStudy(study);
        study = database.openStudy(info.id);
        QCOMPARE(study->value("patient/lastName"), QByteArray("Perez Ruiz"));
    }

    void whatAWindowWritesNeverMovesTheFilesOrTheRow()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        const StudyInfo other = addStudy(database, "Lopez");
        const QByteArray otherContent = m_folder->setContent(other.baseFilename);
        const QStringList before = listing(m_folder->outside());
        Study* study = database.openStudy(info.id);
        study->setValue("baseFilename", other.baseFilename);
        study->setId(other.id);
        study->setValue("status", "report");
        database.saveStudy(study);
        database.closeStudy(study);

        QCOMPARE(listing(m_folder->outside()), before);
        QVERIFY(m_folder->setContent(other.baseFilename) == otherContent);
        StudyInfo listed;
        QVERIFY(database.findStudy(info.id, listed));
        QCOMPARE(listed.baseFilename, info.baseFilename);
        QCOMPARE(listed.status, QByteArray("report"));
        QVERIFY(database.findStudy(other.id, listed));
        QCOMPARE(listed.status, QByteArray());
    }

    void aStudyThatIsNotOpenIsNotSaved()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        const QByteArray before = m_folder->setContent(info.baseFilename);
        const std::unique_ptr<Study> study = database.loadStudy(m_folder->studyFile(info.baseFilename));
        QVERIFY(study != nullptr);
        QVERIFY(!database.isStudyOpen(info.id));
        study->setValue("status", "report");
        database.saveStudy(study.get());
        database.closeStudy(study.get());
        database.saveStudy(nullptr);
        database.closeStudy(nullptr);
        QVERIFY(m_folder->setContent(info.baseFilename) == before);
        StudyInfo listed;
        QVERIFY(database.findStudy(info.id, listed));
        QCOMPARE(listed.status, QByteArray());
    }

    void anOpenStudyIsNotDeleted()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        const QByteArray before = m_folder->setContent(info.baseFilename);
        Study* study = database.openStudy(info.id);
        database.deleteStudy(info.id);
        QVERIFY(m_folder->setContent(info.baseFilename) == before);
        QCOMPARE(listedIds(database), QList<qint32>{info.id});
        QVERIFY(database.isStudyOpen(info.id));
        database.closeStudy(study);
        QVERIFY(database.openStudy(info.id) != nullptr);
    }

    void aDeletedStudyIsGoneAndItsReportsStay()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo other = addStudy(database, "Lopez");
        const QStringList before = listing(m_folder->outside());
        const StudyInfo info = addStudy(database, "Perez");
        const QString report = m_folder->path() + QStringLiteral("/reports/Perez.pdf");
        QVERIFY(QDir().mkpath(m_folder->path() + QStringLiteral("/reports")) && writeFile(report, "report"));
        database.deleteStudy(info.id);
        QVERIFY(!m_folder->hasAnyFile(info.baseFilename));
        QCOMPARE(listedIds(database), QList<qint32>{other.id});
        QCOMPARE(contentOf(report), QByteArray("report"));
        QCOMPARE(database.openStudy(info.id), nullptr);
        database.deleteStudy(info.id);
        QVERIFY(QFile::remove(report) && QDir().rmdir(m_folder->path() + QStringLiteral("/reports")));
        QCOMPARE(listing(m_folder->outside()), before);
    }

    void aRowWhoseFilesAreGoneStaysUntilItIsDeleted()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        QVERIFY(QFile::remove(m_folder->ecgFile(info.baseFilename)));
        QCOMPARE(database.openStudy(info.id), nullptr);
        QVERIFY(QFile::remove(m_folder->studyFile(info.baseFilename)));
        QCOMPARE(database.openStudy(info.id), nullptr);
        QCOMPARE(listedIds(database), QList<qint32>{info.id});
        database.deleteStudy(info.id);
        QVERIFY(!m_folder->hasAnyFile(info.baseFilename));
        QCOMPARE(listedIds(database), QList<qint32>());
    }

    void aFileOfAnotherIdThanItsRowIsNotOpened()
    {
        LocalStudyDatabase database(m_folder->path());
        const StudyInfo info = addStudy(database, "Perez");
        const StudyInfo other = addStudy(database, "Lopez");
        QVERIFY(writeFile(m_folder->studyFile(info.baseFilename),
                          contentOf(m_folder->studyFile(other.baseFilename))));
        QCOMPARE(database.openStudy(info.id), nullptr);
        QVERIFY(!database.isStudyOpen(info.id));
    }

    void deletingARowNeverTakesTheFilesOfAnotherStudy()
    {
        const StudyInfo info = [&] {
            LocalStudyDatabase database(m_folder->path());
            return addStudy(database, "Perez");
        }();
        const QByteArray before = m_folder->setContent(info.baseFilename);
        const qint32 stray = info.id == 1 ? 2 : 1;
        QCOMPARE(m_folder->sql(
                     QByteArray("insert into Study select " + QByteArray::number(stray) + ", data from Study")
                         .constData()),
                 QVariant());
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.openStudy(stray), nullptr);
        database.deleteStudy(stray);
        QCOMPARE(listedIds(database), QList<qint32>{info.id});
        QVERIFY(m_folder->setContent(info.baseFilename) == before);
    }

    void aFileAddedByHandIsListedOnceTheIndexIsMadeAgain()
    {
        LocalStudyDatabase database(m_folder->path());
        QVERIFY(writeFile(m_folder->studyFile("by hand"), oldStudyFile(44, "by hand")));
        QCOMPARE(listedIds(database), QList<qint32>());
        database.rebuildIndex();
        QCOMPARE(listedIds(database), QList<qint32>{44});
    }

    void spaceIsAskedOfTheVolumeOfTheFolder()
    {
        const LocalStudyDatabase database(m_folder->path());
        const auto told = std::filesystem::space(m_folder->path().toStdString());
        QCOMPARE(database.hasFreeSpace(), told.available >= 52428800);
    }

    void aVolumeThatDoesNotAnswerHasSpace()
    {
        const LocalStudyDatabase database(m_folder->path());
        QVERIFY(QDir(m_folder->path()).removeRecursively());
        QVERIFY(database.hasFreeSpace());
    }

    void aFullVolumeHasNoSpace()
    {
        // /proc and /sys have no blocks at all; a store that merely asks about one makes nothing there.
        const QString folder = QStringLiteral("/proc/self/fd");
        if (!QFile::exists(folder) || std::filesystem::space(folder.toStdString()).available > 0)
            QSKIP("there is no file system without space here");
        const QString link = m_folder->path();
        LocalStudyDatabase database(link);
        QVERIFY(QDir(link).removeRecursively());
        QVERIFY(QFile::link(folder, link));
        QVERIFY(!database.hasFreeSpace());
        QVERIFY(QFile::remove(link));
    }

private:
    static StudyInfo& scratchInfo()
    {
        static StudyInfo info;
        return info;
    }

    static StudyInfo listedFields(const StudyInfo& info)
    {
        StudyInfo listed;
        listed.id = info.id;
        listed.baseFilename = info.baseFilename;
        listed.status = info.status;
        listed.studyType = info.studyType;
        listed.studyDateTime = info.studyDateTime;
        listed.firstName = info.firstName;
        listed.lastName = info.lastName;
        return listed;
    }

    std::unique_ptr<StoreFolder> m_folder;
};

QTEST_GUILESS_MAIN(LocalStudyDatabaseTest)
#include "LocalStudyDatabaseTest.moc"
