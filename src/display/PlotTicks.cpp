#include "display/PlotTicks.h"

#include "analysis/signals/Truncation.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>

namespace {

/// Of a step: a tick at the end of a range is not lost to the last bits of a quotient.
constexpr double tolerance = 1e-9;
constexpr std::array<double, 9> clockSteps{1, 5, 10, 30, 60, 300, 600, 1800, 3600};

// The format comes from a variable, but was looked at before.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
QString formatted(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    QString text = QString::vasprintf(format, arguments);
    va_end(arguments);
    return text;
}
#pragma GCC diagnostic pop

/// Literal text around a single conversion; its letter is captured.
const QRegularExpression& numberFormat()
{
    static const QRegularExpression expression(
        QStringLiteral("^(?:[^%]|%%)*%[-+ #0]*[0-9]{0,2}(?:\\.[0-9]{0,2})?([eEfFgGdi])(?:[^%]|%%)*$"));
    return expression;
}

bool moveInside(TLabelSpan& label, int from, int to)
{
    const int width = label.to - label.from;
    const int inside = std::max(from, std::min(label.from, to - width));
    const bool moved = inside != label.from;
    label.from = inside;
    label.to = inside + width;
    label.shown = width <= to - from;
    return moved;
}

} // namespace

double tickStep(double pixels, double pixelsPerUnit)
{
    const double least = pixels / pixelsPerUnit;
    if (!std::isfinite(least))
        return 0.0;
    double exponent = least == 0.0 ? 0.0 : std::floor(std::log10(std::abs(least)));
    // The logarithm may fall on the wrong side of a power of ten.
    if (std::abs(least) >= std::pow(10.0, exponent + 1.0))
        exponent += 1.0;
    else if (least != 0.0 && std::abs(least) < std::pow(10.0, exponent))
        exponent -= 1.0;
    const double power = std::pow(10.0, exponent);
    const double mantissa = least / power;
    if (mantissa <= 2.0)
        return power * 2.0;
    return power * (mantissa <= 5.0 ? 5.0 : 10.0);
}

double dateTickStep(double pixels, double pixelsPerSecond)
{
    const double least = pixels / pixelsPerSecond;
    const auto step =
        std::find_if(clockSteps.begin(), clockSteps.end(), [least](double each) { return each >= least; });
    return step == clockSteps.end() ? clockSteps.back() : *step;
}

double TTicks::value(int tick) const
{
    // A zero may have come from below; its label has no sign.
    return index(tick) * step + 0.0;
}

TTicks ticksWithin(double min, double max, double step, int most)
{
    const double first = std::ceil(min / step - tolerance);
    const double last = std::floor(max / step + tolerance);
    if (!(step > 0.0) || !std::isfinite(first) || !std::isfinite(last) || most < 1 || last < first)
        return {};
    const double stride = std::max(1.0, std::ceil((last - first + 1.0) / most));
    // Multiples of the stride, so that the same ones stay while the axis is moved.
    const double firstKept = std::ceil(first / stride);
    const double count = std::min<double>(std::floor(last / stride) - firstKept + 1.0, most);
    return {step, firstKept * stride, velantor::truncated<int>(std::max(count, 0.0)), stride};
}

QString tickLabel(const QString& format, double value)
{
    const QRegularExpressionMatch match = numberFormat().match(format);
    if (!match.hasMatch())
        return formatted("%g", value);
    const QByteArray text = format.toUtf8();
    const QString letter = match.captured(1);
    if (letter == QLatin1String("d") || letter == QLatin1String("i"))
        return formatted(text.constData(), velantor::truncated<int>(value));
    return formatted(text.constData(), value);
}

QString dateTickLabel(const QString& format, double seconds)
{
    // Within what a date can hold; the ticks stand on whole seconds.
    const auto whole = static_cast<qint64>(std::clamp(std::floor(seconds), -1e12, 1e12));
    return QDateTime::fromSecsSinceEpoch(whole, Qt::UTC).toString(format);
}

void fitLabels(std::vector<TLabelSpan>& labels, int from, int to, int gap)
{
    if (labels.empty())
        return;
    TLabelSpan& first = labels.front();
    TLabelSpan& last = labels.back();
    const bool firstMoved = moveInside(first, from, to);
    if (labels.size() == 1)
        return;
    const bool lastMoved = moveInside(last, from, to);
    if (firstMoved && first.to + gap > labels[1].from)
        first.shown = false;
    const TLabelSpan& beforeLast = labels[labels.size() - 2];
    if (lastMoved && beforeLast.shown && beforeLast.to + gap > last.from)
        last.shown = false;
}

int labelStride(int widest, double pixelsPerTick)
{
    if (!(pixelsPerTick > 0.0))
        return 1;
    return std::max(1, velantor::truncated<int>(std::ceil(widest / pixelsPerTick)));
}
