#pragma once

#include "app/KeyboardLiveMove.h"
#include "app/TimelineDrop.h"

#include <QObject>
#include <QPointF>
#include <QTimer>

class QKeyEvent;
class QLabel;
class QPainter;
class QUndoStack;

namespace orv {

class DateChanges;
class MyTimelineView;
class PaintOverlay;

// The mouse moving dates on a strip. A press on a raised item without Shift or Ctrl, once the
// pointer has gone 5 points, starts a date move: the place under the pointer is found by the
// neighbour tests, the strip scrolls near its edges, and the release drops through the date
// change owner. In a view of several folders ("All Folders" or a compound one) the dragged
// item's own folder moves. While the drag runs, a label at the pointer tells the new date, the
// change and the rule of the place (or why there is none), and after 0.05 seconds of calm the
// strip shows the moving items at their new places (its temporary source; the model is not
// touched until the drop), the target held still under the pointer. The view itself selects on
// the press; a double click on the selected item or Return opens the date popover.
//
// The keyboard live move: with Ctrl and Alt held (Control and Option), Left and Right move the
// selection past the next items, with Meta as well into the next gap; letting go of Ctrl or Alt
// ends the move, one undo step for all of it. Main thread only.
class TimelineDragHandler : public QObject
{
    Q_OBJECT
public:
    // A drop changes dates through the owner; a drag onto a shelf strip (or from it) moves the
    // selection between strips through their controller, one step on the stack.
    // dragGapOuterEdges: the index of the outer-edge gap (dragGapOuterEdgesSeconds).
    TimelineDragHandler(MyTimelineView &view, DateChanges &changes, QUndoStack &stack, qint64 dragGapOuterEdges);

    bool isDragging() const { return m_dragging; }
    const DropPlace &place() const { return m_place; }
    // The label at the pointer: the place's outcome or why the drop is refused.
    const QLabel &pointerLabel() const { return *m_pointerLabel; }

Q_SIGNALS:
    // The moving items carry their temporary dates; the order is the surroundings of the place.
    void thumbDragUpdated(const orv::DropPreview &preview);
    void thumbDragWillEnd();
    // The place went beyond the first or last item, where the outer-edge gap sets the date (the
    // text tells it), or came back (an empty text).
    void outerEdgeStateChanged(const QString &text);
    // Up or Down during a drag stepped the outer-edge gap to this index.
    void dragGapOuterEdgesChanged(qint64 dragGapOuterEdges);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // A raised item of a folder with dates, while no save owns the folders.
    bool canMoveDatesOf(const MySinglePic *pic) const;
    // The selection of the strip as a drag of its main item (the pressed one without a selection).
    TimelineDrag dragOfSelection(MySinglePic *pressed) const;
    // The date popover on the selected item: a double click on it, or Return.
    void openPopover(MySinglePic *pic);
    double outerEdgeGap() const { return dragGapOuterEdgesSeconds(m_outerEdgeIndex); }
    QString outerEdgeText() const;
    // Up or Down while dragging: the next larger or smaller of the outer-edge gaps.
    void modifyDragGapOuterEdges(int step);
    void beginDrag();
    // The strip beside this one under the pointer, where a drag takes the selection instead of
    // moving dates (selectionMoveType 1): onto or off the shelf it moves the items, onto a mirror
    // the selection is copied.
    MyTimelineView *otherStripAt(QPointF viewportPoint) const;
    void updatePlace();
    // The place under the pointer, on the order the strip shows (a preview's order too); refusal
    // tells why there is none. Over the moving items themselves the present place stands.
    DropPlace placeAtPointer(DropRefusal &refusal) const;
    // The strip shows the moving items at the place's dates, the target kept where it stood.
    void showPreview();
    void showPointerLabel(DropRefusal refusal);
    void showLabelAtPointer(const QString &text);
    // Why a press on this item starts no date move; empty where nothing needs saying.
    QString whyDatesCannotMove(const MySinglePic &pic) const;
    void endDrag(bool drop);
    bool liveMoveKey(const QKeyEvent &event);
    // The arrow at the place: over the gap or the half of the target, through both rows when
    // the two items stand at different heights.
    void paintMarker(QPainter &painter) const;

    MyTimelineView &m_view;
    DateChanges &m_changes;
    QUndoStack &m_stack;
    qint64 m_outerEdgeIndex;
    MyTimelineView *m_stripTarget = nullptr;
    QPointF m_pressPoint, m_pointer;
    Qt::KeyboardModifiers m_modifiers;
    MySinglePic *m_pressed = nullptr;
    QString m_pressRefusal;
    bool m_dragging = false;
    QList<MySinglePic *> m_source;
    TimelineDrag m_drag;
    DropPlace m_place;
    QTimer m_previewTimer;
    PaintOverlay *m_marker;
    QLabel *m_pointerLabel;
    bool m_anchoring = false;
    KeyboardLiveMove m_liveMove;
};

} // namespace orv
