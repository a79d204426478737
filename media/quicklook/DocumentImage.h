// A picture that belongs to a document, decoded by the readers to the width that there is.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/MediaRequest.h"
#include "platform/Location.h"

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class DocumentImage : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Location file READ file WRITE setFile NOTIFY fileChanged)
    Q_PROPERTY(int width READ width WRITE setWidth NOTIFY widthChanged)
    Q_PROPERTY(QImage image READ image NOTIFY imageChanged)
    Q_PROPERTY(QSize size READ size NOTIFY imageChanged)
    Q_PROPERTY(bool failed READ failed NOTIFY imageChanged)

public:
    using QObject::QObject;

    const Location& file() const { return m_file; }
    void setFile(const Location& file);

    // Pixels at most. Nothing is read while it is 0.
    int width() const { return m_width; }
    void setWidth(int width);

    QImage image() const { return m_image; }

    // Of the image; empty while there is none.
    QSize size() const { return m_image.size(); }

    // The file yielded none.
    bool failed() const { return m_failed; }

Q_SIGNALS:
    void fileChanged();
    void widthChanged();
    void imageChanged();

private:
    void load();
    void setImage(const QImage& image, bool failed);

    Location m_file;
    int m_width = 0;
    QImage m_image;
    bool m_failed = false;
    MediaRequest m_request;
};

} // namespace lumbra
