#include "study/IndexRow.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

/// JSON with ' in place of ": moc loses its way in raw strings full of quotes.
QString quoted(const char* text)
{
    return QString::fromUtf8(text).replace(QLatin1Char('\''), QLatin1Char('"'));
}

} // namespace

/// Rows are taken apart without a JSON parser where they are as we write them; nobody may tell the
/// difference.
class IndexRowFormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowReadsAsTheJsonParserReadsIt_data()
    {
        QTest::addColumn<QString>("row");
        QTest::newRow("as written") << QStringLiteral(
            R"({"baseFilename":"1-P","status":"","studyType":"ECG"})");
        QTest::newRow("letters") << QStringLiteral("{\"status\":\"Nu\u00f1ez \u0418\U0001FAC0\"}");
        QTest::newRow("half a character") << QStringLiteral("{\"status\":\"a") + QChar(0xd83e) +
                                                 QStringLiteral("b\",\"studyType\":\"ECG\"}");
        QTest::newRow("quote") << quoted("{'status':'a\\'b','studyType':'ECG'}");
        QTest::newRow("backslash at the end") << quoted("{'status':'a\\\\','studyType':'ECG'}");
        QTest::newRow("coded letter") << quoted("{'status':'\\u00f1\\t','studyType':'ECG'}");
        QTest::newRow("coded key") << quoted("{'st\\u0061tus':'x','studyType':'ECG'}");
        QTest::newRow("blanks") << QStringLiteral(" { \"status\" : \"x\" ,\n\"studyType\":\"ECG\"} ");
        QTest::newRow("same key twice") << quoted("{'status':'x','status':'y'}");
        QTest::newRow("number") << quoted("{'status':1,'studyType':'ECG'}");
        QTest::newRow("object within") << quoted("{'status':{'status':'x'},'studyType':'ECG'}");
        QTest::newRow("foreign keys") << quoted("{'other':'x','':'y','studyType':'ECG'}");
        QTest::newRow("empty object") << QStringLiteral("{}");
        QTest::newRow("comma at the end") << quoted("{'status':'x',}");
        QTest::newRow("more behind") << quoted("{'status':'x'}}");
        QTest::newRow("cut in a text") << quoted("{'status':'x','studyType':'E");
        QTest::newRow("cut behind a text") << quoted("{'status':'x','studyType':'E'");
        QTest::newRow("cut in a key") << quoted("{'status':'x','stud");
        QTest::newRow("no colon") << quoted("{'status''x'}");
        QTest::newRow("list") << quoted("['status','x']");
        QTest::newRow("nothing") << QString();
    }

    void aRowReadsAsTheJsonParserReadsIt()
    {
        QFETCH(QString, row);
        StudyInfo info = unread();
        readIndexRow(info, row);

        const QJsonObject parsed = QJsonDocument::fromJson(row.toUtf8()).object();
        const auto expected = [&parsed](const char* key) {
            return parsed.value(QLatin1String(key))
                .toString(parsed.contains(QLatin1String(key)) ? QString() : QStringLiteral("unread"));
        };
        QCOMPARE(info.baseFilename, expected("baseFilename").toUtf8());
        QCOMPARE(info.status, expected("status").toUtf8());
        QCOMPARE(info.studyType, expected("studyType").toUtf8());
    }

    void whatTheTableWritesIsReadWhateverTheTextsHold()
    {
        for (char16_t c = 1; c < 0x250; ++c) {
            StudyInfo info;
            info.lastName = (QStringLiteral("a") + QChar(c) + QStringLiteral("b")).toUtf8();
            StudyInfo read;
            readIndexRow(read, indexRowFromInfo(info));
            QCOMPARE(read, info);
        }
    }

private:
    static StudyInfo unread()
    {
        StudyInfo info;
        info.baseFilename = info.status = info.studyType = "unread";
        return info;
    }
};

QTEST_GUILESS_MAIN(IndexRowFormsTest)
#include "IndexRowFormsTest.moc"
