#include "app/FileTagRequests.h"

#include "core/MySinglePic.h"

#include <cmath>

namespace orv {

namespace FileTagRequests {

int addMissingDateTags(const QList<MySinglePic *> &pics)
{
    int marked = 0;
    for (MySinglePic *pic : pics) {
        // RAW files are never rewritten by a tool; movies hold no such tags.
        const bool holdsDateTags = pic->takesEdits() && !pic->isMovie() && !pic->isRaw();
        const bool lacksOne =
            !pic->exifDateTimeOriginalOLD || !pic->exifDateTimeDigitizedOLD || !pic->tiffDateTimeOLD;
        if (holdsDateTags && lacksOne && !pic->shouldAddExifDateTimeTags) {
            pic->shouldAddExifDateTimeTags = true;
            ++marked;
        }
    }
    return marked;
}

bool setUserLocation(const QList<MySinglePic *> &pics, double latitude, double longitude,
                     double altitude, double accuracy)
{
    if (!std::isfinite(latitude) || !std::isfinite(longitude) || std::abs(latitude) > 90.0 ||
        std::abs(longitude) > 180.0)
        return false;
    for (MySinglePic *pic : pics) {
        if (!pic->takesEdits())
            continue;
        pic->takeNewLocation(latitude, longitude, altitude, accuracy, 1);
    }
    return true;
}

} // namespace FileTagRequests

} // namespace orv
