#include "equipment/OlmoCommands.h"

#include <QtTest>

#include <limits>

namespace {

/// "text/lines" of each step, with a "+" where a pause follows.
QByteArray toText(const std::vector<olmo::TStep>& steps)
{
    QByteArray text;
    for (const olmo::TStep& step : steps) {
        text += (text.isEmpty() ? "" : " ") + QByteArray::fromStdString(step.text).replace("\n", "\\n") +
                '/' + QByteArray::number(step.answerLines) + (step.isFollowedByPause ? "+" : "");
    }
    return text;
}

} // namespace

class OlmoCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void singleCommandsAreLetters()
    {
        QCOMPARE(toText({olmo::reset(), olmo::askForData(), olmo::activate()}), QByteArray("r/0 c/3 a/1"));
    }

    void stepsBringTheLoadToItsTarget_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("target");
        QTest::addColumn<QByteArray>("steps");
        QTest::newRow("first load") << 0 << 50 << QByteArray("p/1+ d/1+ 50\\n/2+ a/1");
        QTest::newRow("nothing to nothing") << 0 << 0 << QByteArray();
        QTest::newRow("end") << 50 << 0 << QByteArray("e/2");
        QTest::newRow("more") << 50 << 75 << QByteArray("i/1+ 25\\n/2");
        QTest::newRow("less") << 50 << 25 << QByteArray("i/1+ -25\\n/2");
        QTest::newRow("the same") << 50 << 50 << QByteArray("i/1+ 0\\n/2");
        QTest::newRow("below nothing") << 0 << -1 << QByteArray();
        QTest::newRow("from a load to below nothing") << 50 << -25 << QByteArray();
    }

    void stepsBringTheLoadToItsTarget()
    {
        QFETCH(int, current);
        QFETCH(int, target);
        QFETCH(QByteArray, steps);
        QCOMPARE(toText(olmo::loadSteps(current, target)), steps);
    }

    void wattsAreWhole()
    {
        QCOMPARE(olmo::wholeWatts(0.0), 0);
        QCOMPARE(olmo::wholeWatts(49.99), 49);
        QCOMPARE(olmo::wholeWatts(-999.0), -999);
        QCOMPARE(olmo::wholeWatts(1e300), std::numeric_limits<int>::max());
        QCOMPARE(olmo::wholeWatts(-1e300), std::numeric_limits<int>::min());
    }
};

QTEST_GUILESS_MAIN(OlmoCommandsTest)
#include "OlmoCommandsTest.moc"
