// A drag with the real mouse over an offscreen strip: the late camera's first photo dropped on the
// right half of the matching photo of the other camera sets the late folder's offset, and undo
// takes it back.

#include "app/DateChanges.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelineDatePopover.h"
#include "ui/TimelineDragHandler.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace orv;

namespace {

// Two cameras an hour apart on one strip: E1, E2 at 10:00 and 10:01; L1, L2 at 11:01 and 11:02,
// the late folder raised. Changed dates sort the strip again, as in the window.
class TwoCameras : public ::testing::Test
{
protected:
    TwoCameras()
    {
        view.resize(900, 260);
        controller.buildNewSource({&early, &late});
        controller.theTimelineView_1().setRaisedFolders({&late});
        view.sourceChanged();
    }

    static MySinglePic *add(MySingleFolder &folder, const char *name, int minute)
    {
        return folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, SpTypeExifOriginal,
                                                             Instant::fromUtc(2024, 5, 1, 10, minute)));
    }

    MySingleFolder early{QStringLiteral("/trip/early"), false};
    MySingleFolder late{QStringLiteral("/trip/late"), false};
    MySinglePic *e1 = add(early, "E1.JPG", 0), *e2 = add(early, "E2.JPG", 1);
    MySinglePic *l1 = add(late, "L1.JPG", 61), *l2 = add(late, "L2.JPG", 62);
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view{controller, controller.theTimelineView_1(), thumbs};
    QUndoStack stack;
    DateChanges changes{stack, DateChangeListener{[this](const QList<MySingleFolder *> &) {
                                                      controller.buildNewSource({&early, &late});
                                                      view.sourceChanged();
                                                  },
                                                  nullptr, nullptr}};
    TimelineDragHandler handler{view, changes, stack, 4}; // 60 s beyond the ends
};

TEST_F(TwoCameras, DroppingOnTheRightHalfOfAPhotoSetsTheFolderOffsetOneSecondAfterIt)
{
    TimelineViewOptions options;
    options.extraTLsScrollArea = false;
    view.setOptions(options);
    view.sourceChanged();

    // Strip: E1, E2, L1, L2; L1 is raised.
    const QPoint from = view.thumbRectInViewport(2).center().toPoint();
    const QRectF target = view.thumbRectInViewport(1);
    const QPoint to(int(target.center().x() + target.width() / 8), int(target.center().y()));
    QWidget *viewport = view.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(3, 0));
    EXPECT_FALSE(handler.isDragging()) << "not before 5 points";
    // Left of the first item the outer-edge gap counts, and the window is told.
    QSignalSpy outerEdge(&handler, &TimelineDragHandler::outerEdgeStateChanged);
    QTest::mouseMove(viewport, view.thumbRectInViewport(0).center().toPoint() - QPoint(int(target.width() * 0.6), 0));
    ASSERT_TRUE(handler.isDragging());
    EXPECT_TRUE(handler.place().atOuterEdge);
    ASSERT_EQ(outerEdge.size(), 1);
    EXPECT_EQ(outerEdge[0][0].toString(), QStringLiteral("Beyond the end: 1 min from the nearest item"));
    // Up during the drag takes the next larger gap.
    QSignalSpy gapIndex(&handler, &TimelineDragHandler::dragGapOuterEdgesChanged);
    QTest::keyClick(&view, Qt::Key_Up);
    ASSERT_EQ(gapIndex.size(), 1);
    EXPECT_EQ(gapIndex[0][0].toLongLong(), 5);
    EXPECT_EQ(outerEdge.last()[0].toString(), QStringLiteral("Beyond the end: 5 min from the nearest item"));
    QTest::mouseMove(viewport, to);
    EXPECT_EQ(outerEdge.last()[0].toString(), QString());
    EXPECT_EQ(handler.place().type, DropType::RightHalf);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);

    EXPECT_FALSE(handler.isDragging());
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 + 1);
    EXPECT_EQ(l1->spDateTimeModified()->secondsSince(*e2->spDateTimeModified()), 1);
    ASSERT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 0);
    stack.redo();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3599);

    // The same date typed into the popover of a double click: the offset from the files' dates.
    stack.undo();
    view.sourceChanged();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, from);
    auto *popover = view.findChild<TimelineDatePopover *>();
    ASSERT_NE(popover, nullptr);
    // An hour back, a second on: the strip previews each step, the model waits.
    OrvelleDatePicker *field = popover->editor();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right,
                              Qt::Key_Up})
        QTest::keyClick(field, key);
    EXPECT_TRUE(view.strip().hasTempSource());
    ASSERT_TRUE(l1->tempTimeDuringLiveMod);
    EXPECT_EQ(l1->tempTimeDuringLiveMod->secondsSince(*e2->spDateTimeModified()), 1);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 0);
    EXPECT_EQ(popover->accept(), DateChangeResult::Changed);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3599);
    EXPECT_EQ(stack.count(), 1) << "the field's own steps stay out of the window's undo";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(view.strip().hasTempSource());
}

