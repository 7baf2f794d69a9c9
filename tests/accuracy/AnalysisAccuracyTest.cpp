#include "accuracy/Analysis.h"
#include "accuracy/References.h"
#include "study/TEcgFile.h"
#include "wfdb/RecordingsFolder.h"

#include <QtTest>

using namespace accuracy;

namespace {

TBeatReference beatsOf(const TRecordPlace& record)
{
    if (record.hasAnnotations(QStringLiteral("atr")))
        return readBeats(record.annotations(QStringLiteral("atr")), record.frequency());
    std::vector<std::vector<TMarkedBeat>> leads;
    for (const QString& ending : leadEndings())
        leads.push_back(readMarks(record.annotations(ending), record.frequency()));
    return mergeLeads(leads);
}

} // namespace

/// The least that the analysis has to reach on recordings of people; docs/accuracy.md tells what it does
/// reach.
class AnalysisAccuracyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
    }

    void beatsAreFoundAsWellAsThis_data()
    {
        QTest::addColumn<QString>("set");
        QTest::addColumn<int>("block");
        QTest::addColumn<double>("sensitivity");
        QTest::addColumn<double>("predictivity");
        const QString arrhythmia = QStringLiteral("mitdb");
        const QString twelveLeads = QStringLiteral("ludb");
        QTest::newRow("two leads, stored") << arrhythmia << 4096 << 0.995 << 0.979;
        QTest::newRow("two leads, as live") << arrhythmia << 51 << 0.995 << 0.979;
        QTest::newRow("twelve leads, stored") << twelveLeads << 4096 << 0.999 << 0.996;
        QTest::newRow("twelve leads, as live") << twelveLeads << 51 << 0.999 << 0.996;
    }

    void beatsAreFoundAsWellAsThis()
    {
        QFETCH(QString, set);
        QFETCH(int, block);
        QFETCH(double, sensitivity);
        QFETCH(double, predictivity);
        TScratchStore store;
        TBeatCounts total;
        for (const TRecordPlace& record : findRecords(recordingsFolder(), {set}))
            total += scoreBeats(beatsOf(record), analyseRecord(store.import(record), block).beats);
        QVERIFY(total.beats() > 0);
        QVERIFY2(total.sensitivity() >= sensitivity, qPrintable(QString::number(total.sensitivity())));
        QVERIFY2(total.positivePredictivity() >= predictivity,
                 qPrintable(QString::number(total.positivePredictivity())));
    }

    void theAverageOfMarkedBeatsHasItsWaves()
    {
        const auto records = findRecords(recordingsFolder(), {QStringLiteral("qtdb/sel100")});
        TScratchStore store;
        TEcgFile& ecg = store.import(records.front());
        const std::optional<double> end = endOfMarkedWaves(records.front());
        QVERIFY(end);
        const TAverageFindings average = analyseAverage(ecg, *end);
        QVERIFY(average.beats.size() > 10);
        QVERIFY(average.beats.back() <= *end && average.beats.front() >= *end - 21.0);
        QCOMPARE(average.leads.size(), std::size_t(2));
        for (const TMarkedBeat& lead : average.leads)
            QVERIFY(lead.marks[QrsOnset] && lead.marks[QrsOffset] && lead.marks[TPeak]);
        TReport report;
        scoreAverage(records.front(), average, report);
        QVERIFY(report.toMarkdown().contains("qtdb, average beat/sel100"));
    }
};

QTEST_GUILESS_MAIN(AnalysisAccuracyTest)
#include "AnalysisAccuracyTest.moc"
