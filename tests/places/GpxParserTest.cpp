// The GPX reader on crafted files of both versions, on broken and strangely encoded ones, and on
// the corpus's real files against the counts gpxpy reads from them.

#include "places/MyGpxTrackParser.h"
#include "support/Corpus.h"

#include <QBuffer>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;

namespace {

GpxFile parseBytes(const QByteArray &bytes)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return MyGpxTrackParser::parse(buffer, QStringLiteral("crafted.gpx"));
}

QByteArray gpx11(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<gpx version=\"1.1\" creator=\"test\" xmlns=\"http://www.topografix.com/GPX/1/1\"\n"
           " xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\">\n"
           + body + "</gpx>\n";
}

QByteArray point(const char *lat, const char *lon, const char *time)
{
    return QByteArray("<trkpt lat=\"") + lat + "\" lon=\"" + lon + "\">" + (time ? QByteArray("<time>") + time + "</time>" : "")
           + "</trkpt>";
}

const QByteArray goodTrack = "<trk><name>good</name><trkseg>" + point("46.0", "14.0", "2024-05-01T10:00:00Z")
                             + point("46.1", "14.1", "2024-05-01T10:01:00Z") + "</trkseg></trk>";

double at(int hour, int minute, double second)
{
    return Instant::fromUtc(2024, 5, 1, hour, minute, second).secondsSinceEpoch();
}

} // namespace

TEST(GpxParser, ReadsTracksSegmentsRoutesAndWaypointsOfGpx11WithElevationAccuracyAndTimes)
{
    const GpxFile file = parseBytes(gpx11(
        "<metadata><name>trip</name><time>2024-05-01T00:00:00Z</time></metadata>"
        "<wpt lat=\"46.5\" lon=\"13.5\"><ele>2000</ele><name> Summit </name></wpt>"
        "<rte><name>plan</name><rtept lat=\"46.0\" lon=\"14.0\"/><rtept lat=\"46.2\" lon=\"14.2\"/></rte>"
        "<trk><name> Morning walk </name><type>hiking</type><trkseg>"
        "<trkpt lat=\"46.01\" lon=\"14.02\"><ele>312.5</ele><time>2024-05-01T10:00:00Z</time>"
        "<extensions><gpxtpx:TrackPointExtension><gpxtpx:hAcc>4.5</gpxtpx:hAcc></gpxtpx:TrackPointExtension>"
        "</extensions></trkpt>"
        "<trkpt lat=\"-46.02\" lon=\"-14.03\"><time>2024-05-01T12:00:30.250+02:00</time></trkpt>"
        "</trkseg><trkseg>"
        "<trkpt lat=\"46.03\" lon=\"14.04\"><ele>not a number</ele><time>2024-05-01T10:05:00.123456Z</time></trkpt>"
        "</trkseg></trk>"
        "<trk><trkseg>"
        + point("1", "2", "2024-05-01T11:00:00Z") + "</trkseg></trk>"));

    EXPECT_TRUE(file.problem.isEmpty()) << file.problem.toStdString();
    ASSERT_EQ(file.tracks.size(), 2);
    const MyGpxTrack &walk = file.tracks[0];
    EXPECT_EQ(walk.name, QStringLiteral("Morning walk"));
    EXPECT_EQ(walk.type, QStringLiteral("hiking"));
    EXPECT_EQ(walk.filePath, QStringLiteral("crafted.gpx"));
    ASSERT_EQ(walk.trackSegments.size(), 2);
    ASSERT_EQ(walk.trackSegments[0].trackPoints.size(), 2);
    const MyGpxTrackPoint &first = walk.trackSegments[0].trackPoints[0];
    EXPECT_EQ(first.latitude, 46.01);
    EXPECT_EQ(first.longitude, 14.02);
    EXPECT_EQ(first.elevation, 312.5);
    EXPECT_EQ(first.hAcc, 4.5);
    EXPECT_EQ(first.originalTime->secondsSinceEpoch(), at(10, 0, 0));
    const MyGpxTrackPoint &second = walk.trackSegments[0].trackPoints[1];
    EXPECT_EQ(second.latitude, -46.02);
    EXPECT_EQ(second.elevation, 1.7976931348623157e308) << "no ele: the not-set sentinel";
    EXPECT_EQ(second.hAcc, 1.7976931348623157e308);
    EXPECT_DOUBLE_EQ(second.originalTime->secondsSinceEpoch(), at(10, 0, 30.25)) << "the offset is taken off";
    const MyGpxTrackPoint &third = walk.trackSegments[1].trackPoints[0];
    EXPECT_EQ(third.elevation, MyGpxTrackPoint::notSet) << "an unreadable ele is none";
    EXPECT_NEAR(third.originalTime->secondsSinceEpoch(), at(10, 5, 0.123456), 1e-6);
    EXPECT_EQ(walk.trackState, TrackState::Usable);

    ASSERT_EQ(file.routes.size(), 1);
    EXPECT_EQ(file.routes[0].name, QStringLiteral("plan"));
    EXPECT_EQ(file.routes[0].routePoints.size(), 2);
    ASSERT_EQ(file.waypoints.size(), 1);
    EXPECT_EQ(file.waypoints[0].name, QStringLiteral("Summit"));
    EXPECT_EQ(file.waypoints[0].point.elevation, 2000.0);
    EXPECT_TRUE(file.problems().isEmpty());
}

