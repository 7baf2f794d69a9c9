#include "base/Error.h"
#include "platform/CommPort.h"
#include "simulators/TErgometerSimulator.h"
#include "simulators/TTreadmillSimulator.h"
#include "support/ServedDevice.h"

#include <QtTest>

#include <memory>
#include <utility>

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;

/// The program's end of a device's line.
class TLine
{
public:
    explicit TLine(const std::string& path)
    {
        TCommSettings settings;
        settings.readTimeoutMs = 5000;
        m_port.open(path, settings);
    }

    bool write(const QByteArray& bytes) { return m_port.write(bytes.constData(), bytes.size()); }
    QByteArray read(int size)
    {
        QByteArray bytes(size, '\0');
        bytes.resize(std::max(0, m_port.read(bytes.data(), size)));
        return bytes;
    }
    /// As many, and what else there is.
    int linesOf(int count)
    {
        QByteArray bytes;
        for (int byte = 0; bytes.count('\n') < count && (byte = m_port.readByte()) >= 0;)
            bytes += static_cast<char>(byte);
        return (bytes + rest()).count('\n');
    }
    /// What is too much, if it comes within 100 ms.
    QByteArray rest()
    {
        m_port.resume(100, 100);
        return read(1000);
    }

private:
    CommPort m_port;
};

TEquipmentSimulatorOptions fault(TFault kind, int after = 0, int times = -1)
{
    TEquipmentSimulatorOptions options;
    options.fault = kind;
    options.faultAfter = after;
    options.faultTimes = times;
    options.lateMs = 500;
    return options;
}

} // namespace

/// The simulated devices find fault with wrong messages, and are at fault when told so.
class EquipmentSimulatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTreadmillJudgesMessages_data();
    void aTreadmillJudgesMessages();
    void aTreadmillAnswersWhatIsRight();
    void anErgometerJudgesCommands_data();
    void anErgometerJudgesCommands();
    void anErgometerAnswersInLines();
    void faultsTouchTheMessagesTheyAreToldTo_data();
    void faultsTouchTheMessagesTheyAreToldTo();
    void aHangUpTakesThePortAway();
    void aPortIsFoundByItsLink();
    void aLinkThatIsThereIsReplaced();
    void aFileInThePlaceOfALinkStays();
};

void EquipmentSimulatorTest::aTreadmillJudgesMessages_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("told");
    const auto row = [](const char* sent, const char* told) {
        QTest::newRow(sent) << QByteArray(sent) << QByteArray(told);
    };
    row(";2GO00:", ";2GO00:");
    row(";2ST17:", ";2ST17:");
    row(";2V040076:", ";2V040076:");
    row(";2V040177:", ";2V040177:(value out of range)");
    row(";2E020158:", ";2E020158:(value out of range)");
    row(";2N080173:", ";2N080173:(value out of range)");
    row(";2V040075:", ";2V040075:(wrong check sum)");
    row(";0GO98:", ";0GO98:(wrong address)");
    row(";2XX26:", ";2XX26:(unknown command)");
    row(";2V04028:", ";2V04028:(wrong length)");
    row(";2GOO23:", ";2GOO23:(wrong length)");
    row(";2V00x044:", ";2V00x044:(value is no number)");
    row(";2V0-1070:", ";2V0-1070:(value is no number)");
    row(":", ":(outside of a message)");
    row(";2:", ";2:(wrong length)");
    row("x;2GO00:", "x(outside of a message) ;2GO00:");
    row(";2V04;2GO00:", ";2V04(not ended) ;2GO00:");
    row(";2V0123456789012;2GO00:", ";2V0123456789012(too long) ;2GO00:");
}

void EquipmentSimulatorTest::aTreadmillJudgesMessages()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, told);
    const TServedDevice<TTreadmillSimulator> treadmill;
    TLine line(treadmill.path());
    QVERIFY(line.write(sent));
    QVERIFY2(treadmill.isTold(told), treadmill.told().constData());
}

void EquipmentSimulatorTest::aTreadmillAnswersWhatIsRight()
{
    const TServedDevice<TTreadmillSimulator> treadmill;
    TLine line(treadmill.path());
    QVERIFY(line.write(";2GO01:;2V005077:;2ST17:"));
    QCOMPARE(line.read(17), QByteArray(";2V005077:;2ST17:"));
    QCOMPARE(line.rest(), QByteArray());
}

