#include "acq/AcqChannels.h"
#include "app/EcgUser.h"
#include "cli/ConsoleTool.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "support/RunningDevice.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TWfdbRecord.h"

#include <QJsonArray>

namespace {

/// Nine seconds.
constexpr int recordedSamples = 4500;
constexpr double rangeMv = 300.0;
constexpr double mvPerCount = rangeMv / 32768.0;
/// Samples of the record that become one of ours.
constexpr int pair = 2;
/// Counts: each of the two is rounded, and their mean is rounded down.
constexpr double mostOff = 1.0 + 1e-6;

int signalNamed(const TWfdbRecord& record, const char* lead)
{
    for (int i = 0; i < record.signalCount(); ++i) {
        if (record.header().channels[static_cast<std::size_t>(i)].description.compare(
                lead, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

/// What the device makes of two samples of the record, in counts before rounding.
double expectedCount(const TWfdbRecord& record, int signal, int position)
{
    return (record.millivolts(signal, position) + record.millivolts(signal, position + 1)) / 2 / mvPerCount;
}

/// The sample of the record at which the study begins, or -1.
int beginningOf(TSignal& stored, const TWfdbRecord& record)
{
    constexpr int compared = 400;
    constexpr int furthest = 20000;
    const int signal = signalNamed(record, "II");
    // The first frame of the stream may be lost, so pairs may begin at any sample.
    for (int from = 0; from < furthest; ++from) {
        int i = 0;
        while (i < compared &&
               std::fabs(stored.sample(1, i) - expectedCount(record, signal, from + pair * i)) <= mostOff)
            ++i;
        if (i == compared)
            return from;
    }
    return -1;
}

void press(const char* name)
{
    auto* button = openMonitor()->findChild<QAbstractButton*>(QLatin1String(name));
    require(QTest::qWaitFor([button] { return button->isEnabled(); }), name);
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

/// A patient's heart, a device, a cable, the windows, the disk: what was recorded is what was there.
class DeviceEcgTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
    }

    void theStudyHoldsTheRecordThatTheDevicePlayed()
    {
        const QString path = recordingsFolder() + QStringLiteral("/ptb/s0010_re");
        const TWfdbRecord record(path);
        QCOMPARE(record.header().frequency, 1000.0);
        TEcgDeviceOptions options;
        options.isHighRate = true;
        TRunningDevice device(options, path, rangeMv);
        settings::acqMode.setValue(QStringLiteral("bluetooth-com"));
        settings::acqBluetoothPort.setValue(QString::fromStdString(device.path()));
        settings::hrProtocol.setValue(true);

        setStudyDatabase(new TestStore(m_home.dataFolder()));
        EcgUser user;
        user.openEcg();
        user.type("txtLastName", "Paz");
        user.type("txtFirstName", "Luz");
        user.click("btnStartEcg");
        QVERIFY(QTest::qWaitFor([] { return openMonitor() != nullptr; }));
        QTest::qWait(1500);
        user.record(recordedSamples);
        press("btnStop");
        press("btnSave");
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));

        const qint32 id = studyDatabase()->listStudies().at(0).id;
        Study* study = studyDatabase()->openStudy(id);
        QVERIFY(study);
        compareSamples(*study->ecg(), record);
        studyDatabase()->closeStudy(study);
        if (!QTest::currentTestFailed())
            analyse(id);
    }

private:
    static void compareSamples(TSignal& stored, const TWfdbRecord& record)
    {
        QVERIFY(stored.sampleCount() >= recordedSamples);
        const int beginning = beginningOf(stored, record);
        QVERIFY2(beginning >= 0, "The study begins nowhere in the record");
        for (const char* lead : {"I", "II", "III", "V1", "V2", "V3", "V4", "V5", "V6"}) {
            const int signal = signalNamed(record, lead);
            QVERIFY2(signal >= 0, lead);
            const int channel = acq::placeOfChannel(lead);
            double worst = 0.0;
            for (int i = 0; i < stored.sampleCount(); ++i)
                worst = std::max(worst, std::fabs(stored.sample(channel, i) -
                                                  expectedCount(record, signal, beginning + pair * i)));
            QVERIFY2(worst <= mostOff,
                     qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(lead)).arg(worst)));
        }
    }

    /// The patient's rate is about 81.
    void analyse(qint32 id)
    {
        const TResult result = runTool(
            {QStringLiteral("--data"), m_home.dataFolder(), QStringLiteral("analyse"), QString::number(id)});
        QCOMPARE(result.error, QByteArray());
        QCOMPARE(result.status, 0);
        const QJsonArray beats = result.lines().value(0).value(QLatin1String("beats")).toArray();
        QVERIFY2(beats.size() >= 10 && beats.size() <= 13, qPrintable(QString::number(beats.size())));
        for (int i = 2; i < beats.size(); ++i) {
            const double rr = beats[i].toObject().value(QLatin1String("rr")).toDouble();
            QVERIFY2(rr > 0.6 && rr < 0.9, qPrintable(QString::number(rr)));
        }
    }

    TestHome m_home;
};

QTEST_MAIN(DeviceEcgTest)
#include "DeviceEcgTest.moc"
