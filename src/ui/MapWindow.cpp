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
#include <QActionGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSet>
#include <QSlider>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace orv {

namespace {

QString preference(const Preferences &prefs, const QString &key, const QString &fallback)
{
    return prefs.hasValueForKey(key) ? prefs.stringForKey(key) : fallback;
}

QString durationText(double seconds)
{
    return seconds < 3600 ? MapWindow::tr("%n minute(s)", nullptr, int(seconds / 60))
                          : MapWindow::tr("%n hour(s)", nullptr, int(seconds / 3600));
}

} // namespace

MapWindow::MapWindow(AppController &controller, Selection selection, Selection visible, QWidget *parent)
    : QWidget(parent, Qt::Window),
      m_controller(controller),
      m_selection(std::move(selection)),
      m_visible(std::move(visible))
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
    m_status->setObjectName(QStringLiteral("mapStatus"));

    // The selection tools: a drag draws a rectangle or a circle instead of panning.
    auto *tools = new QToolBar(this);
    auto *toolGroup = new QActionGroup(this);
    toolGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    const auto tool = [&](const QString &text, const char *name, MapView::SelectionTool kind) {
        QAction *action = tools->addAction(text);
        action->setObjectName(QLatin1String(name));
        action->setCheckable(true);
        toolGroup->addAction(action);
        connect(action, &QAction::toggled, this, [this, kind](bool on) {
            if (on)
                m_view->setSelectionTool(kind);
            else if (m_view->selectionTool() == kind)
                m_view->setSelectionTool(MapView::SelectionTool::None);
        });
    };
    tool(tr("Select by Rectangle"), "rectangleSelectionAction", MapView::SelectionTool::Rectangle);
    tool(tr("Select by Radius"), "radiusSelectionAction", MapView::SelectionTool::Radius);
    auto *within = new QToolButton(this);
    within->setObjectName(QStringLiteral("selectWithinButton"));
    within->setText(tr("Select Within"));
    within->setPopupMode(QToolButton::InstantPopup);
    auto *withinMenu = new QMenu(within);
    const bool metric = locale().measurementSystem() == QLocale::MetricSystem;
    for (int tag = 0; tag < MapFilterSettings::distanceTags; ++tag)
        connect(withinMenu->addAction(MapFilterSettings::distanceText(tag, metric)), &QAction::triggered, this,
                [this, tag] { selectAroundMainItem(tag); });
    within->setMenu(withinMenu);
    tools->addWidget(within);
    tools->addWidget(makeOptionsButton());

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 4);
    layout->addWidget(m_search);
    layout->addWidget(tools);
    layout->addWidget(makeFilterBar());
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
    connect(m_view, &MapView::pinsClicked, this, &MapWindow::choosePins);
    connect(m_view, &MapView::pinsSelected, this, &MapWindow::choosePinsInShape);
    connect(m_view, &MapView::stepRequested, this, &MapWindow::step);
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

