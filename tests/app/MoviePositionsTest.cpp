// Positions kept in a movie: marked and removed one undo step at a time, found again by their
// keys, and made into stills dated by the movie's present date from the owner of the working set.

#include "app/MovieStillRun.h"
#include "core/MySinglePic.h"
#include "movieframes/FfmpegMovieFrames.h"
#include "states/WorkingSet.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"

#include <QDateTime>
#include <QEventLoop>

namespace orv::test {
namespace {

class MoviePositionsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ORV_SKIP_WITHOUT_CORPUS();
        const QString folder = root.filePath(QStringLiteral("trip"));
        QDir().mkpath(folder);
        QFile::copy(corpusFile(QStringLiteral("metadata-extractor-images/mov/with-gps.mov")),
                    folder + QStringLiteral("/phone.mov"));
        QFile(folder + QStringLiteral("/phone.mov")).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        set.importFolders({folder});
        ASSERT_EQ(set.folders().size(), 1);
        movie = set.folders().first()->sfPicDetails_fullArray.value(0);
        ASSERT_TRUE(movie && movie->isMovie());
    }

    QStringList keys() const { return MoviePositions::of(*movie).movPositions.keys(); }

    // The application exists before the owner's folder watcher.
    const bool hasApplication = (ensureStatesApplication(), true);
    QTemporaryDir root;
    WorkingSet set;
    MySinglePic *movie = nullptr;
};

TEST_F(MoviePositionsTest, MarkingAndRemovingAreOneUndoStepEach)
{
    MoviePositionChanges &positions = set.controller.moviePositions();
    QList<MySinglePic *> announced;
    QObject::connect(&set.controller, &AppController::moviePositionsChanged,
                     [&](MySinglePic *changed) { announced.append(changed); });
    QUndoStack &stack = set.controller.uManager();

    EXPECT_EQ(positions.saveMoviePosition(*movie, 1.5, QByteArray("thumb")), QStringLiteral("1.500"));
    EXPECT_EQ(positions.saveMoviePosition(*movie, 3.0, {}), QStringLiteral("3.000"));
    EXPECT_TRUE(positions.saveMoviePosition(*movie, 1.5004, {}).isEmpty()) << "within a millisecond: one key";
    EXPECT_EQ(stack.count(), 2);
    EXPECT_EQ(keys(), (QStringList{QStringLiteral("1.500"), QStringLiteral("3.000")}));
    EXPECT_EQ(MoviePositions::of(*movie).currentMovPosKey, QStringLiteral("3.000"));

    // Stepping: forwards from the last lands on the nearest behind; backwards from the first on none.
    const MoviePositions marked = MoviePositions::of(*movie);
    EXPECT_EQ(marked.positionKeyFor(0.0, true), QStringLiteral("1.500"));
    EXPECT_EQ(marked.positionKeyFor(1.5, true), QStringLiteral("3.000"));
    EXPECT_EQ(marked.positionKeyFor(3.5, true), QStringLiteral("3.000"));
    EXPECT_TRUE(marked.positionKeyFor(1.5, false).isEmpty());

    EXPECT_TRUE(positions.fixateMoviePosition(*movie, QStringLiteral("3.000")));
    EXPECT_TRUE(positions.removeMoviePosition(*movie, QStringLiteral("3.000")));
    const MoviePositions removed = MoviePositions::of(*movie);
    EXPECT_EQ(keys(), QStringList{QStringLiteral("1.500")});
    EXPECT_TRUE(removed.chapterMovPosKey.isEmpty() && removed.movChapterTime.isZero()) << "the choice went with it";
    EXPECT_TRUE(removed.currentMovPosKey.isEmpty());
    EXPECT_EQ(stack.count(), 4);

    stack.undo();
    MoviePositions chosen = marked;
    chosen.fixateMoviePosition(QStringLiteral("3.000"));
    EXPECT_EQ(MoviePositions::of(*movie), chosen);
    stack.undo();
    stack.undo();
    EXPECT_EQ(keys(), QStringList{QStringLiteral("1.500")});
    EXPECT_EQ(MoviePositions::of(*movie).movPositionThumbs.value(QStringLiteral("1.500")), QByteArray("thumb"));
    stack.undo();
    EXPECT_EQ(movie->moviePositions, nullptr) << "undoing the first mark leaves the movie without positions";
    for (int i = 0; i < 4; ++i)
        stack.redo();
    EXPECT_EQ(MoviePositions::of(*movie), removed);
    EXPECT_TRUE(positions.removeMoviePosition(*movie, QStringLiteral("1.500")));
    EXPECT_TRUE(MoviePositions::of(*movie).movPositions.isEmpty()) << "removing the only position leaves none";
    EXPECT_TRUE(MoviePositions::of(*movie).movPositionThumbs.isEmpty());
    EXPECT_EQ(announced.size(), 13) << "four steps, each undone and done again, and one more";
    EXPECT_TRUE(std::all_of(announced.cbegin(), announced.cend(), [this](MySinglePic *p) { return p == movie; }));

    // Chapters are read once and are no step of the user's.
    positions.loadChaptersForAsset(*movie, {0.0, 2.0});
    positions.loadChaptersForAsset(*movie, {1.0});
    EXPECT_EQ(keys(), (QStringList{QStringLiteral("0.000"), QStringLiteral("2.000")}));
    EXPECT_TRUE(MoviePositions::of(*movie).movPositions.value(QStringLiteral("2.000")).isSaved);
    EXPECT_EQ(stack.count(), 5);

    set.controller.saveWillStart();
    EXPECT_TRUE(positions.saveMoviePosition(*movie, 1.0, {}).isEmpty()) << "a save owns the items";
    set.controller.saveWasCancelled({});
}

