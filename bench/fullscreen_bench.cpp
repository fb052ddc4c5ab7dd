// The full-screen view's step: 24-megapixel JPEGs (6000 x 4000, made here), the user stepping at
// one image a second. Prints the decode time of one image at screen size (1920 x 1080) beside
// vipsthumbnail's for the same files in the same run, and the median time from the "next" key
// to the new image drawn, once the prefetch had its second.
//   orvelle-fullscreen-bench [IMAGES]   (QT_QPA_PLATFORM=offscreen; vipsthumbnail on the PATH)

#include "BenchSupport.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/FullScreenView.h"
#include "ui/MyTimelineView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImageWriter>
#include <QKeyEvent>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace orv;

namespace {

const QSize screenSize(1920, 1080);

// A photo-like 24-megapixel frame, a little different each time.
void writeLargeJpeg(const QString &path, int seed)
{
    QImage photo(6000, 4000, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y) {
        QRgb *line = reinterpret_cast<QRgb *>(photo.scanLine(y));
        for (int x = 0; x < photo.width(); ++x)
            line[x] = qRgb((x / 25 + seed * 20) % 256, (y / 17 + (x * y) % 7) % 256, (x ^ y) % 64 + 90);
    }
    QImageWriter writer(path, "jpeg");
    writer.setQuality(90);
    writer.write(photo);
}

} // namespace

int main(int argc, char **argv)
{
    orv::bench::offscreenUnlessAsked();
    QApplication app(argc, argv);
    const int count = argc > 1 ? std::max(3, atoi(argv[1])) : 8;
    QTemporaryDir dir;
    MySingleFolder folder(dir.path(), false);
    const Instant start = Instant::fromUtc(2024, 5, 1, 8);
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("IMG_%1.jpg").arg(i);
        writeLargeJpeg(dir.filePath(name), i);
        folder.adoptPic(std::make_unique<MySinglePic>(name, &folder, SpTypeExifOriginal, start.addingSeconds(i * 60.0)));
    }

    // Decode at screen size: ours, then vipsthumbnail's (which also starts a process and writes
    // its result, as a user of it would).
    std::vector<double> ours, vips;
    for (int i = 0; i < count; ++i) {
        const QString path = dir.filePath(QStringLiteral("IMG_%1.jpg").arg(i));
        QElapsedTimer clock;
        clock.start();
        const QImage image = ScreenPreviews::decodeForScreen(path, screenSize);
        ours.push_back(double(clock.nsecsElapsed()) / 1e6);
        if (image.isNull())
            std::printf("%s did not decode\n", qPrintable(path));
        clock.restart();
        const int code = QProcess::execute(QStringLiteral("vipsthumbnail"),
                                           {path, QStringLiteral("--size"), QStringLiteral("1920x1080"), QStringLiteral("-o"),
                                            dir.filePath(QStringLiteral("vips_%1.jpg").arg(i))});
        vips.push_back(code == 0 ? double(clock.nsecsElapsed()) / 1e6 : -1);
    }
    const double oursMs = orv::bench::median(ours), vipsMs = orv::bench::median(vips);
    std::printf("decode of a 6000 x 4000 JPEG at 1920 x 1080, median of %d: ours %.1f ms, vipsthumbnail %.1f ms (ours / "
                "vipsthumbnail %.2fx)\n",
                count, oursMs, vipsMs, vipsMs > 0 ? oursMs / vipsMs : 0.0);

    // Stepping: the view at screen size, a second (of prefetch) between steps.
    MyTimelinesController controller;
    MyThumbsQueue thumbs;
    MyTimelineView strip(controller, controller.theTimelineView_1(), thumbs);
    controller.buildNewSource({&folder});
    strip.sourceChanged();
    FullScreenView view(strip, thumbs);
    view.resize(screenSize);
    view.open(controller.source_filtered().first());
    view.previews().setTargetSize(screenSize);
    QImage frame(screenSize, QImage::Format_ARGB32_Premultiplied);
    std::vector<double> steps;
    for (int i = 1; i < count; ++i) {
        view.previews().waitForDone();
        QCoreApplication::processEvents();
        QElapsedTimer clock;
        clock.start();
        QKeyEvent next(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
        QApplication::sendEvent(&view, &next);
        view.render(&frame);
        steps.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    std::printf("next key to the new image drawn, prefetched, median of %d steps: %.1f ms (target: under 50 ms)\n",
                count - 1, orv::bench::median(steps));
    return 0;
}
