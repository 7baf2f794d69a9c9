#include "analysis/filters/TParabolaDetrend.h"

#include "analysis/signals/TSignal.h"
#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>

TParabolaDetrend::TParabolaDetrend(TPoint first, TPoint second, TPoint third)
{
    const double dx2 = second.x - first.x;
    const double dx3 = third.x - first.x;
    const double dy2 = second.y - first.y;
    const double dy3 = third.y - first.y;
    const double dxx2 = second.x * second.x - first.x * first.x;
    const double dxx3 = third.x * third.x - first.x * first.x;
    const double determinant = dxx2 * dx3 - dxx3 * dx2;
    if (determinant != 0.0) {
        m_a = (dy2 * dx3 - dy3 * dx2) / determinant;
        m_b = (dxx2 * dy3 - dxx3 * dy2) / determinant;
    }
    m_c = first.y - (m_a * first.x + m_b) * first.x;
}

void TParabolaDetrend::process(TSignalWindow& window, short* out)
{
    const int blockSize = window.blockSize();
    const qint64 start = static_cast<qint64>(window.block()) * blockSize;
    const qint64 left = std::max<qint64>(window.source()->sampleCount() - start, 0);
    const int count = static_cast<int>(std::min<qint64>(left, blockSize));
    for (int i = 0; i < count; ++i)
        out[i] = velantor::truncated<short>(window.sample(i) - valueAt(static_cast<double>(start + i)));
    std::fill(out + count, out + blockSize, short(0));
}
