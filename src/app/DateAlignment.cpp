#include "app/DateAlignment.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"

#include <QCollator>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

namespace orv::DateAlignment {

namespace {

// The date the timeline shows the item at, in whole seconds.
double flooredDate(const MySinglePic *pic)
{
    return pic->spDateTimeModified_sort().value_or(Instant()).wholeSeconds();
}

PicDifference movedTo(MySinglePic *pic, double target)
{
    return {pic, target - flooredDate(pic)};
}

struct OtherDate
{
    AlignTag tag;
    OptionalDate MySinglePic::*value;
    // The OLD form of the same slot, for a NEW form.
    std::optional<AlignTag> oldForm;
};

constexpr std::array<OtherDate, 8> otherDates = {{
    {AlignTag::ExifDigitizedOld, &MySinglePic::exifDateTimeDigitizedOLD, std::nullopt},
    {AlignTag::ExifDigitizedNew, &MySinglePic::exifDateTimeDigitizedNEW, AlignTag::ExifDigitizedOld},
    {AlignTag::TiffDateTimeOld, &MySinglePic::tiffDateTimeOLD, std::nullopt},
    {AlignTag::TiffDateTimeNew, &MySinglePic::tiffDateTimeNEW, AlignTag::TiffDateTimeOld},
    {AlignTag::FileCreationOld, &MySinglePic::fileCreationDateOLD, std::nullopt},
    {AlignTag::FileCreationNew, &MySinglePic::fileCreationDateNEW, AlignTag::FileCreationOld},
    {AlignTag::FileModificationOld, &MySinglePic::fileModificationDateOLD, std::nullopt},
    {AlignTag::FileModificationNew, &MySinglePic::fileModificationDateNEW, AlignTag::FileModificationOld},
}};

const OtherDate &otherDate(AlignTag tag)
{
    return *std::find_if(otherDates.begin(), otherDates.end(), [tag](const OtherDate &d) { return d.tag == tag; });
}

bool isCleanDate(const OptionalDate &date)
{
    return date && !date->isSentinel();
}

// The item the timeline places, whose NEW values a calculation refreshes. A group's sort item is
// one of its own members, as changeable as the item itself.
MySinglePic &sortPicOf(MySinglePic *pic)
{
    return const_cast<MySinglePic &>(*pic->sortPic());
}

void calculateNewDates(MySinglePic &pic, const NewDateOptions &options)
{
    NewDateContext context;
    context.preferences = options;
    calculateNewDatesWithCachedPrefSettings(pic, &options, context);
}

} // namespace

QList<MySinglePic *> sortedThumbsArray(QList<MySinglePic *> pics)
{
    std::stable_sort(pics.begin(), pics.end(), [](const MySinglePic *a, const MySinglePic *b) {
        return a->spDateTimeModified_sort() < b->spDateTimeModified_sort();
    });
    return pics;
}

QList<PicDifference> alignByMatchingGaps(const QList<MySinglePic *> &sorted)
{
    const qsizetype n = sorted.size();
    if (n < 3)
        return {};
    const double first = flooredDate(sorted.first());
    const double step = (flooredDate(sorted.last()) - first) / double(n - 1);
    QList<PicDifference> list{{sorted.first(), 0.0}};
    for (qsizetype i = 1; i < n - 1; ++i)
        list.append(movedTo(sorted[i], std::round(first + double(i) * step)));
    list.append({sorted.last(), 0.0});
    return list;
}

QList<PicDifference> alignByMinimizingGaps(const QList<MySinglePic *> &sorted, const MySinglePic *main)
{
    if (sorted.isEmpty())
        return {};
    const qsizetype p = std::max<qsizetype>(sorted.indexOf(main), 0);
    const double m = flooredDate(sorted[p]);
    QList<PicDifference> list{{sorted[p], 0.0}};
    for (qsizetype i = p + 1; i < sorted.size(); ++i)
        list.append(movedTo(sorted[i], m + double(i - p)));
    for (qsizetype i = p - 1; i >= 0; --i)
        list.append(movedTo(sorted[i], m - double(p - i)));
    return list;
}

QList<PicDifference> alignByFilename(const QList<MySinglePic *> &sorted)
{
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    QList<MySinglePic *> byName = sorted;
    std::stable_sort(byName.begin(), byName.end(), [&collator](const MySinglePic *a, const MySinglePic *b) {
        return collator.compare(a->spName, b->spName) < 0;
    });
    if (byName == sorted)
        return {};
    QList<PicDifference> list;
    for (qsizetype i = 0; i < byName.size(); ++i)
        list.append(movedTo(byName[i], flooredDate(sorted[i])));
    return list;
}

QList<PicDifference> alignByReversing(const QList<MySinglePic *> &sorted)
{
    const qsizetype n = sorted.size();
    if (n < 2)
        return {};
    QList<PicDifference> list;
    for (qsizetype i = 0; i < n; ++i)
        list.append(movedTo(sorted[i], flooredDate(sorted[n - 1 - i])));
    return list;
}

QList<PicDifference> alignByReversingAlt(const QList<MySinglePic *> &sorted)
{
    const qsizetype n = sorted.size();
    if (n < 2)
        return {};
    const auto exact = [](const MySinglePic *pic) {
        return pic->spDateTimeModified_sort().value_or(Instant()).secondsSinceEpoch();
    };
    QList<double> reversedGaps;
    for (qsizetype i = n - 1; i > 0; --i)
        reversedGaps.append(exact(sorted[i]) - exact(sorted[i - 1]));
    double t = exact(sorted.first());
    QList<PicDifference> list;
    for (qsizetype i = n - 1; i >= 0; --i) {
        if (i < n - 1)
            t += reversedGaps[n - 2 - i];
        list.append(movedTo(sorted[i], std::floor(t)));
    }
    return list;
}

QList<PicDifference> alignByCopyingOtherFileDate(const QList<MySinglePic *> &selected, AlignTag source,
                                                 const NewDateOptions &options)
{
    if (!isCopyOtherFileDate(source))
        return {};
    const OtherDate &copied = otherDate(source);
    QList<PicDifference> list;
    for (MySinglePic *pic : selected) {
        MySinglePic &sortPic = sortPicOf(pic);
        calculateNewDates(sortPic, options);
        const OptionalDate value = sortPic.*copied.value;
        const OptionalDate current = sortPic.spDateTimeModified();
        if (!isCleanDate(value) || !current)
            continue;
        list.append({pic, value->wholeSeconds() - current->wholeSeconds()});
    }
    return list;
}

bool areThereIdenticalTimesIn(const QList<MySinglePic *> &sorted)
{
    return std::adjacent_find(sorted.cbegin(), sorted.cend(), [](const MySinglePic *a, const MySinglePic *b) {
               return flooredDate(a) == flooredDate(b);
           }) != sorted.cend();
}

QList<AlignTag> validateForAlignByCopyingOtherFileDate(const QList<MySinglePic *> &selected,
                                                       const NewDateOptions &options)
{
    QList<AlignTag> found;
    const auto newFormsFound = [&found] {
        return std::count_if(otherDates.cbegin(), otherDates.cend(), [&found](const OtherDate &d) {
                   return d.oldForm && found.contains(d.tag);
               }) == 4;
    };
    for (MySinglePic *pic : selected) {
        if (found.size() == qsizetype(otherDates.size()))
            break;
        MySinglePic &sortPic = sortPicOf(pic);
        if (!newFormsFound())
            calculateNewDates(sortPic, options);
        const OptionalDate original = sortPic.spDateTimeOriginal;
        const OptionalDate current = sortPic.spDateTimeModified();
        const auto isOffered = [&](const OptionalDate &value) {
            return isCleanDate(value) && (!original || value->wholeSeconds() != original->wholeSeconds())
                   && (!current || value->wholeSeconds() != current->wholeSeconds());
        };
        for (const OtherDate &date : otherDates) {
            const OptionalDate value = sortPic.*date.value;
            bool offered = isOffered(value);
            if (date.oldForm) {
                const OptionalDate old = sortPic.*otherDate(*date.oldForm).value;
                offered = offered && isOffered(old) && value->wholeSeconds() != old->wholeSeconds();
            }
            if (offered && !found.contains(date.tag))
                found.append(date.tag);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

QString whyNotAlign(AlignTag tag, const QList<MySinglePic *> &selection, const MySinglePic *main,
                    bool changesBlocked)
{
    const auto text = [](const char *reason) {
        return QCoreApplication::translate("DateAlignment", reason);
    };
    if (changesBlocked)
        return text(QT_TRANSLATE_NOOP("DateAlignment", "Dates cannot change while a save runs."));
    if (selection.isEmpty())
        return text(QT_TRANSLATE_NOOP(
            "DateAlignment", "Select the items to align, on the timeline or in the list."));
    const auto folderOf = [](const MySinglePic *pic) { return pic->spSingleFolder; };
    if (std::any_of(selection.cbegin(), selection.cend(), [&](const MySinglePic *pic) {
            return !folderOf(pic) || folderOf(pic)->isEXIFIgnored();
        }))
        return text(QT_TRANSLATE_NOOP(
            "DateAlignment",
            "Items of a slideshow-only folder have no dates of their own to align."));
    if (std::any_of(selection.cbegin(), selection.cend(), [&](const MySinglePic *pic) {
            return folderOf(pic)->sfEditMode != FolderFacts::EditSeparately;
        }))
        return text(QT_TRANSLATE_NOOP(
            "DateAlignment",
            "Aligning gives each item a date of its own: turn on Edit > Change Items One by One "
            "for these folders first."));
    if (tag == AlignTag::MatchingGaps && selection.size() < 3)
        return text(QT_TRANSLATE_NOOP("DateAlignment",
                                      "Matching gaps needs three or more selected items."));
    if (int(tag) < int(AlignTag::ReversingIntervals) && selection.size() < 2)
        return text(
            QT_TRANSLATE_NOOP("DateAlignment", "This rule needs two or more selected items."));
    if (int(tag) >= int(AlignTag::ReversingIntervals) && !(main && main->takesEdits()))
        return text(
            QT_TRANSLATE_NOOP("DateAlignment", "The date of the selected item cannot be changed."));
    return {};
}

QString whyAlignIsOff(const QList<MySinglePic *> &selection, const MySinglePic *main,
                      bool changesBlocked)
{
    // The copying rules share the last plain rule's condition.
    QString reason;
    for (int tag = int(AlignTag::MatchingGaps); tag <= int(AlignTag::ReversingIntervals); ++tag) {
        reason = whyNotAlign(AlignTag(tag), selection, main, changesBlocked);
        if (reason.isEmpty())
            return {};
    }
    return reason;
}

QList<PicDifference> differencesFor(AlignTag tag, const QList<MySinglePic *> &sorted, const MySinglePic *main,
                                    const NewDateOptions &options)
{
    switch (tag) {
    case AlignTag::MatchingGaps:
        return alignByMatchingGaps(sorted);
    case AlignTag::MinimizingGaps:
        return alignByMinimizingGaps(sorted, main);
    case AlignTag::Filename:
        return alignByFilename(sorted);
    case AlignTag::Reversing:
        return alignByReversing(sorted);
    case AlignTag::ReversingIntervals:
        return alignByReversingAlt(sorted);
    default:
        return alignByCopyingOtherFileDate(sorted, tag, options);
    }
}

} // namespace orv::DateAlignment
