// Every date, time offset and GPS value we locate in the corpus must be what exiftool reads, and
// the bytes must really stand at the offsets we report: that is what a save will overwrite.

#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "RecordDecoding.h"

#include "formats/MySingleFolderDataReader.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace orv;
using namespace orv::test;

namespace {

const QStringList stillSuffixes{"jpg", "jpeg", "tif", "tiff", "cr2", "cr3", "heic", "avif", "nef", "dng", "arw", "orf",
                                "rw2", "pef", "raf", "png", "webp"};

// Files where our answer differs from exiftool's on purpose. An empty key covers every value.
struct Disagreement
{
    const char *fileName;
    const char *exiftoolKey;
    const char *reason;
};
const Disagreement knownDisagreements[] = {
    {"FurnaceCreekInn.jpg", "GPS:GPSDateStamp",
     "the writer put date and time, 20 bytes, into the 11-byte GPS date; no in-place write can "
     "keep that length, so the verifier refuses it"},
    {"png_with_exif_and_gps.png", "",
     "its eXIf chunk follows IDAT; only chunks in front of the image data are read, since a "
     "value behind them could not have its chunk's CRC repaired after a write"},
    {"fixture-Leica-M10.dng", "",
     "cut to 100 kB by its source: exiftool gives up at an IFD0 value past the end, we still "
     "read the dates that lie inside"},
    {"InfiRay.jpg", "GPS:GPSLatitude",
     "a placeholder GPS block with empty refs and 0/0 rationals: exiftool prints nothing, we "
     "report the bytes, and the item later decodes no position from them"},
    {"Issue 487.heic", "GPS:GPSLatitude",
     "a placeholder GPS block with empty refs and 0/0 rationals, as in InfiRay.jpg"},
    {"Nikon D5000.jpg", "GPS:GPSLatitude",
     "the seconds are 0/0; exiftool gives no number, we report the bytes as they are"},
};

bool isKnownDisagreement(const QString &path, const QString &key)
{
    const QString fileName = QFileInfo(path).fileName();
    for (const Disagreement &known : knownDisagreements) {
        if (fileName == QLatin1String(known.fileName)
            && (key == QLatin1String(known.exiftoolKey) || !*known.exiftoolKey))
            return true;
    }
    return false;
}

QByteArray fileBytes(const QString &path, quint32 offset, qsizetype length)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(offset))
        return {};
    return file.read(length);
}

class CorpusDates : public testing::TestWithParam<CorpusFileAndSource>
{
protected:
    void SetUp() override
    {
        path = std::get<0>(GetParam());
        exif = exiftoolTags(path, ExiftoolGroups::Family1);
        dates = readDatesAsTheScanDoes(path, std::get<1>(GetParam()));
    }

    // The first of the keys that exiftool read with a non-empty value.
    std::optional<QString> exiftoolKey(std::initializer_list<const char *> keys) const
    {
        for (const char *key : keys) {
            if (exif.has(QLatin1String(key)) && !exif.string(QLatin1String(key)).isEmpty())
                return QString::fromLatin1(key);
        }
        return std::nullopt;
    }

    bool isExempt(std::initializer_list<const char *> keys) const
    {
        for (const char *key : keys) {
            if (isKnownDisagreement(path, QLatin1String(key)))
                return true;
        }
        return false;
    }

    void expectSameText(const QString &what, const std::optional<QByteArray> &ours,
                        std::initializer_list<const char *> keys, qsizetype length)
    {
        if (isExempt(keys))
            return;
        const std::optional<QString> key = exiftoolKey(keys);
        if (!key) {
            EXPECT_FALSE(ours) << what.toStdString() << " found but exiftool reads none";
            return;
        }
        ASSERT_TRUE(ours) << what.toStdString() << " missing; exiftool reads "
                          << exif.string(*key).toStdString();
        EXPECT_EQ(QString::fromLatin1(ours->left(length)), exif.string(*key))
            << what.toStdString();
    }

    void expectInFile(const QByteArray &data, quint32 offset)
    {
        EXPECT_NE(offset, 0u);
        EXPECT_EQ(fileBytes(path, offset, data.size()), data) << "at offset " << offset;
    }

    QString path;
    ExiftoolTags exif;
    DatesData dates;
};

TEST_P(CorpusDates, StampsAndOffsetTagsMatchExiftool)
{
    const auto data = [](const auto &record) {
        return record ? std::optional<QByteArray>(record->dateData) : std::nullopt;
    };
    expectSameText("TIFF DateTime", data(dates.tiffDateTime), {"IFD0:ModifyDate"}, 19);
    expectSameText("DateTimeOriginal", data(dates.exifDateTimeOriginal),
                   {"ExifIFD:DateTimeOriginal", "IFD0:DateTimeOriginal"}, 19);
    expectSameText("DateTimeDigitized", data(dates.exifDateTimeDigitized),
                   {"ExifIFD:CreateDate", "IFD0:CreateDate"}, 19);

    const auto offsetData = [](const auto &record) {
        return record ? std::optional<QByteArray>(record->offsetData) : std::nullopt;
    };
    expectSameText("OffsetTime", offsetData(dates.exifOffsetTIFFTime), {"ExifIFD:OffsetTime"}, 6);
    expectSameText("OffsetTimeOriginal", offsetData(dates.exifOffsetTimeOriginal),
                   {"ExifIFD:OffsetTimeOriginal"}, 6);
    expectSameText("OffsetTimeDigitized", offsetData(dates.exifOffsetTimeDigitized),
                   {"ExifIFD:OffsetTimeDigitized"}, 6);
}

