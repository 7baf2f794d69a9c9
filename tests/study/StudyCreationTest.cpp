#include "FailureText.h"
#include "FullDisk.h"
#include "StoreFolder.h"
#include "analysis/signals/TChannel.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QtTest>

class StudyCreationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_database.reset();
        m_folder = std::make_unique<StoreFolder>();
        m_database = std::make_unique<LocalStudyDatabase>(m_folder->path());
    }

    void aNewStudyIsOpenEmptyAndOnDisk()
    {
        StudyInfo info = makeSampleInfo();
        Study* study = m_database->createStudy(info);
        QCOMPARE(info.baseFilename, QByteArray("12-Perez-Ana-20240105093012"));
        QCOMPARE(study->id(), info.id);
        QCOMPARE(QFileInfo(m_folder->ecgFile(info.baseFilename)).size(), qint64(4096));
        QCOMPARE(QFileInfo(m_folder->beatsFile(info.baseFilename)).size(), qint64(256));
        QVERIFY(contentOf(m_folder->studyFile(info.baseFilename)).startsWith("VTSTUDY2"));
        QCOMPARE(study->ecg()->sampleCount(), 0);
        QCOMPARE(study->beats()->count(), 0);
        QCOMPARE(study->protocol(), nullptr);
        QCOMPARE(study->events().count(), 0);
        StudyInfo listed;
        QVERIFY(m_database->findStudy(info.id, listed));
        QCOMPARE(listed.baseFilename, info.baseFilename);
    }

    void theSamplesFileHasTheAcquisitionOfTheRecord()
    {
        StudyInfo info = makeSampleInfo();
        info.channelCount = 3;
        info.channelNames = "I,II,V5";
        info.gain = 5.5;
        info.resolution = 12;
        info.samplingRate = 250;
        m_database->closeStudy(m_database->createStudy(info));
        Study* study = m_database->openStudy(info.id);
        QVERIFY(study != nullptr);
        const TEcgFile& ecg = *study->ecg();
        QCOMPARE(ecg.channelCount(), 3);
        QCOMPARE(ecg.samplingRate(), 250);
        QCOMPARE(ecg.resolutionBits(), 12);
        QCOMPARE(ecg.rangeMin(), -5.5);
        QCOMPARE(ecg.rangeMax(), 5.5);
        QCOMPARE(ecg.channel(0)->name(), QByteArray("I"));
        QCOMPARE(ecg.channel(2)->name(), QByteArray("V5"));
    }

    void riskFactorsAreCopied()
    {
        StudyInfo info = makeSampleInfo();
        Study* study = m_database->createStudy(info);
        QByteArray comment;
        QVERIFY(study->riskFactor("Diabetes", &comment));
        QCOMPARE(comment, QByteArray("desde 2010"));
        QVERIFY(!study->riskFactor("Tabaquismo actual"));
    }

    void aPatientWithoutANameIsNamedByTheTime()
    {
        StudyInfo info = makeSampleInfo();
        info.medicalHistoryNumber = info.lastName = info.firstName = QByteArray();
        m_database->createStudy(info);
        QCOMPARE(info.baseFilename, QByteArray("20240105093012"));
    }

    void anExistingFileIsNeverOverwritten_data()
    {
        QTest::addColumn<QByteArray>("extension");
        for (const char* extension :
             {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
            QTest::newRow(extension) << QByteArray(extension);
    }

    void anExistingFileIsNeverOverwritten()
    {
        QFETCH(QByteArray, extension);
        StudyInfo info = makeSampleInfo();
        const QString path = m_folder->file(makeBaseFilename(info), extension.constData());
        QVERIFY(writeFile(path, "older"));
        const QStringList before = listing(m_folder->outside());
        QCOMPARE(failureText([&] { m_database->createStudy(info); }), QStringLiteral("Cannot create file"));
        QCOMPARE(contentOf(path), QByteArray("older"));
        QCOMPARE(listing(m_folder->outside()), before);
        QVERIFY(m_database->listStudies().empty());
    }

    void aFailedCreationRemovesOnlyItsOwn()
    {
        // A link to nowhere is seen by no look beforehand, like a file that someone makes at the same time.
        StudyInfo info = makeSampleInfo();
        const QByteArray base = makeBaseFilename(info);
        const QString target = m_folder->beside("nowhere");
        QVERIFY(QFile::link(target, m_folder->beatsFile(base)));
        QCOMPARE(failureText([&] { m_database->createStudy(info); }), QStringLiteral("Cannot create file"));
        QCOMPARE(QFile::symLinkTarget(m_folder->beatsFile(base)), target);
        QVERIFY(!QFile::exists(target));
        QVERIFY(!QFile::exists(m_folder->ecgFile(base)));
    }

    void aSecondStudyOfTheSameSecondIsRefusedAndTheFirstStays()
    {
        const StudyInfo first = addStudy(*m_database, "Perez");
        const QByteArray before = m_folder->setContent(first.baseFilename);
        StudyInfo second = sampleInfoOf("Perez");
        QCOMPARE(failureText([&] { m_database->createStudy(second); }), QStringLiteral("Cannot create file"));
        QVERIFY(m_folder->setContent(first.baseFilename) == before);
        QCOMPARE(listedIds(*m_database), QList<qint32>{first.id});
        QVERIFY(!m_database->isStudyOpen(second.id));
    }

    void aNameThatWouldLeaveTheFolderIsRefused_data()
    {
        QTest::addColumn<QByteArray>("lastName");
        QTest::newRow("slash") << QByteArray("a/b");
        QTest::newRow("above") << QByteArray("/../../x");
        QTest::newRow("backslash") << QByteArray("a\\b");
        QTest::newRow("colon") << QByteArray("a:b");
        QTest::newRow("zero byte") << QByteArray("a\0b", 3);
        QTest::newRow("new line") << QByteArray("a\nb");
        QTest::newRow("delete") << QByteArray("a\x7F"
                                              "b");
        QTest::newRow("longer than file systems allow") << QByteArray(300, 'x');
        QTest::newRow("just too long") << QByteArray(256 - 8 - 22, 'x');
        QTest::newRow("long in bytes, short in letters") << QByteArray("\303\261").repeated(130);
    }

    void aNameThatWouldLeaveTheFolderIsRefused()
    {
        QFETCH(QByteArray, lastName);
        StudyInfo info = sampleInfoOf(lastName);
        const QStringList before = listing(m_folder->outside());
        const QString text = failureText([&] { m_database->createStudy(info); });
        QCOMPARE(text, QStringLiteral("Cannot create file"));
        QCOMPARE(listing(m_folder->outside()), before);
        QVERIFY(m_database->listStudies().empty());
    }

    void aNameAlmostTooLongIsRefusedAsAWholeOrMadeWhole()
    {
        const QStringList refusals{QStringLiteral("Cannot create file"),
                                   QStringLiteral("Cannot create study file"), QStringLiteral("Write error")};
        for (int length = 195; length < 240; ++length) {
            StudyInfo info = sampleInfoOf(QByteArray(length, 'x'));
            const QStringList before = listing(m_folder->outside());
            Study* study = nullptr;
            const QString text = failureText([&] { study = m_database->createStudy(info); });
            if (study == nullptr) {
                QVERIFY2(refusals.contains(text), qPrintable(text));
                QCOMPARE(listing(m_folder->outside()), before);
                continue;
            }
            m_database->saveStudy(study);
            m_database->closeStudy(study);
            QVERIFY(m_database->openStudy(info.id) != nullptr);
        }
        QVERIFY(!m_database->listStudies().empty());
    }

    void pointsBlanksAndPercentSignsAreNames()
    {
        for (const char* name : {"..", ".hidden", "%1", "a b", "$(touch x)", "*", "Nu\303\261ez"}) {
            StudyInfo info = sampleInfoOf(name);
            m_database->closeStudy(m_database->createStudy(info));
            QVERIFY(m_folder->hasAnyFile(info.baseFilename));
            QVERIFY2(m_database->openStudy(info.id) != nullptr, name);
        }
        QVERIFY(!QFile::exists(m_folder->beside("..-Ana-20240105093012.vtstudy")));
    }

    void anAcquisitionThatCouldNotBeReadBackIsRefused_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("resolution");
        QTest::addColumn<double>("gain");
        QTest::newRow("no rate") << 0 << 14 << 16 << 300.0;
        QTest::newRow("negative rate") << -500 << 14 << 16 << 300.0;
        QTest::newRow("no channels") << 500 << 0 << 16 << 300.0;
        QTest::newRow("too many channels") << 500 << 17 << 16 << 300.0;
        QTest::newRow("no resolution") << 500 << 14 << 0 << 300.0;
        QTest::newRow("too fine") << 500 << 14 << 33 << 300.0;
        QTest::newRow("endless gain") << 500 << 14 << 16 << qInf();
    }

    void anAcquisitionThatCouldNotBeReadBackIsRefused()
    {
        QFETCH(int, rate);
        QFETCH(int, channels);
        QFETCH(int, resolution);
        QFETCH(double, gain);
        StudyInfo info = makeSampleInfo();
        info.samplingRate = rate;
        info.channelCount = channels;
        info.resolution = resolution;
        info.gain = gain;
        const QStringList before = listing(m_folder->outside());
        QCOMPARE(failureText([&] { m_database->createStudy(info); }), QStringLiteral("Cannot create file"));
        QCOMPARE(listing(m_folder->outside()), before);
    }

    void longTextsNeverMakeAStudyUnreadable()
    {
        StudyInfo info = makeSampleInfo();
        info.comments = QByteArray("\303\261").repeated(50000);
        info.conclusion = QByteArray(20000, '"');
        m_database->closeStudy(m_database->createStudy(info));
        Study* study = m_database->openStudy(info.id);
        QVERIFY(study != nullptr);
        QCOMPARE(study->value("comments"), info.comments);
        QCOMPARE(study->value("conclusion"), info.conclusion);
    }

    void aFullDiskLeavesNothingOfTheStudy_data()
    {
        QTest::addColumn<int>("space");
        QTest::newRow("no space") << 0;
        QTest::newRow("less than the head of the samples") << 4000;
    }

    void aFullDiskLeavesNothingOfTheStudy()
    {
        QFETCH(int, space);
        StudyInfo info = makeSampleInfo();
        const QStringList before = listing(m_folder->outside());
        QString text;
        {
            const FullDisk disk{rlim_t(space)};
            text = failureText([&] { m_database->createStudy(info); });
        }
        QCOMPARE(text, QStringLiteral("Cannot create file"));
        QCOMPARE(listing(m_folder->outside()), before);
        QVERIFY(m_database->createStudy(info) != nullptr);
    }

    void aRowThatCannotBeWrittenLeavesNothingOfTheStudy()
    {
        QCOMPARE(
            m_folder->sql("create trigger no before insert on Study begin select raise(fail, 'no room'); "
                          "end"),
            QVariant());
        StudyInfo info = makeSampleInfo();
        const QString text = failureText([&] { m_database->createStudy(info); });
        QVERIFY2(text.contains(QStringLiteral("no room")), qPrintable(text));
        QVERIFY(!m_folder->hasAnyFile(info.baseFilename));
        QVERIFY(!m_database->isStudyOpen(info.id));
        QCOMPARE(m_folder->sql("drop trigger no"), QVariant());
        QVERIFY(m_database->createStudy(info) != nullptr);
    }

private:
    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
};

QTEST_GUILESS_MAIN(StudyCreationTest)
#include "StudyCreationTest.moc"
