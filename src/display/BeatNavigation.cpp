#include "display/BeatNavigation.h"

#include <Qt>

namespace {

/// Seconds beside the selected beat.
constexpr double room = 0.3;

using TFound = std::optional<TBeatMark>;

TFound firstSelectable(const TBeatSource& source)
{
    const TFound first = source.firstBeat();
    const TFound marked = first && !first->marked ? source.selectableAfter(first->id) : first;
    return marked ? marked : first;
}

TFound lastSelectable(const TBeatSource& source)
{
    const TFound last = source.lastBeat();
    const TFound marked = last && !last->marked ? source.selectableBefore(last->id) : last;
    return marked ? marked : last;
}

TFound pageDown(const TBeatSource& source, int selectedId, double pageSeconds)
{
    const TFound selected = source.beat(selectedId);
    const TFound found = selected ? source.firstBeatAfter(selected->time + pageSeconds) : selected;
    return found && !found->marked ? source.selectableAfter(found->id) : found;
}

TFound pageUp(const TBeatSource& source, int selectedId, double pageSeconds)
{
    const TFound selected = source.beat(selectedId);
    const TFound found = selected ? source.lastBeatBefore(selected->time - pageSeconds) : selected;
    return found && !found->marked ? source.selectableBefore(found->id) : found;
}

TFound moved(const TBeatSource& source, int selectedId, BeatMove move, double pageSeconds)
{
    switch (move) {
    case BeatMove::next:
        return source.selectableAfter(selectedId);
    case BeatMove::previous:
        return source.selectableBefore(selectedId);
    case BeatMove::nextPage:
        return pageDown(source, selectedId, pageSeconds);
    case BeatMove::previousPage:
        return pageUp(source, selectedId, pageSeconds);
    case BeatMove::first:
    case BeatMove::last:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<BeatMove> beatMove(int key)
{
    switch (key) {
    case Qt::Key_Right:
        return BeatMove::next;
    case Qt::Key_Left:
        return BeatMove::previous;
    case Qt::Key_PageDown:
        return BeatMove::nextPage;
    case Qt::Key_PageUp:
        return BeatMove::previousPage;
    case Qt::Key_Home:
        return BeatMove::first;
    case Qt::Key_End:
        return BeatMove::last;
    default:
        return std::nullopt;
    }
}

bool isForward(BeatMove move)
{
    return move == BeatMove::next || move == BeatMove::nextPage || move == BeatMove::last;
}

std::optional<TBeatMark> moveSelection(const TBeatSource& source, int selectedId, BeatMove move,
                                       double pageSeconds)
{
    if (const TFound found = moved(source, selectedId, move, pageSeconds))
        return found;
    return isForward(move) ? lastSelectable(source) : firstSelectable(source);
}

double startTimeShowing(const TBeatMark& beat, BeatMove move, double startTime, double pageSeconds)
{
    if (isForward(move))
        return beat.time + room > startTime + pageSeconds ? beat.time + room - pageSeconds : startTime;
    return startTime > beat.time - room ? beat.time - room : startTime;
}