TEST(GpxParser, ReadsGpx10AndAnyNamespacePrefix)
{
    const GpxFile file = parseBytes("<?xml version=\"1.0\"?>\n"
                                    "<g:gpx version=\"1.0\" xmlns:g=\"http://www.topografix.com/GPX/1/0\">"
                                    "<g:trk><g:name>old</g:name><g:trkseg>"
                                    "<g:trkpt lat=\"10\" lon=\"20\"><g:ele>5</g:ele><g:time>2024-05-01T10:00:00Z</g:time>"
                                    "<g:speed>1.5</g:speed></g:trkpt>"
                                    "</g:trkseg></g:trk></g:gpx>");
    ASSERT_EQ(file.tracks.size(), 1);
    EXPECT_EQ(file.tracks[0].name, QStringLiteral("old"));
    EXPECT_EQ(file.tracks[0].trackSegments[0].trackPoints[0].elevation, 5.0);
}

TEST(GpxParser, NumbersInEveryFormXmlCanWriteThemAndNothingElse)
{
    const auto elevations = [](const QByteArray &lat, const QList<QByteArray> &values) {
        QByteArray points;
        for (const QByteArray &value : values)
            points += "<trkpt lat=\"" + lat + "\" lon=\"14\"><ele>" + value + "</ele></trkpt>";
        QList<double> read;
        for (const MyGpxTrackPoint &p : parseBytes(gpx11("<trk><trkseg>" + points + "</trkseg></trk>"))
                                            .tracks.value(0)
                                            .trackSegments.value(0)
                                            .trackPoints)
            read << p.elevation;
        return read;
    };
    const double none = MyGpxTrackPoint::notSet;
    EXPECT_EQ(elevations(" 46.5 ", {"312.5", " -0.25\n", "+1e3", "3&#49;2.5", "31<!-- a comment -->2.5",
                                     "<![CDATA[7.25]]>", "12,5", "inf", "nan", "0x10", "1.5m", ""}),
              (QList<double>{312.5, -0.25, 1000.0, 312.5, 312.5, 7.25, none, none, none, none, none, none}));
    EXPECT_TRUE(elevations("nan", {"1"}).isEmpty()) << "a latitude that is no number is no place";
    EXPECT_TRUE(elevations("90.000001", {"1"}).isEmpty());
}

