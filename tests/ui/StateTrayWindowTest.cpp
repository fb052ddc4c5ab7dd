// The tray in the window: the working set kept there leaves the window and is listed with what
// it holds; opened again it comes back with its changes and the window's view (selections,
// filter, the sidebar's chosen and closed categories), and leaves the tray, and undoing the
// opening puts it back.

#include "WindowFixture.h"

#include "support/MediaFileBuilder.h"

#include "app/AppController.h"
#include "app/PicRatings.h"
#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"
#include "ui/FolderListModel.h"
#include "ui/MyTimelineView.h"
#include "ui/PicTableModel.h"
#include "ui/PreviewsBar.h"
#include "ui/QuickSelectionActions.h"
#include "ui/SidebarCategoriesView.h"
#include "ui/StateSession.h"
#include "ui/StateTrayWindow.h"
#include "ui/TimelinePane.h"

#include <QDir>
#include <QListWidget>
#include <QTableView>
#include <QTreeWidgetItem>
#include <QTreeView>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

class StateTrayWindowTest : public WindowFixture
{
protected:
    // The tray of the test's data folder starts and ends empty.
    void SetUp() override { clearTray(); }
    void TearDown() override { clearTray(); }
    void clearTray()
    {
        StateTray &tray = window->states().tray();
        QDir(tray.appStateTrayRootPath()).removeRecursively();
        QDir(tray.deletedStatesPath()).removeRecursively();
    }
    QList<MySingleFolder *> folders() const { return window->controller().theDataSource().droppedFolders(); }
    StateTrayWindow &openKept()
    {
        StateTrayWindow &tray = window->states().showTray();
        tray.findChild<QListWidget *>(u"stateTrayList"_s)->setCurrentRow(0);
        clickButton(tray, u"Open"_s);
        return tray;
    }
    QStringList namesOnStrip() const
    {
        QStringList names;
        for (const MySinglePic *pic : window->timeline().controller().theTimelineView_1().theSource())
            names.append(pic->spName);
        names.sort();
        return names;
    }
    static QStringList rows(const StateTrayWindow &tray)
    {
        const auto *list = tray.findChild<QListWidget *>(u"stateTrayList"_s);
        QStringList texts;
        for (int row = 0; row < list->count(); ++row)
            texts.append(list->item(row)->text());
        return texts;
    }
};

