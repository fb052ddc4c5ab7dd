#pragma once

#include "core/NewDateOptions.h"
#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QSet>
#include <QString>
#include <functional>

namespace orv {

struct FolderFacts;
class MySinglePic;

// What the calculation needs to know of the application around it.
struct NewDateContext
{
    // The preferences as they stand; read only when no cached options are given.
    NewDateOptions preferences;
    // A running save owns the NEW values; live calculations keep out of them meanwhile.
    bool isSavingInProgress = false;
    // The alternative save button writes every item of the selected folder, changed or not.
    bool isAltSaveButtonEnabled = false;
    const FolderFacts *selectedFolder = nullptr;
    // The previews bar shows a dragged change: items carry tempTimeDuringLiveMod.
    bool isLiveDragInPreviews = false;
};

// From the item's target date (spDateTimeModified, or its live time during a drag) computes the
// NEW value of all five date slots, freezes the target in spDateTimeModified_tempFIX and, with
// cached options, marks whether the item takes part in the run (isAffectedBySave). With cached
// options a group's dependent is calculated along with its master.
void calculateNewDatesWithCachedPrefSettings(MySinglePic &pic, const NewDateOptions *cachedOrNull,
                                             const NewDateContext &context);
// The item writes no dates: NEW takes OLD in every slot.
void afterCalculationSetNewToOldWith(MySinglePic &pic, const NewDateOptions *cachedOrNull);

// Missing EXIF date tags the user asked to add are given OLD values to calculate from, and are
// remembered in tagAddType. Answers whether the item now has a creation date to stand on.
bool prepareExifDateTimeAddition(MySinglePic &pic);
// After a calculation the added slots read as tags still to fill (distantPast), not as present.
void cleanupExifDateTimeAddition(MySinglePic &pic);
// After a successful addition: the item forgets the request and the slots it filled.
void removeExifDateTimeAddition(MySinglePic &pic);
// Cut down to whole seconds.
Instant cleanDate(Instant date);

struct SaveCheckContext
{
    // The zone the new stamps will be written in.
    TimeZone targetTimeZone = TimeZone::systemZone();
    // A fresh comparison of the content identifiers of a Live Photo pair; absent means no match.
    std::function<bool(MySinglePic &)> lateValidateLivePhoto;
};

// Keys of the NEW values that cannot be written as they are: error_01_ambiguousStamp,
// error_02_pre1904, error_03_pre1970, error_04_livePhotoDriftingApart, and
// error_12_yearZeroStamp for a stamp of year 0000 that stays while the others move. Empty when
// all is well.
QSet<QString> checkCalculatedValuesForSaveErrors(MySinglePic &pic, const SaveCheckContext &context);
// The one error key for a file (or group) found missing or changed since import, or none.
QSet<QString> checkFileUnchangedStateForSaveRenameErrors(const MySinglePic &pic);

} // namespace orv
