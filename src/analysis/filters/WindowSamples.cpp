#include "analysis/filters/WindowSamples.h"

#include "analysis/signals/TSignalWindow.h"

#include <algorithm>

void velantor::readWindow(const TSignalWindow& window, int from, int count, double* out)
{
    std::fill_n(out, count, 0.0);
    int blockStart = -window.blockSize();
    for (const short* const block : {window.previous(), window.current(), window.next()}) {
        const int first = std::max(from, blockStart);
        const int end = std::min(from + count, blockStart + window.blockSize());
        if (block && first < end)
            std::copy(block + (first - blockStart), block + (end - blockStart), out + (first - from));
        blockStart += window.blockSize();
    }
}
