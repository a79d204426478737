// WebP by its own library, which scales while it decodes; a tenth quicker than through Qt. Animations, profiles and
// turned pictures are libvips' business.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"
#include "VipsPictures.h"

#include <webp/decode.h>

namespace lumbra::reader {

namespace {

constexpr qint64 fileLimit = 256 * 1024 * 1024; // bytes; the format's own bound is 4 GiB

// The extended header names what the plain decoder knows nothing of.
bool isPlain(const QByteArray& head) {
    constexpr int flagsAt = 20;
    constexpr int profile = 0x20, exif = 0x08, animation = 0x02;
    return head.mid(12, 4) != "VP8X" || (head.size() > flagsAt && !(head[flagsAt] & (profile | exif | animation)));
}

} // namespace

QImage webpPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    if (!isPlain(file.head()) || file.size() > fileLimit)
        return vipsPicture(file, box, limit);
    const QByteArray bytes = file.bytes(fileLimit);
    const auto* const data = reinterpret_cast<const uint8_t*>(bytes.constData());
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config) || WebPGetFeatures(data, size_t(bytes.size()), &config.input) != VP8_STATUS_OK)
        return {};
    const QSize size = fittedWithoutEnlarging(QSize(config.input.width, config.input.height), box);
    QImage image(size, config.input.has_alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    config.options.use_threads = 1; // filters beside decoding
    config.options.use_scaling = 1;
    config.options.scaled_width = size.width();
    config.options.scaled_height = size.height();
    config.output.colorspace = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? MODE_bgrA : MODE_Argb;
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {image.bits(), int(image.bytesPerLine()), size_t(image.sizeInBytes())};
    const bool decoded = WebPDecode(data, size_t(bytes.size()), &config) == VP8_STATUS_OK;
    WebPFreeDecBuffer(&config.output);
    return decoded ? image : QImage();
}

} // namespace lumbra::reader
