#include "ui/QuickSelectionActions.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"
#include "places/MapPinFilter.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/SidebarCategoriesView.h"
#include "ui/TimelinePane.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace orv {

QuickSelectionActions::QuickSelectionActions(AppController &controller, TimelinePane &timeline,
                                             FoldersOnShow foldersOnShow, Select select, QMainWindow &window)
    : QObject(&window),
      m_controller(controller),
      m_timeline(timeline),
      m_foldersOnShow(std::move(foldersOnShow)),
      m_select(std::move(select)),
      m_menu(new QMenu(tr("&Quick Selection"), &window)),
      m_dock(new QDockWidget(tr("Categories"), &window)),
      m_view(new SidebarCategoriesView(m_dock))
{
    m_menu->setObjectName(QStringLiteral("quickSelectionMenu"));
    m_menu->menuAction()->setObjectName(QStringLiteral("quickSelectionAction"));
    connect(m_menu, &QMenu::aboutToShow, this, &QuickSelectionActions::rebuildMenu);
    m_dock->setObjectName(QStringLiteral("categoriesDock"));
    m_view->setObjectName(QStringLiteral("categoriesView"));
    m_dock->setWidget(m_view);

    MyTimelinesController &strips = m_timeline.controller();
    connect(&strips, &MyTimelinesController::sourceRebuilt, this, [this, &strips] {
        // At once: items that left may be deleted soon, and the categories must not hold them.
        m_sidebar.didChangeSource(strips.source_full());
        refreshCategories();
        // The filter the categories now give is applied after the rebuild that told of them has
        // ended, never inside it.
        QTimer::singleShot(0, this, [this] { applyCategoryFilter(false); });
    });
    connect(&m_controller, &AppController::ratingsChanged, this, [this](const QList<MySinglePic *> &pics) {
        m_sidebar.sourceRelevantChangeWasMade(pics);
        refreshCategories();
        applyCategoryFilter(true);
    });
    connect(m_view, &SidebarCategoriesView::selectedKeysChanged, this, [this](const QStringList &keys) {
        m_sidebar.setSelectedKeys(keys);
        // Once the view's own signal has returned: the rebuild may change its rows.
        QTimer::singleShot(0, this, [this] { applyCategoryFilter(false); });
    });
    m_todayEnds.setSingleShot(true);
    connect(&m_todayEnds, &QTimer::timeout, this, [this] {
        refreshCategories();
        applyCategoryFilter(false);
    });
    refreshCategories();
}

void QuickSelectionActions::addTo(QMainWindow &window)
{
    QMenuBar *bar = window.menuBar();
    const QList<QAction *> menus = bar->actions();
    bar->insertMenu(menus.isEmpty() ? nullptr : menus.last(), m_menu);
    if (auto *toolBar = window.findChild<QToolBar *>(QStringLiteral("mainToolBar"))) {
        m_menu->menuAction()->setIconText(tr("Quick Selection"));
        toolBar->addAction(m_menu->menuAction());
        if (auto *button = qobject_cast<QToolButton *>(toolBar->widgetForAction(m_menu->menuAction())))
            button->setPopupMode(QToolButton::InstantPopup);
    }
    window.addDockWidget(Qt::LeftDockWidgetArea, m_dock);
}

QList<MySinglePic *> QuickSelectionActions::selectableSource() const
{
    const QList<MySingleFolder *> shown = m_foldersOnShow();
    const QSet<const MySingleFolder *> folders(shown.cbegin(), shown.cend());
    QList<MySinglePic *> pics;
    for (MySinglePic *pic : m_timeline.controller().source_filtered())
        if (pic->spSingleFolder && folders.contains(MySingleFolder::of(*pic)))
            pics.append(pic);
    return pics;
}

void QuickSelectionActions::rebuildMenu()
{
    m_menu->clear();
    const ThumbCache &cache = m_timeline.thumbs().cache();
    const QList<QuickSelectionEntry> entries =
        QuickSelections::quickSelectionsUpdateMainMenu(selectableSource(), [&cache](const MySinglePic &pic) {
            const ThumbEntry *entry = cache.entry(pic.sessionUniqueId);
            return entry ? QSizeF(entry->largestThumbSize) : QSizeF();
        });
    if (entries.isEmpty())
        m_menu->addAction(tr("No Items"))->setEnabled(false);
    addEntries(*m_menu, entries);
    const QList<MySinglePic *> selected = m_timeline.mainView().selection().selected();
    addRadiusMenu(selected);
    m_menu->addSeparator();
    const QList<MySinglePic *> custom = QuickSelections::quickSelectionLoadCustomSelection(selectableSource());
    if (!custom.isEmpty())
        addEntries(*m_menu, {{QStringLiteral("quickSelections_custom"), tr("Custom Selection"), custom, {}}});
    QAction *keep = m_menu->addAction(tr("Keep Selection as Custom Selection"), this, [this, selected] {
        QuickSelections::quickSelectionSaveCustomSelection(selected, m_foldersOnShow());
    });
    keep->setObjectName(QStringLiteral("quickSelectionSaveCustomSelection"));
    keep->setEnabled(!selected.isEmpty());
    m_menu->addSeparator();
    m_menu->addAction(m_dock->toggleViewAction());
}

