#include "acq/FrameBytes.h"
#include "acq/TFrameParser.h"
#include "base/Constants.h"
#include "base/Error.h"
#include "fuzz/ArchiveInput.h"
#include "fuzz/EcgInput.h"
#include "fuzz/GoodStudy.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/StudyInput.h"
#include "fuzz/WfdbInput.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "study/TProtocolTable.h"
#include "support/SampleStudy.h"
#include "wfdb/AnnotationBytes.h"
#include "wfdb/TResampledRecord.h"
#include "wfdb/TWfdbAnnotations.h"

#include <QDir>
#include <QJsonDocument>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr char smallDocument[] =
    R"({"study":{"id":4712,"baseFilename":"other"},"patient":{"lastName":"Perez"}})";
constexpr char oddDocument[] =
    R"({"study":{"id":1e9,"studyDateTime":20240105,"comments":"\ud83d\ude00 \ud800 \u0000"},)"
    R"("patient":{"age":54,"weight":71.5e-3,"animalSpecies":"dog",)"
    R"("riskFactors":[{"name":"","status":1},{"name":"a","status":true,"comment":"b"},7,{"name":"\ufeffa"}]},)"
    R"("events":[{"position":1e308,"print":false},null],"echoScoring":{"segments":["ApicalSeptum",3],)"
    R"("scoreRest":[1,2,3],"scorePeak":[]},"protocol":{"stages":[{"duration":-1},[]]},)"
    R"("results":{"BPMTrend":{"type":"trend","timestamps":[2,1,1],"values":[60,-0.5]},"maxMETS":{"value":1e-9}}})";
constexpr char ecgDocument[] =
    R"({"ecg":{"sampleFormat":"short","samplingRate":250,"resolution":12,"gainMin":-5,"gainMax":5,)"
    R"("channels":["I","II"]}})";

QByteArray infoDocument(const QByteArray& baseFilename)
{
    return R"({"baseFilename":")" + baseFilename +
           R"(","studyDateTime":"20240105093012","studyType":"ECG",)"
           R"("patient":{"lastName":"Perez","firstName":"Ana"}})";
}

std::vector<TArchiveMember> membersOf(const QByteArray& baseFilename, const QByteArray& document)
{
    return {{"vtstudy", TMemberContent::StudyText, document},
            {"vtecg", TMemberContent::Good, {}},
            {"vtbeats", TMemberContent::Good, {}},
            {"info", TMemberContent::Block, infoDocument(baseFilename)}};
}

/// Samples of all sizes, some electrodes off.
QByteArray frameOf(const TFrameBytes& family)
{
    QByteArray frame = family.with({1, -2, 32767, 0, 0, 0, -32768, 256, -256, 32001, -32001, 7, 8, 9});
    frame[family.statusA] = '\x30';
    frame[family.statusB] = '\x20';
    frame[family.battery] = '\x80';
    return frame;
}

int framesIn(TFrameParser parser, const QByteArray& bytes)
{
    TEcgSample sample;
    return static_cast<int>(std::count_if(bytes.begin(), bytes.end(), [&](char byte) {
        return parser.add(static_cast<unsigned char>(byte), sample);
    }));
}

} // namespace

/// Writes the inputs that the fuzzers start from. A seed that no longer is what it is meant to be would leave
/// a fuzzer at the door, so each is put to the reader that it is made for.
class FuzzSeedsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void studyDocumentsOfAllFormsLoad_data();
    void studyDocumentsOfAllFormsLoad();
    void damagedStudyFilesAreRefused_data();
    void damagedStudyFilesAreRefused();
    void samplesFilesOpen_data();
    void samplesFilesOpen();
    void beatsFilesOpen_data();
    void beatsFilesOpen();
    void archivesAreImported_data();
    void archivesAreImported();
    void badArchivesAreRefused_data();
    void badArchivesAreRefused();
    void protocolTablesLoad_data();
    void protocolTablesLoad();
    void frameStreamsHoldFrames_data();
    void frameStreamsHoldFrames();
    void wfdbRecordsAreRead_data();
    void wfdbRecordsAreRead();
    void badWfdbRecordsAreRefused_data();
    void badWfdbRecordsAreRefused();
    void anyBytesAreAnInput();

