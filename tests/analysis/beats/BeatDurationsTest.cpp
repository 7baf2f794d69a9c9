#include "analysis/beats/BeatDurations.h"

#include "analysis/beats/TBeat.h"

#include <QtTest>

namespace {

constexpr double none = TBeat::unset;

} // namespace

class BeatDurationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void durationsComeFromWhatIsKnown_data()
    {
        QTest::addColumn<double>("p");
        QTest::addColumn<double>("onset");
        QTest::addColumn<double>("r");
        QTest::addColumn<double>("offset");
        QTest::addColumn<double>("t");
        QTest::addColumn<double>("qrs");
        QTest::addColumn<double>("pq");
        QTest::addColumn<double>("qt");
        QTest::newRow("all known") << 9.8 << 9.96 << 10.0 << 10.05 << 10.3 << 0.12 << 0.14 << 0.45;
        QTest::newRow("no onset") << 9.8 << none << 10.0 << 10.05 << 10.3 << 0.09 << none << 0.42;
        QTest::newRow("no offset") << 9.8 << 9.96 << 10.0 << none << 10.3 << 0.07 << 0.14 << 0.45;
        QTest::newRow("R alone") << none << none << 10.0 << none << none << none << none << none;
        QTest::newRow("R and T") << none << none << 10.0 << none << 10.3 << none << none << 0.42;
        QTest::newRow("a QS without R") << 9.8 << 9.96 << none << 10.05 << 10.3 << 0.12 << 0.14 << 0.45;
        QTest::newRow("onset alone") << none << 9.96 << none << none << none << none << none << none;
        QTest::newRow("offset alone") << none << none << none << 10.05 << 10.3 << none << none << none;
        QTest::newRow("nothing") << none << none << none << none << none << none << none << none;
    }

    void durationsComeFromWhatIsKnown()
    {
        TBeat beat(2);
        const char* const names[] = {"p", "onset", "r", "offset", "t"};
        for (int i = 0; i < 5; ++i) {
            const double time = *static_cast<const double*>(QTest::qData(names[i], QMetaType::Double));
            if (time != none)
                beat.setFiducial(1, TBeat::pPeak + i, time);
        }
        velantor::setDurations(beat, 1);
        QFETCH(double, qrs);
        QFETCH(double, pq);
        QFETCH(double, qt);
        QCOMPARE(beat.fiducial(1, TBeat::qrsDuration), qrs);
        QCOMPARE(beat.fiducial(1, TBeat::pqInterval), pq);
        QCOMPARE(beat.fiducial(1, TBeat::qtInterval), qt);
        for (const int slot : {TBeat::qrsDuration, TBeat::pqInterval, TBeat::qtInterval})
            QCOMPARE(beat.isFiducialSet(1, slot), beat.fiducial(1, slot) != none);
    }

    void otherChannelsAreLeftAlone()
    {
        TBeat beat(2);
        for (int slot = TBeat::pPeak; slot <= TBeat::tPeak; ++slot)
            beat.setFiducial(0, slot, slot);
        velantor::setDurations(beat, 1);
        velantor::setDurations(beat, 2);
        velantor::setDurations(beat, -1);
        QVERIFY(!beat.isFiducialSet(0, TBeat::qrsDuration));
        QVERIFY(!beat.isFiducialSet(1, TBeat::qrsDuration));
    }
};

QTEST_GUILESS_MAIN(BeatDurationsTest)
#include "BeatDurationsTest.moc"
