// Looking and choosing in the window, driven by real key events offscreen: the grid over the
// strip, ratings by keys with undo, the Keepers filter, and the full-screen view with its
// slideshow stepping over a file that cannot be decoded.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"
#include "ui/FullScreenView.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelinePane.h"
#include "ui/VQSView.h"
#include "ui/ViewingActions.h"

#include <QAction>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

namespace orv::test {
namespace {

class RatingGridWindowTest : public WindowFixture
{
protected:
    // Eight photos a minute apart, in one folder.
    void importEight()
    {
        for (int i = 0; i < 8; ++i)
            writeJpeg(QStringLiteral("IMG_%1").arg(i), QStringLiteral("2024:05:01 10:0%1:00").arg(i).toLatin1().constData());
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        ASSERT_EQ(strip().theSource().size(), 8);
    }
    TimelineStrip &strip() const { return window->timeline().mainView().strip(); }
    QAction *filterNamed(const QString &name) const
    {
        for (QAction *action : window->timeline().filterMenu()->actions())
            if (action->text() == name)
                return action;
        return nullptr;
    }
    void activate(QWidget &widget)
    {
        widget.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
        widget.setFocus();
    }
};

TEST_F(RatingGridWindowTest, KeysMoveAndRateInTheGridAndTheKeepersFilterFollows)
{
    importEight();
    ViewingActions &viewing = window->viewing();
    viewing.gridAction()->trigger();
    VQSView &grid = viewing.grid();
    ASSERT_TRUE(grid.isVisible());
    grid.resize(grid.width(), 400);
    grid.grid().setThumbSizeTargetValue((grid.viewport()->width() - 40) / 4.0);
    grid.sourceChanged();
    const int columns = grid.grid().currentColumnCount();
    ASSERT_GE(columns, 2);
    ASSERT_LT(columns, 8);
    activate(*window);

    // A click selects the first item; the arrows step by one and by a row.
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.grid().frameForPicAtIndex(0).center().toPoint());
    ASSERT_EQ(strip().picSelection(), strip().theSource().at(0));
    QTest::keyClick(&grid, Qt::Key_Right);
    EXPECT_EQ(strip().picSelection(), strip().theSource().at(1));
    QTest::keyClick(&grid, Qt::Key_Down);
    EXPECT_EQ(strip().picSelection(), strip().theSource().at(1 + columns));
    QTest::keyClick(&grid, Qt::Key_Up);
    QTest::keyClick(&grid, Qt::Key_Up); // first row: nothing moves
    EXPECT_EQ(strip().picSelection(), strip().theSource().at(1));

    // Laid out while it had hardly a height, as at a restore, the grid shows the main item
    // whole once it has its size.
    grid.resize(grid.width(), 20);
    grid.sourceChanged();
    grid.resize(grid.width(), 400);
    const QRectF main = grid.grid().frameForPicAtIndex(1);
    EXPECT_GE(main.top(), grid.verticalScrollBar()->value());
    EXPECT_LE(main.bottom(), grid.verticalScrollBar()->value() + grid.viewport()->height());

    // Three keepers and a reject by keys.
    const QList<MySinglePic *> items = strip().theSource();
    QTest::keyClick(&grid, Qt::Key_K);
    QTest::keyClick(&grid, Qt::Key_Right);
    QTest::keyClick(&grid, Qt::Key_K);
    QTest::keyClick(&grid, Qt::Key_Right);
    QTest::keyClick(&grid, Qt::Key_K);
    QTest::keyClick(&grid, Qt::Key_Right);
    QTest::keyClick(&grid, Qt::Key_X);
    MySingleFolder *folder = MySingleFolder::of(*items.at(1));
    EXPECT_EQ(folder->keepers, 3);
    EXPECT_EQ(folder->rejects, 1);
    EXPECT_TRUE(items.at(1)->isKeeper && items.at(2)->isKeeper && items.at(3)->isKeeper);
    EXPECT_TRUE(items.at(4)->isRejected);
    // Each rating is one undo step.
    QUndoStack &undo = window->controller().uManager();
    EXPECT_EQ(undo.count(), 4);
    undo.undo();
    EXPECT_EQ(folder->rejects, 0);
    undo.redo();
    EXPECT_EQ(folder->rejects, 1);