private:
    void save(const char* target, const QByteArray& seed);
    QByteArray largeDocument();
    QByteArray exportedArchive();
    std::optional<StudyInfo> importInput(const QByteArray& input);

    TScratchFolder m_scratch;
    TGoodStudy m_good;
};

void FuzzSeedsTest::initTestCase()
{
    QDir seeds(QStringLiteral(VELANTOR_SEED_FOLDER));
    // Those of an older form would be worth nothing.
    QVERIFY(!seeds.exists() || seeds.removeRecursively());
    m_good = TGoodStudy::create(m_scratch.path());
    QVERIFY(m_good.standsIn(m_scratch.path()));
}

/// Under the name of the test's row.
void FuzzSeedsTest::save(const char* target, const QByteArray& seed)
{
    const QString folder = QStringLiteral(VELANTOR_SEED_FOLDER) + QLatin1Char('/') + QLatin1String(target);
    QVERIFY(QDir().mkpath(folder));
    QString name = QLatin1String(QTest::currentDataTag());
    name.replace(QLatin1Char(' '), QLatin1Char('-'));
    QVERIFY(writeFile(folder + QLatin1Char('/') + name, seed));
}

QByteArray FuzzSeedsTest::largeDocument()
{
    constexpr double seconds = 3.0;
    Study study(4713);
    studyFromInfo(study, makeSampleInfo());
    fillSampleResults(study, seconds, 72.0, 1);
    return QJsonDocument(makeStudyDocument(study)).toJson(QJsonDocument::Compact);
}

void FuzzSeedsTest::studyDocumentsOfAllFormsLoad_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::newRow("good file") << makeStudyInput(TStudyForm::RawFile, m_good.files[0]);
    QTest::newRow("small old") << makeStudyInput(TStudyForm::OldText, smallDocument);
    QTest::newRow("small compressed") << makeStudyInput(TStudyForm::CompressedText, smallDocument);
    QTest::newRow("odd compressed") << makeStudyInput(TStudyForm::CompressedText, oddDocument);
    QTest::newRow("large compressed") << makeStudyInput(TStudyForm::CompressedText, largeDocument());
}

void FuzzSeedsTest::studyDocumentsOfAllFormsLoad()
{
    QFETCH(QByteArray, seed);
    const QString path = TGoodStudy::path(m_scratch.path(), 0);
    QVERIFY(writeFile(path, studyFileFromInput(seed)));
    QVERIFY(loadStudy(path));
    save("fuzz_study_document", seed);
}

void FuzzSeedsTest::damagedStudyFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("seed");
    const QByteArray bomb = compressedStudyFile(QByteArray(2 * 1024 * 1024, '['));
    QTest::newRow("cut") << makeStudyInput(TStudyForm::RawFile, m_good.files[0].left(200));
    QTest::newRow("brackets") << makeStudyInput(TStudyForm::RawFile, bomb);
    QTest::newRow("nested") << makeStudyInput(TStudyForm::OldText, "{\"study\":" + QByteArray(2000, '['));
    QTest::newRow("no patient") << makeStudyInput(TStudyForm::CompressedText, R"({"study":{"id":1}})");
}

void FuzzSeedsTest::damagedStudyFilesAreRefused()
{
    QFETCH(QByteArray, seed);
    const QString path = TGoodStudy::path(m_scratch.path(), 0);
    QVERIFY(writeFile(path, studyFileFromInput(seed)));
    QVERIFY(!loadStudy(path));
    save("fuzz_study_document", seed);
}

void FuzzSeedsTest::samplesFilesOpen_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("samples");
    constexpr int bytesOfFrame = 4;
    QTest::newRow("good file") << makeRawEcgInput(m_good.files[1]) << 1000;
    QTest::newRow("header alone") << makeEcgInput(ecgDocument, {}) << 0;
    QTest::newRow("few samples") << makeEcgInput(ecgDocument, "\1\2\3\4\5\6\7\10\11") << 2;
    QTest::newRow("a block and one") << makeEcgInput(ecgDocument, QByteArray(4097 * bytesOfFrame, 'x'))
                                     << 4097;
}

