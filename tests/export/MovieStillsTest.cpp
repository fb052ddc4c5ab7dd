#include "core/MySinglePic.h"
#include "core/XtController.h"
#include "export/MovieStillExportController.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"
#include "movieframes/FfmpegMovieFrames.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/ScanOne.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonObject>
#include <QSet>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {
namespace {

using test::corpusFile;

QByteArray runTool(const QString &program, const QStringList &arguments)
{
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(120000) || tool.exitCode() != 0)
        throw std::runtime_error((program + QLatin1Char(' ') + arguments.join(u' ')).toStdString() + " failed: "
                                 + tool.readAllStandardError().toStdString());
    return tool.readAllStandardOutput();
}

struct FrameTime
{
    double seconds = 0.0;
    bool isKey = false;
};

// The presentation times of the movie's video frames, as ffprobe reads them.
std::vector<FrameTime> frameTimes(const QString &movie)
{
    const QByteArray csv = runTool(QStringLiteral("ffprobe"),
                                   {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                                    QStringLiteral("v:0"), QStringLiteral("-show_entries"),
                                    QStringLiteral("frame=key_frame,pts_time"), QStringLiteral("-of"),
                                    QStringLiteral("csv=p=0"), movie});
    std::vector<FrameTime> times;
    for (const QByteArray &line : csv.split('\n')) {
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() >= 2)
            times.push_back({fields[1].toDouble(), fields[0] == "1"});
    }
    return times;
}

// The frame that `ffmpeg -ss POS -i MOVIE -frames:v 1` makes, upright as ffmpeg turns it.
QImage ffmpegFrame(const QString &movie, double seconds, const QString &folder)
{
    const QString png = QDir(folder).filePath(QStringLiteral("ffmpeg_%1.png").arg(seconds, 0, 'f', 6));
    runTool(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"),
                                       QStringLiteral("-ss"), QString::number(seconds, 'f', 6), QStringLiteral("-i"),
                                       movie, QStringLiteral("-frames:v"), QStringLiteral("1"), png});
    return QImage(png).convertToFormat(QImage::Format_RGB888);
}

// Mean difference per color value (0 to 255) of two images of one size; infinite otherwise.
double meanError(const QImage &a, const QImage &b)
{
    if (a.size() != b.size() || a.isNull())
        return INFINITY;
    const QImage x = a.convertToFormat(QImage::Format_RGB888), y = b.convertToFormat(QImage::Format_RGB888);
    double sum = 0.0;
    for (int row = 0; row < x.height(); ++row) {
        const uchar *p = x.constScanLine(row), *q = y.constScanLine(row);
        for (int i = 0; i < x.width() * 3; ++i)
            sum += std::abs(int(p[i]) - int(q[i]));
    }
    return sum / (double(x.width()) * x.height() * 3);
}

// Positions as the window keeps them: a frame's time to the millisecond.
double keptPosition(double seconds)
{
    return std::round(seconds * 1000.0) / 1000.0;
}

// Back to the microseconds ffmpeg takes, never past the frame's start.
double ffmpegPosition(double seconds)
{
    return std::floor(seconds * 1e6) / 1e6;
}

class MovieStillsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ORV_SKIP_WITHOUT_CORPUS();
        ASSERT_TRUE(dir.isValid());
    }

    QString copyOf(const QString &relative) { return test::copyToTemporary(corpusFile(relative), dir); }

    StillMetadata someMetadata() const
    {
        StillMetadata metadata;
        metadata.date = Instant::fromUtc(2024, 5, 1, 10, 0, 0);
        return metadata;
    }

    QList<MovieStillResult> exportStills(const QString &movie, const QList<double> &positions,
                                         MovieStillSettings settings = {})
    {
        const MovieStillJob job{movie, positions, someMetadata()};
        MovieStillExportController controller(&FfmpegMovieFrames::open, xt);
        return controller.exportChapterCoversThreadedForMovies({job}, settings);
    }

    QTemporaryDir dir;
    XtController xt{dir.path()};
};

