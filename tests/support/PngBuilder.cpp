#include "support/PngBuilder.h"

#include "support/ByteWriter.h"

#include <stdexcept>
#include <zlib.h>

namespace orv::test {
namespace {

constexpr quint32 kChunkHeader = 8; // length and type
constexpr char kXmpKeyword[] = "XML:com.adobe.xmp";

class PngWriter
{
public:
    explicit PngWriter(QByteArray wrongCrcChunk) : m_wrongCrcChunk(std::move(wrongCrcChunk))
    {
        m_out.bytes("\x89PNG\r\n\x1a\n");
    }

    quint32 position() const { return m_out.size(); }

    void chunk(QByteArrayView type, const QByteArray &data)
    {
        const QByteArray typeAndData = type.toByteArray() + data;
        m_out.u32(quint32(data.size()));
        m_out.bytes(typeAndData);
        const quint32 crc = pngChunkCrc(typeAndData);
        m_out.u32(type == m_wrongCrcChunk ? ~crc : crc);
    }

    const QByteArray &bytes() const { return m_out.data(); }

private:
    QByteArray m_wrongCrcChunk;
    ByteWriter m_out{ByteOrder::Motorola};
};

QByteArray header(QSize size)
{
    ByteWriter ihdr(ByteOrder::Motorola);
    ihdr.u32(quint32(size.width()));
    ihdr.u32(quint32(size.height()));
    ihdr.u8(8);    // bits per sample
    ihdr.u8(2);    // RGB
    ihdr.zeros(3); // deflate, adaptive filtering, no interlace
    return ihdr.data();
}

QByteArray compressedRows(QSize size)
{
    QByteArray rows;
    for (int y = 0; y < size.height(); ++y) {
        rows.append('\0'); // filter type None
        for (int x = 0; x < size.width(); ++x)
            rows.append(char(x * 16)).append(char(y * 16)).append(char(200));
    }
    uLongf length = compressBound(uLong(rows.size()));
    QByteArray compressed(qsizetype(length), '\0');
    if (compress(reinterpret_cast<Bytef *>(compressed.data()), &length,
                 reinterpret_cast<const Bytef *>(rows.constData()), uLong(rows.size())) != Z_OK)
        throw std::runtime_error("zlib cannot compress the PNG rows");
    compressed.resize(qsizetype(length));
    return compressed;
}

// Keyword, NUL, compression flag and method, empty language tag and translated keyword.
QByteArray xmpTextPrefix()
{
    return QByteArray(kXmpKeyword, sizeof kXmpKeyword) + QByteArray(4, '\0');
}

} // namespace

quint32 pngChunkCrc(QByteArrayView typeAndData)
{
    return quint32(crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef *>(typeAndData.data()),
                         uInt(typeAndData.size())));
}

QByteArray rawProfileData(const PngRawProfile &profile)
{
    const qsizetype length = profile.declaredLength < 0 ? profile.payload.size() : profile.declaredLength;
    QByteArray text = '\n' + profile.name + '\n' + QByteArray::number(length).rightJustified(8, ' ') + '\n';
    const QByteArray hex = profile.payload.toHex();
    for (qsizetype at = 0; at < hex.size(); at += 72)
        text += hex.mid(at, 72) + '\n';
    const QByteArray deflated = qCompress(text).mid(4); // a zlib stream behind Qt's length
    const QByteArray keyword = "Raw profile type " + profile.name + '\0';
    if (profile.chunkType == "tEXt")
        return keyword + text;
    if (profile.chunkType == "zTXt")
        return keyword + '\0' + deflated;
    // iTXt: compressed, method 0, no language, no translated keyword.
    return keyword + QByteArray("\x01\0\0\0", 4) + deflated;
}

MediaFile buildPng(const PngShape &recipe)
{
    MediaFile file{{}, {}, QStringLiteral("png")};
    PngWriter png(recipe.wrongCrcChunk);
    png.chunk("IHDR", header(recipe.size));
    for (const PngRawProfile &profile : recipe.rawProfiles)
        png.chunk(profile.chunkType, rawProfileData(profile));

    const auto writeExif = [&] {
        const MediaFile block = buildExifBlock(*recipe.exif, png.position() + kChunkHeader);
        static_cast<TiffOffsets &>(file.offsets) = block.offsets;
        file.offsets.exifSegment = png.position();
        png.chunk("eXIf", block.bytes);
    };
    const auto writeXmp = [&] {
        const QByteArray prefix = xmpTextPrefix();
        file.offsets.xmpSegment = png.position();
        placeXmp(file.offsets, png.position() + kChunkHeader + quint32(prefix.size()), *recipe.xmp);
        png.chunk("iTXt", prefix + recipe.xmp->bytes);
    };
    const auto writeAt = [&](ChunkPosition position) {
        if (recipe.exif && recipe.exifPosition == position)
            writeExif();
        if (recipe.xmp && recipe.xmpPosition == position)
            writeXmp();
    };

    writeAt(ChunkPosition::BeforeImageData);
    for (const PngText &text : recipe.texts)
        png.chunk("tEXt", text.keyword + '\0' + text.text);
    png.chunk("IDAT", compressedRows(recipe.size));
    writeAt(ChunkPosition::AfterImageData);
    png.chunk("IEND", {});
    file.bytes = png.bytes();
    return file;
}

} // namespace orv::test