void FuzzSeedsTest::samplesFilesOpen()
{
    QFETCH(QByteArray, seed);
    QFETCH(int, samples);
    const QString path = m_scratch.path("seed.vtecg");
    QVERIFY(writeFile(path, ecgFileFromInput(seed)));
    const std::unique_ptr<TEcgFile> ecg = openEcgFile(path);
    QVERIFY(ecg);
    QCOMPARE(ecg->sampleCount(), samples);
    save("fuzz_ecg_header", seed);
}

void FuzzSeedsTest::beatsFilesOpen_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("beats");
    const QByteArray twoChannels(1, TGoodStudy::channelCount - 1);
    const QByteArray& file = m_good.files[2];
    const QByteArray records = file.mid(beatsHeaderSize);
    QTest::newRow("good file") << twoChannels + file << 2;
    QTest::newRow("mark alone") << twoChannels + file.left(8) << 0;
    QTest::newRow("cut record") << twoChannels + file.left(file.size() - 1) << 1;
    QTest::newRow("backwards") << twoChannels + file + records + records << 6;
}

void FuzzSeedsTest::beatsFilesOpen()
{
    QFETCH(QByteArray, seed);
    QFETCH(int, beats);
    const QString path = m_scratch.path("seed.vtbeats");
    QVERIFY(writeFile(path, seed.mid(1)));
    const std::unique_ptr<TEcgFile> ecg = openEcgFile(TGoodStudy::path(m_scratch.path(), 1));
    QVERIFY(ecg);
    const std::unique_ptr<TBeatFile> file = openBeatFile(*ecg, path);
    QVERIFY(file);
    QCOMPARE(file->count(), beats);
    save("fuzz_beats_file", seed);
}

QByteArray FuzzSeedsTest::exportedArchive()
{
    TScratchFolder folder;
    TGoodStudy::create(folder.path());
    LocalStudyDatabase database(folder.path());
    database.exportStudy(TGoodStudy::id, folder.path());
    return readFile(folder.path("good.vtz"));
}

/// What is imported into a store with the good study; nothing if the archive is refused.
std::optional<StudyInfo> FuzzSeedsTest::importInput(const QByteArray& input)
{
    TScratchFolder folder;
    const TGoodStudy good = TGoodStudy::create(folder.path());
    LocalStudyDatabase database(folder.path());
    writeArchiveFromInput(input, good, folder.path("seed.vtz"));
    try {
        StudyInfo info;
        database.importStudy(folder.path("seed.vtz"), &info);
        return info;
    } catch (const TError&) {
        return std::nullopt;
    }
}

void FuzzSeedsTest::archivesAreImported_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<QByteArray>("baseFilename");
    std::vector<TArchiveMember> otherEcg = membersOf("other", smallDocument);
    otherEcg[1] = {"vtecg", TMemberContent::EcgHeader, ecgDocument};
    std::vector<TArchiveMember> goodAgain = membersOf("good", {});
    goodAgain[0] = {"vtstudy", TMemberContent::Good, {}};
    QTest::newRow("exported") << makeRawArchiveInput(exportedArchive()) << QByteArray("good");
    QTest::newRow("built") << makeArchiveInput(membersOf("other", smallDocument)) << QByteArray("other");
    QTest::newRow("other samples") << makeArchiveInput(otherEcg) << QByteArray("other");
    QTest::newRow("good again") << makeArchiveInput(goodAgain) << QByteArray("good");
    QTest::newRow("patched time") << makePatchedArchiveInput(QByteArray("\12\0\1", 3), goodAgain)
                                  << QByteArray("good");
}

void FuzzSeedsTest::archivesAreImported()
{
    QFETCH(QByteArray, seed);
    QFETCH(QByteArray, baseFilename);
    const std::optional<StudyInfo> imported = importInput(seed);
    QVERIFY(imported);
    QCOMPARE(imported->baseFilename, baseFilename);
    save("fuzz_archive", seed);
}

