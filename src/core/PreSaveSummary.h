#pragma once

#include "core/SaveQuestions.h"
#include "time/Instant.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace orv {

class MySinglePic;
struct SaveSettings;

// One date a save writes into an item's files: what they hold now and what they will hold.
struct SavedDate
{
    enum Slot : int { Capture, Digitized, Modify, GpsTime, FileDate };
    // Why the date takes its new value, when it does not simply move with the item's date.
    enum Rule : int {
        MovesWithItem,
        Unchanged,
        Added,               // the file had no such value
        FollowsCaptureDate,  // an older modify date takes the new capture date
        MovesWithClock,      // the GPS time moves by the item's offset, as the camera clock
        TakesCaptureDate,    // the GPS time takes the new capture date
        SetBySave,           // the file's own date, set after the bytes are written
    };

    Slot slot;
    OptionalDate oldDate;
    OptionalDate newDate;
    Rule rule;

    bool changes() const;
    QString slotName() const;
    // Empty for a date that moves with the item or stays.
    QString ruleText() const;
};

// What the save of one item will do, as the user reads it before deciding.
struct PreSaveItem
{
    MySinglePic *pic = nullptr;
    // Only the dates that change.
    QList<SavedDate> changes;
    // The pre-check's findings about it (or its group's dependent), in key order.
    QStringList problems;
    // The xmp:Rating the save writes, where it writes one (writeRatingsToXMPOnSave).
    std::optional<int> xmpRating;
};

// The items of a save with every date it changes and what the pre-check found, read from the
// NEW values the pre-check calculated. Read while the run waits for the answer: the items do
// not change meanwhile. Items in the order given; items with a problem first.
class PreSaveSummary
{
public:
    explicit PreSaveSummary(const PreSaveReview &review);

    const QList<PreSaveItem> &items() const { return m_items; }
    // Entries over all problems: an item with two counts twice.
    qsizetype problemCount() const { return m_problemCount; }

    // Every date slot of an item that has one, with the value a save would give it now. The
    // NEW values are calculated first, so this is never to be called while a save runs.
    static QList<SavedDate> datesOf(MySinglePic &pic, const SaveSettings &settings);
    // The same from NEW values already calculated.
    static QList<SavedDate> calculatedDatesOf(MySinglePic &pic, const SaveSettings &settings);

    // What the timeline selects when the user goes back from the summary to the items chosen
    // in it: those on show, main first; several only when each changes by itself. Empty: the
    // selection stays as it is.
    static QList<MySinglePic *> selectionToHandBack(const QList<MySinglePic *> &chosen,
                                                    const QList<MySinglePic *> &listed);

private:
    QList<PreSaveItem> m_items;
    qsizetype m_problemCount = 0;
};

} // namespace orv
