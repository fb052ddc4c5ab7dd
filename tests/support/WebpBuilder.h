#pragma once

#include "support/MediaFile.h"
#include "support/TiffBuilder.h"
#include "support/XmpBuilder.h"

#include <QSize>
#include <optional>

namespace orv::test {

// RIFF/WEBP: VP8X, a real image (VP8, or VP8L when lossless), then EXIF and "XMP " chunks.
struct WebpShape
{
    QSize size{8, 8};
    bool lossless = false;
    std::optional<TiffShape> exif{};
    bool exifWithHeader = false; // "Exif\0\0" ahead of the TIFF header, as some writers do
    std::optional<XmpPacket> xmp{};
    bool strayPadByte =
        false; // a zero byte no chunk accounts for, ahead of the first metadata chunk
};

MediaFile buildWebp(const WebpShape &recipe);

} // namespace orv::test
