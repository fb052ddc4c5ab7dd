#pragma once

#include "core/NewDateOptions.h"
#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QString>
#include <optional>

namespace orv {

class Preferences;

// Everything a save run reads from the preferences, read once at its start: whatever the user
// changes meanwhile reaches the next run, not this one.
struct SaveSettings
{
    NewDateOptions options;
    bool syncGPSDataOnSave = true;
    // On: a GPS date moves by the item's offset. Off: it takes the item's new date.
    bool syncGPSDataOnSaveType = true;
    // On: XMP locations and stamps follow what the save writes into EXIF.
    bool syncXMPDataOnSave = false;
    // A moved location without an accuracy of its own leaves no stale positioning error behind:
    // the tags that have one take 0.
    bool setPositioningErrorsToZeroOnChange = true;
    // On: ratings that changed since the file was read are written as xmp:Rating, so that other
    // programs see keepers (5) and rejects (-1).
    bool writeRatingsToXMPOnSave = false;
    // The zone every new stamp is written in once time zone correction chooses one. Without it a
    // stamp keeps its own zone: the one its offset tag or XMP offset names, UTC for a "Z" stamp,
    // the system zone for a local stamp, the zone the scan read it in.
    std::optional<TimeZone> targetTimeZone;
    // The save journal; empty only where a test runs without one.
    QString journalPath;

    static SaveSettings fromPreferences(const Preferences &prefs, Instant now);
};

// The present moment, to the millisecond.
Instant currentInstant();

} // namespace orv
