// Edge cases of the containers, on built files whose every offset is known.

#include "formats/InPlaceWriter.h"
#include "formats/MySingleFolderDataReader.h"
#include "formats/TiffLocator.h"
#include "formats/RecordDecoding.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

#include <cmath>

using namespace orv;
using namespace orv::test;

namespace {

const QByteArray dateStamp = "2024:05:01 10:00:00";

class CraftedFile : public OnBothSources
{
protected:
    QString write(const MediaFile &file) { return file.write(m_dir.path(), "crafted"); }

    using OnBothSources::source;
    const ByteSource &source(const MediaFile &file) { return source(file.bytes); }

    DatesData readDates(const MediaFile &file, int format)
    {
        return MySingleFolderDataReader().savereadDates(source(file), format);
    }
};

TiffShape originalDate(ByteOrder order, const Stamp &stamp = Stamp::text(dateStamp))
{
    return {.order = order, .dateTimeOriginal = stamp};
}

TEST_P(CraftedFile, ExifTagsInIfd0AfterThePointersAreFoundByTheSecondPass)
{
    TiffShape recipe = originalDate(ByteOrder::Intel);
    recipe.dateTime = Stamp::text("2024:05:01 08:00:00");
    recipe.dateTimeDigitized = Stamp::text("2024:05:01 09:30:00");
    recipe.exifDatePlace = ExifDatePlace::Ifd0;
    recipe.pixelSize = QSize(16, 16);
    recipe.gps = GpsShape{.dateStamp = Stamp::text("2024:05:01")};
    const MediaFile file = buildExifBlock(recipe);
    const DatesData dates = readDates(file, TiffFormat);
    ASSERT_TRUE(dates.exifDateTimeOriginal && dates.exifDateTimeDigitized);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateData, recipe.dateTimeOriginal->bytes);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateOffset, file.offsets.dateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeDigitized->dateOffset, file.offsets.dateTimeDigitized);
    EXPECT_TRUE(dates.tiffDateTime);
}

TEST_P(CraftedFile, BlankStampsAreReportedSoThatTheirTagsCanBeFilled)
{
    const DatesData dates =
        readDates(buildExifBlock(originalDate(ByteOrder::Motorola, Stamp::blank())), TiffFormat);
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateData, Stamp::blank().bytes);
    ASSERT_TRUE(dates.tiffHeader);
    EXPECT_FALSE(dates.tiffHeader->isIntel);
}

TEST_P(CraftedFile, MotorolaRationalsNeedConversion)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        GpsShape gps;
        gps.timeStamp = RationalTriple{Rational{10, 1}, Rational{20, 1}, Rational{30, 1}};
        const MediaFile file = buildExifBlock({.order = order, .gps = gps});
        const DatesData dates = readDates(file, TiffFormat);
        ASSERT_TRUE(dates.gpsTimeStamp);
        EXPECT_EQ(dates.gpsTimeStamp->dateData, file.bytes.mid(file.offsets.gpsTimeStamp, 24));
        EXPECT_EQ(dates.gpsTimeStamp->needsConv, order == ByteOrder::Motorola);
    }
}

TEST_P(CraftedFile, GpsDateNeedsItsNulAtByteTen)
{
    const auto gpsDate = [&](const Stamp &stamp) {
        return readDates(buildExifBlock({.gps = GpsShape{.dateStamp = stamp}}), TiffFormat)
            .gpsDateStamp;
    };
    const auto withNul = gpsDate(Stamp::text("2024:05:01"));
    ASSERT_TRUE(withNul);
    EXPECT_EQ(withNul->dateData, QByteArray("2024:05:01\0", 11));
    EXPECT_FALSE(gpsDate(Stamp::raw("2024:05:011")));
}

TEST_P(CraftedFile, ValuesPointingOutsideTheFileAreAbsent)
{
    MediaFile file = buildExifBlock({.dateTime = Stamp::text(dateStamp)});
    // DateTime is IFD0's only entry; its value offset follows tag, type and count.
    qToLittleEndian<quint32>(0xFFFFFF00, file.bytes.data() + file.offsets.ifd0 + 2 + 8);
    const DatesData dates = readDates(file, TiffFormat);
    EXPECT_TRUE(dates.tiffHeader);
    EXPECT_FALSE(dates.tiffDateTime);
}

