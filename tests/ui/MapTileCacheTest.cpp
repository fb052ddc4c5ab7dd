// Tiles from a local folder (a file:// template): a tile is asked for once and comes
// asynchronously; a file that is no image and a missing one make the cache say once that tiles
// are unavailable, while the good tile stays.

#include "ui/MapTileCache.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace orv;

TEST(MapTileCache, LocalTilesComeOnceAndBrokenOnesAreSaidOnce)
{
    QTemporaryDir tiles;
    ASSERT_TRUE(QDir(tiles.path()).mkpath(QStringLiteral("0/0")));
    ASSERT_TRUE(QDir(tiles.path()).mkpath(QStringLiteral("1/1")));
    QImage green(256, 256, QImage::Format_RGB32);
    green.fill(Qt::green);
    ASSERT_TRUE(green.save(tiles.filePath(QStringLiteral("0/0/0.png"))));
    QFile garbage(tiles.filePath(QStringLiteral("1/1/0.png")));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write("<html>rate limited</html>");
    garbage.close();

    MapTileCache cacheOfTiles(QUrl::fromLocalFile(tiles.path()).toString() + QStringLiteral("/{z}/{x}/{y}.png"));
    EXPECT_TRUE(MapTileCache::userAgent().startsWith(QStringLiteral("Orvelle/")));
    QSignalSpy arrived(&cacheOfTiles, &MapTileCache::tileArrived);
    QSignalSpy unavailable(&cacheOfTiles, &MapTileCache::unavailable);
    EXPECT_TRUE(cacheOfTiles.tile(0, 0, 0).isNull()) << "never waited for";
    EXPECT_TRUE(cacheOfTiles.tile(0, 0, 0).isNull());
    ASSERT_TRUE(arrived.wait(5000));
    const QPixmap tile = cacheOfTiles.tile(0, 0, 0);
    ASSERT_FALSE(tile.isNull());
    EXPECT_EQ(tile.toImage().pixel(100, 100), QColor(Qt::green).rgb());
    EXPECT_EQ(arrived.count(), 1) << "asked for once";
    EXPECT_FALSE(cacheOfTiles.isUnavailable());

    EXPECT_TRUE(cacheOfTiles.tile(1, 1, 0).isNull());
    EXPECT_TRUE(cacheOfTiles.tile(1, 0, 1).isNull()); // no such file
    ASSERT_TRUE(unavailable.wait(5000));
    QTest::qWait(200);
    EXPECT_EQ(unavailable.count(), 1) << "said once";
    EXPECT_TRUE(cacheOfTiles.isUnavailable());
    EXPECT_TRUE(cacheOfTiles.tile(1, 1, 0).isNull());
    EXPECT_FALSE(cacheOfTiles.tile(0, 0, 0).isNull()) << "the good tile stays";

    MapTileCache none{QString()};
    EXPECT_TRUE(none.tile(0, 0, 0).isNull());
}
