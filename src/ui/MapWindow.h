#pragma once

#include "core/MySinglePic.h"
#include "places/MapPinFilter.h"
#include "places/MyGpxTrack.h"

#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QSlider;

namespace orv {

class AppController;
class MapTileCache;
class MapView;
class ZonePlaceSearchField;

// The map of the working set: every item with a place as a pin (the selected ones marked), the
// imported tracks as lines. Dragging a pin moves its items there, a double click puts the
// selected items there: each one step on the main undo stack through the owner of changes,
// written by the next save. Clicking a pin selects its items in the window, and so does a
// rectangle or a circle drawn with the selection tools, or a radius around the main item chosen
// from a menu. The left and right cursor keys walk the main item, and with it the window's
// selection, to the previous or next item in the strip's order (those with a place, or every
// one under mapCursorKeysNavigateInsteadOfSelect), the map following its pin. A filter narrows
// the pins to those around the main item, or fades the others, and the pin limit keeps the
// nearest ones when there are more. A place found by name (the zone search's places) is shown;
// after a change the zone of the nearest place is suggested.
class MapWindow : public QWidget
{
    Q_OBJECT

public:
    using Selection = std::function<QList<MySinglePic *>()>;

    // visible: the items the main strip shows, in its order.
    MapWindow(AppController &controller, Selection selection, Selection visible, QWidget *parent = nullptr);
    // The window's map, made on first use and raised after.
    static MapWindow &showFor(AppController &controller, Selection selection, Selection visible, QWidget *parent);

    MapView &view() const { return *m_view; }
    ZonePlaceSearchField &placeSearch() const { return *m_search; }
    // Pin i is the item pinnedPics()[i]: the items the filter and the pin limit show.
    const QList<MySinglePic *> &pinnedPics() const { return m_pinned; }
    // Selects the items within the distance of the radius menu's tag around the main item.
    void selectAroundMainItem(int distanceTag);
    // Selects the items within so many metres of the main item, the map showing the circle.
    void selectWithinRadius(double metres);
    // Draws the circle of that radius around the main item and shows it whole, selecting
    // nothing; false without a main item.
    bool showCircleAroundMainItem(double metres);
    // Pins and tracks again from the working set and the selection.
    void refresh();

    // Preference keys of the tile server; an empty template shows the offline map alone.
    static QString tileTemplateKey() { return QStringLiteral("mapTileURLTemplate"); }
    static QString tileAttributionKey() { return QStringLiteral("mapTileAttribution"); }

Q_SIGNALS:
    void picsChosen(const QList<orv::MySinglePic *> &pics);

private:
    void place(const QList<MySinglePic *> &pics, GeoCoordinate at, const QString &actionName);
    // The main item to the previous (-1) or next (1) item of the walk, alone selected.
    void step(int direction);
    QList<MySinglePic *> walkedPics() const;
    QWidget *makeFilterBar();
    // The map's two choices kept in the preferences: what a shape selects, what the keys walk.
    QWidget *makeOptionsButton();
    void storeFilter();
    void choosePins(const QList<int> &pins);
    // A rectangle's or a circle's pins, with the items without a place between them when the
    // user wants those too.
    void choosePinsInShape(const QList<int> &pins);
    QString filterText(const MapFilterSettings &settings) const;
    std::optional<MapTrackSpan> trackSpanOf(const MySinglePic *pic) const;

    AppController &m_controller;
    Selection m_selection;
    Selection m_visible;
    MapTileCache *m_tiles;
    MapView *m_view;
    ZonePlaceSearchField *m_search;
    QLabel *m_status;
    QCheckBox *m_filterOn;
    QCheckBox *m_trackOnly;
    QCheckBox *m_hideOthers;
    QComboBox *m_filterType;
    QSlider *m_filterValue;
    QLabel *m_filterText;
    QComboBox *m_pinLimit;
    MySinglePic *m_main = nullptr; // the selection's first item with a place
    QList<MySinglePic *> m_pinned;
    // The pins the accuracy filter chose, which the cursor keys walk instead of the strip's.
    QList<MySinglePic *> m_accuracyFiltered;
    bool m_framed = false;
};

} // namespace orv