TEST(GpxParser, TimesInEveryFormGpxWritesAndNothingElse)
{
    const double ten = at(10, 0, 0);
    const auto seconds = [](const char *text) {
        const OptionalDate date = MyGpxTrackParser::parseTime(QString::fromLatin1(text));
        return date ? date->secondsSinceEpoch() : -1.0;
    };
    EXPECT_EQ(seconds("2024-05-01T10:00:00Z"), ten);
    EXPECT_EQ(seconds(" 2024-05-01T10:00:00Z\n"), ten);
    EXPECT_EQ(seconds("2024-05-01T10:00:00"), ten) << "GPX times without a zone are UTC";
    EXPECT_EQ(seconds("2024-05-01T12:00:00+02:00"), ten);
    EXPECT_EQ(seconds("2024-05-01T04:30:00-0530"), ten);
    EXPECT_EQ(seconds("2024-05-01T11:00:00+01"), ten);
    EXPECT_EQ(seconds("2024-05-01T10:00:00.5Z"), ten + 0.5);
    EXPECT_NEAR(seconds("2024-05-01T10:00:00.123456789Z"), ten + 0.123456789, 1e-6);
    for (const char *bad : {"", "2024-05-01", "2024-05-01T10:00Z", "2024-02-30T10:00:00Z", "2024-05-01T24:00:00Z",
                            "2024-05-01T10:00:00.Z", "2024-05-01T10:00:00+2:00", "2024-05-01T10:00:00 UTC",
                            "yesterday at ten"})
        EXPECT_EQ(seconds(bad), -1.0) << bad;
}

TEST(GpxParser, UnusableTracksSayWhyAndTheOthersStillLoad)
{
    const GpxFile file = parseBytes(gpx11(
        goodTrack + "<trk><name>untimed</name><trkseg>" + point("1", "1", nullptr) + point("1", "2", nullptr)
        + "</trkseg></trk>" + "<trk><name>backwards</name><trkseg>" + point("1", "1", "2024-05-01T10:00:10Z")
        + point("1", "2", "2024-05-01T10:00:00Z") + "</trkseg></trk>" + "<trk><name>empty</name><trkseg/></trk>"
        + "<trk/>" + "<trk><trkseg/><trkseg>" + point("1", "1", "2024-05-01T10:00:00Z")
        + point("1", "2", "2024-05-01T10:00:10Z") + "</trkseg></trk>"
        + "<trk><trkseg>" + point("north of the pole", "1", "2024-05-01T10:00:00Z") + "</trkseg></trk>"));

    ASSERT_EQ(file.tracks.size(), 7);
    EXPECT_EQ(file.tracks[0].trackState, TrackState::Usable);
    EXPECT_EQ(file.tracks[1].trackState, TrackState::NoTimes);
    EXPECT_EQ(file.tracks[2].trackState, TrackState::WrongOrder);
    EXPECT_EQ(file.tracks[3].trackState, TrackState::NoPoints);
    EXPECT_EQ(file.tracks[4].trackState, TrackState::NoPoints) << "a track without segments";
    EXPECT_EQ(file.tracks[5].trackState, TrackState::Usable) << "an empty segment beside a good one does no harm";
    EXPECT_EQ(file.tracks[6].trackState, TrackState::NoPoints) << "its only point names no place";
    EXPECT_EQ(file.problems(),
              (QStringList{QStringLiteral("1 points without a valid lat and lon were left out"),
                           QStringLiteral("track 2 (untimed) places nothing: its points have no times"),
                           QStringLiteral("track 3 (backwards) places nothing: its times go backwards"),
                           QStringLiteral("track 4 (empty) places nothing: it has no points"),
                           QStringLiteral("track 5 places nothing: it has no points"),
                           QStringLiteral("track 7 places nothing: it has no points")}));
}

