// The map in the real window, offscreen: photos with and without a place, their pins, a pin
// dragged with real mouse events (one undo step, undone and redone), the selection put where
// the map is double-clicked, the save writing the new place as exiftool reads it, and a place
// found by name.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "support/Exiftool.h"
#include "ui/MapView.h"
#include "ui/MapWindow.h"
#include "ui/QuickSelectionActions.h"
#include "ui/StateSession.h"
#include "ui/StateTrayWindow.h"
#include "ui/ZonePlaceSearchField.h"
#include "timeline/MyTimelinesController.h"
#include "ui/TimelinePane.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QListWidget>
#include <QMenu>
#include <QSlider>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTableView>
#include <QTest>
#include <QUndoStack>

using namespace orv;
using namespace orv::test;

namespace {

class MapWindowTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        // No tile server: the test sees the offline map alone and asks no network.
        prefs.setValue(MapWindow::tileTemplateKey(), QString());
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        tags.gps = GpsShape::at(38.7167, -9.1333);
        placed = buildJpeg({.exif = tags}).write(dir.path(), QStringLiteral("IMG_1"));
        unplaced = writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 11:00:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    }

    MapWindow &openMap()
    {
        window->findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
        auto *map = window->findChild<MapWindow *>(QStringLiteral("mapWindow"));
        EXPECT_NE(map, nullptr);
        return *map;
    }

    MySinglePic *picNamed(MapWindow &map, const QString &path)
    {
        for (MySinglePic *pic : map.pinnedPics())
            if (path.endsWith(pic->spName))
                return pic;
        return nullptr;
    }

    bool saveAndWait()
    {
        QSignalSpy finished(window.get(), &MainWindow::saveFinished);
        window->findChild<QAction *>(QStringLiteral("saveAction"))->trigger();
        return finished.wait(30000);
    }

    QString placed, unplaced;
};

TEST_F(MapWindowTest, DraggingAPinMovesItsItemAsOneUndoStepAndTheSaveWritesIt)
{
    window->findChild<QTableView *>()->selectAll();
    MapWindow &map = openMap();
    ASSERT_EQ(map.pinnedPics().size(), 1) << "one photo has a place";
    MySinglePic *pic = picNamed(map, placed);
    ASSERT_NE(pic, nullptr);
    MapView &view = map.view();
    view.setView({38.7167, -9.1333}, 12);

    QUndoStack &undo = window->controller().uManager();
    const int stepsBefore = undo.count();
    const QPoint pin = view.pointOf({38.7167, -9.1333}).toPoint();
    const QPoint drop = pin + QPoint(120, -60);
    const GeoCoordinate target = view.coordinateAt(drop);
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, pin);
    QTest::mouseMove(&view, pin + QPoint(40, -20));
    QTest::mouseMove(&view, drop);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, drop);

    ASSERT_EQ(undo.count(), stepsBefore + 1);
    EXPECT_EQ(undo.undoText(), QStringLiteral("Move Location"));
    EXPECT_NEAR(*pic->gpsLat, target.latitude, 1e-9);
    EXPECT_NEAR(*pic->gpsLong, target.longitude, 1e-9);
    EXPECT_GT(*pic->gpsLong, -9.1333) << "moved east";
    EXPECT_EQ(pic->hasAddedLocation, 1);
    EXPECT_NEAR((view.pointOf({*pic->gpsLat, *pic->gpsLong}) - QPointF(drop)).manhattanLength(), 0.0, 1.0)
        << "the pin stands where it was dropped";

    undo.undo();
    EXPECT_NEAR(*pic->gpsLat, 38.7167, 1e-9);
    EXPECT_NEAR(*pic->gpsLong, -9.1333, 1e-9);
    undo.redo();
    EXPECT_NEAR(*pic->gpsLong, target.longitude, 1e-9);

    // A click without a move only selects; a press on the sea pans and changes nothing.
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, drop);
    EXPECT_EQ(undo.count(), stepsBefore + 1);

    ASSERT_TRUE(saveAndWait());
    const ExiftoolTags read = exiftoolTags(placed);
    EXPECT_NEAR(read.number(QStringLiteral("Composite:GPSLatitude")), target.latitude, 1e-6);
    EXPECT_NEAR(read.number(QStringLiteral("Composite:GPSLongitude")), target.longitude, 1e-6);
}

