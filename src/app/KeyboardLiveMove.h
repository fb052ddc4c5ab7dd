#pragma once

#include "app/TimelineDrop.h"

namespace orv {

enum class MoveDirection { Left, Right };

// The selection moved through the strip by arrows while Control and Option are held: each arrow
// drops it past the next items that do not move, or into the next gap with room for it. The
// whole move, however many arrows, is one undo step: every step continues one gesture of the date
// change owner, and a move that ends where it began leaves no step at all.
//
// Main thread only. The caller hands in the strip's source as it stands after the previous step.
class KeyboardLiveMove
{
public:
    KeyboardLiveMove(DateChanges &changes, double outerEdgeGap) : m_changes(changes), m_outerEdgeGap(outerEdgeGap) {}

    // Refused for an item of a folder without dates, and in folder mode unless some other
    // folder's item stands on the strip to move past.
    bool arm(const QList<MySinglePic *> &source, const TimelineDrag &drag);
    bool isArmed() const { return m_drag.main != nullptr; }
    // The outer-edge gap changed during a drag.
    void setOuterEdgeGap(double seconds) { m_outerEdgeGap = seconds; }
    // The place the last step took, for the strip's arrows and scrolling.
    const DropPlace &lastPlace() const { return m_lastPlace; }

    // One arrow: past `step` items that do not move, or with intoGaps (Command) into the next gap.
    DateChangeResult liveMoveWithType(const QList<MySinglePic *> &source, MoveDirection direction, bool intoGaps,
                                      int step = 1);
    // The keys were let go: the move ends, its one undo step stays.
    void disableArrowsLiveMove();

    // Past the next `step` items that do not move: one second before the item after them when
    // it stands two seconds or more beyond the last one passed; else one second after the first
    // item of the next two such items two seconds apart; else one second after the last of them.
    DropPlace nextValidThumbFrom(const QList<MySinglePic *> &source, int step) const;
    DropPlace prevValidThumbFrom(const QList<MySinglePic *> &source, int step) const;
    // The next gap between two items that do not move whose seconds leave room for every moving
    // item; the selection's own gap first when the last step was no gap. Single mode only.
    DropPlace nextValidGapFrom(const QList<MySinglePic *> &source, int step) const;
    DropPlace prevValidGapFrom(const QList<MySinglePic *> &source, int step) const;

private:
    DropPlace validThumb(const QList<MySinglePic *> &source, int step, MoveDirection direction) const;
    DropPlace validGap(const QList<MySinglePic *> &source, int step, MoveDirection direction) const;

    DateChanges &m_changes;
    double m_outerEdgeGap;
    TimelineDrag m_drag;
    DropPlace m_lastPlace;
    QString m_mergeKey;
};

} // namespace orv
