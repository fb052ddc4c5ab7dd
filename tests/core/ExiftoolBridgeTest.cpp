#include "core/MySinglePic.h"
#include "core/SaveErrors.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class ExiftoolBridgeTest : public SaveFixture
{
protected:
    // A JPEG with a date, and the places asked for: GPS tags, an XMP place, each with a
    // positioning error of 30 m.
    MySinglePic &placedJpeg(const QString &name, bool exifPlace, bool xmpPlace)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        if (exifPlace) {
            tags.gps = GpsShape::at(48.85, 2.28);
            tags.gps->hPositioningError = Rational{30, 1};
        }
        std::optional<XmpPacket> xmp;
        if (xmpPlace)
            xmp = buildXmp({.properties = {{"exif:GPSLatitude", "48,51.0N"},
                                           {"exif:GPSLongitude", "2,16.8E"},
                                           {"exif:GPSHPositioningError", "30"}}});
        return import(buildJpeg({.exif = tags, .xmp = xmp}), name);
    }

    // The user moves the item's place from the one it showed.
    static void move(MySinglePic &pic, double lat, double lon, double altitude = MySinglePic::notSetAccuracy)
    {
        pic.gpsLatOld = pic.gpsLat.value_or(48.85);
        pic.gpsLongOld = pic.gpsLong.value_or(2.28);
        pic.gpsLat = lat;
        pic.gpsLong = lon;
        pic.hasAddedLocation = 1;
        pic.newLocationAltitude = altitude;
    }
};

} // namespace

TEST_F(ExiftoolBridgeTest, ANewRawLocationGoesToANewSidecarUnlessAFileHoldsItsName)
{
    const QString source = corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2"));
    if (source.isEmpty())
        GTEST_SKIP() << "no corpus";
    SaveSettings settings = defaultSettings();
    settings.options.addRawLocationsOnlyInSidecars = true;
    MySinglePic *pics[2];
    for (int i = 0; i < 2; ++i) {
        const QString raw = dir.filePath(QStringLiteral("shot%1.cr2").arg(i));
        ASSERT_TRUE(QFile::copy(source, raw));
        QFile::setPermissions(raw, QFile::ReadOwner | QFile::WriteOwner);
        pics[i] = &importPath(raw);
        ASSERT_TRUE(pics[i]->isRaw());
        pics[i]->gpsLat = 35.6586;
        pics[i]->gpsLong = 139.7454;
        pics[i]->hasAddedLocation = 1;
    }
    // Written after the import: not the item's sidecar, and not to be overwritten.
    QFile taken(dir.filePath(QStringLiteral("shot1.xmp")));
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    taken.write("not ours");
    taken.close();
    const QByteArray rawBefore = fileBytes(pics[0]->spPath());

    shift(0.0, nullptr, settings);

    EXPECT_TRUE(errors().toolStepsFor(*pics[0]).isEmpty());
    EXPECT_EQ(fileBytes(pics[0]->spPath()), rawBefore);
    EXPECT_EQ(pics[0]->spSidecarPaths(), QStringList{dir.filePath(QStringLiteral("shot0.xmp"))});
    const ExiftoolTags sidecar = exiftoolTags(dir.filePath(QStringLiteral("shot0.xmp")));
    EXPECT_NEAR(sidecar.number("XMP:GPSLatitude"), 35.6586, 1e-9);
    EXPECT_EQ(sidecar.string("XMP:SidecarForExtension"), "CR2");
    EXPECT_FALSE(pics[0]->hasLocationChange());

    EXPECT_EQ(errors().toolStepsFor(*pics[1]), QList<ToolStep>{ToolStep::SidecarExists});
    EXPECT_EQ(fileBytes(taken.fileName()), "not ours");
    EXPECT_TRUE(pics[1]->hasLocationChange()) << "the change stays pending";
}

