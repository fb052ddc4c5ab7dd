// The selection on the strip by real mouse and key events over an offscreen view: clicks with
// Shift and Ctrl, sweeps, rectangles, the arrows and the scrolling keys, date labels, and what
// goes to the window (another folder chosen, files dropped).

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"

#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

using namespace orv;

namespace {

class TimelineSelectionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        qRegisterMetaType<MySinglePic *>();
        // S1 O1 S2 S3 S4 | next day: S5 O2 S6 O3. The separate folder stands raised.
        const int day = 24 * 60;
        const int minutes[] = {0, 1, 2, 3, 4, day, day + 1, day + 2, day + 3};
        for (int i = 0; i < 9; ++i) {
            MySingleFolder &folder = i % 5 == 1 || i == 8 ? other : separate;
            pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("P%1.JPG").arg(i), &folder,
                                                                      SpTypeExifOriginal,
                                                                      Instant::fromUtc(2024, 5, 1, 10, minutes[i]))));
        }
        TimelineViewOptions options;
        options.extraTLsScrollArea = false;
        view.setOptions(options);
        view.resize(900, 260);
        controller.buildNewSource({&separate, &other});
        strip().setRaisedFolders({&separate});
        view.sourceChanged();
        view.show();
    }
    TimelineStrip &strip() { return controller.theTimelineView_1(); }
    QPoint at(qsizetype index) { return view.thumbRectInViewport(index).center().toPoint(); }
    QList<MySinglePic *> selected() { return view.selection().selected(); }
    QList<MySinglePic *> items(std::initializer_list<int> indexes)
    {
        QList<MySinglePic *> list;
        for (int i : indexes)
            list.append(strip().picAt(i));
        return list;
    }
    void paint()
    {
        QImage image(view.viewport()->size(), QImage::Format_RGB32);
        QPainter painter(&image);
        view.paintStrip(painter);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }

    MySingleFolder separate{QStringLiteral("/trip/separate"), true};
    MySingleFolder other{QStringLiteral("/trip/other"), false};
    QList<MySinglePic *> pics;
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view{controller, controller.theTimelineView_1(), thumbs};
};

TEST_F(TimelineSelectionTest, ClicksSweepsAndRectanglesSelectTheRaisedItemsAndOnlyTargetOthers)
{
    QWidget *viewport = view.viewport();
    QSignalSpy chosen(&view, &MyTimelineView::folderChosen);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, at(2));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ShiftModifier, at(4));
    EXPECT_EQ(selected(), items({2, 3, 4}));
    EXPECT_EQ(strip().picSelection(), strip().picAt(4));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ControlModifier, at(3));
    EXPECT_EQ(selected(), items({2, 4}));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ControlModifier | Qt::AltModifier, at(3));
    EXPECT_EQ(selected(), items({3})) << "Ctrl with Alt is no Command: a plain click";

    // Another folder's item: targeted, the selection cleared; a double click chooses its folder.
    QTest::mouseClick(viewport, Qt::LeftButton, {}, at(1));
    EXPECT_EQ(view.selection().target(), strip().picAt(1));
    EXPECT_TRUE(selected().isEmpty());
    QTest::mouseDClick(viewport, Qt::LeftButton, Qt::ControlModifier, at(1));
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].value<MySinglePic *>(), strip().picAt(1));
    EXPECT_TRUE(chosen[0][1].toBool());

    // A rectangle from above the row over to S4 takes the raised items it touches.
    const QPoint corner(int(view.thumbRectInViewport(2).left()) + 4, 3);
    QTest::mousePress(viewport, Qt::LeftButton, {}, corner);
    QTest::mouseMove(viewport, corner + QPoint(2, 2));
    EXPECT_TRUE(selected().isEmpty()) << "not before 5 points";
    QTest::mouseMove(viewport, at(4));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, at(4));
    EXPECT_EQ(selected(), items({2, 3, 4}));
    EXPECT_EQ(strip().picSelection(), strip().picAt(4)) << "the item nearest the pointer";

    // A Ctrl sweep toggles what it passes; stepping back untoggles the last one.
    QTest::mouseClick(viewport, Qt::LeftButton, {}, at(0));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::ControlModifier, at(2));
    QTest::mouseMove(viewport, at(4));
    EXPECT_EQ(selected(), items({0, 2, 3, 4}));
    QTest::mouseMove(viewport, at(3));
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::ControlModifier, at(3));
    EXPECT_EQ(selected(), items({0, 2, 3}));
    EXPECT_EQ(strip().picSelection(), strip().picAt(2));
    // A Shift sweep spans from the pressed item to the pointer, and shrinks coming back.
    QTest::mouseClick(viewport, Qt::LeftButton, {}, at(0));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::ShiftModifier, at(2));
    QTest::mouseMove(viewport, at(5));
    QTest::mouseMove(viewport, at(4));
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::ShiftModifier, at(4));
    EXPECT_EQ(selected(), items({0, 2, 3, 4}));
}

TEST_F(TimelineSelectionTest, KeysStepThroughTheStripAndLabelsScrollByDateChapters)
{
    QSignalSpy chosen(&view, &MyTimelineView::folderChosen);
    strip().setPicSelection(strip().picAt(0));
    key(Qt::Key_Right);
    EXPECT_EQ(view.selection().target(), strip().picAt(1)) << "the other folder's item is targeted";
    key(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_TRUE(chosen[0][1].toBool());
    key(Qt::Key_Right);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(selected(), items({2, 3}));
    key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(selected(), items({2})) << "stepping back onto the selection reduces it";
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(strip().picSelection(), strip().picAt(5)) << "to the end of the run of raised items";
    key(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(selected(), items({2, 3, 4, 5})) << "Shift adds the items passed";
    key(Qt::Key_Right, Qt::ControlModifier | Qt::MetaModifier);
    EXPECT_EQ(selected(), items({3, 4, 5})) << "Command and Control: the old main item leaves";

    // Narrow: the strip scrolls.
    view.resize(260, 260);
    QScrollBar *bar = view.horizontalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    key(Qt::Key_End);
    EXPECT_EQ(bar->value(), bar->maximum());
    key(Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(view.visibleThumbsRange().first, 5) << "the next date chapter, the next day";
    paint();
    // The sticky label goes back a chapter; with Alt forward. Another label comes to the front.
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.labelRectInViewport(0).center().toPoint());
    EXPECT_EQ(view.visibleThumbsRange().first, 0);
    paint();
    ASSERT_GE(view.lastLabels().size(), 1);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::AltModifier, view.labelRectInViewport(0).center().toPoint());
    EXPECT_EQ(view.visibleThumbsRange().first, 5);
    EXPECT_EQ(selected(), items({3, 4, 5})) << "a label click selects nothing";
    strip().picAt(7)->isUnsavedDueToTZC = true;
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(selected(), items({7})) << "the next item with an unsaved change";

    // Files from outside go to the window.
    QSignalSpy dropped(&view, &MyTimelineView::filesDropped);
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(QStringLiteral("/trip/new"))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::AltModifier);
    QCoreApplication::sendEvent(view.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::AltModifier);
    QCoreApplication::sendEvent(view.viewport(), &drop);
    ASSERT_EQ(dropped.size(), 1);
    EXPECT_EQ(dropped[0][1].value<Qt::KeyboardModifiers>(), Qt::AltModifier);

    // A rectangle held near the left side scrolls the strip that way.
    const int before = bar->value();
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, QPoint(150, 3));
    QTest::mouseMove(view.viewport(), QPoint(10, 40));
    QTest::qWait(100);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, QPoint(10, 40));
    EXPECT_LT(bar->value(), before);
}

} // namespace