// "2019:07:24 11:27:44" with "+03:00" as an instant.
QDateTime stampInstant(const ExiftoolTags &tags)
{
    QDateTime stamp = QDateTime::fromString(tags.string(QStringLiteral("EXIF:DateTimeOriginal")),
                                            QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    const QString offset = tags.string(QStringLiteral("EXIF:OffsetTimeOriginal"));
    if (offset.isEmpty())
        return stamp;
    const int seconds = offset.mid(1, 2).toInt() * 3600 + offset.mid(4, 2).toInt() * 60;
    stamp.setOffsetFromUtc(offset.startsWith(QLatin1Char('-')) ? -seconds : seconds);
    return stamp.toUTC();
}

TEST_F(MoviePositionsTest, StillsFromThePositionsTakeThePendingShiftAndAreImported)
{
    // 2019-07-24 08:25:40 UTC in the movie, moved by 1:02:03 and not saved.
    ASSERT_EQ(set.controller.dateChanges().dragChangedDates({set.folders().first()}, 3723, false),
              DateChangeResult::Changed);
    set.controller.moviePositions().saveMoviePosition(*movie, 1.01, {});
    set.controller.moviePositions().saveMoviePosition(*movie, 3.0, {});

    QStringList problems;
    const QList<MovieStillJob> jobs = MovieStillRun::jobsFor({movie}, problems);
    ASSERT_EQ(jobs.size(), 1);
    EXPECT_TRUE(problems.isEmpty());
    EXPECT_EQ(jobs[0].positions, (QList<double>{1.01, 3.0}));
    MovieStillSettings settings = MovieStillRun::settingsFrom(set.prefs);
    EXPECT_EQ(settings.format, MovieStillSettings::Jpeg) << "JPEG until the user chose";
    EXPECT_EQ(settings.jpegQuality, 75.0);

    MovieStillRun run(set.controller, &FfmpegMovieFrames::open);
    QList<MovieStillResult> results;
    QList<qsizetype> progress;
    QEventLoop loop;
    QObject::connect(&run, &MovieStillRun::progressChanged, [&](qsizetype done, qsizetype) { progress.append(done); });
    QObject::connect(&run, &MovieStillRun::finished, [&](const QList<MovieStillResult> &r) {
        results = r;
        loop.quit();
    });
    QObject::connect(&set.controller.theDataSource(), &MyDroppedFolders::importEnded, &loop, &QEventLoop::quit);
    run.start(jobs, settings);
    loop.exec();
    ASSERT_EQ(results.size(), 1);
    ASSERT_EQ(results[0].successes.size(), 2) << (results[0].failures.isEmpty()
                                                      ? std::string()
                                                      : results[0].failures[0].reason.toStdString());
    EXPECT_EQ(progress, (QList<qsizetype>{1, 2}));

    const QDateTime movieDate = QDateTime(QDate(2019, 7, 24), QTime(9, 27, 43), Qt::UTC);
    for (const MovieStillResult::Still &still : results[0].successes) {
        const ExiftoolTags tags = exiftoolTags(still.path);
        EXPECT_EQ(stampInstant(tags), movieDate.addSecs(qint64(still.position))) << still.path.toStdString();
        EXPECT_EQ(tags.string(QStringLiteral("EXIF:SubSecTimeOriginal")), QLatin1String(still.position == 3.0 ? "000" : "010"));
    }

    // The stills' folder joins the working set, its items at the stills' dates.
    if (set.controller.theDataSource().isImportInProgress())
        loop.exec();
    const QList<MySingleFolder *> folders = set.folders();
    ASSERT_EQ(folders.size(), 2);
    MySingleFolder *stills = folders.last();
    EXPECT_EQ(stills->sfLastKnownFolderPath, results[0].coverFolderPath);
    ASSERT_EQ(stills->sfPicDetails_fullArray.size(), 2);
    for (const MySinglePic *pic : stills->sfPicDetails_fullArray) {
        const double position = pic->spName.startsWith(QStringLiteral("00_00_01.010")) ? 1.01 : 3.0;
        ASSERT_TRUE(pic->spDateTimeModified());
        EXPECT_EQ(pic->spDateTimeModified()->wholeSeconds(),
                  movieDate.addSecs(qint64(position)).toSecsSinceEpoch())
            << pic->spName.toStdString();
    }
}

} // namespace
} // namespace orv::test
