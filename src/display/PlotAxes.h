#pragma once

class QPainter;
class TPlotScale;
struct TPlotView;

/// Paints the grid, the labels of the ticks and the frame of a plot. Ranges that are empty have the frame
/// alone.
void paintPlotAxes(QPainter& painter, const TPlotView& view, const TPlotScale& scale);
