#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"
#include "folders/MySingleFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <ostream>

namespace orv {
// Failures read as seconds, which is how the cases below are written.
void PrintTo(const Instant &instant, std::ostream *os)
{
    *os << std::fixed << instant.secondsSinceEpoch() << " s";
}
} // namespace orv

using namespace orv;

namespace {

const Instant noon = Instant::fromUtc(2024, 5, 1, 12, 0, 0);
const Instant now = Instant::fromUtc(2024, 6, 1, 8, 0, 0);
// What a slot held before a calculation that must leave it alone.
const Instant untouched = Instant::fromUtc(2001, 1, 1);
constexpr double dayAfterNow = 32.0 * 86400.0;
const std::array metadataSlots = {&MySinglePic::exifDateTimeOriginalNEW,
                                 &MySinglePic::exifDateTimeDigitizedNEW, &MySinglePic::tiffDateTimeNEW};

Instant at(double secondsFromNoon)
{
    return noon.addingSeconds(secondsFromNoon);
}

OptionalDate atOrNone(std::optional<double> secondsFromNoon)
{
    return secondsFromNoon ? OptionalDate(at(*secondsFromNoon)) : std::nullopt;
}

// One folder in folder mode, moved by an interval, saved with options cached at "now" (the
// comparison threshold is its default of 3 s).
struct Scene
{
    MySingleFolder folder{QStringLiteral("/photos/trip"), false};
    NewDateOptions options = NewDateOptions::cachedForRun(NewDateOptions{}, now);
    NewDateContext context;

    MySinglePic &add(int type, Instant date = noon)
    {
        auto pic = std::make_unique<MySinglePic>(QStringLiteral("IMG.JPG"), &folder, type, date);
        pic->fileCreationDateOLD = pic->fileModificationDateOLD = date;
        return *folder.adoptPic(std::move(pic));
    }
    // A photo dated noon whose metadata dates stand the given seconds from noon.
    MySinglePic &photo(std::optional<double> original, std::optional<double> digitized = {},
                       std::optional<double> tiff = {}, int type = SpTypeExifOriginal)
    {
        MySinglePic &pic = add(type);
        pic.exifDateTimeOriginalOLD = atOrNone(original);
        pic.exifDateTimeDigitizedOLD = atOrNone(digitized);
        pic.tiffDateTimeOLD = atOrNone(tiff);
        return pic;
    }
    MySinglePic &group(MySinglePic &master, int dependentType, Instant date)
    {
        auto pic = std::make_unique<MySinglePic>(QStringLiteral("IMG.MOV"), &folder, dependentType, date);
        MySinglePic &dependent = *folder.adoptPic(std::move(pic), false);
        master.bundleDependentImage = &dependent;
        dependent.bundleMasterImage = &master;
        return dependent;
    }
    void moveBy(double seconds) { folder.sfDateModificationsTimeInterval = seconds; }
    void calculate(MySinglePic &pic) { calculateNewDatesWithCachedPrefSettings(pic, &options, context); }
    void calculateLive(MySinglePic &pic) { calculateNewDatesWithCachedPrefSettings(pic, nullptr, context); }
};

} // namespace

// --- Option tables ---------------------------------------------------------------------------

TEST(NewDatesWithoutTags, FileModificationByOption)
{
    struct Case { int option; int unchanged; double move; double modification; OptionalDate expected; };
    const Case cases[] = {
        {0, 1, -3600, 500, at(-3600)},
        {1, 1, -3600, 500, now},
        {1, 1, dayAfterNow, 500, at(dayAfterNow)},
        {2, 1, -3600, 3, at(-3600)},          // at the threshold it stood at the date: it moves
        {2, 1, -3600, 4, at(4)},              // one second beyond it is kept
        {2, 0, -3600, 3, at(3)},
        {2, 1, 3600, -500, at(3600)},         // kept, but never before the new creation date
        {3, 1, -3600, 500, at(-3100)},
        {3, 1, -3600, -7200, at(-3600)},
        {4, 1, -3600, 500, untouched},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeNoEXIFFinderModDate = c.option;
        s.options.dateChangeNoEXIFFinderModDateUnchangedOption = c.unchanged;
        s.moveBy(c.move);
        MySinglePic &pic = s.add(SpTypeNoTagsFileDate);
        pic.fileModificationDateOLD = at(c.modification);
        pic.fileModificationDateNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.fileCreationDateNEW, at(c.move)) << c.option;
        EXPECT_EQ(pic.fileModificationDateNEW, c.expected)
            << c.option << " " << c.unchanged << " " << c.modification;
    }
}

TEST(NewDatesPreferringFileDate, TiffDateByOption)
{
    struct Case { int option; double move; OptionalDate expected; };
    const Case cases[] = {
        {0, -3600, at(-3600)}, // the target cut to whole seconds
        {1, -3600, now},
        {1, dayAfterNow, at(dayAfterNow + 0.5)},
        {2, -3600, at(1000)},
        {2, 3600, at(3600.5)},
        {3, -3600, at(-2600)},
        {4, -3600, untouched},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeNoEXIFButTIFFMetaModDate = c.option;
        s.options.dateChangeNoEXIFButTIFFFinderModDate = 0;
        s.moveBy(c.move);
        MySinglePic &pic = s.add(SpTypeFileDatePreferredOverTiff, at(0.5));
        pic.tiffDateTimeOLD = at(1000);
        pic.tiffDateTimeNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.fileCreationDateNEW, at(c.move + 0.5)) << c.option;
        EXPECT_EQ(pic.tiffDateTimeNEW, c.expected) << c.option << " " << c.move;
        EXPECT_EQ(pic.fileModificationDateNEW, c.expected) << "option 0 copies the new TIFF date";
    }
}

