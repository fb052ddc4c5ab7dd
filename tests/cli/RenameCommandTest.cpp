#include "support/CliRun.h"
#include "support/Corpus.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <sys/stat.h>

using namespace orv::test;

namespace {

const QString dateTemplate = QStringLiteral("{year}{month}{day}-{hour}{minute}{second}");

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

// The corpus JPEGs whose one capture date is EXIF's, one per date: a name needs no counter.
QStringList singlyDatedJpegs()
{
    QProcess exiftool;
    exiftool.start(QStringLiteral("exiftool"),
                   {QStringLiteral("-q"), QStringLiteral("-q"), QStringLiteral("-if"),
                    QStringLiteral("$EXIF:DateTimeOriginal eq $DateTimeOriginal"), QStringLiteral("-p"),
                    QStringLiteral("$Directory/$FileName|$DateTimeOriginal"), QStringLiteral("-ext"),
                    QStringLiteral("jpg"), QStringLiteral("-r"), corpusLocation()});
    exiftool.waitForFinished(120000);
    static const QRegularExpression realDate(QStringLiteral("^[1-9]\\d{3}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    QMap<QString, QStringList> byDate;
    for (const QByteArray &line : exiftool.readAllStandardOutput().split('\n')) {
        const QString text = QString::fromUtf8(line);
        const QString date = text.section(QLatin1Char('|'), 1);
        if (realDate.match(date).hasMatch())
            byDate[date].append(text.section(QLatin1Char('|'), 0, 0));
    }
    QStringList paths;
    for (const QStringList &sameDate : byDate) {
        if (sameDate.size() == 1)
            paths.append(sameDate.first());
    }
    return paths;
}

void copyAs(const QString &from, const QString &to)
{
    QDir().mkpath(QFileInfo(to).absolutePath());
    ASSERT_TRUE(QFile::copy(from, to)) << to.toStdString();
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner);
}

quint64 inodeOf(const QString &path)
{
    struct stat status{};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? quint64(status.st_ino) : 0;
}

} // namespace

TEST(RenameCommand, DateNamesEqualExiftoolsOnCorpusCopies)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList sources = singlyDatedJpegs();
    ASSERT_GT(sources.size(), 20);
    QTemporaryDir work;
    for (qsizetype i = 0; i < sources.size(); ++i) {
        const QString name = QStringLiteral("%1.jpg").arg(i, 3, 10, QLatin1Char('0'));
        copyAs(sources[i], work.filePath(QStringLiteral("ours/") + name));
        copyAs(sources[i], work.filePath(QStringLiteral("tool/") + name));
    }
    const CliResult ours = runCli({QStringLiteral("rename"), QStringLiteral("--template"), dateTemplate,
                                   work.filePath(QStringLiteral("ours"))},
                                  work.filePath(QStringLiteral("home")));
    EXPECT_EQ(ours.exitCode, 0) << ours.err.toStdString();
    QProcess exiftool;
    exiftool.start(QStringLiteral("exiftool"), {QStringLiteral("-q"), QStringLiteral("-q"),
                                                QStringLiteral("-FileName<DateTimeOriginal"), QStringLiteral("-d"),
                                                QStringLiteral("%Y%m%d-%H%M%S.%%e"), work.filePath(QStringLiteral("tool"))});
    ASSERT_TRUE(exiftool.waitForFinished(120000));
    const QStringList renamed = namesIn(work.filePath(QStringLiteral("ours")));
    EXPECT_EQ(renamed, namesIn(work.filePath(QStringLiteral("tool"))));
    EXPECT_FALSE(renamed.contains(QStringLiteral("000.jpg")));
}

// A directory renamed and reverted, with two files that swap their names in the plan.
TEST(RenameCommand, RenamesAFolderSwapsNamesAndRevertRestoresThem)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList sources = singlyDatedJpegs().mid(0, 6);
    ASSERT_EQ(sources.size(), 6);
    QTemporaryDir work;
    const QString folder = work.filePath(QStringLiteral("photos"));
    const QString home = work.filePath(QStringLiteral("home"));
    // Learn each file's date name, then give the first two each other's.
    for (qsizetype i = 0; i < sources.size(); ++i)
        copyAs(sources[i], QStringLiteral("%1/%2.jpg").arg(folder).arg(i));
    const CliResult dry = runCli({QStringLiteral("rename"), QStringLiteral("--template"), dateTemplate,
                                  QStringLiteral("--dry-run"), QStringLiteral("--json"), folder},
                                 home);
    ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    QMap<QString, QString> dateName;
    for (const QJsonValue item : dry.json())
        dateName.insert(item[QStringLiteral("old")].toString(), item[QStringLiteral("new")].toString());
    ASSERT_EQ(dateName.size(), 6);
    EXPECT_EQ(namesIn(folder).size(), 6) << "a dry run renames nothing";
    ASSERT_TRUE(QFile::rename(folder + QStringLiteral("/0.jpg"), folder + QLatin1Char('/') + dateName[QStringLiteral("1.jpg")]));
    ASSERT_TRUE(QFile::rename(folder + QStringLiteral("/1.jpg"), folder + QLatin1Char('/') + dateName[QStringLiteral("0.jpg")]));
    const quint64 first = inodeOf(folder + QLatin1Char('/') + dateName[QStringLiteral("1.jpg")]);
    const QStringList before = namesIn(folder);

    const CliResult run = runCli({QStringLiteral("rename"), QStringLiteral("--template"), dateTemplate, folder}, home);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.count('\n'), 6);
    QStringList expected = dateName.values();
    expected.sort();
    EXPECT_EQ(namesIn(folder), expected);
    EXPECT_EQ(inodeOf(folder + QLatin1Char('/') + dateName[QStringLiteral("0.jpg")]), first) << "the swap happened";

    const CliResult revert = runCli({QStringLiteral("revert")}, home);
    EXPECT_EQ(revert.exitCode, 0) << revert.err.toStdString();
    EXPECT_EQ(namesIn(folder), before);
    EXPECT_EQ(inodeOf(folder + QLatin1Char('/') + dateName[QStringLiteral("1.jpg")]), first);
}

