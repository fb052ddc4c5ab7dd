// Time zone correction through the owner, on items made in memory with stored stamps: the stamps
// read anew in the source zone, the hour choice, one undo step, and the special zone names.

#include "app/DateChanges.h"
#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"
#include "support/QtPrinters.h"

#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orv;

namespace {

class ZoneChangesTest : public ::testing::Test
{
protected:
    // An item whose creation stamp was read in the system zone, as the scan reads it.
    MySinglePic &addPic(const QString &name, const QByteArray &stamp, const QByteArray &offset = {})
    {
        const QByteArray data = stamp + '\0';
        const QByteArray offsetData = offset.isEmpty() ? offset : offset + '\0';
        const Instant date = DateStampCodec::dateFromExifData(data, offsetData, TimeZone::systemZone());
        MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>(name, &folder, SpTypeExifOriginal, date));
        pic->exifDateTimeOriginalOLD = date;
        pic->singlePicAttributes.ExifDateTimeOriginal = StampRecord{data, 100};
        if (!offset.isEmpty())
            pic->singlePicAttributes.ExifOffsetTimeOriginal = OffsetTagRecord{offsetData, 130};
        return *pic;
    }

    DateChangeResult setSource(const std::optional<QString> &source, const std::optional<QString> &target = {})
    {
        ZoneChangeCommand::Zones after;
        after.source.defaultZone = source;
        after.target.defaultZone = target;
        return changes.changeTimeZones({{&folder, {folder.sourceTimeZones, folder.targetTimeZones}, after}}, {});
    }

    MySingleFolder folder{QStringLiteral("/trip"), false};
    QUndoStack stack;
    DateChanges changes{stack, DateChangeListener{}};
};

} // namespace

TEST_F(ZoneChangesTest, ASourceZoneReadsLocalStampsAnewAndOneUndoStepPutsEverythingBack)
{
    MySinglePic &camera = addPic("camera.jpg", "2024:10:27 02:30:00");
    MySinglePic &phone = addPic("phone.jpg", "2024:05:01 12:00:00", "+09:00");
    const OptionalDate cameraBefore = camera.spDateTimeOriginal, phoneBefore = phone.spDateTimeOriginal;

    ASSERT_EQ(setSource(QStringLiteral("Europe/Berlin")), DateChangeResult::Changed);
    EXPECT_EQ(stack.count(), 1);
    // The repeated hour is read as its later moment, in standard time, and flagged.
    EXPECT_EQ(camera.spDateTimeOriginal, Instant::fromUtc(2024, 10, 27, 1, 30));
    EXPECT_EQ(camera.dstAmbiguityAtImportState, quint64(DateSlotCreation));
    EXPECT_TRUE(camera.isUnsavedDueToTZC);
    EXPECT_EQ(phone.spDateTimeOriginal, phoneBefore);
    EXPECT_EQ(phone.majorDateDifferenceType & MajorDifferenceStampOffset, quint64(MajorDifferenceStampOffset));

    // The other hour, then back: exactly the stored reading again.
    ASSERT_EQ(changes.changeTimeZones({}, {{&camera, 0, 1}}), DateChangeResult::Changed);
    EXPECT_EQ(camera.spDateTimeOriginal, Instant::fromUtc(2024, 10, 27, 0, 30));
    stack.undo();
    EXPECT_EQ(camera.spDateTimeOriginal, Instant::fromUtc(2024, 10, 27, 1, 30));

    // Confirming the zones in force adds no step.
    EXPECT_EQ(setSource(QStringLiteral("Europe/Berlin")), DateChangeResult::Unchanged);
    stack.undo();
    EXPECT_EQ(camera.spDateTimeOriginal, cameraBefore);
    EXPECT_EQ(phone.spDateTimeOriginal, phoneBefore);
    EXPECT_TRUE(folder.sourceTimeZones.isEmpty());
    EXPECT_FALSE(camera.isUnsavedDueToTZC);
}

TEST_F(ZoneChangesTest, SpecialNamesResolveThroughTheFolderAndTheMaster)
{
    MySinglePic &own = addPic("own.jpg", "2024:05:01 12:00:00");
    MySinglePic &plain = addPic("plain.jpg", "2024:05:01 12:00:00");
    MySinglePic dependent(QStringLiteral("own.cr2"), &folder, SpTypeExifOriginal, own.spDateTimeOriginal);
    own.bundleDependentImage = &dependent;
    dependent.bundleMasterImage = &own;
    folder.sourceTimeZones.defaultZone = QStringLiteral("Europe/Berlin");
    folder.sourceTimeZones.assign(own, QStringLiteral("Asia/Tokyo"));
    folder.targetTimeZones.defaultZone = zoneName::unchangedLeftFolder;

    EXPECT_EQ(ZoneCorrection::sourceZoneOf(own).name(), QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(ZoneCorrection::sourceZoneOf(dependent).name(), QStringLiteral("Asia/Tokyo"));
    // The folder's target "same as source" means the folder's source, not the item's own zone.
    EXPECT_EQ(ZoneCorrection::targetZoneOf(own).name(), QStringLiteral("Europe/Berlin"));
    folder.targetTimeZones.assign(own, zoneName::unchangedLeft);
    EXPECT_EQ(ZoneCorrection::targetZoneOf(own).name(), QStringLiteral("Asia/Tokyo"));
    EXPECT_EQ(ZoneCorrection::targetZoneOf(plain).name(), QStringLiteral("Europe/Berlin"));
    folder.sourceTimeZones = {};
    folder.targetTimeZones = {};
    EXPECT_EQ(ZoneCorrection::targetZoneOf(plain), TimeZone::systemZone());
    own.bundleDependentImage = nullptr;
}

// What the sheet shows for a row under working zones is what the item holds once they are
// confirmed, and what a save then writes: the wall clock of the target zone at that instant.
TEST_F(ZoneChangesTest, ThePreviewOfWorkingZonesIsWhatConfirmingThemGives)
{
    const QList<QByteArray> stamps = {"2024:03:31 02:30:00", "2024:10:27 02:30:00", "2024:11:03 06:30:00"};
    QList<MySinglePic *> pics;
    for (const QByteArray &stamp : stamps)
        pics.append(&addPic(QString::fromLatin1(stamp), stamp));
    ZoneChangeCommand::Zones working;
    working.source.defaultZone = QStringLiteral("Europe/Berlin");
    working.target.defaultZone = QStringLiteral("America/New_York");
    QList<ZonePreview> previews;
    for (MySinglePic *pic : pics)
        previews.append(ZoneCorrection::preview(*pic, ZoneProvider{working.source, working.target}, 0));
    ASSERT_EQ(setSource(working.source.defaultZone, working.target.defaultZone), DateChangeResult::Changed);
    for (qsizetype i = 0; i < pics.size(); ++i) {
        EXPECT_EQ(previews[i].newDate, pics[i]->spDateTimeModified()) << stamps[i].toStdString();
        EXPECT_EQ(previews[i].findings.divergence, pics[i]->dstDivergenceState);
        EXPECT_EQ(previews[i].findings.ambiguity, pics[i]->dstAmbiguityAtImportState);
        EXPECT_EQ(previews[i].target, ZoneCorrection::targetZoneOf(*pics[i]));
    }
    EXPECT_EQ(previews[0].findings.divergence, quint64(DateSlotCreation));
    EXPECT_EQ(previews[1].findings.ambiguity, quint64(DateSlotCreation));
    EXPECT_TRUE(previews[2].isAmbiguousAtExport);
}