void FuzzSeedsTest::badArchivesAreRefused_data()
{
    QTest::addColumn<QByteArray>("seed");
    const QByteArray exported = exportedArchive();
    std::vector<TArchiveMember> twice = membersOf("other", smallDocument);
    twice.insert(twice.begin(), {"info", TMemberContent::Block, infoDocument("../other")});
    std::vector<TArchiveMember> renamed = membersOf("other", smallDocument);
    renamed[2].name = "vtbeats2";
    renamed[2].kind = TMemberContent::Block;
    QTest::newRow("outside") << makeArchiveInput(membersOf("../other", smallDocument));
    QTest::newRow("another id") << makeArchiveInput(membersOf("good", smallDocument));
    QTest::newRow("outside first") << makeArchiveInput(twice);
    QTest::newRow("member missing") << makeArchiveInput(renamed);
    QTest::newRow("patched data") << makePatchedArchiveInput(QByteArray("\100\0\1", 3),
                                                             membersOf("other", smallDocument));
    QTest::newRow("cut archive") << makeRawArchiveInput(exported.left(exported.size() / 2));
    QTest::newRow("no archive") << makeRawArchiveInput("PK");
}

void FuzzSeedsTest::badArchivesAreRefused()
{
    QFETCH(QByteArray, seed);
    QVERIFY(!importInput(seed));
    save("fuzz_archive", seed);
}

void FuzzSeedsTest::protocolTablesLoad_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("protocols");
    QTest::newRow("built in") << TProtocolTable::builtIn().toJson()
                              << static_cast<int>(TProtocolTable::builtIn().names().size());
    QTest::newRow("one of each kind")
        << QByteArray(R"([{"name":"a","type":"ergometer","stages":[{"phase":"exercise","duration":60,)"
                      R"("workload":25}]},{"name":"b","type":"pharmacologic","stages":[{"dose":5}]},)"
                      R"({"name":"c","type":"treadmill","stages":[{"speed":2.7,"incline":10}]}])")
        << 3;
    QTest::newRow("odd")
        << QByteArray(
               R"([7,{"name":"a\ud800"},{"name":"\ufeff"},{"stages":[{"duration":1e9},{}],"type":"ecg"}])")
        << 3;
}

void FuzzSeedsTest::protocolTablesLoad()
{
    QFETCH(QByteArray, seed);
    QFETCH(int, protocols);
    const QString path = m_scratch.path("protocols.json");
    QVERIFY(writeFile(path, seed));
    TProtocolTable table;
    QVERIFY(table.load(path));
    QCOMPARE(static_cast<int>(table.names().size()), protocols);
    save("fuzz_protocol_table", seed);
}

void FuzzSeedsTest::frameStreamsHoldFrames_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("standardFrames");
    QTest::addColumn<int>("highRateFrames");
    const QByteArray standard = frameOf(TFrameBytes::standard());
    const QByteArray highRate = frameOf(TFrameBytes::highRate());
    QTest::newRow("standard") << standard.repeated(3) << 3 << 0;
    QTest::newRow("high rate") << highRate.repeated(4) << 0 << 4;
    QTest::newRow("both") << standard + highRate + standard << 2 << 1;
    QTest::newRow("byte lost") << standard.repeated(2).remove(50, 1) + standard << 2 << 0;
    QTest::newRow("second start") << standard.left(12) + standard + standard << 1 << 0;
    QTest::newRow("begun in a frame") << highRate.mid(5) + highRate.repeated(2) << 0 << 2;
}

void FuzzSeedsTest::frameStreamsHoldFrames()
{
    QFETCH(QByteArray, seed);
    QTEST(framesIn(TStdFrameParser(), seed), "standardFrames");
    QTEST(framesIn(THRFrameParser(), seed), "highRateFrames");
    save("fuzz_frame_parsers", seed);
}

