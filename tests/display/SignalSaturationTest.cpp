#include "analysis/signals/TInt16Signal.h"
#include "display/TSignalSaturation.h"

#include <QtTest>

#include <limits>
#include <vector>

class SignalSaturationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saturationLimitFollowsTheResolution()
    {
        TInt16Signal signal(64, 64, 1, 500);
        const TSignalSaturation saturation(&signal);
        QCOMPARE(saturation.limit(), 32766);
        signal.setResolutionBits(12);
        QCOMPARE(saturation.limit(), 2046);
        signal.setResolutionBits(64);
        QCOMPARE(saturation.limit(), std::numeric_limits<int>::max());
    }

    void saturatedStretchEndsWithTheRange()
    {
        TInt16Signal signal(64, 64, 1, 500);
        const std::vector<short> samples{0, 32767, -32767, 32766, 0, 32767, 32767};
        signal.addInterleaved(reinterpret_cast<const char*>(samples.data()), 14);
        TSignalSaturation saturation(&signal);
        int first = -1;
        int last = -1;
        QVERIFY(saturation.findStretch(0, 0, 7, &first, &last));
        QCOMPARE(std::make_pair(first, last), std::make_pair(1, 3));
        QVERIFY(saturation.findStretch(0, 3, 7, &first, &last));
        QCOMPARE(std::make_pair(first, last), std::make_pair(5, 7));
        QVERIFY(!saturation.findStretch(0, 3, 5, &first, &last));
        QVERIFY(!saturation.findStretch(1, 0, 7, &first, &last));
    }
};

QTEST_MAIN(SignalSaturationTest)
#include "SignalSaturationTest.moc"