void EquipmentSimulatorTest::anErgometerJudgesCommands_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("told");
    const auto row = [](const char* sent, const char* told) {
        QTest::newRow(sent) << QByteArray(sent) << QByteArray(told);
    };
    row("rcpd50\nai-25\ni75\ner", "r c p d 50 a i -25 i 75 e r");
    row("x", "x(unknown command)");
    row("d", "d(not prepared)");
    row("pad", "p a d(not prepared)");
    row("i", "i(no load)");
    row("e", "e(no load)");
    row("pd0\n", "p d 0(load out of range)");
    row("pd1001\n", "p d 1001(load out of range)");
    row("pd50\ni-50\n", "p d 50 i -50(load out of range)");
    row("pd\n", "p d (no number)");
    row("pd5-0\n", "p d 5-0(no number)");
    row("pd50r", "p d 50(number is not ended) r");
    row("pdr", "p d r");
    row("pd12345678r", "p d 12345678(number is not ended) r");
    row("pd50\nri", "p d 50 r i(no load)");
}

void EquipmentSimulatorTest::anErgometerJudgesCommands()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, told);
    const TServedDevice<TErgometerSimulator> ergometer;
    TLine line(ergometer.path());
    QVERIFY(line.write(sent));
    QVERIFY2(ergometer.isTold(told), ergometer.told().constData());
}

void EquipmentSimulatorTest::anErgometerAnswersInLines()
{
    const TServedDevice<TErgometerSimulator> ergometer;
    const std::pair<const char*, int> commands[] = {{"r", 0}, {"c", 3}, {"p", 1},     {"d", 1}, {"50\n", 2},
                                                    {"a", 1}, {"i", 1}, {"-25\n", 2}, {"e", 2}, {"x", 0}};
    for (const auto& [sent, lines] : commands) {
        TLine line(ergometer.path());
        QVERIFY(line.write(sent));
        QCOMPARE(line.linesOf(lines), lines);
    }
}

void EquipmentSimulatorTest::faultsTouchTheMessagesTheyAreToldTo_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("answers");
    QTest::newRow("none") << int(TFault::None) << QByteArray(";2GO00:;2ST17:;2GO00:");
    QTest::newRow("silent") << int(TFault::Silent) << QByteArray(";2GO00:;2GO00:");
    QTest::newRow("short") << int(TFault::Short) << QByteArray(";2GO00:;2ST17;2GO00:");
    QTest::newRow("late") << int(TFault::Late) << QByteArray(";2GO00:;2GO00:;2ST17:");
}

void EquipmentSimulatorTest::faultsTouchTheMessagesTheyAreToldTo()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, answers);
    const TServedDevice<TTreadmillSimulator> treadmill(fault(TFault(kind), 1, 1));
    TLine line(treadmill.path());
    QVERIFY(line.write(";2GO00:;2ST17:;2GO00:"));
    QCOMPARE(line.read(answers.size()), answers);
    QCOMPARE(line.rest(), QByteArray());
}

void EquipmentSimulatorTest::aHangUpTakesThePortAway()
{
    const TServedDevice<TTreadmillSimulator> treadmill(fault(TFault::HangUp, 1));
    TLine line(treadmill.path());
    QVERIFY(line.write(";2GO00:"));
    QCOMPARE(line.read(7), QByteArray(";2GO00:"));
    QVERIFY(line.write(";2ST17:"));
    QCOMPARE(line.read(7), QByteArray());
    QVERIFY(!line.write(";2GO00:"));
    QVERIFY(treadmill.isTold(";2GO00: ;2ST17:"));
}

void EquipmentSimulatorTest::aPortIsFoundByItsLink()
{
    const QTemporaryDir folder;
    TEquipmentSimulatorOptions options;
    options.link = folder.filePath(QStringLiteral("treadmill")).toStdString();
    const TServedDevice<TTreadmillSimulator> treadmill(options);
    QCOMPARE(treadmill.path(), options.link);
    TLine line(options.link);
    QVERIFY(line.write(";2GO00:"));
    QVERIFY(treadmill.isTold(";2GO00:"));
}

void EquipmentSimulatorTest::aLinkThatIsThereIsReplaced()
{
    const QTemporaryDir folder;
    TEquipmentSimulatorOptions options;
    options.link = folder.filePath(QStringLiteral("treadmill")).toStdString();
    const QString link = QString::fromStdString(options.link);
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("left behind")), link));
    auto first = std::make_unique<TTreadmillSimulator>(options);
    const QString firstPort = QFile::symLinkTarget(link);
    const TTreadmillSimulator second(options);
    const QString secondPort = QFile::symLinkTarget(link);
    QVERIFY(firstPort.startsWith(QStringLiteral("/dev/")) && secondPort != firstPort);
    first.reset();
    QCOMPARE(QFile::symLinkTarget(link), secondPort);
}

void EquipmentSimulatorTest::aFileInThePlaceOfALinkStays()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("treadmill")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    TEquipmentSimulatorOptions options;
    options.link = file.fileName().toStdString();
    QVERIFY_EXCEPTION_THROWN(TTreadmillSimulator{options}, TError);
    QVERIFY(QFileInfo(file.fileName()).isFile());
}

QTEST_GUILESS_MAIN(EquipmentSimulatorTest)
#include "EquipmentSimulatorTest.moc"
