#include "cli/Recording.h"
#include "equipment/KipnetMessages.h"
#include "study/StoreFolder.h"
#include "study/TEcgFile.h"
#include "support/PseudoTerminal.h"

#include <QJsonArray>
#include <QtTest>

namespace {

/// A simulated device as a program of its own.
class TSimulator
{
public:
    TSimulator(const char* program, const QStringList& options)
    {
        m_process.start(QLatin1String(program), options);
        if (m_process.waitForReadyRead(10000))
            m_path = QString::fromLocal8Bit(m_process.readLine().trimmed());
    }
    ~TSimulator() { end(); }

    QString path() const { return m_path; }
    /// What it has printed since.
    QByteArray end()
    {
        m_process.terminate();
        m_process.waitForFinished();
        return m_process.readAllStandardOutput();
    }

private:
    QProcess m_process;
    QString m_path;
};

/// Messages of a treadmill's or ergometer's log, with a blank between them; a wrong one bears its remark.
QByteArray messagesOf(const QByteArray& log)
{
    QByteArrayList messages;
    for (const QByteArray& line : log.split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() >= 3)
            messages << (words.mid(2).join(' ') == "ok" ? words.at(1) : line);
    }
    return messages.join(' ');
}

/// What goes out for a load.
QByteArray load(double speed, double incline)
{
    return QByteArray::fromStdString(kipnet::speedMessage(speed) + ' ' + kipnet::inclineMessage(incline));
}

QStringList texts(const QJsonValue& array)
{
    QStringList list;
    for (const QJsonValue value : array.toArray())
        list << value.toString();
    return list;
}

} // namespace