TEST_F(MapWindowTest, ADoubleClickPutsTheSelectionThereInOneStep)
{
    window->findChild<QTableView *>()->selectAll();
    MapWindow &map = openMap();
    MapView &view = map.view();
    view.setView({48.8583, 2.2945}, 10);
    QUndoStack &undo = window->controller().uManager();
    const int stepsBefore = undo.count();
    const QPoint where(view.width() / 2, view.height() / 2);
    const GeoCoordinate at = view.coordinateAt(where);
    QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, where);

    ASSERT_EQ(undo.count(), stepsBefore + 1);
    EXPECT_EQ(undo.undoText(), QStringLiteral("Add Location"));
    ASSERT_EQ(map.pinnedPics().size(), 2) << "both photos now have a place";
    for (MySinglePic *pic : map.pinnedPics()) {
        EXPECT_NEAR(*pic->gpsLat, at.latitude, 1e-9);
        EXPECT_NEAR(*pic->gpsLong, at.longitude, 1e-9);
    }
    // The same place again changes nothing and adds no step.
    QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, where);
    EXPECT_EQ(undo.count(), stepsBefore + 1);
    undo.undo();
    EXPECT_EQ(map.pinnedPics().size(), 1);
}

TEST_F(MapWindowTest, ACopiedPlaceIsPastedOntoTheSelectionAsOneStep)
{
    window->findChild<QTableView *>()->selectAll();
    MapWindow &map = openMap();
    map.findChild<QAction *>(QStringLiteral("copyLocationAction"))->trigger();
    const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(copied, nullptr);
    EXPECT_TRUE(copied->hasFormat(QStringLiteral("orvelle.desktopPasteboardLocationData")));
    EXPECT_EQ(copied->text(), QStringLiteral("38.716700, -9.133300"));

    QUndoStack &undo = window->controller().uManager();
    const int stepsBefore = undo.count();
    map.findChild<QAction *>(QStringLiteral("pasteLocationAction"))->trigger();
    ASSERT_EQ(undo.count(), stepsBefore + 1) << "the photo without a place takes it; the other is there already";
    ASSERT_EQ(map.pinnedPics().size(), 2);
    for (const MySinglePic *pic : map.pinnedPics())
        EXPECT_EQ((GeoCoordinate{*pic->gpsLat, *pic->gpsLong}), (GeoCoordinate{38.7167, -9.1333}));

    QGuiApplication::clipboard()->setText(QStringLiteral("no place"));
    map.findChild<QAction *>(QStringLiteral("pasteLocationAction"))->trigger();
    EXPECT_EQ(undo.count(), stepsBefore + 1);
}

TEST_F(MapWindowTest, APlaceFoundByNameIsShown)
{
    MapWindow &map = openMap();
    ZonePlaceSearchField &search = map.placeSearch();
    if (!search.isReady()) {
        ASSERT_TRUE(QSignalSpy(&search, &ZonePlaceSearchField::ready).wait(20000));
    }
    QTest::keyClicks(&search, QStringLiteral("Sapp"));
    ASSERT_TRUE(search.completer().popup()->isVisible());
    QTest::keyClick(search.completer().popup(), Qt::Key_Return);
    EXPECT_NEAR(map.view().centre().latitude, 43.064, 0.01);
    EXPECT_NEAR(map.view().centre().longitude, 141.347, 0.01);
    EXPECT_EQ(map.view().zoom(), 11);
}

