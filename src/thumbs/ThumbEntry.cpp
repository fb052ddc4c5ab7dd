#include "thumbs/ThumbEntry.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>

namespace orv {

namespace {

QImage scaledToSide(const QImage &image, int side)
{
    if (std::max(image.width(), image.height()) <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

bool largerThanOnBothSides(QSize size, int side)
{
    return size.width() > side && size.height() > side;
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
    if (keepMaxi && largestSide == 500 && largerThanOnBothSides(largest.size(), maxiSide))
        entry.maxiThumb = compressedDataFromImage(scaledToSide(largest, maxiSide));
    return entry;
}

QImage ThumbEntry::decodedForSide(int side) const
{
    const bool maxiIsEnough = !maxiThumb.isEmpty() && side <= maxiSide;
    QByteArray data = maxiIsEnough ? maxiThumb : compressedData;
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isValid() && std::max(size.width(), size.height()) > side)
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio));
    return reader.read();
}

QImage ThumbEntry::currentSizeImage() const
{
    return QImage::fromData(compressedData);
}

qsizetype ThumbEntry::cost() const
{
    return compressedData.size() + maxiThumb.size() + overheadBytes;
}

} // namespace orv