TEST(NewDatesPreferringFileDate, FileModificationByOption)
{
    // The TIFF date stands at +1000; meta option 3 moves it, 2 keeps it when moved backwards.
    struct Case { int option; int unchanged; int metaOption; double modification; OptionalDate expected; };
    const Case cases[] = {
        {1, 1, 3, 500, now},
        {2, 1, 3, 2, at(-3600)},     // stood at the source date: follows the target
        {2, 1, 3, 1001, at(-2600)},  // stood at the TIFF date, which moves: follows it
        {2, 1, 2, 1001, at(1001)},   // stood at the TIFF date, which stays: kept
        {2, 1, 3, 500, at(500)},
        {2, 0, 3, 2, at(2)},
        {3, 1, 3, 500, untouched},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeNoEXIFButTIFFFinderModDate = c.option;
        s.options.dateChangeNoEXIFButTIFFFinderModDateUnchangedOption = c.unchanged;
        s.options.dateChangeNoEXIFButTIFFMetaModDate = c.metaOption;
        s.moveBy(-3600);
        MySinglePic &pic = s.add(SpTypeFileDatePreferredOverMvhd);
        pic.tiffDateTimeOLD = at(1000);
        pic.fileModificationDateOLD = at(c.modification);
        pic.fileModificationDateNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.fileModificationDateNEW, c.expected)
            << c.option << " " << c.unchanged << " " << c.modification;
    }
}

TEST(NewDatesWithTags, DigitizedByOption)
{
    struct Case { int option; int unchanged; bool hasOriginal; std::optional<double> digitized; double move;
                  OptionalDate expected; };
    const Case cases[] = {
        {0, 1, true, 500, -3600, at(-3600)},
        {1, 1, true, 3, -3600, at(-3600)},   // at the threshold: moves with the target
        {1, 1, true, 4, -3600, at(4)},       // beyond it: kept
        {1, 0, true, 3, -3600, at(3)},
        {1, 1, true, 500, 3600, at(3600)},   // kept, but never before the original
        {3, 1, true, 500, -3600, at(-3100)},
        {3, 1, true, -500, 3600, at(3600)},
        {2, 1, true, 500, -3600, untouched},
        {2, 1, false, 500, -3600, at(-3600)}, // without an original it is the item's date
        {0, 1, true, std::nullopt, -3600, std::nullopt},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeEXIFEXIFDigiDate = c.option;
        s.options.dateChangeEXIFEXIFDigiDateUnchangedOption = c.unchanged;
        s.moveBy(c.move);
        MySinglePic &pic = c.hasOriginal ? s.photo(0, c.digitized) : s.photo({}, c.digitized, {}, SpTypeExifDigitized);
        pic.exifDateTimeDigitizedNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.exifDateTimeOriginalNEW, c.hasOriginal ? OptionalDate(at(c.move)) : std::nullopt);
        EXPECT_EQ(pic.exifDateTimeDigitizedNEW, c.expected) << c.option << " " << c.unchanged << " " << c.move;
    }
}

TEST(NewDatesWithTags, TiffByOption)
{
    // Digitized dates stand at +10 and move along with the target.
    struct Case { int option; int unchanged; bool hasDigitized; std::optional<double> tiff; double move;
                  OptionalDate expected; };
    const Case cases[] = {
        {0, 1, false, 500, -3600, at(-3600)},
        {0, 1, true, 500, -3600, at(-3590)},
        {1, 1, false, 3, -3600, at(-3600)},  // at the threshold of the original: moves with it
        {1, 1, false, 4, -3600, at(4)},      // one second beyond: stays...
        {1, 1, false, 4, 3600, at(3600)},    // ...unless the metadata date passes it
        {1, 0, false, 3, -3600, at(3)},
        {1, 1, false, 3, 0, at(3)},          // its reference did not move
        {1, 1, true, 13, -3600, at(-3590)},  // at the threshold of the digitized date
        {1, 1, true, 14, -3600, at(14)},
        {2, 1, false, 500, -3600, now},
        {3, 1, false, 500, -3600, at(-3100)},
        {3, 1, false, -500, -3600, at(-3600)},
        {4, 1, false, 500, -3600, untouched},
        {0, 1, false, std::nullopt, -3600, std::nullopt},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeEXIFEXIFModDate = c.option;
        s.options.dateChangeEXIFEXIFModDateUnchangedOption = c.unchanged;
        s.options.dateChangeEXIFEXIFDigiDate = 3;
        s.options.isSavingPhotosWithoutDateChangesEnabled = true;
        s.moveBy(c.move);
        MySinglePic &pic = s.photo(0, c.hasDigitized ? std::optional(10.0) : std::nullopt, c.tiff);
        pic.tiffDateTimeNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.tiffDateTimeNEW, c.expected) << c.option << " " << c.unchanged << " " << c.hasDigitized
                                                   << " " << c.tiff.value_or(-1) << " " << c.move;
    }

    Scene s;
    s.moveBy(-3600);
    MySinglePic &tiffOnly = s.photo({}, {}, 0, SpTypeTiffDateTime);
    s.calculate(tiffOnly);
    EXPECT_EQ(tiffOnly.tiffDateTimeNEW, at(-3600)) << "the TIFF date is the item's date";
}

