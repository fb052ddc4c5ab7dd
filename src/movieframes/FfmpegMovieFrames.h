#pragma once

#include "export/MovieFrames.h"

#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct AVStream;

namespace orv {

// A movie's frames through FFmpeg's libraries, for stills: one open for every position asked.
// A position is found by seeking to the key frame before it and decoding forward to it; a later
// position that the decoding can reach without passing a further key frame goes on from where
// the last one stopped, so positions asked in order cost one pass over each group of pictures.
// Pixels leave in RGB, in the frame's own color matrix and range, turned upright by the
// display matrix. Not thread-safe; one reader per thread.
class FfmpegMovieFrames : public MovieFrames
{
public:
    ~FfmpegMovieFrames() override;

    static std::unique_ptr<MovieFrames> open(const QString &path, QString &why);

    double duration() const override { return m_duration; }
    double displayRotation() const override { return m_rotation; }
    QList<double> chapterStarts() const override;
    QImage frameAt(double seconds, QString &why) override;
    QString writeLivePhotoMovie(const QString &target, double seconds, double length,
                                const LivePhotoMovieTags &tags) override;

private:
    FfmpegMovieFrames() = default;
    struct FrameFreer
    {
        void operator()(AVFrame *frame) const;
    };
    using Frame = std::unique_ptr<AVFrame, FrameFreer>;
    enum class Decoded { Frame, End, Failed };

    // The stream time base's timestamp of a position.
    qint64 timestampOf(double seconds) const;
    bool seekBefore(qint64 timestamp);
    // Whether decoding on from where the last position stopped reaches `timestamp` before a
    // seek would.
    bool canDecodeOnTo(qint64 timestamp) const;
    Decoded decodeNext(Frame &frame);
    // Decodes forward until the frame after `timestamp`; answers the one shown at it.
    Decoded advanceTo(qint64 timestamp);
    QImage uprightImage(const AVFrame &frame) const;
    // Copies the video packets from the key frame before `start` to those shown before `end`
    // (stream time base) into `out`, moved so that `start` comes at 0.
    QString copyPackets(AVFormatContext *out, qint64 start, qint64 end);

    AVFormatContext *m_format = nullptr;
    AVCodecContext *m_decoder = nullptr;
    AVPacket *m_packet = nullptr;
    AVStream *m_stream = nullptr;
    int m_streamIndex = -1;
    qint64 m_start = 0;
    double m_duration = 0.0;
    double m_rotation = 0.0;
    bool m_inputEnded = false;
    qint64 m_lastPacketTimestamp = 0;
    // The last frame at or before the last position asked, and the first one after it.
    Frame m_shown, m_ahead;
};

} // namespace orv
