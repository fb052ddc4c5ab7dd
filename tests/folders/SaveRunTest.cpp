#include "core/LogController.h"
#include "core/PicSaver.h"
#include "core/Preferences.h"
#include "formats/SaveJournal.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFutureWatcher>
#include <QMutex>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr double oneHour = 3600.0;

TiffShape cameraTags()
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("2024:05:01 10:00:00");
    return tags;
}

MediaFile cameraJpeg()
{
    return buildJpeg({.exif = cameraTags()});
}

// "2024-05-01T08:00:00Z"
QString utcXmpStamp(Instant date)
{
    return DateStampCodec::xmpTimeStampFromDate(date, TimeZone::utc(), true, 0) + QLatin1Char('Z');
}

class SaveRunTest : public SaveFixture
{
protected:
    std::vector<MySinglePic *> importThree()
    {
        return {&import(cameraJpeg(), QStringLiteral("a")),
                &import(cameraJpeg(), QStringLiteral("b")),
                &import(cameraJpeg(), QStringLiteral("c"))};
    }
};

} // namespace

TEST_F(SaveRunTest, TheRunClearsTheAppliedOffsetAndEveryItemShowsTheSameDate)
{
    const std::vector<MySinglePic *> pics = importThree();
    folder.setSfDateModificationsFromTimeInterval(oneHour, false);
    std::vector<OptionalDate> shown;
    for (const MySinglePic *pic : pics)
        shown.push_back(pic->spDateTimeModified());

    shift(oneHour);

    EXPECT_TRUE(errors().isEmpty());
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 0.0);
    const DateModifications zero{{QStringLiteral("dmDirection"), QStringLiteral("+")},
                                 {QStringLiteral("dmDays"), QStringLiteral("0")},
                                 {QStringLiteral("dmHours"), QStringLiteral("0")},
                                 {QStringLiteral("dmMinutes"), QStringLiteral("0")},
                                 {QStringLiteral("dmSeconds"), QStringLiteral("0")}};
    EXPECT_EQ(folder.sfDateModifications, zero);
    EXPECT_EQ(folder.sfEditMode, MySingleFolder::EditTogether);
    for (std::size_t i = 0; i < pics.size(); ++i) {
        EXPECT_EQ(pics[i]->spDateTimeModified(), shown[i]);
        EXPECT_EQ(pics[i]->spDateTimeOriginal, shown[i]);
        EXPECT_FALSE(pics[i]->isUnsaved());
    }
}

TEST_F(SaveRunTest, FailedItemsKeepTheirPendingOffsetInSeparateModeWhileTheOthersCountAsSaved)
{
    const std::vector<MySinglePic *> pics = importThree();
    MySinglePic &failing = *pics[1];
    const QString away = failing.spPath() + QStringLiteral(".away");
    ASSERT_TRUE(QFile::rename(failing.spPath(), away));
    const OptionalDate failingTarget = failing.spDateTimeOriginal->addingSeconds(oneHour);

    shift(oneHour);

    EXPECT_EQ(folder.sfEditMode, MySingleFolder::EditSeparately);
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 0.0);
    EXPECT_EQ(folder.singlePicModeImages, 1);
    EXPECT_EQ(failing.singlePicModification, oneHour);
    EXPECT_EQ(failing.spDateTimeModified(), failingTarget);
    EXPECT_TRUE(failing.hasSaveErrorTime());
    for (const MySinglePic *saved : {pics[0], pics[2]}) {
        EXPECT_EQ(saved->singlePicModification, 0.0);
        EXPECT_FALSE(saved->isUnsaved());
    }

    // The file is back as it was: in separate mode the next run saves only what is pending.
    ASSERT_TRUE(QFile::rename(away, failing.spPath()));
    const SaveOutcome retry = shift(0.0);
    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(retry.savedPics, QSet<const MySinglePic *>{&failing});
    EXPECT_EQ(folder.singlePicModeImages, 0);
    EXPECT_EQ(failing.spDateTimeModified(), failingTarget);
}