TEST(NewDatesWithTags, FileDatesByOption)
{
    // Digitized +10 and TIFF +20 both move along by -3600; the file was created at noon.
    struct Case { int creation; int modification; int withoutTiff; int withoutTiffUnchanged;
                  bool hasDigitized; bool hasTiff; double modifiedAt;
                  OptionalDate expectedCreation; OptionalDate expectedModification; };
    const Case cases[] = {
        {0, 2, 1, 1, true, true, 500, at(-3600), now},
        {1, 1, 1, 1, true, true, 500, at(-3590), at(500)},
        {2, 0, 1, 1, true, true, 500, at(-3580), at(-3580)},
        {1, 0, 1, 1, false, true, 500, at(-3600), at(-3580)},
        {2, 0, 0, 1, true, false, 500, at(-3590), at(-3590)},
        {2, 0, 0, 1, false, false, 500, at(-3600), at(-3600)},
        {0, 0, 2, 1, true, false, 500, at(-3600), now},
        {0, 0, 1, 0, true, false, 10, at(-3600), at(10)},
        {0, 0, 1, 1, true, false, 10, at(-3600), at(-3590)}, // stood at the digitized date: follows it
        {0, 3, 1, 1, true, true, 500, at(-3600), untouched},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeEXIFFinderCreaDate2 = c.creation;
        s.options.dateChangeEXIFFinderModDate = c.modification;
        s.options.dateChangeEXIFFinderModDateUnchangedOption = 0;
        s.options.dateChangeEXIFFinderModDateEXIFModDateOptions = c.withoutTiff;
        s.options.dateChangeEXIFFinderModDateEXIFModDateUnchangedOption = c.withoutTiffUnchanged;
        s.options.dateChangeEXIFEXIFDigiDate = 3;
        s.options.dateChangeEXIFEXIFModDate = 3;
        s.moveBy(-3600);
        MySinglePic &pic = s.photo(0, c.hasDigitized ? std::optional(10.0) : std::nullopt,
                                   c.hasTiff ? std::optional(20.0) : std::nullopt);
        pic.fileModificationDateOLD = at(c.modifiedAt);
        pic.fileModificationDateNEW = untouched;
        s.calculate(pic);
        EXPECT_EQ(pic.fileCreationDateNEW, c.expectedCreation) << c.creation << " " << c.modification;
        EXPECT_EQ(pic.fileModificationDateNEW, c.expectedModification) << c.creation << " " << c.modification;
    }
}

TEST(NewDatesWithTags, KeepRuleForTheFileModificationDate)
{
    // Original at noon; the TIFF date is the reference. It moves along with the target, or, given
    // a preset, is left as the last calculation gave it. The new file creation date is the target.
    struct Case { const char *branch; double move; double creation; double modification; double tiff;
                  std::optional<double> tiffLeftAt; Instant expected; };
    const Case cases[] = {
        {"apart from both: kept", -3600, -500, 500, 10, {}, at(500)},
        {"at both, reference later than creation: follows the reference", -3600, 10, 10, 10, {}, at(-3590)},
        {"at both, reference not later: follows the creation date", -3600, 10, 10, 10, -7200, at(-3600)},
        {"at the reference only: follows it", -3600, -500, 10, 10, {}, at(-3590)},
        {"near a reference that stays: kept", -3600, -500, 12, 10, 10, at(12)},
        {"exactly at a reference that stays: stays with it", 3600, -500, 10, 10, 10, at(10)},
        {"at the creation date only: follows it", -3600, 500, 500, 10, {}, at(-3600)},
        {"near a creation date that stays: kept", 500, 500, 502, 1000, {}, at(502)},
    };
    for (const Case &c : cases) {
        Scene s;
        s.options.dateChangeEXIFFinderModDate = 1;
        s.options.dateChangeEXIFFinderModDateUnchangedOption = 1;
        s.options.dateChangeEXIFEXIFModDate = c.tiffLeftAt ? 4 : 3;
        s.moveBy(c.move);
        MySinglePic &pic = s.photo(0, {}, c.tiff);
        pic.tiffDateTimeNEW = atOrNone(c.tiffLeftAt);
        pic.fileCreationDateOLD = at(c.creation);
        pic.fileModificationDateOLD = at(c.modification);
        s.calculate(pic);
        EXPECT_EQ(pic.fileModificationDateNEW, c.expected) << c.branch;
    }
}

TEST(NewDatesWithTags, FileDatesLeftAloneUseTheCreationDateForAnEarlierModification)
{
    for (const bool modificationBeforeCreation : {false, true}) {
        Scene s;
        s.options.dateChangeEXIFChangeFinderWhenChangingEXIF = 0;
        s.moveBy(-3600);
        MySinglePic &pic = s.photo(0);
        pic.fileModificationDateOLD = at(-60);
        if (modificationBeforeCreation)
            pic.normalizationType = NormalizationFileDates;
        s.calculate(pic);
        EXPECT_EQ(pic.fileCreationDateNEW, noon);
        EXPECT_EQ(pic.fileModificationDateNEW, modificationBeforeCreation ? noon : at(-60));
    }
}

