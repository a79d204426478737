// A container of moving pictures and sound, opened by FFmpeg on a descriptor that is open already: it reaches no other
// file, whatever it refers to, and gives up when its time is over or when nobody waits any more.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"

#include <chrono>
#include <memory>

struct AVFormatContext;
struct AVIOContext;
struct AVPacket;
struct AVStream;

namespace lumbra::reader {

class MediaFile {
public:
    // Nothing if no known container begins here. `file` must live as long as the result.
    static std::unique_ptr<MediaFile> open(const OpenedFile& file, std::chrono::milliseconds limit);

    ~MediaFile();

    MediaFile(const MediaFile&) = delete;
    MediaFile& operator=(const MediaFile&) = delete;

    // The best stream of moving pictures; null if there is none. A cover is not one.
    AVStream* pictures() const;

    // The first stream of sound; null if there is none.
    AVStream* sound() const;

    // Reads no other streams from now on, which spares most of the reading.
    void keepOnly(const AVStream* stream);

    // Begins the time anew.
    void allow(std::chrono::milliseconds limit) { m_deadline = std::chrono::steady_clock::now() + limit; }

    // The bytes of the picture that the file brings along, such as the cover of music; empty if there is none.
    QByteArray cover() const;

    // Seconds; 0 if the file does not tell.
    double duration() const;

    // The same, but looks for the end of a file that does not tell, as browsers record them; for a while.
    double findDuration();

    // What time 0 of the file is called inside, in seconds.
    double start() const;

    // The next packet of the stream; false at the end, after an error and when it is over.
    bool read(const AVStream* stream, AVPacket* packet);

    // To the last key frame of the stream at or before the time, in seconds.
    bool seek(const AVStream* stream, double seconds);

    // Whether the container tells where its key frames are.
    bool hasIndex() const;

    // The first key frame of the stream at or after the time, or the last at or before it, as far as the container's
    // index tells; else below 0.
    double keyFrame(AVStream* stream, double seconds, bool before) const;

    // No time is left, or nobody waits.
    bool isOver() const;

private:
    MediaFile(const OpenedFile& file, std::chrono::milliseconds limit);

    bool begin();
    static int readBytes(void* self, uint8_t* buffer, int size);
    static int64_t seekBytes(void* self, int64_t offset, int whence);

    int m_descriptor;
    int64_t m_position = 0;
    std::chrono::steady_clock::time_point m_deadline;
    AVIOContext* m_bytes = nullptr;
    AVFormatContext* m_context = nullptr;
};

} // namespace lumbra::reader
