#include "media/video_encoder.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "media/video_writer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace brindle::media {

struct VideoEncoder::State {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    AVStream* stream = nullptr;
    SwsContext* sws = nullptr;
    AVFrame* frame = nullptr;
    AVPacket* packet = nullptr;
    int width = 0;   // of the pictures
    int height = 0;
    std::int64_t next = 0;
    std::vector<std::uint8_t> rows;  // top-down BGR at the coded size

    ~State() {
        sws_freeContext(sws);
        av_frame_free(&frame);
        av_packet_free(&packet);
        avcodec_free_context(&codec);
        if (format) {
            if (format->pb) avio_closep(&format->pb);
            avformat_free_context(format);
        }
    }
};

namespace {

std::string averror(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

const AVCodec* chooseEncoder(VideoKind kind) {
    if (kind == VideoKind::Avi) return avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    if (const AVCodec* h264 = avcodec_find_encoder(AV_CODEC_ID_H264)) return h264;
    return avcodec_find_encoder(AV_CODEC_ID_MPEG4);
}

// Sets the codec's size, rate, pixel format and quality. Motion JPEG and
// MPEG-4 part 2 take a fixed small quantiser; H.264 a constant quality.
void configure(AVCodecContext* codec, VideoKind kind, int width, int height, int fps) {
    const bool mjpeg = codec->codec_id == AV_CODEC_ID_MJPEG;
    // 4:2:0 in H.264 and MPEG-4 needs even sides; MJPEG takes any.
    codec->width = mjpeg ? width : (width + 1) & ~1;
    codec->height = mjpeg ? height : (height + 1) & ~1;
    codec->time_base = AVRational{1, fps};
    codec->framerate = AVRational{fps, 1};
    codec->pix_fmt = mjpeg ? AV_PIX_FMT_YUVJ420P : AV_PIX_FMT_YUV420P;
    codec->gop_size = kind == VideoKind::Avi ? 1 : fps;
    if (codec->codec_id == AV_CODEC_ID_H264) {
        av_opt_set(codec->priv_data, "crf", "18", 0);
        av_opt_set(codec->priv_data, "preset", "medium", 0);
    } else {
        codec->flags |= AV_CODEC_FLAG_QSCALE;
        codec->global_quality = FF_QP2LAMBDA * 2;
    }
}

}  // namespace

VideoEncoder::VideoEncoder() : state_(std::make_unique<State>()) {}
VideoEncoder::~VideoEncoder() = default;

std::string VideoEncoder::codecName() const {
    return state_->codec && state_->codec->codec ? state_->codec->codec->name : "";
}

bool VideoEncoder::open(const std::string& path, VideoKind kind, int width, int height, int fps,
                        std::string& error) {
    State& s = *state_;
    // The library's notes (encoder statistics, format hints) are not for the user.
    av_log_set_level(AV_LOG_ERROR);
    const AVCodec* encoder = chooseEncoder(kind);
    if (!encoder) {
        error = "no video encoder";
        return false;
    }
    int rc = avformat_alloc_output_context2(&s.format, nullptr,
                                            kind == VideoKind::Avi ? "avi" : "mp4", path.c_str());
    if (rc < 0 || !s.format) {
        error = "container: " + averror(rc);
        return false;
    }
    s.stream = avformat_new_stream(s.format, nullptr);
    s.codec = avcodec_alloc_context3(encoder);
    s.frame = av_frame_alloc();
    s.packet = av_packet_alloc();
    if (!s.stream || !s.codec || !s.frame || !s.packet) {
        error = "out of memory";
        return false;
    }
    configure(s.codec, kind, width, height, fps);
    if (s.format->oformat->flags & AVFMT_GLOBALHEADER) s.codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if ((rc = avcodec_open2(s.codec, encoder, nullptr)) < 0) {
        error = "encoder: " + averror(rc);
        return false;
    }
    avcodec_parameters_from_context(s.stream->codecpar, s.codec);
    s.stream->time_base = s.codec->time_base;
    s.stream->avg_frame_rate = AVRational{fps, 1};
    s.stream->r_frame_rate = AVRational{fps, 1};

    s.frame->format = s.codec->pix_fmt;
    s.frame->width = s.codec->width;
    s.frame->height = s.codec->height;
    if ((rc = av_frame_get_buffer(s.frame, 0)) < 0) {
        error = "frame: " + averror(rc);
        return false;
    }
    s.sws = sws_getContext(s.codec->width, s.codec->height, AV_PIX_FMT_BGR24, s.codec->width,
                           s.codec->height, s.codec->pix_fmt, SWS_BICUBIC, nullptr, nullptr, nullptr);
    if (!s.sws) {
        error = "colour conversion";
        return false;
    }
    s.width = width;
    s.height = height;
    s.rows.assign(static_cast<std::size_t>(s.codec->width) * 3 * s.codec->height, 0);
    if ((rc = avio_open(&s.format->pb, path.c_str(), AVIO_FLAG_WRITE)) < 0) {
        error = "open: " + averror(rc);
        return false;
    }
    if ((rc = avformat_write_header(s.format, nullptr)) < 0) {
        error = "header: " + averror(rc);
        return false;
    }
    return true;
}

namespace {

// Sends `frame` (nullptr drains) and writes every packet that comes out.
bool encode(VideoEncoder::State& s, AVFrame* frame, std::string& error) {
    int rc = avcodec_send_frame(s.codec, frame);
    if (rc < 0) {
        error = "encode: " + averror(rc);
        return false;
    }
    while ((rc = avcodec_receive_packet(s.codec, s.packet)) >= 0) {
        av_packet_rescale_ts(s.packet, s.codec->time_base, s.stream->time_base);
        s.packet->stream_index = s.stream->index;
        rc = av_interleaved_write_frame(s.format, s.packet);
        if (rc < 0) {
            error = "write: " + averror(rc);
            return false;
        }
    }
    if (rc == AVERROR(EAGAIN) || rc == AVERROR_EOF) return true;
    error = "encode: " + averror(rc);
    return false;
}

// Copies the bottom-up section into top-down rows of the coded size,
// repeating the last column and row where the coded size is larger.
void fillRows(VideoEncoder::State& s, const cDIBSection& dib) {
    const int codedWidth = s.codec->width;
    const std::size_t stride = static_cast<std::size_t>(codedWidth) * 3;
    for (int y = 0; y < s.codec->height; ++y) {
        const int from = std::min(y, s.height - 1);
        const std::uint8_t* src = dib.DIBSectionBitsPtr() +
                                  static_cast<std::size_t>(s.height - 1 - from) * dib.BytesPerScanLine();
        std::uint8_t* dst = s.rows.data() + stride * y;
        std::memcpy(dst, src, static_cast<std::size_t>(s.width) * 3);
        for (int x = s.width; x < codedWidth; ++x) std::memcpy(dst + x * 3, src + (s.width - 1) * 3, 3);
    }
}

}  // namespace

bool VideoEncoder::addFrame(const cDIBSection& dib, std::string& error) {
    State& s = *state_;
    if (dib.Width() != s.width || dib.Height() != s.height) {
        error = "frame size";
        return false;
    }
    const int rc = av_frame_make_writable(s.frame);
    if (rc < 0) {
        error = "frame: " + averror(rc);
        return false;
    }
    fillRows(s, dib);
    const std::uint8_t* src[1] = {s.rows.data()};
    const int srcStride[1] = {s.codec->width * 3};
    sws_scale(s.sws, src, srcStride, 0, s.codec->height, s.frame->data, s.frame->linesize);
    s.frame->pts = s.next++;
    s.frame->quality = s.codec->global_quality;
    return encode(s, s.frame, error);
}

bool VideoEncoder::finish(std::string& error) {
    State& s = *state_;
    if (!encode(s, nullptr, error)) return false;
    int rc = av_write_trailer(s.format);
    if (rc < 0) {
        error = "trailer: " + averror(rc);
        return false;
    }
    if ((rc = avio_closep(&s.format->pb)) < 0) {
        error = "close: " + averror(rc);
        return false;
    }
    return true;
}

}  // namespace brindle::media
