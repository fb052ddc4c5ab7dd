#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <gtest/gtest.h>

#include <memory>

using namespace orv;

namespace {

const Instant noon = Instant::fromUtc(2024, 5, 1, 12, 0, 0);

struct FolderWithPics
{
    MySingleFolder folder{QStringLiteral("/photos/trip"), false};

    MySinglePic *add(int type, OptionalDate date, bool visible = true)
    {
        return folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("IMG.JPG"), &folder, type, date),
                               visible);
    }

    // A master with a dependent, linked both ways as the group logic leaves them.
    std::pair<MySinglePic *, MySinglePic *> group(int masterType, Instant masterDate, int dependentType,
                                                  Instant dependentDate)
    {
        MySinglePic *master = add(masterType, masterDate);
        MySinglePic *dependent = add(dependentType, dependentDate, false);
        master->bundleDependentImage = dependent;
        dependent->bundleMasterImage = master;
        return {master, dependent};
    }
};

} // namespace

TEST(MySinglePicDateInForce, FolderModeAddsTheFolderInterval)
{
    FolderWithPics f;
    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);
    EXPECT_EQ(pic->spDateTimeModified(), noon);
    EXPECT_FALSE(pic->isUnsaved());

    f.folder.sfDateModificationsTimeInterval = 3600.0;
    EXPECT_EQ(pic->spDateTimeModified(), noon.addingSeconds(3600.0));
    EXPECT_TRUE(pic->isUnsaved());
    // The stored source never moves with an edit.
    EXPECT_EQ(pic->spDateTimeOriginal, noon);
}

TEST(MySinglePicDateInForce, ItemsWithoutDatesTakeNoEdits)
{
    FolderWithPics f;
    f.folder.sfDateModificationsTimeInterval = 3600.0;
    for (const int type : {SpTypeUnsupportedPhoto, SpTypeMovieExifIgnored})
        EXPECT_EQ(f.add(type, Instant::distantPast())->spDateTimeModified(), Instant::distantPast()) << type;
}

TEST(MySinglePicDateInForce, SeparateModeUsesOnlyTheItemsOwnModification)
{
    FolderWithPics f;
    f.folder.sfEditMode = MySingleFolder::EditSeparately;
    f.folder.sfDateModificationsTimeInterval = 999.0; // ignored in this mode
    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);

    pic->singlePicModification = 0.0;
    EXPECT_EQ(pic->singlePicModeDate(), std::nullopt);
    EXPECT_EQ(pic->spDateTimeModified(), noon);
    EXPECT_FALSE(pic->isThisPureTimeUnsaved());

    pic->singlePicModification = -90.5;
    EXPECT_EQ(pic->singlePicModeDate(), noon.addingSeconds(-90.5));
    EXPECT_EQ(pic->spDateTimeModified(), noon.addingSeconds(-90.5));
    EXPECT_TRUE(pic->isThisPureTimeUnsaved());
}

TEST(MySinglePicDateInForce, HarmonisedPhotoDependentShowsTheMastersDateButAMovieDoesNot)
{
    FolderWithPics f;
    f.folder.harmonizingRawJpgsType = 2;
    f.folder.sfDateModificationsTimeInterval = 60.0;
    auto [raw, jpg] = f.group(SpTypeExifOriginal, noon, SpTypeExifOriginal, noon.addingSeconds(5));
    ASSERT_TRUE(raw->isGroupHarmonized());
    EXPECT_EQ(jpg->spDateTimeModified(), raw->spDateTimeModified());
    EXPECT_TRUE(raw->isThisHarmonizationChanged());

    auto [still, movie] = f.group(SpTypeExifOriginal, noon, SpTypeMdta, noon.addingSeconds(5));
    EXPECT_FALSE(still->isGroupHarmonized());
    EXPECT_EQ(movie->spDateTimeModified(), noon.addingSeconds(65));
}

TEST(MySinglePicGroups, HarmonisationThresholdsByFolderType)
{
    struct Case { qint64 type; double gap; bool harmonized; };
    const Case cases[] = {
        {0, 1000.0, false}, {1, 300.0, false}, {1, 300.5, true}, {2, 1.0, false}, {2, 1.5, true},
    };
    for (const Case &c : cases) {
        FolderWithPics f;
        f.folder.harmonizingRawJpgsType = c.type;
        auto [master, dependent] = f.group(SpTypeExifOriginal, noon, SpTypeExifOriginal, noon.addingSeconds(c.gap));
        EXPECT_EQ(master->isGroupHarmonized(), c.harmonized) << c.type << " " << c.gap;
        EXPECT_FALSE(dependent->isGroupHarmonized()) << "a dependent has no dependent";
    }
}

TEST(MySinglePicGroups, DeviationOf300SecondsIsNoneAnd301IsBit4)
{
    FolderWithPics f;
    auto [master, dependent] = f.group(SpTypeExifOriginal, noon, SpTypeMdta, noon.addingSeconds(300.9));
    EXPECT_FALSE(master->validateGroupDeviations());
    EXPECT_EQ(master->majorDateDifferenceType & MajorDifferenceGroupDates, 0u);

    dependent->spDateTimeOriginal = noon.addingSeconds(301);
    // Both sides are local (no offsets; the movie's metadata date is not), so exactly one is.
    EXPECT_TRUE(master->validateGroupDeviations());
    EXPECT_NE(master->majorDateDifferenceType & MajorDifferenceGroupDates, 0u);
}

