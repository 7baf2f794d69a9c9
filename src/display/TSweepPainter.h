#pragma once

#include "base/Constants.h"
#include "display/PageLayout.h"
#include "display/TColumnTrace.h"
#include "display/TSampleTrace.h"

#include <array>

class QPainter;
struct MonitorView;

/// Paints the sweep of the live display: traces that are overwritten from the left by a cursor. Remembers the
/// baseline of each lead from picture to picture and keeps its memory.
class TSweepPainter
{
public:
    /// For a view with a signal and a layout with a trace. `scale` is that of the painter's picture.
    void paint(QPainter& painter, const PageScale& scale, const PageLayout& layout, const MonitorView& view);

    /// The next picture works the baselines out anew; until then there are none.
    void forgetBaseline();
    /// Page of the last picture drawn by columns, -1 for none.
    int lastPage() const { return m_lastPage; }
    /// Counts taken from a channel; 0 out of range.
    int channelOffset(int channel) const;

private:
    struct TPage;

    void updateBaseline(const TPage& page);
    void paintByColumns(QPainter& painter, const TPage& page);
    void markSaturation(const TPage& page, int channel);
    void paintPerSample(QPainter& painter, const TPage& page);

    int m_lastPage = -1;
    std::array<int, velantor::maxChannels> m_channelOffset{};
    TColumnTrace m_columns;
    TSampleTrace m_samples;
};