TEST(RenameCommand, TemplatesThatAreNoneAreUsageErrors)
{
    QTemporaryDir work;
    for (const QString &bad : {QStringLiteral("{yaer}"), QStringLiteral("{day"), QString()}) {
        const CliResult result = runCli({QStringLiteral("rename"), QStringLiteral("--template"), bad, work.path()},
                                        work.filePath(QStringLiteral("home")));
        EXPECT_EQ(result.exitCode, 2) << bad.toStdString();
        EXPECT_TRUE(result.err.contains("Usage: orvelle-cli rename")) << result.err.toStdString();
    }
}

// A rename killed at any moment, then any command: every file is under its old name or its new
// one, all of them alike, and none is lost.
TEST(RenameCommand, AKilledRenameIsFinishedByTheNextCommand)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QString source = singlyDatedJpegs().value(0);
    ASSERT_FALSE(source.isEmpty());
    QTemporaryDir work;
    const QString folder = work.filePath(QStringLiteral("chain"));
    const QString home = work.filePath(QStringLiteral("home"));
    const QString empty = work.filePath(QStringLiteral("empty"));
    QDir().mkpath(empty);
    // One date for all: the counter follows the names, so each file takes the next one's name,
    // a chain of 200 renames.
    constexpr int files = 200;
    QMap<QString, quint64> original;
    for (int i = 1; i <= files; ++i) {
        const QString name = QStringLiteral("%1.jpg").arg(i, 4, 10, QLatin1Char('0'));
        copyAs(source, folder + QLatin1Char('/') + name);
        original.insert(name, inodeOf(folder + QLatin1Char('/') + name));
    }
    const QStringList renameArguments = {QStringLiteral("rename"), QStringLiteral("--template"),
                                         QStringLiteral("{counter:4}"), QStringLiteral("--start"), QStringLiteral("2"), folder};
    const QStringList backArguments = {QStringLiteral("rename"), QStringLiteral("--template"),
                                       QStringLiteral("{counter:4}"), folder};
    runCli(renameArguments, home);
    runCli(backArguments, home);
    ASSERT_EQ(namesIn(folder), original.keys());
    // The import takes most of a run: the kill waits for the run's journal to take the last
    // one's place, which it does as it records the plan, then lands among the renames or after.
    const QString journal = home + QStringLiteral("/.local/share/orvelle/saveJournal.jsonl");

    int finishedByNext = 0;
    for (int run = 0; run < 12; ++run) {
        const std::unique_ptr<QProcess> rename = startCli(renameArguments, home);
        ASSERT_TRUE(rename->waitForStarted());
        const quint64 lastRun = inodeOf(journal);
        QElapsedTimer waited;
        waited.start();
        while (inodeOf(journal) == lastRun && waited.elapsed() < 20000)
            QThread::usleep(50);
        QThread::usleep(QRandomGenerator::global()->bounded(15000u));
        ::kill(pid_t(rename->processId()), SIGKILL);
        rename->waitForFinished();
        const CliResult next = runCli({QStringLiteral("scan"), empty}, home);
        EXPECT_FALSE(next.err.contains("left as it is")) << next.err.toStdString();
        finishedByNext += next.err.contains("interrupted save was finished");
        QMap<QString, quint64> now;
        for (const QString &name : namesIn(folder))
            now.insert(name, inodeOf(folder + QLatin1Char('/') + name));
        if (now == original)
            continue;
        ASSERT_EQ(now.size(), files) << "run " << run;
        for (int i = 1; i <= files; ++i)
            EXPECT_EQ(now.value(QStringLiteral("%1.jpg").arg(i + 1, 4, 10, QLatin1Char('0'))),
                      original.value(QStringLiteral("%1.jpg").arg(i, 4, 10, QLatin1Char('0'))))
                << "run " << run << " file " << i;
        const CliResult back = runCli(backArguments, home);
        ASSERT_EQ(back.exitCode, 0) << back.err.toStdString();
    }
    EXPECT_GT(finishedByNext, 0) << "no kill came while files were renamed";
    std::cout << finishedByNext << " of 12 killed renames were finished by the next command\n";
}
