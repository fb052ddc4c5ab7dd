// QuickTime and MPEG-4 movies crafted box by box: where the dates, places and the content
// identifier stand, which header versions are read, and what damaged movies give.

#include "formats/QuickTimeLocator.h"
#include "support/BoxBuilder.h"
#include "support/Corpus.h"
#include "support/MovieBuilder.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

MovieHeaderData read(const QByteArray &bytes, bool quickTime = true)
{
    return quicktimeHeaderDataForMovie(MemoryByteSource(bytes), quickTime);
}

// What a save would trust: each value must lie in the file and equal the bytes there.
void expectInPlace(const QByteArray &bytes, const std::optional<MovieValue> &value, const char *what)
{
    if (!value)
        return;
    EXPECT_GT(value->offset, 0u) << what;
    EXPECT_EQ(bytes.mid(qsizetype(value->offset), value->data.size()), value->data) << what;
}

void expectAllInPlace(const QByteArray &bytes, const MovieHeaderData &m)
{
    for (const auto &[value, name] : {std::pair(&m.creaDate, "creation"), std::pair(&m.modDate, "modification"),
                                      std::pair(&m.QtCreationdate, "metadata date"),
                                      std::pair(&m.locationISO6709, "location"),
                                      std::pair(&m.locationISO6709_2, "udta location"),
                                      std::pair(&m.locationISO6709_3, "item list location"),
                                      std::pair(&m.locationHAccuracy, "accuracy")})
        expectInPlace(bytes, *value, name);
}

} // namespace

TEST(QuickTimeLocator, FindsHeaderTimesMetadataPlacesAndSizeWhereTheyStand)
{
    const QByteArray bytes = movie({});
    const MovieHeaderData m = read(bytes);
    EXPECT_EQ(m.movieType, MovieHeaderData::CreationGood);
    ASSERT_TRUE(m.creaDate && m.modDate && m.QtCreationdate);
    EXPECT_EQ(m.creaDate->data, be32(quint32(aprilTenth)));
    EXPECT_EQ(m.modDate->data, be32(quint32(aprilTenth + 2)));
    // The version 0 times stand 12 and 16 bytes into the movie header.
    const qsizetype mvhd = bytes.indexOf("mvhd") - 4;
    EXPECT_EQ(m.creaDate->offset, quint64(mvhd + 12));
    EXPECT_EQ(m.modDate->offset, quint64(mvhd + 16));
    EXPECT_EQ(m.QtCreationdate->data, "2021-04-10T11:43:59+0100");
    EXPECT_EQ(m.locationISO6709->data, "+52.2097-000.8955+103.640/");
    EXPECT_EQ(m.locationHAccuracy->data, "65.000000");
    EXPECT_EQ(m.locationISO6709_2->data, "+51.4169-000.0806/");
    EXPECT_EQ(m.locationISO6709_3->data, "+33.1268-117.3273/");
    EXPECT_EQ(m.contentIdentifier, "E905E6C6-C747-4805-942F-9904A0281F02");
    EXPECT_EQ(m.pixelSize, QSize(1440, 1080)) << "the sound track has no size";
    EXPECT_EQ(m.duration, 2.0);
    expectAllInPlace(bytes, m);
}

TEST(QuickTimeLocator, AVersion1HeaderKeepsItsSixtyFourBitTimesAtTwelveAndTwenty)
{
    const quint64 far = aprilTenth + 5000000000ull; // past what 32 bits hold
    const QByteArray bytes = movie({.version = 1, .times = std::pair(far, far + 7)});
    const MovieHeaderData m = read(bytes);
    ASSERT_TRUE(m.creaDate && m.modDate);
    const qsizetype mvhd = bytes.indexOf("mvhd") - 4;
    EXPECT_EQ(m.creaDate->offset, quint64(mvhd + 12));
    EXPECT_EQ(m.modDate->offset, quint64(mvhd + 20));
    EXPECT_EQ(m.creaDate->data, be64(far));
    EXPECT_EQ(m.modDate->data, be64(far + 7));
    EXPECT_EQ(m.duration, 2.0);
    EXPECT_EQ(DateStampCodec::dateFromMVHDData(m.creaDate->data),
              DateStampCodec::mvhdBaseDate().addingSeconds(double(far)));
    EXPECT_EQ(DateStampCodec::mvhdDataFromDate(*DateStampCodec::dateFromMVHDData(m.modDate->data), false,
                                               TimeZone::utc(), 8),
              m.modDate->data);
}

