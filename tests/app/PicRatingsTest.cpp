// Ratings of imported items: one undo step per user event, groups rated as one, the folders'
// counts in step, and the rating filters letting through what they name.

#include "app/DateChanges.h"
#include "app/PicRatings.h"
#include "folders/ImportFixture.h"
#include "selection/PicSource.h"
#include "support/Corpus.h"

#include <QUndoStack>

namespace orv::test {
namespace {

class PicRatingsTest : public ImportFixture
{
protected:
    // Two folders: "trip" with a RAW+JPEG group and four photos, "home" with two photos.
    void importTwoFolders()
    {
        const QString dir = folder(QStringLiteral("trip"));
        ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr2")), dir + QStringLiteral("/IMG_1.CR2")));
        photo(QStringLiteral("trip"), QStringLiteral("IMG_1"), "2024:05:01 11:00:00");
        for (int i = 2; i <= 5; ++i)
            photo(QStringLiteral("trip"), QStringLiteral("IMG_%1").arg(i), "2024:05:01 12:00:00");
        photo(QStringLiteral("home"), QStringLiteral("H1"));
        photo(QStringLiteral("home"), QStringLiteral("H2"));
        importAndWait({dir, folder(QStringLiteral("home"))});
        for (MySingleFolder *f : driver.droppedFolders())
            (f->sfPicDetails_fullArray.size() == 2 ? home : trip) = f;
        ASSERT_TRUE(trip && home);
        for (MySinglePic *pic : trip->sfPicDetails_fullArray)
            (pic->bundleDependentImage ? raw : tripPics.emplace_back()) = pic;
        ASSERT_TRUE(raw) << "the RAW and its JPEG form a group";
        ASSERT_EQ(tripPics.size(), 4);
    }

    // keepers and rejects of trip, then of home.
    QList<int> counts() const { return {trip->keepers, trip->rejects, home->keepers, home->rejects}; }
    // What the folders' own recount finds must be what the ratings kept.
    void expectCountsAsRecounted()
    {
        const QList<int> kept = counts();
        trip->recountKeepersAndRejects();
        home->recountKeepersAndRejects();
        EXPECT_EQ(counts(), kept);
    }

    QUndoStack stack;
    DateChanges changes{stack, {}};
    QList<QList<MySinglePic *>> announced;
    PicRatings ratings{stack, changes, [this](const QList<MySinglePic *> &pics) { announced.append(pics); }};
    MySingleFolder *trip = nullptr, *home = nullptr;
    MySinglePic *raw = nullptr;
    QList<MySinglePic *> tripPics;
};

TEST_F(PicRatingsTest, RatingsKeepFolderCountsInStepThroughUndoAndRedo)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importTwoFolders();
    MySinglePic *h1 = home->sfPicDetails_fullArray[0];

    // Two keepers of five selected items: the count grows by three, and one step is recorded.
    ratings.setRating({tripPics[0], tripPics[1]}, PicRating::Keeper);
    ASSERT_EQ(counts(), (QList<int>{2, 0, 0, 0}));
    const QList<MySinglePic *> changed =
        ratings.setRating({tripPics[0], tripPics[1], tripPics[2], tripPics[3], h1}, PicRating::Keeper);
    EXPECT_EQ(changed, (QList<MySinglePic *>{tripPics[2], tripPics[3], h1}));
    EXPECT_EQ(counts(), (QList<int>{4, 0, 1, 0}));
    EXPECT_EQ(stack.count(), 2);

    // A keeper rated as reject stops being a keeper: both counts move.
    ratings.setRating({tripPics[0]}, PicRating::Rejected);
    EXPECT_TRUE(tripPics[0]->isRejected);
    EXPECT_FALSE(tripPics[0]->isKeeper);
    EXPECT_EQ(counts(), (QList<int>{3, 1, 1, 0}));
    expectCountsAsRecounted();

