#pragma once

class QSignalMonitorDisplay;
class TSignal;

/// I to aVF, the leads that have a hexaxial order.
inline constexpr int limbLeads = 6;
/// With no more channels there is but one display: a seventh one alone does not take a display of its own.
inline constexpr int channelsOfOneDisplay = 7;

/// Shares the leads of a signal out to the two displays of a monitor window: the limb leads I to aVF on the
/// first, V1 to V6 on the second, which is hidden if there are no more than 7 channels; a single seventh one
/// then stands on the first. Further channels are hidden. Null counts as a signal without channels.
void layOutLeads(QSignalMonitorDisplay& first, QSignalMonitorDisplay& second, const TSignal* signal);

/// The limb leads by the direction from which they see the heart: aVL, I, -aVR, II, aVF, III; or in the order
/// of the channels again. Nothing happens if the signal has fewer than 6 channels.
void setHexaxialOrder(QSignalMonitorDisplay& display, const TSignal* signal, bool on);