TEST(QuickTimeLocator, MovieTypeFollowsWhichHeaderTimesAreSetAndTheMetadataDate)
{
    struct Case
    {
        const char *name;
        std::optional<std::pair<quint64, quint64>> times;
        QByteArray creationDate;
        int movieType;
        bool hasCreation, hasModification;
    };
    const Case cases[] = {
        {"both set", std::pair(aprilTenth, aprilTenth), "", 16, true, true},
        {"creation only", std::pair(aprilTenth, 0ull), "", 16, true, false},
        {"modification only", std::pair(0ull, aprilTenth), "", 17, false, true},
        {"both zero", std::pair(0ull, 0ull), "", 19, true, true},
        {"both zero, metadata date", std::pair(0ull, 0ull), "2021-04-10T10:44:00Z", 16, false, false},
        {"modification only, metadata date", std::pair(0ull, aprilTenth), "2021-04-10T10:44:00Z", 16, false, true},
        {"no header, metadata date", std::nullopt, "2021-04-10T10:44:00Z", 16, false, false},
        {"no header, broken metadata date", std::nullopt, "2021-04-10 10:44:00Z", 0, false, false},
    };
    for (const Case &c : cases) {
        const MovieHeaderData m = read(movie({.times = c.times, .creationDate = c.creationDate}));
        EXPECT_EQ(m.movieType, c.movieType) << c.name;
        EXPECT_EQ(m.creaDate.has_value(), c.hasCreation) << c.name;
        EXPECT_EQ(m.modDate.has_value(), c.hasModification) << c.name;
    }
}

TEST(QuickTimeLocator, AnMpeg4MovieMustBeginWithItsFileTypeBox)
{
    const QByteArray bare = movie({.ftyp = false});
    EXPECT_EQ(read(bare, false).movieType, MovieHeaderData::NoHeader);
    EXPECT_EQ(read(bare, true).movieType, MovieHeaderData::CreationGood) << "old QuickTime files have none";
}

TEST(QuickTimeLocator, DamagedMoviesGiveWhatCouldBeReadAndNeverAValueOutsideTheFile)
{
    // A moov inside itself, deeper than any real file, with the header at the bottom.
    QByteArray nested = movieHeader(0, aprilTenth, aprilTenth);
    for (int i = 0; i < 200; ++i)
        nested = box("moov", nested);
    EXPECT_EQ(read(box("ftyp", "qt  ") + nested).movieType, MovieHeaderData::NoHeader);

    // A moov claiming more than the file holds, and one whose size is 0 (to the end).
    const QByteArray inner = movieHeader(0, aprilTenth, aprilTenth);
    EXPECT_EQ(read(box("ftyp", "qt  ") + boxClaiming(1 << 20, "moov", inner)).movieType, MovieHeaderData::NoHeader);
    EXPECT_EQ(read(box("ftyp", "qt  ") + boxClaiming(0, "moov", inner)).movieType, MovieHeaderData::CreationGood);
    EXPECT_EQ(read(box("ftyp", "qt  ") + boxClaiming(1, "moov", inner)).movieType, MovieHeaderData::NoHeader);

    // A key table claiming millions of entries.
    const QByteArray keys = fullBox("keys", 0, be32(0x7fffffff) + be32(12) + "mdtaname");
    EXPECT_NO_FATAL_FAILURE(read(box("ftyp", "qt  ") + box("moov", box("meta", box("hdlr") + keys))));

    // Every cut of a whole movie: its moov comes last, so a cut always breaks it.
    const QByteArray whole = movie({});
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const QByteArray cut = whole.left(length);
        const MovieHeaderData m = read(cut);
        expectAllInPlace(cut, m);
        EXPECT_EQ(m.movieType, MovieHeaderData::NoHeader) << length;
    }
}