    // The key never clears what an item has; neutral on unrated items changes nothing.
    EXPECT_TRUE(ratings.setRating({tripPics[1]}, PicRating::Keeper).isEmpty());
    EXPECT_TRUE(ratings.setRating({home->sfPicDetails_fullArray[1]}, PicRating::Neutral).isEmpty());
    EXPECT_EQ(stack.count(), 3);

    // A click on the marker toggles.
    EXPECT_EQ(ratings.toggle(*tripPics[1], PicRating::Keeper), PicRating::Neutral);
    EXPECT_EQ(ratings.toggle(*tripPics[1], PicRating::Rejected), PicRating::Rejected);
    EXPECT_EQ(counts(), (QList<int>{2, 2, 1, 0}));

    // Undo walks back step by step, redo forward, the counts following each time.
    stack.undo();
    stack.undo();
    EXPECT_EQ(counts(), (QList<int>{3, 1, 1, 0}));
    stack.undo();
    EXPECT_EQ(counts(), (QList<int>{4, 0, 1, 0}));
    EXPECT_TRUE(tripPics[0]->isKeeper);
    stack.undo();
    stack.undo();
    EXPECT_EQ(counts(), (QList<int>{0, 0, 0, 0}));
    stack.redo();
    stack.redo();
    stack.redo();
    EXPECT_EQ(counts(), (QList<int>{3, 1, 1, 0}));
    expectCountsAsRecounted();
    // Every apply, undo and redo told its items.
    EXPECT_EQ(announced.size(), 13);
    EXPECT_EQ(announced.last(), QList<MySinglePic *>{tripPics[0]});
}

TEST_F(PicRatingsTest, AGroupIsRatedAsOneAndFiltersFollow)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importTwoFolders();
    MySinglePic *jpeg = raw->bundleDependentImage;

    // Chosen by either of its files, the group counts once, on its master.
    EXPECT_EQ(ratings.setRating({jpeg, raw}, PicRating::Keeper), QList<MySinglePic *>{raw});
    EXPECT_TRUE(raw->isKeeper);
    EXPECT_FALSE(jpeg->isKeeper);
    EXPECT_EQ(ratingOf(*jpeg), PicRating::Keeper);
    EXPECT_EQ(trip->keepers, 1);
    ratings.setRating({tripPics[0]}, PicRating::Rejected);
    ratings.setRating({tripPics[1]}, PicRating::Keeper);

    PicSource source;
    source.setFolders({trip});
    auto filtered = [&source](const char *predicate) {
        source.setPredicate(FilterPredicate::parse(QString::fromLatin1(predicate)));
        source.buildNewSourceUsingOptimizedRefilterOnly(false);
        QSet<MySinglePic *> pics(source.source_filtered().cbegin(), source.source_filtered().cend());
        return pics;
    };
    // The default filters "Keepers" and "Not rejected".
    EXPECT_EQ(filtered("filter_rating ==[cd] 1"), (QSet<MySinglePic *>{raw, tripPics[1]}));
    EXPECT_EQ(filtered("filter_rating !=[cd] -1"), (QSet<MySinglePic *>{raw, tripPics[1], tripPics[2], tripPics[3]}));

    // Undoing the group's rating lets it leave the keepers at the next refilter.
    stack.undo();
    stack.undo();
    stack.undo();
    EXPECT_EQ(filtered("filter_rating ==[cd] 1"), QSet<MySinglePic *>{});
    EXPECT_EQ(trip->keepers, 0);
    stack.redo();
    EXPECT_EQ(filtered("filter_rating ==[cd] 1"), QSet<MySinglePic *>{raw});
}

TEST_F(PicRatingsTest, NothingIsRatedWhileASaveRuns)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importTwoFolders();
    changes.setBlocked(true);
    EXPECT_TRUE(ratings.setRating({tripPics[0]}, PicRating::Keeper).isEmpty());
    EXPECT_FALSE(tripPics[0]->isKeeper);
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
} // namespace orv::test
