#include "recorder/TEquipmentLink.h"

#include "recorder/FakeEquipment.h"
#include "study/TRampProtocol.h"

#include <QtTest>

namespace {

TProtocolStage loadedStage()
{
    TProtocolStage stage(TStagePhase::Exercise, 60.0);
    stage.setValue(TProtocolStage::speedKey, 2.5);
    stage.setValue(TProtocolStage::inclineKey, 10.0);
    stage.setValue(TProtocolStage::workloadKey, 75.0);
    stage.setValue(TProtocolStage::doseKey, 5.0);
    return stage;
}

} // namespace

class TEquipmentLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_failures = 0;
        m_equipment = std::make_unique<FakeEquipment>();
        m_link = std::make_unique<TEquipmentLink>(m_equipment.get(), [this] { ++m_failures; });
    }

    void eachTestSendsWhatItsEquipmentUnderstands_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("calls");
        QTest::newRow("treadmill") << int(TProtocolType::Treadmill)
                                   << QStringLiteral("speed 2.5, incline 10, commit");
        QTest::newRow("ergometer") << int(TProtocolType::Ergometer) << QStringLiteral("workload 75, commit");
        QTest::newRow("ecg") << int(TProtocolType::Ecg) << QString();
        QTest::newRow("tilt test") << int(TProtocolType::TiltTest) << QString();
        QTest::newRow("pharmacologic") << int(TProtocolType::Pharmacologic) << QString();
    }

    void eachTestSendsWhatItsEquipmentUnderstands()
    {
        QFETCH(int, type);
        QFETCH(QString, calls);
        m_link->send(TProtocolType(type), loadedStage());
        QCOMPARE(m_equipment->takeCalls(), calls);
        QCOMPARE(m_failures, 0);
        QVERIFY(m_link->isThere());
    }

    void theFirstFailureEndsTheOrderAndDropsTheEquipment_data()
    {
        QTest::addColumn<QByteArray>("failsAt");
        QTest::addColumn<QString>("calls");
        QTest::newRow("start") << QByteArray("start") << QStringLiteral("start");
        QTest::newRow("first value") << QByteArray("speed") << QStringLiteral("start, speed 2.5");
        QTest::newRow("second value")
            << QByteArray("incline") << QStringLiteral("start, speed 2.5, incline 10");
        QTest::newRow("commit") << QByteArray("commit")
                                << QStringLiteral("start, speed 2.5, incline 10, commit");
        QTest::newRow("stop") << QByteArray("stop")
                              << QStringLiteral("start, speed 2.5, incline 10, commit, speed 2.5, "
                                                "incline 10, commit, stop");
    }

    void theFirstFailureEndsTheOrderAndDropsTheEquipment()
    {
        QFETCH(QByteArray, failsAt);
        QFETCH(QString, calls);
        m_equipment->failsAt = failsAt;
        m_link->start();
        m_link->send(TProtocolType::Treadmill, loadedStage());
        m_link->send(TProtocolType::Treadmill, loadedStage());
        m_link->stop();
        m_link->stop();
        QCOMPARE(m_equipment->takeCalls(), calls);
        QCOMPARE(m_failures, 1);
        QVERIFY(!m_link->isThere());
    }

    void anErgometerThatFailsIsNotAskedToCommit()
    {
        m_equipment->failsAt = "workload";
        m_link->send(TProtocolType::Ergometer, loadedStage());
        QCOMPARE(m_equipment->takeCalls(), QStringLiteral("workload 75"));
        QCOMPARE(m_failures, 1);
    }

    void aRampGoesEvenlyToItsEndAndStaysThere()
    {
        TRampProtocol ramp;
        ramp.durationMinutes = 2;
        ramp.initialSpeed = 1.0;
        ramp.finalSpeed = 5.0;
        ramp.initialIncline = 12.0;
        ramp.finalIncline = 0.0;
        for (const double seconds : {0.0, 30.0, 60.0, 120.0, 500.0})
            m_link->send(ramp, seconds);
        QCOMPARE(m_equipment->takeCalls(),
                 QStringLiteral("speed 1, incline 12, commit, speed 2, incline 9, commit, "
                                "speed 3, incline 6, commit, speed 5, incline 0, commit, "
                                "speed 5, incline 0, commit"));
    }

    void aRampWithoutDurationStandsAtItsEnd()
    {
        TRampProtocol ramp;
        ramp.finalSpeed = 4.0;
        m_link->send(ramp, 3.0);
        QCOMPARE(m_equipment->takeCalls(), QStringLiteral("speed 4, incline 0, commit"));
    }

    void onlyWhatWasStartedIsStopped()
    {
        m_link->stop();
        QCOMPARE(m_equipment->takeCalls(), QString());
        m_link->start();
        m_link->stop();
        m_link->stop();
        QCOMPARE(m_equipment->takeCalls(), QStringLiteral("start, stop"));
        QCOMPARE(m_failures, 0);
    }

    void withoutEquipmentNothingHappens()
    {
        TEquipmentLink link(nullptr, [this] { ++m_failures; });
        link.start();
        link.send(TProtocolType::Treadmill, loadedStage());
        link.send(TRampProtocol(), 1.0);
        link.stop();
        QVERIFY(!link.isThere());
        QCOMPARE(m_failures, 0);
    }

private:
    int m_failures = 0;
    std::unique_ptr<FakeEquipment> m_equipment;
    std::unique_ptr<TEquipmentLink> m_link;
};

QTEST_GUILESS_MAIN(TEquipmentLinkTest)

#include "TEquipmentLinkTest.moc"
