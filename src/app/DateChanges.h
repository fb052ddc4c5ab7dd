#pragma once

#include "app/DateAlignment.h"
#include "app/DateChangeCommands.h"
#include "app/ZoneChangeCommand.h"
#include "time/Instant.h"

#include <QList>
#include <QString>

class QUndoStack;

namespace orv {

class MySingleFolder;
class MySinglePic;
class TimeZone;
struct NewDateOptions;
struct OffsetEntry;

enum class DateChangeResult {
    Changed,
    Unchanged, // nothing to do: no value changes and no undo step
    Refused,   // a date would leave the range a file can hold, or the folders are not in the
               // mode the change needs, or a save owns them: nothing changes, no undo step
};

// Every way of changing a date ends here, in a folder offset (folder mode) or in items' own
// offsets (single mode), each as one undo step on the main undo stack. The range test against
// the dates a file can hold lives here once; spreading, alignments, removals and resets are
// exempt from it, as they only take dates the items already know or take changes back.
//
// Main thread only: the items and folders it changes are those the views read.
class DateChanges
{
public:
    DateChanges(QUndoStack &stack, DateChangeListener listener) : m_stack(stack), m_listener(std::move(listener)) {}

    // A save owns the folders: every change is refused until it ends.
    void setBlocked(bool blocked) { m_blocked = blocked; }
    bool isBlocked() const { return m_blocked; }

    // --- Folder mode ---
    // The five controls: each folder takes the entry completed by its own values where a
    // control was left empty. Repeated steps of one control (mergeKey) form one undo step.
    DateChangeResult dateValuesModify(const QList<MySingleFolder *> &folders, const OffsetEntry &entry,
                                      const QString &mergeKey = {});
    // Every folder takes the interval; direction keeps a zero offset negative.
    DateChangeResult dragChangedDates(const QList<MySingleFolder *> &folders, double interval, bool direction,
                                      const QString &mergeKey = {});
    // Every folder's interval moves by the difference, so the folders keep their distances.
    DateChangeResult dragChangedDatesWithDiff(const QList<MySingleFolder *> &folders, double difference,
                                              const QString &mergeKey = {});
    DateChangeResult dateValuesReset(const QList<MySingleFolder *> &folders);

    // --- Single mode ---
    // The same difference for every item, after the range test on the earliest and latest.
    DateChangeResult dragChangedSinglePicModeDate(const QList<MySinglePic *> &pics, double difference,
                                                  const QString &mergeKey = {});
    // A difference per item under one undo name; no range test.
    DateChangeResult updateThumbValues(const QList<PicDifference> &list, const QString &undoName,
                                       const QString &mergeKey = {});
    // The items, in timeline order, laid evenly into the open gap between from and to. Every item
    // has its entry, also one already in place, so that repeated steps continue one gesture.
    DateChangeResult dragChangedSinglePicAltModeDates(const QList<MySinglePic *> &sorted, Instant from, Instant to,
                                                      const QString &mergeKey = {});
    // The date of the index-th of count items spread between from and to.
    static Instant spreadDate(qsizetype index, qsizetype count, Instant from, Instant to);
    DateChangeResult dateValuesResetSingleMode(const QList<MySingleFolder *> &folders);
    // The selected item loses its own change; the rest of the selection comes back with it on undo.
    DateChangeResult removeDate(MySinglePic *selected, const QList<MySinglePic *> &selection);
    // Every item of the selection loses its own change; without a selection, as removeDate.
    DateChangeResult removeSelectedDates(const QList<MySinglePic *> &selection, MySinglePic *selected);
    // The selected item takes the date (a pasted or typed one): in folder mode its folder's
    // offset follows, in single mode the selection of two or more moves along, else the item.
    DateChangeResult changeDatesToDate(MySinglePic *selected, const QList<MySinglePic *> &selection, Instant date);
    // An alignment command on the selection; main is the item minimizing packs around.
    DateChangeResult realignSelection(AlignTag tag, const QList<MySinglePic *> &selection, const MySinglePic *main,
                                      const NewDateOptions &options);
    // The undo name an alignment would take on this selection.
    static QString alignUndoName(AlignTag tag, const QList<MySinglePic *> &sorted);

    // Whether the folder offset carries some item across a daylight-saving change of the zone
    // (2) or none (1): the days control then says so. Worked out once per offset
    // (hasDSTJumperType 0), and only for a folder whose controls show a change.
    static qint64 validateDSTJumperType(MySingleFolder &folder, const TimeZone &zone);

    // --- Time zones ---
    // Time zone correction confirmed: the folders' new zones and the items' choices of the other
    // hour, one undo step. Entries that change nothing are dropped; with none left, no step.
    DateChangeResult changeTimeZones(QList<ZoneChangeCommand::FolderChange> folders,
                                     QList<ZoneChangeCommand::ChoiceChange> choices);

    // --- Modes and history ---
    // Not an undo step: the folder keeps both kinds of change, and the mode says which is in force.
    void changeEditMode(const QList<MySingleFolder *> &folders, int mode);
    // After a save: nothing of the folder can be undone or redone any more; the other folders'
    // history stays, in its order and at its position.
    void clearUndoRedoFromFolder(const MySingleFolder *folder);

private:
    DateChangeResult changeFolderOffsets(const QList<FolderOffsetCommand::Change> &changes, const QString &undoName,
                                         const QString &mergeKey);
    DateChangeResult changePicOffsets(const QList<PicOffsetCommand::Change> &changes, const QString &undoName,
                                      const QString &mergeKey);
    bool acceptsChangeIn(const MySingleFolder &folder, int mode) const;
    DateChangeResult refuse() const;

    QUndoStack &m_stack;
    DateChangeListener m_listener;
    bool m_blocked = false;
};

} // namespace orv
