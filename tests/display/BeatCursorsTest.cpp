#include "display/BeatCursors.h"

#include "analysis/signals/TDoubleVector.h"

#include <QtTest>

#include <limits>

namespace {

constexpr TBeatScale scale{800, 400, 1.0};

TBeatCursors placed(double pOn, double qrsOn, double qrsOff, double tOff)
{
    TBeatCursors cursors = beatCursors();
    cursors[pOnCursor].position = pOn;
    cursors[qrsOnCursor].position = qrsOn;
    cursors[qrsOffCursor].position = qrsOff;
    cursors[tOffCursor].position = tOff;
    return cursors;
}

QStringList texts(const TBeatCursors& cursors)
{
    QStringList found;
    for (const TBeatDimension& dimension : beatDimensions(cursors))
        found << dimension.text;
    return found;
}

QStringList texts(const std::vector<TBeatLevel>& levels)
{
    QStringList found;
    for (const TBeatLevel& level : levels)
        found << level.text;
    return found;
}

/// A base of 10 counts with P of +20, R of +150, S of -100 and T of -30 around it.
TDoubleVector complexWithWaves()
{
    TDoubleVector complex(500);
    for (int i = 0; i < complex.size(); ++i)
        complex[i] = 10.0;
    complex[150] = 30.0;
    complex[225] = 160.0;
    complex[235] = -90.0;
    complex[350] = -20.0;
    return complex;
}

} // namespace

class BeatCursorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cursorsHaveNamesMarksAndVisibility();
    void cursorsStartBlueAtZero();
    void oneCmIsFourTenthsOfASecond();
    void placeOfACursorIsTruncated();
    void aPixelsTimeComesBackToThatPixel();
    void timesStopAtTheEdges();
    void caughtWithinThreePixels();
    void lowerIndexIsCaughtFirst();
    void hiddenCursorIsNeverCaught();
    void measurementsOfTheFourCursorsInUse();
    void measurementsOfAllEight();
    void cursorsInTheWrongOrderGiveNoMeasurement();
    void hiddenCursorGivesNoMeasurement();
    void unplacedCursorsGiveNoMeasurement();
    void unsetCursorsGiveNoMeasurement_data();
    void unsetCursorsGiveNoMeasurement();
    void cursorBeforeTheBeatIsNeitherDrawnNorCaught();
    void rowsHoldNoOverlappingLines();
    void timesAreRoundedToWholeMs();
    void rrIsToldIfKnown();
    void levelsAreHeldAgainstPOn();
    void levelsNeedTheirCursors();
    void levelsOfPositionsBeyondTheBeatStayWithin();
};

void BeatCursorsTest::cursorsHaveNamesMarksAndVisibility()
{
    const TBeatCursors cursors = beatCursors();
    QCOMPARE(cursors.size(), size_t(beatCursorCount));
    QStringList names;
    QStringList marks;
    QString visible;
    for (const TBeatCursor& cursor : cursors) {
        names << cursor.name;
        marks << cursor.mark;
        visible += QLatin1Char(cursor.visible ? '1' : '0');
    }
    QCOMPARE(names.join(u','), QStringLiteral("P on,P off,P peak,QRS on,QRS off,T on,T off,T peak"));
    QCOMPARE(marks.join(u' '), QStringLiteral("(P P) P^ (QRS QRS) (T T) T^"));
    QCOMPARE(visible, QStringLiteral("10011010"));
}

void BeatCursorsTest::cursorsStartBlueAtZero()
{
    for (const TBeatCursor& cursor : beatCursors()) {
        QCOMPARE(cursor.position, 0.0);
        QCOMPARE(cursor.color, QColor(Qt::blue));
    }
}

void BeatCursorsTest::oneCmIsFourTenthsOfASecond()
{
    QCOMPARE(scale.pixelsPerCm(), 320.0);
    const TBeatScale halfSecond{800, 400, 0.5};
    QCOMPARE(halfSecond.pixelsPerCm(), 640.0);
}

void BeatCursorsTest::placeOfACursorIsTruncated()
{
    QCOMPARE(scale.xOf(0.0), 0);
    QCOMPARE(scale.xOf(0.12499), 99);
    QCOMPARE(scale.xOf(0.125), 100);
    QCOMPARE(scale.xOf(-0.001), 0);
}