// On key frames and between them, at the start, the middle and the last frame: the still holds
// the frame ffmpeg's own tool makes at that moment, and is farther from its neighbours. The
// phone movie is stored turned by 90 degrees, the copies of another by 90 and 270.
TEST_F(MovieStillsTest, StillsHoldTheFramesFfmpegShowsAtTheirPositions)
{
    const QString phone = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    const QString drone = copyOf(QStringLiteral("gpmf-parser/samples/karma.mp4"));
    QStringList movies{phone, drone};
    for (const int rotation : {90, 270}) {
        const QString turned = dir.filePath(QStringLiteral("turned%1.mov").arg(rotation));
        runTool(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"),
                                           corpusFile(QStringLiteral("Lychee/tests/Samples/train.mov")),
                                           QStringLiteral("-map"), QStringLiteral("0:v"), QStringLiteral("-c"),
                                           QStringLiteral("copy"), QStringLiteral("-metadata:s:v:0"),
                                           QStringLiteral("rotate=%1").arg(rotation), turned});
        movies << turned;
    }
    const QString references = dir.filePath(QStringLiteral("references"));
    ASSERT_TRUE(QDir().mkpath(references));
    for (const QString &movie : movies) {
        SCOPED_TRACE(movie.toStdString());
        const std::vector<FrameTime> times = frameTimes(movie);
        ASSERT_GT(times.size(), 10u);
        const auto keyAfterStart = std::find_if(times.begin() + 1, times.end(), [](const FrameTime &t) { return t.isKey; });
        ASSERT_NE(keyAfterStart, times.end());
        const size_t key = size_t(keyAfterStart - times.begin());
        const std::vector<size_t> frames{0, key, key + 3, times.size() / 2, times.size() - 1};
        QList<double> positions;
        for (const size_t frame : frames)
            positions.append(keptPosition(times[frame].seconds));
        const QList<MovieStillResult> results = exportStills(movie, positions, {MovieStillSettings::Tiff, 75.0, 0});
        ASSERT_EQ(results.size(), 1);
        ASSERT_TRUE(results[0].failures.isEmpty()) << results[0].failures[0].reason.toStdString();
        ASSERT_EQ(results[0].successes.size(), qsizetype(frames.size()));
        for (qsizetype i = 0; i < results[0].successes.size(); ++i) {
            const size_t frame = frames[size_t(i)];
            SCOPED_TRACE(frame);
            const QImage still(results[0].successes[i].path);
            const QImage expected = ffmpegFrame(movie, ffmpegPosition(times[frame].seconds), references);
            const double error = meanError(still, expected);
            EXPECT_LT(error, 1.5);
            const size_t neighbour = frame + 1 < times.size() ? frame + 1 : frame - 1;
            const QImage other = ffmpegFrame(movie, ffmpegPosition(times[neighbour].seconds), references);
            if (meanError(expected, other) > 1.0) {
                EXPECT_LT(error, meanError(still, other));
            }
        }
    }
}

TEST_F(MovieStillsTest, JpegStillsStayCloseToTheFrame)
{
    const QString movie = copyOf(QStringLiteral("gpmf-parser/samples/karma.mp4"));
    const QList<MovieStillResult> results = exportStills(movie, {6.006});
    ASSERT_EQ(results[0].successes.size(), 1);
    EXPECT_TRUE(results[0].successes[0].path.endsWith(QLatin1String("00_00_06.006.jpg")));
    EXPECT_LT(meanError(QImage(results[0].successes[0].path), ffmpegFrame(movie, 6.006, dir.path())), 4.0);
}

// Past the end, a movie without pictures, a file that is no movie: each a clear reason, and no
// file left, not even a hidden one; the positions that can be made still are.
TEST_F(MovieStillsTest, BadPositionsAndMoviesLeaveNoFiles)
{
    const QString movie = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    const QList<MovieStillResult> results = exportStills(movie, {4.1, 1.0});
    ASSERT_EQ(results[0].failures.size(), 1);
    EXPECT_DOUBLE_EQ(results[0].failures[0].position, 4.1);
    EXPECT_TRUE(results[0].failures[0].reason.contains(QLatin1String("past the movie's end")));
    EXPECT_EQ(QDir(results[0].coverFolderPath).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("00_00_01.000.jpg")});

    const QString sound = dir.filePath(QStringLiteral("sound.m4a"));
    runTool(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), movie,
                                       QStringLiteral("-vn"), QStringLiteral("-c"), QStringLiteral("copy"), sound});
    const QString text = dir.filePath(QStringLiteral("notes.mov"));
    QFile notes(text);
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly));
    notes.write("no movie at all");
    notes.close();
    for (const auto &[path, reason] : {std::pair{sound, "no video stream"}, std::pair{text, "cannot be opened"}}) {
        const QList<MovieStillResult> bad = exportStills(path, {0.0});
        ASSERT_EQ(bad[0].failures.size(), 1);
        EXPECT_TRUE(bad[0].failures[0].reason.contains(QLatin1String(reason))) << bad[0].failures[0].reason.toStdString();
            EXPECT_FALSE(QFileInfo::exists(MovieStillExportController::stillsFolderFor(path)));
    }
}

