// Date display modes, labels and calendar marks on crafted dates, read in UTC.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/TimelineLabels.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant today = Instant::fromUtc(2026, 11, 24, 15); // a Tuesday
const TimeZone utc = TimeZone::utc();

DateDisplayMode mode(Instant first, Instant last, DateFilterComponents filter = {})
{
    return TimelineLabels::dateDisplayModeComparing(first, last, today, utc, filter);
}

TEST(TimelineLabelsTest, DisplayModes)
{
    EXPECT_EQ(TimelineLabels::dateDisplayModeComparing(std::nullopt, today, today, utc), DateDisplayMode::Minutes);
    EXPECT_EQ(TimelineLabels::dateDisplayModeComparing(today, today, today, utc, {}, 1), DateDisplayMode::Years);
    const Instant lastYear = Instant::fromUtc(2025, 11, 20);
    EXPECT_EQ(mode(lastYear, lastYear.addingSeconds(60)), DateDisplayMode::Years);
    EXPECT_EQ(mode(Instant::fromUtc(2026, 10, 2), Instant::fromUtc(2026, 10, 3)), DateDisplayMode::Months);
    EXPECT_EQ(mode(Instant::fromUtc(2026, 11, 24, 8), Instant::fromUtc(2026, 11, 24, 9)), DateDisplayMode::Hours);
    EXPECT_EQ(mode(Instant::fromUtc(2026, 11, 10), Instant::fromUtc(2026, 11, 24)), DateDisplayMode::Weeks);
    EXPECT_EQ(mode(Instant::fromUtc(2026, 11, 23), Instant::fromUtc(2026, 11, 25)), DateDisplayMode::Weeks); // after today
    EXPECT_EQ(mode(Instant::fromUtc(2026, 11, 23), Instant::fromUtc(2026, 11, 24)), DateDisplayMode::Days);
    // A filter by year and month narrows an old trip to its weeks, by day to its hours.
    EXPECT_EQ(mode(lastYear, lastYear.addingSeconds(86400), {true, true, false}), DateDisplayMode::Weeks);
    EXPECT_EQ(mode(lastYear, lastYear.addingSeconds(60), {true, true, true}), DateDisplayMode::Hours);
}

class LabelsFixture : public ::testing::Test
{
protected:
    MySinglePic *add(Instant date)
    {
        MySinglePic *pic = folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("p.jpg"), &folder,
                                                                         SpTypeExifOriginal, date));
        source.append(pic);
        return pic;
    }
    MySingleFolder folder{QStringLiteral("/trip"), false};
    QList<MySinglePic *> source;
    TimelineLabels labels{utc};
};

TEST_F(LabelsFixture, LabelsNameTodayYesterdayTomorrowAndFollowTheMode)
{
    add(Instant::fromUtc(2026, 11, 23, 10));
    add(Instant::fromUtc(2026, 11, 23, 10, 30)); // same hour: no label
    add(Instant::fromUtc(2026, 11, 23, 11));     // new hour: time only
    add(Instant::fromUtc(2026, 11, 24, 8));
    add(Instant::fromUtc(2026, 11, 25, 12));
    add(Instant::fromUtc(2026, 11, 27, 12));
    const QList<TimelineLabel> days = labels.addDateTimeLayers(source, {0, 6}, DateDisplayMode::Days, today);
    ASSERT_EQ(days.size(), 5);
    EXPECT_EQ(days[0].index, 0);
    EXPECT_EQ(days[0].dateText, QStringLiteral("Yesterday"));
    EXPECT_FALSE(days[0].timeText.isEmpty());
    EXPECT_EQ(days[1].index, 2);
    EXPECT_TRUE(days[1].dateText.isEmpty());
    EXPECT_FALSE(days[1].timeText.isEmpty());
    EXPECT_EQ(days[2].dateText, QStringLiteral("Today"));
    EXPECT_EQ(days[3].dateText, QStringLiteral("Tomorrow"));
    EXPECT_EQ(days[4].dateText, labels.formatted(Instant::fromUtc(2026, 11, 27, 12), 3));

    // The first item of a range always has its label (the sticky one).
    const QList<TimelineLabel> fromSecond = labels.addDateTimeLayers(source, {1, 2}, DateDisplayMode::Days, today);
    ASSERT_EQ(fromSecond.size(), 2);
    EXPECT_EQ(fromSecond[0].index, 1);

    // In hours mode a date label stands where the hour changes, in the time format.
    const QList<TimelineLabel> hours = labels.addDateTimeLayers(source, {0, 3}, DateDisplayMode::Hours, today);
    ASSERT_EQ(hours.size(), 2);
    EXPECT_EQ(hours[1].index, 2);
    EXPECT_EQ(hours[1].dateText, labels.formatted(Instant::fromUtc(2026, 11, 23, 11), 4));
    EXPECT_TRUE(hours[1].timeText.isEmpty());

    // Date chapters begin where a date label of the mode stands, wherever the range starts.
    EXPECT_EQ(labels.dateChapterFrom(source, 1, DateDisplayMode::Days, 1), 3);
    EXPECT_EQ(labels.dateChapterFrom(source, 3, DateDisplayMode::Days, -1), 0);
    EXPECT_EQ(labels.dateChapterFrom(source, 1, DateDisplayMode::Hours, 1), 2);
    EXPECT_EQ(labels.dateChapterFrom(source, 5, DateDisplayMode::Days, 1), -1);
}

TEST_F(LabelsFixture, CalendarMarks)
{
    MySinglePic *a = add(Instant::fromUtc(2025, 12, 31, 23));
    MySinglePic *b = add(Instant::fromUtc(2026, 1, 1, 1));   // new year
    MySinglePic *c = add(Instant::fromUtc(2026, 2, 1, 1));   // new month
    MySinglePic *d = add(Instant::fromUtc(2026, 2, 2, 1));   // new ISO week, new day
    MySinglePic *e = add(Instant::fromUtc(2026, 2, 2, 3));   // new hour
    EXPECT_EQ(labels.gapPercent(*a, *b, DateDisplayMode::Years), 90);
    EXPECT_EQ(labels.gapPercent(*b, *c, DateDisplayMode::Years), 50);
    EXPECT_EQ(labels.gapPercent(*c, *d, DateDisplayMode::Weeks), 25);
    EXPECT_EQ(labels.gapPercent(*c, *d, DateDisplayMode::Days), 5);
    EXPECT_EQ(labels.gapPercent(*d, *e, DateDisplayMode::Days), 0);
    EXPECT_EQ(labels.gapPercent(*d, *e, DateDisplayMode::Hours), 1);
    EXPECT_EQ(TimelineLabels::gapMarkHeight(90, 200, 26), 180 + 26);
    EXPECT_EQ(TimelineLabels::gapMarkHeight(25, 200, 26), 26);
    EXPECT_EQ(TimelineLabels::gapMarkHeight(5, 200, 26), 10);

    // A folder whose dates are ignored has neither marks nor dated labels.
    folder.modifyImportBecauseOfCommand = 3;
    EXPECT_EQ(labels.gapPercent(*a, *b, DateDisplayMode::Years), 0);
    const QList<TimelineLabel> numbered = labels.addDateTimeLayers(source, {0, 5}, DateDisplayMode::Years, today);
    ASSERT_EQ(numbered.size(), 1);
    EXPECT_EQ(numbered[0].dateText, QStringLiteral("# 1"));
}

} // namespace
