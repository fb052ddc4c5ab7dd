#include "movieframes/FfmpegMovieFrames.h"

#include <QFile>
#include <QTransform>

#include <algorithm>
#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libswscale/swscale.h>
}

#include <cmath>

namespace orv {

namespace {

// A position kept to the millisecond names the frame that begins within that millisecond.
constexpr double positionTolerance = 0.0005;
// Seeks by decoding time can land behind a key frame whose picture comes after the position;
// so many earlier tries at most before the first frame decoded is taken as it is.
constexpr int maxSeekRetries = 4;

QString ffmpegError(int code)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return QString::fromUtf8(text);
}

// The JPEG formats are the plain ones in full range, which the scaler wants to be told apart.
AVPixelFormat withoutJpegRange(int format)
{
    switch (format) {
    case AV_PIX_FMT_YUVJ420P: return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P: return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P: return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P: return AV_PIX_FMT_YUV440P;
    default: return AVPixelFormat(format);
    }
}

qint64 timestampOfFrame(const AVFrame &frame)
{
    return frame.best_effort_timestamp != AV_NOPTS_VALUE ? frame.best_effort_timestamp : frame.pts;
}

struct OutputCloser
{
    void operator()(AVFormatContext *context) const
    {
        if (context && !(context->oformat->flags & AVFMT_NOFILE))
            avio_closep(&context->pb);
        avformat_free_context(context);
    }
};

void setTag(AVFormatContext *out, const char *key, const QString &value)
{
    if (!value.isEmpty())
        av_dict_set(&out->metadata, key, value.toUtf8().constData(), 0);
}

} // namespace

void FfmpegMovieFrames::FrameFreer::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

FfmpegMovieFrames::~FfmpegMovieFrames()
{
    av_packet_free(&m_packet);
    avcodec_free_context(&m_decoder);
    avformat_close_input(&m_format);
}

std::unique_ptr<MovieFrames> FfmpegMovieFrames::open(const QString &path, QString &why)
{
    // The libraries' own notes on odd boxes and streams would only stand between the lines of
    // the tool's output; what matters comes back as `why`.
    av_log_set_level(AV_LOG_QUIET);
    std::unique_ptr<FfmpegMovieFrames> movie(new FfmpegMovieFrames);
    int result = avformat_open_input(&movie->m_format, QFile::encodeName(path).constData(), nullptr, nullptr);
    if (result < 0) {
        why = QStringLiteral("cannot be opened as a movie (%1)").arg(ffmpegError(result));
        return nullptr;
    }
    if ((result = avformat_find_stream_info(movie->m_format, nullptr)) < 0) {
        why = QStringLiteral("its streams cannot be read (%1)").arg(ffmpegError(result));
        return nullptr;
    }
    const AVCodec *codec = nullptr;
    movie->m_streamIndex = av_find_best_stream(movie->m_format, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (movie->m_streamIndex == AVERROR_STREAM_NOT_FOUND) {
        why = QStringLiteral("the movie has no video stream");
        return nullptr;
    }
    if (movie->m_streamIndex < 0 || !codec) {
        why = QStringLiteral("the movie's video codec cannot be decoded");
        return nullptr;
    }
    AVStream *stream = movie->m_format->streams[movie->m_streamIndex];
    movie->m_stream = stream;
    movie->m_decoder = avcodec_alloc_context3(codec);
    movie->m_packet = av_packet_alloc();
    if (!movie->m_decoder || !movie->m_packet || avcodec_parameters_to_context(movie->m_decoder, stream->codecpar) < 0
        || avcodec_open2(movie->m_decoder, codec, nullptr) < 0) {
        why = QStringLiteral("the movie's video codec cannot be decoded");
        return nullptr;
    }
    movie->m_start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
    if (stream->duration != AV_NOPTS_VALUE && stream->duration > 0)
        movie->m_duration = double(stream->duration) * av_q2d(stream->time_base);
    else if (movie->m_format->duration > 0)
        movie->m_duration = double(movie->m_format->duration) / AV_TIME_BASE;
    if (const uint8_t *matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr)) {
        const double angle = av_display_rotation_get(reinterpret_cast<const int32_t *>(matrix));
        movie->m_rotation = std::isnan(angle) ? 0.0 : angle;
    }
    return movie;
}

