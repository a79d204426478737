// SPDX-License-Identifier: GPL-3.0-or-later
#include "VideoDecoder.h"

#include "reader/pictures/Makers.h"

#include <QTransform>

#include <cmath>

namespace lumbra::reader {

namespace {

int quarterTurns(AVStream* stream) {
    const uint8_t* const matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (!matrix)
        return 0;
    const double anticlockwise = av_display_rotation_get(reinterpret_cast<const int32_t*>(matrix));
    if (std::isnan(anticlockwise))
        return 0;
    return int(std::lround(-anticlockwise / 90) % 4 + 4) % 4;
}

// Files without a word on their colours follow the habit of their size.
const int* colourTable(const AVFrame& frame) {
    switch (frame.colorspace) {
    case AVCOL_SPC_UNSPECIFIED:
    case AVCOL_SPC_RGB:
        return sws_getCoefficients(frame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601);
    default:
        return sws_getCoefficients(frame.colorspace);
    }
}

bool isFullRange(const AVFrame& frame) {
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

QImage turned(const QImage& image, int quarterTurns) {
    return quarterTurns == 0 ? image : image.transformed(QTransform().rotate(90.0 * quarterTurns));
}

} // namespace

std::unique_ptr<VideoDecoder> VideoDecoder::open(MediaFile& media) {
    AVStream* const stream = media.pictures();
    const AVCodec* const decoder = stream ? avcodec_find_decoder(stream->codecpar->codec_id) : nullptr;
    if (!decoder)
        return nullptr;
    Owned<AVCodecContext> codec(avcodec_alloc_context3(decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0)
        return nullptr;
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 1; // more would hold pictures back, and other readers work beside
    codec->skip_loop_filter = AVDISCARD_NONREF;
    if (avcodec_open2(codec.get(), decoder, nullptr) != 0)
        return nullptr;
    return std::unique_ptr<VideoDecoder>(new VideoDecoder(media, stream, std::move(codec)));
}

VideoDecoder::VideoDecoder(MediaFile& media, AVStream* stream, Owned<AVCodecContext> codec)
    : m_media(media),
      m_stream(stream),
      m_codec(std::move(codec)),
      m_packet(av_packet_alloc()),
      m_frame(av_frame_alloc()),
      m_turns(quarterTurns(stream)) {}

bool VideoDecoder::seek(double seconds) {
    if (!m_media.seek(m_stream, seconds))
        return false;
    avcodec_flush_buffers(m_codec.get());
    m_atEnd = false;
    return true;
}

bool VideoDecoder::advance(double seconds) {
    // Pictures that no other builds on need not be decoded on the way. They are from a little before the time on, since
    // packets come in another order than pictures.
    constexpr double reordering = 0.5;
    while (true) {
        const double reached = m_packet->pts == AV_NOPTS_VALUE
                                   ? seconds
                                   : double(m_packet->pts) * av_q2d(m_stream->time_base) - m_media.start();
        m_codec->skip_frame = reached < seconds - reordering ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
        if (!decodeNext())
            return false;
        if (time() >= seconds)
            return true;
    }
}

bool VideoDecoder::decodeNext() {
    while (!m_media.isTimeOver()) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received == 0)
            return m_frame->width > 0 && m_frame->height > 0;
        if (received == AVERROR_EOF || m_atEnd)
            return false;
        if (received != AVERROR(EAGAIN))
            continue; // broken: perhaps the next is not
        if (m_media.read(m_stream, m_packet.get())) {
            avcodec_send_packet(m_codec.get(), m_packet.get()); // a broken packet yields no picture
        } else {
            avcodec_send_packet(m_codec.get(), nullptr);
            m_atEnd = true;
        }
    }
    return false;
}

double VideoDecoder::workPerSecond() const {
    const double pictures = m_stream->avg_frame_rate.den > 0 ? av_q2d(m_stream->avg_frame_rate) : 30;
    return pictures * m_stream->codecpar->width * m_stream->codecpar->height / 1e6;
}

double VideoDecoder::time() const {
    const int64_t stamp = m_frame->best_effort_timestamp;
    return stamp == AV_NOPTS_VALUE ? 0 : double(stamp) * av_q2d(m_stream->time_base) - m_media.start();
}

QImage VideoDecoder::picture(QSize box) {
    const AVFrame& frame = *m_frame;
    const AVPixFmtDescriptor* const format = av_pix_fmt_desc_get(AVPixelFormat(frame.format));
    if (!format || (format->flags & AV_PIX_FMT_FLAG_HWACCEL))
        return {};
    const AVRational aspect = frame.sample_aspect_ratio;
    const double stretch = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1;
    const QSize shown = QSizeF(frame.width * stretch, frame.height).toSize().boundedTo({largestSide, largestSide});
    const QSize size = fittedWithoutEnlarging(shown, m_turns % 2 ? box.transposed() : box);

    const bool hasAlpha = format->flags & AV_PIX_FMT_FLAG_ALPHA;
    const Owned<SwsContext> scaler(sws_getContext(frame.width, frame.height, AVPixelFormat(frame.format), size.width(),
                                                  size.height(), hasAlpha ? AV_PIX_FMT_RGB32 : AV_PIX_FMT_0RGB32,
                                                  SWS_AREA, nullptr, nullptr, nullptr));
    if (!scaler)
        return {};
    sws_setColorspaceDetails(scaler.get(), colourTable(frame), isFullRange(frame), sws_getCoefficients(SWS_CS_DEFAULT),
                             1, 0, 1 << 16, 1 << 16);
    // The scaler writes whole vectors, beyond a row's end too.
    constexpr int vector = 64;
    const int row = (size.width() * 4 + vector - 1) / vector * vector;
    QByteArray pixels(qsizetype(row) * (size.height() + 1), Qt::Uninitialized);
    uint8_t* const rows[] = {reinterpret_cast<uint8_t*>(pixels.data())};
    const int strides[] = {row};
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides) != size.height())
        return {};
    const QImage view(reinterpret_cast<const uchar*>(pixels.constData()), size.width(), size.height(), row,
                      hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return turned(view.copy(), m_turns);
}

} // namespace lumbra::reader
