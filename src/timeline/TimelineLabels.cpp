#include "timeline/TimelineLabels.h"

#include "core/DateDisplay.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

#include <cmath>

namespace orv {

namespace {

struct Components
{
    int year, month, week, day, hour, minute, second;
    qint64 dayNumber; // days since the epoch of the local calendar day
};

Components componentsOf(Instant date, const TimeZone &zone)
{
    const Instant::Civil c = zone.localCivil(date);
    const QDate qdate(c.year, c.month, c.day);
    return {c.year,   c.month,  qdate.weekNumber(), c.day, c.hour,
            c.minute, c.second, Instant::daysFromCivil(c.year, c.month, c.day)};
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
                                                       DateDisplayMode mode, Instant today, bool localeIsEnglish,
                                                       qsizetype labelSpacing) const
{
    QList<TimelineLabel> labels;
    const qsizetype end = std::min(range.end(), source.size());
    if (range.first >= end)
        return labels;
    const qint64 todayNumber = componentsOf(today, m_zone).dayNumber;
    const int format = int(mode) - 1;
    const bool timeRow = mode < DateDisplayMode::Hours;
    const int finestRank = mode == DateDisplayMode::Minutes ? 5 : 4;
    // A label's fate depends on the items within a few spacings of it: enough of them around
    // the range that the labels inside are those of the whole strip.
    const qsizetype spacing = std::max<qsizetype>(1, labelSpacing);
    const qsizetype margin = 2 * spacing * (finestRank + 2);
    const qsizetype from = std::max<qsizetype>(0, range.first - margin);
    const QList<bool> shown =
        labelledByDensity(source, from, std::min(source.size(), end + margin), finestRank, spacing);
    for (qsizetype i = range.first; i < end; ++i) {
        const MySinglePic &pic = *source.at(i);
        const bool first = i == range.first;
        if (ignoresDates(pic)) {
            if (first || (i + 1) % 50 == 0)
                labels.append({i, QStringLiteral("# %1").arg(i + 1), QStringLiteral("# %1").arg(i + 1), {}});
            continue;
        }
        const OptionalDate date = pic.tempTimeDuringLiveModCompleted();
        if (!date || (!first && !shown.at(i - from)))
            continue;
        // Below hours the date stands where the day changed; finer changes show their time.
        const bool dateLabel = !timeRow || first || changeRank(source, i) <= 2;
        TimelineLabel label{i, {}, {}, {}};
        if (dateLabel) {
            label.dateText = formatted(*date, format);
            label.shortDateText = formatted(*date, format, true);
            if (timeRow) {
                const QString word =
                    relativeDayWord(componentsOf(*date, m_zone).dayNumber - todayNumber, localeIsEnglish);
                if (!word.isEmpty())
                    label.dateText = label.shortDateText = word;
            }
        }
        if (timeRow)
            label.timeText = formatted(*date, 4);
        labels.append(label);
    }
    return labels;
}

std::optional<TimelineLabels::RankedDate> TimelineLabels::rankedDateOf(const MySinglePic &pic) const
{
    const OptionalDate date = pic.tempTimeDuringLiveModCompleted();
    if (!date || ignoresDates(pic))
        return std::nullopt;
    const Components c = componentsOf(*date, m_zone);
    return RankedDate{c.year, c.month, c.dayNumber, c.hour, c.minute, c.second};
}

int TimelineLabels::rankBetween(const std::optional<RankedDate> &left, const std::optional<RankedDate> &right)
{
    if (!right)
        return noChange;
    if (!left)
        return 0;
    const int parts[][2] = {{left->year, right->year},
                            {left->month, right->month},
                            {int(left->dayNumber), int(right->dayNumber)},
                            {left->hour, right->hour},
                            {left->minute, right->minute},
                            {left->second, right->second}};
    for (int rank = 0; rank < noChange; ++rank)
        if (parts[rank][0] != parts[rank][1])
            return rank;
    return noChange;
}

int TimelineLabels::changeRank(const QList<MySinglePic *> &source, qsizetype i) const
{
    return rankBetween(i > 0 ? rankedDateOf(*source.at(i - 1)) : std::nullopt, rankedDateOf(*source.at(i)));
}

QList<bool> TimelineLabels::labelledByDensity(const QList<MySinglePic *> &source, qsizetype from, qsizetype to,
                                              int finestRank, qsizetype spacing) const
{
    const qsizetype count = std::max<qsizetype>(0, to - from);
    QList<int> ranks(count);
    std::optional<RankedDate> previous = from > 0 ? rankedDateOf(*source.at(from - 1)) : std::nullopt;
    for (qsizetype k = 0; k < count; ++k) {
        const std::optional<RankedDate> current = rankedDateOf(*source.at(from + k));
        const int rank = rankBetween(previous, current);
        ranks[k] = rank <= finestRank ? rank : int(noChange);
        previous = current;
    }
    QList<int> shownRank(count, noChange);
    const auto near = [&](qsizetype k, const auto &test) {
        for (qsizetype j = std::max<qsizetype>(0, k - spacing + 1); j < std::min(count, k + spacing); ++j)
            if (j != k && test(j))
                return true;
        return false;
    };
    for (int rank = 0; rank <= finestRank; ++rank) {
        for (qsizetype k = 0; k < count; ++k) {
            if (ranks.at(k) != rank || near(k, [&](qsizetype j) { return shownRank.at(j) < rank; }))
                continue;
            const bool alone = !near(k, [&](qsizetype j) { return ranks.at(j) <= rank; });
            // Crowded: the first such change in the first half of its stretch of twice the
            // spacing, counted from the strip's start so that it does not move with the range.
            const qsizetype index = from + k;
            const qsizetype stretch = index - index % (2 * spacing);
            bool leads = index < stretch + spacing;
            for (qsizetype j = std::max(stretch, from); leads && j < index; ++j)
                leads = ranks.at(j - from) > rank;
            if (alone || leads)
                shownRank[k] = rank;
        }
    }
    QList<bool> shown(count);
    for (qsizetype k = 0; k < count; ++k)
        shown[k] = shownRank.at(k) != noChange;
    return shown;
}

TimelineLabels::LabelKinds TimelineLabels::labelKindsAt(const QList<MySinglePic *> &source, qsizetype i,
                                                       DateDisplayMode mode) const
{
    const int rank = changeRank(source, i);
    const int dateRank = mode < DateDisplayMode::Hours ? 2 : (mode == DateDisplayMode::Hours ? 3 : 4);
    return {rank <= dateRank, mode < DateDisplayMode::Hours && rank <= 3};
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

QString TimelineLabels::tooltipText(const MySinglePic &pic) const
{
    const auto translated = [](const char *text) {
        return QCoreApplication::translate("TimelineLabels", text);
    };
    QStringList lines{pic.bundleDependentImage
                          ? QStringLiteral("%1 + %2").arg(pic.spName, QFileInfo(pic.bundleDependentImage->spName).suffix())
                          : pic.spName};
    const QString camera = MakerModel::WA_displayOptimizedModelMake(pic.pivMakeModel);
    if (camera != QLatin1String("-"))
        lines.append(camera);
    if (const MySingleFolder *folder = pic.spSingleFolder ? MySingleFolder::of(pic) : nullptr)
        lines.append(
            translated(QT_TRANSLATE_NOOP("TimelineLabels", "Folder: %1")).arg(folder->sfFolder));
    const OptionalDate now = pic.spDateTimeModified();
    lines.append(DateDisplay::localDateTime(now, m_zone));
    const OptionalDate read = pic.spDateTimeOriginal;
    if (now && read && !now->isSentinel() && !read->isSentinel()
        && now->secondsSinceEpoch() != read->secondsSinceEpoch()) {
        lines.append(
            translated(QT_TRANSLATE_NOOP("TimelineLabels", "Offset: %1"))
                .arg(DateDisplay::offset(now->secondsSinceEpoch() - read->secondsSinceEpoch())));
        lines.append(translated(QT_TRANSLATE_NOOP("TimelineLabels", "In the file: %1"))
                         .arg(DateDisplay::localDateTime(read, m_zone)));
    }
    return lines.join(QLatin1Char('\n'));
}

double TimelineLabels::gapMarkHeight(int percent, double stripHeight, double thumbMargin)
{
    if (percent == 25)
        return thumbMargin;
    const double height = std::round(percent / 100.0 * stripHeight);
    return percent > 25 ? height + thumbMargin : height;
}

} // namespace orv
