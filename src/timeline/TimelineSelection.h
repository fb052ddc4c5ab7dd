#pragma once

#include <QList>
#include <QSet>
#include <Qt>

namespace orv {

class MySinglePic;
class TimelineStrip;

// The key a press on the strip counts with: Command only while neither Shift nor Option is held,
// else Shift when held.
enum class ClickKey { Plain, Shift, Command };
// The keys' roles as everywhere (HeldKeys): Ctrl is Command, Alt is Option.
ClickKey clickKeyFor(Qt::KeyboardModifiers modifiers);

// The rules by which presses and rectangles change the selection a strip holds (its main item
// and multi-selection), and the item of another folder a press only targets. Main thread only.
class TimelineSelection
{
public:
    explicit TimelineSelection(TimelineStrip &strip) : m_strip(strip) {}

    MySinglePic *target() const { return m_target; }
    // What a change acts on: the multi-selection in strip order, else the main item alone.
    QList<MySinglePic *> selected() const;

    // A press on an item. An item that is not raised only becomes the target. In single mode
    // Shift adds the raised items from the main item to it, and Command toggles it. True when
    // Command took the main item itself away: a following drag moves nothing.
    bool press(MySinglePic *pic, ClickKey key, bool singleMode);

    // The item's folder changes its items one by one rather than as a whole folder.
    static bool isSingleMode(const MySinglePic *pic);

    // A press with Shift or Command on an item continues as a sweep over the items the pointer
    // passes. Shift: the raised items from the pressed one to the pointer join the selection
    // the press left, and the one under the pointer becomes main; moving back shrinks it again.
    // Command: each swept item is toggled against that selection; stepping back onto the item
    // before the last untoggles the last, and back on the pressed item undoes the whole sweep.
    void beginSweep(MySinglePic *pressed);
    void sweepOver(MySinglePic *pic, ClickKey key);

    // A rectangle started on no item: without Shift or Command the selection is cleared first;
    // what is selected then is kept while the rectangle grows.
    void beginRectangle(ClickKey key);
    // The raised items the rectangle touches are added, or with Command toggled against the start.
    // The main item stays when it is still selected, else the selected item nearest the pointer.
    void updateRectangle(const QList<MySinglePic *> &touched, bool toggle, qsizetype pointerIndex);

    // Makes an item of another folder the target only, as a press does.
    void setTarget(MySinglePic *pic) { m_target = pic; }

    // An arrow: the item beside the main one (or the target) becomes main. In single mode Shift
    // or Command extend the multi-selection over raised items and, stepping back onto it, reduce
    // it; with dropOldMain (Command and Control) the old main item leaves it. Answers the item
    // the arrow went to.
    MySinglePic *arrow(int direction, ClickKey key, bool dropOldMain, bool singleMode);
    // Option and an arrow: through the multi-selection when it has two or more items, else to the
    // edge of the run of raised items (or the start of the next run). addPassed (Shift in single
    // mode) adds the items passed.
    MySinglePic *jump(int direction, bool addPassed);
    // Option with Up or Down: the next or previous item with a change not yet saved.
    MySinglePic *nextChanged(int direction);

private:
    // Where arrows start: the target, else the main item.
    MySinglePic *cursor() const;
    // The index beside the cursor, or the first or last item without one.
    qsizetype besideCursor(int direction) const;
    // A key reached the item: selected alone when raised, else only targeted.
    void stepTo(MySinglePic *pic);
    void setSelection(const QSet<MySinglePic *> &items, MySinglePic *main);

    TimelineStrip &m_strip;
    MySinglePic *m_target = nullptr;
    // The selection a rectangle or a sweep started from, and the items swept in order.
    QSet<MySinglePic *> m_start;
    MySinglePic *m_startMain = nullptr;
    QList<MySinglePic *> m_swept;
};

} // namespace orv
