#include "core/MySinglePic.h"
#include "core/SaveErrors.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

class ExiftoolBridgeTest : public SaveFixture
{
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