QList<double> FfmpegMovieFrames::chapterStarts() const
{
    const double movieStart = m_format->start_time != AV_NOPTS_VALUE ? double(m_format->start_time) / AV_TIME_BASE : 0.0;
    QList<double> starts;
    for (unsigned i = 0; i < m_format->nb_chapters; ++i) {
        const AVChapter *chapter = m_format->chapters[i];
        starts.append(std::max(0.0, double(chapter->start) * av_q2d(chapter->time_base) - movieStart));
    }
    return starts;
}

qint64 FfmpegMovieFrames::timestampOf(double seconds) const
{
    return m_start + qint64(std::floor((seconds + positionTolerance) / av_q2d(m_stream->time_base)));
}

bool FfmpegMovieFrames::seekBefore(qint64 timestamp)
{
    m_shown.reset();
    m_ahead.reset();
    m_inputEnded = false;
    if (av_seek_frame(m_format, m_streamIndex, std::max(timestamp, m_start), AVSEEK_FLAG_BACKWARD) < 0
        && av_seek_frame(m_format, m_streamIndex, m_start, AVSEEK_FLAG_BACKWARD | AVSEEK_FLAG_ANY) < 0)
        return false;
    avcodec_flush_buffers(m_decoder);
    m_lastPacketTimestamp = std::max(timestamp, m_start);
    return true;
}

bool FfmpegMovieFrames::canDecodeOnTo(qint64 timestamp) const
{
    const AVFrame *last = m_ahead ? m_ahead.get() : m_shown.get();
    if (!last || timestampOfFrame(*last) > timestamp || (m_shown && timestampOfFrame(*m_shown) > timestamp))
        return false;
    const int keyFrame = av_index_search_timestamp(m_stream, timestamp, AVSEEK_FLAG_BACKWARD);
    const AVIndexEntry *entry = keyFrame >= 0 ? avformat_index_get_entry(m_stream, keyFrame) : nullptr;
    return entry && entry->timestamp <= m_lastPacketTimestamp;
}

FfmpegMovieFrames::Decoded FfmpegMovieFrames::decodeNext(Frame &frame)
{
    frame.reset(av_frame_alloc());
    while (true) {
        const int received = avcodec_receive_frame(m_decoder, frame.get());
        if (received == 0)
            return Decoded::Frame;
        if (received == AVERROR_EOF)
            return Decoded::End;
        if (received != AVERROR(EAGAIN))
            return Decoded::Failed;
        if (m_inputEnded)
            return Decoded::End;
        const int read = av_read_frame(m_format, m_packet);
        if (read < 0) {
            m_inputEnded = true;
            avcodec_send_packet(m_decoder, nullptr); // drain the frames the decoder holds
            continue;
        }
        if (m_packet->stream_index == m_streamIndex) {
            if (m_packet->dts != AV_NOPTS_VALUE)
                m_lastPacketTimestamp = m_packet->dts;
            // A damaged packet is passed over; the frames after it may still decode.
            avcodec_send_packet(m_decoder, m_packet);
        }
        av_packet_unref(m_packet);
    }
}

FfmpegMovieFrames::Decoded FfmpegMovieFrames::advanceTo(qint64 timestamp)
{
    while (true) {
        if (m_ahead) {
            if (timestampOfFrame(*m_ahead) > timestamp)
                return Decoded::Frame;
            m_shown = std::move(m_ahead);
        }
        Frame next;
        const Decoded decoded = decodeNext(next);
        if (decoded != Decoded::Frame)
            return m_shown ? Decoded::Frame : decoded;
        if (timestampOfFrame(*next) > timestamp)
            m_ahead = std::move(next);
        else
            m_shown = std::move(next);
    }
}

