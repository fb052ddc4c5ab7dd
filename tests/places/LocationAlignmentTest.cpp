// Items put in a line between two placed ones: evenly, and by their dates.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "places/LocationAlignment.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

TEST(LocationAlignment, InnerItemsTakeTheirShareOfTheGreatCircle)
{
    MySingleFolder folder(QStringLiteral("/walk"), false);
    const Instant ten = Instant::fromUtc(2024, 5, 1, 10);
    QList<MySinglePic *> pics;
    for (const double seconds : {0.0, 30.0, 60.0, 120.0})
        pics.append(folder.adoptPic(std::make_unique<MySinglePic>(QStringLiteral("p%1.jpg").arg(seconds), &folder,
                                                                  SpTypeExifOriginal, ten.addingSeconds(seconds))));
    const GeoCoordinate lisbon{38.7167, -9.1333}, tokyo{35.6895, 139.6917};
    pics.first()->gpsLat = lisbon.latitude;
    pics.first()->gpsLong = lisbon.longitude;
    pics.last()->gpsLat = tokyo.latitude;
    pics.last()->gpsLong = tokyo.longitude;

    const QList<GeoCoordinate> even = LocationAlignment::innerPlaces(pics, false);
    ASSERT_EQ(even.size(), 2);
    EXPECT_EQ(even[0], MyGpxTrack::coordinateBetweenCoordinate(lisbon, tokyo, 1.0 / 3.0));
    EXPECT_EQ(even[1], MyGpxTrack::coordinateBetweenCoordinate(lisbon, tokyo, 2.0 / 3.0));
    // The great circle from Lisbon to Tokyo runs far north of both.
    EXPECT_GT(even[0].latitude, 55.0);
    const QList<GeoCoordinate> byTime = LocationAlignment::innerPlaces(pics, true);
    ASSERT_EQ(byTime.size(), 2);
    EXPECT_EQ(byTime[0], MyGpxTrack::coordinateBetweenCoordinate(lisbon, tokyo, 0.25));
    EXPECT_EQ(byTime[1], MyGpxTrack::coordinateBetweenCoordinate(lisbon, tokyo, 0.5));

    // Three items: the middle one half way.
    const QList<GeoCoordinate> middle = LocationAlignment::innerPlaces({pics[0], pics[1], pics[3]}, false);
    ASSERT_EQ(middle.size(), 1);
    EXPECT_EQ(middle[0], MyGpxTrack::coordinateBetweenCoordinate(lisbon, tokyo, 0.5));

    EXPECT_TRUE(LocationAlignment::innerPlaces({pics[0], pics[3]}, false).isEmpty()) << "nothing between";
    EXPECT_TRUE(LocationAlignment::innerPlaces({pics[0], pics[1], pics[2]}, false).isEmpty()) << "no place at the end";
}

} // namespace
