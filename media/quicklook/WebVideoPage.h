// The page that plays a film in a web view, for the containers that the player is not given.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

// The page's text.
QString webVideoPage(const QUrl& video, bool autoplay);

// The one file in this process's temporary folder that holds the page, which each film's takes over.
class WebVideoPage : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QUrl video READ video WRITE setVideo NOTIFY changed)
    Q_PROPERTY(bool autoplay READ autoplay WRITE setAutoplay NOTIFY changed)
    Q_PROPERTY(QUrl url READ url NOTIFY changed)

public:
    using QObject::QObject;

    static Location file();

    QUrl video() const { return m_video; }
    void setVideo(const QUrl& video);

    bool autoplay() const { return m_autoplay; }
    void setAutoplay(bool autoplay);

    // Where the page is, to be loaded right after it was written; empty while there is no film.
    QUrl url() const { return m_video.isEmpty() ? QUrl() : file().toUrl(); }

    // Writes the page whole or not at all; a failure leaves the one before.
    Q_INVOKABLE void write() const;

Q_SIGNALS:
    void changed();

private:
    QUrl m_video;
    bool m_autoplay = true;
};

} // namespace lumbra
