#include "recorder/TStudyRecorder.h"

#include "recorder/RecorderSession.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "study/TRampProtocol.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

/// What the results of a stage are computed from: its beats, as they were told.
struct TToldBeat
{
    int stage = 0;
    double time = 0.0;
    double meanRR = 0.0;
};

std::vector<double> smoothedRates(const std::vector<TToldBeat>& beats, int stage)
{
    std::vector<double> rates;
    for (const TToldBeat& beat : beats) {
        if (beat.stage != stage || beat.meanRR <= 0.0)
            continue;
        const double rate = 60.0 / beat.meanRR;
        rates.push_back(rates.empty() ? rate : 0.8 * rates.back() + 0.2 * rate);
    }
    return rates;
}

/// Mean over the beats of a stage of what a trend tells of them.
double stageMean(const TResultTrend& trend, const std::vector<TToldBeat>& beats, int stage)
{
    double mean = 0.0;
    int count = 0;
    for (const TToldBeat& beat : beats) {
        if (beat.stage != stage)
            continue;
        const auto found = std::find(trend.times().begin(), trend.times().end(), beat.time);
        if (found != trend.times().end())
            mean = (count * mean + trend.valueAtIndex(int(found - trend.times().begin()))) / (count + 1);
        ++count;
    }
    return mean;
}

bool isNear(double value, double expected)
{
    return std::abs(value - expected) < 1e-9;
}

} // namespace

class StudyRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeTestGivesTheValuesOfItsStages()
    {
        const TStressProtocol protocol = treadmillTest(12.0);
        RecorderSession session(&protocol);
        std::vector<TToldBeat> beats;
        session.observer.onBeat = [&] {
            const TBeat& beat = session.observer.beats.back();
            if (session.recorder->isRecording() && beat.windowStart() >= 0.0)
                beats.push_back({session.recorder->stageRun().stageIndex(), beat.value(TBeat::beatTime),
                                 beat.value(TBeat::meanRR)});
        };
        session.run(6.0);
        session.start();
        session.run(70.0);
        session.recorder->finishStudy();

        QCOMPARE(session.stages(), (QList<double>{12.0, 12.0, 12.0, 12.0, 22.0}));
        QVERIFY(beats.size() > 60);
        QCOMPARE(session.trend("BPMTrend").count(), int(beats.size()));
        const double mets[] = {1.0, 4.6, 8.33333333333, 1.95238095238, 1.0};
        double maxBpm = 0.0;
        for (int stage = 0; stage < 5; ++stage) {
            const auto rates = smoothedRates(beats, stage);
            QVERIFY(rates.size() > 8);
            QCOMPARE(session.list("BPMPerStage").at(stage), std::trunc(rates.back()));
            QVERIFY(isNear(session.list("METSPerStage").at(stage), mets[stage]));
            maxBpm = std::max(maxBpm, std::trunc(rates.back()));
        }
        QCOMPARE(session.value("maxBPM"), maxBpm);
        QVERIFY(isNear(session.value("maxMETS"), 8.33333333333));
        QVERIFY(isNear(session.value("maxVO2"), 29.16666666667));
        for (const int channel : {0, 6, 10, 13}) {
            const auto name = [channel](const char* pattern) {
                return TStudyResults::channelName(pattern, channel);
            };
            QVERIFY(session.trend(name("STLevelTrend(%i)")).count() > int(beats.size()) / 2);
            for (int stage = 0; stage < 5; ++stage) {
                QVERIFY(isNear(session.list(name("STLevelPerStage(%i)")).at(stage),
                               stageMean(session.trend(name("STLevelTrend(%i)")), beats, stage)));
                QVERIFY(isNear(session.list(name("STSlopePerStage(%i)")).at(stage),
                               stageMean(session.trend(name("STSlopeTrend(%i)")), beats, stage)));
            }
        }
        QCOMPARE(session.study->recordingDateTime(), QByteArray("20240105093101"));
        QCOMPARE(session.log,
                 (QStringList{QStringLiteral("started"), QStringLiteral("stage"), QStringLiteral("stage"),
                              QStringLiteral("stage"), QStringLiteral("stage"), QStringLiteral("stage"),
                              QStringLiteral("finished")}));
    }

    void theTrendsFollowTheHeartRateAndTheLoad()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(25.0);
        const TResultTrend& bpm = session.trend("BPMTrend");
        std::vector<double> expected;
        int stage = 0;
        double smoothed = 0.0;
        for (const TBeat& beat : session.observer.beats) {
            // A beat is found a good second after it was; which stage then runs, METS tell.
            const double mets = session.trend("METSTrend").valueAt(beat.value(TBeat::beatTime));
            const int now = isNear(mets, 1.0) ? 0 : isNear(mets, 4.6) ? 1 : 2;
            if (now != stage)
                smoothed = 0.0;
            stage = now;
            if (beat.value(TBeat::meanRR) <= 0.0)
                continue;
            const double rate = 60.0 / beat.value(TBeat::meanRR);
            smoothed = smoothed == 0.0 ? rate : 0.8 * smoothed + 0.2 * rate;
            expected.push_back(smoothed);
        }
        QCOMPARE(stage, 2);
        QCOMPARE(bpm.count(), int(expected.size()));
        for (int i = 0; i < bpm.count(); ++i)
            QVERIFY(isNear(bpm.valueAtIndex(i), expected[i]));
        QCOMPARE(session.recorder->smoothedBpm(), expected.back());
    }

    void theFileHoldsTheSamplesFromStartToEnd()
    {
        RecorderSession session;
        session.run(3.02);
        const int first = session.frame;
        session.start();
        for (const int frames : {51, 1, 500, 2500, 7})
            session.block(frames);
        session.recorder->finishStudy();
        session.run(1.0);
        TEcgFile& ecg = *session.study->ecg();
        QCOMPARE(ecg.sampleCount(), 51 + 1 + 500 + 2500 + 7);
        for (int channel = 0; channel < RecorderSession::channels; ++channel) {
            for (int i = 0; i < ecg.sampleCount(); ++i)
                QCOMPARE(ecg.sample(channel, i), int(RecorderSession::sampleAt(channel, first + i)));
        }
    }

    void samplesAndBeatsAreOutWithEachBlock()
    {
        RecorderSession session;
        session.start();
        for (int i = 0; i < 100; ++i) {
            session.block(RecorderSession::blockFrames);
            QCOMPARE(QFileInfo(session.folder.ecgFile(session.info.baseFilename)).size(),
                     qint64(4096 + (i + 1) * RecorderSession::blockFrames * 28));
            QCOMPARE(QFileInfo(session.folder.beatsFile(session.info.baseFilename)).size(),
                     qint64(256 + session.study->beats()->count() * (56 + 80 * 14)));
        }
        QVERIFY(session.study->beats()->count() > 5);
    }

    void aBeatThatBeganBeforeTheStudyIsShownButNotStored()
    {
        RecorderSession session;
        session.run(8.0);
        session.observer.beats.clear();
        session.start();
        session.run(10.0);
        std::vector<TBeat> stored;
        int shownOnly = 0;
        for (const TBeat& beat : session.observer.beats) {
            if (beat.windowStart() >= 0.0)
                stored.push_back(beat);
            else
                ++shownOnly;
        }
        QVERIFY(shownOnly > 0);
        TBeatFile& file = *session.study->beats();
        int valid = 0;
        for (int i = 0; i < file.count(); ++i) {
            TBeat beat;
            QVERIFY(file.read(i, beat));
            QVERIFY(beat.windowStart() >= 0.0);
            if (!beat.valid())
                continue;
            QCOMPARE(beat.windowStart(), stored.at(valid).windowStart());
            QCOMPARE(beat.value(TBeat::beatTime), stored.at(valid).value(TBeat::beatTime));
            QCOMPARE(beat.fiducial(10, TBeat::rPosition), stored.at(valid).fiducial(10, TBeat::rPosition));
            ++valid;
        }
        QCOMPARE(valid, int(stored.size()));
        QCOMPARE(session.trend("METSTrend").count(), valid);
        QVERIFY(session.trend("METSTrend").timeAt(0) >= 0.0);
    }

    void beatsAreToldWithTheirPlaceInTheStudy()
    {
        RecorderSession session;
        session.run(8.0);
        session.observer.beats.clear();
        session.start();
        session.run(10.0);
        TBeatFile& file = *session.study->beats();
        for (const TBeat& beat : session.observer.beats) {
            TBeat stored;
            QCOMPARE(file.read(beat.index(), stored), beat.windowStart() >= 0.0);
            if (beat.windowStart() >= 0.0)
                QCOMPARE(stored.windowStart(), beat.windowStart());
        }
    }

    void withoutAStudyBeatsCountFromTheStartOfTheAcquisition()
    {
        RecorderSession session;
        session.run(15.0);
        QVERIFY(session.observer.beats.size() > 5);
        QVERIFY(session.observer.beats.back().windowStart() > 10.0);
        QCOMPARE(session.study->beats()->count(), 0);
        QCOMPARE(session.study->ecg()->sampleCount(), 0);
        QCOMPARE(session.trend("METSTrend").count(), 0);
        QCOMPARE(session.observer.updates, 150);
        QCOMPARE(session.recorder->duration(), 0.0);
        QVERIFY(!session.recorder->isRecording());
        QVERIFY(session.log.isEmpty());
    }

    void theAcquisitionGoesOnAfterTheEnd()
    {
        RecorderSession session;
        session.start();
        session.run(8.0);
        session.recorder->finishStudy();
        const int stored = session.study->beats()->count();
        session.observer.beats.clear();
        session.run(8.0);
        QVERIFY(session.observer.beats.size() > 5);
        QCOMPARE(session.study->beats()->count(), stored);
        QCOMPARE(session.study->ecg()->sampleCount(), 4000);
    }

    void startAndEndHappenOnce()
    {
        RecorderSession session;
        session.recorder->finishStudy();
        QVERIFY(session.log.isEmpty());
        session.start();
        session.run(1.0);
        session.recorder->startStudy("20250101000000");
        QCOMPARE(session.recorder->duration(), 1.0);
        session.recorder->finishStudy();
        session.recorder->finishStudy();
        session.start();
        QCOMPARE(session.log, (QStringList{QStringLiteral("started"), QStringLiteral("finished")}));
        QCOMPARE(session.study->recordingDateTime(), QByteArray("20240105093101"));
        QVERIFY(!session.recorder->isRecording());
    }

    void aStudyWithoutProtocolHasTrendsButNoStages()
    {
        RecorderSession session;
        session.start();
        session.recorder->nextStage();
        session.recorder->goToRecovery();
        session.run(15.0);
        session.recorder->addBloodPressure(9.0, 120.0, 80.0);
        session.recorder->finishStudy();
        QVERIFY(!session.study->protocol());
        QVERIFY(session.trend("BPMTrend").count() > 5);
        QCOMPARE(session.trend("sysBPTrend").count(), 1);
        QCOMPARE(session.value("maxBPM"), 0.0);
        QCOMPARE(session.value("maxSysBP"), 0.0);
        QCOMPARE(session.log, (QStringList{QStringLiteral("started"), QStringLiteral("finished")}));
    }

    void aRampIsSentWithEachBlockAndStaysAtItsEnd()
    {
        TRampProtocol ramp;
        ramp.durationMinutes = 1;
        ramp.initialSpeed = 0.0;
        ramp.finalSpeed = 6.0;
        ramp.initialIncline = 0.0;
        ramp.finalIncline = 12.0;
        FakeEquipment treadmill;
        RecorderSession session(&ramp, &treadmill);
        session.run(2.0);
        QCOMPARE(treadmill.takeCalls(), QString());
        session.start();
        session.block(500);
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("start, speed 0.1, incline 0.2, commit"));
        session.run(29.0);
        QCOMPARE(treadmill.calls.size(), 290 * 3);
        QCOMPARE(treadmill.takeCalls().right(27), QStringLiteral(" speed 3, incline 6, commit"));
        session.run(32.0);
        QCOMPARE(treadmill.takeCalls().right(28), QStringLiteral(" speed 6, incline 12, commit"));
        // 100 m/min on 12 %: (10.8 + 20 + 3.5) / 3.5
        QVERIFY(isNear(session.trend("METSTrend").valueAt(61.0), 9.8));
        session.recorder->finishStudy();
        QCOMPARE(treadmill.takeCalls(), QStringLiteral("stop"));
        session.run(1.0);
        QCOMPARE(treadmill.takeCalls(), QString());
        QVERIFY(!session.study->protocol());
        QCOMPARE(session.value("maxMETS"), 0.0);
    }

    void ergometersGoByTheWeightOfThePatient_data()
    {
        QTest::addColumn<QByteArray>("weight");
        QTest::addColumn<double>("mets");
        QTest::newRow("80 kg") << QByteArray("80") << 20.5 / 3.5;
        QTest::newRow("67.5 kg") << QByteArray("67.5") << 23.0 / 3.5;
        QTest::newRow("none") << QByteArray() << 0.0;
        QTest::newRow("a word") << QByteArray("heavy") << 0.0;
        QTest::newRow("no number of the world") << QByteArray("nan") << 0.0;
        QTest::newRow("no end of it") << QByteArray("inf") << 0.0;
    }

    void ergometersGoByTheWeightOfThePatient()
    {
        QFETCH(QByteArray, weight);
        QFETCH(double, mets);
        TStressProtocol protocol("Bicycle", TProtocolType::Ergometer);
        protocol.addStage(TStagePhase::Exercise, 30.0, 100.0);
        FakeEquipment ergometer(TEquipment::Ergometer);
        RecorderSession session(&protocol, &ergometer);
        session.study->setValue("patient/weight", weight);
        session.start();
        QCOMPARE(ergometer.takeCalls(), QStringLiteral("start, workload 100, commit"));
        session.run(6.0);
        session.recorder->finishStudy();
        QVERIFY(isNear(session.list("METSPerStage").at(0), mets));
        QVERIFY(isNear(session.value("maxVO2"), 3.5 * mets));
    }

    void anExaminationCanBeLeftWhileItRuns()
    {
        FakeEquipment treadmill;
        const TStressProtocol protocol = treadmillTest();
        RecorderSession session(&protocol, &treadmill);
        session.start();
        session.run(3.0);
        session.recorder.reset();
        QCOMPARE(session.study->ecg()->sampleCount(), 1500);
        QCOMPARE(session.log, QStringList{QStringLiteral("started")});
    }

    void theFirstComplexIsTheReference()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(9.9);
        QVERIFY(!session.recorder->averageBeat().hasReference());
        session.run(0.1);
        QVERIFY(session.recorder->averageBeat().hasReference());
        const std::vector<double> reference = session.recorder->averageBeat().reference(10).values();
        QCOMPARE(session.recorder->averageBeat().complex(10).values(), reference);
        session.run(25.0);
        QCOMPARE(session.recorder->averageBeat().reference(10).values(), reference);
        QVERIFY(session.recorder->averageBeat().complex(10).values() != reference);
    }

    void theStPointsLieAroundTheJunction()
    {
        RecorderSession session;
        session.start();
        session.run(12.0);
        const TStPoints points = session.recorder->stPoints(10);
        const int r = session.recorder->averageBeat().rOffset();
        QVERIFY(points.base < r && r < points.j && points.st == points.j + 36);
        session.recorder->setStMethod(TStMeter::FixedPoints);
        session.run(2.0);
        QCOMPARE(session.recorder->stPoints(10).j, r + 20);
    }

    void thePulsesOfAPacemakerCountFromTheStartOfTheStudy()
    {
        RecorderSession session;
        const auto pulse = [&session](int sample) {
            QMetaObject::invokeMethod(&session.recorder->driver(), "reportPulse", Qt::DirectConnection,
                                      Q_ARG(int, sample));
        };
        session.run(2.0);
        pulse(700);
        session.start();
        pulse(999);
        pulse(1000);
        pulse(1250);
        session.recorder->finishStudy();
        pulse(1500);
        QCOMPARE(session.list("pacemakerPulses"), (std::vector<double>{0.0, 0.5}));
        QCOMPARE(session.recorder->pacemakerPulses(), (std::vector<int>{700, 999, 1000, 1250, 1500}));
    }

    void theDocumentIsWrittenAtTheStartAtEachStageAndAtTheEnd()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        QCOMPARE(session.store.saves, 1);
        session.run(9.9);
        QCOMPARE(session.store.saves, 1);
        session.run(0.1);
        QCOMPARE(session.store.saves, 2);
        session.recorder->nextStage();
        QCOMPARE(session.store.saves, 3);
        session.recorder->finishStudy();
        QCOMPARE(session.store.saves, 4);
    }

    void whatIsTypedInIsWrittenAtOnce()
    {
        RecorderSession session;
        session.recorder->addEvent(0.0, 1.0, "too early");
        session.start();
        session.run(8.0);
        const int saves = session.store.saves;
        session.recorder->addBloodPressure(7.5, 120.0, 80.0);
        QCOMPARE(session.store.saves, saves + 1);
        session.recorder->addEvent(7.25, 3.0, "dizzy");
        session.recorder->addEvent(std::numeric_limits<double>::infinity(), 3.0, "never");
        QCOMPARE(session.store.saves, saves + 2);

        const auto stored = loadStudy(session.folder.studyFile(session.info.baseFilename));
        QVERIFY(stored);
        QCOMPARE(stored->results().trend("sysBPTrend")->values(), std::vector<double>{120.0});
        QCOMPARE(stored->events().count(), 1);
        QCOMPARE(stored->events().at(0).position, 7.25);
        QCOMPARE(stored->events().at(0).duration, 3.0);
        QCOMPARE(stored->events().at(0).description, QByteArray("dizzy"));
    }

    void theLastBeatIsTheOneThatWasTold()
    {
        RecorderSession session;
        QVERIFY(!session.recorder->lastBeat());
        bool same = true;
        session.observer.onBeat = [&] {
            const double told = session.observer.beats.back().value(TBeat::beatTime);
            same = same && session.recorder->lastBeat()->value(TBeat::beatTime) == told;
        };
        session.run(5.0);
        session.start();
        session.run(5.0);
        QVERIFY(session.observer.beats.size() > 5 && same);
    }

    void whatCannotBeWrittenIsToldOnceAndTheExaminationGoesOn()
    {
        const TStressProtocol protocol = treadmillTest(10.0);
        RecorderSession session(&protocol);
        session.start();
        session.run(1.0);
        QVERIFY(QFile::remove(session.folder.ecgFile(session.info.baseFilename)));
        session.run(11.0);
        session.recorder->finishStudy();
        const QString failure = QStringLiteral("failed: ") + QLatin1String(TStudyWriter::failureText);
        QCOMPARE(session.log.count(failure), 1);
        QCOMPARE(session.observer.updates, 120);
        QCOMPARE(session.stages(), (QList<double>{12.0}));
    }

    void theSignalShownIsThatOfTheFilters()
    {
        RecorderSession session;
        TSignal* const plain = session.recorder->monitorSignal();
        QCOMPARE(plain->samplingRate(), 500);
        TSignal* const filtered = session.recorder->setFilters(true, true, true);
        QCOMPARE(session.recorder->monitorSignal(), filtered);
        session.run(3.0);
        QCOMPARE(session.recorder->rawSignal().sampleCount(), 1500);
        QVERIFY(filtered->sampleCount() > 0 && filtered->sampleCount() < 1500);
    }
};

QTEST_GUILESS_MAIN(StudyRecorderTest)

#include "StudyRecorderTest.moc"
