// The window's view as a kept state holds it: what is selected, the filter, where the main strip
// stands and which view is in front, taken at every write of the state and shown again after a
// restore.

#include "ui/MainWindow.h"

#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
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
    const QScrollBar &bar = *strip.horizontalScrollBar();
    view.tlvViewWidth = strip.viewport()->width();
    view.tlvCompleteWidth = bar.maximum() + strip.viewport()->width();
    view.tlvScrollPosition = bar.value();
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
    for (const MySinglePic *pic : main.multiSelection())
        if (pic->indexInSource_full >= 0)
            view.selectedThumbsIndexSet.append(pic->indexInSource_full);
    std::ranges::sort(view.selectedThumbsIndexSet);
    view.ratingFilterSelectedOption = m_timeline->filterOption();
    view.filterSelectionsAndLockState = m_quickSelections->chosenCategories();
    view.filterExpandedState2 = m_quickSelections->closedCategories();
    const auto *map = findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly);
    if (map && map->isVisible() && map->view().selectionCircle())
        view.selectionRadius = map->view().selectionCircle()->selectionRadius;
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
    // The circle comes back around the main item, as the map draws one from its menu; the map
    // was open to show it.
    if (view.kept.selectionRadius > 0.0) {
        findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
        findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly)
            ->showCircleAroundMainItem(view.kept.selectionRadius);
    }
    // A state kept in the tray while another view was in front leaves the strip where it is.
    if (fromTray && view.kept.stateAtQuitType != listTag)
        return;
    // Once the strip has laid out the restored items.
    QTimer::singleShot(0, this, [this, position = view.kept.tlvScrollPosition] {
        QScrollBar &bar = *m_timeline->mainView().horizontalScrollBar();
        bar.setValue(int(std::clamp(position, 0.0, double(bar.maximum()))));
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
