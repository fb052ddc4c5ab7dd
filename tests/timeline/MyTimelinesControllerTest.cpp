// Strips over the shared source: selections across filter changes, the delayed refilter after
// rating, mirror and shelf strips and the temporary source of a preview.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QUndoStack>

#include <gtest/gtest.h>

using namespace orv;

namespace {

class ControllerFixture : public ::testing::Test
{
protected:
    ControllerFixture()
    {
        for (int i = 0; i < 5; ++i)
            pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_%1.JPG").arg(i), &folder,
                                                                      SpTypeExifOriginal,
                                                                      Instant::fromUtc(2024, 5, 1, 10, i))));
        controller.buildNewSource({&folder});
    }
    TimelineStrip &main() { return controller.theTimelineView_1(); }
    static std::optional<FilterPredicate> notRejected()
    {
        return FilterPredicate::parse(QStringLiteral("filter_rating !=[cd] -1"));
    }

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QCoreApplication app{argc, argv};
    MySingleFolder folder{QStringLiteral("/trip"), false};
    QList<MySinglePic *> pics;
    MyTimelinesController controller;
};

TEST_F(ControllerFixture, FilterChangesKeepOrMoveTheSelection)
{
    main().setPicSelection(pics[2]);
    pics[1]->isRejected = true;
    controller.didChangePredicate(notRejected());
    EXPECT_EQ(main().theSource().size(), 4);
    EXPECT_EQ(main().picSelection(), pics[2]); // still visible: kept
    EXPECT_EQ(main().indexOf(pics[2]), 1);

    pics[2]->isRejected = true;
    controller.didChangePredicate(notRejected());
    EXPECT_EQ(main().picSelection(), pics[3]); // fell out: the next visible one

    // Removing the filter brings the old selection back.
    controller.didChangePredicate(std::nullopt);
    EXPECT_EQ(main().picSelection(), pics[2]);

    // The last item filtered away selects the one before it.
    main().setPicSelection(pics[4]);
    pics[4]->isRejected = true;
    controller.didChangePredicate(notRejected());
    EXPECT_EQ(main().picSelection(), pics[3]);
    // A real rebuild forgets the memory.
    controller.buildNewSourceWithNewSelectionOption(MyTimelinesController::NormalRebuild, false);
    controller.didChangePredicate(std::nullopt);
    EXPECT_EQ(main().picSelection(), pics[3]);
}

TEST_F(ControllerFixture, RatingRefiltersAfterASecondOfCalm)
{
    controller.didChangePredicate(notRejected());
    controller.setDefersRefilter(true);
    pics[0]->isRejected = true;
    controller.filterRelevantChangeWasMade(QStringLiteral("filter_rating"));
    EXPECT_TRUE(controller.isRefilterPending());
    EXPECT_EQ(main().theSource().size(), 5); // still on screen
    controller.filterRelevantChangeWasMade(QStringLiteral("filter_pivMakeModel")); // not read by rating
    QElapsedTimer clock;
    clock.start();
    while (controller.isRefilterPending() && clock.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_GE(clock.elapsed(), 900);
    EXPECT_EQ(main().theSource().size(), 4);

    controller.setDefersRefilter(false);
    pics[1]->isRejected = true;
    controller.filterRelevantChangeWasMade(QStringLiteral("filter_rating"));
    EXPECT_EQ(main().theSource().size(), 3); // at once
}

TEST_F(ControllerFixture, MirrorShelfAndSelectionModes)
{
    TimelineStrip *mirror = controller.addTimelineMirror();
    ASSERT_TRUE(mirror);
    EXPECT_TRUE(controller.isMirrored());
    EXPECT_EQ(mirror->theSource(), main().theSource());
    main().setPicSelection(pics[0]);
    mirror->setPicSelection(pics[1]);
    controller.selectionChangedIn(*mirror);
    EXPECT_EQ(main().picSelection(), pics[0]); // own selections
    controller.getSelectionFromOrigin(main(), *mirror); // a drag onto the mirror
    EXPECT_EQ(mirror->picSelection(), pics[0]);
    mirror->setPicSelection(pics[1]);

    controller.setSelectionsMode(MyTimelinesController::SharedSelection, mirror);
    EXPECT_EQ(main().picSelection(), pics[1]);
    controller.setSelectionsMode(MyTimelinesController::ExclusiveSelection, mirror);
    EXPECT_EQ(main().picSelection(), nullptr);
    EXPECT_EQ(mirror->picSelection(), pics[1]);

    controller.removeLastTimeline();
    TimelineStrip *shelf = controller.addTimelineShelf();
    ASSERT_TRUE(controller.isShelfed());
    main().setMultiSelection({pics[1], pics[3]}, pics[1]);
    controller.addSelectionFrom(main(), true);
    EXPECT_EQ(shelf->theSource(), QList<MySinglePic *>({pics[1], pics[3]}));
    EXPECT_EQ(main().theSource().size(), 3);
    EXPECT_EQ(shelf->picSelection(), pics[1]);
    EXPECT_EQ(controller.source().filteredImagesCount(), 0);
    // Back from the shelf by a drag: one undo step, which puts it on the shelf again.
    QUndoStack stack;
    shelf->setMultiSelection({pics[3]}, pics[3]);
    controller.moveSelectionFromOrigin(*shelf, false, stack);
    EXPECT_EQ(shelf->theSource(), QList<MySinglePic *>({pics[1]}));
    EXPECT_EQ(main().picSelection(), pics[3]);
    stack.undo();
    EXPECT_EQ(shelf->theSource(), QList<MySinglePic *>({pics[1], pics[3]}));
    EXPECT_EQ(shelf->picSelection(), pics[3]);
    controller.removeLastTimeline();
    EXPECT_EQ(main().theSource().size(), 5);
}

TEST_F(ControllerFixture, TemporarySourceDrivesGeometryWithoutTouchingItems)
{
    main().geometry().changedTimelineViewHeight(128, 400, false);
    main().geometry().updateSize(800, 200, main().theSource().size());
    const QList<MySinglePic *> preview{pics[0], pics[3], pics[1], pics[2], pics[4]};
    main().setTempSource(preview);
    EXPECT_EQ(main().indexOf(pics[3]), 1);
    EXPECT_EQ(main().picAt(1), pics[3]);
    const QRectF rect = main().thumbRectCalculatedAtIndex(1);
    EXPECT_EQ(main().picAtLocationInView(rect.center().x(), rect.center().y()), pics[3]);
    EXPECT_EQ(pics[3]->indexInSource_filtered, 3);
    main().clearTempSource();
    EXPECT_EQ(main().indexOf(pics[3]), 3);
}

} // namespace