TEST(NewDatesWithTags, DigitizedLeftAloneKeepsTheLastCalculation)
{
    Scene s;
    s.options.dateChangeEXIFEXIFDigiDate = 0;
    s.moveBy(-3600);
    MySinglePic &pic = s.photo(0, 0);
    s.calculate(pic);
    ASSERT_EQ(pic.exifDateTimeDigitizedNEW, at(-3600));

    s.options.dateChangeEXIFEXIFDigiDate = 2;
    s.moveBy(7200);
    s.calculate(pic);
    EXPECT_EQ(pic.exifDateTimeOriginalNEW, at(7200));
    EXPECT_EQ(pic.exifDateTimeDigitizedNEW, at(-3600));
}

TEST(NewDatesWithTags, PhotoWithoutDatesChangesOnlyItsFileDates)
{
    Scene s;
    s.moveBy(3600);
    MySinglePic &pic = s.add(SpTypeUnsupportedPhoto, Instant::distantPast());
    pic.fileCreationDateOLD = pic.fileModificationDateOLD = noon;
    pic.exifDateTimeOriginalNEW = pic.exifDateTimeDigitizedNEW = pic.tiffDateTimeNEW = untouched;
    s.options.dateChangeEXIFChangeFinderWhenChangingEXIF = 0;
    s.calculate(pic);
    EXPECT_TRUE(pic.isAffectedBySave);
    for (OptionalDate MySinglePic::*slot : metadataSlots)
        EXPECT_EQ(pic.*slot, std::nullopt);
    EXPECT_EQ(pic.fileCreationDateNEW, noon);
    EXPECT_EQ(pic.fileModificationDateNEW, noon);
}

// --- Modes, taking part, groups ------------------------------------------------------------

TEST(NewDatesModes, WithoutCachedOptionsNowIsStillToCome)
{
    Scene s;
    s.context.preferences.dateChangeNoEXIFFinderModDate = 1;
    s.context.preferences.dateChangeEXIFFinderModDate = 2;
    s.context.preferences.nowDate = now; // not the save time: no run has started
    s.options.dateChangeNoEXIFFinderModDate = 0; // cached options play no part in this mode
    s.moveBy(-3600);
    MySinglePic &noTags = s.add(SpTypeNoTagsFileDate);
    MySinglePic &tagged = s.photo(0);
    noTags.isAffectedBySave = true;
    s.calculateLive(noTags);
    s.calculateLive(tagged);
    EXPECT_EQ(noTags.fileModificationDateNEW, Instant::distantFuture());
    EXPECT_EQ(tagged.fileModificationDateNEW, Instant::distantFuture());
    EXPECT_EQ(tagged.exifDateTimeOriginalNEW, at(-3600));
    EXPECT_TRUE(noTags.isAffectedBySave) << "only a run decides who takes part";

    s.context.isSavingInProgress = true;
    s.moveBy(60);
    s.calculateLive(tagged);
    EXPECT_EQ(tagged.exifDateTimeOriginalNEW, at(-3600)) << "a running save owns the NEW values";
    EXPECT_EQ(tagged.spDateTimeModified_tempFIX, at(-3600));
}

TEST(NewDatesModes, RunKeepsOneSecondExactNow)
{
    const NewDateOptions cached = NewDateOptions::cachedForRun(NewDateOptions{}, now.addingSeconds(0.75));
    EXPECT_EQ(cached.nowDate, now);
}

TEST(NewDatesTakingPart, UnchangedItemsWriteTheirOldDatesAndChangedOnesAreMarked)
{
    Scene s;
    MySinglePic &pic = s.photo(0);
    pic.exifDateTimeOriginalNEW = pic.fileModificationDateNEW = untouched;
    pic.isAffectedBySave = true;
    s.calculate(pic);
    EXPECT_FALSE(pic.isAffectedBySave);
    EXPECT_EQ(pic.exifDateTimeOriginalNEW, noon);
    EXPECT_EQ(pic.fileModificationDateNEW, noon);

    s.options.isSavingPhotosWithoutDateChangesEnabled = true;
    s.calculate(pic);
    EXPECT_TRUE(pic.isAffectedBySave) << "saving without date changes takes every item";
}

TEST(NewDatesTakingPart, AlternativeSaveForcesTheSelectedFolderOnly)
{
    Scene s;
    MySingleFolder other(QStringLiteral("/photos/other"), false);
    s.context.preferences.dateChangeNoEXIFFinderModDate = 1;
    s.context.isAltSaveButtonEnabled = true;
    MySinglePic &pic = s.add(SpTypeNoTagsFileDate);

    s.context.selectedFolder = &other;
    s.calculateLive(pic);
    EXPECT_EQ(pic.fileModificationDateNEW, noon);
    s.context.selectedFolder = &s.folder;
    s.calculateLive(pic);
    EXPECT_EQ(pic.fileModificationDateNEW, Instant::distantFuture());
}

