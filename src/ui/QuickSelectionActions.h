#pragma once

#include "selection/MySidebarController.h"
#include "selection/QuickSelections.h"

#include <QDockWidget>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

class QDockWidget;
class QMainWindow;
class QMenu;

namespace orv {

class AppController;
class MySingleFolder;
class SidebarCategoriesView;
class TimelinePane;

// Choosing classes of items in the window: the Quick Selection menu (also a button of the main
// toolbar), built afresh from the items of the folders on show each time it opens, and the
// Categories side view, whose chosen rows filter the strips, the grid and the list. The
// categories follow the working set: imports, removals, ratings, date changes, undo and redo.
// Main thread only.
class QuickSelectionActions : public QObject
{
    Q_OBJECT
public:
    using FoldersOnShow = std::function<QList<MySingleFolder *>()>;
    // Selects the items on the strip and in the list, the first as the main one.
    using Select = std::function<void(const QList<MySinglePic *> &pics)>;

    QuickSelectionActions(AppController &controller, TimelinePane &timeline, FoldersOnShow foldersOnShow,
                          Select select, QMainWindow &window);

    // The menu before the last one of the bar (Help), its button at the end of the main
    // toolbar, and the Categories dock on the left.
    void addTo(QMainWindow &window);

    QMenu *menu() const { return m_menu; }
    SidebarCategoriesView &categoriesView() const { return *m_view; }
    // Shows or hides the Categories dock; the View menu lists it beside the other side views.
    QAction *categoriesToggle() const { return m_dock->toggleViewAction(); }
    // The categories as a kept view holds them: the rows chosen and the rows closed.
    const QStringList &chosenCategories() const { return m_sidebar.selectedKeys(); }
    QStringList closedCategories() const;
    // Chooses and closes the rows a kept view had, and filters the strips by the chosen ones.
    void restoreCategories(const QStringList &chosen, const QStringList &closed);

Q_SIGNALS:
    // The items within so many metres of the main item, chosen on the map.
    void radiusSelectionRequested(double metres);

private:
    // The items the menu offers: those of the folders on show the filter lets through.
    QList<MySinglePic *> selectableSource() const;
    // Selects the entry's items, switching their folders to change items one by one first when
    // that is the way to a selection of several; nothing when it is not possible now (the menu
    // was opened before a save began).
    void quickSelect(const QuickSelectionEntry &entry);
    void rebuildMenu();
    void addEntries(QMenu &menu, const QList<QuickSelectionEntry> &entries);
    // The distances around the main item, or why there are none.
    void addRadiusMenu(const QList<MySinglePic *> &selected);
    void refreshCategories();
    // The chosen rows' items become the source's filter; rebuilds only when they changed.
    void applyCategoryFilter(bool ratingsChanged);

    AppController &m_controller;
    TimelinePane &m_timeline;
    FoldersOnShow m_foldersOnShow;
    Select m_select;
    QMenu *m_menu;
    QDockWidget *m_dock;
    SidebarCategoriesView *m_view;
    MySidebarController m_sidebar;
    // What the source was last given to filter by.
    std::optional<QSet<MySinglePic *>> m_appliedFilter;
    // Fires when today ends: the rows of dates from today move on with no change of the items.
    QTimer m_todayEnds;
};

} // namespace orv