TEST(MySinglePicLocality, OffsetTagOrXmpZoneMakesASourceNonLocal)
{
    FolderWithPics f;
    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);
    pic->exifDateTimeOriginalOLD = noon;
    EXPECT_TRUE(pic->isDataSourceLocal());
    pic->singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{"+02:00", 100};
    EXPECT_FALSE(pic->isDataSourceLocal());

    MySinglePic *xmp = f.add(SpTypeExifOriginal, noon);
    xmp->exifDateTimeOriginalOLD = noon;
    xmp->isCreaXmp = true;
    xmp->singlePicAttributes.xmpDateInfos = XmpDateInfos{
        {QStringLiteral("ExifDateTimeOriginal"), XmpStampRecord{"2024-05-01T12:00:00Z", 40, 1, 0}}};
    EXPECT_FALSE(xmp->isDataSourceLocal());
    xmp->singlePicAttributes.xmpDateInfos->at(QStringLiteral("ExifDateTimeOriginal")).type = 3;
    EXPECT_TRUE(xmp->isDataSourceLocal());

    MySinglePic *preferring = f.add(SpTypeFileDatePreferredOverTiff, noon);
    EXPECT_FALSE(preferring->isDataSourceLocal());
}

TEST(MySinglePicLocality, GpsDifferenceCountsFrom1800SecondsOn)
{
    FolderWithPics f;
    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);
    pic->exifDateTimeOriginalOLD = noon;
    EXPECT_EQ(pic->differenceFromGPSDate(noon, noon.addingSeconds(1800.0)), 1800.0);
    EXPECT_EQ(pic->differenceFromGPSDate(noon, noon.addingSeconds(-1800.0)), -1800.0);
    EXPECT_EQ(pic->differenceFromGPSDate(noon, noon.addingSeconds(1799.9)), 0.0);
    EXPECT_EQ(pic->differenceFromGPSDate(std::nullopt, noon), 0.0);
    pic->singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{"+02:00", 100};
    EXPECT_EQ(pic->differenceFromGPSDate(noon, noon.addingSeconds(7200.0)), 0.0)
        << "a stamp with its own offset is not compared with the GPS clock";
}

TEST(MySinglePicNormalization, OutOfOrderMetadataAndFileDates)
{
    FolderWithPics f;
    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);
    pic->exifDateTimeOriginalOLD = noon;
    pic->tiffDateTimeOLD = noon.addingSeconds(-1);
    pic->validateMetaNormalization();
    EXPECT_TRUE(pic->needsNormalization());

    pic->exifDateTimeDigitizedOLD = noon.addingSeconds(-2);
    pic->tiffDateTimeOLD = noon;
    pic->validateMetaNormalization();
    EXPECT_TRUE(pic->needsNormalization()) << "digitized before original";

    pic->exifDateTimeDigitizedOLD = noon;
    pic->validateMetaNormalization();
    EXPECT_FALSE(pic->needsNormalization());

    pic->fileCreationDateOLD = noon;
    pic->fileModificationDateOLD = noon.addingSeconds(-10);
    pic->validateFilesystemNormalization();
    EXPECT_EQ(pic->normalizationType, quint64(NormalizationFileDates));
}

TEST(MySinglePicUnsaved, EachReasonMakesAnItemUnsavedAndGroupsShareIt)
{
    FolderWithPics f;
    auto [master, dependent] = f.group(SpTypeExifOriginal, noon, SpTypeEmptyOriginalFileDate, noon);
    EXPECT_TRUE(dependent->isThisUnsaved(false, false)) << "import option change";
    EXPECT_FALSE(dependent->isThisUnsaved(false, true));
    EXPECT_FALSE(master->isThisUnsaved(false, false));
    EXPECT_TRUE(master->isUnsaved()) << "through its dependent";

    MySinglePic *pic = f.add(SpTypeExifOriginal, noon);
    pic->saveErrorType = SaveErrorTime;
    EXPECT_TRUE(pic->isThisUnsaved(false, false));
    EXPECT_FALSE(pic->isThisUnsaved(true, false));
    EXPECT_TRUE(pic->isThisTimeUnsaved());
    pic->saveErrorType = SaveErrorLocation;
    EXPECT_FALSE(pic->isThisTimeUnsaved());

    MySinglePic *located = f.add(SpTypeExifOriginal, noon);
    located->newLocationHAccuracy = 5.0;
    EXPECT_TRUE(located->hasLocationChange());
    EXPECT_TRUE(located->isUnsaved());
}

TEST(MySinglePicIdentity, SessionIdsRiseAndPathsJoinTheFolder)
{
    FolderWithPics f;
    MySinglePic *a = f.add(SpTypeExifOriginal, noon);
    MySinglePic *b = f.add(SpTypeExifOriginal, noon);
    EXPECT_EQ(b->sessionUniqueId, a->sessionUniqueId + 1);
    EXPECT_EQ(a->spPath(), QStringLiteral("/photos/trip/IMG.JPG"));
    EXPECT_EQ(a->spBaseName(), QStringLiteral("IMG"));
    EXPECT_EQ(a->movDuration, -1.0);
    EXPECT_EQ(a->newLocationHAccuracy, MySinglePic::notSetAccuracy);
    EXPECT_EQ(f.folder.sfPicDetails_fullArray.size(), 2);
}