QImage FfmpegMovieFrames::frameAt(double seconds, QString &why)
{
    if (seconds < 0 || (m_duration > 0 && seconds >= m_duration)) {
        why = QStringLiteral("the position %1 s lies past the movie's end (%2 s long)")
                  .arg(seconds, 0, 'f', 3)
                  .arg(m_duration, 0, 'f', 3);
        return {};
    }
    const qint64 target = timestampOf(seconds);
    if (!canDecodeOnTo(target)) {
        qint64 seekTarget = target;
        for (int attempt = 0;; ++attempt) {
            if (!seekBefore(seekTarget)) {
                why = QStringLiteral("the movie cannot be searched (a broken index)");
                return {};
            }
            if (advanceTo(target) != Decoded::Frame || m_shown || attempt == maxSeekRetries || seekTarget <= m_start)
                break;
            // The first picture after the seek comes after the position: the key frame before
            // it lies further back.
            seekTarget = std::min(seekTarget, timestampOfFrame(*m_ahead)) - 1;
        }
    } else {
        advanceTo(target);
    }
    const AVFrame *frame = m_shown ? m_shown.get() : m_ahead.get();
    if (!frame) {
        why = QStringLiteral("no frame could be decoded at %1 s").arg(seconds, 0, 'f', 3);
        return {};
    }
    QImage image = uprightImage(*frame);
    if (image.isNull())
        why = QStringLiteral("the frame's pixels cannot be converted");
    return image;
}

QImage FfmpegMovieFrames::uprightImage(const AVFrame &frame) const
{
    if (frame.width <= 0 || frame.height <= 0)
        return {};
    const AVPixelFormat format = withoutJpegRange(frame.format);
    SwsContext *scaler = sws_getContext(frame.width, frame.height, format, frame.width,
                                        frame.height, AV_PIX_FMT_RGB24, SWS_BICUBIC | SWS_ACCURATE_RND,
                                        nullptr, nullptr, nullptr);
    if (!scaler)
        return {};
    // The frame's own color matrix and range; movies that name none are BT.601 limited range.
    const int colorspace = frame.colorspace == AVCOL_SPC_UNSPECIFIED ? SWS_CS_DEFAULT : int(frame.colorspace);
    const bool fullRange = frame.color_range == AVCOL_RANGE_JPEG || format != AVPixelFormat(frame.format);
    const int *coefficients = sws_getCoefficients(colorspace);
    sws_setColorspaceDetails(scaler, coefficients, fullRange, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16,
                             1 << 16);
    QImage image(frame.width, frame.height, QImage::Format_RGB888);
    uint8_t *planes[4] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {int(image.bytesPerLine()), 0, 0, 0};
    sws_scale(scaler, frame.data, frame.linesize, 0, frame.height, planes, strides);
    sws_freeContext(scaler);
    if (m_rotation != 0.0)
        image = image.transformed(QTransform().rotate(-m_rotation));
    return image;
}

