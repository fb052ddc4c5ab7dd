// The full-screen walk over ratings, the slide time's steps, and the screen-size image cache.

#include "core/MySinglePic.h"
#include "viewing/FullScreenSequence.h"
#include "viewing/ScreenPreviews.h"

#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace orv::test {
namespace {

class FullScreenSequenceTest : public ::testing::Test
{
protected:
    // k keeper, r reject, n neutral, in source order.
    void makeSource(const char *ratings)
    {
        QList<MySinglePic *> source;
        for (const char *c = ratings; *c; ++c) {
            auto &pic = pics.emplace_back(std::make_unique<MySinglePic>(QStringLiteral("%1.jpg").arg(pics.size()), nullptr, 0, OptionalDate()));
            pic->isKeeper = *c == 'k';
            pic->isRejected = *c == 'r';
            source.append(pic.get());
        }
        walk.setSource(source);
    }
    MySinglePic *at(int i) const { return pics.at(size_t(i)).get(); }

    std::vector<std::unique_ptr<MySinglePic>> pics;
    FullScreenSequence walk;
};

TEST_F(FullScreenSequenceTest, StepsThroughTheChosenRatingsAndLoopsOnlyWhenAsked)
{
    makeSource("knrkn");
    walk.setCurrent(at(0));
    EXPECT_EQ(walk.step(1, false), at(1));
    EXPECT_EQ(walk.slideCountText(), QStringLiteral("2 / 5"));
    walk.setSources({.keepers = true, .rejects = false, .neutrals = false});
    EXPECT_EQ(walk.walk(), (QList<MySinglePic *>{at(0), at(3)}));
    // An item outside the chosen ratings steps on from where it stands.
    EXPECT_EQ(walk.slideCountText(), QStringLiteral("– / 2"));
    EXPECT_EQ(walk.step(1, false), at(3));
    EXPECT_EQ(walk.peek(1, false), nullptr);   // the end, without looping
    EXPECT_EQ(walk.step(1, false), at(3));
    EXPECT_EQ(walk.step(1, true), at(0));      // a slideshow loops
    EXPECT_EQ(walk.step(-1, true), at(3));
    // A walk of one item goes nowhere, looping or not.
    walk.setSources({.keepers = false, .rejects = true, .neutrals = false});
    walk.setCurrent(at(2));
    EXPECT_EQ(walk.peek(1, true), nullptr);
    EXPECT_EQ(walk.walk().size(), 1);
}

TEST(FullScreenDurationTest, TheSlideTimeStepsBySizeAndStaysWithinItsBounds)
{
    EXPECT_EQ(FullScreenSequence::durationUp(5), 6);
    EXPECT_EQ(FullScreenSequence::durationUp(10), 15);
    EXPECT_EQ(FullScreenSequence::durationUp(60), 70);
    EXPECT_EQ(FullScreenSequence::durationUp(85), 90);
    EXPECT_EQ(FullScreenSequence::durationUp(90), 90);
    EXPECT_EQ(FullScreenSequence::durationDown(10), 9);
    EXPECT_EQ(FullScreenSequence::durationDown(15), 10);
    EXPECT_EQ(FullScreenSequence::durationDown(70), 60);
    EXPECT_EQ(FullScreenSequence::durationDown(1), 1);
}

TEST(MyFullScreenSimpleCacheTest, KeepsTheMostRecentlyUsedWithinItsCount)
{
    MyFullScreenSimpleCache cache(2);
    QImage a(4, 4, QImage::Format_RGB32), b(5, 5, QImage::Format_RGB32), c(6, 6, QImage::Format_RGB32);
    cache.setObject(a, QStringLiteral("a"));
    cache.setObject(b, QStringLiteral("b"));
    cache.setObject(c, QStringLiteral("a")); // already there: only moves to the front, keeps its image
    EXPECT_EQ(cache.objectForUniqueString(QStringLiteral("a")).size(), a.size());
    cache.setObject(c, QStringLiteral("c")); // pushes out b, the least recently used
    EXPECT_FALSE(cache.contains(QStringLiteral("b")));
    EXPECT_TRUE(cache.contains(QStringLiteral("a")));
    EXPECT_EQ(cache.count(), 2);
}

TEST(ScreenPreviewsTest, DecodesUprightAndWithinTheScreen)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("wide.jpg"));
    QImage photo(3000, 1000, QImage::Format_RGB32);
    photo.fill(Qt::darkGreen);
    ASSERT_TRUE(QImageWriter(path, "jpeg").write(photo));
    const QImage image = ScreenPreviews::decodeForScreen(path, QSize(1920, 1080));
    EXPECT_LE(image.width(), 1920);
    EXPECT_GE(image.width(), 1900);
    EXPECT_NEAR(double(image.width()) / image.height(), 3.0, 0.02);
    // Smaller than the screen: decoded as it is.
    EXPECT_EQ(ScreenPreviews::decodeForScreen(path, QSize(4000, 4000)).size(), photo.size());
    EXPECT_TRUE(ScreenPreviews::decodeForScreen(dir.filePath(QStringLiteral("none.jpg")), QSize(100, 100)).isNull());
}

} // namespace
} // namespace orv::test
