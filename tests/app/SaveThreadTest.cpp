// A save run on its pool thread hands each folder's end to the main thread, where the views and
// the undo history read folders.

#include "app/AppController.h"
#include "support/MediaFileBuilder.h"
#include "support/SaveFixture.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QThread>

using namespace orv;
using namespace orv::test;

namespace {

void ensureApplication()
{
    static int argc = 1;
    static char name[] = "tests_app";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

class SaveThreadTest : public SaveFixture
{
};

TEST_F(SaveThreadTest, AFoldersEndIsAppliedOnTheMainThreadWhileTheRunWaits)
{
    ensureApplication();
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    MySinglePic &pic = import(buildJpeg({.exif = tags}));
    folder.setSfDateModificationsFromTimeInterval(3600, false);

    FixedSaveAnswers proceed(true);
    SaveRun run({&folder}, defaultSettings(), proceed);
    bool endedOnMainThread = false;
    double offsetAtEnd = -1;
    QObject::connect(&run, &SaveRun::folderSaved, [&](MySingleFolder *saved) {
        endedOnMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        offsetAtEnd = saved->sfDateModificationsTimeInterval;
    });
    QFutureWatcher<SaveOutcome> watcher;
    QEventLoop waiting;
    QObject::connect(&watcher, &QFutureWatcher<SaveOutcome>::finished, &waiting, &QEventLoop::quit);
    watcher.setFuture(run.start());
    waiting.exec();

    EXPECT_TRUE(endedOnMainThread);
    EXPECT_EQ(offsetAtEnd, 0.0) << "the folder's offset is cleared in that step";
    EXPECT_TRUE(watcher.result().savedPics.contains(&pic));
    EXPECT_EQ(pic.spDateTimeModified(), pic.spDateTimeOriginal);
}

} // namespace
