#include "formats/FileReader.h"
#include "formats/PngLocator.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"
#include "support/ReadOnlyFile.h"
#include "support/SaveFixture.h"
#include "core/FileAttributes.h"
#include "time/DateStampCodec.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

const QStringList slotNames = {"exifDateTimeOriginal", "exifDateTimeDigitized", "tiffDateTime",
                               "fileCreationDate", "fileModificationDate"};

double seconds(const QJsonValue &isoDate)
{
    return double(
               QDateTime::fromString(isoDate.toString(), Qt::ISODateWithMs).toMSecsSinceEpoch()) /
           1000.0;
}

class ShiftCommand : public ::testing::Test
{
protected:
    QTemporaryDir home;
    QTemporaryDir work;

    QString builtJpeg(const QString &name = QStringLiteral("pic"))
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        tags.dateTime = Stamp::text("2024:05:03 09:00:00");
        return buildJpeg({.exif = tags}).write(work.path(), name);
    }

    CliResult shift(const QStringList &arguments)
    {
        return runCli(QStringList{"shift"} + arguments, home.path());
    }
};

// Every file's entry: a group's dependent stands inside its master's.
QJsonArray everyFile(const QJsonArray &items)
{
    QJsonArray files;
    for (const QJsonValue &item : items) {
        files.append(item);
        if (item["dependent"].isObject())
            files.append(item["dependent"]);
    }
    return files;
}

// Such a file takes date tags through exiftool, which rewrites it: its bytes move elsewhere.
bool isDatedByItsFileAlone(const QJsonValue &item)
{
    const int type = item["spType"].toInt();
    return type == 4 || type == 11 || type == 12;
}

// The ranges a save may write into, from what scan reports of an item's stored values.
struct Range
{
    qint64 begin;
    qint64 length;
};

std::vector<Range> storedValueRanges(const QJsonObject &attributes)
{
    std::vector<Range> ranges;
    const auto add = [&](const char *key, qint64 length) {
        if (attributes.contains(QLatin1String(key)))
            ranges.push_back({attributes.value(QLatin1String(key)).toInteger(), length});
    };
    add("ExifDateTimeOriginalOffset", 19);
    add("ExifDateTimeDigitizedOffset", 19);
    add("TIFFDateTimeOffset", 19);
    add("ExifOffsetTimeOriginalOffset", 7);
    add("ExifOffsetTimeDigitizedOffset", 7);
    add("TIFFOffsetTimeOffset", 7);
    for (const char *gps : {"GPSTimeStamp", "GPSDateStamp"}) {
        const QJsonObject stamp = attributes.value(QLatin1String(gps)).toObject();
        if (!stamp.isEmpty())
            ranges.push_back({stamp.value(QStringLiteral("dateOffset")).toInteger(),
                              QByteArrayView(gps) == "GPSTimeStamp" ? 24 : 11});
    }
    // Movie header times are reported in hex, the other movie stamps as text up to their NUL.
    const auto addMovie = [&](const char *key, qsizetype charsPerByte) {
        const QString data = attributes.value(QLatin1String(key) + QLatin1String("Data")).toString();
        add((QByteArray(key) + "Offset").constData(), data.size() / charsPerByte);
    };
    addMovie("QTMvhdCreaDate", 2);
    addMovie("QTMvhdModDate", 2);
    addMovie("QTMetaDate", 1);
    addMovie("riffCreaDate", 1);
    for (const QJsonValue &track : attributes.value(QStringLiteral("qtTrackTimes")).toArray())
        ranges.push_back({track[QStringLiteral("offset")].toInteger(), track[QStringLiteral("data")].toString().size() / 2});
    const QJsonObject iptc = attributes.value(QStringLiteral("IPTCDateCreated")).toObject();
    for (const char *part : {"date", "time", "digest"}) {
        const QString data = iptc.value(QLatin1String(part) + QLatin1String("Data")).toString();
        if (!data.isEmpty())
            ranges.push_back({iptc.value(QLatin1String(part) + QLatin1String("Offset")).toInteger(),
                              QByteArrayView(part) == "digest" ? 16 : data.size()});
    }
    const QJsonObject xmp = attributes.value(QStringLiteral("xmpDateInfos")).toObject();
    for (const QJsonValue &record : xmp)
        ranges.push_back({record[QStringLiteral("offset")].toInteger(),
                          record[QStringLiteral("data")].toString().size()});
    return ranges;
}

} // namespace