TEST_F(SaveRunTest, TheErrorLogGetsTheDescriptionAndEachPathOnATabbedLine)
{
    const std::vector<MySinglePic *> pics = importThree();
    ASSERT_TRUE(QFile::remove(pics[0]->spPath()));
    ASSERT_TRUE(QFile::remove(pics[2]->spPath()));
    Preferences prefs{QString()};
    const QString logPath = dir.filePath(QStringLiteral("support/errorLog.txt"));
    LogController log(prefs, logPath);
    log.updateLogOnDiskWithErrorLog(QStringLiteral("earlier run\n"));

    shift(oneHour, nullptr, defaultSettings(), &log);

    QFile file(logPath);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QStringList lines = text.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 5);
    EXPECT_EQ(lines[0], QStringLiteral("earlier run"));
    EXPECT_TRUE(lines[1].contains(QStringLiteral(" - "))) << lines[1].toStdString();
    EXPECT_EQ(lines[2], SaveErrors::descriptionForId(SaveErrorId::SaveMissing));
    EXPECT_EQ(lines[3], QLatin1Char('\t') + pics[0]->spPath());
    EXPECT_EQ(lines[4], QLatin1Char('\t') + pics[2]->spPath());
    EXPECT_EQ(log.currentError(), text.mid(QStringLiteral("earlier run\n").size()));
}

TEST_F(SaveRunTest, CancellingAtThePreSaveQuestionTouchesNoFile)
{
    const std::vector<MySinglePic *> pics = importThree();
    ASSERT_TRUE(QFile::remove(pics[0]->spPath()));
    const QByteArray untouched = fileBytes(pics[1]->spPath());
    folder.setSfDateModificationsFromTimeInterval(oneHour, false);
    FixedSaveAnswers cancel(false);
    SaveRun run({&folder}, defaultSettings(), cancel);

    const SaveOutcome outcome = run.run();

    EXPECT_TRUE(outcome.cancelled);
    EXPECT_EQ(outcome.preSaveErrors.value(QStringLiteral("error_05_notFound")),
              QList<MySinglePic *>{pics[0]});
    EXPECT_EQ(fileBytes(pics[1]->spPath()), untouched);
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, oneHour) << "the change stays pending";
    EXPECT_TRUE(outcome.savedPics.isEmpty());
}

TEST_F(SaveRunTest, OneNowServesTheWholeRun)
{
    const std::vector<MySinglePic *> pics = importThree();
    SaveSettings settings = defaultSettings();
    settings.options.dateChangeEXIFFinderModDate = 2; // the file modification date becomes "now"
    settings.options.nowDate = Instant::fromUtc(2030, 1, 2, 3, 4, 5);

    shift(oneHour, nullptr, settings);

    EXPECT_TRUE(errors().isEmpty());
    for (const MySinglePic *pic : pics) {
        EXPECT_EQ(FileAttributes::read(pic->spPath())->modificationDate, settings.options.nowDate)
            << pic->spName.toStdString();
    }
}

TEST_F(SaveRunTest, RunsOnAPoolThreadAndReportsStatusAndProgress)
{
    const std::vector<MySinglePic *> pics = importThree();
    folder.setSfDateModificationsFromTimeInterval(oneHour, false);
    FixedSaveAnswers proceed(true);
    SaveRun run({&folder}, defaultSettings(), proceed);
    QMutex mutex;
    QStringList statuses;
    int maximum = -1;
    int progress = -1;
    bool finished = false;
    QObject::connect(&run, &SaveRun::statusChanged, [&](const QString &key) {
        const QMutexLocker lock(&mutex);
        statuses << key;
    });
    const auto storeIn = [&mutex](int &slot) {
        return [&mutex, &slot](int value) {
            const QMutexLocker lock(&mutex);
            slot = value;
        };
    };
    QObject::connect(&run, &SaveRun::progressMaximumChanged, storeIn(maximum));
    QObject::connect(&run, &SaveRun::progressChanged, storeIn(progress));
    QObject::connect(&run, &SaveRun::finished, [&](bool cancelled) { finished = !cancelled; });

    // The run hands each folder's end to this thread: it keeps its event loop going meanwhile.
    static int argc = 1;
    static char name[] = "tests_core";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
    QFutureWatcher<SaveOutcome> watcher;
    QEventLoop waiting;
    QObject::connect(&watcher, &QFutureWatcher<SaveOutcome>::finished, &waiting, &QEventLoop::quit);
    watcher.setFuture(run.start());
    waiting.exec();
    const SaveOutcome outcome = watcher.result();

    EXPECT_EQ(outcome.savedPics.size(), 3);
    EXPECT_EQ(statuses, (QStringList{"workPanelPreSave", "workPanelSave"}));
    EXPECT_EQ(maximum, 3);
    EXPECT_EQ(progress, 3);
    EXPECT_TRUE(finished);
}

