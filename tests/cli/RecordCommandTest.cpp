#include "cli/Recording.h"
#include "study/StoreFolder.h"
#include "study/TEcgFile.h"

#include <QJsonArray>
#include <QtEndian>
#include <QtTest>

#include <cmath>

namespace {

QJsonObject result(const QJsonObject& study, const char* name)
{
    return study.value(QLatin1String("results")).toObject().value(QLatin1String(name)).toObject();
}

QJsonArray resultList(const QJsonObject& study, const char* name)
{
    return result(study, name).value(QLatin1String("values")).toArray();
}

double resultValue(const QJsonObject& study, const char* name)
{
    return result(study, name).value(QLatin1String("value")).toDouble();
}

QList<double> numbers(const QJsonArray& array)
{
    QList<double> list;
    for (const QJsonValue value : array)
        list << value.toDouble();
    return list;
}

/// Rounded to six digits, as a table on paper gives them.
QList<double> rounded(QList<double> list)
{
    for (double& value : list)
        value = std::round(value * 1e6) / 1e6;
    return list;
}

QStringList eventTexts(const QJsonObject& study)
{
    QStringList texts;
    for (const QJsonValue event : study.value(QLatin1String("events")).toArray())
        texts << event.toObject().value(QLatin1String("description")).toString();
    return texts;
}

QList<int> durations(const QJsonObject& study)
{
    QList<int> list;
    const QJsonObject protocol = study.value(QLatin1String("protocol")).toObject();
    for (const QJsonValue stage : protocol.value(QLatin1String("stages")).toArray())
        list << stage.toObject().value(QLatin1String("duration")).toInt();
    return list;
}

} // namespace

