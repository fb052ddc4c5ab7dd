#include "app/DateChanges.h"

#include "core/MySinglePic.h"
#include "folders/FolderOffsetControls.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <vector>

namespace orv {

namespace {

// Undo names by their keys; the English wording is the source text of each key's translation.
QString undoName(const char *key)
{
    static const QHash<QByteArray, const char *> wording = {
        {"undoDateChangeText", QT_TRANSLATE_NOOP("undoDateChangeText", "Date Change")},
        {"resetAllInFolderMode", QT_TRANSLATE_NOOP("resetAllInFolderMode", "Reset Folder Offset")},
        {"tzc_ui_undoRedo_full", QT_TRANSLATE_NOOP("tzc_ui_undoRedo_full", "Time Zone Correction")},
        {"ambiguityCorrection_undoRedo",
         QT_TRANSLATE_NOOP("ambiguityCorrection_undoRedo", "Other Hour of a Repeated Hour")},
        {"dragInSingleMode", QT_TRANSLATE_NOOP("dragInSingleMode", "Move Dates")},
        {"altDragMultiInSingleMode", QT_TRANSLATE_NOOP("altDragMultiInSingleMode", "Spread Dates")},
        {"resetAllInSingleMode", QT_TRANSLATE_NOOP("resetAllInSingleMode", "Reset Dates")},
        {"menu_removeDate_single", QT_TRANSLATE_NOOP("menu_removeDate_single", "Remove Date")},
        {"menu_removeDate_selection",
         QT_TRANSLATE_NOOP("menu_removeDate_selection", "Remove Dates")},
        {"alignByMatchingGaps", QT_TRANSLATE_NOOP("alignByMatchingGaps", "Align by Matching Gaps")},
        {"alignByMinimizingGaps",
         QT_TRANSLATE_NOOP("alignByMinimizingGaps", "Align by Minimizing Gaps")},
        {"alignByMinimizingGapsAlt",
         QT_TRANSLATE_NOOP("alignByMinimizingGapsAlt", "Separate Identical Times")},
        {"alignByFileName", QT_TRANSLATE_NOOP("alignByFileName", "Align by File Name")},
        {"alignByReversing", QT_TRANSLATE_NOOP("alignByReversing", "Reverse Order")},
        {"alignByReversingAlt", QT_TRANSLATE_NOOP("alignByReversingAlt", "Reverse Intervals")},
        {"alignByCopyingOtherFileDate",
         QT_TRANSLATE_NOOP("alignByCopyingOtherFileDate", "Copy Other File Date")},
    };
    return QCoreApplication::translate(key, wording.value(key, key));
}

// The date an item stands at before a change: its original plus, in single mode, its own offset.
enum class Base { Original, OriginalWithOwnOffset };

// Every date the difference moves stays within the dates a file can hold, a group's dependent's
// included, as it moves with its master. Items whose dates are never edited, and empty stamps,
// take no part.
bool staysInRange(const QList<MySinglePic *> &pics, double difference, Base base)
{
    for (const MySinglePic *master : pics) {
        const MySinglePic *dependent = master->bundleDependentImage;
        for (const MySinglePic *pic : {master, dependent}) {
            const OptionalDate date = pic ? pic->spDateTimeOriginal : std::nullopt;
            if (!date || !pic->takesEdits() || date->isSentinel())
                continue;
            const double own = base == Base::OriginalWithOwnOffset ? master->singlePicModification : 0.0;
            const Instant moved = date->addingSeconds(own + difference);
            if (moved < Instant::minDate() || moved > Instant::maxDate())
                return false;
        }
    }
    return true;
}

bool takesPart(const MySinglePic *pic)
{
    return pic && !pic->isMovedToTrash;
}

} // namespace

DateChangeResult DateChanges::refuse() const
{
    if (m_listener.refused)
        m_listener.refused();
    return DateChangeResult::Refused;
}

bool DateChanges::acceptsChangeIn(const MySingleFolder &folder, int mode) const
{
    if (m_blocked || folder.isEXIFIgnored())
        return false;
    if (folder.sfEditMode == mode)
        return true;
    // A change of the other mode would hide one still pending.
    return !folder.isDateModified();
}

DateChangeResult DateChanges::changeFolderOffsets(const QList<FolderOffsetCommand::Change> &changes,
                                                  const QString &name, const QString &mergeKey)
{
    QList<FolderOffsetCommand::Change> effective;
    for (const FolderOffsetCommand::Change &change : changes) {
        MySingleFolder &folder = *change.folder;
        if (folder.count() == 0)
            continue;
        if (!acceptsChangeIn(folder, MySingleFolder::EditTogether)
            || !staysInRange(folder.sfPicDetails_fullArray, change.after.interval, Base::Original))
            return refuse();
        if (change.after != change.before || folder.sfEditMode != MySingleFolder::EditTogether)
            effective.append(change);
    }
    if (effective.isEmpty())
        return DateChangeResult::Unchanged;
    m_stack.push(new FolderOffsetCommand(effective, name, mergeKey, m_listener));
    return DateChangeResult::Changed;
}

DateChangeResult DateChanges::changePicOffsets(const QList<PicOffsetCommand::Change> &changes,
                                               const QString &name, const QString &mergeKey)
{
    for (const PicOffsetCommand::Change &change : changes)
        if (!acceptsChangeIn(*MySingleFolder::of(*change.pic), MySingleFolder::EditSeparately))
            return refuse();
    if (std::none_of(changes.cbegin(), changes.cend(),
                     [](const PicOffsetCommand::Change &c) { return c.before != c.after; }))
        return DateChangeResult::Unchanged;
    m_stack.push(new PicOffsetCommand(changes, name, mergeKey, m_listener));
    return DateChangeResult::Changed;
}

DateChangeResult DateChanges::dateValuesModify(const QList<MySingleFolder *> &folders, const OffsetEntry &entry,
                                               const QString &mergeKey)
{
    const QList<FolderOffset> offsets = FolderOffsetControls(folders).offsetsFor(entry);
    QList<FolderOffsetCommand::Change> changes;
    for (qsizetype i = 0; i < folders.size(); ++i) {
        MySingleFolder *folder = folders[i];
        changes.append({folder,
                        {folder->sfDateModificationsTimeInterval, folder->hasChangedDirection},
                        {offsets[i].interval, offsets[i].negative}});
    }
    return changeFolderOffsets(changes, undoName("undoDateChangeText"), mergeKey);
}

DateChangeResult DateChanges::dragChangedDates(const QList<MySingleFolder *> &folders, double interval,
                                               bool direction, const QString &mergeKey)
{
    QList<FolderOffsetCommand::Change> changes;
    for (MySingleFolder *folder : folders)
        changes.append({folder,
                        {folder->sfDateModificationsTimeInterval, folder->hasChangedDirection},
                        {interval, interval == 0.0 ? direction : interval < 0.0}});
    return changeFolderOffsets(changes, undoName("undoDateChangeText"), mergeKey);
}

DateChangeResult DateChanges::dragChangedDatesWithDiff(const QList<MySingleFolder *> &folders, double difference,
                                                       const QString &mergeKey)
{
    QList<FolderOffsetCommand::Change> changes;
    for (MySingleFolder *folder : folders) {
        const double interval = folder->sfDateModificationsTimeInterval + difference;
        changes.append({folder,
                        {folder->sfDateModificationsTimeInterval, folder->hasChangedDirection},
                        {interval, interval == 0.0 ? folder->hasChangedDirection : interval < 0.0}});
    }
    return changeFolderOffsets(changes, undoName("undoDateChangeText"), mergeKey);
}

DateChangeResult DateChanges::dateValuesReset(const QList<MySingleFolder *> &folders)
{
    QList<FolderOffsetCommand::Change> changes;
    for (MySingleFolder *folder : folders)
        changes.append({folder, {folder->sfDateModificationsTimeInterval, folder->hasChangedDirection}, {0.0, false}});
    return changeFolderOffsets(changes, undoName("resetAllInFolderMode"), {});
}

DateChangeResult DateChanges::dragChangedSinglePicModeDate(const QList<MySinglePic *> &pics, double difference,
                                                           const QString &mergeKey)
{
    if (difference == 0.0)
        return DateChangeResult::Unchanged;
    QList<MySinglePic *> moved = pics;
    moved.removeIf([](const MySinglePic *pic) { return !takesPart(pic); });
    if (!staysInRange(moved, difference, Base::OriginalWithOwnOffset))
        return refuse();
    QList<PicDifference> list;
    for (MySinglePic *pic : std::as_const(moved))
        list.append({pic, difference});
    return updateThumbValues(list, undoName("dragInSingleMode"), mergeKey);
}

DateChangeResult DateChanges::updateThumbValues(const QList<PicDifference> &list, const QString &name,
                                                const QString &mergeKey)
{
    QList<PicOffsetCommand::Change> changes;
    for (const PicDifference &entry : list) {
        if (!takesPart(entry.thumb))
            continue;
        const double before = entry.thumb->singlePicModification;
        const double after = entry.thumb->takesEdits() ? before + entry.dateDifference : before;
        changes.append({entry.thumb, before, after});
    }
    return changePicOffsets(changes, name, mergeKey);
}

DateChangeResult DateChanges::dragChangedSinglePicAltModeDates(const QList<MySinglePic *> &sorted, Instant from,
                                                               Instant to, const QString &mergeKey)
{
    QList<PicDifference> list;
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        const OptionalDate present = sorted[i]->spDateTimeModified_sort();
        if (present)
            list.append({sorted[i], spreadDate(i, sorted.size(), from, to).secondsSince(*present)});
    }
    return updateThumbValues(list, undoName("altDragMultiInSingleMode"), mergeKey);
}

