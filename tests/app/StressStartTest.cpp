#include "app/StressStart.h"

#include "app/TestHome.h"
#include "base/Error.h"
#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"

#include <QtTest>

namespace {

class FullStore : public LocalStudyDatabase
{
public:
    FullStore() : LocalStudyDatabase(QString()) {}
    bool hasFreeSpace() const override { return false; }
};

QString kindOf(const TEquipment* equipment)
{
    if (!equipment)
        return QStringLiteral("by hand");
    const QString kind = equipment->kind() == TEquipment::Treadmill ? QStringLiteral("treadmill")
                                                                    : QStringLiteral("ergometer");
    if (dynamic_cast<const TOlmoErgometer*>(equipment))
        return QStringLiteral("olmo ") + kind;
    return (dynamic_cast<const TKipnetTreadmill*>(equipment) ? QStringLiteral("kipnet ") : QString()) + kind;
}

} // namespace

class StressStartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void aStoreWithoutRoomIsTold()
    {
        QCOMPARE(spaceWarning(FullStore()),
                 QStringLiteral("There is not enough free space on disk.\n"
                                "Please free at least 50 MB to start a new study."));
    }

    void aStoreWithRoomIsNotSpokenOf() { QCOMPARE(spaceWarning(LocalStudyDatabase(QString())), QString()); }

    void theTiltTestMakesTheTypeOfTheStudy()
    {
        StudyInfo info;
        info.studyType = "Stress test";
        info.protocolName = "Bruce";
        setStressType(info);
        QCOMPARE(info.studyType, QByteArray("Stress test"));
        QVERIFY(!isTiltTest(info));
        info.protocolName = "Tilt test";
        setStressType(info);
        QCOMPARE(info.studyType, QByteArray("Tilt test"));
        QVERIFY(isTiltTest(info));
    }

    void theProtocolComesFromTheTableOrIsTheTiltTest()
    {
        const LocalStudyDatabase store{QString()};
        StudyInfo info;
        info.protocolName = store.protocolNames().front();
        QCOMPARE(stressProtocol(info, store).name(), info.protocolName);
        info.protocolName = "Tilt test";
        QVERIFY(stressProtocol(info, store) == TStressProtocol::tiltTest());
        info.protocolName = "No such";
        QVERIFY_EXCEPTION_THROWN(stressProtocol(info, store), TError);
    }

    void theEquipmentFollowsTheProtocolAndTheSettings_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("treadmill");
        QTest::addColumn<QString>("ergometer");
        QTest::addColumn<QString>("expected");
        const auto row = [](TProtocolType type, const char* treadmill, const char* ergometer,
                            const char* expected) {
            QTest::addRow("%d, %s, %s", int(type), treadmill, ergometer)
                << int(type) << QString::fromLatin1(treadmill) << QString::fromLatin1(ergometer)
                << QString::fromLatin1(expected);
        };
        row(TProtocolType::Treadmill, "kipmachines", "", "kipnet treadmill");
        row(TProtocolType::Treadmill, "", "kipmachines", "by hand");
        row(TProtocolType::Treadmill, "olmo", "olmo", "by hand");
        row(TProtocolType::Treadmill, "other", "", "by hand");
        row(TProtocolType::Ergometer, "", "olmo", "olmo ergometer");
        row(TProtocolType::Ergometer, "", "kipmachines", "kipnet ergometer");
        row(TProtocolType::Ergometer, "kipmachines", "", "by hand");
        row(TProtocolType::Ergometer, "kipmachines", "other", "by hand");
        row(TProtocolType::Ecg, "kipmachines", "kipmachines", "by hand");
        row(TProtocolType::TiltTest, "kipmachines", "olmo", "by hand");
        row(TProtocolType::Pharmacologic, "kipmachines", "kipmachines", "by hand");
    }

    void theEquipmentFollowsTheProtocolAndTheSettings()
    {
        QFETCH(int, type);
        QFETCH(QString, treadmill);
        QFETCH(QString, ergometer);
        settings::treadmillEquipment.setValue(treadmill);
        settings::ergometerEquipment.setValue(ergometer);
        const QString nowhere = m_home.path("no-port");
        settings::treadmillPort.setValue(nowhere);
        settings::ergometerPort.setValue(nowhere);
        // The treadmill keeps a log in the working folder.
        QVERIFY(QDir::setCurrent(QFileInfo(nowhere).path()));
        const TStressProtocol protocol("Test", static_cast<TProtocolType>(type));
        QTEST(kindOf(createStressEquipment(protocol).get()), "expected");
    }

    void aTiltTestHasNoEquipment()
    {
        settings::treadmillEquipment.setValue(QStringLiteral("kipmachines"));
        StudyInfo info;
        info.protocolName = "Tilt test";
        QVERIFY(!createStressEquipment(stressProtocol(info, LocalStudyDatabase(QString()))));
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(StressStartTest)
#include "StressStartTest.moc"
