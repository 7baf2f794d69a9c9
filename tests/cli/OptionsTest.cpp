#include "cli/Command.h"

#include <QtTest>

namespace {

constexpr TOption known[] = {{"--loud"}, {"--start", "S"}, {"--patient", "KEY=VALUE", true}};

TCommandWords parse(const char* words)
{
    return parseCommandWords(known, QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

QString complaint(const char* words)
{
    try {
        parse(words);
    } catch (const TUsageError& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

} // namespace

class OptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionsMayStandAnywhereAmongTheArguments()
    {
        const QStringList arguments{QStringLiteral("4711"), QStringLiteral("-2")};
        for (const char* words : {"--loud --start 3 4711 -2", "4711 --start 3 -2 --loud"}) {
            const TCommandWords parsed = parse(words);
            QCOMPARE(parsed.arguments, arguments);
            QVERIFY(parsed.options.has("--loud"));
            QCOMPARE(parsed.options.value("--start"), QStringLiteral("3"));
        }
    }

    void whatIsNotGivenHasNoValue()
    {
        const TCommandWords parsed = parse("4711");
        QVERIFY(!parsed.options.has("--loud"));
        QVERIFY(!parsed.options.has("--start"));
        QCOMPARE(parsed.options.value("--start"), QString());
        QCOMPARE(parsed.options.value("--start", QStringLiteral("7")), QStringLiteral("7"));
        QCOMPARE(parsed.options.values("--patient"), QStringList());
    }

    void aRepeatableOptionKeepsTheOrder()
    {
        const TCommandWords parsed = parse("--patient a=1 x --patient b=2");
        QCOMPARE(parsed.options.values("--patient"),
                 QStringList({QStringLiteral("a=1"), QStringLiteral("b=2")}));
        QCOMPARE(parsed.arguments, QStringList(QStringLiteral("x")));
    }

    void aValueMayBeNegativeOrEmpty()
    {
        QCOMPARE(parse("--start -1.5").options.value("--start"), QStringLiteral("-1.5"));
        const TCommandWords parsed = parseCommandWords(known, {QStringLiteral("--patient"), QString()});
        QCOMPARE(parsed.options.values("--patient"), QStringList(QString()));
    }

    void whatIsWrongIsTold_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("--quiet") << QStringLiteral("Unknown option --quiet");
        QTest::newRow("4711 --") << QStringLiteral("Unknown option --");
        QTest::newRow("--start=3") << QStringLiteral("Unknown option --start=3");
        QTest::newRow("--start") << QStringLiteral("--start needs S");
        QTest::newRow("--start --loud") << QStringLiteral("--start needs S");
        QTest::newRow("--loud --loud") << QStringLiteral("--loud is given twice");
        QTest::newRow("--start 1 --start 2") << QStringLiteral("--start is given twice");
    }

    void whatIsWrongIsTold()
    {
        QFETCH(QString, text);
        QCOMPARE(complaint(QTest::currentDataTag()), text);
    }

    void theHelpShowsOptionsInBrackets()
    {
        QCOMPARE(describeOptions(known).join(QLatin1Char(' ')),
                 QStringLiteral("[--loud] [--start S] [--patient KEY=VALUE]..."));
    }

    void aCommandCountsItsArgumentsWithoutTheOptions()
    {
        const TCommand command{"play", "ID FROM", "", nullptr, known};
        const QStringList words{QStringLiteral("1"), QStringLiteral("--start"), QStringLiteral("2"),
                                QStringLiteral("3")};
        QCOMPARE(parseCommandWords(command, words).arguments.size(), 2);
        try {
            parseCommandWords(command, words.mid(1));
            QFAIL("an argument is missing");
        } catch (const TUsageError& error) {
            QCOMPARE(error.what(),
                     "Usage: velantor-cli play ID FROM [--loud] [--start S] [--patient KEY=VALUE]...");
        }
    }
};

QTEST_GUILESS_MAIN(OptionsTest)
#include "OptionsTest.moc"