// A file without its own DateTime may carry one in the Exif block of an embedded JPEG (tag 46),
// whose TIFF header has its own byte order.
TEST_P(CraftedFile, NestedJpegDateIsReadInEitherByteOrder)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        for (const ByteOrder innerOrder : {ByteOrder::Intel, ByteOrder::Motorola}) {
            const MediaFile inner = buildJpeg(
                {.jfif = false,
                 .exif = TiffShape{.order = innerOrder, .dateTime = Stamp::text(dateStamp)}});
            const MediaFile file = buildExifBlock({.order = order, .embeddedJpeg = inner.bytes});
            const DatesData dates = readDates(file, TiffFormat);
            ASSERT_TRUE(dates.tiffDateTime);
            EXPECT_EQ(dates.tiffDateTime->dateOffset,
                      file.offsets.embeddedJpeg + inner.offsets.dateTime);
        }
    }
}

// Every tag a date or place lives in, so that a walk that depends on tag order loses one.
TiffShape everyDateTag(ByteOrder order, bool descending)
{
    GpsShape gps = GpsShape::fixAt(48.8566, -2.3522, "2024:05:01 08:00:00");
    gps.altitudeRef = 0;
    gps.altitude = Rational{35, 1};
    gps.hPositioningError = Rational{5, 1};
    return {.order = order,
            .dateTime = Stamp::text("2024:05:01 10:00:02"),
            .dateTimeOriginal = Stamp::text(dateStamp),
            .dateTimeDigitized = Stamp::text("2024:05:01 10:00:01"),
            .offsetTime = Stamp::text("+02:00"),
            .offsetTimeOriginal = Stamp::text("+03:00"),
            .offsetTimeDigitized = Stamp::text("-04:30"),
            .descendingEntries = descending,
            .pixelSize = QSize(16, 16),
            .gps = gps};
}

TEST_P(CraftedFile, EntriesInDescendingTagOrderAreAllFound)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        const MediaFile file = buildJpeg({.exif = everyDateTag(order, true)});
        const DatesData dates = readDates(file, JpegFormat);
        const MediaOffsets &at = file.offsets;
        const std::pair<std::optional<quint32>, quint32> found[] = {
            {dates.tiffDateTime ? std::optional(dates.tiffDateTime->dateOffset) : std::nullopt, at.dateTime},
            {dates.exifDateTimeOriginal ? std::optional(dates.exifDateTimeOriginal->dateOffset) : std::nullopt, at.dateTimeOriginal},
            {dates.exifDateTimeDigitized ? std::optional(dates.exifDateTimeDigitized->dateOffset) : std::nullopt, at.dateTimeDigitized},
            {dates.exifOffsetTIFFTime ? std::optional(dates.exifOffsetTIFFTime->offsetOffset) : std::nullopt, at.offsetTime},
            {dates.exifOffsetTimeOriginal ? std::optional(dates.exifOffsetTimeOriginal->offsetOffset) : std::nullopt, at.offsetTimeOriginal},
            {dates.exifOffsetTimeDigitized ? std::optional(dates.exifOffsetTimeDigitized->offsetOffset) : std::nullopt, at.offsetTimeDigitized},
            {dates.gpsTimeStamp ? std::optional(dates.gpsTimeStamp->dateOffset) : std::nullopt, at.gpsTimeStamp},
            {dates.gpsDateStamp ? std::optional(dates.gpsDateStamp->dateOffset) : std::nullopt, at.gpsDateStamp},
        };
        for (const auto &[ours, expected] : found)
            EXPECT_EQ(ours, std::optional(expected)) << "expected at " << expected;
        ASSERT_TRUE(dates.gpsLocation);
        EXPECT_EQ(dates.gpsLocation->longitude_Offset, at.gpsLongitude);
        EXPECT_EQ(dates.gpsLocation->hPositioningError_Offset, at.gpsHPositioningError);

        const ExiftoolTags exif = exiftoolTags(write(file), ExiftoolGroups::Family1);
        EXPECT_EQ(exif.string("ExifIFD:OffsetTimeDigitized"), "-04:30");
        EXPECT_EQ(exif.string("GPS:GPSDateStamp"), "2024:05:01");
    }
}