TEST_F(ShiftCommand, AnythingButTheOffsetGrammarIsAUsageErrorAndTouchesNoFile)
{
    const QString path = builtJpeg();
    const QByteArray before = fileBytes(path);
    const QStringList badOffsets = {"1:00:00", "+1",     "+1:5",   "+1:60",       "+1:00:60",
                                    "+1:00:0", "+1d",    "++1:00", "+1:00:00:00", "+ 1:00",
                                    "+1.5:00", "+d1:00", "",       "+1h"};
    for (const QString &offset : badOffsets)
        EXPECT_EQ(shift({"--by", offset, path}).exitCode, 2) << offset.toStdString();
    const QList<QStringList> badUsage = {{path},
                                         {"--by", "+1:00"},
                                         {"--by"},
                                         {"--by", "+1:00", "--frobnicate", path},
                                         {"--by", "+1:00", "--pref", "novalue", path}};
    for (const QStringList &arguments : badUsage)
        EXPECT_EQ(shift(arguments).exitCode, 2) << arguments.join(' ').toStdString();
    EXPECT_EQ(fileBytes(path), before);
}

TEST_F(ShiftCommand, DryRunShowsOldAndNewOfEverySlotByTheOffsetAndWritesNothing)
{
    const QString path = builtJpeg();
    const QByteArray before = fileBytes(path);
    const QDateTime modified = QFileInfo(path).lastModified();
    struct Case
    {
        const char *offset;
        double seconds;
    };
    const Case cases[] = {{"+1:00:00", 3600}, {"-0:30", -1800},    {"+2d3:00:00", 183600},
                          {"+0:00:05", 5},    {"-1d0:00", -86400}, {"+25:00", 90000}};
    for (const Case &c : cases) {
        const CliResult result = shift({"--dry-run", "--json", "--by", c.offset, path});
        ASSERT_EQ(result.exitCode, 0) << c.offset << result.err.toStdString();
        const QJsonObject item = result.json().first().toObject();
        EXPECT_EQ(seconds(item["exifDateTimeOriginalNEW"]) -
                      seconds(item["exifDateTimeOriginalOLD"]),
                  c.seconds)
            << c.offset;
        EXPECT_EQ(item["path"].toString(), path);
        EXPECT_EQ(item["spName"].toString(), QStringLiteral("pic.jpg"));
        EXPECT_EQ(item["saved"], QJsonValue(false));
        EXPECT_EQ(item["errors"], QJsonValue(QJsonArray()));
        for (const QString &slot : slotNames)
            EXPECT_TRUE(item.contains(slot + "OLD") && item.contains(slot + "NEW"))
                << slot.toStdString();
    }
    EXPECT_EQ(fileBytes(path), before);
    EXPECT_EQ(QFileInfo(path).lastModified(), modified);
}

TEST_F(ShiftCommand, APreferenceHoldsForThisRunOnlyAndIsNeverStored)
{
    const QString path = builtJpeg();
    const auto tiffMove = [&](const QStringList &prefs) {
        const QJsonObject item = shift(QStringList{"--dry-run", "--json", "--by", "+1:00:00"} +
                                       prefs + QStringList{path})
                                     .json()
                                     .first()
                                     .toObject();
        return seconds(item["tiffDateTimeNEW"]) - seconds(item["tiffDateTimeOLD"]);
    };
    EXPECT_EQ(tiffMove({}), 0.0) << "a TIFF date apart from the original is kept";
    // Option 0: the TIFF date takes the newest metadata date, the moved original.
    EXPECT_EQ(tiffMove({"--pref", "dateChangeEXIFEXIFModDate=0"}), -2 * 86400.0 + 2 * 3600.0);
    EXPECT_EQ(tiffMove({}), 0.0);
    EXPECT_FALSE(QFileInfo::exists(home.filePath(".config/orvelle/orvelle.conf")));
}

