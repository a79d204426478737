// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPoster.h"

#include "platform/Reader.h"

namespace lumbra {

namespace {

constexpr double tolerance = 1; // seconds: the first picture may come after the first sound

} // namespace

void FilmPoster::setSource(const QUrl& source) {
    if (m_source == source)
        return;
    m_source = source;
    m_image = {};
    m_request = {};
    m_isAsked = false;
    Q_EMIT sourceChanged();
    Q_EMIT imageChanged();
    ask();
}

void FilmPoster::setBox(const QSize& box) {
    if (m_box == box)
        return;
    m_box = box;
    Q_EMIT boxChanged();
    ask();
}

void FilmPoster::ask() {
    const Location file(m_source.toLocalFile());
    if (m_isAsked || m_box.isEmpty() || file.isEmpty())
        return;
    m_isAsked = true;
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    Reader::shared()
        .frames(file,
                {.moments = {0},
                 .tolerance = tolerance,
                 .box = m_box.boundedTo({reader::longestSide, reader::longestSide})},
                Reader::Urgency::visible, stop.get_token())
        .then(this, [this, token = stop.get_token()](const std::optional<Reader::Frames>& frames) {
            if (token.stop_requested() || !frames || frames->images.isEmpty())
                return;
            m_image = frames->images.first();
            Q_EMIT imageChanged();
        });
}

} // namespace lumbra
