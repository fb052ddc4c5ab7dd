#pragma once

#include "formats/ByteSource.h"
#include "formats/InPlaceWriter.h"

#include <QMap>
#include <QString>

#include <functional>
#include <initializer_list>
#include <optional>

namespace orv {

// The metadata chunks of a PNG. Only chunks in front of the image data count: a value behind
// IDAT would need the whole image data walked at every read and every checksum repair.
class PngLocator
{
public:
    enum class ChunkKind { Exif = 1, Xmp = 2 };

    explicit PngLocator(const ByteSource &file) : m_file(file) {}

    // First byte of the eXIf chunk's data, where the TIFF header should stand.
    std::optional<quint32> exifStartOffset();
    // The byte after the "XML:com.adobe.xmp" keyword of the iTXt chunk; the packet follows.
    std::optional<quint32> xmpStartOffset();
    // All tEXt chunks up to IEND: keyword to text, empty ones dropped.
    QMap<QString, QString> tEXtData();
    // The bytes of a "Raw profile type <name>" text chunk (tEXt, zTXt or iTXt, compressed or
    // not), as some converters keep EXIF ("exif", "APP1") and XMP ("xmp") in a PNG: hex digits
    // behind a header line with the length. Nothing when no such chunk decodes.
    std::optional<QByteArray> rawProfile(std::initializer_list<QByteArrayView> names);

    // After a date was written in place into a chunk, its CRC must follow, or the PNG is
    // invalid. The CRC of the eXIf or XMP iTXt chunk as its bytes will stand once `pending` is
    // written, as an edit of the stored CRC; nothing when the chunk is absent or cut short. A
    // save plans it with its other edits, so that all of them are journaled before the first.
    std::optional<ByteEdit> chunkCrcEdit(ChunkKind kind, const std::vector<ByteEdit> &pending = {});
    // Recomputes the CRC and writes it in place; answers whether it reached the disk.
    static bool lockPNGChunkOfType(ChunkKind kind, const QString &path);

private:
    struct Chunk
    {
        qint64 offset; // of the length field
        quint32 length;
        QByteArray type;
    };
    // Visits the chunks from the one after the signature until `visit` answers false.
    void forEachChunk(const std::function<bool(const Chunk &)> &visit);
    std::optional<quint32> dataStartOfChunk(ChunkKind kind);

    const ByteSource &m_file;
};

} // namespace orv
