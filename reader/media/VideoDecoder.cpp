// SPDX-License-Identifier: GPL-3.0-or-later
#include "VideoDecoder.h"

#include "reader/pictures/Makers.h"

#include <QTransform>

#include <algorithm>
#include <cmath>
#include <utility>

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
    Owned<AVCodecContext> codec = decoderOf(stream);
    if (!codec)
        return nullptr;
    codec->skip_loop_filter = AVDISCARD_NONREF;
    codec->max_pixels = pixelsInMemory;
    if (avcodec_open2(codec.get(), nullptr, nullptr) != 0)
        return nullptr;
    media.keepOnly(stream);
    return std::unique_ptr<VideoDecoder>(new VideoDecoder(media, stream, std::move(codec)));
}

VideoDecoder::VideoDecoder(MediaFile& media, AVStream* stream, Owned<AVCodecContext> codec)
    : m_media(media),
      m_stream(stream),
      m_codec(std::move(codec)),
      m_packet(av_packet_alloc()),
      m_frame(av_frame_alloc()),
      m_next(av_frame_alloc()),
      m_turns(quarterTurns(stream)) {}

bool VideoDecoder::seek(double seconds) {
    if (!m_media.seek(m_stream, seconds))
        return false;
    avcodec_flush_buffers(m_codec.get());
    m_hasFrame = m_hasNext = m_atEnd = false;
    m_wantsKeyFrame = true;
    return true;
}

bool VideoDecoder::advance(double seconds) {
    do {
        if (!lookAhead(seconds))
            return false;
        takeNext();
    } while (time() < seconds);
    return true;
}

bool VideoDecoder::show(double seconds, double tolerance) {
    const double from = std::max(0.0, seconds - tolerance), until = seconds + tolerance;
    if (isSeen(from, until))
        return true;
    if (!canGoOnTo(seconds)) {
        if (!seek(seconds) && !seek(0))
            return false;
        if (showKeyFrame(seconds, from, until))
            return true;
    }
    // Without an index, the place sought may be late, or in the midst of pictures that build on earlier ones. With one,
    // the last entry may be an empty one.
    Outcome outcome = decodeUntil(from, until);
    const double furthest = m_media.hasIndex() ? 1 : std::max(1.0, seconds * 4);
    for (double back = 1; outcome == Outcome::passed && back <= furthest; back *= 4) {
        if (!seek(std::max(0.0, seconds - back)))
            return false;
        outcome = decodeUntil(from, until);
    }
    return outcome == Outcome::found;
}

// A key frame costs one picture's work, wherever it is. Leaves the decoder where it was sought to if there is none.
bool VideoDecoder::showKeyFrame(double seconds, double from, double until) {
    const double before = keyFrameBefore(seconds), after = keyFrameFrom(seconds);
    const bool isBeforeNear = before >= from, isAfterNear = after >= seconds && after <= until;
    if (!isBeforeNear && !isAfterNear)
        return false;
    const bool isAfterNearer = isAfterNear && (!isBeforeNear || after - seconds < seconds - before);
    if (isAfterNearer && !seek(after))
        return false;
    // The index goes by the order of decoding, which is a little ahead of the pictures' own times.
    if (decodeKeyFrame() && isSeen(from, until))
        return true;
    seek(seconds);
    return false;
}

// Decodes up to the first picture that is seen between the two times.
VideoDecoder::Outcome VideoDecoder::decodeUntil(double from, double until) {
    while (lookAhead(from)) {
        if (timeOf(*m_next) > until)
            return isSeen(from, until) ? Outcome::found : Outcome::passed;
        takeNext();
        if (time() >= from)
            return Outcome::found;
    }
    if (isSeen(from, until))
        return Outcome::found;
    return m_hasFrame ? Outcome::ended : Outcome::passed; // there may be some before the place that was sought
}

// Nothing is gained by seeking: what would be sought lies behind already.
bool VideoDecoder::canGoOnTo(double seconds) const {
    constexpr double withoutIndex = 1; // second
    if (!m_hasFrame || m_atEnd || time() > seconds)
        return false;
    const double key = keyFrameBefore(seconds);
    return key >= 0 ? key <= time() : seconds - time() < withoutIndex;
}

// Whether the last picture is seen at some moment between the two times.
bool VideoDecoder::isSeen(double from, double until) const {
    if (!m_hasFrame || time() > until)
        return false;
    const double end = m_hasNext ? timeOf(*m_next) : time() + pictureLength(m_frame->pkt_duration);
    return time() >= from || end > from;
}

