#include "ByteRanges.h"
#include "formats/FileReader.h"
#include "formats/PngLocator.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/QtPrinters.h"
#include "support/SaveFixture.h"
#include "time/DateStampCodec.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr double shiftSeconds = 3661.0; // 1:01:01

// Where a save may write: the stored values the import found, nothing else.
std::vector<StampSpan> stampRanges(const PicAttributes &a)
{
    std::vector<StampSpan> ranges;
    for (const auto *stamp : {&a.ExifDateTimeOriginal, &a.ExifDateTimeDigitized, &a.TIFFDateTime}) {
        if (*stamp)
            ranges.push_back({(*stamp)->dateOffset, 19});
    }
    for (const auto *tag :
         {&a.ExifOffsetTimeOriginal, &a.ExifOffsetTimeDigitized, &a.TIFFOffsetTime}) {
        if (*tag)
            ranges.push_back({(*tag)->offsetOffset, 7});
    }
    if (a.GPSTimeStamp)
        ranges.push_back({a.GPSTimeStamp->dateOffset, 24});
    if (a.GPSDateStamp)
        ranges.push_back({a.GPSDateStamp->dateOffset, 11});
    if (a.xmpDateInfos) {
        for (const auto &[key, record] : *a.xmpDateInfos)
            ranges.push_back({record.offset, record.data.size()});
    }
    if (a.IPTCDateCreated) {
        ranges.push_back({a.IPTCDateCreated->dateOffset, a.IPTCDateCreated->dateData.size()});
        ranges.push_back({a.IPTCDateCreated->timeOffset, a.IPTCDateCreated->timeData.size()});
        ranges.push_back({a.IPTCDateCreated->digestOffset, a.IPTCDateCreated->digestData.size()});
    }
    // A CR3's movie, track and media header times.
    for (const auto *time : {&a.QTMvhdCreaDate, &a.QTMvhdModDate})
        if (*time)
            ranges.push_back({qint64((*time)->dateOffset), (*time)->dateData.size()});
    for (const QtTrackTimeRecord &track : a.qtTrackTimes)
        ranges.push_back({qint64(track.time.dateOffset), track.time.dateData.size()});
    return ranges;
}

// The checksum of the chunk a write went into.
std::vector<StampSpan> pngChecksumRanges(const QString &path)
{
    std::vector<StampSpan> ranges;
    FileReader file(path);
    PngLocator png(file);
    for (const auto kind : {PngLocator::ChunkKind::Exif, PngLocator::ChunkKind::Xmp}) {
        if (const std::optional<ByteEdit> checksum = png.chunkCrcEdit(kind))
            ranges.push_back({checksum->offset, 4});
    }
    return ranges;
}

// The stamp's digits moved by the shift, as a reader that knows nothing of zones reads them.
QString shiftedDigits(const QByteArray &stamp)
{
    const Instant digits = DateStampCodec::dateFromExifData(stamp, TimeZone::utc());
    return QString::fromLatin1(
        DateStampCodec::exifDataFromDate(digits.addingSeconds(shiftSeconds), TimeZone::utc())
            .left(19));
}

bool zoneKeepsItsOffset(const QByteArray &stamp)
{
    const TimeZone zone = TimeZone::systemZone();
    const Instant at = DateStampCodec::dateFromExifData(stamp, zone);
    return zone.secondsFromGMTForDate(at) ==
           zone.secondsFromGMTForDate(at.addingSeconds(shiftSeconds));
}

struct Imported
{
    MySinglePic *pic;
    QByteArray before;
    std::vector<StampSpan> ranges;
    std::optional<StampRecord> original;
};

using CorpusSave = SaveFixture;

} // namespace

TEST_F(CorpusSave, EveryStillFormatTakesTheShiftInPlaceAndKeepsEveryOtherByte)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList stills = corpusFiles({"jpg", "jpeg", "tif", "tiff", "png", "webp", "dng",
                                            "nef", "cr2", "rw2", "arw", "raf", "heic", "avif"});
    std::vector<Imported> items;
    for (qsizetype i = 0; i < stills.size(); ++i) {
        const QString copy =
            dir.filePath(QStringLiteral("%1-%2").arg(i).arg(QFileInfo(stills[i]).fileName()));
        ASSERT_TRUE(QFile::copy(stills[i], copy));
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        MySinglePic &pic = importPath(copy);
        items.push_back(
            {&pic, fileBytes(copy), stampRanges(pic.singlePicAttributes),
             pic.isCreaXmp ? std::nullopt : pic.singlePicAttributes.ExifDateTimeOriginal});
    }

    const SaveOutcome outcome = shift(shiftSeconds);

    QStringList paths;
    for (const Imported &item : items)
        paths << item.pic->spPath();
    const std::map<QString, ExiftoolTags> after =
        exiftoolTagsOfFiles(paths, ExiftoolGroups::Family1);
    int stampsChecked = 0;
    for (const Imported &item : items) {
        const QString path = item.pic->spPath();
        const QByteArray bytes = fileBytes(path);
        std::vector<StampSpan> ranges = item.ranges;
        if (item.pic->fileFormatType == PngFormat) {
            const std::vector<StampSpan> checksums = pngChecksumRanges(path);
            ranges.insert(ranges.end(), checksums.begin(), checksums.end());
            EXPECT_TRUE(exiftoolWarnings(path, ExiftoolCheck::Validate)
                            .filter(QStringLiteral("CRC"))
                            .isEmpty())
                << path.toStdString();
        }
        EXPECT_TRUE(onlyRangesDiffer(item.before, bytes, ranges)) << path.toStdString();
        const bool savedStamp = item.original && item.original->dateOffset &&
                                outcome.savedPics.contains(item.pic) &&
                                zoneKeepsItsOffset(item.original->dateData);
        if (!savedStamp)
            continue;
        // Some files carry the original date twice, in IFD0 and in the Exif IFD; the save writes
        // the copy the import read. A file exiftool cannot read has nothing to compare.
        const ExiftoolTags &tags = after.at(path);
        QStringList read;
        for (const char *key : {"IFD0:DateTimeOriginal", "ExifIFD:DateTimeOriginal"}) {
            if (tags.has(QLatin1String(key)))
                read << tags.string(QLatin1String(key));
        }
        if (read.isEmpty())
            continue;
        EXPECT_TRUE(read.contains(shiftedDigits(item.original->dateData)))
            << path.toStdString() << " reads " << read.join(QStringLiteral(", ")).toStdString();
        ++stampsChecked;
    }
    EXPECT_GE(stampsChecked, 40) << "the corpus holds that many files with an original date";
}
