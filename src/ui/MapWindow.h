#pragma once

#include "core/MySinglePic.h"
#include "places/MyGpxTrack.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace orv {

class AppController;
class MapTileCache;
class MapView;
class ZonePlaceSearchField;

// The map of the working set: every item with a place as a pin (the selected ones marked), the
// imported tracks as lines. Dragging a pin moves its items there, a double click puts the
// selected items there: each one step on the main undo stack through the owner of changes,
// written by the next save. Clicking a pin selects its items in the window. A place found by
// name (the zone search's places) is shown; after a change the zone of the nearest place is
// suggested.
class MapWindow : public QWidget
{
    Q_OBJECT

public:
    using Selection = std::function<QList<MySinglePic *>()>;

    MapWindow(AppController &controller, Selection selection, QWidget *parent = nullptr);
    // The window's map, made on first use and raised after.
    static MapWindow &showFor(AppController &controller, Selection selection, QWidget *parent);

    MapView &view() const { return *m_view; }
    ZonePlaceSearchField &placeSearch() const { return *m_search; }
    // Pin i is the item pinnedPics()[i].
    const QList<MySinglePic *> &pinnedPics() const { return m_pinned; }
    // Pins and tracks again from the working set and the selection.
    void refresh();

    // Preference keys of the tile server; an empty template shows the offline map alone.
    static QString tileTemplateKey() { return QStringLiteral("mapTileURLTemplate"); }
    static QString tileAttributionKey() { return QStringLiteral("mapTileAttribution"); }

Q_SIGNALS:
    void picsChosen(const QList<orv::MySinglePic *> &pics);

private:
    void place(const QList<MySinglePic *> &pics, GeoCoordinate at, const QString &actionName);

    AppController &m_controller;
    Selection m_selection;
    MapTileCache *m_tiles;
    MapView *m_view;
    ZonePlaceSearchField *m_search;
    QLabel *m_status;
    QList<MySinglePic *> m_pinned;
    bool m_framed = false;
};

} // namespace orv
