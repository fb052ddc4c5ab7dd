// Frame time of the rating grid painted offscreen at 100, 10,000 and 100,000 items while it
// scrolls around the middle: the median of 200 frames per size, and the ratio of the largest to
// the smallest (the target is at most 1.2: a cell's place is arithmetic on its index, so the
// count must not matter). Each frame decodes the thumbnails that scroll in from the cache's
// compressed bytes, as on screen.
//   orvelle-grid-bench [FRAMES]   (QT_QPA_PLATFORM=offscreen)

#include "BenchSupport.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"
#include "ui/VQSView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>

using namespace orv;

namespace {

// A photo-like thumbnail: smooth light with some grain, which JPEG keeps at a few kilobytes.
QImage photoLike()
{
    QImage photo(252, 189, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, qRgb(90 + x / 3 + (x * y) % 13, 120 + y / 3, 80 + (x ^ y) % 40));
    return photo;
}

double medianFrameMs(int count, int frames)
{
    MySingleFolder folder(QStringLiteral("/bench/trip"), false);
    const Instant start = Instant::fromUtc(2024, 5, 1, 8);
    for (int i = 0; i < count; ++i) {
        MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_%1.JPG").arg(i), &folder,
                                                                         SpTypeExifOriginal, start.addingSeconds(i * 60.0)));
        // Some ratings, so that markers and dimming are drawn too.
        pic->isKeeper = i % 7 == 0;
        pic->isRejected = i % 11 == 0 && !pic->isKeeper;
    }
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView strip(controller, controller.theTimelineView_1(), thumbs);
    controller.buildNewSource({&folder});
    strip.sourceChanged();
    VQSView grid(strip, thumbs);
    grid.resize(1400, 900);
    grid.show(); // lays out the viewport
    QCoreApplication::processEvents();
    grid.grid().setThumbSizeTargetValue(180);
    grid.sourceChanged();
    QScrollBar *bar = grid.verticalScrollBar();
    const int middle = bar->maximum() / 2;
    bar->setValue(middle);

    // Every item near the middle has its thumbnail, as after the queue's first batches.
    const ThumbEntry entry = ThumbEntry::make(photoLike(), 252);
    const ThumbRange visible = grid.visibleRange();
    const qsizetype around = 12 * grid.grid().currentColumnCount();
    for (qsizetype i = std::max<qsizetype>(visible.first - around, 0); i < std::min(visible.end() + around, grid.grid().count()); ++i)
        thumbs.cache().insert(controller.source_filtered().at(i)->sessionUniqueId, entry);

    QImage frame(grid.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> times;
    times.reserve(size_t(frames));
    const int step = int(grid.grid().heightForRow() / 3);
    for (int f = 0; f < frames; ++f) {
        // Scrolling down and up three rows, which even 100 items leave room for, so that every
        // count scrolls alike and rows and their pixmaps come and go.
        bar->setValue(std::clamp(middle + (f % 20 - 10) * step, 0, bar->maximum()));
        QElapsedTimer clock;
        clock.start();
        QPainter painter(&frame);
        grid.paintGrid(painter);
        painter.end();
        times.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    std::printf("%7d items: %d columns of %.0f points, %lld cells a frame; ", count, grid.grid().currentColumnCount(),
                grid.grid().vqsWidth(), static_cast<long long>(grid.visibleRange().count));
    return orv::bench::median(times);
}

} // namespace

int main(int argc, char **argv)
{
    orv::bench::offscreenUnlessAsked();
    QApplication app(argc, argv);
    const int frames = argc > 1 ? std::max(1, atoi(argv[1])) : 200;
    std::printf("rating grid 1400 x 900, cells of 180 points asked, %d frames per count, median frame time\n", frames);
    const double small = medianFrameMs(100, frames);
    std::printf("median %.3f ms\n", small);
    std::printf("median %.3f ms\n", medianFrameMs(10000, frames));
    const double large = medianFrameMs(100000, frames);
    std::printf("median %.3f ms\n", large);
    std::printf("100,000 / 100: %.2fx (target: at most 1.2x)\n", large / small);
    return 0;
}
