#include "display/BeatPainter.h"

#include "analysis/beats/TAverageBeat.h"
#include "analysis/signals/TSignal.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygonF>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

constexpr int linesPerCm = 10;
constexpr int heavyLine = 5;
constexpr double arrowLength = 5.0;
constexpr double arrowHeight = 10.0;
/// Between things that belong together, in pixels.
constexpr int gap = 4;
constexpr double markRadius = 3.0;

/// The painter, its scale and what follows from both.
struct TCanvas
{
    QPainter& painter;
    const TBeatScale& scale;
    double pixelsPerCount;

    double yOf(double counts) const
    {
        // The painting engine counts in fixed point; what lies this far out is not seen.
        constexpr double farOut = 16000.0;
        return std::clamp(scale.height / 2.0 - counts * pixelsPerCount, -farOut, farOut);
    }
    bool isInside(int x) const { return x >= 0 && x <= scale.width; }
};

// Grid

/// Offset of the first line: so many half centimetres before the middle that the edge is covered.
double firstLine(double length, double cm)
{
    return length / 2.0 - std::ceil(length / cm) * cm / 2.0;
}

template <typename Line> QVector<QLineF> gridLines(double length, double cm, bool heavy, Line line)
{
    QVector<QLineF> lines;
    const double first = firstLine(length, cm);
    const double step = cm / linesPerCm;
    for (int i = 0; first + i * step <= length; ++i) {
        if ((i % heavyLine == 0) == heavy)
            lines.append(line(first + i * step));
    }
    return lines;
}

void paintGrid(const TCanvas& canvas)
{
    const double width = canvas.scale.width;
    const double height = canvas.scale.height;
    const double cm = canvas.scale.pixelsPerCm();
    canvas.painter.fillRect(QRectF(0, 0, width, height), Qt::white);
    // Closer lines would only make a grey field.
    if (cm < linesPerCm)
        return;
    canvas.painter.setRenderHint(QPainter::Antialiasing);
    const auto vertical = [&](double x) { return QLineF(x, 0, x, height); };
    const auto horizontal = [&](double y) { return QLineF(0, y, width, y); };
    for (const bool heavy : {false, true}) {
        canvas.painter.setPen(QPen(heavy ? Qt::gray : Qt::lightGray, heavy ? 1.25 : 0.75));
        canvas.painter.drawLines(gridLines(width, cm, heavy, vertical));
        canvas.painter.drawLines(gridLines(height, cm, heavy, horizontal));
    }
}

// Curve

void paintCurve(const TCanvas& canvas, const TBeatPicture& picture)
{
    canvas.painter.setRenderHint(QPainter::Antialiasing);
    canvas.painter.setPen(Qt::black);
    if (const TChannel* const channel = picture.beat->signal()->channel(picture.channel)) {
        const int y = canvas.painter.fontMetrics().height() + 10;
        canvas.painter.drawText(10, y, QString::fromUtf8(channel->name()));
    }
    const TDoubleVector& complex = picture.beat->complex(picture.channel);
    const double step = static_cast<double>(canvas.scale.width) / complex.size();
    QPolygonF points;
    points.reserve(complex.size());
    for (int i = 0; i < complex.size(); ++i)
        points.append(QPointF(i * step, canvas.yOf(complex[i])));
    canvas.painter.drawPolyline(points);
}

// Texts

/// Draws the text, one or more lines, centred above `bottom`, on paper that keeps it readable over the curve.
/// It stays within the width of the widget.
void paintText(const TCanvas& canvas, double middle, double bottom, const QString& text)
{
    const QFontMetrics metrics = canvas.painter.fontMetrics();
    QRectF paper(metrics.boundingRect(QRect(), Qt::AlignCenter, text));
    paper.adjust(-2, 0, 2, 0);
    paper.moveCenter(QPointF(middle, 0));
    paper.moveBottom(bottom);
    paper.moveRight(std::min(paper.right(), canvas.scale.width - 1.0));
    paper.moveLeft(std::max(paper.left(), 0.0));
    canvas.painter.fillRect(paper, QColor(255, 255, 255, 192));
    canvas.painter.drawText(paper, Qt::AlignCenter, text);
}

// Cursors

void paintMark(const TCanvas& canvas, const QString& mark, int x)
{
    const QFontMetrics metrics = canvas.painter.fontMetrics();
    // The mark of an end stands before its cursor, that of a start or a peak behind it.
    const bool before = mark.endsWith(QLatin1Char(')'));
    const int left = before ? x - gap - metrics.horizontalAdvance(mark) : x + gap;
    canvas.painter.drawText(left, canvas.scale.height / 3 + metrics.height(), mark);
}

