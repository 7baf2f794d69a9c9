#include "windows/MonitorSession.h"

#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TChannel.h"
#include "analysis/signals/TInt16Signal.h"
#include "display/ColorTags.h"
#include "windows/MonitorPictures.h"

#include <cmath>

namespace {

/// The first seconds that the device sends, through filters as they are switched.
class TExpectedSignal
{
public:
    TExpectedSignal(const MonitorDevice& device, int frames)
        : m_raw(4096, 81920, device.channelCount(), device.samplingRate()), m_chain(&m_raw)
    {
        std::vector<qint16> samples;
        for (int frame = 0; frame < frames; ++frame) {
            for (int channel = 0; channel < device.channelCount(); ++channel)
                samples.push_back(device.sampleOf(channel, frame));
        }
        m_raw.addInterleaved(reinterpret_cast<const char*>(samples.data()),
                             static_cast<int>(samples.size() * sizeof(qint16)));
    }

    TSignal& filtered(bool notch, bool muscle, bool baseline)
    {
        m_chain.apply(notch, muscle, baseline);
        m_chain.update();
        return *m_chain.current();
    }

private:
    TInt16Signal m_raw;
    TRealtimeFilterChain m_chain;
};

QList<int> samplesOf(TSignal& signal)
{
    QList<int> samples;
    for (int index = 2000; index < 2200; ++index)
        samples << signal.sample(1, index);
    return samples;
}

} // namespace

/// The live signal behind its filters.
class EcgMonitorFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void theFilterButtonsRebuildTheLiveSignal_data();
    void theFilterButtonsRebuildTheLiveSignal();
    void aFilterThatIsSwitchedCentresTheTracesAnew();
    void saturationIsMarkedOnBothDisplays();

private:
    SettingsFolder m_settings;
};

void EcgMonitorFilterTest::theFilterButtonsRebuildTheLiveSignal_data()
{
    QTest::addColumn<bool>("notch");
    QTest::addColumn<bool>("muscle");
    QTest::addColumn<bool>("baseline");
    for (int switches = 0; switches < 8; ++switches) {
        const bool notch = (switches & 1) != 0;
        const bool muscle = (switches & 2) != 0;
        const bool baseline = (switches & 4) != 0;
        QTest::addRow("notch %d, muscle %d, baseline %d", notch, muscle, baseline)
            << notch << muscle << baseline;
    }
}

void EcgMonitorFilterTest::theFilterButtonsRebuildTheLiveSignal()
{
    QFETCH(bool, notch);
    QFETCH(bool, muscle);
    QFETCH(bool, baseline);
    MonitorSession session;
    session.device.send(10.0);
    QTRY_VERIFY(session.display1().signal()->sampleCount() > 3000);
    const std::pair<const char*, bool> buttons[] = {
        {"btnFilterNotch", notch}, {"btnFilterLowpass", muscle}, {"btnFilterBaseline", baseline}};
    for (const auto& [name, on] : buttons) {
        if (!on)
            session.click(name);
    }
    QCOMPARE(session.display1().signal(), session.display2().signal());
    TExpectedSignal expected(session.device, 5000);
    QCOMPARE(samplesOf(*session.display1().signal()), samplesOf(expected.filtered(notch, muscle, baseline)));
    QCOMPARE(session.display1().autoCenter(), !baseline);
    QCOMPARE(session.display2().autoCenter(), !baseline);
}

void EcgMonitorFilterTest::aFilterThatIsSwitchedCentresTheTracesAnew()
{
    MonitorSession session;
    session.device.sampleOf = [](int, int frame) { return qint16(frame < 3000 ? 0 : 3000); };
    session.click("btnFilterBaseline");
    session.device.send(6.0);
    QTRY_VERIFY(session.display1().signal()->sampleCount() > 1400);
    session.window->grab();
    QCOMPARE(session.display1().channelOffset(0), 0);
    const int before = session.display1().signal()->sampleCount();
    session.device.send(1.3);
    QTRY_VERIFY(session.display1().signal()->sampleCount() > before + 550);
    session.window->grab();
    QCOMPARE(session.display1().channelOffset(0), 0);

    session.click("btnFilterNotch");
    session.window->grab();
    TSignal& signal = *session.display1().signal();
    QVERIFY(std::abs(signal.channel(0)->mean(0, signal.sampleCount())) > 10.0);
    const int mean = int(signal.channel(0)->mean(0, signal.sampleCount()));
    QCOMPARE(session.display1().channelOffset(0), mean);
    QCOMPARE(session.display2().channelOffset(6), mean);
}

void EcgMonitorFilterTest::saturationIsMarkedOnBothDisplays()
{
    for (const int channel : {1, 7}) {
        MonitorSession session;
        // A range that the rows of the displays show.
        session.window.reset();
        session.device.range = 2.0;
        session.makeWindow(&session.device);
        const QColor mark(255, 0, 255);
        session.device.sampleOf = [channel](int each, int frame) {
            return each == channel && frame > 3000 && frame < 3500 ? qint16(32767)
                                                                   : RecorderSession::sampleAt(each, frame);
        };
        for (QSignalMonitorDisplay* display : {&session.display1(), &session.display2()})
            display->setColor(SaturationColor, mark);
        session.device.send(5.0);
        QTRY_VERIFY(session.display1().signal()->sampleCount() > 900);
        QCOMPARE(pixelsOf(session.display1(), mark) + pixelsOf(session.display2(), mark), 0);
        session.device.send(5.0);
        QTRY_VERIFY(session.display1().signal()->sampleCount() > 3400);
        QCOMPARE(pixelsOf(session.display1(), mark) > 0, channel == 1);
        QCOMPARE(pixelsOf(session.display2(), mark) > 0, channel == 7);
    }
}

QTEST_MAIN(EcgMonitorFilterTest)
#include "EcgMonitorFilterTest.moc"