Instant DateChanges::spreadDate(qsizetype index, qsizetype count, Instant from, Instant to)
{
    const double step = to.secondsSince(from) / double(count + 1);
    return Instant(std::round(from.secondsSinceEpoch() + double(index + 1) * step));
}

DateChangeResult DateChanges::dateValuesResetSingleMode(const QList<MySingleFolder *> &folders)
{
    QList<PicDifference> list;
    for (const MySingleFolder *folder : folders)
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (pic->singlePicModification != 0.0)
                list.append({pic, -pic->singlePicModification});
    return updateThumbValues(list, undoName("resetAllInSingleMode"));
}

DateChangeResult DateChanges::removeDate(MySinglePic *selected, const QList<MySinglePic *> &selection)
{
    if (!selected)
        return DateChangeResult::Unchanged;
    QList<PicDifference> list{{selected, -selected->singlePicModification}};
    for (MySinglePic *pic : selection)
        if (pic != selected)
            list.append({pic, 0.0});
    return updateThumbValues(list, undoName("menu_removeDate_single"));
}

DateChangeResult DateChanges::removeSelectedDates(const QList<MySinglePic *> &selection, MySinglePic *selected)
{
    if (selection.isEmpty())
        return removeDate(selected, selection);
    QList<PicDifference> list;
    for (MySinglePic *pic : selection)
        list.append({pic, -pic->singlePicModification});
    return updateThumbValues(list, undoName("menu_removeDate_selection"));
}

