#pragma once

#include <QList>
#include <Qt>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The key a press on the strip counts with: Command only while neither Shift nor Option is held,
// else Shift when held.
enum class ClickKey { Plain, Shift, Command };
// Ctrl stands for Command and Alt for Option, as at a drop.
ClickKey clickKeyFor(Qt::KeyboardModifiers modifiers);

// The selection of one strip: the main item, the multi-selection (empty, or two items or more
// with the main one among them) and an item of another folder that is only targeted. Presses and
// rectangles over the strip change it by the rules below; the items it holds stay the model's.
// Main thread only.
class TimelineSelection
{
public:
    MySinglePic *main() const { return m_main; }
    const QList<MySinglePic *> &multi() const { return m_multi; }
    MySinglePic *target() const { return m_target; }
    // What a change acts on: the multi-selection, else the main item alone.
    QList<MySinglePic *> selected() const;
    bool isSelected(const MySinglePic *pic) const;
    void select(MySinglePic *pic);

    // A press on an item. An item of a folder that is not raised only becomes the target. In
    // single mode Shift adds the raised items from the main item to it, and Command toggles it.
    // True when Command took the main item itself away: a following drag moves nothing.
    bool press(const QList<MySinglePic *> &source, MySinglePic *pic, ClickKey key,
               const QList<MySingleFolder *> &raised, bool singleMode);

    // A rectangle started on no item: without Shift or Command the selection is cleared first;
    // what is selected then is kept while the rectangle grows.
    void beginRectangle(ClickKey key);
    // The raised items the rectangle touches are added, or with Command toggled against the start.
    // The main item stays when it is still selected, else the selected item nearest the pointer.
    void updateRectangle(const QList<MySinglePic *> &source, const QList<MySinglePic *> &touched, bool toggle,
                         qsizetype pointerIndex);

private:
    void setSelection(QList<MySinglePic *> items, MySinglePic *main);

    MySinglePic *m_main = nullptr;
    QList<MySinglePic *> m_multi;
    MySinglePic *m_target = nullptr;
    QList<MySinglePic *> m_rectangleStart;
    MySinglePic *m_rectangleMain = nullptr;
};

} // namespace orv
