#pragma once

#include "time/Instant.h"

namespace orv {

// The user's choices for how the other dates of a file follow a moved capture date. Field names
// are the preference keys; the initial values are the registered defaults.
//
// A save run works on one copy taken at its start (cachedForRun), so that every item sees the
// same choices and the same "now". Without such a copy the calculation runs live, for previews
// and summaries, on the preferences as they stand; the save time is then unknown and stands as
// Instant::distantFuture(), whatever nowDate holds.
struct NewDateOptions
{
    // Files without date tags (spType 11, 12, 14): 0 target, 1 now, 2 keep, 3 move along.
    int dateChangeNoEXIFFinderModDate = 2;
    int dateChangeNoEXIFFinderModDateUnchangedOption = 1;

    // Files whose own date is preferred over the metadata (spType 4, 18).
    int dateChangeNoEXIFButTIFFMetaModDate = 2;   // 0 target, 1 now, 2 keep, 3 move along
    int dateChangeNoEXIFButTIFFFinderModDate = 2; // 0 the new metadata date, 1 now, 2 keep
    int dateChangeNoEXIFButTIFFFinderModDateUnchangedOption = 1;

    // Files with date tags (all other types).
    int dateChangeEXIFEXIFDigiDate = 1; // 0 target, 1 keep, 2 leave alone, 3 move along
    int dateChangeEXIFEXIFDigiDateUnchangedOption = 1;
    int dateChangeEXIFEXIFModDate = 1; // 0 newest metadata date, 1 keep, 2 now, 3 move along
    int dateChangeEXIFEXIFModDateUnchangedOption = 1;
    int dateChangeEXIFChangeFinderWhenChangingEXIF = 1; // 0 leaves the file dates alone
    int dateChangeEXIFFinderCreaDate2 = 0; // 0 target, 1 digitized, other the TIFF date
    int dateChangeEXIFFinderModDate = 0;   // 0 the TIFF date, 1 keep, 2 now
    int dateChangeEXIFFinderModDateEXIFModDateOptions =
        1; // without TIFF date: 0 metadata, 1 keep, other now
    int dateChangeEXIFFinderModDateEXIFModDateUnchangedOption = 1;
    int dateChangeEXIFFinderModDateUnchangedOption = 1;

    // Seconds within which two dates count as equal.
    int dateComparisonThresold = 3;
    // The save time in whole seconds; read only in a run.
    Instant nowDate = Instant::distantFuture();
    bool isSavingPhotosWithoutDateChangesEnabled = false;
    // How a change of location alone acts on dates: 1 writes none, 3 keeps the digitized date.
    int dateChangeTypeAtLocationOnlyChanges = 0;
    // RAW locations go to sidecars only, so a new RAW location leaves the file's dates alone.
    bool addRawLocationsOnlyInSidecars = true;

    // The copy a save run holds for its whole length, with "now" cut to whole seconds.
    static NewDateOptions cachedForRun(NewDateOptions preferences, Instant now)
    {
        preferences.nowDate = Instant(now.wholeSeconds());
        return preferences;
    }
};

} // namespace orv