// A full disk (a small file system, as root) or, without root, a folder that may not be
// written: each position fails with its reason, and the stills folder holds nothing, not even a
// hidden part of a still or exiftool's own temporary file: the folder made for them goes again.
TEST_F(MovieStillsTest, AFullDiskLeavesNoPartOfAStill)
{
    const QString full = dir.filePath(QStringLiteral("full"));
    ASSERT_TRUE(QDir().mkpath(full));
    const bool mounted = ::mount("orvelle-test", QFile::encodeName(full).constData(), "tmpfs", 0, "size=64k") == 0;
    if (!mounted && ::geteuid() == 0)
        GTEST_SKIP() << "root that may not mount: no folder refuses its writes";
    // The movie stands in the small folder as a link, so its stills go there.
    const QString movie = full + QStringLiteral("/phone.mov");
    ASSERT_TRUE(QFile::link(corpusFile(QStringLiteral("metadata-extractor-images/mov/with-gps.mov")), movie));
    if (mounted) {
        QFile filler(full + QStringLiteral("/filler"));
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly));
        filler.write(QByteArray(40 * 1024, 'x'));
    } else {
        ASSERT_TRUE(QFile::setPermissions(full, QFile::ReadOwner | QFile::ExeOwner));
    }
    const QList<MovieStillResult> results = exportStills(movie, {0.5, 1.5, 2.5});
    const bool folderLeft = QFileInfo::exists(MovieStillExportController::stillsFolderFor(movie));
    if (mounted)
        ::umount(QFile::encodeName(full).constData());
    else
        QFile::setPermissions(full, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_TRUE(results[0].successes.isEmpty());
    ASSERT_FALSE(results[0].failures.isEmpty());
    for (const MovieStillResult::Failure &failure : results[0].failures)
        EXPECT_FALSE(failure.reason.isEmpty());
    EXPECT_FALSE(folderLeft);
}

// A second export makes nothing new: the stills are listed as there already, byte for byte as
// they were.
TEST_F(MovieStillsTest, ExportingTwiceReplacesNothing)
{
    const QString movie = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    const QList<MovieStillResult> first = exportStills(movie, {0.5});
    ASSERT_EQ(first[0].successes.size(), 1);
    QFile still(first[0].successes[0].path);
    ASSERT_TRUE(still.open(QIODevice::ReadOnly));
    const QByteArray bytes = still.readAll();
    still.close();
    const QList<MovieStillResult> second = exportStills(movie, {0.5});
    EXPECT_TRUE(second[0].successes.isEmpty());
    ASSERT_EQ(second[0].duplicates.size(), 1);
    ASSERT_TRUE(still.open(QIODevice::ReadOnly));
    EXPECT_EQ(still.readAll(), bytes);
    EXPECT_EQ(MovieStillExportController::chapterCoverNameFromSeconds(3723.456), QStringLiteral("01_02_03.456"));
    EXPECT_EQ(MovieStillExportController::chapterCoverNameFromSeconds(59.9996), QStringLiteral("00_01_00.000"));
}