/// Examinations through simulated devices at pseudo-terminals.
class RecordDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<StoreFolder>(); }

    void aDeviceAtAPortIsRecorded_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QStringList>("channels");
        const QStringList all = wordsOf("I II III aVR aVL aVF V1 V2 V3 V4 V5 V6 CM5 CR5");
        const QString highRate = QStringLiteral("--high-rate");
        const QString reduced = QStringLiteral("--reduced-channels");
        QTest::newRow("standard") << QString() << QString() << all;
        QTest::newRow("standard, reduced") << QString() << reduced << wordsOf("II V2 V5");
        QTest::newRow("high rate") << highRate << highRate << all;
        QTest::newRow("high rate, which knows no reduced channels")
            << highRate << highRate + QLatin1Char(' ') + reduced << all;
    }

    void aDeviceAtAPortIsRecorded()
    {
        QFETCH(QString, family);
        QFETCH(QString, options);
        QFETCH(QStringList, channels);
        const TSimulator device(SIM_ECG_DEVICE, wordsOf("--source " ECG500 " --speed 8") +
                                                    family.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        TRecording recording(m_folder->path(), wordsOf("--ecg --stop-after 8 --beats --source")
                                                   << device.path()
                                                   << options.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(recording.run(), 0);
        QCOMPARE(recording.error(), QByteArray());
        const QJsonObject ecg =
            shown(m_folder->path(), recording.id()).value(QLatin1String("ecg")).toObject();
        QCOMPARE(texts(ecg.value(QLatin1String("channels"))), channels);
        QVERIFY(ecg.value(QLatin1String("samples")).toInt() >= 4000);
        QCOMPARE(ecg.value(QLatin1String("samplingRate")).toInt(), 500);
        QCOMPARE(ecg.value(QLatin1String("rangeMax")).toDouble(), family.isEmpty() ? 450.0 : 300.0);
        QVERIFY(recording.lines("warning").isEmpty());
        QVERIFY(recording.lines("beat").size() >= 3);
        const QJsonObject status = recording.lines("status").value(0);
        QCOMPARE(status.value(QLatin1String("battery")).toDouble(), 3.0);
        QVERIFY(status.value(QLatin1String("electrodesOff")).toArray().isEmpty());
    }

    void whatTheDeviceSaysOfItselfIsTold()
    {
        const TSimulator device(SIM_ECG_DEVICE,
                                wordsOf("--electrodes-off V6,LA --saturate V2 --battery 2.2"));
        TRecording recording(m_folder->path(), wordsOf("--tilt --stop-after 4 --source") << device.path());
        QCOMPARE(recording.run(), 0);
        const QJsonObject status = recording.lines("status").last();
        QCOMPARE(texts(status.value(QLatin1String("electrodesOff"))), wordsOf("LA V6"));
        QCOMPARE(texts(status.value(QLatin1String("saturated"))), wordsOf("V2"));
        QCOMPARE(status.value(QLatin1String("battery")).toDouble(), 2.2);
        // Once or twice, as the saturation shows after half a second; not at every look.
        QVERIFY(recording.lines("status").size() <= 2);
    }

    void aPulledCableIsAWarningAndTheRecordingGoesOn_data()
    {
        QTest::addColumn<QString>("outage");
        QTest::newRow("short") << QStringLiteral("3:0.5");
        QTest::newRow("long") << QStringLiteral("3:4");
    }

    void aPulledCableIsAWarningAndTheRecordingGoesOn()
    {
        QFETCH(QString, outage);
        const QString port = m_folder->beside("port");
        const TSimulator device(SIM_ECG_DEVICE, wordsOf("--source " ECG500 " --link")
                                                    << port << QStringLiteral("--hang-up") << outage);
        TRecording recording(m_folder->path(), wordsOf("--ecg --stop-after 10 --beats --source") << port);
        QCOMPARE(recording.run(), 0);
        const QList<QJsonObject> warnings = recording.lines("warning");
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings.first().value(QLatin1String("text")).toString(),
                 QStringLiteral("Communication with ECG acquiring device failed."));
        QVERIFY(recording.lines("finished").first().value(QLatin1String("samples")).toInt() >= 5000);
        QVERIFY(recording.lines("beat").last().value(QLatin1String("time")).toDouble() > 5.0);
    }

    void aDeviceThatIsNotThereLeavesNoStudy_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("port") << QStringLiteral("/absent/tty")
                              << QByteArray("No se pudo abrir el puerto (CreateFile)\n");
        QTest::newRow("demonstration")
            << QStringLiteral("demo:/absent/ecg.dat") << QByteArray("Cannot open file\n");
    }

    void aDeviceThatIsNotThereLeavesNoStudy()
    {
        QFETCH(QString, source);
        QFETCH(QByteArray, text);
        TRecording recording(m_folder->path(),
                             QStringList{QStringLiteral("--ecg"), QStringLiteral("--source"), source});
        QCOMPARE(recording.run(), 1);
        QCOMPARE(recording.error(), text);
        QVERIFY(recording.lines().isEmpty());
        QVERIFY(leftNothing());
    }

    void aSilentDeviceLeavesNoStudy()
    {
        const TPseudoTerminal line;
        TRecording recording(m_folder->path(), wordsOf("--ecg --source")
                                                   << QString::fromStdString(line.path()));
        QCOMPARE(recording.run(), 1); // after the time-out of a read
        QCOMPARE(recording.error(), QByteArray("Device read error\n"));
        QVERIFY(leftNothing());
    }

    void whoWaitsForADeviceMayGiveUp()
    {
        TPseudoTerminal line;
        TRecording recording(m_folder->path(), wordsOf("--ecg --source")
                                                   << QString::fromStdString(line.path()));
        recording.start();
        QCOMPARE(line.readAll(1), QByteArray("\1"));
        recording.send(SIGINT);
        QCOMPARE(recording.wait(), 1);
        QCOMPARE(recording.error(), QByteArray("Interrupted before the study began\n"));
        QVERIFY(leftNothing());
    }

    void whatCannotBeRecordedLeavesNoStudy_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("protocol") << QStringLiteral("DEMO --protocol None")
                                  << QByteArray("Unknown protocol None\n");
        QTest::newRow("treadmill with an ergometer's driver")
            << QStringLiteral("DEMO --protocol Bruce --equipment olmo:x")
            << QByteArray("No olmo equipment for protocol Bruce\n");
        QTest::newRow("name that leads elsewhere")
            << QStringLiteral("DEMO --ecg --patient lastName=a/b") << QByteArray("Cannot create file\n");
    }

    void whatCannotBeRecordedLeavesNoStudy()
    {
        QFETCH(QString, options);
        QFETCH(QByteArray, text);
        TRecording recording(m_folder->path(), options.split(QLatin1Char(' ')));
        QCOMPARE(recording.run(), 1);
        QCOMPARE(recording.error(), text);
        QVERIFY(recording.lines().isEmpty());
        QVERIFY(leftNothing());
    }

    void aWrongCommandLineMakesNothingOnTheDisk()
    {
        for (const char* options :
             {"--ecg", "DEMO", "DEMO --ecg --tilt", "DEMO --ecg --bp 1", "DEMO --ecg extra"}) {
            TRecording recording(m_folder->path(), wordsOf(options));
            QCOMPARE(recording.run(), 2);
            QVERIFY(isErrorLine(recording.error()));
            QVERIFY(!QFile::exists(m_folder->path()));
        }
    }

    void aTreadmillIsSentTheLoadOfEachStage()
    {
        TSimulator treadmill(SIM_TREADMILL, {});
        TRecording recording(m_folder->path(), wordsOf("DEMO --protocol Bruce --next-stage 2 --next-stage 4 "
                                                       "--recovery 6 --stop-after 8 --equipment")
                                                   << QStringLiteral("kipmachines:") + treadmill.path());
        useOwnHome(recording);
        QCOMPARE(recording.run(), 0);
        QVERIFY(recording.lines("warning").isEmpty());
        QCOMPARE(messagesOf(treadmill.end()),
                 ";2GO00: " + load(2.7, 10.0) + ' ' + load(4.0, 12.0) + ' ' + load(0.0, 0.0) + " ;2ST17:");
    }

    void anErgometerIsSentTheLoadOfEachStage()
    {
        TSimulator ergometer(SIM_ERGOMETER, {});
        TRecording recording(m_folder->path(), wordsOf("DEMO --protocol Who --next-stage 8 --recovery 11 "
                                                       "--stop-after 13 --patient weight=70 --equipment")
                                                   << QStringLiteral("olmo:") + ergometer.path());
        useOwnHome(recording);
        QCOMPARE(recording.run(), 0);
        // The stop of the test and the end of the driver may each have their reset.
        const QByteArray messages = messagesOf(ergometer.end());
        QVERIFY2(messages == "r c a p d 25 a e r" || messages == "r c a p d 25 a e r r",
                 messages.constData());
    }

    void whatADriverOfEquipmentReportsIsAWarning()
    {
        TRecording recording(m_folder->path(),
                             wordsOf("DEMO --protocol Bruce --next-stage 1 --stop-after 3 --equipment "
                                     "kipmachines:/absent/tty"));
        useOwnHome(recording);
        QCOMPARE(recording.run(), 0);
        QCOMPARE(recording.error(), QByteArray());
        QStringList told;
        for (const QJsonObject& warning : recording.lines("warning"))
            told << warning.value(QLatin1String("text")).toString();
        QVERIFY2(told.contains(QStringLiteral("Port not found")), qPrintable(told.join(QLatin1Char('\n'))));
        QCOMPARE(recording.lines("finished").size(), 1);
    }

    void anInterruptionStopsTheTreadmill()
    {
        TSimulator treadmill(SIM_TREADMILL, {});
        TRecording recording(m_folder->path(), wordsOf("DEMO --protocol Bruce --next-stage 1 --equipment")
                                                   << QStringLiteral("kipmachines:") + treadmill.path());
        useOwnHome(recording);
        recording.start();
        QVERIFY(recording.waitFor("stage"));
        QTest::qSleep(1500);
        recording.send(SIGTERM);
        QCOMPARE(recording.wait(), 0);
        QCOMPARE(messagesOf(treadmill.end()), ";2GO00: " + load(2.7, 10.0) + " ;2ST17:");
    }

private:
    /// The log of the treadmill's driver goes to the user's home.
    void useOwnHome(TRecording& recording) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder->beside("home"));
        recording.process.setProcessEnvironment(environment);
    }

    /// Neither a row nor a file of a study.
    bool leftNothing() const
    {
        LocalStudyDatabase database(m_folder->path());
        const QStringList filter{QStringLiteral("*.vt*")};
        return database.listStudies().empty() && QDir(m_folder->path()).entryList(filter).isEmpty();
    }

    std::unique_ptr<StoreFolder> m_folder;
};

QTEST_GUILESS_MAIN(RecordDeviceTest)
#include "RecordDeviceTest.moc"
