#include "app/KeyboardLiveMove.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

// NaN for an item without a date, so that no distance to it counts.
double secondOf(const MySinglePic *pic)
{
    return timelineSecond(pic).value_or(std::nan(""));
}

} // namespace

bool KeyboardLiveMove::arm(const QList<MySinglePic *> &source, const TimelineDrag &drag)
{
    if (!drag.main || !MySingleFolder::of(*drag.main) || MySingleFolder::of(*drag.main)->isEXIFIgnored())
        return false;
    if (std::all_of(source.cbegin(), source.cend(), [&drag](const MySinglePic *pic) { return drag.isMoving(pic); }))
        return false;
    m_drag = drag;
    m_lastPlace = {};
    // One key per move and per strip: its steps merge into one undo step, and with nothing else.
    static quint64 moves = 0;
    m_mergeKey = QStringLiteral("keyboardLiveMove/%1").arg(++moves);
    return true;
}

void KeyboardLiveMove::disableArrowsLiveMove()
{
    m_drag = {};
    m_lastPlace = {};
    m_mergeKey.clear();
}

DateChangeResult KeyboardLiveMove::liveMoveWithType(const QList<MySinglePic *> &source, MoveDirection direction,
                                                    bool intoGaps, int step)
{
    if (!isArmed() || source.size() < 2
        || std::all_of(source.cbegin(), source.cend(), [this](const MySinglePic *pic) { return m_drag.isMoving(pic); }))
        return DateChangeResult::Unchanged;
    const DropPlace place = intoGaps ? validGap(source, std::max(step - 1, 0), direction)
                                     : validThumb(source, step, direction);
    if (!place.isValid())
        return DateChangeResult::Unchanged;
    const DateChangeResult result = TimelineDrop(source, m_drag, m_outerEdgeGap).perform(m_changes, place, m_mergeKey);
    if (result != DateChangeResult::Refused)
        m_lastPlace = place;
    return result;
}

DropPlace KeyboardLiveMove::nextValidThumbFrom(const QList<MySinglePic *> &source, int step) const
{
    return validThumb(source, step, MoveDirection::Right);
}

DropPlace KeyboardLiveMove::prevValidThumbFrom(const QList<MySinglePic *> &source, int step) const
{
    return validThumb(source, step, MoveDirection::Left);
}

DropPlace KeyboardLiveMove::nextValidGapFrom(const QList<MySinglePic *> &source, int step) const
{
    return validGap(source, step, MoveDirection::Right);
}

DropPlace KeyboardLiveMove::prevValidGapFrom(const QList<MySinglePic *> &source, int step) const
{
    return validGap(source, step, MoveDirection::Left);
}

DropPlace KeyboardLiveMove::validThumb(const QList<MySinglePic *> &source, int step, MoveDirection direction) const
{
    const qsizetype mainIndex = source.indexOf(m_drag.main);
    if (!isArmed() || mainIndex < 0)
        return {};
    const int sign = direction == MoveDirection::Right ? 1 : -1;
    QList<qsizetype> ahead; // the items that do not move, nearest first
    for (qsizetype i = mainIndex + sign; i >= 0 && i < source.size(); i += sign)
        if (!m_drag.isMoving(source[i]))
            ahead.append(i);
    if (ahead.isEmpty())
        return {};
    const DropType shortOf = sign > 0 ? DropType::LeftHalf : DropType::RightHalf;
    const DropType past = sign > 0 ? DropType::RightHalf : DropType::LeftHalf;
    // Passing an item needs a whole second beyond it that is not the next item's: the first pair
    // from the step-th item on that stands two seconds apart takes the selection between them,
    // one second short of the farther item when that is the step-th, else one second past the
    // nearer. So every step passes at least step items and never ends on a tie that sorts back.
    const qsizetype passed = std::max(step, 1) - 1; // index in ahead of the last item the step passes
    for (qsizetype j = passed; j + 1 < ahead.size(); ++j) {
        if (sign * (secondOf(source[ahead[j + 1]]) - secondOf(source[ahead[j]])) < 2.0)
            continue;
        if (j == passed)
            return {.index = ahead[j + 1], .type = shortOf};
        return {.index = ahead[j], .type = past};
    }
    // At the end of the strip the selection stops one second beyond the last item.
    return {.index = ahead.last(), .type = past};
}

DropPlace KeyboardLiveMove::validGap(const QList<MySinglePic *> &source, int step, MoveDirection direction) const
{
    const qsizetype mainIndex = source.indexOf(m_drag.main);
    if (!isArmed() || mainIndex < 0 || m_drag.isFolderMode())
        return {};
    QList<qsizetype> still; // the items that do not move, in strip order
    qsizetype gap = 0;      // the selection's gap: between still[gap - 1] and still[gap]
    for (qsizetype i = 0; i < source.size(); ++i) {
        if (m_drag.isMoving(source[i]))
            continue;
        still.append(i);
        if (i < mainIndex)
            ++gap;
    }
    const bool inAGap = m_lastPlace.type == DropType::LeftGap || m_lastPlace.type == DropType::RightGap
                        || m_lastPlace.type == DropType::Spread;
    const int sign = direction == MoveDirection::Right ? 1 : -1;
    // Every moving item needs a second of its own inside the gap.
    const double room = double(m_drag.moving.size());
    for (gap += sign * (step == 0 && !inAGap ? 0 : std::max(step, 1)); gap >= 0 && gap <= still.size();
         gap += sign) {
        if (gap < 1 || gap == still.size())
            continue; // beyond an end there is no pair
        const MySinglePic *left = source[still[gap - 1]];
        const MySinglePic *right = source[still[gap]];
        if (!(secondOf(right) - secondOf(left) > room))
            continue;
        DropPlace place{.gapLeft = left, .gapRight = right};
        if (m_drag.moving.size() > 1) {
            place.type = DropType::Spread;
            place.index = still[gap - 1];
        } else if (sign > 0) {
            place.type = DropType::LeftGap;
            place.index = still[gap];
        } else {
            place.type = DropType::RightGap;
            place.index = still[gap - 1];
        }
        return place;
    }
    return {};
}

} // namespace orv
