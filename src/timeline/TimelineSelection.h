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
// Ctrl stands for Command and Alt for Option, as at a drop.
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

    // A rectangle started on no item: without Shift or Command the selection is cleared first;
    // what is selected then is kept while the rectangle grows.
    void beginRectangle(ClickKey key);
    // The raised items the rectangle touches are added, or with Command toggled against the start.
    // The main item stays when it is still selected, else the selected item nearest the pointer.
    void updateRectangle(const QList<MySinglePic *> &touched, bool toggle, qsizetype pointerIndex);

private:
    void setSelection(const QSet<MySinglePic *> &items, MySinglePic *main);

    TimelineStrip &m_strip;
    MySinglePic *m_target = nullptr;
    QSet<MySinglePic *> m_rectangleStart;
    MySinglePic *m_rectangleMain = nullptr;
};

} // namespace orv
