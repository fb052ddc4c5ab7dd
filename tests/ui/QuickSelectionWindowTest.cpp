// Choosing classes of items in the window, offscreen: a rectangle dragged in the grid with real
// mouse events, the Quick Selection menu, and the Categories side view filtering the strip
// while ratings, date changes, undo and redo go on, its alerts closed until opened.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/QuickSelectionActions.h"
#include "ui/SidebarCategoriesView.h"
#include "ui/TimelinePane.h"
#include "ui/VQSView.h"
#include "ui/ViewingActions.h"

#include <QAction>
#include <QDate>
#include <QMenu>
#include <QTest>

namespace orv::test {
namespace {

class QuickSelectionWindowTest : public WindowFixture
{
protected:
    // Eight photos a minute apart, in one folder.
    void importEight()
    {
        for (int i = 0; i < 8; ++i)
            writeJpeg(QStringLiteral("IMG_%1").arg(i), QStringLiteral("2024:05:01 10:0%1:00").arg(i).toLatin1().constData());
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        items = strip().theSource();
        ASSERT_EQ(items.size(), 8);
        folder = MySingleFolder::of(*items.first());
    }
    TimelineStrip &strip() const { return window->timeline().mainView().strip(); }
    QSet<MySinglePic *> itemsAt(const QList<int> &indexes) const
    {
        QSet<MySinglePic *> pics;
        for (int i : indexes)
            pics.insert(items.at(i));
        return pics;
    }

    // The grid open, four columns wide.
    VQSView &openGrid()
    {
        window->viewing().gridAction()->trigger();
        VQSView &grid = window->viewing().grid();
        grid.resize(grid.width(), 500);
        grid.grid().setThumbSizeTargetValue((grid.viewport()->width() - 60) / 4.0);
        grid.sourceChanged();
        return grid;
    }

    // A press beside the cells, a move with the button held, the release there.
    static void dragRectangle(VQSView &grid, QPoint from, QPoint to, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(grid.viewport(), Qt::LeftButton, keys, from);
        QMouseEvent move(QEvent::MouseMove, to, grid.viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, keys);
        QApplication::sendEvent(grid.viewport(), &move);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, keys, to);
    }

    // An entry of the Quick Selection menu as it stands when opened.
    QAction *quickSelectionEntry(const QString &key)
    {
        QMenu *menu = window->quickSelections().menu();
        Q_EMIT menu->aboutToShow();
        return menu->findChild<QAction *>(key);
    }

