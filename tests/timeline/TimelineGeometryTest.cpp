// The strip's layout formulas against values worked out by hand.

#include "timeline/TimelineGeometry.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

struct SizeCase
{
    double timelineHeight, stripHeight;
    bool secondStrip;
    int s;
    double margin, roundValue, extension, selectionBorder, markerWidth;
};

TEST(TimelineGeometryTest, MeasuresFollowTheHeights)
{
    const SizeCase cases[] = {
        {128, 400, false, 57, 26, 3, 7, 5, 4},   // limit 222, a = 128
        {222, 200, false, 67, 26, 3, 7, 5, 4},   // strip below 314: a = 144
        {222, 344, false, 92, 32, 4, 7, 5, 4},   // between: a = 144 + 78 * 30 / 60 = 183
        {222, 172, true, 92, 32, 4, 7, 5, 4},    // second strip: 144 + 78 * 14 / 28 = 183
        {300, 500, false, 119, 36, 5, 8, 6, 5},  // clamped to 222
        {50, 400, false, 33, 26, 2, 7, 5, 4},    // clamped to 82
    };
    for (const SizeCase &c : cases) {
        TimelineGeometry geometry;
        geometry.changedTimelineViewHeight(c.timelineHeight, c.stripHeight, c.secondStrip);
        SCOPED_TRACE(c.timelineHeight);
        EXPECT_EQ(geometry.baseSize(), c.s);
        EXPECT_EQ(geometry.thumbSize(), c.s - 2);
        EXPECT_EQ(geometry.theThumbMargin(), c.margin);
        EXPECT_EQ(geometry.borderMarginHorizontal_orig(), 2 * (c.margin - 8));
        EXPECT_EQ(geometry.roundValue(), c.roundValue);
        EXPECT_EQ(geometry.theThumbExtention(), c.extension);
        EXPECT_EQ(geometry.addBorderSelection(), c.selectionBorder);
        EXPECT_EQ(geometry.markerWidth(), c.markerWidth);
    }
    TimelineGeometry geometry;
    geometry.changedTimelineViewHeight(128, 400, false);
    EXPECT_DOUBLE_EQ(geometry.thumbMovementFromCenter(), 57 / 2.0 - 57 / 6.0);
}

TEST(TimelineGeometryTest, ZoomStepsThroughTheSizeModesAndNamesTheRoomTheyNeed)
{
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(128, 1), 160);
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(128, -1), 100);
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(140, 1), 160); // a height between modes
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(140, -1), 128);
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(100, 3), 190);
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(222, 1), 222);
    EXPECT_EQ(TimelineGeometry::zoomedTimelineHeight(82, -1), 82);
    EXPECT_EQ(TimelineGeometry::sizeModeForHeight(128), 2);
    EXPECT_EQ(TimelineGeometry::sizeModeForHeight(140), 2);
    EXPECT_EQ(TimelineGeometry::sizeModeForHeight(50), 0);
    EXPECT_EQ(TimelineGeometry::sizeModeForHeight(300), TimelineGeometry::sizeModeCount - 1);

    EXPECT_EQ(TimelineGeometry::mainStripHeightFor(144, false), 0);
    EXPECT_EQ(TimelineGeometry::mainStripHeightFor(183, false), 344);
    EXPECT_EQ(TimelineGeometry::mainStripHeightFor(222, false), 374);
    EXPECT_EQ(TimelineGeometry::mainStripHeightFor(222, true), 186);
    // Every mode given its room takes full effect: the thumbnails grow mode by mode, to 117.
    double previous = 0;
    for (const int height : TimelineGeometry::sizeModeHeights) {
        TimelineGeometry geometry;
        geometry.changedTimelineViewHeight(height, TimelineGeometry::mainStripHeightFor(height, false), false);
        TimelineGeometry unlimited;
        unlimited.changedTimelineViewHeight(height, 1000, false);
        EXPECT_EQ(geometry.thumbSize(), unlimited.thumbSize()) << height;
        EXPECT_GT(geometry.thumbSize(), previous);
        previous = geometry.thumbSize();
    }
    EXPECT_EQ(previous, 117);
}

TEST(TimelineGeometryTest, PositionsHitTestsAndRanges)
{
    TimelineGeometry geometry; // s 57: thumbnails 55, margin 26, stride 81, left margin 36
    geometry.changedTimelineViewHeight(128, 400, false);
    geometry.updateSize(700, 200, 100);
    EXPECT_EQ(geometry.minXForIndex(3), 36 + 3 * 81);
    EXPECT_EQ(geometry.totalWidth(), 2 * 36 + 100 * 81 - 26);

    // V = 191, c = 68, m = 19 uncorrected: bottoms 90 and 52 above the strip's foot.
    EXPECT_EQ(geometry.activeMoveTop(), 90);
    EXPECT_EQ(geometry.activeMoveBot(), 52);
    // Drawn rectangle: grown by (5 - 2) + 7 on each side.
    EXPECT_EQ(geometry.thumbRectCalculatedAtIndex(2, true), QRectF(36 + 162 - 10, 200 - 90 - 55 - 10, 75, 75));
    EXPECT_TRUE(geometry.thumbRectCalculatedAtIndex(100, true).isNull());

    EXPECT_EQ(geometry.picIndexAtX(150, 0), 1);
    EXPECT_EQ(geometry.picIndexAtX(180, 0), -1); // in the gap after item 1
    EXPECT_EQ(geometry.picIndexAtX(180, 8), 1);  // within a selection border
    EXPECT_EQ(geometry.picIndexAtX(0, 0), -1);
    EXPECT_EQ(geometry.picIndexAtX(36 + 100 * 81, 10), -1); // beyond the end
    EXPECT_EQ(geometry.picIndexAtHorizontalMouseLocation(-50, true), 0);
    EXPECT_EQ(geometry.picIndexAtHorizontalMouseLocation(1e6, true), 99);
    EXPECT_EQ(geometry.picIndexAtHorizontalMouseLocation(1e6, false), -1);

    const ThumbRange range = geometry.visibleThumbsRange(400, 300);
    EXPECT_EQ(range.first, 4); // floor(364 / 81)
    EXPECT_EQ(range.count, 5); // floor(300 / 81) + 2
    EXPECT_EQ(geometry.visibleThumbsRange(400, 300, 2).first, 2);
    EXPECT_EQ(geometry.visibleThumbsRange(8000, 700).end(), 100);

    // A low strip: the label row pushes the lowered row up, m stops at 5 (c = 28).
    geometry.updateSize(700, 120, 100);
    EXPECT_EQ(geometry.correctedThumbMoveFromCenter(), 5);
    EXPECT_EQ(geometry.activeMoveTop(), 36); // ceiling, as m was corrected
    EXPECT_EQ(geometry.activeMoveBot(), 26);

    // The extra scroll area lets the first item reach the centre.
    geometry.setExtraScrollArea(true);
    geometry.updateSize(800, 200, 100);
    EXPECT_EQ(geometry.borderMarginHorizontal(), 372);
    EXPECT_EQ(geometry.xtraScrollAreaWidth(), 336);
}

} // namespace
