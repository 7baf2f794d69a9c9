#include "recorder/StageEvents.h"
#include "recorder/TStageRun.h"
#include "study/Study.h"

#include <QTranslator>
#include <QtTest>

namespace {

constexpr auto Rest = TStagePhase::Rest;
constexpr auto Exercise = TStagePhase::Exercise;
constexpr auto Recovery = TStagePhase::Recovery;

/// A test as the recorder leads through it: what was carried out stands in the study, the run stands on the
/// stage that follows.
class TTest
{
public:
    explicit TTest(const TStressProtocol& protocol) : m_protocol(protocol)
    {
        run.start(m_protocol);
        study.setProtocol(std::make_unique<TStressProtocol>(m_protocol.name(), m_protocol.type()));
    }

    /// The present stage ends at `now`.
    const TStudyEvent& end(double now)
    {
        study.protocol()->addStage(run.phase(), run.elapsed(now));
        run.moveTo(run.stageIndex() + 1, now);
        addStageEvent(study, run, now);
        return study.events().at(study.events().count() - 1);
    }

    Study study{1};
    TStageRun run;

private:
    TStressProtocol m_protocol;
};

TStressProtocol protocolOf(TProtocolType type, const QList<TStagePhase>& phases)
{
    TStressProtocol protocol("test", type);
    for (const TStagePhase phase : phases)
        protocol.addStage(phase, 60.0);
    return protocol;
}

/// Answers for one context alone.
class TSpanish : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        const bool isOurs = qstrcmp(context, "StressMonitorWindow") == 0;
        return isOurs ? QStringLiteral("es:") + QLatin1String(text) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class StageEventsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEventMarksTheLastElevenSeconds()
    {
        TTest test(protocolOf(TProtocolType::Treadmill, {Rest, Exercise}));
        const TStudyEvent& event = test.end(60.06);
        QCOMPARE(event.position, 60.06 - 11.0);
        QCOMPARE(event.duration, 11.0);
        QVERIFY(event.print);
        QCOMPARE(event.index, 0);
        QCOMPARE(event.description, QByteArray("Rest 1"));
    }

    void anEventNeverBeginsBeforeTheStudy()
    {
        TTest test(protocolOf(TProtocolType::Treadmill, {Rest, Exercise}));
        QCOMPARE(test.end(6.5).position, 0.0);
    }

    void stagesAreNumberedWithinTheirPhase_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("treadmill") << int(TProtocolType::Treadmill);
        QTest::newRow("ergometer") << int(TProtocolType::Ergometer);
        QTest::newRow("pharmacologic") << int(TProtocolType::Pharmacologic);
    }

    void stagesAreNumberedWithinTheirPhase()
    {
        QFETCH(int, type);
        TTest test(protocolOf(static_cast<TProtocolType>(type),
                              {Rest, Rest, Exercise, Exercise, Exercise, Recovery, Exercise, Recovery}));
        const QByteArrayList expected{"Rest 1",     "Rest 2",     "Exercise 1", "Exercise 2",
                                      "Exercise 3", "Recovery 1", "Exercise 1", "Recovery 1"};
        for (int i = 0; i < expected.size(); ++i) {
            const TStudyEvent& event = test.end(60.0 * (i + 1));
            QCOMPARE(event.description, expected.at(i));
            QVERIFY(event.print);
        }
        QCOMPARE(test.study.events().count(), expected.size());
    }

    void aStageTooShortForARowOfItsOwnIsMarkedAsTheOneItWentInto()
    {
        TTest test(protocolOf(TProtocolType::Treadmill, {Rest, Exercise, Exercise}));
        test.end(60.0);
        test.study.protocol()->stage(0).setDuration(63.0);
        test.run.moveTo(2, 63.0);
        addStageEvent(test.study, test.run, 63.0);
        QCOMPARE(test.study.events().count(), 2);
        QCOMPARE(test.study.events().at(1).description, QByteArray("Rest 1"));
        QCOMPARE(test.study.events().at(1).position, 52.0);
        QCOMPARE(test.end(123.0).description, QByteArray("Exercise 1"));
    }

    void theEventsOfATiltTestTellMinutesAndAreNotPrinted()
    {
        TTest test(TStressProtocol::tiltTest());
        const QByteArrayList expected{"Basal", "Control 3 min.", "Control 6 min.", "Control 9 min."};
        // Blocks end a little after the stage does.
        const QList<double> ends{600.06, 780.05, 960.02, 1140.09};
        for (int i = 0; i < expected.size(); ++i) {
            const TStudyEvent& event = test.end(ends.at(i));
            QCOMPARE(event.description, expected.at(i));
            QCOMPARE(event.position, ends.at(i) - 11.0);
            QVERIFY(!event.print);
        }
    }

    void minutesOfATiltTestAreWholeOnes()
    {
        TTest test(TStressProtocol::tiltTest());
        test.end(100.9); // the phase counts from 100
        QCOMPARE(test.end(159.9).description, QByteArray("Control 0 min."));
        QCOMPARE(test.end(160.0).description, QByteArray("Control 1 min."));
    }

    void theLastStageHasItsEventWhenTheTestIsStopped()
    {
        TTest test(protocolOf(TProtocolType::Treadmill, {Rest}));
        QCOMPARE(test.end(300.0).description, QByteArray("Rest 1"));
        QCOMPARE(test.run.stageIndex(), 0);
    }

    void aRestingEcgHasNoStageEvents()
    {
        TStressProtocol ecg("ECG", TProtocolType::Ecg);
        ecg.addStage(Rest, 60.0);
        Study study(1);
        TStageRun run;
        run.start(ecg);
        study.setProtocol(std::make_unique<TStressProtocol>(ecg));
        addStageEvent(study, run, 10.0);
        QCOMPARE(study.events().count(), 0);
    }

    void withoutAStageThatWasCarriedOutThereIsNoEvent()
    {
        Study study(1);
        const TStageRun run;
        addStageEvent(study, run, 10.0);
        study.setProtocol(std::make_unique<TStressProtocol>("empty", TProtocolType::Treadmill));
        addStageEvent(study, run, 10.0);
        QCOMPARE(study.events().count(), 0);
    }

    void labelsAreThoseOfTheMonitor()
    {
        for (const auto type : {TProtocolType::Treadmill, TProtocolType::Ergometer, TProtocolType::Ecg,
                                TProtocolType::Pharmacologic}) {
            QCOMPARE(stageLabel(type, Rest), QStringLiteral("Rest"));
            QCOMPARE(stageLabel(type, Exercise), QStringLiteral("Exercise"));
            QCOMPARE(stageLabel(type, Recovery), QStringLiteral("Recovery"));
        }
        QCOMPARE(stageLabel(TProtocolType::TiltTest, Rest), QStringLiteral("Basal"));
        QCOMPARE(stageLabel(TProtocolType::TiltTest, Exercise), QString());
        QCOMPARE(stageLabel(TProtocolType::TiltTest, Recovery), QStringLiteral("Control"));
    }

    void labelsAreTranslated()
    {
        TSpanish spanish;
        QVERIFY(QCoreApplication::installTranslator(&spanish));
        TTest test(protocolOf(TProtocolType::Treadmill, {Rest, Exercise}));
        QCOMPARE(test.end(60.0).description, QByteArray("es:Rest 1"));
        TTest tilt(TStressProtocol::tiltTest());
        tilt.end(600.0);
        QCOMPARE(tilt.end(780.0).description, QByteArray("es:Control 3 min."));
        QCoreApplication::removeTranslator(&spanish);
    }
};

QTEST_GUILESS_MAIN(StageEventsTest)
#include "StageEventsTest.moc"
