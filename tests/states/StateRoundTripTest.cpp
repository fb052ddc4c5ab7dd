// A working set written to a state and read back is the same working set: the same bytes when
// written again, and the same bytes in the files when saved.

#include "WorkingSet.h"

#include "core/MySinglePic.h"
#include "core/NewDateOptions.h"
#include "folders/MySingleFolder.h"
#include "states/SavedFolders.h"
#include "support/Corpus.h"
#include "support/SaveFixture.h"

#include <QDirIterator>
#include <QFile>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

// Two folders of corpus copies: photos with and without GPS, a Live Photo, a photo with an
// XMP sidecar, PNG, HEIC and QuickTime movies.
const QStringList firstFolder = {u"exiftool-t/Canon.jpg"_s, u"Lychee/tests/Samples/train.jpg"_s,
                                 u"Lychee/tests/Samples/train.mov"_s, u"exiftool-t/Pentax.jpg"_s,
                                 u"exiftool-t/QuickTime.mov"_s, u"exifr/test/fixtures/sidecar/IMG_5910.jpg"_s,
                                 u"exifr/test/fixtures/sidecar/IMG_5910.xmp"_s};
const QStringList secondFolder = {u"exiftool-t/Nikon.jpg"_s, u"exiftool-t/Apple.jpg"_s, u"exiftool-t/PNG.png"_s,
                                  u"exiftool-t/QuickTime.heic"_s, u"metadata-extractor-images/mp4/with-gps.mp4"_s,
                                  u"exiftool-t/MWG.jpg"_s};
const Instant copiedFileTime = Instant::fromUtc(2020, 1, 2, 3, 4, 5);
const Instant saveTime = Instant::fromUtc(2025, 6, 1, 12);

// The copies of one working set, dated alike so that two sets read the same file dates.
QStringList copyFolders(const QTemporaryDir &root)
{
    QStringList dirs;
    for (const auto &[name, files] : {std::pair{u"one"_s, firstFolder}, std::pair{u"two"_s, secondFolder}}) {
        const QString dir = root.filePath(name);
        QDir().mkpath(dir);
        for (const QString &file : files) {
            const QString copy = QDir(dir).filePath(QFileInfo(file).fileName());
            QFile::copy(corpusFile(file), copy);
            QFile(copy).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
            setModificationTime(copy, copiedFileTime);
        }
        dirs.append(dir);
    }
    return dirs;
}

// The corpus file a copy ("one/Canon.jpg") was made from.
QString originalOf(const QString &copy)
{
    const QStringList &files = copy.startsWith(u"one/"_s) ? firstFolder : secondFolder;
    for (const QString &file : files)
        if (QFileInfo(file).fileName() == QFileInfo(copy).fileName())
            return corpusFile(file);
    return {};
}

MySinglePic *named(MySingleFolder *folder, const QString &name)
{
    for (MySinglePic *pic : folder->sfPicDetails_fullArray)
        if (pic->spName == name)
            return pic;
    return nullptr;
}