TEST_F(ExiftoolBridgeTest, APngWhoseExifIsATextProfileTakesItsNewDateThroughExiftool)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    const QByteArray exif = "Exif" + QByteArray(2, '\0') + buildExifBlock(tags).bytes;
    MySinglePic &pic = import(buildPng({.rawProfiles = {{"exif", exif, "zTXt"}}}));
    ASSERT_EQ(pic.singlePicAttributes.ExifDateTimeOriginal->dateOffset, 0u);

    shift(3600.0);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(exiftoolTags(pic.spPath(), ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2024:05:01 11:00:00");
    EXPECT_EQ(pic.exifDateTimeOriginalOLD, pic.exifDateTimeOriginalNEW);
    EXPECT_EQ(pic.singlePicAttributes.ExifDateTimeOriginal->dateData.left(19), "2024:05:01 11:00:00")
        << "read again from the rewritten profile";
}

TEST_F(ExiftoolBridgeTest, ANewPlaceTakesGpsTagsWithItsAltitudeBelowSeaLevelAndItsAccuracy)
{
    MySinglePic &pic = placedJpeg(QStringLiteral("bare"), false, false);
    pic.gpsLat = -12.5;
    pic.gpsLong = -70.25;
    pic.hasAddedLocation = 1;
    pic.newLocationAltitude = -20.0;
    pic.newLocationHAccuracy = 4.0;

    shift(0.0);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    const ExiftoolTags read = exiftoolTags(pic.spPath());
    EXPECT_NEAR(read.number("Composite:GPSLatitude"), -12.5, 1e-9);
    EXPECT_NEAR(read.number("Composite:GPSLongitude"), -70.25, 1e-9);
    EXPECT_EQ(read.string("EXIF:GPSAltitudeRef"), "1");
    EXPECT_NEAR(read.number("EXIF:GPSAltitude"), 20.0, 1e-6);
    EXPECT_NEAR(read.number("EXIF:GPSHPositioningError"), 4.0, 1e-6);
    EXPECT_EQ(*pic.gpsLat, -12.5);
    EXPECT_FALSE(pic.hasLocationChange());
    EXPECT_TRUE(pic.singlePicAttributes.GPSLocation) << "the item reads the tags it now has";
}

TEST_F(ExiftoolBridgeTest, APlaceOnlyInXmpMovesThereWithSyncOnOrOffAndNoGpsTagsAppear)
{
    for (const bool sync : {false, true}) {
        SaveSettings settings = defaultSettings();
        settings.syncXMPDataOnSave = sync;
        MySinglePic &pic = placedJpeg(sync ? QStringLiteral("synced") : QStringLiteral("alone"), false, true);
        move(pic, -33.8688, 151.2093);

        shift(0.0, nullptr, settings);

        EXPECT_TRUE(errors().toolStepsFor(pic).isEmpty()) << sync;
        const ExiftoolTags read = exiftoolTags(pic.spPath());
        EXPECT_NEAR(read.number("XMP:GPSLatitude"), -33.8688, 1e-9) << sync;
        EXPECT_NEAR(read.number("XMP:GPSLongitude"), 151.2093, 1e-9);
        EXPECT_EQ(read.string("XMP:GPSHPositioningError"), "0") << "the old accuracy no longer holds";
        EXPECT_FALSE(read.has("EXIF:GPSLatitude"));
        EXPECT_FALSE(pic.hasLocationChange());
    }
}

TEST_F(ExiftoolBridgeTest, APlaceTheFileHasNowhereGoesToASidecarUnderSyncAndFailsWithout)
{
    for (const bool sync : {false, true}) {
        SaveSettings settings = defaultSettings();
        settings.syncXMPDataOnSave = sync;
        MySinglePic &pic = placedJpeg(sync ? QStringLiteral("synced") : QStringLiteral("alone"), false, false);
        const QByteArray before = fileBytes(pic.spPath());
        move(pic, 1.5, 2.5);

        shift(0.0, nullptr, settings);

        EXPECT_EQ(fileBytes(pic.spPath()), before) << sync;
        EXPECT_EQ(pic.hasXmpSidecar(), sync);
        EXPECT_EQ(errors().toolStepsFor(pic).isEmpty(), sync);
        EXPECT_EQ(pic.hasLocationChange(), !sync) << "a failed place stays pending";
    }
    EXPECT_NEAR(exiftoolTags(dir.filePath(QStringLiteral("synced.xmp"))).number("XMP:GPSLatitude"), 1.5, 1e-9);
}

TEST_F(ExiftoolBridgeTest, GpsTagsTakeThePlaceInPlaceAndExiftoolAddsTheAltitudeAndKeepsTheXmpTwin)
{
    for (const bool zero : {true, false}) {
        SaveSettings settings = defaultSettings();
        settings.syncXMPDataOnSave = true;
        settings.setPositioningErrorsToZeroOnChange = zero;
        MySinglePic &pic = placedJpeg(zero ? QStringLiteral("zeroed") : QStringLiteral("kept"), true, true);
        move(pic, 48.8583, 2.2945, 35.0);

        shift(0.0, nullptr, settings);

        EXPECT_TRUE(errors().toolStepsFor(pic).isEmpty()) << zero;
        const ExiftoolTags read = exiftoolTags(pic.spPath());
        EXPECT_NEAR(read.number("Composite:GPSLatitude"), 48.8583, 1e-6) << zero;
        EXPECT_NEAR(read.number("EXIF:GPSAltitude"), 35.0, 1e-6);
        EXPECT_NEAR(read.number("XMP:GPSLatitude"), 48.8583, 1e-9);
        EXPECT_NEAR(read.number("XMP:GPSAltitude"), 35.0, 1e-6);
        const QString error = zero ? QStringLiteral("0") : QStringLiteral("30");
        EXPECT_EQ(read.string("EXIF:GPSHPositioningError"), error);
        EXPECT_EQ(read.string("XMP:GPSHPositioningError"), error);
        EXPECT_FALSE(pic.hasLocationChange());
    }
}

TEST_F(ExiftoolBridgeTest, CameraGpsTagsTakeAMovedPlaceBelowSeaLevelInPlaceAndLoseTheirStaleAccuracy)
{
    SaveSettings settings = defaultSettings();
    settings.syncXMPDataOnSave = true;
    for (const char *name : {"exiftool-t/Apple.jpg", "metadata-extractor-images/jpg/Issue 508.jpg"}) {
        const QString source = corpusFile(QString::fromLatin1(name));
        if (source.isEmpty())
            GTEST_SKIP() << "no corpus";
        const QString copy = dir.filePath(QFileInfo(source).fileName());
        ASSERT_TRUE(QFile::copy(source, copy));
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        MySinglePic &pic = importPath(copy);
        ASSERT_TRUE(pic.singlePicAttributes.GPSLocation) << name;
        const qint64 size = QFileInfo(copy).size();
        move(pic, -33.8688, 151.2093, -5.0);

        shift(0.0, nullptr, settings);

        EXPECT_TRUE(errors().toolStepsFor(pic).isEmpty()) << name;
        const ExiftoolTags read = exiftoolTags(copy);
        EXPECT_NEAR(read.number("Composite:GPSLatitude"), -33.8688, 1e-6) << name;
        EXPECT_NEAR(read.number("Composite:GPSLongitude"), 151.2093, 1e-6);
        EXPECT_NEAR(read.number("Composite:GPSAltitude"), -5.0, 1e-6);
        EXPECT_EQ(read.number("EXIF:GPSHPositioningError"), 0.0);
        EXPECT_FALSE(read.has("XMP:GPSLatitude")) << "a file without an XMP place gets none";
        EXPECT_EQ(QFileInfo(copy).size(), size) << "every part had its tag: all in place";
    }
}

TEST_F(ExiftoolBridgeTest, AnExistingSidecarTakesTheMovedPlaceAndLosesAStaleAccuracyWhetherOrNotItHadAPlace)
{
    const std::pair<QString, std::vector<XmpProperty>> sidecars[] = {
        {QStringLiteral("placed"),
         {{"exif:GPSLatitude", "48,51.0N"}, {"exif:GPSLongitude", "2,16.8E"}, {"exif:GPSHPositioningError", "30"}}},
        {QStringLiteral("rated"), {{"xmp:Rating", "3"}}}};
    for (const auto &[name, properties] : sidecars) {
        MySinglePic &pic = placedJpeg(name, false, false);
        const QString sidecar = buildXmpSidecar({.properties = properties}).write(dir.path(), name);
        pic.spSidecarExtensions = {QStringLiteral("xmp")};
        const QByteArray before = fileBytes(pic.spPath());
        move(pic, -33.8688, 151.2093);

        shift(0.0);

        EXPECT_TRUE(errors().toolStepsFor(pic).isEmpty()) << name.toStdString();
        EXPECT_EQ(fileBytes(pic.spPath()), before) << "the place goes to the sidecar alone";
        const ExiftoolTags read = exiftoolTags(sidecar);
        EXPECT_NEAR(read.number("XMP:GPSLatitude"), -33.8688, 1e-9) << name.toStdString();
        const bool hadAccuracy = name == QLatin1String("placed");
        EXPECT_EQ(read.has("XMP:GPSHPositioningError"), hadAccuracy);
        if (hadAccuracy) {
            EXPECT_EQ(read.number("XMP:GPSHPositioningError"), 0.0);
        }
    }
}
