#include "display/BeatTicks.h"

#include "analysis/signals/Truncation.h"
#include "display/BrowseView.h"
#include "display/ColorTags.h"
#include "display/TLeadLabels.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

using velantor::truncated;

namespace {

/// Seconds to either side of the selected beat.
constexpr double bandReach = 0.2;
constexpr double tickLength = 10.0;
constexpr double leastSpeedForIntervals = 25.0; // mm/s
constexpr int intervalSize = 8;
constexpr int rulerSize = 10;
constexpr double rulerFromBottom = 4.0;

void drawCentred(QPainter& painter, double x, int baseLine, const QString& text)
{
    const double half = painter.fontMetrics().horizontalAdvance(text) / 2.0;
    painter.drawText(truncated<int>(x - half), baseLine, text);
}

/// Half a label at the edge of the picture would tell another time.
bool hasRoom(const PageScale& scale, double x, int labelWidth)
{
    return x - labelWidth / 2.0 >= 0.0 && x + labelWidth / 2.0 <= scale.width;
}

QString intervalText(double seconds)
{
    return QString::asprintf("%d", truncated<int>(std::round(seconds * 1000.0)));
}

QFont intervalFont(const PageScale& scale)
{
    QFont font = displayFont(scale, intervalSize);
    font.setWeight(QFont::Normal);
    return font;
}

} // namespace

QRect selectedBeatBand(const BrowsePage& page, const BrowseView& view)
{
    if (view.selectedBeatId < 0 || !view.beatSource)
        return QRect();
    const auto beat = view.beatSource->beat(view.selectedBeatId);
    if (!beat || !beat->marked)
        return QRect();
    const int left = truncated<int>(page.xOf(beat->time - bandReach));
    const int right = truncated<int>(page.xOf(beat->time + bandReach));
    const QRect trace(page.layout.traceLeft, 0, page.layout.traceWidth, page.scale.height);
    const QRect band = QRect(QPoint(left, 0), QPoint(right - 1, page.scale.height - 1)) & trace;
    return band.isEmpty() ? QRect() : band;
}

void paintSelectedBeat(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    const QRect band = selectedBeatBand(page, view);
    if (!band.isNull())
        painter.fillRect(band, view.colors.value(SelectedBeatColor));
}

std::vector<TBeatMark> beatsOnPage(const BrowsePage& page, const BrowseView& view)
{
    std::vector<TBeatMark> beats;
    if (!view.beatSource)
        return beats;
    auto beat = view.beatSource->nearestBeat(page.startTime);
    if (!beat)
        beat = view.beatSource->firstBeatAfter(page.startTime);
    for (; beat && beat->time < page.endTime(); beat = view.beatSource->beatAfter(beat->id)) {
        if (beat->marked && beat->time > page.startTime)
            beats.push_back(*beat);
    }
    return beats;
}

void paintBeatTicks(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    const std::vector<TBeatMark> beats = beatsOnPage(page, view);
    const bool withIntervals = view.speed >= leastSpeedForIntervals;
    painter.setPen(QPen(view.colors.value(BeatTickColor), page.scale.penWidth(1.0)));
    painter.setFont(intervalFont(page.scale));
    const int baseLine = painter.fontMetrics().height();
    for (std::size_t i = 0; i < beats.size(); ++i) {
        const int x = truncated<int>(page.xOf(beats[i].time));
        painter.drawLine(x, 0, x, page.scale.px(tickLength));
        if (i > 0 && withIntervals && beats[i].rr > 0.0)
            drawCentred(painter, (page.xOf(beats[i - 1].time) + x) / 2.0, baseLine,
                        intervalText(beats[i].rr));
    }
}

void paintTimeRuler(QPainter& painter, const BrowsePage& page, const BrowseView& view)
{
    painter.setFont(displayFont(page.scale, rulerSize));
    painter.setPen(view.colors.value(LabelColor));
    const int labelWidth = painter.fontMetrics().horizontalAdvance(QStringLiteral("00:00"));
    const int step = rulerStep(labelWidth / page.pixelsPerSecond());
    const int baseLine = page.scale.height - page.scale.px(rulerFromBottom);
    // Closer ones would only make a grey bar, and a page of years would never be done.
    if (!(step * page.pixelsPerSecond() >= 1.0))
        return;
    const double last = std::min(page.endTime(), view.duration());
    double seconds = std::ceil(page.startTime / step) * step;
    while (seconds <= last) {
        const double x = page.xOf(seconds);
        painter.drawLine(truncated<int>(x), baseLine + 1, truncated<int>(x), page.scale.height - 1);
        if (hasRoom(page.scale, x, labelWidth))
            drawCentred(painter, x, baseLine, rulerText(truncated<int>(seconds)));
        seconds += step;
    }
}
