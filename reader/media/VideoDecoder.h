// Decodes a file's moving pictures one after the other, and makes upright pictures of them in screen colours.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Ffmpeg.h"
#include "MediaFile.h"

#include <QImage>
#include <QSize>

namespace lumbra::reader {

class VideoDecoder {
public:
    // Nothing when the file has no moving pictures that can be decoded. `media` must live as long as the result.
    static std::unique_ptr<VideoDecoder> open(MediaFile& media);

    // To the last key frame at or before the time, in seconds from the file's start.
    bool seek(double seconds);

    // The first key frame at or after the time, and the last at or before it, in seconds, as far as the container's
    // index tells; else below 0.
    double keyFrameFrom(double seconds) const { return m_media.keyFrame(m_stream, seconds, false); }
    double keyFrameBefore(double seconds) const { return m_media.keyFrame(m_stream, seconds, true); }

    // Decodes the first picture at or after the time, in seconds. False at the end, or when the time is over.
    bool advance(double seconds);

    // Decodes a picture that is to be seen at some moment of the film no further from the time than the tolerance, both
    // in seconds: the key frame that is nearest to the time if one is so near, else the first such picture. False if
    // there is none, as beyond the end. Goes back where it must; times in order are found fastest.
    bool show(double seconds, double tolerance);

    // How much it takes to decode a second of the film, in millions of pixels.
    double workPerSecond() const;

    // Of the picture that was decoded last: its time, in seconds from the file's start; and itself, at most as large as
    // the box.
    double time() const;
    QImage picture(QSize box);

private:
    VideoDecoder(MediaFile& media, AVStream* stream, Owned<AVCodecContext> codec);

    enum class Outcome { found, passed, ended };

    bool showKeyFrame(double seconds, double from, double until);
    Outcome decodeUntil(double from, double until);
    bool canGoOnTo(double seconds) const;
    bool isSeen(double from, double until) const;
    bool decodeKeyFrame();
    bool lookAhead(double from);
    void takeNext();
    bool decode(AVFrame* frame, double from);
    bool isWorthNothingBefore(double from) const;
    double pictureLength(int64_t told) const;
    double timeOf(const AVFrame& frame) const;

    MediaFile& m_media;
    AVStream* m_stream;
    Owned<AVCodecContext> m_codec;
    Owned<AVPacket> m_packet;
    Owned<AVFrame> m_frame; // decoded last
    Owned<AVFrame> m_next;  // decoded already to know how long the last one is seen
    Owned<SwsContext> m_scaler;
    int m_turns; // quarter turns clockwise to be upright
    bool m_hasFrame = false;
    bool m_hasNext = false;
    bool m_wantsKeyFrame = false; // nothing before one can be decoded
    bool m_atEnd = false;
};

} // namespace lumbra::reader
