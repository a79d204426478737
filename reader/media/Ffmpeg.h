// FFmpeg's headers, which are C and not free of warnings, and owners for what they make.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}
#pragma GCC diagnostic pop

#include <memory>

namespace lumbra::reader {

struct FreeFfmpeg {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
    void operator()(SwrContext* context) const { swr_free(&context); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, FreeFfmpeg>;

// A decoder for the stream, which is still to be opened; null without a stream or where it can't be decoded.
inline Owned<AVCodecContext> decoderOf(const AVStream* stream) {
    const AVCodec* const decoder = stream ? avcodec_find_decoder(stream->codecpar->codec_id) : nullptr;
    if (!decoder)
        return nullptr;
    Owned<AVCodecContext> codec(avcodec_alloc_context3(decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0)
        return nullptr;
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 1; // more would hold pictures back, and other readers work beside
    return codec;
}

} // namespace lumbra::reader
