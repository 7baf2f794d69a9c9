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

/// How far the gross mean and deviation of a mark may go, in ms, and the share that has to be found, in %.
struct TBound
{
    double mean;
    double deviation;
    double found;
};
/// For each mark; those of a deviation of 0 are not measured.
using TBounds = std::array<TBound, markCount>;

/// The scores of both sets that have marked waves, single beats and averages.
QByteArray waveReport()
{
    TScratchStore store;
    TReport report;
    for (const TRecordPlace& record :
         findRecords(recordingsFolder(), {QStringLiteral("ludb"), QStringLiteral("qtdb")})) {
        TEcgFile& ecg = store.import(record);
        scoreRecord(record, analyseRecord(ecg, 4096), report);
        if (const std::optional<double> end = endOfMarkedWaves(record))
            scoreAverage(record, analyseAverage(ecg, *end), report);
    }
    return report.toMarkdown();
}

/// The cells of a mark in the gross table of a set.
QList<QByteArray> cellsOf(const QByteArray& report, const QByteArray& set, int mark)
{
    const int table = report.indexOf("| " + set + " | reference |");
    const int row = table < 0 ? -1 : report.indexOf(QByteArray("\n| ") + markName(mark) + " |", table);
    return row < 0 ? QList<QByteArray>()
                   : report.mid(row + 1, report.indexOf('\n', row + 1) - row).split('|');
}

} // namespace

Q_DECLARE_METATYPE(TBounds)

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

    void wavesAreMeasuredAsWellAsThis_data()
    {
        QTest::addColumn<QByteArray>("set");
        QTest::addColumn<TBounds>("bounds");
        const auto add = [](const char* set, const TBounds& bounds) {
            QTest::newRow(set) << QByteArray(set) << bounds;
        };
        // P onset, peak and offset, QRS onset and offset, T onset, peak and offset.
        add("ludb", {{{15, 31, 77},
                      {10, 36, 77},
                      {7, 42, 77},
                      {3, 18, 99.5},
                      {10, 25, 99.5},
                      {36, 39, 78},
                      {7, 25, 78},
                      {25, 27, 78}}});
        add("ludb, average beat", {{{5, 26, 90},
                                    {8, 31, 90},
                                    {15, 35, 90},
                                    {3, 19, 98},
                                    {16, 26, 98},
                                    {9, 39, 89},
                                    {8, 18, 89},
                                    {6, 21, 89}}});
        add("ludb, review markers",
            {{{2, 25, 94}, {}, {5, 26, 94}, {2, 20, 98}, {3, 28, 98}, {}, {}, {20, 33, 97}}});
        add("qtdb", {{{23, 34, 92},
                      {12, 31, 92},
                      {5, 30, 92},
                      {3, 11, 99.5},
                      {2, 15, 99.5},
                      {51, 40, 50},
                      {5, 17, 81},
                      {32, 25, 81}}});
        add("qtdb, average beat", {{{4, 10, 99},
                                    {4, 7, 99},
                                    {4, 11, 99},
                                    {6, 17, 99},
                                    {6, 11, 99},
                                    {13, 49, 80},
                                    {5, 20, 94},
                                    {14, 19, 94}}});
        add("qtdb, review markers",
            {{{4, 10, 99}, {}, {4, 6, 99}, {5, 8, 99}, {6, 10, 99}, {}, {}, {24, 28, 99}}});
    }

    void wavesAreMeasuredAsWellAsThis()
    {
        QFETCH(QByteArray, set);
        QFETCH(TBounds, bounds);
        static const QByteArray report = waveReport();
        for (int mark = 0; mark < markCount; ++mark) {
            const TBound& bound = bounds[mark];
            if (bound.deviation == 0.0)
                continue;
            const QList<QByteArray> cells = cellsOf(report, set, mark);
            QVERIFY2(cells.size() > 7, markName(mark));
            QVERIFY2(cells[4].toDouble() >= bound.found, cells.join('|').constData());
            QVERIFY2(std::abs(cells[6].toDouble()) <= bound.mean, cells.join('|').constData());
            QVERIFY2(cells[7].toDouble() <= bound.deviation, cells.join('|').constData());
        }
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
