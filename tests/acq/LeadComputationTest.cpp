#include "acq/LeadComputation.h"

#include <QtTest>

#include <limits>

using namespace acq;

namespace {

constexpr int top = std::numeric_limits<std::int16_t>::max();
constexpr int bottom = std::numeric_limits<std::int16_t>::min();

TEcgSample limbLeads(int first, int second, int third)
{
    TEcgSample sample;
    sample.channels[I] = static_cast<std::int16_t>(first);
    sample.channels[II] = static_cast<std::int16_t>(second);
    sample.channels[III] = static_cast<std::int16_t>(third);
    computeAugmentedLeads(sample);
    return sample;
}

/// Names of the channels that are left when those electrodes are off and all channels have a value.
QByteArray leftWith(std::initializer_list<TElectrode> electrodes)
{
    TEcgSample sample;
    sample.channels.fill(7);
    for (const TElectrode electrode : electrodes)
        sample.electrodesOff |= 1U << static_cast<unsigned>(electrode);
    zeroDetachedLeads(sample);
    QByteArray names;
    for (int i = 0; i < deviceChannelCount; ++i) {
        if (sample.channels[static_cast<std::size_t>(i)] == 7)
            names += QByteArray(channelNames[i]) + ' ';
    }
    return names.trimmed();
}

} // namespace

class LeadComputationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void augmentedLeadsFollowGoldberger_data();
    void augmentedLeadsFollowGoldberger();
    void halvesAreCutTowardZero();
    void theSentLeadsStay();
    void noLeadLeaves16Bits();
    void withoutOneLimbElectrodeOneLimbLeadStays();
    void withoutAChestElectrodeItsLeadIsZero();
    void allOffLeavesWhatHasNoElectrodeOfItsOwn();
};

void LeadComputationTest::augmentedLeadsFollowGoldberger_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("third");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("foot");
    QTest::newRow("rest") << 0 << 0 << 0 << 0 << 0 << 0;
    QTest::newRow("plain") << 400 << 1000 << 600 << -700 << -100 << 800;
    QTest::newRow("aVR held at the top") << bottom << bottom << 0 << top << bottom / 2 << bottom / 2;
    QTest::newRow("aVL at the top") << top << 0 << bottom << -16383 << top << bottom / 2;
    QTest::newRow("aVL lowest") << bottom << 0 << top << -(bottom / 2) << -32767 << 16383;
    QTest::newRow("aVR lowest") << top << top << 0 << -32767 << 16383 << 16383;
    QTest::newRow("aVF lowest") << 0 << bottom << bottom << 16384 << 16384 << bottom;
    QTest::newRow("aVF highest") << 0 << top << top << -16383 << -16383 << top;
}

void LeadComputationTest::augmentedLeadsFollowGoldberger()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(int, third);
    const TEcgSample sample = limbLeads(first, second, third);
    QTEST(int(sample.channels[aVR]), "right");
    QTEST(int(sample.channels[aVL]), "left");
    QTEST(int(sample.channels[aVF]), "foot");
}

void LeadComputationTest::halvesAreCutTowardZero()
{
    const TEcgSample up = limbLeads(1, 0, 0);
    QCOMPARE(int(up.channels[aVR]), 0);
    QCOMPARE(int(up.channels[aVL]), 0);
    const TEcgSample down = limbLeads(-3, 0, 0);
    QCOMPARE(int(down.channels[aVR]), 1);
    QCOMPARE(int(down.channels[aVL]), -1);
    QCOMPARE(int(limbLeads(0, -2, -1).channels[aVF]), -1);
    QCOMPARE(int(limbLeads(3, 0, 0).channels[aVR]), -1);
}

void LeadComputationTest::theSentLeadsStay()
{
    TEcgSample sample;
    for (std::size_t i = 0; i < sample.channels.size(); ++i)
        sample.channels[i] = static_cast<std::int16_t>(100 * i + 1);
    const TEcgSample before = sample;
    computeAugmentedLeads(sample);
    for (std::size_t i = 0; i < sample.channels.size(); ++i)
        QCOMPARE(sample.channels[i] == before.channels[i], i != aVR && i != aVL && i != aVF);
}

void LeadComputationTest::noLeadLeaves16Bits()
{
    const int values[] = {bottom, bottom + 1, -16384, -1, 0, 1, 16384, top - 1, top};
    for (const int first : values) {
        for (const int second : values) {
            for (const int third : values) {
                const TEcgSample sample = limbLeads(first, second, third);
                QCOMPARE(int(sample.channels[aVR]), std::min(-(first + second) / 2, top));
                QCOMPARE(int(sample.channels[aVL]), std::min((first - third) / 2, top));
                QCOMPARE(int(sample.channels[aVF]), (second + third) / 2);
            }
        }
    }
}

void LeadComputationTest::withoutOneLimbElectrodeOneLimbLeadStays()
{
    const QByteArray chest = " V1 V2 V3 V4 V5 V6 CM5 CR5";
    QCOMPARE(leftWith({TElectrode::LA}), "II" + chest);
    QCOMPARE(leftWith({TElectrode::LL}), "I" + chest);
    QCOMPARE(leftWith({TElectrode::RA}), "III" + chest);
    QCOMPARE(leftWith({TElectrode::LA, TElectrode::LL}), chest.trimmed());
    QCOMPARE(leftWith({}), "I II III aVR aVL aVF" + chest);
}

void LeadComputationTest::withoutAChestElectrodeItsLeadIsZero()
{
    const QByteArray limb = "I II III aVR aVL aVF ";
    QCOMPARE(leftWith({TElectrode::V1}), limb + "V2 V3 V4 V5 V6 CM5 CR5");
    QCOMPARE(leftWith({TElectrode::V2}), limb + "V1 V3 V4 V5 V6 CM5 CR5");
    QCOMPARE(leftWith({TElectrode::V3}), limb + "V1 V2 V4 V5 V6 CM5 CR5");
    QCOMPARE(leftWith({TElectrode::V4}), limb + "V1 V2 V3 V5 V6 CM5 CR5");
    QCOMPARE(leftWith({TElectrode::V5}), limb + "V1 V2 V3 V4 V6 CM5 CR5");
    QCOMPARE(leftWith({TElectrode::V6}), limb + "V1 V2 V3 V4 V5 CM5 CR5");
}

void LeadComputationTest::allOffLeavesWhatHasNoElectrodeOfItsOwn()
{
    QCOMPARE(leftWith({TElectrode::LA, TElectrode::LL, TElectrode::RA, TElectrode::V1, TElectrode::V2,
                       TElectrode::V3, TElectrode::V4, TElectrode::V5, TElectrode::V6}),
             QByteArray("CM5 CR5"));
}

QTEST_GUILESS_MAIN(LeadComputationTest)
#include "LeadComputationTest.moc"
