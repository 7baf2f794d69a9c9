#include "windows/MonitorReadings.h"

#include "analysis/signals/Truncation.h"

QString elapsedText(double seconds)
{
    const int whole = velantor::truncated<int>(seconds);
    return QString::asprintf("%2d:%2.2d", whole / 60, whole % 60);
}

QString heartRateText(double rr)
{
    const int rate = rr > 0.0 ? velantor::truncated<int>(60.0 / rr) : 0;
    return rate > 0 ? QString::number(rate) : QString();
}