void paintCursors(const TCanvas& canvas, const TBeatPicture& picture)
{
    canvas.painter.setRenderHint(QPainter::Antialiasing, false);
    for (int i = 0; i < static_cast<int>(picture.cursors.size()); ++i) {
        const TBeatCursor& cursor = picture.cursors[i];
        const int x = canvas.scale.xOf(cursor.position);
        if (!isDrawn(cursor) || !canvas.isInside(x))
            continue;
        const bool active = i == picture.activeCursor;
        canvas.painter.setPen(active ? QColor(Qt::red) : cursor.color);
        canvas.painter.drawLine(x, canvas.scale.height / 3, x, 2 * canvas.scale.height / 3);
        if (active)
            paintMark(canvas, cursor.mark, x);
    }
}

// Measurements

/// Below the cursors, where no wave is hidden: a row of two-line texts, one of single lines, one of two
/// lines.
double rowHeight(const TCanvas& canvas, int row)
{
    constexpr int linesToRow[] = {2, 3, 5};
    constexpr int gapsToRow[] = {3, 5, 8};
    const int lineHeight = canvas.painter.fontMetrics().height();
    const int twoThirds = 2 * canvas.scale.height / 3;
    return twoThirds + linesToRow[row] * lineHeight + gapsToRow[row] * gap;
}

void paintArrow(const TCanvas& canvas, double tip, double direction, double y)
{
    const double base = tip - direction * arrowLength;
    const QPointF corners[] = {{tip, y}, {base, y - arrowHeight / 2}, {base, y + arrowHeight / 2}};
    canvas.painter.drawPolygon(corners, 3);
}

void paintDimension(const TCanvas& canvas, const TBeatDimension& dimension)
{
    const int from = canvas.scale.xOf(dimension.from);
    const int to = canvas.scale.xOf(dimension.to);
    if (!canvas.isInside(from) || !canvas.isInside(to))
        return;
    const double y = rowHeight(canvas, dimension.row);
    canvas.painter.setPen(Qt::blue);
    canvas.painter.drawLine(QPointF(from, y), QPointF(to, y));
    canvas.painter.setPen(Qt::NoPen);
    paintArrow(canvas, from, -1.0, y);
    paintArrow(canvas, to, 1.0, y);
    canvas.painter.setPen(Qt::black);
    paintText(canvas, (from + to) / 2.0, y - arrowHeight / 2, dimension.text);
}

void paintLevel(const TCanvas& canvas, const TBeatLevel& level, double baseX)
{
    const double x = level.seconds * canvas.scale.width / canvas.scale.beatSeconds;
    const double y = canvas.yOf(level.counts);
    canvas.painter.setPen(QPen(Qt::blue, 1.0, Qt::DotLine));
    canvas.painter.drawLine(QPointF(baseX, y), QPointF(x, y));
    canvas.painter.setPen(Qt::NoPen);
    canvas.painter.drawEllipse(QPointF(x, y), markRadius, markRadius);
    canvas.painter.setPen(Qt::black);
    // A peak beyond the picture still tells its height, at the edge.
    const QFontMetrics metrics = canvas.painter.fontMetrics();
    const double middle = x + markRadius + gap + metrics.horizontalAdvance(level.text) / 2.0;
    const double lowest = canvas.scale.height - 1.0;
    paintText(canvas, middle, std::clamp(y + metrics.height() / 2.0, 1.0 * metrics.height(), lowest),
              level.text);
}

void paintMeasurements(const TCanvas& canvas, const TBeatPicture& picture)
{
    canvas.painter.setRenderHint(QPainter::Antialiasing);
    canvas.painter.setBrush(Qt::blue);
    for (const TBeatDimension& dimension : beatDimensions(picture.cursors))
        paintDimension(canvas, dimension);
    const TSignal& signal = *picture.beat->signal();
    const double baseX = canvas.scale.xOf(picture.cursors[pOnCursor].position);
    for (const TBeatLevel& level : beatLevels(picture.cursors, picture.beat->complex(picture.channel),
                                              signal.samplingRate(), signal.countValue()))
        paintLevel(canvas, level, baseX);
    canvas.painter.setPen(Qt::black);
    const QRect corner(0, 10, canvas.scale.width - 10, canvas.scale.height);
    canvas.painter.drawText(corner, Qt::AlignRight | Qt::AlignTop, rrText(picture.beat->meanRR()));
}

} // namespace

TBeatScale beatScale(const TAverageBeat* beat, int width, int height)
{
    if (!beat || !beat->signal())
        return {width, height, 0.0};
    return {width, height, static_cast<double>(beat->sampleCount()) / beat->signal()->samplingRate()};
}

void paintBeat(QPainter& painter, const TBeatScale& scale, const TBeatPicture& picture)
{
    const TSignal& signal = *picture.beat->signal();
    const TCanvas canvas{painter, scale, signal.countValue() * scale.pixelsPerCm()};
    painter.setFont(QFont(QStringLiteral("Helvetica")));
    paintGrid(canvas);
    paintCurve(canvas, picture);
    paintCursors(canvas, picture);
    paintMeasurements(canvas, picture);
}
