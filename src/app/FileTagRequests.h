#pragma once

#include <QList>

namespace orv {

class MySinglePic;

// What the next save is asked to add to files beyond moving their dates: the date tags a still
// lacks, and a location the user gave. The command line's route into the model for these, as
// DateChanges is for dates. Neither is an undo step here: the window's map gives a location
// through TrackLinks::placePics, which records it as one.
// Main thread only.
namespace FileTagRequests {

// Each still of a format that holds date tags, and that lacks some, has them added by the next
// save (tagAddType is worked out then). Answers how many items were marked.
int addMissingDateTags(const QList<MySinglePic *> &pics);

// Each item takes the location as the user's own (hasAddedLocation 1); the one it had waits as
// gpsLatOld until the save. Altitude and accuracy are MySinglePic::notSetAccuracy when not
// given. Answers false, changing nothing, for a place off the globe.
bool setUserLocation(const QList<MySinglePic *> &pics, double latitude, double longitude,
                     double altitude, double accuracy);

} // namespace FileTagRequests

} // namespace orv
