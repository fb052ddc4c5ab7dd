#include "support/EncodedImage.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <stdexcept>

namespace orv::test {

QByteArray encodeGradient(QSize size, const char *format, int quality, bool progressive)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), 128));
    }

    QByteArray encoded;
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    writer.setProgressiveScanWrite(progressive);
    if (!writer.write(image))
        throw std::runtime_error(std::string("cannot encode ") + format + ": " +
                                 writer.errorString().toStdString());
    return encoded;
}

} // namespace orv::test
