// The sidebar's categories and the quick selection menu over imported copies of corpus files:
// counts as exiftool reads the files, kept in step through ratings, undo, redo, date changes and
// removals, the filter a chosen category makes, and what each menu entry selects.

#include "app/DateChanges.h"
#include "app/PicRatings.h"
#include "folders/ImportFixture.h"
#include "selection/MySidebarController.h"
#include "selection/PicSource.h"
#include "selection/QuickSelections.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "time/TimeZone.h"

#include <QUndoStack>

#include <map>
#include <set>

namespace orv::test {
namespace {

// Counts of the rows under a heading, by key.
std::map<QString, qsizetype> countsUnder(const MySidebarController &sidebar, const QString &heading)
{
    std::map<QString, qsizetype> counts;
    if (const MyFiltersItem *group = sidebar.rowForKey(heading))
        for (const MyFiltersItem &row : group->children)
            counts[row.key] = row.pics.size();
    return counts;
}

qsizetype countOf(const MySidebarController &sidebar, const QString &key)
{
    const MyFiltersItem *row = sidebar.rowForKey(key);
    return row ? row->pics.size() : -1;
}

const QuickSelectionEntry *entryNamed(const QList<QuickSelectionEntry> &entries, const QString &key)
{
    for (const QuickSelectionEntry &entry : entries) {
        if (entry.key == key)
            return &entry;
        if (const QuickSelectionEntry *child = entryNamed(entry.children, key))
            return child;
    }
    return nullptr;
}

class QuickSelectionsTest : public ImportFixture
{
protected:
    // Six photos of five cameras and four years (two copies of one), a PNG without camera and a
    // movie, copied from the corpus into one folder.
    void importCorpusCopies()
    {
        const QString dir = folder(QStringLiteral("trip"));
        const QStringList names = {QStringLiteral("Canon.jpg"), QStringLiteral("Casio.jpg"), QStringLiteral("FujiFilm.jpg"),
                                   QStringLiteral("GPS.jpg"),   QStringLiteral("Apple.jpg"), QStringLiteral("PNG.png"),
                                   QStringLiteral("QuickTime.mov")};
        for (const QString &name : names) {
            ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/") + name), dir + QLatin1Char('/') + name));
            files.append(dir + QLatin1Char('/') + name);
        }
        ASSERT_TRUE(QFile::copy(corpusFile(QStringLiteral("exiftool-t/Canon.jpg")), dir + QStringLiteral("/Canon_2.jpg")));
        files.append(dir + QStringLiteral("/Canon_2.jpg"));
        importAndWait({dir});
        ASSERT_EQ(driver.droppedFolders().size(), 1);
        trip = driver.droppedFolders().first();
        source.setFolders({trip});
        source.buildNewSourceUsingOptimizedRefilterOnly(false);
        ASSERT_EQ(source.source_full().size(), files.size());
        sidebar.didChangeSource(source.source_full());
        sidebar.fullRefresh();
    }

    MySinglePic *named(const QString &name) const
    {
        for (MySinglePic *pic : source.source_full())
            if (pic->spName == name)
                return pic;
        return nullptr;
    }

    // The ratings' counts: keepers, neutrals, rejects (-1 for a row not shown).
    QList<qsizetype> ratingCounts()
    {
        sidebar.fullRefresh();
        return {countOf(sidebar, QStringLiteral("rating/keepers")), countOf(sidebar, QStringLiteral("rating/neutrals")),
                countOf(sidebar, QStringLiteral("rating/rejects"))};
    }

    QList<MySinglePic *> filteredBy(const QStringList &keys)
    {
        sidebar.setSelectedKeys(keys);
        sidebar.fullRefresh();
        source.setSelectedPicsToFilter(sidebar.selectedPicsToFilter());
        source.buildNewSourceUsingOptimizedRefilterOnly(true);
        return source.source_filtered();
    }

