#include "study/TJsonHead.h"

#include <QJsonDocument>
#include <QtTest>

namespace {

/// JSON with ' in place of ": moc loses its way in raw strings full of quotes.
QByteArray quoted(const char* text)
{
    return QByteArray(text).replace('\'', '"');
}

QJsonObject headOf(const QByteArray& text, int pieceSize)
{
    TJsonHead head;
    for (int at = 0; at < text.size(); at += pieceSize)
        head.add(text.constData() + at, std::min(pieceSize, text.size() - at));
    return head.parse();
}

QJsonObject headOf(const QByteArray& text)
{
    return headOf(text, std::max(1, text.size()));
}

QByteArray compact(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

class JsonHeadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void studyAndPatientAreWhatTheWholeDocumentHas_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("as written") << quoted("{'events':[{'print':true}],'patient':{'lastName':'Pérez'},'"
                                              "results':{'a':[1,2]},'study':{'id':5}}");
        QTest::newRow("order and blanks") << QByteArray(
            " {\n \"study\" : {\"id\" : 5} ,\t\"results\" : [ 1 , 2 ] , \"patient\" : { \"age\" : 7 } } ");
        QTest::newRow("brackets in texts") << quoted(
            "{'results':{']}':'{[\\'}'},'patient':{'city':'a]}\\\\'},'study':{'status':'{\\'results\\':['}}");
        QTest::newRow("inner members of the same names") << quoted(
            "{'x':{'study':{'id':1}},'study':{'results':[1],'study':2},'patient':{'events':{'a':1}}}");
        // Texts first: Qt's parser leaks the earlier of two objects.
        QTest::newRow("the later of two")
            << quoted("{'study':1,'patient':'a','study':{'id':2},'patient':{}}");
        QTest::newRow("escaped keys") << quoted("{'st\\u0075dy':{'id':1},'p\\u0061tient':{'a':1}}");
        QTest::newRow("texts in their place") << quoted("{'study':'results','patient':'x','results':3}");
        QTest::newRow("only scalars") << quoted("{'a':1,'b':'c','d':null,'study':true,'e':-1.5e3}");
        QTest::newRow("empty") << QByteArray("{}");
        QTest::newRow("beyond ASCII") << QByteArray(
            "{\"results\":\"\360\237\253\200\",\"study\":{\"status\":\"\320\230\\ud83e\\udec0\"}}");
    }

    void studyAndPatientAreWhatTheWholeDocumentHas()
    {
        QFETCH(QByteArray, text);
        const QJsonObject whole = QJsonDocument::fromJson(text).object();
        for (int pieceSize = 1; pieceSize <= text.size(); ++pieceSize) {
            const QJsonObject head = headOf(text, pieceSize);
            QCOMPARE(head.keys(), whole.keys());
            for (const char* key : {"study", "patient"})
                QCOMPARE(head.value(QLatin1String(key)), whole.value(QLatin1String(key)));
        }
    }

    void otherValuesArePassedOver()
    {
        const QByteArray text =
            quoted("{'events':[1],'patient':{'a':1},'results':{'b':{}},'study':{'id':5}}");
        QCOMPARE(compact(headOf(text)),
                 quoted("{'events':0,'patient':{'a':1},'results':0,'study':{'id':5}}"));
    }

    void aBrokenDocumentIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no object") << quoted("[{'study':{'id':5}}]");
        QTest::newRow("a member of a list") << quoted("['study':5]");
        QTest::newRow("more behind") << quoted("{'study':{'id':5}}{");
        QTest::newRow("wrong bracket in results") << quoted("{'results':[1},'study':{'id':5}}");
        QTest::newRow("bracket closed too often") << quoted("{'results':{}},'study':{'id':5}}");
        QTest::newRow("no comma") << quoted("{'study':{'id':5}'patient':{'a':1}}");
        QTest::newRow("no key") << quoted("{'study':{'id':5},:[1]}");
        QTest::newRow("key without value") << quoted("{'study':{'id':5},'results'}");
        QTest::newRow("broken study") << quoted("{'study':{'id':nul},'patient':{'a':1}}");
        QTest::newRow("results too deep")
            << "{\"results\":" + QByteArray(2000, '[') + QByteArray(2000, ']') + ",\"study\":{\"id\":5}}";
        QTest::newRow("study beyond measure") << "{\"study\":[" + QByteArray(12'000'000, ',') + "]}";
    }

    void aBrokenDocumentIsEmpty()
    {
        QFETCH(QByteArray, text);
        QVERIFY(headOf(text).isEmpty());
    }

    void aDocumentCutShortIsEmpty()
    {
        const QByteArray text = quoted("{'patient':{'a':1},'results':{'b':['c\\'',2]},'study':{'id':5}}");
        QVERIFY(!headOf(text).isEmpty());
        for (int size = 0; size < text.size(); ++size)
            QVERIFY(headOf(text.left(size)).isEmpty());
    }

    /// A study is found again even if something in its results is damaged; opening it tells.
    void damageWithinResultsGoesUnseen()
    {
        const QByteArray text = quoted("{'patient':{'a':1},'results':{'b':[1,nul,,'x':]},'study':{'id':5}}");
        QVERIFY(QJsonDocument::fromJson(text).isNull());
        QCOMPARE(headOf(text).value(QLatin1String("study")).toObject().value(QLatin1String("id")).toInt(), 5);
    }
};

QTEST_GUILESS_MAIN(JsonHeadTest)
#include "JsonHeadTest.moc"