TEST_F(ShiftCommand, ASaveReportsWhatWasSavedAndFailedItemsByIdAndLogsThem)
{
    const QString saved = builtJpeg(QStringLiteral("saved"));
    const QString locked = builtJpeg(QStringLiteral("locked"));
    const ReadOnlyFile lock(locked);
    if (!lock.isLocked())
        GTEST_SKIP() << "this file system lets the process write any file";

    const CliResult result = shift({"--json", "--by", "+1:00:00", work.path()});

    EXPECT_EQ(result.exitCode, 1);
    const QJsonArray items = result.json();
    ASSERT_EQ(items.size(), 2);
    const QJsonObject lockedItem = items[0].toObject();
    const QJsonObject savedItem = items[1].toObject();
    EXPECT_EQ(lockedItem["saved"], QJsonValue(false));
    EXPECT_EQ(lockedItem["errors"], QJsonValue(QJsonArray{2}));
    EXPECT_EQ(savedItem["saved"], QJsonValue(true));
    EXPECT_EQ(savedItem["errors"], QJsonValue(QJsonArray()));
    EXPECT_EQ(exiftoolTags(saved, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2024:05:01 11:00:00");
    QFile log(home.filePath(".local/share/orvelle/errorLog.txt"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("\t" + QFile::encodeName(locked) + "\n"));
}

TEST_F(ShiftCommand, ShiftingTheCameraCorpusMovesEachOriginalDateByAnHourAndKeepsEveryOtherByte)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QDir source(corpusFile(QStringLiteral("exiftool-t")));
    for (const QString &name : source.entryList(QDir::Files)) {
        ASSERT_TRUE(QFile::copy(source.filePath(name), work.filePath(name)));
        QFile::setPermissions(work.filePath(name), QFile::ReadOwner | QFile::WriteOwner);
    }
    const QJsonArray scanned = runCli({"scan", "--json", work.path()}, home.path()).json();
    ASSERT_FALSE(scanned.isEmpty());
    QStringList files;
    for (const QString &name : source.entryList(QDir::Files))
        files << work.filePath(name);
    const std::map<QString, ExiftoolTags> before =
        exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);

    const CliResult result = shift({"--json", "--by", "+1:00:00", work.path()});

    const QJsonArray items = result.json();
    ASSERT_EQ(items.size(), scanned.size());
    // The folder's sidecars of no file are an import error of their own.
    bool anyFailed = result.err.contains("belong to no imported file");
    for (const QJsonValue &item : items)
        anyFailed = anyFailed || !item["saved"].toBool();
    EXPECT_EQ(result.exitCode, anyFailed ? 1 : 0);

    const std::map<QString, ExiftoolTags> after =
        exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);
    QMap<QString, bool> readsStamp;
    for (const QJsonValue &item : everyFile(scanned))
        readsStamp[item["path"].toString()] =
            item["singlePicAttributes"].toObject().contains("ExifDateTimeOriginalOffset");
    QMap<QString, bool> saved;
    for (const QJsonValue &item : everyFile(items))
        saved[item["path"].toString()] = item["saved"].toBool();
    int moved = 0;
    for (const QString &file : files) {
        // A file may hold the original date twice, in IFD0 and in the Exif IFD: the Exif IFD's
        // copy is the date every reader shows, so that is the one that must move.
        const ExiftoolTags &then = before.at(file);
        const ExiftoolTags &now = after.at(file);
        bool hasOriginal = false;
        bool movedAnHour = false;
        for (const char *key : {"ExifIFD:DateTimeOriginal", "IFD0:DateTimeOriginal"}) {
            const QString k = QLatin1String(key);
            if (!then.has(k))
                continue;
            hasOriginal = true;
            const Instant old =
                DateStampCodec::dateFromEXIFTimeStamp(then.string(k), TimeZone::utc());
            const Instant shifted =
                DateStampCodec::dateFromEXIFTimeStamp(now.string(k), TimeZone::utc());
            const bool mustMove = readsStamp.value(file) && k.startsWith(QLatin1String("ExifIFD"));
            if (mustMove) {
                EXPECT_EQ(shifted, old.addingSeconds(3600.0)) << file.toStdString();
            } else {
                EXPECT_TRUE(shifted == old || shifted == old.addingSeconds(3600.0))
                    << file.toStdString() << " " << key;
            }
            movedAnHour = movedAnHour || shifted == old.addingSeconds(3600.0);
        }
        // Where the import finds no stamp (a container it cannot walk yet), the item is reported
        // unsaved instead.
        if (readsStamp.value(file)) {
            EXPECT_TRUE(saved.value(file)) << file.toStdString();
            EXPECT_EQ(movedAnHour, hasOriginal) << file.toStdString();
        } else {
            EXPECT_FALSE(movedAnHour || (hasOriginal && saved.value(file, true)))
                << file.toStdString();
        }
        moved += movedAnHour;
    }
    EXPECT_GE(moved, 35);

    for (const QJsonValue &item : everyFile(scanned)) {
        const QString path = item["path"].toString();
        if (isDatedByItsFileAlone(item))
            continue;
        std::vector<Range> ranges = storedValueRanges(item["singlePicAttributes"].toObject());
        FileReader written(path);
        PngLocator png(written);
        for (const auto kind : {PngLocator::ChunkKind::Exif, PngLocator::ChunkKind::Xmp}) {
            if (const std::optional<ByteEdit> checksum = png.chunkCrcEdit(kind))
                ranges.push_back({checksum->offset, 4});
        }
        const QByteArray original = fileBytes(source.filePath(QFileInfo(path).fileName()));
        for (const qint64 offset : differingOffsets(original, fileBytes(path))) {
            EXPECT_TRUE(std::any_of(ranges.begin(), ranges.end(),
                                    [offset](const Range &r) {
                                        return offset >= r.begin && offset < r.begin + r.length;
                                    }))
                << path.toStdString() << ": byte " << offset;
        }
    }
}

