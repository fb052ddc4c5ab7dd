// The sidebar's alert and from-today rows over real files: alerts that saves, a failing disk and
// changes made outside bring and take away, dates counted from a fixed today through date
// changes, undo and redo, and the ranges' edges in zones whose midnights move.

#include "app/DateChanges.h"
#include "app/ZoneChangeCommand.h"
#include "core/PicSaver.h"
#include "core/SaveSettings.h"
#include "folders/ImportFixture.h"
#include "selection/MySidebarController.h"
#include "selection/PicSource.h"
#include "selection/RelativeTimes.h"
#include "support/Exiftool.h"
#include "support/FailingDisk.h"
#include "support/SaveFixture.h"
#include "time/TimeZone.h"

#include <QUndoStack>

#include <map>

namespace orv::test {
namespace {

using Counts = std::map<QString, qsizetype>;

// The rows under a row, by key, with their counts.
Counts countsUnder(const MySidebarController &sidebar, const QString &key)
{
    Counts counts;
    if (const MyFiltersItem *row = sidebar.rowForKey(key))
        for (const MyFiltersItem &child : row->children)
            counts[child.key] = child.pics.size();
    return counts;
}

class SidebarAlertsTest : public SaveFixture
{
protected:
    QSet<MySinglePic *> alerted(const QString &kind)
    {
        sidebar.fullRefresh();
        const MyFiltersItem *row = sidebar.rowForKey(QStringLiteral("alert/") + kind);
        return row ? row->pics : QSet<MySinglePic *>();
    }

    MySidebarController sidebar;
};

TEST_F(SidebarAlertsTest, AlertsComeWithSaveErrorsOutsideChangesAndUndatedFilesAndGoWhenDealtWith)
{
    TiffShape dated;
    dated.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    MySinglePic &kept = import(buildJpeg({.exif = dated}), QStringLiteral("kept"));
    MySinglePic &failing = import(buildJpeg({.exif = dated}), QStringLiteral("failing"));
    MySinglePic &undated = import(buildJpeg({}), QStringLiteral("undated"));
    // As exiftool reads them: only the third holds no date tag.
    EXPECT_FALSE(exiftoolTags(kept.spPath()).string(QStringLiteral("EXIF:DateTimeOriginal")).isEmpty());
    EXPECT_TRUE(exiftoolTags(undated.spPath()).string(QStringLiteral("EXIF:DateTimeOriginal")).isEmpty());
    sidebar.addFixedValuesFor({&kept, &failing, &undated});
    sidebar.fullRefresh();
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("withAlert")), (Counts{{QStringLiteral("alert/missingDate"), 1}}));
    EXPECT_EQ(alerted(QStringLiteral("missingDate")), QSet<MySinglePic *>{&undated});

    // A disk that refuses the write of one file: that item alone has a save error.
    FailingDisk disk;
    disk.failingName = QFileInfo(failing.spPath()).fileName();
    disk.writesBeforeFailure = 0;
    shift(3600.0, &disk);
    ASSERT_TRUE(failing.hasSaveError());
    EXPECT_EQ(alerted(QStringLiteral("errorsSave")), QSet<MySinglePic *>{&failing});
    EXPECT_EQ(sidebar.rowForKey(QStringLiteral("withAlert"))->pics, (QSet<MySinglePic *>{&failing, &undated}));
    // Chosen, the alerts' row lets through its items.
    sidebar.setSelectedKeys({QStringLiteral("alert/errorsSave")});
    sidebar.fullRefresh();
    EXPECT_EQ(sidebar.selectedPicsToFilter(), QSet<MySinglePic *>{&failing});

    // Saved again on a good disk, the error and its row are gone, and the row is chosen no more.
    shift(0.0);
    ASSERT_FALSE(failing.hasSaveError());
    EXPECT_TRUE(alerted(QStringLiteral("errorsSave")).isEmpty());
    EXPECT_FALSE(sidebar.selectedPicsToFilter().has_value());

    // Files changed and deleted by another program, as the folder's check finds them.
    {
        QFile file(kept.spPath());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("more bytes");
    }
    ASSERT_TRUE(QFile::remove(failing.spPath()));
    folder.lastLocalChange = currentInstant(); // as the folder's watch marks it
    for (MySinglePic *pic : {&kept, &failing})
        pic->fileUnchangedState = qint8(PicSaver::updatedUnchangedFileState(*pic));
    EXPECT_EQ(alerted(QStringLiteral("externalChanged")), QSet<MySinglePic *>{&kept});
    EXPECT_EQ(alerted(QStringLiteral("externalDeleted")), QSet<MySinglePic *>{&failing});
    EXPECT_EQ(sidebar.rowForKey(QStringLiteral("withAlert"))->pics.size(), 3);

