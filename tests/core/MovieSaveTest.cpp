// Movies through the scan and the save: which date each header gives the item under the folder's
// movie options, and how a shift reaches every movie stamp in place, in its own form and length.

#include "app/FileTagRequests.h"
#include "core/PicSaver.h"
#include "core/SaveErrors.h"
#include "support/BoxBuilder.h"
#include "support/Exiftool.h"
#include "support/MovieBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr double oneHour = 3600.0;
const Instant headerCreation = DateStampCodec::mvhdBaseDate().addingSeconds(double(aprilTenth));

class MovieSave : public SaveFixture
{
protected:
    MySinglePic &importMovie(const QByteArray &bytes, const QString &name = QStringLiteral("clip.mov"))
    {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return importPath(file.fileName());
    }

    // Every date moves by the shift alone, not towards the new capture date.
    static SaveSettings movingAlong()
    {
        SaveSettings settings = defaultSettings();
        settings.options.dateChangeEXIFEXIFModDate = 3;
        return settings;
    }

    // The byte ranges of the movie's stored stamps.
    static std::vector<std::pair<qint64, qint64>> stampRanges(const PicAttributes &a)
    {
        std::vector<std::pair<qint64, qint64>> ranges;
        for (const auto *stamp : {&a.QTMetaDate, &a.QTMvhdCreaDate, &a.QTMvhdModDate, &a.riffCreaDate})
            if (*stamp)
                ranges.push_back({qint64((*stamp)->dateOffset), (*stamp)->dateData.size()});
        for (const QtTrackTimeRecord &track : a.qtTrackTimes)
            ranges.push_back({qint64(track.time.dateOffset), track.time.dateData.size()});
        return ranges;
    }

    void expectOnlyStampsDiffer(const QByteArray &before, const MySinglePic &pic)
    {
        const QByteArray after = fileBytes(pic.spPath());
        EXPECT_EQ(after.size(), before.size());
        const auto ranges = stampRanges(pic.singlePicAttributes);
        for (const qint64 offset : differingOffsets(before, after))
            EXPECT_TRUE(std::any_of(ranges.begin(), ranges.end(), [offset](const auto &r) {
                return offset >= r.first && offset < r.first + r.second;
            })) << "byte " << offset;
    }
};

QByteArray aviWithStamp(const QByteArray &stamp)
{
    const QByteArray body = QByteArray("AVI ") + riffList("hdrl", riffChunk("IDIT", stamp))
                            + riffList("movi", riffChunk("00dc", QByteArray(32, 'f')));
    return QByteArray("RIFF") + le32(quint32(body.size())) + body;
}

} // namespace

TEST_F(MovieSave, TheFolderOptionsChooseBetweenTheMetadataDateAndTheHeaderTimes)
{
    struct Case
    {
        const char *name;
        MovieShape shape;
        bool mdtaEnabled;
        int spType;
        OptionalDate date;
    };
    const Instant metadataDate = Instant::fromUtc(2021, 4, 10, 10, 43, 59);
    const Case cases[] = {
        {"metadata date preferred", {}, true, SpTypeMdta, metadataDate},
        {"header preferred", {}, false, SpTypeMvhdCreation, headerCreation},
        {"header preferred but without times", {.times = std::pair(0ull, 0ull)}, false, SpTypeMdta, metadataDate},
        {"only the modification time", {.times = std::pair(0ull, aprilTenth), .creationDate = ""}, true,
         SpTypeMvhdModification, headerCreation},
        {"a header of zeros", {.times = std::pair(0ull, 0ull), .creationDate = ""}, true, SpTypeMvhdZeroFileDate,
         std::nullopt},
        {"no header at all", {.times = std::nullopt, .creationDate = ""}, true, SpTypeMovieFileDate, std::nullopt},
    };
    int index = 0;
    for (const Case &c : cases) {
        folder.isQuicktimeMDTADateEnabled = c.mdtaEnabled;
        const MySinglePic &pic = importMovie(movie(c.shape), QStringLiteral("clip%1.mov").arg(index++));
        EXPECT_EQ(pic.spType, c.spType) << c.name;
        if (c.date)
            EXPECT_EQ(pic.spDateTimeOriginal, c.date) << c.name;
        else
            EXPECT_EQ(pic.spDateTimeOriginal, pic.fileCreationDateOLD) << c.name;
    }
    const MySinglePic &phone = importMovie(movie({}), QStringLiteral("phone.mov"));
    EXPECT_EQ(phone.movieType, 16);
    EXPECT_EQ(phone.UUID, QStringLiteral("E905E6C6-C747-4805-942F-9904A0281F02"));
    EXPECT_EQ(std::pair(phone.pivImageWidth, phone.pivImageHeight), std::pair(1440, 1080));
    EXPECT_EQ(phone.movDuration, 2.0);
    EXPECT_EQ(phone.gpsLat, 52.2097);
    EXPECT_EQ(phone.gpsLong, -0.8955);
    ASSERT_EQ(phone.singlePicAttributes.qtLocations.size(), 3u);
    EXPECT_EQ(phone.singlePicAttributes.qtLocations[0].hAccuracy.dateData, "65.000000");
    EXPECT_EQ(phone.tiffDateTimeOLD, headerCreation.addingSeconds(2));
}