    QStringList files;
    MySingleFolder *trip = nullptr;
    PicSource source;
    MySidebarController sidebar;
    QUndoStack stack;
    DateChanges changes{stack, {}};
    PicRatings ratings{stack, changes, [this](const QList<MySinglePic *> &pics) { sidebar.sourceRelevantChangeWasMade(pics); }};
};

TEST_F(QuickSelectionsTest, CategoriesCountWhatTheFilesHoldAndFollowRatingsUndoRedoAndDates)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importCorpusCopies();

    // Cameras and years as exiftool reads the files: one row per make and model, the files
    // without a model together.
    std::map<QString, qsizetype> byCamera, byYear;
    for (const auto &[path, tags] : exiftoolTagsOfFiles(files)) {
        const QString model = tags.string(QStringLiteral("EXIF:Model"));
        ++byCamera[model.isEmpty() ? QString() : tags.string(QStringLiteral("EXIF:Make")) + QLatin1Char('|') + model];
        QString stamp = tags.string(QStringLiteral("EXIF:DateTimeOriginal"));
        if (stamp.isEmpty())
            stamp = tags.string(QStringLiteral("QuickTime:CreateDate"));
        if (!stamp.isEmpty())
            ++byYear[QStringLiteral("time/") + stamp.left(4)];
    }
    std::multiset<qsizetype> expectedCameraCounts, cameraCounts;
    for (const auto &[camera, count] : byCamera)
        expectedCameraCounts.insert(count);
    for (const auto &[key, count] : countsUnder(sidebar, QStringLiteral("cameras")))
        cameraCounts.insert(count);
    EXPECT_EQ(cameraCounts, expectedCameraCounts);
    EXPECT_EQ(countOf(sidebar, QStringLiteral("camera/-")), qsizetype(byCamera[QString()]));
    for (const auto &[year, count] : byYear)
        EXPECT_EQ(countOf(sidebar, year), count) << year.toStdString();
    EXPECT_EQ(countOf(sidebar, QStringLiteral("noFilter")), files.size());
    EXPECT_EQ(countOf(sidebar, QStringLiteral("type/quickSelections_typePic/JPG")), 6);
    EXPECT_EQ(countOf(sidebar, QStringLiteral("type/quickSelections_typePic/PNG")), 1);
    EXPECT_EQ(countOf(sidebar, QStringLiteral("type/quickSelections_typeMov")), 1);
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{-1, 8, -1}));

    // Ratings, one undo step each, move items between the rows; undo and redo move them back.
    MySinglePic *canon = named(QStringLiteral("Canon.jpg")), *casio = named(QStringLiteral("Casio.jpg")),
                *movie = named(QStringLiteral("QuickTime.mov"));
    ratings.setRating({canon, casio}, PicRating::Keeper);
    ratings.setRating({movie}, PicRating::Rejected);
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{2, 5, 1}));
    ratings.setRating({casio}, PicRating::Rejected);
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{1, 5, 2}));
    stack.undo();
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{2, 5, 1}));
    stack.undo();
    stack.undo();
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{-1, 8, -1}));
    stack.redo();
    stack.redo();
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{2, 5, 1}));

    // A date change moves the items to other years at the next refresh: a year and a day later.
    const std::map<QString, qsizetype> yearsBefore = countsUnder(sidebar, QStringLiteral("times"));
    ASSERT_EQ(changes.dragChangedDatesWithDiff({trip}, 366 * 86400.0), DateChangeResult::Changed);
    sidebar.fullRefresh();
    std::map<QString, qsizetype> shifted;
    for (const auto &[key, count] : yearsBefore)
        shifted[QStringLiteral("time/%1").arg(key.mid(5).toInt() + 1)] = count;
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("times")), shifted);
    stack.undo();
    sidebar.fullRefresh();
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("times")), yearsBefore);
    EXPECT_EQ(ratingCounts(), (QList<qsizetype>{2, 5, 1})) << "a date's undo leaves the ratings";
}