    QList<MySinglePic *> items;
    MySingleFolder *folder = nullptr;
};

TEST_F(QuickSelectionWindowTest, ARectangleDraggedInTheGridSelectsTheCellsItTouches)
{
    importEight();
    VQSView &grid = openGrid();
    const VQSController &cells = grid.grid();
    ASSERT_EQ(cells.currentColumnCount(), 4);
    // Beside the first cell, above and left of it.
    const QPoint corner(2, 2);
    const QPoint secondRowSecondColumn = cells.frameForPicAtIndex(5).center().toPoint();

    // Where the folder changes as a whole a press beside the cells starts nothing.
    dragRectangle(grid, corner, secondRowSecondColumn);
    EXPECT_TRUE(strip().multiSelection().isEmpty());

    window->controller().dateChanges().changeEditMode({folder}, MySingleFolder::EditSeparately);
    dragRectangle(grid, corner, secondRowSecondColumn);
    EXPECT_EQ(strip().multiSelection(), itemsAt({0, 1, 4, 5}));
    EXPECT_TRUE(itemsAt({0, 1, 4, 5}).contains(strip().picSelection()));

    // Shift keeps what was selected and adds; Ctrl toggles against it.
    const QPoint belowLast(cells.frameForPicAtIndex(7).right() + 4, cells.frameForPicAtIndex(7).bottom() + 4);
    dragRectangle(grid, belowLast, cells.frameForPicAtIndex(7).center().toPoint(), Qt::ShiftModifier);
    EXPECT_EQ(strip().multiSelection(), itemsAt({0, 1, 4, 5, 7}));
    dragRectangle(grid, belowLast, cells.frameForPicAtIndex(6).center().toPoint(), Qt::ControlModifier);
    EXPECT_EQ(strip().multiSelection(), itemsAt({0, 1, 4, 5, 6}));
    // A plain rectangle starts afresh; the strip and the list show the same selection.
    dragRectangle(grid, belowLast, cells.frameForPicAtIndex(3).center().toPoint());
    EXPECT_EQ(strip().multiSelection(), itemsAt({3, 7}));
    EXPECT_TRUE(strip().isSelected(items.at(3)));
}

TEST_F(QuickSelectionWindowTest, TheMenuSelectsAClassAndTheCategoriesFilterThroughRatingsAndUndo)
{
    importEight();
    AppController &controller = window->controller();
    controller.ratings().setRating({items.at(1), items.at(4), items.at(6)}, PicRating::Keeper);

    // Several keepers in a folder that changes as a whole: only the entry that switches it.
    QAction *keepers = quickSelectionEntry(QStringLiteral("quickSelections_keepers"));
    ASSERT_TRUE(keepers);
    EXPECT_EQ(keepers->text(), QStringLiteral("Keepers (3)"));
    EXPECT_FALSE(keepers->isEnabled());
    QAction *switching = quickSelectionEntry(QStringLiteral("quickSelections_keepers_withModeChange"));
    ASSERT_TRUE(switching);
    switching->trigger();
    EXPECT_EQ(folder->sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(strip().multiSelection(), itemsAt({1, 4, 6}));
    // Now the entry itself selects.
    QAction *neutrals = quickSelectionEntry(QStringLiteral("quickSelections_neutrals"));
    ASSERT_TRUE(neutrals && neutrals->isEnabled());
    neutrals->trigger();
    EXPECT_EQ(strip().multiSelection(), itemsAt({0, 2, 3, 5, 7}));

    // The selection kept as the custom selection comes back from the menu.
    quickSelectionEntry(QStringLiteral("quickSelectionSaveCustomSelection"))->trigger();
    EXPECT_EQ(folder->quickSelection.size(), 5);
    window->timeline().selectPic(items.at(0));
    QAction *custom = quickSelectionEntry(QStringLiteral("quickSelections_custom"));
    ASSERT_TRUE(custom);
    EXPECT_EQ(custom->text(), QStringLiteral("Custom Selection (5)"));
    custom->trigger();
    EXPECT_EQ(strip().multiSelection(), itemsAt({0, 2, 3, 5, 7}));

    // The Keepers row filters the strip; a rating and its undo move the row's count and the strip.
    SidebarCategoriesView &categories = window->quickSelections().categoriesView();
    const auto count = [&categories](const QString &key) {
        const QTreeWidgetItem *row = categories.itemForKey(key);
        return row ? row->text(SidebarCategoriesView::CountColumn) : QString();
    };
    // As a click does: the row is chosen, then the window goes on.
    const auto choose = [&categories](const QString &key, bool chosen) {
        if (QTreeWidgetItem *row = categories.itemForKey(key))
            row->setSelected(chosen);
        QCoreApplication::processEvents();
    };
    const QString keeperRow = QStringLiteral("rating/keepers");
    EXPECT_EQ(count(keeperRow), QStringLiteral("3"));
    choose(keeperRow, true);
    EXPECT_EQ(strip().theSource(), (QList<MySinglePic *>{items.at(1), items.at(4), items.at(6)}));
    controller.ratings().setRating({items.at(4)}, PicRating::Neutral);
    EXPECT_EQ(strip().theSource(), (QList<MySinglePic *>{items.at(1), items.at(6)}));
    EXPECT_EQ(count(keeperRow), QStringLiteral("2"));
    controller.uManager().undo();
    EXPECT_EQ(strip().theSource(), (QList<MySinglePic *>{items.at(1), items.at(4), items.at(6)}));
    controller.uManager().redo();
    EXPECT_EQ(strip().theSource().size(), 2);

    // Back to all rows: the strip shows everything again.
    choose(QStringLiteral("noFilter"), true);
    choose(keeperRow, false);
    EXPECT_EQ(strip().theSource(), items);

    // A folder imported while the camera's row is chosen joins the row and the strip.
    const QString camera = QStringLiteral("camera/") + items.first()->pivMakeModel;
    categories.clearSelection();
    choose(camera, true);
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("more")));
    writeJpeg(QStringLiteral("more/IMG_8"), "2024:05:01 11:00:00");
    writeJpeg(QStringLiteral("more/IMG_9"), "2024:05:01 11:01:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.filePath(QStringLiteral("more"))}); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(count(camera), QStringLiteral("10"));
    EXPECT_EQ(strip().theSource().size(), 10);
}

TEST_F(QuickSelectionWindowTest, FromTodayRowsFilterByClicksAndAlertsStayClosedUntilOpened)
{
    // Two photos taken yesterday at noon and one without date tags (dated by its file: today).
    const QByteArray yesterday = QDate::currentDate().addDays(-1).toString(u"yyyy:MM:dd 12:00:00").toLatin1();
    writeJpeg(QStringLiteral("IMG_1"), yesterday.constData());
    writeJpeg(QStringLiteral("IMG_2"), yesterday.constData());
    writeJpeg(QStringLiteral("IMG_3"));
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    const QList<MySinglePic *> all = strip().theSource();
    ASSERT_EQ(all.size(), 3);
    MySingleFolder *folder = MySingleFolder::of(*all.first());
    SidebarCategoriesView &categories = window->quickSelections().categoriesView();
    const auto count = [&categories](const QString &key) {
        const QTreeWidgetItem *row = categories.itemForKey(key);
        return row ? row->text(SidebarCategoriesView::CountColumn) : QString();
    };
    const auto click = [&categories](const QString &key, QPoint offset = {}) {
        QTreeWidgetItem *row = categories.itemForKey(key);
        ASSERT_TRUE(row) << key.toStdString();
        categories.scrollToItem(row);
        const QRect rect = categories.visualItemRect(row);
        QTest::mouseClick(categories.viewport(), Qt::LeftButton, {}, QPoint(rect.left() + 4, rect.center().y()) + offset);
        QCoreApplication::processEvents();
    };

    // The undated photo is under the alerts, which show closed.
    const QString alerts = QStringLiteral("withAlert");
    ASSERT_TRUE(categories.itemForKey(alerts));
    EXPECT_EQ(count(alerts), QStringLiteral("1"));
    EXPECT_EQ(count(QStringLiteral("alert/missingDate")), QStringLiteral("1"));
    EXPECT_FALSE(categories.itemForKey(alerts)->isExpanded());
    EXPECT_TRUE(window->quickSelections().closedCategories().contains(alerts));

    // A click on Yesterday filters the strip to the two photos.
    const QString yesterdayRow = QStringLiteral("relativeTime/days_2");
    EXPECT_EQ(categories.itemForKey(yesterdayRow)->text(SidebarCategoriesView::TitleColumn), QStringLiteral("Yesterday"));
    click(yesterdayRow);
    EXPECT_EQ(strip().theSource(), all.mid(0, 2));

    // A click on the alerts' arrow opens them; they stay open through a rating and a date change
    // that moves all a day back (the undated photo to yesterday), and Yesterday stays chosen.
    click(alerts, QPoint(-categories.indentation() / 2 - 4, 0));
    EXPECT_TRUE(categories.itemForKey(alerts)->isExpanded());
    window->controller().ratings().setRating({all.at(2)}, PicRating::Keeper);
    ASSERT_EQ(window->controller().dateChanges().dragChangedDatesWithDiff({folder}, -86400.0), DateChangeResult::Changed);
    QCoreApplication::processEvents();
    EXPECT_EQ(count(QStringLiteral("relativeTime/days_3")), QStringLiteral("2"));
    EXPECT_EQ(count(yesterdayRow), QStringLiteral("1"));
    EXPECT_EQ(strip().theSource(), all.mid(2));
    EXPECT_TRUE(categories.itemForKey(alerts)->isExpanded());
    window->controller().uManager().undo();
    QCoreApplication::processEvents();
    EXPECT_EQ(count(yesterdayRow), QStringLiteral("2"));
    EXPECT_EQ(strip().theSource(), all.mid(0, 2));
    EXPECT_FALSE(window->quickSelections().closedCategories().contains(alerts));

    // A kept view brings back the chosen row and the alerts open or closed as they were.
    window->quickSelections().restoreCategories({yesterdayRow}, {});
    EXPECT_TRUE(categories.itemForKey(alerts)->isExpanded());
    EXPECT_EQ(strip().theSource(), all.mid(0, 2));
    window->quickSelections().restoreCategories({}, {alerts});
    EXPECT_FALSE(categories.itemForKey(alerts)->isExpanded());
    EXPECT_EQ(strip().theSource(), all);
}

} // namespace
} // namespace orv::test
