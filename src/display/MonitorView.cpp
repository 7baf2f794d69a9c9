#include "display/MonitorView.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorTags.h"

int MonitorView::visibleCount() const
{
    return signal ? rows.visibleCount(signal->channelCount()) : 0;
}

double MonitorView::pixelsPerCount(const PageScale& scale, bool inverted) const
{
    const double pixels = scale.pixelsPerCount(*signal, amplitude);
    return inverted ? -pixels : pixels;
}

QMap<int, QColor> monitorColors()
{
    return {{TraceColor, Qt::black},
            {BackgroundColor, Qt::white},
            {GridColor, QColor(220, 200, 180)},
            {LabelColor, Qt::lightGray},
            {AverageBeatColor, Qt::darkBlue},
            {ReferenceBeatColor, QColor(0, 128, 0, 128)},
            {SaturationColor, QColor(255, 128, 0, 128)},
            {CursorColor, Qt::gray},
            {FiducialColor, Qt::darkRed}};
}
