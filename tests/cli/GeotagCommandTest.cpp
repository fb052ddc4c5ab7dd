// orvelle-cli geotag on crafted photos: how each date met the track, the camera's offset, broken
// GPX files beside good ones; and the places it saves beside exiftool's -geotag on a corpus track.

#include "places/MyGpxTrack.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

// A photo with its stamp ("2024:05:01 10:00:30") and the stamp's offset.
QString photoAt(const QString &dir, const QString &name, const char *stamp,
                std::optional<GpsShape> gps = std::nullopt, const char *offset = "+00:00")
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text(stamp);
    tags.offsetTimeOriginal = Stamp::text(offset);
    tags.gps = gps;
    return buildJpeg({.exif = tags}).write(dir, name);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Two segments on the meridian 14 E: 10:00 to 10:02, a pause, 10:10 to 10:11.
const QByteArray hikeGpx = "<?xml version=\"1.0\"?><gpx version=\"1.1\" xmlns=\"http://www.topografix.com/GPX/1/1\">"
                           "<trk><name>hike</name><trkseg>"
                           "<trkpt lat=\"46.0\" lon=\"14.0\"><ele>500</ele><time>2024-05-01T10:00:00Z</time></trkpt>"
                           "<trkpt lat=\"46.01\" lon=\"14.0\"><ele>510</ele><time>2024-05-01T10:01:00Z</time></trkpt>"
                           "<trkpt lat=\"46.02\" lon=\"14.0\"><ele>520</ele><time>2024-05-01T10:02:00Z</time></trkpt>"
                           "</trkseg><trkseg>"
                           "<trkpt lat=\"46.03\" lon=\"14.0\"><time>2024-05-01T10:10:00Z</time></trkpt>"
                           "<trkpt lat=\"46.04\" lon=\"14.0\"><time>2024-05-01T10:11:00Z</time></trkpt>"
                           "</trkseg></trk></gpx>";

QJsonObject entryNamed(const QJsonArray &items, const QString &name)
{
    for (const QJsonValue &item : items)
        if (item.toObject().value(QStringLiteral("spName")).toString() == name)
            return item.toObject();
    return {};
}

class GeotagCommand : public ::testing::Test
{
protected:
    QTemporaryDir home, work;
    QString photos = work.filePath(QStringLiteral("photos"));
    QString gpx = work.filePath(QStringLiteral("hike.gpx"));

    void SetUp() override
    {
        QDir().mkpath(photos);
        writeFile(gpx, hikeGpx);
    }
};

} // namespace