// A camera's serials, lens and shot settings as written; exiftool reads the same values.
ShotShape everyShotTag()
{
    return {.exposureTime = Rational{1, 120}, .fNumber = Rational{28, 10}, .isoSpeedRatings = {200, 400},
            .isoSpeed = 800, .focalLength = Rational{42, 10}, .digitalZoomRatio = Rational{3, 2},
            .bodySerial = "0123456789", .lensMake = "Canon", .lensModel = "RF24-105mm F4 L IS USM",
            .lensSerial = "  LS-77  ", .cameraSerial = "DNG-1"};
}

TEST_P(CraftedFile, SerialsLensAndShotSettingsAreReadAsExiftoolReadsThem)
{
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        const MediaFile file = buildJpeg({.exif = TiffShape{.order = order, .shot = everyShotTag()}});
        const DatesData dates = readDates(file, JpegFormat);
        ASSERT_TRUE(dates.tiffHeader);
        const TiffImageTags tags = MySingleFolderDataReader().imageTags(source(file), *dates.tiffHeader);
        EXPECT_EQ(tags.bodySerial, "0123456789") << "the Exif body serial before the DNG one";
        EXPECT_EQ(tags.lensMake, "Canon");
        EXPECT_EQ(tags.lensModel, "RF24-105mm F4 L IS USM");
        EXPECT_EQ(tags.lensSerial, "LS-77");
        EXPECT_DOUBLE_EQ(tags.shot.exposureTime, 1.0 / 120);
        EXPECT_DOUBLE_EQ(tags.shot.fNumber, 2.8);
        EXPECT_DOUBLE_EQ(tags.shot.focalLength, 4.2);
        EXPECT_DOUBLE_EQ(tags.shot.digitalZoomRatio, 1.5);
        EXPECT_EQ(tags.shot.iso, 200u) << "ISOSpeedRatings' first value before ISOSpeed";

        const ExiftoolTags exif = exiftoolTags(write(file), ExiftoolGroups::Family1);
        EXPECT_EQ(exif.string("ExifIFD:SerialNumber"), "0123456789");
        EXPECT_EQ(exif.string("ExifIFD:LensModel"), "RF24-105mm F4 L IS USM");
        EXPECT_EQ(exif.string("ExifIFD:ISO"), "200 400");
        EXPECT_DOUBLE_EQ(exif.number("ExifIFD:FocalLength"), 4.2);
    }

    // Without the Exif tags: ISOSpeed, and IFD0's DNG serial. A zero denominator names nothing.
    ShotShape fallbacks{.exposureTime = Rational{1, 0}, .isoSpeed = 800, .cameraSerial = "DNG-1"};
    const MediaFile file = buildJpeg({.exif = TiffShape{.shot = fallbacks}});
    // The header first: each source() call replaces the source the one before gave.
    const std::optional<TiffHeader> header = readDates(file, JpegFormat).tiffHeader;
    ASSERT_TRUE(header);
    const TiffImageTags tags = MySingleFolderDataReader().imageTags(source(file), *header);
    EXPECT_EQ(tags.bodySerial, "DNG-1");
    EXPECT_EQ(tags.shot.iso, 800u);
    EXPECT_TRUE(std::isnan(tags.shot.exposureTime));
    EXPECT_TRUE(tags.lensModel.isEmpty());
    const ExiftoolTags exif = exiftoolTags(write(file), ExiftoolGroups::Family1);
    EXPECT_EQ(exif.string("IFD0:CameraSerialNumber"), "DNG-1");
    EXPECT_EQ(exif.string("ExifIFD:ISOSpeed"), "800");
}

