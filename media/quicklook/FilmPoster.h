// The first picture of a film at its own size, to stand for the film until whatever plays it has one. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/MediaRequest.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class FilmPoster : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QSize box READ box WRITE setBox NOTIFY boxChanged)
    Q_PROPERTY(QImage image READ image NOTIFY imageChanged)

public:
    using QObject::QObject;

    // A film, which is a local file.
    QUrl source() const { return m_source; }
    void setSource(const QUrl& source);

    // What the picture is made smaller to fit, in pixels; none is made while it is empty. Another box is for the next
    // film.
    QSize box() const { return m_box; }
    void setBox(const QSize& box);

    // As it is to be shown: upright, and wider or higher where the film's pixels are not square. Null until it is
    // there, and for what has none.
    QImage image() const { return m_image; }

Q_SIGNALS:
    void sourceChanged();
    void boxChanged();
    void imageChanged();

private:
    void ask();

    QUrl m_source;
    QSize m_box;
    QImage m_image;
    bool m_isAsked = false;
    MediaRequest m_request;
};

} // namespace lumbra
