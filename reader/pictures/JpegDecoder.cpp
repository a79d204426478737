// SPDX-License-Identifier: GPL-3.0-or-later
#include "JpegDecoder.h"

#include "reader/Interruption.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace lumbra::reader {

namespace {

constexpr int cameraMarker = JPEG_APP0 + 1, profileMarker = JPEG_APP0 + 2;
constexpr unsigned longestMarker = 0xffff;

// The number in the first directory of what a camera wrote beside the picture, which is laid out like a TIFF file.
int orientationIn(QByteArrayView facts) {
    const bool isLittle = facts.startsWith("II");
    const auto number = [&]<typename Number>(qsizetype at, Number) -> Number {
        if (at < 0 || at + qsizetype(sizeof(Number)) > facts.size())
            return 0;
        return isLittle ? qFromLittleEndian<Number>(facts.data() + at) : qFromBigEndian<Number>(facts.data() + at);
    };
    constexpr qsizetype directoryAt = 4, entrySize = 12, valueAt = 8;
    constexpr quint16 orientationTag = 0x112;
    const qsizetype directory = number(directoryAt, quint32());
    const int entries = number(directory, quint16());
    for (int i = 0; i < entries; ++i) {
        const qsizetype entry = directory + 2 + i * entrySize;
        if (number(entry, quint16()) == orientationTag)
            return number(entry + valueAt, quint16());
    }
    return 1;
}

} // namespace

JpegDecoder::JpegDecoder(const QByteArray& bytes, std::chrono::milliseconds limit)
    : m_bytes(bytes), m_deadline(std::chrono::steady_clock::now() + limit) {
    m_info.err = jpeg_std_error(&m_errors);
    m_info.client_data = this;
    m_errors.error_exit = &JpegDecoder::fail;
    m_errors.emit_message = [](j_common_ptr, int) {}; // what is cut short is shown as far as it goes
    m_progress.progress_monitor = &JpegDecoder::watch;
}

JpegDecoder::~JpegDecoder() {
    jpeg_destroy_decompress(&m_info);
    std::free(m_profile);
}

void JpegDecoder::fail(j_common_ptr info) {
    std::longjmp(static_cast<JpegDecoder*>(info->client_data)->m_wayOut, 1);
}

void JpegDecoder::watch(j_common_ptr info) {
    if (Interruption::isRequested()
        || std::chrono::steady_clock::now() >= static_cast<JpegDecoder*>(info->client_data)->m_deadline)
        fail(info);
}

// Nothing that needs to be destroyed may be made in the functions that are jumped out of.
bool JpegDecoder::readHeader() {
    if (setjmp(m_wayOut) != 0)
        return false;
    jpeg_create_decompress(&m_info);
    m_info.progress = &m_progress;
    jpeg_save_markers(&m_info, cameraMarker, longestMarker);
    jpeg_save_markers(&m_info, profileMarker, longestMarker);
    jpeg_mem_src(&m_info, reinterpret_cast<const unsigned char*>(m_bytes.constData()),
                 static_cast<unsigned long>(m_bytes.size()));
    return jpeg_read_header(&m_info, TRUE) == JPEG_HEADER_OK;
}

int JpegDecoder::orientation() const {
    const QByteArrayView mark("Exif\0\0", 6);
    for (const jpeg_marker_struct* marker = m_info.marker_list; marker; marker = marker->next) {
        const QByteArrayView data(marker->data, qsizetype(marker->data_length));
        if (marker->marker == cameraMarker && data.startsWith(mark))
            return orientationIn(data.sliced(mark.size()));
    }
    return 1;
}

QByteArray JpegDecoder::profile() {
    return findProfile() ? QByteArray(reinterpret_cast<const char*>(m_profile), qsizetype(m_profileSize))
                         : QByteArray();
}

bool JpegDecoder::findProfile() {
    if (setjmp(m_wayOut) != 0)
        return false;
    return m_profile || jpeg_read_icc_profile(&m_info, &m_profile, &m_profileSize);
}

QImage JpegDecoder::decode(QSize atLeast) {
    const double reduction =
        std::min(double(size().width()) / atLeast.width(), double(size().height()) / atLeast.height());
    if (!start(std::clamp(int(std::ceil(8 / reduction)), 1, 8)))
        return {};
    QImage image(int(m_info.output_width), int(m_info.output_height), QImage::Format_RGB32);
    if (image.isNull() || !decodeInto(image.bits(), image.bytesPerLine()))
        return {};
    return image;
}

bool JpegDecoder::start(int eighths) {
    if (setjmp(m_wayOut) != 0)
        return false;
    m_info.scale_num = unsigned(eighths);
    m_info.scale_denom = 8;
    m_info.out_color_space = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRX : JCS_EXT_XRGB;
    return jpeg_start_decompress(&m_info);
}

bool JpegDecoder::decodeInto(uchar* pixels, qsizetype row) {
    if (setjmp(m_wayOut) != 0)
        return false;
    while (m_info.output_scanline < m_info.output_height) {
        JSAMPROW line = pixels + m_info.output_scanline * row;
        jpeg_read_scanlines(&m_info, &line, 1);
    }
    return true;
}

} // namespace lumbra::reader
