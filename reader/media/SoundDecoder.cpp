// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundDecoder.h"

namespace lumbra::reader {

std::unique_ptr<SoundDecoder> SoundDecoder::open(MediaFile& media, int rate) {
    AVStream* const stream = media.sound();
    Owned<AVCodecContext> codec = decoderOf(stream);
    if (!codec || avcodec_open2(codec.get(), nullptr, nullptr) != 0)
        return nullptr;
    media.keepOnly(stream);
    return std::unique_ptr<SoundDecoder>(new SoundDecoder(media, stream, std::move(codec), rate));
}

SoundDecoder::SoundDecoder(MediaFile& media, AVStream* stream, Owned<AVCodecContext> codec, int rate)
    : m_media(media),
      m_stream(stream),
      m_codec(std::move(codec)),
      m_packet(av_packet_alloc()),
      m_frame(av_frame_alloc()),
      m_rate(rate) {}

std::span<const qint16> SoundDecoder::next() {
    while (!m_atEnd) {
        int count = 0;
        if (!decode()) {
            m_atEnd = true;
            count = m_converter ? convert(nullptr) : 0;
        } else if (fitsConverter() || makeConverter()) {
            count = convert(m_frame.get());
        }
        if (count > 0)
            return {m_samples.data(), size_t(count)};
    }
    return {};
}

bool SoundDecoder::decode() {
    while (!m_media.isOver()) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received == 0)
            return true;
        if (received == AVERROR_EOF)
            return false;
        if (received != AVERROR(EAGAIN))
            continue; // broken: perhaps the next is not
        if (m_media.read(m_stream, m_packet.get()))
            avcodec_send_packet(m_codec.get(), m_packet.get()); // a broken packet yields no sound
        else if (avcodec_send_packet(m_codec.get(), nullptr) != 0)
            return false;
    }
    return false;
}

bool SoundDecoder::fitsConverter() const {
    return m_converter && m_frame->format == m_format && m_frame->ch_layout.nb_channels == m_channels
           && m_frame->sample_rate == m_sourceRate;
}

bool SoundDecoder::makeConverter() {
    m_format = m_frame->format;
    m_channels = m_frame->ch_layout.nb_channels;
    m_sourceRate = m_frame->sample_rate;
    m_converter.reset();      // whatever fails below: it doesn't fit what was just noted
    AVChannelLayout layout{}; // copying into it first gives back what it holds
    if (m_frame->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&layout, m_channels);
    else if (av_channel_layout_copy(&layout, &m_frame->ch_layout) != 0)
        return false;
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext* converter = nullptr;
    swr_alloc_set_opts2(&converter, &mono, AV_SAMPLE_FMT_S16, m_rate, &layout, AVSampleFormat(m_format), m_sourceRate,
                        0, nullptr);
    av_channel_layout_uninit(&layout);
    m_converter.reset(converter);
    if (!converter || swr_init(converter) != 0)
        m_converter.reset();
    return m_converter != nullptr;
}

// How many samples came of the frame, or, without one, were still on their way.
int SoundDecoder::convert(const AVFrame* frame) {
    const int given = frame ? frame->nb_samples : 0;
    const int most = swr_get_out_samples(m_converter.get(), given);
    if (most <= 0)
        return 0;
    m_samples.resize(size_t(most));
    auto* out = reinterpret_cast<uint8_t*>(m_samples.data());
    const auto* const* in = frame ? const_cast<const uint8_t**>(frame->extended_data) : nullptr;
    return swr_convert(m_converter.get(), &out, most, const_cast<const uint8_t**>(in), given);
}

} // namespace lumbra::reader
