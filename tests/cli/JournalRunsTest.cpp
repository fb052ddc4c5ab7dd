#include "formats/SaveJournal.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orv;
using namespace orv::test;

namespace {

class JournalRuns : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;

    QString journal() const { return home.filePath(QStringLiteral(".local/share/orvelle/saveJournal.jsonl")); }

    // Files whose dates are tags, saved in place, and optionally one dated by its file alone,
    // which takes new tags through exiftool.
    QStringList makeFolder(const QString &name, int count, bool withUntagged = false)
    {
        const QString folder = work.filePath(name);
        QDir().mkpath(folder);
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            TiffShape tags = TiffShape::camera("2024:05:01 10:00:00");
            tags.dateTime = Stamp::text("2024:05:01 10:00:05");
            paths << buildJpeg({.exif = tags}).write(folder, QStringLiteral("p%1").arg(i));
        }
        if (withUntagged)
            paths << buildJpeg({}).write(folder, QStringLiteral("untagged"));
        return paths;
    }

    // The untagged file takes its date as added tags, so that exiftool writes in every run.
    CliResult shift(const QString &folder, const QStringList &extra = {})
    {
        return runCli(QStringList{"shift", "--add-missing-dates", "--by", "+1:00:00"} + extra + QStringList{folder},
                      home.path());
    }
};

std::vector<QByteArray> bytesOf(const QStringList &paths)
{
    std::vector<QByteArray> all;
    for (const QString &path : paths)
        all.push_back(fileBytes(path));
    return all;
}

QString modifiedText(const QString &path)
{
    struct stat status{};
    ::stat(QFile::encodeName(path).constData(), &status);
    return QStringLiteral("%1.%2").arg(status.st_mtim.tv_sec).arg(status.st_mtim.tv_nsec, 9, 10, QLatin1Char('0'));
}

// Reads a running process's stderr until `text` shows, for at most 20 s.
bool waitForText(QProcess &process, const QByteArray &text, QByteArray &seen)
{
    for (int i = 0; i < 200 && !seen.contains(text); ++i) {
        process.waitForReadyRead(100);
        seen += process.readAllStandardError();
    }
    return seen.contains(text);
}

} // namespace

// Two shifts started together over one folder: the second waits for the first and says so, every
// file ends two hours later and whole, and the journal walks the second run back and forth.
// With --no-wait a run refuses at once while another holds the journal.
TEST_F(JournalRuns, TwoRunsAtOnceTakeTurnsAndNoWaitRefuses)
{
    const QStringList sequential = makeFolder(QStringLiteral("sequential"), 12);
    const QStringList together = makeFolder(QStringLiteral("together"), 12);
    const std::vector<QByteArray> original = bytesOf(together);
    ASSERT_EQ(shift(work.filePath(QStringLiteral("sequential"))).exitCode, 0);
    const std::vector<QByteArray> oneHour = bytesOf(sequential);
    ASSERT_EQ(shift(work.filePath(QStringLiteral("sequential"))).exitCode, 0);
    const std::vector<QByteArray> twoHours = bytesOf(sequential);
    ASSERT_NE(oneHour, twoHours);

    // The test holds the journal while both start, so that they meet.
    std::shared_ptr<JournalLock> held = JournalLock::take(journal(), false);
    ASSERT_TRUE(held);
    const QStringList arguments{"shift", "--by", "+1:00:00", work.filePath(QStringLiteral("together"))};
    const CliResult refused = runCli(QStringList{"--no-wait"} + arguments, home.path());
    EXPECT_EQ(refused.exitCode, 3) << refused.err.toStdString();
    EXPECT_EQ(bytesOf(together), original) << "a refused run touches nothing";

    const std::unique_ptr<QProcess> first = startCli(arguments, home.path());
    const std::unique_ptr<QProcess> second = startCli(arguments, home.path());
    QByteArray firstErr, secondErr;
    EXPECT_TRUE(waitForText(*first, "waiting", firstErr));
    EXPECT_TRUE(waitForText(*second, "waiting", secondErr));
    held.reset();
    ASSERT_TRUE(first->waitForFinished(60000));
    ASSERT_TRUE(second->waitForFinished(60000));
    EXPECT_EQ(first->exitCode(), 0) << (firstErr + first->readAllStandardError()).toStdString();
    EXPECT_EQ(second->exitCode(), 0) << (secondErr + second->readAllStandardError()).toStdString();
    EXPECT_EQ(bytesOf(together), twoHours) << "each file is two hours later, none torn";

    const CliResult back = runCli({"revert"}, home.path());
    EXPECT_EQ(back.exitCode, 0) << back.err.toStdString();
    EXPECT_EQ(bytesOf(together), oneHour);
    EXPECT_EQ(runCli({"revert"}, home.path()).exitCode, 0);
    EXPECT_EQ(bytesOf(together), twoHours) << "the revert was the last run: its revert saves again";
}

