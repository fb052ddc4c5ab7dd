#include "core/PicSaver.h"

#include "core/ExiftoolBridge.h"
#include "core/StoredBytes.h"
#include "formats/FileReader.h"

#include "ByteRanges.h"
#include "core/SaveErrors.h"
#include "support/Exiftool.h"
#include "support/FailingDisk.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/ReadOnlyFile.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr double oneHour = 3600.0;

// A camera file: three stamps, an offset tag beside the original, and a GPS time late on the
// same day in UTC, so that an hour later its date turns.
TiffShape cameraTags()
{
    TiffShape tags = TiffShape::camera("2024:05:01 23:30:00");
    tags.offsetTimeOriginal = Stamp::text("+02:00");
    tags.gps = GpsShape::fixAt(48.137, 11.575, "2024:05:01 23:10:00");
    return tags;
}

// Changes bytes as another program would, keeping size and dates, so only the byte proof can
// tell.
void tamper(const QString &path, qint64 offset, const QByteArray &bytes)
{
    const QDateTime modified = QFileInfo(path).lastModified();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(offset) &&
                file.write(bytes) == bytes.size());
    ASSERT_TRUE(file.setFileTime(modified, QFileDevice::FileModificationTime));
}

// Read by an independent tool, so a writer and its own reader cannot agree on a wrong stamp.
QString tagOf(const MySinglePic &pic, const char *name)
{
    return exiftoolTags(pic.spPath(), ExiftoolGroups::Family1).string(QLatin1String(name));
}

QString localXmpStamp(Instant date)
{
    return DateStampCodec::xmpTimeStampFromDate(date, TimeZone::systemZone(), true, 0);
}

} // namespace

// --- The attribute test ---------------------------------------------------------------------

TEST(FileAttributeProof, SizeEqualAndDatesWithinASecondUnlessDatesBefore1970WereReset)
{
    const double t = 1.7e9;
    const double before1970 = -1e8;
    struct Case
    {
        const char *what;
        double storedCreation, storedModification;
        double creation, modification;
        qint64 size;
        bool unchanged;
    };
    const Case cases[] = {
        {"identical", t, t, t, t, 100, true},
        {"just under a second apart", t, t, t + 0.999, t - 0.999, 100, true},
        {"creation a second apart", t, t, t + 1.0, t, 100, false},
        {"modification a second apart", t, t, t, t - 1.0, 100, false},
        {"size changed", t, t, t, t, 101, false},
        {"creation before 1970 read back as 0", before1970, t, 0.0, t + 0.5, 100, true},
        {"both before 1970 read back as 0", before1970, before1970, 0.0, 0.0, 100, true},
        {"creation reset but modification moved", before1970, t, 0.0, t + 5.0, 100, false},
        {"creation near 0 is no reset", before1970, t, 0.5, t, 100, false},
        {"modification 0 while it was after 1970", before1970, t, 0.0, 0.0, 100, false},
        {"reset dates but another size", before1970, t, 0.0, t, 99, false},
    };
    for (const Case &c : cases) {
        MySinglePic pic(QStringLiteral("a.jpg"), nullptr, SpTypeExifOriginal, Instant(t));
        pic.singlePicAttributes.NSFileCreationDate = Instant(c.storedCreation);
        pic.singlePicAttributes.NSFileModificationDate = Instant(c.storedModification);
        pic.singlePicAttributes.NSFileSize = 100;
        const FileAttributes current{Instant(c.creation), Instant(c.modification), c.size, false,
                                     false};
        EXPECT_EQ(PicSaver::areTheFileAttributesUnchanged(pic, current), c.unchanged) << c.what;
    }
}

// --- Writing in place -----------------------------------------------------------------------

using PicSaverTest = SaveFixture;

