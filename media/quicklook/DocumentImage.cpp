// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentImage.h"

#include "platform/Reader.h"

namespace lumbra {

void DocumentImage::setFile(const Location& file) {
    if (m_file == file)
        return;
    m_file = file;
    setImage({}, false);
    Q_EMIT fileChanged();
    load();
}

void DocumentImage::setWidth(int width) {
    if (m_width == width)
        return;
    const bool isEnough = !m_image.isNull() && width <= m_width;
    m_width = width;
    Q_EMIT widthChanged();
    if (!isEnough)
        load();
}

void DocumentImage::load() {
    m_request = {};
    if (m_file.isEmpty() || m_width <= 0)
        return;
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    Reader::shared()
        .thumbnail(m_file, QSize(m_width, reader::longestSide), Reader::Urgency::visible, stop.get_token())
        .then(this, [this, token = stop.get_token()](const QImage& image) {
            if (!token.stop_requested())
                setImage(image, image.isNull());
        });
}

void DocumentImage::setImage(const QImage& image, bool failed) {
    m_image = image;
    m_failed = failed;
    Q_EMIT imageChanged();
}

} // namespace lumbra
