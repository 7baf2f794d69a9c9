#include "cli/ConsoleTool.h"
#include "study/StoreFolder.h"
#include "study/TEcgFile.h"

#include <QJsonArray>
#include <QtTest>

namespace {

constexpr double beatSeconds = 60.0 / 72.0;
constexpr double firstR = 0.3;
/// 14 beats; the last R lies half a second before the end.
constexpr double seconds = 11.6;

QList<double> timesOf(const QJsonObject& analysis)
{
    QList<double> times;
    for (const QJsonValue beat : analysis.value(QLatin1String("beats")).toArray())
        times << beat.toObject().value(QLatin1String("time")).toDouble(-1.0);
    return times;
}

QStringList sortedKeys(const char* names)
{
    QStringList keys = QString::fromLatin1(names).split(QLatin1Char(' '));
    keys.sort();
    return keys;
}

/// Tells the first key whose value is none of the kinds allowed: a number, or null if it may be.
QString wrongNumber(const QJsonObject& object, const QStringList& keys, bool mayBeNull)
{
    for (const QString& key : keys) {
        const QJsonValue value = object.value(key);
        if (!value.isDouble() && !(mayBeNull && value.isNull()))
            return key;
    }
    return QString();
}

} // namespace

class AnalyseCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        LocalStudyDatabase database(m_folder.path());
        m_id = addRecording(database, seconds);
        m_emptyId = addRecording(database, 0.0);
    }

    void theWholeRecordingIsTold()
    {
        const QJsonObject analysis = analyse();
        QCOMPARE(sortedKeys("samplingRate channels duration beats average delineation"), analysis.keys());
        QCOMPARE(analysis.value(QLatin1String("samplingRate")), QJsonValue(500));
        QCOMPARE(analysis.value(QLatin1String("duration")), QJsonValue(seconds));
        const QJsonArray channels = analysis.value(QLatin1String("channels")).toArray();
        QCOMPARE(channels.size(), 14);
        QCOMPARE(channels.at(0), QJsonValue(QStringLiteral("I")));
        QCOMPARE(channels.at(13), QJsonValue(QStringLiteral("CR5")));
    }

    void everyBeatIsThere()
    {
        const QList<double> times = timesOf(analyse());
        QCOMPARE(times.size(), 14);
        for (int i = 0; i < times.size(); ++i)
            QVERIFY(std::abs(times.at(i) - (firstR + i * beatSeconds)) < 0.012);
    }

    void aBeatHasItsKeys()
    {
        const QJsonArray beats = analyse().value(QLatin1String("beats")).toArray();
        for (int i = 0; i < beats.size(); ++i) {
            const QJsonObject beat = beats.at(i).toObject();
            QCOMPARE(beat.keys(),
                     sortedKeys("number valid time rr meanRR windowStart windowLength channels"));
            QCOMPARE(beat.value(QLatin1String("number")), QJsonValue(i));
            QCOMPARE(beat.value(QLatin1String("valid")), QJsonValue(true));
            QCOMPARE(wrongNumber(beat, sortedKeys("time rr meanRR windowStart windowLength"), false),
                     QString());
            QVERIFY(beat.value(QLatin1String("windowStart")).toDouble() <
                    beat.value(QLatin1String("time")).toDouble());
            const double rr = beat.value(QLatin1String("rr")).toDouble();
            QVERIFY(i == 0 ? rr == 0.0 : std::abs(rr - beatSeconds) < 0.009);
            const double meanRR = beat.value(QLatin1String("meanRR")).toDouble();
            QVERIFY(i < 5 ? meanRR == 0.0 : std::abs(meanRR - beatSeconds) < 0.009);
        }
    }

    void aChannelOfABeatHasItsKeys()
    {
        const QStringList numbers = sortedKeys("P QRSon R QRSoff T pType qrsType tType qrsDuration pq qt");
        int nulls = 0;
        for (const QJsonValue beat : analyse().value(QLatin1String("beats")).toArray()) {
            const QJsonArray channels = beat.toObject().value(QLatin1String("channels")).toArray();
            QCOMPARE(channels.size(), 14);
            for (const QJsonValue value : channels) {
                QJsonObject channel = value.toObject();
                QVERIFY(channel.value(QLatin1String("takesPart")).isBool());
                QCOMPARE(wrongNumber(channel, numbers, true), QString());
                QCOMPARE(wrongNumber(channel, sortedKeys("pType qrsType tType"), false), QString());
                for (const QString& key : numbers)
                    nulls += channel.value(key).isNull();
                channel.remove(QStringLiteral("takesPart"));
                QCOMPARE(channel.keys(), numbers);
            }
        }
        // aVL is all but flat and aVR upside down: some points are not there.
        QVERIFY(nulls > 0);
    }

    void theTimesOfAChannelAreSeconds()
    {
        const QJsonObject lead = channelOf(analyse(), 7, 1);
        const double r = firstR + 7 * beatSeconds;
        QCOMPARE(lead.value(QLatin1String("takesPart")), QJsonValue(true));
        QVERIFY(std::abs(lead.value(QLatin1String("R")).toDouble() - r) < 0.009);
        QVERIFY(std::abs(lead.value(QLatin1String("P")).toDouble() - (r - 0.17)) < 0.016);
        QVERIFY(std::abs(lead.value(QLatin1String("T")).toDouble() - (r + 0.27)) < 0.02);
        QVERIFY(lead.value(QLatin1String("QRSon")).toDouble() < r);
        QVERIFY(lead.value(QLatin1String("QRSoff")).toDouble() > r);
        QCOMPARE(lead.value(QLatin1String("qrsType")), QJsonValue(1));
        const double duration = lead.value(QLatin1String("qrsDuration")).toDouble();
        QVERIFY(duration > 0.05 && duration < 0.12);
        QVERIFY(lead.value(QLatin1String("qt")).toDouble() > 0.3);
        QVERIFY(lead.value(QLatin1String("pq")).toDouble() > 0.05);
    }

    void theAverageIsThatOfTheLastSeconds()
    {
        const QJsonObject average = analyse().value(QLatin1String("average")).toObject();
        QCOMPARE(average.keys(), sortedKeys("dominantChannel beats meanRR complexes"));
        QVERIFY(average.value(QLatin1String("beats")).toInt() >= 8);
        QVERIFY(std::abs(average.value(QLatin1String("meanRR")).toDouble() - beatSeconds) < 0.009);
        const int dominant = average.value(QLatin1String("dominantChannel")).toInt(-1);
        QVERIFY(dominant >= 0 && dominant < 14);
        const QJsonArray complexes = average.value(QLatin1String("complexes")).toArray();
        QCOMPARE(complexes.size(), 14);
        for (const QJsonValue complex : complexes)
            QCOMPARE(complex.toArray().size(), 500);
        QVERIFY(complexes.at(1).toArray().at(225).toDouble() > 60.0);
        QVERIFY(complexes.at(3).toArray().at(225).toDouble() < -40.0);
    }

    void theWavesOfTheAverageAreSamples()
    {
        const QJsonArray channels = analyse().value(QLatin1String("delineation")).toArray();
        QCOMPARE(channels.size(), 14);
        const QStringList keys = sortedKeys("POn PPeak POff QRSOn R QRSOff TOn TPeak TOff");
        for (const QJsonValue value : channels) {
            QCOMPARE(value.toObject().keys(), keys);
            QCOMPARE(wrongNumber(value.toObject(), keys, true), QString());
        }
        const QJsonObject lead = channels.at(1).toObject();
        int last = 0;
        for (const char* key : {"POn", "PPeak", "POff", "QRSOn", "R", "QRSOff", "TOn", "TPeak", "TOff"}) {
            const int place = lead.value(QLatin1String(key)).toInt();
            QVERIFY2(place > last, key);
            last = place;
        }
        QVERIFY(std::abs(lead.value(QLatin1String("R")).toInt() - 225) <= 5);
    }

    void withoutWavesThereAreNoPAndNoT()
    {
        const QJsonObject analysis = analyse({"--no-waves"});
        QCOMPARE(timesOf(analysis).size(), 14);
        for (int beat = 0; beat < 14; ++beat) {
            const QJsonObject lead = channelOf(analysis, beat, 1);
            QVERIFY(lead.value(QLatin1String("R")).isDouble());
            for (const char* key : {"P", "T", "pq", "qt"})
                QVERIFY2(lead.value(QLatin1String(key)).isNull(), key);
            QCOMPARE(lead.value(QLatin1String("pType")), QJsonValue(0));
            QCOMPARE(lead.value(QLatin1String("tType")), QJsonValue(0));
        }
    }

    void refinementMovesPointsAndNothingElse()
    {
        const QJsonObject plain = analyse(), refined = analyse({"--refine"});
        QCOMPARE(timesOf(refined), timesOf(plain));
        int moved = 0;
        for (int beat = 0; beat < 14; ++beat) {
            const QJsonObject a = channelOf(plain, beat, 1), b = channelOf(refined, beat, 1);
            const double shift =
                a.value(QLatin1String("R")).toDouble() - b.value(QLatin1String("R")).toDouble();
            QVERIFY(std::abs(shift) <= 0.0141);
            moved += shift != 0.0;
            QCOMPARE(a.value(QLatin1String("qrsDuration")), b.value(QLatin1String("qrsDuration")));
        }
        QVERIFY(moved > 0);
    }

    void theTimeMayBeBounded()
    {
        const QList<double> all = timesOf(analyse());
        const QList<double> some = timesOf(analyse({"--start", "4.0", "--end", "8.5"}));
        QCOMPARE(some.size(), 5);
        for (const double t : some)
            QVERIFY(t >= 4.0 && t <= 8.5);
        QVERIFY(std::abs(some.first() - all.at(5)) < 0.009);
        QCOMPARE(timesOf(analyse({"--end", "1"})).size(), 1);
        QCOMPARE(timesOf(analyse({"--start", "1000"})).size(), 0);
        QCOMPARE(timesOf(analyse({"--start", "1e300"})).size(), 0);
    }

    void theStepsDoNotMatter_data()
    {
        QTest::addColumn<QByteArray>("block");
        for (const char* block : {"1", "51", "333", "40960"})
            QTest::newRow(block) << QByteArray(block);
    }

    void theStepsDoNotMatter()
    {
        QFETCH(QByteArray, block);
        const QList<double> expected = timesOf(analyse());
        const QList<double> times = timesOf(analyse({"--block", block.constData()}));
        QCOMPARE(times.size(), expected.size());
        for (int i = 0; i < times.size(); ++i)
            QVERIFY(std::abs(times.at(i) - expected.at(i)) < 0.0041);
    }

    void optionsMayStandBeforeTheId()
    {
        QCOMPARE(run({"analyse", "--no-waves", "--start", "4", m_id}).output,
                 run({"analyse", m_id, "--start", "4", "--no-waves"}).output);
    }

    void theStudyStaysAsItIs()
    {
        const QByteArray before = run({"show", m_id}).output;
        analyse({"--refine"});
        QCOMPARE(run({"show", m_id}).output, before);
    }

    void aStudyWithoutSamplesHasNothingToTell()
    {
        const TResult result = run({"analyse", m_emptyId});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.error, QByteArray());
        const QJsonObject analysis = result.lines().value(0);
        QCOMPARE(analysis.value(QLatin1String("beats")), QJsonValue(QJsonArray()));
        QCOMPARE(analysis.value(QLatin1String("duration")), QJsonValue(0.0));
        const QJsonObject average = analysis.value(QLatin1String("average")).toObject();
        QCOMPARE(average.value(QLatin1String("beats")), QJsonValue(0));
        QCOMPARE(average.value(QLatin1String("meanRR")), QJsonValue(0.0));
        const QJsonArray waves = analysis.value(QLatin1String("delineation")).toArray();
        QCOMPARE(waves.size(), 14);
        for (const QJsonValue channel : waves)
            for (const QJsonValue place : channel.toObject())
                QVERIFY(place.isNull());
    }

    void aWrongCommandLineIsToldInOneLine_data()
    {
        QTest::addColumn<QString>("words");
        for (const char* words : {"analyse",
                                  "analyse ID ID",
                                  "analyse x",
                                  "analyse 0",
                                  "analyse ID --bogus",
                                  "analyse ID --block",
                                  "analyse ID --block 0",
                                  "analyse ID --block -51",
                                  "analyse ID --block 5.5",
                                  "analyse ID --block x",
                                  "analyse ID --block 40961",
                                  "analyse ID --block 2147483647",
                                  "analyse ID --start",
                                  "analyse ID --start -1",
                                  "analyse ID --start x",
                                  "analyse ID --start nan",
                                  "analyse ID --start inf",
                                  "analyse ID --end 0",
                                  "analyse ID --end -1",
                                  "analyse ID --end x",
                                  "analyse ID --end nan",
                                  "analyse ID --refine --refine",
                                  "analyse ID --no-waves yes",
                                  "analyse ID --start 1 --start 2"})
            QTest::newRow(words) << QString::fromLatin1(words);
    }

    void aWrongCommandLineIsToldInOneLine()
    {
        QFETCH(QString, words);
        words.replace(QStringLiteral("ID"), QString::fromLatin1(m_id));
        const TResult result =
            runTool(QStringList{QStringLiteral("--data"), m_folder.path()} + words.split(QLatin1Char(' ')));
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(isErrorLine(result.error), result.error.constData());
    }

    void aBlockThatIsTooLargeIsToldWithTheLimit()
    {
        const TResult result = run({"analyse", m_id, "--block", "40961"});
        QCOMPARE(result.status, 2);
        QCOMPARE(result.error, QByteArray("40961 is not a valid block: 40960 frames at most\n"));
    }

    void beatsAreToldBeforeTheRest()
    {
        const QByteArray text = run({"analyse", m_id}).output;
        QVERIFY(text.startsWith("{\"beats\":[{"));
        QVERIFY(text.indexOf("\"average\":") > text.lastIndexOf("\"windowStart\":"));
    }

    void aStudyThatIsNotThereIsAFailure()
    {
        const TResult result = run({"analyse", "2000000000"});
        QCOMPARE(result.status, 1);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.error, QByteArray("Study file not found\n"));
    }

