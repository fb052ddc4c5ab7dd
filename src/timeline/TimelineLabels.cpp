#include "timeline/TimelineLabels.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QLocale>

#include <cmath>

namespace orv {

namespace {

struct Components
{
    int year, month, week, day, hour, minute;
    qint64 dayNumber; // days since the epoch of the local calendar day
};

Components componentsOf(Instant date, const TimeZone &zone)
{
    const Instant::Civil c = zone.localCivil(date);
    const QDate qdate(c.year, c.month, c.day);
    return {c.year, c.month, qdate.weekNumber(), c.day, c.hour, c.minute, Instant::daysFromCivil(c.year, c.month, c.day)};
}

bool ignoresDates(const MySinglePic &pic)
{
    return pic.spSingleFolder && pic.spSingleFolder->isEXIFIgnored();
}

QString relativeDayWord(qint64 daysFromToday, bool localeIsEnglish)
{
    switch (daysFromToday) {
    case 0: return QCoreApplication::translate("timeLabels_today", "Today");
    case -1: return QCoreApplication::translate("timeLabels_1Ago", "Yesterday");
    case 1: return QCoreApplication::translate("timeLabels_in1", "Tomorrow");
    case -2: return localeIsEnglish ? QString() : QCoreApplication::translate("timeLabels_2Ago", "2 days ago");
    case 2: return localeIsEnglish ? QString() : QCoreApplication::translate("timeLabels_in2", "In 2 days");
    default: return {};
    }
}

} // namespace

TimelineLabels::TimelineLabels(TimeZone zone) : m_zone(std::move(zone)) {}

DateDisplayMode TimelineLabels::dateDisplayModeComparing(const OptionalDate &first, const OptionalDate &last,
                                                         Instant today, const TimeZone &zone,
                                                         DateFilterComponents filter, qsizetype count)
{
    if (!first || !last)
        return DateDisplayMode::Minutes;
    if (count < 2)
        return DateDisplayMode::Years;
    const Components a = componentsOf(*first, zone);
    const Components b = componentsOf(*last, zone);
    const Components t = componentsOf(today, zone);
    if (!filter.year && (a.year != b.year || a.year != t.year))
        return DateDisplayMode::Years;
    if (!filter.month && (a.month != b.month || a.month != t.month))
        return DateDisplayMode::Months;
    if ((a.dayNumber == b.dayNumber && a.dayNumber == t.dayNumber) || filter.day)
        return DateDisplayMode::Hours;
    if (a.week != b.week || a.week != t.week || b.dayNumber > t.dayNumber)
        return DateDisplayMode::Weeks;
    return DateDisplayMode::Days;
}

DateDisplayMode TimelineLabels::dateDisplayModeFull(const QList<MySinglePic *> &sourceFull, Instant today,
                                                    DateFilterComponents filter) const
{
    if (sourceFull.isEmpty())
        return DateDisplayMode::Minutes;
    return dateDisplayModeComparing(sourceFull.first()->spDateTimeModified_sort(),
                                    sourceFull.last()->spDateTimeModified_sort(), today, m_zone, filter,
                                    sourceFull.size());
}

QString TimelineLabels::formatted(Instant date, int format, bool shortForm) const
{
    const Instant::Civil c = m_zone.localCivil(date);
    const QDateTime local(QDate(c.year, c.month, c.day), QTime(c.hour, c.minute, c.second), QTimeZone::utc());
    const QLocale locale;
    static const char *const longForms[] = {"d MMM yy", "ddd d MMM", "ddd d", "dddd"};
    static const char *const shortForms[] = {"d.M.yy", "ddd d.M", "ddd d", "ddd"};
    if (format >= 0 && format < 4)
        return locale.toString(local, QString::fromLatin1(shortForm ? shortForms[format] : longForms[format]));
    if (format == 4)
        return locale.toString(local.time(), QLocale::ShortFormat);
    return locale.toString(local.time(), QStringLiteral("mm:ss"));
}

QList<TimelineLabel> TimelineLabels::addDateTimeLayers(const QList<MySinglePic *> &source, ThumbRange range,
                                                       DateDisplayMode mode, Instant today, bool localeIsEnglish) const
{
    QList<TimelineLabel> labels;
    const qsizetype end = std::min(range.end(), source.size());
    const qint64 todayNumber = componentsOf(today, m_zone).dayNumber;
    const int format = int(mode) - 1;
    for (qsizetype i = range.first; i < end; ++i) {
        const MySinglePic &pic = *source.at(i);
        const bool first = i == range.first;
        if (ignoresDates(pic)) {
            if (first || (i + 1) % 50 == 0)
                labels.append({i, QStringLiteral("# %1").arg(i + 1), QStringLiteral("# %1").arg(i + 1), {}});
            continue;
        }
        const OptionalDate date = pic.tempTimeDuringLiveModCompleted();
        if (!date)
            continue;
        const Components now = componentsOf(*date, m_zone);
        const LabelKinds kinds = labelKindsAt(source, i, mode);
        const bool dateLabel = kinds.date || first;
        const bool timeLabel = kinds.time || (dateLabel && mode < DateDisplayMode::Hours);
        if (!dateLabel && !timeLabel)
            continue;
        TimelineLabel label{i, {}, {}, {}};
        if (dateLabel) {
            label.dateText = formatted(*date, format);
            label.shortDateText = formatted(*date, format, true);
            if (mode < DateDisplayMode::Hours) {
                const QString word = relativeDayWord(now.dayNumber - todayNumber, localeIsEnglish);
                if (!word.isEmpty())
                    label.dateText = label.shortDateText = word;
            }
        }
        if (timeLabel)
            label.timeText = formatted(*date, 4);
        labels.append(label);
    }
    return labels;
}

TimelineLabels::LabelKinds TimelineLabels::labelKindsAt(const QList<MySinglePic *> &source, qsizetype i,
                                                       DateDisplayMode mode) const
{
    const MySinglePic &pic = *source.at(i);
    const OptionalDate date = pic.tempTimeDuringLiveModCompleted();
    if (!date || ignoresDates(pic))
        return {};
    const Components now = componentsOf(*date, m_zone);
    const MySinglePic *left = i > 0 ? source.at(i - 1) : nullptr;
    const OptionalDate leftDate = left ? left->tempTimeDuringLiveModCompleted() : std::nullopt;
    const std::optional<Components> before =
        leftDate && !ignoresDates(*left) ? std::optional(componentsOf(*leftDate, m_zone)) : std::nullopt;
    const bool dayDiffers = !before || before->dayNumber != now.dayNumber;
    const bool hourDiffers = dayDiffers || before->hour != now.hour;
    const bool minuteDiffers = hourDiffers || before->minute != now.minute;
    LabelKinds kinds;
    if (mode < DateDisplayMode::Hours)
        kinds.date = dayDiffers;
    else if (mode == DateDisplayMode::Hours)
        kinds.date = hourDiffers;
    else
        kinds.date = minuteDiffers;
    kinds.time = mode < DateDisplayMode::Hours && (hourDiffers || kinds.date);
    return kinds;
}

qsizetype TimelineLabels::dateChapterFrom(const QList<MySinglePic *> &source, qsizetype index, DateDisplayMode mode,
                                          int direction) const
{
    for (qsizetype i = index + direction; i >= 0 && i < source.size(); i += direction)
        if (labelKindsAt(source, i, mode).date)
            return i;
    return -1;
}

int TimelineLabels::gapPercent(const MySinglePic &left, const MySinglePic &right, DateDisplayMode mode) const
{
    if (ignoresDates(left) || ignoresDates(right))
        return 0;
    const OptionalDate a = left.tempTimeDuringLiveModCompleted();
    const OptionalDate b = right.tempTimeDuringLiveModCompleted();
    if (!a || !b)
        return 0;
    const Components x = componentsOf(*a, m_zone);
    const Components y = componentsOf(*b, m_zone);
    if (x.year != y.year)
        return 90;
    if (x.month != y.month)
        return 50;
    if (x.week != y.week && mode <= DateDisplayMode::Weeks)
        return 25;
    if (x.day != y.day)
        return 5;
    if (x.hour != y.hour && mode >= DateDisplayMode::Hours)
        return 1;
    return 0;
}

double TimelineLabels::gapMarkHeight(int percent, double stripHeight, double thumbMargin)
{
    if (percent == 25)
        return thumbMargin;
    const double height = std::round(percent / 100.0 * stripHeight);
    return percent > 25 ? height + thumbMargin : height;
}

} // namespace orv