TEST_F(MovieSave, AShiftMovesTheMetadataDateInItsOwnOffsetAndTheHeaderTimesByTheSameHour)
{
    MySinglePic &pic = importMovie(movie({}));
    const QByteArray before = fileBytes(pic.spPath());
    const ExiftoolTags then = exiftoolTags(pic.spPath(), ExiftoolGroups::Family1);
    ASSERT_EQ(then.string("Keys:CreationDate"), "2021:04:10 11:43:59+01:00");

    shift(oneHour, nullptr, movingAlong());

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    const ExiftoolTags now = exiftoolTags(pic.spPath(), ExiftoolGroups::Family1);
    EXPECT_EQ(now.string("Keys:CreationDate"), "2021:04:10 12:43:59+01:00");
    EXPECT_EQ(now.string("QuickTime:CreateDate"), "2021:04:10 11:44:00");
    EXPECT_EQ(now.string("QuickTime:ModifyDate"), "2021:04:10 11:44:02");
    expectOnlyStampsDiffer(before, pic);
    EXPECT_EQ(pic.singlePicAttributes.QTMetaDate->dateData, "2021-04-10T12:43:59+0100");
    EXPECT_EQ(pic.exifDateTimeOriginalOLD, Instant::fromUtc(2021, 4, 10, 11, 43, 59));
}

TEST_F(MovieSave, MetadataDatesKeepTheirLengthAndZoneForm)
{
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"2021-04-10T10:43:59Z", "2021-04-10T11:43:59Z"},
        {"2021-04-10T11:43:59+01:00", "2021-04-10T12:43:59+01:00"},
        {"2021-04-10T05:43:59-0500", "2021-04-10T06:43:59-0500"},
    };
    for (const auto &[stamp, expected] : cases) {
        MySinglePic &pic = importMovie(movie({.creationDate = stamp}), QString::fromLatin1(stamp.left(4) + stamp.right(3)) + ".mov");
        shift(oneHour, nullptr, movingAlong());
        EXPECT_TRUE(errors().isEmpty()) << stamp.toStdString();
        const QByteArray after = fileBytes(pic.spPath());
        EXPECT_EQ(after.mid(qsizetype(pic.singlePicAttributes.QTMetaDate->dateOffset), expected.size()), expected);
    }
}

TEST_F(MovieSave, AVersion1HeaderTakesItsSixtyFourBitTimesAtTwelveAndTwenty)
{
    folder.isQuicktimeMDTADateEnabled = false;
    folder.isQuicktimeMVHDTimezoneCorrectionEnabled = false;
    const QByteArray bytes = movie({.version = 1, .creationDate = ""});
    MySinglePic &pic = importMovie(bytes);
    ASSERT_EQ(pic.spType, SpTypeMvhdCreation);
    const qsizetype mvhd = bytes.indexOf("mvhd") - 4;

    shift(oneHour, nullptr, movingAlong());

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    const QByteArray after = fileBytes(pic.spPath());
    EXPECT_EQ(after.mid(mvhd + 12, 8), be64(aprilTenth + 3600));
    EXPECT_EQ(after.mid(mvhd + 20, 8), be64(aprilTenth + 2 + 3600));
    expectOnlyStampsDiffer(bytes, pic);
    const ExiftoolTags now = exiftoolTags(pic.spPath(), ExiftoolGroups::Family1);
    EXPECT_EQ(now.string("QuickTime:CreateDate"), "2021:04:10 11:44:00");
    // The 64-bit track and media header times follow, each the movie header time it held.
    ASSERT_EQ(pic.singlePicAttributes.qtTrackTimes.size(), 8u);
    for (const char *track : {"Track1", "Track2"}) {
        for (const char *kind : {"Track", "Media"}) {
            const QString group = QLatin1String(track) + QLatin1Char(':') + QLatin1String(kind);
            EXPECT_EQ(now.string(group + "CreateDate"), "2021:04:10 11:44:00") << group.toStdString();
            EXPECT_EQ(now.string(group + "ModifyDate"), "2021:04:10 11:44:02") << group.toStdString();
        }
    }
}

