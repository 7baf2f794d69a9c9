#pragma once

#include <QString>

#include <vector>

/// Ticks of a plot's axes: their steps, their values, their labels.

/// The step of an axis on which labels need `pixels` at a scale of `pixelsPerUnit`: 2, 5 or 10 times the
/// power of ten of their quotient. 0 if there is no such number.
double tickStep(double pixels, double pixelsPerUnit);

/// The step in seconds of an axis of dates: one that a clock knows, at most an hour.
double dateTickStep(double pixels, double pixelsPerSecond);

/// The multiples of a step along an axis.
struct TTicks
{
    double step = 0.0;
    /// Which multiple of the step the first one is.
    double firstIndex = 0.0;
    int count = 0;

    /// Every which multiple is kept.
    double stride = 1.0;

    double index(int tick) const { return firstIndex + tick * stride; }
    double value(int tick) const;
};

/// The ticks from `min` to `max`, those at the ends included. Where they would be more than `most`, only
/// every n-th is kept; the step stays.
TTicks ticksWithin(double min, double max, double step, int most);

/// A value by a printf format with one conversion of a number ("%g", "%+.1f", "%d mm"); a format with any
/// other conversion, or with several, counts as "%g".
QString tickLabel(const QString& format, double value);

/// Seconds since the epoch by a format of QDateTime, in UTC: times that count from the start of a test are
/// thus the same in every time zone.
QString dateTickLabel(const QString& format, double seconds);

/// Where a label stands along its axis, in pixels, the end not included.
struct TLabelSpan
{
    int from = 0;
    int to = 0;
    bool shown = true;
};

/// Labels in rising order that do not touch: the two at the ends are moved inwards if they reach beyond
/// `from` or `to`, and dropped if they then come closer than `gap` to their neighbour. So no label is cut or
/// covers another.
void fitLabels(std::vector<TLabelSpan>& labels, int from, int to, int gap);

/// Every which tick can have its label, if the widest takes `widest` pixels and ticks are `pixelsPerTick`
/// apart.
int labelStride(int widest, double pixelsPerTick);
