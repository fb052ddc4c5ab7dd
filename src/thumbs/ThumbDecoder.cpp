#include "thumbs/ThumbDecoder.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QTransform>

#include <libheif/heif.h>
#include <libraw/libraw.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace orv {

namespace {

QImage scaledToSide(const QImage &image, int side)
{
    if (image.isNull() || std::max(image.width(), image.height()) <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

// Decodes through QImageReader, letting the codec scale while it decodes (libjpeg's reduced
// scale for JPEG). autoTransform: apply the file's EXIF orientation.
QImage readScaled(QImageReader &reader, int side, bool autoTransform)
{
    reader.setAutoTransform(autoTransform);
    // Below 50 the JPEG reader takes the fast DCT without fancy upsampling: at thumbnail scale
    // the difference does not show, the time does.
    reader.setQuality(49);
    const QSize size = reader.size();
    if (size.isValid()) {
        if (qint64(size.width()) * size.height() > ThumbDecoder::maxPixels)
            return {};
        if (std::max(size.width(), size.height()) > side)
            reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio));
    }
    return scaledToSide(reader.read(), side);
}

// LibRaw's orientation code as a rotation.
QImage rotatedByFlip(const QImage &image, int flip)
{
    switch (flip) {
    case 3: return image.transformed(QTransform().rotate(180));
    case 5: return image.transformed(QTransform().rotate(270));
    case 6: return image.transformed(QTransform().rotate(90));
    default: return image;
    }
}

struct HeifContextDeleter
{
    void operator()(heif_context *context) const { heif_context_free(context); }
};
struct HeifHandleDeleter
{
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
};
struct HeifImageDeleter
{
    void operator()(heif_image *image) const { heif_image_release(image); }
};
using HeifHandle = std::unique_ptr<heif_image_handle, HeifHandleDeleter>;

QImage decodeHeifHandle(heif_image_handle *handle)
{
    const bool alpha = heif_image_handle_has_alpha_channel(handle);
    heif_image *raw = nullptr;
    const heif_error error = heif_decode_image(handle, &raw, heif_colorspace_RGB,
                                               alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                                               nullptr);
    const std::unique_ptr<heif_image, HeifImageDeleter> image(raw);
    if (error.code != heif_error_Ok || !image)
        return {};
    int stride = 0;
    const uint8_t *data = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (!data || width <= 0 || height <= 0)
        return {};
    return QImage(data, width, height, stride, alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888).copy();
}

struct FormatCloser
{
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};
struct CodecFreer
{
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
};
struct FrameFreer
{
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
struct PacketFreer
{
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};

// The first decodable frame of the stream, giving up after this many packets.
constexpr int maxPacketsForFrame = 600;

} // namespace

QImage ThumbDecoder::decodeWithReader(const QString &path, int side)
{
    // The whole file in memory lets libjpeg see all the scan at once and take its fast Huffman
    // path, which it leaves when fewer than a few KB wait in its buffer (the file device hands it
    // 4 KB at a time). A file too large for that is read from the device.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > maxBytesReadWhole) {
        file.close();
        QImageReader reader(path);
        return readScaled(reader, side, true);
    }
    QByteArray bytes = file.readAll();
    file.close();
    // The format comes from the content, as for a file whose name says another.
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return readScaled(reader, side, true);
}

