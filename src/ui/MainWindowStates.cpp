// The window's view as a kept state holds it: what is selected, the filter, where the main strip
// stands and which view is in front, taken at every write of the state and shown again after a
// restore.

#include "ui/MainWindow.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"
#include "timeline/MyTimelinesController.h"
#include "ui/FullScreenView.h"
#include "ui/MapView.h"
#include "ui/MapWindow.h"
#include "ui/MyTimelineView.h"
#include "ui/QuickSelectionActions.h"
#include "ui/StateSession.h"
#include "ui/TimelinePane.h"
#include "ui/ViewingActions.h"

#include <QAction>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace orv {

namespace {

// The navigation's tags: the list, or the rating grid in its place.
constexpr int listTag = 1;
constexpr int gridTag = 2;

// Items by their place in the source, in order; those of no place are left out.
QList<qint64> placesOf(const QSet<MySinglePic *> &pics)
{
    QList<qint64> places;
    for (const MySinglePic *pic : pics)
        if (pic->indexInSource_full >= 0)
            places.append(pic->indexInSource_full);
    std::ranges::sort(places);
    return places;
}

double completeWidth(const MyTimelineView &view)
{
    return view.horizontalScrollBar()->maximum() + view.viewport()->width();
}

QList<AdditionalData::SubStrip> subStrips(TimelinePane &timeline)
{
    QList<AdditionalData::SubStrip> strips;
    for (const MyTimelineView *view : timeline.views().mid(1)) {
        const TimelineStrip &strip = view->strip();
        AdditionalData::SubStrip kept;
        kept.subTLIsShelf = strip.isShelf();
        // One shelf at most stands, so the shelved items are its own.
        if (strip.isShelf())
            kept.subTLShelfSourceIndexSet = placesOf(timeline.controller().source_allShelfs());
        kept.tlv_subCompleteWidth = completeWidth(*view);
        kept.tlvScrollPosition = view->horizontalScrollBar()->value();
        if (strip.picSelection())
            kept.picSelectionCurrentIndex = strip.picSelection()->indexInSource_full;
        kept.selectedThumbsIndexSet = placesOf(strip.multiSelection());
        strips.append(kept);
    }
    return strips;
}

// The kept strips under a main strip that stands alone: a shelf takes its items back, and each
// strip its selection.
void restoreSubStrips(TimelinePane &timeline, const QList<RestoredStrip> &strips)
{
    if (timeline.views().size() != 1)
        return;
    for (const RestoredStrip &kept : strips) {
        MyTimelineView *view =
            timeline.addTimelineForMode(kept.kept.subTLIsShelf ? TimelineStrip::Shelf : TimelineStrip::MainOrMirror);
        if (!view)
            return;
        if (kept.kept.subTLIsShelf)
            timeline.controller().moveToShelf(QSet<MySinglePic *>(kept.shelf.cbegin(), kept.shelf.cend()), nullptr, true);
        QSet<MySinglePic *> selected(kept.selected.cbegin(), kept.selected.cend());
        MySinglePic *current = kept.current ? kept.current : kept.selected.value(0);
        if (current)
            selected.insert(current);
        view->strip().setMultiSelection(selected, current);
        view->viewport()->update();
    }
}

void scrollTo(MyTimelineView &view, double position)
{
    QScrollBar &bar = *view.horizontalScrollBar();
    bar.setValue(int(std::clamp(position, 0.0, double(bar.maximum()))));
}

} // namespace

void MainWindow::connectStates()
{
    m_states->setWindowView({[this] { return viewState(); },
                             [this](const RestoredView &view, bool fromTray) { showRestoredView(view, fromTray); },
                             [this](const ViewAtQuit &atQuit, bool restored) { showViewAtLaunch(atQuit, restored); }});
}