TEST_F(TwoCameras, CtrlAltArrowsMoveTheFolderPastTheOtherCameraAsOneUndoStep)
{
    controller.theTimelineView_1().setPicSelection(l1);
    view.sourceChanged();

    // The arrow alone goes up and down while Ctrl and Alt stay held.
    const auto left = [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Left, Qt::ControlModifier | Qt::AltModifier);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Left, Qt::ControlModifier | Qt::AltModifier);
        QCoreApplication::sendEvent(&view, &press);
        QCoreApplication::sendEvent(&view, &release);
    };
    left();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 - 60 + 1) << "past E2: one second after E1";
    left();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 - 60 - 1) << "one second before the first item";
    left();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 - 60 - 1);
    QTest::keyRelease(&view, Qt::Key_Control);
    EXPECT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 0);
}

TEST(TimelineDragTest, DraggingOntoTheShelfMovesTheSelectionThereAsOneUndoStep)
{
    MySingleFolder trip(QStringLiteral("/trip"), true);
    QList<MySinglePic *> pics;
    for (int minute = 0; minute < 3; ++minute)
        pics.append(trip.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("P%1.JPG").arg(minute), &trip,
                                                                SpTypeExifOriginal,
                                                                Instant::fromUtc(2024, 5, 1, 10, minute))));
    MyTimelinesController controller;
    controller.buildNewSource({&trip});
    TimelineStrip *shelfStrip = controller.addTimelineShelf();
    MyThumbsQueue thumbs;
    QWidget box;
    auto *layout = new QVBoxLayout(&box);
    auto *view = new MyTimelineView(controller, controller.theTimelineView_1(), thumbs, &box);
    auto *shelf = new MyTimelineView(controller, *shelfStrip, thumbs, &box);
    layout->addWidget(view);
    layout->addWidget(shelf);
    box.resize(900, 560);
    box.show();
    view->sourceChanged();
    QUndoStack stack;
    DateChanges changes(stack, DateChangeListener{});
    TimelineDragHandler handler(*view, changes, stack, 4);

    QWidget *viewport = view->viewport();
    const QPoint from = view->thumbRectInViewport(1).center().toPoint();
    const QPoint onShelf = viewport->mapFromGlobal(shelf->viewport()->mapToGlobal(shelf->viewport()->rect().center()));
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(0, 20));
    QTest::mouseMove(viewport, onShelf);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, onShelf);
    EXPECT_EQ(shelfStrip->theSource(), QList<MySinglePic *>{pics[1]});
    EXPECT_EQ(controller.theTimelineView_1().theSource().size(), 2);
    EXPECT_EQ(trip.sfDateModificationsTimeInterval, 0) << "no date moves";
    ASSERT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_TRUE(shelfStrip->theSource().isEmpty());
    EXPECT_EQ(controller.theTimelineView_1().picSelection(), pics[1]);
}

} // namespace