// Three photos with places (Lisbon, Porto, Madrid) and one without, for selecting on the map.
class MapSelectionTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        prefs.setValue(MapWindow::tileTemplateKey(), QString());
        const auto placedAt = [&](const char *name, const char *stamp, GeoCoordinate at) {
            TiffShape tags;
            tags.dateTimeOriginal = Stamp::text(stamp);
            tags.gps = GpsShape::at(at.latitude, at.longitude);
            buildJpeg({.exif = tags}).write(dir.path(), QLatin1String(name));
        };
        placedAt("LISBON", "2024:05:01 10:00:00", lisbon);
        placedAt("PORTO", "2024:05:01 12:00:00", porto);
        placedAt("MADRID", "2024:05:02 18:00:00", madrid);
        writeJpeg(QStringLiteral("NOWHERE"), "2024:05:01 11:00:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        window->findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
        map = window->findChild<MapWindow *>(QStringLiteral("mapWindow"));
        ASSERT_NE(map, nullptr);
        map->view().setView({40.0, -6.5}, 6);
    }

    // What the timeline has selected, by name.
    QStringList selectedOnTimeline() const
    {
        QStringList names;
        for (const MySinglePic *pic : window->timeline().controller().theTimelineView_1().multiSelection())
            names << pic->spName.section(u'.', 0, 0);
        names.sort();
        return names;
    }

    void drag(QPoint from, QPoint to)
    {
        MapView &view = map->view();
        QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(&view, (from + to) / 2);
        QTest::mouseMove(&view, to);
        QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, to);
    }

    QString mainOnTimeline() const
    {
        const MySinglePic *main = window->timeline().controller().theTimelineView_1().picSelection();
        return main ? main->spName.section(u'.', 0, 0) : QString();
    }

    QString ringed() const
    {
        const int pin = map->view().mainPin();
        return pin < 0 ? QString() : map->pinnedPics()[pin]->spName.section(u'.', 0, 0);
    }

    QStringList pinned() const
    {
        QStringList names;
        for (const MySinglePic *pic : map->pinnedPics())
            names << pic->spName.section(u'.', 0, 0);
        return names;
    }

    const GeoCoordinate lisbon{38.7167, -9.1333}, porto{41.1496, -8.6110}, madrid{40.4168, -3.7038};
    MapWindow *map = nullptr;
};

TEST_F(MapSelectionTest, ARectangleAndACircleSelectTheirPinsOnTheTimeline)
{
    MapView &view = map->view();
    QUndoStack &undo = window->controller().uManager();
    const int stepsBefore = undo.count();
    // Around Lisbon and Porto, Madrid left out; drawn from the lower right, over the pins.
    map->findChild<QAction *>(QStringLiteral("rectangleSelectionAction"))->trigger();
    const QPointF west = view.pointOf(lisbon), north = view.pointOf(porto);
    drag(QPoint(int(std::max(west.x(), north.x())) + 20, int(west.y()) + 20),
         QPoint(int(std::min(west.x(), north.x())) - 20, int(north.y()) - 20));
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("LISBON"), QStringLiteral("PORTO")}));
    EXPECT_EQ(undo.count(), stepsBefore) << "selecting moves no pin";

    // A circle drawn from Madrid: 170 km holds it alone; 467 km reaches Porto (421 km away) but
    // not Lisbon (503 km).
    map->findChild<QAction *>(QStringLiteral("radiusSelectionAction"))->trigger();
    const QPoint centre = view.pointOf(madrid).toPoint();
    drag(centre, view.pointOf({madrid.latitude, madrid.longitude + 2.0}).toPoint());
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("MADRID")}));
    ASSERT_TRUE(view.selectionCircle().has_value());
    EXPECT_NEAR(view.selectionCircle()->selectionRadius, 169300, 4000) << "two degrees east at 40.4 N";
    drag(centre, view.pointOf({madrid.latitude, madrid.longitude - 5.5}).toPoint());
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("MADRID"), QStringLiteral("PORTO")}));
    EXPECT_EQ(undo.count(), stepsBefore);
    // Within 10 km of the main item, the first selected: Porto alone.
    map->selectAroundMainItem(0);
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("PORTO")}));
    EXPECT_NEAR(view.selectionCircle()->centre.latitude, porto.latitude, 1e-9);
    EXPECT_NEAR(view.selectionCircle()->centre.longitude, porto.longitude, 1e-9);
    EXPECT_EQ(view.selectionCircle()->selectionRadius, 10000);
    EXPECT_GE(view.zoom(), 9) << "the map closes in on the circle";
    EXPECT_TRUE(QRectF(view.rect()).contains(view.pointOf(porto)));
    view.setView({40.0, -6.5}, 6);

    // Without a tool the drag pans again; Shift draws a rectangle all the same.
    map->findChild<QAction *>(QStringLiteral("radiusSelectionAction"))->trigger();
    EXPECT_EQ(view.selectionTool(), MapView::SelectionTool::None);
    const QPoint east = view.pointOf(madrid).toPoint();
    QTest::mousePress(&view, Qt::LeftButton, Qt::ShiftModifier, east - QPoint(10, 10));
    QTest::mouseMove(&view, east + QPoint(10, 10));
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::ShiftModifier, east + QPoint(10, 10));
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("MADRID")}));

    // Asked to, a shape takes the items without a place between its pins too: the photo of
    // 11:00, between Lisbon's and Porto's.
    prefs.setBool(QStringLiteral("mapSelectMediaWithoutLocationDataToo"), true);
    map->findChild<QAction *>(QStringLiteral("rectangleSelectionAction"))->trigger();
    drag(QPoint(int(std::max(west.x(), north.x())) + 20, int(west.y()) + 20),
         QPoint(int(std::min(west.x(), north.x())) - 20, int(north.y()) - 20));
    EXPECT_EQ(selectedOnTimeline(),
              QStringList({QStringLiteral("LISBON"), QStringLiteral("NOWHERE"), QStringLiteral("PORTO")}));
}

