// The movie view and the stills sheet in the real window, offscreen: positions marked and taken
// back by keys, a movie that cannot play says why, and the stills of the positions join the
// working set.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "support/Corpus.h"
#include "ui/EditActions.h"
#include "ui/MovieStillSheet.h"
#include "ui/MovieView.h"

#include <QAction>
#include <QListWidget>
#include <QProcess>
#include <QTest>

namespace orv::test {
namespace {

class MovieWindowTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        ORV_SKIP_WITHOUT_CORPUS();
        phonePath = dir.filePath(QStringLiteral("phone.mov"));
        QFile::copy(corpusFile(QStringLiteral("metadata-extractor-images/mov/with-gps.mov")), phonePath);
        QFile(phonePath).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        // Sound alone: a movie with nothing to show.
        QProcess::execute(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("quiet"), QStringLiteral("-f"),
                                                     QStringLiteral("lavfi"), QStringLiteral("-i"),
                                                     QStringLiteral("sine=duration=1"), QStringLiteral("-metadata"),
                                                     QStringLiteral("creation_time=2020-01-01T10:00:00Z"),
                                                     dir.filePath(QStringLiteral("sound.mov"))});
        ASSERT_TRUE(waitForImport([this] { window->importPaths({dir.path()}); }));
    }

    MySinglePic *item(const QString &name) const
    {
        for (MySingleFolder *folder : window->controller().theDataSource().droppedFolders())
            for (MySinglePic *pic : folder->sfPicDetails_fullArray)
                if (pic->spName == name)
                    return pic;
        return nullptr;
    }

    MovieView *openMovie(const QString &name)
    {
        MySinglePic *movie = item(name);
        EXPECT_TRUE(movie && movie->isMovie()) << name.toStdString();
        if (!movie)
            return nullptr;
        window->findChild<EditActions *>()->selectPics({movie}, movie);
        window->findChild<QAction *>(QStringLiteral("openMovieAction"))->trigger();
        auto *view = window->findChild<MovieView *>();
        EXPECT_TRUE(view);
        if (view) {
            QSignalSpy loaded(view, &MovieView::movieLoaded);
            EXPECT_TRUE(loaded.wait(20000));
            view->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(view));
        }
        return view;
    }

    QString phonePath;
};

TEST_F(MovieWindowTest, PositionsAreMarkedAndTakenBackByKeys)
{
    MovieView *view = openMovie(QStringLiteral("phone.mov"));
    ASSERT_TRUE(view && view->isPlayable()) << (view ? view->problem().toStdString() : std::string());
    EXPECT_FALSE(view->shownFrame().isNull()) << "the frame at the position is on show";
    MySinglePic &movie = view->movie();
    QUndoStack &stack = window->controller().uManager();
    const int steps = stack.count();

    view->jumpToTime(1.0);
    QTest::keyClick(view, Qt::Key_M);
    view->jumpToTime(2.5);
    QTest::keyClick(view, Qt::Key_M);
    EXPECT_EQ(MoviePositions::of(movie).movPositions.keys(), (QStringList{QStringLiteral("1.000"), QStringLiteral("2.500")}));
    EXPECT_EQ(stack.count(), steps + 2);
    EXPECT_FALSE(MoviePositions::of(movie).movPositionThumbs.value(QStringLiteral("2.500")).isEmpty())
        << "a position keeps a thumbnail of its frame";

    // Back to the first by key, then removed by key and brought back by undo.
    QTest::keyClick(view, Qt::Key_BracketLeft);
    EXPECT_DOUBLE_EQ(view->presentSeconds(), 1.0);
    QTest::keyClick(view, Qt::Key_Delete);
    EXPECT_EQ(MoviePositions::of(movie).movPositions.keys(), QStringList{QStringLiteral("2.500")});
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(MoviePositions::of(movie).movPositions.keys(), (QStringList{QStringLiteral("1.000"), QStringLiteral("2.500")}));
    EXPECT_EQ(view->findChild<QListWidget *>(QStringLiteral("moviePositions"))->count(), 2);
}

TEST_F(MovieWindowTest, AMovieWithoutPicturesSaysSoAndTakesNoPositions)
{
    MovieView *view = openMovie(QStringLiteral("sound.mov"));
    ASSERT_TRUE(view);
    EXPECT_FALSE(view->isPlayable());
    EXPECT_TRUE(view->problem().contains(QStringLiteral("no video stream"))) << view->problem().toStdString();
    QTest::keyClick(view, Qt::Key_M);
    EXPECT_EQ(view->movie().moviePositions, nullptr);
}

TEST_F(MovieWindowTest, TheSheetMakesStillsOfThePositionsAndImportsThem)
{
    MySinglePic *movie = item(QStringLiteral("phone.mov"));
    ASSERT_TRUE(movie);
    window->controller().moviePositions().saveMoviePosition(*movie, 0.5, {});
    window->controller().moviePositions().saveMoviePosition(*movie, 2.0, {});
    window->findChild<EditActions *>()->selectPics({movie}, movie);
    window->findChild<QAction *>(QStringLiteral("exportStillsAction"))->trigger();
    auto *sheet = window->findChild<MovieStillSheet *>();
    ASSERT_TRUE(sheet);
    QSignalSpy ended(sheet, &MovieStillSheet::exportEnded);
    QSignalSpy imported(&window->controller().theDataSource(), &MyDroppedFolders::importEnded);
    sheet->continueExport();
    ASSERT_TRUE(ended.wait(60000));
    EXPECT_TRUE(sheet->errorString().contains(QStringLiteral("2 made"))) << sheet->errorString().toStdString();
    ASSERT_TRUE(imported.wait(20000));
    EXPECT_TRUE(item(QStringLiteral("00_00_00.500.jpg")));
    EXPECT_TRUE(item(QStringLiteral("00_00_02.000.jpg")));
    EXPECT_EQ(window->controller().theDataSource().droppedFolders().size(), 2);
}

} // namespace
} // namespace orv::test
