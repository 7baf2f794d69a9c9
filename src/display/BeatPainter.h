#pragma once

#include "display/BeatCursors.h"

class QPainter;
class TAverageBeat;

/// What the beat display shows.
struct TBeatPicture
{
    /// Borrowed; not null.
    TAverageBeat* beat = nullptr;
    int channel = 0;
    const TBeatCursors& cursors;
    /// -1 for none.
    int activeCursor = -1;
};

/// The scale of a beat shown on `width` by `height` pixels; unusable without a beat.
TBeatScale beatScale(const TAverageBeat* beat, int width, int height);

/// Paints the whole picture: grid, curve, cursors and measurements. Only for a usable scale.
void paintBeat(QPainter& painter, const TBeatScale& scale, const TBeatPicture& picture);