TEST_P(CorpusDates, StampBytesStandAtTheirOffsets)
{
    for (const auto *stamp : {&dates.tiffDateTime, &dates.exifDateTimeOriginal,
                              &dates.exifDateTimeDigitized, &dates.gpsDateStamp}) {
        if (*stamp)
            expectInFile((*stamp)->dateData.chopped(1), (*stamp)->dateOffset);
    }
    for (const auto *offset : {&dates.exifOffsetTIFFTime, &dates.exifOffsetTimeOriginal,
                               &dates.exifOffsetTimeDigitized}) {
        if (*offset)
            expectInFile((*offset)->offsetData, (*offset)->offsetOffset);
    }
    if (dates.gpsTimeStamp)
        expectInFile(dates.gpsTimeStamp->dateData, dates.gpsTimeStamp->dateOffset);
    if (const auto &location = dates.gpsLocation) {
        expectInFile(location->latitudeRef_Data, location->latitudeRef_Offset);
        expectInFile(location->latitude_Data, location->latitude_Offset);
        expectInFile(location->longitudeRef_Data, location->longitudeRef_Offset);
        expectInFile(location->longitude_Data, location->longitude_Offset);
    }
}

TEST_P(CorpusDates, GpsStampsMatchExiftool)
{
    const auto dateData = [](const auto &record) {
        return record ? std::optional<QByteArray>(record->dateData) : std::nullopt;
    };
    expectSameText("GPSDateStamp", dateData(dates.gpsDateStamp), {"GPS:GPSDateStamp"}, 10);

    if (isExempt({"GPS:GPSTimeStamp"}))
        return;
    const std::optional<QString> timeKey = exiftoolKey({"GPS:GPSTimeStamp"});
    ASSERT_EQ(dates.gpsTimeStamp.has_value(), timeKey.has_value());
    if (timeKey) {
        EXPECT_NEAR(gpsTimeSeconds(*dates.gpsTimeStamp),
                    secondsOfClockText(exif.string(*timeKey)), 0.01);
        EXPECT_EQ(dates.gpsTimeStamp->needsConv, !dates.tiffHeader->isIntel);
    }
}

TEST_P(CorpusDates, GpsLocationMatchesExiftool)
{
    if (isExempt({"GPS:GPSLatitude"}))
        return;
    const std::optional<QString> latitudeKey = exiftoolKey({"GPS:GPSLatitude"});
    const bool exiftoolHasPosition = latitudeKey && exiftoolKey({"GPS:GPSLongitude"})
        && exiftoolKey({"GPS:GPSLatitudeRef"}) && exiftoolKey({"GPS:GPSLongitudeRef"});
    ASSERT_EQ(dates.gpsLocation.has_value(), exiftoolHasPosition);
    if (!exiftoolHasPosition)
        return;
    const GpsLocationRecord &location = *dates.gpsLocation;
    EXPECT_NEAR(degreesOf(location.latitude_Data, location.needsConv),
                exif.number("GPS:GPSLatitude"), 1e-7);
    EXPECT_NEAR(degreesOf(location.longitude_Data, location.needsConv),
                exif.number("GPS:GPSLongitude"), 1e-7);
    EXPECT_EQ(QString::fromLatin1(location.latitudeRef_Data.left(1)),
              exif.string("GPS:GPSLatitudeRef"));
    EXPECT_EQ(QString::fromLatin1(location.longitudeRef_Data.left(1)),
              exif.string("GPS:GPSLongitudeRef"));

    if (exiftoolKey({"GPS:GPSAltitude"}) && exiftoolKey({"GPS:GPSAltitudeRef"})) {
        ASSERT_EQ(location.altitude_Data.size(), 8);
        EXPECT_NEAR(rationalOf(location.altitude_Data, 0, location.needsConv),
                    exif.number("GPS:GPSAltitude"), 1e-6);
        EXPECT_EQ(quint8(location.altitudeRef_Data.at(0)), exif.number("GPS:GPSAltitudeRef"));
    }
    if (exiftoolKey({"GPS:GPSHPositioningError"})) {
        ASSERT_EQ(location.hPositioningError_Data.size(), 8);
        EXPECT_NEAR(rationalOf(location.hPositioningError_Data, 0, location.needsConv),
                    exif.number("GPS:GPSHPositioningError"), 1e-6);
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusDates, corpusFilesOnBothSources(stillSuffixes),
                         corpusSourceTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusDates);

} // namespace
