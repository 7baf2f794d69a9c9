#include "acq/TDemoAcqDevice.h"
#include "acq/TStdAcqDevice.h"
#include "simulators/TEcgDeviceSimulator.h"
#include "windows/MonitorSession.h"

#include <QMessageBox>

#include <atomic>
#include <thread>

namespace {

/// The simulator on a thread of its own.
class TRunningDevice
{
public:
    explicit TRunningDevice(const TEcgDeviceOptions& options)
        : m_simulator(options, sim::makeSampleSource(QStringLiteral("pattern"), 500, 450.0)),
          m_thread([this] { m_simulator.run([this] { return m_done.load(); }); })
    {
    }
    TRunningDevice(const TRunningDevice&) = delete;
    TRunningDevice& operator=(const TRunningDevice&) = delete;
    ~TRunningDevice()
    {
        m_done = true;
        m_thread.join();
    }

    std::string path() const { return m_simulator.path(); }

private:
    std::atomic<bool> m_done = false;
    TEcgDeviceSimulator m_simulator;
    std::thread m_thread;
};

bool arrives(const MonitorSession& session, int frames)
{
    return QTest::qWaitFor([&] { return session.recordedFrames() >= frames; }, 30000);
}

} // namespace

/// The monitor at devices that send as real ones do.
class MonitorLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void theDemonstrationIsRecorded()
    {
        MonitorSession session;
        session.window.reset();
        TDemoAcqDevice demo(ECG500, 14, 500, 2, 16, 300.0, 0, acq::allChannels);
        session.makeWindow(&demo);
        session.click("btnStart");
        QVERIFY(arrives(session, 1000));
        session.click("btnStop");
        QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
        session.window.reset();
    }

    void theRecordingGoesOnWhenThePulledCableIsBack()
    {
        const QTemporaryDir ports;
        TEcgDeviceOptions options;
        options.link = ports.filePath(QStringLiteral("ecg")).toStdString();
        options.hangUp = {1.0, 2.0};
        const TRunningDevice simulator(options);
        MonitorSession session;
        session.window.reset();
        TStdAcqDevice device(options.link.c_str(), 230400, acq::allChannels);
        session.makeWindow(&device);
        session.part<QTimer>("statusTimer")->setInterval(50);
        session.click("btnStart");
        QTRY_VERIFY_WITH_TIMEOUT(session.part("connectingIcon"), 10000);
        const int before = session.recordedFrames();
        QVERIFY(session.button("btnStop")->isEnabled());
        QVERIFY(arrives(session, before + 500));
        // Hidden for good: a blinking icon is seen again within two ticks.
        QTRY_VERIFY(session.part("connectingIcon")->isHidden());
        QTest::qWait(120);
        QVERIFY(session.part("connectingIcon")->isHidden());
        session.click("btnStop");
        QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
        QVERIFY(!QApplication::activeModalWidget());
        session.window.reset();
    }

private:
    SettingsFolder m_settings;
};

QTEST_MAIN(MonitorLinkTest)
#include "MonitorLinkTest.moc"