QImage ThumbDecoder::decodeEmbeddedExifThumbnail(const QString &path)
{
    // The thumbnail is a JPEG inside the APP1 EXIF segment, so within the first 64 KB after it.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(128 * 1024);
    if (!head.startsWith("\xFF\xD8"))
        return {};
    qsizetype pos = 2;
    while (pos + 4 <= head.size() && uchar(head.at(pos)) == 0xFF) {
        const uchar marker = uchar(head.at(pos + 1));
        const qsizetype length = (uchar(head.at(pos + 2)) << 8) | uchar(head.at(pos + 3));
        if (marker == 0xDA || length < 2)
            break;
        const qsizetype end = std::min(head.size(), pos + 2 + length);
        if (marker == 0xE1 && head.mid(pos + 4, 6) == QByteArray("Exif\0\0", 6)) {
            const qsizetype soi = head.indexOf("\xFF\xD8\xFF", pos + 10);
            if (soi < 0 || soi >= end)
                return {};
            const qsizetype eoi = head.lastIndexOf("\xFF\xD9", end - 2);
            if (eoi <= soi)
                return {};
            QByteArray jpeg = head.mid(soi, eoi + 2 - soi);
            QBuffer buffer(&jpeg);
            QImageReader reader(&buffer, "jpeg");
            return readScaled(reader, 1 << 16, true);
        }
        pos += 2 + length;
    }
    return {};
}

QImage ThumbDecoder::decodeHeif(const QString &path, int side)
{
    const std::unique_ptr<heif_context, HeifContextDeleter> context(heif_context_alloc());
    if (!context || heif_context_read_from_file(context.get(), QFile::encodeName(path).constData(), nullptr).code
                        != heif_error_Ok)
        return {};
    heif_image_handle *primaryRaw = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &primaryRaw).code != heif_error_Ok)
        return {};
    const HeifHandle primary(primaryRaw);
    if (qint64(heif_image_handle_get_width(primary.get())) * heif_image_handle_get_height(primary.get()) > maxPixels)
        return {};
    // A stored thumbnail at least as large as wanted saves decoding the whole image.
    const int count = heif_image_handle_get_number_of_thumbnails(primary.get());
    std::vector<heif_item_id> ids(size_t(std::max(count, 0)));
    if (count > 0)
        heif_image_handle_get_list_of_thumbnail_IDs(primary.get(), ids.data(), count);
    for (const heif_item_id id : ids) {
        heif_image_handle *thumbRaw = nullptr;
        if (heif_image_handle_get_thumbnail(primary.get(), id, &thumbRaw).code != heif_error_Ok)
            continue;
        const HeifHandle thumb(thumbRaw);
        if (std::max(heif_image_handle_get_width(thumb.get()), heif_image_handle_get_height(thumb.get())) >= side) {
            const QImage image = decodeHeifHandle(thumb.get());
            if (!image.isNull())
                return scaledToSide(image, side);
        }
    }
    return scaledToSide(decodeHeifHandle(primary.get()), side);
}

QImage ThumbDecoder::decodeRawPreview(const QString &path, int side)
{
    auto raw = std::make_unique<LibRaw>();
    if (raw->open_file(QFile::encodeName(path).constData()) != LIBRAW_SUCCESS || raw->unpack_thumb() != LIBRAW_SUCCESS)
        return {};
    int error = 0;
    libraw_processed_image_t *thumb = raw->dcraw_make_mem_thumb(&error);
    if (!thumb)
        return {};
    QImage image;
    if (thumb->type == LIBRAW_IMAGE_JPEG) {
        QByteArray jpeg(reinterpret_cast<const char *>(thumb->data), qsizetype(thumb->data_size));
        QBuffer buffer(&jpeg);
        QImageReader reader(&buffer);
        image = readScaled(reader, side, false); // the RAW's own orientation applies below
    } else if (thumb->type == LIBRAW_IMAGE_BITMAP && thumb->colors == 3 && thumb->bits == 8) {
        image = scaledToSide(QImage(thumb->data, thumb->width, thumb->height, thumb->width * 3, QImage::Format_RGB888).copy(),
                             side);
    }
    LibRaw::dcraw_clear_mem(thumb);
    return rotatedByFlip(image, raw->imgdata.sizes.flip);
}

