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

// A profile larger than this is no metadata but damage.
constexpr qint64 maxProfileText = 16 * 1024 * 1024;

std::optional<QByteArray> inflated(QByteArrayView compressed)
{
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return std::nullopt;
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(compressed.data()));
    stream.avail_in = uInt(compressed.size());
    QByteArray out;
    int status = Z_OK;
    while (status == Z_OK && out.size() < maxProfileText) {
        const qsizetype done = out.size();
        out.resize(done + 65536);
        stream.next_out = reinterpret_cast<Bytef *>(out.data() + done);
        stream.avail_out = 65536;
        status = inflate(&stream, Z_NO_FLUSH);
        out.resize(done + 65536 - stream.avail_out);
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END)
        return std::nullopt;
    return out;
}

// The text of a tEXt, zTXt or iTXt chunk whose keyword is `keyword`, inflated when compressed.
std::optional<QByteArray> chunkText(const QByteArray &type, const QByteArray &data)
{
    const qsizetype nul = data.indexOf('\0');
    if (nul < 0)
        return std::nullopt;
    if (type == "tEXt")
        return data.mid(nul + 1);
    if (type == "zTXt")
        return inflated(QByteArrayView(data).sliced(qMin(nul + 2, data.size())));
    // iTXt: compression flag and method, then language and translated keyword, each ended by NUL.
    if (nul + 3 > data.size())
        return std::nullopt;
    const bool compressed = data[nul + 1] != 0;
    const qsizetype language = data.indexOf('\0', nul + 3);
    const qsizetype translated = language < 0 ? -1 : data.indexOf('\0', language + 1);
    if (translated < 0)
        return std::nullopt;
    const QByteArrayView text = QByteArrayView(data).sliced(translated + 1);
    return compressed ? inflated(text) : std::optional(text.toByteArray());
}

// "\n<name>\n<blanks><decimal length>\n<hex digits in lines>".
std::optional<QByteArray> decodedProfile(const QByteArray &text)
{
    const QList<QByteArray> lines = text.trimmed().split('\n');
    if (lines.size() < 3)
        return std::nullopt;
    bool ok = false;
    const qint64 length = lines[1].trimmed().toLongLong(&ok);
    if (!ok || length <= 0 || length > maxProfileText)
        return std::nullopt;
    QByteArray hex;
    hex.reserve(length * 2);
    for (qsizetype i = 2; i < lines.size(); ++i)
        hex += lines[i].trimmed();
    if (hex.size() < length * 2)
        return std::nullopt;
    return QByteArray::fromHex(hex.left(length * 2));
}

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

std::optional<QByteArray> PngLocator::rawProfile(std::initializer_list<QByteArrayView> names)
{
    std::optional<QByteArray> profile;
    forEachChunk([&](const Chunk &chunk) {
        if (chunk.type == "IEND")
            return false;
        if (chunk.type != "tEXt" && chunk.type != "zTXt" && chunk.type != "iTXt")
            return true;
        const QByteArray keyword = m_file.read(chunk.offset + 8, 80);
        const qsizetype nul = keyword.indexOf('\0');
        const QByteArray name = keyword.left(nul < 0 ? 0 : nul);
        if (!name.startsWith("Raw profile type "))
            return true;
        const QByteArray profileName = name.mid(17).toLower();
        if (std::none_of(names.begin(), names.end(),
                         [&](QByteArrayView wanted) { return profileName == wanted; }))
            return true;
        if (chunk.length > maxProfileText)
            return true;
        const std::optional<QByteArray> text = chunkText(chunk.type, m_file.read(chunk.offset + 8, chunk.length));
        profile = text ? decodedProfile(*text) : std::nullopt;
        return !profile;
    });
    return profile;
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