namespace {

// Where a corpus file cannot show each date moved by the hour alone, by name and reason.
struct ShiftException
{
    const char *fileName;
    const char *exiftoolKey; // empty: the whole file
    bool underDefaultsOnly;
    const char *reason;
};
const ShiftException shiftExceptions[] = {
    {"QuickTime.heic", "", false,
     "no Exif item: dated by the file alone, it takes date tags through exiftool, which rewrites it"},
    {"train.mov", "QuickTime:ModifyDate", true,
     "2 s after the metadata date, so by default the same moment: it takes the new capture date"},
    {"with-gps.mov", "QuickTime:ModifyDate", true,
     "18 s after the metadata date, so by default the same moment: it takes the new capture date"},
    {"QuickTime.mov", "QuickTime:ModifyDate", true,
     "five years after the creation time: by default a later modify date is kept"},
};

const ShiftException *shiftException(const QString &path, const char *key, bool defaults)
{
    const QString fileName = QFileInfo(path).fileName().section(QLatin1Char('_'), 1);
    for (const ShiftException &e : shiftExceptions) {
        if (fileName == QLatin1String(e.fileName) && (!*e.exiftoolKey || qstrcmp(e.exiftoolKey, key) == 0)
            && (defaults || !e.underDefaultsOnly))
            return &e;
    }
    return nullptr;
}

// A track or media header time that held a movie header time takes that time's new value, in
// the tracks of every movie and CR3; any other stays. Answers how many followed.
int checkTrackDatesFollowTheMovieHeader(const ExiftoolTags &before, const ExiftoolTags &after,
                                        const QJsonObject &attributes, const QString &path)
{
    int followed = 0;
    for (int track = 1; before.has(QStringLiteral("Track%1:TrackCreateDate").arg(track)); ++track) {
        for (const char *tag : {"TrackCreateDate", "TrackModifyDate", "MediaCreateDate", "MediaModifyDate"}) {
            const QString key = QStringLiteral("Track%1:").arg(track) + QLatin1String(tag);
            const bool isModify = QByteArrayView(tag).contains("Modify");
            const std::pair<const char *, const char *> create{"QuickTime:CreateDate", "QTMvhdCreaDateOffset"};
            const std::pair<const char *, const char *> modify{"QuickTime:ModifyDate", "QTMvhdModDateOffset"};
            const QString then = before.string(key);
            const auto holds = [&](const std::pair<const char *, const char *> &header) {
                return then == before.string(QLatin1String(header.first))
                       && attributes.contains(QLatin1String(header.second));
            };
            const auto own = isModify ? modify : create;
            const auto other = isModify ? create : modify;
            const char *header = holds(own) ? own.first : holds(other) ? other.first : nullptr;
            if (!header) {
                EXPECT_EQ(after.string(key), then) << path.toStdString() << " " << key.toStdString();
                continue;
            }
            EXPECT_EQ(after.string(key), after.string(QLatin1String(header)))
                << path.toStdString() << " " << key.toStdString() << " follows " << header;
            ++followed;
        }
    }
    return followed;
}

} // namespace