TEST_F(PicSaverTest, StampsOffsetTagAndGpsMoveInPlaceAndNothingElseChanges)
{
    const MediaFile jpeg = buildJpeg({.exif = cameraTags()});
    MySinglePic &pic = import(jpeg);
    const QString path = pic.spPath();
    const QByteArray before = fileBytes(path);
    const Instant original = *pic.spDateTimeOriginal;

    const SaveOutcome outcome = shift(oneHour);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_TRUE(outcome.savedPics.contains(&pic));
    const MediaOffsets &at = jpeg.offsets;
    EXPECT_TRUE(onlyRangesDiffer(before, fileBytes(path),
                                 {{at.dateTimeOriginal, 19},
                                  {at.dateTimeDigitized, 19},
                                  {at.dateTime, 19},
                                  {at.gpsTimeStamp, 24},
                                  {at.gpsDateStamp, 10}}));
    const ExiftoolTags tags = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(tags.string("ExifIFD:DateTimeOriginal"), "2024:05:02 00:30:00");
    EXPECT_EQ(tags.string("ExifIFD:OffsetTimeOriginal"), "+02:00");
    EXPECT_EQ(tags.string("GPS:GPSDateStamp"), "2024:05:02");
    EXPECT_EQ(tags.string("GPS:GPSTimeStamp"), "00:10:00");

    EXPECT_EQ(pic.spDateTimeOriginal, original.addingSeconds(oneHour));
    EXPECT_EQ(pic.exifDateTimeOriginalOLD, pic.exifDateTimeOriginalNEW);
    EXPECT_EQ(pic.spDateTimeModified(), pic.spDateTimeOriginal)
        << "the offset was applied and cleared";
    EXPECT_EQ(pic.singlePicAttributes.ExifDateTimeOriginal->dateData,
              QByteArray("2024:05:02 00:30:00", 20));
    EXPECT_EQ(PicSaver::areTheFileAttributesUnchanged(pic, *FileAttributes::read(path)), true)
        << "the stored attributes are those of the saved file";
}

TEST_F(PicSaverTest, ABlankStampTakesARealDateAndTheItemBecomesAnOriginalDateItem)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::blank();
    const MediaFile jpeg = buildJpeg({.exif = tags});
    MySinglePic &pic = import(jpeg);
    ASSERT_EQ(pic.spType, SpTypeEmptyOriginalFileDate);

    shift(60.0);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(pic.spType, SpTypeExifOriginal);
    const QByteArray expected =
        DateStampCodec::exifDataFromDate(*pic.spDateTimeOriginal, TimeZone::systemZone());
    EXPECT_EQ(fileBytes(pic.spPath()).mid(jpeg.offsets.dateTimeOriginal, 20), expected);
    EXPECT_EQ(tagOf(pic, "ExifIFD:DateTimeOriginal"), QString::fromLatin1(expected.left(19)));
}

TEST_F(PicSaverTest, XmpStampsKeepTheirZoneFormAndFractionsInPlace)
{
    const Instant capture = Instant::fromUtc(2024, 5, 1, 8, 0, 0);
    XmpShape xmp{.properties = {{"photoshop:DateCreated", "2024-05-01T10:00:00.250+02:00"},
                               {"xmp:CreateDate", "2024-05-01T08:00:00Z"},
                               {"xmp:ModifyDate", localXmpStamp(capture)}}};
    for (const XmpForm form : {XmpForm::Attributes, XmpForm::Elements}) {
        xmp.form = form;
        const MediaFile jpeg = buildJpeg({.xmp = buildXmp(xmp)});
        MySinglePic &pic = import(jpeg, form == XmpForm::Attributes ? QStringLiteral("attributes")
                                                                    : QStringLiteral("elements"));
        ASSERT_TRUE(pic.isCreaXmp && pic.isDigiXmp && pic.isModiXmp);
        const QByteArray before = fileBytes(pic.spPath());

        shift(oneHour);

        EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
        const QByteArray after = fileBytes(pic.spPath());
        const auto textAt = [&](const char *name, qsizetype length) {
            return after.mid(jpeg.offsets.xmpValue(QLatin1String(name)), length);
        };
        EXPECT_EQ(textAt("photoshop:DateCreated", 29), "2024-05-01T11:00:00.250+02:00");
        EXPECT_EQ(textAt("xmp:CreateDate", 20), "2024-05-01T09:00:00Z");
        EXPECT_EQ(textAt("xmp:ModifyDate", 19),
                  localXmpStamp(capture.addingSeconds(oneHour)).toLatin1());
        EXPECT_EQ(after.size(), before.size());
        EXPECT_EQ(tagOf(pic, "XMP-xmp:CreateDate"), "2024:05:01 09:00:00Z");
        EXPECT_EQ(pic.exifDateTimeOriginalOLD->wholeSeconds(),
                  capture.addingSeconds(oneHour).wholeSeconds());
    }
}

