#pragma once

#include "display/BrowsePage.h"
#include "display/Caliper.h"
#include "display/GridPainter.h"
#include "display/TLeadRows.h"
#include "display/TraceRow.h"

#include <QColor>
#include <QMap>

#include <array>
#include <optional>

class TAverageBeat;
class TBeatSource;
class TSaturationSource;
class TSignal;

/// What the mouse does in a browse display.
enum MouseMode
{
    NoMouseMode,
    SelectBeatsMode,
    CaliperMode
};

/// What the browse display shows and how. Everything pointed to is borrowed and may be null.
struct BrowseView
{
    TSignal* signal = nullptr;
    TBeatSource* beatSource = nullptr;
    TAverageBeat* averageBeat = nullptr;
    TSaturationSource* saturationSource = nullptr;
    bool showAverageBeat = false;
    /// Seconds at the left of the trace.
    double startTime = 0.0;
    /// mm/s
    double speed = 25.0;
    /// mm/mV
    double amplitude = 10.0;
    TLeadRows rows;
    /// By tag, see ColorTags.h.
    QMap<int, QColor> colors;
    Caliper caliper;
    /// What is taken from each channel, in counts.
    std::array<int, velantor::maxChannels> channelOffset{};
    GridStyle gridStyle = GridStyle::dotted;
    /// -1 for none.
    int selectedBeatId = -1;
    int mouseMode = NoMouseMode;

    bool hasInset() const { return showAverageBeat && averageBeat; }
    /// 0 without a signal.
    double duration() const;
    int visibleCount() const;
    BrowsePage page(const PageScale& scale) const;
    /// First and one past the last sample of the page that the recording has.
    int firstSample() const;
    int endSample(const BrowsePage& page) const;
    /// Where a row of the traces lies; `row` counts visible rows.
    TraceRow traceRow(const PageScale& scale, int row, int channel, bool inverted) const;
    /// Where a channel lies; nothing if it is not shown.
    std::optional<TraceRow> traceRow(const PageScale& scale, int channel) const;
    /// The channel of the row at `y`, device pixels; 0 outside the rows.
    int channelAt(const PageScale& scale, double y) const;
};

/// The colours that a display has until a scheme replaces them.
QMap<int, QColor> browseColors();

/// The mean of each visible channel over what the recording has of the page, which centres every lead in what
/// is seen; 0 for hidden ones.
std::array<int, velantor::maxChannels> pageBaselines(const BrowseView& view, const BrowsePage& page);
