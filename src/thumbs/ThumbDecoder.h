#pragma once

#include <QImage>
#include <QString>

namespace orv {

// What one thumbnail needs to know of its item, copied on the main thread so that the decoding
// thread never reads an item.
struct ThumbRequest
{
    enum class Kind : int { Photo, Heif, Raw, Movie };

    quint32 sessionUniqueId = 0;
    QString path;
    Kind kind = Kind::Photo;
    int side = 252;              // the longer side wanted
    bool embeddedFirst = false;  // try the small image the file carries before the pixels
};

// Decodes a thumbnail from the file's bytes: the embedded EXIF thumbnail first when asked (and
// large enough), JPEG and the other QImageReader formats at reduced scale while decoding,
// libheif for HEIC and AVIF, LibRaw's embedded preview for RAW, FFmpeg for a movie frame. EXIF
// orientation is applied. A null image when nothing decodes; the caller shows the unsupported
// icon. Safe on any thread; holds nothing between calls.
class ThumbDecoder
{
public:
    static QImage decode(const ThumbRequest &request);

    // The parts, for tests and benchmarks.
    static QImage decodeWithReader(const QString &path, int side);
    static QImage decodeEmbeddedExifThumbnail(const QString &path);
    static QImage decodeHeif(const QString &path, int side);
    static QImage decodeRawPreview(const QString &path, int side);
    static QImage decodeMovieFrame(const QString &path, int side);

    // The icon of an item whose pixels cannot be read.
    static QImage unsupportedIcon(int side);
    // Pixels larger than this are refused before decoding (a 200-megapixel image at most).
    static constexpr qint64 maxPixels = 200LL * 1000 * 1000;
    // Files up to this size are read whole before decoding; larger ones are read as they decode.
    static constexpr qint64 maxBytesReadWhole = 64LL * 1024 * 1024;
};

} // namespace orv
