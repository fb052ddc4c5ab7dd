#include "ImportFixture.h"

#include "core/PicScanner.h"
#include "support/Corpus.h"
#include "support/ScanOne.h"

#include <QFileInfo>

using namespace orv;
using namespace orv::test;

namespace {

void expectSameDates(const MySinglePic &imported, const MySinglePic &single)
{
    SCOPED_TRACE(imported.spName.toStdString());
    EXPECT_EQ(imported.spType, single.spType);
    EXPECT_EQ(imported.fileFormatType, single.fileFormatType);
    EXPECT_EQ(imported.spDateTimeOriginal, single.spDateTimeOriginal);
    EXPECT_EQ(imported.exifDateTimeOriginalOLD, single.exifDateTimeOriginalOLD);
    EXPECT_EQ(imported.exifDateTimeDigitizedOLD, single.exifDateTimeDigitizedOLD);
    EXPECT_EQ(imported.tiffDateTimeOLD, single.tiffDateTimeOLD);
    EXPECT_EQ(imported.fileCreationDateOLD, single.fileCreationDateOLD);
    EXPECT_EQ(imported.fileModificationDateOLD, single.fileModificationDateOLD);
    EXPECT_EQ(imported.spGpsUTCDate, single.spGpsUTCDate);
    EXPECT_EQ(imported.gpsLat, single.gpsLat);
    EXPECT_EQ(imported.gpsLong, single.gpsLong);
    EXPECT_EQ(imported.tiffHeaderStartOffset, single.tiffHeaderStartOffset);
    const PicAttributes &a = imported.singlePicAttributes;
    const PicAttributes &b = single.singlePicAttributes;
    EXPECT_EQ(a.ExifDateTimeOriginal, b.ExifDateTimeOriginal);
    EXPECT_EQ(a.ExifDateTimeDigitized, b.ExifDateTimeDigitized);
    EXPECT_EQ(a.TIFFDateTime, b.TIFFDateTime);
    EXPECT_EQ(a.ExifOffsetTimeOriginal, b.ExifOffsetTimeOriginal);
    EXPECT_EQ(a.ExifOffsetTimeDigitized, b.ExifOffsetTimeDigitized);
    EXPECT_EQ(a.TIFFOffsetTime, b.TIFFOffsetTime);
    EXPECT_EQ(a.GPSDateStamp, b.GPSDateStamp);
    EXPECT_EQ(a.GPSTimeStamp, b.GPSTimeStamp);
    EXPECT_EQ(a.xmpHeaderStartOffset, b.xmpHeaderStartOffset);
    EXPECT_EQ(a.cr3XmpOffset, b.cr3XmpOffset);
}

} // namespace

// The folder import reads files in parallel rounds; each item must be what the scan of that file
// alone makes of it.
TEST_F(ImportFixture, ACorpusFolderImportsAsItsFilesScanOneByOne)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QString corpusFolder = corpusFile(QStringLiteral("exiftool-t"));
    // Each file stands alone here: pairs are the file groups' own tests.
    KeyStatesAtImport keys;
    keys.createFileGroups = false;
    importAndWait({corpusFolder}, keys);
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    const MySingleFolder &imported = *driver.droppedFolders().first();
    // The corpus holds XMP files of no photo beside them.
    for (const ImportErrors::Problem &problem : imported.importErrors.problems())
        EXPECT_EQ(problem.kind, ImportErrors::SidecarWithoutItem) << problem.path.toStdString();

    MySingleFolder alone(corpusFolder, false);
    QStringList expectedNames;
    for (const QString &name : FolderScanner::namesIn(corpusFolder)) {
        std::unique_ptr<MySinglePic> single = scanFile(QDir(corpusFolder).filePath(name), alone, answers);
        if (!single)
            continue;
        expectedNames.append(name);
        const auto match = std::find_if(imported.sfPicDetails_fullArray.cbegin(), imported.sfPicDetails_fullArray.cend(),
                                        [&name](const MySinglePic *pic) { return pic->spName == name; });
        ASSERT_NE(match, imported.sfPicDetails_fullArray.cend()) << name.toStdString();
        expectSameDates(**match, *single);
    }
    EXPECT_EQ(itemNames(imported), expectedNames) << "the same items, in name order";
    EXPECT_GT(expectedNames.size(), 50);
}
