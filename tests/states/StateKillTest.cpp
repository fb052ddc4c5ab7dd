// A process killed between two changes leaves a kept working set that restores: the state on
// disk is always one the process wrote whole, the last or the one before it.

#include "WorkingSet.h"

#include "app/StateKeeper.h"
#include "folders/MySingleFolder.h"
#include "states/StateRestore.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <cmath>
#include <csignal>

using namespace orv;
using namespace orv::test;
using namespace Qt::StringLiterals;

namespace {

const char *const childFolder = "ORV_STATE_KILL_FOLDER";
const char *const childState = "ORV_STATE_KILL_STATE";
constexpr double step = 60.0;

// The child: one change a little more often than the keeper writes, said on stdout, until it is
// killed. Runs only when the parent test starts it.
TEST(StateKill, ChildChangesUntilKilled)
{
    if (!qEnvironmentVariableIsSet(childFolder))
        GTEST_SKIP() << "runs as the child of KillBetweenChangesLeavesAStateThatRestores";
    ensureStatesApplication();
    WorkingSet set;
    set.importFolders({qEnvironmentVariable(childFolder)});
    StateKeeper keeper(set.controller, qEnvironmentVariable(childState));
    keeper.start();
    for (int change = 1;; ++change) {
        set.controller.dateChanges().dragChangedDates(set.folders(), step * change, false);
        printf("change %d\n", change);
        fflush(stdout);
        QEventLoop wait;
        QTimer::singleShot(StateKeeper::debounceMilliseconds + 50 + change % 3 * 20, &wait, &QEventLoop::quit);
        wait.exec();
    }
}

TEST(StateKill, KillBetweenChangesLeavesAStateThatRestores)
{
    ensureStatesApplication();
    QTemporaryDir root;
    const QString folder = root.filePath(u"photos"_s);
    QDir().mkpath(folder);
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    const MediaFile photo = buildJpeg({.exif = tags});
    for (int i = 0; i < 200; ++i)
        photo.write(folder, u"p%1"_s.arg(i, 3, 10, QLatin1Char('0')));
    const QString state = root.filePath(u"support/savedFolders_v6"_s);

    for (int run = 0; run < 4; ++run) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(childFolder), folder);
        environment.insert(QString::fromLatin1(childState), state);
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {u"--gtest_filter=StateKill.ChildChangesUntilKilled"_s});
        ASSERT_TRUE(child.waitForStarted());
        int said = 0;
        const int killAfter = 2 + run % 2;
        while (said < killAfter && child.waitForReadyRead(60000))
            while (child.canReadLine())
                said = child.readLine().trimmed().mid(7).toInt();
        ASSERT_EQ(said, killAfter) << child.readAllStandardError().toStdString();
        // Somewhere in the next debounce, its write or the change after it.
        QThread::msleep(StateKeeper::debounceMilliseconds + QRandomGenerator::global()->bounded(150));
        ::kill(pid_t(child.processId()), SIGKILL);
        child.waitForFinished();
        while (child.canReadLine())
            said = std::max(said, child.readLine().trimmed().mid(7).toInt());

        StateRestore::Restored restored = StateRestore::fromFile(state);
        ASSERT_TRUE(restored.read.problem.isEmpty()) << restored.read.problem.toStdString();
        ASSERT_EQ(restored.read.folders.size(), 1u);
        EXPECT_EQ(restored.read.folders.at(0)->sfPicDetails_fullArray.size(), 200);
        // Whole, and one of the changes made: on a loaded machine the writer may lag a change
        // or two behind the one the kill interrupted.
        const double offset = restored.read.folders.at(0)->sfDateModificationsTimeInterval;
        const double change = offset / step;
        EXPECT_TRUE(change == std::floor(change) && change >= 1 && change <= said)
            << "run " << run << ": kept " << offset << " after change " << said;
        EXPECT_TRUE(restored.report.isClean());
    }
}

} // namespace
