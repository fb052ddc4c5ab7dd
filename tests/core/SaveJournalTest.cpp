#include "core/PicScanner.h"
#include "formats/SaveJournal.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"
#include "support/ScanOne.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr double oneHour = 3600.0;

TiffShape cameraTags()
{
    TiffShape tags = TiffShape::camera("2024:05:01 10:00:00");
    tags.dateTime = Stamp::text("2024:05:01 10:00:05");
    tags.offsetTimeOriginal = Stamp::text("+02:00");
    tags.gps = GpsShape::fixAt(48.2, 16.4, "2024:05:01 08:00:00");
    return tags;
}

// Files whose save writes several patches each, in the containers written in place.
std::vector<MediaFile> craftedFiles()
{
    TiffShape motorola = cameraTags();
    motorola.order = ByteOrder::Motorola;
    return {buildJpeg({.exif = cameraTags()}), buildJpeg({.exif = motorola}),
            buildTiffFile({.tags = cameraTags()}), buildPng({.exif = cameraTags()})};
}

// The files of one run, written afresh into a folder of their own.
struct Copies
{
    QTemporaryDir dir;
    QStringList paths;

    explicit Copies(const std::vector<MediaFile> &files)
    {
        for (std::size_t i = 0; i < files.size(); ++i)
            paths << files[i].write(dir.path(), QStringLiteral("f%1").arg(i));
    }
    std::vector<QByteArray> bytes() const
    {
        std::vector<QByteArray> all;
        for (const QString &path : paths)
            all.push_back(fileBytes(path));
        return all;
    }
};

// Imports the folder as the scan does and saves it moved by an hour.
void shiftByAnHour(const Copies &copies, const QString &journalPath)
{
    MySingleFolder folder(copies.dir.path(), false);
    ImportOptions fileDate;
    fileDate.withEmptyExifFixDate = ImportOptions::UseFileDate;
    FixedImportAnswers answers(fileDate);
    for (const QString &path : copies.paths)
        folder.adoptPic(scanFile(path, folder, answers));
    folder.setSfDateModificationsFromTimeInterval(oneHour, false);
    SaveSettings settings;
    settings.options = NewDateOptions::cachedForRun({}, currentInstant());
    settings.journalPath = journalPath;
    FixedSaveAnswers proceed(true);
    SaveRun(QList<MySingleFolder *>{&folder}, settings, proceed).run();
}

class SaveJournalTest : public ::testing::Test
{
protected:
    QTemporaryDir support;
    const QString journal = support.filePath(QStringLiteral("saveJournal.jsonl"));
    const std::vector<MediaFile> files = craftedFiles();
    std::vector<QByteArray> original;
    std::vector<QByteArray> clean;

    void SetUp() override
    {
        const Copies copies(files);
        original = copies.bytes();
        shiftByAnHour(copies, journal);
        clean = copies.bytes();
        for (std::size_t i = 0; i < files.size(); ++i)
            ASSERT_NE(clean[i], original[i]) << "file " << i << " was not saved";
    }
    void TearDown() override { InPlaceWriter::stopDeadAfterWrites(-1); }

    // Each file holds its bytes from before the run or from a clean run, none a mix.
    void expectOriginalOrClean(const Copies &copies, const std::string &when) const
    {
        const std::vector<QByteArray> now = copies.bytes();
        for (std::size_t i = 0; i < now.size(); ++i)
            EXPECT_TRUE(now[i] == original[i] || now[i] == clean[i])
                << copies.paths[i].toStdString() << " is torn " << when;
    }
};

} // namespace

TEST_F(SaveJournalTest, WritersStoppedDeadAfterAnyWriteAreFinishedAtTheNextStart)
{
    int halfWrittenRuns = 0;
    int completedAt = -1;
    for (int k = 0; k < 1000 && completedAt < 0; ++k) {
        const Copies copies(files);
        InPlaceWriter::stopDeadAfterWrites(k);
        shiftByAnHour(copies, journal);
        InPlaceWriter::stopDeadAfterWrites(-1);
        const std::vector<QByteArray> stopped = copies.bytes();
        expectOriginalOrClean(copies, "when stopped after " + std::to_string(k) + " writes");
        // A run stopped inside its commit: some files written, others still to come.
        halfWrittenRuns += stopped != original && stopped != clean;

        const SaveJournal::Outcome recovered = SaveJournal::recover(journal);
        if (!recovered.hadRun && stopped == clean)
            completedAt = k;
        EXPECT_TRUE(recovered.left.empty()) << "stopped after " << k << " writes";
        expectOriginalOrClean(copies, "after " + std::to_string(k) + " writes and recovery");
        EXPECT_FALSE(SaveJournal::recover(journal).hadRun) << "a recovery ends the run";
    }
    EXPECT_GT(completedAt, int(files.size())) << "every file takes a journal entry and writes";
    EXPECT_GT(halfWrittenRuns, 0) << "some stop must have left the commit half done for the recovery to finish";
}

