// Every date change through the owner, on items and folders made in memory: the value it gives,
// its exact undo and redo, and the changes refused without a trace on the undo stack.

#include "app/DateChanges.h"
#include "core/MySinglePic.h"
#include "core/NewDateOptions.h"
#include "folders/FolderOffsetControls.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"
#include "support/QtPrinters.h"

#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant tenAm = Instant::fromUtc(2024, 5, 1, 10);

class DateChangesTest : public ::testing::Test
{
protected:
    MySinglePic &addPic(MySingleFolder &folder, const QString &name, double secondsAfterTen,
                        int type = SpTypeExifOriginal)
    {
        MySinglePic *pic = folder.adoptPic(
            std::make_unique<MySinglePic>(name, &folder, type, tenAm.addingSeconds(secondsAfterTen)));
        pic->spName = name;
        folder.sfUpdatePicsFromAndTill();
        return *pic;
    }

    // Seconds after ten of the date in force.
    static double at(const MySinglePic &pic) { return pic.spDateTimeModified()->secondsSince(tenAm); }

    static QList<double> datesOf(const QList<MySinglePic *> &pics)
    {
        QList<double> dates;
        for (const MySinglePic *pic : pics)
            dates.append(at(*pic));
        return dates;
    }

    MySingleFolder together{QStringLiteral("/together"), false};
    MySingleFolder separate{QStringLiteral("/separate"), true};
    QUndoStack stack;
    int refusals = 0;
    QList<MySingleFolder *> announced;
    DateChanges changes{stack, DateChangeListener{[this](const QList<MySingleFolder *> &f) { announced.append(f); },
                                                  nullptr, [this] { ++refusals; }}};
};

TEST_F(DateChangesTest, TheOffsetControlsChangeEachFolderByItsOwnValuesAndUndoRestoresThemExactly)
{
    MySingleFolder other(QStringLiteral("/other"), false);
    MySinglePic &a = addPic(together, "a.jpg", 0);
    MySinglePic &b = addPic(other, "b.jpg", 0);
    together.setSfDateModificationsFromTimeInterval(86400 + 3600, false);
    other.setSfDateModificationsFromTimeInterval(-(2 * 86400 + 3600), false);

    ASSERT_EQ(changes.dateValuesModify({&together, &other}, {.minutes = 30}), DateChangeResult::Changed);
    EXPECT_EQ(at(a), 86400 + 3600 + 1800);
    EXPECT_EQ(at(b), -(2 * 86400 + 3600 + 1800)) << "an untouched direction keeps the folder's minus";
    EXPECT_EQ(stack.count(), 1) << "one entry is one undo step for both folders";
    EXPECT_EQ(announced, (QList<MySingleFolder *>{&together, &other}));

    stack.undo();
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 86400 + 3600);
    EXPECT_EQ(other.sfDateModificationsTimeInterval, -(2 * 86400 + 3600));
    EXPECT_EQ(other.sfDateModifications.value(dateModificationKey::days), QStringLiteral("2"));
    stack.redo();
    EXPECT_EQ(at(a), 86400 + 3600 + 1800);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Date Change"));
}

TEST_F(DateChangesTest, MinusZeroIsAStepOfTheControlsThatMovesNoDate)
{
    addPic(together, "a.jpg", 0);
    ASSERT_EQ(changes.dateValuesModify({&together}, {.negative = true}), DateChangeResult::Changed);
    EXPECT_EQ(together.sfDateModifications.value(dateModificationKey::direction), QStringLiteral("-"));
    EXPECT_TRUE(together.isTogetherDateUIModified());
    EXPECT_FALSE(together.isDateModified());
    stack.undo();
    EXPECT_FALSE(together.isTogetherDateUIModified());
}

TEST_F(DateChangesTest, TheSameValueAgainAndARefusedRangeLeaveNoUndoStep)
{
    MySingleFolder late(QStringLiteral("/late"), false);
    addPic(together, "a.jpg", 0);
    MySinglePic &last = addPic(late, "b.jpg", 0);
    last.spDateTimeOriginal = Instant::maxDate().addingSeconds(-3600);
    ASSERT_EQ(changes.dragChangedDates({&together, &late}, 3600, false), DateChangeResult::Changed);

    EXPECT_EQ(changes.dateValuesModify({&together, &late}, {.hours = 1}), DateChangeResult::Unchanged);
    EXPECT_EQ(changes.dragChangedDates({&together, &late}, 3601, false), DateChangeResult::Refused);
    EXPECT_EQ(changes.dragChangedDates({&together, &late}, -62135596800.0 * 2, true), DateChangeResult::Refused);
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 3600) << "no folder changes when one refuses";
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 3600);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(refusals, 2);

    separate.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("c.jpg"), &separate, SpTypeExifOriginal,
                                                    Instant::minDate().addingSeconds(10)));
    EXPECT_EQ(changes.dragChangedSinglePicModeDate(separate.sfPicDetails_fullArray, -11), DateChangeResult::Refused);
    EXPECT_EQ(separate.sfPicDetails_fullArray.first()->singlePicModification, 0.0);
    EXPECT_EQ(stack.count(), 1);
}