/// Whole examinations of the demonstration, without waiting for its time to pass.
class RecordCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<StoreFolder>(); }

    void aTreadmillTestHasItsStagesInTheStudy()
    {
        const QJsonObject study = record(wordsOf(
            "DEMO --unpaced --protocol Bruce --stage-scale 20 --stop-after 110 --beats --bp 10:120/80 "
            "--bp 20:150/85 --event 12:mareo --patient lastName=Diaz --patient firstName=Eva"));
        // 15 s of rest, seven stages of 9 s, a recovery of 3 s that is too short for a row, 9 s and the rest.
        QCOMPARE(durations(study), (QList<int>{15, 9, 9, 9, 9, 9, 9, 12, 9, 20}));
        QCOMPARE(
            eventTexts(study).join(QLatin1Char(',')),
            QStringLiteral("mareo,Rest 1,Exercise 1,Exercise 2,Exercise 3,Exercise 4,Exercise 5,Exercise 6,"
                           "Exercise 7,Exercise 7,Recovery 1,Recovery 2"));
        // By the equations of walking and running, on paper.
        QCOMPARE(
            rounded(numbers(resultList(study, "METSPerStage"))),
            (QList<double>{1, 4.6, 7.019048, 9.382857, 11.975238, 14.790476, 16.92381, 19.194286, 1, 1}));
        QCOMPARE(resultValue(study, "maxMETS"), numbers(resultList(study, "METSPerStage")).at(7));
        QCOMPARE(std::round(resultValue(study, "maxVO2") * 1e6), 67180000.0);
        checkPressures(study);
        checkRates(study);
        checkSt(study);
        const QJsonObject texts = study.value(QLatin1String("study")).toObject();
        QCOMPARE(texts.value(QLatin1String("studyType")).toString(), QStringLiteral("Stress test"));
        QCOMPARE(texts.value(QLatin1String("protocolName")).toString(), QStringLiteral("Bruce"));
        const QJsonObject patient = study.value(QLatin1String("patient")).toObject();
        QCOMPARE(patient.value(QLatin1String("lastName")).toString(), QStringLiteral("Diaz"));
    }

    void linesTellWhatHappens()
    {
        const QJsonObject study =
            record(wordsOf("DEMO --unpaced --protocol Bruce --stage-scale 20 --stop-after 40"));
        const QList<QJsonObject> lines = m_recording->lines();
        QCOMPARE(lines.size(), 5);
        const QJsonObject started = lines.first();
        QCOMPARE(started.keys().join(QLatin1Char(',')),
                 QStringLiteral("baseFilename,channels,event,id,samplingRate"));
        QCOMPARE(started.value(QLatin1String("samplingRate")).toInt(), 500);
        QCOMPARE(started.value(QLatin1String("channels")),
                 study.value(QLatin1String("ecg")).toObject().value(QLatin1String("channels")));
        QCOMPARE(started.value(QLatin1String("baseFilename")),
                 study.value(QLatin1String("study")).toObject().value(QLatin1String("baseFilename")));
        for (int i = 1; i <= 3; ++i) {
            const QJsonObject stage = lines.at(i);
            QCOMPARE(stage.value(QLatin1String("event")).toString(), QStringLiteral("stage"));
            QCOMPARE(stage.value(QLatin1String("index")).toInt(), i);
            const double late = stage.value(QLatin1String("time")).toDouble() - (6.0 + 9.0 * i);
            QVERIFY2(late >= 0.0 && late < 0.102, qPrintable(QString::number(late)));
        }
        const QJsonObject finished = lines.last();
        QCOMPARE(finished.value(QLatin1String("event")).toString(), QStringLiteral("finished"));
        QCOMPARE(finished.value(QLatin1String("id")), started.value(QLatin1String("id")));
        QCOMPARE(finished.value(QLatin1String("samples")),
                 study.value(QLatin1String("ecg")).toObject().value(QLatin1String("samples")));
        QCOMPARE(finished.value(QLatin1String("beats")), study.value(QLatin1String("beats")));
        QCOMPARE(finished.value(QLatin1String("samples")).toInt(), 20043); // 393 blocks of 51
        QVERIFY(finished.value(QLatin1String("beats")).toInt() > 30);
    }

    void beatsAreToldIfAskedFor()
    {
        record(wordsOf("DEMO --unpaced --ecg --stop-after 30 --beats"));
        const QList<QJsonObject> beats = m_recording->lines("beat");
        QVERIFY(beats.size() > 25);
        QCOMPARE(m_recording->lines("finished").first().value(QLatin1String("beats")).toInt(), beats.size());
        double last = -1.0;
        for (const QJsonObject& beat : beats) {
            const double time = beat.value(QLatin1String("time")).toDouble();
            QVERIFY(time > last && time < 30.1);
            last = time;
        }
        const double rr = beats.at(9).value(QLatin1String("rr")).toDouble();
        QVERIFY(rr > 0.4 && rr < 1.5);
        QCOMPARE(beats.at(9).value(QLatin1String("bpm")).toDouble(), 60.0 / rr);
        QVERIFY(beats.at(0).value(QLatin1String("rr")).isNull());
    }

    void samplesAreThoseOfTheDevice()
    {
        const QJsonObject study = record(wordsOf("DEMO --unpaced --ecg --stop-after 5"));
        const QJsonObject ecg = study.value(QLatin1String("ecg")).toObject();
        QCOMPARE(ecg.value(QLatin1String("rangeMax")).toDouble(), 300.0);
        QCOMPARE(ecg.value(QLatin1String("resolution")).toInt(), 16);
        const QByteArray demo = contentOf(QStringLiteral(ECG500));
        LocalStudyDatabase database(m_folder->path());
        TEcgFile& stored = *database.openStudy(m_recording->id())->ecg();
        QCOMPARE(stored.sampleCount(), 2550);
        int wrong = 0;
        for (int i = 0; i < stored.sampleCount() * 14; ++i)
            wrong += stored.sample(i % 14, i / 14) != qFromLittleEndian<qint16>(demo.constData() + 2 * i);
        QCOMPARE(wrong, 0);
    }

    void withoutPacingARunIsLikeTheOther()
    {
        const QStringList options =
            wordsOf("DEMO --unpaced --protocol Bruce --stage-scale 20 --stop-after 60 --bp 33:150/85");
        const QJsonObject first = record(options);
        const QJsonObject second = record(options);
        for (const char* key : {"results", "events", "protocol", "ecg", "beats"})
            QCOMPARE(first.value(QLatin1String(key)), second.value(QLatin1String(key)));
        QVERIFY(first.value(QLatin1String("study")) != second.value(QLatin1String("study")));
    }

    void anErgometerTestKnowsTheWeight()
    {
        const QJsonObject study = record(
            wordsOf("DEMO --unpaced --protocol Who --stage-scale 20 --stop-after 40 --patient weight=70"));
        QCOMPARE(rounded(numbers(resultList(study, "METSPerStage"))),
                 (QList<double>{2, 3.102041, 4.204082, 5.306122}));
        QCOMPARE(eventTexts(study).last(), QStringLiteral("Exercise 3"));
        const QJsonObject weightless =
            record(wordsOf("DEMO --unpaced --protocol Who --stage-scale 20 --stop-after 20"));
        QCOMPARE(numbers(resultList(weightless, "METSPerStage")), (QList<double>{0, 0}));
    }

    void aPharmacologicTestHasNoLoad()
    {
        {
            LocalStudyDatabase database(m_folder->path());
            TStressProtocol protocol("Dobutamine", TProtocolType::Pharmacologic);
            protocol.addStage(TStagePhase::Rest, 10.0);
            for (const double dose : {5.0, 10.0})
                protocol.addStage(TStagePhase::Exercise, 10.0).setValue(TProtocolStage::doseKey, dose);
            database.setProtocol("Dobutamine", protocol);
        }
        const QJsonObject study = record(wordsOf("DEMO --unpaced --protocol Dobutamine --stop-after 32"));
        QCOMPARE(numbers(resultList(study, "METSPerStage")), (QList<double>{0, 0, 0}));
        QCOMPARE(eventTexts(study).join(QLatin1Char(',')), QStringLiteral("Rest 1,Exercise 1,Exercise 2"));
        const QJsonObject protocol = study.value(QLatin1String("protocol")).toObject();
        QCOMPARE(protocol.value(QLatin1String("type")).toString(), QStringLiteral("pharmacologic"));
        QCOMPARE(
            protocol.value(QLatin1String("stages")).toArray().at(2).toObject().value(QLatin1String("dose")),
            QJsonValue(10.0));
    }

    void aTiltTestTakesThreeChannelsAndTellsMinutes()
    {
        const QJsonObject study = record(wordsOf("DEMO --unpaced --tilt --stop-after 970"));
        QCOMPARE(study.value(QLatin1String("ecg")).toObject().value(QLatin1String("channels")).toArray(),
                 (QJsonArray{QStringLiteral("II"), QStringLiteral("V2"), QStringLiteral("V5")}));
        QCOMPARE(durations(study), (QList<int>{600, 180, 180, 10}));
        QCOMPARE(eventTexts(study).join(QLatin1Char(',')),
                 QStringLiteral("Basal,Control 3 min.,Control 6 min.,Control 6 min."));
        for (const QJsonValue event : study.value(QLatin1String("events")).toArray())
            QCOMPARE(event.toObject().value(QLatin1String("print")), QJsonValue(false));
        const QJsonObject texts = study.value(QLatin1String("study")).toObject();
        QCOMPARE(texts.value(QLatin1String("studyType")).toString(), QStringLiteral("Tilt test"));
        QCOMPARE(texts.value(QLatin1String("protocolName")).toString(), QStringLiteral("Tilt test"));
    }

    void aRestingEcgIsOneStageWithoutEvents()
    {
        const QJsonObject study = record(wordsOf("DEMO --unpaced --ecg --stop-after 20"));
        QCOMPARE(durations(study), QList<int>{20});
        QVERIFY(study.value(QLatin1String("events")).toArray().isEmpty());
        const QJsonObject protocol = study.value(QLatin1String("protocol")).toObject();
        QCOMPARE(protocol.value(QLatin1String("type")).toString(), QStringLiteral("ecg"));
        QCOMPARE(protocol.value(QLatin1String("name")).toString(), QStringLiteral("ECG"));
        const QJsonObject texts = study.value(QLatin1String("study")).toObject();
        QCOMPARE(texts.value(QLatin1String("studyType")).toString(), QStringLiteral("ECG"));
        QCOMPARE(texts.value(QLatin1String("recordingDateTime")).toString().size(), 14);
        QVERIFY(m_recording->lines("stage").isEmpty());
    }

    void actionsAreDoneAtTheirTimes()
    {
        const QJsonObject study =
            record(wordsOf("DEMO --unpaced --protocol Bruce --stop-after 60 --recovery 45 --next-stage 30 "
                           "--next-stage 20 --event 38:a --event 7.5:b --bp 25:140/90 --next-stage 61"));
        QList<int> stages;
        for (const QJsonObject& line : m_recording->lines("stage"))
            stages << line.value(QLatin1String("index")).toInt();
        QCOMPARE(stages, (QList<int>{1, 2, 8}));
        QCOMPARE(durations(study), (QList<int>{20, 10, 15, 15}));
        QCOMPARE(eventTexts(study).join(QLatin1Char(',')),
                 QStringLiteral("b,Rest 1,Exercise 1,a,Exercise 2,Recovery 1"));
        const QJsonObject event = study.value(QLatin1String("events")).toArray().at(0).toObject();
        QCOMPARE(event.value(QLatin1String("position")).toDouble(), 7.5);
        QCOMPARE(event.value(QLatin1String("duration")).toDouble(), 7.0);
        QCOMPARE(event.value(QLatin1String("print")), QJsonValue(true));
        QCOMPARE(numbers(resultList(study, "sysBPPerStage")), (QList<double>{0, 140, 0, 0}));
        QCOMPARE(numbers(resultList(study, "diaBPPerStage")), (QList<double>{0, 90, 0, 0}));
    }

    void theDemonstrationIsFoundWithTheProgram()
    {
        TRecording recording(m_folder->path(), wordsOf("--source demo --unpaced --ecg --stop-after 1"));
        recording.process.setWorkingDirectory(m_folder->outside());
        QCOMPARE(recording.run(), 0);
        QCOMPARE(recording.error(), QByteArray());
    }

    void twoStudiesOfAPatientWithinASecondAreBothKept()
    {
        const QStringList options = wordsOf("DEMO --unpaced --ecg --stop-after 1 --patient lastName=Diaz");
        for (int i = 0; i < 3; ++i)
            record(options);
        LocalStudyDatabase database(m_folder->path());
        QCOMPARE(database.listStudies().size(), size_t(3));
    }

