#include "analysis/filters/TFirBlockFilter.h"

#include "analysis/filters/WindowSamples.h"
#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/Truncation.h"

#include <algorithm>

TFirBlockFilter::TFirBlockFilter(const std::vector<double>& coefficients, int delay) : m_delay(delay)
{
    const int n = static_cast<int>(coefficients.size());
    for (int i = 0; i < n; ++i)
        m_taps.push_back({coefficients[i], n - 1 - i});
}

void TFirBlockFilter::process(TSignalWindow& window, short* out)
{
    const int count = window.blockSize();
    const int n = static_cast<int>(m_taps.size());
    m_input.resize(count + n + fir::padding);
    m_output.resize(count);
    velantor::readWindow(window, m_delay - n + 1, count + n, m_input.data());
    fir::sum(m_taps, m_input.data(), count, m_output.data());
    std::transform(m_output.begin(), m_output.end(), out, velantor::truncated<short>);
}