    // Items that leave the working set leave their alerts.
    sidebar.removeFixedValuesFor({&kept, &failing});
    sidebar.fullRefresh();
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("withAlert")), (Counts{{QStringLiteral("alert/missingDate"), 1}}));
    sidebar.removeFixedValuesFor({&undated});
    sidebar.fullRefresh();
    EXPECT_EQ(sidebar.rowForKey(QStringLiteral("withAlert")), nullptr);
}

TEST_F(SidebarAlertsTest, ClockChangeAndOffsetAlertsFollowTheSourceZoneThroughUndoAndRedo)
{
    const auto jpeg = [this](const QString &name, const char *stamp, const char *offset = nullptr) -> MySinglePic & {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamp);
        if (offset)
            tags.offsetTimeOriginal = Stamp::text(offset);
        return import(buildJpeg({.exif = tags}), name);
    };
    // In Berlin 02:30 came twice on 2024-10-27 and never on 2024-03-31; +02:00 was its May.
    MySinglePic &repeated = jpeg(QStringLiteral("repeated"), "2024:10:27 02:30:00");
    MySinglePic &skipped = jpeg(QStringLiteral("skipped"), "2024:03:31 02:30:00");
    MySinglePic &summer = jpeg(QStringLiteral("summer"), "2024:05:01 12:00:00", "+02:00");
    MySinglePic &plain = jpeg(QStringLiteral("plain"), "2024:05:01 12:00:00");
    sidebar.addFixedValuesFor({&repeated, &skipped, &summer, &plain});
    QUndoStack stack;
    DateChanges changes{stack, {}};
    const auto setSource = [&](const char *zone) {
        ZoneChangeCommand::Zones after;
        after.source.defaultZone = QString::fromLatin1(zone);
        changes.changeTimeZones({{&folder, {folder.sourceTimeZones, folder.targetTimeZones}, after}}, {});
        sidebar.fullRefresh();
        return countsUnder(sidebar, QStringLiteral("withAlert"));
    };

    const Counts inUtc{{QStringLiteral("alert/majorDateDifference"), 1}};
    const Counts inBerlin{{QStringLiteral("alert/dstAmbiguity"), 1}, {QStringLiteral("alert/dstDivergence"), 1}};
    EXPECT_EQ(setSource("UTC"), inUtc);
    EXPECT_EQ(alerted(QStringLiteral("majorDateDifference")), QSet<MySinglePic *>{&summer});
    EXPECT_EQ(setSource("Europe/Berlin"), inBerlin);
    EXPECT_EQ(alerted(QStringLiteral("dstAmbiguity")), QSet<MySinglePic *>{&repeated});
    EXPECT_EQ(alerted(QStringLiteral("dstDivergence")), QSet<MySinglePic *>{&skipped});
    stack.undo();
    sidebar.fullRefresh();
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("withAlert")), inUtc);
    stack.redo();
    sidebar.fullRefresh();
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("withAlert")), inBerlin);
}

class SidebarFromTodayTest : public ImportFixture
{
protected:
    Counts fromToday()
    {
        sidebar.fullRefresh();
        return countsUnder(sidebar, QStringLiteral("relativeTime"));
    }

    MySidebarController sidebar;
    QUndoStack stack;
    DateChanges changes{stack, {}};
};