private:
    /// The study that a recording leaves.
    QJsonObject record(const QStringList& options)
    {
        m_recording = std::make_unique<TRecording>(m_folder->path(), options);
        const int status = m_recording->run();
        const QByteArray error = m_recording->error();
        if (status != 0 || !error.isEmpty())
            qWarning("status %d, %s", status, error.constData());
        return status == 0 && error.isEmpty() ? shown(m_folder->path(), m_recording->id()) : QJsonObject();
    }

    static void checkPressures(const QJsonObject& study)
    {
        const QList<double> systolic = numbers(resultList(study, "sysBPPerStage"));
        QCOMPARE(systolic, (QList<double>{120, 150, 0, 0, 0, 0, 0, 0, 0, 0}));
        QCOMPARE(numbers(resultList(study, "diaBPPerStage")),
                 (QList<double>{80, 85, 0, 0, 0, 0, 0, 0, 0, 0}));
        const QList<double> rates = numbers(resultList(study, "BPMPerStage"));
        const QList<double> products = numbers(resultList(study, "DPPerStage"));
        for (int i = 0; i < 10; ++i)
            QCOMPARE(products.value(i), rates.value(i) * systolic.at(i));
        QCOMPARE(resultValue(study, "maxSysBP"), 150.0);
        QCOMPARE(resultValue(study, "maxDiaBP"), 85.0);
        QCOMPARE(resultValue(study, "maxDP"), *std::max_element(products.begin(), products.end()));
        const TTrend trend = trendOf(study, "sysBPTrend");
        QCOMPARE(trend.times, (QList<double>{10, 20}));
        QCOMPARE(trend.values, (QList<double>{120, 150}));
        QCOMPARE(trendOf(study, "DPTrend").times, trend.times);
    }

    /// The rate of a stage is the smoothed one of its last beat before the change.
    void checkRates(const QJsonObject& study)
    {
        const TTrend trend = trendOf(study, "BPMTrend");
        QVERIFY(trend.times.size() > 140);
        const QList<double> rates = numbers(resultList(study, "BPMPerStage"));
        QCOMPARE(rates.size(), 10);
        const QList<double> ends = lastBeatsOfStages();
        for (int i = 0; i < 7; ++i) { // the eighth begins afresh within its row
            const int last = trend.times.indexOf(ends.at(i));
            QVERIFY(last > 0);
            QCOMPARE(rates.at(i), std::trunc(trend.values.at(last)));
            QVERIFY(rates.at(i) > 40.0 && rates.at(i) < 220.0);
        }
        QCOMPARE(resultValue(study, "maxBPM"), *std::max_element(rates.begin(), rates.end()));
    }

    void checkSt(const QJsonObject& study)
    {
        constexpr int v5 = 10;
        const QList<double> ends = lastBeatsOfStages();
        for (const char* kind : {"Level", "Slope"}) {
            const auto name = [kind](const char* form, int channel) {
                return QByteArray("ST") + kind + form + '(' + QByteArray::number(channel) + ')';
            };
            for (int channel = 0; channel < 14; ++channel) {
                QVERIFY(trendOf(study, name("Trend", channel).constData()).times.size() > 100);
                QCOMPARE(resultList(study, name("PerStage", channel).constData()).size(), 10);
            }
            // The mean over the beats of the fourth stage.
            const TTrend trend = trendOf(study, name("Trend", v5).constData());
            double sum = 0.0;
            int count = 0;
            for (int i = 0; i < trend.times.size(); ++i) {
                if (trend.times.at(i) > ends.at(2) && trend.times.at(i) <= ends.at(3)) {
                    sum += trend.values.at(i);
                    ++count;
                }
            }
            QVERIFY(count > 8);
            const double mean = numbers(resultList(study, name("PerStage", v5).constData())).at(3);
            QVERIFY(std::fabs(mean - sum / count) < 1e-9 && mean != 0.0);
        }
    }

    /// The times of the last beats that were told before each change of stage.
    QList<double> lastBeatsOfStages()
    {
        QList<double> ends;
        double time = 0.0;
        for (const QJsonObject& line : m_recording->lines()) {
            const QString event = line.value(QLatin1String("event")).toString();
            if (event == QLatin1String("beat"))
                time = line.value(QLatin1String("time")).toDouble();
            else if (event == QLatin1String("stage"))
                ends << time;
        }
        return ends;
    }

    struct TTrend
    {
        QList<double> times;
        QList<double> values;
    };

    static TTrend trendOf(const QJsonObject& study, const char* name)
    {
        const QJsonObject trend = result(study, name);
        return {numbers(trend.value(QLatin1String("timestamps")).toArray()),
                numbers(trend.value(QLatin1String("values")).toArray())};
    }

    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<TRecording> m_recording;
};

QTEST_GUILESS_MAIN(RecordCommandTest)
#include "RecordCommandTest.moc"
