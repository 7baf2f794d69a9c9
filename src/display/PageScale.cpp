#include "display/PageScale.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/Truncation.h"

#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace {

constexpr double mmPerInch = 25.4;
constexpr double leastDensity = 50.0;
constexpr double greatestDensity = 400.0;
constexpr double usualDensity = 96.0;

double saneMm(int pixels, double reportedMm)
{
    const double density = pixels * mmPerInch / reportedMm;
    return density >= leastDensity && density <= greatestDensity ? reportedMm
                                                                 : pixels * mmPerInch / usualDensity;
}

} // namespace

PageScale PageScale::of(QSize devicePixels, double reportedMm, double ratio)
{
    PageScale scale;
    scale.width = std::max(devicePixels.width(), 0);
    scale.height = std::max(devicePixels.height(), 0);
    scale.ratio = ratio > 0.0 && std::isfinite(ratio) ? ratio : 1.0;
    const double plainMm = saneMm(scale.width, reportedMm);
    scale.widthMm = plainMm / scale.ratio;
    scale.pixelsPerCm = scale.width > 0 ? scale.width / (plainMm / 10.0) * scale.ratio : 0.0;
    return scale;
}

PageScale PageScale::of(const QPixmap& pixmap, double ratio)
{
    return of(pixmap.size(), pixmap.widthMM(), ratio);
}

double PageScale::pixelsPerCount(const TSignal& signal, double amplitude) const
{
    return signal.countValue() * pixelsPerCm * amplitude / 10.0;
}

int PageScale::px(double length) const
{
    return velantor::truncated<int>(length * ratio);
}

int PageScale::penWidth(double penWidth) const
{
    return std::max(1, velantor::truncated<int>(penWidth * ratio + 0.5));
}

bool isUsablePage(double pageSeconds)
{
    return std::isfinite(pageSeconds) && pageSeconds > 0.0;
}
