#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QString>

#include <functional>
#include <optional>

namespace orv {

class MySinglePic;

// What an item and the byte work on it read of the folder that holds the item: its place, its
// offset and edit mode, and the folder's choices for movies and groups. The folder itself, with
// its items, zones and import state, builds on this one level up.
struct FolderFacts
{
    enum EditMode : int { EditTogether = 1, EditSeparately = 2 };

    QString sfFolder;
    QString sfFolderPath;
    OptionalDate lastLocalChange;

    int modifyImportBecauseOfCommand = 0; // 0 normal, 1 express, 3 and 4 slideshow-only
    bool isEXIFIgnored() const { return modifyImportBecauseOfCommand >= 3; }

    int sfEditMode = EditTogether;
    double sfDateModificationsTimeInterval = 0.0;

    bool isQuicktimeMDTADateEnabled = true;
    bool isQuicktimeMVHDTimezoneCorrectionEnabled = true;
    qint64 harmonizingRawJpgsType = -1;
    qint64 sortLPsByMovModifier = -1;
    bool globalSortLPsByMov = false;

    bool sortFolderLPsByMov() const
    {
        return sortLPsByMovModifier == 0 ? globalSortLPsByMov : sortLPsByMovModifier != 1;
    }

    // The zone a save writes the item's stamps in once the folder has time zones; nothing while
    // it has none. Set by the folder, which holds the zones.
    std::function<std::optional<TimeZone>(const MySinglePic &)> targetZoneForSave;

    // Items whose last save failed; a save run's threads count them while the owner refuses
    // changes.
    int saveErrors = 0;

    // Whether a still and a movie stamped at these UTC dates may still form one Live Photo:
    // within 300 s always, beyond 3900 s never, in between only across a daylight-saving shift.
    static bool isBundlingAllowedForUtcDates(Instant first, Instant second);
    static bool isDstExceptionForUtcDate(Instant first, Instant second);
};

} // namespace orv
