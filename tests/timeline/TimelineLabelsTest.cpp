// Date display modes, labels and calendar marks on crafted dates, read in UTC.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/TimelineLabels.h"

#include <gtest/gtest.h>

#include <algorithm>

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
    // With room for a label at every item, every change down to the minute has one.
    const QList<TimelineLabel> days = labels.addDateTimeLayers(source, {0, 6}, DateDisplayMode::Days, today);
    ASSERT_EQ(days.size(), 6);
    EXPECT_EQ(days[0].index, 0);
    EXPECT_EQ(days[0].dateText, QStringLiteral("Yesterday"));
    EXPECT_FALSE(days[0].timeText.isEmpty());
    EXPECT_EQ(days[1].index, 1);
    EXPECT_TRUE(days[1].dateText.isEmpty());
    EXPECT_EQ(days[1].timeText, labels.formatted(Instant::fromUtc(2026, 11, 23, 10, 30), 4));
    EXPECT_EQ(days[2].index, 2);
    EXPECT_TRUE(days[2].dateText.isEmpty());
    EXPECT_EQ(days[3].dateText, QStringLiteral("Today"));
    EXPECT_EQ(days[4].dateText, QStringLiteral("Tomorrow"));
    EXPECT_EQ(days[5].dateText, labels.formatted(Instant::fromUtc(2026, 11, 27, 12), 3));

    // The first item of a range always has its label (the sticky one).
    const QList<TimelineLabel> fromSecond = labels.addDateTimeLayers(source, {1, 2}, DateDisplayMode::Days, today);
    ASSERT_EQ(fromSecond.size(), 2);
    EXPECT_EQ(fromSecond[0].index, 1);

    // In hours mode a date label stands where the hour changes, in the time format.
    const QList<TimelineLabel> hours = labels.addDateTimeLayers(source, {0, 3}, DateDisplayMode::Hours, today);
    ASSERT_EQ(hours.size(), 3);
    EXPECT_EQ(hours[2].index, 2);
    EXPECT_EQ(hours[2].dateText, labels.formatted(Instant::fromUtc(2026, 11, 23, 11), 4));
    EXPECT_TRUE(hours[2].timeText.isEmpty());

    // Date chapters begin where a date label of the mode stands, wherever the range starts.
    EXPECT_EQ(labels.dateChapterFrom(source, 1, DateDisplayMode::Days, 1), 3);
    EXPECT_EQ(labels.dateChapterFrom(source, 3, DateDisplayMode::Days, -1), 0);
    EXPECT_EQ(labels.dateChapterFrom(source, 1, DateDisplayMode::Hours, 1), 2);
    EXPECT_EQ(labels.dateChapterFrom(source, 5, DateDisplayMode::Days, 1), -1);
}

TEST_F(LabelsFixture, LabelsThinOutByDensityAndStayPutWhileScrolling)
{
    // A busy day: a photo every 40 seconds for 300 photos, and the next morning after them.
    const Instant start = Instant::fromUtc(2026, 6, 10, 9);
    for (int i = 0; i < 300; ++i)
        add(start.addingSeconds(40.0 * i));
    for (int i = 0; i < 30; ++i)
        add(Instant::fromUtc(2026, 6, 11, 8).addingSeconds(40.0 * i));
    const qsizetype spacing = 5;
    const QList<TimelineLabel> all = labels.addDateTimeLayers(source, {0, source.size()}, DateDisplayMode::Years,
                                                              today, true, spacing);
    // Never closer than the spacing, yet one in every stretch of twice the spacing or so.
    for (qsizetype n = 1; n < all.size(); ++n)
        EXPECT_GE(all[n].index - all[n - 1].index, spacing) << all[n].index;
    EXPECT_GE(all.size(), source.size() / (2 * spacing) - 2);
    // The new day wins over the minutes around it and says its date.
    const auto morning = std::find_if(all.cbegin(), all.cend(), [](const TimelineLabel &l) { return l.index == 300; });
    ASSERT_NE(morning, all.cend());
    EXPECT_EQ(morning->dateText, labels.formatted(Instant::fromUtc(2026, 6, 11, 8), 0));
    EXPECT_TRUE(std::all_of(all.cbegin() + 1, all.cend(), [](const TimelineLabel &l) {
        return l.index == 300 ? !l.dateText.isEmpty() : l.dateText.isEmpty() && !l.timeText.isEmpty();
    }));

    // A scrolled range shows the same labels, bar its sticky first one.
    for (const qsizetype first : {37, 120, 290}) {
        const QList<TimelineLabel> part = labels.addDateTimeLayers(source, {first, 25}, DateDisplayMode::Years,
                                                                   today, true, spacing);
        QList<qsizetype> expected, shown;
        for (const TimelineLabel &label : all)
            if (label.index > first && label.index < first + 25)
                expected.append(label.index);
        for (qsizetype n = 1; n < part.size(); ++n)
            shown.append(part[n].index);
        EXPECT_EQ(shown, expected) << first;
        EXPECT_EQ(part[0].index, first);
    }
}

TEST_F(LabelsFixture, TooltipNamesTheItemItsCameraDateAndOffset)
{
    MySinglePic *pic = add(Instant::fromUtc(2026, 6, 10, 9, 15));
    pic->spName = QStringLiteral("IMG_0042.JPG");
    pic->pivMakeModel = QStringLiteral("Canon Canon EOS R6");
    const QString plain = labels.tooltipText(*pic);
    EXPECT_TRUE(plain.contains(QStringLiteral("IMG_0042.JPG")));
    EXPECT_TRUE(plain.contains(QStringLiteral("EOS R6")));
    EXPECT_TRUE(plain.contains(QStringLiteral("trip")));
    EXPECT_TRUE(plain.contains(QStringLiteral("2026-06-10 09:15:00 UTC")));
    EXPECT_FALSE(plain.contains(QStringLiteral("Offset")));

    folder.sfDateModificationsTimeInterval = 90061; // a day, an hour, a minute and a second
    const QString shifted = labels.tooltipText(*pic);
    EXPECT_TRUE(shifted.contains(QStringLiteral("2026-06-11 10:16:01 UTC")));
    EXPECT_TRUE(shifted.contains(QStringLiteral("+1 d 01:01:01")));
    EXPECT_TRUE(shifted.contains(QStringLiteral("2026-06-10 09:15:00 UTC")));
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