MapWindow &MapWindow::showFor(AppController &controller, Selection selection, Selection visible, QWidget *parent)
{
    auto *map = parent->findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly);
    if (!map)
        map = new MapWindow(controller, std::move(selection), std::move(visible), parent);
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
    QList<MySinglePic *> located;
    for (const MySingleFolder *folder : m_controller.theDataSource().droppedFolders())
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (pic->gpsLat && pic->gpsLong)
                located.append(pic);
    // The filters walk the items in the order of the list.
    std::stable_sort(located.begin(), located.end(),
                     [](const MySinglePic *a, const MySinglePic *b) { return a->indexInSource_full < b->indexInSource_full; });
    const auto mainPic = std::find_if(chosen.cbegin(), chosen.cend(), [](const MySinglePic *pic) { return pic->gpsLat && pic->gpsLong; });
    m_main = mainPic == chosen.cend() ? nullptr : *mainPic;
    QList<MapFilterPin> filterPins;
    filterPins.reserve(located.size());
    for (MySinglePic *pic : std::as_const(located)) {
        const OptionalDate time = pic->spDateTimeModified_sort();
        filterPins.append(MapFilterPin{time ? time->secondsSinceEpoch() : 0.0, {*pic->gpsLat, *pic->gpsLong}, pic->newLocationHAccuracy,
                           pic->locAddedByTrackKey, selected.contains(pic)});
    }
    MapFilterSettings settings = MapFilterSettings::fromPreferences(m_controller.prefs());
    settings.metric = locale().measurementSystem() == QLocale::MetricSystem;
    const MapFilterResult shown = filterMapPins(filterPins, int(located.indexOf(m_main)), settings, trackSpanOf(m_main));

    m_pinned.clear();
    m_accuracyFiltered.clear();
    QList<GeoCoordinate> pins;
    QList<bool> marked;
    QList<bool> faded;
    QList<GeoCoordinate> selectedPlaces;
    const bool walkFiltered = shown.filtered && settings.type == MapFilterType::Accuracy;
    for (int index : shown.shown) {
        m_pinned.append(located[index]);
        pins.append(filterPins[index].at);
        marked.append(filterPins[index].selected);
        faded.append(std::binary_search(shown.dimmed.cbegin(), shown.dimmed.cend(), index));
        if (marked.last())
            selectedPlaces.append(pins.last());
        if (walkFiltered && !faded.last())
            m_accuracyFiltered.append(located[index]);
    }
    m_view->setPins(pins, marked, faded);
    m_view->setMainPin(int(m_pinned.indexOf(m_main)));

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
    const qsizetype unplaced = std::count_if(chosen.cbegin(), chosen.cend(), [](const MySinglePic *pic) { return !pic->gpsLat || !pic->gpsLong; });
    QStringList status{tr("%n item(s) on the map. Drag a pin to move its items; double-click to put the selected "
                          "items there.", nullptr, int(pins.size()))};
    if (unplaced > 0)
        status << tr("%n selected item(s) without a place.", nullptr, int(unplaced));
    if (shown.filtered)
        status << (shown.dimmed.isEmpty() ? tr("Filter: %1.") : tr("Filter: %1; the others faded."))
                      .arg(filterText(settings));
    if (shown.limited)
        status << tr("The pin limit shows %1 of %2 pins, those nearest the main item.")
                      .arg(settings.pinLimit)
                      .arg(located.size());
    m_status->setText(status.join(QLatin1Char(' ')));
}

