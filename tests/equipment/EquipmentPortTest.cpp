#include "DebugTexts.h"
#include "equipment/EquipmentFactory.h"
#include "equipment/TKipnetTreadmill.h"
#include "equipment/TOlmoErgometer.h"
#include "support/PseudoTerminal.h"
#include "support/ServedDevice.h"

#include <QTextCodec>
#include <QtTest>

#include <utility>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

termios2 settingsOf(const TPseudoTerminal& line)
{
    termios2 tty{};
    ::ioctl(line.descriptor(), TCGETS2, &tty);
    return tty;
}

/// Leaves the line as another program might: two stop bits, characters that control the flow, and the
/// hardware lines too, or not.
void leaveUntidy(const TPseudoTerminal& line, bool hasFlowControl)
{
    termios2 tty = settingsOf(line);
    tty.c_cflag = hasFlowControl ? tty.c_cflag | CRTSCTS : tty.c_cflag & ~tcflag_t(CRTSCTS);
    tty.c_cflag |= CSTOPB;
    tty.c_iflag |= IXON | IXOFF;
    ::ioctl(line.descriptor(), TCSETS2, &tty);
}

bool isToldTo(const TDebugTexts& debug, const char* text)
{
    return comesTrue([&] { return debug.texts() == std::vector<std::string>{text}; });
}

} // namespace

/// The lines to the devices, and which driver is made for which name.
class EquipmentPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void theLineIsSetUpForItsDevice_data() { drivers(); }

    void theLineIsSetUpForItsDevice()
    {
        QFETCH(QString, name);
        QFETCH(int, baud);
        for (const bool hasFlowControl : {false, true}) {
            const TPseudoTerminal line;
            leaveUntidy(line, hasFlowControl);
            QVERIFY((settingsOf(line).c_cflag & CSTOPB) != 0);
            const auto driver =
                createEquipment(TEquipment::Ergometer, name, QString::fromStdString(line.path()));
            QVERIFY(comesTrue([&] { return int(settingsOf(line).c_ospeed) == baud; }));
            const termios2 tty = settingsOf(line);
            QCOMPARE(int(tty.c_ispeed), baud);
            QCOMPARE(tty.c_cflag & CSTOPB, tcflag_t(0));
            QCOMPARE((tty.c_cflag & CRTSCTS) != 0, hasFlowControl);
            QCOMPARE(tty.c_iflag & (IXON | IXOFF), tcflag_t(0));
        }
    }

    void aCharacterFromTheDeviceHoldsNothingBack()
    {
        TPseudoTerminal line;
        leaveUntidy(line, false);
        const auto driver = createEquipment(TEquipment::Treadmill, QStringLiteral("kipmachines"),
                                            QString::fromStdString(line.path()));
        QVERIFY(comesTrue([&] { return int(settingsOf(line).c_ospeed) == 4800; }));
        QVERIFY(line.writeAll("\x13"));
        driver->stop();
        QCOMPARE(line.readAll(7), QByteArray(";2ST17:"));
    }

    void aPortThatCannotBeOpenedHasItsText_data() { drivers(); }

    void aPortThatCannotBeOpenedHasItsText()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QString circle = folder.filePath(QStringLiteral("circle"));
        QVERIFY(QFile::link(circle, circle));
        const std::pair<QString, const char*> ports[] = {{QStringLiteral("ttyThatIsNone"), "Port not found"},
                                                         {QStringLiteral("/dev/null"), "Invalid port"},
                                                         {circle, "Connect failed"}};
        for (const auto& [port, text] : ports) {
            const TDebugTexts debug;
            const auto driver = createEquipment(TEquipment::Ergometer, name, port);
            QVERIFY2(isToldTo(debug, text), text);
        }
    }

    void aPortsNameIsUtf8UnderAnyCodecOfTheLocale_data() { drivers(); }

    void aPortsNameIsUtf8UnderAnyCodecOfTheLocale()
    {
        QFETCH(QString, name);
        QFETCH(int, baud);
        const TPseudoTerminal line;
        const QTemporaryDir folder;
        const QByteArray link = folder.path().toUtf8() + "/l\xc3\xadnea";
        QCOMPARE(::symlink(line.path().c_str(), link.constData()), 0);
        QTextCodec* const before = QTextCodec::codecForLocale();
        const auto restore = qScopeGuard([before] { QTextCodec::setCodecForLocale(before); });
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        const auto driver = createEquipment(TEquipment::Ergometer, name, QString::fromUtf8(link));
        QVERIFY(comesTrue([&] { return int(settingsOf(line).c_ospeed) == baud; }));
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

private:
    static void drivers()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("baud");
        QTest::newRow("OLMO") << QStringLiteral("olmo") << 9600;
        QTest::newRow("Kipnet") << QStringLiteral("kipmachines") << 4800;
    }
};

QTEST_GUILESS_MAIN(EquipmentPortTest)
#include "EquipmentPortTest.moc"