TEST_F(MapSelectionTest, TheCursorKeysWalkTheMainItemFromPinToPinAndTheMapFollows)
{
    MapView &view = map->view();
    QUndoStack &undo = window->controller().uManager();
    const int stepsBefore = undo.count();
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, view.pointOf(porto).toPoint());
    ASSERT_EQ(mainOnTimeline(), QStringLiteral("PORTO"));
    EXPECT_EQ(ringed(), QStringLiteral("PORTO"));

    // In the strip's order, past the photo without a place, and no further than the ends.
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("MADRID")}));
    EXPECT_EQ(mainOnTimeline(), QStringLiteral("MADRID"));
    EXPECT_EQ(ringed(), QStringLiteral("MADRID"));
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(mainOnTimeline(), QStringLiteral("MADRID"));
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("LISBON")}));
    EXPECT_EQ(ringed(), QStringLiteral("LISBON"));
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(mainOnTimeline(), QStringLiteral("LISBON"));

    // Close in on Lisbon: Porto, 274 km north, is off the map until the walk reaches it.
    view.setView(lisbon, 11);
    ASSERT_FALSE(QRectF(view.rect()).contains(view.pointOf(porto)));
    QTest::keyClick(&view, Qt::Key_Right);
    ASSERT_EQ(mainOnTimeline(), QStringLiteral("PORTO"));
    EXPECT_TRUE(QRectF(view.rect()).adjusted(40, 40, -40, -40).contains(view.pointOf(porto)));
    EXPECT_EQ(view.zoom(), 11) << "the map scrolls, it does not zoom";
    // Pins well inside the view leave it where it is.
    view.setView({40.0, -6.5}, 6);
    const GeoCoordinate centre = view.centre();
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_NEAR(view.centre().latitude, centre.latitude, 1e-9);

    // Asked to (the map's options), the walk takes in every item the strip shows, the one
    // without a place too.
    map->findChild<QAction *>(QStringLiteral("mapCursorKeysNavigateInsteadOfSelect"))->trigger();
    ASSERT_TRUE(prefs.boolForKey(QStringLiteral("mapCursorKeysNavigateInsteadOfSelect")));
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(mainOnTimeline(), QStringLiteral("NOWHERE"));
    EXPECT_EQ(ringed(), QString()) << "no pin to ring";
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(mainOnTimeline(), QStringLiteral("LISBON"));
    EXPECT_EQ(undo.count(), stepsBefore) << "walking changes no item";
}

