#include "accuracy/RecordScore.h"
#include "accuracy/Options.h"
#include "accuracy/References.h"
#include "base/Error.h"
#include "study/TEcgFile.h"
#include "wfdb/AnnotationBytes.h"
#include "wfdb/RecordFiles.h"
#include "wfdb/RecordingsFolder.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace accuracy;

namespace {

QByteArrayList namesOf(const std::vector<TRecordPlace>& records)
{
    QByteArrayList names;
    for (const TRecordPlace& record : records)
        names << record.set + '/' + record.name;
    return names;
}

} // namespace

class RecordScoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        for (const QString& set : annotatedSets())
            QVERIFY(QDir(m_folder->path()).mkdir(set));
        for (const char* name : {"mitdb/200", "mitdb/100", "ludb/10", "ludb/2"})
            makeRecord(name);
    }

    void withoutAChoiceAllAnnotatedRecordsAreFound()
    {
        QCOMPARE(namesOf(findRecords(m_folder->path(), {})),
                 (QByteArrayList{"ludb/2", "ludb/10", "mitdb/100", "mitdb/200"}));
    }

    void setsAndRecordsCanBeChosen()
    {
        QCOMPARE(
            namesOf(findRecords(m_folder->path(), {QStringLiteral("mitdb/200"), QStringLiteral("ludb")})),
            (QByteArrayList{"mitdb/200", "ludb/2", "ludb/10"}));
        for (const char* absent : {"mitdb/1", "bogus", "bogus/1"})
            QVERIFY_EXCEPTION_THROWN(findRecords(m_folder->path(), {QLatin1String(absent)}), TError);
    }

    void recordsBecomeSignalsOneAfterTheOther()
    {
        const auto records = findRecords(m_folder->path(), {QStringLiteral("mitdb")});
        TScratchStore store;
        for (int round = 0; round < 2; ++round) {
            for (const TRecordPlace& record : records) {
                TEcgFile& signal = store.import(record);
                QCOMPARE(signal.samplingRate(), 500);
                QCOMPARE(signal.sampleCount(), 10);
                QCOMPARE(record.frequency(), 250.0);
            }
        }
    }

    void beatsAreScoredAgainstTheAtrFile()
    {
        writeAnnotations("mitdb/100.atr", TAnnotationBytes().add('N', 250).add('V', 250).bytes());
        TReport report;
        scoreRecord(find("mitdb/100"), {{1.01, 3.0}, {}, {}}, report);
        QVERIFY(report.toMarkdown().contains("| mitdb/100 | 2 | 1 | 1 | 1 |"));
        QVERIFY(!report.toMarkdown().contains("Waves"));
    }

    void wavesOfACardiologistTakeTheBestLead()
    {
        writeAnnotations("mitdb/100.q1c", TAnnotationBytes().add('(', 225).add('N', 25).add(')', 25).bytes());
        TMarkedBeat beat;
        beat.r = 1.0;
        beat.marks[QrsOnset] = 0.95;
        TRecordFindings findings{{}, {"ECG1", "ECG2"}, {{beat}, {beat}}};
        findings.leads[1][0].marks[QrsOnset] = 0.908;
        TReport report;
        scoreRecord(find("mitdb/100"), findings, report);
        QVERIFY(report.toMarkdown().contains("| QRS onset | 1 | 1 | 100.00 | 0 | 8.0 | - | - |"));
        QVERIFY(!report.toMarkdown().contains("Beats"));
    }

    void wavesOfEachLeadAreHeldAgainstThatLead()
    {
        const TAnnotationBytes qrs = TAnnotationBytes().add('(', 225).add('N', 25).add(')', 25);
        writeAnnotations("ludb/2.ii", qrs.bytes());
        writeAnnotations("ludb/2.avr", qrs.bytes());
        TMarkedBeat beat;
        beat.r = 1.0;
        beat.marks[QrsOnset] = 0.902;
        // A beat before the first that is marked is not false; aVR has none.
        const TRecordFindings findings{{0.2, 1.0}, {"V1", "II"}, {{}, {beat}}};
        TReport report;
        scoreRecord(find("ludb/2"), findings, report);
        QVERIFY(report.toMarkdown().contains("| ludb/2 | 1 | 1 | 0 | 0 |"));
        QVERIFY(report.toMarkdown().contains("| QRS onset | 2 | 1 | 50.00 | 0 | 2.0 | - | - |"));
    }

    void anAverageIsHeldAgainstTheMediansOfItsBeats()
    {
        // Beats at 1, 2, 3 and 4 s; QRS begins 100, 60, 80 and 20 ms before them.
        writeAnnotations("mitdb/100.q1c", TAnnotationBytes()
                                              .add('(', 225)
                                              .add('N', 25)
                                              .add('(', 235)
                                              .add('N', 15)
                                              .add('(', 230)
                                              .add('N', 20)
                                              .add('(', 245)
                                              .add('N', 5)
                                              .bytes());
        TAverageFindings findings;
        // The fourth is none of the averaged ones; R was found 10 ms late in the second.
        findings.beats = {1.0, 2.01, 3.0};
        findings.leadNames = {"ECG1"};
        findings.leads.resize(1);
        findings.leads[0].marks[QrsOnset] = -0.07;
        findings.reviewLeads.resize(1);
        TReport report;
        scoreAverage(find("mitdb/100"), findings, report);
        const QByteArray text = report.toMarkdown();
        QVERIFY(text.contains("| mitdb, average beat/100 | - | - | - | 10.0 \xc2\xb1 - |"));
        QVERIFY(totals(text, "mitdb, average beat").contains("| QRS onset | 1 | 1 | 100.00 | 0 | 10.0 |"));
        QVERIFY(totals(text, "mitdb, review markers").contains("| QRS onset | 1 | 0 | 0.00 | 0 | - |"));
    }

    void theMarkersOfAReviewAreHeldAgainstWhatTheyMark()
    {
        const TAnnotationBytes waves =
            TAnnotationBytes().add('p', 200).add('N', 50).add('t', 75).add(')', 25);
        writeAnnotations("ludb/2.ii", waves.bytes());
        TAverageFindings findings;
        findings.beats = {1.0};
        findings.leadNames = {"II"};
        findings.leads.resize(1);
        findings.reviewLeads.resize(1);
        findings.reviewLeads[0].marks[TOffset] = 0.38;
        TReport report;
        scoreAverage(find("ludb/2"), findings, report);
        const QByteArray text = report.toMarkdown();
        QVERIFY(totals(text, "ludb, review markers").contains("| T offset | 1 | 1 | 100.00 | 0 | -20.0 |"));
        // They have no peaks, which nobody misses then.
        QVERIFY(totals(text, "ludb, review markers").contains("| T peak | 0 | 0 | - | 0 | - |"));
        QVERIFY(totals(text, "ludb, average beat").contains("| T peak | 1 | 0 | 0.00 | 0 | - |"));
    }

    void withoutAnAverageOrALeadItsMarksAreMissed_data()
    {
        QTest::addColumn<bool>("hasAverage");
        QTest::newRow("no average") << false;
        QTest::newRow("aVR not recorded") << true;
    }

    void withoutAnAverageOrALeadItsMarksAreMissed()
    {
        QFETCH(bool, hasAverage);
        const TAnnotationBytes qrs = TAnnotationBytes().add('(', 225).add('N', 25).add(')', 25);
        writeAnnotations("ludb/2.ii", qrs.bytes());
        writeAnnotations("ludb/2.avr", qrs.bytes());
        TAverageFindings findings;
        findings.leadNames = {"II"};
        if (hasAverage) {
            findings.beats = {1.0};
            findings.leads.resize(1);
            findings.leads[0].marks[QrsOffset] = 0.104;
            findings.reviewLeads = findings.leads;
        }
        TReport report;
        scoreAverage(find("ludb/2"), findings, report);
        const QByteArray table = totals(report.toMarkdown(), "ludb, average beat");
        QVERIFY(table.contains(hasAverage ? "| QRS offset | 2 | 1 | 50.00 | 0 | 4.0 |"
                                          : "| QRS offset | 2 | 0 | 0.00 | 0 | - |"));
        QVERIFY(table.contains("| QRS onset | 2 | 0 | 0.00 | 0 | - |"));
        QVERIFY(table.contains("| T peak | 0 | 0 | - | 0 | - |"));
    }

    void withoutAnAverageOnWaveMarksThoseAreMissed()
    {
        writeAnnotations("mitdb/100.q1c", TAnnotationBytes().add('(', 225).add('N', 25).add(')', 25).bytes());
        TReport report;
        scoreAverage(find("mitdb/100"), {}, report);
        QVERIFY(totals(report.toMarkdown(), "mitdb, average beat")
                    .contains("| QRS onset | 1 | 0 | 0.00 | 0 | - |"));
    }

    void aRecordWithoutAnnotationsIsPassedOver()
    {
        TReport report;
        scoreRecord(find("ludb/10"), {{1.0}, {}, {}}, report);
        QVERIFY(report.isEmpty());
    }

    void theCommandLineIsTakenApart()
    {
        const TOptions plain = TOptions::parse({}, QStringLiteral("there"));
        QCOMPARE(plain.recordings, qEnvironmentVariable("VELANTOR_RECORDINGS", QStringLiteral("there")));
        QCOMPARE(plain.block, 4096);
        QVERIFY(plain.records.isEmpty() && !plain.help);
        const TOptions full = TOptions::parse(
            QStringLiteral("--records mitdb/100 --block 51 --recordings here --records ludb --help")
                .split(QLatin1Char(' ')),
            {});
        QCOMPARE(full.recordings, QStringLiteral("here"));
        QCOMPARE(full.records, (QStringList{QStringLiteral("mitdb/100"), QStringLiteral("ludb")}));
        QCOMPARE(full.block, 51);
        QVERIFY(full.help);
        QVERIFY(TOptions::helpText().contains(QLatin1String("--block")));
        for (const char* wrong : {"--block", "--block 0", "--block x", "--bogus", "mitdb", "--records"})
            QVERIFY_EXCEPTION_THROWN(TOptions::parse(QString::fromLatin1(wrong).split(QLatin1Char(' ')), {}),
                                     TError);
    }

    void findingsThatAreTheReferenceScoreFull()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        TReport report;
        for (const TRecordPlace& record : findRecords(recordingsFolder(), {}))
            scoreRecord(record, perfectFindings(record), report);
        const QByteArray text = report.toMarkdown();
        QVERIFY(text.contains("| **mitdb** | 27448 | 27448 | 0 | 0 | 100.00 | 100.00 |"));
        QVERIFY(text.contains("| **nstdb** | 4556 | 4556 | 0 | 0 | 100.00 | 100.00 |"));
        for (const char* set : {"ludb", "qtdb"}) {
            const QByteArray waves = text.mid(text.indexOf(QByteArray("## Waves of ") + set));
            const QByteArray qrs = waves.mid(waves.indexOf("\n| QRS onset | ") + 1).split('\n').first();
            QVERIFY2(qrs.endsWith("| 100.00 | 0 | 0.0 | 0.0 | 0.0 |"), qrs.constData());
        }
    }

