// The source's order, its filters and the predicate engine, on folders built in memory.

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "selection/PicSource.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

const Instant noon = Instant::fromUtc(2024, 5, 1, 12);

MySinglePic *addPic(MySingleFolder &folder, const char *name, OptionalDate date, int type = SpTypeExifOriginal)
{
    return folder.adoptPic(std::make_unique<MySinglePic>(QLatin1String(name), &folder, type, date));
}

QStringList names(const QList<MySinglePic *> &pics)
{
    QStringList list;
    for (const MySinglePic *pic : pics)
        list.append(pic->spName + QLatin1Char('@') + pic->spSingleFolder->sfFolderPath.section(u'/', -1));
    return list;
}

TEST(PicSourceTest, EqualSecondsSortByNumericNameThenFolderPosition)
{
    MySingleFolder camera(QStringLiteral("/trip/camera"), false);
    MySingleFolder phone(QStringLiteral("/trip/phone"), false);
    camera.folderSortGeneral = 1;
    phone.folderSortGeneral = 0;
    addPic(camera, "IMG_10.JPG", noon.addingSeconds(0.7)); // a fraction does not decide
    addPic(camera, "IMG_2.JPG", noon);
    addPic(phone, "IMG_2.JPG", noon.addingSeconds(0.2));
    addPic(phone, "early.jpg", noon.addingSeconds(-1));
    addPic(phone, "undated.jpg", std::nullopt);

    PicSource source;
    source.setFolders({&camera, &phone});
    source.buildNewSourceUsingOptimizedRefilterOnly(false);
    EXPECT_EQ(names(source.source_full()),
              QStringList({"undated.jpg@phone", "early.jpg@phone", "IMG_2.JPG@phone", "IMG_2.JPG@camera",
                           "IMG_10.JPG@camera"}));
    for (qsizetype i = 0; i < source.source_full().size(); ++i) {
        EXPECT_EQ(source.source_full().at(i)->indexInSource_full, i);
        EXPECT_EQ(source.source_full().at(i)->indexInSource_filtered, i);
    }
    // Positions within each folder follow the timeline.
    EXPECT_EQ(camera.sfPicDetails_fullArray.at(1)->indexInFolder_full, 0); // IMG_2 of the camera
    EXPECT_EQ(camera.sfPicDetails_fullArray.at(0)->indexInFolder_full, 1);
}

TEST(PicSourceTest, FilterChangeNeverSortsAndCountsWhatItKeepsAway)
{
    MySingleFolder folder(QStringLiteral("/trip/camera"), false);
    MySinglePic *a = addPic(folder, "a.jpg", noon);
    MySinglePic *b = addPic(folder, "b.jpg", noon.addingSeconds(10));
    MySinglePic *c = addPic(folder, "c.mov", noon.addingSeconds(20), SpTypeMvhdCreation);
    b->isRejected = true;
    b->isKeeper = true; // a rejected keeper counts as rejected

    PicSource source;
    source.setFolders({&folder});
    source.buildNewSourceUsingOptimizedRefilterOnly(false);
    ASSERT_EQ(source.sortCount(), 1);

    source.setPredicate(FilterPredicate::parse(QStringLiteral("filter_rating !=[cd] -1")));
    EXPECT_TRUE(source.buildNewSourceUsingOptimizedRefilterOnly(true));
    EXPECT_EQ(source.sortCount(), 1);
    EXPECT_EQ(source.source_filtered(), QList<MySinglePic *>({a, c}));
    EXPECT_EQ(source.filteredImagesCount(), 1);
    EXPECT_EQ(b->indexInSource_filtered, -1);
    EXPECT_EQ(c->indexInSource_filtered, 1);
    EXPECT_EQ(b->indexInSource_full, 1);

    source.setPredicate(FilterPredicate::parse(QStringLiteral("filter_mediaType ==[cd] 1")));
    source.buildNewSourceUsingOptimizedRefilterOnly(true);
    EXPECT_EQ(source.source_filtered(), QList<MySinglePic *>({a, b}));

    // Shelf items leave the filtered source without counting as filtered away.
    source.setPredicate(std::nullopt);
    source.setShelfPics({a});
    source.buildNewSourceUsingOptimizedRefilterOnly(true);
    EXPECT_EQ(source.source_filtered(), QList<MySinglePic *>({b, c}));
    EXPECT_EQ(source.filteredImagesCount(), 0);
    EXPECT_EQ(source.sortCount(), 1);
}

TEST(PicSourceTest, PredicateEngine)
{
    MySingleFolder folder(QStringLiteral("/trip/camera"), false);
    MySinglePic *pic = addPic(folder, "a.jpg", noon);
    pic->pivMakeModel = QStringLiteral("Café Cam X100");
    pic->isKeeper = true;
    const auto holds = [pic](const char *text) {
        const auto predicate = FilterPredicate::parse(QString::fromUtf8(text));
        EXPECT_TRUE(predicate) << text;
        return predicate && predicate->evaluate(*pic);
    };
    EXPECT_TRUE(holds("filter_rating ==[cd] 1"));
    EXPECT_FALSE(holds("filter_rating != 1"));
    EXPECT_TRUE(holds("filter_pivMakeModel CONTAINS[cd] 'cafe cam'"));
    EXPECT_FALSE(holds("filter_pivMakeModel CONTAINS 'cafe cam'"));
    EXPECT_TRUE(holds("filter_pivMakeModel BEGINSWITH \"Café\" AND NOT (filter_mediaType == 2)"));
    EXPECT_TRUE(holds("filter_mediaType == 2 OR filter_miscState_1 == YES"));
    EXPECT_TRUE(holds("filter_miscState == 1"));
    folder.sfDateModificationsTimeInterval = 3600; // unsaved: state 6 outranks rated
    EXPECT_TRUE(holds("filter_miscState ==[cd] 6 && filter_miscState_6 == TRUE"));

    QString error;
    EXPECT_FALSE(FilterPredicate::parse(QStringLiteral("filter_colour == 1"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("filter_colour")));
    EXPECT_FALSE(FilterPredicate::parse(QStringLiteral("(filter_rating == 1"), &error));
    EXPECT_FALSE(FilterPredicate::parse(QStringLiteral("filter_rating =="), &error));
}

} // namespace
