#pragma once

#include "core/PicAttributes.h"
#include "formats/InPlaceWriter.h"
#include "time/TimeZone.h"

#include <functional>
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
    // A stamp or its offset tag does not read exactly: that stamp and its tag stay as they are.
    bool damagedTags = false;

    // Bytes equal to the previous ones are not written again.
    void add(quint32 offset, const QByteArray &bytes, const QByteArray &previous);
};

// Plans the in-place writes of a photo's new dates: XMP stamps, the GPS date, and the EXIF and
// TIFF stamps with their offset tags. Every new stamp has the length of the one it replaces;
// a date that would need another length is not planned.
class StampEdits
{
public:
    StampEdits(MySinglePic &pic, const SaveSettings &settings) : m_pic(pic), m_settings(settings) {}

    PlannedSave planPhoto();
    // The sync pass: every XMP twin of a date slot takes the date the save gave the slot.
    // `infos` were read from the file just now.
    PlannedSave planXmpSync(XmpDateInfos &infos);

    // The edits that put `date` into an XMP stamp in place: the digits, and for a stamp with its
    // own offset the offset too; fractions stay. Empty when the text would not fit.
    static std::vector<ByteEdit> xmpStampEdits(const XmpStampRecord &record, Instant date,
                                               const TimeZone &localZone, bool &needsExtension);

private:
    void planXmpDates(PlannedSave &plan);
    void planXmpStamp(PlannedSave &plan, XmpDateInfos &infos, const char *key, OptionalDate date);
    void planGps(PlannedSave &plan);
    void planExifSlot(PlannedSave &plan, std::optional<StampRecord> &stamp,
                      std::optional<OffsetTagRecord> &offsetTag, OptionalDate &oldDate,
                      OptionalDate newDate, bool isXmpSlot);
    OptionalDate movedGpsDate() const;
    // The zone of the offset tags' camera clock; nothing in a file without an exact one.
    std::optional<TimeZone> cameraClock() const;
    TimeZone localZone() const;

    MySinglePic &m_pic;
    const SaveSettings &m_settings;
};

} // namespace orv