void FuzzSeedsTest::wfdbRecordsAreRead_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("annotations");
    const QByteArray beats =
        TAnnotationBytes().add('+', 0).aux("(N").add('N', 9).skip(70000).add('V', 5).bytes();
    const QByteArray waves = TAnnotationBytes()
                                 .add('"', 0)
                                 .aux("## time resolution: 250")
                                 .add('(', 4)
                                 .num(1)
                                 .add('N', 3)
                                 .subtype(-1)
                                 .add(')', 3)
                                 .channel(1)
                                 .bytes();
    const QByteArray samples("\1\2\3\4\5\6\7\10\11\12\13\14", 12);
    const QByteArray plain = "r 2 500 3\nr.dat 16 1000(5)/mV 16 0 0 0 0 I\nr.dat 16 200 16 5 0 0 0 MLII\n";
    const QByteArray pairs = "r 2 360/360(0) 4 15:22:05 15/5/2020\r\nr.dat 212 200 11 1024 0 0 0 v1\r\n"
                             "r.dat 212 200 11 1024 0 0 0 V5\r\n# comment\r\n";
    const QByteArray twoFiles = "r 2 1000 0\nr.dat 16+4 -5e-1(0)/uV\n#\ns.dat 212 0/V 12 0 x y 0 a name\n";
    QTest::newRow("plain") << TWfdbInput{plain, beats, {}, samples}.toBytes() << 3 << 3;
    QTest::newRow("pairs") << TWfdbInput{pairs, waves, {}, samples}.toBytes() << 6 << 3;
    QTest::newRow("two files") << TWfdbInput{twoFiles, beats, samples, samples}.toBytes() << 2 << 3;
}

void FuzzSeedsTest::wfdbRecordsAreRead()
{
    QFETCH(QByteArray, seed);
    QVERIFY(TWfdbInput::fromBytes(seed).write(m_scratch.path()));
    const TWfdbRecord record(m_scratch.path("r"));
    const TResampledRecord resampled(record);
    QTEST(static_cast<int>(resampled.sampleCount()), "samples");
    QTEST(static_cast<int>(TWfdbAnnotations::read(m_scratch.path("r.atr")).list().size()), "annotations");
    save("fuzz_wfdb", seed);
}

void FuzzSeedsTest::badWfdbRecordsAreRefused_data()
{
    QTest::addColumn<QByteArray>("seed");
    const QByteArray text = TAnnotationBytes().add('N', 1).aux("text").withoutEnd();
    QTest::newRow("outside") << TWfdbInput{"r 1 500 1\n../r.dat 16 1\n", text, {}, "xy"}.toBytes();
    QTest::newRow("skew") << TWfdbInput{"r 1 500 1\nr.dat 16:2 1\n", text.chopped(2), {}, "xy"}.toBytes();
    QTest::newRow("segments") << TWfdbInput{"r/2 1 500 1\nr.dat 16 1\n", {}, {}, "xy"}.toBytes();
}

void FuzzSeedsTest::badWfdbRecordsAreRefused()
{
    QFETCH(QByteArray, seed);
    QVERIFY(TWfdbInput::fromBytes(seed).write(m_scratch.path()));
    QVERIFY_EXCEPTION_THROWN(TWfdbRecord(m_scratch.path("r")), TError);
    QVERIFY_EXCEPTION_THROWN(TWfdbAnnotations::read(m_scratch.path("r.atr")), TError);
    save("fuzz_wfdb", seed);
}

void FuzzSeedsTest::anyBytesAreAnInput()
{
    const QString path = m_scratch.path("any.vtstudy");
    for (const QByteArray& input :
         {QByteArray(), QByteArray("\1"), QByteArray("\2"), QByteArray(5, '\xff')}) {
        QVERIFY(!importInput(input));
        QVERIFY(writeFile(path, studyFileFromInput(input)));
        QVERIFY(!loadStudy(path));
        QVERIFY(ecgFileFromInput(input).size() <= ecgHeaderSize + input.size());
    }
    QCOMPARE(ecgFileFromInput(makeEcgInput("abc", "de")).size(), ecgHeaderSize + 2);
}

QTEST_GUILESS_MAIN(FuzzSeedsTest)

#include "FuzzSeedsTest.moc"