// One change of every kind the owner makes, the same in every working set.
void changeEverything(WorkingSet &set)
{
    MySingleFolder *one = set.folders().at(0);
    MySingleFolder *two = set.folders().at(1);
    DateChanges &changes = set.controller.dateChanges();
    ASSERT_EQ(changes.dragChangedDates({one}, 3723, false), DateChangeResult::Changed);

    ZoneChangeCommand::FolderChange zones{one, {one->sourceTimeZones, one->targetTimeZones}, {}};
    zones.after.source.defaultZone = u"America/New_York"_s;
    zones.after.source.itemsByZone[u"Asia/Tokyo"_s].insert(named(one, u"Pentax.jpg"_s));
    zones.after.target.defaultZone = u"Europe/Berlin"_s;
    ASSERT_EQ(changes.changeTimeZones({zones}, {}), DateChangeResult::Changed);

    changes.changeEditMode({two}, MySingleFolder::EditSeparately);
    ASSERT_EQ(changes.dragChangedSinglePicModeDate({named(two, u"Nikon.jpg"_s)}, -5400), DateChangeResult::Changed);
    MySinglePic *removed = named(two, u"Apple.jpg"_s);
    ASSERT_EQ(changes.dragChangedSinglePicModeDate({removed}, 777), DateChangeResult::Changed);
    ASSERT_EQ(changes.removeDate(removed, {removed}), DateChangeResult::Changed);
    const QList<MySinglePic *> aligned = {named(two, u"PNG.png"_s), named(two, u"MWG.jpg"_s),
                                          named(two, u"QuickTime.heic"_s)};
    ASSERT_NE(changes.realignSelection(AlignTag::MinimizingGaps, aligned, aligned.first(),
                                       NewDateOptions::cachedForRun({}, saveTime)),
              DateChangeResult::Refused);

    named(one, u"Canon.jpg"_s)->takeNewLocation(48.137, 11.575, 520.0, MySinglePic::notSetAccuracy, 1);
    named(one, u"Canon.jpg"_s)->isKeeper = true;
    named(two, u"MWG.jpg"_s)->isRejected = true;
    // Positions in both movies: marked, chosen, read from chapters, and one taken back.
    MoviePositionChanges &positions = set.controller.moviePositions();
    // The Live Photo's movie stands behind its still.
    MySinglePic *train = named(one, u"train.jpg"_s)->bundleDependentImage;
    ASSERT_TRUE(train && named(one, u"QuickTime.mov"_s));
    positions.loadChaptersForAsset(*train, {0.0, 1.25});
    positions.saveMoviePosition(*train, 0.5, QByteArray("\xFF\xD8 a thumbnail", 14));
    positions.saveMoviePosition(*train, 1.0, {});
    positions.fixateMoviePosition(*train, u"1.250"_s);
    positions.removeMoviePosition(*train, u"1.000"_s);
    positions.standAt(*train, 0.75);
    positions.saveMoviePosition(*named(one, u"QuickTime.mov"_s), 0.1, {});
    one->updateFolderValuesOnPicMove();
    one->recountKeepersAndRejects();
    two->recountKeepersAndRejects();
}

QMap<QString, QByteArray> filesUnder(const QString &root)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.insert(QDir(root).relativeFilePath(path), fileBytes(path));
    }
    return files;
}

class StateRoundTripTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureStatesApplication();
        ORV_SKIP_WITHOUT_CORPUS();
    }
};

