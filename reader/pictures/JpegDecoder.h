// JPEG by its own library, which reduces while it decodes: without the copies and conversions of a general reader.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <jpeglib.h>

#include <chrono>
#include <csetjmp>
#include <cstdio> // the library's header needs it

namespace lumbra::reader {

class JpegDecoder {
public:
    // The bytes must live as long as it.
    JpegDecoder(const QByteArray& bytes, std::chrono::milliseconds limit);
    ~JpegDecoder();

    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    // To be called first. False for what is no JPEG or a damaged one.
    bool readHeader();

    QSize size() const { return {int(m_info.image_width), int(m_info.image_height)}; }
    bool isOfInks() const { return m_info.num_components == 4; }

    // How the picture has to be turned and mirrored, by the numbers 1 to 8 of cameras.
    int orientation() const;

    // What the picture's numbers mean; empty if it does not say.
    QByteArray profile();

    // The picture in Format_RGB32, reduced to somewhat more than that size; null when it is broken, or the time is
    // over.
    QImage decode(QSize atLeast);

private:
    static void fail(j_common_ptr info);
    static void watch(j_common_ptr info);

    bool start(int eighths);
    bool decodeInto(uchar* pixels, qsizetype row);
    bool findProfile();

    const QByteArray& m_bytes;
    const std::chrono::steady_clock::time_point m_deadline;
    jpeg_decompress_struct m_info{};
    jpeg_error_mgr m_errors{};
    jpeg_progress_mgr m_progress{};
    std::jmp_buf m_wayOut; // the library knows no other way to give up
    JOCTET* m_profile = nullptr;
    unsigned m_profileSize = 0;
};

} // namespace lumbra::reader