TEST(QuickTimeLocator, CorpusMoviesCutShortOrOverwrittenStayInsideTheirBytes)
{
    ORV_SKIP_WITHOUT_CORPUS();
    for (const QString &path : corpusFiles({"mov", "mp4"})) {
        const QByteArray bytes = fileBytes(path);
        for (int step = 1; step <= 16; ++step) {
            const QByteArray cut = bytes.left(bytes.size() * step / 17);
            expectAllInPlace(cut, read(cut, path.endsWith(".mov", Qt::CaseInsensitive)));
        }
        QByteArray noisy = bytes;
        for (qsizetype at = 0; at < noisy.size(); at += 97)
            noisy[at] = char(0xff);
        expectAllInPlace(noisy, read(noisy));
    }
}

TEST(QuickTimeLocator, MetadataDatesAndPlaceTextsAreTestedBeforeUse)
{
    const std::pair<QByteArray, bool> dates[] = {
        {"2021-04-10T11:43:59Z", true},        {"2021-04-10T11:43:59+0100", true},
        {"2021-04-10T11:43:59+01:00", true},   {"2021-04-10T11:43:59", false},
        {"2021-04-10T11:43:59+01", false},     {"2021-04-10 11:43:59Z", false},
        {"2021-04-10T11:43:59+0100x", false},  {"2021/04/10T11:43:59Z", false},
        {"2021-04-10T11:43:59+01-00", false},  {"2021-04-10T11:43:5a+0100", false},
        {"2021-04-10T11:43:59X", false},       {"", false},
    };
    for (const auto &[text, valid] : dates)
        EXPECT_EQ(isValidQtCreationDateData(text), valid) << text.toStdString();

    const std::pair<QByteArray, bool> places[] = {
        {"+52.2097-000.8955+103.640/", true}, {"+51.4169-000.0806/", true},
        {"-33.8688+151.2093", true},          {"+52-001/", true},
        {"52.2097-000.8955/", false},         {"+52.2097/", false},
        {"+52.2097-000.8955+103.6+1/", false}, {"+52.2097-000.8955x", false},
        {"+52.2.0.9.7-000/", false},          {"", false},
    };
    for (const auto &[text, valid] : places)
        EXPECT_EQ(isValidQtLocationData(text), valid) << text.toStdString();
}

TEST(QuickTimeLocator, PlaceTextsAreMeasuredAndRewrittenInTheirOwnDigitCounts)
{
    struct Case
    {
        QByteArray text;
        int int1, frac1, int2, frac2;
        bool edit;
    };
    const Case cases[] = {
        {"+52.2097-000.8955+103.640/", 2, 4, 3, 4, true},
        {"+51.4169-000.0806/", 2, 4, 3, 4, true},
        {"+33.12-117.32/", 2, 2, 3, 2, true},
        {"+5.2097-000.8955/", 1, 4, 3, 4, false},
        {"+52-001/", 2, 0, 3, 0, true},
    };
    for (const Case &c : cases) {
        const Iso6709Digits d = measureIso6709(c.text);
        EXPECT_EQ((std::tuple(d.int1, d.frac1, d.int2, d.frac2, d.edit)),
                  (std::tuple(c.int1, c.frac1, c.int2, c.frac2, c.edit)))
            << c.text.toStdString();
    }
    EXPECT_EQ(coordinatesFromIso6709("+52.2097-000.8955+103.640/"), std::pair(52.2097, -0.8955));
    EXPECT_EQ(coordinatesFromIso6709("+00.0000+000.0000/"), std::nullopt);
    EXPECT_EQ(coordinatesFromIso6709("+95.0000+000.0000/"), std::nullopt);

    EXPECT_EQ(iso6709WithCoordinates("+52.2097-000.8955+103.640/", -33.86882, 151.20929),
              "-33.8688+151.2093+103.640/");
    EXPECT_EQ(iso6709WithCoordinates("+51.4169-000.0806/", 0.00004, -0.00004), "+00.0000+000.0000/");
    EXPECT_EQ(iso6709WithCoordinates("+5.2097-000.8955/", 1.0, 1.0), "") << "not the common form";
    EXPECT_EQ(iso6709WithCoordinates("+52-001/", 48.2, 16.4), "+48+016/");
}
