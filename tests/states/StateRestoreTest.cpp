// A restore finds each folder and file again, or says which it could not; what changed since
// the state was kept comes back flagged and a save refuses it. A state that is no state is
// refused with its name and kept aside.

#include "WorkingSet.h"

#include "app/StateKeeper.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/AdditionalData.h"
#include "states/SavedFolders.h"
#include "states/SavedThumbs.h"
#include "states/StateFiles.h"
#include "states/StateRestore.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QCborArray>
#include <QCborMap>
#include <QFile>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

class StateRestoreTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureStatesApplication();
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
            photo(u"one"_s, name);
        photo(u"two"_s, u"e"_s);
        set.importFolders({root.filePath(u"one"_s), root.filePath(u"two"_s)});
        ASSERT_EQ(set.folders().size(), 2);
        set.controller.dateChanges().dragChangedDates(set.folders(), 7200, false);
    }
    void photo(const QString &dir, const QString &name)
    {
        QDir().mkpath(root.filePath(dir));
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        setModificationTime(buildJpeg({.exif = tags}).write(root.filePath(dir), name), Instant::fromUtc(2024, 5, 2));
    }
    QString writeState()
    {
        const QString path = state.filePath(StateFiles::foldersQuitName);
        EXPECT_EQ(StateFiles::writeDurably(path, SavedFolders::write(set.folders())), QString());
        return path;
    }
    // The places in the source as the window gives them: a, b, c, d, then e.
    void numberItems()
    {
        qint32 index = 0;
        for (MySingleFolder *folder : set.folders())
            for (MySinglePic *pic : folder->sfPicDetails_fullArray)
                pic->indexInSource_full = index++;
    }
    static QStringList names(const QList<MySinglePic *> &pics)
    {
        QStringList all;
        for (const MySinglePic *pic : pics)
            all.append(pic->spName);
        return all;
    }
    static MySinglePic *named(const MySingleFolder &folder, const QString &name)
    {
        for (MySinglePic *pic : folder.sfPicDetails_fullArray)
            if (pic->spName == name)
                return pic;
        return nullptr;
    }

    QTemporaryDir root, state;
    WorkingSet set;
};

TEST_F(StateRestoreTest, ChangedAndMissingFilesAreListedAndFlaggedAndTheSaveRefusesThem)
{
    const QString path = writeState();
    const QString changed = root.filePath(u"one/b.jpg"_s);
    QFile file(changed);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("appended by another program");
    file.close();
    const QByteArray changedBytes = fileBytes(changed);
    ASSERT_TRUE(QFile::remove(root.filePath(u"one/c.jpg"_s)));
    ASSERT_TRUE(QDir(root.path()).rename(u"two"_s, u"two renamed"_s));

    StateRestore::Restored restored = StateRestore::fromFile(path);
    ASSERT_TRUE(restored.read.problem.isEmpty()) << restored.read.problem.toStdString();
    EXPECT_EQ(restored.report.changedFiles, QStringList{changed});
    EXPECT_EQ(restored.report.missingFiles, QStringList{root.filePath(u"one/c.jpg"_s)});
    EXPECT_EQ(restored.report.movedFolders,
              QStringList{u"%1 -> %2"_s.arg(root.filePath(u"two"_s), root.filePath(u"two renamed"_s))});
    const MySingleFolder &one = *restored.read.folders.at(0);
    const MySingleFolder &two = *restored.read.folders.at(1);
    EXPECT_EQ(named(one, u"b.jpg"_s)->fileUnchangedState, 3);
    EXPECT_EQ(named(one, u"c.jpg"_s)->fileUnchangedState, 1);
    EXPECT_EQ(named(one, u"a.jpg"_s)->fileUnchangedState, 0);
    EXPECT_EQ(named(two, u"e.jpg"_s)->spPath(), root.filePath(u"two renamed/e.jpg"_s));

    const QStringList refused = saveFolders({restored.read.folders.at(0).get(), restored.read.folders.at(1).get()},
                                            Instant::fromUtc(2025, 1, 1));
    EXPECT_EQ(refused, (QStringList{u"b.jpg"_s, u"c.jpg"_s}));
    EXPECT_EQ(fileBytes(changed), changedBytes) << "the changed file was not written";
    EXPECT_TRUE(fileBytes(root.filePath(u"one/a.jpg"_s)).contains("2024:05:01 12:00:00"));
    EXPECT_TRUE(fileBytes(root.filePath(u"two renamed/e.jpg"_s)).contains("2024:05:01 12:00:00"));
}

