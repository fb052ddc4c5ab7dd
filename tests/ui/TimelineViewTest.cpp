// The strip drawn offscreen: two folders, one raised and one lowered, with labels, and a click
// that selects a raised item.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace orv;

namespace {

const QColor cameraColor(200, 40, 40);
const QColor phoneColor(40, 40, 200);

TEST(TimelineViewTest, TwoFoldersStandRaisedAndLowered)
{
    MySingleFolder camera(QStringLiteral("/trip/camera"), false);
    MySingleFolder phone(QStringLiteral("/trip/phone"), false);
    QList<MySinglePic *> pics;
    for (int i = 0; i < 6; ++i) {
        MySingleFolder &folder = i % 2 ? phone : camera;
        pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_%1.JPG").arg(i), &folder,
                                                                  SpTypeExifOriginal,
                                                                  Instant::fromUtc(2024, 5, 1 + i / 3, 10, i))));
    }
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view(controller, controller.theTimelineView_1(), thumbs);
    view.setFolderColors([&camera](const MySinglePic &pic) { return pic.spSingleFolder == &camera ? cameraColor : phoneColor; });
    view.setToday(Instant::fromUtc(2024, 6, 1));
    TimelineViewOptions options;
    options.extraTLsScrollArea = false;
    view.setOptions(options);
    view.resize(900, 260);
    controller.buildNewSource({&camera, &phone});
    controller.theTimelineView_1().setRaisedFolders({&camera});
    view.sourceChanged();

    QImage image(view.viewport()->size(), QImage::Format_RGB32);
    QPainter painter(&image);
    view.paintStrip(painter);
    painter.end();

    const QRectF raised = view.thumbRectInViewport(0);
    const QRectF lowered = view.thumbRectInViewport(1);
    EXPECT_LT(raised.top(), lowered.top());
    EXPECT_EQ(image.pixelColor(raised.center().toPoint()), cameraColor);
    // The lowered folder is drawn in its colour, darkened.
    const QColor back = image.pixelColor(lowered.center().toPoint());
    EXPECT_GT(back.blue(), back.red());
    EXPECT_LT(back.blue(), phoneColor.blue());
    // A label for the first item (sticky) and one where the day changes.
    ASSERT_EQ(view.lastLabels().size(), 2);
    EXPECT_EQ(view.lastLabels()[1].index, 3);
    EXPECT_EQ(view.layerCount(), 0); // no thumbnails built yet: no layers

    qRegisterMetaType<MySinglePic *>();
    QSignalSpy selected(&view, &MyTimelineView::picSelectionChanged);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, raised.center().toPoint());
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(controller.theTimelineView_1().picSelection(), pics[0]);
}

} // namespace
