// Frame time of one strip painted offscreen at 100, 10,000 and 100,000 items, scrolled to the
// middle: the median of 200 frames per size, and the ratio of the largest to the smallest (the
// target is at most 1.2: geometry is arithmetic on the index, so size must not matter). Once at
// the default thumbnail size and once at the largest size mode, where each frame decodes the
// thumbnails that scroll in from the cache's compressed bytes.
//   orvelle-timeline-bench [FRAMES]   (QT_QPA_PLATFORM=offscreen)

#include "BenchSupport.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MyTimelineView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>

using namespace orv;

namespace {

struct StripSize
{
    const char *name;
    double timelineHeight;
    int height; // of the strip on screen
};

// A photo-like thumbnail: smooth light with some grain, which JPEG keeps at a few kilobytes.
QImage photoLike()
{
    QImage photo(252, 189, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, qRgb(90 + x / 3 + (x * y) % 13, 120 + y / 3, 80 + (x ^ y) % 40));
    return photo;
}

double medianFrameMs(int count, int frames, const StripSize &size)
{
    // Two folders, one photo a minute, alternating.
    MySingleFolder camera(QStringLiteral("/bench/camera"), false);
    MySingleFolder phone(QStringLiteral("/bench/phone"), false);
    const Instant start = Instant::fromUtc(2024, 5, 1, 8);
    for (int i = 0; i < count; ++i) {
        MySingleFolder &folder = i % 2 ? phone : camera;
        folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG_%1.JPG").arg(i), &folder, SpTypeExifOriginal,
                                                      start.addingSeconds(i * 60.0)));
    }
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView view(controller, controller.theTimelineView_1(), thumbs);
    TimelineViewOptions options;
    options.timelineHeight = size.timelineHeight;
    view.setOptions(options);
    view.resize(1400, size.height);
    view.show(); // lays out the viewport
    QCoreApplication::processEvents();
    controller.buildNewSource({&camera, &phone});
    controller.theTimelineView_1().setRaisedFolders({&camera});
    view.sourceChanged();
    view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->maximum() / 2);

    // Every item near the middle has its thumbnail, as after the queue's first batch.
    const ThumbEntry entry = ThumbEntry::make(photoLike(), 252);
    const ThumbRange near = view.visibleThumbsRange(40);
    for (qsizetype i = near.first; i < near.end(); ++i)
        thumbs.cache().insert(controller.source_filtered().at(i)->sessionUniqueId, entry);

    QImage frame(view.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> times;
    times.reserve(size_t(frames));
    const int middle = view.horizontalScrollBar()->value();
    for (int f = 0; f < frames; ++f) {
        // A little scrolling back and forth, so that layers come and go.
        view.horizontalScrollBar()->setValue(middle + (f % 40 - 20) * 9);
        QElapsedTimer clock;
        clock.start();
        QPainter painter(&frame);
        view.paintStrip(painter);
        painter.end();
        times.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    const ThumbRange visible = view.visibleThumbsRange();
    std::printf("%7d items: %lld thumbnails of %.0f points and %lld labels a frame, %lld pixmaps held; ", count,
                static_cast<long long>(visible.count), view.strip().geometry().thumbSize(),
                static_cast<long long>(view.lastLabels().size()), static_cast<long long>(view.layerCount()));
    return orv::bench::median(times);
}

} // namespace

int main(int argc, char **argv)
{
    orv::bench::offscreenUnlessAsked();
    QApplication app(argc, argv);
    const int frames = argc > 1 ? std::max(1, atoi(argv[1])) : 200;
    const StripSize sizes[] = {{"default size (timeline height 128)", 128, 260},
                               {"largest size (timeline height 222)", 222, 400}};
    for (const StripSize &size : sizes) {
        std::printf("%s: strip 1400 x %d, %d frames per count, median frame time\n", size.name, size.height, frames);
        const double small = medianFrameMs(100, frames, size);
        std::printf("median %.3f ms\n", small);
        std::printf("median %.3f ms\n", medianFrameMs(10000, frames, size));
        const double large = medianFrameMs(100000, frames, size);
        std::printf("median %.3f ms\n", large);
        std::printf("100,000 / 100: %.2fx (target: at most 1.2x)\n", large / small);
    }
    return 0;
}