TEST_F(StateRestoreTest, AFolderThatCannotBeFoundIsListedAndTheRestRestores)
{
    const QString path = writeState();
    ASSERT_TRUE(QDir(root.filePath(u"two"_s)).removeRecursively());

    StateRestore::Restored restored = StateRestore::fromFile(path);
    ASSERT_EQ(restored.read.folders.size(), 2u);
    EXPECT_EQ(restored.report.missingFolders, QStringList{root.filePath(u"two"_s)});
    EXPECT_TRUE(restored.read.folders.at(1)->isDisconnected);
    EXPECT_EQ(restored.read.folders.at(1)->sfPicDetails_fullArray.at(0)->fileUnchangedState, 1);
    EXPECT_EQ(restored.read.folders.at(0)->sfPicDetails_fullArray.size(), 4);
    EXPECT_EQ(restored.read.folders.at(1)->sfDateModificationsTimeInterval, 7200) << "its work stays";
}

// The bytes of a good state, changed by edit.
QByteArray edited(const QByteArray &good, const std::function<void(QCborMap &folder)> &edit)
{
    QCborMap root = QCborValue::fromCbor(good).taggedValue().toMap();
    QCborMap folder = QCborValue::fromCbor(root.value(0).toByteArray()).toMap();
    edit(folder);
    root.insert(0, folder.toCborValue().toCbor());
    return QCborValue(QCborKnownTags::Signature, root).toCbor();
}

TEST_F(StateRestoreTest, HostileStatesAreRefusedByNameAndKeptAside)
{
    const QByteArray good = fileBytes(writeState());
    ASSERT_TRUE(SavedFolders::read(good, u"x"_s).problem.isEmpty());
    const QByteArray hugeCount = QByteArray::fromHex("d9d9f7a100" "5b7fffffffffffffff");
    // A folder whose list of items claims more items than there are bytes.
    const QByteArray hugeList = QCborValue(QCborKnownTags::Signature,
                                           QCborMap{{0, QByteArray::fromHex("a1" "6c") + "sfPicDetails"
                                                            + QByteArray::fromHex("9b3fffffffffffffff00")}})
                                    .toCbor();
    QCborValue deep = QCborArray{1};
    for (int level = 0; level < 200; ++level)
        deep = QCborArray{deep};
    const QList<std::pair<const char *, QByteArray>> hostile = {
        {"empty", QByteArray()},
        {"not CBOR", QByteArray("plain text, no state")},
        {"cut in the middle", good.left(good.size() / 2)},
        {"cut by one byte", good.chopped(1)},
        {"a huge byte count", hugeCount},
        {"an item list longer than the file", hugeList},
        {"nesting without end", edited(good, [&deep](QCborMap &f) { f.insert(u"sfEditMode"_s, deep); })},
        {"an offset as text", edited(good, [](QCborMap &f) { f.insert(u"sfEditMode"_s, u"two"_s); })},
        {"a fraction where a whole number belongs", edited(good, [](QCborMap &f) { f.insert(u"sfEditMode"_s, 1.5); })},
        {"an item's flag as a number",
         edited(good, [](QCborMap &f) {
             QCborArray items = f.value(u"sfPicDetails"_s).toArray();
             QCborMap item = items.at(0).toMap();
             item.insert(u"isKeeper"_s, 1);
             items[0] = item;
             f.insert(u"sfPicDetails"_s, items);
         })},
        {"items as a map", edited(good, [](QCborMap &f) { f.insert(u"sfPicDetails"_s, QCborMap()); })},
        {"a zone naming an item beyond the list",
         edited(good, [](QCborMap &f) {
             f.insert(u"sourceTimeZones"_s, QCborMap{{u"Asia/Tokyo"_s, QCborArray{1000000}}});
         })},
        {"an item whose stamp is too long",
         edited(good, [](QCborMap &f) {
             QCborArray items = f.value(u"sfPicDetails"_s).toArray();
             QCborMap item = items.at(0).toMap();
             QCborMap attributes = item.value(u"singlePicAttributes"_s).toMap();
             attributes.insert(u"ExifDateTimeOriginal"_s, QCborArray{QByteArray(64, '9'), 10});
             item.insert(u"singlePicAttributes"_s, attributes);
             items[0] = item;
             f.insert(u"sfPicDetails"_s, items);
         })},
        {"an item leaving its folder",
         edited(good, [](QCborMap &f) {
             QCborArray items = f.value(u"sfPicDetails"_s).toArray();
             QCborMap item = items.at(0).toMap();
             item.insert(u"spName"_s, u"../../etc/passwd"_s);
             items[0] = item;
             f.insert(u"sfPicDetails"_s, items);
         })},
    };
    for (const auto &[what, bytes] : hostile) {
        const QString path = state.filePath(u"savedFolders_v6"_s);
        QFile::remove(path);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();

        const StateRestore::Restored restored = StateRestore::fromFile(path);
        EXPECT_TRUE(restored.read.folders.empty()) << what;
        EXPECT_TRUE(restored.read.problem.startsWith(path)) << what << ": " << restored.read.problem.toStdString();
        EXPECT_FALSE(QFileInfo::exists(path)) << what;
        ASSERT_FALSE(restored.keptAsidePath.isEmpty()) << what;
        EXPECT_EQ(fileBytes(restored.keptAsidePath), bytes) << what << ": kept as it was";
        QFile::remove(restored.keptAsidePath);
    }
}

} // namespace