TEST_F(SidebarFromTodayTest, DatesCountFromTodayThroughDateChangesUndoAndRedo)
{
    // Stamps without a zone are read in the computer's zone, the sidebar's own.
    const TimeZone zone = TimeZone::systemZone();
    sidebar.setClock([&zone] { return zone.instantFromLocalCivil({2024, 5, 11, 9, 0, 0, 0.0}); });
    const QString dir = folder(QStringLiteral("trip"));
    photo(QStringLiteral("trip"), QStringLiteral("today"), "2024:05:11 08:00:00");
    photo(QStringLiteral("trip"), QStringLiteral("lateYesterday"), "2024:05:10 23:30:00");
    photo(QStringLiteral("trip"), QStringLiteral("april"), "2024:04:30 12:00:00");
    photo(QStringLiteral("trip"), QStringLiteral("newYear"), "2024:01:01 00:10:00");
    photo(QStringLiteral("trip"), QStringLiteral("newYearsEve"), "2023:12:31 23:50:00");
    photo(QStringLiteral("trip"), QStringLiteral("sevenYears"), "2017:03:01 10:00:00");
    photo(QStringLiteral("trip"), QStringLiteral("eightYears"), "2016:12:31 10:00:00");
    photo(QStringLiteral("trip"), QStringLiteral("tomorrow"), "2024:05:12 00:00:00");
    importAndWait({dir});
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    MySingleFolder *trip = driver.droppedFolders().first();
    PicSource source;
    source.setFolders({trip});
    source.buildNewSourceUsingOptimizedRefilterOnly(false);
    ASSERT_EQ(source.source_full().size(), 8);
    sidebar.didChangeSource(source.source_full());

    const auto key = [](const char *range) { return QStringLiteral("relativeTime/") + QLatin1String(range); };
    const Counts before{{key("days_1"), 1},   {key("days_2"), 1},   {key("month"), 2},   {key("months_1"), 1},
                        {key("months_4"), 1}, {key("months_5"), 1}, {key("year"), 4},    {key("years_1"), 1},
                        {key("years_7"), 1}};
    EXPECT_EQ(fromToday(), before);
    EXPECT_EQ(sidebar.rowForKey(key("days_2"))->title, QStringLiteral("Yesterday"));
    EXPECT_EQ(sidebar.rowForKey(key("months_4"))->title, QStringLiteral("4 Months Ago"));
    EXPECT_EQ(sidebar.rowForKey(key("years_7"))->title, QStringLiteral("7 Years Ago"));
    sidebar.setSelectedKeys({key("year")});

    // An hour later: late yesterday is early today, New Year's Eve is in this year; the chosen
    // row stays chosen and lets its new item through. Undo and redo move them back and forth.
    const Counts anHourLater{{key("days_1"), 2},   {key("month"), 2}, {key("months_1"), 1}, {key("months_4"), 2},
                             {key("year"), 5},     {key("years_7"), 1}};
    ASSERT_EQ(changes.dragChangedDatesWithDiff({trip}, 3600.0), DateChangeResult::Changed);
    EXPECT_EQ(fromToday(), anHourLater);
    EXPECT_EQ(sidebar.selectedPicsToFilter()->size(), 5);
    stack.undo();
    EXPECT_EQ(fromToday(), before);
    EXPECT_EQ(sidebar.selectedPicsToFilter()->size(), 4);
    stack.redo();
    EXPECT_EQ(fromToday(), anHourLater);
}

TEST(RelativeTimesTest, RangesBeginAtTheZonesMidnightsAcrossLeapDaysYearsAndSkippedMidnights)
{
    const TimeZone berlin = *TimeZone::fromName(QStringLiteral("Europe/Berlin"));
    const auto at = [](const TimeZone &zone, int y, int mo, int d, int h, int mi, int s) {
        return zone.instantFromLocalCivil({y, mo, d, h, mi, s, 0.0});
    };
    using R = RelativeTimes;
    const R afterLeapDay(at(berlin, 2024, 3, 1, 0, 30, 0), berlin);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Days, at(berlin, 2024, 3, 1, 0, 0, 0)), 0);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Days, at(berlin, 2024, 2, 29, 23, 59, 59)), 1);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Months, at(berlin, 2024, 2, 29, 23, 59, 59)), 1);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Days, at(berlin, 2024, 2, 27, 23, 59, 59)), std::nullopt);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Months, at(berlin, 2023, 8, 1, 0, 0, 0)), 7);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Months, at(berlin, 2023, 7, 31, 23, 59, 59)), std::nullopt);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Years, at(berlin, 2023, 12, 31, 23, 59, 59)), 1);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Years, at(berlin, 2017, 1, 1, 0, 0, 0)), 7);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Years, at(berlin, 2016, 12, 31, 23, 59, 59)), std::nullopt);
    EXPECT_EQ(afterLeapDay.stepsBack(R::Days, at(berlin, 2024, 3, 2, 0, 0, 0)), std::nullopt) << "tomorrow";
    EXPECT_EQ(afterLeapDay.endOfToday(), at(berlin, 2024, 3, 2, 0, 0, 0));
    // One moment, two zones: the same instant is today in Berlin and yesterday in New York.
    const TimeZone newYork = *TimeZone::fromName(QStringLiteral("America/New_York"));
    const Instant now = at(berlin, 2024, 3, 1, 12, 0, 0);
    EXPECT_EQ(R(now, berlin).stepsBack(R::Days, at(berlin, 2024, 3, 1, 2, 0, 0)), 0);
    EXPECT_EQ(R(now, newYork).stepsBack(R::Days, at(berlin, 2024, 3, 1, 2, 0, 0)), 1);
    // Where clocks skip midnight (Santiago, 2024-09-08 00:00 became 01:00), the day begins at
    // the first moment it has.
    const TimeZone santiago = *TimeZone::fromName(QStringLiteral("America/Santiago"));
    const R dayOfTheSkip(at(santiago, 2024, 9, 8, 12, 0, 0), santiago);
    EXPECT_EQ(dayOfTheSkip.stepsBack(R::Days, at(santiago, 2024, 9, 8, 1, 0, 0)), 0);
    EXPECT_EQ(dayOfTheSkip.stepsBack(R::Days, at(santiago, 2024, 9, 7, 23, 59, 59)), 1);
    EXPECT_EQ(R(at(santiago, 2024, 9, 7, 12, 0, 0), santiago).endOfToday(), Instant::fromUtc(2024, 9, 8, 4, 0, 0));
}

} // namespace
} // namespace orv::test
