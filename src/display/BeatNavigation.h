#pragma once

#include "display/TBeatSource.h"

/// Where keys take the selection.
enum class BeatMove
{
    next,
    previous,
    nextPage,
    previousPage,
    first,
    last
};

/// The move of a key (Qt::Key), nothing for other keys.
std::optional<BeatMove> beatMove(int key);

bool isForward(BeatMove move);

/// The beat that is to be selected instead of `selectedId`; nothing only if there are no beats. At the ends
/// the last or the first beat stays selected.
std::optional<TBeatMark> moveSelection(const TBeatSource& source, int selectedId, BeatMove move,
                                       double pageSeconds);

/// The start of the page on which the beat is seen with some room beside it: `startTime` itself if it is not
/// beyond the end towards which the move went.
double startTimeShowing(const TBeatMark& beat, BeatMove move, double startTime, double pageSeconds);
