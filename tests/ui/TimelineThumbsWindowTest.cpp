// The window's thumbnails as a photographer meets them: memory that stays within the cache's
// bound however many thumbnails were shown and saves ran, thumbnails a save keeps, the zoom keys
// and the folder's colour on each thumbnail.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/FolderPalette.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "support/Exiftool.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelinePane.h"

#include <QDateTime>
#include <QDir>
#include <QTimeZone>
#include <QFile>
#include <QPainter>
#include <QScrollBar>
#include <QTest>

namespace orv::test {
namespace {

class TimelineThumbsWindowTest : public WindowFixture
{
protected:
    // count photos of a camera, a minute apart, in a folder of their own.
    QString writeCamera(const QString &name, int count, const char *model)
    {
        const QString folder = dir.filePath(name);
        QDir().mkpath(folder);
        for (int i = 0; i < count; ++i) {
            TiffShape tags;
            tags.model = QByteArray(model);
            const QDateTime taken = QDateTime(QDate(2024, 5, 1), QTime(8, 0), QTimeZone::utc()).addSecs(60LL * i);
            tags.dateTimeOriginal = Stamp::text(taken.toString(QStringLiteral("yyyy:MM:dd HH:mm:ss")).toLatin1());
            buildJpeg({.exif = tags, .size = QSize(160, 120)}).write(folder, QStringLiteral("IMG_%1").arg(i, 5, 10, QLatin1Char('0')));
        }
        return folder;
    }

    MyTimelineView &strip() const { return window->timeline().mainView(); }
    MyThumbsQueue &thumbs() const { return window->timeline().thumbs(); }

    void paint() const
    {
        QImage frame(strip().viewport()->size(), QImage::Format_RGB32);
        QPainter painter(&frame);
        strip().paintStrip(painter);
    }

    // Every item on screen once, page by page, each page with its thumbnails.
    void showEveryThumbnail() const
    {
        QScrollBar &bar = *strip().horizontalScrollBar();
        for (int value = 0;; value += bar.pageStep()) {
            bar.setValue(std::min(value, bar.maximum()));
            QCoreApplication::processEvents();
            thumbs().waitForDone();
            paint();
            if (value >= bar.maximum())
                return;
        }
    }