TEST_F(MapSelectionTest, TheCircleAroundTheMainItemIsKeptWithTheWorkingSet)
{
    StateTray &tray = window->states().tray();
    const auto clearTray = [&tray] {
        QDir(tray.appStateTrayRootPath()).removeRecursively();
        QDir(tray.deletedStatesPath()).removeRecursively();
    };
    clearTray();
    map->findChild<QAction *>(QStringLiteral("radiusSelectionAction"))->trigger();
    const QPoint centre = map->view().pointOf(madrid).toPoint();
    drag(centre, map->view().pointOf({madrid.latitude, madrid.longitude - 5.5}).toPoint());
    map->selectAroundMainItem(0);
    ASSERT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("PORTO")}));

    // The map looks somewhere of the user's own when the working set is kept.
    map->view().setView({41.5, -7.25}, 7);
    StateTrayWindow &trayWindow = window->states().showTray();
    const auto keepAndOpen = [&] {
        clickButton(trayWindow, QStringLiteral("Keep Working Set"));
        map->view().showSelectionCircle(std::nullopt);
        map->view().setView({0.0, 0.0}, 2);
        map->hide();
        trayWindow.findChild<QListWidget *>(QStringLiteral("stateTrayList"))->setCurrentRow(0);
        clickButton(trayWindow, QStringLiteral("Open"));
    };
    keepAndOpen();

    EXPECT_TRUE(map->isVisible()) << "the map opens again to show its circle";
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("PORTO")}));
    ASSERT_TRUE(map->view().selectionCircle().has_value());
    EXPECT_NEAR(map->view().selectionCircle()->centre.latitude, porto.latitude, 1e-9);
    EXPECT_NEAR(map->view().selectionCircle()->centre.longitude, porto.longitude, 1e-9);
    EXPECT_EQ(map->view().selectionCircle()->selectionRadius, 10000);
    EXPECT_EQ(map->view().zoom(), 7) << "where the map looked, not the circle's framing";
    EXPECT_NEAR(map->view().centre().latitude, 41.5, 1e-6);
    EXPECT_NEAR(map->view().centre().longitude, -7.25, 1e-6);

    // A map closed when the working set was kept stays closed.
    clearTray();
    map->hide();
    keepAndOpen();
    EXPECT_FALSE(map->isVisible());
    clearTray();
}