AdditionalData::ViewState MainWindow::viewState() const
{
    AdditionalData::ViewState view;
    view.stateAtQuitType = stateAtQuitType(
        {m_viewing->gridAction()->isChecked() ? gridTag : listTag, m_viewing->fullScreen().isVisible(), false});
    const MyTimelineView &strip = m_timeline->mainView();
    view.tlvViewWidth = strip.viewport()->width();
    view.tlvCompleteWidth = completeWidth(strip);
    view.tlvScrollPosition = strip.horizontalScrollBar()->value();
    // Folders by their place among those a state keeps.
    QList<MySingleFolder *> kept;
    for (MySingleFolder *folder : m_import->droppedFolders())
        if (folder->sfPics >= 0)
            kept.append(folder);
    QList<qint64> places;
    for (MySingleFolder *folder : selectedFolders())
        if (const qsizetype place = kept.indexOf(folder); place >= 0)
            places.append(place);
    if (!places.isEmpty())
        view.selectedFolderIndex = places.first();
    if (places.size() > 1)
        view.selectedCompoundFoldersIndexSet = places;
    TimelineStrip &main = m_timeline->controller().theTimelineView_1();
    if (main.picSelection())
        view.picSelectionCurrentIndex = main.picSelection()->indexInSource_full;
    view.selectedThumbsIndexSet = placesOf(main.multiSelection());
    view.ratingFilterSelectedOption = m_timeline->filterOption();
    view.filterSelectionsAndLockState = m_quickSelections->chosenCategories();
    view.filterExpandedState2 = m_quickSelections->closedCategories();
    const auto *map = findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly);
    if (map && map->isVisible() && map->view().selectionCircle())
        view.selectionRadius = map->view().selectionCircle()->selectionRadius;
    if (map && map->isVisible())
        view.locationWindowVisibilityState_8 = 1;
    // Where a hidden map last looked too; a map without pins or tracks has looked at nothing.
    if (map && (!map->pinnedPics().isEmpty() || !m_controller->tracks().keys().isEmpty()))
        view.locationCamera = AdditionalData::MapCamera{map->view().centre().latitude, map->view().centre().longitude,
                                                        map->view().zoom()};
    view.subTLs = subStrips(*m_timeline);
    return view;
}

void MainWindow::showRestoredView(const RestoredView &view, bool fromTray)
{
    m_timeline->chooseFilterOption(int(view.kept.ratingFilterSelectedOption));
    if (!view.selectedFolders.isEmpty())
        selectFolders(view.selectedFolders);
    // Before the items are selected, so that the selection is among those the rows let through.
    m_quickSelections->restoreCategories(view.kept.filterSelectionsAndLockState, view.kept.filterExpandedState2);
    if (MySinglePic *current = view.current ? view.current : view.selected.value(0)) {
        QList<MySinglePic *> pics = view.selected;
        if (!pics.contains(current))
            pics.append(current);
        m_timeline->selectPics(pics, current);
        showPicInList(current);
    }
    restoreSubStrips(*m_timeline, view.strips);
    // The map opens again where it looked, its circle back around the main item, as the map
    // draws one from its menu (a map showing a circle was open).
    if (view.kept.locationWindowVisibilityState_8 == 1 || view.kept.selectionRadius > 0.0) {
        findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
        auto *map = findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly);
        if (view.kept.selectionRadius > 0.0)
            map->showCircleAroundMainItem(view.kept.selectionRadius);
        if (const std::optional<AdditionalData::MapCamera> &camera = view.kept.locationCamera)
            map->view().setView({camera->latitude, camera->longitude}, int(camera->zoom));
    }
    // A state kept in the tray while another view was in front leaves the strip where it is.
    if (fromTray && view.kept.stateAtQuitType != listTag)
        return;
    // Once the strip has laid out the restored items.
    QTimer::singleShot(0, this, [this, kept = view.kept] {
        const QList<MyTimelineView *> &views = m_timeline->views();
        scrollTo(*views.first(), kept.tlvScrollPosition);
        for (qsizetype i = 1; i < views.size() && i <= kept.subTLs.size(); ++i)
            scrollTo(*views[i], kept.subTLs[i - 1].tlvScrollPosition);
    });
}

void MainWindow::showViewAtLaunch(const ViewAtQuit &atQuit, bool stateRestored)
{
    // The grid inside the full-screen view has no counterpart here: the grid opens in the window.
    if (atQuit.navigationTag == gridTag)
        m_viewing->gridAction()->setChecked(true);
    if (atQuit.fullScreen && stateRestored)
        m_viewing->openFullScreen(m_timeline->controller().theTimelineView_1().picSelection());
}

} // namespace orv