QImage ThumbDecoder::decodeMovieFrame(const QString &path, int side)
{
    AVFormatContext *formatRaw = nullptr;
    if (avformat_open_input(&formatRaw, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
        return {};
    const std::unique_ptr<AVFormatContext, FormatCloser> format(formatRaw);
    if (avformat_find_stream_info(format.get(), nullptr) < 0)
        return {};
    const AVCodec *codec = nullptr;
    const int streamIndex = av_find_best_stream(format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (streamIndex < 0 || !codec)
        return {};
    AVStream *stream = format->streams[streamIndex];
    const std::unique_ptr<AVCodecContext, CodecFreer> decoder(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), stream->codecpar) < 0)
        return {};
    decoder->thread_count = 1;
    if (avcodec_open2(decoder.get(), codec, nullptr) < 0)
        return {};
    const std::unique_ptr<AVFrame, FrameFreer> frame(av_frame_alloc());
    const std::unique_ptr<AVPacket, PacketFreer> packet(av_packet_alloc());
    bool decoded = false;
    for (int n = 0; n < maxPacketsForFrame && !decoded; ++n) {
        const int read = av_read_frame(format.get(), packet.get());
        if (read < 0) {
            avcodec_send_packet(decoder.get(), nullptr); // drain what the decoder holds
        } else if (packet->stream_index != streamIndex) {
            av_packet_unref(packet.get());
            continue;
        } else {
            avcodec_send_packet(decoder.get(), packet.get());
            av_packet_unref(packet.get());
        }
        decoded = avcodec_receive_frame(decoder.get(), frame.get()) == 0;
        if (read < 0)
            break;
    }
    if (!decoded || frame->width <= 0 || frame->height <= 0)
        return {};
    const QSize target = QSize(frame->width, frame->height).scaled(side, side, Qt::KeepAspectRatio);
    const QSize size = std::max(frame->width, frame->height) > side ? target : QSize(frame->width, frame->height);
    SwsContext *scaler = sws_getContext(frame->width, frame->height, AVPixelFormat(frame->format), size.width(),
                                        size.height(), AV_PIX_FMT_RGB24, SWS_BILINEAR, nullptr, nullptr, nullptr);
    if (!scaler)
        return {};
    QImage image(size, QImage::Format_RGB888);
    uint8_t *planes[4] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {int(image.bytesPerLine()), 0, 0, 0};
    sws_scale(scaler, frame->data, frame->linesize, 0, frame->height, planes, strides);
    sws_freeContext(scaler);
    // The display matrix turns the stored frame upright.
    if (const uint8_t *matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr)) {
        const double angle = av_display_rotation_get(reinterpret_cast<const int32_t *>(matrix));
        if (!std::isnan(angle) && angle != 0)
            image = image.transformed(QTransform().rotate(-angle));
    }
    return image;
}

QImage ThumbDecoder::decode(const ThumbRequest &request)
{
    switch (request.kind) {
    case ThumbRequest::Kind::Movie: return decodeMovieFrame(request.path, request.side);
    case ThumbRequest::Kind::Heif: return decodeHeif(request.path, request.side);
    case ThumbRequest::Kind::Raw: {
        // The preview is all a RAW offers without developing it; a small one is scaled up.
        const QImage preview = decodeRawPreview(request.path, request.side);
        if (preview.isNull())
            return decodeWithReader(request.path, request.side);
        if (std::max(preview.width(), preview.height()) < request.side)
            return preview.scaled(request.side, request.side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        return preview;
    }
    case ThumbRequest::Kind::Photo: break;
    }
    if (request.embeddedFirst) {
        const QImage embedded = decodeEmbeddedExifThumbnail(request.path);
        // Smaller than wanted on both sides: made from the image after all.
        if (!embedded.isNull() && (embedded.width() >= request.side || embedded.height() >= request.side))
            return scaledToSide(embedded, request.side);
    }
    return decodeWithReader(request.path, request.side);
}

QImage ThumbDecoder::unsupportedIcon(int side)
{
    QImage icon(side, side, QImage::Format_RGB32);
    icon.fill(QColor(90, 90, 90));
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(200, 200, 200), std::max(2, side / 20)));
    const int inset = side / 4;
    painter.drawRect(inset, inset, side - 2 * inset, side - 2 * inset);
    painter.drawLine(inset, side - inset, side - inset, inset);
    return icon;
}

} // namespace orv