private:
    /// What people marked, as if it had been found.
    static TRecordFindings perfectFindings(const TRecordPlace& record)
    {
        const double frequency = record.frequency();
        TRecordFindings findings;
        for (const QString& ending : leadEndings()) {
            if (!record.hasAnnotations(ending))
                continue;
            const bool isLimbLead = ending.startsWith(QLatin1Char('a'));
            findings.leadNames.push_back(isLimbLead ? "aV" + ending.right(1).toUpper().toLatin1()
                                                    : ending.toUpper().toLatin1());
            findings.leads.push_back(readMarks(record.annotations(ending), frequency));
        }
        if (record.hasAnnotations(QStringLiteral("atr")))
            findings.beats = readBeats(record.annotations(QStringLiteral("atr")), frequency).beats;
        else
            findings.beats = mergeLeads(findings.leads).beats;
        if (record.hasAnnotations(QStringLiteral("q1c")))
            findings.leads = {readMarks(record.annotations(QStringLiteral("q1c")), frequency)};
        return findings;
    }

    void makeRecord(const char* name) const
    {
        const QString path = m_folder->filePath(QLatin1String(name));
        writeRecord(QFileInfo(path).path(), QFileInfo(path).fileName().toLatin1(), "250",
                    {{"MLII", {1, 2, 3, 4, 5}}});
    }

    void writeAnnotations(const char* name, const QByteArray& bytes) const
    {
        QFile file(m_folder->filePath(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    /// The gross table of a set.
    static QByteArray totals(const QByteArray& markdown, const QByteArray& set)
    {
        const int start = markdown.indexOf("| " + set + " | reference |");
        return start < 0 ? QByteArray() : markdown.mid(start, markdown.indexOf("\n\n", start) - start);
    }

    TRecordPlace find(const char* name) const
    {
        return findRecords(m_folder->path(), {QLatin1String(name)}).front();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(RecordScoreTest)
#include "RecordScoreTest.moc"
