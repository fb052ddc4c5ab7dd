#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace orv {

// The largest cached side T of a cachedThumbSizeMode (0 to 3: 50, 126, 252, 500); a mode of 4
// or more leaves the side as it was.
int cachedThumbSide(int cachedThumbSizeMode, int previousSide);

// One item's cache entry. The large image is kept compressed (JPEG at 0.75, or TIFF with LZW
// when it has alpha); the 126 and 50 pixel forms stay decoded, because strips draw them at once.
struct ThumbEntry
{
    static constexpr int prevSide = 126;
    static constexpr int miniSide = 50;
    static constexpr int maxiSide = 252;

    QByteArray compressedData;
    QByteArray maxiThumb; // compressed like compressedData; only with keepMaxi, see make()
    QImage prevThumb;     // absent for an image no larger than 126 on both sides
    QImage miniThumb;
    QSize largestThumbSize;

    // The forms of an image, its longer side at most largestSide. keepMaxi: the preference for
    // sharper scrolling at a cost of memory; it takes effect only with a side of 500 and an image
    // larger than 252 on both sides.
    static ThumbEntry make(const QImage &image, int largestSide, bool keepMaxi = false);
    static QByteArray compressedDataFromImage(const QImage &image);

    // The best decoded form for drawing at a side: prevThumb, else miniThumb.
    const QImage &imageForSide(int side) const;
    // The large image, decoded again.
    QImage currentSizeImage() const;
    // Bytes held, for the cache's budget.
    qsizetype cost() const;
};

} // namespace orv
