#include "analysis/signals/TChannel.h"
#include "cli/ConsoleTool.h"
#include "study/StoreFolder.h"
#include "study/TEcgFile.h"
#include "wfdb/RecordFiles.h"

#include <QtTest>

class ImportWfdbCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        m_record = writeRecord(m_folder->outside(), "r1", "250 3 15:22:05 15/5/2020",
                               {{"avr", {1000, 1000, 1000}}, {"MLII", {-2000, -2000, -2000}, "1000(0)/mV"}});
    }

    void aRecordIsListedAsAStudy()
    {
        const TResult result = run({QStringLiteral("import-wfdb"), m_record});
        QCOMPARE(result.error, QByteArray());
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output.count('\n'), 1);
        const QJsonObject row = result.lines().first();
        QCOMPARE(row.value(QLatin1String("baseFilename")).toString(), QStringLiteral("r1-20200515152205"));
        QCOMPARE(row.value(QLatin1String("studyType")).toString(), QStringLiteral("ECG"));
        QCOMPARE(row.value(QLatin1String("studyDateTime")).toString(), QStringLiteral("20200515152205"));
        QCOMPARE(row.value(QLatin1String("lastName")).toString(), QStringLiteral("r1"));
        QCOMPARE(run({QStringLiteral("list")}).output, result.output);
    }

    void theStudyHasTheSamplesOfTheRecord()
    {
        const QJsonObject row = run({QStringLiteral("import-wfdb"), m_record}).lines().first();
        LocalStudyDatabase database(m_folder->path());
        const Study* study = database.openStudy(row.value(QLatin1String("id")).toInt());
        QVERIFY(study != nullptr);
        TEcgFile& ecg = *study->ecg();
        QCOMPARE(ecg.samplingRate(), 500);
        QCOMPARE(ecg.sampleCount(), 6);
        QCOMPARE(ecg.channel(0)->name(), QByteArray("aVR"));
        QCOMPARE(ecg.channel(1)->name(), QByteArray("MLII"));
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(ecg.sample(0, i), 109);
            QCOMPARE(ecg.sample(1, i), -218);
        }
    }

    void optionsSetTextsAndType()
    {
        const TResult result =
            run({QStringLiteral("import-wfdb"), QStringLiteral("--patient"),
                 QStringLiteral("lastName=Nu\u00f1ez"), m_record + QStringLiteral(".hea"),
                 QStringLiteral("--study-type"), QStringLiteral("Stress test"), QStringLiteral("--patient"),
                 QStringLiteral("doctorName=a=b"), QStringLiteral("--patient"), QStringLiteral("weight=")});
        QCOMPARE(result.error, QByteArray());
        const QJsonObject row = result.lines().first();
        QCOMPARE(row.value(QLatin1String("lastName")).toString(), QStringLiteral("Nu\u00f1ez"));
        QCOMPARE(row.value(QLatin1String("studyType")).toString(), QStringLiteral("Stress test"));
        LocalStudyDatabase database(m_folder->path());
        Study* study = database.openStudy(row.value(QLatin1String("id")).toInt());
        QCOMPARE(study->value("doctorName"), QByteArray("a=b"));
    }

    void aWrongCommandLineMakesNothing_data()
    {
        QTest::addColumn<QString>("words");
        for (const char* words :
             {"", "RECORD RECORD", "RECORD --patient", "RECORD --patient lastName",
              "RECORD --patient bogus=1", "RECORD --patient =1", "RECORD --patient baseFilename=x",
              "RECORD --patient studyDateTime=x", "RECORD --study-type",
              "RECORD --study-type ECG --study-type ECG", "RECORD --bogus"})
            QTest::newRow(words) << QString::fromLatin1(words);
    }

    void aWrongCommandLineMakesNothing()
    {
        QFETCH(QString, words);
        words.replace(QStringLiteral("RECORD"), m_record);
        const TResult result = run(QStringList{QStringLiteral("import-wfdb")} +
                                   words.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(isErrorLine(result.error), result.error.constData());
        QVERIFY(!QFile::exists(m_folder->path()));
    }

    void aRecordThatIsNoneIsToldInOneLine_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no header") << QByteArray() << QByteArray("Cannot read WFDB header\n");
        QTest::newRow("no signal file")
            << QByteArray("r1 1 500\nr2.dat 16\n") << QByteArray("Cannot read WFDB signal file\n");
        QTest::newRow("no voltage") << QByteArray("r1 1 500\nr1.dat 16 1/mmHg\n")
                                    << QByteArray("WFDB record has no ECG\n");
    }

    void aRecordThatIsNoneIsToldInOneLine()
    {
        QFETCH(QByteArray, header);
        QVERIFY(writeFile(m_record + QStringLiteral(".hea"), header));
        const TResult result = run({QStringLiteral("import-wfdb"), m_record});
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QTEST(result.error, "text");
        QCOMPARE(run({QStringLiteral("list")}).output, QByteArray());
    }

private:
    TResult run(const QStringList& words) const
    {
        return runTool(QStringList{QStringLiteral("--data"), m_folder->path()} + words);
    }

    std::unique_ptr<StoreFolder> m_folder;
    QString m_record;
};

QTEST_GUILESS_MAIN(ImportWfdbCommandTest)
#include "ImportWfdbCommandTest.moc"
