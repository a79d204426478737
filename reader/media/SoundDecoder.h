// Decodes a file's first sound into one channel of samples of 16 bits, whatever it was recorded as.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Ffmpeg.h"
#include "MediaFile.h"

#include <span>
#include <vector>

namespace lumbra::reader {

class SoundDecoder {
public:
    // Nothing when the file has no sound that can be decoded. `media` must live as long as the result. `rate` is in
    // samples a second.
    static std::unique_ptr<SoundDecoder> open(MediaFile& media, int rate);

    // The next samples, valid until the next call; none at the end, or when the time is over.
    std::span<const qint16> next();

private:
    SoundDecoder(MediaFile& media, AVStream* stream, Owned<AVCodecContext> codec, int rate);

    bool decode();
    bool fitsConverter() const;
    bool makeConverter();
    int convert(const AVFrame* frame);

    MediaFile& m_media;
    AVStream* m_stream;
    Owned<AVCodecContext> m_codec;
    Owned<AVPacket> m_packet;
    Owned<AVFrame> m_frame;
    Owned<SwrContext> m_converter;
    const int m_rate;
    std::vector<qint16> m_samples;
    // What the converter was made for: a sound may change in its midst.
    int m_format = -1;
    int m_channels = 0;
    int m_sourceRate = 0;
    bool m_atEnd = false;
};

} // namespace lumbra::reader
