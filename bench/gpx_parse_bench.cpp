// Reads one GPX file, either with the track reader or with Qt's XML tokenizer alone (every token
// read, nothing kept), so that the script can set the reader's cost beside the floor that
// QXmlStreamReader itself sets.
//   orvelle-gpx-bench reader|tokens FILE
#include "places/MyGpxTrackParser.h"

#include <QCoreApplication>
#include <QFile>
#include <QXmlStreamReader>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3 || (args[1] != u"reader" && args[1] != u"tokens")) {
        std::fprintf(stderr, "usage: orvelle-gpx-bench reader|tokens FILE\n");
        return 2;
    }
    if (args[1] == u"reader") {
        const orv::GpxFile file = orv::MyGpxTrackParser::parseFile(args[2]);
        qsizetype points = 0;
        for (const orv::MyGpxTrack &track : file.tracks)
            points += track.pointCount();
        std::printf("%lld points in %lld tracks%s\n", qlonglong(points), qlonglong(file.tracks.size()),
                    file.problem.isEmpty() ? "" : qPrintable(QStringLiteral(": ") + file.problem));
        return file.problem.isEmpty() ? 0 : 1;
    }
    QFile device(args[2]);
    if (!device.open(QIODevice::ReadOnly))
        return 1;
    QXmlStreamReader xml(&device);
    qlonglong tokens = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        ++tokens;
    }
    std::printf("%lld tokens\n", tokens);
    return xml.hasError() ? 1 : 0;
}