TEST_F(ShiftCommand, ShiftingEveryCorpusMovieHeifCr3AndAviMovesEachDateWeReadByAnHourInPlace)
{
    ORV_SKIP_WITHOUT_CORPUS();
    // Each date we read, by exiftool's name, and the scan's attribute that says we read it.
    const std::pair<const char *, const char *> readDates[] = {
        {"QuickTime:CreateDate", "QTMvhdCreaDateOffset"}, {"QuickTime:ModifyDate", "QTMvhdModDateOffset"},
        {"Keys:CreationDate", "QTMetaDateOffset"},        {"RIFF:DateTimeOriginal", "riffCreaDateOffset"},
        {"ExifIFD:DateTimeOriginal", "ExifDateTimeOriginalOffset"},
        {"ExifIFD:CreateDate", "ExifDateTimeDigitizedOffset"}, {"IFD0:ModifyDate", "TIFFDateTimeOffset"},
    };
    const auto instant = [](const QString &text) {
        return text.size() > 19 ? DateStampCodec::dateFromEXIFTimeStamp(text.left(19), text.mid(19))
                                : DateStampCodec::dateFromEXIFTimeStamp(text, TimeZone::utc());
    };
    // By default a digitized or modify date near the capture date takes the new capture date, and
    // one far after it is kept; the two preferences move each by the hour alone, as a camera
    // whose clock was off needs.
    const QStringList moveAlong = {"--pref", "dateChangeEXIFEXIFModDate=3", "--pref", "dateChangeEXIFEXIFDigiDate=3"};
    for (const bool defaults : {true, false}) {
        SCOPED_TRACE(defaults ? "default preferences" : "moving along");
        const QDir folder(work.filePath(defaults ? "defaults" : "moveAlong"));
        ASSERT_TRUE(folder.mkpath("."));
        QStringList files;
        QMap<QString, QString> originals;
        for (const QString &path : corpusFiles({"mov", "mp4", "heic", "avif", "cr3", "avi"})) {
            // Names repeat across the corpus's folders.
            const QString copy = folder.filePath(QString::number(files.size()) + "_" + QFileInfo(path).fileName());
            ASSERT_TRUE(QFile::copy(path, copy));
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
            files << copy;
            originals[copy] = path;
        }
        const QJsonArray scanned = runCli({"scan", "--json", folder.path()}, home.path()).json();
        ASSERT_EQ(scanned.size(), files.size());
        const std::map<QString, ExiftoolTags> before = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);

        const CliResult result = shift(QStringList{"--json", "--by", "+1:00:00"} + (defaults ? QStringList() : moveAlong)
                                       + QStringList{folder.path()});
        const std::map<QString, ExiftoolTags> after = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);

        QMap<QString, QJsonObject> shifted;
        for (const QJsonValue &item : result.json())
            shifted[item["path"].toString()] = item.toObject();
        int movedDates = 0;
        int followingTrackDates = 0;
        for (const QJsonValue &item : scanned) {
            const QString path = item["path"].toString();
            if (shiftException(path, "", defaults))
                continue;
            const QJsonObject attributes = item["singlePicAttributes"].toObject();
            bool readsAny = false;
            for (const auto &[key, attribute] : readDates) {
                const QString then = before.at(path).string(QLatin1String(key));
                const QString now = after.at(path).string(QLatin1String(key));
                if (!attributes.contains(QLatin1String(attribute))) {
                    EXPECT_EQ(now, then) << path.toStdString() << " " << key;
                    continue;
                }
                readsAny = true;
                if (shiftException(path, key, defaults)) {
                    const QJsonValue newCapture = shifted[path]["exifDateTimeOriginalNEW"];
                    EXPECT_TRUE(now == then || instant(now) == Instant(seconds(newCapture)))
                        << path.toStdString() << " " << key << ": " << now.toStdString();
                    continue;
                }
                EXPECT_EQ(instant(now), instant(then).addingSeconds(3600.0))
                    << path.toStdString() << " " << key << ": " << then.toStdString() << " -> " << now.toStdString();
                ++movedDates;
            }
            if (readsAny) {
                EXPECT_TRUE(shifted[path]["saved"].toBool()) << path.toStdString();
            }
            followingTrackDates += checkTrackDatesFollowTheMovieHeader(before.at(path), after.at(path), attributes, path);

            const QByteArray original = fileBytes(originals[path]);
            const QByteArray written = fileBytes(path);
            EXPECT_EQ(written.size(), original.size()) << path.toStdString();
            const std::vector<Range> ranges = storedValueRanges(attributes);
            for (const qint64 offset : differingOffsets(original, written)) {
                EXPECT_TRUE(std::any_of(ranges.begin(), ranges.end(),
                                        [offset](const Range &r) { return offset >= r.begin && offset < r.begin + r.length; }))
                    << path.toStdString() << ": byte " << offset;
            }
        }
        EXPECT_GE(movedDates, defaults ? 69 : 72);
        EXPECT_GE(followingTrackDates, 100);
    }
}

