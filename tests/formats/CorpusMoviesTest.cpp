// Every movie of the corpus read as exiftool reads it: the movie header's times, the metadata
// creation date, the places, and AVI recording dates; and every value stands where we say.

#include "RecordDecoding.h"
#include "formats/MySingleFolderDataReader.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
using namespace orv::test;

namespace {

struct Disagreement
{
    const char *fileName;
    const char *exiftoolKey;
    const char *reason;
};
const Disagreement knownDisagreements[] = {
    {"Pentax.avi", "RIFF:DateTimeOriginal",
     "its IDIT holds the digits alone, \"2009/10/27 12:14:34\": exiftool takes them for a form "
     "without seconds and reads 12:14:00, we read the seconds as well"},
};

bool isKnownDisagreement(const QString &path, const char *key)
{
    const QString fileName = QFileInfo(path).fileName();
    return std::any_of(std::begin(knownDisagreements), std::end(knownDisagreements), [&](const Disagreement &d) {
        return fileName == QLatin1String(d.fileName) && qstrcmp(d.exiftoolKey, key) == 0;
    });
}

// exiftool's "yyyy:MM:dd HH:mm:ss" with an optional "+hh:mm", as an instant (UTC without zone).
OptionalDate exiftoolDate(const QString &text)
{
    if (text.size() > 19)
        return DateStampCodec::dateFromEXIFTimeStamp(text.left(19), text.mid(19));
    return DateStampCodec::dateFromEXIFTimeStamp(text, TimeZone::utc());
}

class CorpusMovies : public testing::TestWithParam<CorpusFileAndSource>
{
protected:
    void SetUp() override
    {
        path = std::get<0>(GetParam());
        exif = exiftoolTags(path, ExiftoolGroups::Family1);
        bytes = fileBytes(path);
        source = openSource(std::get<1>(GetParam()), path);
    }

    void expectInFile(const QByteArray &data, quint64 offset, const char *what)
    {
        EXPECT_NE(offset, 0u) << what;
        EXPECT_EQ(bytes.mid(qsizetype(offset), data.size()), data) << what << " at " << offset;
    }

    // Ours and exiftool's reading of one date, or neither.
    void expectSameDate(const char *key, OptionalDate ours)
    {
        if (isKnownDisagreement(path, key))
            return;
        const QString theirs = exif.string(QLatin1String(key));
        if (theirs.isEmpty() || theirs.startsWith(QLatin1String("0000"))) {
            EXPECT_FALSE(ours) << key << " found but exiftool reads none";
            return;
        }
        ASSERT_TRUE(ours) << key << " missing; exiftool reads " << theirs.toStdString();
        EXPECT_EQ(*ours, exiftoolDate(theirs)) << key;
    }

    QString path;
    ExiftoolTags exif;
    QByteArray bytes;
    std::unique_ptr<ByteSource> source;
};

class CorpusQuickTimeMovies : public CorpusMovies
{
};
class CorpusAviMovies : public CorpusMovies
{
};

OptionalDate headerDate(const std::optional<MovieValue> &value)
{
    return value ? DateStampCodec::dateFromMVHDData(value->data) : std::nullopt;
}

} // namespace

TEST_P(CorpusQuickTimeMovies, HeaderTimesMetadataDateAndPlaceMatchExiftool)
{
    const bool quickTime = path.endsWith(QLatin1String(".mov"), Qt::CaseInsensitive);
    const MovieHeaderData m =
        MySingleFolderDataReader().quicktimeHeaderDataForMovie(*source, quickTime ? 1 : 2);
    ASSERT_NE(m.movieType, MovieHeaderData::NoHeader);

    expectSameDate("QuickTime:CreateDate", headerDate(m.creaDate));
    expectSameDate("QuickTime:ModifyDate", headerDate(m.modDate));
    const OptionalDate metaDate =
        m.QtCreationdate ? DateStampCodec::dateFromMDTATimeStamp(QString::fromLatin1(m.QtCreationdate->data))
                         : std::nullopt;
    expectSameDate("Keys:CreationDate", metaDate);

    // exiftool gives latitude, longitude and altitude as numbers with -n.
    const std::optional<MovieValue> &place = m.locationISO6709 ? m.locationISO6709
                                             : m.locationISO6709_2 ? m.locationISO6709_2
                                                                   : m.locationISO6709_3;
    const QString coordinates = exif.has("Keys:GPSCoordinates") ? exif.string("Keys:GPSCoordinates")
                                                                : exif.string("UserData:GPSCoordinates");
    ASSERT_EQ(place.has_value(), !coordinates.isEmpty());
    if (place) {
        const auto ours = coordinatesFromIso6709(place->data);
        const QStringList theirs = coordinates.split(QLatin1Char(' '));
        ASSERT_TRUE(ours && theirs.size() >= 2);
        EXPECT_NEAR(ours->first, theirs[0].toDouble(), 1e-4);
        EXPECT_NEAR(ours->second, theirs[1].toDouble(), 1e-4);
        expectInFile(place->data, place->offset, "location");
    }
    EXPECT_EQ(QString::fromLatin1(m.contentIdentifier), exif.string("Keys:ContentIdentifier"));

    for (const auto &[value, what] : {std::pair(&m.creaDate, "creation"), std::pair(&m.modDate, "modification"),
                                      std::pair(&m.QtCreationdate, "metadata date")})
        if (*value)
            expectInFile((*value)->data, (*value)->offset, what);
}