// A file cut anywhere gives each value whole or not at all.
TEST_P(CraftedFile, CutFilesGiveWholeShotValuesOrNone)
{
    ShotShape shot = everyShotTag();
    shot.cameraSerial.reset(); // a cut Exif IFD would leave IFD0's serial in its place
    const MediaFile whole = buildExifBlock({.shot = shot});
    const TiffImageTags all = MySingleFolderDataReader().imageTags(source(whole.bytes), TiffHeader{0, true});
    ASSERT_EQ(all.lensModel, "RF24-105mm F4 L IS USM");
    ASSERT_EQ(all.shot.iso, 200u);
    for (qsizetype length = 0; length < whole.bytes.size(); ++length) {
        const TiffImageTags cut = MySingleFolderDataReader().imageTags(source(whole.bytes.first(length)), TiffHeader{0, true});
        const auto wholeOrNone = [](double value, double full) { return std::isnan(value) || value == full; };
        EXPECT_TRUE(wholeOrNone(cut.shot.exposureTime, all.shot.exposureTime)) << length;
        EXPECT_TRUE(wholeOrNone(cut.shot.fNumber, all.shot.fNumber)) << length;
        EXPECT_TRUE(wholeOrNone(cut.shot.focalLength, all.shot.focalLength)) << length;
        EXPECT_TRUE(wholeOrNone(cut.shot.digitalZoomRatio, all.shot.digitalZoomRatio)) << length;
        EXPECT_TRUE(cut.shot.iso == 0 || cut.shot.iso == all.shot.iso) << length;
        EXPECT_TRUE(cut.lensModel.isEmpty() || cut.lensModel == all.lensModel) << length;
        EXPECT_TRUE(cut.bodySerial.isEmpty() || cut.bodySerial == all.bodySerial) << length;
    }
}

// The Exif IFD pointer's type, rewritten in a file that is right in every other way. Whether
// exiftool follows it is checked beside ours, so the table cannot drift from its reading.
TEST_P(CraftedFile, ExifPointerOfAnIntegerTypeIsFollowedAsExiftoolDoes)
{
    enum : quint16 { Byte = 1, Ascii = 2, Short = 3, Long = 4, Rational = 5, SByte = 6,
                     Undefined = 7, SShort = 8, SLong = 9, Ifd = 13 };
    // Type, count, followed.
    const std::tuple<quint16, quint32, bool> cases[] = {
        {Short, 1, true},      {SShort, 1, true},  {Long, 1, true},   {SLong, 1, true},
        {Ifd, 1, true},        {Byte, 1, true},    {SByte, 1, true},  {Undefined, 1, true},
        {Ascii, 4, false},     {Rational, 1, false}, {Undefined, 4, false}, {Long, 2, false},
        {Short, 0, false}};
    std::map<QString, bool> followedIn;
    for (const ByteOrder order : {ByteOrder::Intel, ByteOrder::Motorola}) {
        const bool intel = order == ByteOrder::Intel;
        for (const auto &[type, count, followed] : cases) {
            MediaFile file = buildExifBlock(originalDate(order));
            // IFD0's only entry is the pointer: tag, type, count, value field.
            char *entry = file.bytes.data() + file.offsets.ifd0 + 2;
            const quint32 target = file.offsets.exifIfd;
            ASSERT_LT(target, 256u);
            intel ? qToLittleEndian<quint16>(type, entry + 2) : qToBigEndian<quint16>(type, entry + 2);
            intel ? qToLittleEndian<quint32>(count, entry + 4) : qToBigEndian<quint32>(count, entry + 4);
            if (type == Short || type == SShort) {
                intel ? qToLittleEndian<quint16>(quint16(target), entry + 8)
                      : qToBigEndian<quint16>(quint16(target), entry + 8);
                qToLittleEndian<quint16>(0, entry + 10);
            } else if (type == Byte || type == SByte || type == Undefined) {
                qToLittleEndian<quint32>(target, entry + 8); // the value's byte first
            }
            const DatesData dates = readDates(file, TiffFormat);
            EXPECT_EQ(dates.exifDateTimeOriginal.has_value(), followed)
                << "type " << type << " count " << count << " intel " << intel;
            followedIn[file.write(m_dir.path(), QStringLiteral("pointer_%1_%2_%3")
                                                    .arg(type).arg(count).arg(intel))] = followed;
        }
    }
    QStringList paths;
    for (const auto &[path, followed] : followedIn)
        paths << path;
    const auto read = exiftoolTagsOfFiles(paths, ExiftoolGroups::Family1);
    ASSERT_EQ(read.size(), followedIn.size());
    for (const auto &[path, exif] : read)
        EXPECT_EQ(exif.has("ExifIFD:DateTimeOriginal"), followedIn.at(path)) << path.toStdString();
}

