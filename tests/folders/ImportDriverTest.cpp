#include "ImportFixture.h"

#include "folders/ImportFilter.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

using namespace orv;
using namespace orv::test;

namespace {

Instant may1At10() { return Instant::fromUtc(2024, 5, 1, 10, 0, 0); }

class SubfolderImport : public ImportFixture
{
protected:
    void SetUp() override
    {
        ImportFixture::SetUp();
        photo(QStringLiteral("trip"), QStringLiteral("top"));
        photo(QStringLiteral("trip/day1"), QStringLiteral("one"));
        photo(QStringLiteral("trip/day1/raw"), QStringLiteral("deep"));
        photo(QStringLiteral("trip/day2"), QStringLiteral("two"));
        photo(QStringLiteral("zoo"), QStringLiteral("lion"));
    }
    KeyStatesAtImport withSubfolders(qint64 depth)
    {
        prefs.overrideForThisRun(QStringLiteral("subFolderAutoImportMaxDepth"), QString::number(depth));
        KeyStatesAtImport k;
        k.isSubFolderAutoImportEnabled = true;
        return k;
    }
};

} // namespace

TEST_F(SubfolderImport, SubfoldersAreOffUnlessAskedFor)
{
    importAndWait({folder(QStringLiteral("trip"))});
    EXPECT_EQ(folderNames(), QStringList{QStringLiteral("trip")});
}

TEST_F(SubfolderImport, DepthOneTakesOneLevelAndNoFurther)
{
    importAndWait({folder(QStringLiteral("trip"))}, withSubfolders(1));
    EXPECT_EQ(folderNames(), (QStringList{QStringLiteral("trip"), QStringLiteral("day1"), QStringLiteral("day2")}));
}

TEST_F(SubfolderImport, SubfoldersStandRightAfterTheirParentWhateverFollows)
{
    importAndWait({folder(QStringLiteral("zoo")), folder(QStringLiteral("trip"))}, withSubfolders(3));
    EXPECT_EQ(folderNames(), (QStringList{QStringLiteral("trip"), QStringLiteral("day1"), QStringLiteral("raw"),
                                          QStringLiteral("day2"), QStringLiteral("zoo")}));
    for (const MySingleFolder *f : driver.droppedFolders()) {
        EXPECT_EQ(f->sfPics, 1) << f->sfFolder.toStdString();
        EXPECT_EQ(f->importDepth, 0) << "reset once published";
    }
}

TEST_F(SubfolderImport, TheSheetOverridesThePreferenceInBothDirections)
{
    prefs.overrideForThisRun(QStringLiteral("isSubFolderAutoImportEnabled"), QStringLiteral("1"));
    KeyStatesAtImport off;
    off.isSubFolderAutoImportEnabled = false;
    importAndWait({folder(QStringLiteral("trip"))}, off);
    EXPECT_EQ(folderNames(), QStringList{QStringLiteral("trip")});
}

TEST_F(ImportFixture, ASymlinkBackToAnAncestorIsReportedOnceAndTheRestImports)
{
    photo(QStringLiteral("a"), QStringLiteral("one"));
    photo(QStringLiteral("a/sub"), QStringLiteral("two"));
    ASSERT_TRUE(QFile::link(QStringLiteral(".."), root.filePath(QStringLiteral("a/sub/back"))));
    prefs.overrideForThisRun(QStringLiteral("subFolderAutoImportMaxDepth"), QStringLiteral("9"));
    KeyStatesAtImport k;
    k.isSubFolderAutoImportEnabled = true;
    importAndWait({folder(QStringLiteral("a"))}, k);

    EXPECT_EQ(folderNames(), (QStringList{QStringLiteral("a"), QStringLiteral("sub")}));
    const MySingleFolder *sub = driver.droppedFolders().at(1);
    EXPECT_EQ(sub->importErrors.paths(ImportErrors::SubfolderLoop),
              QStringList{root.filePath(QStringLiteral("a/sub/back"))});
    EXPECT_EQ(sub->sfPics, 1);
}