TEST(NewDatesTakingPart, DependentsFollowTheirMasterUnlessItStandsOnItsFileDate)
{
    struct Case { int masterType; bool masterChanged; bool dependentCalculated; };
    const Case cases[] = {
        {SpTypeExifOriginal, true, true},
        {SpTypeNoTagsFileDate, true, true},
        {SpTypeFileDatePreferredOverTiff, true, false},
        {SpTypeFileDatePreferredOverTiff, false, true},
        {SpTypeMovieFileDate, true, false},
    };
    for (const Case &c : cases) {
        Scene s;
        s.folder.sfEditMode = MySingleFolder::EditSeparately;
        MySinglePic &master = s.add(c.masterType);
        master.exifDateTimeOriginalOLD = noon;
        master.singlePicModification = c.masterChanged ? 60.0 : 0.0;
        MySinglePic &dependent = s.group(master, SpTypeExifOriginal, noon);
        dependent.exifDateTimeOriginalOLD = noon;
        dependent.singlePicModification = 60.0;
        s.calculate(master);
        const OptionalDate expected = c.dependentCalculated ? OptionalDate(at(60)) : std::nullopt;
        EXPECT_EQ(dependent.exifDateTimeOriginalNEW, expected)
            << c.masterType << " " << c.masterChanged;
        EXPECT_EQ(dependent.isAffectedBySave, c.dependentCalculated);
    }
}

TEST(NewDatesTakingPart, LiveDragTimeForcesAndReplacesTheTarget)
{
    Scene s;
    s.context.isLiveDragInPreviews = true;
    s.folder.sortLPsByMovModifier = 2; // groups sort by their movie
    MySinglePic &still = s.photo(0);
    MySinglePic &movie = s.group(still, SpTypeMdta, at(3));
    movie.exifDateTimeOriginalOLD = at(3);
    still.tempTimeDuringLiveMod = at(603); // the movie's time on the strip
    still.tempMoveDateByDuringLiveMod = 600;

    s.calculateLive(still);
    s.calculateLive(movie);
    EXPECT_EQ(still.exifDateTimeOriginalNEW, at(600));
    EXPECT_EQ(movie.exifDateTimeOriginalNEW, at(603));

    s.folder.sortLPsByMovModifier = 1;
    still.tempTimeDuringLiveMod = at(600);
    s.calculateLive(movie);
    EXPECT_EQ(movie.spDateTimeModified_tempFIX, at(603)) << "moved by the master's move";

    s.context.isLiveDragInPreviews = false;
    s.calculateLive(still);
    EXPECT_EQ(still.exifDateTimeOriginalNEW, noon);
}

TEST(NewDatesLocationOnly, DatesFollowTheChoiceForLocationChanges)
{
    // Digitized +100 would fall back to the item's date under option 0; a location change with
    // choice 3 keeps it, choice 1 writes no dates at all, and a sidecar takes the location alone.
    // Once the time changes too, the choice no longer applies.
    struct Case { int choice; bool hasSidecar; double move; bool affected; OptionalDate digitized; };
    const Case cases[] = {
        {0, false, 0, true, noon},
        {3, false, 0, true, at(100)},
        {1, false, 0, false, at(100)},
        {3, true, 0, false, at(100)},
        {3, false, 60, true, at(60)},
    };
    for (const Case &c : cases) {
        Scene s;
        s.moveBy(c.move);
        s.options.dateChangeTypeAtLocationOnlyChanges = c.choice;
        s.options.dateChangeEXIFEXIFDigiDate = 0;
        MySinglePic &pic = s.photo(0, 100);
        pic.gpsLat = 48.1;
        pic.gpsLong = 11.6;
        pic.gpsLatOld = 47.0;
        pic.gpsLongOld = 11.0;
        if (c.hasSidecar)
            pic.spSidecarExtensions = {QStringLiteral("XMP")};
        s.calculate(pic);
        EXPECT_EQ(pic.isAffectedBySave, c.affected) << c.choice << " " << c.hasSidecar << " " << c.move;
        EXPECT_EQ(pic.exifDateTimeDigitizedNEW, c.digitized)
            << c.choice << " " << c.hasSidecar << " " << c.move;
    }
}

// --- Adding missing EXIF date tags ---------------------------------------------------------

TEST(ExifDateTimeAddition, MissingTagsTakeTheirDatesFromTheFileOrTheirSiblings)
{
    const Instant created = at(-100.25);
    const Instant modified = at(200.5);
    struct Case { int type; std::optional<double> original, digitized, tiff; quint64 bits;
                  OptionalDate expectedOriginal, expectedDigitized, expectedTiff; bool hasOriginal; };
    const Case cases[] = {
        {SpTypeNoTagsFileDate, {}, {}, {}, 7, at(-101), at(-101), at(200), true},
        {SpTypeFileDatePreferredOverTiff, {}, {}, 50, 3, at(-101), at(-101), at(50), true},
        {SpTypeTiffDateTime, {}, {}, 50, 3, at(50), at(50), at(50), true},
        {SpTypeExifOriginal, 0, {}, 20, 2, at(0), at(0), at(20), true},
        {SpTypeExifDigitized, {}, 10, 20, 1, at(10), at(10), at(20), true},
        {SpTypeExifOriginal, 0, 10, {}, 4, at(0), at(10), at(200), true},
        // Without a date to start from nothing is made up.
        {SpTypeNoTagsImportOptionDate, {}, {}, {}, 7, {}, {}, {}, false},
    };
    for (const Case &c : cases) {
        Scene s;
        MySinglePic &pic = s.photo(c.original, c.digitized, c.tiff, c.type);
        pic.fileCreationDateOLD = created;
        pic.fileModificationDateOLD = modified;
        EXPECT_FALSE(prepareExifDateTimeAddition(pic)) << "not asked for";
        EXPECT_EQ(pic.tagAddType, 0u);

        pic.shouldAddExifDateTimeTags = true;
        EXPECT_EQ(prepareExifDateTimeAddition(pic), c.hasOriginal) << c.type;
        EXPECT_EQ(pic.tagAddType, c.bits) << c.type;
        EXPECT_EQ(pic.exifDateTimeOriginalOLD, c.expectedOriginal) << c.type;
        EXPECT_EQ(pic.exifDateTimeDigitizedOLD, c.expectedDigitized) << c.type;
        EXPECT_EQ(pic.tiffDateTimeOLD, c.expectedTiff) << c.type;

        cleanupExifDateTimeAddition(pic);
        EXPECT_EQ(pic.exifDateTimeOriginalOLD == Instant::distantPast(), bool(c.bits & TagAddExifOriginal));
        EXPECT_EQ(pic.exifDateTimeDigitizedOLD == Instant::distantPast(), bool(c.bits & TagAddExifDigitized));
        EXPECT_EQ(pic.tiffDateTimeOLD == Instant::distantPast(), bool(c.bits & TagAddTiffDateTime));
    }
}

