// The window's memory with many items: right after the import (no thumbnail yet), after every
// thumbnail was shown once (the strip paged through from end to end), and after each of two
// saves of a shifted folder. The thumbnails live in one cache bounded in bytes, so the window
// may hold at most 1.3 times its import figure plus that bound, however many saves ran.
//   orvelle-window-memory-bench SAVED_FOLDER OTHER_FOLDER [SAVES]   (QT_QPA_PLATFORM=offscreen;
//                                  ORV_THUMB_CACHE_MB sets the cache's bound, else the default)
// SAVED_FOLDER's items are shifted by an hour and saved, SAVES times (default 2); the script
// window_memory_bench.sh makes the folders.

#include "BenchSupport.h"

#include "app/AppController.h"
#include "core/Preferences.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/MainWindow.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelinePane.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QScrollBar>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>

using namespace orv;

namespace {

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

double megabytes(qint64 bytes)
{
    return double(bytes) / (1024.0 * 1024.0);
}

// Pages through the main strip from start to end, painting each page and waiting for the
// thumbnails it asks for, so that every item was on screen once with its thumbnail.
void showEveryThumbnail(MainWindow &window)
{
    MyTimelineView &view = window.timeline().mainView();
    MyThumbsQueue &thumbs = window.timeline().thumbs();
    QScrollBar &bar = *view.horizontalScrollBar();
    QImage frame(view.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    for (int value = 0;; value += bar.pageStep()) {
        bar.setValue(std::min(value, bar.maximum()));
        QCoreApplication::processEvents();
        thumbs.waitForDone();
        QPainter painter(&frame);
        view.paintStrip(painter);
        if (value >= bar.maximum())
            break;
    }
}

void report(const char *what, double rss, double import, const ThumbCache &cache)
{
    const double bound = megabytes(cache.maxBytes());
    const double held = megabytes(cache.totalBytes());
    std::printf("%-34s %8.1f MB resident, cache %7.1f MB (%lld thumbnails, bound %.0f MB); "
                "(resident - cache) / import %.2fx (target: at most 1.3x); resident / (1.3 x import + bound) "
                "%.2fx (target: at most 1x)\n",
                what, rss, held, static_cast<long long>(cache.count()), bound, (rss - held) / import,
                rss / (1.3 * import + bound));
    std::fflush(stdout);
}

template <typename Signal>
bool waitFor(const MainWindow *sender, Signal signal, int seconds)
{
    QEventLoop loop;
    bool came = false;
    QObject::connect(sender, signal, &loop, [&] {
        came = true;
        loop.quit();
    });
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    return came;
}

} // namespace

int main(int argc, char **argv)
{
    orv::bench::offscreenUnlessAsked();
    QApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s SAVED_FOLDER OTHER_FOLDER [SAVES]\n", argv[0]);
        return 2;
    }
    const QString savedPath = QString::fromLocal8Bit(argv[1]);
    const QString otherPath = QString::fromLocal8Bit(argv[2]);
    const int saves = argc > 3 ? std::max(0, atoi(argv[3])) : 2;

    Preferences prefs{QString()};
    if (!qEnvironmentVariableIsEmpty("ORV_THUMB_CACHE_MB"))
        prefs.setInteger(ThumbCache::boundKey, qEnvironmentVariableIntValue("ORV_THUMB_CACHE_MB"));
    prefs.setBool(QStringLiteral("isAlwaysShowOptionsDisabled"), true);
    prefs.setBool(QStringLiteral("skipEmptyTagImportOptions"), true);
    MainWindow window(prefs);
    window.resize(1400, 900);
    window.show();
    QCoreApplication::processEvents();
    MyThumbsQueue &thumbs = window.timeline().thumbs();

    // The import figure: the items without any thumbnail.
    thumbs.setPaused(true);
    QElapsedTimer clock;
    clock.start();
    window.importPaths({savedPath, otherPath});
    if (!waitFor(&window, &MainWindow::importsFinished, 3600)) {
        std::fprintf(stderr, "the import did not finish\n");
        return 1;
    }
    QCoreApplication::processEvents();
    const qsizetype items = window.timeline().controller().source_full().size();
    const double import = residentMegabytes();
    std::printf("%lld items imported in %.1f s\n", static_cast<long long>(items), clock.elapsed() / 1000.0);
    report("after import:", import, import, thumbs.cache());

    clock.restart();
    thumbs.setPaused(false);
    thumbs.waitForDone();
    showEveryThumbnail(window);
    std::printf("every thumbnail shown once in %.1f s\n", clock.elapsed() / 1000.0);
    report("after every thumbnail was shown:", residentMegabytes(), import, thumbs.cache());

    MySingleFolder *saved = nullptr;
    for (MySingleFolder *folder : window.controller().theDataSource().droppedFolders())
        if (folder->sfFolderPath == savedPath)
            saved = folder;
    for (int n = 1; n <= saves && saved; ++n) {
        window.controller().dateChanges().dragChangedDatesWithDiff({saved}, 3600);
        clock.restart();
        window.save();
        if (!waitFor(&window, &MainWindow::saveFinished, 3600)) {
            std::fprintf(stderr, "the save did not finish\n");
            return 1;
        }
        // What the save set going in the background ends before the figure is taken.
        thumbs.waitForDone();
        std::printf("save %d of %lld items in %.1f s\n", n, static_cast<long long>(saved->count()),
                    clock.elapsed() / 1000.0);
        const QByteArray what = QByteArray("after save ") + QByteArray::number(n) + ':';
        report(what.constData(), residentMegabytes(), import, thumbs.cache());
    }
    return 0;
}
