#include "core/MySinglePic.h"
#include "folders/FolderOffsetControls.h"
#include "folders/MyCompoundFolder.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

void addPic(MySingleFolder &folder, const char *name, Instant date)
{
    folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, SpTypeExifOriginal, date));
    folder.sfUpdatePicsFromAndTill();
}

const Instant may1 = Instant::fromUtc(2024, 5, 1, 10);

} // namespace

TEST(FolderOffsetControls, AControlLeftUntouchedKeepsEachFolderItsOwnValue)
{
    MySingleFolder a(QStringLiteral("/a"), false), b(QStringLiteral("/b"), false);
    addPic(a, "1.jpg", may1);
    addPic(b, "2.jpg", may1);
    a.setSfDateModificationsFromTimeInterval(86400 + 3600, false);
    b.setSfDateModificationsFromTimeInterval(-(2 * 86400 + 3600), false);
    FolderOffsetControls controls({&a, &b});
    ASSERT_EQ(controls.shown().value(dateModificationKey::days), MyCompoundFolder::differingValue);

    EXPECT_EQ(controls.apply({.minutes = 30}), FolderOffsetControls::Result::Changed);
    EXPECT_EQ(a.sfDateModificationsTimeInterval, 86400 + 3600 + 1800);
    EXPECT_EQ(b.sfDateModificationsTimeInterval, -(2 * 86400 + 3600 + 1800)) << "b keeps its minus";
    EXPECT_EQ(a.sfPicDetails_fullArray.first()->spDateTimeModified(), may1.addingSeconds(86400 + 3600 + 1800))
        << "the item's date in force moves with its folder";

    EXPECT_EQ(controls.apply({.negative = false, .days = 0}), FolderOffsetControls::Result::Changed);
    EXPECT_EQ(b.sfDateModificationsTimeInterval, 3600 + 1800);
    EXPECT_EQ(controls.shown().value(dateModificationKey::direction), QStringLiteral("+"));
    EXPECT_EQ(controls.shown().value(dateModificationKey::days), QStringLiteral("0"));
}

TEST(FolderOffsetControls, AnOffsetThatWouldCarryAnItemBeyondTheLastWritableDateIsRefused)
{
    MySingleFolder folder(QStringLiteral("/a"), false), late(QStringLiteral("/late"), false);
    addPic(folder, "1.jpg", may1);
    addPic(late, "2.jpg", Instant::maxDate().addingSeconds(-3600));
    FolderOffsetControls controls({&folder, &late});

    EXPECT_EQ(controls.apply({.hours = 2}), FolderOffsetControls::Result::OutOfRange);
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 0.0) << "nothing changes when one folder refuses";
    EXPECT_EQ(late.sfDateModificationsTimeInterval, 0.0);
    EXPECT_EQ(controls.apply({.hours = 1}), FolderOffsetControls::Result::Changed);
    EXPECT_EQ(controls.apply({.hours = 1}), FolderOffsetControls::Result::Unchanged);
}

TEST(FolderOffsetControls, MinusZeroCountsAsAChangeOfTheControlsButNotOfTheDates)
{
    MySingleFolder folder(QStringLiteral("/a"), false);
    addPic(folder, "1.jpg", may1);
    FolderOffsetControls controls({&folder});

    EXPECT_EQ(controls.apply({.negative = true}), FolderOffsetControls::Result::Changed);
    EXPECT_EQ(controls.shown().value(dateModificationKey::direction), QStringLiteral("-"));
    EXPECT_TRUE(folder.isTogetherDateUIModified());
    EXPECT_FALSE(folder.isDateModified());
}

TEST(FolderOffsetControls, OnlyFoldersOfImportedItemsInFolderModeCanBeEdited)
{
    MySingleFolder importing(QStringLiteral("/i"), false), separate(QStringLiteral("/s"), true),
        slideshow(QStringLiteral("/v"), false), plain(QStringLiteral("/p"), false);
    addPic(separate, "1.jpg", may1);
    addPic(slideshow, "2.jpg", may1);
    addPic(plain, "3.jpg", may1);
    slideshow.modifyImportBecauseOfCommand = 3;
    using A = FolderOffsetControls::Availability;
    EXPECT_EQ(FolderOffsetControls({&importing, &plain}).availability(), A::NoItems);
    EXPECT_EQ(FolderOffsetControls({&separate}).availability(), A::SeparateMode);
    EXPECT_EQ(FolderOffsetControls({&plain, &slideshow}).availability(), A::SlideshowOnly);
    EXPECT_EQ(FolderOffsetControls({&plain}).availability(), A::Editable);
}