TEST_F(ShiftCommand, TwoShiftsOfACr3MoveEveryDateExiftoolReadsByTwoHours)
{
    ORV_SKIP_WITHOUT_CORPUS();
    // A timed metadata sample lies in the media data, which a save never reads or writes.
    const QString inMediaData = QStringLiteral("Track4:TimeStamp");
    QStringList files;
    for (const QString &path : corpusFiles({"cr3"})) {
        files << work.filePath(QString::number(files.size()) + "_" + QFileInfo(path).fileName());
        ASSERT_TRUE(QFile::copy(path, files.back()));
        QFile::setPermissions(files.back(), QFile::ReadOwner | QFile::WriteOwner);
    }
    ASSERT_FALSE(files.isEmpty());
    const std::map<QString, ExiftoolTags> before = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);
    for (int run = 0; run < 2; ++run)
        ASSERT_EQ(shift({"--by", "+1:00:00", work.path()}).exitCode, 0);
    const std::map<QString, ExiftoolTags> after = exiftoolTagsOfFiles(files, ExiftoolGroups::Family1);

    const QRegularExpression stamp(QStringLiteral("^\\d{4}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d"));
    int movedDates = 0;
    for (const QString &path : files) {
        const QJsonObject &then = before.at(path).json;
        for (auto tag = then.begin(); tag != then.end(); ++tag) {
            const QString group = tag.key().section(QLatin1Char(':'), 0, 0);
            if (!stamp.match(tag.value().toString()).hasMatch() || group == QLatin1String("System")
                || group == QLatin1String("Composite") || tag.key() == inMediaData)
                continue;
            const QString now = after.at(path).string(tag.key());
            EXPECT_EQ(DateStampCodec::dateFromEXIFTimeStamp(now.left(19), TimeZone::utc()),
                      DateStampCodec::dateFromEXIFTimeStamp(tag.value().toString().left(19), TimeZone::utc())
                          .addingSeconds(7200.0))
                << path.toStdString() << " " << tag.key().toStdString() << ": " << now.toStdString();
            ++movedDates;
        }
    }
    // Movie, track and media headers (18 a file) and IFD0 and Exif (3).
    EXPECT_EQ(movedDates, 21 * files.size());
}

