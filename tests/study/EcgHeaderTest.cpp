#include "FailureText.h"
#include "StudySet.h"
#include "analysis/signals/TChannel.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

QByteArray padded(const QByteArray& header)
{
    return header + QByteArray(std::max(0, 4096 - header.size()), '\0');
}

QJsonObject documentOf(const QByteArray& header)
{
    return QJsonDocument::fromJson(header.mid(6, header.indexOf('\0') - 6)).object();
}

QString textOf(const QJsonObject& document, const char* object, const char* key)
{
    return document.value(QLatin1String(object)).toObject().value(QLatin1String(key)).toString();
}

QByteArray ecgObject(const QByteArray& channels)
{
    return R"("ecg":{"channels":[)" + channels +
           R"(],"gainMax":300,"gainMin":-300,"resolution":16,"sampleFormat":"short","samplingRate":500})";
}

/// A sound document of exactly `size` bytes.
QByteArray documentOfSize(int size)
{
    const QByteArray head = '{' + ecgObject("\"II\"") + R"(,"pad":")";
    return head + QByteArray(size - head.size() - 2, 'x') + "\"}";
}

} // namespace

/// The head of a samples file, as it is written and as it is read.
class EcgHeaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFileBeginsWithMarkAndDocument()
    {
        StudyInfo info = oneChannelInfo();
        info.channelCount = 2;
        info.channelNames = "II,V5";
        info.lastName = "Solís";
        info.weight = "71.5";
        info.studyDateTime = "20240105093012";
        info.riskFactors = {{"Gota", true, ""}};
        const TStudySet set(info);
        const QByteArray header =
            "VTECG1{" + ecgObject(R"("II","V5")") +
            R"(,"patient":{"address":"","age":"","birthDate":"","city":"","country":"","firstName":"",)"
            R"("height":"","lastName":"Solís","medicalGroupName":"","medicalGroupNumber":"",)"
            R"("medicalHistoryNumber":"","personIdNumber":"","personIdType":"","phoneNumber":"",)"
            R"("riskFactors":[{"comment":"","name":"Gota","status":true}],"sex":"","state":"",)"
            R"("trainingZoneMax":"","trainingZoneSubMax":"","weight":"71.5"},)"
            R"("study":{"baseFilename":"set","comments":"","conclusion":"","doctorName":"","id":4711,)"
            R"("indication":"","institutionName":"","protocolName":"","recordingDateTime":"00000000000000",)"
            R"("referringDoctorName":"","status":"","studyDateTime":"20240105093012","studyType":"",)"
            R"("technicianName":"","treatment":""}})";
        QCOMPARE(readFile(set.ecg()), padded(header));
    }

    void samplesFollowFrameByFrame()
    {
        QTemporaryDir folder;
        StudyInfo info = oneChannelInfo();
        info.channelCount = 2;
        const auto study = createStudyFiles(folder.path(), info);
        const short first[] = {1, 256, -32768};
        const short second[] = {-2, 32767, 0x1234};
        const short* const channels[] = {first, second};
        study->ecg()->addPerChannel(channels, 3);
        QCOMPARE(readFile(studyFilePath(folder.path(), "set", "vtecg")).mid(4096),
                 QByteArray("\x01\0\xfe\xff\0\x01\xff\x7f\0\x80\x34\x12", 12));
    }

    void theHeaderTellsAllThatTheFileNeeds()
    {
        StudyInfo info = oneChannelInfo();
        info.channelCount = 3;
        info.channelNames = "I,II,CM5 ñ";
        info.samplingRate = 250;
        info.resolution = 12;
        info.gain = 2.5;
        const TStudySet set(info);
        const auto ecg = openEcgFile(set.ecg());
        QVERIFY(ecg != nullptr);
        QCOMPARE(ecg->channelCount(), 3);
        QCOMPARE(ecg->samplingRate(), 250);
        QCOMPARE(ecg->resolutionBits(), 12);
        QCOMPARE(ecg->rangeMin(), -2.5);
        QCOMPARE(ecg->rangeMax(), 2.5);
        QCOMPARE(ecg->countValue(), 5.0 / 4096.0);
        QCOMPARE(ecg->channel(2)->name(), QByteArray("CM5 ñ"));
    }

    void headersThatCannotBeRightAreRefused_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<bool>("opens");
        const auto row = [](const char* title, const char* before, const char* after, bool opens = false) {
            QTest::newRow(title) << QByteArray(before) << QByteArray(after) << opens;
        };
        row("as it is", "", "", true);
        row("foreign mark", "VTECG1", "VTECG2");
        row("mark in other letters", "VTECG1", "vtecg1");
        row("resolution 0", "\"resolution\":16", "\"resolution\":0");
        row("resolution 33", "\"resolution\":16", "\"resolution\":33");
        row("resolution 32", "\"resolution\":16", "\"resolution\":32", true);
        row("resolution 1", "\"resolution\":16", "\"resolution\":1", true);
        row("negative resolution", "\"resolution\":16", "\"resolution\":-16");
        row("resolution as text", "\"resolution\":16", "\"resolution\":\"16\"");
        row("no resolution", "\"resolution\":16,", "");
        row("rate 0", "\"samplingRate\":500", "\"samplingRate\":0");
        row("rate 1000000", "\"samplingRate\":500", "\"samplingRate\":1000000", true);
        row("rate 1000001", "\"samplingRate\":500", "\"samplingRate\":1000001");
        row("negative rate", "\"samplingRate\":500", "\"samplingRate\":-500");
        row("rate with a fraction", "\"samplingRate\":500", "\"samplingRate\":0.5");
        row("no channels", "[\"II\"]", "[]");
        row("channels that are no list", "[\"II\"]", "\"II\"");
        row("16 channels", "[\"II\"]", "[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16]", true);
        row("17 channels", "[\"II\"]", "[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17]");
        row("empty format", "\"short\"", "\"\"");
        row("format that is no text", "\"short\"", "5");
        row("another format", "\"short\"", "\"other\"", true);
        row("no ecg", "\"ecg\"", "\"egc\"");
        row("ecg that is a list", "{\"channels\":[\"II\"]", "[{\"channels\":[\"II\"]");
        row("range without end", "\"gainMax\":300", "\"gainMax\":1e999");
        row("broken", "{\"ecg\"", "{\"ecg");
        row("a list", "{\"ecg\"", "[{\"ecg\"");
        row("zero byte within", "\"short\"", "\"sh");
    }

    void headersThatCannotBeRightAreRefused()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(bool, opens);
        QByteArray header = "VTECG1{" + ecgObject("\"II\"") + '}';
        QVERIFY(header.contains(before));
        if (!before.isEmpty())
            header.replace(before, after);
        QVERIFY(writeFile(m_path, padded(header)));
        QCOMPARE(openEcgFile(m_path) != nullptr, opens);
    }

    void whatIsNoSamplesFileIsRefused()
    {
        QVERIFY(openEcgFile(m_folder.filePath(QStringLiteral("absent"))) == nullptr);
        QVERIFY(openEcgFile(m_folder.path()) == nullptr);
        for (const QByteArray& bytes :
             {QByteArray(), QByteArray("VTECG"), QByteArray("VTECG1"), padded("VTECG1"),
              "VTECG1" + QByteArray(10000, '['), QByteArray("VTECG1").repeated(2000)}) {
            QVERIFY(writeFile(m_path, bytes));
            QVERIFY(openEcgFile(m_path) == nullptr);
        }
    }

    void aDocumentNeedsAZeroByteBehindIt_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("opens");
        QTest::newRow("one zero byte left") << 4089 << true;
        QTest::newRow("runs into the samples") << 4090 << false;
        QTest::newRow("one byte too long") << 4091 << false;
        QTest::newRow("far too long") << 9000 << false;
    }

    void aDocumentNeedsAZeroByteBehindIt()
    {
        QFETCH(int, size);
        QFETCH(bool, opens);
        QFile::remove(m_path);
        {
            TEcgFile file(m_path, 1, 500, 4096, true);
            file.writeHeader("VTECG1" + documentOfSize(size));
            const short samples[] = {0x0101, 0x0202, 0x0303};
            const short* const channels[] = {samples};
            file.addPerChannel(channels, 3);
        }
        QCOMPARE(readFile(m_path).size(), 4096 + 6);
        const auto ecg = openEcgFile(m_path);
        QCOMPARE(ecg != nullptr, opens);
        if (opens)
            QCOMPARE(ecg->sampleCount(), 3);
    }

    void longTextsAreShortenedLongestFirst()
    {
        StudyInfo info = oneChannelInfo();
        info.studyDateTime = "20240105093012";
        info.comments = QByteArray(9000, 'c');
        info.indication = QByteArray(3000, 'i');
        info.treatment = QByteArray(500, 't');
        const TStudySet set(info);
        const QByteArray header = readFile(set.ecg()).left(4096);
        const QJsonObject document = documentOf(header);
        const int limit = textOf(document, "study", "comments").size();
        QCOMPARE(textOf(document, "study", "comments"), QString(limit, QLatin1Char('c')));
        QCOMPARE(textOf(document, "study", "indication"), QString(limit, QLatin1Char('i')));
        QCOMPARE(textOf(document, "study", "treatment"), QString(500, QLatin1Char('t')));
        QCOMPARE(textOf(document, "study", "baseFilename"), QStringLiteral("set"));
        QCOMPARE(textOf(document, "study", "studyDateTime"), QStringLiteral("20240105093012"));
        // One character more in each of the two would not have fitted into 4089 bytes.
        const int size = 6 + QJsonDocument(document).toJson(QJsonDocument::Compact).size();
        QVERIFY2(size <= 4095 && size + 2 > 4095, QByteArray::number(size));
        QVERIFY(openEcgFile(set.ecg()) != nullptr);
        QCOMPARE(loadStudy(set.study())->value("comments"), info.comments);
    }

    void whatFindsTheStudyAgainStaysWhole()
    {
        StudyInfo info = oneChannelInfo();
        info.baseFilename = QByteArray(200, 'b');
        info.studyDateTime = "20240105093012";
        info.recordingDateTime = "20240105093101";
        for (const TStudyField& field : patientFields())
            info.*field.member = QByteArray(5000, 'p');
        const TStudySet set(info);
        const QJsonObject document = documentOf(readFile(set.ecg()).left(4096));
        QCOMPARE(textOf(document, "study", "baseFilename"), QString(200, QLatin1Char('b')));
        QCOMPARE(textOf(document, "study", "studyDateTime"), QStringLiteral("20240105093012"));
        QCOMPARE(textOf(document, "study", "recordingDateTime"), QStringLiteral("20240105093101"));
        QVERIFY(textOf(document, "patient", "lastName").size() < 200);
        QVERIFY(openEcgFile(set.ecg()) != nullptr);
    }

    void shortenedTextsKeepWholeCharacters_data()
    {
        QTest::addColumn<QByteArray>("character");
        QTest::newRow("two bytes") << QByteArray("\xc3\xb1");
        QTest::newRow("three bytes") << QByteArray("\xe2\x82\xac");
        QTest::newRow("outside the basic plane") << QByteArray("\xf0\x9f\x98\x80");
        QTest::newRow("quote") << QByteArray("\"");
        QTest::newRow("backslash") << QByteArray("\\");
        QTest::newRow("line end") << QByteArray("\n");
        QTest::newRow("control character") << QByteArray("\x01");
    }

    void shortenedTextsKeepWholeCharacters()
    {
        QFETCH(QByteArray, character);
        // One letter more or less in front moves the cut over every place within a character.
        for (int letters = 0; letters < 6; ++letters) {
            StudyInfo info = oneChannelInfo();
            info.comments = QByteArray(letters, 'x') + character.repeated(5000);
            info.riskFactors = {{"Gota", true, info.comments}};
            const TStudySet set(info);
            QVERIFY(openEcgFile(set.ecg()) != nullptr);
            const QString text =
                textOf(documentOf(readFile(set.ecg()).left(4096)), "study", "comments").mid(letters);
            const QString whole = QString::fromUtf8(character);
            QVERIFY(text.size() > 100);
            QCOMPARE(text, whole.repeated(text.size() / whole.size()));
            QCOMPARE(loadStudy(set.study())->value("comments"), info.comments);
        }
    }

    void channelNamesThatDoNotFitCannotBeWritten()
    {
        StudyInfo info = oneChannelInfo();
        info.channelNames = QByteArray(5000, 'n');
        QTemporaryDir folder;
        QCOMPARE(failureText([&] { createStudyFiles(folder.path(), info); }),
                 QStringLiteral("Cannot create file"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList());
    }

private:
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("file.vtecg"));
};

QTEST_GUILESS_MAIN(EcgHeaderTest)
#include "EcgHeaderTest.moc"