TEST_F(ImportFixture, AFilterThatRemovesSomethingMakesThePartialFolderAndSidecarsPass)
{
    photo(QStringLiteral("f"), QStringLiteral("keep"));
    QFile::copy(photo(QStringLiteral("f"), QStringLiteral("other")), root.filePath(QStringLiteral("f/movie.mov")));
    QFile sidecar(root.filePath(QStringLiteral("f/keep.xmp")));
    ASSERT_TRUE(sidecar.open(QIODevice::WriteOnly));
    sidecar.write("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>");
    sidecar.close();

    KeyStatesAtImport k;
    k.tioFilterValues = QStringLiteral(".mov");
    k.tioFilterType = ImportFilter::LeaveOut;
    importAndWait({folder(QStringLiteral("f"))}, k);

    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(itemNames(*f), (QStringList{QStringLiteral("keep.jpg"), QStringLiteral("other.jpg")}));
    EXPECT_TRUE(f->isAdvanced) << "a filtered folder counts as partial";
    EXPECT_EQ(f->sfPicDetails_fullArray.first()->spSidecarFiles(), QStringList{QStringLiteral("keep.xmp")});
}

TEST_F(ImportFixture, AFilterThatRemovesNothingLeavesTheFolderWhole)
{
    photo(QStringLiteral("f"), QStringLiteral("keep"));
    KeyStatesAtImport k;
    k.tioFilterValues = QStringLiteral(".jpg");
    importAndWait({folder(QStringLiteral("f"))}, k);
    EXPECT_FALSE(driver.droppedFolders().first()->isAdvanced);
}

TEST_F(ImportFixture, DroppingACompleteFolderAgainDoesNothing)
{
    photo(QStringLiteral("f"), QStringLiteral("a"));
    importAndWait({folder(QStringLiteral("f"))});
    photo(QStringLiteral("f"), QStringLiteral("b"));
    int added = 0;
    QObject::connect(&driver, &MyDroppedFolders::folderAdded, [&added] { ++added; });
    importAndWait({folder(QStringLiteral("f"))});
    EXPECT_EQ(added, 0);
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    EXPECT_EQ(itemNames(*driver.droppedFolders().first()), QStringList{QStringLiteral("a.jpg")});
}

TEST_F(ImportFixture, SingleFilesMakeAPartialFolderThatTheWholeFolderCompletesWithoutDoubles)
{
    prefs.overrideForThisRun(QStringLiteral("isAdvanced"), QStringLiteral("1"));
    const QString b = photo(QStringLiteral("f"), QStringLiteral("b"));
    photo(QStringLiteral("f"), QStringLiteral("a"));
    photo(QStringLiteral("f"), QStringLiteral("c"));
    importAndWait({b});
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_TRUE(f->isAdvanced);
    EXPECT_EQ(itemNames(*f), QStringList{QStringLiteral("b.jpg")});

    importAndWait({b});
    EXPECT_EQ(itemNames(*f), QStringList{QStringLiteral("b.jpg")}) << "a file already in is not added twice";

    importAndWait({folder(QStringLiteral("f"))});
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    EXPECT_FALSE(f->isAdvanced);
    EXPECT_FALSE(f->isAdvancedOver);
    EXPECT_EQ(itemNames(*f), (QStringList{QStringLiteral("b.jpg"), QStringLiteral("a.jpg"), QStringLiteral("c.jpg")}));
    EXPECT_EQ(f->sfPics, 3);
}

// The folder is dropped again while the scan of its single file waits for a question: the
// second drop widens it, and the first scan's end must not take that back.
TEST_F(ImportFixture, TheWholeFolderDroppedDuringThePartialScanMakesItWhole)
{
    prefs.overrideForThisRun(QStringLiteral("isAdvanced"), QStringLiteral("1"));
    const QString b = blankPhoto(QStringLiteral("f"), QStringLiteral("b"));
    photo(QStringLiteral("f"), QStringLiteral("a"));
    photo(QStringLiteral("f"), QStringLiteral("c"));
    answers.whileAsked = [this] {
        answers.whileAsked = nullptr;
        const std::optional<DropEntry> whole = DropEntry::pathAndBookmarkFromAccessable(folder(QStringLiteral("f")));
        ASSERT_TRUE(whole);
        driver.processDroppedFolders({*whole}, nullptr, 0, keys());
    };
    importAndWait({b});
    ASSERT_EQ(answers.emptyTagQuestions, 1);
    ASSERT_EQ(driver.droppedFolders().size(), 1);
    MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_FALSE(f->isAdvanced);
    EXPECT_FALSE(f->isAdvancedOver);
    EXPECT_EQ(itemNames(*f), (QStringList{QStringLiteral("b.jpg"), QStringLiteral("a.jpg"), QStringLiteral("c.jpg")}));
}

TEST_F(ImportFixture, SingleFilesAreLeftOutWhileTheirImportIsOff)
{
    const QString b = photo(QStringLiteral("f"), QStringLiteral("b"));
    importAndWait({b});
    EXPECT_TRUE(driver.droppedFolders().isEmpty());
}