namespace {

TEST_F(StateRestoreTest, TheRestoreIsOneUndoStepAndItsRedoBringsTheSameWorkBack)
{
    const QString path = writeState();
    WorkingSet later;
    StateRestore::Restored restored = StateRestore::fromFile(path);
    ASSERT_TRUE(restored.read.problem.isEmpty());
    QList<bool> followed;
    later.controller.adoptRestoredFolders(std::move(restored.read.folders),
                                          [&followed](bool opened) { followed.append(opened); });
    ASSERT_EQ(later.folders().size(), 2);
    MySingleFolder *one = later.folders().first();
    ASSERT_EQ(later.controller.dateChanges().dragChangedDates({one}, 10800, false), DateChangeResult::Changed);
    QUndoStack &stack = later.controller.uManager();
    ASSERT_EQ(stack.count(), 2);

    stack.undo();
    EXPECT_EQ(one->sfDateModificationsTimeInterval, 7200);
    stack.undo();
    EXPECT_TRUE(later.folders().isEmpty()) << "the restored folders left the working set";
    EXPECT_EQ(followed, (QList<bool>{true, false}));
    EXPECT_EQ(stack.count(), 2) << "their history waits for the redo";

    stack.redo();
    ASSERT_EQ(later.folders().size(), 2);
    EXPECT_EQ(later.folders().first(), one) << "the same folder, with its work";
    EXPECT_EQ(one->sfDateModificationsTimeInterval, 7200);
    stack.redo();
    EXPECT_EQ(one->sfDateModificationsTimeInterval, 10800);
    EXPECT_EQ(followed, (QList<bool>{true, false, true}));

    // Saved, the folder's history goes; the restore of the other folder can still be undone.
    saveFolders({one}, Instant::fromUtc(2025, 1, 1));
    later.controller.didSaveFolders({one});
    ASSERT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_EQ(later.folders(), QList<MySingleFolder *>{one});
}

} // namespace

namespace {

TEST_F(StateRestoreTest, AFolderMountedElsewhereIsReconnectedByTheUserAndOnlyByItsOwnFiles)
{
    const QString path = writeState();
    QTemporaryDir elsewhere;
    const QString moved = QDir(elsewhere.path()).filePath(u"disk/two"_s);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(moved).absolutePath()));
    ASSERT_TRUE(QDir().rename(root.filePath(u"two"_s), moved)) << "the same directory, found at another place";
    QTemporaryDir stranger;
    QDir().mkpath(stranger.filePath(u"two"_s));

    StateRestore::Restored restored = StateRestore::fromFile(path);
    ASSERT_EQ(restored.report.missingFolders, QStringList{root.filePath(u"two"_s)});
    MySingleFolder &two = *restored.read.folders.at(1);

    const QString refused = StateRestore::reconnect(two, stranger.filePath(u"two"_s), restored.report);
    EXPECT_TRUE(refused.contains(u"e.jpg"_s)) << refused.toStdString();
    EXPECT_TRUE(two.isDisconnected) << "a folder without its files changes nothing";
    EXPECT_EQ(StateRestore::reconnect(two, stranger.filePath(u"nothing here"_s), restored.report).isEmpty(), false);

    EXPECT_EQ(StateRestore::reconnect(two, moved, restored.report), QString());
    EXPECT_FALSE(two.isDisconnected);
    EXPECT_TRUE(restored.report.missingFolders.isEmpty());
    EXPECT_EQ(named(two, u"e.jpg"_s)->spPath(), QDir(moved).filePath(u"e.jpg"_s));
    EXPECT_EQ(named(two, u"e.jpg"_s)->fileUnchangedState, 0) << "its file is as the state kept it";

    // A copy holding the files by name is taken too, but a copy's files are new: the save refuses them.
    QTemporaryDir copyParent;
    const QString copy = copyParent.filePath(u"two"_s);
    ASSERT_TRUE(QDir().mkpath(copy));
    ASSERT_TRUE(QFile::copy(QDir(moved).filePath(u"e.jpg"_s), QDir(copy).filePath(u"e.jpg"_s)));
    setModificationTime(QDir(copy).filePath(u"e.jpg"_s), Instant::fromUtc(2025, 2, 2));
    EXPECT_EQ(StateRestore::reconnect(two, copy, restored.report), QString());
    EXPECT_EQ(named(two, u"e.jpg"_s)->fileUnchangedState, 3);
    EXPECT_EQ(saveFolders({&two}, Instant::fromUtc(2025, 1, 1)), QStringList{u"e.jpg"_s});
    EXPECT_TRUE(fileBytes(QDir(copy).filePath(u"e.jpg"_s)).contains("2024:05:01 10:00:00")) << "nothing written";
}

} // namespace

