// The grid's arithmetic: columns from the width alone, cells and hits, and where the arrows go.

#include "core/MySinglePic.h"
#include "viewing/VQSController.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace orv::test {
namespace {

class VQSControllerTest : public ::testing::Test
{
protected:
    void setCount(int n)
    {
        pics.clear();
        QList<MySinglePic *> source;
        for (int i = 0; i < n; ++i)
            source.append(pics.emplace_back(std::make_unique<MySinglePic>(QStringLiteral("%1.jpg").arg(i), nullptr, 0, OptionalDate())).get());
        grid.setSource(source);
    }

    std::vector<std::unique_ptr<MySinglePic>> pics;
    VQSController grid;
};

TEST_F(VQSControllerTest, ColumnsFollowTheWidthAndCellsFillIt)
{
    grid.setViewWidth(1000);
    grid.setThumbSizeTargetValue(180);
    // 980 usable: five cells of 180 with their padding, grown to fill the row.
    EXPECT_EQ(grid.currentColumnCount(), 5);
    EXPECT_EQ(grid.vqsWidth(), 188);
    for (int n : {0, 3, 100000}) {
        setCount(n);
        EXPECT_EQ(grid.currentColumnCount(), 5) << n << " items";
    }
    const QRectF last = grid.frameForPicAtIndex(4);
    EXPECT_LE(last.right(), 1000 - grid.paddingView());
    grid.setViewWidth(300);
    EXPECT_EQ(grid.currentColumnCount(), 1);
    grid.setThumbSizeTargetValue(1); // never below the smallest cell
    EXPECT_GE(grid.vqsWidth(), VQSController::minimumCellSide);
}

TEST_F(VQSControllerTest, HitsFindCellsAndSnapBehindTheLastItem)
{
    grid.setViewWidth(1000);
    grid.setThumbSizeTargetValue(180);
    setCount(12); // rows of 5, 5, 2
    for (qsizetype i : {0, 4, 5, 11})
        EXPECT_EQ(grid.picIndexAtLocalPoint(grid.frameForPicAtIndex(i).center(), false), i);
    const QRectF eleventh = grid.frameForPicAtIndex(11);
    const QPointF behind(eleventh.right() + 300, eleventh.center().y());
    EXPECT_EQ(grid.picIndexAtLocalPoint(behind, false), -1);
    EXPECT_EQ(grid.picIndexAtLocalPoint(behind, true), 11);
    EXPECT_EQ(grid.picIndexAtLocalPoint({eleventh.center().x(), eleventh.bottom() + 2000}, true), 11);
    // The padding between cells is no item.
    EXPECT_EQ(grid.picIndexAtLocalPoint({grid.frameForPicAtIndex(0).right() + 2, eleventh.center().y()}, false), -1);
    EXPECT_EQ(grid.rowCount(), 3);
    const ThumbRange second = grid.visibleRange(grid.yForRow(1) + 1, 10);
    EXPECT_EQ(second.first, 5);
    EXPECT_EQ(second.count, 5);
    EXPECT_EQ(grid.visibleRange(0, grid.contentHeight()).count, 12);
}

TEST_F(VQSControllerTest, ArrowsStepByOneAndByRowsAndStopAtTheEdges)
{
    using D = VQSController::Direction;
    grid.setViewWidth(1000);
    grid.setThumbSizeTargetValue(180);
    setCount(12);
    EXPECT_EQ(grid.selectFrom(6, D::Left), 5);
    EXPECT_EQ(grid.selectFrom(6, D::Right), 7);
    EXPECT_EQ(grid.selectFrom(6, D::Up), 1);
    EXPECT_EQ(grid.selectFrom(1, D::Up), -1);       // first row: nothing moves
    EXPECT_EQ(grid.selectFrom(1, D::Down), 6);
    EXPECT_EQ(grid.selectFrom(8, D::Down), 11);     // onto the last item of a shorter row
    EXPECT_EQ(grid.selectFrom(10, D::Down), -1);    // last row
    EXPECT_EQ(grid.selectFrom(0, D::Left), -1);
    EXPECT_EQ(grid.selectFrom(11, D::Right), -1);
    EXPECT_EQ(grid.selectFrom(-1, D::Down), 0);
    EXPECT_EQ(grid.selectFrom(-1, D::Up), 11);
    setCount(0);
    EXPECT_EQ(grid.selectFrom(-1, D::Right), -1);
}

TEST(SourceRatingsTest, FindsWhichRatingsASourceHolds)
{
    MySinglePic keeper(QStringLiteral("k.jpg"), nullptr, 0, {}), neutral(QStringLiteral("n.jpg"), nullptr, 0, {});
    keeper.isKeeper = true;
    const SourceRatings ratings = SourceRatings::of({&keeper, &neutral});
    EXPECT_TRUE(ratings.hasKeepers);
    EXPECT_TRUE(ratings.hasNeutrals);
    EXPECT_FALSE(ratings.hasRejects);
}

} // namespace
} // namespace orv::test
