#include "core/PicScanner.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <QFileInfo>

#include <csignal>
#include <iostream>
#include <fcntl.h>
#include <sys/stat.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr int copiesPerRun = 400;

// How many kills: ORV_KILL_RUNS for the long run (docs/testing.md), a CI-sized count otherwise.
int killRuns()
{
    bool ok = false;
    const int asked = qEnvironmentVariableIntValue("ORV_KILL_RUNS", &ok);
    return ok && asked > 0 ? asked : 50;
}

// 400 copies of the corpus's JPEGs, one after another, in a folder of their own.
QStringList makeCopies(const QString &folder, const QStringList &sources)
{
    QDir().mkpath(folder);
    QStringList paths;
    for (int i = 0; i < copiesPerRun; ++i) {
        const QString path = QStringLiteral("%1/%2.jpg").arg(folder).arg(i, 3, 10, QLatin1Char('0'));
        if (!QFile::copy(sources[i % sources.size()], path))
            throw std::runtime_error("cannot copy to " + path.toStdString());
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        paths << path;
    }
    return paths;
}

bool isTagged(const QString &path)
{
    const std::optional<StampRecord> &stamp = PicScanner::readFacts(path, false).dates.exifDateTimeOriginal;
    const QString text = stamp ? DateStampCodec::exifTimeStampFromData(stamp->dateData) : QString();
    return !text.isEmpty() && !DateStampCodec::isValidZeroStamp(text);
}

// The corpus JPEGs dated by their own stamps, whose saves stay on the in-place road.
QStringList taggedJpegs()
{
    QStringList tagged;
    for (const QString &path : corpusFiles({QStringLiteral("jpg")})) {
        if (isTagged(path))
            tagged << path;
    }
    return tagged;
}

// Corpus JPEGs dated by the file system alone: a shift gives them date tags through exiftool.
QStringList untaggedJpegs()
{
    QStringList untagged;
    for (const QString &path : corpusFiles({QStringLiteral("jpg")})) {
        if (QFileInfo(path).size() > 0 && !isTagged(path))
            untagged << path;
    }
    return untagged;
}

// A modification time to the nanosecond.
timespec modifiedAt(const QString &path)
{
    struct stat status{};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mtim;
}

// A kill ends the exiftool child with its parent, as the child's death signal does.
void killWithChildren(qint64 pid)
{
    QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    QList<pid_t> children;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile list(tasks.filePath(task + QStringLiteral("/children")));
        if (list.open(QIODevice::ReadOnly)) {
            for (const QByteArray &child : list.readAll().split(' ')) {
                if (!child.trimmed().isEmpty())
                    children << pid_t(child.trimmed().toInt());
            }
        }
    }
    ::kill(pid_t(pid), SIGKILL);
    for (const pid_t child : children)
        ::kill(child, SIGKILL);
}

} // namespace

