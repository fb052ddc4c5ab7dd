#include "core/MySinglePic.h"
#include "folders/MyCompoundFolder.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

void addPic(MySingleFolder &folder, const char *name, Instant date)
{
    folder.adoptPic(std::make_unique<MySinglePic>(QString::fromLatin1(name), &folder, SpTypeExifOriginal, date));
    folder.sfUpdatePicsFromAndTill();
}

const Instant may1 = Instant::fromUtc(2024, 5, 1);

} // namespace

TEST(CompoundFolder, DifferingOffsetsShowABarOnlyWhereTheyDifferAndEmptyMembersDoNotCount)
{
    MySingleFolder a(QStringLiteral("/a"), false), b(QStringLiteral("/b"), false), empty(QStringLiteral("/e"), false);
    addPic(a, "1.jpg", may1);
    addPic(b, "2.jpg", may1);
    a.setSfDateModificationsFromTimeInterval(3600 + 5, false);
    b.setSfDateModificationsFromTimeInterval(7200 + 5, false);
    empty.setSfDateModificationsFromTimeInterval(-86400, false);
    MyCompoundFolder compound({&a, &b, &empty});

    const DateModifications shown = compound.sfDateModifications();
    EXPECT_EQ(shown.value(dateModificationKey::direction), QStringLiteral("+"));
    EXPECT_EQ(shown.value(dateModificationKey::days), QStringLiteral("0"));
    EXPECT_EQ(shown.value(dateModificationKey::hours), MyCompoundFolder::differingValue);
    EXPECT_EQ(shown.value(dateModificationKey::seconds), QStringLiteral("5"));

    compound.cacheOldDateModifications();
    compound.setSfDateModificationsFromTimeInterval(60, false);
    EXPECT_TRUE(compound.hasChangesOfType(dateModificationKey::minutes));
    EXPECT_FALSE(compound.hasChangesOfType(dateModificationKey::days));
    EXPECT_EQ(compound.sfDateModifications().value(dateModificationKey::hours), QStringLiteral("0"));
}

TEST(CompoundFolder, SumsRangesAndMergedZones)
{
    MySingleFolder a(QStringLiteral("/a"), false), b(QStringLiteral("/b"), false);
    addPic(a, "1.jpg", may1);
    addPic(b, "2.jpg", may1.addingSeconds(60));
    addPic(b, "3.jpg", may1.addingSeconds(120));
    a.sourceTimeZones.defaultZone = QStringLiteral("Europe/Berlin");
    MyCompoundFolder compound({&a, &b});

    EXPECT_EQ(compound.count(), 3);
    EXPECT_EQ(compound.sfFrom(), may1);
    EXPECT_EQ(compound.sfTill(), may1.addingSeconds(120));
    EXPECT_EQ(compound.colorIndex(), MyCompoundFolder::compoundColorIndex);
    EXPECT_EQ(compound.sourceTimeZones().defaultZone, zoneName::multiple);
    b.sourceTimeZones.defaultZone = QStringLiteral("Europe/Berlin");
    EXPECT_EQ(compound.sourceTimeZones().defaultZone, QStringLiteral("Europe/Berlin"));
    EXPECT_EQ(compound.targetTimeZones().defaultZone, zoneName::system);

    MyCompoundFolder none({&a});
    a.sfFrom.reset();
    EXPECT_EQ(none.sfFrom(), Instant::distantFuture());
}
