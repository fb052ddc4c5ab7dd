// The window speaks the user's language where a translation exists: German texts for a German
// locale, Qt's own buttons included, and English for a language without one.

#include "core/DateSourceText.h"
#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "ui/MainWindow.h"
#include "ui/Translations.h"

#include <QAction>
#include <QCoreApplication>
#include <gtest/gtest.h>

using namespace orv;

namespace {

QString actionText(const MainWindow &window, const char *name)
{
    const auto *action = window.findChild<QAction *>(QLatin1String(name));
    return action ? action->text() : QString();
}

} // namespace

TEST(TranslationsTest, AGermanLocaleGivesGermanWindowTextsAndAnotherLanguageKeepsEnglish)
{
    Preferences prefs{QString()};
    {
        const Translations german(QLocale(QLocale::German, QLocale::Germany));
        EXPECT_TRUE(german.hasOwn());
        const MainWindow window(prefs);
        EXPECT_EQ(actionText(window, "saveAction"), QStringLiteral("Speichern"));
        EXPECT_EQ(actionText(window, "moveToFolderAction"), QStringLiteral("In Ordner bewegen …"));
        EXPECT_EQ(actionText(window, "removePicsAction"), QStringLiteral("Aus der Arbeitsmenge entfernen"));
        // Texts of the model as they reach the window (one by its key as context), and Qt's own
        // button texts.
        FolderFacts folder;
        const MySinglePic pic(QStringLiteral("a.jpg"), &folder, SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10));
        EXPECT_EQ(DateSourceText::forPic(pic), QStringLiteral("EXIF-Originaldatum"));
        EXPECT_EQ(QCoreApplication::translate("undoDateChangeText", "Date Change"), QStringLiteral("Datumsänderung"));
        EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
    }
    const Translations none(QLocale(QLocale::Swahili, QLocale::Kenya));
    EXPECT_FALSE(none.hasOwn());
    const MainWindow window(prefs);
    EXPECT_EQ(actionText(window, "saveAction"), QStringLiteral("Save"));
}
