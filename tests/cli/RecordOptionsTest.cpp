#include "cli/RecordOptions.h"

#include <QtTest>

namespace {

QStringList wordsOf(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

TRecordOptions parse(const QStringList& words)
{
    return parseRecordOptions(parseCommandWords(recordOptions(), words).options);
}

TRecordOptions parse(const char* words)
{
    return parse(wordsOf(words));
}

bool isRefused(const QStringList& words)
{
    try {
        parse(words);
    } catch (const TUsageError& error) {
        return qstrlen(error.what()) > 0;
    }
    return false;
}

} // namespace

class RecordOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSourceIsADemonstrationUsbOrAPort_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("place");
        const auto row = [](const char* source, int kind, const char* place) {
            QTest::newRow(source) << QString::fromLatin1(source) << kind << QString::fromLatin1(place);
        };
        row("demo", TRecordOptions::Demo, "");
        row("demo:a:b.dat", TRecordOptions::Demo, "a:b.dat");
        row("usb", TRecordOptions::Usb, "");
        row("ttyUSB0", TRecordOptions::Port, "ttyUSB0");
        row("/dev/pts/3", TRecordOptions::Port, "/dev/pts/3");
        row("COM3", TRecordOptions::Port, "COM3");
    }

    void aSourceIsADemonstrationUsbOrAPort()
    {
        QFETCH(QString, source);
        const TRecordOptions options = parse({QStringLiteral("--source"), source, QStringLiteral("--ecg")});
        QTEST(int(options.source), "kind");
        QTEST(options.place, "place");
    }

    void nothingMoreIsAskedForByItself()
    {
        const TRecordOptions options = parse("--source demo --ecg");
        QVERIFY(!options.highRate && !options.reducedChannels && !options.unpaced && !options.tellsBeats);
        QCOMPARE(int(options.test), int(TRecordOptions::RestingEcg));
        QVERIFY(options.protocolName.isEmpty() && options.equipmentName.isEmpty() && options.actions.empty());
        QVERIFY(!options.stopAfter);
        QCOMPARE(options.stageScale, 1.0);
        QCOMPARE(options.patient, StudyInfo());
    }

    void everythingIsTaken()
    {
        const TRecordOptions options =
            parse("--source demo --unpaced --protocol Who --equipment olmo:/dev/x:1 --reduced-channels "
                  "--patient lastName=Diaz --patient weight=70 --stop-after 90.5 --stage-scale 20 --beats");
        QVERIFY(options.unpaced && options.reducedChannels && options.tellsBeats);
        QCOMPARE(int(options.test), int(TRecordOptions::StressTest));
        QCOMPARE(options.protocolName, QByteArray("Who"));
        QCOMPARE(options.equipmentName, QStringLiteral("olmo"));
        QCOMPARE(options.equipmentPort, QStringLiteral("/dev/x:1"));
        QCOMPARE(options.patient.lastName, QByteArray("Diaz"));
        QCOMPARE(options.patient.weight, QByteArray("70"));
        QCOMPARE(options.stopAfter.value_or(0.0), 90.5);
        QCOMPARE(options.stageScale, 20.0);
        QVERIFY(parse("--source /dev/x --high-rate --ecg").highRate);
    }

    void aTiltTestTakesTheReducedChannels()
    {
        const QStringList byName = wordsOf("--source demo --protocol") << QStringLiteral("Tilt test");
        for (const QStringList& words : {wordsOf("--source demo --tilt"), byName}) {
            const TRecordOptions options = parse(words);
            QCOMPARE(int(options.test), int(TRecordOptions::TiltTest));
            QCOMPARE(options.protocolName, QByteArray("Tilt test"));
            QVERIFY(options.reducedChannels);
        }
    }

    void actionsAreInTheOrderOfTheirTimes()
    {
        const TRecordOptions options =
            parse("--source demo --ecg --recovery 30 --next-stage 10 --next-stage 5 --event 10:a --event 2:b "
                  "--bp 10:120/80 --bp 7.5:118.5/79");
        QStringList told;
        for (const TTimedAction& action : options.actions)
            told << QStringLiteral("%1@%2").arg(action.kind).arg(action.time);
        QCOMPARE(told.join(QLatin1Char(' ')), QStringLiteral("1@2 2@5 0@7.5 0@10 1@10 2@10 3@30"));
        QCOMPARE(options.actions.at(2).systolic, 118.5);
        QCOMPARE(options.actions.at(2).diastolic, 79.0);
        QCOMPARE(options.actions.at(0).text, QByteArray("b"));
    }

    void aPressureHasUpToThreeDigits()
    {
        const TRecordOptions options = parse("--source demo --ecg --bp 10:999/998");
        QCOMPARE(options.actions.at(0).systolic, 999.0);
        QCOMPARE(options.actions.at(0).diastolic, 998.0);
    }

    void theTextOfAnEventIsAnyText()
    {
        const TRecordOptions options =
            parse(wordsOf("--source demo --ecg --event") << QString::fromUtf8("0: mareo: 12:30 \303\261 "));
        QCOMPARE(options.actions.at(0).time, 0.0);
        QCOMPARE(options.actions.at(0).text, QByteArray("mareo: 12:30 \303\261"));
    }

    void whatMakesNoSenseIsRefused_data()
    {
        QTest::addColumn<QString>("words");
        const char* const good = "--source demo --ecg ";
        for (const char* words :
             {"", "--ecg", "--source demo", "--source demo: --ecg", "--source usb --unpaced --ecg",
              "--source /dev/x --unpaced --ecg", "--source demo --high-rate --ecg",
              "--source demo --ecg --tilt", "--source demo --ecg --protocol Bruce",
              "--source demo --protocol Bruce --tilt", "--source demo --ecg --equipment olmo:x",
              "--source demo --tilt --equipment olmo:x", "--source demo --protocol Who --equipment olmo",
              "--source demo --protocol Who --equipment olmo:", "--source demo --protocol Who --equipment :x",
              "--source demo --protocol Who --equipment other:x"})
            QTest::newRow(words) << QString::fromLatin1(words);
        for (const char* words : {"--stop-after 0",
                                  "--stop-after -1",
                                  "--stop-after x",
                                  "--stop-after nan",
                                  "--stop-after inf",
                                  "--stage-scale 0",
                                  "--stage-scale -2",
                                  "--stage-scale x",
                                  "--bp 10",
                                  "--bp 10:120",
                                  "--bp 10:120/",
                                  "--bp 10:/80",
                                  "--bp :120/80",
                                  "--bp -1:120/80",
                                  "--bp 10:0/80",
                                  "--bp 10:120/x",
                                  "--bp x:120/80",
                                  "--event 10",
                                  "--event 10:",
                                  "--event x:y",
                                  "--event -1:y",
                                  "--next-stage x",
                                  "--next-stage -1",
                                  "--recovery x",
                                  "--recovery nan",
                                  "--patient lastName",
                                  "--patient nothing=1",
                                  "--patient baseFilename=x",
                                  "--bp 10:1000/80",
                                  "--bp 10:120/1000",
                                  "--bp 10:1e9/80",
                                  "--patient studyType=x",
                                  "--unknown",
                                  "--patient protocolName=",
                                  "--patient studyDateTime=20240101000000"})
            QTest::newRow(words) << QString::fromLatin1(good) + QString::fromLatin1(words);
    }

    void whatMakesNoSenseIsRefused()
    {
        QFETCH(QString, words);
        QVERIFY(isRefused(words.split(QLatin1Char(' '), Qt::SkipEmptyParts)));
    }

    void anEventOfBlanksIsRefused()
    {
        QVERIFY(isRefused(wordsOf("--source demo --ecg --event") << QStringLiteral("3:  ")));
    }

    void anEmptyNameOfASourceIsRefused()
    {
        QVERIFY(isRefused({QStringLiteral("--ecg"), QStringLiteral("--source"), QString()}));
    }
};

QTEST_GUILESS_MAIN(RecordOptionsTest)
#include "RecordOptionsTest.moc"
