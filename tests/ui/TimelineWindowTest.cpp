// The window with its strip: a corpus folder dropped on the strip shows its thumbnails with date
// labels, the strip and the list select together, and the Filter menu narrows both.

#include "WindowFixture.h"

#include "core/MySinglePic.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/PicTableModel.h"
#include "ui/TimelinePane.h"

#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QTableView>
#include <QTest>
#include <QUrl>

namespace orv::test {
namespace {

class TimelineWindowTest : public WindowFixture
{
};

TEST_F(TimelineWindowTest, ACorpusFolderShowsItsThumbnailsWithDateLabels)
{
    ORV_SKIP_WITHOUT_CORPUS();
    TimelinePane &timeline = window->timeline();
    // Dropped from a file manager onto the strip.
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(corpusFile(QStringLiteral("Lychee/tests/Samples")))});
    ASSERT_TRUE(waitForImport([&] {
        QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(timeline.mainView().viewport(), &enter);
        QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(timeline.mainView().viewport(), &drop);
    }));
    MyTimelineView &strip = timeline.mainView();
    const QList<MySinglePic *> &shown = strip.strip().theSource();
    ASSERT_GE(shown.size(), 6);
    EXPECT_EQ(window->sortedPics().rowCount(), shown.size());

    timeline.thumbs().waitForDone();
    for (const MySinglePic *pic : shown)
        EXPECT_TRUE(timeline.thumbs().cache().contains(pic->sessionUniqueId)) << pic->spName.toStdString();
    QImage image(strip.viewport()->size(), QImage::Format_RGB32);
    QPainter painter(&image);
    strip.paintStrip(painter);
    painter.end();
    EXPECT_GT(strip.layerCount(), 0);
    ASSERT_FALSE(strip.lastLabels().isEmpty());
    EXPECT_FALSE(strip.lastLabels().first().dateText.isEmpty());
    if (qEnvironmentVariableIsSet("ORV_TIMELINE_SNAPSHOT"))
        image.save(qEnvironmentVariable("ORV_TIMELINE_SNAPSHOT"));

    // A click on a thumbnail selects its row; a row selects its thumbnail.
    const QPointF second = strip.thumbRectInViewport(1).center();
    QTest::mouseClick(strip.viewport(), Qt::LeftButton, {}, second.toPoint());
    auto *list = window->findChild<QTableView *>();
    ASSERT_TRUE(list);
    const QModelIndex current = list->selectionModel()->currentIndex();
    ASSERT_TRUE(current.isValid());
    EXPECT_EQ(window->picModel().picAt(window->sortedPics().mapToSource(current).row()), shown.at(1));
    list->selectionModel()->setCurrentIndex(window->sortedPics().index(3, 0), QItemSelectionModel::ClearAndSelect);
    EXPECT_EQ(strip.strip().picSelection(),
              window->picModel().picAt(window->sortedPics().mapToSource(window->sortedPics().index(3, 0)).row()));

    // Keepers: only what the files themselves rate 5 stars (xmp:Rating, as exiftool reads it);
    // no filter brings all back.
    QMenu *filters = timeline.filterMenu();
    QAction *keepers = nullptr, *none = nullptr;
    for (QAction *action : filters->actions()) {
        if (action->text() == QStringLiteral("Keepers"))
            keepers = action;
        if (action->text() == QStringLiteral("No Filter"))
            none = action;
    }
    ASSERT_TRUE(keepers && none);
    const qsizetype all = shown.size();
    qsizetype fiveStars = 0;
    for (const MySinglePic *pic : shown)
        fiveStars += exiftoolTags(pic->spPath()).number("XMP:Rating") == 5;
    keepers->trigger();
    EXPECT_EQ(strip.strip().theSource().size(), fiveStars);
    EXPECT_EQ(window->sortedPics().rowCount(), fiveStars);
    EXPECT_EQ(timeline.controller().source().filteredImagesCount(), all - fiveStars);
    none->trigger();
    EXPECT_EQ(strip.strip().theSource().size(), all);
    EXPECT_EQ(window->sortedPics().rowCount(), all);

    // A mirror strip shows the same items; removing it leaves the main strip alone.
    MyTimelineView *mirror = timeline.addTimelineForMode(TimelineStrip::MainOrMirror);
    ASSERT_TRUE(mirror);
    EXPECT_EQ(timeline.views().size(), 2);
    EXPECT_EQ(mirror->strip().theSource(), strip.strip().theSource());
    timeline.removeLastTimeline();
    EXPECT_EQ(timeline.views().size(), 1);
    EXPECT_EQ(strip.strip().theSource().size(), all);
}

} // namespace
} // namespace orv::test