TEST_F(PicSaverTest, AnXmpStampWithoutSecondsTakesWholeMinutesInPlaceAndOtherSecondsThroughExiftool)
{
    const MediaFile jpeg = buildJpeg(
        {.xmp = buildXmp({.properties = {{"photoshop:DateCreated", "2024-05-01T10:00+02:00"}}})});
    MySinglePic &pic = import(jpeg);
    const QByteArray before = fileBytes(pic.spPath());

    shift(60.0);
    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    const QByteArray inPlace = fileBytes(pic.spPath());
    EXPECT_EQ(inPlace.size(), before.size());
    EXPECT_EQ(inPlace.mid(jpeg.offsets.xmpValue("photoshop:DateCreated"), 22),
              "2024-05-01T10:01+02:00");

    shift(30.0);
    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(tagOf(pic, "XMP-photoshop:DateCreated"), "2024:05:01 10:01:30+02:00");
    EXPECT_EQ(pic.singlePicModification, 0.0);

    shift(60.0);
    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(tagOf(pic, "XMP-photoshop:DateCreated"), "2024:05:01 10:02:30+02:00")
        << "the widened stamp takes later changes in place";
}

TEST_F(PicSaverTest, PngChunksStayValidAfterInPlaceWrites)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    MySinglePic &exif = import(buildPng({.exif = tags}), QStringLiteral("exif"));
    const MediaFile withXmp =
        buildPng({.xmp = buildXmp({.properties = {{"xmp:CreateDate", "2024-05-01T10:00:00Z"}}})});
    MySinglePic &xmp = import(withXmp, QStringLiteral("xmp"));

    shift(oneHour);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    for (const MySinglePic *pic : {&exif, &xmp})
        EXPECT_TRUE(
            exiftoolWarnings(pic->spPath(), ExiftoolCheck::Validate).filter("CRC").isEmpty())
            << pic->spName.toStdString();
    EXPECT_EQ(tagOf(exif, "ExifIFD:DateTimeOriginal"), "2024:05:01 11:00:00");
    EXPECT_EQ(tagOf(xmp, "XMP-xmp:CreateDate"), "2024:05:01 11:00:00Z");
}

TEST_F(PicSaverTest, DateTagsToAddAreAddedByExiftoolAndTheItemIsThenDatedByThem)
{
    TiffShape tags;
    tags.dateTime = Stamp::text("2024:05:01 10:00:00");
    MySinglePic &pic = import(buildJpeg({.exif = tags}));
    pic.shouldAddExifDateTimeTags = true;

    shift(oneHour);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    EXPECT_EQ(tagOf(pic, "ExifIFD:DateTimeOriginal"), "2024:05:01 11:00:00");
    EXPECT_EQ(tagOf(pic, "ExifIFD:CreateDate"), "2024:05:01 11:00:00");
    EXPECT_EQ(tagOf(pic, "IFD0:ModifyDate"), "2024:05:01 11:00:00");
    EXPECT_EQ(pic.spType, SpTypeExifOriginal);
    EXPECT_FALSE(pic.shouldAddExifDateTimeTags);
    EXPECT_FALSE(pic.hasSaveError());
    ASSERT_TRUE(pic.singlePicAttributes.ExifDateTimeOriginal);
    FileReader file(pic.spPath());
    EXPECT_TRUE(StoredBytes::areUnchanged(pic.singlePicAttributes, file))
        << "the stored values are those of the rewritten file";
    EXPECT_EQ(pic.singlePicAttributes.NSFileModificationDate->wholeSeconds(),
              FileAttributes::read(pic.spPath())->modificationDate.wholeSeconds());
}

