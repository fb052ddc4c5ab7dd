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

// The change itself, its range test and its undo are the owner's (tests/app/DateChangesTest).
TEST(FolderOffsetControls, AControlLeftUntouchedKeepsEachFolderItsOwnValue)
{
    MySingleFolder a(QStringLiteral("/a"), false), b(QStringLiteral("/b"), false);
    addPic(a, "1.jpg", may1);
    addPic(b, "2.jpg", may1);
    a.setSfDateModificationsFromTimeInterval(86400 + 3600, false);
    b.setSfDateModificationsFromTimeInterval(-(2 * 86400 + 3600), false);
    FolderOffsetControls controls({&a, &b});
    ASSERT_EQ(controls.shown().value(dateModificationKey::days), MyCompoundFolder::differingValue);

    const QList<FolderOffset> minutes = controls.offsetsFor({.minutes = 30});
    EXPECT_EQ(minutes[0].interval, 86400 + 3600 + 1800);
    EXPECT_EQ(minutes[1].interval, -(2 * 86400 + 3600 + 1800)) << "b keeps its minus";
    const QList<FolderOffset> plusNoDays = controls.offsetsFor({.negative = false, .days = 0});
    EXPECT_EQ(plusNoDays[1].interval, 3600);
    EXPECT_FALSE(plusNoDays[1].negative);
    EXPECT_TRUE(controls.offsetsFor({.negative = true, .days = 0, .hours = 0})[0].negative)
        << "minus zero asks for a negative offset";
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
