#include "formats/MySingleFolderDataReader.h"

#include "formats/JpegLocator.h"
#include "formats/TiffLocator.h"

namespace orv {

namespace {
// Packet offsets at or above this mean "none" to every caller.
constexpr quint32 firstInvalidXmpOffset = 0xFFFFFFFE;

// A CR3 is an ISO media file of brand "crx ", whatever its name says.
bool isCr3(const ByteSource &file) { return file.read(4, 8) == "ftypcrx "; }
} // namespace

std::optional<MySingleFolderDataReader::BmffOffsets>
MySingleFolderDataReader::preparedBMFFOffsetsAtFD(const ByteSource &)
{
    return std::nullopt;
}

std::optional<MySingleFolderDataReader::Cr3Offsets>
MySingleFolderDataReader::preparedCF3OffsetsAtFD(const ByteSource &)
{
    return std::nullopt;
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
        return segments.tiffHeader;
    }
    case HeicFormat:
    case AvifFormat: {
        const std::optional<BmffOffsets> boxes = preparedBMFFOffsetsAtFD(file);
        if (!boxes)
            return std::nullopt;
        if (boxes->exif)
            if (const auto header = tiff.headerAt(*boxes->exif))
                return header;
        return tiff.scanForHeader(0);
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
        if (isCr3(file)) {
            if (const auto cr3 = preparedCF3OffsetsAtFD(file); cr3 && cr3->xmpOffset)
                result.cr3XmpOffset = *cr3->xmpOffset;
            return std::nullopt;
        }
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
    if (const auto header = headerForFormat(file, fileFormatType, startingFrom, result))
        TiffLocator(file).readDates(*header, result);
    return result;
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
        const auto boxes = preparedBMFFOffsetsAtFD(file);
        return boxes ? boxes->xmp : std::nullopt;
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

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMPAtPath(const QString &path,
                                                                   quint32 startingFrom)
{
    const FileByteSource file(path);
    XmpLocator xmp(file);
    const std::optional<quint32> start = xmp.xmpStartOffsetFromSidecarFile(startingFrom);
    return start ? xmp.readMetadata(*start) : XmpSidecarMetadata{};
}

XmpSidecarMetadata MySingleFolderDataReader::metadataFromXMPSidecarAtPath(const QString &path)
{
    return metadataFromXMPAtPath(path, 0);
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
    const FileByteSource file(path);
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
    const FileByteSource file(path);
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