TEST_F(StateTrayWindowTest, AWorkingSetKeptInTheTrayOpensAgainAndItsOpeningIsUndone)
{
    writeJpeg(u"a"_s, "2024:05:01 10:00:00");
    writeJpeg(u"b"_s, "2024:05:01 11:00:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    ASSERT_EQ(window->controller().dateChanges().dragChangedDates(folders(), 3600, false), DateChangeResult::Changed);

    StateTrayWindow &tray = window->states().showTray();
    clickButton(tray, u"Keep Working Set"_s);
    EXPECT_TRUE(folders().isEmpty()) << "the work was handed to the tray";
    EXPECT_FALSE(window->isWindowModified());
    const QStringList kept = rows(tray);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_TRUE(kept[0].startsWith(QDir(dir.path()).dirName() + u'\n')) << kept[0].toStdString();
    EXPECT_TRUE(kept[0].contains(u"2 photo(s) · 2 unsaved"_s)) << kept[0].toStdString();

    tray.findChild<QListWidget *>(u"stateTrayList"_s)->setCurrentRow(0);
    clickButton(tray, u"Open"_s);
    ASSERT_EQ(folders().size(), 1);
    EXPECT_EQ(folders().first()->sfDateModificationsTimeInterval, 3600);
    EXPECT_EQ(shownColumn(PicTableModel::NameColumn).size(), 2);
    EXPECT_TRUE(rows(tray).isEmpty()) << "an opened state leaves the tray";

    QUndoStack &undo = window->controller().uManager();
    undo.undo();
    EXPECT_TRUE(folders().isEmpty());
    EXPECT_EQ(rows(tray), kept) << "back in the tray";
    undo.redo();
    ASSERT_EQ(folders().size(), 1);
    EXPECT_EQ(folders().first()->sfDateModificationsTimeInterval, 3600);
    EXPECT_TRUE(rows(tray).isEmpty());
}

TEST_F(StateTrayWindowTest, TheViewKeptWithTheWorkingSetComesBackWithIt)
{
    for (const char *name : {"a", "b", "c"})
        writeJpeg(QString::fromLatin1(name), "2024:05:01 10:00:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    TimelinePane &timeline = window->timeline();
    const auto strip = [&timeline]() -> TimelineStrip & { return timeline.controller().theTimelineView_1(); };
    const auto named = [&](const char *name) {
        for (MySinglePic *pic : folders().value(0)->sfPicDetails_fullArray)
            if (pic->spName.startsWith(QLatin1String(name)))
                return pic;
        return static_cast<MySinglePic *>(nullptr);
    };
    auto *folderView = window->findChild<QTreeView *>();
    const auto folderSelected = [&] {
        return folderView->selectionModel()->isRowSelected(window->folderList().rowOf(folders().value(0)));
    };
    folderView->selectionModel()->select(window->folderList().index(window->folderList().rowOf(folders().value(0)), 0),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    timeline.chooseFilterOption(1);
    // c stands on a shelf under the main strip, selected there.
    MyTimelineView *shelfView = timeline.addTimelineForMode(TimelineStrip::Shelf);
    ASSERT_NE(shelfView, nullptr);
    timeline.controller().moveToShelf({named("c")}, named("c"), true);
    timeline.selectPics({named("a"), named("b")}, named("b"));
    ASSERT_EQ(timeline.filterOption(), 1);

    StateTrayWindow &tray = window->states().showTray();
    clickButton(tray, u"Keep Working Set"_s);
    ASSERT_TRUE(folders().isEmpty());
    timeline.chooseFilterOption(0);
    timeline.removeLastTimeline();
    tray.findChild<QListWidget *>(u"stateTrayList"_s)->setCurrentRow(0);
    clickButton(tray, u"Open"_s);
    ASSERT_EQ(folders().size(), 1);

    EXPECT_EQ(timeline.filterOption(), 1) << "the Filter menu's entry";
    EXPECT_TRUE(folderSelected());
    ASSERT_NE(strip().picSelection(), nullptr);
    EXPECT_EQ(strip().picSelection()->spName, u"b.jpg"_s);
    EXPECT_EQ(strip().multiSelection(), (QSet<MySinglePic *>{named("a"), named("b")}));
    ASSERT_EQ(timeline.views().size(), 2);
    const TimelineStrip &shelf = timeline.views().last()->strip();
    EXPECT_TRUE(shelf.isShelf());
    EXPECT_EQ(shelf.theSource(), QList<MySinglePic *>{named("c")});
    EXPECT_EQ(shelf.picSelection(), named("c"));
    EXPECT_FALSE(strip().theSource().contains(named("c"))) << "a shelved item leaves the main strip";
}

TEST_F(StateTrayWindowTest, TheChosenCategoriesComeBackInANewWindow)
{
    for (const char *name : {"a", "b", "c"})
        writeJpeg(QString::fromLatin1(name), "2024:05:01 10:00:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    window->controller().ratings().setRating(folders().value(0)->sfPicDetails_fullArray.mid(0, 2), PicRating::Keeper);
    // The Keepers row lets a and b through; the dates' heading is closed.
    const QString keepers = u"rating/keepers"_s, dates = u"times"_s;
    const auto categories = [this]() -> SidebarCategoriesView & { return window->quickSelections().categoriesView(); };
    for (const QString &key : {keepers, dates})
        ASSERT_TRUE(categories().itemForKey(key)) << key.toStdString();
    categories().itemForKey(keepers)->setSelected(true);
    categories().itemForKey(dates)->setExpanded(false);
    QCoreApplication::processEvents();
    ASSERT_EQ(namesOnStrip(), (QStringList{u"a.jpg"_s, u"b.jpg"_s}));
    clickButton(window->states().showTray(), u"Keep Working Set"_s);
    ASSERT_TRUE(folders().isEmpty());

    // A window of its own, as at the next start: it knows nothing of the rows but the state.
    window.reset();
    window = std::make_unique<MainWindow>(prefs);
    window->show();
    ASSERT_TRUE(categories().selectedItems().isEmpty());
    openKept();
    QCoreApplication::processEvents();
    ASSERT_EQ(folders().size(), 1);
    for (const QString &key : {keepers, dates})
        ASSERT_TRUE(categories().itemForKey(key)) << key.toStdString();
    EXPECT_TRUE(categories().itemForKey(keepers)->isSelected());
    EXPECT_EQ(categories().selectedItems().size(), 1);
    EXPECT_FALSE(categories().itemForKey(dates)->isExpanded());
    EXPECT_TRUE(categories().itemForKey(u"cameras"_s)->isExpanded());
    EXPECT_EQ(namesOnStrip(), (QStringList{u"a.jpg"_s, u"b.jpg"_s})) << "the strip shows what the row lets through";
}

// The window a working set was kept in comes back with it: its size and the layout settings of
// the moment, one kept by name, one by number; unless the user chose to leave the window alone.
TEST_F(StateTrayWindowTest, TheWindowKeptWithAWorkingSetComesBackUnlessTheUserLeavesItAlone)
{
    writeJpeg(u"a"_s, "2024:05:01 10:00:00");
    const QString height = u"timelineHeight_STD"_s, duration = u"slideDuration"_s;
    for (const bool leftAlone : {false, true}) {
        prefs.setBool(u"stateTrayIgnoreWindowData"_s, leftAlone);
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        prefs.setDouble(height, 333);
        prefs.setInteger(duration, 7);
        window->resize(1200, 800);
        clickButton(window->states().showTray(), u"Keep Working Set"_s);
        ASSERT_TRUE(folders().isEmpty());
        prefs.setDouble(height, 120);
        prefs.setInteger(duration, 3);
        window->resize(1000, 900);

        openKept();
        ASSERT_EQ(folders().size(), 1);
        EXPECT_EQ(prefs.doubleForKey(height), leftAlone ? 120 : 333);
        EXPECT_EQ(prefs.integerForKey(duration), leftAlone ? 3 : 7);
        EXPECT_EQ(window->size(), leftAlone ? QSize(1000, 900) : QSize(1200, 800));
        window->controller().theDataSource().releaseFolder(folders().first());
    }
}

// Handed to the tray, the work leaves nothing of its items in the side views: the previews held
// an item of a folder already deleted.
TEST_F(StateTrayWindowTest, KeepingTheWorkLeavesNoneOfItsItemsInTheSideViews)
{
    QStringList folderPaths;
    for (const QString &camera : {u"camA"_s, u"camB"_s}) {
        folderPaths.append(QDir(dir.path()).filePath(camera));
        QDir().mkpath(folderPaths.last());
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        buildJpeg({.exif = tags}).write(folderPaths.last(), camera + u"-1"_s);
    }
    ASSERT_TRUE(waitForImport([&] { window->importPaths(folderPaths); }));
    ASSERT_EQ(folders().size(), 2);
    auto *folderView = window->findChild<QTreeView *>();
    folderView->selectionModel()->select(window->folderList().index(window->folderList().rowOf(folders().last()), 0),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    auto *list = window->findChild<QTableView *>();
    list->selectionModel()->select(list->model()->index(0, 0),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ASSERT_EQ(window->previewsBar().shownPics().size(), 1);

    clickButton(window->states().showTray(), u"Keep Working Set"_s);
    ASSERT_TRUE(folders().isEmpty());
    EXPECT_TRUE(window->previewsBar().shownPics().isEmpty());
}

} // namespace
