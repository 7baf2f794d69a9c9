#include "display/MonitorInset.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"
#include "display/BeatInset.h"
#include "display/ColorTags.h"
#include "display/MonitorView.h"
#include "display/TFiducialSource.h"
#include "display/TLeadLabels.h"

#include <QPainter>

#include <cmath>

namespace {

/// A narrower inset has no room for ticks and figure.
constexpr double leastWidthForTicks = 41.0;
constexpr double tickReach = 5.0;
constexpr double figureFromRight = 20.0;
constexpr double figureFromTop = 20.0;
constexpr int figureSize = 10;
constexpr double mmPerMv = 10.0;

struct Inset
{
    QPainter& painter;
    const PageScale& scale;
    const PageLayout& layout;
    const MonitorView& view;

    QColor color(int tag) const { return view.colors.value(tag); }
};

void drawTick(const Inset& inset, const InsetRow& row, const TDoubleVector& beat, int index)
{
    if (index < 0 || index >= beat.size())
        return;
    const int x = row.left + static_cast<int>(qint64(index) * row.width / beat.size());
    const int y = insetY(row, beat[index]);
    const int reach = inset.scale.px(tickReach);
    inset.painter.fillRect(x - row.thickness / 2, y - reach, row.thickness, 2 * reach + row.thickness,
                           inset.color(FiducialColor));
}

void drawFiducials(const Inset& inset, const InsetRow& row, int channel, double rowTop)
{
    TFiducialSource* const source = inset.view.fiducialSource;
    TFiducialSource::TFiducials found;
    if (!source || row.width < inset.scale.px(leastWidthForTicks) || !source->fiducials(channel, &found))
        return;
    inset.painter.setPen(inset.color(FiducialColor));
    for (const int index : found.indices)
        drawTick(inset, row, inset.view.averageBeat->complex(channel), index);
    const QString figure = stFigure(found.stLevel);
    if (!figure.isEmpty())
        inset.painter.drawText(row.width - inset.scale.px(figureFromRight),
                               velantor::truncated<int>(rowTop) + inset.scale.px(figureFromTop), figure);
}

void drawBeats(const Inset& inset, const InsetRow& row, int channel)
{
    TAverageBeat& beat = *inset.view.averageBeat;
    if (beat.hasReference())
        drawBeatByColumns(inset.painter, row, beat.reference(channel), inset.color(ReferenceBeatColor));
    drawBeatByColumns(inset.painter, row, beat.complex(channel), inset.color(AverageBeatColor));
}

} // namespace

QString stFigure(double level)
{
    const double millimetres = level * mmPerMv;
    if (!std::isfinite(millimetres) || std::fabs(millimetres) < 1.0)
        return QString();
    return QString::asprintf("%+.1f", millimetres);
}

void paintMonitorInset(QPainter& painter, const PageScale& scale, const PageLayout& layout,
                       const MonitorView& view)
{
    const Inset inset{painter, scale, layout, view};
    const bool valid = view.averageBeat->count() > 0;
    const double rowHeight = double(scale.height) / view.visibleCount();
    painter.setFont(displayFont(scale, figureSize));
    view.rows.forEach(view.signal->channelCount(), [&](int row, int channel, bool inverted) {
        const InsetRow place{layout.insetLeft, layout.insetWidth, (row + 0.5) * rowHeight,
                             view.pixelsPerCount(scale, inverted), scale.penWidth(1.0)};
        if (!valid) {
            drawFlatBeat(painter, place, inset.color(AverageBeatColor));
            return;
        }
        drawBeats(inset, place, channel);
        drawFiducials(inset, place, channel, row * rowHeight);
    });
}