void BeatCursorsTest::aPixelsTimeComesBackToThatPixel()
{
    for (int width = 1; width < 2000; width += 7) {
        const TBeatScale one{width, 10, 1.0};
        for (int x = 0; x < width; ++x)
            QCOMPARE(one.xOf(one.secondsAt(x)), x);
    }
}

void BeatCursorsTest::timesStopAtTheEdges()
{
    QCOMPARE(scale.secondsAt(400), 0.5);
    QCOMPARE(scale.secondsAt(-20), 0.0);
    QCOMPARE(scale.secondsAt(5000), 799.0 / 800.0);
}

void BeatCursorsTest::caughtWithinThreePixels()
{
    const TBeatCursors cursors = placed(0.25, 0.5, 0.6, 0.9);
    QCOMPARE(cursorAt(cursors, scale, 200), int(pOnCursor));
    QCOMPARE(cursorAt(cursors, scale, 203), int(pOnCursor));
    QCOMPARE(cursorAt(cursors, scale, 197), int(pOnCursor));
    QCOMPARE(cursorAt(cursors, scale, 204), -1);
    QCOMPARE(cursorAt(cursors, scale, 196), -1);
    QCOMPARE(cursorAt(cursors, scale, 400), int(qrsOnCursor));
}

void BeatCursorsTest::lowerIndexIsCaughtFirst()
{
    const TBeatCursors cursors = placed(0.5, 0.5 - 3.0 / 800, 0.6, 0.9);
    QCOMPARE(cursorAt(cursors, scale, 400), int(pOnCursor));
    QCOMPARE(cursorAt(cursors, scale, 397), int(pOnCursor));
    QCOMPARE(cursorAt(cursors, scale, 396), int(qrsOnCursor));
}

void BeatCursorsTest::hiddenCursorIsNeverCaught()
{
    TBeatCursors cursors = placed(0.25, 0.5, 0.6, 0.9);
    cursors[tPeakCursor].position = 0.75;
    QCOMPARE(cursorAt(cursors, scale, 600), -1);
    cursors[tPeakCursor].visible = true;
    QCOMPARE(cursorAt(cursors, scale, 600), int(tPeakCursor));
}

void BeatCursorsTest::measurementsOfTheFourCursorsInUse()
{
    QCOMPARE(texts(placed(0.25, 0.41, 0.5, 0.81)),
             QStringList({QStringLiteral("PR\n160"), QStringLiteral("QRS\n90"), QStringLiteral("QT 400")}));
}

void BeatCursorsTest::measurementsOfAllEight()
{
    TBeatCursors cursors = placed(0.25, 0.41, 0.5, 0.81);
    cursors[pOffCursor].position = 0.35;
    cursors[pPeakCursor].position = 0.3;
    cursors[tOnCursor].position = 0.6;
    cursors[tPeakCursor].position = 0.7;
    for (TBeatCursor& cursor : cursors)
        cursor.visible = true;
    QCOMPARE(texts(cursors),
             QStringList({QStringLiteral("PR\n160"), QStringLiteral("P 100"), QStringLiteral("QRS\n90"),
                          QStringLiteral("ST 100"), QStringLiteral("QT 400"), QStringLiteral("T 210"),
                          QStringLiteral("Tpf\n110")}));
}

void BeatCursorsTest::cursorsInTheWrongOrderGiveNoMeasurement()
{
    QCOMPARE(texts(placed(0.45, 0.41, 0.5, 0.5)),
             QStringList({QStringLiteral("QRS\n90"), QStringLiteral("QT 90")}));
    QVERIFY(texts(placed(0.5, 0.5, 0.5, 0.5)).isEmpty());
}

void BeatCursorsTest::hiddenCursorGivesNoMeasurement()
{
    TBeatCursors cursors = placed(0.25, 0.41, 0.5, 0.81);
    cursors[qrsOnCursor].visible = false;
    QVERIFY(texts(cursors).isEmpty());
}

void BeatCursorsTest::unplacedCursorsGiveNoMeasurement()
{
    QVERIFY(texts(beatCursors()).isEmpty());
}

void BeatCursorsTest::rowsHoldNoOverlappingLines()
{
    TBeatCursors cursors = placed(0.25, 0.41, 0.5, 0.81);
    cursors[pOffCursor].position = 0.35;
    cursors[tOnCursor].position = 0.6;
    cursors[tPeakCursor].position = 0.7;
    for (TBeatCursor& cursor : cursors)
        cursor.visible = true;
    const auto lines = beatDimensions(cursors);
    for (size_t i = 0; i < lines.size(); ++i) {
        for (size_t j = i + 1; j < lines.size(); ++j)
            QVERIFY(lines[i].row != lines[j].row || lines[i].to <= lines[j].from ||
                    lines[j].to <= lines[i].from);
    }
}

