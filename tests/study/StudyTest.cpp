#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QtTest>

namespace {

/// A record in which every text differs from every other.
StudyInfo numberedInfo(const QByteArray& mark)
{
    StudyInfo info;
    info.id = 4711;
    for (const TStudyField& field : studyFields())
        info.*field.member = mark + field.key;
    for (const TStudyField& field : patientFields())
        info.*field.member = mark + "patient/" + field.key;
    info.studyDateTime = mark + "studyDateTime";
    info.recordingDateTime = mark + "recordingDateTime";
    info.riskFactors = {{"Diabetes", true, mark + "comment"}, {"Stress", false, ""}};
    return info;
}

} // namespace

class StudyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewStudyIsEmpty()
    {
        Study study(17);
        QCOMPARE(study.id(), 17);
        QVERIFY(study.ecg() == nullptr);
        QVERIFY(study.beats() == nullptr);
        QVERIFY(study.protocol() == nullptr);
        QVERIFY(study.echoScoring() == nullptr);
        QCOMPARE(study.events().count(), 0);
        QVERIFY(study.riskFactorNames().empty());
        QCOMPARE(study.studyDateTime(), QByteArray("00000000000000"));
        QCOMPARE(study.recordingDateTime(), QByteArray("00000000000000"));
    }

    void anAbsentKeyIsMadeWithAnEmptyText()
    {
        Study study(1);
        const QByteArray& text = study.value("patient/firstName");
        QCOMPARE(text, QByteArray());
        // The same text is there when it is asked for again: the key was added.
        QCOMPARE(&study.value("patient/firstName"), &text);
    }

    void textsAreReplaced()
    {
        Study study(1);
        study.setValue("comments", "one");
        study.setValue("comments", "two");
        QCOMPARE(study.value("comments"), QByteArray("two"));
        QCOMPARE(study.value("Comments"), QByteArray());
    }

    void riskFactorsAreKeptSorted()
    {
        Study study(1);
        study.setRiskFactor("Stress", true, "work");
        study.setRiskFactor("Angor", false, "");
        study.setRiskFactor("Stress", false, "less");
        QCOMPARE(study.riskFactorNames(), (std::vector<QByteArray>{"Angor", "Stress"}));
        QByteArray comment;
        QVERIFY(!study.riskFactor("Stress", &comment));
        QCOMPARE(comment, QByteArray("less"));
        study.clearRiskFactors();
        QVERIFY(study.riskFactorNames().empty());
    }

    void anUnknownRiskFactorIsFalse()
    {
        Study study(1);
        study.setRiskFactor("Gota", true, "knee");
        QByteArray comment = "left over";
        QVERIFY(!study.riskFactor("gota", &comment));
        QCOMPARE(comment, QByteArray());
        QVERIFY(study.riskFactor("Gota"));
        QCOMPARE(study.riskFactorNames().size(), std::size_t(1));
    }

    void everyTextOfTheRecordReachesTheStudy()
    {
        Study study(1);
        studyFromInfo(study, numberedInfo("a "));
        QCOMPARE(study.id(), 4711);
        for (const TStudyField& field : studyFields())
            QCOMPARE(study.value(field.key), "a " + QByteArray(field.key));
        for (const TStudyField& field : patientFields()) {
            const QByteArray key = QByteArray("patient/") + field.key;
            QCOMPARE(study.value(key), "a " + key);
        }
        QCOMPARE(study.studyDateTime(), QByteArray("a studyDateTime"));
        QCOMPARE(study.recordingDateTime(), QByteArray("a recordingDateTime"));
        QByteArray comment;
        QVERIFY(study.riskFactor("Diabetes", &comment));
        QCOMPARE(comment, QByteArray("a comment"));
        QVERIFY(!study.riskFactor("Stress"));
    }

    void theWayThereAndBackKeepsTheRecord()
    {
        const StudyInfo info = numberedInfo("b ");
        Study study(1);
        studyFromInfo(study, info);
        StudyInfo back = numberedInfo("old ");
        back.riskFactors.push_back({"Gota", true, "of another study"});
        infoFromStudy(back, study);
        QVERIFY(back == info);
    }

    void theAcquisitionOfTheRecordStays()
    {
        StudyInfo info;
        info.samplingRate = 500;
        info.channelCount = 14;
        info.channelNames = "I,II";
        info.resolution = 16;
        info.gain = 300.0;
        Study study(5);
        infoFromStudy(info, study);
        QCOMPARE(info.id, 5);
        QCOMPARE(info.samplingRate, 500);
        QCOMPARE(info.channelCount, 14);
        QCOMPARE(info.channelNames, QByteArray("I,II"));
        QCOMPARE(info.resolution, 16);
        QCOMPARE(info.gain, 300.0);
        QCOMPARE(info.sampleFormat, QByteArray("short"));
    }

    void aRecordWithoutIdLeavesTheStudyItsOwn()
    {
        Study study(5);
        studyFromInfo(study, StudyInfo());
        QCOMPARE(study.id(), 5);
    }
};

QTEST_GUILESS_MAIN(StudyTest)
#include "StudyTest.moc"
