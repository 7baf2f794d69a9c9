#include "study/TProtocolTable.h"

#include <QtTest>

namespace {

using enum TStagePhase;

struct TTreadmillRow
{
    TStagePhase phase;
    double duration;
    double speed;
    double incline;
};

struct TErgometerRow
{
    TStagePhase phase;
    double duration;
    double workload;
};

const std::vector<TTreadmillRow> bruce{
    {Rest, 300, 0, 0},        {Exercise, 180, 2.7, 10}, {Exercise, 180, 4.0, 12}, {Exercise, 180, 5.4, 14},
    {Exercise, 180, 6.7, 16}, {Exercise, 180, 8.0, 18}, {Exercise, 180, 8.8, 20}, {Exercise, 180, 9.6, 22},
    {Recovery, 60, 0, 0},     {Recovery, 180, 0, 0},    {Recovery, 300, 0, 0}};

const std::vector<TTreadmillRow> bruceModified{
    {Rest, 300, 0, 0},        {Exercise, 180, 2.7, 0},  {Exercise, 180, 2.7, 5},  {Exercise, 180, 2.7, 10},
    {Exercise, 180, 4.0, 12}, {Exercise, 180, 5.4, 14}, {Exercise, 180, 6.7, 16}, {Exercise, 180, 8.0, 18},
    {Exercise, 180, 8.8, 20}, {Recovery, 60, 0, 0},     {Recovery, 180, 0, 0},    {Recovery, 300, 0, 0}};

const std::vector<TTreadmillRow> balkeWare{
    {Rest, 300, 0, 0},       {Exercise, 120, 5.4, 0}, {Exercise, 60, 5.4, 2},  {Exercise, 60, 5.4, 3},
    {Exercise, 60, 5.4, 4},  {Exercise, 60, 5.4, 5},  {Exercise, 60, 5.4, 6},  {Exercise, 60, 5.4, 7},
    {Exercise, 60, 5.4, 8},  {Exercise, 60, 5.4, 9},  {Exercise, 60, 5.4, 10}, {Exercise, 60, 5.4, 11},
    {Exercise, 60, 5.4, 12}, {Exercise, 60, 5.4, 13}, {Exercise, 60, 5.4, 14}, {Exercise, 60, 5.4, 15},
    {Exercise, 60, 5.4, 16}, {Exercise, 60, 5.4, 17}, {Exercise, 60, 5.4, 18}, {Exercise, 60, 5.4, 19},
    {Exercise, 60, 5.4, 20}, {Exercise, 60, 5.4, 21}, {Exercise, 60, 5.4, 22}, {Exercise, 60, 5.4, 23},
    {Exercise, 60, 5.4, 24}, {Exercise, 60, 5.4, 25}, {Recovery, 60, 0, 0},    {Recovery, 180, 0, 0},
    {Recovery, 300, 0, 0}};

const std::vector<TTreadmillRow> naughton{
    {Rest, 300, 0, 0},          {Exercise, 120, 3.2, 0},    {Exercise, 120, 3.2, 3.5},
    {Exercise, 120, 3.2, 7},    {Exercise, 120, 3.2, 10.5}, {Exercise, 120, 3.2, 14},
    {Exercise, 120, 3.2, 17.5}, {Exercise, 120, 3.2, 21},   {Recovery, 60, 0, 0},
    {Recovery, 180, 0, 0},      {Recovery, 300, 0, 0}};

const std::vector<TErgometerRow> who{{Rest, 300, 0},       {Exercise, 180, 25},  {Exercise, 180, 50},
                                     {Exercise, 180, 75},  {Exercise, 180, 100}, {Exercise, 180, 125},
                                     {Exercise, 180, 150}, {Exercise, 180, 175}, {Exercise, 180, 200},
                                     {Recovery, 60, 0},    {Recovery, 180, 0},   {Recovery, 300, 0}};

const std::vector<TErgometerRow> astrandMen{{Rest, 300, 0},       {Exercise, 120, 100}, {Exercise, 120, 150},
                                            {Exercise, 120, 200}, {Exercise, 120, 250}, {Exercise, 120, 300},
                                            {Recovery, 60, 0},    {Recovery, 120, 0},   {Recovery, 300, 0}};

const std::vector<TErgometerRow> astrandWomen{
    {Rest, 300, 0},       {Exercise, 120, 50},  {Exercise, 120, 75},
    {Exercise, 120, 100}, {Exercise, 120, 125}, {Exercise, 120, 150},
    {Recovery, 60, 0},    {Recovery, 120, 0},   {Recovery, 300, 0}};

/// The number of the first stage that differs, or a negative number if all of it is as expected.
int firstDifference(const TStressProtocol& protocol, const std::vector<TTreadmillRow>& rows)
{
    for (int i = 0; i < std::max(protocol.stageCount(), static_cast<int>(rows.size())); ++i) {
        if (i >= protocol.stageCount() || i >= static_cast<int>(rows.size()))
            return i;
        const TProtocolStage& stage = protocol.stage(i);
        const TTreadmillRow& row = rows[static_cast<std::size_t>(i)];
        if (stage.phase() != row.phase || stage.duration() != row.duration ||
            stage.value("speed") != row.speed || stage.value("incline") != row.incline)
            return i;
    }
    return -1;
}

int firstDifference(const TStressProtocol& protocol, const std::vector<TErgometerRow>& rows)
{
    for (int i = 0; i < std::max(protocol.stageCount(), static_cast<int>(rows.size())); ++i) {
        if (i >= protocol.stageCount() || i >= static_cast<int>(rows.size()))
            return i;
        const TProtocolStage& stage = protocol.stage(i);
        const TErgometerRow& row = rows[static_cast<std::size_t>(i)];
        if (stage.phase() != row.phase || stage.duration() != row.duration ||
            stage.value("workload") != row.workload)
            return i;
    }
    return -1;
}

} // namespace

