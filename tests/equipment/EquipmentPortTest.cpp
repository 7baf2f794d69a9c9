#include "equipment/EquipmentFactory.h"
#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"
#include "support/PseudoTerminal.h"
#include "support/ServedDevice.h"

#include <QtTest>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace {

termios2 settingsOf(const TPseudoTerminal& line)
{
    termios2 tty{};
    ::ioctl(line.descriptor(), TCGETS2, &tty);
    return tty;
}

/// Has the hardware lines control the flow, or not.
void setFlowControl(const TPseudoTerminal& line, bool isOn)
{
    termios2 tty = settingsOf(line);
    tty.c_cflag = isOn ? tty.c_cflag | CRTSCTS : tty.c_cflag & ~tcflag_t(CRTSCTS);
    ::ioctl(line.descriptor(), TCSETS2, &tty);
}

} // namespace

/// The lines to the devices, and which driver is made for which name.
class EquipmentPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void theLineIsSetUpForItsDevice_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("baud");
        QTest::newRow("OLMO") << QStringLiteral("olmo") << 9600;
        QTest::newRow("Kipnet") << QStringLiteral("kipmachines") << 4800;
    }

    void theLineIsSetUpForItsDevice()
    {
        QFETCH(QString, name);
        QFETCH(int, baud);
        for (const bool hasFlowControl : {false, true}) {
            const TPseudoTerminal line;
            setFlowControl(line, hasFlowControl);
            const auto driver =
                createEquipment(TEquipment::Ergometer, name, QString::fromStdString(line.path()));
            QVERIFY(comesTrue([&] { return int(settingsOf(line).c_ospeed) == baud; }));
            const termios2 tty = settingsOf(line);
            QCOMPARE(int(tty.c_ispeed), baud);
            QCOMPARE(tty.c_cflag & CSIZE, tcflag_t(CS8));
            QCOMPARE(tty.c_cflag & CSTOPB, tcflag_t(0));
            QCOMPARE((tty.c_cflag & CRTSCTS) != 0, hasFlowControl);
        }
    }

    void namesMakeDrivers_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("driver");
        const auto row = [](TEquipment::TKind kind, const char* name, const char* driver) {
            QTest::addRow("%d %s", kind, name)
                << int(kind) << QString::fromLatin1(name) << QByteArray(driver);
        };
        row(TEquipment::Treadmill, "kipmachines", "Kipnet");
        row(TEquipment::Ergometer, "kipmachines", "Kipnet");
        row(TEquipment::Ergometer, "olmo", "OLMO");
        row(TEquipment::Treadmill, "olmo", "");
        row(TEquipment::Treadmill, "", "");
        row(TEquipment::Ergometer, "", "");
        row(TEquipment::Ergometer, "Olmo", "");
        row(TEquipment::Treadmill, "other", "");
    }

    void namesMakeDrivers()
    {
        QFETCH(int, kind);
        QFETCH(QString, name);
        QFETCH(QByteArray, driver);
        const TPseudoTerminal line;
        const auto made = createEquipment(TEquipment::TKind(kind), name, QString::fromStdString(line.path()));
        QCOMPARE(dynamic_cast<TKipnetTreadmill*>(made.get()) != nullptr, driver == "Kipnet");
        QCOMPARE(dynamic_cast<TOlmoErgometer*>(made.get()) != nullptr, driver == "OLMO");
        QCOMPARE(made == nullptr, driver.isEmpty());
        if (made)
            QCOMPARE(int(made->kind()), kind);
    }
};

QTEST_GUILESS_MAIN(EquipmentPortTest)
#include "EquipmentPortTest.moc"