TEST_F(ImportFixture, TheDateSequenceRunsOverAllFoldersInNameOrder)
{
    photo(QStringLiteral("a"), QStringLiteral("1"), "2020:01:01 00:00:00");
    photo(QStringLiteral("a"), QStringLiteral("3"), "2020:01:03 00:00:00");
    photo(QStringLiteral("b"), QStringLiteral("2"), "2020:01:02 00:00:00");
    KeyStatesAtImport k;
    k.tioDateSequenceEnabled = true;
    k.tioDateSequenceDate = may1At10();
    k.tioDateSequenceStepValue = 2;
    k.tioDateSequenceStepperKind = 1; // minutes
    QList<MySingleFolder *> switched;
    QObject::connect(&driver, &MyDroppedFolders::folderEditModeChanged,
                     [&switched](MySingleFolder *f) { switched.append(f); });
    importAndWait({folder(QStringLiteral("b")), folder(QStringLiteral("a"))}, k);

    ASSERT_EQ(driver.droppedFolders().size(), 2);
    const MySingleFolder *a = driver.droppedFolders().at(0);
    const MySingleFolder *b = driver.droppedFolders().at(1);
    ASSERT_EQ(a->count(), 2);
    ASSERT_EQ(b->count(), 1);
    EXPECT_EQ(a->sfPicDetailsAtIndex(0)->spDateTimeModified(), may1At10());
    EXPECT_EQ(b->sfPicDetailsAtIndex(0)->spDateTimeModified(), may1At10().addingSeconds(120));
    EXPECT_EQ(a->sfPicDetailsAtIndex(1)->spDateTimeModified(), may1At10().addingSeconds(240));
    EXPECT_EQ(a->sfPicDetailsAtIndex(0)->spDateTimeOriginal, Instant::fromUtc(2020, 1, 1))
        << "the date read from the file stays; the sequence is a pending change";
    EXPECT_EQ(a->sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(a->singlePicModeImages, 2);
    EXPECT_EQ(switched.size(), 2);
    EXPECT_EQ(a->sfPics, 2);
    EXPECT_EQ(a->sfFrom, may1At10());
}

TEST_F(ImportFixture, TheEmptyTagQuestionIsAskedOncePerFolderOnTheMainThread)
{
    blankPhoto(QStringLiteral("f"), QStringLiteral("a"));
    blankPhoto(QStringLiteral("f"), QStringLiteral("b"));
    blankPhoto(QStringLiteral("g"), QStringLiteral("c"));
    importAndWait({folder(QStringLiteral("f")), folder(QStringLiteral("g"))});
    EXPECT_EQ(answers.emptyTagQuestions, 2);
    EXPECT_TRUE(answers.askedOnMainThread);
    EXPECT_TRUE(driver.droppedFolders().first()->isImportSheetDone);
    EXPECT_EQ(driver.droppedFolders().first()->fixedDates, 2);
}

TEST_F(ImportFixture, SkippingTheEmptyTagOptionsTakesTheFileDateWithoutAsking)
{
    prefs.overrideForThisRun(QStringLiteral("skipEmptyTagImportOptions"), QStringLiteral("1"));
    blankPhoto(QStringLiteral("f"), QStringLiteral("a"));
    importAndWait({folder(QStringLiteral("f"))});
    EXPECT_EQ(answers.emptyTagQuestions, 0);
    EXPECT_EQ(driver.droppedFolders().first()->sfPicDetailsAtIndex(0)->spType, SpTypeEmptyOriginalFileDate);
}

TEST_F(ImportFixture, ProgressCountsTwoStepsPerNameAndOneForThePublication)
{
    manyPhotos(QStringLiteral("f"), 3);
    folder(QStringLiteral("f/sub"));
    QList<ImportProgress> seen;
    QObject::connect(&driver, &MyDroppedFolders::importProgressChanged,
                     [&seen](const ImportProgress &p) { seen.append(p); });
    importAndWait({folder(QStringLiteral("f"))});
    QCoreApplication::processEvents();

    qint64 highest = 0;
    for (const ImportProgress &p : std::as_const(seen)) {
        if (p.stepsTotal == 0)
            continue;
        EXPECT_EQ(p.stepsTotal, 2 * 4 + 1);
        EXPECT_GE(p.stepsDone, highest) << "never backwards";
        highest = p.stepsDone;
        EXPECT_TRUE(p.canAbort);
        EXPECT_EQ(p.folderName, QStringLiteral("f"));
    }
    EXPECT_EQ(highest, 9);
    EXPECT_EQ(driver.importProgress().foldersLeft, 0);
}

TEST_F(ImportFixture, CancelInTheMiddleDropsTheUnfinishedFoldersAndKeepsTheFinished)
{
    photo(QStringLiteral("done"), QStringLiteral("a"));
    importAndWait({folder(QStringLiteral("done"))});
    blankPhoto(QStringLiteral("big"), QStringLiteral("000"));
    manyPhotos(QStringLiteral("big"), 2 * int(FolderScanner::filesPerRound));
    photo(QStringLiteral("later"), QStringLiteral("b"));

    QStringList removed;
    QObject::connect(&driver, &MyDroppedFolders::folderRemoved,
                     [&removed](MySingleFolder *f) { removed.append(f->sfFolder); });
    answers.whileAsked = [this] { driver.cancelImports(); };
    importAndWait({folder(QStringLiteral("big")), folder(QStringLiteral("later"))});

    EXPECT_EQ(removed, (QStringList{QStringLiteral("later"), QStringLiteral("big")}));
    EXPECT_EQ(folderNames(), QStringList{QStringLiteral("done")});
    EXPECT_EQ(driver.droppedFolders().first()->sfPics, 1);
}

TEST_F(ImportFixture, AnExpressImportCannotBeAbortedButItsQueueCan)
{
    blankPhoto(QStringLiteral("big"), QStringLiteral("000"));
    manyPhotos(QStringLiteral("big"), int(FolderScanner::filesPerRound) + 1);
    photo(QStringLiteral("later"), QStringLiteral("b"));
    answers.whileAsked = [this] { driver.cancelImports(); };
    KeyStatesAtImport express;
    express.isCommandKeyDown = true;
    importAndWait({folder(QStringLiteral("big")), folder(QStringLiteral("later"))}, express);
    EXPECT_EQ(folderNames(), QStringList{QStringLiteral("big")});
    EXPECT_EQ(driver.droppedFolders().first()->sfPics, FolderScanner::filesPerRound + 2);
}

TEST_F(ImportFixture, TheOptionsSheetIsPresetFromThePreferencesAndItsAnswerDecides)
{
    photo(QStringLiteral("f"), QStringLiteral("a"));
    prefs.overrideForThisRun(QStringLiteral("folderType"), QStringLiteral("0"));
    prefs.overrideForThisRun(QStringLiteral("createFileGroups"), QStringLiteral("0"));
    TemporaryImportOptions answer;
    answer.tioFolderType = FolderKind::SlideshowOnly;
    answer.tioEditMode = 1;
    answers.sheetAnswer = answer;
    driver.processDroppedFolders({folder(QStringLiteral("f"))}, HeldKeys{.command = true});
    waitForImports();

    ASSERT_EQ(answers.sheetPresets.size(), 1) << "the sheet shows unless the preference turns it off";
    EXPECT_EQ(answers.sheetPresets.first().tioFolderType, FolderKind::Express);
    EXPECT_FALSE(answers.sheetPresets.first().tioGroupFiles);
    EXPECT_EQ(answers.sheetPresets.first().tioFilterValues, QStringLiteral(" .mov, .mp4, .avi"));
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(f->modifyImportBecauseOfCommand, 3);
    EXPECT_EQ(f->sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(f->sfPicDetailsAtIndex(0)->spType, SpTypeUnsupportedPhoto) << "slideshow-only reads no dates";
}

TEST_F(ImportFixture, WithoutTheSheetTheHeldKeysDecide)
{
    photo(QStringLiteral("f"), QStringLiteral("a"));
    prefs.overrideForThisRun(QStringLiteral("isAlwaysShowOptionsDisabled"), QStringLiteral("1"));
    prefs.overrideForThisRun(QStringLiteral("folderType"), QStringLiteral("1"));
    driver.processDroppedFolders({folder(QStringLiteral("f"))}, HeldKeys{.control = true});
    waitForImports();
    EXPECT_TRUE(answers.sheetPresets.isEmpty());
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(f->modifyImportBecauseOfCommand, 1) << "express by default";
    EXPECT_EQ(f->sfEditMode, MySingleFolder::EditSeparately);
}

TEST_F(ImportFixture, TracksAloneAreRefusedBeforeAnyFolderAndStatesGoToTheirRestore)
{
    QFile track(root.filePath(QStringLiteral("walk.GPX")));
    ASSERT_TRUE(track.open(QIODevice::WriteOnly));
    track.close();
    int refused = 0;
    QObject::connect(&driver, &MyDroppedFolders::dropRefused, [&refused] { ++refused; });
    QStringList states;
    QObject::connect(&driver, &MyDroppedFolders::statesDropped,
                     [&states](const QStringList &paths, bool) { states = paths; });
    driver.processDroppedFolders({track.fileName()}, HeldKeys{});
    EXPECT_EQ(refused, 1);
    driver.processDroppedFolders({folder(QStringLiteral("trip.orvstate"))}, HeldKeys{});
    EXPECT_EQ(states, QStringList{folder(QStringLiteral("trip.orvstate"))});
    EXPECT_FALSE(driver.isImportInProgress());
}

// --- Bad input: each problem is one message of the folder's import; the rest imports ---

TEST_F(ImportFixture, EmptyFilesAreReportedAndStillDatedByTheFileSystem)
{
    photo(QStringLiteral("f"), QStringLiteral("good"));
    QFile empty(root.filePath(QStringLiteral("f/empty.jpg")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();
    importAndWait({folder(QStringLiteral("f"))});
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(f->importErrors.paths(ImportErrors::FileEmpty), QStringList{empty.fileName()});
    ASSERT_EQ(f->count(), 2);
    EXPECT_EQ(f->sfPicDetailsAtIndex(0)->spType, SpTypeNoTagsFileDate);
    EXPECT_EQ(f->sfPicDetailsAtIndex(1)->spType, SpTypeExifOriginal);
    EXPECT_EQ(f->importErrors.messages().size(), 1);
}

TEST_F(ImportFixture, NamesThatAreNoTextInTheSystemEncodingAreReportedNotLost)
{
    photo(QStringLiteral("f"), QStringLiteral("good"));
    const QByteArray rawName = QFile::encodeName(folder(QStringLiteral("f"))) + "/caf\xe9.jpg";
    const int fd = ::open(rawName.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(fd, 0);
    ::close(fd);
    importAndWait({folder(QStringLiteral("f"))});
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(itemNames(*f), QStringList{QStringLiteral("good.jpg")});
    EXPECT_EQ(f->importErrors.paths(ImportErrors::NameNotDecodable).size(), 1);
}

TEST_F(ImportFixture, FilesThatVanishBeforeTheyAreReadAreNamedOneByOne)
{
    blankPhoto(QStringLiteral("f"), QStringLiteral("000"));
    manyPhotos(QStringLiteral("f"), int(FolderScanner::filesPerRound) + 2);
    const QString gone = root.filePath(QStringLiteral("f/%1.jpg").arg(FolderScanner::filesPerRound + 1));
    answers.whileAsked = [&gone] { QFile::remove(gone); };
    importAndWait({folder(QStringLiteral("f"))});
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(f->importErrors.paths(ImportErrors::FileVanished), QStringList{gone});
    EXPECT_EQ(f->sfPics, FolderScanner::filesPerRound + 2);
}

TEST_F(ImportFixture, AFolderThatVanishesDuringTheScanIsOneProblemAndItsReadItemsStay)
{
    blankPhoto(QStringLiteral("f"), QStringLiteral("000"));
    manyPhotos(QStringLiteral("f"), 2 * int(FolderScanner::filesPerRound));
    photo(QStringLiteral("g"), QStringLiteral("other"));
    const QString path = folder(QStringLiteral("f"));
    answers.whileAsked = [&path] { QDir(path).removeRecursively(); };
    importAndWait({path, folder(QStringLiteral("g"))});

    ASSERT_EQ(driver.droppedFolders().size(), 2);
    const MySingleFolder *f = driver.droppedFolders().first();
    EXPECT_EQ(f->importErrors.messages().size(), 1);
    EXPECT_EQ(f->importErrors.paths(ImportErrors::FolderVanished), QStringList{path});
    EXPECT_EQ(f->sfPics, FolderScanner::filesPerRound) << "the first round was read before the folder went";
    EXPECT_EQ(driver.droppedFolders().at(1)->sfPics, 1);
}

TEST_F(ImportFixture, AnUnreadableFolderIsReportedAndTheOthersImport)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    photo(QStringLiteral("closed"), QStringLiteral("a"));
    photo(QStringLiteral("open"), QStringLiteral("b"));
    const QString closed = folder(QStringLiteral("closed"));
    QFile::setPermissions(closed, QFileDevice::WriteOwner);
    importAndWait({closed, folder(QStringLiteral("open"))});
    QFile::setPermissions(closed, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    ASSERT_EQ(driver.droppedFolders().size(), 2);
    EXPECT_EQ(driver.droppedFolders().at(0)->importErrors.paths(ImportErrors::FolderUnreadable),
              QStringList{closed});
    EXPECT_EQ(driver.droppedFolders().at(1)->sfPics, 1);
}
