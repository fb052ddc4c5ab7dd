#include "support/WebpBuilder.h"

#include "support/ByteWriter.h"
#include "support/EncodedImage.h"

#include <QtEndian>
#include <stdexcept>

namespace orv::test {
namespace {

constexpr quint32 kChunkHeader = 8; // type and little-endian size

// The image chunk ("VP8 " or "VP8L", with its header and pad byte) of a simple-format WebP.
QByteArray imageChunk(QSize size, bool lossless)
{
    const QByteArray webp = encodeGradient(size, "webp", lossless ? 100 : 80);
    for (qsizetype chunk = 12; chunk + kChunkHeader <= webp.size();) {
        const QByteArray type = webp.mid(chunk, 4);
        const qsizetype length =
            kChunkHeader + qFromLittleEndian<quint32>(webp.constData() + chunk + 4);
        if (type == "VP8 " || type == "VP8L")
            return webp.mid(chunk, length + length % 2);
        chunk += length + length % 2;
    }
    throw std::runtime_error("the WebP encoder wrote no image chunk");
}

QByteArray extendedHeader(QSize size, bool hasExif, bool hasXmp)
{
    ByteWriter vp8x(ByteOrder::Intel);
    vp8x.u8(quint8((hasExif ? 0x08 : 0) | (hasXmp ? 0x04 : 0)));
    vp8x.zeros(3);
    vp8x.u24(quint32(size.width() - 1));
    vp8x.u24(quint32(size.height() - 1));
    return vp8x.data();
}

void appendChunk(ByteWriter &out, QByteArrayView type, const QByteArray &data)
{
    out.bytes(type);
    out.u32(quint32(data.size()));
    out.bytes(data);
    out.padToEven();
}

} // namespace

MediaFile buildWebp(const WebpShape &recipe)
{
    MediaFile file{{}, {}, QStringLiteral("webp")};
    ByteWriter out(ByteOrder::Intel);
    out.bytes("RIFF");
    out.u32(0); // patched below
    out.bytes("WEBP");
    appendChunk(out, "VP8X",
                extendedHeader(recipe.size, recipe.exif.has_value(), recipe.xmp.has_value()));
    out.bytes(imageChunk(recipe.size, recipe.lossless));
    if (recipe.strayPadByte)
        out.u8(0);

    if (recipe.exif) {
        const QByteArray header = recipe.exifWithHeader ? QByteArray("Exif\0\0", 6) : QByteArray();
        const MediaFile block =
            buildExifBlock(*recipe.exif, out.size() + kChunkHeader + quint32(header.size()));
        static_cast<TiffOffsets &>(file.offsets) = block.offsets;
        file.offsets.exifSegment = out.size();
        appendChunk(out, "EXIF", header + block.bytes);
    }
    if (recipe.xmp) {
        file.offsets.xmpSegment = out.size();
        placeXmp(file.offsets, out.size() + kChunkHeader, *recipe.xmp);
        appendChunk(out, "XMP ", recipe.xmp->bytes);
    }

    file.bytes = out.data();
    ByteWriter riffSize(ByteOrder::Intel);
    riffSize.u32(quint32(file.bytes.size()) - kChunkHeader);
    file.bytes.replace(4, 4, riffSize.data());
    return file;
}

} // namespace orv::test
