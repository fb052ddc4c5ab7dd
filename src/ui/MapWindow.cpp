#include "ui/MapWindow.h"

#include "app/AppController.h"
#include "app/TrackLinks.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "places/LOTController.h"
#include "places/LocationAlignment.h"
#include "places/LocationText.h"
#include "places/ZonePlaces.h"
#include "ui/MapTileCache.h"
#include "ui/MapView.h"
#include "ui/ZonePlaceSearchField.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QSet>
#include <QVBoxLayout>

namespace orv {

namespace {

QString preference(const Preferences &prefs, const QString &key, const QString &fallback)
{
    return prefs.hasValueForKey(key) ? prefs.stringForKey(key) : fallback;
}

} // namespace

MapWindow::MapWindow(AppController &controller, Selection selection, QWidget *parent)
    : QWidget(parent, Qt::Window), m_controller(controller), m_selection(std::move(selection))
{
    setWindowTitle(tr("Map"));
    setObjectName(QStringLiteral("mapWindow"));
    const Preferences &prefs = controller.prefs();
    m_tiles = new MapTileCache(
        preference(prefs, tileTemplateKey(), QStringLiteral("https://tile.openstreetmap.org/{z}/{x}/{y}.png")), this);
    m_view = new MapView(m_tiles, this);
    m_view->setAttribution(preference(prefs, tileAttributionKey(), QStringLiteral("© OpenStreetMap contributors")));
    m_search = new ZonePlaceSearchField(this);
    m_search->setObjectName(QStringLiteral("mapPlaceSearch"));
    connect(m_search, &ZonePlaceSearchField::placeChosen, this, [this](GeoCoordinate at) { m_view->setView(at, 11); });
    m_status = new QLabel(this);
    m_status->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 4);
    layout->addWidget(m_search);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_status);

    connect(m_view, &MapView::pinsDragged, this, [this](const QList<int> &pins, GeoCoordinate to) {
        QList<MySinglePic *> pics;
        for (int pin : pins)
            pics.append(m_pinned.value(pin));
        place(pics, to, tr("Move Location"));
    });
    connect(m_view, &MapView::placeRequested, this,
            [this](GeoCoordinate at) { place(m_selection(), at, tr("Add Location")); });
    connect(m_view, &MapView::pinsClicked, this, [this](const QList<int> &pins) {
        QList<MySinglePic *> pics;
        for (int pin : pins)
            pics.append(m_pinned.value(pin));
        Q_EMIT picsChosen(pics);
    });
    // The place of the first selected item that has one, as the application's own type and as
    // text; pasted, a place from either goes to every selected item as one step.
    auto *copy = new QAction(tr("Copy Location"), this);
    copy->setObjectName(QStringLiteral("copyLocationAction"));
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, [this] {
        for (const MySinglePic *pic : m_selection()) {
            if (pic->gpsLat && pic->gpsLong) {
                auto *mime = new QMimeData;
                LocationPasteboard::write(*mime, {*pic->gpsLat, *pic->gpsLong});
                QGuiApplication::clipboard()->setMimeData(mime);
                return;
            }
        }
    });
    auto *paste = new QAction(tr("Paste Location"), this);
    paste->setObjectName(QStringLiteral("pasteLocationAction"));
    paste->setShortcut(QKeySequence::Paste);
    connect(paste, &QAction::triggered, this, [this] {
        const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
        if (const std::optional<GeoCoordinate> at = mime ? LocationPasteboard::read(*mime) : std::nullopt)
            place(m_selection(), *at, tr("Paste Location"));
        else
            m_status->setText(tr("The clipboard holds no place."));
    });
    // The selected items between the first and the last, which keep their places, put in a line.
    const auto aligner = [this](const QString &text, const char *name, bool byTime) {
        auto *align = new QAction(text, this);
        align->setObjectName(QLatin1String(name));
        connect(align, &QAction::triggered, this, [this, text, byTime] {
            const QList<MySinglePic *> sorted = m_selection();
            const QList<GeoCoordinate> inner = LocationAlignment::innerPlaces(sorted, byTime);
            if (inner.isEmpty()) {
                m_status->setText(tr("Select at least three items, the first and the last with a place."));
                return;
            }
            QList<TrackLinks::PicPlace> places;
            for (qsizetype i = 0; i < inner.size(); ++i)
                places.append({sorted[i + 1], inner[i]});
            m_controller.trackLinks().placeEach(places, QString(text).remove(QLatin1Char('&')));
        });
        return align;
    };
    QAction *alignEvenly = aligner(tr("Align Locations Evenly"), "alignLocationsEvenlyAction", false);
    QAction *alignByTime = aligner(tr("Align Locations by Time"), "alignLocationsByTimeAction", true);
    addActions({copy, paste});
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_view->addActions({copy, paste, alignEvenly, alignByTime});

    // Every change of the working set, undo and redo included, comes by here.
    connect(&controller, &AppController::reloadThumbs, this, &MapWindow::refresh);
    resize(900, 640);
    refresh();
}

