#pragma once

#include "display/PageLayout.h"

class QPainter;
struct MonitorView;

/// The running average beat at the left of the live display, lead by lead over the kept reference, with its
/// measuring points and the ST level in mm at standard gain. Only for a view that has an inset.
void paintMonitorInset(QPainter& painter, const PageScale& scale, const PageLayout& layout,
                       const MonitorView& view);

/// The ST level as the inset tells it; empty below 1 mm. `level` in mV.
QString stFigure(double level);
