#include "acq/FakeAcqDevice.h"
#include "recorder/TStudyRecorder.h"
#include "study/StoreFolder.h"

#include <QtTest>

namespace {

/// Delivers II, V2 and V5, and counts all of its channels.
class TReducedDevice : public FakeAcqDevice
{
public:
    TReducedDevice() : FakeAcqDevice(3) {}

    const char* channelName(int index) const override
    {
        static constexpr const char* names[] = {"II", "V2", "V5"};
        return names[index];
    }
    bool isChannelSaturated(int channel) const override { return channel == saturated; }

    int saturated = -1;
};

} // namespace

class ChannelSaturationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSaturatedChannelIsTheOneThatIsRecorded_data()
    {
        QTest::addColumn<int>("saturated");
        QTest::addColumn<int>("recorded");
        QTest::newRow("none") << -1 << -1;
        QTest::newRow("the first one") << int(acq::II) << 0;
        QTest::newRow("the last one") << int(acq::V5) << 2;
        QTest::newRow("one that is not recorded, with a recorded number") << int(acq::III) << -1;
        QTest::newRow("one that is not recorded") << int(acq::CR5) << -1;
    }

    void aSaturatedChannelIsTheOneThatIsRecorded()
    {
        QFETCH(int, saturated);
        QFETCH(int, recorded);
        TReducedDevice device;
        device.saturated = saturated;
        const StoreFolder folder;
        LocalStudyDatabase database(folder.path());
        StudyInfo info = makeSampleInfo();
        info.channelCount = 3;
        info.channelNames = "II,V2,V5";
        Study* study = database.createStudy(info);
        {
            TStudyRecorder recorder(&device, study, nullptr, nullptr);
            for (int channel = -1; channel <= 3; ++channel)
                QCOMPARE(recorder.isChannelSaturated(channel), recorded >= 0 && channel == recorded);
            QCOMPARE(recorder.isAnyChannelSaturated(), recorded >= 0);
        }
        database.closeStudy(study);
    }
};

QTEST_GUILESS_MAIN(ChannelSaturationTest)
#include "ChannelSaturationTest.moc"