// A shift killed at any moment, then any command: every file is its original or its clean +1 h
// result, none torn, and a revert after a finished run brings the originals back.
TEST(SaveKill, AKilledShiftIsFinishedByTheNextCommandAndNoFileIsTorn)
{
    const QStringList sources = taggedJpegs();
    if (sources.isEmpty())
        GTEST_SKIP() << "no corpus";
    QTemporaryDir work;
    const QString home = work.filePath(QStringLiteral("home"));
    const QString empty = work.filePath(QStringLiteral("empty"));
    QDir().mkpath(empty);

    const QStringList originals = makeCopies(work.filePath(QStringLiteral("original")), sources);
    std::vector<QByteArray> original, clean;
    for (const QString &path : originals)
        original.push_back(fileBytes(path));
    const QStringList cleanRun = makeCopies(work.filePath(QStringLiteral("clean")), sources);
    QElapsedTimer timer;
    timer.start();
    runCli({QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("+1:00:00"),
            work.filePath(QStringLiteral("clean"))},
           home);
    const qint64 runMs = std::max<qint64>(timer.elapsed(), 20);
    int changed = 0;
    for (int i = 0; i < copiesPerRun; ++i) {
        clean.push_back(fileBytes(cleanRun[i]));
        changed += clean.back() != original[i];
    }
    ASSERT_GT(changed, copiesPerRun / 2) << "most copies must be saved for kills to matter";

    int killedWhileSaving = 0;
    int finishedByNext = 0;
    const int runs = killRuns();
    const QString folder = work.filePath(QStringLiteral("killed"));
    const QStringList paths = makeCopies(folder, sources);
    for (int run = 0; run < runs; ++run) {
        const std::unique_ptr<QProcess> shift = startCli(
            {QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("+1:00:00"), folder},
            home);
        ASSERT_TRUE(shift->waitForStarted());
        QThread::usleep(QRandomGenerator::global()->bounded(quint32(runMs * 1000)));
        ::kill(pid_t(shift->processId()), SIGKILL);
        shift->waitForFinished();
        killedWhileSaving += shift->exitStatus() == QProcess::CrashExit;

        const CliResult next = runCli({QStringLiteral("scan"), empty}, home);
        EXPECT_FALSE(next.err.contains("left as it is")) << next.err.toStdString();
        finishedByNext += next.err.contains("interrupted save was finished");
        int torn = 0;
        for (int i = 0; i < copiesPerRun; ++i) {
            const QByteArray now = fileBytes(paths[i]);
            torn += now != original[i] && now != clean[i];
            // The next run starts from the originals again.
            if (now != original[i]) {
                QFile file(paths[i]);
                ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
                file.write(original[i]);
            }
        }
        EXPECT_EQ(torn, 0) << "kill " << run << " left torn files";
    }
    EXPECT_GT(killedWhileSaving, 0) << "no kill came before the end of a run";
    EXPECT_GT(finishedByNext, 0) << "no kill came while files were written";
    std::cout << killedWhileSaving << " of " << runs << " runs killed, " << finishedByNext
              << " of them while writing\n";

}

TEST(SaveKill, RevertBringsTheLastRunsFilesBackToTheirOriginalBytes)
{
    const QStringList sources = taggedJpegs();
    if (sources.isEmpty())
        GTEST_SKIP() << "no corpus";
    QTemporaryDir work;
    const QString home = work.filePath(QStringLiteral("home"));
    const QString folder = work.filePath(QStringLiteral("f"));
    const QStringList paths = makeCopies(folder, sources);
    std::vector<QByteArray> original;
    for (const QString &path : paths)
        original.push_back(fileBytes(path));
    runCli({QStringLiteral("shift"), QStringLiteral("--by"), QStringLiteral("+1:00:00"), folder},
           home);
    ASSERT_NE(fileBytes(paths[1]), original[1]);

    const CliResult revert = runCli({QStringLiteral("revert")}, home);
    EXPECT_EQ(revert.exitCode, 0) << revert.err.toStdString();
    for (int i = 0; i < copiesPerRun; ++i)
        EXPECT_EQ(fileBytes(paths[i]), original[i]) << paths[i].toStdString();
    EXPECT_EQ(runCli({QStringLiteral("revert")}, home).exitCode, 0) << "a revert of the revert";
    EXPECT_NE(fileBytes(paths[1]), original[1]);
}

