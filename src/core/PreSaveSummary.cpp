#include "core/PreSaveSummary.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"
#include "core/PreSaveFindings.h"
#include "core/SaveSettings.h"
#include "core/StampEdits.h"

#include <QCoreApplication>

namespace orv {

namespace {

bool isPresent(const OptionalDate &date)
{
    return date && !date->isDistantPast();
}

bool isSameSecond(const OptionalDate &a, const OptionalDate &b)
{
    if (isPresent(a) != isPresent(b))
        return false;
    return !isPresent(a) || a->wholeSeconds() == b->wholeSeconds();
}

// How far the item's own date moves: the rule every stamp follows unless another applies.
std::optional<double> itemMove(const MySinglePic &pic)
{
    if (!isPresent(pic.spDateTimeOriginal) || !isPresent(pic.spDateTimeModified_tempFIX))
        return std::nullopt;
    return pic.spDateTimeModified_tempFIX->wholeSeconds() - pic.spDateTimeOriginal->wholeSeconds();
}

SavedDate::Rule stampRule(const MySinglePic &pic, const OptionalDate &oldDate, const OptionalDate &newDate)
{
    if (isSameSecond(oldDate, newDate))
        return SavedDate::Unchanged;
    if (!isPresent(oldDate))
        return SavedDate::Added;
    if (!isPresent(newDate) || newDate->isDistantFuture())
        return SavedDate::SetBySave;
    const std::optional<double> move = itemMove(pic);
    if (move && newDate->wholeSeconds() - oldDate->wholeSeconds() == *move)
        return SavedDate::MovesWithItem;
    if (isSameSecond(newDate, pic.exifDateTimeOriginalNEW))
        return SavedDate::FollowsCaptureDate;
    return SavedDate::SetBySave;
}

QStringList problemsOf(const MySinglePic *pic, const PreSaveErrors &errors, qsizetype &count)
{
    QStringList problems;
    for (auto it = errors.cbegin(); it != errors.cend(); ++it) {
        const bool concerns = it->contains(pic) || (pic->bundleDependentImage && it->contains(pic->bundleDependentImage));
        if (!concerns)
            continue;
        problems.append(describePreSaveKey(it.key()));
        count += it->count(pic) + (pic->bundleDependentImage ? it->count(pic->bundleDependentImage) : 0);
    }
    return problems;
}

} // namespace

bool SavedDate::changes() const
{
    return rule != Unchanged;
}

QString SavedDate::slotName() const
{
    static constexpr const char *names[] = {
        QT_TRANSLATE_NOOP("SavedDate", "Capture date"),  QT_TRANSLATE_NOOP("SavedDate", "Digitized date"),
        QT_TRANSLATE_NOOP("SavedDate", "Modify date"),   QT_TRANSLATE_NOOP("SavedDate", "GPS time (UTC)"),
        QT_TRANSLATE_NOOP("SavedDate", "File date"),
    };
    return QCoreApplication::translate("SavedDate", names[slot]);
}

QString SavedDate::ruleText() const
{
    switch (rule) {
    case Added:
        return QCoreApplication::translate("SavedDate", "added: the file had none");
    case FollowsCaptureDate:
        return QCoreApplication::translate("SavedDate", "was older than the new capture date, so it takes that date");
    case MovesWithClock:
        return QCoreApplication::translate("SavedDate", "moves by the same offset as the camera clock");
    case TakesCaptureDate:
        return QCoreApplication::translate("SavedDate", "takes the new capture date");
    case SetBySave:
        return slot == FileDate ? QCoreApplication::translate("SavedDate", "the file's own date is set by the save")
                                : QCoreApplication::translate("SavedDate", "set by the save's date rules");
    case MovesWithItem:
    case Unchanged:
        break;
    }
    return {};
}

PreSaveSummary::PreSaveSummary(const PreSaveReview &review)
{
    QList<PreSaveItem> clean;
    for (MySinglePic *pic : review.items) {
        PreSaveItem item{pic, {}, problemsOf(pic, review.errors, m_problemCount), {}};
        if (review.settings)
            for (const SavedDate &date : calculatedDatesOf(*pic, *review.settings))
                if (date.changes())
                    item.changes.append(date);
        if (review.settings && review.settings->writeRatingsToXMPOnSave)
            item.xmpRating = pic->groupXmpRatingToWrite();
        (item.problems.isEmpty() ? clean : m_items).append(item);
    }
    m_items.append(clean);
}

QList<SavedDate> PreSaveSummary::datesOf(MySinglePic &pic, const SaveSettings &settings)
{
    NewDateContext context;
    context.preferences = settings.options;
    calculateNewDatesWithCachedPrefSettings(pic, &settings.options, context);
    return calculatedDatesOf(pic, settings);
}

QList<SavedDate> PreSaveSummary::calculatedDatesOf(MySinglePic &pic, const SaveSettings &settings)
{
    QList<SavedDate> dates;
    const auto add = [&](SavedDate::Slot slot, const OptionalDate &oldDate, const OptionalDate &newDate,
                         std::optional<SavedDate::Rule> rule = std::nullopt) {
        if (!oldDate && !newDate)
            return;
        const SavedDate::Rule found = stampRule(pic, oldDate, newDate);
        dates.append({slot, oldDate, newDate, found == SavedDate::Unchanged ? found : rule.value_or(found)});
    };
    add(SavedDate::Capture, pic.exifDateTimeOriginalOLD, pic.exifDateTimeOriginalNEW);
    add(SavedDate::Digitized, pic.exifDateTimeDigitizedOLD, pic.exifDateTimeDigitizedNEW);
    add(SavedDate::Modify, pic.tiffDateTimeOLD, pic.tiffDateTimeNEW);
    if (pic.spGpsUTCDate) {
        const OptionalDate written = StampEdits(pic, settings).gpsDateToWrite();
        add(SavedDate::GpsTime, pic.spGpsUTCDate, written.value_or(*pic.spGpsUTCDate),
            settings.syncGPSDataOnSaveType ? SavedDate::MovesWithClock : SavedDate::TakesCaptureDate);
    }
    // The file's creation date cannot be set here; only its modification date is.
    add(SavedDate::FileDate, pic.fileModificationDateOLD, pic.fileModificationDateNEW, SavedDate::SetBySave);
    return dates;
}

QList<MySinglePic *> PreSaveSummary::selectionToHandBack(const QList<MySinglePic *> &chosen,
                                                         const QList<MySinglePic *> &listed)
{
    if (chosen.isEmpty())
        return {};
    const auto onShow = [](const MySinglePic *pic) { return pic->indexInSource_filtered >= 0; };
    QList<MySinglePic *> shown;
    std::copy_if(chosen.cbegin(), chosen.cend(), std::back_inserter(shown), onShow);
    if (shown.isEmpty()) {
        const auto first = std::find_if(listed.cbegin(), listed.cend(), onShow);
        return first == listed.cend() ? QList<MySinglePic *>() : QList<MySinglePic *>{*first};
    }
    const FolderFacts *folder = shown.first()->spSingleFolder;
    const bool itemByItem = folder && folder->sfEditMode == FolderFacts::EditSeparately;
    return itemByItem ? shown : shown.mid(0, 1);
}

} // namespace orv
