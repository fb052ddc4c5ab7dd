#pragma once

#include <QString>

#include <map>

namespace orv {

class MySinglePic;

// The save steps that change a file's structure and so are left to exiftool. Each answers
// whether it was done; one that was not has reported itself to the run's errors, and the item
// is saved no further, so a file is never left half written. A step that was done leaves the
// item's stored offsets and bytes as the file now holds them.
class ExiftoolSteps
{
public:
    virtual ~ExiftoolSteps() = default;
    // The date slots tagAddType names: tags the user asked to add, or stamps of a PNG text
    // profile, which no in-place write reaches.
    virtual bool completeFullExifDateTags(MySinglePic &pic) = 0;
    // XMP stamps without seconds that must carry a date with seconds: by the stamp's key, the
    // whole value each takes.
    virtual bool extendShortXmpDateTags(MySinglePic &pic,
                                        const std::map<QString, QString> &supportStamps) = 0;
    // The item's location. `exifInPlace`: the file's GPS tags take latitude and longitude in
    // place, and exiftool only adds the parts they lack and keeps the XMP twin in step.
    virtual bool saveLocationChange(MySinglePic &pic, bool exifInPlace) = 0;
    // The item's rating as xmp:Rating, where its places go: its XMP sidecar (a new one for a
    // movie, and for a RAW file under addRawLocationsOnlyInSidecars), else the file itself.
    virtual bool saveRatingChange(MySinglePic &pic, int rating) = 0;
    // Whether saveRatingChange writes the sidecar rather than the file.
    static bool ratingGoesToSidecar(const MySinglePic &pic, bool addRawLocationsOnlyInSidecars);
    // Whether an item dated by its file alone may take its new date as tags it did not have;
    // asked once per run.
    virtual bool mayAddDateTagsToFileDatedItems() = 0;
    // Such an item's new creation date, as date tags: EXIF for JPEG, TIFF and PNG, the metadata
    // date for a QuickTime or MPEG-4 movie, XMP elsewhere.
    virtual bool addDateTagsForFileDate(MySinglePic &pic) = 0;
};

} // namespace orv