DateChangeResult DateChanges::changeDatesToDate(MySinglePic *selected, const QList<MySinglePic *> &selection,
                                                Instant date)
{
    if (!selected || !selected->spSingleFolder)
        return DateChangeResult::Unchanged;
    MySingleFolder *folder = MySingleFolder::of(*selected);
    const bool together = folder->sfEditMode == MySingleFolder::EditTogether;
    const OptionalDate reference = together ? selected->spDateTimeOriginal : selected->spDateTimeModified();
    if (!reference)
        return DateChangeResult::Unchanged;
    const double difference = date.secondsSince(*reference);
    if (together)
        return dragChangedDates({folder}, difference, difference < 0.0);
    return dragChangedSinglePicModeDate(selection.size() >= 2 ? selection : QList<MySinglePic *>{selected},
                                        difference);
}

QString DateChanges::alignUndoName(AlignTag tag, const QList<MySinglePic *> &sorted)
{
    switch (tag) {
    case AlignTag::MatchingGaps:
        return undoName("alignByMatchingGaps");
    case AlignTag::MinimizingGaps:
        return undoName(DateAlignment::areThereIdenticalTimesIn(sorted) ? "alignByMinimizingGapsAlt"
                                                                        : "alignByMinimizingGaps");
    case AlignTag::Filename:
        return undoName("alignByFileName");
    case AlignTag::Reversing:
        return undoName("alignByReversing");
    case AlignTag::ReversingIntervals:
        return undoName("alignByReversingAlt");
    default:
        return undoName("alignByCopyingOtherFileDate");
    }
}