// --- Proof failures -------------------------------------------------------------------------

TEST_F(PicSaverTest, ChangedStampBytesWithTheSameSizeAndDatesAreCaughtAndNothingIsWritten)
{
    const MediaFile jpeg = buildJpeg({.exif = cameraTags()});
    MySinglePic &pic = import(jpeg);
    tamper(pic.spPath(), jpeg.offsets.dateTimeDigitized, "2030");
    const QByteArray tampered = fileBytes(pic.spPath());
    ASSERT_TRUE(PicSaver::areTheFileAttributesUnchanged(pic, *FileAttributes::read(pic.spPath())));
    const OptionalDate original = pic.spDateTimeOriginal;

    const SaveOutcome outcome = shift(oneHour);

    EXPECT_EQ(errorIdsFor(pic), QList<int>{SaveErrorId::SaveChanged});
    EXPECT_EQ(fileBytes(pic.spPath()), tampered);
    EXPECT_EQ(pic.fileUnchangedState, 4);
    EXPECT_TRUE(outcome.preSaveErrors.contains(QStringLiteral("error_06_modifiedAfterImport")));
    EXPECT_EQ(pic.spDateTimeOriginal, original);
    EXPECT_EQ(pic.spDateTimeModified(), original->addingSeconds(oneHour))
        << "the change stays pending";
}

TEST_F(PicSaverTest, EachCauseGetsItsIdWhileTheOtherFilesAreSaved)
{
    const MediaFile jpeg = buildJpeg({.exif = cameraTags()});
    MySinglePic &removed = import(jpeg, QStringLiteral("removed"));
    MySinglePic &locked = import(jpeg, QStringLiteral("locked"));
    MySinglePic &replaced = import(jpeg, QStringLiteral("replaced"));
    MySinglePic &fine = import(jpeg, QStringLiteral("fine"));
    ASSERT_TRUE(QFile::remove(removed.spPath()));
    ASSERT_TRUE(QFile::remove(replaced.spPath()) && QDir().mkdir(replaced.spPath()));
    const ReadOnlyFile lock(locked.spPath());
    const QByteArray lockedBytes = fileBytes(locked.spPath());

    const SaveOutcome outcome = shift(oneHour);

    EXPECT_EQ(errorIdsFor(removed), QList<int>{SaveErrorId::SaveMissing});
    EXPECT_EQ(errorIdsFor(replaced), QList<int>{SaveErrorId::SaveMissing});
    EXPECT_FALSE(QFile::exists(removed.spPath())) << "a vanished file is never made anew";
    if (lock.isLocked()) {
        EXPECT_EQ(errorIdsFor(locked), QList<int>{SaveErrorId::SaveCannotOpen});
        EXPECT_EQ(fileBytes(locked.spPath()), lockedBytes);
    }
    EXPECT_TRUE(errorIdsFor(fine).isEmpty());
    EXPECT_EQ(outcome.savedPics, QSet<const MySinglePic *>{&fine});
    EXPECT_EQ(tagOf(fine, "ExifIFD:DateTimeOriginal"), "2024:05:02 00:30:00");
    EXPECT_EQ(folder.saveErrors, lock.isLocked() ? 3 : 2);
}

TEST_F(PicSaverTest, AFolderThatIsGoneFailsEveryItemWithMissing)
{
    MySinglePic &pic = import(buildJpeg({.exif = cameraTags()}));
    ASSERT_TRUE(QDir(dir.path()).removeRecursively());

    shift(oneHour);

    EXPECT_EQ(errorIdsFor(pic), QList<int>{SaveErrorId::SaveMissing});
    EXPECT_FALSE(QFileInfo::exists(dir.path()));
}

