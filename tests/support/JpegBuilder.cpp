#include "support/JpegBuilder.h"

#include "support/ByteWriter.h"
#include "support/EncodedImage.h"

#include <stdexcept>

namespace orv::test {
namespace {

constexpr quint8 kApp0 = 0xE0;
constexpr quint8 kApp1 = 0xE1;
constexpr quint8 kApp15 = 0xEF;
constexpr quint8 kComment = 0xFE;
constexpr char kXmpNamespace[] = "http://ns.adobe.com/xap/1.0/"; // with its NUL: 29 bytes

void appendSegment(ByteWriter &out, quint8 marker, const QByteArray &payload)
{
    if (payload.size() > 0xFFFF - 2)
        throw std::length_error("JPEG segment payload too large");
    out.u8(0xFF);
    out.u8(marker);
    out.u16(quint16(payload.size() + 2));
    out.bytes(payload);
}

// The image part of an encoded JPEG: everything after SOI and its application and comment
// segments, from the first table on.
QByteArray imageSegments(const QByteArray &jpeg)
{
    qsizetype position = 2;
    while (position + 4 <= jpeg.size()) {
        const auto marker = quint8(jpeg[position + 1]);
        if (!((marker >= kApp0 && marker <= kApp15) || marker == kComment))
            break;
        position += 2 + (quint8(jpeg[position + 2]) << 8 | quint8(jpeg[position + 3]));
    }
    return jpeg.mid(position);
}

} // namespace

QByteArray encodeJpegImage(QSize size, bool progressive)
{
    return encodeGradient(size, "jpeg", 85, progressive);
}

MediaFile buildJpeg(const JpegShape &recipe)
{
    MediaFile file{{}, {}, QStringLiteral("jpg")};
    ByteWriter out(ByteOrder::Motorola);
    out.u8(0xFF);
    out.u8(0xD8);
    if (recipe.jfif)
        appendSegment(out, kApp0, QByteArray("JFIF\0\x01\x01\0\0\x01\0\x01\0\0", 14));

    const auto appendExif = [&] {
        const MediaFile block = buildExifBlock(*recipe.exif, out.size() + 10);
        static_cast<TiffOffsets &>(file.offsets) = block.offsets;
        file.offsets.exifSegment = out.size();
        appendSegment(out, kApp1, QByteArray("Exif\0\0", 6) + block.bytes);
    };
    const auto appendXmp = [&] {
        file.offsets.xmpSegment = out.size();
        placeXmp(file.offsets, out.size() + 4 + sizeof kXmpNamespace, *recipe.xmp);
        appendSegment(out, kApp1,
                      QByteArray(kXmpNamespace, sizeof kXmpNamespace) + recipe.xmp->bytes);
    };
    if (recipe.xmp && recipe.xmpBeforeExif)
        appendXmp();
    if (recipe.exif)
        appendExif();
    if (recipe.xmp && !recipe.xmpBeforeExif)
        appendXmp();

    out.bytes(imageSegments(encodeJpegImage(recipe.size, recipe.progressive)));
    file.bytes = out.data();
    return file;
}

} // namespace orv::test