    // Keepers only: the grid shows the three.
    QAction *keepers = filterNamed(QStringLiteral("Keepers"));
    ASSERT_TRUE(keepers);
    keepers->trigger();
    EXPECT_EQ(grid.grid().theSource(), (QList<MySinglePic *>{items.at(1), items.at(2), items.at(3)}));
    // Rated neutral under the key, an item stays until the grid's refilter comes.
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.grid().frameForPicAtIndex(0).center().toPoint());
    QTest::keyClick(&grid, Qt::Key_N);
    EXPECT_EQ(grid.grid().count(), 3);
    EXPECT_TRUE(window->timeline().controller().isRefilterPending());
    window->timeline().controller().endFilterTimerNow();
    EXPECT_EQ(grid.grid().theSource(), (QList<MySinglePic *>{items.at(2), items.at(3)}));

    viewing.gridAction()->trigger();
    EXPECT_FALSE(grid.isVisible());
}

TEST_F(RatingGridWindowTest, FullScreenStepsPrefetchesAndGoesOnPastAFileThatCannotBeDecoded)
{
    importEight();
    // The fourth photo's image data is cut away: it still has its date, but no picture.
    const QString broken = strip().theSource().at(3)->spPath();
    {
        QFile file(broken);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.resize(file.size() / 3));
    }
    ViewingActions &viewing = window->viewing();
    FullScreenView &full = viewing.fullScreen();
    viewing.openFullScreen(strip().theSource().at(2));
    activate(full);
    EXPECT_EQ(full.sequence().current(), strip().theSource().at(2));
    full.previews().waitForDone();
    QCoreApplication::processEvents();
    // The next and the previous were decoded ahead, at most at the screen's size.
    const QImage next = full.previews().request(strip().theSource().at(1)->spPath());
    ASSERT_FALSE(next.isNull());
    EXPECT_LE(next.width(), full.previews().targetSize().width());
    EXPECT_TRUE(full.previews().isUndecodable(broken));

    QTest::keyClick(&full, Qt::Key_Right);
    EXPECT_EQ(full.sequence().current()->spPath(), broken);
    EXPECT_EQ(strip().picSelection()->spPath(), broken); // the strip follows
    QTest::keyClick(&full, Qt::Key_Right);
    EXPECT_EQ(full.sequence().current(), strip().theSource().at(4));
    EXPECT_EQ(full.sequence().slideCountText(), QStringLiteral("5 / 8"));

    // Rated in full screen, then only keepers shown: the walk holds the one keeper.
    QTest::keyClick(&full, Qt::Key_K);
    EXPECT_TRUE(strip().theSource().at(4)->isKeeper);
    QTest::keyClick(&full, Qt::Key_2); // neutrals hidden
    QTest::keyClick(&full, Qt::Key_3); // rejects hidden
    EXPECT_EQ(full.sequence().walk(), QList<MySinglePic *>{strip().theSource().at(4)});
    // A slideshow of one still does not start; of all eight it does, and stops again.
    QTest::keyClick(&full, Qt::Key_S);
    EXPECT_FALSE(full.isSlideShowActive());
    QTest::keyClick(&full, Qt::Key_2);
    QTest::keyClick(&full, Qt::Key_Plus);
    EXPECT_EQ(full.slideDuration(), 6);
    QTest::keyClick(&full, Qt::Key_S);
    EXPECT_TRUE(full.isSlideShowActive());
    QTest::keyClick(&full, Qt::Key_S);
    EXPECT_FALSE(full.isSlideShowActive());
    EXPECT_FALSE(full.isDisplaySleepDisabled());
    QTest::keyClick(&full, Qt::Key_Escape);
    EXPECT_FALSE(full.isVisible());
}

} // namespace
} // namespace orv::test