TEST_F(GeotagCommand, EachPhotoSaysHowItsDateMetTheTrackAndOnlyThoseOnItArePlaced)
{
    photoAt(photos, "a_point", "2024:05:01 10:01:03");
    photoAt(photos, "b_between", "2024:05:01 10:00:30");
    photoAt(photos, "c_gap", "2024:05:01 10:05:00");
    photoAt(photos, "d_after", "2024:05:01 12:00:00");
    photoAt(photos, "e_own", "2024:05:01 10:00:30", GpsShape::at(-33.5, 151.25));
    buildJpeg({}).write(photos, "f_undated");
    photoAt(photos, "g_zoned", "2024:05:01 12:00:30", std::nullopt, "+02:00");

    const CliResult run = runCli({"geotag", "--gpx", gpx, "--dry-run", "--json", photos}, home.path());
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonArray items = run.json();
    const auto fact = [&](const char *name, const char *key) {
        return entryNamed(items, QString::fromLatin1(name) + QStringLiteral(".jpg")).value(QLatin1String(key));
    };
    EXPECT_EQ(fact("a_point", "trackMatch").toString(), QStringLiteral("point"));
    EXPECT_EQ(fact("a_point", "secondsToTrackPoint").toDouble(), 3.0);
    EXPECT_EQ(fact("a_point", "gpsLat").toDouble(), 46.01);
    EXPECT_EQ(fact("a_point", "trackName").toString(), QStringLiteral("hike"));
    EXPECT_EQ(fact("b_between", "trackMatch").toString(), QStringLiteral("interpolated"));
    EXPECT_EQ(fact("b_between", "secondsToTrackPoint").toDouble(), 30.0);
    EXPECT_NEAR(fact("b_between", "gpsLat").toDouble(), 46.005, 1e-9);
    EXPECT_EQ(fact("c_gap", "trackMatch").toString(), QStringLiteral("gap"));
    EXPECT_EQ(fact("c_gap", "secondsToTrackPoint").toDouble(), 180.0);
    EXPECT_TRUE(fact("c_gap", "gpsLat").isUndefined());
    EXPECT_EQ(fact("d_after", "trackMatch").toString(), QStringLiteral("outside"));
    EXPECT_EQ(fact("d_after", "secondsToTrackPoint").toDouble(), 6540.0);
    EXPECT_EQ(fact("e_own", "trackMatch").toString(), QStringLiteral("ownPlace"));
    EXPECT_EQ(fact("e_own", "gpsLat").toDouble(), -33.5);
    EXPECT_EQ(fact("f_undated", "trackMatch").toString(), QStringLiteral("noDate"));
    EXPECT_TRUE(fact("f_undated", "gpsLat").isUndefined());
    EXPECT_EQ(fact("g_zoned", "trackMatch").toString(), QStringLiteral("interpolated")) << "12:00:30 at +02:00";
    EXPECT_NEAR(fact("g_zoned", "gpsLat").toDouble(), 46.005, 1e-9);

    const CliResult text = runCli({"geotag", "--gpx", gpx, "--dry-run", photos}, home.path());
    EXPECT_TRUE(text.out.contains("track: interpolated, 30 s from the nearest track point")) << text.out.toStdString();
    EXPECT_TRUE(text.out.contains("track: no date of its own"));
}

TEST_F(GeotagCommand, TheOffsetMovesThePhotosDatesOntoTheTrackWithoutChangingThem)
{
    const QString photo = photoAt(photos, "late", "2024:05:01 09:59:00");
    const CliResult run = runCli({"geotag", "--gpx", gpx, "--offset", "+0:01:30", "--json", photos}, home.path());
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonObject entry = run.json().at(0).toObject();
    EXPECT_EQ(entry.value("trackMatch").toString(), QStringLiteral("interpolated"));
    EXPECT_EQ(entry.value("saved").toBool(), true);
    const ExiftoolTags tags = exiftoolTags(photo);
    EXPECT_NEAR(tags.number("Composite:GPSLatitude"), 46.005, 1e-6);
    EXPECT_NEAR(tags.number("Composite:GPSLongitude"), 14.0, 1e-6);
    EXPECT_EQ(tags.string("EXIF:DateTimeOriginal"), QStringLiteral("2024:05:01 09:59:00")) << "dates stay";
}

TEST_F(GeotagCommand, ABrokenGpxFileIsNamedWithItsReasonAndTheOtherFilesTracksStillPlace)
{
    photoAt(photos, "a", "2024:05:01 10:00:30");
    const QString broken = work.filePath(QStringLiteral("broken.gpx"));
    writeFile(broken, hikeGpx.left(hikeGpx.indexOf("</trkseg>")));
    const QString backwards = work.filePath(QStringLiteral("backwards.gpx"));
    writeFile(backwards, "<gpx><trk><trkseg><trkpt lat=\"1\" lon=\"1\"><time>2024-05-01T10:00:10Z</time></trkpt>"
                         "<trkpt lat=\"1\" lon=\"2\"><time>2024-05-01T10:00:00Z</time></trkpt></trkseg></trk></gpx>");

    const CliResult run =
        runCli({"geotag", "--gpx", broken, "--gpx", backwards, "--gpx", gpx, "--dry-run", "--json", photos}, home.path());
    EXPECT_EQ(run.exitCode, 1) << "a file that breaks off is a failure of the run";
    EXPECT_TRUE(run.err.contains((broken + ": broken off at line").toUtf8())) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains((backwards + ": track 1 places nothing: its times go backwards").toUtf8()));
    EXPECT_EQ(run.json().at(0).toObject().value("trackMatch").toString(), QStringLiteral("interpolated"));

    const CliResult none = runCli({"geotag", "--gpx", backwards, "--json", photos}, home.path());
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(none.err.contains("no usable track")) << none.err.toStdString();
    EXPECT_TRUE(none.out.isEmpty()) << "nothing saved, nothing reported";

    EXPECT_EQ(runCli({"geotag", photos}, home.path()).exitCode, 2) << "--gpx is required";
    EXPECT_EQ(runCli({"geotag", "--gpx", gpx, "--offset", "1h", photos}, home.path()).exitCode, 2);
}

