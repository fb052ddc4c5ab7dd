// The time zone sheet edits copies: nothing reaches the folder before OK, its own undo walks its
// choices back, and OK is one step on the main stack that gives the item what the row showed.

#include "app/DateChanges.h"
#include "core/DateDisplay.h"
#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"
#include "ui/MyTimeZonePickerController.h"
#include "ui/Translations.h"
#include "ui/ZonePlaceSearchField.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include <QTableWidget>
#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orv;

namespace {

bool waitUntilReady(ZonePlaceSearchField &field)
{
    return field.isReady() || QSignalSpy(&field, &ZonePlaceSearchField::ready).wait(20000);
}

// The sheet over an empty folder, on screen, in the default locale of when it was made.
struct ShownSheet
{
    MySingleFolder folder{QStringLiteral("/trip"), false};
    QUndoStack mainStack;
    DateChanges changes{mainStack, DateChangeListener{}};
    MyTimeZonePickerController sheet{changes, folder};

    ShownSheet() { sheet.show(); }
    ZonePlaceSearchField *placeSearch(const QString &name) const
    {
        return sheet.findChild<ZonePlaceSearchField *>(name);
    }
};

} // namespace

TEST(TimeZonePicker, PreviewsWorkingZonesAndConfirmsThemAsOneMainUndoStep)
{
    MySingleFolder folder(QStringLiteral("/trip"), false);
    const QByteArray stamp("2024:10:27 02:30:00");
    const Instant read = DateStampCodec::dateFromExifData(stamp + '\0', TimeZone::systemZone());
    MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>("camera.jpg", &folder, SpTypeExifOriginal, read));
    pic->spName = QStringLiteral("camera.jpg");
    pic->exifDateTimeOriginalOLD = read;
    pic->singlePicAttributes.ExifDateTimeOriginal = StampRecord{stamp + '\0', 100};
    QUndoStack mainStack;
    DateChanges changes(mainStack, DateChangeListener{});
    const auto afterText = [](MyTimeZonePickerController &sheet) { return sheet.table().item(0, 2)->text(); };

    MyTimeZonePickerController sheet(changes, folder);
    const QString untouched = afterText(sheet);
    sheet.selectZoneName(QStringLiteral("Europe/Berlin"), false);
    sheet.selectZoneName(QStringLiteral("America/New_York"), true);
    EXPECT_EQ(afterText(sheet), QStringLiteral("2024-10-26 21:30:00 EDT"));
    sheet.useAmbiguityAlternative(0, true);
    EXPECT_EQ(afterText(sheet), QStringLiteral("2024-10-26 20:30:00 EDT"));
    EXPECT_TRUE(folder.sourceTimeZones.isEmpty());
    EXPECT_EQ(pic->spDateTimeOriginal, read);

    sheet.undoStack().undo();
    EXPECT_EQ(afterText(sheet), QStringLiteral("2024-10-26 21:30:00 EDT"));
    sheet.undoStack().undo();
    sheet.undoStack().undo();
    EXPECT_EQ(afterText(sheet), untouched);
    sheet.undoStack().redo();
    sheet.undoStack().redo();
    sheet.accept();

    EXPECT_EQ(mainStack.count(), 1);
    EXPECT_EQ(DateDisplay::localDateTime(pic->spDateTimeModified(), ZoneCorrection::targetZoneOf(*pic)),
              QStringLiteral("2024-10-26 21:30:00 EDT"));
    mainStack.undo();
    EXPECT_EQ(pic->spDateTimeOriginal, read);
    EXPECT_TRUE(folder.sourceTimeZones.isEmpty() && folder.targetTimeZones.isEmpty());
}

TEST(TimeZonePicker, TypingAPlaceOffersItsZoneAndChoosingItSetsTheSelector)
{
    ShownSheet shown;
    MyTimeZonePickerController &sheet = shown.sheet;
    ZonePlaceSearchField *source = shown.placeSearch(QStringLiteral("sourcePlaceSearch"));
    ZonePlaceSearchField *target = shown.placeSearch(QStringLiteral("targetPlaceSearch"));
    ASSERT_TRUE(source && target);
    // Each field loads its places on its own: one being ready says nothing of the other.
    ASSERT_TRUE(waitUntilReady(*source) && waitUntilReady(*target));

    QTest::keyClicks(source, QStringLiteral("Lisb"));
    ASSERT_GE(source->hits().rowCount(), 1);
    EXPECT_EQ(source->hits().item(0)->text(), QStringLiteral("Lisbon, Portugal (Europe/Lisbon)"));
    ASSERT_TRUE(source->completer().popup()->isVisible());
    QTest::keyClick(source->completer().popup(), Qt::Key_Return);
    EXPECT_EQ(sheet.sourceTimeZones().defaultZone, std::optional<QString>(QStringLiteral("Europe/Lisbon")));
    EXPECT_EQ(sheet.findChild<QComboBox *>(QStringLiteral("sourceZone"))->currentData().toString(),
              QStringLiteral("Europe/Lisbon"));

    // Kyiv is listed under the zone's present id, though the city data still names the old one.
    QTest::keyClicks(target, QStringLiteral("kyiv"));
    ASSERT_GE(target->hits().rowCount(), 1);
    EXPECT_EQ(target->hits().item(0)->data(Qt::UserRole).toString(), QStringLiteral("Europe/Kyiv"));
    QTest::keyClick(target->completer().popup(), Qt::Key_Return);
    EXPECT_EQ(sheet.targetTimeZones().defaultZone, std::optional<QString>(QStringLiteral("Europe/Kyiv")));
    EXPECT_EQ(sheet.undoStack().count(), 2);
    QTest::keyClicks(target, QStringLiteral("Qqzz"));
    EXPECT_EQ(target->hits().rowCount(), 0);
}

TEST(TimeZonePicker, InGermanPlacesAndZonesReadInGermanAndAreFoundByEitherLanguage)
{
    const QLocale before;
    const QLocale german(QLocale::German, QLocale::Germany);
    QLocale::setDefault(german);
    const Translations texts(german);
    ShownSheet shown;
    MyTimeZonePickerController &sheet = shown.sheet;
    ZonePlaceSearchField *source = shown.placeSearch(QStringLiteral("sourcePlaceSearch"));
    ASSERT_TRUE(source);
    ASSERT_TRUE(waitUntilReady(*source));

    QTest::keyClicks(source, QStringLiteral("Lissabon"));
    ASSERT_GE(source->hits().rowCount(), 1);
    EXPECT_EQ(source->hits().item(0)->text(), QStringLiteral("Lissabon, Portugal (Europa / Lissabon)"));
    QTest::keyClick(source->completer().popup(), Qt::Key_Return);
    EXPECT_EQ(sheet.sourceTimeZones().defaultZone, std::optional<QString>(QStringLiteral("Europe/Lisbon")));
    EXPECT_EQ(sheet.findChild<QComboBox *>(QStringLiteral("sourceZone"))->currentText(),
              QStringLiteral("Europa / Lissabon (Europe/Lisbon)"));

    source->clear();
    QTest::keyClicks(source, QStringLiteral("Japan"));
    ASSERT_GE(source->hits().rowCount(), 1);
    EXPECT_EQ(source->hits().item(0)->text(), QStringLiteral("Tokyo, Japan (Asien / Tokio)"));
    source->clear();
    QTest::keyClicks(source, QStringLiteral("Deutschl"));
    ASSERT_GE(source->hits().rowCount(), 1);
    EXPECT_EQ(source->hits().item(0)->text(), QStringLiteral("Berlin, Deutschland (Europa / Berlin)"));
    QLocale::setDefault(before);
}
