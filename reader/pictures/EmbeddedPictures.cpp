// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"

namespace lumbra::reader {

QImage embeddedPicture(const QByteArray& bytes, QSize box) {
    if (bytes.isEmpty() || bytes.size() > previewLimit)
        return {};
    if (bytes.startsWith("%PDF-"))
        return pagePicture(bytes, box);
    const QImage image = bytes.startsWith("\xff\xd8\xff") ? jpegPicture(bytes, box) : rasterPicture(bytes, box);
    return image.isNull() ? vipsPicture(bytes, box) : image;
}

} // namespace lumbra::reader