// exiftool interpolates linearly between the two fixes around a photo; on fixes seconds apart
// that is the great circle to well under a metre. Heights go evenly between the fixes with both
// tools. Both places are read back by exiftool.
TEST_F(GeotagCommand, PlacesAndHeightsAgreeWithExiftoolsGeotagInsideASegment)
{
    ORV_SKIP_WITHOUT_CORPUS();
    // The second track of this file runs from 14:23:59 to 15:05:08 UTC; each moment lies half
    // way between two of its fixes, 20 s to 196 s apart, so both tools interpolate.
    const QString track = corpusFile(QStringLiteral("gpxpy/test_files/cerknicko-jezero.gpx"));
    const char *stamps[] = {"2010:08:05 14:24:33", "2010:08:05 14:30:00", "2010:08:05 14:35:10",
                            "2010:08:05 14:39:06", "2010:08:05 14:44:17", "2010:08:05 14:52:12"};
    const QString ours = work.filePath(QStringLiteral("ours")), theirs = work.filePath(QStringLiteral("theirs"));
    QDir().mkpath(ours);
    QDir().mkpath(theirs);
    QStringList oursPaths, theirsPaths;
    for (int i = 0; i < 6; ++i) {
        oursPaths << photoAt(ours, QStringLiteral("p%1").arg(i), stamps[i]);
        theirsPaths << photoAt(theirs, QStringLiteral("p%1").arg(i), stamps[i]);
    }

    const CliResult run = runCli({"geotag", "--gpx", track, "--json", ours}, home.path());
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const QJsonValue &item : run.json())
        EXPECT_EQ(item.toObject().value("trackMatch").toString(), QStringLiteral("interpolated"));
    QProcess exiftool;
    exiftool.start(QStringLiteral("exiftool"), {"-q", "-overwrite_original", "-geotag", track,
                                                "-geotime<${DateTimeOriginal}+00:00", theirs});
    ASSERT_TRUE(exiftool.waitForFinished(60000));
    ASSERT_EQ(exiftool.exitCode(), 0) << exiftool.readAllStandardError().toStdString();

    const auto ourTags = exiftoolTagsOfFiles(oursPaths);
    const auto theirTags = exiftoolTagsOfFiles(theirsPaths);
    for (int i = 0; i < 6; ++i) {
        const ExiftoolTags &a = ourTags.at(oursPaths[i]);
        const ExiftoolTags &b = theirTags.at(theirsPaths[i]);
        const GeoCoordinate mine{a.number("Composite:GPSLatitude"), a.number("Composite:GPSLongitude")};
        const GeoCoordinate reference{b.number("Composite:GPSLatitude"), b.number("Composite:GPSLongitude")};
        ASSERT_FALSE(std::isnan(reference.latitude)) << stamps[i];
        EXPECT_LT(MyGpxTrack::haversineKilometres(mine, reference) * 1000.0, 1.0)
            << stamps[i] << ": " << mine.latitude << "," << mine.longitude << " vs " << reference.latitude << ","
            << reference.longitude;
        ASSERT_FALSE(std::isnan(b.number("Composite:GPSAltitude"))) << stamps[i];
        EXPECT_NEAR(a.number("Composite:GPSAltitude"), b.number("Composite:GPSAltitude"), 0.01) << stamps[i];
    }
}