TEST_F(DateChangesTest, StepsOfOneFieldMergeIntoOneUndoStepAndVanishWhenTheyReturn)
{
    addPic(together, "a.jpg", 0);
    changes.dateValuesModify({&together}, {.hours = 1}, QStringLiteral("offsetHours"));
    changes.dateValuesModify({&together}, {.hours = 2}, QStringLiteral("offsetHours"));
    changes.dateValuesModify({&together}, {.minutes = 5}, QStringLiteral("offsetMinutes"));
    ASSERT_EQ(stack.count(), 2);
    stack.undo();
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 7200);
    stack.undo();
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 0) << "both hour steps are taken back at once";

    stack.clear();
    changes.dateValuesModify({&together}, {.hours = 1}, QStringLiteral("offsetHours"));
    changes.dateValuesModify({&together}, {.hours = 0}, QStringLiteral("offsetHours"));
    EXPECT_EQ(stack.count(), 0) << "a gesture that ends where it began leaves nothing to undo";
}

TEST_F(DateChangesTest, TwoMovesThatCancelBringAnItemBackToNoChange)
{
    MySinglePic &pic = addPic(separate, "a.jpg", 0.25);
    MySinglePic &dependent = addPic(separate, "a.mov", 0.25);
    pic.bundleDependentImage = &dependent;
    dependent.singlePicModification = 99;
    ASSERT_EQ(changes.dragChangedSinglePicModeDate({&pic}, 0.1), DateChangeResult::Changed);
    EXPECT_EQ(dependent.singlePicModification, 0.1) << "a dependent holds its master's change, whatever it held";
    EXPECT_EQ(separate.singlePicModeImages, 1);
    ASSERT_EQ(changes.dragChangedSinglePicModeDate({&pic}, -0.1), DateChangeResult::Changed);

    EXPECT_EQ(pic.singlePicModification, 0.0);
    EXPECT_EQ(separate.singlePicModeImages, 0);
    EXPECT_FALSE(pic.singlePicModeDate().has_value());
    EXPECT_FALSE(separate.isDateModified());
    stack.undo();
    EXPECT_EQ(pic.singlePicModification, 0.1) << "undo restores the value, not a sum";
    EXPECT_EQ(separate.singlePicModeImages, 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Move Dates"));
}

TEST_F(DateChangesTest, ItemsThatTakeNoEditsAndItemsInTheTrashStay)
{
    MySinglePic &unsupported = addPic(separate, "a.xyz", 0, SpTypeUnsupportedPhoto);
    MySinglePic &trashed = addPic(separate, "b.jpg", 0);
    MySinglePic &moved = addPic(separate, "c.jpg", 0);
    trashed.isMovedToTrash = true;
    changes.dragChangedSinglePicModeDate({&unsupported, &trashed, &moved}, 60);
    EXPECT_EQ(datesOf({&unsupported, &trashed, &moved}), (QList<double>{0, 0, 60}));
}

TEST_F(DateChangesTest, AChangeOfTheOtherModeIsRefusedWhileTheFolderHoldsAChangeOfItsOwn)
{
    MySinglePic &pic = addPic(together, "a.jpg", 0);
    changes.dragChangedDates({&together}, 60, false);
    EXPECT_EQ(changes.dragChangedSinglePicModeDate({&pic}, 5), DateChangeResult::Refused);
    changes.dateValuesReset({&together});
    EXPECT_EQ(stack.undoText(), QStringLiteral("Reset Folder Offset"));
    ASSERT_EQ(changes.dragChangedSinglePicModeDate({&pic}, 5), DateChangeResult::Changed);
    EXPECT_EQ(together.sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(at(pic), 5);
    stack.undo();
    stack.undo();
    EXPECT_EQ(together.sfEditMode, MySingleFolder::EditTogether) << "undo brings back the mode of the step";
    EXPECT_EQ(at(pic), 60);
}

// Items at 10:00:00, 10:00:01 and 10:10:00 (given out of order), aligned by each rule.
TEST_F(DateChangesTest, EachAlignmentGivesItsDatesAndIsUndoneAndRedoneExactly)
{
    struct Case
    {
        AlignTag tag;
        QList<double> expected; // first, middle, last item by their original order in time
        const char *undoName;
    };
    const Case cases[] = {
        {AlignTag::MatchingGaps, {0, 300, 600}, "Align by Matching Gaps"},
        {AlignTag::Reversing, {600, 1, 0}, "Reverse Order"},
        {AlignTag::ReversingIntervals, {600, 599, 0}, "Reverse Intervals"},
        {AlignTag::MinimizingGaps, {0, 1, 2}, "Align by Minimizing Gaps"},
        {AlignTag::Filename, {600, 1, 0}, "Align by File Name"},
    };
    MySinglePic &last = addPic(separate, "A.jpg", 600);
    MySinglePic &first = addPic(separate, "C.jpg", 0);
    MySinglePic &middle = addPic(separate, "B.jpg", 1);
    const QList<MySinglePic *> inTime{&first, &middle, &last};
    for (const Case &c : cases) {
        SCOPED_TRACE(int(c.tag));
        ASSERT_EQ(changes.realignSelection(c.tag, {&last, &first, &middle}, &first, NewDateOptions()),
                  DateChangeResult::Changed);
        EXPECT_EQ(datesOf(inTime), c.expected);
        EXPECT_EQ(stack.undoText(), QLatin1String(c.undoName));
        stack.undo();
        EXPECT_EQ(datesOf(inTime), (QList<double>{0, 1, 600}));
        EXPECT_EQ(separate.singlePicModeImages, 0);
        stack.redo();
        EXPECT_EQ(datesOf(inTime), c.expected);
        stack.undo();
    }
}

TEST_F(DateChangesTest, MinimizingPacksAroundTheMainItemAndSeparatesIdenticalTimes)
{
    MySinglePic &a = addPic(separate, "a.jpg", 0);
    MySinglePic &b = addPic(separate, "b.jpg", 0.5);
    MySinglePic &main = addPic(separate, "c.jpg", 0.75);
    MySinglePic &d = addPic(separate, "d.jpg", 50);
    changes.realignSelection(AlignTag::MinimizingGaps, {&a, &b, &main, &d}, &main, NewDateOptions());
    EXPECT_EQ(stack.undoText(), QStringLiteral("Separate Identical Times"));
    EXPECT_EQ(datesOf({&a, &b, &main, &d}), (QList<double>{-2, -0.5, 0.75, 1}))
        << "whole seconds around the main item; fractions of the stored dates survive";
}

TEST_F(DateChangesTest, AlignmentsWithNothingToDoLeaveNoUndoStep)
{
    MySinglePic &a = addPic(separate, "IMG_a.jpg", 0);
    MySinglePic &b = addPic(separate, "img_B.jpg", 5);
    MySinglePic &c = addPic(separate, "IMG_c.jpg", 9);
    EXPECT_EQ(changes.realignSelection(AlignTag::Filename, {&a, &b, &c}, &a, NewDateOptions()),
              DateChangeResult::Unchanged)
        << "names that already run in time order";
    EXPECT_EQ(changes.realignSelection(AlignTag::MatchingGaps, {&a, &b}, &a, NewDateOptions()),
              DateChangeResult::Unchanged);
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(DateChangesTest, CopyingAnotherDateLeavesOutTheItemThatLacksIt)
{
    MySinglePic &with = addPic(separate, "a.jpg", 0);
    MySinglePic &without = addPic(separate, "b.jpg", 10);
    with.fileModificationDateOLD = tenAm.addingSeconds(3600.7);
    without.fileModificationDateOLD = Instant::distantPast();
    EXPECT_EQ(DateAlignment::validateForAlignByCopyingOtherFileDate({&with, &without}, NewDateOptions()),
              QList<AlignTag>{AlignTag::FileModificationOld});
    changes.realignSelection(AlignTag::FileModificationOld, {&with, &without}, &with, NewDateOptions());
    EXPECT_EQ(datesOf({&with, &without}), (QList<double>{3600, 10}));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Copy Other File Date"));
}

TEST_F(DateChangesTest, RemovingOneDateChangesOneItemAndNamesTheWholeSelectionForUndo)
{
    MySinglePic &a = addPic(separate, "a.jpg", 0);
    MySinglePic &b = addPic(separate, "b.jpg", 0);
    MySinglePic &c = addPic(separate, "c.jpg", 0);
    changes.dragChangedSinglePicModeDate({&a, &b, &c}, 30);

    ASSERT_EQ(changes.removeDate(&b, {&a, &b, &c}), DateChangeResult::Changed);
    EXPECT_EQ(datesOf({&a, &b, &c}), (QList<double>{30, 0, 30}));
    const auto *step = static_cast<const PicOffsetCommand *>(stack.command(stack.index() - 1));
    EXPECT_EQ(step->pics(), (QList<MySinglePic *>{&b, &a, &c}));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Remove Date"));

    ASSERT_EQ(changes.removeSelectedDates({&a, &c}, &a), DateChangeResult::Changed);
    EXPECT_EQ(datesOf({&a, &b, &c}), (QList<double>{0, 0, 0}));
    EXPECT_EQ(separate.singlePicModeImages, 0);
    stack.undo();
    stack.undo();
    EXPECT_EQ(datesOf({&a, &b, &c}), (QList<double>{30, 30, 30}));
    EXPECT_EQ(changes.dateValuesResetSingleMode({&separate}), DateChangeResult::Changed);
    EXPECT_EQ(datesOf({&a, &b, &c}), (QList<double>{0, 0, 0}));
}

TEST_F(DateChangesTest, SpreadingLaysTheItemsEvenlyIntoTheGap)
{
    MySinglePic &a = addPic(separate, "a.jpg", 0);
    MySinglePic &b = addPic(separate, "b.jpg", 0);
    MySinglePic &c = addPic(separate, "c.jpg", 1);
    ASSERT_EQ(changes.dragChangedSinglePicAltModeDates({&a, &b, &c}, tenAm.addingSeconds(100),
                                                       tenAm.addingSeconds(201)),
              DateChangeResult::Changed);
    EXPECT_EQ(datesOf({&a, &b, &c}), (QList<double>{125, 151, 176}));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Spread Dates"));
}

TEST_F(DateChangesTest, APastedDateMovesTheFolderInFolderModeAndTheSelectionInSingleMode)
{
    MySinglePic &a = addPic(together, "a.jpg", 0);
    changes.changeDatesToDate(&a, {&a}, tenAm.addingSeconds(-7200));
    EXPECT_EQ(together.sfDateModificationsTimeInterval, -7200);
    MySinglePic &b = addPic(separate, "b.jpg", 0);
    MySinglePic &c = addPic(separate, "c.jpg", 100);
    changes.changeDatesToDate(&c, {&b, &c}, tenAm.addingSeconds(160));
    EXPECT_EQ(datesOf({&b, &c}), (QList<double>{60, 160}));
}

TEST_F(DateChangesTest, ClearingAFolderKeepsTheOtherFoldersHistoryInItsPlace)
{
    MySinglePic &kept = addPic(separate, "a.jpg", 0);
    addPic(together, "b.jpg", 0);
    changes.dragChangedSinglePicModeDate({&kept}, 10);
    changes.dragChangedDates({&together}, 3600, false);
    changes.dragChangedSinglePicModeDate({&kept}, 20);
    changes.dragChangedSinglePicModeDate({&kept}, 40);
    stack.undo();

    changes.clearUndoRedoFromFolder(&together);
    EXPECT_EQ(stack.count(), 3);
    EXPECT_EQ(stack.index(), 2);
    EXPECT_EQ(at(kept), 30) << "the model is left as it stood";
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 3600);
    stack.redo();
    EXPECT_EQ(at(kept), 70);
    stack.undo();
    stack.undo();
    stack.undo();
    EXPECT_EQ(at(kept), 0);
    EXPECT_EQ(together.sfDateModificationsTimeInterval, 3600) << "nothing undoes the saved folder";

    changes.clearUndoRedoFromFolder(&separate);
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(DateChangesTest, AFolderOffsetAcrossADaylightSavingChangeIsMarkedOncePerOffset)
{
    const TimeZone berlin = *TimeZone::fromName(QStringLiteral("Europe/Berlin"));
    MySinglePic &pic = addPic(together, "a.jpg", 0);
    pic.spDateTimeOriginal = Instant::fromUtc(2024, 3, 30, 12); // the day before clocks go forward
    EXPECT_EQ(DateChanges::validateDSTJumperType(together, berlin), 0) << "no offset, nothing to say";

    struct Case
    {
        double offset;
        qint64 expected;
    };
    for (const Case c : {Case{3600, 1}, Case{86400, 2}, Case{-86400, 1}, Case{-200 * 86400, 2}}) {
        changes.dragChangedDates({&together}, c.offset, false);
        EXPECT_EQ(DateChanges::validateDSTJumperType(together, berlin), c.expected) << c.offset;
    }
    together.hasDSTJumperType = 1;
    EXPECT_EQ(DateChanges::validateDSTJumperType(together, berlin), 1) << "kept until the offset changes";
}

TEST_F(DateChangesTest, AnOwnerBlockedByASaveRefusesEveryChange)
{
    MySinglePic &pic = addPic(separate, "a.jpg", 0);
    changes.setBlocked(true);
    EXPECT_EQ(changes.dragChangedSinglePicModeDate({&pic}, 10), DateChangeResult::Refused);
    EXPECT_EQ(changes.dateValuesModify({&together}, {.hours = 1}), DateChangeResult::Unchanged)
        << "a folder without items has nothing to change";
    addPic(together, "b.jpg", 0);
    EXPECT_EQ(changes.dateValuesModify({&together}, {.hours = 1}), DateChangeResult::Refused);
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
