// Selections, drops and keyboard moves on a strip of items made in memory: the place a pointer's
// zone gives, the second the dragged item lands on, and the one undo step each gesture leaves.

#include "app/KeyboardLiveMove.h"
#include "app/TimelineDrop.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "selection/PicSource.h"
#include "timeline/TimelineSelection.h"
#include "timeline/TimelineStrip.h"
#include "support/QtPrinters.h"

#include <QUndoStack>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

using namespace orv;

namespace {

const Instant tenAm = Instant::fromUtc(2024, 5, 1, 10);
constexpr double outerGap = 300;

class TimelineInteractionTest : public ::testing::Test
{
protected:
    MySinglePic *addPic(MySingleFolder &folder, const QString &name, double secondsAfterTen)
    {
        MySinglePic *pic = folder.adoptPic(
            std::make_unique<MySinglePic>(name, &folder, SpTypeExifOriginal, tenAm.addingSeconds(secondsAfterTen)));
        pic->spName = name;
        folder.sfUpdatePicsFromAndTill();
        all.append(pic);
        return pic;
    }

    // The strip's order: date in force, then name.
    QList<MySinglePic *> strip() const
    {
        QList<MySinglePic *> sorted = all;
        std::stable_sort(sorted.begin(), sorted.end(), [](const MySinglePic *a, const MySinglePic *b) {
            const double x = a->spDateTimeModified_sort()->secondsSinceEpoch();
            const double y = b->spDateTimeModified_sort()->secondsSinceEpoch();
            return x != y ? x < y : a->spName < b->spName;
        });
        return sorted;
    }

    static double at(const MySinglePic *pic) { return pic->spDateTimeModified()->secondsSince(tenAm); }

    // Drops the single item of the separate folder on the zone of the item at index, as the
    // pointer would; gives the seconds after ten it lands on, and takes the drop back.
    double dropAt(MySinglePic *dragged, qsizetype index, DropZone zone)
    {
        const double before = at(dragged);
        const QList<MySinglePic *> source = strip();
        const TimelineDrag drag = TimelineDrag::of(source, dragged, {}, {MySingleFolder::of(*dragged)});
        const DropPlace place = findDropPlace(source, drag, index, zone, false);
        EXPECT_TRUE(place.isValid());
        TimelineDrop(source, drag, outerGap).perform(changes, place);
        const double landed = at(dragged);
        EXPECT_EQ(stack.count(), 1) << "a drop is one undo step";
        stack.undo();
        EXPECT_EQ(at(dragged), before);
        stack.clear();
        return landed;
    }

