#pragma once

#include "formats/AviLocator.h"
#include "formats/DatesData.h"
#include "formats/FileFormatType.h"
#include "formats/ByteSource.h"
#include "formats/PngLocator.h"
#include "formats/QuickTimeLocator.h"
#include "formats/RawPreviewLocator.h"
#include "formats/TiffTagReader.h"
#include "formats/WebpLocator.h"
#include "formats/XmpLocator.h"

#include <QMap>
#include <QString>

#include <optional>

namespace orv {

// The byte-level reader the scan uses for one file: where each date, time offset, GPS value and
// XMP stamp of a still image lives, with the bytes found there. It never raises: whatever cannot
// be read is simply absent from the answer. Created for a call and dropped afterwards.
//
// Every read has two doors: one on a ByteSource, which the scan opens once per file and hands to
// each walk in turn, and one on a path for the callers that read a single thing.
class MySingleFolderDataReader
{
public:
    // `startingFrom` is non-zero only for WebP, where it is the EXIF chunk's offset.
    DatesData savereadDatesAtPath(const QString &path, int fileFormatType,
                                  quint32 startingFrom = 0);
    DatesData savereadDates(const ByteSource &file, int fileFormatType, quint32 startingFrom = 0);

    // Nothing when the file cannot be opened; an empty set of dates when it holds none. The
    // start is the packet offset for JPEG and CR3, the TIFF header for TIFF and RAW files, the
    // chunk offset for WebP; sidecars (format 0) and PNG find their packet themselves.
    std::optional<XmpDateInfos> savereadXMPDatesAtPath(const QString &path, int fileFormatType,
                                                       quint32 startingFrom);
    XmpDateInfos savereadXMPDates(const ByteSource &file, int fileFormatType,
                                  quint32 startingFrom);
    // The stamps of a PNG's "Raw profile type xmp" text chunk. Their offsets count in the
    // decoded packet, where no in-place write can reach; nothing when the PNG has no such chunk.
    std::optional<XmpDateInfos> savereadXMPDatesOfPngProfile(const ByteSource &file);
    XmpSidecarMetadata metadataFromXMPAtPath(const QString &path, quint32 startingFrom);
    XmpSidecarMetadata metadataFromXMP(const ByteSource &file, quint32 startingFrom);
    XmpSidecarMetadata metadataFromXMPSidecarAtPath(const QString &path);
    // The same of the packet inside a file, found as savereadXMPDates finds it.
    XmpSidecarMetadata metadataFromXMPOfFile(const ByteSource &file, int fileFormatType,
                                             quint32 startingFrom);

    // unverifiedType 1: a QuickTime movie, which may lack an ftyp box; 2: MPEG-4.
    MovieHeaderData quicktimeHeaderDataForMovieFileAtPath(const QString &path, int unverifiedType);
    MovieHeaderData quicktimeHeaderDataForMovie(const ByteSource &file, int unverifiedType);
    std::optional<RiffMovieData> riffHeaderDataForMovieFileAtPath(const QString &path);
    std::optional<RiffMovieData> riffHeaderDataForMovie(const ByteSource &file);

    WebpChunkOffsets riffHeaderDataForWebPFileAtPath(const QString &path);
    WebpChunkOffsets riffHeaderDataForWebP(const ByteSource &file);
    QMap<QString, QString> tEXtDataFromPNG(const QString &path);
    QMap<QString, QString> tEXtDataFromPNG(const ByteSource &file);
    bool lockPNGChunkOfType(PngLocator::ChunkKind kind, const QString &path);

    std::optional<RawPreviewInfo> savereadInternalJPGs(const QString &path,
                                                       std::optional<TiffHeader> moreInfos);
    std::optional<RawPreviewInfo> savereadInternalJPGs(const ByteSource &file,
                                                       std::optional<TiffHeader> moreInfos);
    // Make, model, pixel size, orientation and Live Photo identifier from the TIFF header that
    // savereadDatesAtPath reported.
    TiffImageTags imageTagsAtPath(const QString &path, const TiffHeader &header);
    TiffImageTags imageTags(const ByteSource &file, const TiffHeader &header);

    // The edits that make the XMP packet of a file of this format say xmp:Rating `rating` in
    // place (XmpLocator::ratingEdits); nothing without a packet or without room in it.
    std::optional<std::vector<ByteEdit>> xmpRatingEdits(const ByteSource &file, int fileFormatType,
                                                        quint32 startingFrom, int rating);

private:
    // The dates of a CR3: IFD0 in its CMT1 box, the Exif IFD in CMT2, the GPS IFD in CMT4.
    void readCr3Dates(const ByteSource &file, DatesData &result);

    std::optional<TiffHeader> headerForFormat(const ByteSource &file, int fileFormatType,
                                              quint32 startingFrom, DatesData &result);
    void readDatesOfPngProfile(const ByteSource &file, DatesData &result);
    std::optional<quint32> xmpPacketStart(const ByteSource &file, int fileFormatType,
                                          quint32 startingFrom);
};

} // namespace orv