QString FfmpegMovieFrames::writeLivePhotoMovie(const QString &target, double seconds, double length,
                                               const LivePhotoMovieTags &tags)
{
    // The packets are read from where the frames stood; the next frame is sought afresh.
    m_shown.reset();
    m_ahead.reset();
    const double latestStart = std::max(0.0, m_duration - length);
    const double start = std::clamp(seconds - length / 2.0, 0.0, latestStart);
    const double end = m_duration > 0 ? std::min(m_duration, start + length) : start + length;

    AVFormatContext *outRaw = nullptr;
    const QByteArray path = QFile::encodeName(target);
    if (avformat_alloc_output_context2(&outRaw, nullptr, "mov", path.constData()) < 0)
        return QStringLiteral("the movie cannot be made");
    const std::unique_ptr<AVFormatContext, OutputCloser> out(outRaw);
    AVStream *video = avformat_new_stream(out.get(), nullptr);
    if (!video || avcodec_parameters_copy(video->codecpar, m_stream->codecpar) < 0)
        return QStringLiteral("the movie's video cannot be copied");
    video->codecpar->codec_tag = 0;
    video->time_base = m_stream->time_base;
    size_t matrixSize = 0;
    if (const uint8_t *matrix = av_stream_get_side_data(m_stream, AV_PKT_DATA_DISPLAYMATRIX, &matrixSize)) {
        if (uint8_t *copy = av_stream_new_side_data(video, AV_PKT_DATA_DISPLAYMATRIX, matrixSize))
            std::memcpy(copy, matrix, matrixSize);
    }
    setTag(out.get(), "com.apple.quicktime.content.identifier", tags.contentIdentifier);
    setTag(out.get(), "com.apple.quicktime.make", tags.make);
    setTag(out.get(), "com.apple.quicktime.model", tags.model);
    setTag(out.get(), "com.apple.quicktime.location.ISO6709", tags.location);
    setTag(out.get(), "com.apple.quicktime.creationdate", tags.creationDate);
    setTag(out.get(), "creation_time", tags.creationTime);

    int result = avio_open(&out->pb, path.constData(), AVIO_FLAG_WRITE);
    if (result < 0)
        return QStringLiteral("the movie cannot be written (%1)").arg(ffmpegError(result));
    AVDictionary *options = nullptr;
    // The tags go in as metadata keys (the muxer puts them in the user data's metadata box).
    av_dict_set(&options, "movflags", "use_metadata_tags", 0);
    result = avformat_write_header(out.get(), &options);
    av_dict_free(&options);
    if (result < 0)
        return QStringLiteral("the movie cannot be written (%1)").arg(ffmpegError(result));
    const double unit = av_q2d(m_stream->time_base);
    const QString why = copyPackets(out.get(), m_start + qint64(std::llround(start / unit)),
                                    m_start + qint64(std::llround(end / unit)));
    if (!why.isEmpty())
        return why;
    if ((result = av_write_trailer(out.get())) < 0)
        return QStringLiteral("the movie cannot be finished (%1)").arg(ffmpegError(result));
    return {};
}

QString FfmpegMovieFrames::copyPackets(AVFormatContext *out, qint64 start, qint64 end)
{
    if (av_seek_frame(m_format, m_streamIndex, start, AVSEEK_FLAG_BACKWARD) < 0)
        return QStringLiteral("the movie cannot be searched (a broken index)");
    int written = 0;
    while (true) {
        const int read = av_read_frame(m_format, m_packet);
        if (read < 0)
            break;
        const bool ours = m_packet->stream_index == m_streamIndex;
        // Packets come in decoding order: past the end by that order, none of them is shown.
        if (ours && m_packet->dts != AV_NOPTS_VALUE && m_packet->dts >= end) {
            av_packet_unref(m_packet);
            break;
        }
        if (!ours || (m_packet->pts != AV_NOPTS_VALUE && m_packet->pts >= end)) {
            av_packet_unref(m_packet);
            continue;
        }
        m_packet->stream_index = 0;
        if (m_packet->pts != AV_NOPTS_VALUE)
            m_packet->pts -= start;
        if (m_packet->dts != AV_NOPTS_VALUE)
            m_packet->dts -= start;
        m_packet->pos = -1;
        // The muxer chose its own time scale when it wrote the header.
        av_packet_rescale_ts(m_packet, m_stream->time_base, out->streams[0]->time_base);
        const int result = av_interleaved_write_frame(out, m_packet);
        av_packet_unref(m_packet);
        if (result < 0)
            return QStringLiteral("the movie cannot be written (%1)").arg(ffmpegError(result));
        ++written;
    }
    return written > 0 ? QString() : QStringLiteral("the movie has no frames to copy there");
}

} // namespace orv