TEST(StampVerifiers, OnlyWellFormedStampsPass)
{
    using Verifier = bool (*)(const QByteArray &);
    const Verifier date = verifyDateData, offset = verifyOffsetData, gps = verifyGpsDateStampData;
    const std::tuple<Verifier, QByteArray, bool> cases[] = {
        {date, Stamp::text(dateStamp).bytes, true},
        {date, Stamp::blank().bytes, true},
        {date, Stamp::zeros().bytes, true},
        {date, QByteArray(20, ' '), false},
        {date, Stamp::text("2024-05-01 10:00:00").bytes, false},
        {date, Stamp::text("2024:05:01T10:00:00").bytes, false},
        {date, "2024:05:01 10:00", false},
        {offset, QByteArray("+02:00\0", 7), true},
        {offset, QByteArray("-05:30\0", 7), true},
        {offset, QByteArray("+02:00", 6), false},
        {offset, QByteArray(" 02:00\0", 7), false},
        {offset, QByteArray("+0200\0\0", 7), false},
        {offset, QByteArray("+02:0a\0", 7), false},
        {gps, QByteArray("2024:05:01\0", 11), true},
        {gps, QByteArray("2024:05:011", 11), false},
        {gps, QByteArray("2024-05-01\0", 11), false},
        {gps, QByteArray("2024:05:01", 10), false},
        {gps, QByteArray("2024:0 :01\0", 11), false}};
    for (const auto &[verify, data, valid] : cases)
        EXPECT_EQ(verify(data), valid) << data.toHex(' ').toStdString();
}

TEST_P(CraftedFile, JpegWalkFindsExifInASecondApp1AfterXmp)
{
    const MediaFile file =
        buildJpeg({.exif = originalDate(ByteOrder::Intel),
                   .xmp = buildXmp({.properties = {{"xmp:CreateDate", "2024-05-01T10:00:00"}}}),
                   .xmpBeforeExif = true});
    const DatesData dates = readDates(file, JpegFormat);
    EXPECT_EQ(dates.jpgXMPOffset, file.offsets.xmpPacket);
    ASSERT_TRUE(dates.tiffHeader);
    EXPECT_EQ(dates.tiffHeader->offset, file.offsets.tiffHeader);
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    EXPECT_EQ(dates.exifDateTimeOriginal->dateOffset, file.offsets.dateTimeOriginal);
}

TEST_P(CraftedFile, JpegWalkWithoutApp1StopsAtTheScanAndFindsNothing)
{
    // A TIFF block behind the image data must not be taken for the file's Exif.
    const QByteArray trailer = "Exif" + buildExifBlock(originalDate(ByteOrder::Intel)).bytes;
    for (const bool progressive : {false, true}) {
        MediaFile file = buildJpeg({.progressive = progressive});
        file.bytes += trailer;
        const DatesData dates = readDates(file, JpegFormat);
        EXPECT_FALSE(dates.tiffHeader);
        EXPECT_FALSE(dates.jpgXMPOffset);
        EXPECT_FALSE(dates.exifDateTimeOriginal);
    }
}

// Segments in the order an encoder may leave them: the Exif APP1 after the frame header, behind
// fill bytes. The walk goes on over any SOFn to the scan.
TEST_P(CraftedFile, JpegWalkGoesOverFrameHeadersAndFillBytesToTheScan)
{
    for (const bool progressive : {false, true}) {
        MediaFile file = buildJpeg({.progressive = progressive});
        const MediaFile exif = buildExifBlock(originalDate(ByteOrder::Motorola));
        const QByteArray payload = "Exif" + QByteArray(2, '\0') + exif.bytes;
        QByteArray app1 = "\xFF\xFF\xFF\xE1" + QByteArray(2, '\0') + payload;
        qToBigEndian<quint16>(quint16(payload.size() + 2), app1.data() + 4);
        // The segments from SOI on: marker, big-endian length; SOS ends the headers.
        qsizetype sos = 2;
        while (quint8(file.bytes[sos + 1]) != 0xDA)
            sos += 2 + qFromBigEndian<quint16>(file.bytes.constData() + sos + 2);
        file.bytes.insert(sos, app1);
        const DatesData dates = readDates(file, JpegFormat);
        ASSERT_TRUE(dates.tiffHeader) << "progressive " << progressive;
        EXPECT_EQ(dates.tiffHeader->offset, quint32(sos + 2 + 10));
        ASSERT_TRUE(dates.exifDateTimeOriginal);
        EXPECT_EQ(dates.exifDateTimeOriginal->dateOffset,
                  quint32(sos + 2 + 10) + exif.offsets.dateTimeOriginal);
        EXPECT_EQ(exiftoolTags(write(file), ExiftoolGroups::Family1)
                      .string("ExifIFD:DateTimeOriginal"),
                  QString::fromLatin1(dateStamp));
    }
}

