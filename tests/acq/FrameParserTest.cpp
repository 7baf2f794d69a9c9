#include "acq/FrameBytes.h"
#include "acq/TFrameParser.h"

#include <QtTest>

namespace {

constexpr char syncByte = '\xC0';

TEcgSample::TChannels someValues()
{
    using namespace acq;
    TEcgSample::TChannels values{};
    values[I] = 1;
    values[II] = -1;
    values[III] = 32767;
    values[V1] = -32768;
    values[V2] = 255;
    values[V3] = 256;
    values[V4] = -256;
    values[V5] = -12345;
    values[V6] = 12345;
    values[CM5] = -257;
    values[CR5] = 127;
    return values;
}

} // namespace

Q_DECLARE_METATYPE(TFrameBytes)

class FrameParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFrameEndsWithItsLastByteOnly_data() { families(); }
    void aFrameEndsWithItsLastByteOnly();
    void samplesAreTakenHighByteFirst_data() { families(); }
    void samplesAreTakenHighByteFirst();
    void unusedBytesMayBeAnything_data() { families(); }
    void unusedBytesMayBeAnything();
    void theBatteryIsInStepsOf13Millivolts_data() { families(); }
    void theBatteryIsInStepsOf13Millivolts();
    void eachStatusBitTellsItsElectrode_data() { families(); }
    void eachStatusBitTellsItsElectrode();
    void bothBitsOfAnElectrodeAreAsGoodAsOne_data() { families(); }
    void bothBitsOfAnElectrodeAreAsGoodAsOne();
    void aWrongSyncByteLosesItsFrameAlone_data() { families(); }
    void aWrongSyncByteLosesItsFrameAlone();
    void bytesBeforeTheFirstFrameArePassedOver_data() { families(); }
    void bytesBeforeTheFirstFrameArePassedOver();
    void frameBehindFrameIsFound_data() { families(); }
    void frameBehindFrameIsFound();
    void resetForgetsAFrameBegun_data() { families(); }
    void resetForgetsAFrameBegun();
    void aWrongByteIsNotLookedAtAgain();
    void aHighRateFrameBegunInTheMiddleIsGivenUp();

private:
    static void families();
    static TFrameParser parserFor(const TFrameBytes& family);
    /// Number of frames; the last one is in `last`.
    static int feed(TFrameParser& parser, const QByteArray& bytes, TEcgSample& last);
    static int feed(TFrameParser& parser, const QByteArray& bytes);
    /// Names of the electrodes that are off in a frame with that byte at that place.
    static QByteArray off(const TFrameBytes& family, int place, int value);
    static QByteArray expectedOff(char status, int bit);
};

void FrameParserTest::families()
{
    QTest::addColumn<TFrameBytes>("family");
    QTest::newRow("standard") << TFrameBytes::standard();
    QTest::newRow("high rate") << TFrameBytes::highRate();
}

TFrameParser FrameParserTest::parserFor(const TFrameBytes& family)
{
    if (family.size() == 40)
        return TStdFrameParser();
    return THRFrameParser();
}

int FrameParserTest::feed(TFrameParser& parser, const QByteArray& bytes, TEcgSample& last)
{
    int frames = 0;
    for (const char byte : bytes)
        frames += parser.add(static_cast<unsigned char>(byte), last) ? 1 : 0;
    return frames;
}

int FrameParserTest::feed(TFrameParser& parser, const QByteArray& bytes)
{
    TEcgSample last;
    return feed(parser, bytes, last);
}

void FrameParserTest::aFrameEndsWithItsLastByteOnly()
{
    QFETCH(TFrameBytes, family);
    TFrameParser parser = parserFor(family);
    const QByteArray frame = family.with(someValues());
    TEcgSample sample;
    sample.batteryVolts = 99.0;
    for (int i = 0; i < frame.size() - 1; ++i) {
        QVERIFY(!parser.add(static_cast<unsigned char>(frame[i]), sample));
        QVERIFY(sample.channels == TEcgSample::TChannels() && sample.batteryVolts == 99.0);
    }
    QVERIFY(parser.add(static_cast<unsigned char>(frame[frame.size() - 1]), sample));
    QVERIFY(sample.channels == someValues());
    QCOMPARE(sample.batteryVolts, 0.0);
}

