#include "core/PicScanner.h"

#include "core/DaylightSaving.h"
#include "core/FolderFacts.h"
#include "core/GpsLocation.h"
#include "core/IptcDates.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "core/XmpDates.h"
#include "core/ZoneRereading.h"
#include "formats/MySingleFolderDataReader.h"
#include "time/DateStampCodec.h"
#include "time/TimeZone.h"

#include <QFileInfo>

namespace orv {

namespace {

bool isStillFormat(int type) { return type >= 1 && type <= 15; }

// Kinds every file of which opens with the same signature. RAW kinds are not among them: some
// cameras' files have no signature of their own.
bool hasFixedSignature(int type)
{
    return type == JpegFormat || type == PngFormat || type == GifFormat || type == TiffFormat ||
           type == WebpFormat;
}

// An EXIF stamp that exists and can be read as a date. Empty stamps (blanks, zeros, short
// text) exist but are not usable.
bool isUsableStamp(const std::optional<StampRecord> &stamp)
{
    if (!stamp)
        return false;
    const QString text = DateStampCodec::exifTimeStampFromData(stamp->dateData);
    return !text.isEmpty() && !DateStampCodec::isValidZeroStamp(text);
}

QSysInfo::Endian byteOrder(bool motorola)
{
    return motorola ? QSysInfo::BigEndian : QSysInfo::LittleEndian;
}

QByteArray offsetOfStamp(const std::optional<OffsetTagRecord> &own, const DatesData &d)
{
    return orv::offsetOfStamp(own, d.exifOffsetTimeOriginal, d.exifOffsetTimeDigitized, d.exifOffsetTIFFTime);
}

// The XMP packet's place depends on the container: a TIFF-based file names it in IFD0, which
// the reader walks from the TIFF header.
std::optional<quint32> xmpPacketStart(const ScanFacts &facts)
{
    if (facts.dates.cr3XmpOffset)
        return facts.dates.cr3XmpOffset;
    if (facts.xmpHeaderStartOffset)
        return facts.xmpHeaderStartOffset;
    const int format = facts.format.fileFormatType;
    if (format == JpegFormat && facts.dates.jpgXMPOffset)
        return facts.dates.jpgXMPOffset;
    if ((format == TiffFormat || format == RawFormat) && facts.dates.tiffHeader)
        return facts.dates.tiffHeader->offset;
    return std::nullopt;
}

// Where the reader looks for the packet: its format and start. PNG finds its packet itself,
// from the iTXt chunk; HEIF stills from their item tables.
std::optional<std::pair<int, quint32>> xmpPacketToRead(const ScanFacts &facts)
{
    const int format = facts.format.fileFormatType;
    const std::optional<quint32> start = xmpPacketStart(facts);
    const bool searchWithoutOffset = format == PngFormat || format == HeicFormat || format == AvifFormat;
    if (!start && !searchWithoutOffset)
        return std::nullopt;
    return std::pair{facts.dates.cr3XmpOffset ? int(Cr3XmpFormat) : format, start.value_or(0)};
}

// The packet's place, needed where the GPS tags hold none, and its rating, read always.
void readXmpMetadata(ScanFacts &facts, const ByteSource &file, MySingleFolderDataReader &reader)
{
    if (const auto packet = xmpPacketToRead(facts))
        facts.xmpPlace = reader.metadataFromXMPOfFile(file, packet->first, packet->second);
}

void readXmpWhenNeeded(ScanFacts &facts, const ByteSource &file, MySingleFolderDataReader &reader)
{
    const DatesData &d = facts.dates;
    if (d.exifDateTimeOriginal || d.exifDateTimeDigitized)
        return;
    const int format = facts.format.fileFormatType;
    const auto packet = xmpPacketToRead(facts);
    if (!packet)
        return;
    XmpDateInfos infos = reader.savereadXMPDates(file, packet->first, packet->second);
    if (infos.empty() && format == PngFormat) {
        // A packet kept as a decoded text profile has no place in the file: offset 0, "none",
        // keeps every in-place write away from it.
        infos = reader.savereadXMPDatesOfPngProfile(file).value_or(XmpDateInfos{});
        for (auto &[key, record] : infos)
            record.offset = 0;
    }
    // A packet counts only when it can give the item a date.
    const bool hasCreaOrDigi = XmpDates::hasXmpCrea(infos) || XmpDates::hasXmpDigi(infos);
    const bool hasUsableMod = !d.tiffDateTime && XmpDates::hasXmpMod(infos);
    if (hasCreaOrDigi || hasUsableMod)
        facts.xmp = std::move(infos);
}

void readMovieHeader(ScanFacts &facts, const FileStatus &status)
{
    const FileByteSource file(facts.path, status);
    if (!file.isOpen())
        return;
    MySingleFolderDataReader reader;
    switch (facts.format.fileFormatType) {
    case QuickTimeMovieFormat:
        facts.movie = reader.quicktimeHeaderDataForMovie(file, 1);
        break;
    case Mpeg4MovieFormat:
        facts.movie = reader.quicktimeHeaderDataForMovie(file, 2);
        break;
    default:
        facts.riff = reader.riffHeaderDataForMovie(file);
        break;
    }
}

// Values decoded from a PNG text profile have no place in the file. The item keeps offset 0,
// "none", for each of them, so that no in-place write is ever planned there.
void forgetPlaces(DatesData &d)
{
    for (auto *stamp : {&d.tiffDateTime, &d.exifDateTimeOriginal, &d.exifDateTimeDigitized,
                        &d.gpsDateStamp}) {
        if (*stamp)
            (*stamp)->dateOffset = 0;
    }
    for (auto *tag : {&d.exifOffsetTIFFTime, &d.exifOffsetTimeOriginal, &d.exifOffsetTimeDigitized}) {
        if (*tag)
            (*tag)->offsetOffset = 0;
    }
    if (d.gpsTimeStamp)
        d.gpsTimeStamp->dateOffset = 0;
    if (GpsLocationRecord *r = d.gpsLocation ? &*d.gpsLocation : nullptr) {
        for (quint32 *offset : {&r->latitudeRef_Offset, &r->latitude_Offset, &r->longitudeRef_Offset,
                                &r->longitude_Offset, &r->altitudeRef_Offset, &r->altitude_Offset,
                                &r->hPositioningError_Offset})
            *offset = 0;
    }
}

} // namespace

ScanFacts PicScanner::readFacts(const QString &path, bool exifIgnored)
{
    ScanFacts facts;
    facts.path = path;
    const QString fileName = QFileInfo(path).fileName();
    const QString extension = QFileInfo(path).suffix().toUpper();
    if (fileName == QLatin1String(".DS_Store"))
        return facts;
    // One statx for the entry's kind, dates and size; a file with EXIF ignored never opens here,
    // a movie only for its header.
    const FileStatus status = FileStatus::of(path);
    facts.attributes = FileAttributes::fromStatus(status, path);
    if (!facts.attributes) {
        facts.route = ScanFacts::Route::Missing;
        return facts;
    }
    if (facts.attributes->isDirectory) {
        facts.route = ScanFacts::Route::Directory;
        return facts;
    }
    if (status.kind == FileStatus::Kind::Other) {
        // Opening a pipe blocks and opening a device may have effects: such an entry is only named.
        facts.route = ScanFacts::Route::NotRegularFile;
        return facts;
    }
    if (extension == QLatin1String("GPX")) {
        facts.route = ScanFacts::Route::GpxTrack;
        return facts;
    }
    facts.format = FileFormat::fileFormatTypeForMediumAtPath(path);
    if (FileFormat::isMovieType(facts.format.fileFormatType) || extension == QLatin1String("MTS")) {
        facts.route = ScanFacts::Route::Movie;
        if (!exifIgnored)
            readMovieHeader(facts, status);
        return facts;
    }
    if (exifIgnored && !extension.isEmpty() && facts.format.fileFormatType != UnknownFormat) {
        facts.route = ScanFacts::Route::Unsupported;
        return facts;
    }

    // One open and one read of the head serve the content test and every walk below.
    const FileByteSource file(path, status);
    facts.readable = file.isOpen();
    const std::optional<FormatInfo> content =
        file.isOpen() ? FileFormat::typeStringForImage(file.read(0, 64), file.length(), path)
                      : std::nullopt;
    if (content) {
        facts.format = *content;
    } else if (file.length() > 0 && hasFixedSignature(facts.format.fileFormatType)) {
        // A text file named .jpg, or bytes that are no image at all: its dates would be the file
        // system's, and a save would touch a file that is no photo.
        facts.route = ScanFacts::Route::NotAsNamed;
        return facts;
    }
    if (!isStillFormat(facts.format.fileFormatType)) {
        if (extension == QLatin1String("XMP"))
            facts.route = ScanFacts::Route::XmpSidecar;
        else if (extension == QLatin1String("AAE"))
            facts.route = ScanFacts::Route::AaeSidecar;
        else if (content || facts.format.fileFormatType != UnknownFormat)
            facts.route = ScanFacts::Route::Unsupported;
        return facts;
    }
    facts.route = ScanFacts::Route::Still;
    if (exifIgnored)
        return facts;

    MySingleFolderDataReader reader;
    const int format = facts.format.fileFormatType;
    if (format == WebpFormat) {
        const WebpChunkOffsets chunks = reader.riffHeaderDataForWebP(file);
        if (chunks.exifOffset)
            facts.dates = reader.savereadDates(file, format, *chunks.exifOffset);
        facts.xmpHeaderStartOffset = chunks.xmpOffset;
    } else if (format != PictFormat && format != GifFormat) {
        facts.dates = reader.savereadDates(file, format);
    }
    if (facts.dates.place == DatesData::Place::DecodedProfile)
        forgetPlaces(facts.dates);
    readXmpWhenNeeded(facts, file, reader);
    readXmpMetadata(facts, file, reader);
    if (facts.dates.tiffHeader)
        facts.image = reader.imageTags(file, *facts.dates.tiffHeader);
    return facts;
}

namespace {

// An XMP place: the coordinate, with the altitude and positioning error it names beside it.
bool takeXmpPlace(MySinglePic &pic, const XmpSidecarMetadata &xmp)
{
    const std::optional<Coordinate> place = GpsLocation::fromXmp(xmp);
    if (!place)
        return false;
    pic.gpsLat = place->latitude;
    pic.gpsLong = place->longitude;
    PicAttributes &a = pic.singlePicAttributes;
    a.GPSLocationXmpAltitude = GpsLocation::altitudeFromXmp(xmp);
    if (xmp.gpsPosError && !a.GPSLocation)
        a.GPSLocationXmpHPositioningError = GpsLocation::xmpRational(xmp.gpsPosError->text);
    return true;
}

// The file's own entry: dates, size, and the rule that a camera's modify date lying after the
// file's birth is no capture date.
void setImageAttributesFromFileAttributes(MySinglePic &pic, const FileAttributes &attributes,
                                          int dateComparisonThresold)
{
    PicAttributes &a = pic.singlePicAttributes;
    a.NSFileCreationDate = attributes.creationDate;
    a.NSFileModificationDate = attributes.modificationDate;
    a.NSFileSize = attributes.size;
    pic.fileCreationDateOLD = attributes.creationDate;
    pic.fileModificationDateOLD = attributes.modificationDate;
    pic.isExtensionHidden = attributes.isExtensionHidden;
    pic.validateFilesystemNormalization();

    const bool modifyDateSource = pic.spType == SpTypeTiffDateTime || pic.spType == SpTypeFileDatePreferredOverTiff
                                  || pic.spType == SpTypeMvhdModification
                                  || pic.spType == SpTypeFileDatePreferredOverMvhd;
    if (modifyDateSource && pic.spDateTimeOriginal
        && pic.spDateTimeOriginal->secondsSince(attributes.creationDate) > dateComparisonThresold) {
        pic.spType = pic.spType == SpTypeTiffDateTime ? SpTypeFileDatePreferredOverTiff
                                                      : SpTypeFileDatePreferredOverMvhd;
        pic.spDateTimeOriginal = attributes.creationDate;
    }

    // An empty modify tag is treated as if it held the file's date.
    if ((pic.spType == SpTypeEmptyOriginalFileDate || pic.spType == SpTypeEmptyDigitizedFileDate)
        && a.TIFFDateTime && a.TIFFDateTime->dateOffset)
        pic.tiffDateTimeOLD = attributes.modificationDate;
    if (pic.spType == SpTypeMvhdZeroFileDate && a.QTMvhdModDate && a.QTMvhdModDate->dateOffset)
        pic.tiffDateTimeOLD = attributes.modificationDate;
}

void setImageAttributesFromXmpDatesData(MySinglePic &pic, const XmpDateInfos &xmp, bool hasTiffDateTime)
{
    const TimeZone zone = TimeZone::systemZone();
    pic.singlePicAttributes.xmpDateInfos = xmp;
    pic.exifDateTimeOriginalOLD = XmpDates::xmpCreaDateFrom(xmp, zone);
    pic.isCreaXmp = pic.exifDateTimeOriginalOLD.has_value();
    pic.exifDateTimeDigitizedOLD = XmpDates::xmpDigiDateFrom(xmp, zone);
    pic.isDigiXmp = pic.exifDateTimeDigitizedOLD.has_value();
    if (hasTiffDateTime) {
        pic.hasModiXmp = XmpDates::hasXmpMod(xmp);
    } else {
        pic.tiffDateTimeOLD = XmpDates::xmpModDateFrom(xmp, zone);
        pic.isModiXmp = pic.tiffDateTimeOLD.has_value();
    }
    if (OptionalDate gps = XmpDates::xmpGpsDateFrom(xmp, zone)) {
        pic.spGpsUTCDate = gps;
        pic.isGpsXmp = true;
    }
}

// One EXIF or TIFF slot: its bytes and offset tag go into the attributes, its date into OLD.
void setExifSlot(MySinglePic &pic, const DatesData &d, const std::optional<StampRecord> &stamp,
                 const std::optional<OffsetTagRecord> &offset, std::optional<StampRecord> &stampSlot,
                 std::optional<OffsetTagRecord> &offsetSlot, OptionalDate &dateSlot)
{
    // An offset tag is kept without its stamp too: it still names the camera's clock.
    offsetSlot = offset;
    if (!stamp)
        return;
    stampSlot = stamp;
    const Instant date = DateStampCodec::dateFromExifData(stamp->dateData, offsetOfStamp(offset, d));
    // An empty tag of a file with a good date stays out of all later writes; for an item whose
    // date came from the import options it marks the tag to fill.
    const bool goodDateElsewhere = (pic.spType >= SpTypeExifOriginal && pic.spType <= SpTypeTiffDateTime)
                                   || pic.spType == SpTypeIptcDateCreated;
    dateSlot = date.isDistantPast() && goodDateElsewhere ? OptionalDate() : OptionalDate(date);
}

void setGPXAttributesFromTheDatesData(MySinglePic &pic, const DatesData &d)
{
    PicAttributes &a = pic.singlePicAttributes;
    if (d.gpsDateStamp && d.gpsTimeStamp) {
        a.GPSDateStamp = d.gpsDateStamp;
        a.GPSTimeStamp = d.gpsTimeStamp;
        const OptionalDate fromTags = DateStampCodec::updatedGpsDateWithCreationDate(
            d.gpsDateStamp->dateData, d.gpsTimeStamp->dateData, byteOrder(d.gpsTimeStamp->needsConv), std::nullopt);
        if (fromTags) {
            pic.spGpsUTCDate = fromTags;
            pic.isGpsXmp = false;
        }
    } else if ((pic.spType == SpTypeExifOriginal || pic.spType == SpTypeExifDigitized) && !pic.isGpsXmp
               && (d.gpsDateStamp || d.gpsTimeStamp)) {
        a.GPSDateStamp = d.gpsDateStamp;
        a.GPSTimeStamp = d.gpsTimeStamp;
        pic.spGpsUTCDate = DateStampCodec::updatedGpsDateWithCreationDate(
            d.gpsDateStamp ? d.gpsDateStamp->dateData.toByteArray() : QByteArray(),
            d.gpsTimeStamp ? d.gpsTimeStamp->dateData.toByteArray() : QByteArray(),
            byteOrder(d.gpsTimeStamp && d.gpsTimeStamp->needsConv), pic.spDateTimeOriginal);
    }
    if (d.gpsLocation) {
        a.GPSLocation = d.gpsLocation;
        a.GPSLocationXmpHPositioningError.reset();
        if (const std::optional<Coordinate> c = GpsLocation::setLocationFromData(*d.gpsLocation)) {
            pic.gpsLat = c->latitude;
            pic.gpsLong = c->longitude;
        }
    }
}

void setImageAttributesFromTheDatesData(MySinglePic &pic, const ScanFacts &facts)
{
    const DatesData &d = facts.dates;
    PicAttributes &a = pic.singlePicAttributes;
    if (facts.xmp)
        setImageAttributesFromXmpDatesData(pic, *facts.xmp, d.tiffDateTime.has_value());
    setExifSlot(pic, d, d.exifDateTimeOriginal, d.exifOffsetTimeOriginal, a.ExifDateTimeOriginal,
                a.ExifOffsetTimeOriginal, pic.exifDateTimeOriginalOLD);
    setExifSlot(pic, d, d.exifDateTimeDigitized, d.exifOffsetTimeDigitized, a.ExifDateTimeDigitized,
                a.ExifOffsetTimeDigitized, pic.exifDateTimeDigitizedOLD);
    setExifSlot(pic, d, d.tiffDateTime, d.exifOffsetTIFFTime, a.TIFFDateTime, a.TIFFOffsetTime,
                pic.tiffDateTimeOLD);
    // The stored attributes keep 0 for "no packet".
    if (const std::optional<quint32> packet =
            facts.xmpHeaderStartOffset ? facts.xmpHeaderStartOffset : d.jpgXMPOffset)
        a.xmpHeaderStartOffset = *packet;
    a.cr3XmpOffset = d.cr3XmpOffset.value_or(0);
    // IPTC's date fills the creation slot only where nothing else did; a save moves it along.
    a.IPTCDateCreated = d.iptcDateCreated;
    if (pic.spType == SpTypeIptcDateCreated && !pic.exifDateTimeOriginalOLD)
        pic.exifDateTimeOriginalOLD = pic.spDateTimeOriginal;
    // A CR3's movie header times are no date source of the item: a save moves them along.
    a.QTMvhdCreaDate = d.movieCreaDate;
    a.QTMvhdModDate = d.movieModDate;
    a.qtTrackTimes = d.movieTrackTimes;
    pic.validateMetaNormalization();
    setGPXAttributesFromTheDatesData(pic, d);
}

// The folder's answer to empty tags, asked once and kept for the rest of its import.
ImportOptions &emptyTagOptions(ItemScanContext &context)
{
    ImportOptions &options = context.options;
    if (!options.isChosen()) {
        if (options.skipEmptyTagImportOptions || !context.askEmptyTagOptions)
            options.withEmptyExifFixDate = ImportOptions::UseFileDate;
        else
            options.takeEmptyTagAnswer(context.askEmptyTagOptions());
    }
    return options;
}

// photoshop:DateCreated without any other XMP capture date is IPTC's creation date in its XMP
// home, as photo libraries write it beside the IIM date, not a camera's.
bool isIptcCoreDate(const XmpDateInfos &xmp)
{
    const auto photoshop = xmp.find(QStringLiteral("PhotoshopDateCreated"));
    return photoshop != xmp.end() && XmpDates::xmpCreaDictFrom(xmp) == &photoshop->second
           && !xmp.count(QStringLiteral("ExifDateTimeOriginal")) && !XmpDates::hasXmpDigi(xmp);
}

struct ChosenDate
{
    int type = 0;
    OptionalDate date;
};

// EXIF DateTimeOriginal, EXIF DateTimeDigitized, XMP create date, XMP digitized date, TIFF
// DateTime, XMP modify date: the first usable one is the item's date.
ChosenDate dateFromTags(const ScanFacts &facts)
{
    const DatesData &d = facts.dates;
    ChosenDate chosen;
    if (isUsableStamp(d.exifDateTimeOriginal))
        chosen = {SpTypeExifOriginal,
                  DateStampCodec::dateFromExifData(d.exifDateTimeOriginal->dateData, offsetOfStamp(d.exifOffsetTimeOriginal, d))};
    else if (isUsableStamp(d.exifDateTimeDigitized))
        chosen = {SpTypeExifDigitized,
                  DateStampCodec::dateFromExifData(d.exifDateTimeDigitized->dateData, offsetOfStamp(d.exifOffsetTimeDigitized, d))};
    else if (isUsableStamp(d.tiffDateTime))
        chosen = {SpTypeTiffDateTime,
                  DateStampCodec::dateFromExifData(d.tiffDateTime->dateData, offsetOfStamp(d.exifOffsetTIFFTime, d))};

    const TimeZone zone = TimeZone::systemZone();
    if (facts.xmp) {
        if (OptionalDate crea = XmpDates::xmpCreaDateFrom(*facts.xmp, zone))
            chosen = {isIptcCoreDate(*facts.xmp) ? SpTypeIptcDateCreated : SpTypeExifOriginal, crea};
        else if (OptionalDate digi = XmpDates::xmpDigiDateFrom(*facts.xmp, zone))
            chosen = {SpTypeExifDigitized, digi};
        else if (!d.tiffDateTime)
            if (OptionalDate mod = XmpDates::xmpModDateFrom(*facts.xmp, zone))
                chosen = {SpTypeTiffDateTime, mod};
    }
    if (!chosen.date && d.iptcDateCreated)
        if (OptionalDate iptc = IptcDates::dateFrom(*d.iptcDateCreated, zone))
            chosen = {SpTypeIptcDateCreated, iptc};
    return chosen;
}

// The date the import options give a file whose date tags are empty: the file's creation date,
// or the next of the fixed dates (`isFixed`).
OptionalDate importOptionDate(const ScanFacts &facts, ItemScanContext &context,
                              bool &isFixed)
{
    ImportOptions &options = emptyTagOptions(context);
    isFixed = options.usesFixedDate();
    OptionalDate date = facts.attributes->creationDate;
    if (isFixed) {
        if (!options.prefFixDateDate)
            return std::nullopt;
        date = options.prefFixDateDate->addingSeconds(options.intervalStepper);
        options.intervalStepper += options.stepInSeconds();
    }
    ++context.fixedDates;
    return date;
}

// A tag exists but its stamp is empty: the import options give the date.
ChosenDate dateFromImportOptions(const ScanFacts &facts, ItemScanContext &context)
{
    const DatesData &d = facts.dates;
    const int slot = d.exifDateTimeOriginal ? 0 : d.exifDateTimeDigitized ? 1 : 2;
    bool isFixed = false;
    const OptionalDate date = importOptionDate(facts, context, isFixed);
    if (!date)
        return {};
    return {(isFixed ? SpTypeEmptyOriginalFixedDate : SpTypeEmptyOriginalFileDate) + slot, date};
}

std::unique_ptr<MySinglePic> makePic(const ScanFacts &facts, ItemScanContext &context, int type, OptionalDate date)
{
    auto pic = std::make_unique<MySinglePic>(QFileInfo(facts.path).fileName(), context.folder, type, date);
    pic->fileFormatType = FileFormatType(facts.format.fileFormatType);
    // RAW files and QuickTime movies look for the JPEG or the still taken beside them.
    pic->isPossibleBundlePic = pic->fileFormatType == RawFormat || pic->fileFormatType == QuickTimeMovieFormat;
    return pic;
}

std::unique_ptr<MySinglePic> buildUndated(const ScanFacts &facts, ItemScanContext &context, int type, OptionalDate date)
{
    auto pic = makePic(facts, context, type, date);
    if (type == SpTypeUnsupportedPhoto) {
        pic->pivMakeModel.clear();
        pic->pivImageWidth = 0;
        pic->pivImageHeight = 0;
    }
    setImageAttributesFromFileAttributes(*pic, *facts.attributes,
                                         context.options.dateComparisonThresold);
    return pic;
}

QByteArray qtText(const std::optional<MovieValue> &value) { return value ? value->data : QByteArray(); }

std::optional<MovieStampRecord> stampRecord(const std::optional<MovieValue> &value)
{
    if (!value)
        return std::nullopt;
    return MovieStampRecord{value->data, value->offset};
}

// The movie's location texts, each with its digit counts; the first readable one places an item
// that has no location yet.
void setMovieLocationAttributes(MySinglePic &pic, const MovieHeaderData &m)
{
    const std::pair<int, const std::optional<MovieValue> &> sources[] = {
        {1, m.locationISO6709}, {2, m.locationISO6709_2}, {3, m.locationISO6709_3}};
    std::vector<QtLocationRecord> &records = pic.singlePicAttributes.qtLocations;
    for (const auto &[type, text] : sources) {
        if (!text)
            continue;
        const Iso6709Digits digits = measureIso6709(text->data);
        QtLocationRecord record{type, {text->data, text->offset}, {}, digits.int1, digits.frac1,
                                digits.int2, digits.frac2, digits.edit};
        if (records.empty() && m.locationHAccuracy)
            record.hAccuracy = {m.locationHAccuracy->data, m.locationHAccuracy->offset};
        records.push_back(record);
        if (!pic.gpsLat)
            if (const auto coordinates = coordinatesFromIso6709(text->data))
                std::tie(pic.gpsLat, pic.gpsLong) = *coordinates;
    }
}

// The movie header's values go into the date slots: the creation slot holds the item's date
// where it came from the header or the metadata date, the modification slot the header's
// modification time. Metadata dates carry their own offset and are never corrected.
void setMovieAttributesFromMVHDData(MySinglePic &pic, const MovieHeaderData &m, bool correction,
                                    const TimeZone &zone)
{
    PicAttributes &a = pic.singlePicAttributes;
    const bool isMeta = pic.spType == SpTypeMdta;
    if (isMeta ? m.QtCreationdate.has_value() : (pic.spType == SpTypeMvhdCreation && m.creaDate.has_value()))
        pic.exifDateTimeOriginalOLD = pic.spDateTimeOriginal;
    if (m.modDate)
        pic.tiffDateTimeOLD = DateStampCodec::finalDateFromMVHDData(m.modDate->data, correction && !isMeta, zone);
    a.QTMetaDate = stampRecord(m.QtCreationdate);
    a.QTMvhdCreaDate = stampRecord(m.creaDate);
    a.QTMvhdModDate = stampRecord(m.modDate);
    a.qtTrackTimes = m.trackTimes;
    setMovieLocationAttributes(pic, m);
    if (m.pixelSize.isValid()) {
        pic.pivImageWidth = m.pixelSize.width();
        pic.pivImageHeight = m.pixelSize.height();
    }
    pic.movDuration = m.duration.value_or(-1.0);
    pic.UUID = QString::fromUtf8(m.contentIdentifier);
    pic.pivMakeModel = MakerModel::completeMakerModelStringFromMaker(QString::fromUtf8(m.make), QString::fromUtf8(m.model));
}

std::unique_ptr<MySinglePic> buildRiffMovie(const ScanFacts &facts, ItemScanContext &context)
{
    const RiffMovieData &riff = *facts.riff;
    const OptionalDate date = DateStampCodec::dateFromRIFFTimeStamp(
        QString::fromLatin1(riff.creaDateData.left(24)), TimeZone::systemZone());
    if (!date)
        return buildUndated(facts, context, SpTypeMovieFileDate, facts.attributes->creationDate);
    auto pic = makePic(facts, context, SpTypeRiff, date);
    pic->movieType = MovieHeaderData::RiffStamp;
    pic->exifDateTimeOriginalOLD = date;
    pic->singlePicAttributes.riffCreaDate = MovieStampRecord{riff.creaDateData, riff.creaDateDataOffset};
    pic->pivMakeModel = riff.infoString.isEmpty() ? QStringLiteral("-") : QString::fromLatin1(riff.infoString);
    if (riff.pixelSize.isValid()) {
        pic->pivImageWidth = riff.pixelSize.width();
        pic->pivImageHeight = riff.pixelSize.height();
    }
    pic->movDuration = riff.duration.value_or(-1.0);
    setImageAttributesFromFileAttributes(*pic, *facts.attributes, context.options.dateComparisonThresold);
    return pic;
}

// A QuickTime or MPEG-4 movie: the metadata date with its own offset wins when the folder
// prefers it or the header has no date; otherwise the header's creation time, or its
// modification time, each read as local clock time where the folder says cameras wrote it so.
// A header of zeros takes its date from the import options.
std::unique_ptr<MySinglePic> buildQuickTimeMovie(const ScanFacts &facts, ItemScanContext &context)
{
    const MovieHeaderData &m = *facts.movie;
    const TimeZone zone = TimeZone::systemZone();
    const bool correction = context.mvhdTimezoneCorrection;
    const OptionalDate metaDate =
        m.QtCreationdate ? DateStampCodec::dateFromMDTATimeStamp(QString::fromLatin1(qtText(m.QtCreationdate)), zone)
                         : std::nullopt;
    ChosenDate chosen;
    if (m.movieType == MovieHeaderData::BothZero) {
        bool isFixed = false;
        const OptionalDate date = importOptionDate(facts, context, isFixed);
        chosen = {isFixed ? SpTypeMvhdZeroFixedDate : SpTypeMvhdZeroFileDate, date};
    } else if (metaDate && (context.mdtaDateEnabled || (!m.creaDate && !m.modDate))) {
        chosen = {SpTypeMdta, metaDate};
    } else if (m.creaDate) {
        chosen = {SpTypeMvhdCreation, DateStampCodec::finalDateFromMVHDData(m.creaDate->data, correction, zone)};
    } else if (m.modDate) {
        chosen = {SpTypeMvhdModification, DateStampCodec::finalDateFromMVHDData(m.modDate->data, correction, zone)};
    }
    if (!chosen.date)
        return buildUndated(facts, context, SpTypeMovieFileDate, facts.attributes->creationDate);

    auto pic = makePic(facts, context, chosen.type, chosen.date);
    pic->movieType = m.movieType;
    setMovieAttributesFromMVHDData(*pic, m, correction, zone);
    if (chosen.type == SpTypeMvhdZeroFileDate || chosen.type == SpTypeMvhdZeroFixedDate) {
        // The zero header is a tag to fill: the save writes the item's date into it.
        pic->exifDateTimeOriginalOLD = Instant::distantPast();
        if (chosen.type == SpTypeMvhdZeroFixedDate || !pic->tiffDateTimeOLD)
            pic->tiffDateTimeOLD = Instant::distantPast();
    }
    setImageAttributesFromFileAttributes(*pic, *facts.attributes, context.options.dateComparisonThresold);
    return pic;
}

std::unique_ptr<MySinglePic> buildMovie(const ScanFacts &facts, ItemScanContext &context)
{
    if (context.exifIgnored)
        return buildUndated(facts, context, SpTypeMovieExifIgnored, Instant::distantPast());
    if (facts.riff)
        return buildRiffMovie(facts, context);
    if (facts.movie && facts.movie->movieType != MovieHeaderData::NoHeader)
        return buildQuickTimeMovie(facts, context);
    return buildUndated(facts, context, SpTypeMovieFileDate, facts.attributes->creationDate);
}

// The stamps were read in the system zone; what that zone cannot read plainly is found now.
std::unique_ptr<MySinglePic> withImportFindings(std::unique_ptr<MySinglePic> pic, const ItemScanContext &context)
{
    if (pic)
        DaylightSaving::validateDateDifferencesUsingTimeZone(
            *pic, {TimeZone::systemZone(), context.mvhdTimezoneCorrection}, std::nullopt);
    return pic;
}

// Forgets what the last reading of the file found, before it is read again.
void cleanupBeforeRefreshInternalData(MySinglePic &pic)
{
    pic.isCreaXmp = pic.isDigiXmp = pic.isModiXmp = pic.hasModiXmp = pic.isGpsXmp = false;
    PicAttributes &a = pic.singlePicAttributes;
    a.xmpDateInfos.reset();
    a.ExifDateTimeOriginal.reset();
    a.ExifDateTimeDigitized.reset();
    a.TIFFDateTime.reset();
    a.ExifOffsetTimeOriginal.reset();
    a.ExifOffsetTimeDigitized.reset();
    a.TIFFOffsetTime.reset();
    a.xmpHeaderStartOffset = 0;
    a.cr3XmpOffset = 0;
    a.GPSTimeStamp.reset();
    a.GPSDateStamp.reset();
    a.GPSLocation.reset();
    a.QTMvhdCreaDate.reset();
    a.QTMvhdModDate.reset();
    a.qtTrackTimes.clear();
    a.IPTCDateCreated.reset();
}

// The header values of a movie exiftool rewrote.
bool refreshMovieData(MySinglePic &pic, const MovieHeaderData &m)
{
    PicAttributes &a = pic.singlePicAttributes;
    a.QTMetaDate.reset();
    a.QTMvhdCreaDate.reset();
    a.QTMvhdModDate.reset();
    a.qtTrackTimes.clear();
    a.qtLocations.clear();
    const TimeZone zone = TimeZone::systemZone();
    if (pic.spType == SpTypeMovieFileDate && m.QtCreationdate) {
        const OptionalDate date =
            DateStampCodec::dateFromMDTATimeStamp(QString::fromLatin1(qtText(m.QtCreationdate)), zone);
        if (!date)
            return false;
        pic.spType = SpTypeMdta;
        pic.exifDateTimeOriginalOLD = pic.exifDateTimeOriginalNEW = date;
    }
    const bool correction = pic.spSingleFolder && pic.spSingleFolder->isQuicktimeMVHDTimezoneCorrectionEnabled;
    pic.movieType = m.movieType;
    setMovieAttributesFromMVHDData(pic, m, correction && pic.spType != SpTypeMdta, zone);
    return true;
}

} // namespace

bool PicScanner::refreshInternalData(MySinglePic &pic)
{
    const ScanFacts facts = readFacts(pic.spPath(), false);
    if (!facts.attributes)
        return false;
    const bool isQuickTime = facts.route == ScanFacts::Route::Movie && facts.movie &&
                             facts.movie->movieType != MovieHeaderData::NoHeader;
    if (isQuickTime && pic.isMovie()) {
        if (!refreshMovieData(pic, *facts.movie))
            return false;
    } else if (facts.route == ScanFacts::Route::Still && !pic.isMovie()) {
        cleanupBeforeRefreshInternalData(pic);
        const DatesData &d = facts.dates;
        pic.tiffHeaderStartOffset = d.tiffHeader ? d.tiffHeader->offset : 0xFFFFFFFF;
        pic.tiffHeaderType = d.tiffHeader && d.tiffHeader->isIntel;
        setImageAttributesFromTheDatesData(pic, facts);
    } else {
        return false;
    }
    PicAttributes &a = pic.singlePicAttributes;
    a.NSFileCreationDate = pic.fileCreationDateOLD = facts.attributes->creationDate;
    a.NSFileModificationDate = pic.fileModificationDateOLD = facts.attributes->modificationDate;
    a.NSFileSize = facts.attributes->size;
    return true;
}

bool PicScanner::takeSidecarPlace(MySinglePic &pic, const XmpSidecarMetadata &sidecar)
{
    // A place the user moved and has not saved yet stays the item's.
    return !pic.gpsLatOld && takeXmpPlace(pic, sidecar);
}

void PicScanner::takeXmpRating(MySinglePic &pic, const XmpSidecarMetadata &xmp)
{
    if (!xmp.rating)
        return;
    // An item rated as its files said so far follows a sidecar read after its own packet, as
    // places do; one the user rated keeps its rating. What the file says is kept apart from the
    // item's rating, so that a save writes only a rating that changed.
    const bool ratedByUser = (pic.isKeeper || pic.isRejected) && pic.xmpRatingToWrite();
    pic.fileRating = qint8(*xmp.rating);
    if (ratedByUser)
        return;
    pic.isKeeper = *xmp.rating == 5;
    pic.isRejected = *xmp.rating == -1;
}

std::unique_ptr<MySinglePic> PicScanner::buildPic(const ScanFacts &facts, ItemScanContext &context)
{
    std::unique_ptr<MySinglePic> pic = buildPicOfRoute(facts, context);
    if (pic)
        context.cameraTexts.share(*pic);
    return pic;
}

std::unique_ptr<MySinglePic> PicScanner::buildPicOfRoute(const ScanFacts &facts, ItemScanContext &context)
{
    switch (facts.route) {
    case ScanFacts::Route::GpxTrack:
        context.gpxPaths.insert(facts.path);
        return nullptr;
    case ScanFacts::Route::XmpSidecar:
        context.xmpSidecarPaths.insert(facts.path);
        return nullptr;
    case ScanFacts::Route::AaeSidecar:
        context.aaeSidecarPaths.insert(facts.path);
        return nullptr;
    case ScanFacts::Route::Directory:
    case ScanFacts::Route::Skipped:
    case ScanFacts::Route::Missing:
    case ScanFacts::Route::NotRegularFile:
    case ScanFacts::Route::NotAsNamed:
        return nullptr;
    case ScanFacts::Route::Movie:
        return withImportFindings(buildMovie(facts, context), context);
    case ScanFacts::Route::Unsupported:
        return buildUndated(facts, context, SpTypeUnsupportedPhoto, Instant::distantPast());
    case ScanFacts::Route::Still:
        break;
    }
    if (context.exifIgnored)
        return buildUndated(facts, context, SpTypeUnsupportedPhoto, Instant::distantPast());

    const DatesData &d = facts.dates;
    ChosenDate chosen = dateFromTags(facts);
    if (!chosen.date) {
        const bool hasAnyTag = d.exifDateTimeOriginal || d.exifDateTimeDigitized || d.tiffDateTime;
        chosen = hasAnyTag ? dateFromImportOptions(facts, context)
                           : ChosenDate{SpTypeNoTagsFileDate, facts.attributes->creationDate};
    }
    if (!chosen.date)
        return nullptr;

    auto pic = makePic(facts, context, chosen.type, chosen.date);
    // The item keeps 0xFFFFFFFF for "no header", since 0 is a real place in a TIFF.
    pic->tiffHeaderStartOffset = d.tiffHeader ? d.tiffHeader->offset : 0xFFFFFFFF;
    pic->tiffHeaderType = d.tiffHeader && d.tiffHeader->isIntel;
    setImageAttributesFromTheDatesData(*pic, facts);
    setImageAttributesFromFileAttributes(*pic, *facts.attributes,
                                         context.options.dateComparisonThresold);
    if (!pic->gpsLat)
        takeXmpPlace(*pic, facts.xmpPlace);
    takeXmpRating(*pic, facts.xmpPlace);

    const TiffImageTags &image = facts.image;
    pic->pivMakeModel = MakerModel::completeMakerModelStringFromMaker(image.make, image.model);
    pic->pivGear = context.cameraTexts.shared(CameraGear::fromTags(image));
    pic->pivShotSettings = image.shot;
    const QSize size = image.orientedPixelSize();
    pic->pivImageWidth = size.isValid() ? size.width() : -1;
    pic->pivImageHeight = size.isValid() ? size.height() : -1;
    if (pic->fileFormatType == JpegFormat || pic->fileFormatType == HeicFormat)
        pic->UUID = image.contentIdentifier;
    return withImportFindings(std::move(pic), context);
}

} // namespace orv
