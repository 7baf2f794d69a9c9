#pragma once

#include "base/Settings.h"
#include "display/QSignalMonitorDisplay.h"
#include "recorder/RecorderSession.h"
#include "study/TEcgFile.h"
#include "windows/EcgMonitorWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QTimerEvent>
#include <QtTest>

/// A device that tells what the test wants told and sends the demonstration recording when the test says so.
class MonitorDevice : public FakeAcqDevice
{
public:
    using FakeAcqDevice::FakeAcqDevice;

    /// The next seconds of the recording, on as many channels as the device has.
    void send(double seconds)
    {
        std::vector<qint16> samples;
        for (int end = m_sent + qRound(seconds * samplingRate()); m_sent < end; ++m_sent) {
            for (int channel = 0; channel < channelCount(); ++channel)
                samples.push_back(sampleOf(channel, m_sent));
        }
        m_queue.push(reinterpret_cast<const char*>(samples.data()),
                     static_cast<int>(samples.size() * sizeof(qint16)));
    }

    int bytesAvailable() const override { return static_cast<int>(m_queue.size()); }
    int read(char* buffer, int size) override
    {
        const int count = m_queue.pop(buffer, size);
        return readFails ? -1 : count;
    }
    bool isElectrodeOff(const char* name) const override
    {
        asked += QLatin1String(name);
        return offElectrodes.contains(QLatin1String(name));
    }
    bool isChannelSaturated(int channel) const override { return channel == saturatedChannel; }
    double batteryVoltage() const override { return battery; }
    double rangeMin() const override { return -range; }
    double rangeMax() const override { return range; }

    mutable QStringList asked;
    QStringList offElectrodes;
    int saturatedChannel = -1;
    double battery = 0.0;
    /// mV
    double range = 300.0;
    /// Counts by channel and frame.
    std::function<qint16(int, int)> sampleOf = RecorderSession::sampleAt;

private:
    TAcqBuffer m_queue;
    int m_sent = 0;
};

/// Settings of their own, empty before each test.
class SettingsFolder
{
public:
    SettingsFolder()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
    }

private:
    QTemporaryDir m_folder;
};

/// A monitor window on the screen over a new study.
class MonitorSession
{
public:
    explicit MonitorSession(int channels = 14, const StudyInfo& sample = makeSampleInfo())
        : device(channels), info(sample)
    {
        QStringList names;
        for (int channel = 0; channel < channels; ++channel)
            names << QLatin1String(device.channelName(channel));
        info.channelCount = channels;
        info.channelNames = names.join(QLatin1Char(',')).toLatin1();
        study = store.createStudy(info);
        setStudyDatabase(&store);
        makeWindow(&device);
    }
    MonitorSession(const MonitorSession&) = delete;
    MonitorSession& operator=(const MonitorSession&) = delete;
    ~MonitorSession()
    {
        window.reset();
        store.closeStudy(study);
        setStudyDatabase(nullptr);
    }

    void makeWindow(TAcqDevice* source)
    {
        window = std::make_unique<EcgMonitorWindow>(nullptr, source, study);
        // Seconds pass when the test says so.
        part<QTimer>("statusTimer")->stop();
        window->resize(1280, 800);
        window->show();
        QApplication::setActiveWindow(window.get());
    }

    template <typename Part = QWidget> Part* part(const char* name) const
    {
        return window->findChild<Part*>(QLatin1String(name));
    }
    QAbstractButton* button(const char* name) const { return part<QAbstractButton>(name); }
    void click(const char* name) const { button(name)->click(); }
    QString text(const char* label) const { return part<QLabel>(label)->text(); }
    QSignalMonitorDisplay& display1() const { return *part<QSignalMonitorDisplay>("ecgDisplay1"); }
    QSignalMonitorDisplay& display2() const { return *part<QSignalMonitorDisplay>("ecgDisplay2"); }
    /// Which of the four buttons are enabled, by their first letters.
    QString enabled() const
    {
        QString letters;
        for (const char* name : {"btnStart", "btnStop", "btnRepeat", "btnSave"})
            letters += button(name)->isEnabled() ? QLatin1String(name).mid(3, 3) + QLatin1String(" ")
                                                 : QLatin1String("- ");
        return letters.trimmed();
    }

    /// A second passes for the window.
    void tick() const
    {
        auto* timer = part<QTimer>("statusTimer");
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    }
    /// Whether an overlay is shown, from tick to tick: "1010".
    QString shown(const char* name, int ticks) const
    {
        QString states;
        for (int i = 0; i < ticks; ++i) {
            tick();
            const auto* overlay = part(name);
            states += overlay && overlay->isVisible() ? QLatin1Char('1') : QLatin1Char('0');
        }
        return states;
    }

    int recordedFrames() const { return study->ecg()->sampleCount(); }
    /// Lets these seconds arrive in the recording, up to what the pump keeps back for the next block.
    bool record(double seconds)
    {
        const int frames = recordedFrames() + qRound(seconds * device.samplingRate()) - 51;
        device.send(seconds);
        return QTest::qWaitFor([&] { return recordedFrames() >= frames; }, 30000);
    }

    MonitorDevice device;
    StoreFolder folder;
    CountingStore store{folder.path()};
    StudyInfo info;
    Study* study = nullptr;
    std::unique_ptr<EcgMonitorWindow> window;
};