    QList<MySinglePic *> all;
    MySingleFolder early{QStringLiteral("/early"), false};
    MySingleFolder late{QStringLiteral("/late"), false};
    MySingleFolder separate{QStringLiteral("/separate"), true};
    QUndoStack stack;
    DateChanges changes{stack, DateChangeListener{}};
};

TEST_F(TimelineInteractionTest, ADropTakesItsSecondFromTheNeighboursOfThePlace)
{
    MySinglePic *y = addPic(separate, "y.jpg", -1000);
    addPic(early, "a.jpg", 100);
    addPic(early, "b.jpg", 100);
    addPic(early, "c.jpg", 101);
    addPic(early, "d.jpg", 500);
    MySinglePic *x = addPic(separate, "x.jpg", 1000);
    // Strip: y -1000, a 100, b 100, c 101, d 500, x 1000.

    EXPECT_EQ(dropAt(x, 0, DropZone::LeftMargin), -1000 - outerGap) << "the left gap of the first item";
    EXPECT_EQ(dropAt(y, 5, DropZone::RightMargin), 1000 + outerGap) << "the right gap of the last item";
    EXPECT_EQ(dropAt(x, 2, DropZone::LeftHalf), 99);
    EXPECT_EQ(dropAt(x, 3, DropZone::RightHalf), 102);
    EXPECT_EQ(dropAt(x, 2, DropZone::LeftMargin), 100) << "neighbours with equal seconds: their second";
    // Neighbours one second apart: the left gap keeps the target's second, the right one adds it.
    EXPECT_EQ(dropAt(x, 3, DropZone::LeftMargin), 101);
    EXPECT_EQ(dropAt(x, 2, DropZone::RightMargin), 101);
    EXPECT_EQ(dropAt(x, 3, DropZone::RightMargin), 101 + 200) << "halfway, rounded towards the target";
    EXPECT_EQ(dropAt(x, 4, DropZone::LeftMargin), 500 - 199);
}

TEST_F(TimelineInteractionTest, OverItsOwnSelectionADragHasNoPlaceAndBesideItTheGapFallsOntoTheTarget)
{
    addPic(early, "a.jpg", 0);
    MySinglePic *m = addPic(separate, "m.jpg", 10);
    MySinglePic *n = addPic(separate, "n.jpg", 20);
    addPic(separate, "o.jpg", 25);
    addPic(early, "b.jpg", 30);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = TimelineDrag::of(source, m, {m, n}, {&separate});
    ASSERT_EQ(drag.moving, (QList<MySinglePic *>{m, n}));

    EXPECT_FALSE(findDropPlace(source, drag, 2, DropZone::LeftHalf, false).isValid());
    // The gap right of a holds m: it collapses onto a's right half.
    const DropPlace beside = findDropPlace(source, drag, 0, DropZone::RightMargin, false);
    EXPECT_EQ(beside.type, DropType::RightHalf);
    EXPECT_FALSE(findDropPlace(source, drag, 0, DropZone::RightMargin, true).isValid())
        << "spreading next to the selection has no room";
    // Two items at different heights: the arrows span both, the left one raised.
    const DropPlace across = findDropPlace(source, drag, 4, DropZone::LeftMargin, false);
    EXPECT_EQ(across.type, DropType::LeftGap);
    EXPECT_TRUE(across.needsDoubleHeightArrows);
    EXPECT_TRUE(across.isLeftOneUp);
    EXPECT_FALSE(findDropPlace(source, drag, 0, DropZone::LeftHalf, false, true).isValid())
        << "a hit in the full height alone needs double-height arrows";
}

TEST_F(TimelineInteractionTest, ThePointerFindsTheThumbnailAndZoneOfItsFrame)
{
    MySinglePic *a = addPic(separate, "a.jpg", 0);
    addPic(early, "b.jpg", 10);
    addPic(separate, "c.jpg", 20);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = TimelineDrag::of(source, a, {}, {&separate});
    // Thumbnails of 100 with margins of 20 from x 40: item 1 spans 160 to 260.
    const StripMetrics metrics{.left = 40, .thumbSize = 100, .margin = 20, .raisedTop = 10, .loweredTop = 60};
    const auto zoneAt = [&](double x, double y) {
        const DropHit hit = dropHitAt(metrics, source, drag, x, y);
        return std::tuple(hit.index, hit.isHit() ? int(hit.zone) : -1, hit.onlyIfDoubleHeight);
    };
    EXPECT_EQ(zoneAt(155, 100), std::tuple(1, int(DropZone::LeftMargin), false));
    EXPECT_EQ(zoneAt(170, 100), std::tuple(1, int(DropZone::LeftHalf), false));
    EXPECT_EQ(zoneAt(259, 100), std::tuple(1, int(DropZone::RightHalf), false));
    EXPECT_EQ(zoneAt(265, 100), std::tuple(1, int(DropZone::RightMargin), false));
    EXPECT_EQ(zoneAt(0, 100), std::tuple(0, int(DropZone::LeftMargin), false)) << "left of the first counts for it";
    EXPECT_EQ(zoneAt(500, 100), std::tuple(2, int(DropZone::RightMargin), false)) << "the last item's area doubled";
    EXPECT_EQ(std::get<0>(zoneAt(700, 100)), -1);
    EXPECT_EQ(zoneAt(50, 200), std::tuple(0, int(DropZone::LeftHalf), true)) << "below the raised row";
    EXPECT_EQ(std::get<0>(zoneAt(50, 300)), -1);
}

TEST_F(TimelineInteractionTest, APreviewShowsTheMovedItemAmongTheSurroundingsOfThePlaceAndChangesNoDate)
{
    addPic(early, "a.jpg", 0);
    MySinglePic *c = addPic(early, "c.jpg", 2);
    MySinglePic *d = addPic(early, "d.jpg", 50);
    MySinglePic *e = addPic(early, "e.jpg", 100);
    MySinglePic *e2 = addPic(early, "e2.jpg", 101);
    MySinglePic *f = addPic(early, "f.jpg", 200);
    MySinglePic *m = addPic(separate, "m.jpg", 1000);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = TimelineDrag::of(source, m, {}, {&separate});
    const TimelineDrop drop(source, drag, outerGap);

    const DropPreview preview = drop.preview(findDropPlace(source, drag, 3, DropZone::LeftMargin, false), PicSource(), 2);
    EXPECT_EQ(preview.order, (QList<MySinglePic *>{c, d, m, e, e2, f}))
        << "the near items, then one beyond the first far one on each side";
    EXPECT_EQ(preview.mainIndex, 2);
    EXPECT_EQ(m->tempTimeDuringLiveMod, tenAm.addingSeconds(75));
    EXPECT_EQ(at(m), 1000);
    EXPECT_EQ(stack.count(), 0);
    drop.endPreview();
    EXPECT_FALSE(m->tempTimeDuringLiveMod);
}

TEST_F(TimelineInteractionTest, SpreadingLaysTheSelectionEvenlyIntoTheGapEnteredOnEitherSide)
{
    addPic(early, "a.jpg", 0);
    addPic(early, "b.jpg", 90);
    MySinglePic *m = addPic(separate, "m.jpg", 500);
    MySinglePic *n = addPic(separate, "n.jpg", 501);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = TimelineDrag::of(source, m, {n, m}, {&separate});
    ASSERT_TRUE(drag.canSpread());

    const DropPlace left = findDropPlace(source, drag, 1, DropZone::LeftHalf, true);
    const DropPlace right = findDropPlace(source, drag, 0, DropZone::RightHalf, true);
    EXPECT_EQ(left.index, 0);
    EXPECT_EQ(left.type, DropType::Spread);
    EXPECT_EQ(right.index, 0);
    EXPECT_EQ(right.type, DropType::Spread);
    EXPECT_FALSE(findDropPlace(source, drag, 0, DropZone::LeftHalf, true).isValid()) << "no gap before the first";

    ASSERT_EQ(TimelineDrop(source, drag, outerGap).perform(changes, left), DateChangeResult::Changed);
    EXPECT_EQ(at(m), 30);
    EXPECT_EQ(at(n), 60);
    EXPECT_EQ(stack.count(), 1);
}

// Two cameras an hour apart: the late camera's first photo dropped on the right half of the
// matching photo sets the late folder's offset, and a gap between the folders lands one second
// beside the target as well.
TEST_F(TimelineInteractionTest, InFolderModeADropSetsTheFolderOffsetAndAGapBetweenFoldersFallsBesideTheTarget)
{
    addPic(early, "e1.jpg", 0);
    MySinglePic *match = addPic(early, "e2.jpg", 60);
    addPic(early, "e3.jpg", 120);
    MySinglePic *first = addPic(late, "l1.jpg", 3600 + 60);
    MySinglePic *second = addPic(late, "l2.jpg", 3600 + 90);
    const auto dropFirst = [&](qsizetype index, DropZone zone) {
        const QList<MySinglePic *> source = strip();
        const TimelineDrag drag = TimelineDrag::of(source, first, {}, {&late});
        EXPECT_EQ(drag.moving.size(), 2);
        const DropPlace place = findDropPlace(source, drag, index, zone, true);
        EXPECT_EQ(place.index, index) << "no spreading in folder mode";
        return TimelineDrop(source, drag, outerGap).perform(changes, place);
    };

    ASSERT_EQ(dropFirst(1, DropZone::RightHalf), DateChangeResult::Changed);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 + 1);
    EXPECT_EQ(at(first), at(match) + 1);
    EXPECT_EQ(at(second), 91);
    // Strip now: e1 0, e2 60, l1 61, l2 91, e3 120. The gap left of e3 lies between the folders.
    ASSERT_EQ(dropFirst(4, DropZone::LeftMargin), DateChangeResult::Changed);
    EXPECT_EQ(at(first), 119);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 + 59);

    stack.undo();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 + 1);
    stack.undo();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 0);
    stack.redo();
    EXPECT_EQ(at(first), 61);
}

