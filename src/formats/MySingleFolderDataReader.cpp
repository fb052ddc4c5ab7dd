#include "formats/MySingleFolderDataReader.h"

#include "formats/Cr3Locator.h"
#include "formats/HeifLocator.h"
#include "formats/JpegLocator.h"
#include "formats/TiffLocator.h"

namespace orv {

namespace {
// Packet offsets at or above this mean "none" to every caller.
constexpr quint32 firstInvalidXmpOffset = 0xFFFFFFFE;

// A CR3 is an ISO media file of brand "crx ", whatever its name says.
bool isCr3(const ByteSource &file) { return file.read(4, 8) == "ftypcrx "; }
} // namespace

void MySingleFolderDataReader::readCr3Dates(const ByteSource &file, DatesData &result)
{
    const std::optional<Cr3Offsets> cr3 = preparedCF3Offsets(file);
    if (!cr3)
        return;
    result.cr3XmpOffset = cr3->xmpOffset;
    TiffLocator tiff(file);
    const auto headerOf = [&](std::optional<quint32> offset) {
        return offset ? tiff.headerAt(*offset) : std::nullopt;
    };
    if (const std::optional<TiffHeader> ifd0 = headerOf(cr3->CMT1Offset))
        tiff.readDates(*ifd0, result);
    // CMT2's first directory is the Exif IFD: its date tags stand where IFD0's would.
    if (const std::optional<TiffHeader> exif = headerOf(cr3->CMT2Offset)) {
        DatesData exifDates;
        tiff.readDates(*exif, exifDates);
        result.exifDateTimeOriginal = exifDates.exifDateTimeOriginal;
        result.exifDateTimeDigitized = exifDates.exifDateTimeDigitized;
        result.exifOffsetTIFFTime = exifDates.exifOffsetTIFFTime;
        result.exifOffsetTimeOriginal = exifDates.exifOffsetTimeOriginal;
        result.exifOffsetTimeDigitized = exifDates.exifOffsetTimeDigitized;
        if (!result.tiffHeader)
            result.tiffHeader = exifDates.tiffHeader;
    }
    if (const std::optional<TiffHeader> gps = headerOf(cr3->CMT4Offset))
        tiff.readGpsDirectory(*gps, result);
    const MovieHeaderData movie = orv::quicktimeHeaderDataForMovie(file, false);
    const auto record = [](const std::optional<MovieValue> &time) -> std::optional<MovieStampRecord> {
        if (!time || !seemsValidMVHDDate(time->data))
            return std::nullopt;
        return MovieStampRecord{time->data, time->offset};
    };
    result.movieCreaDate = record(movie.creaDate);
    result.movieModDate = record(movie.modDate);
    result.movieTrackTimes = movie.trackTimes;
}

std::optional<TiffHeader> MySingleFolderDataReader::headerForFormat(const ByteSource &file,
                                                                    int fileFormatType,
                                                                    quint32 startingFrom,
                                                                    DatesData &result)
{
    TiffLocator tiff(file);
    switch (fileFormatType) {
    case JpegFormat: {
        // The segment walk alone decides for a JPEG; no byte scan follows it.
        const JpegSegmentsInfo segments = JpegLocator(file).savereadJPGHeader();
        result.jpgXMPOffset = segments.xmpOffset;
        result.iptcDateCreated = segments.iptcDate;
        result.jpgEndsBeforeImageData = !segments.reachesImageData;
        return segments.tiffHeader;
    }
    case HeicFormat:
    case AvifFormat: {
        // Without an Exif item nothing is searched: a TIFF magic in the image data is none.
        const std::optional<BmffItemOffsets> items = preparedBMFFOffsets(file);
        return items && items->exif ? tiff.headerAt(*items->exif) : std::nullopt;
    }
    case PngFormat: {
        // Without an eXIf chunk in front of the image data there is nothing to write into
        // safely: a value found by scanning could not have its chunk's CRC repaired.
        const std::optional<quint32> exif = PngLocator(file).exifStartOffset();
        if (!exif)
            return std::nullopt;
        if (const auto header = tiff.headerAt(*exif))
            return header;
        return tiff.scanForHeader(0);
    }
    case RawFormat:
        return tiff.scanForHeader(startingFrom == 0 ? 0 : qint64(startingFrom) + 4);
    default:
        return tiff.scanForHeader(startingFrom == 0 ? 0 : qint64(startingFrom) + 4);
    }
}

DatesData MySingleFolderDataReader::savereadDatesAtPath(const QString &path, int fileFormatType,
                                                        quint32 startingFrom)
{
    const FileByteSource file(path);
    return file.isOpen() ? savereadDates(file, fileFormatType, startingFrom) : DatesData{};
}

DatesData MySingleFolderDataReader::savereadDates(const ByteSource &file, int fileFormatType,
                                                  quint32 startingFrom)
{
    DatesData result;
    if (fileFormatType == RawFormat && isCr3(file)) {
        readCr3Dates(file, result);
        return result;
    }
    if (const auto header = headerForFormat(file, fileFormatType, startingFrom, result))
        TiffLocator(file).readDates(*header, result);
    else if (fileFormatType == PngFormat)
        readDatesOfPngProfile(file, result);
    return result;
}

void MySingleFolderDataReader::readDatesOfPngProfile(const ByteSource &file, DatesData &result)
{
    const std::optional<QByteArray> profile = PngLocator(file).rawProfile({"exif", "app1"});
    if (!profile)
        return;
    const MemoryByteSource decoded(*profile);
    // Most writers keep the APP1 segment's "Exif\0\0" in front of the TIFF header.
    TiffLocator tiff(decoded);
    std::optional<TiffHeader> header = tiff.headerAt(0);
    if (!header && profile->startsWith(QByteArrayView("Exif\0\0", 6)))
        header = tiff.headerAt(6);
    if (!header)
        return;
    tiff.readDates(*header, result);
    result.tiffHeader.reset();
    result.place = DatesData::Place::DecodedProfile;
}

std::optional<quint32> MySingleFolderDataReader::xmpPacketStart(const ByteSource &file,
                                                                int fileFormatType,
                                                                quint32 startingFrom)
{
    XmpLocator xmp(file);
    switch (fileFormatType) {
    case UnknownFormat:
        return xmp.xmpStartOffsetFromSidecarFile(startingFrom);
    case JpegFormat:
        if (startingFrom != 0)
            return startingFrom;
        return xmp.xmpStartOffsetFromJPGHeader();
    case HeicFormat:
    case AvifFormat: {
        const std::optional<BmffItemOffsets> items = preparedBMFFOffsets(file);
        return items ? items->xmp : std::nullopt;
    }
    case WebpFormat:
        return xmp.xmpStartOffsetFromWebPHeader(startingFrom);
    case PngFormat:
        return PngLocator(file).xmpStartOffset();
    case Cr3XmpFormat:
        return startingFrom;
    default:
        return xmp.xmpStartOffsetFromTIFHeader(startingFrom);
    }
}

std::optional<std::vector<ByteEdit>> MySingleFolderDataReader::xmpRatingEdits(const ByteSource &file,
                                                                            int fileFormatType,
                                                                            quint32 startingFrom, int rating)
{
    const std::optional<quint32> start = xmpPacketStart(file, fileFormatType, startingFrom);
    if (!start || *start >= firstInvalidXmpOffset)
        return std::nullopt;
    return XmpLocator(file).ratingEdits(*start, rating);
}

std::optional<XmpDateInfos> MySingleFolderDataReader::savereadXMPDatesAtPath(
    const QString &path, int fileFormatType, quint32 startingFrom)
{
    const FileByteSource file(path);
    if (!file.isOpen())
        return std::nullopt;
    return savereadXMPDates(file, fileFormatType, startingFrom);
}

XmpDateInfos MySingleFolderDataReader::savereadXMPDates(const ByteSource &file,
                                                        int fileFormatType, quint32 startingFrom)
{
    const std::optional<quint32> start = xmpPacketStart(file, fileFormatType, startingFrom);
    if (!start || *start >= firstInvalidXmpOffset)
        return XmpDateInfos{};
    return XmpLocator(file).readDates(*start);
}

std::optional<XmpDateInfos>
MySingleFolderDataReader::savereadXMPDatesOfPngProfile(const ByteSource &file)
{
    const std::optional<QByteArray> profile = PngLocator(file).rawProfile({"xmp"});
    if (!profile)
        return std::nullopt;
    const MemoryByteSource decoded(*profile);
    XmpLocator xmp(decoded);
    const std::optional<quint32> start = xmp.xmpStartOffsetFromSidecarFile(0);
    return start ? std::optional(xmp.readDates(*start)) : std::nullopt;
}

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMPAtPath(const QString &path,
                                                                   quint32 startingFrom)
{
    return metadataFromXMP(FileByteSource(path), startingFrom);
}

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMP(const ByteSource &file,
                                                             quint32 startingFrom)
{
    XmpLocator xmp(file);
    const std::optional<quint32> start = xmp.xmpStartOffsetFromSidecarFile(startingFrom);
    return start ? xmp.readMetadata(*start) : XmpSidecarMetadata{};
}

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMPOfFile(const ByteSource &file,
                                                                   int fileFormatType,
                                                                   quint32 startingFrom)
{
    const std::optional<quint32> start = xmpPacketStart(file, fileFormatType, startingFrom);
    if (!start || *start >= firstInvalidXmpOffset)
        return XmpSidecarMetadata{};
    return XmpLocator(file).readMetadata(*start);
}

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMPSidecarAtPath(const QString &path)
{
    return metadataFromXMPAtPath(path, 0);
}

MovieHeaderData MySingleFolderDataReader::quicktimeHeaderDataForMovieFileAtPath(const QString &path,
                                                                               int unverifiedType)
{
    const FileByteSource file(path);
    return quicktimeHeaderDataForMovie(file, unverifiedType);
}

MovieHeaderData MySingleFolderDataReader::quicktimeHeaderDataForMovie(const ByteSource &file,
                                                                     int unverifiedType)
{
    return orv::quicktimeHeaderDataForMovie(file, unverifiedType == 1);
}

std::optional<RiffMovieData> MySingleFolderDataReader::riffHeaderDataForMovieFileAtPath(const QString &path)
{
    const FileByteSource file(path);
    return riffHeaderDataForMovie(file);
}

std::optional<RiffMovieData> MySingleFolderDataReader::riffHeaderDataForMovie(const ByteSource &file)
{
    return orv::riffHeaderDataForMovie(file);
}

WebpChunkOffsets MySingleFolderDataReader::riffHeaderDataForWebPFileAtPath(const QString &path)
{
    const FileByteSource file(path);
    return riffHeaderDataForWebP(file);
}

WebpChunkOffsets MySingleFolderDataReader::riffHeaderDataForWebP(const ByteSource &file)
{
    return WebpLocator(file).riffHeaderData();
}

QMap<QString, QString> MySingleFolderDataReader::tEXtDataFromPNG(const QString &path)
{
    return tEXtDataFromPNG(FileByteSource(path));
}

QMap<QString, QString> MySingleFolderDataReader::tEXtDataFromPNG(const ByteSource &file)
{
    return PngLocator(file).tEXtData();
}

bool MySingleFolderDataReader::lockPNGChunkOfType(PngLocator::ChunkKind kind, const QString &path)
{
    return PngLocator::lockPNGChunkOfType(kind, path);
}

std::optional<RawPreviewInfo>
MySingleFolderDataReader::savereadInternalJPGs(const QString &path,
                                               std::optional<TiffHeader> moreInfos)
{
    return savereadInternalJPGs(FileByteSource(path), moreInfos);
}

std::optional<RawPreviewInfo>
MySingleFolderDataReader::savereadInternalJPGs(const ByteSource &file,
                                               std::optional<TiffHeader> moreInfos)
{
    return RawPreviewLocator(file).savereadInternalJPGs(moreInfos);
}

TiffImageTags MySingleFolderDataReader::imageTagsAtPath(const QString &path,
                                                        const TiffHeader &header)
{
    const FileByteSource file(path);
    return imageTags(file, header);
}

TiffImageTags MySingleFolderDataReader::imageTags(const ByteSource &file, const TiffHeader &header)
{
    return TiffTagReader(file).read(header);
}

} // namespace orv