TEST(ExifDateTimeAddition, FileWithoutTagsIsCalculatedAsATaggedPhotoAndForgetsItAfterwards)
{
    Scene s;
    s.options.dateChangeEXIFEXIFDigiDate = 0;
    s.options.dateChangeEXIFEXIFModDate = 0;
    MySinglePic &pic = s.add(SpTypeNoTagsFileDate, at(0.5));
    pic.shouldAddExifDateTimeTags = true;
    s.calculate(pic);
    EXPECT_TRUE(pic.isAffectedBySave);
    EXPECT_EQ(pic.spDateTimeOriginal, noon);
    EXPECT_EQ(pic.exifDateTimeOriginalNEW, noon);
    EXPECT_EQ(pic.exifDateTimeDigitizedNEW, noon);
    EXPECT_EQ(pic.tiffDateTimeNEW, noon);
    EXPECT_EQ(pic.exifDateTimeOriginalOLD, Instant::distantPast()) << "still a tag to fill";

    s.moveBy(60);
    s.calculate(pic);
    EXPECT_EQ(pic.exifDateTimeOriginalNEW, at(60)) << "a second pass finds the tags to add again";

    removeExifDateTimeAddition(pic);
    EXPECT_FALSE(pic.shouldAddExifDateTimeTags);
    EXPECT_EQ(pic.tagAddType, 0u);
    EXPECT_EQ(pic.exifDateTimeOriginalOLD, std::nullopt);
    EXPECT_EQ(pic.tiffDateTimeNEW, std::nullopt);
}

TEST(ExifDateTimeAddition, EmptyOriginalTagLeavesTheItemsDateAlone)
{
    Scene s;
    MySinglePic &pic = s.photo({}, {}, 20, SpTypeEmptyOriginalFileDate);
    pic.exifDateTimeOriginalOLD = Instant::distantPast();
    pic.shouldAddExifDateTimeTags = true;
    s.calculate(pic);
    EXPECT_EQ(pic.tagAddType, quint64(TagAddExifDigitized));
    EXPECT_EQ(pic.spDateTimeOriginal, noon);
    EXPECT_EQ(pic.exifDateTimeOriginalNEW, noon) << "the empty tag is filled with the item's date";
}

// --- Checks before a save ------------------------------------------------------------------

namespace {

QSet<QString> errorsOf(MySinglePic &pic, const TimeZone &zone,
                       std::function<bool(MySinglePic &)> lateValidate = {})
{
    return checkCalculatedValuesForSaveErrors(pic, SaveCheckContext{zone, std::move(lateValidate)});
}

const QSet<QString> noErrors;

} // namespace

TEST(SaveErrorChecks, MovieDatesBeforeTheMovieEpoch)
{
    const Instant epoch = Instant::fromUtc(1904, 1, 1);
    const TimeZone fiveWest = *TimeZone::fromOffsetSeconds(-5 * 3600);
    struct Case { int type; bool correction; double afterEpoch; bool error; };
    const Case cases[] = {
        {SpTypeMvhdCreation, false, 0.5, true},
        {SpTypeMvhdCreation, false, 1.0, false},
        {SpTypeMvhdCreation, true, 3000, true},   // written five hours earlier
        {SpTypeMvhdCreation, true, 3624, false},  // too far from the epoch to be looked at
        {SpTypeMdta, true, 3000, false},          // metadata stamps carry their zone
        {SpTypeMovieFileDate, false, 0.5, false}, // no movie header to write
    };
    for (const Case &c : cases) {
        Scene s;
        s.folder.isQuicktimeMVHDTimezoneCorrectionEnabled = c.correction;
        MySinglePic &movie = s.add(c.type);
        movie.exifDateTimeOriginalNEW = epoch.addingSeconds(c.afterEpoch);
        EXPECT_EQ(errorsOf(movie, fiveWest).contains(QStringLiteral("error_02_pre1904")), c.error)
            << c.type << " " << c.afterEpoch;
    }

    Scene s;
    MySinglePic &movie = s.add(SpTypeMvhdModification);
    movie.tiffDateTimeNEW = epoch;
    EXPECT_EQ(errorsOf(movie, TimeZone::utc()), QSet<QString>{QStringLiteral("error_02_pre1904")});
}