void BeatCursorsTest::timesAreRoundedToWholeMs()
{
    // The difference is a hair below 0.2.
    QVERIFY(0.3 - 0.1 < 0.2);
    QCOMPARE(texts(placed(0.1, 0.3, 0.2, 0.2)), QStringList({QStringLiteral("PR\n200")}));
}

void BeatCursorsTest::rrIsToldIfKnown()
{
    QCOMPARE(rrText(0.857), QStringLiteral("[RR 857]"));
    QCOMPARE(rrText(0.0), QString());
}

void BeatCursorsTest::levelsAreHeldAgainstPOn()
{
    TBeatCursors cursors = placed(0.2, 0.4, 0.5, 0.8);
    cursors[pPeakCursor].position = 0.3;
    cursors[tPeakCursor].position = 0.7;
    cursors[pPeakCursor].visible = cursors[tPeakCursor].visible = true;
    const auto levels = beatLevels(cursors, complexWithWaves(), 500, 0.01);
    QCOMPARE(texts(levels),
             QStringList({QStringLiteral("0.20 mV"), QStringLiteral("1.50 mV"), QStringLiteral("-0.30 mV")}));
    QCOMPARE(levels[1].seconds, 0.45);
    QCOMPARE(levels[1].counts, 160.0);
}

void BeatCursorsTest::levelsNeedTheirCursors()
{
    const TDoubleVector complex = complexWithWaves();
    QCOMPARE(texts(beatLevels(placed(0.2, 0.4, 0.5, 0.8), complex, 500, 0.01)),
             QStringList({QStringLiteral("1.50 mV")}));
    QVERIFY(beatLevels(placed(0.0, 0.4, 0.5, 0.8), complex, 500, 0.01).empty());
    QVERIFY(beatLevels(placed(0.2, 0.4, 0.4, 0.8), complex, 500, 0.01).empty());
    QVERIFY(beatLevels(placed(0.2, 0.4, 0.5, 0.8), TDoubleVector(), 500, 0.01).empty());
}

void BeatCursorsTest::levelsOfPositionsBeyondTheBeatStayWithin()
{
    const auto levels = beatLevels(placed(7.0, 8.0, 1e300, 0.8), complexWithWaves(), 500, 0.01);
    QCOMPARE(texts(levels), QStringList({QStringLiteral("0.00 mV")}));
}

void BeatCursorsTest::unsetCursorsGiveNoMeasurement()
{
    QFETCH(double, unset);
    // An unset P on would give a PR from the left edge.
    QCOMPARE(texts(placed(unset, 0.41, 0.5, 0.81)),
             QStringList({QStringLiteral("QRS\n90"), QStringLiteral("QT 400")}));
    QVERIFY(texts(placed(0.25, unset, 0.5, 0.81)).isEmpty());
    QCOMPARE(texts(placed(0.25, 0.41, 0.5, unset)),
             QStringList({QStringLiteral("PR\n160"), QStringLiteral("QRS\n90")}));
}

void BeatCursorsTest::unsetCursorsGiveNoMeasurement_data()
{
    QTest::addColumn<double>("unset");
    QTest::newRow("at the left edge") << 0.0;
    QTest::newRow("before the beat") << -0.1;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void BeatCursorsTest::cursorBeforeTheBeatIsNeitherDrawnNorCaught()
{
    // Truncated, its place would be the first pixel.
    const TBeatCursors cursors = placed(-0.001, 0.41, 0.5, 0.81);
    QVERIFY(!isDrawn(cursors[pOnCursor]));
    QCOMPARE(cursorAt(cursors, scale, 0), -1);
    const TBeatCursors atEdge = placed(0.0, 0.41, 0.5, 0.81);
    QVERIFY(isDrawn(atEdge[pOnCursor]));
    QCOMPARE(cursorAt(atEdge, scale, 0), int(pOnCursor));
    QVERIFY(!isDrawn(atEdge[pOffCursor]));
}

QTEST_MAIN(BeatCursorsTest)

#include "BeatCursorsTest.moc"