TEST_F(StateRoundTripTest, ARestoredWorkingSetWritesTheSameStateAndSavesTheSameBytes)
{
    QTemporaryDir plainRoot, keptRoot;
    WorkingSet plain, kept;
    plain.importFolders(copyFolders(plainRoot));
    kept.importFolders(copyFolders(keptRoot));
    ASSERT_EQ(kept.folders().size(), 2);
    changeEverything(plain);
    changeEverything(kept);
    MySinglePic *master = named(kept.folders().at(0), u"train.jpg"_s);
    ASSERT_TRUE(master && master->bundleDependentImage) << "the still and its movie form one Live Photo";

    const QByteArray state = SavedFolders::write(kept.folders());
    SavedFolders::ReadResult restored = SavedFolders::read(state, u"state"_s);
    ASSERT_TRUE(restored.problem.isEmpty()) << restored.problem.toStdString();
    QList<MySingleFolder *> folders;
    for (const auto &folder : restored.folders)
        folders.append(folder.get());
    EXPECT_EQ(SavedFolders::write(folders), state) << "write, read, write gives the same bytes";

    // The references came back as references.
    MySingleFolder &one = *folders.at(0);
    MySinglePic *restoredMaster = named(&one, u"train.jpg"_s);
    ASSERT_TRUE(restoredMaster && restoredMaster->bundleDependentImage);
    EXPECT_EQ(restoredMaster->bundleDependentImage->bundleMasterImage, restoredMaster);
    EXPECT_EQ(MySingleFolder::of(*restoredMaster->bundleDependentImage), &one);
    EXPECT_TRUE(one.sourceTimeZones.itemsByZone.value(u"Asia/Tokyo"_s).contains(named(&one, u"Pentax.jpg"_s)));
    EXPECT_EQ(one.sfDateModificationsTimeInterval, 3723);
    EXPECT_EQ(folders.at(1)->sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(named(folders.at(1), u"Nikon.jpg"_s)->singlePicModification, -5400);
    EXPECT_TRUE(named(&one, u"Canon.jpg"_s)->isKeeper);
    // What the file said stays known, so that a save writes only a rating that changed.
    EXPECT_EQ(named(folders.at(1), u"MWG.jpg"_s)->fileRating, 3);
    EXPECT_EQ(named(folders.at(1), u"MWG.jpg"_s)->xmpRatingToWrite(), -1);
    EXPECT_TRUE(named(&one, u"Canon.jpg"_s)->hasLocationChange());
    for (const QString &name : {u"QuickTime.mov"_s, u"Canon.jpg"_s})
        EXPECT_EQ(MoviePositions::of(*named(&one, name)), MoviePositions::of(*named(kept.folders().at(0), name)))
            << name.toStdString();
    EXPECT_FALSE(MoviePositions::of(*named(&one, u"QuickTime.mov"_s)).movPositions.isEmpty());
    const MoviePositions train = MoviePositions::of(*restoredMaster->bundleDependentImage);
    EXPECT_EQ(train, MoviePositions::of(*master->bundleDependentImage));
    EXPECT_EQ(train.movPositions.keys(), (QStringList{u"0.000"_s, u"0.500"_s, u"1.250"_s}));
    EXPECT_EQ(train.chapterMovPosKey, u"1.250"_s);
    EXPECT_EQ(train.movCurrentTime.seconds(), 0.75);
    EXPECT_EQ(named(&one, u"Canon.jpg"_s)->moviePositions, nullptr);
    // Serials, lens and the shot's settings come back as the files gave them.
    int withSettings = 0;
    for (MySingleFolder *folder : folders)
        for (MySinglePic *pic : folder->sfPicDetails_fullArray) {
            const MySinglePic *before = named(kept.folders().at(folders.indexOf(folder)), pic->spName);
            EXPECT_EQ(pic->pivShotSettings, before->pivShotSettings) << pic->spName.toStdString();
            EXPECT_EQ(pic->pivBodySn(), before->pivBodySn());
            EXPECT_EQ(pic->pivMakeModelLens(), before->pivMakeModelLens());
            EXPECT_EQ(pic->lensSn(), before->lensSn());
            withSettings += pic->pivShotSettings.isEmpty() ? 0 : 1;
        }
    EXPECT_GE(withSettings, 5);
    for (MySingleFolder *folder : folders)
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            EXPECT_EQ(pic->spDateTimeModified(), named(kept.folders().at(folders.indexOf(folder)), pic->spName)
                                                      ->spDateTimeModified())
                << pic->spName.toStdString();

    const QStringList plainRefused = saveFolders(plain.folders(), saveTime);
    const QStringList keptRefused = saveFolders(folders, saveTime);
    EXPECT_EQ(keptRefused, plainRefused);
    const QMap<QString, QByteArray> plainFiles = filesUnder(plainRoot.path());
    const QMap<QString, QByteArray> keptFiles = filesUnder(keptRoot.path());
    ASSERT_EQ(keptFiles.keys(), plainFiles.keys());
    int changedBySave = 0;
    for (auto it = plainFiles.cbegin(); it != plainFiles.cend(); ++it) {
        EXPECT_TRUE(keptFiles.value(it.key()) == it.value()) << it.key().toStdString() << " differs";
        changedBySave += it.value() != fileBytes(originalOf(it.key())) ? 1 : 0;
    }
    EXPECT_GE(changedBySave, 8) << "the saves wrote the changes";
}

} // namespace