TEST_F(QuickSelectionsTest, ChosenCategoriesFilterTheSourceAndFollowRatingsAndRemovals)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importCorpusCopies();
    MySinglePic *canon = named(QStringLiteral("Canon.jpg")), *canon2 = named(QStringLiteral("Canon_2.jpg")),
                *apple = named(QStringLiteral("Apple.jpg")), *png = named(QStringLiteral("PNG.png"));
    ratings.setRating({canon, apple}, PicRating::Keeper);

    // Keepers, in the source's order; with a predicate as well only what both let through.
    EXPECT_EQ(filteredBy({QStringLiteral("rating/keepers")}),
              (canon->indexInSource_full < apple->indexInSource_full ? QList<MySinglePic *>{canon, apple}
                                                                     : QList<MySinglePic *>{apple, canon}));
    const QString canonKey = QStringLiteral("camera/") + canon->pivMakeModel;
    EXPECT_EQ(filteredBy({QStringLiteral("rating/keepers"), canonKey}).size(), 3) << "rows together: their union";
    source.setPredicate(FilterPredicate::parse(QStringLiteral("filter_rating ==[cd] 1")));
    EXPECT_EQ(filteredBy({canonKey}), QList<MySinglePic *>{canon});
    source.setPredicate(std::nullopt);

    // Rating the last keeper away keeps the row chosen and shows nothing, not everything.
    filteredBy({QStringLiteral("rating/keepers")});
    ratings.setRating({canon, apple}, PicRating::Neutral);
    EXPECT_TRUE(filteredBy(sidebar.selectedKeys()).isEmpty());
    EXPECT_EQ(countOf(sidebar, QStringLiteral("rating/keepers")), 0);
    EXPECT_EQ(source.filteredImagesCount(), files.size());

    // The headings and "all" filter nothing.
    EXPECT_EQ(filteredBy({QStringLiteral("noFilter"), QStringLiteral("cameras")}).size(), files.size());

    // Items leaving the working set leave their rows, read no more; a camera row that empties
    // is chosen no more.
    filteredBy({canonKey});
    QList<MySinglePic *> remaining = source.source_full();
    remaining.removeOne(canon);
    remaining.removeOne(canon2);
    remaining.removeOne(png);
    sidebar.didChangeSource(remaining);
    sidebar.fullRefresh();
    EXPECT_EQ(countOf(sidebar, QStringLiteral("noFilter")), files.size() - 3);
    EXPECT_EQ(countOf(sidebar, canonKey), -1);
    EXPECT_EQ(countOf(sidebar, QStringLiteral("type/quickSelections_typePic/PNG")), -1);
    EXPECT_FALSE(sidebar.selectedPicsToFilter().has_value());
    // They come back (an undone removal) under the same rows.
    sidebar.didChangeSource(source.source_full());
    sidebar.fullRefresh();
    EXPECT_EQ(countOf(sidebar, canonKey), 2);
    EXPECT_EQ(countOf(sidebar, QStringLiteral("noFilter")), files.size());
}