// "All Folders" or several folders on show: every folder stands raised, and a photo dropped on
// another folder's photo moves its own folder alone; over its own folder the drag says why not.
TEST_F(TimelineInteractionTest, WithSeveralFoldersRaisedADropOnAnotherFoldersItemMovesOnlyTheDraggedFolder)
{
    MySinglePic *e1 = addPic(early, "e1.jpg", 0);
    MySinglePic *match = addPic(early, "e2.jpg", 60);
    MySinglePic *first = addPic(late, "l1.jpg", 3600 + 60);
    addPic(late, "l2.jpg", 3600 + 90);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = TimelineDrag::of(source, first, {}, {}); // none named: all raised
    EXPECT_EQ(drag.moving.size(), 2);

    DropRefusal why = DropRefusal::None;
    EXPECT_FALSE(findDropPlace(source, drag, 3, DropZone::LeftHalf, false, false, &why).isValid());
    EXPECT_EQ(why, DropRefusal::OwnFolder);
    const DropPlace place = findDropPlace(source, drag, 1, DropZone::RightHalf, false, false, &why);
    ASSERT_TRUE(place.isValid());
    EXPECT_EQ(why, DropRefusal::None);
    EXPECT_FALSE(place.needsDoubleHeightArrows) << "all stand in one row";

    const std::optional<DropOutcome> outcome = dropOutcome(source, drag, place, outerGap);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->rule, DropOutcome::Rule::AfterTarget);
    EXPECT_EQ(outcome->target, match);
    EXPECT_EQ(outcome->change, -3599) << "the folder's new offset";
    EXPECT_EQ(outcome->newDate, tenAm.addingSeconds(61));
    // The gap left of e2 is halfway to e1; the one right of it lies beside the moving folder.
    const std::optional<DropOutcome> halfway =
        dropOutcome(source, drag, findDropPlace(source, drag, 1, DropZone::LeftMargin, false), outerGap);
    ASSERT_TRUE(halfway);
    EXPECT_EQ(halfway->rule, DropOutcome::Rule::Halfway);
    EXPECT_EQ(halfway->neighbour, e1);
    EXPECT_EQ(halfway->newDate, tenAm.addingSeconds(30));
    EXPECT_TRUE(findDropPlace(source, drag, 1, DropZone::RightMargin, false).isCollapsed);

    ASSERT_EQ(TimelineDrop(source, drag, outerGap).perform(changes, place), DateChangeResult::Changed);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3599);
    EXPECT_EQ(early.sfDateModificationsTimeInterval, 0);
    EXPECT_EQ(at(first), at(match) + 1);
}