Q_DECLARE_METATYPE(const std::vector<TTreadmillRow>*)
Q_DECLARE_METATYPE(const std::vector<TErgometerRow>*)

class BuiltInProtocolsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTableHasSevenProtocolsInSortedOrder()
    {
        const std::vector<QByteArray> names{"Astrand (f.)",   "Astrand (m.)", "Balke-Ware", "Bruce",
                                            "Bruce (modif.)", "Naughton",     "Who"};
        QCOMPARE(m_table.names(), names);
        for (const QByteArray& name : names)
            QCOMPARE(m_table.find(name)->name(), name);
    }

    void treadmillProtocolsAreAsPublished_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<const std::vector<TTreadmillRow>*>("rows");
        QTest::newRow("Bruce") << QByteArray("Bruce") << &bruce;
        QTest::newRow("Bruce modified") << QByteArray("Bruce (modif.)") << &bruceModified;
        QTest::newRow("Balke-Ware") << QByteArray("Balke-Ware") << &balkeWare;
        QTest::newRow("Naughton") << QByteArray("Naughton") << &naughton;
    }

    void treadmillProtocolsAreAsPublished()
    {
        QFETCH(QByteArray, name);
        QFETCH(const std::vector<TTreadmillRow>*, rows);
        const TStressProtocol* protocol = m_table.find(name);
        QVERIFY(protocol != nullptr);
        QCOMPARE(protocol->type(), TProtocolType::Treadmill);
        QCOMPARE(firstDifference(*protocol, *rows), -1);
    }

    void ergometerProtocolsAreAsPublished_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<const std::vector<TErgometerRow>*>("rows");
        QTest::newRow("Who") << QByteArray("Who") << &who;
        QTest::newRow("Astrand men") << QByteArray("Astrand (m.)") << &astrandMen;
        QTest::newRow("Astrand women") << QByteArray("Astrand (f.)") << &astrandWomen;
    }

    void ergometerProtocolsAreAsPublished()
    {
        QFETCH(QByteArray, name);
        QFETCH(const std::vector<TErgometerRow>*, rows);
        const TStressProtocol* protocol = m_table.find(name);
        QVERIFY(protocol != nullptr);
        QCOMPARE(protocol->type(), TProtocolType::Ergometer);
        QCOMPARE(firstDifference(*protocol, *rows), -1);
    }

private:
    const TProtocolTable m_table = TProtocolTable::builtIn();
};

QTEST_GUILESS_MAIN(BuiltInProtocolsTest)
#include "BuiltInProtocolsTest.moc"
