#include "windows/MonitorSession.h"

#include "analysis/filters/TOfflineFilterChain.h"
#include "display/ColorSchemes.h"
#include "display/ColorTags.h"
#include "display/QSignalBrowseDisplay.h"

#include <QPointer>

namespace {

QSignalBrowseDisplay* browseOf(const MonitorSession& session)
{
    return session.window->findChild<QSignalBrowseDisplay*>();
}

/// Runs an examination of so many seconds up to the review.
bool reachReview(MonitorSession& session, double seconds)
{
    session.click("btnStart");
    const bool recorded = session.record(seconds);
    session.click("btnStop");
    return recorded;
}

QList<int> samplesOf(TSignal& signal)
{
    QList<int> samples;
    for (int index = 500; index < 600; ++index)
        samples << signal.sample(1, index);
    return samples;
}

} // namespace

/// What the monitor shows and does once the recording has been stopped.
class EcgMonitorReviewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void stopLeadsToTheReview();
    void nothingIsLeftOnTheDisplaysAfterStop();
    void theReviewTakesTheButtonsOver();
    void theReviewFiltersTheRecording();
    void theReviewObeysTheKeyboard();
    void anEmptyRecordingCanBeReviewed();
    void savingAndRepeatingAreToldApart();
    void theColorsAreThoseOfTheLiveDisplays();

private:
    SettingsFolder m_settings;
};

void EcgMonitorReviewTest::stopLeadsToTheReview()
{
    MonitorSession session;
    session.click("btnAmp20");
    session.click("btnSpeed12");
    QVERIFY(!browseOf(session));
    QVERIFY(reachReview(session, 12.0));
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QCOMPARE(QApplication::focusWidget(), session.part("btnSave"));
    QVERIFY(session.display1().isHidden() && session.display2().isHidden());
    const QSignalBrowseDisplay* browse = browseOf(session);
    QVERIFY(browse && browse->isVisible());
    QCOMPARE(browse->parentWidget(), session.part("frameECG"));
    QCOMPARE(browse->amplitude(), 20.0);
    QCOMPARE(browse->speed(), 12.5);
    QVERIFY(browse->signal());
    QCOMPARE(browse->signal()->sampleCount(), session.recordedFrames());
    QVERIFY(!browse->accessibleName().isEmpty());
    session.tick();
    QVERIFY(browse->isVisible());
}

void EcgMonitorReviewTest::nothingIsLeftOnTheDisplaysAfterStop()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 12.0));
    for (QSignalMonitorDisplay* display : {&session.display1(), &session.display2()}) {
        QVERIFY(!display->signal());
        // Reads whatever it still has; the sanitizers see what is gone.
        display->show();
        QVERIFY(!display->grab().isNull());
        display->hide();
    }
}

void EcgMonitorReviewTest::theReviewTakesTheButtonsOver()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 12.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    QCOMPARE(browse->speed(), 25.0);
    const std::pair<const char*, double> speeds[] = {
        {"btnSpeed12", 12.5}, {"btnSpeed50", 50.0}, {"btnSpeed25", 25.0}, {"btnSpeed50", 50.0}};
    for (const auto& [name, speed] : speeds) {
        session.click(name);
        QCOMPARE(browse->speed(), speed);
    }
    const std::pair<const char*, double> amplitudes[] = {
        {"btnAmp5", 5.0}, {"btnAmp20", 20.0}, {"btnAmp10", 10.0}, {"btnAmp20", 20.0}};
    for (const auto& [name, amplitude] : amplitudes) {
        session.click(name);
        QCOMPARE(browse->amplitude(), amplitude);
    }
    QCOMPARE(session.display1().speed(), 25.0);
    QCOMPARE(session.display2().amplitude(), 10.0);
}

void EcgMonitorReviewTest::theReviewFiltersTheRecording()
{
    MonitorSession session;
    session.click("btnFilterLowpass");
    QVERIFY(reachReview(session, 12.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    TOfflineFilterChain expected(session.study->ecg());
    expected.apply(true, false, true);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));

    session.click("btnFilterLowpass");
    session.click("btnFilterBaseline");
    expected.apply(true, true, false);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));
    session.click("btnFilterNotch");
    session.click("btnFilterLowpass");
    expected.apply(false, false, false);
    QCOMPARE(samplesOf(*browse->signal()), samplesOf(*expected.current()));
    QVERIFY(!browse->grab().isNull());
}

void EcgMonitorReviewTest::theReviewObeysTheKeyboard()
{
    MonitorSession session;
    QVERIFY(reachReview(session, 30.0));
    QSignalBrowseDisplay* browse = browseOf(session);
    for (int i = 0; i < 20 && QApplication::focusWidget() != browse; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), browse);
    QTest::keyClick(browse, Qt::Key_Right);
    const double start = browse->startTime();
    QVERIFY(start > 0.0);
    session.click("btnFilterNotch");
    QCOMPARE(browse->startTime(), start);
}

void EcgMonitorReviewTest::anEmptyRecordingCanBeReviewed()
{
    MonitorSession session;
    session.click("btnStart");
    session.click("btnStop");
    QCOMPARE(session.recordedFrames(), 0);
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QVERIFY(!session.window->grab().isNull());
    session.click("btnFilterNotch");
    QVERIFY(!session.window->grab().isNull());
}

void EcgMonitorReviewTest::savingAndRepeatingAreToldApart()
{
    for (const bool repeats : {false, true}) {
        MonitorSession session;
        QVERIFY(reachReview(session, 1.0));
        EcgMonitorWindow* window = session.window.release();
        window->setAttribute(Qt::WA_DeleteOnClose);
        bool told = !repeats;
        connect(window, &QObject::destroyed, this,
                [&told](const QObject* left) { told = EcgMonitorWindow::repeatRequested(left); });
        const QPointer<EcgMonitorWindow> guard(window);
        const int saves = session.store.saves;
        window->findChild<QAbstractButton*>(QLatin1String(repeats ? "btnRepeat" : "btnSave"))->click();
        QTRY_VERIFY(!guard);
        QCOMPARE(told, repeats);
        QCOMPARE(session.store.saves, saves);
    }
}

void EcgMonitorReviewTest::theColorsAreThoseOfTheLiveDisplays()
{
    settings::ecgMonitorDisplay.displayColorScheme.setValue(QStringLiteral("Blue"));
    MonitorSession session;
    QVERIFY(reachReview(session, 1.0));
    QCOMPARE(browseOf(session)->color(TraceColor), schemeColors(QStringLiteral("Blue")).value(TraceColor));
}

QTEST_MAIN(EcgMonitorReviewTest)
#include "EcgMonitorReviewTest.moc"
