#include "analysis/detection/TModulusMarks.h"

#include <QtTest>

namespace {

constexpr int rate = 250;
constexpr TWaveletThresholds limits{{1.0, 1.0, 1.0, 1.0}};

/// A transform that is 0 but for plateaus. One of `2 * half + 1` samples is an extreme at a lag of `half` +
/// 1, at its middle and nowhere else.
class TPlateaus
{
public:
    TPlateaus& put(int scale, int at, double value, int half = 0)
    {
        for (int i = at - half; i <= at + half; ++i)
            m_span.data(scale)[i] = value;
        return *this;
    }
    /// A chain straight through the scales that makes a mark of that value.
    TPlateaus& chain(int at, double value)
    {
        const double sign = value > 0.0 ? 1.0 : -1.0;
        return put(4, at, 10.0 * sign).put(3, at, 10.0 * sign).put(2, at, value);
    }
    TModulusMarks marks(int from = 0, int to = length, int samplingRate = rate) const
    {
        TModulusMarks marks(samplingRate);
        marks.enter(m_span, limits, from, to);
        return marks;
    }
    const TWaveletSpan& span() const { return m_span; }

    static constexpr int length = 1000;

private:
    TWaveletSpan m_span{0, length};
};

QString text(const TModulusMarks& marks)
{
    QStringList words;
    for (const TModulusMarks::TMark& mark : marks.marks())
        words << QString::number(mark.position) + QLatin1Char(mark.sign > 0 ? '+' : '-');
    return words.join(QLatin1Char(' '));
}

} // namespace

class ModulusMarksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChainThroughTheScalesMakesAMarkAtItsFinestEnd()
    {
        TPlateaus plateaus;
        plateaus.put(4, 100, -2.0).put(3, 105, -2.0).put(2, 110, -3.0);
        const TModulusMarks marks = plateaus.marks();
        QCOMPARE(text(marks), QStringLiteral("110-"));
        QCOMPARE(marks.marks().front().size, 3.0);
    }

    void everyLinkOfAChainKeepsItsRule_data()
    {
        QTest::addColumn<int>("scale");
        QTest::addColumn<int>("at");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("half");
        QTest::addColumn<bool>("makesAMark");
        QTest::newRow("coarsest at its threshold") << 4 << 100 << 1.0 << 0 << true;
        QTest::newRow("coarsest below it") << 4 << 100 << 0.999 << 0 << false;
        QTest::newRow("coarsest an extreme at lag 2") << 4 << 100 << 2.0 << 1 << true;
        QTest::newRow("coarsest at lag 3 only") << 4 << 100 << 2.0 << 2 << false;
        QTest::newRow("middle at its threshold") << 3 << 100 << 1.0 << 0 << true;
        QTest::newRow("middle below it") << 3 << 100 << 0.999 << 0 << false;
        QTest::newRow("middle of the other sign") << 3 << 100 << -2.0 << 0 << false;
        QTest::newRow("middle an extreme at lag 3") << 3 << 100 << 2.0 << 2 << true;
        QTest::newRow("middle at lag 4 only") << 3 << 100 << 2.0 << 3 << false;
        QTest::newRow("middle 0.05 s before") << 3 << 88 << 2.0 << 0 << true;
        QTest::newRow("middle farther before") << 3 << 87 << 2.0 << 0 << false;
        QTest::newRow("middle 0.05 s behind") << 3 << 112 << 2.0 << 0 << true;
        QTest::newRow("middle farther behind") << 3 << 113 << 2.0 << 0 << false;
        QTest::newRow("finest at its threshold") << 2 << 100 << 1.0 << 0 << true;
        QTest::newRow("finest below it") << 2 << 100 << 0.999 << 0 << false;
        QTest::newRow("finest of the other sign") << 2 << 100 << -2.0 << 0 << false;
        QTest::newRow("finest an extreme at lag 4") << 2 << 100 << 2.0 << 3 << true;
        QTest::newRow("finest at lag 5 only") << 2 << 100 << 2.0 << 4 << false;
        QTest::newRow("finest 0.05 s before") << 2 << 88 << 2.0 << 0 << true;
        QTest::newRow("finest farther before") << 2 << 87 << 2.0 << 0 << false;
        QTest::newRow("finest 0.05 s behind") << 2 << 112 << 2.0 << 0 << true;
        QTest::newRow("finest farther behind") << 2 << 113 << 2.0 << 0 << false;
    }

    void everyLinkOfAChainKeepsItsRule()
    {
        QFETCH(int, scale);
        QFETCH(int, at);
        QFETCH(double, value);
        QFETCH(int, half);
        QFETCH(bool, makesAMark);
        for (const double sign : {1.0, -1.0}) {
            TPlateaus plateaus;
            for (const int other : {2, 3, 4}) {
                if (other != scale)
                    plateaus.put(other, 100, 2.0 * sign);
            }
            plateaus.put(scale, at, value * sign, half);
            QCOMPARE(plateaus.marks().marks().size(), makesAMark ? 1U : 0U);
        }
    }

    void chainsBeginInTheSpanAndMayEndOutside()
    {
        TPlateaus plateaus;
        plateaus.put(4, 100, 2.0).put(3, 108, 2.0).put(2, 116, 2.0);
        QCOMPARE(text(plateaus.marks(100, 101)), QStringLiteral("116+"));
        QCOMPARE(text(plateaus.marks(90, 100)), QString());
        QCOMPARE(text(plateaus.marks(101, 200)), QString());
    }

    void aMaximumMayEndInSeveralMarksAndEachIsThereOnce()
    {
        TPlateaus plateaus;
        plateaus.put(4, 100, 2.0).put(4, 105, 2.0).put(3, 100, 2.0).put(2, 95, 2.0).put(2, 104, 3.0);
        QCOMPARE(text(plateaus.marks()), QStringLiteral("95+ 104+"));
    }

    void nothingMakesNoMark()
    {
        TModulusMarks marks(rate);
        marks.enter(TWaveletSpan(0, 500), TWaveletThresholds(), 0, 500);
        marks.enter(TWaveletSpan(), limits, 0, 500);
        marks.judge(500);
        QCOMPARE(text(marks), QString());
        QVERIFY(!marks.firstAfter(-1, 500));
    }

    void aMarkWithoutAPartnerIsIsolated_data()
    {
        QTest::addColumn<int>("samplingRate");
        QTest::addColumn<int>("distance");
        QTest::addColumn<bool>("stays");
        QTest::newRow("just within 0.15 s") << 250 << 37 << true;
        QTest::newRow("just beyond 0.15 s") << 250 << 38 << false;
        QTest::newRow("0.15 s") << 200 << 30 << true;
        QTest::newRow("a sample more") << 200 << 31 << false;
    }

    void aMarkWithoutAPartnerIsIsolated()
    {
        QFETCH(int, samplingRate);
        QFETCH(int, distance);
        QFETCH(bool, stays);
        TModulusMarks marks =
            TPlateaus().chain(100, -2.0).chain(100 + distance, 2.0).marks(0, 500, samplingRate);
        marks.judge(500);
        QCOMPARE(marks.marks().size(), stays ? 2U : 0U);
    }

    void aMarkOfTheSameSignIsNoPartner()
    {
        TModulusMarks marks = TPlateaus().chain(100, 2.0).chain(120, 3.0).marks();
        marks.judge(500);
        QCOMPARE(text(marks), QString());
    }

    void ofTwoMarksAlikeTheSmallerGoes_data()
    {
        QTest::addColumn<int>("distance");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("second");
        QTest::addColumn<QString>("left");
        // The partners of the other sign stand 60 samples apart.
        QTest::newRow("the first is greater") << 50 << 3.0 << 2.0 << "100+ 105- 165-";
        QTest::newRow("the second is greater") << 50 << 2.0 << 3.0 << "105- 150+ 165-";
        QTest::newRow("a tie takes the other one") << 50 << 2.0 << 2.0 << "100+ 105- 165-";
        QTest::newRow("more than 0.2 s apart") << 51 << 2.0 << 3.0 << "100+ 105- 151+ 165-";
    }

    void ofTwoMarksAlikeTheSmallerGoes()
    {
        QFETCH(int, distance);
        QFETCH(double, first);
        QFETCH(double, second);
        QFETCH(QString, left);
        TModulusMarks marks = TPlateaus()
                                  .chain(100, first)
                                  .chain(100 + distance, second)
                                  .chain(105, -2.0)
                                  .chain(165, -2.0)
                                  .marks();
        marks.judge(500);
        QCOMPARE(text(marks), left);
    }

    void aMarkThatWentClearsNoOther()
    {
        // The middle one goes for the first; the last has no greater one near it then.
        TModulusMarks marks = TPlateaus()
                                  .chain(100, 4.0)
                                  .chain(140, 3.0)
                                  .chain(180, 2.0)
                                  .chain(110, -2.0)
                                  .chain(170, -2.0)
                                  .marks();
        marks.judge(500);
        QCOMPARE(text(marks), QStringLiteral("100+ 110- 170- 180+"));
    }

    void theOrderOfEnteringDoesNotMatter()
    {
        TPlateaus plateaus;
        for (int i = 0; i < 40; ++i)
            plateaus.chain(20 + 23 * i, (i * 7 % 11 + 2) * (i % 3 == 0 ? -1.0 : 1.0));
        TModulusMarks forward(rate), backward(rate), atOnce(rate);
        for (int i = 0; i < 10; ++i) {
            forward.enter(plateaus.span(), limits, 100 * i, 100 * (i + 1));
            backward.enter(plateaus.span(), limits, 900 - 100 * i, 1000 - 100 * i);
        }
        for (int i = 0; i < 2; ++i)
            atOnce.enter(plateaus.span(), limits, 0, TPlateaus::length);
        QVERIFY(atOnce.marks().size() == 40);
        QCOMPARE(text(forward), text(atOnce));
        QCOMPARE(text(backward), text(atOnce));
        for (TModulusMarks* marks : {&forward, &backward, &atOnce})
            marks->judge(TPlateaus::length);
        QVERIFY(atOnce.marks().size() < 40 && atOnce.marks().size() > 4);
        QCOMPARE(text(forward), text(atOnce));
        QCOMPARE(text(backward), text(atOnce));
    }

    void marksFromTheLimitOnWait()
    {
        // Isolated, and redundant with a greater one before it.
        TModulusMarks marks =
            TPlateaus().chain(80, -2.0).chain(100, 4.0).chain(140, 3.0).chain(400, 2.0).marks();
        marks.judge(140);
        QCOMPARE(text(marks), QStringLiteral("80- 100+ 140+ 400+"));
        marks.judge(141);
        QCOMPARE(text(marks), QStringLiteral("80- 100+ 400+"));
        marks.judge(401);
        QCOMPARE(text(marks), QStringLiteral("80- 100+"));
    }

    void marksFromTheLimitOnCountAgainstThoseBelow()
    {
        TModulusMarks marks = TPlateaus().chain(100, -2.0).chain(120, 2.0).chain(160, 3.0).marks();
        marks.judge(110);
        QCOMPARE(text(marks), QStringLiteral("100- 120+ 160+"));
        marks.judge(130);
        QCOMPARE(text(marks), QStringLiteral("100- 160+"));
    }

    void marksAreWalkedInOrder()
    {
        TModulusMarks marks = TPlateaus().chain(100, -2.0).chain(120, 2.0).chain(160, 3.0).marks();
        QCOMPARE(marks.firstAfter(-1, 500)->position, 100);
        QCOMPARE(marks.firstAfter(99, 500)->position, 100);
        QCOMPARE(marks.firstAfter(100, 500)->position, 120);
        QCOMPARE(marks.firstAfter(100, 121)->position, 120);
        QVERIFY(!marks.firstAfter(100, 120));
        QVERIFY(!marks.firstAfter(160, 500));
        marks.remove(120);
        marks.remove(121);
        QCOMPARE(text(marks), QStringLiteral("100- 160+"));
        marks.forgetBefore(100);
        QCOMPARE(text(marks), QStringLiteral("100- 160+"));
        marks.forgetBefore(101);
        QCOMPARE(text(marks), QStringLiteral("160+"));
        marks.clear();
        QCOMPARE(text(marks), QString());
    }
};

QTEST_GUILESS_MAIN(ModulusMarksTest)
#include "ModulusMarksTest.moc"
