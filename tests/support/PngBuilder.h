#pragma once

#include "support/MediaFile.h"
#include "support/TiffBuilder.h"
#include "support/XmpBuilder.h"

#include <QByteArray>
#include <QSize>
#include <optional>
#include <vector>

namespace orv::test {

enum class ChunkPosition { BeforeImageData, AfterImageData };

struct PngText
{
    QByteArray keyword{};
    QByteArray text{};
};

// A "Raw profile type <name>" text chunk as converters write it: the payload as hex text behind
// a line with its length, in a tEXt, a zTXt or a compressed iTXt chunk.
struct PngRawProfile
{
    QByteArray name{};      // "exif", "xmp"
    QByteArray payload{};   // for exif: "Exif\0\0" and a TIFF block
    QByteArray chunkType{}; // "tEXt", "zTXt", "iTXt"
    qsizetype declaredLength = -1; // the length line; the payload's size when negative
};

// Signature, IHDR, the metadata chunks around one IDAT of a real RGB image, IEND; every CRC
// right unless wrongCrcChunk names a chunk type ("eXIf", "iTXt", "tEXt", "IDAT", ...).
struct PngShape
{
    QSize size{8, 8};
    std::optional<TiffShape> exif{}; // eXIf chunk
    ChunkPosition exifPosition = ChunkPosition::BeforeImageData;
    std::optional<XmpPacket> xmp{}; // iTXt "XML:com.adobe.xmp", uncompressed
    ChunkPosition xmpPosition = ChunkPosition::BeforeImageData;
    std::vector<PngText> texts{}; // tEXt chunks, before IDAT
    std::vector<PngRawProfile> rawProfiles{}; // right after IHDR
    QByteArray wrongCrcChunk{};
};

MediaFile buildPng(const PngShape &recipe);

// The CRC a PNG chunk must carry: zlib crc32 over its type and data.
quint32 pngChunkCrc(QByteArrayView typeAndData);

} // namespace orv::test
