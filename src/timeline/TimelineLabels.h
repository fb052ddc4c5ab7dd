#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"
#include "timeline/TimelineGeometry.h"

#include <QList>
#include <QString>

#include <optional>

namespace orv {

class MySinglePic;

// How much of a date the strip's labels show, from the widest span (1: day, month and year) to
// the narrowest (6: no dates, minutes and seconds). The label format is mode - 1.
enum class DateDisplayMode : int { Years = 1, Months = 2, Weeks = 3, Days = 4, Hours = 5, Minutes = 6 };

// The sidebar's date filter: which components it already narrows to.
struct DateFilterComponents
{
    bool year = false, month = false, day = false;
};

// The texts of one thumbnail's labels; an empty text is no label.
struct TimelineLabel
{
    qsizetype index = 0;
    QString dateText;
    QString shortDateText; // for a room too narrow for dateText
    QString timeText;
};

// Labels, calendar marks and their formats: what the strip writes into the gaps between
// thumbnails. Dates are read in the zone given (the system zone in the window), and "today"
// comes from the caller so that the rules can be tested on any day. Works on the items of a
// visible range only.
class TimelineLabels
{
public:
    explicit TimelineLabels(TimeZone zone = TimeZone::systemZone());

    static DateDisplayMode dateDisplayModeComparing(const OptionalDate &first, const OptionalDate &last,
                                                    Instant today, const TimeZone &zone,
                                                    DateFilterComponents filter = {}, qsizetype count = 2);
    // The mode of a whole full source: its first and last item against today.
    DateDisplayMode dateDisplayModeFull(const QList<MySinglePic *> &sourceFull, Instant today,
                                        DateFilterComponents filter = {}) const;

    // The labels of the range, walking each item against its left neighbour. The first item of
    // the range always has one (it is the sticky label). localeIsEnglish: other languages also
    // have words for two days ago and in two days.
    //
    // Labels thin out by density: labelSpacing is how many items a label needs to stand free
    // (its width over the stride). Every change of the date down to the minute (the second in
    // mode 6) may carry a label; the coarser change wins where two would crowd, and in a run of
    // changes closer than the spacing one label stands in each stretch of twice the spacing. A
    // label depends only on the items around it, so labels stay put while the strip scrolls.
    QList<TimelineLabel> addDateTimeLayers(const QList<MySinglePic *> &source, ThumbRange range, DateDisplayMode mode,
                                           Instant today, bool localeIsEnglish = true,
                                           qsizetype labelSpacing = 1) const;

    // The first item of the next (direction 1) or previous (-1) date chapter from index: the
    // next item with a date label of its own in the mode; -1 when there is none.
    qsizetype dateChapterFrom(const QList<MySinglePic *> &source, qsizetype index, DateDisplayMode mode,
                              int direction) const;

    // The height, in per cent of the strip, of the calendar mark between item index - 1 and
    // item index, 0 for none. Year 90, month 50, week 25 (modes up to 3), day 5, hour 1 (modes
    // 5 and 6); never beside a folder whose dates are ignored.
    int gapPercent(const MySinglePic &left, const MySinglePic &right, DateDisplayMode mode) const;
    // That percentage as a length on a strip of the height given, with its margin.
    static double gapMarkHeight(int percent, double stripHeight, double thumbMargin);

    // Text of a date in a label format 0..5; short: the narrow forms.
    QString formatted(Instant date, int format, bool shortForm = false) const;
    // What a thumbnail's tooltip says: the name, the camera, the folder, the date in force with
    // its zone, and the shift waiting to be saved with the date the file holds.
    QString tooltipText(const MySinglePic &pic) const;
    // Font size of the labels for a thumbnail size.
    static int labelPointSize(double thumbSize) { return thumbSize < 50 ? 10 : (thumbSize < 95 ? 12 : 14); }

private:
    // Which labels item i has against its left neighbour, before the range's first item is
    // forced to one.
    struct LabelKinds
    {
        bool date = false, time = false;
    };
    LabelKinds labelKindsAt(const QList<MySinglePic *> &source, qsizetype i, DateDisplayMode mode) const;
    // The coarsest part of the date that differs from the left neighbour's: 0 year, 1 month,
    // 2 day, 3 hour, 4 minute, 5 second; noChange for the same second, no date or ignored dates.
    enum : int { noChange = 6 };
    struct RankedDate
    {
        int year, month;
        qint64 dayNumber;
        int hour, minute, second;
    };
    std::optional<RankedDate> rankedDateOf(const MySinglePic &pic) const;
    static int rankBetween(const std::optional<RankedDate> &left, const std::optional<RankedDate> &right);
    int changeRank(const QList<MySinglePic *> &source, qsizetype i) const;
    // Which of the items in [from, to) carry a label by the density rule.
    QList<bool> labelledByDensity(const QList<MySinglePic *> &source, qsizetype from, qsizetype to, int finestRank,
                                  qsizetype spacing) const;

    TimeZone m_zone;
};

} // namespace orv
