#include "FailureText.h"
#include "FullDisk.h"
#include "StudySet.h"
#include "study/ResultsJson.h"
#include "study/StudyFiles.h"

#include <QDir>
#include <QJsonDocument>
#include <QtEndian>
#include <QtTest>

namespace {

QByteArray resultsOf(Study& study)
{
    return QJsonDocument(makeResultsObject(study.results())).toJson(QJsonDocument::Compact);
}

/// The text of a saved study of one event; `comments` varies.
QByteArray textWith(const QByteArray& comments, const QByteArray& results, const QByteArray& protocol)
{
    return R"({"events":[{"description":"Dolor","duration":10,"position":61.5,"print":false}],)"
           R"("patient":{"address":"","age":"","birthDate":"","city":"","country":"","firstName":"",)"
           R"("height":"","lastName":"","medicalGroupName":"","medicalGroupNumber":"",)"
           R"("medicalHistoryNumber":"","personIdNumber":"","personIdType":"","phoneNumber":"",)"
           R"("riskFactors":[],"sex":"F","state":"","trainingZoneMax":"","trainingZoneSubMax":"",)"
           R"("weight":"71.5"},)" +
           protocol + R"("results":)" + results + R"(,"study":{"baseFilename":"set","comments":")" +
           comments +
           R"(","conclusion":"","doctorName":"","id":5,"indication":"","institutionName":"",)"
           R"("protocolName":"","recordingDateTime":"20240105093101","referringDoctorName":"","status":"",)"
           R"("studyDateTime":"20240105093012","studyType":"","technicianName":"","treatment":""}})";
}

const QByteArray emptyProtocol = R"("protocol":{"name":"","stages":[],"type":"treadmill"},)";

void fill(Study& study, const QByteArray& comments)
{
    study.setId(5);
    study.setValue("baseFilename", "set");
    study.setValue("comments", comments);
    study.setStudyDateTime("20240105093012");
    study.setRecordingDateTime("20240105093101");
    study.setValue("patient/sex", "F");
    study.setValue("patient/weight", "71.5");
    study.results().value("maxBPM")->setValue(171.5);
    TStudyEvent& event = study.events().add();
    event.setDescription("Dolor");
    event.position = 61.5;
    event.duration = 10.0;
    event.print = false;
}

} // namespace

class StudySavingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFileIsMarkLengthAndCompressedText()
    {
        const TStudySet set;
        Study study(0);
        fill(study, "sí");
        saveStudyFile(study, set.study());
        const QByteArray bytes = readFile(set.study());
        const QByteArray text = textWith("sí", resultsOf(study), "");
        QCOMPARE(bytes.left(8), QByteArray("VTSTUDY2"));
        QCOMPARE(qFromBigEndian<quint32>(bytes.constData() + 8), static_cast<quint32>(text.size()));
        QCOMPARE(qUncompress(bytes.mid(8)), text);
        QCOMPARE(bytes, "VTSTUDY2" + qCompress(text));
    }

    void anOldFileIsReadAndWrittenInTheNewForm()
    {
        const TStudySet set;
        QVERIFY(writeFile(set.study(), "VTSTUDY1" + textWith("vieja", R"({"maxBPM":{"value":171.5}})", "")));
        const auto study = loadStudy(set.study());
        QVERIFY(study != nullptr);
        QCOMPARE(study->value("comments"), QByteArray("vieja"));
        QCOMPARE(study->results().value("maxBPM")->value(), 171.5);
        saveStudyFile(*study, set.study());
        // The protocol that the old file does not have is written from now on.
        QCOMPARE(readFile(set.study()),
                 "VTSTUDY2" + qCompress(textWith("vieja", resultsOf(*study), emptyProtocol)));
    }

    void savingLeavesNoOtherFileAndNoSampleTouched()
    {
        const TStudySet set;
        const QByteArray ecg = readFile(set.ecg());
        const QByteArray beats = readFile(set.beats());
        const auto study = loadStudy(set.study());
        study->setValue("comments", QByteArray(100000, 'c'));
        saveStudyFile(*study, set.study());
        QCOMPARE(QDir(set.folder()).entryList(QDir::Files | QDir::Hidden).size(), 3);
        QCOMPARE(readFile(set.ecg()), ecg);
        QCOMPARE(readFile(set.beats()), beats);
    }

    void aFullDiskLeavesTheOldFile_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<double>("share");
        for (const int size : {0, 40000}) {
            const auto row = [size](const char* title, double share) {
                QTest::addRow("%s, %d bytes of comments", title, size) << size << share;
            };
            row("no room at all", 0.0);
            row("room for the mark", 0.01);
            row("room for half of it", 0.5);
            row("one byte missing", 1.0);
        }
    }

    void aFullDiskLeavesTheOldFile()
    {
        QFETCH(int, size);
        QFETCH(double, share);
        const TStudySet set;
        const QByteArray before = readFile(set.study());
        Study study(0);
        fill(study, noise(size));
        const int room = static_cast<int>((savedSize(study) - 1) * share);
        QString failure;
        {
            const FullDisk disk(static_cast<rlim_t>(room));
            failure = failureText([&] { saveStudyFile(study, set.study()); });
        }
        QCOMPARE(failure, QStringLiteral("Write error"));
        QCOMPARE(readFile(set.study()), before);
        QCOMPARE(QDir(set.folder()).entryList(QDir::Files | QDir::Hidden).size(), 3);
        QVERIFY(loadStudy(set.study()) != nullptr);
    }

    void aDiskWithJustEnoughRoomTakesTheFile()
    {
        const TStudySet set;
        Study study(0);
        fill(study, noise(40000));
        const int whole = savedSize(study);
        QString failure;
        {
            const FullDisk disk(static_cast<rlim_t>(whole));
            failure = failureText([&] { saveStudyFile(study, set.study()); });
        }
        QCOMPARE(failure, QString());
        QCOMPARE(readFile(set.study()).size(), whole);
    }

    void aPlaceThatTakesNoFileIsTold()
    {
        const TStudySet set;
        Study study(0);
        const QString text = QStringLiteral("Cannot create study file");
        const QString absent = set.folder() + QStringLiteral("/absent/set.vtstudy");
        QCOMPARE(failureText([&] { saveStudyFile(study, absent); }), text);
        QVERIFY(!QFile::exists(absent));
        QCOMPARE(failureText([&] { saveStudyFile(study, set.folder()); }), text);
    }

private:
    /// A text that compression cannot make much smaller.
    static QByteArray noise(int size)
    {
        quint32 state = 1;
        QByteArray text(size, '\0');
        for (char& c : text) {
            state = state * 1664525u + 1013904223u;
            c = char('0' + (state >> 16) % 75);
        }
        return text;
    }

    static int savedSize(Study& study)
    {
        const TStudySet other;
        saveStudyFile(study, other.study());
        return readFile(other.study()).size();
    }
};

QTEST_GUILESS_MAIN(StudySavingTest)
#include "StudySavingTest.moc"
