#include "app/FileTagRequests.h"

#include "core/MySinglePic.h"

#include <cmath>

namespace orv {

namespace {

double roundedTo(double value, int digits)
{
    const double scale = std::pow(10.0, digits);
    return std::round(value * scale) / scale;
}

} // namespace

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
        if (!pic->gpsLatOld && pic->gpsLat && pic->gpsLong) {
            pic->gpsLatOld = pic->gpsLat;
            pic->gpsLongOld = pic->gpsLong;
        }
        // A movie whose place text has few digits takes the place it can hold in place.
        const auto rounding = pic->needsLocRounding();
        pic->gpsLat = rounding ? roundedTo(latitude, rounding->latitudeDigits) : latitude;
        pic->gpsLong = rounding ? roundedTo(longitude, rounding->longitudeDigits) : longitude;
        pic->hasAddedLocation = 1;
        pic->newLocationAltitude = altitude;
        pic->newLocationHAccuracy = accuracy;
    }
    return true;
}

} // namespace FileTagRequests

} // namespace orv
