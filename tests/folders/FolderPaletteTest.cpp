#include "core/Preferences.h"
#include "folders/FolderPalette.h"

#include <QCborArray>

#include <gtest/gtest.h>

using orv::FolderPalette;
using orv::Preferences;

TEST(FolderPalette, TheRegisteredPaletteGivesEightColoursInItsOrder)
{
    const Preferences prefs{QString()};
    const FolderPalette palette = FolderPalette::fromPreferences(prefs);
    ASSERT_TRUE(palette.colorFor(0));
    EXPECT_EQ(palette.colorFor(0)->rgb(), QColor::fromRgbF(0.83f, 0.193f, 0.232f).rgb());
    EXPECT_EQ(palette.colorFor(3)->rgb(), QColor::fromRgbF(0.0f, 0.049f, 0.853f).rgb());
    EXPECT_TRUE(palette.colorFor(7));
    EXPECT_FALSE(palette.colorFor(8));
    EXPECT_FALSE(palette.colorFor(65535)) << "a folder beyond the palette has no colour";
}

TEST(FolderPalette, ABrokenEntryHasNoColourButKeepsTheIndexesAfterIt)
{
    Preferences prefs{QString()};
    prefs.setArchive(QStringLiteral("folderColors_7"),
                     QCborArray{QCborArray{1.0, 0.0, 0.0, 1.0}, QStringLiteral("teal"), QCborArray{0.0, 0.0, 1.0}});
    const FolderPalette palette = FolderPalette::fromPreferences(prefs);
    EXPECT_EQ(palette.colorFor(0), QColor(Qt::red));
    EXPECT_FALSE(palette.colorFor(1));
    EXPECT_EQ(palette.colorFor(2), QColor(Qt::blue));
}
