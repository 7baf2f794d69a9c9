#include "DebugTexts.h"
#include "KipnetSession.h"

#include <QtTest>

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;

TEquipmentSimulatorOptions fault(TFault kind, int after = 0, int times = -1, int lateMs = 0)
{
    TEquipmentSimulatorOptions options;
    options.fault = kind;
    options.faultAfter = after;
    options.faultTimes = times;
    options.lateMs = lateMs;
    return options;
}

TKipnetTimes impatient(int timeoutMs = 50)
{
    TKipnetTimes times = TKipnetSession::shortTimes();
    times.timeoutMs = timeoutMs;
    times.lastWordsMs = 50;
    return times;
}

bool isToldTo(const TDebugTexts& debug, const char* text)
{
    return comesTrue([&] { return debug.texts() == std::vector<std::string>{text}; });
}

} // namespace

/// A treadmill, or a line to it, that does not do its part.
class KipnetFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeviceThatDoesNotAnswerEndsTheThread_data();
    void aDeviceThatDoesNotAnswerEndsTheThread();
    void anAttemptThatFailedIsMadeAgainAfterAPause();
    void twoAttemptsMayFail();
    void anAnswerThatIsLateServesTheNextAttempt();
    void anAnswerInTimeIsWaitedFor();
    void aHangUpEndsTheThread();
    void aStopWithoutAnAnswerIsTriedThreeTimes();
    void aStopIsNotForgottenWhenAnotherFails();
    void aFailedDriverAcceptsWhatItIsTold();
    void aPortThatCannotBeOpenedHasItsText_data();
    void aPortThatCannotBeOpenedHasItsText();
    void aPortInUseHasItsText();
};

void KipnetFailureTest::aDeviceThatDoesNotAnswerEndsTheThread_data()
{
    QTest::addColumn<int>("after");
    QTest::addColumn<bool>("isShort");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("told");
    for (const bool isShort : {false, true}) {
        const char* const name = isShort ? "short" : "silent";
        QTest::addRow("%s GO", name) << 0 << isShort << QByteArray("GO") << QByteArray(";2GO00:");
        QTest::addRow("%s V", name) << 1 << isShort << QByteArray("V") << QByteArray(";2V005077:");
        QTest::addRow("%s E", name) << 2 << isShort << QByteArray("E") << QByteArray(";2E010056:");
        QTest::addRow("%s N", name) << 3 << isShort << QByteArray("N") << QByteArray(";2N010065:");
    }
}

void KipnetFailureTest::aDeviceThatDoesNotAnswerEndsTheThread()
{
    QFETCH(int, after);
    QFETCH(bool, isShort);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, told);
    const TDebugTexts debug;
    TKipnetSession session(fault(isShort ? TFault::Short : TFault::Silent, after), impatient());
    session.driver->setValue("workload", 100.0);
    session.set(5.0, 10.0);
    const QByteArray text = "Kipnet device did not respond (command " + command + ")";
    QVERIFY(session.hasEnded());
    QVERIFY(isToldTo(debug, text.constData()));
    const QByteArray tried = told + ' ' + told + ' ' + told;
    QVERIFY(session.treadmill.told().endsWith(tried));
    QCOMPARE(session.treadmill.messages().size(), std::size_t(after + 3));
    QVERIFY(session.log().endsWith(">> " + told + '\n' + text + "\nThread stop\n--------------------\n"));
}

void KipnetFailureTest::anAttemptThatFailedIsMadeAgainAfterAPause()
{
    TKipnetTimes times = impatient(50);
    times.retryPauseMs = 400;
    TKipnetSession session(fault(TFault::Silent), times);
    QElapsedTimer timer;
    timer.start();
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.hasEnded());
    // All in all, for the device may note a message much later than it is sent.
    QVERIFY(timer.elapsed() >= 3 * 50 + 3 * 400);
    QCOMPARE(session.treadmill.messages().size(), std::size_t(3));
}