TEST_F(MovieSave, AHeaderOfZerosTakesTheItemsDateAndTheMovieIsDatedByItsHeaderAfterwards)
{
    MySinglePic &pic = importMovie(movie({.times = std::pair(0ull, 0ull), .creationDate = ""}));
    ASSERT_EQ(pic.spType, SpTypeMvhdZeroFileDate);
    shift(oneHour);
    EXPECT_EQ(pic.spType, SpTypeMvhdCreation);
    const QByteArray written = pic.singlePicAttributes.QTMvhdCreaDate->dateData;
    EXPECT_EQ(DateStampCodec::dateFromMVHDData(written)->wholeSeconds(), pic.spDateTimeOriginal->wholeSeconds());
}

TEST_F(MovieSave, WhatDoesNotFitInPlaceOrWasChangedSinceTheImportIsNotWritten)
{
    // A header time past 2040 needs more than its 32 bits.
    folder.isQuicktimeMDTADateEnabled = false;
    const quint64 lateIn2040 = 0xFFFFFFFFull - 600;
    const QByteArray late = movie({.times = std::pair(lateIn2040, lateIn2040), .creationDate = ""});
    MySinglePic &tooLate = importMovie(late, QStringLiteral("late.mov"));
    // Bytes of another program's edit, same size and dates.
    const QByteArray changed = movie({});
    MySinglePic &edited = importMovie(changed, QStringLiteral("edited.mov"));
    {
        QFile file(edited.spPath());
        const QDateTime modified = QFileInfo(file).lastModified();
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(qint64(edited.singlePicAttributes.QTMvhdModDate->dateOffset)));
        file.write(be32(7));
        file.setFileTime(modified, QFileDevice::FileModificationTime);
    }
    const QByteArray editedBytes = fileBytes(edited.spPath());

    shift(oneHour);

    EXPECT_EQ(fileBytes(tooLate.spPath()), late);
    EXPECT_TRUE(errors().toolStepsFor(tooLate).contains(ToolStep::WriteMovieDates));
    EXPECT_EQ(fileBytes(edited.spPath()), editedBytes);
    EXPECT_FALSE(errorIdsFor(edited).isEmpty());
}

TEST_F(MovieSave, AnAviStampIsRewrittenInItsOwnFormAndLength)
{
    const std::pair<QByteArray, QByteArray> forms[] = {
        {QByteArray("Mon Mar 10 15:04:43 2003\n\0", 26), QByteArray("Mon Mar 10 16:04:43 2003\n\0", 26)},
        {QByteArray("2009/10/27 12:14:34\0", 20), QByteArray("2009/10/27 13:14:34\0", 20)},
    };
    int n = 0;
    for (const auto &[stamp, shifted] : forms) {
        MySinglePic &pic = importMovie(aviWithStamp(stamp), QStringLiteral("clip%1.avi").arg(n++));
        ASSERT_EQ(pic.spType, SpTypeRiff) << stamp.toStdString();
        const QByteArray before = fileBytes(pic.spPath());
        shift(oneHour);
        EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
        EXPECT_EQ(pic.singlePicAttributes.riffCreaDate->dateData, shifted);
        expectOnlyStampsDiffer(before, pic);
    }
    // A stamp of neither form leaves the movie its file date and nothing to write.
    MySinglePic &unread = importMovie(aviWithStamp(QByteArray("2001/ 1/27  1:42PM\0\0", 20)), QStringLiteral("casio.avi"));
    EXPECT_EQ(unread.spType, SpTypeMovieFileDate);
}