TEST_P(CorpusAviMovies, IditStampMatchesExiftool)
{
    const std::optional<RiffMovieData> riff = MySingleFolderDataReader().riffHeaderDataForMovie(*source);
    const OptionalDate ours =
        riff ? DateStampCodec::dateFromRIFFTimeStamp(QString::fromLatin1(riff->creaDateData.left(24)), TimeZone::utc())
             : std::nullopt;
    expectSameDate("RIFF:DateTimeOriginal", ours);
    // Where exiftool reads a stamp to the minute only, it still names our minute.
    const QString theirs = exif.string("RIFF:DateTimeOriginal");
    ASSERT_EQ(ours.has_value(), !theirs.isEmpty());
    if (ours) {
        EXPECT_LT(std::abs(ours->secondsSince(*exiftoolDate(theirs))), 60.0);
    }
    if (riff) {
        expectInFile(riff->creaDateData, riff->creaDateDataOffset, "IDIT");
        EXPECT_EQ(QString::fromLatin1(riff->infoString), exif.string("RIFF:Software"));
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusQuickTimeMovies, corpusFilesOnBothSources({"mov", "mp4"}),
                         corpusSourceTestName);
INSTANTIATE_TEST_SUITE_P(Corpus, CorpusAviMovies, corpusFilesOnBothSources({"avi"}),
                         corpusSourceTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusQuickTimeMovies);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusAviMovies);

TEST(CorpusCr3, APositionWrittenIntoCmt4IsReadAsExiftoolReadsIt)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QTemporaryDir dir;
    const QString path = copyToTemporary(corpusFile(QStringLiteral("exiftool-t/CanonRaw.cr3")), dir);
    QProcess exiftool;
    exiftool.start(QStringLiteral("exiftool"),
                   {"-q", "-overwrite_original", "-GPSLatitude=48.8566", "-GPSLatitudeRef=N", "-GPSLongitude=2.3522",
                    "-GPSLongitudeRef=E", "-GPSTimeStamp=10:20:30", "-GPSDateStamp=2018:02:21", path});
    ASSERT_TRUE(exiftool.waitForFinished(60000) && exiftool.exitCode() == 0) << exiftool.readAllStandardError().toStdString();
    const ExiftoolTags exif = exiftoolTags(path, ExiftoolGroups::Family1);

    const DatesData dates = MySingleFolderDataReader().savereadDatesAtPath(path, RawFormat);
    ASSERT_TRUE(dates.gpsLocation);
    const GpsLocationRecord &location = *dates.gpsLocation;
    EXPECT_NEAR(degreesOf(location.latitude_Data, location.needsConv), exif.number("GPS:GPSLatitude"), 1e-6);
    EXPECT_NEAR(degreesOf(location.longitude_Data, location.needsConv), exif.number("GPS:GPSLongitude"), 1e-6);
    ASSERT_TRUE(dates.gpsDateStamp && dates.gpsTimeStamp);
    EXPECT_EQ(QString::fromLatin1(dates.gpsDateStamp->dateData.left(10)), exif.string("GPS:GPSDateStamp"));
    EXPECT_NEAR(gpsTimeSeconds(*dates.gpsTimeStamp), secondsOfClockText(exif.string("GPS:GPSTimeStamp")), 0.01);
    EXPECT_EQ(fileBytes(path).mid(location.latitude_Offset, 24), location.latitude_Data);
    ASSERT_TRUE(dates.exifDateTimeOriginal) << "the dates stay";
}