QWidget *MapWindow::makeOptionsButton()
{
    auto *button = new QToolButton(this);
    button->setObjectName(QStringLiteral("mapOptionsButton"));
    button->setText(tr("Options"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(button);
    const auto option = [&](const QString &text, const QString &key) {
        QAction *action = menu->addAction(text);
        action->setObjectName(key);
        action->setCheckable(true);
        action->setChecked(m_controller.prefs().boolForKey(key));
        connect(action, &QAction::toggled, this, [this, key](bool on) { m_controller.prefs().setValue(key, on); });
    };
    option(tr("Selecting by Rectangle or Radius Takes the Items Without a Place Between"),
           QStringLiteral("mapSelectMediaWithoutLocationDataToo"));
    option(tr("Left and Right Walk Every Item, Not Only Those with a Place"),
           QStringLiteral("mapCursorKeysNavigateInsteadOfSelect"));
    button->setMenu(menu);
    return button;
}

QWidget *MapWindow::makeFilterBar()
{
    auto *bar = new QWidget(this);
    m_filterOn = new QCheckBox(tr("Filter"), bar);
    m_filterOn->setObjectName(QStringLiteral("mapFilterEnabled"));
    m_filterType = new QComboBox(bar);
    m_filterType->setObjectName(QStringLiteral("mapFilterType"));
    m_filterType->addItems({tr("Neighbours"), tr("Time around the main item"), tr("Time chain"), tr("Track"),
                            tr("Accuracy")});
    m_filterValue = new QSlider(Qt::Horizontal, bar);
    m_filterValue->setObjectName(QStringLiteral("mapFilterValue"));
    m_filterValue->setMinimumWidth(100);
    m_filterText = new QLabel(bar);
    m_trackOnly = new QCheckBox(tr("Main item's track only"), bar);
    m_trackOnly->setObjectName(QStringLiteral("mapFilterTrackOnly"));
    m_trackOnly->setToolTip(tr("When the main item's place came from a track, only the items of that track's time show."));
    m_hideOthers = new QCheckBox(tr("Hide others"), bar);
    m_hideOthers->setObjectName(QStringLiteral("mapFilterHideOthers"));
    m_hideOthers->setToolTip(tr("Off, the pins outside the filter stay on the map, faded, while there are fewer "
                                "than the pin limit."));
    m_pinLimit = new QComboBox(bar);
    m_pinLimit->setObjectName(QStringLiteral("mapPinLimit"));
    m_pinLimit->addItem(tr("500 pins"), 1);
    m_pinLimit->addItem(tr("1,000 pins"), 2);
    m_pinLimit->addItem(tr("2,000 pins"), 3);
    m_pinLimit->addItem(tr("All pins"), 0);

    // These two hold at every opening of the map; the rest is as the user left it.
    Preferences &prefs = m_controller.prefs();
    prefs.setValue(QStringLiteral("mapFilter_hideOthers"), true);
    prefs.setValue(QStringLiteral("mapFilter_alwaysShowAllSelected"), true);
    const MapFilterSettings settings = MapFilterSettings::fromPreferences(prefs);
    m_filterOn->setChecked(settings.enabled);
    m_filterType->setCurrentIndex(int(settings.type));
    m_filterValue->setRange(0, MapFilterSettings::sliderMaximum(settings.type));
    m_filterValue->setValue(settings.value);
    m_filterValue->setVisible(settings.type != MapFilterType::Track);
    m_filterText->setText(filterText(settings));
    m_trackOnly->setChecked(settings.useTrackInterval == 1);
    m_hideOthers->setChecked(settings.hideOthers);
    const int limit = m_pinLimit->findData(prefs.integerForKey(QStringLiteral("locationPinLimit")));
    m_pinLimit->setCurrentIndex(limit < 0 ? m_pinLimit->count() - 1 : limit);

    connect(m_filterOn, &QCheckBox::toggled, this, &MapWindow::storeFilter);
    connect(m_hideOthers, &QCheckBox::toggled, this, &MapWindow::storeFilter);
    connect(m_trackOnly, &QCheckBox::toggled, this, [this](bool on) {
        m_controller.prefs().setValue(QStringLiteral("mapFilter_useTrackInterval"), on ? 1 : 0);
        storeFilter();
    });
    connect(m_filterValue, &QSlider::valueChanged, this, &MapWindow::storeFilter);
    connect(m_pinLimit, &QComboBox::currentIndexChanged, this, &MapWindow::storeFilter);
    connect(m_filterType, &QComboBox::currentIndexChanged, this, [this](int index) {
        const auto type = MapFilterType(index);
        const QSignalBlocker quiet(m_filterValue);
        m_filterValue->setRange(0, MapFilterSettings::sliderMaximum(type));
        m_filterValue->setValue(int(m_controller.prefs().integerForKey(MapFilterSettings::valueKey(type))));
        m_filterValue->setVisible(type != MapFilterType::Track);
        storeFilter();
    });
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(6, 0, 6, 0);
    row->addWidget(m_filterOn);
    row->addWidget(m_filterType);
    row->addWidget(m_filterValue);
    row->addWidget(m_filterText, 1);
    row->addWidget(m_trackOnly);
    row->addWidget(m_hideOthers);
    row->addWidget(new QLabel(tr("Show at most:"), bar));
    row->addWidget(m_pinLimit);
    return bar;
}

void MapWindow::storeFilter()
{
    Preferences &prefs = m_controller.prefs();
    const auto type = MapFilterType(m_filterType->currentIndex());
    prefs.setValue(QStringLiteral("mapFilter_enabled"), m_filterOn->isChecked());
    prefs.setValue(QStringLiteral("mapFilter_hideOthers"), m_hideOthers->isChecked());
    prefs.setValue(QStringLiteral("mapFilter_type"), int(type));
    if (type != MapFilterType::Track)
        prefs.setValue(MapFilterSettings::valueKey(type), m_filterValue->value());
    prefs.setValue(QStringLiteral("locationPinLimit"), m_pinLimit->currentData().toInt());
    MapFilterSettings settings = MapFilterSettings::fromPreferences(prefs);
    settings.metric = locale().measurementSystem() == QLocale::MetricSystem;
    m_filterText->setText(filterText(settings));
    refresh();
}

QString MapWindow::filterText(const MapFilterSettings &settings) const
{
    switch (settings.type) {
    case MapFilterType::Neighbours:
        return tr("%n neighbour(s) each side of the main item", nullptr, settings.value);
    case MapFilterType::TimeAround:
        return tr("within %1 of the main item").arg(durationText(MapFilterSettings::intervalForValue(settings.value)));
    case MapFilterType::TimeChain:
        return tr("no gap longer than %1").arg(durationText(MapFilterSettings::intervalForValue(settings.value)));
    case MapFilterType::Track:
        return tr("the main item's track");
    case MapFilterType::Accuracy:
        return tr("placed less accurately than %1").arg(MapFilterSettings::distanceText(settings.value, settings.metric));
    }
    return {};
}

std::optional<MapTrackSpan> MapWindow::trackSpanOf(const MySinglePic *pic) const
{
    const MyGpxTrack *track = pic ? m_controller.tracks().track(pic->locAddedByTrackKey) : nullptr;
    const OptionalDate start = track ? track->startTime() : std::nullopt;
    const OptionalDate end = track ? track->endTime() : std::nullopt;
    if (!start || !end)
        return std::nullopt;
    return MapTrackSpan{pic->locAddedByTrackKey, start->secondsSinceEpoch(), end->secondsSinceEpoch()};
}

void MapWindow::choosePins(const QList<int> &pins)
{
    if (pins.isEmpty()) {
        m_status->setText(tr("No pins there."));
        return;
    }
    QList<MySinglePic *> pics;
    for (int pin : pins)
        pics.append(m_pinned.value(pin));
    Q_EMIT picsChosen(pics);
    m_status->setText(tr("%n item(s) selected on the map.", nullptr, int(pics.size())));
}

void MapWindow::choosePinsInShape(const QList<int> &pins)
{
    if (pins.isEmpty() || !m_controller.prefs().boolForKey(QStringLiteral("mapSelectMediaWithoutLocationDataToo")))
        return choosePins(pins);
    QList<MySinglePic *> pics;
    for (int pin : pins)
        pics.append(m_pinned.value(pin));
    const auto [first, last] = std::minmax_element(pics.cbegin(), pics.cend(), [](const MySinglePic *a, const MySinglePic *b) {
        return a->indexInSource_full < b->indexInSource_full;
    });
    const qint32 from = (*first)->indexInSource_full, to = (*last)->indexInSource_full;
    for (const MySingleFolder *folder : m_controller.theDataSource().droppedFolders())
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            if ((!pic->gpsLat || !pic->gpsLong) && pic->indexInSource_full > from && pic->indexInSource_full < to)
                pics.append(pic);
    Q_EMIT picsChosen(pics);
    m_status->setText(tr("%n item(s) selected on the map and between its pins.", nullptr, int(pics.size())));
}

bool MapWindow::showCircleAroundMainItem(double metres)
{
    if (!m_main)
        return false;
    const MapView::SelectionCircle circle{{*m_main->gpsLat, *m_main->gpsLong}, metres};
    m_view->showCircleWhole(circle);
    m_view->showSelectionCircle(circle);
    return true;
}

void MapWindow::selectAroundMainItem(int distanceTag)
{
    const bool metric = locale().measurementSystem() == QLocale::MetricSystem;
    selectWithinRadius(MapFilterSettings::distanceForTag(distanceTag, metric));
}

void MapWindow::selectWithinRadius(double metres)
{
    if (!showCircleAroundMainItem(metres)) {
        m_status->setText(tr("Select an item with a place first."));
        return;
    }
    const GeoCoordinate centre = m_view->selectionCircle()->centre;
    QList<int> pins;
    for (int i = 0; i < m_pinned.size(); ++i)
        if (MyGpxTrack::haversineKilometres(centre, {*m_pinned[i]->gpsLat, *m_pinned[i]->gpsLong}) * 1000.0 <= metres)
            pins.append(i);
    choosePinsInShape(pins);
}

QList<MySinglePic *> MapWindow::walkedPics() const
{
    if (!m_accuracyFiltered.isEmpty())
        return m_accuracyFiltered;
    QList<MySinglePic *> walk = m_visible();
    if (!m_controller.prefs().boolForKey(QStringLiteral("mapCursorKeysNavigateInsteadOfSelect")))
        walk.removeIf([](const MySinglePic *pic) { return !pic->gpsLat || !pic->gpsLong; });
    return walk;
}

void MapWindow::step(int direction)
{
    const QList<MySinglePic *> walk = walkedPics();
    const QList<MySinglePic *> chosen = m_selection();
    const MySinglePic *from = m_main && walk.contains(m_main) ? m_main : chosen.value(0);
    MySinglePic *to = nullptr;
    if (!from) {
        to = direction > 0 ? walk.value(0) : walk.value(walk.size() - 1);
    } else if (const qsizetype at = walk.indexOf(from); at >= 0) {
        to = walk.value(at + direction);
    } else {
        // From an item the walk passes over: the nearest one of the walk on that side.
        const auto after = std::find_if(walk.cbegin(), walk.cend(), [from](const MySinglePic *pic) {
            return pic->indexInSource_full > from->indexInSource_full;
        });
        if (direction > 0)
            to = after == walk.cend() ? nullptr : *after;
        else
            to = after == walk.cbegin() ? nullptr : *(after - 1);
    }
    if (!to)
        return;
    Q_EMIT picsChosen({to});
    if (to->gpsLat && to->gpsLong)
        m_view->keepInView({*to->gpsLat, *to->gpsLong});
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
                          + tr("The zone there is likely %1 (nearest place: %2).")
                                .arg(places->names().zone(nearest->timezone), nearest->names.value(0)));
    }
}

} // namespace orv