TEST_F(TimelineInteractionTest, ACompoundFolderMovesItsMembersByTheSameDifference)
{
    MySingleFolder member{QStringLiteral("/member"), false};
    addPic(early, "e1.jpg", 0);
    MySinglePic *first = addPic(late, "l1.jpg", 3600);
    MySinglePic *other = addPic(member, "m1.jpg", 7200);
    member.setSfDateModificationsFromTimeInterval(60, false);
    const QList<MySinglePic *> source = strip();
    const TimelineDrag drag = [&] {
        TimelineDrag compound = TimelineDrag::of(source, first, {}, {&late, &member});
        compound.folders = {&late, &member};
        return compound;
    }();

    ASSERT_EQ(TimelineDrop::moveMainTo(changes, drag, tenAm.secondsSinceEpoch() + 10), DateChangeResult::Changed);
    EXPECT_EQ(at(first), 10);
    EXPECT_EQ(at(other), 7200 + 60 - 3590);
    EXPECT_EQ(stack.count(), 1);
}

TEST_F(TimelineInteractionTest, AKeyboardMoveStopsAtTheFirstItemAndLeavesOneUndoStep)
{
    addPic(early, "a.jpg", 0);
    addPic(early, "b.jpg", 100);
    addPic(early, "c.jpg", 101);
    addPic(early, "d.jpg", 200);
    MySinglePic *m = addPic(separate, "m.jpg", 1000);
    separate.setSinglePicModification(*m, 5);
    KeyboardLiveMove move(changes, outerGap);
    ASSERT_TRUE(move.arm(strip(), TimelineDrag::of(strip(), m, {}, {&separate})));

    const auto left = [&] { return move.liveMoveWithType(strip(), MoveDirection::Left, false); };
    ASSERT_EQ(left(), DateChangeResult::Changed);
    EXPECT_EQ(at(m), 102) << "past d: one second after c";
    ASSERT_EQ(left(), DateChangeResult::Changed);
    EXPECT_EQ(at(m), 99) << "past c and b at once, as no second lies between them";
    ASSERT_EQ(left(), DateChangeResult::Changed);
    EXPECT_EQ(at(m), -1) << "one second before the first item";
    EXPECT_EQ(left(), DateChangeResult::Unchanged);
    EXPECT_EQ(at(m), -1);
    ASSERT_EQ(move.liveMoveWithType(strip(), MoveDirection::Right, true), DateChangeResult::Changed);
    EXPECT_EQ(at(m), 50) << "into the middle of the next gap with room";
    move.disableArrowsLiveMove();

    EXPECT_EQ(stack.count(), 1) << "the whole move is one undo step";
    stack.undo();
    EXPECT_EQ(at(m), 1005);
    stack.redo();
    EXPECT_EQ(at(m), 50);
}