TEST_F(MapSelectionTest, TheFilterShowsThePinsAroundTheMainItemAndIsKept)
{
    MapView &view = map->view();
    ASSERT_EQ(pinned().size(), 3);
    // Porto chosen by a click on its pin is the main item.
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, view.pointOf(porto).toPoint());
    ASSERT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("PORTO")}));

    auto *type = map->findChild<QComboBox *>(QStringLiteral("mapFilterType"));
    auto *value = map->findChild<QSlider *>(QStringLiteral("mapFilterValue"));
    type->setCurrentIndex(int(MapFilterType::Neighbours));
    value->setValue(0);
    map->findChild<QCheckBox *>(QStringLiteral("mapFilterEnabled"))->setChecked(true);
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("PORTO")}));
    value->setValue(1);
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("LISBON"), QStringLiteral("PORTO"), QStringLiteral("MADRID")}));
    // Within an hour of Porto's time nothing else; within two hours Lisbon too.
    type->setCurrentIndex(int(MapFilterType::TimeAround));
    value->setValue(5);
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("PORTO")}));
    value->setValue(6);
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("LISBON"), QStringLiteral("PORTO")}));
    EXPECT_TRUE(prefs.boolForKey(QStringLiteral("mapFilter_enabled")));
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("mapFilter_type")), 1);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("mapFilter_value_type1")), 6);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("mapFilter_value_type0")), 1);

    map->findChild<QComboBox *>(QStringLiteral("mapPinLimit"))->setCurrentIndex(0);
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("locationPinLimit")), 1);

    // Not hiding the others keeps Madrid on the map, faded: drawn see-through over the land.
    auto *hideOthers = map->findChild<QCheckBox *>(QStringLiteral("mapFilterHideOthers"));
    ASSERT_TRUE(hideOthers->isChecked());
    hideOthers->setChecked(false);
    EXPECT_FALSE(prefs.boolForKey(QStringLiteral("mapFilter_hideOthers")));
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("LISBON"), QStringLiteral("PORTO"), QStringLiteral("MADRID")}));
    view.setView(madrid, 6);
    const QImage drawn = view.grab().toImage();
    const QColor pinBlue(30, 110, 210);
    const QColor atMadrid = drawn.pixelColor(view.pointOf(madrid).toPoint());
    const QColor atLisbon = drawn.pixelColor(view.pointOf(lisbon).toPoint());
    EXPECT_EQ(atLisbon, pinBlue) << "in the filter: drawn whole";
    EXPECT_NE(atMadrid, pinBlue);
    EXPECT_LT(std::abs(atMadrid.blue() - pinBlue.blue()) + std::abs(atMadrid.red() - pinBlue.red()), 250)
        << "faded, yet a pin: " << atMadrid.name().toStdString();
    EXPECT_GT(std::abs(atMadrid.red() - pinBlue.red()) + std::abs(atMadrid.green() - pinBlue.green()), 40);
    // A map opened afresh hides them again.
    delete map;
    window->findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
    map = window->findChild<MapWindow *>(QStringLiteral("mapWindow"));
    EXPECT_TRUE(prefs.boolForKey(QStringLiteral("mapFilter_hideOthers")));
    EXPECT_EQ(pinned(), QStringList({QStringLiteral("LISBON"), QStringLiteral("PORTO")}));

    map->findChild<QCheckBox *>(QStringLiteral("mapFilterEnabled"))->setChecked(false);
    EXPECT_EQ(pinned().size(), 3);
}

TEST_F(MapSelectionTest, TheQuickSelectionOpensTheMapWithARadiusAroundTheMainItem)
{
    map->hide();
    map->view().setView(madrid, 2);
    QMenu *menu = window->quickSelections().menu();
    Q_EMIT menu->aboutToShow();
    auto *entry = menu->findChild<QAction *>(QStringLiteral("quickSelections_gps_radius"));
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(entry->isEnabled()) << "nothing selected yet: " << entry->text().toStdString();

    window->timeline().selectPics({map->pinnedPics()[2]}, map->pinnedPics()[2]);
    ASSERT_EQ(mainOnTimeline(), QStringLiteral("MADRID"));
    Q_EMIT menu->aboutToShow();
    entry = menu->findChild<QAction *>(QStringLiteral("quickSelections_gps_radius"));
    ASSERT_NE(entry, nullptr);
    ASSERT_NE(entry->menu(), nullptr);
    const QList<QAction *> distances = entry->menu()->actions();
    ASSERT_EQ(distances.size(), MapFilterSettings::distanceTags);
    distances.first()->trigger(); // 10 km, or 5 miles

    EXPECT_TRUE(map->isVisible());
    ASSERT_TRUE(map->view().selectionCircle().has_value());
    EXPECT_NEAR(map->view().selectionCircle()->centre.longitude, madrid.longitude, 1e-9);
    EXPECT_EQ(selectedOnTimeline(), QStringList({QStringLiteral("MADRID")}));
    // The circle is shown whole and fills the map: zoomed in from the world's view.
    const MapView &view = map->view();
    EXPECT_GE(view.zoom(), 9);
    const double radius = view.pointOf({madrid.latitude + 0.0899, madrid.longitude}).y() - view.pointOf(madrid).y();
    EXPECT_LT(std::abs(radius) * 2, view.height());
    EXPECT_GT(std::abs(radius) * 4, view.height() / 2);
    EXPECT_TRUE(QRectF(view.rect()).contains(view.pointOf(madrid)));
}

} // namespace