MapWindow &MapWindow::showFor(AppController &controller, Selection selection, QWidget *parent)
{
    auto *map = parent->findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly);
    if (!map)
        map = new MapWindow(controller, std::move(selection), parent);
    map->show();
    map->refresh();
    map->raise();
    map->activateWindow();
    return *map;
}

void MapWindow::refresh()
{
    const QList<MySinglePic *> chosen = m_selection();
    const QSet<MySinglePic *> selected(chosen.cbegin(), chosen.cend());
    m_pinned.clear();
    QList<GeoCoordinate> pins;
    QList<bool> marked;
    QList<GeoCoordinate> selectedPlaces;
    for (const MySingleFolder *folder : m_controller.theDataSource().droppedFolders()) {
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            if (!pic->gpsLat || !pic->gpsLong)
                continue;
            const GeoCoordinate at{*pic->gpsLat, *pic->gpsLong};
            m_pinned.append(pic);
            pins.append(at);
            marked.append(selected.contains(pic));
            if (marked.last())
                selectedPlaces.append(at);
        }
    }
    m_view->setPins(pins, marked);

    QList<QList<QList<GeoCoordinate>>> tracks;
    for (const QString &key : m_controller.tracks().keys()) {
        QList<QList<GeoCoordinate>> segments;
        for (const MyGpxTrackSegment &segment : m_controller.tracks().track(key)->trackSegments) {
            QList<GeoCoordinate> points;
            for (const MyGpxTrackPoint &point : segment.trackPoints)
                points.append(point.coordinate());
            segments.append(points);
        }
        tracks.append(segments);
    }
    m_view->setTracks(tracks);

    // The first showing frames the selection's places, else all.
    if (!m_framed && isVisible()) {
        m_view->showAll(selectedPlaces.isEmpty() ? pins : selectedPlaces);
        m_framed = true;
    }
    const qsizetype unplaced = chosen.size() - selectedPlaces.size();
    m_status->setText(tr("%n item(s) on the map. Drag a pin to move its items; double-click to put the selected "
                         "items there.", nullptr, int(pins.size()))
                      + (unplaced > 0 ? QLatin1Char(' ') + tr("%n selected item(s) without a place.", nullptr, int(unplaced))
                                      : QString()));
}

void MapWindow::place(const QList<MySinglePic *> &pics, GeoCoordinate at, const QString &actionName)
{
    if (pics.isEmpty())
        return;
    const DateChangeResult result = m_controller.trackLinks().placePics(pics, at, actionName);
    if (result != DateChangeResult::Changed) {
        refresh(); // the dragged pin goes back where its items still are
        return;
    }
    if (const ZonePlaces *places = m_search->places(); places && !places->isEmpty()) {
        const MyTimeZoneCityObject *nearest = places->nearest(at);
        m_status->setText(m_status->text() + QLatin1Char(' ')
                          + tr("The zone there is likely %1 (nearest place: %2).").arg(nearest->timezone, nearest->names.value(0)));
    }
}

} // namespace orv