TEST_F(TimelineInteractionTest, AFolderMovedByKeyboardPassesTheOtherFolderAsOneUndoStep)
{
    addPic(early, "a.jpg", 0);
    addPic(early, "b.jpg", 100);
    MySinglePic *l1 = addPic(late, "l1.jpg", 3600);
    MySinglePic *l2 = addPic(late, "l2.jpg", 3700);
    KeyboardLiveMove move(changes, outerGap);
    EXPECT_FALSE(move.arm({l1, l2}, TimelineDrag::of({l1, l2}, l1, {}, {&late}))) << "nothing to move past";
    ASSERT_TRUE(move.arm(strip(), TimelineDrag::of(strip(), l1, {}, {&late})));
    EXPECT_FALSE(move.nextValidGapFrom(strip(), 0).isValid()) << "no gaps in folder mode";

    ASSERT_EQ(move.liveMoveWithType(strip(), MoveDirection::Left, false), DateChangeResult::Changed);
    EXPECT_EQ(at(l1), 1);
    EXPECT_EQ(at(l2), 101);
    ASSERT_EQ(move.liveMoveWithType(strip(), MoveDirection::Left, false), DateChangeResult::Changed);
    EXPECT_EQ(at(l1), -1);
    ASSERT_EQ(move.liveMoveWithType(strip(), MoveDirection::Right, false), DateChangeResult::Changed);
    EXPECT_EQ(at(l1), 99) << "past a: one second before b";
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 99 - 3600);
    move.disableArrowsLiveMove();
    EXPECT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_EQ(at(l1), 3600);
}

TEST_F(TimelineInteractionTest, PressesAndRectanglesSelectInTheRaisedFolderAndTargetOthers)
{
    MySinglePic *a = addPic(separate, "a.jpg", 0);
    MySinglePic *other = addPic(early, "o.jpg", 5);
    MySinglePic *b = addPic(separate, "b.jpg", 10);
    MySinglePic *c = addPic(separate, "c.jpg", 20);
    MySinglePic *d = addPic(separate, "d.jpg", 30);
    const QList<MySinglePic *> source = strip();
    TimelineStrip onStrip;
    onStrip.setSource(source);
    onStrip.setRaisedFolders({&separate});
    TimelineSelection selection(onStrip);

    selection.press(b, ClickKey::Plain, true);
    selection.press(other, ClickKey::Plain, true);
    EXPECT_EQ(selection.target(), other) << "another folder's item is only targeted";
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{b}));
    selection.press(d, ClickKey::Shift, true);
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{b, c, d}));
    EXPECT_EQ(onStrip.picSelection(), d);
    selection.press(d, ClickKey::Command, true);
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{b, c}));
    EXPECT_EQ(onStrip.picSelection(), c) << "the member before takes over at the end";
    selection.press(b, ClickKey::Plain, true);
    EXPECT_EQ(selection.selected().size(), 2) << "a press inside the selection keeps it for a drag";
    selection.press(b, ClickKey::Command, true);
    EXPECT_TRUE(selection.press(c, ClickKey::Command, true)) << "the main item alone goes";
    EXPECT_TRUE(selection.selected().isEmpty());
    selection.press(a, ClickKey::Plain, false);
    selection.press(b, ClickKey::Shift, false);
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{b})) << "folder mode has no multi-selection";

    selection.beginRectangle(ClickKey::Command);
    selection.updateRectangle({a, b}, true, 0);
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{a})) << "Command toggles against the start";
    EXPECT_EQ(onStrip.picSelection(), a);
    selection.beginRectangle(ClickKey::Plain);
    selection.updateRectangle({c, d}, false, 4);
    EXPECT_EQ(selection.selected(), (QList<MySinglePic *>{c, d}));
    EXPECT_EQ(onStrip.picSelection(), d) << "the item nearest the pointer";
    EXPECT_EQ(clickKeyFor(Qt::ControlModifier | Qt::AltModifier), ClickKey::Plain);
}

} // namespace