DateChangeResult DateChanges::realignSelection(AlignTag tag, const QList<MySinglePic *> &selection,
                                               const MySinglePic *main, const NewDateOptions &options)
{
    QList<MySinglePic *> dated = selection;
    dated.removeIf([](const MySinglePic *pic) { return !takesPart(pic) || !pic->spDateTimeModified_sort(); });
    const QList<MySinglePic *> sorted = DateAlignment::sortedThumbsArray(dated);
    const QList<PicDifference> list = DateAlignment::differencesFor(tag, sorted, main, options);
    if (list.isEmpty())
        return DateChangeResult::Unchanged;
    return updateThumbValues(list, alignUndoName(tag, sorted));
}

qint64 DateChanges::validateDSTJumperType(MySingleFolder &folder, const TimeZone &zone)
{
    if (folder.sfEditMode != MySingleFolder::EditTogether || !folder.isTogetherDateUIModified()
        || folder.hasDSTJumperType != 0)
        return folder.hasDSTJumperType;
    folder.hasDSTJumperType = 1;
    for (const MySinglePic *pic : std::as_const(folder.sfPicDetails_fullArray)) {
        const OptionalDate original = pic->spDateTimeOriginal_sort();
        const OptionalDate modified = pic->spDateTimeModified_sort();
        if (original && modified
            && zone.nextDaylightSavingTimeTransitionAfterDate(*original)
                   != zone.nextDaylightSavingTimeTransitionAfterDate(*modified)) {
            folder.hasDSTJumperType = 2;
            break;
        }
    }
    return folder.hasDSTJumperType;
}

void DateChanges::changeEditMode(const QList<MySingleFolder *> &folders, int mode)
{
    for (MySingleFolder *folder : folders) {
        if (folder->sfEditMode == mode)
            continue;
        folder->sfEditMode = mode;
        if (m_listener.editModeChanged)
            m_listener.editModeChanged(folder);
    }
    if (m_listener.datesChanged)
        m_listener.datesChanged(folders);
}

void DateChanges::clearUndoRedoFromFolder(const MySingleFolder *folder)
{
    bool touched = false;
    std::vector<std::unique_ptr<DateChangeCommand>> kept;
    int keptDone = 0;
    for (int i = 0; i < m_stack.count(); ++i) {
        const auto *command = static_cast<const DateChangeCommand *>(m_stack.command(i));
        touched = touched || command->folders().contains(const_cast<MySingleFolder *>(folder));
        if (std::unique_ptr<DateChangeCommand> rest = command->withoutFolder(folder)) {
            keptDone += i < m_stack.index() ? 1 : 0;
            kept.push_back(std::move(rest));
        }
    }
    if (!touched)
        return;
    // The model already stands where the history says: the commands go back without acting.
    m_stack.clear();
    QList<DateChangeCommand *> onStack;
    for (std::unique_ptr<DateChangeCommand> &command : kept) {
        command->skipNextApply();
        onStack.append(command.get());
        m_stack.push(command.release());
    }
    for (qsizetype i = keptDone; i < onStack.size(); ++i)
        onStack[i]->skipNextApply();
    m_stack.setIndex(keptDone);
}

} // namespace orv

namespace orv {

DateChangeResult DateChanges::changeTimeZones(QList<ZoneChangeCommand::FolderChange> folders,
                                              QList<ZoneChangeCommand::ChoiceChange> choices)
{
    folders.removeIf([](const ZoneChangeCommand::FolderChange &c) {
        return c.before.source == c.after.source && c.before.target == c.after.target;
    });
    choices.removeIf([](const ZoneChangeCommand::ChoiceChange &c) { return c.before == c.after; });
    if (folders.isEmpty() && choices.isEmpty())
        return DateChangeResult::Unchanged;
    const bool slideshowOnly = std::any_of(folders.cbegin(), folders.cend(),
                                           [](const auto &c) { return c.folder->isEXIFIgnored(); });
    if (m_blocked || slideshowOnly)
        return refuse();
    QStringList names;
    if (!folders.isEmpty())
        names << undoName("tzc_ui_undoRedo_full");
    if (!choices.isEmpty())
        names << undoName("ambiguityCorrection_undoRedo");
    const QString name = names.join(QCoreApplication::translate("DateChanges", " and "));
    m_stack.push(new ZoneChangeCommand(std::move(folders), std::move(choices), name, m_listener));
    return DateChangeResult::Changed;
}

} // namespace orv