TEST_F(ShiftCommand, IptcsCreationDateDatesAPhotoWithoutExifAndAShiftMovesItInItsOwnForm)
{
    // As a photo library writes it: the IIM date and time with its offset in the Photoshop
    // block, and its XMP home.
    const QString path = buildJpeg({}).write(work.path(), QStringLiteral("selected"));
    ASSERT_EQ(QProcess::execute(QStringLiteral("exiftool"),
                                {"-q", "-overwrite_original", "-IPTC:DateCreated=2023:05:04",
                                 "-IPTC:TimeCreated=14:30:00+02:00",
                                 "-XMP-photoshop:DateCreated=2023:05:04 14:30:00+02:00", path}),
              0);
    const ExiftoolTags then = exiftoolTags(path, ExiftoolGroups::Family1);
    const QJsonValue scanned = runCli({"scan", "--json", path}, home.path()).json().first();
    EXPECT_EQ(scanned["spType"].toInt(), 23);
    const QString iptcTime = then.string("IPTC:TimeCreated");
    EXPECT_EQ(Instant(seconds(scanned["spDateTimeOriginal"])),
              DateStampCodec::dateFromEXIFTimeStamp(then.string("IPTC:DateCreated") + " " + iptcTime.left(8),
                                                    iptcTime.mid(8), TimeZone::utc()));
    const QByteArray before = fileBytes(path);
    ASSERT_TRUE(QFile::copy(path, work.filePath(QStringLiteral("unsaved.jpg"))));

    const CliResult result = shift({"--json", "--by", "+1:00:00", path});

    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    const ExiftoolTags now = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(now.string("IPTC:DateCreated"), "2023:05:04");
    EXPECT_EQ(now.string("IPTC:TimeCreated"), "15:30:00+02:00");
    EXPECT_EQ(now.string("XMP-photoshop:DateCreated"), "2023:05:04 15:30:00+02:00");
    // The Photoshop block's digest of the IPTC data stays current.
    EXPECT_EQ(exiftoolWarnings(path), exiftoolWarnings(work.filePath(QStringLiteral("unsaved.jpg"))));
    EXPECT_EQ(fileBytes(path).size(), before.size());
    const std::vector<Range> ranges = storedValueRanges(scanned["singlePicAttributes"].toObject());
    for (const qint64 offset : differingOffsets(before, fileBytes(path)))
        EXPECT_TRUE(std::any_of(ranges.begin(), ranges.end(),
                                [offset](const Range &r) { return offset >= r.begin && offset < r.begin + r.length; }))
            << "byte " << offset;
}

TEST_F(ShiftCommand, AStampOfYearZeroThatStaysIsNamedBeforeTheSave)
{
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    tags.dateTimeDigitized = Stamp::text("0000:05:01 10:00:00");
    const QString path = buildJpeg({.exif = tags}).write(work.path(), QStringLiteral("zero"));

    const QJsonValue item = shift({"--json", "--by", "+1:00:00", path}).json().first();

    EXPECT_EQ(item["preSaveErrors"].toArray(), QJsonArray({QStringLiteral("error_12_yearZeroStamp")}));
    const ExiftoolTags now = exiftoolTags(path, ExiftoolGroups::Family1);
    EXPECT_EQ(now.string("ExifIFD:DateTimeOriginal"), "2024:05:01 11:00:00");
    EXPECT_EQ(now.string("ExifIFD:CreateDate"), "0000:05:01 10:00:00");
}