// Right after seeking: the key frame alone, without the pictures that the decoder would like to see after it.
bool VideoDecoder::decodeKeyFrame() {
    do {
        if (!m_media.read(m_stream, m_packet.get()))
            return false;
    } while (!(m_packet->flags & AV_PKT_FLAG_KEY));
    m_codec->skip_frame = AVDISCARD_DEFAULT;
    avcodec_send_packet(m_codec.get(), m_packet.get());
    avcodec_send_packet(m_codec.get(), nullptr);
    m_atEnd = true;
    m_hasFrame = avcodec_receive_frame(m_codec.get(), m_frame.get()) == 0;
    return m_hasFrame;
}

// Makes sure that the picture after the last is decoded. Some that are over before `from` may be left out.
bool VideoDecoder::lookAhead(double from) {
    if (!m_hasNext)
        m_hasNext = decode(m_next.get(), from);
    return m_hasNext;
}

void VideoDecoder::takeNext() {
    std::swap(m_frame, m_next);
    m_hasFrame = true;
    m_hasNext = false;
}

bool VideoDecoder::decode(AVFrame* frame, double from) {
    while (!m_media.isOver()) {
        const int received = avcodec_receive_frame(m_codec.get(), frame);
        if (received == 0)
            return frame->width > 0 && frame->height > 0;
        if (received == AVERROR_EOF || m_atEnd)
            return false;
        if (received != AVERROR(EAGAIN))
            continue; // broken: perhaps the next is not
        if (!m_media.read(m_stream, m_packet.get())) {
            avcodec_send_packet(m_codec.get(), nullptr);
            m_atEnd = true;
            continue;
        }
        if (m_wantsKeyFrame && !(m_packet->flags & AV_PKT_FLAG_KEY))
            continue;
        m_wantsKeyFrame = false;
        m_codec->skip_frame = isWorthNothingBefore(from) ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
        avcodec_send_packet(m_codec.get(), m_packet.get()); // a broken packet yields no picture
    }
    return false;
}

// The packet's picture is over by then: it need only be decoded if others build on it.
bool VideoDecoder::isWorthNothingBefore(double from) const {
    if (m_packet->pts == AV_NOPTS_VALUE)
        return false;
    const double begin = double(m_packet->pts) * av_q2d(m_stream->time_base) - m_media.start();
    return begin + pictureLength(m_packet->duration) < from;
}

// Seconds, from what the container tells of the picture, in its own units; its habit where it tells nothing.
double VideoDecoder::pictureLength(int64_t told) const {
    if (told > 0)
        return double(told) * av_q2d(m_stream->time_base);
    return m_stream->avg_frame_rate.num > 0 ? av_q2d(av_inv_q(m_stream->avg_frame_rate)) : 0.5;
}

double VideoDecoder::workPerSecond() const {
    const double pictures = m_stream->avg_frame_rate.den > 0 ? av_q2d(m_stream->avg_frame_rate) : 30;
    return pictures * m_stream->codecpar->width * m_stream->codecpar->height / 1e6;
}

double VideoDecoder::time() const {
    return timeOf(*m_frame);
}

double VideoDecoder::timeOf(const AVFrame& frame) const {
    const int64_t stamp = frame.best_effort_timestamp;
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
    m_scaler.reset(sws_getCachedContext(m_scaler.release(), frame.width, frame.height, AVPixelFormat(frame.format),
                                        size.width(), size.height(), hasAlpha ? AV_PIX_FMT_RGB32 : AV_PIX_FMT_0RGB32,
                                        SWS_AREA, nullptr, nullptr, nullptr));
    if (!m_scaler)
        return {};
    sws_setColorspaceDetails(m_scaler.get(), colourTable(frame), isFullRange(frame),
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    // The scaler writes whole vectors, beyond a row's end too.
    constexpr int vector = 64;
    const int row = (size.width() * 4 + vector - 1) / vector * vector;
    QByteArray pixels(qsizetype(row) * (size.height() + 1), Qt::Uninitialized);
    uint8_t* const rows[] = {reinterpret_cast<uint8_t*>(pixels.data())};
    const int strides[] = {row};
    if (sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides) != size.height())
        return {};
    const QImage view(reinterpret_cast<const uchar*>(pixels.constData()), size.width(), size.height(), row,
                      hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return turned(view.copy(), m_turns);
}

} // namespace lumbra::reader
