// Builds the cache entries of every file of a folder on a number of threads, as the thumbnail
// queue does (decode at reduced scale, orientation, the compressed and decoded forms), and
// prints the rate. bench/thumbs_bench.sh runs it beside vipsthumbnail.
//   orvelle-thumbs-bench FOLDER [SIDE] [THREADS]

#include "thumbs/ThumbDecoder.h"
#include "thumbs/ThumbEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QThreadPool>

#include <atomic>
#include <cstdio>

using namespace orv;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: orvelle-thumbs-bench FOLDER [SIDE] [THREADS]\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const int side = argc > 2 ? atoi(argv[2]) : 252;
    const int threads = argc > 3 ? atoi(argv[3]) : QThread::idealThreadCount();
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    QThreadPool pool;
    pool.setMaxThreadCount(threads);
    std::atomic<int> built{0}, failed{0};
    QElapsedTimer clock;
    clock.start();
    for (const QString &name : names) {
        pool.start([&, path = folder.filePath(name)] {
            const QImage image = ThumbDecoder::decode({0, path, ThumbRequest::Kind::Photo, side, false});
            if (image.isNull() || ThumbEntry::make(image, side).compressedData.isEmpty())
                ++failed;
            else
                ++built;
        });
    }
    pool.waitForDone();
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    std::printf("%d %d %.3f\n", built.load(), failed.load(), seconds);
    return failed.load() == 0 ? 0 : 1;
}