TEST(SaveErrorChecks, FileDatesBefore1970)
{
    Scene s;
    MySinglePic &pic = s.add(SpTypeNoTagsFileDate);
    pic.fileCreationDateNEW = Instant::fromUtc(1970, 1, 1);
    pic.fileModificationDateNEW = Instant::fromUtc(1969, 12, 31, 23, 59, 59);
    EXPECT_EQ(errorsOf(pic, TimeZone::utc()), QSet<QString>{QStringLiteral("error_03_pre1970")});
    pic.fileModificationDateNEW = Instant::fromUtc(1970, 1, 1);
    EXPECT_EQ(errorsOf(pic, TimeZone::utc()), noErrors);
}

TEST(SaveErrorChecks, LocalStampInTheRepeatedAutumnHour)
{
    const std::optional<TimeZone> berlinZone = TimeZone::fromName(QStringLiteral("Europe/Berlin"));
    ASSERT_TRUE(berlinZone);
    const TimeZone &berlin = *berlinZone;
    // On 2023-10-29 Berlin's clocks went from 03:00 CEST back to 02:00 CET (01:00 UTC). A local
    // stamp of the repeated hour reads back as its later moment: only the earlier one is lost.
    struct Case { Instant date; bool ambiguous; };
    const Case cases[] = {
        {Instant::fromUtc(2023, 10, 28, 23, 59, 59), false}, // 01:59:59 CEST
        {Instant::fromUtc(2023, 10, 29, 0, 0, 0), true},     // 02:00 CEST
        {Instant::fromUtc(2023, 10, 29, 0, 59, 59), true},   // 02:59:59 CEST
        {Instant::fromUtc(2023, 10, 29, 1, 30, 0), false},   // 02:30 CET
        {Instant::fromUtc(2023, 10, 29, 2, 0, 0), false},    // 03:00 CET
        {Instant::fromUtc(2023, 3, 26, 1, 30, 0), false},    // spring: every time exists once
    };
    for (const Case &c : cases) {
        for (OptionalDate MySinglePic::*slot : metadataSlots) {
            Scene s;
            MySinglePic &pic = s.add(SpTypeExifOriginal);
            pic.*slot = c.date;
            EXPECT_EQ(errorsOf(pic, berlin).contains(QStringLiteral("error_01_ambiguousStamp")), c.ambiguous)
                << c.date.secondsSinceEpoch();
        }
    }

    Scene s;
    MySinglePic &withOffset = s.add(SpTypeExifOriginal);
    withOffset.exifDateTimeOriginalNEW = Instant::fromUtc(2023, 10, 29, 0, 30, 0);
    withOffset.singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{"+02:00", 80};
    EXPECT_EQ(errorsOf(withOffset, berlin), noErrors) << "a stamp with its offset says which hour";

    // Movie headers hold wall-clock time only when the folder corrects them; metadata stamps
    // carry their zone; a file without tags has no stamp to misread.
    struct Kind { int type; bool correction; bool ambiguous; };
    const Kind kinds[] = {
        {SpTypeMvhdCreation, true, true}, {SpTypeMvhdCreation, false, false}, {SpTypeRiff, false, true},
        {SpTypeMdta, true, false}, {SpTypeNoTagsFileDate, true, false},
    };
    for (const Kind &k : kinds) {
        s.folder.isQuicktimeMVHDTimezoneCorrectionEnabled = k.correction;
        MySinglePic &other = s.add(k.type);
        other.exifDateTimeOriginalNEW = Instant::fromUtc(2023, 10, 29, 0, 30, 0);
        EXPECT_EQ(errorsOf(other, berlin).contains(QStringLiteral("error_01_ambiguousStamp")), k.ambiguous)
            << k.type << " " << k.correction;
    }
}

TEST(SaveErrorChecks, LivePhotoHalvesDriftingApart)
{
    // The movie's time is the first of the two compared; a clock change in the small hours of
    // UTC may put the halves up to an hour apart, from six o'clock on it may not.
    auto utc = [](int hour, int minute, int second) { return Instant::fromUtc(2024, 5, 1, hour, minute, second); };
    struct Case { const char *what; Instant movie; Instant still; bool drifting; };
    const Case cases[] = {
        {"within 300 s", utc(12, 5, 0), utc(12, 0, 0), false},
        {"hour 5, 59 against 0", utc(5, 59, 10), utc(5, 0, 20), false},
        {"hour 6, 59 against 0", utc(6, 59, 10), utc(6, 0, 20), true},
        {"beyond 3900 s", utc(3, 10, 0), utc(2, 0, 0), true},
    };
    for (const Case &c : cases) {
        Scene s;
        MySinglePic &still = s.add(SpTypeExifOriginal);
        MySinglePic &movie = s.group(still, SpTypeMdta, c.movie);
        still.exifDateTimeOriginalNEW = c.still;
        movie.exifDateTimeOriginalNEW = c.movie;
        EXPECT_EQ(errorsOf(still, TimeZone::utc()).contains(QStringLiteral("error_04_livePhotoDriftingApart")),
                  c.drifting)
            << c.what;
    }
}

