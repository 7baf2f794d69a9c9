#include "study/JsonBounds.h"

#include <QtEndian>
#include <QtTest>

namespace {

/// The `qCompress` form with another announced length.
QByteArray announcing(quint32 length, const QByteArray& text)
{
    QByteArray bytes = qCompress(text);
    qToBigEndian(length, bytes.data());
    return bytes;
}

bool isAffordable(const QByteArray& text)
{
    TJsonCost cost;
    cost.add(text.constData(), text.size());
    return cost.isAffordable();
}

} // namespace

/// Texts here are small against the limits where they may be; what is refused costs its own size at most.
class JsonBoundsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anObjectIsParsed()
    {
        const QJsonObject object = parseBoundedJson(R"({"a":[1,2,{"b":"ñ"}],"c":null})");
        QCOMPARE(object.keys(), (QStringList{QStringLiteral("a"), QStringLiteral("c")}));
    }

    void whatIsNoObjectIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a list") << QByteArray("[1]");
        QTest::newRow("broken") << QByteArray("{\"a\":");
        QTest::newRow("more behind") << QByteArray("{\"a\":1}{");
        QTest::newRow("zeros") << QByteArray(100, '\0');
        QTest::newRow("deeper than the parser goes") << "{\"a\":" + QByteArray(100000, '[');
        QTest::newRow("objects deeper than the parser goes") << QByteArray("{\"a\":").repeated(100000);
    }

    void whatIsNoObjectIsEmpty()
    {
        QFETCH(QByteArray, text);
        QVERIFY(parseBoundedJson(text).isEmpty());
    }

    void textsThatTakeTooMuchMemoryAreNotAffordable_data()
    {
        constexpr int million = 1000 * 1000;
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("affordable");
        QTest::newRow("nothing") << QByteArray() << true;
        QTest::newRow("a million numbers") << '[' + QByteArray("1,").repeated(million) + "1]" << true;
        QTest::newRow("brackets") << QByteArray(12 * million, '[') << false;
        QTest::newRow("objects") << QByteArray(12 * million, '{') << false;
        QTest::newRow("commas") << QByteArray(12 * million, ',') << false;
        QTest::newRow("brackets in a string") << '"' + QByteArray(12 * million, '[') + '"' << true;
        QTest::newRow("brackets behind an escaped quote")
            << "\"\\\"" + QByteArray(12 * million, '[') + '"' << true;
        QTest::newRow("brackets behind an escaped backslash")
            << "\"\\\\\"" + QByteArray(12 * million, '[') << false;
        QTest::newRow("a huge string") << '"' + QByteArray(90 * million, 'x') + '"' << false;
    }

    void textsThatTakeTooMuchMemoryAreNotAffordable()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, affordable);
        QCOMPARE(isAffordable(text), affordable);
    }

    void theCostIsTheSameInPieces()
    {
        const QByteArray text = "{\"a\\\"[\":[" + QByteArray(3 * 1000 * 1000, ',') + "\"";
        TJsonCost whole;
        TJsonCost pieces;
        for (int turn = 0; turn < 5; ++turn) {
            whole.add(text.constData(), text.size());
            for (int at = 0; at < text.size(); at += 100001)
                pieces.add(text.constData() + at, std::min(100001, text.size() - at));
            QCOMPARE(pieces.isAffordable(), whole.isAffordable());
        }
        QVERIFY(!whole.isAffordable());
    }

    void aTextIsExpanded()
    {
        const QByteArray text = R"({"a":"ñ"})";
        QCOMPARE(expandBoundedJson(qCompress(text)), text);
        const QByteArray longText = '[' + QByteArray("1.25,").repeated(200000) + "1]";
        QCOMPARE(expandBoundedJson(qCompress(longText)), longText);
        QCOMPARE(expandBoundedJson(qCompress(longText, 0)), longText);
    }

    void aWrongLengthIsMadeRight()
    {
        const QByteArray text = '[' + QByteArray("1,").repeated(1000) + "1]";
        for (const quint32 length : {0u, 1u, 100u, 2002u, 2004u, 10000u})
            QCOMPARE(expandBoundedJson(announcing(length, text)), text);
    }

    void whatCannotBeExpandedIsEmpty_data()
    {
        const QByteArray text = '[' + QByteArray("1.25,").repeated(1000) + "1]";
        const QByteArray good = qCompress(text);
        QByteArray damaged = good;
        damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 0x55);
        QByteArray badSum = good;
        badSum[badSum.size() - 1] = char(badSum[badSum.size() - 1] ^ 1);
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("part of the length") << QByteArray("\0\0\0", 3);
        QTest::newRow("length only") << QByteArray("\0\0\0\1", 4);
        QTest::newRow("no stream") << QByteArray("\0\0\0\1no stream", 13);
        QTest::newRow("cut short") << good.chopped(5);
        QTest::newRow("damaged") << damaged;
        QTest::newRow("wrong checksum") << badSum;
        QTest::newRow("an empty text") << QByteArray("\0\0\0\0\x78\x9c\x03\0\0\0\0\1", 12);
        QTest::newRow("300 MB announced") << announcing(300u << 20, text);
        QTest::newRow("4 GB announced") << announcing(0xffffffffu, text);
        QTest::newRow("more announced than deflate can pack") << announcing(200u << 20, text);
    }

    void whatCannotBeExpandedIsEmpty()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(expandBoundedJson(bytes), QByteArray());
    }

    void aTextThatIsNotPackedCountsTwice()
    {
        constexpr int megabyte = 1024 * 1024;
        QCOMPARE(expandBoundedJson(qCompress(QByteArray(125 * megabyte, ' '), 0)), QByteArray());
        QCOMPARE(expandBoundedJson(qCompress(QByteArray(20 * megabyte, ' '), 0)).size(), 20 * megabyte);
    }

    void aTextThatTheParserCouldNotAffordIsNotExpanded()
    {
        const QByteArray brackets(12 * 1000 * 1000, '[');
        QCOMPARE(expandBoundedJson(qCompress(brackets)), QByteArray());
        QCOMPARE(expandBoundedJson(announcing(10, brackets)), QByteArray());
    }
};

QTEST_GUILESS_MAIN(JsonBoundsTest)
#include "JsonBoundsTest.moc"
