#include "accuracy/MarkdownTable.h"
#include "accuracy/Report.h"

#include <QtTest>

using namespace accuracy;

class AccuracyReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutRecordsThereIsNoTable()
    {
        QVERIFY(TReport().isEmpty());
        QCOMPARE(TReport().toMarkdown(), QByteArray());
    }

    void beatsOfEachSetHaveALineARecordAndASum()
    {
        TReport report;
        report.addBeats("mitdb", "200", {9, 1, 0});
        report.addBeats("mitdb", "100", {80, 10, 20});
        report.addBeats("ludb", "1", {0, 0, 0});
        QVERIFY(!report.isEmpty());
        QCOMPARE(report.toMarkdown(), QByteArray("## Beats\n"
                                                 "\n"
                                                 "Found within 150 ms.\n"
                                                 "\n"
                                                 "| record | beats | TP | FN | FP | Se % | +P % |\n"
                                                 "| --- | --: | --: | --: | --: | --: | --: |\n"
                                                 "| ludb/1 | 0 | 0 | 0 | 0 | - | - |\n"
                                                 "| **ludb** | 0 | 0 | 0 | 0 | - | - |\n"
                                                 "| mitdb/200 | 10 | 9 | 1 | 0 | 90.00 | 100.00 |\n"
                                                 "| mitdb/100 | 90 | 80 | 10 | 20 | 88.89 | 80.00 |\n"
                                                 "| **mitdb** | 100 | 89 | 11 | 20 | 89.00 | 81.65 |\n"));
    }

    void wavesHaveALineARecordAndALineAMark()
    {
        TMarkScores first;
        first[TPeak].addError(0.010);
        first[TPeak].addError(0.020);
        TMarkScores second;
        second[TPeak].addError(-0.030);
        second[TPeak].addMissed();
        second[PPeak].addExtra();
        TReport report;
        report.addMarks("qtdb", "sel100", first);
        report.addMarks("qtdb", "sel103", second);
        const QByteArray text = report.toMarkdown();
        QVERIFY(text.startsWith("## Waves of qtdb\n\n"));
        QVERIFY(text.contains(
            "| record | P onset | P peak | P offset | QRS onset | QRS offset | T onset | T peak "
            "| T offset |\n"));
        QVERIFY(text.contains("| qtdb/sel100 | - | - | - | - | - | - | 15.0 \xc2\xb1 7.1 | - |\n"));
        QVERIFY(text.contains("| qtdb/sel103 | - | - | - | - | - | - | -30.0 \xc2\xb1 - (50.00 %) | - |\n"));
        QVERIFY(text.contains("| P peak | 0 | 0 | - | 1 | - | - | - |\n"));
        // The deviation of all errors, and the mean of those records that have one.
        QVERIFY(text.contains("| T peak | 4 | 3 | 75.00 | 0 | 0.0 | 26.5 | 7.1 |\n"));
    }

    void whatIsNoNumberIsADash()
    {
        QCOMPARE(numberCell(std::nan(""), 1), QByteArray("-"));
        QCOMPARE(numberCell(1.26, 1), QByteArray("1.3"));
        QCOMPARE(percentCell(0.99876), QByteArray("99.88"));
    }
};

QTEST_GUILESS_MAIN(AccuracyReportTest)
#include "AccuracyReportTest.moc"
