#pragma once

#include "support/MediaFile.h"
#include "support/TiffBuilder.h"
#include "support/XmpBuilder.h"

#include <QSize>
#include <optional>

namespace orv::test {

// SOI, [APP0 JFIF], [APP1 Exif], [APP1 XMP], then a real baseline (or progressive) image.
// Without exif and xmp the file has no APP1 at all.
struct JpegShape
{
    bool jfif = true;
    std::optional<TiffShape> exif{}; // APP1 "Exif\0\0" + TIFF block
    std::optional<XmpPacket> xmp{}; // APP1 "http://ns.adobe.com/xap/1.0/\0" + packet
    bool xmpBeforeExif = false;
    QSize size{16, 16};
    bool progressive = false; // SOF2 instead of SOF0
};

MediaFile buildJpeg(const JpegShape &recipe);

// A plain JPEG as an encoder writes it: SOI, JFIF APP0, tables, SOF, scan, EOI. Fit to serve as
// an embedded preview.
QByteArray encodeJpegImage(QSize size, bool progressive = false);

} // namespace orv::test