    bool saveShiftedByAnHour(MySingleFolder *folder)
    {
        window->controller().dateChanges().dragChangedDatesWithDiff({folder}, 3600);
        QSignalSpy finished(window.get(), &MainWindow::saveFinished);
        window->save();
        if (!finished.wait(120000))
            return false;
        thumbs().waitForDone();
        return true;
    }
};

TEST_F(TimelineThumbsWindowTest, FiveThousandThumbnailsAndTwoSavesStayWithinTheCacheBound)
{
    const QString folderPath = writeCamera(QStringLiteral("camera"), 5000, "EOS R6");
    // Less than 5,000 thumbnails need, so that the bound is what holds them.
    const qint64 bound = 4LL * 1024 * 1024;
    thumbs().cache().setMaxBytes(bound);
    ASSERT_TRUE(waitForImport([&] { window->importPaths({folderPath}); }));
    MySingleFolder *folder = window->controller().theDataSource().droppedFolders().first();
    ASSERT_EQ(folder->count(), 5000);

    showEveryThumbnail();
    const ThumbCache &cache = thumbs().cache();
    EXPECT_LE(cache.totalBytes(), bound);
    EXPECT_LT(cache.count(), 5000) << "the bound never came into play";
    EXPECT_FALSE(thumbs().settings().autoBGThumbGeneration) << "a full cache ends the background work";
    // What the cache holds after the last page: a save builds none of it again. What is on screen
    // stays; the rest may give way to what comes on screen, as any cache entry may.
    QHash<quint32, const ThumbEntry *> held;
    for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
        if (cache.contains(pic->sessionUniqueId))
            held.insert(pic->sessionUniqueId, cache.entry(pic->sessionUniqueId));
    QList<quint32> onScreen;
    const ThumbRange visible = strip().visibleThumbsRange();
    for (qsizetype i = visible.first; i < visible.end(); ++i)
        onScreen.append(strip().strip().theSource().at(i)->sessionUniqueId);
    ASSERT_FALSE(onScreen.isEmpty());

    for (int save = 1; save <= 2; ++save) {
        ASSERT_TRUE(saveShiftedByAnHour(folder)) << save;
        EXPECT_FALSE(folder->isUnsavedFolder());
        EXPECT_LE(cache.totalBytes(), bound) << save;
        for (auto it = held.cbegin(); it != held.cend(); ++it)
            if (cache.contains(it.key())) {
                EXPECT_EQ(cache.entry(it.key()), it.value()) << "rebuilt: item " << it.key() << " after save " << save;
            }
        for (const quint32 id : onScreen)
            EXPECT_TRUE(cache.contains(id)) << "dropped: item " << id << " after save " << save;
    }
    // The files did change: two hours later.
    EXPECT_EQ(exiftoolTags(folder->sfPicDetails_fullArray.first()->spPath()).string(QStringLiteral("EXIF:DateTimeOriginal")),
              QStringLiteral("2024:05:01 10:00:00"));
}

TEST_F(TimelineThumbsWindowTest, ZoomKeysAndTheWheelChangeTheSizeModeAndEachFolderShowsItsColour)
{
    const QString camera = writeCamera(QStringLiteral("camera"), 6, "EOS R6");
    const QString phone = writeCamera(QStringLiteral("phone"), 6, "Pixel 8");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({camera, phone}); }));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const TimelineGeometry &geometry = strip().strip().geometry();
    const double before = geometry.thumbSize();
    EXPECT_EQ(TimelineGeometry::sizeModeForHeight(prefs.doubleForKey(QStringLiteral("timelineHeight_STD"))), 2);

    QTest::keyClick(window.get(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(prefs.doubleForKey(QStringLiteral("timelineHeight_STD")), 160);
    QCoreApplication::processEvents();
    EXPECT_GT(geometry.thumbSize(), before) << "the strip took the room the size needs";
    EXPECT_GE(strip().minimumHeight(), TimelineGeometry::mainStripHeightFor(160, false));

    QTest::keyClick(window.get(), Qt::Key_Minus, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(prefs.doubleForKey(QStringLiteral("timelineHeight_STD")), 100);
    QCoreApplication::processEvents();
    EXPECT_LT(geometry.thumbSize(), before);

    // Ctrl and a notch of the wheel: one mode up.
    const QPointF inside = strip().viewport()->rect().center();
    QWheelEvent wheel(inside, strip().viewport()->mapToGlobal(inside), {}, QPoint(0, 120), Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(strip().viewport(), &wheel);
    EXPECT_EQ(prefs.doubleForKey(QStringLiteral("timelineHeight_STD")), 128);

    // Two folders on show: each thumbnail carries its folder's colour above it.
    thumbs().waitForDone();
    strip().horizontalScrollBar()->setValue(0);
    QImage frame(strip().viewport()->size(), QImage::Format_RGB32);
    {
        QPainter painter(&frame);
        strip().paintStrip(painter);
    }
    const FolderPalette palette = FolderPalette::fromPreferences(prefs);
    for (qsizetype i = 0; i < 4; ++i) {
        const MySinglePic *pic = strip().strip().theSource().at(i);
        const QRectF cell =
            geometry.thumbRect(i, strip().strip().isRaised(*pic)).translated(-strip().horizontalScrollBar()->value(), 0);
        const QPoint band(int(cell.center().x()), int(cell.top() - 2 - geometry.markerWidth() / 2));
        EXPECT_EQ(frame.pixelColor(band).rgb(), palette.colorFor(MySingleFolder::of(*pic)->colorIndex)->rgb()) << i;
    }
}

} // namespace
} // namespace orv::test
