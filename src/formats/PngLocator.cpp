#include "formats/PngLocator.h"

#include "formats/ByteOrder.h"

#include <algorithm>
#include <zlib.h>

namespace orv {

namespace {
constexpr qint64 signatureLength = 8;
constexpr qint64 chunkFrame = 12; // length, type and CRC around the data
// The iTXt keyword "XML:com.adobe.xmp" follows length and type; ".xmp" ends it.
constexpr qint64 xmpKeywordEnd = 25;

bool isXmpChunk(const QByteArray &head)
{
    return hasBytesAt(head, 4, "iTXt") && hasBytesAt(head, 8, "XML:")
        && hasBytesAt(head, 21, ".xmp");
}
} // namespace

void PngLocator::forEachChunk(const std::function<bool(const Chunk &)> &visit)
{
    qint64 offset = signatureLength;
    while (offset < m_file.length() - chunkFrame) {
        const QByteArray head = m_file.read(offset, 8);
        if (head.size() < 8)
            return;
        const Chunk chunk{offset, get32(head, 0, false), head.mid(4, 4)};
        if (!visit(chunk))
            return;
        offset += chunkFrame + chunk.length;
    }
}

std::optional<quint32> PngLocator::dataStartOfChunk(ChunkKind kind)
{
    std::optional<quint32> found;
    forEachChunk([&](const Chunk &chunk) {
        if (chunk.type == "IDAT")
            return false;
        if (kind == ChunkKind::Exif && chunk.type == "eXIf") {
            found = quint32(chunk.offset + 8);
            return false;
        }
        if (kind == ChunkKind::Xmp && chunk.type == "iTXt"
            && isXmpChunk(m_file.read(chunk.offset, xmpKeywordEnd))) {
            found = quint32(chunk.offset + xmpKeywordEnd);
            return false;
        }
        return true;
    });
    return found;
}

std::optional<quint32> PngLocator::exifStartOffset() { return dataStartOfChunk(ChunkKind::Exif); }

std::optional<quint32> PngLocator::xmpStartOffset() { return dataStartOfChunk(ChunkKind::Xmp); }

QMap<QString, QString> PngLocator::tEXtData()
{
    QMap<QString, QString> texts;
    forEachChunk([&](const Chunk &chunk) {
        if (chunk.type == "IEND")
            return false;
        if (chunk.type == "tEXt") {
            const QByteArray data = m_file.read(chunk.offset + 8, qMin<qint64>(chunk.length, ByteSource::blockSize));
            const qsizetype nul = data.indexOf('\0');
            const QString key = QString::fromUtf8(data.left(nul < 0 ? data.size() : nul));
            const QString value = nul < 0 ? QString() : QString::fromUtf8(data.mid(nul + 1));
            if (!key.isEmpty() && !value.isEmpty())
                texts.insert(key, value);
        }
        return true;
    });
    return texts;
}

std::optional<ByteEdit> PngLocator::chunkCrcEdit(ChunkKind kind,
                                                 const std::vector<ByteEdit> &pending)
{
    const std::optional<quint32> dataStart = dataStartOfChunk(kind);
    if (!dataStart)
        return std::nullopt;
    const qint64 chunkStart = *dataStart - (kind == ChunkKind::Exif ? 8 : xmpKeywordEnd);
    const std::optional<quint32> length = m_file.read32(chunkStart, false);
    if (!length)
        return std::nullopt;
    // The CRC covers the type and the data; it is summed block by block.
    uLong crc = crc32(0L, Z_NULL, 0);
    const qint64 covered = qint64(*length) + 4;
    for (qint64 done = 0; done < covered;) {
        const qint64 blockStart = chunkStart + 4 + done;
        QByteArray block = m_file.read(blockStart, qMin(covered - done, ByteSource::blockSize));
        if (block.isEmpty())
            return std::nullopt;
        for (const ByteEdit &edit : pending) {
            const qint64 from = std::max(edit.offset, blockStart);
            const qint64 to = std::min(edit.offset + edit.bytes.size(), blockStart + block.size());
            for (qint64 at = from; at < to; ++at)
                block[at - blockStart] = edit.bytes[at - edit.offset];
        }
        crc = crc32(crc, reinterpret_cast<const Bytef *>(block.constData()), uInt(block.size()));
        done += block.size();
    }
    const qint64 crcOffset = chunkStart + 4 + covered;
    const QByteArray previous = m_file.read(crcOffset, 4);
    if (previous.size() != 4)
        return std::nullopt;
    QByteArray stored(4, '\0');
    for (int i = 0; i < 4; ++i)
        stored[i] = char((crc >> (24 - 8 * i)) & 0xFF);
    return ByteEdit{crcOffset, stored, previous};
}

bool PngLocator::lockPNGChunkOfType(ChunkKind kind, const QString &path)
{
    const FileByteSource file(path);
    const std::optional<ByteEdit> edit = PngLocator(file).chunkCrcEdit(kind);
    const std::unique_ptr<InPlaceFile> writer = edit ? InPlaceFile::open(path) : nullptr;
    return writer && writer->apply({*edit}) && writer->synchronize();
}

} // namespace orv