namespace {

TEST_F(StateRestoreTest, ThumbnailsKeptBesideTheStateGoToTheItemsTheyWereMadeOf)
{
    qint32 index = 0;
    for (MySingleFolder *folder : set.folders())
        for (MySinglePic *pic : folder->sfPicDetails_fullArray)
            pic->indexInSource_full = index++;
    const QString path = writeState();
    const QByteArray forB = "thumbnail of b", forE = "thumbnail of e";
    const QList<ThumbRecord> records{{1, forB, 0.0}, {4, forE, 0.0}, {4, "a movie position", 3.0}};
    ASSERT_EQ(StateFiles::writeDurably(StateFiles::thumbsFileOf(path), SavedThumbs::write(records)), QString());
    EXPECT_EQ(StateFiles::thumbsFileOf(path), state.filePath(u"savedThumbs_v6"_s));

    const StateRestore::Restored restored = StateRestore::fromFile(path);
    ASSERT_TRUE(restored.read.problem.isEmpty());
    EXPECT_EQ(restored.thumbnailsProblem, QString());
    const MySinglePic *b = named(*restored.read.folders.at(0), u"b.jpg"_s);
    const MySinglePic *e = named(*restored.read.folders.at(1), u"e.jpg"_s);
    using Thumbs = QList<std::pair<quint32, QByteArray>>;
    EXPECT_EQ(restored.thumbnails, (Thumbs{{b->sessionUniqueId, forB}, {e->sessionUniqueId, forE}}));

    // A damaged thumbnails file costs the thumbnails after the damage, never the state.
    QFile thumbs(StateFiles::thumbsFileOf(path));
    ASSERT_TRUE(thumbs.resize(thumbs.size() - 70)); // into the second record
    const StateRestore::Restored cut = StateRestore::fromFile(path);
    EXPECT_TRUE(cut.read.problem.isEmpty());
    EXPECT_EQ(cut.thumbnails.size(), 1);
    EXPECT_TRUE(cut.thumbnailsProblem.startsWith(StateFiles::thumbsFileOf(path)));
}

} // namespace