TEST_P(CraftedFile, PngExifAfterTheImageDataGivesNoOffset)
{
    for (const ChunkPosition position :
         {ChunkPosition::BeforeImageData, ChunkPosition::AfterImageData}) {
        const MediaFile file =
            buildPng({.exif = originalDate(ByteOrder::Intel), .exifPosition = position});
        const ByteSource &png = source(file);
        const DatesData dates = MySingleFolderDataReader().savereadDates(png, PngFormat);
        if (position == ChunkPosition::BeforeImageData) {
            EXPECT_EQ(PngLocator(png).exifStartOffset(), file.offsets.tiffHeader);
            ASSERT_TRUE(dates.tiffHeader);
            EXPECT_EQ(dates.tiffHeader->offset, file.offsets.tiffHeader);
            EXPECT_TRUE(dates.exifDateTimeOriginal);
        } else {
            EXPECT_FALSE(PngLocator(png).exifStartOffset());
            EXPECT_FALSE(dates.tiffHeader);
        }
    }
}

TEST_P(CraftedFile, PngExifInARawProfileTextIsReadButHasNoPlaceToWrite)
{
    const QByteArray payload =
        "Exif" + QByteArray(2, '\0') + buildExifBlock(originalDate(ByteOrder::Motorola)).bytes;
    for (const QByteArray type : {"tEXt", "zTXt", "iTXt"}) {
        const MediaFile file = buildPng({.rawProfiles = {{"exif", payload, type}}});
        const DatesData dates = readDates(file, PngFormat);
        ASSERT_TRUE(dates.exifDateTimeOriginal) << type.constData();
        EXPECT_EQ(dates.exifDateTimeOriginal->dateData, Stamp::text(dateStamp).bytes);
        EXPECT_EQ(dates.place, DatesData::Place::DecodedProfile);
        EXPECT_FALSE(dates.tiffHeader);
        EXPECT_EQ(exiftoolTags(write(file), ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
                  QString::fromLatin1(dateStamp))
            << type.constData();
    }
    // A profile with fewer hex digits than its length line names decodes to nothing.
    const MediaFile cut = buildPng({.rawProfiles = {{"exif", payload, "zTXt", payload.size() + 1}}});
    EXPECT_FALSE(readDates(cut, PngFormat).exifDateTimeOriginal);

    const MediaFile xmp = buildPng({.rawProfiles = {
        {"xmp", buildXmp({.properties = {{"xmp:CreateDate", "2024-05-01T10:00:00"}}}).bytes, "zTXt"}}});
    const std::optional<XmpDateInfos> infos =
        MySingleFolderDataReader().savereadXMPDatesOfPngProfile(source(xmp));
    ASSERT_TRUE(infos && infos->count("XmpCreateDate"));
    EXPECT_EQ(infos->at("XmpCreateDate").data, "2024-05-01T10:00:00");
    EXPECT_EQ(exiftoolTags(write(xmp), ExiftoolGroups::Family1).string("XMP-xmp:CreateDate"),
              "2024:05:01 10:00:00");
}

TEST_P(CraftedFile, PngChecksumRepairMakesAnInPlaceWriteValid)
{
    const MediaFile file = buildPng({.exif = originalDate(ByteOrder::Motorola)});
    const DatesData dates = readDates(file, PngFormat);
    const QString path = write(file);
    ASSERT_TRUE(dates.exifDateTimeOriginal);
    ASSERT_TRUE(InPlaceFile::open(path)->apply(
        {{dates.exifDateTimeOriginal->dateOffset, "2030:12:31 23:59:59", dateStamp}}));
    EXPECT_EQ(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC for eXIf").size(), 1);

    ASSERT_TRUE(MySingleFolderDataReader().lockPNGChunkOfType(PngLocator::ChunkKind::Exif, path));
    EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC").isEmpty());
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2030:12:31 23:59:59");
}

TEST_P(CraftedFile, PngXmpChecksumRepairAndTextChunks)
{
    const MediaFile file =
        buildPng({.xmp = buildXmp({.properties = {{"xmp:CreateDate", "2024-05-01T10:00:00"}},
                                   .wrapped = false}),
                  .texts = {{"Title", "Harbour at dawn"}, {"Empty", ""}}});
    MySingleFolderDataReader reader;
    const XmpDateInfos infos = reader.savereadXMPDates(source(file), PngFormat, 0);
    ASSERT_TRUE(infos.count("XmpCreateDate"));
    const XmpStampRecord &created = infos.at("XmpCreateDate");
    EXPECT_EQ(created.offset, file.offsets.xmpValue("xmp:CreateDate"));
    EXPECT_EQ(created.type, 3);
    EXPECT_EQ(reader.tEXtDataFromPNG(source(file)),
              (QMap<QString, QString>{{"Title", "Harbour at dawn"}}));

    const QString path = write(file);
    ASSERT_TRUE(InPlaceFile::open(path)->apply({{created.offset, "2031", "2024"}}));
    ASSERT_TRUE(reader.lockPNGChunkOfType(PngLocator::ChunkKind::Xmp, path));
    EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate).filter("Bad CRC").isEmpty());
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("XMP-xmp:CreateDate"),
              "2031:05:01 10:00:00");
}

