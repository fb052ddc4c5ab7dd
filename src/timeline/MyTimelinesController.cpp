#include "timeline/MyTimelinesController.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>
#include <QUndoStack>

namespace orv {

namespace {
constexpr int refilterDelayMs = 1000;
}

MyTimelinesController::MyTimelinesController(QObject *parent) : QObject(parent)
{
    m_strips[0] = std::make_unique<TimelineStrip>();
    m_refilterTimer.setSingleShot(true);
    m_refilterTimer.setInterval(refilterDelayMs);
    connect(&m_refilterTimer, &QTimer::timeout, this, &MyTimelinesController::refreshFilterAfterDelay);
}

MyTimelinesController::~MyTimelinesController() = default;

QList<TimelineStrip *> MyTimelinesController::visibleTimelines() const
{
    QList<TimelineStrip *> strips;
    for (const auto &strip : m_strips)
        if (strip)
            strips.append(strip.get());
    return strips;
}

TimelineStrip *MyTimelinesController::addTimelineForMode(TimelineStrip::SplitMode mode)
{
    for (auto &slot : m_strips) {
        if (slot)
            continue;
        slot = std::make_unique<TimelineStrip>(mode);
        refreshStrips();
        return slot.get();
    }
    return nullptr;
}

void MyTimelinesController::removeLastTimeline()
{
    for (size_t slot = m_strips.size() - 1; slot > 0; --slot) {
        if (!m_strips[slot])
            continue;
        if (m_strips[slot]->isShelf()) {
            // The shelf's items go back to the main strip.
            m_shelfPics.clear();
            m_source.setShelfPics({});
            m_source.buildNewSourceUsingOptimizedRefilterOnly(true);
        }
        m_strips[slot].reset();
        m_preFilterSelections[slot] = {};
        refreshStrips();
        return;
    }
}

void MyTimelinesController::setSelectionsMode(SelectionsMode mode, TimelineStrip *origin)
{
    const SelectionsMode before = m_selectionsMode;
    m_selectionsMode = mode;
    TimelineStrip &from = origin ? *origin : theTimelineView_1();
    if (mode == SharedSelection || (before == SharedSelection && mode != SharedSelection)) {
        // Into shared: the origin's set goes to all. Out of it: each strip keeps a copy.
        for (TimelineStrip *strip : visibleTimelines())
            if (strip != &from)
                strip->setMultiSelection(from.multiSelection(), from.picSelection());
    }
    if (mode == ExclusiveSelection)
        enforceSelectionExclusivityFor(from);
    Q_EMIT selectionsChanged();
}

void MyTimelinesController::selectionChangedIn(TimelineStrip &origin)
{
    if (m_selectionsMode == SharedSelection) {
        for (TimelineStrip *strip : visibleTimelines())
            if (strip != &origin)
                strip->setMultiSelection(origin.multiSelection(), origin.picSelection());
    } else if (m_selectionsMode == ExclusiveSelection) {
        enforceSelectionExclusivityFor(origin);
    }
}

void MyTimelinesController::enforceSelectionExclusivityFor(TimelineStrip &keeper)
{
    for (TimelineStrip *strip : visibleTimelines())
        if (strip != &keeper)
            strip->setPicSelection(nullptr);
}

QSet<MySinglePic *> MyTimelinesController::source_allShelfs() const
{
    return m_shelfPics;
}

QList<MySinglePic *> MyTimelinesController::source_fullWithoutShelfs() const
{
    QList<MySinglePic *> pics;
    for (MySinglePic *pic : m_source.source_full())
        if (!m_shelfPics.contains(pic))
            pics.append(pic);
    return pics;
}

void MyTimelinesController::addSelectionFrom(TimelineStrip &origin, bool toShelf)
{
    moveToShelf(origin.multiSelection(), origin.picSelection(), toShelf);
}

namespace {

// A move between the main strip and the shelf; undo moves the same items back.
class ShelfMoveCommand : public QUndoCommand
{
public:
    ShelfMoveCommand(MyTimelinesController &controller, const QSet<MySinglePic *> &pics, MySinglePic *main,
                     bool toShelf)
        : QUndoCommand(toShelf ? QCoreApplication::translate("Timeline", "Move to Shelf")
                               : QCoreApplication::translate("Timeline", "Move from Shelf")),
          m_controller(controller), m_pics(pics), m_main(main), m_toShelf(toShelf)
    {
    }
    void redo() override { m_controller.moveToShelf(m_pics, m_main, m_toShelf); }
    void undo() override { m_controller.moveToShelf(m_pics, m_main, !m_toShelf); }

private:
    MyTimelinesController &m_controller;
    QSet<MySinglePic *> m_pics;
    MySinglePic *m_main;
    bool m_toShelf;
};

} // namespace

void MyTimelinesController::getSelectionFromOrigin(const TimelineStrip &origin, TimelineStrip &target)
{
    if (m_selectionsMode == SharedSelection)
        return;
    target.setMultiSelection(origin.multiSelection(), origin.picSelection());
    selectionChangedIn(target);
    Q_EMIT selectionsChanged();
}

void MyTimelinesController::moveSelectionFromOrigin(TimelineStrip &origin, bool toShelf, QUndoStack &stack)
{
    if (!isShelfed() || origin.multiSelection().isEmpty())
        return;
    stack.push(new ShelfMoveCommand(*this, origin.multiSelection(), origin.picSelection(), toShelf));
}

void MyTimelinesController::moveToShelf(const QSet<MySinglePic *> &pics, MySinglePic *main, bool toShelf)
{
    TimelineStrip *shelf = nullptr;
    for (TimelineStrip *strip : visibleTimelines())
        if (strip->isShelf())
            shelf = strip;
    // An undo step may outlive the import of some of its items.
    const QList<MySinglePic *> &full = m_source.source_full();
    const QSet<MySinglePic *> imported(full.cbegin(), full.cend());
    const QSet<MySinglePic *> moved = QSet<MySinglePic *>(pics).intersect(imported);
    if (!shelf || moved.isEmpty())
        return;
    if (toShelf)
        m_shelfPics.unite(moved);
    else
        m_shelfPics.subtract(moved);
    m_source.setShelfPics(m_shelfPics);
    m_source.buildNewSourceUsingOptimizedRefilterOnly(true);
    refreshStrips();
    TimelineStrip &target = toShelf ? *shelf : theTimelineView_1();
    for (TimelineStrip *strip : visibleTimelines()) {
        if (strip == &target)
            continue;
        MySinglePic *kept = moved.contains(strip->picSelection()) ? nullptr : strip->picSelection();
        strip->setMultiSelection(strip->multiSelection() - moved, kept);
    }
    target.setMultiSelection(moved, moved.contains(main) ? main : nullptr);
    Q_EMIT selectionsChanged();
}

void MyTimelinesController::refreshStrips()
{
    QList<MySinglePic *> shelf;
    if (!m_shelfPics.isEmpty()) {
        for (MySinglePic *pic : m_source.source_full())
            if (m_shelfPics.contains(pic))
                shelf.append(pic);
    }
    for (TimelineStrip *strip : visibleTimelines())
        strip->setSource(strip->isShelf() ? shelf : m_source.source_filtered());
    Q_EMIT sourceRebuilt();
}

void MyTimelinesController::buildNewSource(const QList<MySingleFolder *> &folders)
{
    m_source.setFolders(folders);
    buildNewSourceWithNewSelectionOption(NormalRebuild, false);
}

MySinglePic *MyTimelinesController::nextVisibleAfter(const MySinglePic *pic, const TimelineStrip &strip) const
{
    const QList<MySinglePic *> &full = m_source.source_full();
    const qsizetype from = pic->indexInSource_full;
    if (from < 0 || from >= full.size() || full.at(from) != pic)
        return strip.theSource().value(0);
    for (qsizetype i = from; i < full.size(); ++i)
        if (strip.indexOf(full.at(i)) >= 0)
            return full.at(i);
    for (qsizetype i = from - 1; i >= 0; --i)
        if (strip.indexOf(full.at(i)) >= 0)
            return full.at(i);
    return nullptr;
}

void MyTimelinesController::keepSelection(int slot, const KeptSelection &before, SelectionOption option)
{
    TimelineStrip &strip = *m_strips[size_t(slot)];
    KeptSelection &memory = m_preFilterSelections[size_t(slot)];
    const auto onStrip = [&strip](MySinglePic *pic) { return pic && strip.indexOf(pic) >= 0; };
    const auto keepVisible = [&](const KeptSelection &selection, MySinglePic *main) {
        QSet<MySinglePic *> kept;
        for (MySinglePic *pic : selection.multiSelection)
            if (onStrip(pic))
                kept.insert(pic);
        strip.setMultiSelection(kept, onStrip(main) ? main : nullptr);
    };
    if (option == NormalRebuild) {
        // After a real rebuild the memory of a filter's selection is void.
        memory = {};
        keepVisible(before, before.selection);
        return;
    }
    // A filter that gives back what it took brings the old selection back too.
    if (memory.selection && onStrip(memory.selection)) {
        keepVisible(memory, memory.selection);
        memory = {};
        return;
    }
    if (!before.selection || onStrip(before.selection)) {
        keepVisible(before, before.selection);
        return;
    }
    if (!memory.selection)
        memory = before;
    strip.setPicSelection(nextVisibleAfter(before.selection, strip));
}

void MyTimelinesController::buildNewSourceWithNewSelectionOption(SelectionOption option, bool optimized)
{
    std::array<KeptSelection, 3> before;
    for (size_t slot = 0; slot < m_strips.size(); ++slot)
        if (m_strips[slot])
            before[slot] = {m_strips[slot]->picSelection(), m_strips[slot]->multiSelection()};
    m_source.setShelfPics(m_shelfPics);
    m_source.buildNewSourceUsingOptimizedRefilterOnly(optimized);
    if (!optimized) {
        // Items that left the working set leave the shelf too.
        const QList<MySinglePic *> &full = m_source.source_full();
        m_shelfPics.removeIf([&full](MySinglePic *pic) { return full.value(pic->indexInSource_full) != pic; });
    }
    refreshStrips();
    for (size_t slot = 0; slot < m_strips.size(); ++slot)
        if (m_strips[slot])
            keepSelection(int(slot), before[slot], option);
    Q_EMIT selectionsChanged();
}

void MyTimelinesController::didChangePredicate(std::optional<FilterPredicate> predicate)
{
    m_refilterTimer.stop();
    m_source.setPredicate(std::move(predicate));
    buildNewSourceWithNewSelectionOption(FilterChanged, true);
}

void MyTimelinesController::filterRelevantChangeWasMade(const QString &filterKey)
{
    // A sidebar's category of ratings filters as a predicate does.
    if (!m_source.predicate() && !m_hasSidebarSelection)
        return;
    if (filterKey != u"filter_rating" && filterKey != u"filter_miscState_1")
        return;
    if (m_defersRefilter) {
        m_refilterTimer.start(); // restarts: a second with no further rating
        return;
    }
    refreshFilterAfterDelay();
}

void MyTimelinesController::refreshFilterAfterDelay()
{
    m_refilterTimer.stop();
    buildNewSourceWithNewSelectionOption(m_hasSidebarSelection ? RatingChangedWithSidebarSelection : FilterChanged,
                                         true);
}

void MyTimelinesController::endFilterTimerNow()
{
    if (m_refilterTimer.isActive())
        refreshFilterAfterDelay();
}

} // namespace orv
