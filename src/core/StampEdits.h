#pragma once

#include "formats/InPlaceWriter.h"
#include "formats/PicAttributes.h"
#include "time/TimeZone.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace orv {

class MySinglePic;
class TimeZone;
struct SaveSettings;

// The bytes a save writes into one file, planned before any of them is written, and what the
// item takes on once they are on disk: new stored bytes, OLD taking NEW.
struct PlannedSave
{
    std::vector<ByteEdit> edits;
    std::vector<std::function<void()>> whenSaved;
    bool touchesExif = false;
    bool touchesXmp = false;
    // An XMP stamp without seconds must hold a date with seconds: only exiftool can widen it.
    bool needsXmpExtension = false;
    // For each such stamp, by its key, the whole value it must take.
    std::map<QString, QString> supportStamps;
    // A stamp or its offset tag does not read exactly: that stamp and its tag stay as they are.
    bool damagedTags = false;

    // Date slots (TagAddBits) whose stamp was read from a PNG text profile, which has no place
    // to write in: exiftool rewrites them.
    quint64 stampsOutOfPlace = 0;

    // A date due in a stamp that cannot hold it in place (a metadata date of another length,
    // a header time past its field's range): only exiftool can write it.
    bool needsExiftool = false;

    // Bytes equal to the previous ones are not written again.
    void add(qint64 offset, const QByteArray &bytes, const QByteArray &previous);
};

// Plans the in-place writes of a photo's new dates: XMP stamps, the GPS date, and the EXIF and
// TIFF stamps with their offset tags. Every new stamp has the length of the one it replaces;
// a date that would need another length is not planned.
class StampEdits
{
public:
    StampEdits(MySinglePic &pic, const SaveSettings &settings);

    // The zone the item's new stamps are written in: the run's, else the item's target zone once
    // its folder has zones; nothing when each stamp keeps its own.
    static std::optional<TimeZone> targetZoneFor(const MySinglePic &pic, const SaveSettings &settings);

    PlannedSave planPhoto();
    // A movie's stamps: the AVI IDIT, or the QuickTime metadata date and the movie header's
    // times, each in its own form and length. A stamp that is not the item's date source moves
    // by as much as the item's date, so every date the file holds moves alike.
    PlannedSave planMovie();
    // The item's location into each of the movie's ISO 6709 texts, in the digit counts the text
    // has. False, and nothing planned, when a text is not in that form or there is no location.
    bool planMovieLocation(PlannedSave &plan);
    // The item's location into a photo's GPS tags: refs, the three rationals of latitude and
    // longitude, and the altitude and positioning error the user gave. False, and nothing
    // planned, when a tag it needs is missing or the item has an XMP sidecar.
    bool planPhotoLocation(PlannedSave &plan);
    // The sync pass: every XMP twin of a date slot takes the date the save gave the slot.
    // `infos` were read from the file just now.
    PlannedSave planXmpSync(XmpDateInfos &infos);
    // The GPS date the save writes, once the item's NEW values are calculated: moved by the
    // item's offset (the camera clock's error) or set to its new date, by the preference;
    // nothing when the save leaves the GPS date alone.
    OptionalDate gpsDateToWrite() const;

    // The one camera clock the file's offset tags name; nothing without such a tag.
    static std::optional<TimeZone> cameraClockOf(const MySinglePic &pic);

    // The zone of stamps the file does not have yet: the target zone, else the camera clock its
    // offset tags name, else the computer's.
    TimeZone zoneForNewStamps() const;

    // The edits that put `date` into an XMP stamp in place: the digits, and for a stamp with its
    // own offset the offset too; fractions stay. Empty when the text would not fit.
    // The whole value an XMP stamp without seconds takes to hold `date` with its seconds, in
    // the stamp's own zone form.
    static QString supportStamp(const XmpStampRecord &record, Instant date,
                                const TimeZone &localZone);
    static std::vector<ByteEdit> xmpStampEdits(const XmpStampRecord &record, Instant date,
                                               const TimeZone &localZone, bool &needsExtension);

private:
    void planXmpDates(PlannedSave &plan);
    // A stamp without a zone is written as clock time in localStampZone.
    void planXmpStamp(PlannedSave &plan, XmpDateInfos &infos, const char *key, OptionalDate date,
                      const TimeZone &localStampZone);
    void planGps(PlannedSave &plan);
    void planExifSlot(PlannedSave &plan, quint64 slot, std::optional<StampRecord> &stamp,
                      std::optional<OffsetTagRecord> &offsetTag, OptionalDate &oldDate,
                      OptionalDate newDate, bool isXmpSlot);
    void planMovieStamp(PlannedSave &plan, MovieStampRecord &stamp, const QByteArray &bytes);
    // Answers the bytes planned for the header time; empty when none are.
    QByteArray planMovieHeaderTime(PlannedSave &plan, BoxedOptional<MovieStampRecord> &stamp,
                                   OptionalDate date, bool correction);
    // Each track or media header time takes the new bytes of the movie header time it follows.
    void planTrackTimes(PlannedSave &plan, const QByteArray &creation, const QByteArray &modification);
    // A CR3's movie header times move as far as its capture and modification dates.
    void planCr3MovieHeader(PlannedSave &plan);
    // IPTC's creation date and time, in their own form, as far as the creation date moves.
    void planIptcDate(PlannedSave &plan);
    // The zone of the offset tags' camera clock; nothing in a file without an exact one.
    std::optional<TimeZone> cameraClock() const { return cameraClockOf(m_pic); }
    TimeZone localZone() const;

    MySinglePic &m_pic;
    const SaveSettings &m_settings;
    // The run's zone, else the item's target zone once its folder has zones; without either a
    // stamp keeps its own zone.
    std::optional<TimeZone> m_targetZone;
};

} // namespace orv
