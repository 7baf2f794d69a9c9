#include "app/StressStart.h"

#include "app/TestHome.h"
#include "base/Error.h"
#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"
#include "support/PseudoTerminal.h"

#include <QtTest>

namespace {

class FullStore : public LocalStudyDatabase
{
public:
    FullStore() : LocalStudyDatabase(QString()) {}
    bool hasFreeSpace() const override { return false; }
};

/// A line under a name of the test's own: when it has gone, the name leads nowhere.
class TNamedPort
{
public:
    explicit TNamedPort(const QString& name) : m_name(name)
    {
        QFile::remove(name);
        if (!QFile::link(target(), name))
            qFatal("The port could not be named");
    }
    ~TNamedPort() { QFile::remove(m_name); }
    TNamedPort(const TNamedPort&) = delete;
    TNamedPort& operator=(const TNamedPort&) = delete;

    const QString& name() const { return m_name; }
    /// By this process, at its near end.
    bool isOpen() const
    {
        const QFileInfoList open = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::NoFilter);
        return std::any_of(open.begin(), open.end(),
                           [this](const QFileInfo& each) { return each.symLinkTarget() == target(); });
    }

private:
    QString target() const { return QString::fromStdString(m_line.path()); }

    TPseudoTerminal m_line;
    const QString m_name;
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
        QTest::addColumn<QString>("port");
        const auto row = [](TProtocolType type, const char* treadmill, const char* ergometer,
                            const char* expected, const char* port = "") {
            QTest::addRow("%d, %s, %s", int(type), treadmill, ergometer)
                << int(type) << QString::fromLatin1(treadmill) << QString::fromLatin1(ergometer)
                << QString::fromLatin1(expected) << QString::fromLatin1(port);
        };
        row(TProtocolType::Treadmill, "kipmachines", "", "kipnet treadmill", "treadmill");
        row(TProtocolType::Treadmill, "", "kipmachines", "by hand");
        row(TProtocolType::Treadmill, "olmo", "olmo", "by hand");
        row(TProtocolType::Treadmill, "other", "", "by hand");
        row(TProtocolType::Ergometer, "", "olmo", "olmo ergometer", "ergometer");
        row(TProtocolType::Ergometer, "", "kipmachines", "kipnet ergometer", "ergometer");
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
        const TNamedPort treadmillPort(m_home.path("treadmill-port"));
        const TNamedPort ergometerPort(m_home.path("ergometer-port"));
        settings::treadmillPort.setValue(treadmillPort.name());
        settings::ergometerPort.setValue(ergometerPort.name());
        // The treadmill keeps a log in the working folder.
        QVERIFY(QDir::setCurrent(QFileInfo(treadmillPort.name()).path()));
        const TStressProtocol protocol("Test", static_cast<TProtocolType>(type));
        const std::unique_ptr<TEquipment> equipment = createStressEquipment(protocol);
        QTEST(kindOf(equipment.get()), "expected");
        const auto opened = [&] {
            return QString::fromLatin1(treadmillPort.isOpen() ? "treadmill" : "") +
                   QString::fromLatin1(ergometerPort.isOpen() ? "ergometer" : "");
        };
        QVERIFY(QTest::qWaitFor([&] { return !equipment || !opened().isEmpty(); }));
        QTEST(opened(), "port");
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