namespace {

// Sets the system zone for one scope, as a traveller's laptop changes it.
class SystemZone
{
public:
    explicit SystemZone(const char *zone) : m_before(qgetenv("TZ")), m_had(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", zone);
    }
    ~SystemZone()
    {
        if (m_had)
            qputenv("TZ", m_before);
        else
            qunsetenv("TZ");
    }

private:
    QByteArray m_before;
    bool m_had;
};

TEST_F(StateRestoreTest, TheWindowsViewComesBackOnTheSameItemsAndKeepsItsBytes)
{
    numberItems();
    AdditionalData::ViewState view;
    view.stateAtQuitType = 102;
    view.tlvViewWidth = 800;
    view.tlvCompleteWidth = 2400.5;
    view.tlvScrollPosition = 640;
    view.selectedFolderIndex = 0;
    view.selectedCompoundFoldersIndexSet = {0, 1};
    view.picSelectionCurrentIndex = 2;
    view.selectedThumbsIndexSet = {1, 2, 4};
    view.ratingFilterSelectedOption = 2;
    view.filterSelectionsAndLockState = {u"rating/keepers"_s, u"type/quickSelections_typePic/JPG"_s};
    view.filterExpandedState2 = {u"cameras"_s, u"times"_s};
    view.selectionRadius = 2500;
    view.locationWindowVisibilityState_8 = 1;
    view.locationCamera = AdditionalData::MapCamera{38.7167, -9.1333, 11};
    AdditionalData::SubStrip shelfKept{true, {0, 3}, 900.5, 12, 3, {3}}, mirrorKept;
    mirrorKept.tlv_subCompleteWidth = 2400.5;
    view.subTLs = {shelfKept, mirrorKept};
    const QString quitFile = state.filePath(StateFiles::foldersQuitName);
    QByteArray kept;
    {
        const SystemZone utc("UTC");
        StateKeeper keeper(set.controller, quitFile);
        keeper.setViewProvider([&view] { return view; });
        keeper.start();
        keeper.writeNow();
        kept = fileBytes(state.filePath(StateFiles::additionalDataQuitName));
    }
    const AdditionalData::ReadResult read = AdditionalData::read(kept, u"x"_s);
    ASSERT_TRUE(read.problem.isEmpty()) << read.problem.toStdString();
    view.secondsFromGMTForDate = 0;
    EXPECT_EQ(read.view, view);
    EXPECT_EQ(AdditionalData::write(QList<const MyGpxTrack *>{}, read.view), kept) << "written again, the same bytes";

    for (const char *zone : {"UTC", "Asia/Tokyo"}) {
        const SystemZone system(zone);
        WorkingSet restoredSet;
        StateKeeper restoring(restoredSet.controller, state.filePath(u"elsewhere"_s));
        const StateRestore::Restored restored = restoring.restore(quitFile);
        ASSERT_TRUE(restored.read.problem.isEmpty()) << zone;
        const bool moved = QByteArray(zone) != "UTC";
        EXPECT_EQ(restored.report.conversionType, moved ? AdditionalData::ConversionType::OtherSystemZone
                                                        : AdditionalData::ConversionType::None)
            << zone;
        EXPECT_EQ(restored.report.lines().join(u'\n').contains(u"another system time zone"_s), moved) << zone;
        if (moved) {
            // A stamp without a zone means another instant here: the items stand as an import
            // here would read them, with the kept two hours on top.
            WorkingSet fresh;
            fresh.importFolders({root.filePath(u"one"_s), root.filePath(u"two"_s)});
            fresh.controller.dateChanges().dragChangedDates(fresh.folders(), 7200, false);
            EXPECT_EQ(restored.report.itemsReadInThisZone, 5);
            for (const MySingleFolder *folder : restoredSet.folders())
                for (const MySinglePic *pic : folder->sfPicDetails_fullArray) {
                    const MySingleFolder *imported = fresh.controller.theDataSource().folderForDirectory(folder->sfFolderPath);
                    ASSERT_NE(imported, nullptr);
                    const MySinglePic *same = named(*imported, pic->spName);
                    ASSERT_NE(same, nullptr);
                    EXPECT_EQ(pic->spDateTimeOriginal, same->spDateTimeOriginal) << pic->spName.toStdString();
                    EXPECT_EQ(pic->spDateTimeModified(), same->spDateTimeModified()) << pic->spName.toStdString();
                }
        }
        // The selections name the restored items, whichever the zone.
        EXPECT_EQ(restored.view.kept, view);
        EXPECT_EQ(restored.view.selectedFolders, restoredSet.folders());
        ASSERT_NE(restored.view.current, nullptr);
        EXPECT_EQ(restored.view.current->spName, u"c.jpg"_s);
        EXPECT_EQ(names(restored.view.selected), (QStringList{u"b.jpg"_s, u"c.jpg"_s, u"e.jpg"_s}));
        ASSERT_EQ(restored.view.strips.size(), 2);
        const RestoredStrip &shelf = restored.view.strips.first();
        EXPECT_EQ(names(shelf.shelf), (QStringList{u"a.jpg"_s, u"d.jpg"_s}));
        ASSERT_NE(shelf.current, nullptr);
        EXPECT_EQ(shelf.current->spName, u"d.jpg"_s);
        EXPECT_EQ(names(shelf.selected), QStringList{u"d.jpg"_s});
        EXPECT_TRUE(restored.view.strips.last().shelf.isEmpty() && !restored.view.strips.last().current);
    }

    // A view of the wrong kind costs the view and the tracks, never the folders.
    const std::pair<QString, QCborArray> wrongKinds[] = {{u"selectedThumbsIndexSet"_s, {u"b.jpg"_s}},
                                                         {u"filterSelectionsAndLockState"_s, {3}},
                                                         {u"selectionRadius"_s, {}},
                                                         {u"locationCamera"_s, {38.7, -9.1}},
                                                         {u"subTLs"_s, {QCborMap(), QCborMap(), QCborMap()}},
                                                         {u"subTLs"_s, {1}}};
    for (const auto &[key, wrong] : wrongKinds) {
        QCborMap damaged = QCborValue::fromCbor(kept).taggedValue().toMap();
        damaged.insert(key, wrong);
        ASSERT_EQ(StateFiles::writeDurably(state.filePath(StateFiles::additionalDataQuitName),
                                           QCborValue(QCborKnownTags::Signature, damaged).toCbor()),
                  QString());
        const StateRestore::Restored alone = StateRestore::fromFile(quitFile);
        EXPECT_EQ(alone.read.folders.size(), 2u);
        EXPECT_TRUE(alone.report.additionalDataProblem.contains(key)) << alone.report.additionalDataProblem.toStdString();
    }
}

TEST_F(StateRestoreTest, OlderQuitFilesAreFoundAfterTheNewestAndThoseOfAnotherFormRefusedByName)
{
    numberItems();
    const QByteArray folders = SavedFolders::write(set.folders());
    const QString newest = state.filePath(StateFiles::foldersQuitName);
    const QString v5 = state.filePath(u"savedFolders_v5"_s), oldest = state.filePath(u"savedFolders"_s);
    // The oldest generation is a keyed archive: a form this system never wrote.
    ASSERT_EQ(StateFiles::writeDurably(oldest, QByteArray("bplist00") + QByteArray(40, '\0')), QString());
    // savedFolders_v5 with the root as the older list of folders, its view beside it.
    const QCborMap byPlace = QCborValue::fromCbor(folders).taggedValue().toMap();
    QCborArray list;
    for (qsizetype place = 0; place < byPlace.size(); ++place)
        list.append(byPlace.value(place));
    ASSERT_EQ(StateFiles::writeDurably(v5, QCborValue(QCborKnownTags::Signature, list).toCbor()), QString());
    AdditionalData::ViewState view;
    view.picSelectionCurrentIndex = 4;
    ASSERT_EQ(StateFiles::writeDurably(state.filePath(u"savedAdditionalData_v5"_s),
                                       AdditionalData::write(QList<const MyGpxTrack *>{}, view)),
              QString());

    WorkingSet restoredSet;
    StateKeeper keeper(restoredSet.controller, newest);
    ASSERT_EQ(keeper.keptStatePath(), v5) << "without savedFolders_v6, the next generation";
    const StateRestore::Restored fromV5 = keeper.restore(v5);
    ASSERT_TRUE(fromV5.read.problem.isEmpty()) << fromV5.read.problem.toStdString();
    EXPECT_EQ(restoredSet.folders().size(), 2);
    ASSERT_NE(fromV5.view.current, nullptr);
    EXPECT_EQ(fromV5.view.current->spName, u"e.jpg"_s) << "its own additional data";

    ASSERT_EQ(StateFiles::writeDurably(newest, folders), QString());
    EXPECT_EQ(keeper.keptStatePath(), newest) << "the newest wins";
    ASSERT_TRUE(QFile::remove(newest));
    // Read once: then it is set aside with its additional data, and the next one is found.
    EXPECT_TRUE(keeper.setKeptStateAside(u"read"_s).contains(u"savedFolders_v5.read"_s));
    EXPECT_FALSE(QFileInfo::exists(state.filePath(u"savedAdditionalData_v5"_s)));
    ASSERT_EQ(keeper.keptStatePath(), oldest);
    WorkingSet emptySet;
    StateKeeper other(emptySet.controller, newest);
    const StateRestore::Restored fromOldest = other.restore(oldest);
    EXPECT_TRUE(fromOldest.read.problem.contains(u"keyed archive"_s)) << fromOldest.read.problem.toStdString();
    EXPECT_FALSE(fromOldest.keptAsidePath.isEmpty());
    EXPECT_TRUE(emptySet.folders().isEmpty());
    EXPECT_FALSE(other.hasKeptState());
}

} // namespace