private:
    static QByteArray addRecording(LocalStudyDatabase& database, double length)
    {
        StudyInfo info = sampleInfoOf(QByteArray::number(length));
        Study* study = database.createStudy(info);
        if (length > 0.0)
            appendSampleRecording(*study, length);
        database.saveStudy(study);
        database.closeStudy(study);
        return QByteArray::number(info.id);
    }

    TResult run(const QList<QByteArray>& words) const
    {
        QStringList all{QStringLiteral("--data"), m_folder.path()};
        for (const QByteArray& word : words)
            all << QString::fromLatin1(word);
        return runTool(all);
    }

    /// The one object that the command prints; empty if it fails.
    QJsonObject analyse(const QList<QByteArray>& options = {}) const
    {
        const TResult result = run(QList<QByteArray>{"analyse", m_id} + options);
        const bool done = result.status == 0 && result.error.isEmpty() && result.output.count('\n') == 1;
        return done ? result.lines().value(0) : QJsonObject();
    }

    static QJsonObject channelOf(const QJsonObject& analysis, int beat, int channel)
    {
        const QJsonObject object = analysis.value(QLatin1String("beats")).toArray().at(beat).toObject();
        return object.value(QLatin1String("channels")).toArray().at(channel).toObject();
    }

    StoreFolder m_folder;
    QByteArray m_id;
    QByteArray m_emptyId;
};

QTEST_GUILESS_MAIN(AnalyseCommandTest)
#include "AnalyseCommandTest.moc"