// A twin without a zone keeps the clock of the EXIF stamp it follows: the camera's where its
// offset tag names one, else the system's.
TEST_F(SaveRunTest, TheSyncPassBringsXmpTwinsInStepWithTheSavedDates)
{
    struct Shot
    {
        MediaFile jpeg;
        Instant stamped;
        MySinglePic *pic = nullptr;
    };
    std::vector<Shot> shots;
    for (const QByteArray &cameraOffset : {QByteArray(), QByteArray("-04:00")}) {
        TiffShape tags = cameraTags();
        if (!cameraOffset.isEmpty())
            tags.offsetTimeOriginal = Stamp::text(cameraOffset);
        const TimeZone clock = cameraOffset.isEmpty() ? TimeZone::systemZone()
                                                      : *TimeZone::fromOffsetSeconds(-4 * 3600);
        const Instant stamped =
            DateStampCodec::dateFromExifData(QByteArray("2024:05:01 10:00:00", 20), clock);
        shots.push_back({buildJpeg({.exif = tags,
                                    .xmp = buildXmp({.properties = {
                                                         {"exif:DateTimeOriginal", "2024-05-01T10:00:00"},
                                                         {"xmp:CreateDate", utcXmpStamp(stamped)}}})}),
                         stamped});
        shots.back().pic = &import(shots.back().jpeg, QStringLiteral("pic%1").arg(shots.size()));
    }
    SaveSettings settings = defaultSettings();
    settings.syncXMPDataOnSave = true;

    shift(oneHour, nullptr, settings);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    for (const Shot &shot : shots) {
        SCOPED_TRACE(shot.pic->spPath().toStdString());
        const QByteArray bytes = fileBytes(shot.pic->spPath());
        EXPECT_EQ(bytes.mid(shot.jpeg.offsets.xmpValue("exif:DateTimeOriginal"), 19), "2024-05-01T11:00:00");
        EXPECT_EQ(bytes.mid(shot.jpeg.offsets.xmpValue("xmp:CreateDate"), 20),
                  utcXmpStamp(shot.stamped.addingSeconds(oneHour)).toLatin1());
        EXPECT_TRUE(PicSaver::areTheFileAttributesUnchanged(*shot.pic, *FileAttributes::read(shot.pic->spPath())))
            << "the sync leaves the file dates as the save set them";
        EXPECT_FALSE(shot.pic->isVerifiedDuringSave);
    }
}

TEST_F(SaveRunTest, ARevertUndoesTheSyncPassAndTheSaveOfTheSameFile)
{
    const Instant stamped = DateStampCodec::dateFromExifData(QByteArray("2024:05:01 10:00:00", 20),
                                                             TimeZone::systemZone());
    const MediaFile jpeg = buildJpeg(
        {.exif = cameraTags(),
         .xmp = buildXmp({.properties = {{"xmp:CreateDate", utcXmpStamp(stamped)}}})});
    MySinglePic &pic = import(jpeg);
    const QByteArray original = fileBytes(pic.spPath());
    SaveSettings settings = defaultSettings();
    settings.syncXMPDataOnSave = true;
    settings.journalPath = dir.filePath(QStringLiteral("support/saveJournal.jsonl"));

    shift(oneHour, nullptr, settings);
    ASSERT_NE(fileBytes(pic.spPath()), original);

    const SaveJournal::Outcome reverted = SaveJournal::revert(settings.journalPath);
    EXPECT_TRUE(reverted.left.empty()) << reverted.left.front().second.toStdString();
    EXPECT_EQ(fileBytes(pic.spPath()), original);
}