TEST(GpxParser, ByteOrderMarksUtf16AndLatin1ReadAlike)
{
    const QByteArray utf8 = gpx11("<trk><name>Žabljak – Ağrı</name><trkseg>"
                                  + point("46.0", "14.0", "2024-05-01T10:00:00Z") + "</trkseg></trk>");
    const QString expected = QStringLiteral("Žabljak – Ağrı");

    const GpxFile withBom = parseBytes("\xEF\xBB\xBF" + utf8);
    ASSERT_EQ(withBom.tracks.size(), 1) << withBom.problem.toStdString();
    EXPECT_EQ(withBom.tracks[0].name, expected);

    QString text = QString::fromUtf8(utf8);
    text.replace(QStringLiteral("UTF-8"), QStringLiteral("UTF-16"));
    QStringEncoder toUtf16(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
    const GpxFile utf16 = parseBytes(toUtf16(text));
    ASSERT_EQ(utf16.tracks.size(), 1) << utf16.problem.toStdString();
    EXPECT_EQ(utf16.tracks[0].name, expected);

    const GpxFile latin1 = parseBytes("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><gpx><trk><name>Caf\xE9</name>"
                                      "</trk></gpx>");
    ASSERT_EQ(latin1.tracks.size(), 1) << latin1.problem.toStdString();
    EXPECT_EQ(latin1.tracks[0].name, QStringLiteral("Café"));
}

TEST(GpxParser, BrokenFilesSayWhyAndKeepWhatEndedBeforeTheBreak)
{
    const QByteArray whole = gpx11(goodTrack + goodTrack);
    const GpxFile truncated = parseBytes(whole.left(whole.lastIndexOf("</trkseg>")));
    EXPECT_EQ(truncated.tracks.size(), 1) << "half a track is no track";
    EXPECT_TRUE(truncated.problem.startsWith(QStringLiteral("broken off at line"))) << truncated.problem.toStdString();

    const GpxFile notXml = parseBytes("\x89PNG\r\n\x1a\n not xml at all");
    EXPECT_TRUE(notXml.tracks.isEmpty());
    EXPECT_TRUE(notXml.problem.startsWith(QStringLiteral("not XML"))) << notXml.problem.toStdString();

    const GpxFile otherXml = parseBytes("<?xml version=\"1.0\"?><kml><trk/></kml>");
    EXPECT_EQ(otherXml.problem, QStringLiteral("not a GPX file (its root element is not gpx)"));

    const GpxFile unclosed = parseBytes(gpx11(goodTrack + "<trk><trkseg></trk>"));
    EXPECT_EQ(unclosed.tracks.size(), 1);
    EXPECT_FALSE(unclosed.problem.isEmpty());

    EXPECT_EQ(parseBytes(gpx11("")).problems(), QStringList{QStringLiteral("it holds no track")});
    EXPECT_EQ(MyGpxTrackParser::parseFile(QStringLiteral("/nonexistent/x.gpx")).problem, QStringLiteral("no such file"));
    EXPECT_EQ(MyGpxTrackParser::parseFile(QStringLiteral("/dev/zero")).problem, QStringLiteral("not a regular file"))
        << "an endless device is never read";
    QTemporaryDir dir;
    EXPECT_EQ(MyGpxTrackParser::parseFile(dir.path()).problem, QStringLiteral("not a regular file"));
}

TEST(GpxParser, CorpusFilesGiveTheCountsGpxpyReads)
{
    ORV_SKIP_WITHOUT_CORPUS();
    struct Expected
    {
        const char *path;
        qsizetype tracks, segments, points, routes, waypoints;
        int usableTracks;
    };
    // Counted once with gpxpy 1.5 (python3-gpxpy). Geotag.gpx lists its points newest first and
    // Mojstrovka.gpx dates them in 1901, before the running maximum's start in 1970, so neither
    // track can place anything; empty and untimed tracks are listed but place nothing either.
    const Expected expected[] = {
        {"exiftool-t/Geotag.gpx", 1, 1, 9, 0, 0, 0},
        {"exiv2/test/data/FurnaceCreekInn.gpx", 1, 1, 42, 0, 5, 1},
        {"gpxpy/test_files/cerknicko-jezero.gpx", 8, 8, 296, 0, 7, 7},
        {"gpxpy/test_files/Mojstrovka.gpx", 1, 1, 184, 0, 0, 0},
        {"gpxpy/test_files/korita-zbevnica.gpx", 4, 4, 871, 0, 2, 2},
    };
    for (const Expected &e : expected) {
        const GpxFile file = MyGpxTrackParser::parseFile(test::corpusFile(QString::fromLatin1(e.path)));
        SCOPED_TRACE(e.path);
        EXPECT_TRUE(file.problem.isEmpty()) << file.problem.toStdString();
        EXPECT_EQ(file.tracks.size(), e.tracks);
        qsizetype segments = 0, points = 0;
        int usable = 0;
        for (const MyGpxTrack &track : file.tracks) {
            segments += track.trackSegments.size();
            points += track.pointCount();
            usable += track.trackState == TrackState::Usable ? 1 : 0;
        }
        EXPECT_EQ(segments, e.segments);
        EXPECT_EQ(points, e.points);
        EXPECT_EQ(file.routes.size(), e.routes);
        EXPECT_EQ(file.waypoints.size(), e.waypoints);
        EXPECT_EQ(usable, e.usableTracks);
    }
}
