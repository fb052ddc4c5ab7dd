#pragma once

#include "selection/PicSource.h"
#include "timeline/TimelineStrip.h"

#include <QObject>
#include <QTimer>

class QUndoStack;

#include <array>
#include <memory>

namespace orv {

// The strips of the window and what they share: the one source (full and filtered) they show,
// up to three strips (the main one, then a mirror of it or a shelf), and how their selections
// relate. It rebuilds the source after imports, date changes and filter changes, keeping each
// strip's selection where it can.
//
// Lives on the main thread with the items; the widgets paint the strips it owns and call back
// for every change.
class MyTimelinesController : public QObject
{
    Q_OBJECT
public:
    // How the selections of several strips relate.
    enum SelectionsMode : int { OwnSelections = 1, ExclusiveSelection = 2, SharedSelection = 3 };
    // What a rebuild must do with the selections: 0 a normal rebuild; 1 a filter changed, so
    // remember what falls out of it; 2 a rating or state changed while the sidebar selects.
    enum SelectionOption : int { NormalRebuild = 0, FilterChanged = 1, RatingChangedWithSidebarSelection = 2 };

    explicit MyTimelinesController(QObject *parent = nullptr);
    ~MyTimelinesController() override;

    PicSource &source() { return m_source; }
    const QList<MySinglePic *> &source_full() const { return m_source.source_full(); }
    const QList<MySinglePic *> &source_filtered() const { return m_source.source_filtered(); }

    // --- Strips ---
    TimelineStrip &theTimelineView_1() { return *m_strips[0]; }
    TimelineStrip *theTimelineView_2() { return m_strips[1].get(); }
    TimelineStrip *strip(int slot) { return slot >= 0 && slot < 3 ? m_strips[size_t(slot)].get() : nullptr; }
    QList<TimelineStrip *> visibleTimelines() const;
    // mode 0 adds a mirror, 1 a shelf; nothing when three strips stand. Answers the new strip.
    TimelineStrip *addTimelineForMode(TimelineStrip::SplitMode mode);
    TimelineStrip *addTimelineMirror() { return addTimelineForMode(TimelineStrip::MainOrMirror); }
    TimelineStrip *addTimelineShelf() { return addTimelineForMode(TimelineStrip::Shelf); }
    void removeLastTimeline();
    bool isSplit() const { return m_strips[1] != nullptr; }
    bool isMirrored() const { return isSplit() && !m_strips[1]->isShelf(); }
    bool isShelfed() const { return isSplit() && m_strips[1]->isShelf(); }

    // --- Selections ---
    SelectionsMode selectionsMode() const { return m_selectionsMode; }
    void setSelectionsMode(SelectionsMode mode, TimelineStrip *origin = nullptr);
    // The selection of a strip changed by the user: the other strips follow the mode.
    void selectionChangedIn(TimelineStrip &origin);
    void enforceSelectionExclusivityFor(TimelineStrip &keeper);
    // Moves the selection of a strip to the shelf (or from the shelf back to the main strip).
    void addSelectionFrom(TimelineStrip &origin, bool toShelf);
    // A drag from one strip to another: the target strip takes the origin's selection (nothing
    // to do while the strips share one).
    void getSelectionFromOrigin(const TimelineStrip &origin, TimelineStrip &target);
    // The same move as one step on the undo stack given (a drag between strips).
    void moveSelectionFromOrigin(TimelineStrip &origin, bool toShelf, QUndoStack &stack);
    // These items go to the shelf or back to the main strip, and stand selected there; items no
    // longer imported are left out.
    void moveToShelf(const QSet<MySinglePic *> &pics, MySinglePic *main, bool toShelf);
    QSet<MySinglePic *> source_allShelfs() const;
    QList<MySinglePic *> source_fullWithoutShelfs() const;

    // --- Building ---
    // A normal rebuild of the folders given (after an import, a date change, a new sidebar
    // selection).
    void buildNewSource(const QList<MySingleFolder *> &folders);
    void buildNewSourceWithNewSelectionOption(SelectionOption option, bool optimized);
    // A new filter (none: no filter): never sorts.
    void didChangePredicate(std::optional<FilterPredicate> predicate);
    // A rating or state changed: refilters when the filter reads it, after a second of calm
    // while deferring is on (the grid or full-screen view in front), else at once.
    void filterRelevantChangeWasMade(const QString &filterKey);
    void setDefersRefilter(bool defers) { m_defersRefilter = defers; }
    bool isRefilterPending() const { return m_refilterTimer.isActive(); }
    void endFilterTimerNow();
    // The sidebar has rows selected (option 2 instead of 1 for a rating change).
    void setHasSidebarSelection(bool has) { m_hasSidebarSelection = has; }

Q_SIGNALS:
    // The strips' sources were replaced; views relayout and redraw.
    void sourceRebuilt();
    // A strip's selection changed through the controller (rebuild, mode, shelf move).
    void selectionsChanged();

private:
    struct KeptSelection
    {
        MySinglePic *selection = nullptr;
        QSet<MySinglePic *> multiSelection;
    };
    void refreshStrips();
    void keepSelection(int slot, const KeptSelection &before, SelectionOption option);
    // The first item at or after pic in the full source that is on the strip, else the last
    // one before it.
    MySinglePic *nextVisibleAfter(const MySinglePic *pic, const TimelineStrip &strip) const;
    void refreshFilterAfterDelay();

    PicSource m_source;
    std::array<std::unique_ptr<TimelineStrip>, 3> m_strips;
    std::array<KeptSelection, 3> m_preFilterSelections;
    QSet<MySinglePic *> m_shelfPics;
    SelectionsMode m_selectionsMode = OwnSelections;
    QTimer m_refilterTimer;
    bool m_defersRefilter = false;
    bool m_hasSidebarSelection = false;
};

} // namespace orv
