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

#include <csignal>
#include <iostream>

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

// The corpus JPEGs dated by their own stamps, whose saves stay on the journaled in-place road.
// A file dated only by the file system takes new date tags through exiftool, which rewrites the
// whole file at once and is not part of the journal.
QStringList taggedJpegs()
{
    QStringList tagged;
    for (const QString &path : corpusFiles({QStringLiteral("jpg")})) {
        const std::optional<StampRecord> &stamp = PicScanner::readFacts(path, false).dates.exifDateTimeOriginal;
        const QString text = stamp ? DateStampCodec::exifTimeStampFromData(stamp->dateData) : QString();
        if (!text.isEmpty() && !DateStampCodec::isValidZeroStamp(text))
            tagged << path;
    }
    return tagged;
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
