#include "base/Text.h"
#include "base/Constants.h"
#include "base/Error.h"

#include <QTextCodec>
#include <QtTest>

#include <clocale>

class TextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreUtf8UnderAnyLocale()
    {
        const QString string = QString::fromUtf8("Hipertensión");
        QCOMPARE(velantor::toText(string), QByteArray("Hipertensi\xc3\xb3n"));
        QCOMPARE(velantor::fromText("Hipertensi\xc3\xb3n"), string);
    }

    void textsAreUtf8UnderAnotherCodecOfTheLocale()
    {
        QTextCodec* const before = QTextCodec::codecForLocale();
        const auto restore = qScopeGuard([before] { QTextCodec::setCodecForLocale(before); });
        const QString string = QString::fromUtf8("Hipertensi\xc3\xb3n");
        for (const char* name : {"ISO-8859-1", "UTF-16"}) {
            QTextCodec* const codec = QTextCodec::codecForName(name);
            QVERIFY2(codec, name);
            QTextCodec::setCodecForLocale(codec);
            QVERIFY(string.toLocal8Bit() != QByteArray("Hipertensi\xc3\xb3n")); // the codec is in force
            QCOMPARE(velantor::toText(string), QByteArray("Hipertensi\xc3\xb3n"));
            QCOMPARE(velantor::fromText("Hipertensi\xc3\xb3n"), string);
        }
    }

    void aLocaleWithADecimalCommaChangesNoNumber()
    {
        const QByteArray before = setlocale(LC_NUMERIC, nullptr);
        const auto restore = qScopeGuard([before] { setlocale(LC_NUMERIC, before.constData()); });
        const char* const names[] = {"es_ES.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "Spanish_Spain"};
        if (std::none_of(std::begin(names), std::end(names),
                         [](const char* name) { return setlocale(LC_NUMERIC, name) != nullptr; }))
            QSKIP("No locale with a decimal comma is installed (es_ES, de_DE, fr_FR)");
        QCOMPARE(localeconv()->decimal_point, ",");
        QCOMPARE(velantor::numberFromText("72.5"), 72.5);
        QCOMPARE(velantor::numberFromText("72,5"), 72.0);
    }

    void aZeroCharacterCutsNoText()
    {
        const QByteArray text("before\0behind", 13);
        QCOMPARE(velantor::fromText(text).size(), 13);
        QCOMPARE(velantor::toText(velantor::fromText(text)), text);
    }

    void aByteOrderMarkIsACharacterLikeAnyOther()
    {
        for (const QByteArray& text :
             {QByteArray("\xef\xbb\xbfPerez"), QByteArray("\xef\xbb\xbf\xef\xbb\xbf"),
              QByteArray("Pe\xef\xbb\xbfrez")})
            QCOMPARE(velantor::toText(velantor::fromText(text)), text);
    }

    void numbersAreReadAsTyped_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<double>("number");
        QTest::newRow("whole") << QByteArray("72") << 72.0;
        QTest::newRow("fraction") << QByteArray("72.5") << 72.5;
        QTest::newRow("leading blanks") << QByteArray(" \t72") << 72.0;
        QTest::newRow("sign") << QByteArray("+72") << 72.0;
        QTest::newRow("two signs") << QByteArray("+-72") << 0.0;
        QTest::newRow("negative") << QByteArray("-1.5") << -1.5;
        QTest::newRow("unit behind") << QByteArray("72 kg") << 72.0;
        QTest::newRow("decimal comma ends the number") << QByteArray("72,5") << 72.0;
        QTest::newRow("no number") << QByteArray("kg") << 0.0;
        QTest::newRow("empty") << QByteArray() << 0.0;
        QTest::newRow("not a number") << QByteArray("nan") << 0.0;
        QTest::newRow("infinite") << QByteArray("inf") << 0.0;
        QTest::newRow("too large") << QByteArray("1e999") << 0.0;
    }

    void numbersAreReadAsTyped()
    {
        QFETCH(QByteArray, text);
        QFETCH(double, number);
        QCOMPARE(velantor::numberFromText(text), number);
    }

    void anErrorCarriesItsText()
    {
        const TError error(QString::fromUtf8("Señal"));
        QCOMPARE(error.text(), QString::fromUtf8("Señal"));
        QCOMPARE(TError("Write error").text(), QStringLiteral("Write error"));
    }

    void marksAndExtensionsAreThoseOfOurFiles()
    {
        QCOMPARE(velantor::studyMagic, "VTSTUDY2");
        QCOMPARE(velantor::studyMagicOld, "VTSTUDY1");
        QCOMPARE(velantor::ecgMagic, "VTECG1");
        QCOMPARE(velantor::beatsMagic, "VTBEATS1");
        QCOMPARE(velantor::archiveMagic, "VTZIP1");
        QCOMPARE(velantor::studyExtension, "vtstudy");
        QCOMPARE(velantor::ecgExtension, "vtecg");
        QCOMPARE(velantor::beatsExtension, "vtbeats");
        QCOMPARE(velantor::archiveExtension, "vtz");
        QCOMPARE(velantor::applicationVersion, "1.27c");
        QCOMPARE(velantor::dataFolderName, "VelantorStress");
    }

    void filterKindsBearTheNamesThatAreStored()
    {
        QCOMPARE(velantor::baselineFilterFir, "fir");
        QCOMPARE(velantor::notchFilter50Hz, "50hz");
        QCOMPARE(velantor::muscleFilter40Hz, "40hz");
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "TextTest.moc"