TEST_F(MovieSave, ANewLocationTakesEachPlaceTextsOwnDigitCountsInPlace)
{
    MySinglePic &pic = importMovie(movie({}));
    const QByteArray before = fileBytes(pic.spPath());
    ASSERT_TRUE(FileTagRequests::setUserLocation({&pic}, -33.86882, 151.20929,
                                                 MySinglePic::notSetAccuracy, MySinglePic::notSetAccuracy));
    EXPECT_EQ(*pic.gpsLat, -33.8688) << "the item takes the place its text can hold";
    EXPECT_EQ(*pic.gpsLong, 151.2093);

    shift(0.0);

    EXPECT_TRUE(errors().isEmpty()) << errors().logText(Instant()).toStdString();
    const QByteArray after = fileBytes(pic.spPath());
    ASSERT_EQ(after.size(), before.size());
    for (const auto &[text, expected] : {std::pair("+52.2097-000.8955+103.640/", "-33.8688+151.2093+103.640/"),
                                         std::pair("+51.4169-000.0806/", "-33.8688+151.2093/"),
                                         std::pair("+33.1268-117.3273/", "-33.8688+151.2093/")})
        EXPECT_EQ(after.mid(before.indexOf(text), qsizetype(strlen(expected))), QByteArray(expected));
    const ExiftoolTags read = exiftoolTags(pic.spPath(), ExiftoolGroups::Family1);
    EXPECT_EQ(read.string("Keys:GPSCoordinates"), "-33.8688 151.2093 103.64");
    EXPECT_EQ(read.number("Keys:LocationAccuracyHorizontal"), 0.0) << "the old accuracy went with the old place";
    EXPECT_EQ(pic.singlePicAttributes.qtLocations[0].hAccuracy.dateData, "0.0000000");
    EXPECT_EQ(pic.hasAddedLocation, 0);
    EXPECT_FALSE(pic.hasLocationChange());

    // A text in another form is left to exiftool, and the file stays as it was.
    MySinglePic &odd = importMovie(movie({.location = "+5.2097-000.8955/"}), QStringLiteral("odd.mov"));
    const QByteArray oddBefore = fileBytes(odd.spPath());
    odd.gpsLat = 1.0;
    odd.gpsLong = 2.0;
    odd.hasAddedLocation = 1;
    shift(0.0);
    EXPECT_EQ(fileBytes(odd.spPath()), oddBefore) << "a text of another form is not rewritten";
    EXPECT_TRUE(odd.hasXmpSidecar()) << "the place went into a new sidecar";
}

TEST_F(MovieSave, TheFoldersCorrectionReadsAndWritesHeaderTimesAsLocalClockTime)
{
    // Many cameras put their local clock into the field meant for UTC.
    struct SystemZone
    {
        QByteArray previous = qgetenv("TZ");
        SystemZone() { qputenv("TZ", "Europe/Berlin"); }
        ~SystemZone() { previous.isNull() ? qunsetenv("TZ") : qputenv("TZ", previous); }
    } berlin;
    if (TimeZone::systemZone().name() != QLatin1String("Europe/Berlin"))
        GTEST_SKIP() << "the system zone does not follow TZ here";
    folder.isQuicktimeMDTADateEnabled = false;
    const QByteArray bytes = movie({.creationDate = ""});
    folder.isQuicktimeMVHDTimezoneCorrectionEnabled = false;
    const MySinglePic &asUtc = importMovie(bytes, QStringLiteral("utc.mov"));
    folder.isQuicktimeMVHDTimezoneCorrectionEnabled = true;
    MySinglePic &asLocal = importMovie(bytes, QStringLiteral("local.mov"));
    EXPECT_EQ(asUtc.spDateTimeOriginal, headerCreation);
    EXPECT_EQ(asLocal.spDateTimeOriginal, headerCreation.addingSeconds(-2 * oneHour)) << "CEST";

    shift(oneHour, nullptr, movingAlong());
    // The header keeps holding clock time: an hour later on the same clock.
    const qsizetype mvhd = bytes.indexOf("mvhd") - 4;
    EXPECT_EQ(fileBytes(asLocal.spPath()).mid(mvhd + 12, 4), be32(quint32(aprilTenth + 3600)));
}