void KipnetFailureTest::twoAttemptsMayFail()
{
    TKipnetSession session(fault(TFault::Short, 0, 2), impatient(200));
    session.driver->setValue("speed", 5.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2GO00: ;2GO00: ;2GO00: ;2V005077:"));
    QVERIFY(!session.log().contains("respond"));
    // An attempt makes no line of its own.
    QCOMPARE(session.log().count(">>"), 2);
}

void KipnetFailureTest::anAnswerThatIsLateServesTheNextAttempt()
{
    TKipnetTimes times = impatient(100);
    times.retryPauseMs = 200;
    TKipnetSession session(fault(TFault::Late, 0, 2, 150), times);
    session.driver->setValue("speed", 0.0);
    session.driver->commit();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2V000072:"));
    session.driver->stop();
    QVERIFY(session.treadmill.isTold(";2V000072: ;2V000072: ;2ST17:"));
}

void KipnetFailureTest::anAnswerInTimeIsWaitedFor()
{
    TKipnetSession session(fault(TFault::Late, 0, -1, 100));
    session.set(5.0, 10.0);
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077: ;2E010056:"));
    const std::vector<TReceivedMessage> messages = session.treadmill.messages();
    QVERIFY(messages[1].seconds - messages[0].seconds > 0.09);
}

void KipnetFailureTest::aHangUpEndsTheThread()
{
    const TDebugTexts debug;
    TKipnetSession session(fault(TFault::HangUp, 1));
    session.set(5.0, 10.0);
    QVERIFY(session.hasEnded());
    QVERIFY(isToldTo(debug, "Kipnet device did not respond (command V)"));
    QVERIFY(session.treadmill.isTold(";2GO00: ;2V005077:"));
}

void KipnetFailureTest::aStopWithoutAnAnswerIsTriedThreeTimes()
{
    const TDebugTexts debug;
    TKipnetSession session(fault(TFault::Silent), impatient());
    session.driver->stop();
    QVERIFY(session.hasEnded());
    QVERIFY(isToldTo(debug, "Kipnet device did not respond (command ST)"));
    QVERIFY(session.treadmill.isTold(";2ST17: ;2ST17: ;2ST17:"));
}

void KipnetFailureTest::aStopIsNotForgottenWhenAnotherFails()
{
    const TDebugTexts debug;
    TKipnetSession session(fault(TFault::Short, 0, 3), impatient(300));
    session.driver->stop();
    QVERIFY(session.treadmill.hasReceived(1));
    session.driver->stop();
    QVERIFY(session.hasEnded());
    QVERIFY(isToldTo(debug, "Kipnet device did not respond (command ST)"));
    QVERIFY(session.treadmill.isTold(";2ST17: ;2ST17: ;2ST17: ;2ST17:"));
    QVERIFY(session.log().contains("(command ST)\n>> ;2ST17:\nThread stop\n"));
}

void KipnetFailureTest::aFailedDriverAcceptsWhatItIsTold()
{
    const TDebugTexts debug;
    TKipnetSession session(fault(TFault::Silent, 0, 3), impatient());
    session.set(5.0, 10.0);
    QVERIFY(session.hasEnded());
    TKipnetTreadmill& driver = *session.driver;
    QVERIFY(driver.start() && driver.setValue("speed", 1.0) && driver.commit() && driver.stop());
    QVERIFY(driver.isOk());
    QVERIFY(session.treadmill.isTold(";2GO00: ;2GO00: ;2GO00:"));
}

void KipnetFailureTest::aPortThatCannotBeOpenedHasItsText_data()
{
    QTest::addColumn<QByteArray>("port");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("none") << QByteArray("ttyThatIsNone") << QByteArray("Port not found");
    QTest::newRow("no port") << QByteArray("/dev/null") << QByteArray("Invalid port");
    QTest::newRow("no name") << QByteArray() << QByteArray("Invalid port");
}

void KipnetFailureTest::aPortThatCannotBeOpenedHasItsText()
{
    QFETCH(QByteArray, port);
    QFETCH(QByteArray, text);
    const TDebugTexts debug;
    TKipnetSession session;
    session.driver.reset();
    QFile::remove(session.logPath);
    session.connectTo(port.toStdString());
    session.driver->stop();
    QVERIFY(session.hasEnded());
    QVERIFY(isToldTo(debug, text.constData()));
    QCOMPARE(session.log(),
             "Thread start, device port = " + port + '\n' + text + "\nThread stop\n--------------------\n");
}

void KipnetFailureTest::aPortInUseHasItsText()
{
    const TDebugTexts debug;
    TServedDevice<TTreadmillSimulator> taken;
    CommPort other;
    other.open(taken.path(), TCommSettings());
    TKipnetSession session;
    session.connectTo(taken.path());
    QVERIFY(isToldTo(debug, "Port already in use"));
    QVERIFY(session.hasEnded());
}

QTEST_GUILESS_MAIN(KipnetFailureTest)
#include "KipnetFailureTest.moc"