void QuickSelectionActions::addEntries(QMenu &menu, const QList<QuickSelectionEntry> &entries)
{
    for (const QuickSelectionEntry &entry : entries) {
        if (entry.isSubMenu()) {
            QMenu *sub = menu.addMenu(entry.title());
            sub->menuAction()->setObjectName(entry.key);
            addEntries(*sub, entry.children);
            continue;
        }
        const auto possibility = QuickSelections::isQuickSelectionPossible(entry.pics, m_controller.isStandardBlocked());
        QAction *action = menu.addAction(entry.title(), this, [this, entry] { quickSelect(entry); });
        action->setObjectName(entry.key);
        action->setEnabled(possibility == QuickSelections::Possibility::Possible);
        // Where the folder changes as a whole, a second entry makes the same selection after
        // letting it change items one by one.
        if (possibility == QuickSelections::Possibility::WithModeChange) {
            QAction *switching = menu.addAction(tr("%1, Changing Items One by One").arg(entry.title()), this,
                                                [this, entry] { quickSelect(entry); });
            switching->setObjectName(entry.key + QStringLiteral("_withModeChange"));
        }
    }
}

void QuickSelectionActions::addRadiusMenu(const QList<MySinglePic *> &selected)
{
    const auto placed = [](const MySinglePic *pic) { return pic->gpsLat && pic->gpsLong; };
    const QList<MySinglePic *> source = selectableSource();
    QString why;
    if (std::count_if(source.cbegin(), source.cend(), placed) < 2)
        why = tr("Within a Radius: Not Enough Items with a Location");
    else if (std::none_of(selected.cbegin(), selected.cend(), placed))
        why = tr("Within a Radius: Select an Item with a Location First");
    if (!why.isEmpty()) {
        QAction *disabled = m_menu->addAction(why);
        disabled->setObjectName(QStringLiteral("quickSelections_gps_radius"));
        disabled->setEnabled(false);
        return;
    }
    QMenu *radius = m_menu->addMenu(tr("Within a Radius of the Main Item"));
    radius->menuAction()->setObjectName(QStringLiteral("quickSelections_gps_radius"));
    const bool metric = QLocale().measurementSystem() == QLocale::MetricSystem;
    for (int tag = 0; tag < MapFilterSettings::distanceTags; ++tag) {
        const double metres = MapFilterSettings::distanceForTag(tag, metric);
        radius->addAction(MapFilterSettings::distanceText(tag, metric), this,
                          [this, metres] { Q_EMIT radiusSelectionRequested(metres); });
    }
}

void QuickSelectionActions::quickSelect(const QuickSelectionEntry &entry)
{
    const auto possibility = QuickSelections::isQuickSelectionPossible(entry.pics, m_controller.isStandardBlocked());
    if (possibility == QuickSelections::Possibility::Impossible || entry.pics.isEmpty())
        return;
    if (possibility == QuickSelections::Possibility::WithModeChange) {
        QList<MySingleFolder *> together;
        for (const MySinglePic *pic : entry.pics) {
            MySingleFolder *folder = MySingleFolder::of(*pic);
            if (folder->sfEditMode != MySingleFolder::EditSeparately && !together.contains(folder))
                together.append(folder);
        }
        m_controller.dateChanges().changeEditMode(together, MySingleFolder::EditSeparately);
    }
    m_select(entry.pics);
}

void QuickSelectionActions::refreshCategories()
{
    m_sidebar.fullRefresh();
    m_view->showRows(m_sidebar.rows(), m_sidebar.selectedKeys());
    // A second late, so that the refresh is surely on the other side of midnight.
    const double secondsLeft = m_sidebar.endOfToday().secondsSince(currentInstant());
    m_todayEnds.start(std::chrono::milliseconds(qint64(std::max(secondsLeft, 0.0) * 1000.0) + 1000));
}

QStringList QuickSelectionActions::closedCategories() const { return m_view->closedKeys(); }

void QuickSelectionActions::restoreCategories(const QStringList &chosen, const QStringList &closed)
{
    // The rows are filed from the working set as it now stands, so that the chosen ones exist
    // before the refresh that would drop them.
    m_sidebar.didChangeSource(m_timeline.controller().source_full());
    m_sidebar.setSelectedKeys(chosen);
    m_sidebar.fullRefresh();
    m_view->showRowsClosing(m_sidebar.rows(), m_sidebar.selectedKeys(), closed);
    applyCategoryFilter(false);
}

void QuickSelectionActions::applyCategoryFilter(bool ratingsChanged)
{
    MyTimelinesController &strips = m_timeline.controller();
    std::optional<QSet<MySinglePic *>> pics = m_sidebar.selectedPicsToFilter();
    strips.setHasSidebarSelection(pics.has_value());
    if (pics == m_appliedFilter)
        return;
    m_appliedFilter = pics;
    strips.source().setSelectedPicsToFilter(std::move(pics));
    // A rating under the grid's hand leaves the filter after a moment of calm, as with a
    // rating filter.
    if (ratingsChanged && m_appliedFilter)
        strips.filterRelevantChangeWasMade(QStringLiteral("filter_rating"));
    else
        strips.buildNewSourceWithNewSelectionOption(MyTimelinesController::FilterChanged, true);
}

} // namespace orv