// A journal on a full file system: the run stops before any file changes (bytes, dates, exiftool's
// writes), says where and why, and leaves the last run's journal as it was. Without root, a
// journal folder that may not be written stands in for the full disk.
TEST_F(JournalRuns, AJournalThatCannotBeWrittenStopsTheRunBeforeAnyFile)
{
    const QStringList earlier = makeFolder(QStringLiteral("earlier"), 2);
    ASSERT_EQ(shift(work.filePath(QStringLiteral("earlier"))).exitCode, 0);
    const QByteArray lastJournal = fileBytes(journal());
    const QString data = QFileInfo(journal()).absolutePath();

    const bool mounted =
        ::mount("orvelle-test", QFile::encodeName(data).constData(), "tmpfs", 0, "size=64k") == 0;
    if (!mounted && ::geteuid() == 0)
        GTEST_SKIP() << "root that may not mount: no folder refuses its writes";
    if (mounted) {
        // The mount hides the folder's files: the last journal is put on it, then it is filled.
        QFile journalCopy(journal());
        ASSERT_TRUE(journalCopy.open(QIODevice::WriteOnly));
        journalCopy.write(lastJournal);
        journalCopy.close();
        QFile filler(data + QStringLiteral("/filler"));
        ASSERT_TRUE(filler.open(QIODevice::Append));
        const QByteArray block(4096, 'x');
        while (filler.write(block) == block.size() && filler.flush()) {
        }
    } else {
        ASSERT_TRUE(QFile::setPermissions(data, QFile::ReadOwner | QFile::ExeOwner));
    }
    const QStringList paths = makeFolder(QStringLiteral("stopped"), 3, true);
    const std::vector<QByteArray> before = bytesOf(paths);
    QStringList times;
    for (const QString &path : paths)
        times << modifiedText(path);

    const CliResult stopped = shift(work.filePath(QStringLiteral("stopped")));

    EXPECT_EQ(stopped.exitCode, 1);
    EXPECT_TRUE(stopped.err.contains(data.toUtf8())) << stopped.err.toStdString();
    EXPECT_TRUE(stopped.err.contains(mounted ? "no space left on the device" : "permission denied"))
        << stopped.err.toStdString();
    EXPECT_FALSE(stopped.err.contains("error 2")) << "no file is blamed for the journal";
    EXPECT_EQ(bytesOf(paths), before) << "no byte changed, exiftool's file included";
    for (int i = 0; i < paths.size(); ++i)
        EXPECT_EQ(modifiedText(paths[i]), times[i]) << paths[i].toStdString();
    EXPECT_FALSE(QFileInfo::exists(journal() + QStringLiteral(".new")));
    EXPECT_EQ(fileBytes(journal()), lastJournal) << "the last run can still be undone";
    if (mounted) {
        ::umount(QFile::encodeName(data).constData());
    } else {
        QFile::setPermissions(data, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    const CliResult next = runCli({"scan", work.filePath(QStringLiteral("earlier"))}, home.path());
    EXPECT_FALSE(next.err.contains("interrupted")) << "no empty journal is left to finish";
}

// A revert names each file it cannot put back, an in-place file changed since and a file
// exiftool wrote and that changed since, restores the others, and exits 1.
TEST_F(JournalRuns, RevertNamesEveryFileChangedSinceAndExitsOne)
{
    const QStringList paths = makeFolder(QStringLiteral("f"), 3, true);
    const std::vector<QByteArray> original = bytesOf(paths);
    ASSERT_EQ(shift(work.filePath(QStringLiteral("f"))).exitCode, 0);
    const QString untagged = paths.back();
    ASSERT_NE(fileBytes(untagged), original.back()) << "exiftool added its tags";
    // Another program rewrites two of the saved files.
    const QString inPlace = paths[1];
    const std::vector<qint64> saved = differingOffsets(original[1], fileBytes(inPlace));
    ASSERT_FALSE(saved.empty());
    for (const QString &path : {inPlace, untagged}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(path == inPlace ? saved.front() : file.size() / 2);
        file.write("#");
    }

    const CliResult reverted = runCli({"revert"}, home.path());

    EXPECT_EQ(reverted.exitCode, 1);
    for (const QString &path : {inPlace, untagged})
        EXPECT_TRUE(reverted.err.contains(QFileInfo(path).absoluteFilePath().toUtf8()))
            << path.toStdString() << " is named in: " << reverted.err.toStdString();
    EXPECT_EQ(fileBytes(paths[0]), original[0]);
    EXPECT_EQ(fileBytes(paths[2]), original[2]);
}

// Raw files' new places go to the sidecar that exiftool makes for their base name; three raw files
// of one base name write it at once. The revert takes the sidecar away and leaves the raw files as
// they were, and the revert of the revert brings the same sidecar back.
TEST_F(JournalRuns, ARevertTakesAwayTheSidecarExiftoolMadeAndItsRevertBringsItBack)
{
    QTemporaryDir dir;
    QStringList raws;
    for (const QString &suffix : {QStringLiteral("cr2"), QStringLiteral("cr3"), QStringLiteral("crw")}) {
        const QString source = corpusFile(QStringLiteral("exiftool-t/CanonRaw.") + suffix);
        if (!QFileInfo::exists(source))
            GTEST_SKIP() << "no corpus";
        raws << copyToTemporary(source, dir);
    }
    const QString sidecar = dir.filePath(QStringLiteral("CanonRaw.xmp"));
    const std::vector<QByteArray> rawsBefore = bytesOf(raws);

    const CliResult placed = runCli({"locate", "--at", "35.6586,139.7454", "--pref",
                                     "addRawLocationsOnlyInSidecars=true", dir.path()},
                                    home.path());
    ASSERT_EQ(placed.exitCode, 0) << placed.err.toStdString();
    ASSERT_TRUE(QFileInfo::exists(sidecar));
    const QByteArray made = fileBytes(sidecar);
    EXPECT_EQ(bytesOf(raws), rawsBefore);

    const CliResult back = runCli({"revert"}, home.path());
    EXPECT_EQ(back.exitCode, 0) << back.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(sidecar));
    EXPECT_EQ(bytesOf(raws), rawsBefore);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);

    EXPECT_EQ(runCli({"revert"}, home.path()).exitCode, 0);
    EXPECT_EQ(fileBytes(sidecar), made);
}