TEST_F(SaveJournalTest, RecoveryLeavesAFileChangedSinceTheStopAndNamesIt)
{
    // The first stop inside the commit, where a file is journaled but not yet written, is looked for.
    for (int k = 1; k < 100; ++k) {
        const Copies copies(files);
        InPlaceWriter::stopDeadAfterWrites(k);
        shiftByAnHour(copies, journal);
        InPlaceWriter::stopDeadAfterWrites(-1);
        const std::vector<QByteArray> stopped = copies.bytes();
        std::size_t torn = 0;
        while (torn < files.size() && stopped[torn] != original[torn])
            ++torn;
        if (torn == files.size() || stopped == original) {
            SaveJournal::recover(journal);
            continue;
        }
        // Another program writes into a patch that the save had not reached.
        const std::vector<qint64> patched = differingOffsets(stopped[torn], clean[torn]);
        ASSERT_FALSE(patched.empty());
        {
            QFile file(copies.paths[torn]);
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            file.seek(patched.front());
            file.write("#");
        }
        const QByteArray changed = fileBytes(copies.paths[torn]);

        const SaveJournal::Outcome recovered = SaveJournal::recover(journal);
        ASSERT_EQ(recovered.left.size(), 1u);
        EXPECT_EQ(recovered.left[0].first, QFileInfo(copies.paths[torn]).absoluteFilePath());
        EXPECT_EQ(fileBytes(copies.paths[torn]), changed) << "a file failing its proof stays";
        return;
    }
    FAIL() << "no stop came inside the commit";
}

TEST_F(SaveJournalTest, RevertPutsBackTheLastRunAndLeavesAFileChangedSince)
{
    const Copies copies(files);
    std::vector<qint64> modified;
    for (const QString &path : copies.paths)
        modified.push_back(QFileInfo(path).lastModified().toMSecsSinceEpoch());
    shiftByAnHour(copies, journal);
    ASSERT_EQ(copies.bytes(), clean);
    // Outside the system, the last file's date is changed back by hand.
    const QString changedPath = copies.paths.back();
    const std::vector<qint64> saved = differingOffsets(original.back(), clean.back());
    {
        QFile file(changedPath);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(saved.front());
        file.write(original.back().mid(saved.front(), 1));
    }
    const QByteArray changed = fileBytes(changedPath);

    const SaveJournal::Outcome reverted = SaveJournal::revert(journal);
    EXPECT_EQ(reverted.reverted.size(), files.size() - 1);
    ASSERT_EQ(reverted.left.size(), 1u);
    EXPECT_EQ(reverted.left[0].first, QFileInfo(changedPath).absoluteFilePath());
    EXPECT_EQ(fileBytes(changedPath), changed);
    for (std::size_t i = 0; i + 1 < files.size(); ++i) {
        EXPECT_EQ(fileBytes(copies.paths[i]), original[i]) << copies.paths[i].toStdString();
        EXPECT_EQ(QFileInfo(copies.paths[i]).lastModified().toMSecsSinceEpoch(), modified[i]);
    }

    // The revert is the last run now: reverting it saves the files again.
    const SaveJournal::Outcome again = SaveJournal::revert(journal);
    EXPECT_EQ(again.reverted.size(), files.size() - 1);
    for (std::size_t i = 0; i + 1 < files.size(); ++i)
        EXPECT_EQ(fileBytes(copies.paths[i]), clean[i]);
}

// A record is read whole or not at all: a line torn at the end is what a kill leaves and is
// passed over in silence, while damage between good lines is named, and the rest is still done.
TEST_F(SaveJournalTest, ATornLastLineIsSilentAndDamageInTheMiddleIsNamed)
{
    const Copies copies(files);
    shiftByAnHour(copies, journal);
    QFile file(journal);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QList<QByteArray> lines = file.readAll().split('\n');
    file.close();
    ASSERT_GT(lines.size(), 4);
    // The run's end mark is lost, a half record follows: the run reads as interrupted.
    lines.removeAt(lines.size() - 2);
    lines.last() = lines[1].left(lines[1].size() / 2);
    QByteArray torn = lines.join('\n');
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(torn);
    file.close();
    const SaveJournal::Outcome finished = SaveJournal::recover(journal);
    EXPECT_TRUE(finished.hadRun);
    EXPECT_TRUE(finished.left.empty()) << finished.left.front().second.toStdString();
    expectOriginalOrClean(copies, "after a torn last line");

    // A block of NULs in the middle, as a crash of the file system leaves.
    std::fill(lines[2].begin(), lines[2].end(), '\0');
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(lines.join('\n'));
    file.close();
    const SaveJournal::Outcome damaged = SaveJournal::recover(journal);
    ASSERT_FALSE(damaged.left.empty());
    EXPECT_EQ(damaged.left.front().first, journal);
    EXPECT_TRUE(damaged.left.front().second.contains(QStringLiteral("line 3"))) << damaged.left.front().second.toStdString();
}