// The still's date is the movie's present date plus the position: a pending folder offset
// counts, and the folder's zone gives the stamps' wall clock and offset tags, as exiftool reads
// them; the place and the camera are the movie's.
TEST_F(MovieStillsTest, StillsCarryTheMoviesPresentDatePlaceAndCamera)
{
    const QString movie = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    MySingleFolder folder(dir.path(), false);
    FixedImportAnswers answers(ImportOptions{});
    std::unique_ptr<MySinglePic> pic = scanFile(movie, folder, answers);
    ASSERT_TRUE(pic && pic->spDateTimeOriginal);
    // The movie's metadata date, 2019-07-24T11:25:40+0300.
    ASSERT_EQ(*pic->spDateTimeOriginal, Instant::fromUtc(2019, 7, 24, 8, 25, 40));
    folder.sfDateModificationsTimeInterval = 3600.0;
    folder.targetZoneForSave = [](const MySinglePic &) { return TimeZone::fromName(QStringLiteral("America/New_York")); };

    const std::optional<StillMetadata> metadata = StillMetadata::forPosition(*pic, 2.25);
    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->date, Instant::fromUtc(2019, 7, 24, 9, 25, 42.25));
    const MovieStillJob job{movie, {2.25}, *StillMetadata::forPosition(*pic, 0.0)};
    MovieStillExportController controller(&FfmpegMovieFrames::open, xt);
    const QList<MovieStillResult> results = controller.exportChapterCoversThreadedForMovies({job}, {});
    ASSERT_EQ(results[0].successes.size(), 1);
    const QString still = results[0].successes[0].path;

    const test::ExiftoolTags tags = test::exiftoolTags(still, test::ExiftoolGroups::Family1);
    EXPECT_EQ(tags.string(QStringLiteral("ExifIFD:DateTimeOriginal")), QStringLiteral("2019:07:24 05:25:42"));
    EXPECT_EQ(tags.string(QStringLiteral("ExifIFD:CreateDate")), QStringLiteral("2019:07:24 05:25:42"));
    EXPECT_EQ(tags.string(QStringLiteral("ExifIFD:SubSecTimeOriginal")), QStringLiteral("250"));
    EXPECT_EQ(tags.string(QStringLiteral("ExifIFD:OffsetTimeOriginal")), QStringLiteral("-04:00"));
    EXPECT_EQ(tags.string(QStringLiteral("GPS:GPSDateStamp")), QStringLiteral("2019:07:24"));
    EXPECT_NEAR(tags.number(QStringLiteral("GPS:GPSLatitude")), 32.0929, 1e-6);
    EXPECT_NEAR(tags.number(QStringLiteral("GPS:GPSLongitude")), 34.8620, 1e-6);
    EXPECT_NEAR(tags.number(QStringLiteral("GPS:GPSAltitude")), 28.516, 1e-6);
    EXPECT_EQ(tags.string(QStringLiteral("IFD0:Make")), QStringLiteral("Apple"));
    EXPECT_EQ(tags.string(QStringLiteral("IFD0:Model")), QStringLiteral("iPhone 6"));
    EXPECT_EQ(QImage(still).size(), QSize(320, 568));
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(still).constData(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, time_t(metadata->date.wholeSeconds()));
}

// The command line: each still's path and date, in JSON too; the movie's own zone gives the
// offset tags; a position past the end is said, leaves no file, and sets exit code 1.
TEST_F(MovieStillsTest, CommandLineWritesStillsAndSaysWhatFailed)
{
    const QString movie = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    const test::CliResult run = test::runCli({QStringLiteral("still"), QStringLiteral("--at"), QStringLiteral("1.5,9"),
                                              QStringLiteral("--json"), movie},
                                             dir.filePath(QStringLiteral("home")));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("at 9.000 s: the position 9.000 s lies past the movie's end")) << run.err.toStdString();
    ASSERT_EQ(run.json().size(), 1);
    const QJsonObject still = run.json()[0].toObject();
    EXPECT_EQ(still[QStringLiteral("status")].toString(), QStringLiteral("written"));
    EXPECT_EQ(still[QStringLiteral("date")].toString(), QStringLiteral("2019-07-24T08:25:41.5Z"));
    EXPECT_EQ(still[QStringLiteral("offset")].toString(), QStringLiteral("+03:00"));
    const test::ExiftoolTags tags = test::exiftoolTags(still[QStringLiteral("path")].toString());
    EXPECT_EQ(tags.string(QStringLiteral("EXIF:DateTimeOriginal")), QStringLiteral("2019:07:24 11:25:41"));
    EXPECT_EQ(tags.string(QStringLiteral("EXIF:OffsetTimeOriginal")), QStringLiteral("+03:00"));
    EXPECT_EQ(QDir(MovieStillExportController::stillsFolderFor(movie)).entryList(QDir::Files | QDir::Hidden).size(), 1);

    const test::CliResult usage =
        test::runCli({QStringLiteral("still"), QStringLiteral("--at"), QStringLiteral("-1"), movie}, dir.path());
    EXPECT_EQ(usage.exitCode, 2);
}