TEST_F(PicSaverTest, ADiskFailingMidRunLeavesThatFileAsItWasAndSavesTheOthers)
{
    const MediaFile jpeg = buildJpeg({.exif = cameraTags()});
    MySinglePic &first = import(jpeg, QStringLiteral("first"));
    MySinglePic &failing = import(jpeg, QStringLiteral("failing"));
    MySinglePic &last = import(jpeg, QStringLiteral("last"));
    const QByteArray before = fileBytes(failing.spPath());
    FailingDisk disk;
    disk.failingName = QStringLiteral("failing.jpg");
    disk.writesBeforeFailure = 2;

    const SaveOutcome outcome = shift(oneHour, &disk);

    EXPECT_EQ(errorIdsFor(failing), QList<int>{SaveErrorId::SaveCannotOpen});
    EXPECT_EQ(fileBytes(failing.spPath()), before) << "the two stamps written before are put back";
    EXPECT_NEAR(FileAttributes::read(failing.spPath())->modificationDate.secondsSinceEpoch(),
                failing.singlePicAttributes.NSFileModificationDate->secondsSinceEpoch(), 0.001)
        << "a file not saved keeps its date too";
    EXPECT_EQ(outcome.savedPics, (QSet<const MySinglePic *>{&first, &last}));
    EXPECT_EQ(failing.singlePicModification, oneHour) << "the failed item keeps its change pending";
}

TEST_F(PicSaverTest, ADiskThatNeverSyncsSavesNothingOnIt)
{
    MySinglePic &pic = import(buildJpeg({.exif = cameraTags()}));
    const QByteArray before = fileBytes(pic.spPath());
    FailingDisk disk;
    disk.failingName = pic.spName;
    disk.failsSync = true;

    shift(oneHour, &disk);

    EXPECT_EQ(errorIdsFor(pic), QList<int>{SaveErrorId::SaveCannotOpen});
    EXPECT_EQ(fileBytes(pic.spPath()), before);
    EXPECT_NEAR(FileAttributes::read(pic.spPath())->modificationDate.secondsSinceEpoch(),
                pic.singlePicAttributes.NSFileModificationDate->secondsSinceEpoch(), 0.001);
}

TEST_F(PicSaverTest, CheckingWithoutSavingGivesTheCheckIdsAndWritesNothing)
{
    const MediaFile jpeg = buildJpeg({.exif = cameraTags()});
    MySinglePic &tampered = import(jpeg, QStringLiteral("tampered"));
    MySinglePic &missing = import(jpeg, QStringLiteral("missing"));
    MySinglePic &intact = import(jpeg, QStringLiteral("intact"));
    tamper(tampered.spPath(), jpeg.offsets.dateTimeOriginal, "19");
    ASSERT_TRUE(QFile::remove(missing.spPath()));

    SaveErrors errors;
    const SaveSettings settings = defaultSettings();
    XtController xt;
    FixedSaveAnswers answers(true);
    ExiftoolBridge exiftool(xt, errors, settings, answers);
    SaveEnvironment environment{settings, errors, FileWriteAccess::disk(), exiftool};
    EXPECT_FALSE(PicSaver(tampered, environment).validatePicWithSavingChanges(false));
    EXPECT_FALSE(PicSaver(missing, environment).validatePicWithSavingChanges(false));
    EXPECT_TRUE(PicSaver(intact, environment).validatePicWithSavingChanges(false));
    EXPECT_EQ(errors.errorIdsFor(tampered), QList<int>{SaveErrorId::CheckChanged});
    EXPECT_EQ(errors.errorIdsFor(missing), QList<int>{SaveErrorId::CheckMissing});
    EXPECT_EQ(PicSaver::updatedUnchangedFileState(intact), 0);
}

TEST_F(PicSaverTest, AFileExchangedForAPipeSinceTheImportIsNamedAndNeverOpened)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    MySinglePic &pic = import(buildJpeg({.exif = tags}));
    ASSERT_TRUE(QFile::remove(pic.spPath()));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pic.spPath()).constData(), 0600), 0);

    const SaveOutcome outcome = shift(3600.0);

    EXPECT_FALSE(outcome.savedPics.contains(&pic));
    EXPECT_TRUE(errorIdsFor(pic).contains(SaveErrorId::NotARegularFile));
}