TEST(SaveErrorChecks, LivePhotoDriftIsExcusedByIdentifiersAndComparedAsTheStampsWillRead)
{
    const TimeZone twoEast = *TimeZone::fromOffsetSeconds(2 * 3600);
    auto drifts = [&](auto &&setUp, std::function<bool(MySinglePic &)> lateValidate = {}) {
        Scene s;
        MySinglePic &still = s.add(SpTypeExifOriginal);
        MySinglePic &movie = s.group(still, SpTypeMdta, noon);
        still.exifDateTimeOriginalNEW = movie.exifDateTimeOriginalNEW = noon;
        setUp(still, movie);
        return errorsOf(still, twoEast, std::move(lateValidate))
            .contains(QStringLiteral("error_04_livePhotoDriftingApart"));
    };
    auto utcMovieStamp = [](MySinglePic &, MySinglePic &movie) {
        movie.singlePicAttributes.QTMetaDate = MovieStampRecord{"2024-05-01T12:00:00Z", 900};
    };
    EXPECT_FALSE(drifts([](MySinglePic &, MySinglePic &) {})) << "both read as the same wall clock";
    EXPECT_FALSE(drifts([](MySinglePic &, MySinglePic &movie) {
        movie.singlePicAttributes.QTMetaDate = MovieStampRecord{"2024-05-01T14:00:00+02:00", 900};
    }));
    EXPECT_TRUE(drifts(utcMovieStamp)) << "a UTC movie stamp reads two hours off the still's wall clock";
    EXPECT_FALSE(drifts(utcMovieStamp, [](MySinglePic &) { return true; })) << "identifiers still match";
    EXPECT_FALSE(drifts([&](MySinglePic &still, MySinglePic &movie) {
        utcMovieStamp(still, movie);
        still.isLivePhotoUUIDValidated = true;
    }));
    EXPECT_FALSE(drifts([&](MySinglePic &still, MySinglePic &movie) {
        utcMovieStamp(still, movie);
        still.singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{"+02:00", 80};
    })) << "a still with its offset is not paired by wall clock";
    auto xmpStill = [&](int zoneForm) {
        return [&, zoneForm](MySinglePic &still, MySinglePic &movie) {
            utcMovieStamp(still, movie);
            still.isCreaXmp = true;
            still.singlePicAttributes.xmpDateInfos = XmpDateInfos{
                {QStringLiteral("ExifDateTimeOriginal"),
                 XmpStampRecord{"2024-05-01T14:00:00", 300, zoneForm, 0}}};
        };
    };
    EXPECT_TRUE(drifts(xmpStill(3))) << "an XMP stamp without zone pairs by wall clock";
    EXPECT_FALSE(drifts(xmpStill(2))) << "an XMP stamp with its offset does not";
}

TEST(SaveErrorChecks, DaylightSavingExceptionPatterns)
{
    struct Case { int h1, m1, h2, m2; bool exception; };
    const Case cases[] = {
        {5, 59, 5, 0, true}, {5, 0, 5, 59, true}, {6, 59, 6, 0, false}, {3, 59, 5, 0, true},
        {3, 0, 1, 59, true}, {3, 0, 5, 59, false}, {3, 59, 1, 0, false}, {3, 30, 3, 0, false},
    };
    for (const Case &c : cases)
        EXPECT_EQ(MySingleFolder::isDstExceptionForUtcDate(Instant::fromUtc(2024, 5, 1, c.h1, c.m1),
                                                           Instant::fromUtc(2024, 5, 1, c.h2, c.m2)),
                  c.exception)
            << c.h1 << ":" << c.m1 << " " << c.h2 << ":" << c.m2;
}

TEST(SaveErrorChecks, UnchangedFileStateOfItemsAndGroups)
{
    struct Case { qint64 master; std::optional<qint64> dependent; QString key; };
    const Case cases[] = {
        {0, {}, {}},
        {1, {}, QStringLiteral("error_05_notFound")},
        {2, {}, QStringLiteral("error_06_modifiedAfterImport")},
        {4, {}, QStringLiteral("error_06_modifiedAfterImport")},
        {5, {}, QStringLiteral("error_11_oldVersion_file")},
        {0, 0, {}},
        {1, 1, QStringLiteral("error_07_notFound")},
        {1, 0, QStringLiteral("error_08_modifiedAfterImport")},
        {0, 5, QStringLiteral("error_11_oldVersion_group")},
        {5, 5, QStringLiteral("error_11_oldVersion_group")},
        {5, 1, QStringLiteral("error_08_modifiedAfterImport")},
        {2, 2, QStringLiteral("error_08_modifiedAfterImport")},
    };
    for (const Case &c : cases) {
        Scene s;
        MySinglePic &pic = s.add(SpTypeExifOriginal);
        pic.fileUnchangedState = c.master;
        const QSet<QString> expected = c.key.isEmpty() ? noErrors : QSet<QString>{c.key};
        if (c.dependent) {
            MySinglePic &dependent = s.group(pic, SpTypeExifOriginal, noon);
            dependent.fileUnchangedState = *c.dependent;
            EXPECT_EQ(checkFileUnchangedStateForSaveRenameErrors(dependent), expected)
                << "asked of the dependent";
        }
        EXPECT_EQ(checkFileUnchangedStateForSaveRenameErrors(pic), expected) << c.master;
    }
}