TEST_P(CraftedFile, WebpWalkStepsOverAStrayZeroByte)
{
    MediaFile file = buildWebp(
        {.exif = originalDate(ByteOrder::Intel),
         .xmp = buildXmp({.properties = {{"exif:DateTimeOriginal", "2024-05-01T10:00:00+02:00"}}}),
         .strayPadByte = true});
    const ByteSource &webp = source(file);
    MySingleFolderDataReader reader;
    const WebpChunkOffsets chunks = reader.riffHeaderDataForWebP(webp);
    ASSERT_TRUE(chunks.exifOffset && chunks.xmpOffset);
    EXPECT_EQ(*chunks.exifOffset, file.offsets.exifSegment);
    EXPECT_EQ(*chunks.xmpOffset, file.offsets.xmpSegment);

    const DatesData dates = reader.savereadDates(webp, WebpFormat, *chunks.exifOffset);
    ASSERT_TRUE(dates.tiffHeader);
    EXPECT_EQ(dates.tiffHeader->offset, file.offsets.tiffHeader);
    EXPECT_TRUE(dates.exifDateTimeOriginal);
    const XmpDateInfos infos = reader.savereadXMPDates(webp, WebpFormat, *chunks.xmpOffset);
    ASSERT_TRUE(infos.count("ExifDateTimeOriginal"));
    EXPECT_EQ(infos.at("ExifDateTimeOriginal").type, 2);

    // A chunk of odd size is followed by a pad byte, whatever its value.
    MediaFile padded = file;
    padded.bytes.insert(file.offsets.exifSegment, QByteArray("ODD \x03\0\0\0abc!", 12));
    const WebpChunkOffsets afterOdd = reader.riffHeaderDataForWebP(source(padded));
    EXPECT_EQ(afterOdd.exifOffset, file.offsets.exifSegment + 12);
    EXPECT_EQ(afterOdd.xmpOffset, file.offsets.xmpSegment + 12);

    file.bytes.replace(8, 4, "AVI ");
    EXPECT_FALSE(reader.riffHeaderDataForWebP(source(file)).exifOffset);
}

INSTANTIATE_TEST_SUITE_P(BothSources, CraftedFile, bothSourceKinds(), sourceTestName);

} // namespace
