#include "thumbs/ThumbEntry.h"

#include <QBuffer>
#include <QImageWriter>

namespace orv {

namespace {

QImage scaledToSide(const QImage &image, int side)
{
    if (std::max(image.width(), image.height()) <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

bool largerThanOnBothSides(const QImage &image, int side)
{
    return image.width() > side && image.height() > side;
}

} // namespace

int cachedThumbSide(int cachedThumbSizeMode, int previousSide)
{
    static constexpr int sides[] = {50, 126, 252, 500};
    return cachedThumbSizeMode >= 0 && cachedThumbSizeMode < 4 ? sides[cachedThumbSizeMode] : previousSide;
}

QByteArray ThumbEntry::compressedDataFromImage(const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    if (image.hasAlphaChannel()) {
        QImageWriter writer(&buffer, "tiff");
        writer.setCompression(1); // LZW
        writer.write(image);
    } else {
        QImageWriter writer(&buffer, "jpeg");
        writer.setQuality(75);
        writer.write(image);
    }
    return data;
}

ThumbEntry ThumbEntry::make(const QImage &image, int largestSide, bool keepMaxi)
{
    ThumbEntry entry;
    if (image.isNull())
        return entry;
    const QImage largest = scaledToSide(image, largestSide);
    entry.largestThumbSize = largest.size();
    entry.compressedData = compressedDataFromImage(largest);
    if (keepMaxi && largestSide == 500 && largerThanOnBothSides(largest, maxiSide)) {
        const QImage maxi = scaledToSide(largest, maxiSide);
        entry.maxiThumb = compressedDataFromImage(maxi);
    }
    if (largest.width() > prevSide || largest.height() > prevSide)
        entry.prevThumb = scaledToSide(largest, prevSide);
    entry.miniThumb = scaledToSide(largest, miniSide);
    return entry;
}

const QImage &ThumbEntry::imageForSide(int side) const
{
    return side > miniSide && !prevThumb.isNull() ? prevThumb : miniThumb;
}

QImage ThumbEntry::currentSizeImage() const
{
    return QImage::fromData(compressedData);
}

qsizetype ThumbEntry::cost() const
{
    return compressedData.size() + maxiThumb.size() + prevThumb.sizeInBytes() + miniThumb.sizeInBytes();
}

} // namespace orv