// Corpus photos without any date tag (exiftool agrees), each copied with its camera's old
// modification time kept, as cp -p or a card reader does.
TEST_F(ShiftCommand, APlainShiftAddsNoTagToFilesWithoutDatesAndMovesOnlyTheirModificationTime)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const Instant cameraTime = Instant::fromUtc(2019, 7, 14, 8, 30, 0.0);
    QStringList copies;
    // Movies whose containers take no date tags at all go the same road, with or without the flag.
    for (const QString &path : corpusFiles({"jpg", "png", "avi", "mts"})) {
        const QString copy = work.filePath(QString::number(copies.size()) + "_" + QFileInfo(path).fileName());
        ASSERT_TRUE(QFile::copy(path, copy));
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        copies << copy;
    }
    QStringList undated;
    for (const QJsonValue &item : runCli({"scan", "--json", work.path()}, home.path()).json()) {
        if (item["spType"].toInt() == SpTypeNoTagsFileDate || item["spType"].toInt() == SpTypeMovieFileDate)
            undated << item["path"].toString();
    }
    // Those exiftool too reads no date from; the others leave.
    QStringList dateless;
    std::map<QString, QByteArray> bytes;
    for (const auto &[path, tags] : exiftoolTagsOfFiles(undated, ExiftoolGroups::Family0)) {
        if (tags.has("EXIF:DateTimeOriginal") || tags.has("EXIF:CreateDate") || tags.has("XMP:CreateDate"))
            continue;
        dateless << path;
        setModificationTime(path, cameraTime);
        bytes[path] = fileBytes(path);
    }
    for (const QString &path : copies) {
        if (!dateless.contains(path))
            QFile::remove(path);
    }
    ASSERT_GE(dateless.size(), 2) << "the corpus holds photos without date tags";

    const CliResult plain = shift({"--by", "+1:00:00", work.path()});
    EXPECT_EQ(plain.exitCode, 0) << plain.err.toStdString();
    EXPECT_EQ(plain.out.count("no date tags: only the file's modification date was set"), dateless.size())
        << plain.out.toStdString();
    const QJsonArray rescanned = runCli({"scan", "--json", work.path()}, home.path()).json();
    ASSERT_EQ(rescanned.size(), dateless.size());
    for (const QJsonValue &item : rescanned) {
        const QString path = item["path"].toString();
        SCOPED_TRACE(path.toStdString());
        EXPECT_EQ(fileBytes(path), bytes[path]) << "not one byte changed";
        EXPECT_EQ(FileAttributes::read(path)->modificationDate.secondsSinceEpoch(),
                  cameraTime.secondsSinceEpoch() + 3600.0);
        EXPECT_EQ(seconds(item["spDateTimeOriginal"]), cameraTime.secondsSinceEpoch() + 3600.0)
            << "the next import reads the moved date";
    }

    const CliResult asked = shift({"--json", "--add-missing-dates", "--by", "+1:00:00", work.path()});
    EXPECT_EQ(asked.exitCode, 0) << asked.err.toStdString();
    QStringList stills;
    for (const QJsonValue &item : asked.json()) {
        const QString suffix = QFileInfo(item["path"].toString()).suffix().toLower();
        const bool movie = suffix == "avi" || suffix == "mts";
        EXPECT_EQ(item["fileDateOnly"], QJsonValue(movie)) << item["path"].toString().toStdString();
        if (!movie)
            stills << item["path"].toString();
    }
    const QString twoHoursOn = QDateTime::fromSecsSinceEpoch(qint64(cameraTime.secondsSinceEpoch()) + 7200)
                                   .toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    for (const auto &[path, tags] : exiftoolTagsOfFiles(stills, ExiftoolGroups::Family0))
        EXPECT_EQ(tags.string("EXIF:DateTimeOriginal"), twoHoursOn) << path.toStdString();
}