void FrameParserTest::samplesAreTakenHighByteFirst()
{
    QFETCH(TFrameBytes, family);
    for (const TFrameBytes::TPlace& place : family.channels) {
        for (const int value : {0, 1, -1, 255, 256, -256, 0x0102, 32767, -32768}) {
            TEcgSample::TChannels values{};
            values[place.channel] = static_cast<std::int16_t>(value);
            QByteArray frame = family.empty;
            frame[place.offset] = static_cast<char>(static_cast<unsigned>(value) >> 8U & 0xFFU);
            frame[place.offset + 1] = static_cast<char>(static_cast<unsigned>(value) & 0xFFU);
            TFrameParser parser = parserFor(family);
            TEcgSample sample;
            QCOMPARE(feed(parser, frame, sample), 1);
            QVERIFY(sample.channels == values);
        }
    }
}

void FrameParserTest::unusedBytesMayBeAnything()
{
    QFETCH(TFrameBytes, family);
    for (const char value : {'\x01', '\x02', '\x03', syncByte, '\xFF'}) {
        QByteArray frame = family.with(someValues());
        for (const int place : family.unusedPlaces)
            frame[place] = value;
        TFrameParser parser = parserFor(family);
        TEcgSample sample;
        QCOMPARE(feed(parser, frame, sample), 1);
        QVERIFY(sample.channels == someValues());
        QCOMPARE(sample.electrodesOff, 0U);
        QCOMPARE(sample.batteryVolts, 0.0);
    }
}

void FrameParserTest::theBatteryIsInStepsOf13Millivolts()
{
    QFETCH(TFrameBytes, family);
    for (const int level : {0, 1, 127, 128, 255}) {
        QByteArray frame = family.empty;
        frame[family.battery] = static_cast<char>(level);
        TFrameParser parser = parserFor(family);
        TEcgSample sample;
        QCOMPARE(feed(parser, frame, sample), 1);
        QCOMPARE(sample.batteryVolts, level * 0.013);
    }
}

QByteArray FrameParserTest::off(const TFrameBytes& family, int place, int value)
{
    QByteArray frame = family.empty;
    frame[place] = static_cast<char>(value);
    TFrameParser parser = parserFor(family);
    TEcgSample sample;
    if (feed(parser, frame, sample) != 1)
        return "no frame";
    QByteArray names;
    for (int i = 0; i < static_cast<int>(acq::TElectrode::count); ++i) {
        if (sample.isOff(static_cast<acq::TElectrode>(i)))
            names += QByteArray(acq::electrodeNames[static_cast<std::size_t>(i)]) + ' ';
    }
    return names.trimmed();
}

QByteArray FrameParserTest::expectedOff(char status, int bit)
{
    static const QMap<QByteArray, QByteArray> electrodes = {
        {"A4", "V5"}, {"A5", "LA"}, {"A6", "LL"}, {"A7", "LL"}, {"B5", "RA"}, {"B6", "RA"},
        {"C4", "V1"}, {"C5", "V2"}, {"C6", "V3"}, {"C7", "V4"}, {"D4", "V6"}};
    return electrodes.value(status + QByteArray::number(bit));
}

void FrameParserTest::eachStatusBitTellsItsElectrode()
{
    QFETCH(TFrameBytes, family);
    for (int bit = 0; bit < 8; ++bit) {
        QCOMPARE(off(family, family.statusA, 1 << bit), expectedOff('A', bit));
        QCOMPARE(off(family, family.statusB, 1 << bit), expectedOff('B', bit));
        QCOMPARE(off(family, family.statusC, 1 << bit), expectedOff('C', bit));
        QCOMPARE(off(family, family.statusD, 1 << bit), expectedOff('D', bit));
    }
}

