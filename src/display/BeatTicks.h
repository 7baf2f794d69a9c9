#pragma once

#include "display/TBeatSource.h"

#include <QRect>

#include <vector>

class QPainter;
struct BrowsePage;
struct BrowseView;

/// The band behind the selected beat, 0.2 s to either side and within the trace; null if there is none to
/// show. Device pixels.
QRect selectedBeatBand(const BrowsePage& page, const BrowseView& view);

void paintSelectedBeat(QPainter& painter, const BrowsePage& page, const BrowseView& view);

/// The beats that get a tick on the page, in their order.
std::vector<TBeatMark> beatsOnPage(const BrowsePage& page, const BrowseView& view);

/// A tick at the top for each beat and, from 25 mm/s on, the RR interval in ms between neighbours; none where
/// the interval of the later beat is not known, 0 or -1.
void paintBeatTicks(QPainter& painter, const BrowsePage& page, const BrowseView& view);

/// Minutes and seconds along the bottom, as far as the recording goes; none where they would lie closer than
/// pixels. For a view with a signal.
void paintTimeRuler(QPainter& painter, const BrowsePage& page, const BrowseView& view);