// The starts of a movie's chapters are positions as well; one named twice, or two within a
// millisecond, make one still.
TEST_F(MovieStillsTest, ChapterStartsBecomeStills)
{
    const QString chapters = dir.filePath(QStringLiteral("chapters.txt"));
    QFile text(chapters);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write(";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=1500\n"
               "[CHAPTER]\nTIMEBASE=1/1000\nSTART=1500\nEND=4000\n");
    text.close();
    const QString movie = dir.filePath(QStringLiteral("chaptered.mov"));
    runTool(QStringLiteral("ffmpeg"),
            {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"),
             corpusFile(QStringLiteral("metadata-extractor-images/mov/with-gps.mov")), QStringLiteral("-i"), chapters,
             QStringLiteral("-map"), QStringLiteral("0:v"), QStringLiteral("-map_chapters"), QStringLiteral("1"),
             QStringLiteral("-c"), QStringLiteral("copy"), movie});
    MovieStillJob job{movie, {1.5, 3.0, 3.0004}, someMetadata()};
    job.withChapters = true;
    MovieStillExportController controller(&FfmpegMovieFrames::open, xt);
    const QList<MovieStillResult> results = controller.exportChapterCoversThreadedForMovies({job}, {});
    EXPECT_TRUE(results[0].failures.isEmpty());
    EXPECT_EQ(QDir(results[0].coverFolderPath).entryList(QDir::Files),
              (QStringList{QStringLiteral("00_00_00.000.jpg"), QStringLiteral("00_00_01.500.jpg"),
                           QStringLiteral("00_00_03.000.jpg")}));
}

// A Live Photo pair: the still and a three-second movie around it (kept inside the movie near
// its start), joined by one content identifier that exiftool reads in both, with the still's
// date, place and camera in the movie's metadata too.
TEST_F(MovieStillsTest, LivePhotoPairsShareOneIdentifier)
{
    const QString movie = copyOf(QStringLiteral("metadata-extractor-images/mov/with-gps.mov"));
    const test::CliResult run = test::runCli({QStringLiteral("still"), QStringLiteral("--live"), QStringLiteral("--at"),
                                              QStringLiteral("0.2,2"), QStringLiteral("--json"), movie},
                                             dir.filePath(QStringLiteral("home")));
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    ASSERT_EQ(run.json().size(), 2);
    QSet<QString> identifiers;
    for (const QJsonValue &value : run.json()) {
        const QString still = value[QStringLiteral("path")].toString();
        const QString pairedMovie = value[QStringLiteral("livePhotoMovie")].toString();
        SCOPED_TRACE(still.toStdString());
        EXPECT_TRUE(still.endsWith(QLatin1String(".jpg")));
        EXPECT_EQ(QFileInfo(pairedMovie).completeBaseName(), QFileInfo(still).completeBaseName());
        const test::ExiftoolTags stillTags = test::exiftoolTags(still, test::ExiftoolGroups::Family1);
        const test::ExiftoolTags movieTags = test::exiftoolTags(pairedMovie, test::ExiftoolGroups::Family1);
        const QString identifier = stillTags.string(QStringLiteral("Apple:MediaGroupUUID"));
        EXPECT_EQ(identifier.size(), 36);
        EXPECT_EQ(movieTags.string(QStringLiteral("Keys:ContentIdentifier")), identifier);
        identifiers.insert(identifier);
        EXPECT_NEAR(movieTags.number(QStringLiteral("QuickTime:Duration")), 3.0, 1.0 / 30);
        EXPECT_EQ(movieTags.string(QStringLiteral("Keys:Model")), QStringLiteral("iPhone 6"));
        EXPECT_EQ(movieTags.string(QStringLiteral("Keys:CreationDate")).left(19),
                  stillTags.string(QStringLiteral("ExifIFD:DateTimeOriginal")));
    }
    EXPECT_EQ(identifiers.size(), 2);
    EXPECT_EQ(QDir(MovieStillExportController::stillsFolderFor(movie, true)).entryList(QDir::Files | QDir::Hidden).size(), 4);
}

} // namespace
} // namespace orv