void FrameParserTest::bothBitsOfAnElectrodeAreAsGoodAsOne()
{
    QFETCH(TFrameBytes, family);
    QCOMPARE(off(family, family.statusA, 0xFF), QByteArray("LA LL V5"));
    QCOMPARE(off(family, family.statusA, 0x3F), QByteArray("LA V5"));
    QCOMPARE(off(family, family.statusB, 0xFF), QByteArray("RA"));
    QCOMPARE(off(family, family.statusB, 0x9F), QByteArray());
    QCOMPARE(off(family, family.statusC, 0xFF), QByteArray("V1 V2 V3 V4"));
    QCOMPARE(off(family, family.statusD, 0xFF), QByteArray("V6"));
    QCOMPARE(off(family, family.statusD, 0xEF), QByteArray());
}

void FrameParserTest::aWrongSyncByteLosesItsFrameAlone()
{
    QFETCH(TFrameBytes, family);
    for (const int place : family.syncPlaces) {
        TFrameParser parser = parserFor(family);
        TEcgSample sample;
        QByteArray frame = family.with(someValues());
        frame[place] = '\x55';
        // Nothing in the rest of the frame looks like a start of the standard frame; in the high-rate frame
        // the next sync byte does, but not the ones behind it.
        QCOMPARE(feed(parser, frame, sample), 0);
        QCOMPARE(feed(parser, family.with(someValues()), sample), 1);
        QVERIFY(sample.channels == someValues());
    }
}

void FrameParserTest::bytesBeforeTheFirstFrameArePassedOver()
{
    QFETCH(TFrameBytes, family);
    for (const QByteArray& before : {QByteArray(1000, '\0'), QByteArray(7, '\xFF'), QByteArray("ECG 12")}) {
        TFrameParser parser = parserFor(family);
        QCOMPARE(feed(parser, before + family.empty), 1);
    }
}

void FrameParserTest::frameBehindFrameIsFound()
{
    QFETCH(TFrameBytes, family);
    TFrameParser parser = parserFor(family);
    for (int i = 0; i < 100; ++i) {
        TEcgSample::TChannels values = someValues();
        values[acq::V3] = static_cast<std::int16_t>(i);
        TEcgSample sample;
        QCOMPARE(feed(parser, family.with(values), sample), 1);
        QVERIFY(sample.channels == values);
    }
}

void FrameParserTest::resetForgetsAFrameBegun()
{
    QFETCH(TFrameBytes, family);
    TFrameParser parser = parserFor(family);
    QCOMPARE(feed(parser, family.empty.left(30)), 0);
    parser.reset();
    QCOMPARE(feed(parser, family.empty), 1);
}

void FrameParserTest::aWrongByteIsNotLookedAtAgain()
{
    const QByteArray frame = TFrameBytes::standard().empty;
    TStdFrameParser parser;
    // The second 01 stands where C0 is due: it is no start of a frame any more.
    QCOMPARE(feed(parser, '\1' + frame), 0);
    QCOMPARE(feed(parser, frame), 1);
    // Likewise where the second and the third part are due.
    QCOMPARE(feed(parser, frame.left(12) + frame), 0);
    QCOMPARE(feed(parser, frame), 1);
    QCOMPARE(feed(parser, frame.left(25) + frame), 0);
    QCOMPARE(feed(parser, frame), 1);
    // A byte earlier or later, the start is seen.
    QCOMPARE(feed(parser, frame.left(12) + '\0' + frame), 1);
    // Behind the last sync byte anything is payload.
    QCOMPARE(feed(parser, frame.left(39) + frame), 1);
    QCOMPARE(feed(parser, frame), 1);
}

void FrameParserTest::aHighRateFrameBegunInTheMiddleIsGivenUp()
{
    const TFrameBytes family = TFrameBytes::highRate();
    const QByteArray frame = family.with(someValues());
    for (int cut = 1; cut < frame.size(); ++cut) {
        THRFrameParser parser;
        TEcgSample sample;
        QCOMPARE(feed(parser, frame.mid(cut), sample), 0);
        QCOMPARE(feed(parser, frame, sample), 1);
        QVERIFY(sample.channels == someValues());
    }
    // A run of sync bytes is taken from its first one on.
    THRFrameParser parser;
    QCOMPARE(feed(parser, QByteArray(34, syncByte)), 1);
    QCOMPARE(feed(parser, QByteArray(33, syncByte)), 0);
}

QTEST_GUILESS_MAIN(FrameParserTest)
#include "FrameParserTest.moc"