TEST_F(QuickSelectionsTest, MenuEntriesSelectTheirItemsWithinTheLimitsOfTheFolderMode)
{
    ORV_SKIP_WITHOUT_CORPUS();
    importCorpusCopies();
    MySinglePic *canon = named(QStringLiteral("Canon.jpg")), *canon2 = named(QStringLiteral("Canon_2.jpg")),
                *movie = named(QStringLiteral("QuickTime.mov")), *gps = named(QStringLiteral("GPS.jpg"));
    ratings.setRating({canon2, canon}, PicRating::Keeper);
    ratings.setRating({movie}, PicRating::Rejected);

    // Thumbnails: GPS.jpg's own 120 by 80, the movie none, the others square.
    const auto thumbSize = [&](const MySinglePic &pic) {
        if (&pic == movie)
            return QSizeF();
        return &pic == gps ? QSizeF(120, 80) : QSizeF(8, 8);
    };
    const QList<QuickSelectionEntry> menu = QuickSelections::quickSelectionsUpdateMainMenu(source.source_full(), thumbSize);
    QStringList keys;
    for (const QuickSelectionEntry &entry : menu)
        keys.append(entry.key);
    EXPECT_EQ(keys, (QStringList{QStringLiteral("quickSelections_keepers"), QStringLiteral("quickSelections_neutrals"),
                                 QStringLiteral("quickSelections_rejects"), QStringLiteral("quickSelections_camera"),
                                 QStringLiteral("quickSelections_lens"), QStringLiteral("quickSelections_fileType"), QStringLiteral("quickSelections_orientation"),
                                 QStringLiteral("quickSelections_datesource"), QStringLiteral("quickSelections_gps")}))
        << "entries without items are left out";

    const QuickSelectionEntry *keepers = entryNamed(menu, QStringLiteral("quickSelections_keepers"));
    ASSERT_TRUE(keepers);
    EXPECT_EQ(QSet<MySinglePic *>(keepers->pics.cbegin(), keepers->pics.cend()), (QSet<MySinglePic *>{canon, canon2}));
    EXPECT_EQ(keepers->title(), QStringLiteral("Keepers (2)"));
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_rejects"))->pics, QList<MySinglePic *>{movie});
    const QuickSelectionEntry *sameCamera = entryNamed(menu, QStringLiteral("quickSelections_camera/") + canon->pivMakeModel);
    ASSERT_TRUE(sameCamera);
    EXPECT_EQ(sameCamera->pics.size(), 2);
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_orientationLandscape"))->pics, QList<MySinglePic *>{gps});
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_orientationUnknown"))->pics, QList<MySinglePic *>{movie});
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_orientationAlmostSquare"))->pics.size(), files.size() - 2);
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_all_type_1"))->pics.size(), 7);
    EXPECT_EQ(entryNamed(menu, QStringLiteral("quickSelections_typeMov/MOV"))->pics, QList<MySinglePic *>{movie});
    // With a location: the files exiftool finds a place in.
    QStringList placed;
    for (const auto &[path, tags] : exiftoolTagsOfFiles(files))
        if (tags.has(QStringLiteral("Composite:GPSLatitude")))
            placed.append(QFileInfo(path).fileName());
    QStringList withLocation;
    for (const MySinglePic *pic : entryNamed(menu, QStringLiteral("quickSelections_gps"))->pics)
        withLocation.append(pic->spName);
    placed.sort();
    withLocation.sort();
    EXPECT_FALSE(placed.isEmpty());
    EXPECT_EQ(withLocation, placed);

    // One item always; several only in separate mode, or by switching a folder without unsaved
    // date changes; never while blocked.
    using P = QuickSelections::Possibility;
    ASSERT_EQ(trip->sfEditMode, MySingleFolder::EditTogether);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible({canon}, false), P::Possible);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible(keepers->pics, false), P::WithModeChange);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible(keepers->pics, true), P::Impossible);
    ASSERT_EQ(changes.dragChangedDatesWithDiff({trip}, 60), DateChangeResult::Changed);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible(keepers->pics, false), P::Impossible);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible({canon}, false), P::Possible);
    changes.changeEditMode({trip}, MySingleFolder::EditSeparately);
    EXPECT_EQ(QuickSelections::isQuickSelectionPossible(keepers->pics, false), P::Possible);
}

