#include "display/SpinnerPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double outerSize = 60.0;
constexpr double innerSize = 30.0;
constexpr int degree = 16; // unit of QPainter's angles
constexpr int sectorStep = 36 * degree;
constexpr int sectorSpan = 30 * degree;

QRectF centred(const PageScale& scale, double size)
{
    const double side = size * scale.ratio;
    return {(scale.width - side) / 2.0, (scale.height - side) / 2.0, side, side};
}

} // namespace

void paintSpinner(QPainter& painter, const PageScale& scale, int index)
{
    const QRectF square = centred(scale, outerSize);
    QPainterPath ring;
    ring.addRect(square);
    ring.addEllipse(centred(scale, innerSize));
    painter.save();
    painter.setClipPath(ring);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int sector = 0; sector < spinnerSectors; ++sector) {
        const int grey = sector == index ? 128 : 192;
        painter.setBrush(QColor(grey, grey, grey, 128));
        painter.drawPie(square, sector * sectorStep, sectorSpan);
    }
    painter.restore();
}
