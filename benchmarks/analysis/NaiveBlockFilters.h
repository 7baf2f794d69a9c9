#pragma once

#include "analysis/filters/IirTables.h"
#include "analysis/signals/TSignalWindow.h"

#include <algorithm>

namespace filters {

/// The recursive block filter by its definition, each sample read through the window.
class TNaiveIir : public TBlockProcessor
{
public:
    explicit TNaiveIir(const velantor::TIirTable& table) : m_table(table) {}

    void process(TSignalWindow& window, short* out) override
    {
        const int n = window.blockSize();
        const int order = static_cast<int>(m_table.coefficients.a.size());
        const int margin = m_table.margin;
        const int pad = order + margin;
        std::vector<double> forward(n + 2 * pad);
        std::vector<double> backward(n + 2 * pad);
        for (int i = -margin; i < n + margin; ++i) {
            double& y = forward[i + pad];
            for (int k = 0; k <= order; ++k)
                y += m_table.coefficients.b[k] * window.sample(i - k);
            for (int k = 1; k <= order; ++k)
                y += m_table.coefficients.a[k - 1] * forward[i + pad - k];
        }
        for (int i = n + margin - 1; i >= 0; --i) {
            double& y = backward[i + pad];
            for (int k = 0; k <= order; ++k)
                y += m_table.coefficients.b[k] * forward[i + pad + k];
            for (int k = 1; k <= order; ++k)
                y += m_table.coefficients.a[k - 1] * backward[i + pad + k];
        }
        for (int i = 0; i < n; ++i)
            out[i] = static_cast<short>(std::clamp(backward[i + pad], -32768.0, 32767.0));
    }

private:
    const velantor::TIirTable& m_table;
};

/// The FIR block filter by its definition.
class TNaiveFir : public TBlockProcessor
{
public:
    explicit TNaiveFir(const std::vector<double>& h) : m_h(h) {}

    void process(TSignalWindow& window, short* out) override
    {
        const int n = static_cast<int>(m_h.size());
        for (int p = 0; p < window.blockSize(); ++p) {
            double sum = 0.0;
            for (int i = 0; i < n; ++i)
                sum += m_h[i] * window.sample(n / 2 - i + p);
            out[p] = static_cast<short>(std::clamp(sum, -32768.0, 32767.0));
        }
    }

private:
    const std::vector<double>& m_h;
};

} // namespace filters
