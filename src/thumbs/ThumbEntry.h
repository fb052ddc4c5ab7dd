#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace orv {

// The largest cached side T of a cachedThumbSizeMode (0 to 3: 50, 126, 252, 500); a mode of 4
// or more leaves the side as it was.
int cachedThumbSide(int cachedThumbSizeMode, int previousSide);

// One item's cache entry: only compressed forms (JPEG at 0.75, or TIFF with LZW when the image
// has alpha). Decoded pixels are made for the items a strip shows and held by that strip, so
// that the cache's size follows the compressed bytes, a few kilobytes an item.
struct ThumbEntry
{
    static constexpr int maxiSide = 252;
    // What an entry costs beside its data: the entry itself and the cache's node and hash slot.
    static constexpr qsizetype overheadBytes = 128;

    QByteArray compressedData;
    QByteArray maxiThumb; // only with keepMaxi, see make()
    QSize largestThumbSize;

    // The forms of an image, its longer side at most largestSide. keepMaxi: the preference for
    // sharper scrolling at a cost of memory; it takes effect only with a side of 500 and an image
    // larger than 252 on both sides.
    static ThumbEntry make(const QImage &image, int largestSide, bool keepMaxi = false);
    static QByteArray compressedDataFromImage(const QImage &image);

    // The image decoded to fit a square of side pixels (the codec scales while it decodes where
    // it can), from the smallest stored form that is large enough.
    QImage decodedForSide(int side) const;
    // The large image, decoded again.
    QImage currentSizeImage() const;
    // Bytes held, for the cache's bound.
    qsizetype cost() const;
};

} // namespace orv
