#pragma once

#include "time/TimeZone.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace orv {

class MySinglePic;

// One row of the sidebar's categories: a group row (a heading with rows under it) or a category
// of items. key names it for good ("rating/keepers", "camera/Canon EOS R6", "time/2024",
// "type/quickSelections_typePic/JPG"), so a selection survives a refresh.
struct MyFiltersItem
{
    QString key;
    QString title;
    bool isGroupItem = false;
    QSet<MySinglePic *> pics;
    QList<MyFiltersItem> children;
    // Shown closed until the user opens it (the alerts, which are many kinds and seldom wanted).
    bool isCollapsedByDefault = false;
};

// The sidebar's categories over the working set, with their items: ratings, dates by year and
// from today, cameras and lenses with their serial numbers, file types, the camera's settings,
// unsaved items, items with alerts and the items of folders imported as slideshows only. Items
// are filed once each as they join and forgotten as they leave, so the counts are kept in step
// without walking the working set; the dates, the alerts and the unsaved state, which date
// changes, saves and outside changes move, are gathered at each refresh. The selected rows'
// items together are the set the source lets through (selectedPicsToFilter).
//
// Main thread only, with the items. An item may be forgotten after it was deleted: the
// categories it was filed under are remembered, it is never read again.
class MySidebarController
{
public:
    explicit MySidebarController(TimeZone zone = TimeZone::systemZone()) : m_zone(std::move(zone)) {}

    // Items join their categories, each once however often it is given.
    void addFixedValuesFor(const QList<MySinglePic *> &pics);
    void removeFixedValuesFor(const QList<MySinglePic *> &pics);
    // The working set is now these items (an import, a removal, its undo): new ones join,
    // missing ones leave.
    void didChangeSource(const QList<MySinglePic *> &items);
    // A rating of these items changed: they are filed again.
    void sourceRelevantChangeWasMade(const QList<MySinglePic *> &pics);

    // The rows from the categories: "noFilter" (all items), "slideshowOnly", "withAlert" (its
    // kinds under it), "unsaved", the "rating", "times", "relativeTime", "cameras", "lenses",
    // "fileType" and "camSettings" groups; each only with items, except a chosen rating row,
    // which stays while empty.
    const QList<MyFiltersItem> &fullRefresh();
    const QList<MyFiltersItem> &rows() const { return m_rows; }
    // The row of that key in the last refresh; null when it is not shown.
    const MyFiltersItem *rowForKey(const QString &key) const;

    // The rows the user selected; "noFilter" and group rows stand for no filter.
    void setSelectedKeys(const QStringList &keys) { m_selectedKeys = keys; }
    const QStringList &selectedKeys() const { return m_selectedKeys; }
    // Where "today" is for the rows of dates from today; the computer's clock unless told.
    void setClock(std::function<Instant()> now) { m_now = std::move(now); }
    // When the rows of dates from today next change by the clock alone: the end of today.
    Instant endOfToday() const;
    // The union of the selected rows' items in the last refresh; none while no category is
    // selected. A chosen rating whose items were all rated otherwise lets nothing through; a
    // refresh drops the other chosen rows that lost all their items.
    std::optional<QSet<MySinglePic *>> selectedPicsToFilter() const;

private:
    QStringList storeKeysFor(const MySinglePic &pic) const;
    // The items with a date in force, each with it: read once for all the rows of dates.
    using DatedPics = QList<std::pair<MySinglePic *, Instant>>;
    DatedPics datedMedia() const;
    QList<MyFiltersItem> timesRows(const DatedPics &dated) const;
    std::optional<MyFiltersItem> withAlertRow() const;
    std::optional<MyFiltersItem> relativeTimeRow(const DatedPics &dated) const;
    Instant now() const;
    void forget(MySinglePic *pic, const QString &key);
    // The "cameras" group (each camera with its bodies' serials) and the "lenses" group (each lens
    // with its serials), each only with items.
    QList<MyFiltersItem> cameraAndLensRows() const;
    // The "camSettings" group: each setting of the shot with its values, ordered as numbers.
    QList<MyFiltersItem> settingsRows() const;

    TimeZone m_zone;
    std::function<Instant()> m_now;
    QSet<MySinglePic *> m_allAddedMedia;
    // The categories an item was filed under, so it leaves them without being read (a sub-row's
    // key stands for its row's too).
    QHash<MySinglePic *, QStringList> m_filedUnder;
    QHash<QString, QSet<MySinglePic *>> m_stores;
    QList<MyFiltersItem> m_rows;
    QStringList m_selectedKeys;
};

} // namespace orv
