// SPDX-License-Identifier: GPL-3.0-or-later
#include "SingleFrame.h"

#include "Ffmpeg.h"
#include "reader/pictures/Makers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumbra::reader {

namespace {

constexpr qint64 fileLimit = 256 * 1024 * 1024; // bytes

AVCodecID codecOf(const OpenedFile& file) {
    if (file.head().startsWith("\x76\x2f\x31\x01"))
        return AV_CODEC_ID_EXR;
    if (file.head().startsWith("qoif"))
        return AV_CODEC_ID_QOI;
    return file.extension() == "pcx" ? AV_CODEC_ID_PCX : AV_CODEC_ID_TARGA;
}

Owned<AVFrame> decoded(OpenedFile& file) {
    const AVCodec* const decoder = avcodec_find_decoder(codecOf(file));
    if (!decoder || file.size() > fileLimit)
        return nullptr;
    const Owned<AVCodecContext> codec(avcodec_alloc_context3(decoder));
    const Owned<AVPacket> packet(av_packet_alloc());
    Owned<AVFrame> frame(av_frame_alloc());
    if (!codec || !packet || !frame)
        return nullptr;
    codec->thread_count = 1;
    codec->max_pixels = pixelsInMemory;
    if (avcodec_open2(codec.get(), decoder, nullptr) != 0)
        return nullptr;
    const QByteArray bytes = file.bytes(fileLimit);
    // Brings the padding that decoders read beyond the end.
    if (av_new_packet(packet.get(), int(bytes.size())) != 0)
        return nullptr;
    std::ranges::copy(bytes, packet->data);
    if (avcodec_send_packet(codec.get(), packet.get()) != 0)
        return nullptr;
    avcodec_send_packet(codec.get(), nullptr);
    return avcodec_receive_frame(codec.get(), frame.get()) == 0 ? std::move(frame) : nullptr;
}

QImage unscaled(const AVFrame& frame) {
    const auto format = AVPixelFormat(frame.format);
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(format);
    // Palettes may hold clear colours; those that hold none cost nothing but the room.
    const bool hasAlpha = description && (description->flags & (AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_PAL));
    QImage image(frame.width, frame.height, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const Owned<SwsContext> context(sws_getContext(frame.width, frame.height, format, frame.width, frame.height,
                                                   hasAlpha ? AV_PIX_FMT_BGRA : AV_PIX_FMT_BGR0, SWS_POINT, nullptr,
                                                   nullptr, nullptr));
    if (!context || image.isNull())
        return {};
    uint8_t* const planes[] = {image.bits()};
    const int strides[] = {int(image.bytesPerLine())};
    sws_scale(context.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    return image;
}

// Light in numbers without an end: what is brighter than white is white.
class LinearLight {
public:
    explicit LinearLight(const AVFrame& frame)
        : m_frame(frame),
          m_hasAlpha(frame.format == AV_PIX_FMT_GBRAPF32),
          m_isGrey(frame.format == AV_PIX_FMT_GRAYF32) {}

    static bool is(const AVFrame& frame) {
        constexpr std::array formats{AV_PIX_FMT_GBRPF32, AV_PIX_FMT_GBRAPF32, AV_PIX_FMT_GRAYF32};
        return std::ranges::find(formats, AVPixelFormat(frame.format)) != formats.end();
    }

    // Means of the light itself, not of its code on the screen, as a lens would take them.
    QImage reduced(QSize size) const {
        QImage image(size, m_hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < size.width(); ++x)
                row[x] = pixel(share(x, size.width(), m_frame.width), share(y, size.height(), m_frame.height));
        }
        return image;
    }

private:
    struct Span {
        int from, to;
    };

    static Span share(int at, int of, int whole) {
        const int from = int(qint64(at) * whole / of);
        return {from, std::max(from + 1, int(qint64(at + 1) * whole / of))};
    }

    static int onScreen(float light) {
        const float code = light <= 0.0031308F ? 12.92F * light : 1.055F * std::pow(light, 1 / 2.4F) - 0.055F;
        return int(std::lround(std::clamp(code, 0.0F, 1.0F) * 255));
    }

    float mean(int plane, Span across, Span down) const {
        float sum = 0;
        for (int y = down.from; y < down.to; ++y) {
            const auto* const row =
                reinterpret_cast<const float*>(m_frame.data[plane] + ptrdiff_t(y) * m_frame.linesize[plane]);
            for (int x = across.from; x < across.to; ++x)
                sum += std::isfinite(row[x]) ? std::clamp(row[x], 0.0F, 1.0F) : 0;
        }
        return sum / float((across.to - across.from) * (down.to - down.from));
    }

    QRgb pixel(Span across, Span down) const {
        constexpr int green = 0, blue = 1, red = 2, alpha = 3; // the order of planes
        const int g = onScreen(mean(green, across, down));
        if (m_isGrey)
            return qRgb(g, g, g);
        const QRgb colour = qRgb(onScreen(mean(red, across, down)), g, onScreen(mean(blue, across, down)));
        if (!m_hasAlpha)
            return colour;
        const int a = int(std::lround(mean(alpha, across, down) * 255));
        // The light is weighted by it already; its code is bounded by it to stay so.
        return qRgba(std::min(qRed(colour), a), std::min(qGreen(colour), a), std::min(qBlue(colour), a), a);
    }

    const AVFrame& m_frame;
    bool m_hasAlpha;
    bool m_isGrey;
};

} // namespace

QImage framePicture(OpenedFile& file, QSize box) {
    av_log_set_level(AV_LOG_QUIET);
    const Owned<AVFrame> frame = decoded(file);
    if (!frame || frame->width <= 0 || frame->height <= 0)
        return {};
    const QSize size = fittedWithoutEnlarging(QSize(frame->width, frame->height), box);
    if (LinearLight::is(*frame))
        return LinearLight(*frame).reduced(size);
    const QImage image = unscaled(*frame);
    return image.isNull() ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace lumbra::reader
