// Frame time of the map painted offscreen (1400 x 900, offline layer, no tiles) with 100, 10,000
// and 100,000 pins spread over Europe and a 100,000-point track, panned a little each frame at
// a country's zoom and at a city's. Prints the median of each, the map alone beside it, and the
// ratio of the largest pin count to the smallest. Targets: a ratio of at most 1.5, a median under
// 16 ms at 100,000 pins.
//   orvelle-map-bench [FRAMES]   (QT_QPA_PLATFORM=offscreen)

#include "BenchSupport.h"

#include "ui/MapView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QThreadPool>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace orv;

namespace {

QList<GeoCoordinate> pinsOverEurope(int count)
{
    QRandomGenerator random(7);
    QList<GeoCoordinate> pins;
    for (int i = 0; i < count; ++i)
        pins.append({36.0 + random.generateDouble() * 24.0, -10.0 + random.generateDouble() * 35.0});
    return pins;
}

// A winding walk of 100,000 points from Lisbon to the north east.
QList<QList<QList<GeoCoordinate>>> longTrack()
{
    QList<GeoCoordinate> points;
    for (int i = 0; i < 100000; ++i)
        points.append({38.7 + i * 0.0001 + 0.01 * std::sin(i / 50.0), -9.1 + i * 0.00015});
    return {{points}};
}

double medianFrameMs(MapView &view, GeoCoordinate centre, int zoom, int frames)
{
    QImage frame(view.size(), QImage::Format_RGB32);
    std::vector<double> times;
    QElapsedTimer timer;
    for (int i = 0; i < frames; ++i) {
        view.setView({centre.latitude + 0.001 * (i % 7), centre.longitude + 0.002 * i}, zoom);
        timer.start();
        QPainter painter(&frame);
        view.render(&painter);
        painter.end();
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    return orv::bench::median(times);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int frames = argc > 1 ? std::max(5, std::atoi(argv[1])) : 60;
    MapView view;
    view.resize(1400, 900);
    QThreadPool::globalInstance()->waitForDone(); // the offline layer is made on a worker
    view.setTracks(longTrack());
    struct Place
    {
        const char *name;
        GeoCoordinate centre;
        int zoom;
    };
    for (const Place &place : {Place{"Europe, zoom 5", {48.0, 8.0}, 5}, Place{"Lisbon, zoom 12", {38.72, -9.14}, 12}}) {
        view.setPins({});
        const double alone = medianFrameMs(view, place.centre, place.zoom, frames);
        std::vector<double> medians;
        for (int count : {100, 10000, 100000}) {
            view.setPins(pinsOverEurope(count));
            medianFrameMs(view, place.centre, place.zoom, 2); // the zoom's clusters are made once
            medians.push_back(medianFrameMs(view, place.centre, place.zoom, frames));
            std::printf("%s: %6d pins + 100,000-point track: median %.2f ms per frame\n", place.name, count,
                        medians.back());
        }
        std::printf("%s: map and track alone %.2f ms; 100,000 / 100 pins: %.2fx (target: at most 1.5x, median "
                    "under 16 ms)\n",
                    place.name, alone, medians.back() / medians.front());
    }
    return 0;
}