// A shift whose files go partly in place and partly through exiftool, killed at any moment: each
// file is its original or its clean result, none torn, none a temporary; and a revert then
// brings every file back byte for byte, with its modification time to the nanosecond.
TEST(SaveKill, AKilledMixedShiftLeavesEachFileWholeAndRevertRestoresEveryOriginal)
{
    const QStringList tagged = taggedJpegs();
    const QStringList untagged = untaggedJpegs();
    if (tagged.isEmpty() || untagged.isEmpty())
        GTEST_SKIP() << "the corpus lacks tagged or untagged JPEGs";
    QTemporaryDir work;
    const QString home = work.filePath(QStringLiteral("home"));
    const QString empty = work.filePath(QStringLiteral("empty"));
    const QString folder = work.filePath(QStringLiteral("mixed"));
    QDir().mkpath(empty);
    QDir().mkpath(folder);
    QStringList paths;
    std::vector<QByteArray> original;
    std::vector<timespec> originalTimes;
    for (int i = 0; i < 24; ++i) {
        const QString &source = i % 3 == 0 ? untagged[(i / 3) % untagged.size()] : tagged[i % tagged.size()];
        const QString path = QStringLiteral("%1/%2.jpg").arg(folder).arg(i, 2, 10, QLatin1Char('0'));
        ASSERT_TRUE(QFile::copy(source, path));
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        // Nanoseconds a millisecond clock would lose.
        const timespec times[2] = {{0, UTIME_OMIT}, {1600000000 + i, 123456789}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        paths << path;
        original.push_back(fileBytes(path));
        originalTimes.push_back(modifiedAt(path));
    }
    const auto expectOriginals = [&](const std::string &when) {
        for (int i = 0; i < paths.size(); ++i) {
            EXPECT_EQ(fileBytes(paths[i]), original[i]) << paths[i].toStdString() << " " << when;
            const timespec now = modifiedAt(paths[i]);
            EXPECT_TRUE(now.tv_sec == originalTimes[i].tv_sec && now.tv_nsec == originalTimes[i].tv_nsec)
                << paths[i].toStdString() << " keeps its time to the nanosecond " << when;
        }
    };
    const QStringList shift{QStringLiteral("shift"), QStringLiteral("--add-missing-dates"), QStringLiteral("--by"),
                            QStringLiteral("+1:00:00"), folder};

    // The clean result, in the very files: exiftool dates them by their birth time, which only
    // their own inodes, restored by the revert, keep.
    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(runCli(shift, home).exitCode, 0);
    const qint64 runMs = std::max<qint64>(timer.elapsed(), 20);
    std::vector<QByteArray> clean;
    for (const QString &path : paths)
        clean.push_back(fileBytes(path));
    for (int i = 0; i < paths.size(); i += 3)
        ASSERT_NE(clean[i], original[i]) << "exiftool gave " << paths[i].toStdString() << " its tags";
    const CliResult undo = runCli({QStringLiteral("revert")}, home);
    ASSERT_EQ(undo.exitCode, 0) << undo.err.toStdString();
    expectOriginals("after the revert of a clean run");

    int killedWhileSaving = 0;
    int killedMidRun = 0;
    // The runs' length follows the machine's load: kills that find nothing changed yet wait
    // longer next time, kills that find the run over come sooner.
    double pace = 1.0;
    for (int run = 0; run < 12; ++run) {
        const std::unique_ptr<QProcess> cli = startCli(shift, home);
        ASSERT_TRUE(cli->waitForStarted());
        // exiftool's files change as the run goes, the others together at its end; some kills
        // come after the end, so that every revert below has files to restore.
        const quint32 span = quint32(runMs * pace * 1000);
        QThread::usleep(span * 3 / 10 + QRandomGenerator::global()->bounded(span * 12 / 10));
        killWithChildren(cli->processId());
        cli->waitForFinished();
        const bool crashed = cli->exitStatus() == QProcess::CrashExit;
        killedMidRun += crashed;
        const CliResult next = runCli({QStringLiteral("scan"), empty}, home);
        EXPECT_FALSE(next.err.contains("left as it is")) << next.err.toStdString();
        bool anyNew = false;
        for (int i = 0; i < paths.size(); ++i) {
            const QByteArray now = fileBytes(paths[i]);
            EXPECT_TRUE(now == original[i] || now == clean[i]) << paths[i].toStdString() << " is torn, kill " << run;
            anyNew = anyNew || now != original[i];
        }
        const QStringList present = QDir(folder).entryList(QDir::Files | QDir::Hidden);
        EXPECT_EQ(present.size(), paths.size()) << "no temporary is left beside the files: "
                                                << present.join(u' ').toStdString();
        if (!anyNew) {
            pace *= 1.6;
            continue;
        }
        if (!crashed)
            pace *= 0.7;
        ++killedWhileSaving;
        const CliResult reverted = runCli({QStringLiteral("revert")}, home);
        EXPECT_EQ(reverted.exitCode, 0) << reverted.err.toStdString();
        expectOriginals("after kill " + std::to_string(run) + " and a revert");
    }
    EXPECT_GT(killedMidRun, 0) << "no kill came before the end of a run";
    EXPECT_GT(killedWhileSaving, 0) << "no kill came after a file changed";
    std::cout << killedMidRun << " of 12 runs killed, " << killedWhileSaving << " after a file changed\n";
}