// One camera model in two bodies (and a file naming no body), two lenses, one of them with its
// serial: the sidebar's camera, lens and settings rows and the menu's camera and lens entries.
TEST_F(QuickSelectionsTest, CamerasLensesAndSettingsAreSortedBySerialLensAndValue)
{
    using namespace Qt::StringLiterals;
    const auto shot = [](const char *body, const char *lens, const char *lensSerial, Rational f, Rational focal,
                         Rational exposure, quint32 iso, Rational zoom) {
        TiffShape tags = TiffShape::camera("2024:05:01 10:00:00");
        tags.make = "Canon";
        tags.model = "Canon EOS R6";
        ShotShape settings{.exposureTime = exposure, .fNumber = f, .isoSpeedRatings = {iso}, .focalLength = focal,
                           .digitalZoomRatio = zoom};
        if (*body)
            settings.bodySerial = body;
        if (*lens) {
            settings.lensMake = "Canon";
            settings.lensModel = lens;
        }
        if (*lensSerial)
            settings.lensSerial = lensSerial;
        tags.shot = settings;
        return buildJpeg({.exif = tags}).bytes;
    };
    const QString dir = folder(QStringLiteral("bodies"));
    const std::pair<const char *, QByteArray> photos[] = {
        {"a", shot("111", "RF24-105mm F4 L IS USM", "L1", {4, 1}, {105, 1}, {1, 250}, 100, {0, 1})},
        {"b", shot("222", "RF24-105mm F4 L IS USM", "L1", {4, 1}, {24, 1}, {1, 250}, 400, {1, 1})},
        {"c", shot("222", "RF50mm F1.8 STM", "0000000000", {18, 10}, {50, 1}, {1, 60}, 400, {2, 1})},
        {"d", shot("", "", "", {0, 0}, {0, 0}, {0, 0}, 0, {0, 0})},
    };
    for (const auto &[name, bytes] : photos) {
        QFile file(dir + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".jpg"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    importAndWait({dir});
    source.setFolders({driver.droppedFolders().first()});
    source.buildNewSourceUsingOptimizedRefilterOnly(false);
    sidebar.didChangeSource(source.source_full());
    sidebar.fullRefresh();

    const QChar sub(0x1F);
    const QString r6 = QStringLiteral("camera/Canon EOS R6");
    const QString zoomLens = QStringLiteral("lens/Canon RF24-105mm F4 L IS USM"), primeLens = QStringLiteral("lens/Canon RF50mm F1.8 STM");
    using Counts = std::map<QString, qsizetype>;
    EXPECT_EQ(countsUnder(sidebar, r6), (Counts{{r6 + sub + u"111"_s, 1}, {r6 + sub + u"222"_s, 2}, {r6 + sub + u"-"_s, 1}}));
    EXPECT_EQ(sidebar.rowForKey(r6 + sub + u"-"_s)->title, QStringLiteral("No Serial Number"));
    EXPECT_EQ(sidebar.rowForKey(r6 + sub + u"111"_s)->title, QStringLiteral("111"));
    EXPECT_EQ(countsUnder(sidebar, QStringLiteral("lenses")),
              (Counts{{zoomLens, 2}, {primeLens, 1}, {QStringLiteral("lens/-"), 1}}));
    EXPECT_EQ(countsUnder(sidebar, zoomLens), (Counts{{zoomLens + sub + u"L1"_s, 2}}));
    EXPECT_TRUE(sidebar.rowForKey(primeLens)->children.isEmpty()) << "a lens whose files name no serial but zeros";

    // Each setting with its values in the order of their numbers; a zoom of 0 or 1 and an ISO of
    // 0 are left out, and so is a 0/0 the file wrote for "unknown".
    const auto values = [&](int setting) {
        QStringList titles;
        for (const MyFiltersItem &row : sidebar.rowForKey(QStringLiteral("setting/%1").arg(setting))->children)
            titles.append(row.title + u':' + QString::number(row.pics.size()));
        return titles;
    };
    EXPECT_EQ(values(1), (QStringList{u"f/1.8:1"_s, u"f/4.0:2"_s}));
    EXPECT_EQ(values(2), (QStringList{u"24.0 mm:1"_s, u"50.0 mm:1"_s, u"105.0 mm:1"_s}));
    EXPECT_EQ(values(3), (QStringList{u"1/250 s:2"_s, u"1/60 s:1"_s}));
    EXPECT_EQ(values(4), (QStringList{QStringLiteral("2\u00D7:1")}));
    EXPECT_EQ(values(5), (QStringList{u"100:1"_s, u"400:2"_s}));

    // Rows chosen together filter their union.
    EXPECT_EQ(filteredBy({zoomLens + sub + u"L1"_s, QStringLiteral("setting/1") + sub + u"1.8"_s}).size(), 3);
    EXPECT_EQ(filteredBy({r6 + sub + u"-"_s}).size(), 1);

    // The menu: the bodies by serial, "no serial number" beside them; the lenses.
    const QList<QuickSelectionEntry> menu =
        QuickSelections::quickSelectionsUpdateMainMenu(source.source_full(), [](const MySinglePic &) { return QSizeF(); });
    const auto titles = [&menu](const QString &key) {
        QStringList titles;
        for (const QuickSelectionEntry &entry : entryNamed(menu, key)->children)
            titles.append(entry.title());
        titles.sort();
        return titles;
    };
    EXPECT_EQ(titles(u"quickSelections_camera"_s),
              (QStringList{u"Canon EOS R6, No Serial Number (1)"_s, u"Canon EOS R6, Serial Number 111 (1)"_s,
                           u"Canon EOS R6, Serial Number 222 (2)"_s}));
    EXPECT_EQ(titles(u"quickSelections_lens"_s),
              (QStringList{u"Canon RF24-105mm F4 L IS USM, Serial Number L1 (2)"_s, u"Canon RF50mm F1.8 STM (1)"_s,
                           u"No Lens (1)"_s}));
}

TEST(SidebarYearsTest, AYearIsThatOfTheSidebarsZoneAroundNewYear)
{
    // One moment in the last hours of 2023 in UTC, one in the first of 2024, one mid-year.
    MySinglePic lateInUtcYear(QStringLiteral("a.jpg"), nullptr, SpTypeExifOriginal, Instant::fromUtc(2023, 12, 31, 20, 0, 0));
    MySinglePic earlyInUtcYear(QStringLiteral("b.jpg"), nullptr, SpTypeExifOriginal, Instant::fromUtc(2024, 1, 1, 3, 0, 0));
    MySinglePic midYear(QStringLiteral("c.jpg"), nullptr, SpTypeExifOriginal, Instant::fromUtc(2024, 6, 1, 12, 0, 0));
    const QList<MySinglePic *> pics{&lateInUtcYear, &earlyInUtcYear, &midYear};
    const auto years = [&pics](const char *zone) {
        MySidebarController sidebar(*TimeZone::fromName(QLatin1String(zone)));
        sidebar.addFixedValuesFor(pics);
        sidebar.fullRefresh();
        std::map<QString, qsizetype> counts;
        for (const MyFiltersItem &row : sidebar.rowForKey(QStringLiteral("times"))->children)
            counts[row.title] = row.pics.size();
        return counts;
    };
    using Years = std::map<QString, qsizetype>;
    EXPECT_EQ(years("UTC"), (Years{{QStringLiteral("2023"), 1}, {QStringLiteral("2024"), 2}}));
    EXPECT_EQ(years("Pacific/Kiritimati"), (Years{{QStringLiteral("2024"), 3}})) << "14 hours ahead";
    EXPECT_EQ(years("America/Los_Angeles"), (Years{{QStringLiteral("2023"), 2}, {QStringLiteral("2024"), 1}}));
}

TEST(ThumbOrientationTest, SidesDecideTheOrientationWithATenthForAlmostSquare)
{
    EXPECT_EQ(thumbOrientationType(QSizeF(1000, 950)), ThumbOrientation::AlmostSquare);
    EXPECT_EQ(thumbOrientationType(QSizeF(1000, 900)), ThumbOrientation::Landscape);
    EXPECT_EQ(thumbOrientationType(QSizeF(900, 1000)), ThumbOrientation::Portrait);
    EXPECT_EQ(thumbOrientationType(QSizeF(0.5, 0.5)), ThumbOrientation::AlmostSquare) << "equal sides";
    EXPECT_EQ(thumbOrientationType(QSizeF(0.5, 0.52)), ThumbOrientation::Portrait) << "under 1: only equal is square";
    EXPECT_EQ(thumbOrientationType(QSizeF()), ThumbOrientation::Unknown);
}

} // namespace
} // namespace orv::test
