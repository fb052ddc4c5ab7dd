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
#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QTest>
#include <QUndoStack>

#include <gtest/gtest.h>

using namespace orv;

namespace {

TEST(TimelineDragTest, DroppingOnTheRightHalfOfAPhotoSetsTheFolderOffsetOneSecondAfterIt)
{
    MySingleFolder early(QStringLiteral("/trip/early"), false);
    MySingleFolder late(QStringLiteral("/trip/late"), false);
    const auto add = [](MySingleFolder &folder, const char *name, int minute) {
        return folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, SpTypeExifOriginal,
                                                             Instant::fromUtc(2024, 5, 1, 10, minute)));
    };
    add(early, "E1.JPG", 0);
    MySinglePic *match = add(early, "E2.JPG", 1);
    MySinglePic *first = add(late, "L1.JPG", 61);
    add(late, "L2.JPG", 62);

    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view(controller, controller.theTimelineView_1(), thumbs);
    TimelineViewOptions options;
    options.extraTLsScrollArea = false;
    view.setOptions(options);
    view.resize(900, 260);
    controller.buildNewSource({&early, &late});
    controller.theTimelineView_1().setRaisedFolders({&late});
    view.sourceChanged();
    QUndoStack stack;
    DateChanges changes(stack, DateChangeListener{});
    TimelineDragHandler handler(view, changes, 60);

    // Strip: E1, E2, L1, L2; L1 is raised.
    const QPoint from = view.thumbRectInViewport(2).center().toPoint();
    const QRectF target = view.thumbRectInViewport(1);
    const QPoint to(int(target.center().x() + target.width() / 8), int(target.center().y()));
    QWidget *viewport = view.viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(3, 0));
    EXPECT_FALSE(handler.isDragging()) << "not before 5 points";
    QTest::mouseMove(viewport, (from + to) / 2);
    QTest::mouseMove(viewport, to);
    ASSERT_TRUE(handler.isDragging());
    EXPECT_EQ(handler.place().type, DropType::RightHalf);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);

    EXPECT_FALSE(handler.isDragging());
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3600 + 1);
    EXPECT_EQ(first->spDateTimeModified()->secondsSince(*match->spDateTimeModified()), 1);
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
    popover->editor()->setDateTime(popover->editor()->dateTime().addSecs(-3599));
    EXPECT_EQ(popover->accept(), DateChangeResult::Changed);
    EXPECT_EQ(late.sfDateModificationsTimeInterval, -3599);
    EXPECT_EQ(stack.count(), 1);
}

TEST(TimelineDragTest, CtrlAltArrowsMoveTheFolderPastTheOtherCameraAsOneUndoStep)
{
    MySingleFolder early(QStringLiteral("/trip/early"), false);
    MySingleFolder late(QStringLiteral("/trip/late"), false);
    const auto add = [](MySingleFolder &folder, const char *name, int minute) {
        return folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, SpTypeExifOriginal,
                                                             Instant::fromUtc(2024, 5, 1, 10, minute)));
    };
    add(early, "E1.JPG", 0);
    add(early, "E2.JPG", 1);
    MySinglePic *first = add(late, "L1.JPG", 61);
    add(late, "L2.JPG", 62);
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view(controller, controller.theTimelineView_1(), thumbs);
    view.resize(900, 260);
    controller.buildNewSource({&early, &late});
    controller.theTimelineView_1().setRaisedFolders({&late});
    controller.theTimelineView_1().setPicSelection(first);
    view.sourceChanged();
    QUndoStack stack;
    // As in the window: changed dates sort the strip again.
    DateChanges changes(stack, DateChangeListener{[&](const QList<MySingleFolder *> &) {
                            controller.buildNewSource({&early, &late});
                            view.sourceChanged();
                        },
                                                  nullptr, nullptr});
    TimelineDragHandler handler(view, changes, 60);

    // The arrow alone goes up and down while Ctrl and Alt stay held.
    const auto left = [&view] {
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

} // namespace
