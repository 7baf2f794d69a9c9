#include "study/WfdbImport.h"
#include "FailureText.h"
#include "FullDisk.h"
#include "StoreFolder.h"
#include "analysis/signals/TChannel.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "wfdb/RecordFiles.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TWfdbHeader.h"

#include <QtTest>

namespace {

/// With this gain an ADC unit is a count of ours.
constexpr char gainOfCounts[] = "109.22666666666666667";

std::vector<TMadeSignal> twoLeads(int count)
{
    TMadeSignal first{"ii", {}, gainOfCounts};
    TMadeSignal second{"MLII", {}, gainOfCounts};
    for (int i = 0; i < count; ++i) {
        first.samples.push_back(static_cast<qint16>(i % 30011 - 15000));
        second.samples.push_back(static_cast<qint16>(-i % 20011));
    }
    return {first, second};
}

std::vector<QByteArray> channelsOf(const TEcgFile& ecg)
{
    std::vector<QByteArray> names;
    for (int i = 0; i < ecg.channelCount(); ++i)
        names.push_back(ecg.channel(i)->name());
    return names;
}

} // namespace

class WfdbImportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_database.reset();
        m_folder = std::make_unique<StoreFolder>();
        m_database = std::make_unique<LocalStudyDatabase>(m_folder->path());
    }

    void aRecordBecomesAClosedStudy()
    {
        constexpr int count = 10000;
        const std::vector<TMadeSignal> leads = twoLeads(count);
        const StudyInfo info = importWfdb(*m_database, record("r100", "500 10000 15:22:05 15/5/2020", leads));
        QVERIFY(isStudyId(info.id));
        QVERIFY(!m_database->isStudyOpen(info.id));
        QCOMPARE(info.baseFilename, QByteArray("r100-20200515152205"));

        Study* study = m_database->openStudy(info.id);
        QVERIFY(study != nullptr);
        TEcgFile& ecg = *study->ecg();
        QCOMPARE(channelsOf(ecg), (std::vector<QByteArray>{"II", "MLII"}));
        QCOMPARE(ecg.samplingRate(), 500);
        QCOMPARE(ecg.resolutionBits(), 16);
        QCOMPARE(ecg.rangeMin(), -300.0);
        QCOMPARE(ecg.rangeMax(), 300.0);
        QCOMPARE(ecg.sampleCount(), count);
        for (int i = 0; i < count; ++i) {
            QCOMPARE(ecg.sample(0, i), int(leads[0].samples[static_cast<std::size_t>(i)]));
            QCOMPARE(ecg.sample(1, i), int(leads[1].samples[static_cast<std::size_t>(i)]));
        }
        QCOMPARE(study->beats()->count(), 0);
        QCOMPARE(study->value("studyType"), QByteArray("ECG"));
        QCOMPARE(study->value("patient/lastName"), QByteArray("r100"));
        QCOMPARE(study->studyDateTime(), QByteArray("20200515152205"));
        QCOMPARE(study->recordingDateTime(), QByteArray("20200515152205"));
    }

    void theRowIsThatOfTheIndex()
    {
        const StudyInfo info = importWfdb(*m_database, record("r", "360", twoLeads(100)));
        const std::vector<StudyInfo> listed = m_database->listStudies();
        QCOMPARE(listed.size(), std::size_t(1));
        QCOMPARE(listed[0].id, info.id);
        QCOMPARE(listed[0].baseFilename, info.baseFilename);
        QCOMPARE(listed[0].studyType, QByteArray("ECG"));
        QCOMPARE(listed[0].lastName, QByteArray("r"));
        QCOMPARE(listed[0].studyDateTime, info.studyDateTime);
        // The index made again from the files tells the same.
        m_database->rebuildIndex();
        QCOMPARE(m_database->listStudies()[0].baseFilename, info.baseFilename);
    }

    void textsOfTheCallerStand()
    {
        StudyInfo fields;
        fields.firstName = "Ana";
        fields.studyType = "Stress test";
        fields.medicalHistoryNumber = "12";
        fields.comments = "from a disk";
        fields.studyDateTime = "20010203040506";
        const StudyInfo info = importWfdb(*m_database, record("r", "500", twoLeads(10)), fields);
        QCOMPARE(info.baseFilename, QByteArray("12-Ana-20010203040506"));
        Study* study = m_database->openStudy(info.id);
        QCOMPARE(study->value("studyType"), QByteArray("Stress test"));
        QCOMPARE(study->value("comments"), QByteArray("from a disk"));
        QCOMPARE(study->value("patient/lastName"), QByteArray());
    }

    void withoutATimeTheStudyIsOfNow()
    {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        const StudyInfo info = importWfdb(*m_database, record("r", "500", twoLeads(10)));
        const QDateTime time =
            QDateTime::fromString(QString::fromLatin1(info.studyDateTime), QStringLiteral("yyyyMMddHHmmss"));
        QVERIFY(before <= time && time <= QDateTime::currentDateTime());
        QCOMPARE(info.recordingDateTime, info.studyDateTime);
    }

    void aRecordIsImportedAsOftenAsWanted()
    {
        const QString path = record("r", "500 10 23:59:59 31/12/2020", twoLeads(10));
        QCOMPARE(importWfdb(*m_database, path).baseFilename, QByteArray("r-20201231235959"));
        QCOMPARE(importWfdb(*m_database, path).baseFilename, QByteArray("r-20210101000000"));
        const StudyInfo third = importWfdb(*m_database, path + QStringLiteral(".hea"));
        QCOMPARE(third.baseFilename, QByteArray("r-20210101000001"));
        QCOMPARE(third.recordingDateTime, QByteArray("20201231235959"));
        QCOMPARE(m_database->listStudies().size(), std::size_t(3));
    }

    void aNameThatNoFileMayHaveIsMended()
    {
        const QString path = record("r", "500", twoLeads(10));
        const auto renamed = [&](const QByteArray& name) {
            const QString copy = m_folder->beside(name.constData());
            return QFile::copy(path + QStringLiteral(".hea"), copy + QStringLiteral(".hea")) ? copy : path;
        };
        QCOMPARE(importWfdb(*m_database, renamed("a:b\\c")).lastName, QByteArray("a_b_c"));
        const QByteArray longName(200, 'x');
        QCOMPARE(importWfdb(*m_database, renamed(longName)).lastName, longName.left(64));
    }

    void aRecordThatCannotBeReadLeavesNothing_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("text");
        QTest::newRow("no header") << QByteArray("r\n") << QStringLiteral("Cannot read WFDB header");
        QTest::newRow("no signals") << QByteArray("r 1 500\nother.dat 16\n")
                                    << QStringLiteral("Cannot read WFDB signal file");
        QTest::newRow("no ECG") << QByteArray("r 1 500\nr.dat 16 1/mmHg\n")
                                << QStringLiteral("WFDB record has no ECG");
        QTest::newRow("nothing at 500 Hz")
            << QByteArray("r 1 2000 1\nr.dat 16 1\n") << QStringLiteral("WFDB record has no samples");
    }

    void aRecordThatCannotBeReadLeavesNothing()
    {
        QFETCH(QByteArray, header);
        const QString path = record("r", "500", twoLeads(10));
        QVERIFY(writeFile(path + QStringLiteral(".hea"), header));
        const QStringList before = listing(m_folder->path());
        QTEST(failureText([&] { importWfdb(*m_database, path); }), "text");
        QCOMPARE(listing(m_folder->path()), before);
        QVERIFY(m_database->listStudies().empty());
    }

    void aRecordThatWouldFillTheDiskIsRefused()
    {
        // A file with a hole: it takes no room.
        const QString path = record("r", "50", {{"I", {1}}});
        QFile samples(path + QStringLiteral(".dat"));
        QVERIFY(samples.open(QIODevice::ReadWrite) && samples.resize(2LL * 50 * (14 * 24 * 60 * 60 + 1)));
        const QStringList before = listing(m_folder->path());
        QCOMPARE(failureText([&] { importWfdb(*m_database, path); }),
                 QStringLiteral("WFDB record is longer than 14 days"));
        QCOMPARE(listing(m_folder->path()), before);
    }

    void aFullDiskLeavesNothing()
    {
        const QString path = record("r", "500", twoLeads(500000));
        const QStringList before = listing(m_folder->path());
        {
            const FullDisk disk{1000000};
            QCOMPARE(failureText([&] { importWfdb(*m_database, path); }), QStringLiteral("Write error"));
        }
        QCOMPARE(listing(m_folder->path()), before);
        QVERIFY(m_database->listStudies().empty());
        QCOMPARE(importWfdb(*m_database, path).lastName, QByteArray("r"));
    }

    void aNameThatLeavesTheFolderIsRefused()
    {
        StudyInfo fields;
        fields.lastName = "../Perez";
        const QString path = record("r", "500", twoLeads(10));
        const QStringList before = listing(m_folder->outside());
        QCOMPARE(failureText([&] { importWfdb(*m_database, path, fields); }),
                 QStringLiteral("Cannot create file"));
        QCOMPARE(listing(m_folder->outside()), before);
    }

    void everyRealRecordIsImported()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        std::size_t records = 0;
        QDirIterator headers(recordingsFolder(), {QStringLiteral("*.hea")}, QDir::Files,
                             QDirIterator::Subdirectories);
        while (headers.hasNext()) {
            const TWfdbHeader header = TWfdbHeader::read(headers.next());
            const StudyInfo info = importWfdb(*m_database, headers.filePath());
            Study* study = m_database->openStudy(info.id);
            QVERIFY2(study != nullptr, qPrintable(headers.filePath()));
            QCOMPARE(study->ecg()->channelCount(), static_cast<int>(header.channels.size()));
            const double samples = static_cast<double>(header.sampleCount) * 500.0 / header.frequency;
            QCOMPARE(study->ecg()->sampleCount(), static_cast<int>(std::llround(samples)));
            m_database->closeStudy(study);
            ++records;
        }
        QVERIFY(records > 100);
        QCOMPARE(m_database->listStudies().size(), records);
    }

    void aRealRecordOfTwoFilesIsImportedWhole()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        const QString path = recordingsFolder() + QStringLiteral("/ptb/s0010_re");
        Study* study = m_database->openStudy(importWfdb(*m_database, path).id);
        TEcgFile& ecg = *study->ecg();
        QCOMPARE(channelsOf(ecg), (std::vector<QByteArray>{"I", "II", "III", "aVR", "aVL", "aVF", "V1", "V2",
                                                           "V3", "V4", "V5", "V6", "vx", "vy", "vz"}));
        QCOMPARE(ecg.sampleCount(), 19200);
        // The first values that the header tells, a sample of 1000 Hz in 2000 units of a millivolt each.
        const TWfdbHeader header = TWfdbHeader::read(path + QStringLiteral(".hea"));
        for (int i = 0; i < 15; ++i) {
            const double first = *header.channels[static_cast<std::size_t>(i)].initialValue / 2000.0;
            QVERIFY(std::abs(ecg.sample(i, 0) * ecg.countValue() - first) < 0.02);
        }
    }

private:
    QString record(const QByteArray& name, const QByteArray& frequencyAndMore,
                   const std::vector<TMadeSignal>& signalList) const
    {
        return writeRecord(m_folder->outside(), name, frequencyAndMore, signalList);
    }

    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
};

QTEST_GUILESS_MAIN(WfdbImportTest)
#include "WfdbImportTest.moc"
