// The map's arithmetic against values worked out by hand: Web Mercator pixels and tiles at
// several zooms, the poles' clamp and the 180th meridian; pins clustered per zoom and found under
// the pointer; tracks thinned per zoom; the offline layer's land and sea on the system's data.

#include "places/MapBaseLayer.h"
#include "places/MapPins.h"
#include "places/MapProjection.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
using namespace orv::MapProjection;

namespace {

TEST(MapProjection, PixelsAndTilesMatchHandValuesAtSeveralZooms)
{
    EXPECT_EQ(worldPixel({0, 0}, 0), QPointF(128, 128));
    EXPECT_EQ(tile({0, 0}, 0), QPoint(0, 0));
    // The meeting point of four tiles belongs to the south-east one.
    EXPECT_EQ(worldPixel({0, 0}, 1), QPointF(256, 256));
    EXPECT_EQ(tile({0, 0}, 1), QPoint(1, 1));
    // Berlin at zoom 10: x = 193.405 / 360 * 1024 = 550.13; y = (1 - ln(tan φ + sec φ) / π) / 2 * 1024
    // = (1 - 1.08099 / π) / 2 * 1024 = 335.83.
    const QPointF berlin = worldPixel({52.52, 13.405}, 10);
    EXPECT_NEAR(berlin.x() / tileSize, 550.13, 0.01);
    EXPECT_NEAR(berlin.y() / tileSize, 335.83, 0.01);
    EXPECT_EQ(tile({52.52, 13.405}, 10), QPoint(550, 335));
    // Sydney at zoom 4: x = 331.21 / 360 * 16 = 14.72, y = (1 + 0.62890 / π) / 2 * 16 = 9.60.
    EXPECT_EQ(tile({-33.8688, 151.2093}, 4), QPoint(14, 9));

    // Poles: the square ends at 85.0511 degrees; anything beyond stands on its edge.
    EXPECT_NEAR(worldPixel({maxLatitude, 0}, 3).y(), 0.0, 1e-9);
    EXPECT_NEAR(worldPixel({90, 0}, 3).y(), 0.0, 1e-9);
    EXPECT_DOUBLE_EQ(worldPixel({-90, 0}, 3).y(), worldSize(3));
    EXPECT_EQ(tile({-90, 0}, 3), QPoint(4, 7));
    EXPECT_NEAR(coordinate({10, -500}, 3).latitude, maxLatitude, 1e-9);

    // The 180th meridian: east edge and west edge are one line; beyond it the world goes on.
    EXPECT_DOUBLE_EQ(worldPixel({0, -180}, 2).x(), 0.0);
    EXPECT_DOUBLE_EQ(worldPixel({0, 180}, 2).x(), 1024.0);
    EXPECT_EQ(tile({0, 180}, 2), QPoint(3, 2));
    EXPECT_DOUBLE_EQ(worldPixel({0, 190}, 2).x(), 10.0 / 360.0 * 1024.0);
    EXPECT_DOUBLE_EQ(coordinate({1024.0 + 256.0, 512.0}, 2).longitude, -90.0);
    EXPECT_EQ(wrappedColumn(-1, 3), 7);
    EXPECT_EQ(wrappedColumn(8, 3), 0);
    EXPECT_DOUBLE_EQ(wrappedLongitude(-181.0), 179.0);

    // And back, at every zoom.
    for (int zoom : {0, 5, 12, maxZoom}) {
        for (const GeoCoordinate c : {GeoCoordinate{38.71667, -9.13333}, GeoCoordinate{-77.85, 166.67},
                                      GeoCoordinate{64.18, -51.72}, GeoCoordinate{0.0, 179.999}}) {
            const GeoCoordinate back = coordinate(worldPixel(c, zoom), zoom);
            EXPECT_NEAR(back.latitude, c.latitude, 1e-9) << zoom;
            EXPECT_NEAR(back.longitude, c.longitude, 1e-9) << zoom;
        }
    }
}

TEST(MapPinClusters, PinsClusterByZoomAndAreFoundAcrossTheMeridian)
{
    MapPinClusters clusters;
    const GeoCoordinate lisbon{38.7167, -9.1333}, lisbonEast{38.7167, -9.1218}, setubal{38.5244, -8.8882};
    const GeoCoordinate westOfLine{-17.0, 179.99}, eastOfLine{-17.0, -179.99};
    clusters.setPins({lisbon, lisbonEast, setubal, westOfLine, eastOfLine}, {true, false, false, false, false},
                     {false, true, true, false, false});

    // At zoom 0 the three pins around Lisbon share a 48-pixel cell (2, 2): (121.51, 98.10) and
    // (121.68, 98.27).
    const auto &world = clusters.clustersAt(0);
    int counted = 0;
    for (const MapCluster &cluster : world)
        counted += cluster.count;
    EXPECT_EQ(counted, 5);
    const int portugal = clusters.clusterAt(0, worldPixel(setubal, 0), 20);
    ASSERT_GE(portugal, 0);
    EXPECT_EQ(world[std::size_t(portugal)].count, 3);
    EXPECT_EQ(world[std::size_t(portugal)].selectedCount, 1);
    EXPECT_EQ(world[std::size_t(portugal)].dimmedCount, 2);
    EXPECT_EQ(clusters.membersOf(0, world[std::size_t(portugal)]), (QList<int>{0, 1, 2}));
    EXPECT_EQ(clusters.clusterOf(0, 1), portugal);

    // At zoom 18 the two Lisbon pins, a kilometre apart, are 2,144 pixels apart: every pin
    // stands alone.
    EXPECT_EQ(clusters.clustersAt(18).size(), 5u);
    const int alone = clusters.clusterAt(18, worldPixel(lisbonEast, 18) + QPointF(5, -5), 14);
    ASSERT_GE(alone, 0);
    EXPECT_EQ(clusters.membersOf(18, clusters.clustersAt(18)[std::size_t(alone)]), QList<int>{1});
    EXPECT_EQ(clusters.clusterAt(18, worldPixel(lisbonEast, 18) + QPointF(15, 0), 14), -1);

    // At zoom 10 the two pins are 14.6 pixels apart across the line. West of the world's west
    // edge lies its east end: the pin at 179.99 is nearer there than the one at -179.99.
    const int hit = clusters.clusterAt(10, {-5.0, worldPixel(westOfLine, 10).y()}, 14);
    ASSERT_GE(hit, 0);
    EXPECT_EQ(clusters.membersOf(10, clusters.clustersAt(10)[std::size_t(hit)]), QList<int>{3});

    clusters.setPins({});
    EXPECT_TRUE(clusters.clustersAt(0).empty());
    EXPECT_EQ(clusters.clusterAt(0, {128, 128}, 100), -1);
}

TEST(MapTrackLine, ATrackIsThinnedToWhatAZoomCanShow)
{
    // 1,000 points a metre apart along the equator, in two segments.
    QList<GeoCoordinate> first, second;
    for (int i = 0; i < 1000; ++i)
        (i < 500 ? first : second).append({0.0, i * 360.0 / 40075016.7});
    const MapTrackLine line({first, second});
    const auto &whole = line.segmentsAt(0);
    ASSERT_EQ(whole.size(), 2);
    EXPECT_EQ(whole[0].size(), 2) << "first and last stay";
    EXPECT_EQ(whole[1].size(), 2);
    // At zoom 19 a metre is 3.35 pixels: every point counts.
    EXPECT_EQ(line.segmentsAt(19)[0].size(), 500);
    EXPECT_EQ(line.segmentsAt(19)[1].first(), worldPixel(second.first(), 19));
}

TEST(MapBaseLayer, TheSystemsZoneMapGivesLandAndSeaWhereTheyAre)
{
    const QImage world = MapBaseLayer::mercatorWorld(MapBaseLayer::systemSource(), 512);
    ASSERT_EQ(world.size(), QSize(512, 512));
    const auto at = [&](GeoCoordinate c) { return world.pixel(worldPixel(c, 1).toPoint()); };
    EXPECT_NE(at({40.4168, -3.7038}), MapBaseLayer::seaColour) << "Madrid";
    EXPECT_NE(at({23.0, 10.0}), MapBaseLayer::seaColour) << "the Sahara";
    EXPECT_NE(at({-25.0, 134.0}), MapBaseLayer::seaColour) << "Australia";
    EXPECT_EQ(at({30.0, -40.0}), MapBaseLayer::seaColour) << "the Atlantic";
    EXPECT_EQ(at({-10.0, 80.0}), MapBaseLayer::seaColour) << "the Indian Ocean";
    EXPECT_TRUE(MapBaseLayer::mercatorWorld(QStringLiteral("/nonexistent.png"), 64).isNull());
}

} // namespace
