#include "display/BeatCursors.h"

#include "analysis/signals/TDoubleVector.h"
#include "analysis/signals/Truncation.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using velantor::truncated;

namespace {

constexpr int catchDistance = 3;

QString translated(const char* text)
{
    return QCoreApplication::translate("QBeatDisplay", text);
}

TBeatCursor cursor(const char* name, bool visible, const char* mark)
{
    TBeatCursor made;
    made.visible = visible;
    made.name = translated(name);
    made.mark = QString::fromLatin1(mark);
    return made;
}

struct TInterval
{
    const char* text;
    TBeatCursorIndex from;
    TBeatCursorIndex to;
    int row;
};

constexpr TInterval intervals[] = {
    {QT_TRANSLATE_NOOP("QBeatDisplay", "PR\n%1"), pOnCursor, qrsOnCursor, 0},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "P %1"), pOnCursor, pOffCursor, 1},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "QRS\n%1"), qrsOnCursor, qrsOffCursor, 0},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "ST %1"), qrsOffCursor, tOnCursor, 0},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "QT %1"), qrsOnCursor, tOffCursor, 1},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "T %1"), tOnCursor, tOffCursor, 0},
    {QT_TRANSLATE_NOOP("QBeatDisplay", "Tpf\n%1"), tPeakCursor, tOffCursor, 2},
};

int wholeMs(double seconds)
{
    return truncated<int>(std::round(seconds * 1000.0));
}

bool isSet(const TBeatCursor& cursor)
{
    return cursor.visible && cursor.position > 0.0;
}

int indexOf(const TBeatCursor& cursor, const TDoubleVector& complex, int rate)
{
    return std::clamp(truncated<int>(cursor.position * rate + 0.5), 0, complex.size() - 1);
}

/// Sample of the QRS that lies farthest from `base`.
int farthest(const TDoubleVector& complex, int first, int last, double base)
{
    int found = first;
    for (int i = first; i <= last; ++i) {
        if (std::abs(complex[i] - base) > std::abs(complex[found] - base))
            found = i;
    }
    return found;
}

QString millivoltText(double millivolts)
{
    // The sum keeps a tiny negative value from reading -0.00.
    const double rounded = std::round(millivolts * 100.0) / 100.0 + 0.0;
    // A translation is no format to trust.
    return translated(QT_TRANSLATE_NOOP("QBeatDisplay", "%.2f mV"))
        .replace(QLatin1String("%.2f"), QString::number(rounded, 'f', 2));
}

} // namespace

TBeatCursors beatCursors()
{
    return {cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "P on"), true, "(P"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "P off"), false, "P)"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "P peak"), false, "P^"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "QRS on"), true, "(QRS"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "QRS off"), true, "QRS)"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "T on"), false, "(T"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "T off"), true, "T)"),
            cursor(QT_TRANSLATE_NOOP("QBeatDisplay", "T peak"), false, "T^")};
}

int TBeatScale::xOf(double seconds) const
{
    // The time of a pixel comes back to that pixel, whatever its last bit.
    constexpr double rounding = 1e-9;
    return truncated<int>(width * seconds / beatSeconds + rounding);
}

double TBeatScale::secondsAt(int x) const
{
    return std::clamp(x, 0, std::max(width - 1, 0)) * beatSeconds / width;
}

bool isDrawn(const TBeatCursor& cursor)
{
    return cursor.visible && cursor.position >= 0.0;
}

int cursorAt(const TBeatCursors& cursors, const TBeatScale& scale, int x)
{
    const auto isNear = [&](const TBeatCursor& cursor) {
        return isDrawn(cursor) &&
               std::abs(static_cast<qint64>(scale.xOf(cursor.position)) - x) <= catchDistance;
    };
    const auto found = std::find_if(cursors.begin(), cursors.end(), isNear);
    return found == cursors.end() ? -1 : static_cast<int>(found - cursors.begin());
}

std::vector<TBeatDimension> beatDimensions(const TBeatCursors& cursors)
{
    std::vector<TBeatDimension> dimensions;
    for (const TInterval& interval : intervals) {
        const TBeatCursor& from = cursors[interval.from];
        const TBeatCursor& to = cursors[interval.to];
        const double seconds = to.position - from.position;
        if (!isSet(from) || !isSet(to) || !(seconds > 0.0))
            continue;
        const QString text = translated(interval.text).arg(wholeMs(seconds), 0, 10);
        dimensions.push_back({from.position, to.position, text, interval.row});
    }
    return dimensions;
}

QString rrText(double seconds)
{
    return seconds > 0.0
               ? translated(QT_TRANSLATE_NOOP("QBeatDisplay", "[RR %1]")).arg(wholeMs(seconds), 0, 10)
               : QString();
}

std::vector<TBeatLevel> beatLevels(const TBeatCursors& cursors, const TDoubleVector& complex, int rate,
                                   double countValue)
{
    std::vector<TBeatLevel> levels;
    if (complex.size() == 0 || !isSet(cursors[pOnCursor]))
        return levels;
    const auto indexAt = [&](TBeatCursorIndex cursor) { return indexOf(cursors[cursor], complex, rate); };
    const double base = complex[indexAt(pOnCursor)];
    const auto add = [&](int index) {
        const QString text = millivoltText((complex[index] - base) * countValue);
        levels.push_back({static_cast<double>(index) / rate, complex[index], text});
    };
    if (isSet(cursors[pPeakCursor]))
        add(indexAt(pPeakCursor));
    if (isSet(cursors[qrsOnCursor]) && cursors[qrsOffCursor].visible &&
        cursors[qrsOffCursor].position > cursors[qrsOnCursor].position)
        add(farthest(complex, indexAt(qrsOnCursor), indexAt(qrsOffCursor), base));
    if (isSet(cursors[tPeakCursor]))
        add(indexAt(tPeakCursor));
    return levels;
}
